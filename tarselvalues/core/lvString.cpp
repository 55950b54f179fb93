// The table of interned strings, and the handles to it.
//
// States of an entry, all changes made under the table's lock or the entry's own mutex:
//
//   made, count 0    found by its text; the finder takes the first reference before it unlocks
//   held, count > 0  by handles and cells
//   let go           the last reference went and finalize() is on its way to the table's lock.
//                    Until it gets there a look-up may find the entry and take a reference.
//   dead             finalize() found nobody there: out of the table, freed
//
// Look-ups and finalize() decide under the same lock: an entry that was found while it was let go
// is held again, and finalize() refuses to end it. That entry's new last holder runs finalize()
// anew. The count itself tells the two apart (see lvReferencable::isStillUnheld), so no matter how
// often an entry is let go and found again meanwhile, one finalize() at a time is under way.

#include "tarselvalues/core/lvString.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>

#include "tarselvalues/core/ChainIndex.h"
#include "tarselvalues/core/OneBlockString.h"
#include "tarselvalues/core/lvValue.h"

namespace {

constexpr int Measure = -1;

// A look-up with this hash computes it.
constexpr unsigned int UnknownHash = 0;

// An entry that somebody released by hand has no text.
bool hasBytes(char const* entryText, char const* text, int length) {
  return length == 0 || (entryText != nullptr &&
                         std::memcmp(entryText, text, static_cast<std::size_t>(length)) == 0);
}

int indexIn(char const* text, char const* found) {
  return found != nullptr ? static_cast<int>(found - text) : -1;
}

}  // namespace

std::atomic<lvString::HashTable*> lvString::hashTable_{nullptr};
char const lvString::emptyStringPointer_[] = "";

// Holds the table's lock. What runs when memory is short, std::new_handler, may drop interned
// strings while this thread holds it already: then the one that holds it keeps it.
class lvString::TableGuard {
 public:
  TableGuard()
      : table(*getHashTable()), isOutermost(pthread_rwlock_wrlock(&table.lock_) != EDEADLK) {}
  ~TableGuard() {
    if (isOutermost) {
      table.unlock();
    }
  }
  TableGuard(TableGuard const&) = delete;
  TableGuard& operator=(TableGuard const&) = delete;

 private:
  HashTable& table;
  bool const isOutermost;
};

// ---- The table ---------------------------------------------------------------------------------

// Around fork(): the child must not find the table locked, or waited for, by threads that it does
// not have. There the lock is made anew.
class lvString::HashTable::Forks {
 public:
  // Where the table is made.
  static void guard() { pthread_atfork(before, afterInParent, afterInChild); }

 private:
  static pthread_rwlock_t& lock() { return getHashTable()->lock_; }

  static void before() { isOurs = pthread_rwlock_wrlock(&lock()) == 0; }
  static void afterInParent() {
    if (isOurs) {
      pthread_rwlock_unlock(&lock());
    }
  }
  static void afterInChild() {
    pthread_rwlock_init(&lock(), nullptr);
    if (!isOurs) {
      pthread_rwlock_wrlock(&lock());
    }
  }

  static bool isOurs;  // false when the thread that forks had locked the table by itself
};

bool lvString::HashTable::Forks::isOurs = false;

lvString::HashTable::HashTable() : bucketCount_(BucketCount), buckets_{} {
  pthread_rwlock_init(&lock_, nullptr);
}

lvString::HashTable::~HashTable() { pthread_rwlock_destroy(&lock_); }

void lvString::HashTable::writeLock() { pthread_rwlock_wrlock(&lock_); }

void lvString::HashTable::unlock() { pthread_rwlock_unlock(&lock_); }

lvString::HashTable* lvString::getHashTable() {
  // Without the mutex once there is a table: exit handlers that run late find it destroyed.
  if (HashTable* const table = hashTable_.load(std::memory_order_acquire)) {
    return table;
  }
  static std::recursive_mutex creation;
  std::lock_guard<std::recursive_mutex> const guard(creation);
  if (hashTable_.load(std::memory_order_relaxed) == nullptr) {
    hashTable_.store(new HashTable, std::memory_order_release);
    HashTable::Forks::guard();
  }
  return hashTable_.load(std::memory_order_relaxed);
}

