// Objects of classes that the registry knows, ordinary ones and unusual ones, and a plain table of
// what there is to know about them, for models.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "support/ClassTables.h"
#include "support/Objects.h"
#include "support/ValueTrees.h"
#include "tarselvalues/reflect/lvClassBuilder.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

namespace test {

// The key of a class, made once.
template <class Class>
lvString const& keyOf() {
  static lvString const key(Class::Name);
  return key;
}

// ---- Ordinary classes --------------------------------------------------------------------------

class Point : public FieldObject {
 public:
  static constexpr char Name[] = "Point";
  lvString const& getClassDesc() const override { return keyOf<Point>(); }
  std::vector<lvArg*> cells() override { return {&x, &y}; }

  lvArg x;
  lvArg y;
};

// Its fields stand behind those of its superclass.
class Solid : public Point {
 public:
  static constexpr char Name[] = "Solid";
  lvString const& getClassDesc() const override { return keyOf<Solid>(); }
  std::vector<lvArg*> cells() override { return {&x, &y, &z}; }

  lvArg z;
};

// Its default object has fields that are not nil.
class Segment : public FieldObject {
 public:
  static constexpr char Name[] = "Segment";
  Segment() : label(integer(7)) {}
  lvString const& getClassDesc() const override { return keyOf<Segment>(); }
  std::vector<lvArg*> cells() override { return {&from, &to, &label}; }

  lvArg from;
  lvArg to;
  lvArg label;
};

// Its name needs quotes.
class Quoted : public FieldObject {
 public:
  static constexpr char Name[] = "my class";
  lvString const& getClassDesc() const override { return keyOf<Quoted>(); }
  std::vector<lvArg*> cells() override { return {&text, &word}; }

  lvArg text;
  lvArg word;
};

// ---- Unusual classes ---------------------------------------------------------------------------

// It has no fields, and its class no tables.
class Blank : public FieldObject {
 public:
  static constexpr char Name[] = "Blank";
  lvString const& getClassDesc() const override { return keyOf<Blank>(); }
  std::vector<lvArg*> cells() override { return {}; }
};

// It has no fields, but its class has a table of none.
class Tabled : public Blank {
 public:
  static constexpr char Name[] = "Tabled";
  lvString const& getClassDesc() const override { return keyOf<Tabled>(); }
};

// Its class has no constructor.
class Abstract : public Point {
 public:
  static constexpr char Name[] = "Abstract";
  lvString const& getClassDesc() const override { return keyOf<Abstract>(); }
};

// The constructor of its class makes nothing.
class Barren : public Point {
 public:
  static constexpr char Name[] = "Barren";
  lvString const& getClassDesc() const override { return keyOf<Barren>(); }
};

// No entry of its class's table was filled in.
class Hollow : public Point {
 public:
  static constexpr char Name[] = "Hollow";
  lvString const& getClassDesc() const override { return keyOf<Hollow>(); }
};

// Only the first entry of its class's table was filled in.
class Half : public Point {
 public:
  static constexpr char Name[] = "Half";
  lvString const& getClassDesc() const override { return keyOf<Half>(); }
};

// Its key leads to the class Point.
class Alias : public Point {
 public:
  static constexpr char Name[] = "Alias";
  lvString const& getClassDesc() const override { return keyOf<Alias>(); }
};

// Its class has no name, but is registered under one.
class Nameless : public Point {
 public:
  static constexpr char Name[] = "Nameless";
  lvString const& getClassDesc() const override { return keyOf<Nameless>(); }
};

// Its class is named by a text of no characters.
class Unnamed : public Point {
 public:
  static constexpr char Name[] = "";
  lvString const& getClassDesc() const override { return keyOf<Unnamed>(); }
};

// What is registered under its key is no class.
class Bogus : public Point {
 public:
  static constexpr char Name[] = "Bogus";
  lvString const& getClassDesc() const override { return keyOf<Bogus>(); }
};

// Nothing is registered under its key.
class Stranger : public Point {
 public:
  static constexpr char Name[] = "Stranger";
  lvString const& getClassDesc() const override { return keyOf<Stranger>(); }
};

// It tells when it is made and when it goes.
class Watched : public FieldObject {
 public:
  static constexpr char Name[] = "Watched";
  Watched() { log() += "made "; }
  ~Watched() override { log() += "gone "; }
  lvString const& getClassDesc() const override { return keyOf<Watched>(); }
  std::vector<lvArg*> cells() override { return {&value}; }

