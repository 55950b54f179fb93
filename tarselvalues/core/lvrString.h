// lvrString: the counted string object behind every cell of tag lvArg::StringType.
//
// It holds NUL-terminated bytes in no particular encoding, which it owns or borrows, their length,
// and two caches: the hash, and a small integer for texts made from one.
//
// Ownership: an owned text is freed by the next setter and by finalize(), or with the object when
//            both are one block of memory, as they are where the library makes a short string. A
//            borrowed text must stay alive and unchanged for as long as the object has it.
// Threads:   any thread may read a string, and many at once; the hash cache is filled safely.
//            Setters need the object for themselves.
// Errors:    setters answer 0, -12 (out of memory) or -38 (no text form) and then leave the string
//            as it was.
// No text:   a new string, and one that was released, has no text. It then compares as the empty
//            text would, and is equivalent only to itself and to others without text. A released
//            one keeps its length and a hash that was computed before; else it hashes as "" does.
// Layout:    on 32-bit ARM: text 36, length 40, flags 42, cached hash 44, size 48.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

class TARSELVALUES_API lvrString : public lvReferencable {
 public:
  // Texts that may be borrowed.
  static char const strNil[];    // "(NIL)"
  static char const strNull[];   // "(NULL)"
  static char const strEmpty[];  // ""

  // How a setter stores a text. 0 borrows the caller's pointer. Any other mode copies the text, and
  // so does joining several pieces; CopyAndOwn has the copy freed with the string. The modes differ
  // for a text of no bytes: CopyAndOwnEmpty borrows strEmpty, all others leave the string without
  // text.
  // A copy made without bit 1 (modes 0 and 1) counts as borrowed and is never freed.
  enum Mode : int {
    Borrow = 0,           // the pointer as it is
    CopyAndOwn = 2,       // a copy, freed with the string
    CopyAndOwnEmpty = 3,  // the same; an empty text is there, and not missing
  };

  // Makes a string without text. One thread at a time.
  lvrString();

  // Returns a new string without text; the caller's first cell takes the first reference.
  // Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "String". Any thread.
  static lvString const& getStaticClassDesc();

  // 1 when the texts are equal. Deliberate: for an object that is no string the answer is the
  // difference of the addresses, which is not 0, so a caller that takes it for a truth value sees
  // such objects as equivalent.
  int equiv(lvReferencable const& other) const override;

  // Hash of the text (see computeHashCode), computed once.
  unsigned int hashCode() const override;

  // Order of the texts as strcmp() has it. Deliberate: for an object that is no string the answer
  // is the other address minus this one, in that order.
  int compareTo(lvReferencable const& other) const override;

  lvString const& getClassDesc() const override;

  // As releaseData(). One thread at a time.
  int finalize() override;

  // Frees the text if the string owns it. One thread at a time.
  ~lvrString() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Takes the text of a value: "(NIL)" (borrowed) for nil, "%d" of an integer, "%08x" of a raw
  // address, a copy of another string's text. Integers and addresses from -2048 to 2047 are cached
  // for getInteger(). Any other value answers -38. One thread at a time.
  virtual int setFrom(lvArg const& value);

  // Returns a cell that references this string.
  virtual lvArg toString() const;

  // Replaces the text; what it held is freed once the new text is there. `length` -1 means
  // strlen(text). The text may lie inside the string's own. One thread at a time.
  int setStringData(char const* text, int length, int mode);

  // As setStringData(), but an owned old text is leaked: for strings without text only.
  // One thread at a time.
  int setStringDataFast(char const* text, int length, int mode);

  // Joins `n` pieces. `lengths` is null (every piece is measured) or holds `n` lengths; negative
  // ones are measured. Deliberate: the measured value is written back into the caller's array.
  // A null piece counts as empty. One thread at a time.
  int setStringDataFast(int n, char const** pieces, int* lengths, int mode);

  // Frees an owned text; the string has no text then. A borrowed text stays. Returns 0.
  // One thread at a time.
  int releaseData();

  // Returns the number of bytes before the terminating NUL. Of a text of 65535 bytes or more only
  // the bytes before its first NUL count, and they are counted anew each time.
  int getLength() const;

  // Returns the length where it is stored, or -1 for a text that a setter has to measure.
  int getKnownLength() const { return isKnownLength() ? length_ : -1; }

  // Borrows the text, or null; until the string changes.
  char const* getText() const { return text_; }

  // The same, or the empty text.
  char const* getTextOrEmpty() const { return text_ != nullptr ? text_ : strEmpty; }

  // Reads the text as an integer: the cached one if there is one, else
  //   -1 without text, 0 for an empty text; leading blanks are skipped; then
  //   "#T" and "true" are 1, "#F" and "false" are 0, in any case, if they are the whole text (with
  //   no blank before them); "$ff" and "0xff" are hexadecimal; digits are decimal, what follows
  //   them is ignored; anything else is -1. Values are cut to the range of int.
  // Deliberate: a sign is not accepted, so "-5" is -1.
  int getInteger() const;

