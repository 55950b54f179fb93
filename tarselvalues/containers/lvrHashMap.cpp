#include "tarselvalues/containers/lvrHashMap.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "tarselvalues/containers/DeliveredOld.h"
#include "tarselvalues/core/BlockCache.h"
#include "tarselvalues/core/ChainIndex.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvrString.h"

// How a key is compared with others.
enum class tarselvalues::KeyKind {
  Same,      // with isSame(): all but strings
  Text,      // a string of the library's own
  Borrowed,  // so, too, but without text, or with one that another string may have, too, whatever
             // their lengths
  Foreign,   // a string of the program's class: by a function of the program
};

namespace {

using tarselvalues::BlockCache;
using tarselvalues::FromCalloc;
using tarselvalues::FromNew;

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

// From calloc, so that a large block costs only the pages that are touched.
void* allocateZeros(std::size_t bytes) {
  void* const memory = BlockCache::take<FromCalloc>(bytes);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  return BlockCache::mayKeep(bytes) ? std::memset(memory, 0, bytes) : memory;
}

// The value cell goes first, then the key.
void freeEntry(lvrHashMap::HashEntry* entry) {
  if (entry != nullptr) {
    entry->~HashEntry();
    BlockCache::give<FromNew>(entry, sizeof(lvrHashMap::HashEntry));
  }
}

struct EntryFreer {
  void operator()(lvrHashMap::HashEntry* entry) const { freeEntry(entry); }
};

lvrString const& stringIn(lvArg const& key) {
  return static_cast<lvrString const&>(*key.getReferencable());
}

using tarselvalues::KeyKind;

KeyKind kindOf(lvArg const& key) {
  if (key.getType() != lvArg::StringType || key.getReferencable() == nullptr) {
    return KeyKind::Same;
  }
  if (!tarselvalues::isOwnString(*key.getReferencable())) {
    return KeyKind::Foreign;
  }
  return stringIn(key).hasTextOfItsOwn() ? KeyKind::Text : KeyKind::Borrowed;
}

// As key.hashCode(), and tells the kind of the key that there is then.
unsigned int hashOf(lvArg const& key, KeyKind& kind, tarselvalues::KeptWhileAsking& self) {
  kind = KeyKind::Same;
  if (key.getReferencable() == nullptr) {
    return key.hashCode();
  }
  kind = kindOf(key);
  if (kind == KeyKind::Text || kind == KeyKind::Borrowed) {
    return stringIn(key).lvrString::hashCode();
  }
  unsigned int const hash = self.ask(key).hashCode();
  kind = kindOf(key);
  return hash;
}

// Equal texts have equal hashes of their own, too; when they are compared they end at the first
// NUL.
std::uint32_t textHash(lvrString const& string, std::uint32_t seed) {
  auto const most = static_cast<std::size_t>(string.getLength());
  std::uint32_t const own = string.lvrString::hashCode();
  return tarselvalues::hashBytes(string.getText(), strnlen(string.getText(), most), seed ^ own);
}

// For the index: equal for keys of which one is found by the other, but for borrowed and foreign
// ones, which the index is not asked for.
std::uint32_t indexHash(lvArg const& key, KeyKind kind, std::uint32_t seed) {
  if (kind == KeyKind::Text) {
    return textHash(stringIn(key), seed);
  }
  std::uint64_t const word = key.getIdentity();
  std::uint32_t const hash = tarselvalues::mixIndexHash(seed, static_cast<std::uint32_t>(word));
  return tarselvalues::mixIndexHash(hash, static_cast<std::uint32_t>(word >> 32) ^ key.getType());
}

}  // namespace

struct lvrHashMap::EntryLinks {
  using Entry = HashEntry;
  static Entry*& next(Entry& entry) { return entry.next; }
  static std::uint32_t hash(Entry const& entry, std::uint32_t seed) {
    return indexHash(entry.key, kindOf(entry.key), seed);
  }
  static bool isFindable(Entry const& entry) {
    KeyKind const kind = kindOf(entry.key);
    return kind == KeyKind::Same || kind == KeyKind::Text;
  }
  static bool watch(Entry const& entry) {
    KeyKind const kind = kindOf(entry.key);
    bool const isOwn = kind == KeyKind::Text || kind == KeyKind::Borrowed;
    if (isOwn) {
      stringIn(entry.key).markKeyText();
    }
    return isOwn;
  }
  static std::uint32_t countChanges() { return lvrString::getKeyTextChanges(); }
};