struct TARSELVALUES_INTERNAL lvString::ChainLinks {
  using Entry = StringEntry;
  static Entry*& next(Entry& entry) { return entry.next_; }
  static std::uint32_t hash(Entry const& entry, std::uint32_t seed) {
    return hash(entry.getText(), entry.getText() != nullptr ? entry.getLength() : 0, seed);
  }
  // A length below 0, which no entry has, counts as 0.
  static std::uint32_t hash(char const* text, int length, std::uint32_t seed) {
    return tarselvalues::hashBytes(text, length > 0 ? static_cast<std::size_t>(length) : 0, seed);
  }
  static bool isFindable(Entry const& /*entry*/) { return true; }
  static bool watch(Entry const& entry) {
    entry.markKeyText();
    return true;
  }
  static std::uint32_t countChanges() { return lvrString::getEntryTextChanges(); }
};

// The chains of the one table, and the index that finds what is in them. Requires the table's lock.
class TARSELVALUES_INTERNAL lvString::Chains {
 public:
  // Returns the entry with these bytes; if there is none, the one with them that `make()` makes.
  template <class Make>
  static StringEntry* findOrAdd(char const* text, int length, unsigned int hash, Make make) {
    StringEntry** link = find(text, length, hash);
    if (*link == nullptr) {
      unsigned const before = changes;
      StringEntry* const made = make();
      if (changes != before) {  // A std::new_handler has been at work.
        link = find(made->getText(), length, hash);
      }
      if (*link == nullptr) {
        made->markInterned(hash);
        add(*made, link, hash);
      } else {
        made->releaseData();
        delete made;
      }
    }
    return *link;
  }

  // Takes an entry out; one that is not in is ignored.
  static void remove(StringEntry& entry) {
    StringEntry** const link = index.isReady() ? index.remove(entry) : walkTo(entry);
    if (link != nullptr) {
      *link = entry.next_;
      entry.next_ = nullptr;
      --entries;
      ++changes;
    }
  }

 private:
  // Returns the link that leads to the entry with these bytes, or the null link that ends its
  // chain.
  static StringEntry** find(char const* text, int length, unsigned int hash) {
    HashTable& table = *getHashTable();
    std::uint32_t const chain = hash % table.bucketCount_;
    auto const matches = [text, length](StringEntry const& candidate) {
      return candidate.getLength() == length && hasBytes(candidate.getText(), text, length);
    };
    if (index.isReady()) {
      auto const found = index.find(ChainLinks::hash(text, length, index.seed()), chain, matches);
      if (!found.ambiguous) {
        return found.link != nullptr ? found.link : index.endOf(chain);
      }
    }
    std::size_t steps = 0;
    StringEntry** link = &table.buckets_[chain];
    for (; *link != nullptr && !matches(**link); ++steps) {
      link = &(*link)->next_;
    }
    index.noteWalk(steps, table.buckets_, table.bucketCount_, entries);
    return link;
  }

  // Takes up an entry at the link where find() ended.
  static void add(StringEntry& entry, StringEntry** link, unsigned int hash) {
    *link = &entry;
    ++entries;
    ++changes;
    if (index.isReady()) {
      index.add(entry, link, hash % getHashTable()->bucketCount_);
    }
  }

  static StringEntry** walkTo(StringEntry& entry) {
    HashTable& table = *getHashTable();
    std::uint32_t const chain = entry.hashCode() % table.bucketCount_;
    StringEntry** link = walkTo(entry, table.buckets_[chain]);
    // An entry whose text somebody has set anew is where the old one was filed.
    for (std::uint32_t i = 0; link == nullptr && i < table.bucketCount_; ++i) {
      link = walkTo(entry, table.buckets_[i]);
    }
    return link;
  }

  static StringEntry** walkTo(StringEntry& entry, StringEntry*& head) {
    StringEntry** link = &head;
    while (*link != nullptr && *link != &entry) {
      link = &(*link)->next_;
    }
    return *link != nullptr ? link : nullptr;
  }

  static std::size_t entries;
  static unsigned changes;  // of the chains
  static tarselvalues::ChainIndex<ChainLinks> index;
};

std::size_t lvString::Chains::entries = 0;
unsigned lvString::Chains::changes = 0;
tarselvalues::ChainIndex<lvString::ChainLinks> lvString::Chains::index;

