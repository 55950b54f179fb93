// What class an object is of, at the cost of a comparison. Not for users.
#pragma once

#include <typeinfo>

#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

namespace tarselvalues {

// Whether an object is of this very class, and not of one derived from it. Descriptions of classes
// are compared by address: should there be a second one of the same class, the answer is no.
template <class Class, class Base>
bool isExactly(Base const& object) {
  return &typeid(object) == &typeid(Class);
}

// Whether an object is a string of the library's own, of which no operation runs a function of the
// program.
inline bool isOwnString(lvReferencable const& object) {
  return isExactly<lvrString>(object) || isExactly<lvString::StringEntry>(object);
}

// As dynamic_cast<To*>(object), which is slow. Objects of exactly the `Likely` classes, which are
// derived from To, are told without it.
template <class To, class... Likely>
To* castLikely(lvReferencable* object) {
  To* result = nullptr;
  bool const known =
      object != nullptr && ((isExactly<Likely>(*object) &&
                             ((result = static_cast<To*>(static_cast<Likely*>(object))), true)) ||
                            ...);
  return known ? result : dynamic_cast<To*>(object);
}

}  // namespace tarselvalues
