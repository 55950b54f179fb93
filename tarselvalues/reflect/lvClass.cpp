#include "tarselvalues/reflect/lvClass.h"

#include <utility>

#include "tarselvalues/core/ClassCast.h"

lvClass::lvClass() { setReferencableFast(*new lvrClass); }

lvClass::lvClass(unsigned int number, lvArg const& name, lvrClass::DefaultCtor* ctor) {
  setReferencableFast(*new lvrClass(number, name, ctor));
}

lvClass::lvClass(unsigned int number, lvArg const& name, lvClass const& superclass,
                 lvrClass::DefaultCtor* ctor) {
  setReferencableFast(*new lvrClass(number, name, superclass, ctor));
}

lvClass::lvClass(lvArg const& value) {
  if (value.getType() == ClassType) {
    assignFast(value);
  }
}

lvClass::lvClass(lvArg&& value) noexcept {
  if (value.getType() == ClassType) {
    lvArg::operator=(std::move(value));
  }
}

lvArg lvClass::getClassDesc() const {
  lvArg name;
  if (lvrClass const* const described = getClass()) {
    described->getClassName(name);
  }
  return name;
}

lvrClass* lvClass::getClass() const {
  return tarselvalues::castLikely<lvrClass, lvrClass>(getReferencable());
}
