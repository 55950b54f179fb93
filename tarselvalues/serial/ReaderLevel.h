// A frame that has begun while a value is being read. Not for users.
#pragma once

#include <utility>

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace tarselvalues {

// Room for this many elements or buckets in a frame.
constexpr int FrameSizeHint = 6;

// And among the values of an object's fields.
constexpr int FieldSizeHint = 8;

// The object in a cell, if it is of that very class.
template <class Class>
Class* ifExactly(lvArg const& cell) {
  lvReferencable* const object = cell.getReferencable();
  return object != nullptr && isExactly<Class>(*object) ? static_cast<Class*>(object) : nullptr;
}

// What it is made of lies in two cells.
struct ReaderLevel {
  enum Kind { Tuple, Map, Vector, Object };

  Kind kind = Vector;
  int items = 0;  // of a tuple: how many there were
  lvArg first;    // the container or the object; a tuple's key
  lvArg second;   // an object's field values, in a vector; a tuple's value
  lviMap* map = nullptr;
  lviList* list = nullptr;              // takes the items of a vector or an object
  lvrClass const* described = nullptr;  // an object's; classes are never unregistered

  // The same map and list, if they are of these very classes; a map only as long as nothing in it
  // can run a function of the program.
  lvrHashMap* plainMap = nullptr;
  lvrVector* plainList = nullptr;

  static ReaderLevel ofTuple() {
    ReaderLevel level;
    level.kind = Tuple;
    return level;
  }

  // `isNew` says that nobody else has put anything into the map.
  static ReaderLevel ofMap(lvHashMap made, bool isNew) {
    ReaderLevel level;
    level.kind = Map;
    level.map = made.getMap();
    level.plainMap = isNew ? ifExactly<lvrHashMap>(made) : nullptr;
    level.first = std::move(made);
    return level;
  }

  static ReaderLevel ofVector(lvVector made) {
    ReaderLevel level;
    level.kind = Vector;
    level.list = made.getList();
    level.plainList = ifExactly<lvrVector>(made);
    level.first = std::move(made);
    return level;
  }
};

}  // namespace tarselvalues
