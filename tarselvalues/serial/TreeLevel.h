// A level that is open in a sink while a value is being written. Not for users.
#pragma once

#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace tarselvalues {

// Owns nothing.
struct TreeLevel {
  enum Kind { Tuple, HashMap, Vector, Object, OtherMap, OtherVector };

  static TreeLevel ofTuple(lvArg const& key, lvArg const& value, int next) {
    TreeLevel level(Tuple, nullptr, 2);
    level.next = next;
    level.key = &key;
    level.value = &value;
    return level;
  }
  static TreeLevel ofMap(lvrHashMap const& map, lvrHashMap::Walk const& entries) {
    TreeLevel level(HashMap, &map, 0);
    level.entries = entries;
    level.entries.watch();
    return level;
  }
  static TreeLevel ofVector(lvrVector const& vector, int size, int next) {
    TreeLevel level(Vector, &vector, size);
    level.next = next;
    return level;
  }
  static TreeLevel ofObject(lvReferencable const& object, lvrClass const& described, int fields,
                            int next = 0) {
    TreeLevel level(Object, &object, fields);
    level.next = next;
    level.described = &described;
    return level;
  }
  TreeLevel(Kind what, lvReferencable const* of, int elements)
      : kind(what), size(elements), container(of) {}

  Kind kind;
  int next = 0;                         // which element, or field, or part of a tuple, comes next
  int size;                             // how many there are, where that is known
  lvReferencable const* container;      // or the object; none for a tuple
  lvrClass const* described = nullptr;  // an object's; classes are never unregistered
  lvArg const* key = nullptr;           // a tuple's, where they are not held
  lvArg const* value = nullptr;
  lvrHashMap::Walk entries;  // a hash map's
};

}  // namespace tarselvalues
