// The class keys of the library: the interned names that getClassDesc() answers. Not for users:
// they call getClassDesc() or a class's getStaticClassDesc().
//
// All but "Referencable" are interned when the library is loaded, whether or not a program uses
// their class, and released by the exit handlers. Code that runs earlier still, or later, gets them
// all the same: asking makes a key. Any thread until the exit handlers run, then the exiting one.
#pragma once

#include "tarselvalues/core/Export.h"

class lvString;

namespace tarselvalues {

enum class ClassKey {
  Class,
  String,
  CommonSerializer,
  TupleSet,
  Vector,
  SortedArrayList,
  DLList,
  HashMap,
  Stack,
};

TARSELVALUES_INTERNAL lvString const& classKey(ClassKey key);

// The base's own key, made by the first call.
TARSELVALUES_INTERNAL lvString const& referencableClassKey();

}  // namespace tarselvalues
