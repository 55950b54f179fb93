// lvrCommonSerializer: writes value trees to a sink and builds them from a source.
//
// Writing: nil, integers, raw addresses and strings go to the sink as they are; maps and vectors
// are walked; any other object is written through its class descriptor. Reading reverses this.
// There is no record of objects already visited: a shared object is written once for every
// reference to it and read back as separate copies, and a cycle is not detected (the text writer
// ends one at its 32nd level).
//
// Ownership: objects that are read belong to the cells that they are read into.
// Threads:   any thread, with values and a sink or source of its own: there is no state.
// Errors:    the status values below, or what the sink or source answered. Problems of a class are
//            also named on standard output. Out of memory is std::bad_alloc.
// Example:   README.md, "A first program" (through lvToolsToString and lvToolsFromString)
#pragma once

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/serial/lvArgDest.h"
#include "tarselvalues/serial/lvArgSource.h"

class TARSELVALUES_API lvrCommonSerializer : public lvReferencable {
 public:
  // Status values, besides 0 for success. Compiled programs rely on the numbers.
  enum : int {
    CS_ERR_FAILED = -1,  // the sink refused a level, or a frame is of a kind that does not fit
    CS_ERR_SOURCE = -2,  // an error of the value was reported with sourceError()
    CS_ERR_UNKNOWN_CLASS_KEY = -4,  // the class named in the input is not registered
    CS_ERR_NO_CLASS_CTOR = -5,      // the class makes no default object
    CS_ERR_REF_SETUP_ERROR = -6,    // a field of the new object could not be set
  };

  // Returns the interned "CommonSerializer". Any thread.
  static lvString const& getStaticClassDesc();

  // Makes a serializer; one is enough for all.
  lvrCommonSerializer();
  lvString const& getClassDesc() const override;
  int finalize() override;
  ~lvrCommonSerializer() override;

  // --- Writing ----------------------------------------------------------------------------------

  // Writes one value of any kind. What has no form of its own is written as nil.
  int serializeAtomInto(lvArgDest& dest, lvArg const& value);

  // Writes one entry of a map.
  int serializeTupleInto(lvArgDest& dest, lvArg const& key, lvArg const& value);

  // Writes what a cell of MapType holds; -2 unless that is a map.
  // Deliberate: when an element fails the level is aborted and left, and the answer is 0 if leaving
  // works. The text writer closes such a level twice.
  int serializeMapInto(lvArgDest& dest, lvArg const& value);
  // The same for a cell of ListType; -2 unless that holds an lvrVector: other lists are refused.
  int serializeVectorInto(lvArgDest& dest, lvArg const& value);

  // Writes an object through its class; -2 if nobody registered that. An object in which a field
  // failed is closed once, and answers -1.
  // Deliberate: an object of a class without fields, or with a field that cannot be read, leaves
  // its level open.
  int serializeReferencableInto(lvArgDest& dest, lvArg const& value);

  // --- Reading ----------------------------------------------------------------------------------
  // 7 (end of frame) and 9 (end of input) of the source are handed on. `out` is only set on 0.

  // Reads every item up to the end of the input, or of a frame that was open, into a new vector.
  int deserializeInto(lvArg& out, lvArgSource& src);

  // Reads one item, with all that is in it when a frame begins.
  int deserializeItemInto(lvArg& out, lvArgSource& src);

  // Reads the rest of a frame of this kind; a map into a new one of six buckets. A frame that the
  // input does not close is complete all the same; but an object is then dropped, and reads as nil,
  // with success.
  int deserializeFrameInto(lvArg& out, lvArgSource& src, lvArg const& kind);

  // Reads the rest of a tuple: the first item is the key, the second the value, others are dropped.
  // A missing value is nil; without any item the key is nil and the value is left alone. Always 0.
  int deserializeTupleInto(lvArg& key, lvArg& value, lvArgSource& src);

  // Reads the rest of a frame into a map that is there already. Items that fail, and items outside
  // of a tuple, are dropped; -1 for another frame than a tuple, and for a handle that holds no map.
  int deserializeMapContentsInto(lvHashMap& map, lvArgSource& src);
  // Reads the rest of a frame into a list that is there already. Items that fail, and elements
  // beyond a vector's limit, are dropped; -1 for a handle that holds no list.
  int deserializeVectorContentsInto(lvVector& vector, lvArgSource& src);

  // Reads the rest of an object of the named class.
  int deserializeReferencableContentsInto(lvArg& out, lvArg const& className, lvArgSource& src);
};
