// lvClassBuilder: describes a class of your own to the library, in the style of the class itself.
//
//   class Point : public lvReferencable {
//    public:
//     lvString const& getClassDesc() const override;  // returns the interned "Point"
//     void scale(lvArg& result, lvArg const& factor);
//
//     lvArg x;
//     lvArg y;
//   };
//
//   lvClassBuilder<Point>("Point")
//       .field("x", &Point::x)
//       .field("y", &Point::y)
//       .method<lvrClass::Methods2>("scale", &Point::scale)
//       .registerClass();
//
// After that an object of the class is written and read by the serializer, field by field in this
// order, and its fields and methods are found by name. The class must be default-constructible.
//
// A class derived from Point passes Point's builder to its own: it then has Point's fields and
// methods, names included, in front of its own.
//
// Ownership: the builder, the registry and whoever calls build() hold the class. The names of
//            fields and methods must live until build().
// Threads:   before threads start that use the class or the registry.
// Errors:    what cannot be described does not compile. build() gives a nil handle, registerClass()
//            -1, when a table cannot be filled: a kind takes 65535 entries at most.
// Cost:      makes one object of the class for each field, to find out where the field lies.
// Example:   examples/objects.cpp
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>
#include <vector>

#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

namespace tarselvalues {

// What a builder puts into one table.
struct TableContents {
  std::vector<unsigned char> entries;
  std::vector<char const*> names;
};

}  // namespace tarselvalues

template <class T>
class lvClassBuilder {
  static_assert(std::is_base_of_v<lvReferencable, T>, "only counted objects are described");
  static_assert(std::is_default_constructible_v<T>, "the library makes default objects");

 public:
  // For a class called `name` without superclass.
  explicit lvClassBuilder(char const* name)
      : className(name), described(1, className, &makeDefault) {}

  // For a class derived from the one that `base` describes.
  template <class Base>
  lvClassBuilder(char const* name, lvClassBuilder<Base> const& base)
      : className(name),
        superClass(base.described),
        described(1, className, &makeDefault),
        tables(base.tables) {
    static_assert(std::is_base_of_v<Base, T>, "the class must be derived from its superclass");
  }

  // Appends a field. It is an lvArg, not a handle, because a text may put any value there.
  template <lvrClass::OffsetTableType Kind = lvrClass::Fields, class Cell, class Owner>
  lvClassBuilder& field(char const* name, Cell Owner::*member) {
    static_assert(Kind == lvrClass::Fields || Kind == lvrClass::Fields6, "a kind of fields");
    static_assert(std::is_same_v<Cell, lvArg>, "a field is an lvArg");
    lvArg const sample(*makeDefault());
    lvReferencable const& object = *sample.getReferencable();
    lvArg const& cell = static_cast<T const&>(object).*member;
    return add(Kind, name,
               reinterpret_cast<char const*>(&cell) - reinterpret_cast<char const*>(&object));
  }

  // Appends a member function of one of these shapes. Keep to one shape within a kind:
  // invokeMethod() calls the first, invokeMethodNArgs() the second.
  template <lvrClass::OffsetTableType Kind, class Result, class Owner>
  lvClassBuilder& method(char const* name, Result (Owner::*member)(lvArg&, lvArg const&)) {
    return addMethod<Kind, Result>(name, member);
  }
  template <lvrClass::OffsetTableType Kind, class Result, class Owner>
  lvClassBuilder& method(char const* name, Result (Owner::*member)(lvArg&, lvArg const&) const) {
    return addMethod<Kind, Result>(name, member);
  }
  template <lvrClass::OffsetTableType Kind, class Result, class Owner>
  lvClassBuilder& method(char const* name, Result (Owner::*member)(lvArg&, lvArg const*, int)) {
    return addMethod<Kind, Result>(name, member);
  }
  template <lvrClass::OffsetTableType Kind, class Result, class Owner>
  lvClassBuilder& method(char const* name,
                         Result (Owner::*member)(lvArg&, lvArg const*, int) const) {
    return addMethod<Kind, Result>(name, member);
  }

  // Appends a plain function.
  template <lvrClass::OffsetTableType Kind>
  lvClassBuilder& function(char const* name, lvrClass::Function* called) {
    static_assert(Kind % 2 != 0 && Kind < lvrClass::TableCount, "a kind of functions");
    return add(Kind, name, called);
  }

  // Fills the tables and returns the class, or nil. What is appended to a filled table has no
  // effect.
  lvClass build() {
    for (unsigned int i = 0; i < lvrClass::TableCount; ++i) {
      auto const kind = static_cast<lvrClass::OffsetTableType>(i);
      tarselvalues::TableContents const& table = tables[i];
      if (!table.names.empty() && described->getNItems(kind) == 0 &&
          described->setDirectObjectNamedOffsets(kind, static_cast<int>(table.names.size()),
                                                 table.entries.data(), table.names.data()) != 0) {
        return lvClass(lvArg::NilValue);
      }
    }
    // Only now: the tables are complete by themselves and are not to inherit a second time.
    described->setSuperClass(superClass);
    return described;
  }

  // Registers the class under its name. Returns 0, or -1 when the name is taken.
  int registerClass() {
    lvClass const built = build();
    return built.isNil() ? -1 : lvtClassRegistry::getInstance()->putClass(className, built);
  }

 private:
  template <class>
  friend class lvClassBuilder;

  static lvReferencable* makeDefault() { return new T; }

#pragma GCC diagnostic push
// On ARM GCC shifts the distance to a base in front of the object part by itself, and complains.
#pragma GCC diagnostic ignored "-Wshift-negative-value"
  template <lvrClass::OffsetTableType Kind, class Result, class Owner, class Member>
  lvClassBuilder& addMethod(char const* name, Member Owner::*member) {
    static_assert(
        Kind == lvrClass::Methods2 || Kind == lvrClass::Methods4 || Kind == lvrClass::Methods8,
        "a kind of methods");
    static_assert(std::is_void_v<Result> || std::is_scalar_v<Result>,
                  "the result is ignored, so it must not need room from the caller");
    return add(Kind, name, static_cast<Member lvReferencable::*>(static_cast<Member T::*>(member)));
  }
#pragma GCC diagnostic pop

  template <class Entry>
  lvClassBuilder& add(lvrClass::OffsetTableType kind, char const* name, Entry const& entry) {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(&entry);
    tarselvalues::TableContents& table = tables[kind];
    table.names.push_back(name);
    try {
      table.entries.insert(table.entries.end(), bytes, bytes + sizeof(entry));
    } catch (...) {
      table.names.pop_back();  // Without its entry it would name the next one.
      throw;
    }
    return *this;
  }

  lvString className;
  lvArg superClass;
  lvClass described;
  std::array<tarselvalues::TableContents, lvrClass::TableCount> tables;
};