// What stands behind the bucket heads, out of sight of whoever knows the map's fields. Behind and
// not in front, so that the map points to the start of the block: tools that look for leaks doubt
// any other pointer.
struct lvrHashMap::Extras {
  explicit Extras(std::uint64_t number) : removals(number) {}

  // Of the block of so many heads.
  static std::size_t bytesWith(std::size_t heads) { return bytesOfHeads(heads) + sizeof(Extras); }

  // Whether the index can tell where this key is.
  bool canFind(KeyKind kind) {
    return index.isReady() &&
           (kind == KeyKind::Same || (kind == KeyKind::Text && index.findsAll()));
  }

  std::uint64_t removals;  // changes whenever an entry goes: a cursor's may have gone
  tarselvalues::ChainIndex<EntryLinks> index;
};

lvrHashMap::Extras& lvrHashMap::extrasBehind(HashEntry** heads, std::uint32_t size) {
  return *reinterpret_cast<Extras*>(reinterpret_cast<char*>(heads) + bytesOfHeads(size));
}

lvrHashMap::HashEntry** lvrHashMap::allocateBuckets(std::uint32_t size) {
  constexpr std::size_t most =
      (PTRDIFF_MAX - sizeof(Extras) - sizeof(std::uint64_t)) / sizeof(HashEntry*);
  if (std::size_t{size} > most) {
    throw std::bad_array_new_length();
  }
  void* const memory = allocateZeros(Extras::bytesWith(size));
  auto** const heads = static_cast<HashEntry**>(memory);
  std::uint64_t const number = blocksMade.fetch_add(1, std::memory_order_relaxed) + 1;
  new (&extrasBehind(heads, size)) Extras(number << BlockShift);
  return heads;
}

void lvrHashMap::freeBuckets() {
  if (buckets != nullptr) {
    extras().index.drop();
    BlockCache::give<FromCalloc>(std::exchange(buckets, nullptr), Extras::bytesWith(hashSize));
  }
}

std::uint64_t lvrHashMap::removals() const { return buckets != nullptr ? extras().removals : 0; }

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

// Returns the entry with this key, or null.
lvrHashMap::HashEntry* lvrHashMap::find(lvArg const& key, KeyKind kind, unsigned int hash,
                                        tarselvalues::KeptWhileAsking& self) const {
  if (buckets == nullptr) {
    return nullptr;
  }
  switch (kind) {
    case KeyKind::Same:
      return findAmong(key, kind, hash,
                       [&key](HashEntry const& entry) { return entry.key.isSame(key); });
    case KeyKind::Foreign:
      return findAsking(key, hash, self);
    default:
      break;
  }
  bool foreign = false;
  HashEntry* const found = findAmong(key, kind, hash, [&key, &foreign](HashEntry const& entry) {
    if (entry.key.getType() != lvArg::StringType || entry.key.getReferencable() == nullptr) {
      return false;
    }
    foreign = !tarselvalues::isOwnString(*entry.key.getReferencable());
    return foreign || stringIn(entry.key).isEquivToOwn(stringIn(key));
  });
  return foreign ? findAsking(key, hash, self) : found;
}

// Returns the first entry in the chain of this hash that matches, without running a function of the
// program.
template <class Matches>
lvrHashMap::HashEntry* lvrHashMap::findAmong(lvArg const& key, KeyKind kind, unsigned int hash,
                                             Matches matches) const {
  std::uint32_t const bucket = hash % hashSize;
  Extras& beside = extras();
  if (beside.canFind(kind)) {
    auto const found =
        beside.index.find(indexHash(key, kind, beside.index.seed()), bucket, matches);
    if (!found.ambiguous) {
      return found.link != nullptr ? *found.link : nullptr;
    }
  }
  std::size_t steps = 0;
  HashEntry* entry = buckets[bucket];
  for (; entry != nullptr && !matches(*entry); ++steps) {
    entry = entry->next;
  }
  beside.index.noteWalk(steps, buckets, hashSize, static_cast<std::size_t>(count));
  return entry;
}

void lvrHashMap::forgoIndex() {
  if (buckets != nullptr) {
    extras().index.forgo();
  }
}

// Returns the entry with this key, or null. Comparing keys may run a function of the program, which
// may change the map: the search then goes on from its entry, or ends if that has gone, or has been
// put to use for another key. It never looks at more entries than the map had at first, so it ends
// even if each comparison moves its entry or adds others.
lvrHashMap::HashEntry* lvrHashMap::findAsking(lvArg const& key, unsigned int hash,
                                              tarselvalues::KeptWhileAsking& self) const {
  HashEntry* entry = buckets[hash % hashSize];
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
  KeyKind kind{};
  unsigned int const hash = hashOf(key, kind, self);
  HashEntry const* const entry = find(key, kind, hash, self);
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
  freeBuckets();
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
  return putCells(key, value, old);
}

