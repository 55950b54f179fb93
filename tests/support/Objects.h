// Objects that the tests of containers put into them, and how they hold the containers.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "support/Cells.h"

namespace test {

// An integer as it is, a text in quotes, anything else by its tag.
inline std::string brief(lvArg const& cell) {
  switch (cell.getType()) {
    case lvArg::NilType:
      return "nil";
    case lvArg::IntType:
      return std::to_string(cell.getInt());
    case lvArg::StringType:
      return "'" + textOf(cell) + "'";
    default:
      return "<tag " + std::to_string(cell.getType()) + ">";
  }
}

// An object that a cell holds from the start, with its own type at hand.
template <class Object>
class Held {
 public:
  template <class... Arguments>
  explicit Held(Arguments&&... arguments)
      : object_(new Object(std::forward<Arguments>(arguments)...)), cell_(*object_) {}

  Object* operator->() const { return object_; }
  Object& operator*() const { return *object_; }
  // The cell that keeps the object alive.
  lvArg& cell() { return cell_; }

 private:
  Object* object_;
  lvArg cell_;
};

// An object with the hash that it is told to have, which does what it is told when it goes.
class ActingObject : public lvReferencable {
 public:
  using Action = std::function<void()>;

  explicit ActingObject(Action atEnd, unsigned hash = 0) : atEnd_(std::move(atEnd)), hash_(hash) {}

  unsigned int hashCode() const override { return hash_; }
  int finalize() override {
    if (atEnd_) {
      std::exchange(atEnd_, nullptr)();
    }
    return 0;
  }

 private:
  Action atEnd_;
  unsigned hash_;
};

// A cell with the only reference to an object that runs `atEnd` when it goes.
inline lvArg acting(ActingObject::Action atEnd, unsigned hash = 0) {
  return *new ActingObject(std::move(atEnd), hash);
}

// A cell with the only reference to an object that appends `name` to `log` when it goes.
inline lvArg logging(std::string& log, std::string const& name, unsigned hash = 0) {
  return acting([&log, name] { log += name; }, hash);
}

// A cell with an object that only looks at its hash, to choose where a map puts it.
inline lvArg keyWithHash(unsigned hash) { return acting(nullptr, hash); }

}  // namespace test
