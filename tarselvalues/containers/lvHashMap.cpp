#include "tarselvalues/containers/lvHashMap.h"

#include "tarselvalues/containers/lvrHashMap.h"

lvHashMap::lvHashMap(int size) {
  setReferencableFast(*new lvrHashMap(static_cast<unsigned int>(size)), MapType);
}

lvHashMap::lvHashMap(lvArg const& other) {
  if (other.getType() == MapType) {
    assignFast(other);
  }
}

lviMap* lvHashMap::getMap() const { return dynamic_cast<lviMap*>(getReferencable()); }
