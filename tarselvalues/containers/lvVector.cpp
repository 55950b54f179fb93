#include "tarselvalues/containers/lvVector.h"

#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/ClassCast.h"

lvVector::lvVector(int size) { setReferencableFast(*new lvrVector(size), ListType); }

lvVector::lvVector(lvArg const& other) {
  if (other.getType() == ListType) {
    assignFast(other);
  }
}

lviList* lvVector::getList() const {
  return tarselvalues::castLikely<lviList, lvrVector, lvrDLList>(getReferencable());
}