lvString::StringEntry* lvString::findStringObject(char const* text, int length, int mode,
                                                  unsigned int hash) {
  if (text == nullptr) {
    static char const message[] = "lvString::findStringObject(): Returning NULL.\n";
    std::fwrite(message, 1, sizeof(message) - 1, stderr);
    return nullptr;
  }
  if (length == Measure) {
    length = static_cast<int>(std::strlen(text));
  }
  if (length == 0) {
    hash = lvrString::computeHashCode(lvrString::strEmpty, 0);
  } else if (hash == UnknownHash) {
    hash = lvrString::computeHashCode(text, length);
  }
  return Chains::findOrAdd(text, length, hash, [&] { return makeEntry(text, length, mode); });
}

// Returns a new entry with this text. It is in no chain.
lvString::StringEntry* lvString::makeEntry(char const* text, int length, int mode) {
  if (lvrString::fitsOneBlock(static_cast<std::size_t>(length), mode)) {
    return lvrString::make<StringEntry>(text, static_cast<std::size_t>(length));
  }
  std::unique_ptr<StringEntry> made(new StringEntry);
  if (made->setStringDataFast(text, length, mode) != 0) {
    throw std::bad_alloc();
  }
  return made.release();
}

lvString::StringEntry::StringEntry() : next_(nullptr) {}

lvString::StringEntry::~StringEntry() = default;

int lvString::StringEntry::finalize() {
  {
    TableGuard const guard;
    if (!isStillUnheld()) {
      return FinalizeRefused;
    }
    Chains::remove(*this);
  }
  return lvrString::finalize();
}

void lvString::findSetFast(char const* text, int length, int mode, unsigned int hash) {
  StringEntry const* const found = findStringObject(text, length, mode, hash);
  if (found != nullptr) {
    setReferencableFast(*found);
  } else {
    assignFast(NilValue);
  }
}

void lvString::internFast(char const* text, int length, int mode, unsigned int hash) {
  TableGuard const guard;
  findSetFast(text, length, mode, hash);
}

lvString lvString::internBuffer(char* buffer, int length) {
  std::unique_ptr<char, void (*)(void*)> owned(buffer, std::free);
  if (length == 0) {
    return {0, buffer, lvrString::CopyAndOwn};
  }
  buffer[length] = '\0';
  unsigned int const hash = lvrString::computeHashCode(buffer, length);
  lvString result;
  TableGuard const guard;
  result.setReferencableFast(*Chains::findOrAdd(buffer, length, hash, [&] {
    auto* const made = new StringEntry;
    std::size_t const bytes = static_cast<std::size_t>(length);
    char* const cut = static_cast<char*>(std::realloc(owned.get(), bytes + 1));
    char* const kept = owned.release();
    made->adoptBufferFast(cut != nullptr ? cut : kept, bytes);
    return made;
  }));
  return result;
}

// ---- Making ------------------------------------------------------------------------------------

lvString::lvString(char const* text) {
  internFast(text, Measure, lvrString::CopyAndOwnEmpty, UnknownHash);
}

lvString::lvString(int length, char const* text, int mode) {
  internFast(text, length, mode, UnknownHash);
}

lvString::lvString(int value) : lvString(valueOf(value)) {}

lvString::lvString(lvArg const& value) {
  if (value.isNil()) {
    return;
  }
  if (value.getType() != StringType) {
    lvValue const converted = lvValue(value).toString();
    bool const hasTextForm = value.getType() == IntType || value.getType() == PointerType;
    if (hasTextForm && converted.getString(nullptr) == nullptr) {
      throw std::bad_alloc();
    }
    *this = lvString(static_cast<lvArg const&>(converted));
    return;
  }
  auto const* const string = static_cast<lvrString const*>(value.getReferencable());
  if (string == nullptr) {
    return;
  }
  if (string->isInterned()) {
    assignFast(value);
  } else {
    // The hash first: it may be a function of the program that lets the string go, or its text.
    lvArg const held(*string);
    unsigned int const hash = string->hashCode();
    internFast(string->getText(), string->getKnownLength(), lvrString::CopyAndOwnEmpty, hash);
  }
}

lvString& lvString::operator=(char const* text) {
  internFast(text, Measure, lvrString::CopyAndOwnEmpty, UnknownHash);
  return *this;
}

