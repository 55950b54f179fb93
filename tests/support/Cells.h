// Short words for the tests: making cells, reading counts.
#pragma once

#include <cstdint>
#include <string>

#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvValue.h"

namespace test {

inline lvArg integer(int value) {
  lvArg cell;
  cell.setInt(value);
  return cell;
}

inline lvArg pointer(std::uintptr_t address) {
  lvArg cell;
  cell.setPointer(reinterpret_cast<void*>(address));
  return cell;
}

// A cell with a string object of its own, not interned.
inline lvArg string(std::string const& text) {
  lvValue cell;
  cell.setString(text.data(), static_cast<int>(text.size()), lvrString::CopyAndOwnEmpty);
  return cell;
}

// The text of a string cell; "<no text>" without one.
inline std::string textOf(lvArg const& cell) {
  int length = 0;
  char const* const text = lvValue(cell).getString(&length);
  return text != nullptr ? std::string(text, static_cast<std::size_t>(length)) : "<no text>";
}

// How many hold the object.
inline int countOf(lvReferencable const& object) {
  return lvLayoutAccess<lvReferencable>::count(object);
}
inline int countOf(lvArg const& cell) { return countOf(*cell.getReferencable()); }

// The bits of the first word that belong to whoever stores the cell.
inline std::uint32_t bookkeepingOf(lvArg const& cell) {
  return lvLayoutAccess<lvArg>::tagWord(cell) & ~std::uint32_t{0x1F};
}
inline void setBookkeeping(lvArg& cell, std::uint32_t bits) {
  std::uint32_t& word = lvLayoutAccess<lvArg>::tagWord(cell);
  word = (word & 0x1F) | (bits & ~std::uint32_t{0x1F});
}

// An object that tells when it is finalized and destroyed.
class Probe : public lvReferencable {
 public:
  struct Log {
    int finalized = 0;
    int destroyed = 0;
  };

  explicit Probe(Log& target) : log(target) {}
  ~Probe() override { ++log.destroyed; }
  int finalize() override {
    ++log.finalized;
    return 0;
  }

 private:
  Log& log;
};

}  // namespace test
