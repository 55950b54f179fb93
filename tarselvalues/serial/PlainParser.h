// Reads values from a text at once: words, numbers, quoted strings, nil, maps and vectors as the
// text writer writes them. Not for users.
//
// The values, and where the parser stands, are those that reading item by item would leave; the
// code of the last token, which nothing reads, is not kept. Whatever is not so plain stops it, at
// any depth: the parser then stands before that, and whoever asked goes on with the frames that
// have begun. No function of the program runs meanwhile.
#pragma once

#include <utility>
#include <vector>

#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/serial/ReaderLevel.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL PlainParser {
 public:
  // The source must be of that very class. Frames that have begun when it is stopped are added to
  // `levels`; `keysOpen` counts the open tuples that have no key yet.
  PlainParser(lvtStringArgSource& parser, std::vector<ReaderLevel>& levels, int& keysOpen)
      : source(parser), open(levels), openKeys(keysOpen) {}

  // Reads one item; false when stopped.
  bool readItem(lvArg& item);

  // Whether it was stopped behind the bracket that begins an object. The class name is then to be
  // taken before anything else is read.
  bool hasClassName() const { return !className.isNil(); }
  lvArg takeClassName() { return std::move(className); }

  // Read the rest of a frame, with its closing bracket; false when stopped.
  bool readItems(lvrVector& vector);
  bool readEntries(lvrHashMap& map);

 private:
  using State = lvtStringArgSource::State;

  // How deep frames may nest in each other, on the native stack.
  static constexpr int MaxDepth = 32;

  template <class Read>
  bool run(Read read);
  bool begin();
  void finish();
  void keepToken();
  void leaveToken(lvArg const& dropped);

  // Read at `at`. Return where to go on, or null when stopped.
  template <class ReadElement>
  char const* readElements(char const* at, State now, ReadElement readElement);
  char const* readItems(char const* at, State now, lvrVector& vector);
  char const* readEntries(char const* at, State now, lvrHashMap& map);
  char const* readEntry(char const* at, lvrHashMap& map);
  char const* stopInTuple(lvArg&& key, lvArg&& value, int items);
  char const* readNext(char const* at, lvArg& out);
  char const* readValue(char const* at, lvArg& out);
  char const* readOther(char const* at, lvArg& out);
  char const* readFrame(char const* at, lvArg& out);
  char const* readVector(char const* at, lvArg& out);
  char const* readMap(char const* at, lvArg& out);
  char const* readWord(char const* at, lvArg& out);
  char const* readNumber(char const* at, lvArg& out);
  char const* readQuoted(char const* at, lvArg& out);
  char const* readNil(char const* at);
  char const* readClassName(char const* at);
  char const* readNegative(char const* at, lvArg& out);
  char const* findWordEnd(char const* at) const;
  char const* skipBlanks(char const* at) const;
  void stand(char const* at, State now);

  lvtStringArgSource& source;
  std::vector<ReaderLevel>& open;
  int& openKeys;

  char const* end = nullptr;    // of the text
  char const* place = nullptr;  // where the parser stands, and in what state
  State state = lvtStringArgSource::Item;
  int depth = 0;
  lvArg className;  // of the object that has stopped it
  // The last word, number or string: where it begins, and its object if that is held by what is
  // being read. The source is given it in the end.
  char const* token = nullptr;
  lvReferencable const* tokenObject = nullptr;
};

}  // namespace tarselvalues