lvString lvString::valueOf(int value) {
  char formatted[25];
  std::snprintf(formatted, sizeof(formatted), "%d", value);
  return {formatted};
}

// ---- Asking ------------------------------------------------------------------------------------

// Any string object serves: a cell operation may have stored one that is not interned.
lvrString const* lvString::string() const {
  return getType() == StringType ? static_cast<lvrString const*>(getReferencable()) : nullptr;
}

lvString::operator char const*() const {
  lvrString const* const held = string();
  return held != nullptr && held->getText() != nullptr ? held->getText() : emptyStringPointer_;
}

int lvString::length() const {
  lvrString const* const held = string();
  return held != nullptr && held->getText() != nullptr ? held->getLength() : 0;
}

int lvString::compareTo(lvString const& other) const {
  if (this == &other) {
    return 0;
  }
  if (getType() != other.getType()) {
    return static_cast<int>(getType()) - static_cast<int>(other.getType());
  }
  if (getReferencable() == other.getReferencable()) {
    return 0;
  }
  return std::strcmp(*this, other);
}

int lvString::compareTo(char const* text) const {
  return isNil() || text == nullptr ? 1 : std::strcmp(*this, text);
}

int lvString::find(char c) const {
  char const* const text = *this;
  return string() == nullptr ? -1 : indexIn(text, std::strchr(text, c));
}

int lvString::find(char const* searched) const {
  char const* const text = *this;
  return string() == nullptr || searched == nullptr ? -1
                                                    : indexIn(text, std::strstr(text, searched));
}

int lvString::findRev(char c) const {
  char const* const text = *this;
  return string() == nullptr ? -1 : indexIn(text, std::strrchr(text, c));
}

int lvString::operator[](int i) const {
  char const* const text = *this;
  return i >= 0 && i < length() ? static_cast<unsigned char>(text[i]) : -1;
}

// ---- Making new strings from old ---------------------------------------------------------------

lvString lvString::concat(lvString const& a, char const* text, int n) {
  int const head = a.length();
  if (text == nullptr || *text == '\0' || n < 0 || (head == 0 && n == 0)) {
    return a;
  }
  if (n > INT_MAX - 1 - head) {
    throw std::bad_alloc();
  }
  auto const headBytes = static_cast<std::size_t>(head);
  auto const tailBytes = static_cast<std::size_t>(n);
  char* const joined = static_cast<char*>(std::malloc(headBytes + tailBytes + 1));
  if (joined == nullptr) {
    throw std::bad_alloc();
  }
  std::memcpy(joined, static_cast<char const*>(a), headBytes);
  std::memcpy(joined + headBytes, text, tailBytes);
  return internBuffer(joined, head + n);
}

lvString lvString::concat(lvString const& a, lvString const& b) {
  if (a.isNil() && b.isNil()) {
    return {emptyStringPointer_};
  }
  if (a.isNil() || b.isNil()) {
    return a.isNil() ? b : a;
  }
  return concat(a, b, b.length());
}

lvString lvString::operator+(char const* text) const {
  return text == nullptr ? *this : concat(*this, text, static_cast<int>(std::strlen(text)));
}

lvString lvString::operator+(lvString const& other) const { return concat(*this, other); }

lvString& lvString::operator+=(char const* text) {
  if (text != nullptr) {
    *this = concat(*this, text, static_cast<int>(std::strlen(text)));
  }
  return *this;
}

lvString& lvString::operator+=(lvString const& other) {
  *this = concat(*this, other);
  return *this;
}

lvString lvString::getLeft(int n) const {
  if (n < 0 || n >= length()) {
    return *this;
  }
  return {n, *this, lvrString::CopyAndOwnEmpty};
}

lvString lvString::getMid(int start, int count) const {
  int const whole = length();
  int const first = start < 0 ? 0 : start;
  if (first >= whole || count < -1) {
    return {emptyStringPointer_};
  }
  int const rest = whole - first;
  int const taken = count == -1 || count > rest ? rest : count;
  return {taken, static_cast<char const*>(*this) + first, lvrString::CopyAndOwnEmpty};
}

lvString lvString::getRight(int n) const {
  int const whole = length();
  if (n < 0 || n == whole) {
    return *this;
  }
  return n > whole ? getMid(0, whole) : getMid(whole - n, n);
}