int lvrHashMap::putMoved(lvArg&& key, lvArg&& value) {
  return putCells(std::move(key), std::move(value), nullptr);
}

template <class Cell>
int lvrHashMap::putCells(Cell&& key, Cell&& value, lvArg* old) {
  tarselvalues::KeptWhileAsking self(*this);
  KeyKind kind{};
  unsigned int const hash = hashOf(key, kind, self);
  int status = needStorage();
  if (status != 0) {
    return status;
  }
  HashEntry* const entry = find(key, kind, hash, self);
  if (entry == nullptr) {
    if (!value.isNil()) {
      std::unique_ptr<HashEntry, EntryFreer> made(
          takeEntry(std::forward<Cell>(key), std::forward<Cell>(value)));
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
    entry->value = std::forward<Cell>(value);
  }
  return 0;
}

// Returns an entry with these cells, the spare one if there is one.
template <class Cell>
lvrHashMap::HashEntry* lvrHashMap::takeEntry(Cell&& key, Cell&& value) {
  if (spareEntry == nullptr) {
    void* const block = BlockCache::take<FromNew>(sizeof(HashEntry));
    return ::new (block) HashEntry(std::forward<Cell>(key), std::forward<Cell>(value));
  }
  HashEntry* const entry = std::exchange(spareEntry, nullptr);
  entry->key = std::forward<Cell>(key);
  entry->value = std::forward<Cell>(value);
  return entry;
}

void lvrHashMap::linkEntry(HashEntry* entry, unsigned int hash) {
  std::uint32_t const bucket = hash % hashSize;
  Extras& beside = extras();
  bool const indexed = beside.index.isReady();
  // No addition: another thread may disturb it anyway.
  unsigned const insertion = insertions.load(std::memory_order_relaxed) + 1;
  insertions.store(insertion, std::memory_order_relaxed);
  bool const toHead = insertion % 2 == 0;
  HashEntry** const link = toHead    ? &buckets[bucket]
                           : indexed ? beside.index.endOf(bucket)
                                     : linkTo(nullptr, hash);
  entry->next = *link;
  *link = entry;
  ++count;
  hashSum += HashSumFactor * hash;
  if (indexed) {
    beside.index.add(*entry, link, bucket);
  }
}

void lvrHashMap::removeEntry(HashEntry* entry, unsigned int hash) {
  Extras& beside = extras();
  HashEntry** link = nullptr;
  if (beside.index.isReady()) {
    link = beside.index.remove(*entry);
  } else {
    link = linkTo(entry, hash);
  }
  *link = std::exchange(entry->next, nullptr);
  --count;
  hashSum -= HashSumFactor * hash;
  ++beside.removals;
  if (spareEntry == nullptr) {
    lvArg const value(std::move(entry->value));  // Released second,
    lvArg const key(std::move(entry->key));      // after the key.
    spareEntry = entry;
  } else {
    freeEntry(entry);
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
  ++extras().removals;
  extras().index.drop();
  while (chain != nullptr) {
    HashEntry* const entry = std::exchange(chain, chain->next);
    freeEntry(entry);
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
  freeBuckets();
  freeEntry(std::exchange(spareEntry, nullptr));
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

// Tells the logic of the entries that have gone since it was last used.
void lvrHashMap::bringUpToDate(IteratorLogic& logic, std::uint64_t& seen) {
  std::uint64_t const removals = logic.map->removals();
  if (seen != removals) {
    logic.resume();
    seen = removals;
  }
}

lvrHashMap::IteratorLogic& lvrHashMap::RealEnumerator::upToDate() const {
  bringUpToDate(logic, seenRemovals);
  return logic;
}

bool lvrHashMap::RealEnumerator::next() { return upToDate().next(); }

lvArg lvrHashMap::RealEnumerator::getKey() const { return upToDate().getKey(); }

lvArg lvrHashMap::RealEnumerator::getValue() const { return upToDate().getValue(); }

void lvrHashMap::Walk::watch() { seenRemovals = logic.map->removals(); }

lvrHashMap::HashEntry const* lvrHashMap::Walk::next() {
  bringUpToDate(logic, seenRemovals);
  return logic.next() ? logic.current : nullptr;
}
