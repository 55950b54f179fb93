#include "tarselvalues/containers/lvrHashMap.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include "tarselvalues/containers/DeliveredOld.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"

namespace {

constexpr int InvalidArgument = -22;
constexpr int Busy = -16;

constexpr std::uint32_t EmptyHashSum = 0x8386a731;
constexpr std::uint32_t HashSumFactor = 9563891;

// Counts the new entries of all maps; even ones go to the head of their chain, odd ones to its
// tail. Any thread may disturb it, which only changes where in a chain an entry is linked.
std::atomic<unsigned int> insertions{0};

// Starts the removal counts of bucket blocks so far apart that no two blocks share a number.
std::atomic<std::uint64_t> blocksMade{0};
constexpr unsigned BlockShift = 32;

// The bytes of the bucket heads, up to where a number may stand.
std::size_t bytesOfHeads(std::size_t heads) {
  constexpr std::size_t unit = sizeof(std::uint64_t);
  return (heads * sizeof(lvrHashMap::HashEntry*) + unit - 1) / unit * unit;
}

}  // namespace

// What stands behind the bucket heads, out of sight of whoever knows the map's fields: the number
// that changes whenever an entry goes, by which a cursor sees that its entry may be gone. Behind
// and not in front, so that the map points to the start of the block: tools that look for leaks
// doubt any other pointer.
std::uint64_t& lvrHashMap::removalsBehind(HashEntry** heads, std::uint32_t size) {
  return *reinterpret_cast<std::uint64_t*>(reinterpret_cast<char*>(heads) + bytesOfHeads(size));
}

lvrHashMap::HashEntry** lvrHashMap::allocateBuckets(std::uint32_t size) {
  constexpr std::size_t most = PTRDIFF_MAX / sizeof(HashEntry*) - 4;
  if (std::size_t{size} > most) {
    throw std::bad_array_new_length();
  }
  // From calloc, so that a large table costs only the pages that its entries touch.
  void* const memory = std::calloc(1, bytesOfHeads(size) + sizeof(std::uint64_t));
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  auto** const heads = static_cast<HashEntry**>(memory);
  std::uint64_t const number = blocksMade.fetch_add(1, std::memory_order_relaxed) + 1;
  new (&removalsBehind(heads, size)) std::uint64_t(number << BlockShift);
  return heads;
}

std::uint64_t lvrHashMap::removals() const {
  return buckets != nullptr ? removalsBehind(buckets, hashSize) : 0;
}

// ---- Making and asking -------------------------------------------------------------------------

lvrHashMap::lvrHashMap(unsigned int size)
    : count(0), hashSize(size), buckets(nullptr), spareEntry(nullptr), hashSum(EmptyHashSum) {
  setKind(MapKind);
}

lvrHashMap::~lvrHashMap() = default;

lvReferencable* lvrHashMap::defaultCtorMethod() { return new lvrHashMap(DefaultHashSize); }

lvString const& lvrHashMap::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::HashMap);
}

lvString const& lvrHashMap::getClassDesc() const { return getStaticClassDesc(); }

unsigned int lvrHashMap::hashCode() const { return hashSum; }

int lvrHashMap::getSize() const { return count; }

// Whether the map has an entry in the chain of this hash; the entry itself is not looked at.
bool lvrHashMap::has(HashEntry const* entry, unsigned int hash) const {
  HashEntry const* alive = buckets != nullptr ? buckets[hash % hashSize] : nullptr;
  while (alive != nullptr && alive != entry) {
    alive = alive->next;
  }
  return alive != nullptr;
}

