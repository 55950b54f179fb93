#include "tarselvalues/reflect/lvrClass.h"

#include "tarselvalues/core/ClassKeys.h"

namespace {

constexpr int Refused = -1;

}  // namespace

lvrClass::lvrClass() : lvrClass(0, lvArg(), nullptr) {}

lvrClass::lvrClass(unsigned int number, lvArg const& name, DefaultCtor* ctor)
    : lvrClass(number, name, lvArg(), ctor) {}

lvrClass::lvrClass(unsigned int /*number*/, lvArg const& name, lvArg const& superclass,
                   DefaultCtor* ctor)
    : defaultCtor_(ctor), reflection_(nullptr) {
  setKind(ClassKind);
  superClass_.assign(superclass);
  className_.assign(name);
}

lvrClass::~lvrClass() = default;

lvReferencable* lvrClass::defaultCtorMethod() { return new lvrClass; }

lvString const& lvrClass::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::Class);
}

lvString const& lvrClass::getClassDesc() const { return getStaticClassDesc(); }

int lvrClass::finalize() { return 0; }

int lvrClass::setClassName(lvArg const& name) {
  return className_.isNil() ? className_.assign(name) : Refused;
}

int lvrClass::getClassName(lvArg& out) const { return out.assign(className_); }

int lvrClass::setSuperClass(lvArg const& superclass) {
  bool const accepted = superClass_.isNil() && superclass.getType() == lvArg::ClassType;
  return accepted ? superClass_.assign(superclass) : Refused;
}

int lvrClass::getSuperClass(lvArg& out) const { return out.assign(superClass_); }

lvReferencable* lvrClass::instantiateDefaultObject() const {
  return defaultCtor_ != nullptr ? defaultCtor_() : nullptr;
}
