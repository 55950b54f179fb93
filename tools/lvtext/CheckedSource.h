// A text parser that reports what the library reads over in silence, and leaves it out.
//
// The library's parser skips tokens that do not fit and does not match brackets; its serializer
// drops frames and items in the wrong place. Here each of them is reported with its position, and
// what cannot be kept is taken out before the serializer sees it, so that the rest reads as meant.
#pragma once

#include <tarselvalues/core/lvHashing.h>
#include <tarselvalues/tarselvalues.h>

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "Input.h"

class CheckedSource : public lvtStringArgSource {
 public:
  // Reports to the problems of `input`.
  explicit CheckedSource(Input& input);

  int getArg(lvArg& out) override;
  int getNextToken(lvArg& out) override;

  // Where the last item begins, or the last frame that has begun.
  std::size_t itemOffset() const { return static_cast<std::size_t>(itemStart); }
  // The place of the last entry in its map, counted from 0: that of an earlier one with the same key.
  std::size_t entryIndex() const { return lastEntry; }

 private:
  struct Token {
    int code = TOKEN_END;
    int offset = 0;
    bool accounted = true;  // reported, or part of a construct that took it
  };
  struct Entry {
    std::size_t index;
    int offset;
    bool kept;  // it has a value
  };
  struct Frame {
    int kind;
    int offset;
    int fields;  // of an object
    int items = 0;
    bool lastIsNil = false;
    lvArg key = {};  // of an entry; nil where there is none
    bool keyIsAtom = true;
    std::size_t entryCount = 0;  // of a map
    std::unordered_map<lvArg, Entry, lvHasher, lvEquivalent> entries = {};
  };

  bool inFrame(int kind) const { return !frames.empty() && frames.back().kind == kind; }
  int skipBlanks(int from) const;
  std::string textOfLast() const;
  bool isOpenString(Token const& token, lvArg const& value) const;
  bool isTaken(Token const& token, int code) const;
  void checkAfterPrefix(lvArg const& value);
  std::string placeOf(int offset) const;
  void report(int offset, std::string const& reason);
  void reportSkipped();
  std::string describeSkipped(Token const& token) const;

  bool acceptItem(lvArg const& item);
  void checkNumber(int value);
  void checkString();
  bool acceptFrame(lvArg const& kind);
  bool countItem(int offset, bool isNil);
  std::string refuseFrame(lvArg const& kind) const;
  int frameOffset(int kind) const;
  void skipFrame();
  void checkBracket();
  void endFrame();
  void popFrame();
  static bool hasValue(Frame const& entry) { return entry.items > 1 && !entry.lastIsNil; }
  void addEntry(Frame const& entry);
  int endText();
  void reportEnd(char const* name, int offset);

  std::string const& content;
  Progress& progress;
  Problems& problems;
  int seenErrors;
  Token previous;
  Token last;
  int lastStar = 0;
  bool starIsOpen = false;  // its frame has not begun
  bool starIsNamed = false;
  int itemStart = 0;
  std::size_t lastEntry = 0;
  bool endReported = false;
  std::vector<Frame> frames;
};
