// lvrClass: the run-time description of a class of lvReferencable objects: its name, its
// superclass, the function that makes a default instance, and up to ten tables that list its fields
// and methods.
//
// The library itself uses the table of kind Fields: the serializer writes and reads those. What the
// other kinds stand for is the program's own. lvClassBuilder fills the tables from member pointers.
//
// Ownership: holds references to its name, its superclass and its tables' names.
// Threads:   any thread may ask a descriptor that is set up, and use it on objects of its own.
//            Setting it up comes before threads start that do.
// Errors:    -1, with nothing changed: for an index outside of a table, too, and for an entry that
//            was never filled in. Out of memory is -1 or std::bad_alloc.
// Cost:      an interned name is found in a few steps, any other as a key of a hash map is.
// Life:      descriptors are meant to live as long as the process. Deliberate: the tables of one
//            that goes earlier are never freed.
// Layout:    on 32-bit ARM: default constructor 36, superclass 40, name 48, reflection 56, size 60.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

class TARSELVALUES_API lvrClass : public lvReferencable {
 public:
  // Makes a new instance that nobody holds yet.
  using DefaultCtor = lvReferencable*();

  // The kinds of table. Odd kinds describe functions that are called without an object. An entry is
  // one machine word, or two for member functions.
  enum OffsetTableType : unsigned int {
    Fields = 0,      // byte offsets of lvArg fields, from the object's lvReferencable on
    Functions1 = 1,  // plain functions
    Methods2 = 2,    // member functions
    Functions3 = 3,  // plain functions
    Methods4 = 4,    // member functions
    Functions5 = 5,  // plain functions
    Fields6 = 6,     // byte offsets of lvArg fields
    Functions7 = 7,  // plain functions
    Methods8 = 8,    // member functions
    Functions9 = 9,  // plain functions
  };
  // How many kinds there are.
  static constexpr unsigned int TableCount = 10;

  // The shape of a member function that is called through the tables. What it returns is ignored.
  using Method = void (lvReferencable::*)(lvArg& result, lvArg const& argument);
  // The same with several arguments.
  using MethodNArgs = void (lvReferencable::*)(lvArg& result, lvArg const* arguments, int count);
  // The shape of a plain function.
  using Function = void(lvArg& result, lvArg const* arguments, int count);

  // One table.
  struct GenericMemberOffsetTable {
    std::uint16_t count = 0;      // of entries
    std::uint8_t entryWidth = 0;  // in bytes
    void* entries = nullptr;      // from malloc
    lvArg names;                  // nil, or an lvrHashMap from name to index
  };

  // Makes a descriptor without name, superclass and constructor.
  lvrClass();
  // Makes a descriptor. Deliberate: the number is accepted and not stored. `ctor` may be null.
  lvrClass(unsigned int, lvArg const& name, DefaultCtor* ctor);
  lvrClass(unsigned int, lvArg const& name, lvArg const& superclass, DefaultCtor* ctor);

  // Returns a new descriptor, as lvrClass() makes it. Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "Class". Any thread.
  static lvString const& getStaticClassDesc();

  lvString const& getClassDesc() const override;
  // Does nothing: the destructor releases the name and the superclass.
  int finalize() override;
  ~lvrClass() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Sets the name, normally an interned string; -1 when there is one already. Before threads
  // start.
  virtual int setClassName(lvArg const& name);
  // Assigns the name to `out`. Returns 0.
  virtual int getClassName(lvArg& out) const;
  // Sets the superclass; -1 when there is one already, or when `superclass` holds no class.
  // Before threads start.
  virtual int setSuperClass(lvArg const& superclass);
  // Assigns the superclass to `out`. Returns 0.
  virtual int getSuperClass(lvArg& out) const;

  // Returns a new default instance, or null when the class has no constructor.
  lvReferencable* instantiateDefaultObject() const;

  // --- Asking -----------------------------------------------------------------------------------

  // Returns the number of entries of a table, inherited ones included; 0 if there is no such table.
  int getNItems(OffsetTableType kind) const;

  // Returns the index that a table of this class gives for a name, or -1. Superclasses are not
  // searched. Deliberate: names count from the front of the table, inherited entries included,
  // though they were given for the class's own.
  int localLookupIndex(OffsetTableType kind, lvArg const& key) const;

  // --- Fields -----------------------------------------------------------------------------------
  // Of the even kinds with one-word entries; return 0 or -1.

  // Assigns `value` to the field.
  int setFieldAt(lvReferencable& object, lvArg const& value, OffsetTableType kind, int index) const;
  // Assigns the field to `out`.
  int getFieldAt(lvArg& out, lvReferencable const& object, OffsetTableType kind, int index) const;

