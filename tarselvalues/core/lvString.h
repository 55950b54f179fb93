// lvString: a handle to an interned string.
//
// All handles with the same text share one string object, so that names can be compared by pointer
// and are hashed once. A handle is a cell (lvArg) that is nil or holds a counted reference to a
// lvString::StringEntry.
//
// Ownership: an entry lives as long as a handle or a cell holds it; the last one to go takes it out
//            of the table and frees it. Texts are copied in, except where a mode says otherwise.
// Threads:   one thread at a time per handle; any number of threads may intern, find and release
//            the same texts. One lock guards the whole table.
// Errors:    a null text makes a nil handle and writes a line to standard error. Out of memory is
//            std::bad_alloc, and the handle is as it was.
// Nil:       a nil handle answers as a string of no characters would, but see compareTo().
// Cost:      making a handle from a text takes the table's lock, hashes, and walks one chain; once
//            chains have grown long, an index finds the entry instead.
#pragma once

#include <pthread.h>

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvrString.h"

class TARSELVALUES_API lvString : public lvArg {
 public:
  // The string object that handles with the same text share.
  class TARSELVALUES_API StringEntry : public lvrString {
   public:
    // Leaves the table, and frees the text. If somebody found the entry and took a reference while
    // the last holder was letting go, it stays alive and in the table instead.
    int finalize() override;

    ~StringEntry() override;

   private:
    friend class lvrString;
    friend class lvString;
    template <class T>
    friend struct lvLayoutAccess;

    TARSELVALUES_INTERNAL StringEntry();
    TARSELVALUES_INTERNAL inline StringEntry(char const* textBehind, std::size_t length) noexcept;

    StringEntry* next_;  // in the same chain; guarded by the table's lock
  };

  // The process-wide table of entries: a fixed number of chains that grow without limit.
  class TARSELVALUES_API HashTable {
   public:
    // Makes an empty table.
    HashTable();
    ~HashTable();
    HashTable(HashTable const&) = delete;
    HashTable& operator=(HashTable const&) = delete;

    // The lock of all chains, for callers of findStringObject(). It is not recursive: until
    // unlock() its holder must neither make interned strings nor drop references to them.
    // Any thread.
    void writeLock();
    // Gives the lock back. Any thread.
    void unlock();

   private:
    friend class lvString;
    friend class lvString::StringEntry;
    template <class T>
    friend struct lvLayoutAccess;

    class TARSELVALUES_INTERNAL Forks;

    static constexpr std::uint32_t BucketCount = 1009;

    std::uint32_t bucketCount_;
    StringEntry* buckets_[BucketCount];  // guarded by `lock_`
    pthread_rwlock_t lock_;              // always taken for writing
  };

  // --- Making -----------------------------------------------------------------------------------

  // Makes a nil handle.
  lvString() noexcept = default;

  // Interns a NUL-terminated text.
  lvString(char const* text);  // NOLINT(google-explicit-constructor)

  // Interns the first `length` bytes of `text`; -1 measures it. A new entry stores the text by
  // `mode` (lvrString::Mode): with Borrow the text must outlive every handle to it.
  lvString(int length, char const* text, int mode);

  // As valueOf().
  lvString(int value);  // NOLINT(google-explicit-constructor)

  // Nil from nil. An interned string is shared, another string's text is interned under that
  // string's own hashCode(); any other value is converted by lvValue::toString() first, and what
  // has no text form makes a nil handle with the line on standard error.
  lvString(lvArg const& value);  // NOLINT(google-explicit-constructor)

  // Interns `text`. Deliberate: the entry held before is not released, its reference stays counted
  // for good. Assign a handle (s = lvString("x")) to release it.
  lvString& operator=(char const* text);

  // Returns the handle to the "%d" text of `value`. Any thread.
  static lvString valueOf(int value);

  // --- Asking -----------------------------------------------------------------------------------

  // Borrows the text, until the handle changes; the empty text when nil. Never null.
  operator char const*() const;  // NOLINT(google-explicit-constructor)

  // Returns the number of bytes; 0 when nil.
  int length() const;

  // Order of the texts as strcmp() has it; 0 at once for handles to one entry and for two nil
  // handles. Nil against a string is negative.
  int compareTo(lvString const& other) const;

