// The two words of a cell, for tests that make cells as no setter makes them.
#pragma once

#include <cstdint>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace test {

// Some of the bits that belong to whoever stores a cell.
constexpr std::uint32_t Marks = 0xA5C3F7E0;
constexpr std::uint32_t OtherMarks = 0x5A3C0820;
constexpr std::uint32_t AllMarks = 0xFFFFFFE0;

inline void setTag(lvArg& cell, unsigned tag) {
  std::uint32_t& word = lvLayoutAccess<lvArg>::tagWord(cell);
  word = (word & AllMarks) | tag;
}

inline std::uintptr_t& payload(lvArg& cell) { return lvLayoutAccess<lvArg>::payload(cell); }

// A cell that holds `bits` beside its value.
inline lvArg marked(lvArg cell, std::uint32_t bits) {
  setBookkeeping(cell, bits);
  return cell;
}

// A reference of the tag that `cell` has, to no object.
inline lvArg unheld(lvArg cell) {
  cell.releaseData();
  return cell;
}

// Cells with new objects of the built-in classes.
inline lvArg newMap() { return *lvrHashMap::defaultCtorMethod(); }
inline lvArg newList() { return *lvrVector::defaultCtorMethod(); }
inline lvArg newClass() { return *lvrClass::defaultCtorMethod(); }

// A nil cell whose second word is left over from before.
inline lvArg staleNil(int leftOver) {
  lvArg cell = integer(leftOver);
  cell.setNil();
  return cell;
}

// The tags that are neither produced by the library nor taken for references.
inline std::vector<unsigned> unknownTags() {
  std::vector<unsigned> tags;
  for (unsigned tag = 1; tag < lvArg::ReferenceFlag; ++tag) {
    if (tag != lvArg::IntType && tag != lvArg::PointerType) {
      tags.push_back(tag);
    }
  }
  return tags;
}

// Gives `cell` a tag that the library never produces.
inline lvArg& makeUnknown(lvArg& cell, unsigned tag) {
  cell.setInt(77);
  setTag(cell, tag);
  return cell;
}

}  // namespace test
