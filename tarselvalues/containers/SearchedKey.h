// A key that a container of sorted cells looks for. Not for users.
#pragma once

#include <cstring>

#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvrString.h"

namespace tarselvalues {

// Order of an integer and a cell, as lvArg::compareTo() has it.
inline int orderOfInteger(int number, lvArg const& cell) {
  if (cell.getType() != lvArg::IntType) {
    return static_cast<int>(lvArg::IntType) - static_cast<int>(cell.getType());
  }
  return static_cast<int>(static_cast<unsigned>(number) - static_cast<unsigned>(cell.getInt()));
}

// Order of two cells, of which the first holds a string of the library's own, as lvArg::compareTo()
// has it. Runs no function of the program, not even where the other string is of its class.
inline int orderOfText(lvArg const& own, char const* text, lvArg const& cell) {
  lvReferencable const* const object = cell.getReferencable();
  if (cell.getType() != lvArg::StringType || object == nullptr ||
      object->getKind() != lvReferencable::StringKind) {
    return own.compareTo(cell);
  }
  return std::strcmp(text, static_cast<lvrString const*>(object)->getTextOrEmpty());
}

// A key, and how it is compared with the cells of a container.
//
// Comparing an integer, or a string of the library's own, runs no function of the program, so
// nothing changes meanwhile. Where comparing the key may run one, the container is kept alive for
// as long as this object is there.
class TARSELVALUES_INTERNAL SearchedKey {
 public:
  enum class Way { Integer, Text, Any };

  // The key must stay where it is.
  SearchedKey(lvArg const& searched, lvReferencable const& container)
      : key(searched), way(wayOf(searched)), kept(container, way == Way::Any && mayRunProgram()) {}

  lvArg const& get() const { return key; }
  Way getWay() const { return way; }

  // Whether nothing changes while the key is compared, so that no comparison need be made twice.
  bool isDirect() const { return way != Way::Any; }

 private:
  static Way wayOf(lvArg const& key) {
    if (!Tuned) {
      return Way::Any;
    }
    if (key.getType() == lvArg::IntType) {
      return Way::Integer;
    }
    lvReferencable const* const object = key.getReferencable();
    bool const isText =
        key.getType() == lvArg::StringType && object != nullptr && isOwnString(*object);
    return isText ? Way::Text : Way::Any;
  }

  bool mayRunProgram() const {
    lvReferencable const* const object = key.getReferencable();
    return object != nullptr && tarselvalues::mayRunProgram(*object);
  }

  lvArg const& key;
  Way const way;
  KeptAlive const kept;
};

}  // namespace tarselvalues