  static std::string& log() {
    static std::string text;
    return text;
  }

  lvArg value;
};

// ---- The registry ------------------------------------------------------------------------------

inline void registerAs(lvArg const& name, lvArg const& described) {
  EXPECT_EQ(lvtClassRegistry::getInstance()->putClass(name, described), 0) << textOf(name);
}

template <class Class>
void registerAs(lvClass const& described) {
  registerAs(keyOf<Class>(), described);
}

template <class Class>
lvReferencable* makeNew() {
  return new Class;
}

inline lvReferencable* makeNothing() { return nullptr; }

// A class with both fields of Point, and its own behind them.
inline lvClass likePoint(lvArg const& name, lvrClass::DefaultCtor* ctor,
                         std::vector<std::intptr_t> const& own = {}) {
  std::intptr_t const none[] = {0};
  lvClass const point(lvtClassRegistry::getInstance()->getClass(keyOf<Point>()));
  lvClass const described(1, name, point, ctor);
  EXPECT_EQ(described->setDirectObjectOffsets(lvrClass::Fields, static_cast<int>(own.size()),
                                              own.empty() ? none : own.data(), 0),
            0);
  return described;
}

// A class with a table of two fields, of which the first `filled` are those of Point.
template <class Class>
lvClass partlyFilled(int filled) {
  std::intptr_t offset = offsetOf<Point>(&Class::x);
  lvrClass::GenericMemberOffsetTable base;
  base.count = static_cast<std::uint16_t>(filled);
  base.entryWidth = sizeof(offset);
  base.entries = &offset;
  lvClass const described(1, keyOf<Class>(), &makeNew<Class>);
  EXPECT_EQ(described->needOffsetTable(lvrClass::Fields, 2, &base), 0);
  return described;
}

inline void registerOrdinaryClasses() {
  EXPECT_EQ(lvClassBuilder<Point>(Point::Name)
                .field("x", &Point::x)
                .field("y", &Point::y)
                .registerClass(),
            0);
  registerAs<Solid>(likePoint(keyOf<Solid>(), &makeNew<Solid>, {offsetOf<Solid>(&Solid::z)}));
  EXPECT_EQ(lvClassBuilder<Segment>(Segment::Name)
                .field("from", &Segment::from)
                .field("to", &Segment::to)
                .field("label", &Segment::label)
                .registerClass(),
            0);
  EXPECT_EQ(lvClassBuilder<Quoted>(Quoted::Name)
                .field("text", &Quoted::text)
                .field("word", &Quoted::word)
                .registerClass(),
            0);
  EXPECT_EQ(lvClassBuilder<Watched>(Watched::Name).field("value", &Watched::value).registerClass(),
            0);
}

inline void registerUnusualClasses() {
  EXPECT_EQ(lvClassBuilder<Blank>(Blank::Name).registerClass(), 0);
  std::intptr_t const none = 0;
  lvClass const tabled(1, keyOf<Tabled>(), &makeNew<Tabled>);
  EXPECT_EQ(tabled->setDirectObjectOffsets(lvrClass::Fields, 0, &none, 0), 0);
  registerAs<Tabled>(tabled);
  registerAs<Abstract>(likePoint(keyOf<Abstract>(), nullptr));
  registerAs<Barren>(likePoint(keyOf<Barren>(), &makeNothing));
  registerAs<Hollow>(partlyFilled<Hollow>(0));
  registerAs<Half>(partlyFilled<Half>(1));
  registerAs<Alias>(lvtClassRegistry::getInstance()->getClass(keyOf<Point>()));
  registerAs<Nameless>(likePoint(lvArg(), &makeNew<Nameless>));
  registerAs<Unnamed>(likePoint(keyOf<Unnamed>(), &makeNew<Unnamed>));
  registerAs(keyOf<Bogus>(), integer(5));
  keyOf<Stranger>();  // So that no test makes it at a time when it counts what is made.
}

// Registers all of these, the first time.
inline void registerClasses() {
  static bool const done = [] {
    registerOrdinaryClasses();
    registerUnusualClasses();
    return true;
  }();
  EXPECT_TRUE(done);
}

// ---- For models --------------------------------------------------------------------------------

struct ClassFacts {
  std::string written;  // the name that the writer is given
  int entries = 0;      // in the table of fields
  int usable = 0;       // so many of them, from the front, can be read and set
  bool hasCtor = true;  // whether there are default objects
  bool isOrdinary = false;
  std::string shown = {};  // a default object, of a built-in class
};

// By key. A key that is not here has no class.
inline std::map<std::string, ClassFacts> const& classFacts() {
  static std::map<std::string, ClassFacts> const facts = {
      {"Point", {"Point", 2, 2, true, true}},
      {"Solid", {"Solid", 3, 3, true, true}},
      {"Segment", {"Segment", 3, 3, true, true}},
      {"my class", {"my class", 2, 2, true, true}},
      {"Blank", {"Blank", 0, 0}},
      {"Tabled", {"Tabled", 0, 0}},
      {"Abstract", {"Abstract", 2, 2, false}},
      {"Barren", {"Barren", 2, 2, false}},
      {"Hollow", {"Hollow", 2, 0}},
      {"Half", {"Half", 2, 1}},
      {"Alias", {"Point", 2, 2}},
      {"", {"", 2, 2}},
      {"Class", {"Class", 0, 0, true, false, "<tag 27>"}},
      {"DLList", {"DLList", 0, 0, true, false, "[]"}},
      {"HashMap", {"HashMap", 0, 0, true, false, "[]"}},
      {"Stack", {"Stack", 0, 0, true, false, "<tag 24>"}},
      {"TupleSet", {"TupleSet", 0, 0, true, false, "{}"}},
      {"Vector", {"Vector", 0, 0, true, false, "[]"}},
  };
  return facts;
}

// A new object of one of the classes above, by its key.
inline FieldObject* newObject(std::string const& name) {
  static std::map<std::string, FieldObject* (*)()> const makers = {
      {"Point", []() -> FieldObject* { return new Point; }},
      {"Solid", []() -> FieldObject* { return new Solid; }},
      {"Segment", []() -> FieldObject* { return new Segment; }},
      {"my class", []() -> FieldObject* { return new Quoted; }},
      {"Blank", []() -> FieldObject* { return new Blank; }},
      {"Tabled", []() -> FieldObject* { return new Tabled; }},
      {"Abstract", []() -> FieldObject* { return new Abstract; }},
      {"Barren", []() -> FieldObject* { return new Barren; }},
      {"Hollow", []() -> FieldObject* { return new Hollow; }},
      {"Half", []() -> FieldObject* { return new Half; }},
      {"Alias", []() -> FieldObject* { return new Alias; }},
      {"Nameless", []() -> FieldObject* { return new Nameless; }},
      {"", []() -> FieldObject* { return new Unnamed; }},
      {"Bogus", []() -> FieldObject* { return new Bogus; }},
      {"Stranger", []() -> FieldObject* { return new Stranger; }},
      {"Watched", []() -> FieldObject* { return new Watched; }},
  };
  return makers.at(name)();
}

// An object of a class, and the values of its first fields.
inline lvArg objectOf(std::string const& name, std::vector<lvArg> const& values = {}) {
  FieldObject& object = *newObject(name);
  lvArg const cell(object);
  std::vector<lvArg*> const cells = object.cells();
  for (std::size_t i = 0; i < values.size(); ++i) {
    *cells.at(i) = values[i];
  }
  return cell;
}

inline lvArg point(lvArg const& x, lvArg const& y) { return objectOf("Point", {x, y}); }
inline lvArg point(int x, int y) { return point(integer(x), integer(y)); }

}  // namespace test
