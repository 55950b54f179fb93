// lvArgDest: a sink for value trees.
//
// lvrCommonSerializer pours a value into it as a sequence of calls: open a level, put a scalar,
// close a level. lvtStringArgDest writes text; derive from lvArgDest to send values elsewhere.
//
// Ownership: values are lent for the call; a sink that keeps one copies the cell.
// Threads:   one thread at a time per sink.
// Errors:    0 is success, negative numbers are failures; the serializer hands them on.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lvArgDest {
 public:
  // What the serializer found wrong with a value it was to write.
  // Compiled programs rely on the numbers; 3 is not used.
  enum sourceError_t {
    SOURCE_ERROR_NOT_A_MAP = 1,     // tagged as a map, but without the map interface
    SOURCE_ERROR_NOT_A_VECTOR = 2,  // tagged as a list, but no lvrVector
    SOURCE_ERROR_NO_CLASS = 4,      // an object without class key, or of a class nobody registered
    SOURCE_ERROR_FIELD_ACCESS = 5,  // a field that cannot be read through the class
  };

  // The kinds of level that enter() opens, as integer cells. An object's level is opened with the
  // handle of its class instead.
  enum FrameKind : int {
    MapFrame = 24,     // tuples
    VectorFrame = 25,  // elements
    TupleFrame = 32,   // one key and one value, inside a map
  };

  // For derived classes.
  lvArgDest() = default;
  lvArgDest(lvArgDest const&) = delete;
  lvArgDest& operator=(lvArgDest const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  virtual ~lvArgDest();
  // Ends the output.
  virtual int terminate() = 0;
  // Opens a level for `size` elements; -1 when their number is not known.
  virtual int enter(lvArg const& kind, int size) = 0;
  // Closes the innermost level.
  virtual int leave() = 0;
  // Closes the innermost level after a failure inside it.
  virtual int abortLevel() = 0;
  // Is told that a value cannot be written.
  virtual int sourceError(sourceError_t error) = 0;
  // Takes one scalar: nil, an integer, a raw address or a string.
  virtual int putArg(lvArg const& value) = 0;

  // For sinks that write into a buffer, and for the two-step set-up: settings fixed at construction
  // (initOnce, cleanupOnce), state of one use (init, cleanup). Here they do nothing and return 0.

  // Starts on a buffer.
  virtual void setStringBuffer(char* buffer, int size);
  // Begins one use.
  virtual int init();
  // Makes the settings of a new sink.
  virtual int initOnce();
  // Ends one use.
  virtual int cleanup();
  // Undoes initOnce().
  virtual int cleanupOnce();
};
