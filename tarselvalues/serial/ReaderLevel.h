// A frame that has begun while a value is being read. Not for users.
#pragma once

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace tarselvalues {

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
};

}  // namespace tarselvalues