// Returns the entry with this key, or null. Comparing keys may run a function of the program, which
// may change the map: the search then goes on from its entry, or ends if that has gone, or has been
// put to use for another key. It never looks at more entries than the map had at first, so it ends
// even if each comparison moves its entry or adds others.
lvrHashMap::HashEntry* lvrHashMap::find(lvArg const& key, unsigned int hash,
                                        tarselvalues::KeptWhileAsking& self) const {
  HashEntry* entry = buckets != nullptr ? buckets[hash % hashSize] : nullptr;
  for (std::int32_t left = count; entry != nullptr && left > 0; --left) {
    std::uint64_t const before = removals();
    lvReferencable const* const object = entry->key.getReferencable();
    bool const equal = self.ask(entry->key).equiv(key) != 0;
    if (removals() != before && (!has(entry, hash) || entry->key.getReferencable() != object)) {
      return nullptr;
    }
    if (equal) {
      return entry;
    }
    entry = entry->next;
  }
  return nullptr;
}

// Returns the link in a chain that leads to `entry`; for null, the one that ends the chain.
lvrHashMap::HashEntry** lvrHashMap::linkTo(HashEntry const* entry, unsigned int hash) const {
  HashEntry** link = &buckets[hash % hashSize];
  while (*link != entry) {
    link = &(*link)->next;
  }
  return link;
}

lvArg lvrHashMap::get(lvArg const& key) const {
  if (count == 0) {
    return lvArg::NilValue;
  }
  tarselvalues::KeptWhileAsking self(*this);
  unsigned int const hash = self.ask(key).hashCode();
  HashEntry const* const entry = find(key, hash, self);
  return entry != nullptr ? entry->value : lvArg::NilValue;
}

// ---- Changing ----------------------------------------------------------------------------------

int lvrHashMap::setHashSize(unsigned int size) {
  if (size == hashSize) {
    return 0;
  }
  if (count != 0) {
    return Busy;
  }
  std::free(std::exchange(buckets, nullptr));
  hashSize = size != 0 ? size : DefaultHashSize;
  return 0;
}

int lvrHashMap::needStorage() {
  if (buckets != nullptr) {
    return 0;
  }
  if (hashSize == 0) {
    return InvalidArgument;
  }
  buckets = allocateBuckets(hashSize);
  return 0;
}

int lvrHashMap::put(lvArg const& key, lvArg const& value, lvArg* old) {
  tarselvalues::KeptWhileAsking self(*this);
  unsigned int const hash = self.ask(key).hashCode();
  int status = needStorage();
  if (status != 0) {
    return status;
  }
  HashEntry* const entry = find(key, hash, self);
  if (entry == nullptr) {
    if (!value.isNil()) {
      std::unique_ptr<HashEntry> made(takeEntry(key, value));
      status = needStorage();  // The search, or a std::new_handler, may have lost it.
      if (status == 0) {
        linkEntry(made.release(), hash);
      }
    }
    return status;
  }
  tarselvalues::DeliveredOld const delivered(old, entry->value);
  if (value.isNil()) {
    removeEntry(entry, hash);
  } else {
    entry->value.assign(value);
  }
  return 0;
}

// Returns an entry with copies of both cells, the spare one if there is one.
lvrHashMap::HashEntry* lvrHashMap::takeEntry(lvArg const& key, lvArg const& value) {
  if (spareEntry == nullptr) {
    return new HashEntry(key, value);
  }
  HashEntry* const entry = std::exchange(spareEntry, nullptr);
  entry->key.assign(key);
  entry->value.assign(value);
  return entry;
}

void lvrHashMap::linkEntry(HashEntry* entry, unsigned int hash) {
  bool const toHead = (insertions.fetch_add(1, std::memory_order_relaxed) + 1) % 2 == 0;
  HashEntry** const link = toHead ? &buckets[hash % hashSize] : linkTo(nullptr, hash);
  entry->next = *link;
  *link = entry;
  ++count;
  hashSum += HashSumFactor * hash;
}

void lvrHashMap::removeEntry(HashEntry* entry, unsigned int hash) {
  *linkTo(entry, hash) = std::exchange(entry->next, nullptr);
  --count;
  hashSum -= HashSumFactor * hash;
  ++removalsBehind(buckets, hashSize);
  if (spareEntry == nullptr) {
    lvArg const value(std::move(entry->value));  // Released second,
    lvArg const key(std::move(entry->key));      // after the key.
    spareEntry = entry;
  } else {
    delete entry;
  }
}

