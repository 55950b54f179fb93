// Writes values to a text writer at once: those of the library's own classes, where no function of
// the program can run, and where there is so much room that no rule of the room can apply. Not for
// users.
//
// The text and the state of the writer are those that its operations, called one by one, would
// leave. What cannot be written so stops it, at any depth: the writer then stands before that, and
// whoever asked goes on with the levels that are open.
#pragma once

#include <cstddef>

#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/serial/SmallStack.h"
#include "tarselvalues/serial/TreeLevel.h"
#include "tarselvalues/serial/lvtStringArgDest.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL PlainText {
 public:
  using Levels = SmallStack<TreeLevel, lvtStringArgDest::MaxDepth>;

  // The writer must be of that very class.
  PlainText(lvtStringArgDest& target, Levels& levels) : writer(target), open(levels) {}

  // Writes a value, or as much of it as can be; true if that is all. Otherwise the levels that it
  // has opened, if any, are added to those that are open.
  bool write(lvArg const& value);

  // The same for an object, which the caller holds.
  bool writeObject(lvReferencable const& object, lvrClass const& described);

 private:
  // More than any step takes besides the characters of a string, with the end of all levels.
  static constexpr int AmpleRoom = 64;

  bool begin();
  void end(char const* at, bool pending);

  // Write at `at`. Return where to go on, or null when stopped.
  char* writeSeparator(char* at) const;
  char* writeValue(char* at, lvArg const& value);
  char* writeOther(char* at, lvArg const& value);
  char* writeMap(char* at, lvrHashMap const& map);
  char* writeEntry(char* at, lvrHashMap::HashEntry const& entry);
  char* writeVector(char* at, lvrVector const& vector);
  char* writeFields(char* at, lvReferencable const& object, lvrClass const& described, int fields);
  char* writeString(char* at, lvrString const& string) const;
  static char* writeLong(char* at, char const* text, int length);
  static char* writeQuoted(char* at, char const* text, int length);
  static char* writeNil(char* at);

  char* stop(char* at, bool pending, TreeLevel const& level);
  bool hasStoppedInside() const { return open.size() > outer; }
  void handOver();

  lvtStringArgDest& writer;
  Levels& open;
  std::size_t outer = 0;  // how many of them are none of this class's
  char* limit = nullptr;  // the last place where there is ample room
  int depth = 0;          // how many levels are open in the writer
  char* stoppedAt = nullptr;
  bool isPending = false;  // whether there is an element already where it stopped
};

}  // namespace tarselvalues
