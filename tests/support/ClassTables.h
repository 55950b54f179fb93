// The tables of class descriptors: to fill, to look at, and to keep.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "tarselvalues/reflect/LayoutAccess.h"
#include "tarselvalues/reflect/lvClass.h"

namespace test {

using TableKind = lvrClass::OffsetTableType;
using ClassTable = lvrClass::GenericMemberOffsetTable;
// What tables are made of: one word per entry, or two.
using Words = std::vector<std::uintptr_t>;

constexpr std::size_t WordSize = sizeof(std::uintptr_t);

inline TableKind kindOf(unsigned number) { return static_cast<TableKind>(number); }

inline std::vector<TableKind> allKinds() {
  return {lvrClass::Fields,   lvrClass::Functions1, lvrClass::Methods2, lvrClass::Functions3,
          lvrClass::Methods4, lvrClass::Functions5, lvrClass::Fields6,  lvrClass::Functions7,
          lvrClass::Methods8, lvrClass::Functions9};
}

inline std::size_t wordsPerEntry(TableKind kind) {
  return kind == lvrClass::Methods2 || kind == lvrClass::Methods4 || kind == lvrClass::Methods8 ? 2
                                                                                                : 1;
}

// Keeps a class until the process ends, as classes are meant to live: the tables of one that goes
// earlier would stay behind.
inline lvClass keep(lvClass const& described) {
  static auto& kept = *new std::vector<lvClass>;
  kept.push_back(described);
  return described;
}

// A new class that is kept.
inline lvrClass& keptClass() { return *keep(lvClass()).getClass(); }
inline lvrClass& keptSubclass(lvArg const& superClass) {
  return *keep(lvClass(lvArg(*new lvrClass(0, lvArg(), superClass, nullptr)))).getClass();
}

// The array of tables; null before there is one.
inline ClassTable* const* tablesOf(lvrClass const& described) {
  ClassTable* const* tables = nullptr;
  std::memcpy(
      &tables,
      reinterpret_cast<char const*>(&described) + lvLayoutAccess<lvrClass>::reflectionOffset,
      sizeof(tables));
  return tables;
}

// One table, null if it is not there.
inline ClassTable const* tableOf(lvrClass const& described, TableKind kind) {
  ClassTable* const* const tables = tablesOf(described);
  return tables != nullptr && kind < lvrClass::TableCount ? tables[kind] : nullptr;
}

// All words of a table's entries; none without a table.
inline Words wordsOf(lvrClass const& described, TableKind kind) {
  ClassTable const* const table = tableOf(described, kind);
  if (table == nullptr) {
    return {};
  }
  Words words(std::size_t{table->count} * table->entryWidth / WordSize);
  if (!words.empty()) {
    std::memcpy(words.data(), table->entries, words.size() * WordSize);
  }
  return words;
}

// Fills a table from an array of entries, be they words, offsets or pointers.
template <class Entry>
int fill(lvrClass& described, TableKind kind, std::vector<Entry> const& entries) {
  return described.setDirectObjectOffsets(kind, static_cast<int>(entries.size()), entries.data(),
                                          0);
}

// The entry for a field.
template <class Object, class Owner>
std::intptr_t offsetOf(lvArg Owner::*field) {
  Object const object;
  lvReferencable const& start = object;
  return reinterpret_cast<std::intptr_t>(&(object.*field)) -
         reinterpret_cast<std::intptr_t>(&start);
}

}  // namespace test
