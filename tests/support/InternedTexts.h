// Looks into the table of interned strings without making an entry. One thread at a time.
#pragma once

#include <cstdint>
#include <cstring>

#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/core/lvString.h"

namespace test {

// Returns the entry with this text, or null. It takes no reference.
inline lvString::StringEntry const* internedEntry(char const* text) {
  using Table = lvLayoutAccess<lvString::HashTable>;
  using EntryLayout = lvLayoutAccess<lvString::StringEntry>;
  lvString::HashTable const& table = *lvString::getHashTable();
  for (std::uint32_t i = 0; i < Table::bucketCount(table); ++i) {
    for (auto const* entry = Table::bucket(table, i); entry != nullptr;
         entry = EntryLayout::next(*entry)) {
      if (std::strcmp(entry->getText(), text) == 0) {
        return entry;
      }
    }
  }
  return nullptr;
}

inline bool isInterned(char const* text) { return internedEntry(text) != nullptr; }

}  // namespace test
