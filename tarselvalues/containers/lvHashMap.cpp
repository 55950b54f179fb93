#include "tarselvalues/containers/lvHashMap.h"

#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/core/ClassCast.h"

lvHashMap::lvHashMap(int size) {
  setReferencableFast(*new lvrHashMap(static_cast<unsigned int>(size)), MapType);
}

lvHashMap::lvHashMap(lvArg const& other) {
  if (other.getType() == MapType) {
    assignFast(other);
  }
}

lviMap* lvHashMap::getMap() const {
  return tarselvalues::castLikely<lviMap, lvrHashMap, lvrTupleSet>(getReferencable());
}
