// lvrClass: the run-time description of a class of lvReferencable objects: its name, its
// superclass, and the function that makes a default instance.
//
// Ownership: holds references to its name and to its superclass.
// Threads:   one thread at a time while it is set up; any number may ask it afterwards.
// Errors:    -1, with nothing changed.
// Life:      descriptors are meant to live as long as the process.
// Layout:    on 32-bit ARM: default constructor 36, superclass 40, name 48, reflection 56, size 60.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

class TARSELVALUES_API lvrClass : public lvReferencable {
 public:
  // Makes a new instance that nobody holds yet.
  using DefaultCtor = lvReferencable*();

  // Makes a descriptor without name, superclass and constructor.
  lvrClass();
  // Deliberate: the number is accepted and not stored. `ctor` may be null.
  lvrClass(unsigned int, lvArg const& name, DefaultCtor* ctor);
  lvrClass(unsigned int, lvArg const& name, lvArg const& superclass, DefaultCtor* ctor);

  // Returns a new descriptor, as lvrClass() makes it.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "Class".
  static lvString const& getStaticClassDesc();

  lvString const& getClassDesc() const override;
  // Does nothing: the destructor releases the name and the superclass.
  int finalize() override;
  ~lvrClass() override;

  // Declaration order is the binary interface: append only, and in derived classes only.

  // Sets the name, normally an interned string; -1 when there is one already.
  virtual int setClassName(lvArg const& name);
  // Assigns the name to `out`. Returns 0.
  virtual int getClassName(lvArg& out) const;
  // Sets the superclass; -1 when there is one already, or when `superclass` holds no class.
  virtual int setSuperClass(lvArg const& superclass);
  // Assigns the superclass to `out`. Returns 0.
  virtual int getSuperClass(lvArg& out) const;

  // Returns a new default instance, or null when the class has no constructor.
  lvReferencable* instantiateDefaultObject() const;

 private:
  template <class T>
  friend struct lvLayoutAccess;

  struct GenericMemberOffsetTable;

  DefaultCtor* defaultCtor_;
  lvArg superClass_;
  lvArg className_;
  GenericMemberOffsetTable** reflection_;  // null: no members are described
};
