// lvClass: a handle to a class descriptor, which is itself a cell.
//
// Ownership: holds one counted reference, or is nil.
// Threads:   one thread at a time per handle.
// Errors:    out of memory is std::bad_alloc; nothing is leaked.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"

class TARSELVALUES_API lvClass : public lvArg {
 public:
  // Makes a new descriptor, as the lvrClass constructor with the same arguments does, and holds it.
  lvClass();
  lvClass(unsigned int number, lvArg const& name, lvrClass::DefaultCtor* ctor);
  lvClass(unsigned int number, lvArg const& name, lvClass const& superclass,
          lvrClass::DefaultCtor* ctor);

  // Shares the descriptor if the tag of `value` is ClassType; nil otherwise.
  lvClass(lvArg const& value);  // NOLINT(google-explicit-constructor)

  // The same, but takes the reference over from `value`, which is nil then; or leaves it alone.
  lvClass(lvArg&& value) noexcept;  // NOLINT(google-explicit-constructor)

  // Returns the class name; nil when the handle holds no descriptor.
  lvArg getClassDesc() const;

  // Borrows the descriptor; null when the handle holds none.
  lvrClass* getClass() const;
  // As getClass().
  lvrClass* operator->() const { return getClass(); }
};