  // As strcmp(). 1 when the handle is nil or `text` is null.
  int compareTo(char const* text) const;

  using lvArg::compareTo;

  // Returns the byte index of the first occurrence; -1 when there is none, when the handle is nil or
  // `searched` is null.
  int find(char c) const;
  int find(char const* searched) const;
  // The same of the last occurrence.
  int findRev(char c) const;

  // Returns the byte at `i` as 0-255; -1 when nil or when `i` is outside the text.
  int operator[](int i) const;

  // --- Making new strings from old --------------------------------------------------------------
  // The operands are unchanged; the results are interned.

  // `a` and the first `n` bytes of `text`. `a` itself when `text` is null or empty, when `n` is
  // negative, or when the result would have no bytes. One thread at a time.
  static lvString concat(lvString const& a, char const* text, int n);

  // The same with all of `b`. Two nil handles give the empty string; one gives the other operand.
  // One thread at a time.
  static lvString concat(lvString const& a, lvString const& b);

  // As concat(), with the whole of `text`.
  lvString operator+(char const* text) const;
  lvString operator+(lvString const& other) const;
  // Makes the handle one to that concatenation.
  lvString& operator+=(char const* text);
  lvString& operator+=(lvString const& other);

  // The first `n` bytes; the whole string when `n` is negative or not below the length.
  lvString getLeft(int n) const;

  // `count` bytes from `start` on, cut at the end of the text; a `count` of -1 takes the rest, any
  // other negative one nothing. A negative `start` counts as 0; from the end on there is nothing.
  lvString getMid(int start, int count) const;

  // The last `n` bytes; the whole string when `n` is negative or not below the length.
  lvString getRight(int n) const;

  // --- The table --------------------------------------------------------------------------------

  // Returns the table, which the first call makes and nobody ever frees. Any thread.
  static HashTable* getHashTable();

  // Finds the entry with these bytes, or makes it by `mode`, and returns it borrowed: the caller
  // must hold the table's lock, and keep it until it has taken a reference. A new entry has none.
  // `length` -1 measures the text; `hash` 0 computes lvrString::computeHashCode(), any other value
  // must be just that. Null for a null text, which writes a line to standard error.
  // The empty text has one entry, whatever pointer and hash it is looked up with. Any thread.
  static StringEntry* findStringObject(char const* text, int length, int mode, unsigned int hash);

  // The handle takes a reference to findStringObject()'s answer, or becomes nil. Requires the
  // table's lock. Does not release what the handle held before.
  void findSetFast(char const* text, int length, int mode, unsigned int hash);

  // --- For the library itself; not exported -----------------------------------------------------

  // Interns the `length` bytes in `buffer`, which came from malloc, has room for a NUL after them,
  // and is the callee's from here on: a new entry keeps it, cut to fit; else it is freed.
  TARSELVALUES_INTERNAL static lvString internBuffer(char* buffer, int length);

 private:
  template <class T>
  friend struct lvLayoutAccess;

  class TableGuard;
  struct ChainLinks;
  class Chains;

  TARSELVALUES_INTERNAL void internFast(char const* text, int length, int mode, unsigned int hash);
  TARSELVALUES_INTERNAL lvrString const* string() const;
  TARSELVALUES_INTERNAL static StringEntry* makeEntry(char const* text, int length, int mode);

  static std::atomic<HashTable*> hashTable_;
  static char const emptyStringPointer_[];
};

// Whether the texts are equal, as compareTo(char const*) sees it: never for a nil handle.
inline bool operator==(char const* text, lvString const& string) {
  return string.compareTo(text) == 0;
}
inline bool operator==(lvString const& string, char const* text) { return text == string; }
// Whether they are not.
inline bool operator!=(char const* text, lvString const& string) { return !(text == string); }
inline bool operator!=(lvString const& string, char const* text) { return !(text == string); }

// Whether both handles have the same text; two nil handles do.
inline bool operator==(lvString const& a, lvString const& b) { return a.compareTo(b) == 0; }
// Whether they do not.
inline bool operator!=(lvString const& a, lvString const& b) { return !(a == b); }
