// Looks into the table of interned strings and at its entries from outside.
#pragma once

#include <pthread.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/StringModel.h"
#include "tarselvalues/core/LayoutAccess.h"
#include "tarselvalues/core/lvString.h"

namespace test {

using Entry = lvString::StringEntry;

// Holds the lock of the table.
class TableLock {
 public:
  TableLock() : table(*lvString::getHashTable()) { table.writeLock(); }
  ~TableLock() { table.unlock(); }
  TableLock(TableLock const&) = delete;
  TableLock& operator=(TableLock const&) = delete;

 private:
  lvString::HashTable& table;
};

// Whether nobody holds the lock of the table, not even the calling thread.
inline bool isTableFree() {
  pthread_rwlock_t& lock = lvLayoutAccess<lvString::HashTable>::lock(*lvString::getHashTable());
  bool const isFree = pthread_rwlock_trywrlock(&lock) == 0;
  if (isFree) {
    pthread_rwlock_unlock(&lock);
  }
  return isFree;
}

// The entries of one chain, first to last. Requires the lock where threads run.
inline std::vector<Entry const*> chainAt(std::size_t bucket) {
  std::vector<Entry const*> chain;
  Entry const* entry =
      lvLayoutAccess<lvString::HashTable>::bucket(*lvString::getHashTable(), bucket);
  for (; entry != nullptr; entry = lvLayoutAccess<Entry>::next(*entry)) {
    chain.push_back(entry);
  }
  return chain;
}

inline std::vector<Entry const*> chainOf(std::string const& text) {
  return chainAt(modelHash(text) % 1009);
}

// All entries, in no order that matters. Requires the lock where threads run.
inline std::vector<Entry const*> allEntries() {
  std::vector<Entry const*> entries;
  for (std::size_t bucket = 0; bucket < 1009; ++bucket) {
    for (Entry const* const entry : chainAt(bucket)) {
      entries.push_back(entry);
    }
  }
  return entries;
}

inline std::size_t entryCount() {
  TableLock const lock;
  return allEntries().size();
}

// How many entries have this text; looked for in all chains.
inline int entriesWith(std::string const& text) {
  TableLock const lock;
  int found = 0;
  for (Entry const* const entry : allEntries()) {
    char const* const bytes = entry->getText() != nullptr ? entry->getText() : "";
    found += text == std::string(bytes, static_cast<std::size_t>(entry->getLength())) ? 1 : 0;
  }
  return found;
}

// The count of an object that threads are busy with.
inline int lockedCount(lvReferencable const& object) {
  pthread_mutex_t& mutex = lvLayoutAccess<lvReferencable>::mutex(object);
  pthread_mutex_lock(&mutex);
  int const count = lvLayoutAccess<lvReferencable>::count(object);
  pthread_mutex_unlock(&mutex);
  return count;
}

inline Entry const* entryOf(lvArg const& handle) {
  return static_cast<Entry const*>(handle.getReferencable());
}

// A text of the same hash for each number below 90000: no byte of it counts where the number
// stands.
inline std::string textOfOneHash(int number) {
  return "Text " + std::to_string(10000 + number) + " of one hash, by its end";
}

inline std::vector<std::string> textsOfOneHash(int count) {
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) {
    texts.push_back(textOfOneHash(i));
  }
  return texts;
}

// So many texts whose entries share a chain.
inline std::vector<std::string> textsOfOneChain(std::size_t count) {
  constexpr unsigned bucket = 271;
  std::vector<std::string> texts;
  for (int i = 0; texts.size() < count; ++i) {
    std::string const text = "one chain " + std::to_string(i);
    if (modelHash(text) % 1009 == bucket) {
      texts.push_back(text);
    }
  }
  return texts;
}

// Gives an entry another text. Other threads look at all entries of a chain, under the table's lock.
inline void setAnew(lvString const& entry) {
  lvString::HashTable& table = *lvString::getHashTable();
  table.writeLock();
  static_cast<lvrString&>(*entry.getReferencable())
      .setStringData("anew", -1, lvrString::CopyAndOwn);
  table.unlock();
}

}  // namespace test