  // As setFieldAt() in the table of kind Fields, by name.
  int setObjectField(lvReferencable& object, lvArg const& name, lvArg const& value) const;
  // As getFieldAt() in the table of kind Fields, by name.
  int getObjectField(lvArg& out, lvReferencable const& object, lvArg const& name) const;

  // --- Methods ----------------------------------------------------------------------------------
  // Return 0 when the method was called, else -1.

  // Calls a member function, of shape Method, on `object`.
  int invokeMethod(lvReferencable& object, lvArg& result, lvArg const& argument,
                   OffsetTableType kind, int index);
  int invokeMethod(lvReferencable& object, lvArg& result, lvArg const& argument,
                   OffsetTableType kind, lvArg const& name);

  // Calls a member function, of shape MethodNArgs, on `object`; or, of an odd kind, a plain
  // function without it.
  int invokeMethodNArgs(lvReferencable& object, lvArg& result, lvArg const* arguments, int count,
                        OffsetTableType kind, int index);
  int invokeMethodNArgs(lvReferencable& object, lvArg& result, lvArg const* arguments, int count,
                        OffsetTableType kind, lvArg const& name);

  // --- Filling the tables -----------------------------------------------------------------------
  // Return 0 or -1. Entries of the nearest superclass that has a table of the kind come first.

  // Makes a table from `n` entries at `table`, with `gap` bytes between them (-1: an entry's
  // width). 0 with nothing done for a null table; -1 when there is a table already. Before threads
  // start.
  int setDirectObjectOffsets(OffsetTableType kind, int n, void const* table, int gap);

  // The same, with as many names. Before threads start.
  int setDirectObjectNamedOffsets(OffsetTableType kind, int n, void const* table,
                                  char const* const* names);

  // The same from `n` pairs: an entry, and a char const* at the start of a slot of the same width.
  // Before threads start.
  int setDirectObjectInterleavedNamedOffsets(OffsetTableType kind, int n, void const* table);

  // A step of the above: sees to it that there is room for tables. Before threads start.
  int needReflection();
  // A step of the above: sees to it that there is a table of the kind; a new one has `n` entries, 0
  // but for those of `base`, where not null, which come first. Before threads start.
  int needOffsetTable(OffsetTableType kind, int n, GenericMemberOffsetTable const* base);
  // A step of the above: sees to it that the table of the kind, with `n` entries, can take names; -1
  // when there is no table. Before threads start.
  int needNames(OffsetTableType kind, int n);

  // --- For the library itself; not exported -----------------------------------------------------

  // Borrows the class name.
  TARSELVALUES_INTERNAL lvArg const& borrowClassName() const { return className_; }
  // Borrows a field of the table of kind Fields; null if there is none.
  TARSELVALUES_INTERNAL lvArg* borrowField(lvReferencable const& object, int index) const {
    GenericMemberOffsetTable const* const table =
        reflection_ != nullptr ? reflection_[Fields] : nullptr;
    if (table == nullptr || index < 0 || index >= table->count) {
      return nullptr;
    }
    std::intptr_t const offset = static_cast<std::intptr_t const*>(table->entries)[index];
    return offset != 0 ? &fieldAt(object, offset) : nullptr;
  }
  // The field at this offset, of which the table says that one lies there.
  TARSELVALUES_INTERNAL static lvArg& fieldAt(lvReferencable const& object, std::intptr_t offset) {
    auto const base = reinterpret_cast<std::intptr_t>(&object);
    return *reinterpret_cast<lvArg*>(base + offset);  // NOLINT(performance-no-int-to-ptr)
  }

 private:
  template <class T>
  friend struct lvLayoutAccess;

  TARSELVALUES_INTERNAL GenericMemberOffsetTable* tableOf(OffsetTableType kind) const;
  TARSELVALUES_INTERNAL unsigned char const* entryAt(OffsetTableType kind, int index) const;
  TARSELVALUES_INTERNAL std::ptrdiff_t fieldOffset(OffsetTableType kind, int index) const;
  TARSELVALUES_INTERNAL GenericMemberOffsetTable const* inheritedTable(OffsetTableType kind) const;
  TARSELVALUES_INTERNAL void dropTable(OffsetTableType kind);
  template <class NameAt>
  TARSELVALUES_INTERNAL void nameEntries(OffsetTableType kind, int n, NameAt nameAt);

  DefaultCtor* defaultCtor_;
  lvArg superClass_;
  lvArg className_;
  GenericMemberOffsetTable** reflection_;  // TableCount of them, each or all may be null
};
