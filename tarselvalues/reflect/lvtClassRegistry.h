// lvtClassRegistry: the process-wide table from class name to class descriptor.
//
// The serializer asks it for the class of an object that it writes, and for the class that a text
// names. It holds seven classes from the start: "Class", "DLList", "HashMap", "Stack", "String",
// "TupleSet" and "Vector".
// Deliberate: the default object of "HashMap" is a vector.
//
// Ownership: the registry holds references to names and classes, which it never gives up.
// Threads:   any thread may ask for classes. They are put in before threads start that ask.
// Errors:    out of memory is std::bad_alloc; the next getInstance() goes on where one failed.
// Cost:      an interned name is found in a few steps, any other by bisection, as are all beyond
//            the first 120 names.
// Example:   examples/objects.cpp
// Layout:    on 32-bit ARM: classes 4, size 12.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"

class TARSELVALUES_API lvtClassRegistry {
 public:
  // Returns the one registry of the process, which the first call makes and fills. It is never
  // destroyed. Any thread.
  static lvtClassRegistry* getInstance();

  // Makes an empty registry.
  lvtClassRegistry();
  lvtClassRegistry(lvtClassRegistry const&) = delete;
  lvtClassRegistry& operator=(lvtClassRegistry const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  virtual ~lvtClassRegistry();
  // Registers a class under a name. Returns 0, or -1 when the name is taken: the first class stays.
  // Before threads start.
  virtual int putClass(lvArg const& name, lvArg const& classHandle);
  // Returns the class of that name, nil for an unknown one.
  virtual lvArg getClass(lvArg const& name);

  // Registers the built-in classes, through putClass(), so that a derived registry may intercept
  // them. Before threads start.
  void addBuiltinClasses();

 private:
  template <class T>
  friend struct lvLayoutAccess;

  lvArg classes_;  // holds an lvrTupleSet
};
