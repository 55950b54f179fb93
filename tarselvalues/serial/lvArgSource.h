// lvArgSource: a source of value trees.
//
// lvrCommonSerializer pulls a value out of it as a sequence of results: an item, the beginning of a
// frame, its end, or the end of the input. lvtStringArgSource reads text; derive from lvArgSource
// to take values from elsewhere.
//
// Ownership: cells that are handed out are the caller's.
// Threads:   one thread at a time per source.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lvArgSource {
 public:
  // What getArg() answers. Compiled programs rely on the numbers.
  enum : int {
    SOURCE_ITEM = 0,         // an item, now in `out`
    SOURCE_FRAME_BEGIN = 6,  // a frame opens; `out` is its kind (lvArgDest::FrameKind) as an
                             // integer, or the class name, a string, for an object
    SOURCE_FRAME_END = 7,    // the innermost frame closes
    SOURCE_END = 9,          // the input is used up
  };

  // For derived classes.
  lvArgSource() = default;
  lvArgSource(lvArgSource const&) = delete;
  lvArgSource& operator=(lvArgSource const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  virtual ~lvArgSource();
  // Reads on. Any other answer than the four above means that nothing was read: ask again.
  virtual int getArg(lvArg& out) = 0;
  // Reads one token, for sources that have such. Here: answers that there is none left
  // (lvtStringArgSource::TOKEN_END).
  virtual int getNextToken(lvArg& out);
};