int lvrHashMap::clear() {
  if (buckets == nullptr || count == 0) {
    return 0;
  }
  // Empty before the first release: what runs in there finds a map that it may use, or let go.
  HashEntry* chain = nullptr;
  HashEntry** end = &chain;
  for (std::uint32_t i = hashSize; i-- > 0;) {
    *end = std::exchange(buckets[i], nullptr);
    while (*end != nullptr) {
      end = &(*end)->next;
    }
  }
  count = 0;
  hashSum = EmptyHashSum;
  ++removalsBehind(buckets, hashSize);
  while (chain != nullptr) {
    HashEntry* const entry = std::exchange(chain, chain->next);
    delete entry;  // The value cell first, then the key.
  }
  return 0;
}

int lvrHashMap::freeStorage() {
  tarselvalues::KeptAlive const self(*this);
  int const status = clear();
  if (status < 0) {
    return status;
  }
  while (count != 0) {  // Left by a derived clear(), or put in while entries were released.
    lvrHashMap::clear();
  }
  std::free(std::exchange(buckets, nullptr));
  delete std::exchange(spareEntry, nullptr);
  return 0;
}

int lvrHashMap::finalize() { return freeStorage(); }

// ---- Cursors -----------------------------------------------------------------------------------

lviRealMapEnumerator* lvrHashMap::getEnumerator() const { return new RealEnumerator(*this); }

lviRealMapIterator* lvrHashMap::getIterator() { return nullptr; }

lviRealMapIterator* lvrHashMap::getRWIterator() { return nullptr; }

void lvrHashMap::IteratorLogic::initFrom(lvrHashMap const& walked) {
  map = &walked;
  current = nullptr;
  bucket = -1;
  visited = 0;
}

bool lvrHashMap::IteratorLogic::next() {
  if (visited == static_cast<std::uint32_t>(map->count)) {
    current = nullptr;
    return false;
  }
  if (current != nullptr && current->next != nullptr) {
    current = current->next;
    ++visited;
    return true;
  }
  current = nullptr;
  std::uint32_t i = static_cast<std::uint32_t>(bucket) + 1;
  while (i < map->hashSize && map->buckets != nullptr && map->buckets[i] == nullptr) {
    ++i;
  }
  if (i >= map->hashSize || map->buckets == nullptr) {  // Only after entries have gone.
    bucket = static_cast<std::int32_t>(map->hashSize);
    return false;
  }
  bucket = static_cast<std::int32_t>(i);
  current = map->buckets[i];
  ++visited;
  return true;
}

void lvrHashMap::IteratorLogic::resume() {
  auto const i = static_cast<std::uint32_t>(bucket);
  HashEntry* alive = map->buckets != nullptr && i < map->hashSize ? map->buckets[i] : nullptr;
  while (alive != nullptr && alive != current) {
    alive = alive->next;
  }
  current = alive;
}

lvArg const& lvrHashMap::IteratorLogic::getKey() const {
  return current != nullptr ? current->key : lvArg::NilValue;
}

lvArg const& lvrHashMap::IteratorLogic::getValue() const {
  return current != nullptr ? current->value : lvArg::NilValue;
}

lvrHashMap::RealEnumerator::RealEnumerator(lvrHashMap const& map) : seenRemovals(map.removals()) {
  tarselvalues::takeReference(map);
  logic.initFrom(map);
}

lvrHashMap::RealEnumerator::~RealEnumerator() { tarselvalues::dropReference(*logic.map); }

// The logic, brought up to date with the entries that have gone since it was last used.
lvrHashMap::IteratorLogic& lvrHashMap::RealEnumerator::upToDate() const {
  if (seenRemovals != logic.map->removals()) {
    logic.resume();
    seenRemovals = logic.map->removals();
  }
  return logic;
}

bool lvrHashMap::RealEnumerator::next() { return upToDate().next(); }

lvArg lvrHashMap::RealEnumerator::getKey() const { return upToDate().getKey(); }

lvArg lvrHashMap::RealEnumerator::getValue() const { return upToDate().getValue(); }