  // The hash of `length` bytes: h = 177573 + the first byte, then h = h * 33 + byte over all bytes,
  // then h + length * 257, with 32-bit wrap-around. Deliberate: from 18 bytes on only the 17 bytes
  // before the last one are mixed in, so long texts that differ elsewhere may share a hash. For
  // length 0 the byte at `text` still counts. Any thread.
  static unsigned int computeHashCode(char const* text, int length);

  // Whether this is an entry of the table of interned strings.
  bool isInterned() const { return hasFlag(InternedFlag); }

  // --- For the library itself; not exported -----------------------------------------------------

  // In core/OneBlockString.h: strings whose text stands in one block of memory with them.
  template <class String>
  TARSELVALUES_INTERNAL static String* make(char const* bytes, std::size_t length);
  TARSELVALUES_INTERNAL static bool fitsOneBlock(std::size_t length, int mode);

  // For a new entry of the string table, filed under `hash`.
  TARSELVALUES_INTERNAL void markInterned(unsigned int hash);

  // For a string that is found by a hash of its text, in the table or as the key of a map: from now
  // on a change of the text is counted, in one count for the table's entries, which hardly ever
  // change, and one for all strings.
  TARSELVALUES_INTERNAL void markKeyText() const { setOwnBit(KeyTextBit); }
  TARSELVALUES_INTERNAL static std::uint32_t getKeyTextChanges() {
    return keyTextChanges_.load(std::memory_order_relaxed);
  }
  TARSELVALUES_INTERNAL static std::uint32_t getEntryTextChanges() {
    return entryTextChanges_.load(std::memory_order_relaxed);
  }

  // As equiv(), for two strings of the library's own classes.
  TARSELVALUES_INTERNAL bool isEquivToOwn(lvrString const& other) const {
    return other.text_ == text_ || (!isKnownToDiffer(other) && hasSameText(other));
  }

  // Whether there is a text that no other string has at the same address, but for strEmpty.
  bool hasTextOfItsOwn() const {
    return text_ == strEmpty || (text_ != nullptr && !hasFlag(BorrowedFlag));
  }

  // Whether the text, other than an empty one, is somebody else's.
  bool isBorrowing() const { return hasFlag(BorrowedFlag) && text_ != nullptr && *text_ != '\0'; }

  // Takes `buffer`, which came from malloc and holds `length` bytes and a NUL, over without
  // copying it. Leaks an owned old text, as the setters ending in Fast do.
  TARSELVALUES_INTERNAL void adoptBufferFast(char* buffer, std::size_t length);

  // Ends a string of exactly this class whose last reference has gone, as finalize() and `delete`
  // do.
  TARSELVALUES_INTERNAL void end();

 protected:
  // For make(): a string whose text stands behind it in its block.
  TARSELVALUES_INTERNAL inline lvrString(char const* textBehind, std::size_t length) noexcept;

 private:
  template <class T>
  friend struct lvLayoutAccess;

  // Bits of `flags_`. Bits 4-15 are the cached integer, signed.
  enum Flag : std::uint16_t {
    IntegerFlag = 1,   // the cached integer is valid
    HashFlag = 2,      // the cached hash is valid
    InternedFlag = 4,  // an entry of the string table
    BorrowedFlag = 8,  // the text must not be freed
    AllFlags = 15,
  };
  static constexpr unsigned IntegerShift = 4;

  // Bits of the type byte.
  static constexpr unsigned KeyTextBit = FirstOwnBit;
  static constexpr unsigned OneBlockBit = SecondOwnBit;  // the text stands behind the object

  bool hasFlag(Flag flag) const { return (flags_.load(std::memory_order_acquire) & flag) != 0; }
  // A stored length of this value means: that or more, to be counted in the text.
  static constexpr std::uint16_t UncountedLength = 65535;
  // A string without text has nothing to count.
  bool isKnownLength() const { return length_ != UncountedLength || text_ == nullptr; }
  bool isKnownToDiffer(lvrString const& other) const {
    return hasFlag(HashFlag) && other.hasFlag(HashFlag) &&
           cachedHash_.load(std::memory_order_relaxed) !=
               other.cachedHash_.load(std::memory_order_relaxed);
  }
  TARSELVALUES_INTERNAL bool hasSameText(lvrString const& other) const;
  TARSELVALUES_INTERNAL bool hasSameBytes(lvrString const& other) const;
  unsigned int computeOwnHash() const;
  bool ownsTextAt(char const* address) const;
  bool mustFreeText() const { return !hasFlag(BorrowedFlag) && !hasOwnBit(OneBlockBit); }
  TARSELVALUES_INTERNAL void freeText();
  TARSELVALUES_INTERNAL void noteTextChange();
  void storeText(char const* newText, std::size_t newLength, bool borrowed);
  void cacheInteger(std::intptr_t value);
  int setFormatted(char const* formatted, std::intptr_t value);

  static std::atomic<std::uint32_t> keyTextChanges_;
  static std::atomic<std::uint32_t> entryTextChanges_;

  char const* text_;
  std::uint16_t length_;  // 65535 means: that or more, to be counted.
  // Atomic, because hashCode() fills the cache of a string that other threads may be reading.
  mutable std::atomic<std::uint16_t> flags_;
  mutable std::atomic<std::uint32_t> cachedHash_;
};
