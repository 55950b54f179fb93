#include "tarselvalues/core/lvrString.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>

#include "tarselvalues/core/Address.h"
#include "tarselvalues/core/BlockCache.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/ClassKeys.h"

namespace {

constexpr int OutOfMemory = -12;
constexpr int NotSupported = -38;

// Bits of the mode argument of the setters.
constexpr int CopyBits = 3;
constexpr int OwnBit = 2;

constexpr int CachedIntegerMin = -2048;
constexpr int CachedIntegerMax = 2047;

char const* orEmpty(char const* text) { return text != nullptr ? text : lvrString::strEmpty; }

lvrString const* asString(lvReferencable const& object) {
  return object.getKind() == lvReferencable::StringKind ? static_cast<lvrString const*>(&object)
                                                        : nullptr;
}

int addressDifference(lvReferencable const& a, lvReferencable const& b) {
  return tarselvalues::wordDifference(tarselvalues::addressWord(&a), tarselvalues::addressWord(&b));
}

std::size_t pieceLength(char const* piece, int* length) {
  if (piece == nullptr) {
    return 0;
  }
  if (length == nullptr) {
    return std::strlen(piece);
  }
  if (*length < 0) {
    *length = static_cast<int>(std::strlen(piece));
  }
  return static_cast<std::size_t>(*length);
}

// Sets `total` to the bytes of all pieces; false when the address space cannot hold them.
bool measurePieces(int n, char const** pieces, int* lengths, std::size_t& total) {
  total = 0;
  for (int i = 0; i < n; ++i) {
    std::size_t const bytes = pieceLength(pieces[i], lengths != nullptr ? &lengths[i] : nullptr);
    if (bytes >= static_cast<std::size_t>(INT_MAX) - total) {
      return false;
    }
    total += bytes;
  }
  return true;
}

// Returns the pieces in one new buffer from malloc, NUL-terminated, or null.
char* joinPieces(int n, char const** pieces, int* lengths, std::size_t total) {
  char* const buffer = static_cast<char*>(std::malloc(total + 1));
  if (buffer == nullptr) {
    return nullptr;
  }
  char* end = buffer;
  for (int i = 0; i < n; ++i) {
    std::size_t const bytes = pieceLength(pieces[i], lengths != nullptr ? &lengths[i] : nullptr);
    if (bytes != 0) {
      std::memcpy(end, pieces[i], bytes);
      end += bytes;
    }
  }
  *end = '\0';
  return buffer;
}

// strtol() for a 32-bit long on every target; -1 when there is no digit.
int parseInteger(char const* digits, int base) {
  char* end = nullptr;
  long const value = std::strtol(digits, &end, base);
  return end == digits ? -1 : static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
}

bool isWord(char const* text, int length, char const* word) {
  std::size_t const wordLength = std::strlen(word);
  return static_cast<std::size_t>(length) == wordLength && strncasecmp(text, word, wordLength) == 0;
}

}  // namespace

char const lvrString::strNil[] = "(NIL)";
char const lvrString::strNull[] = "(NULL)";
char const lvrString::strEmpty[] = "";
std::atomic<std::uint32_t> lvrString::keyTextChanges_{0};
std::atomic<std::uint32_t> lvrString::entryTextChanges_{0};

lvrString::lvrString() : text_(nullptr), length_(0), flags_(0), cachedHash_(0) {
  setKind(StringKind);
}

lvrString::~lvrString() = default;

lvReferencable* lvrString::defaultCtorMethod() { return new lvrString; }

lvString const& lvrString::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::String);
}

lvString const& lvrString::getClassDesc() const { return getStaticClassDesc(); }

int lvrString::finalize() {
  if (hasOwnBit(KeyTextBit) && !isEnding()) {  // At its end nothing finds it by its text any more.
    noteTextChange();
  }
  freeText();
  return 0;
}

void lvrString::end() {
  std::size_t const bytes = hasOwnBit(OneBlockBit) ? sizeof(lvrString) + length_ + 1 : 0;
  freeText();
  lvrString::~lvrString();
  if (bytes != 0) {
    tarselvalues::BlockCache::give<tarselvalues::FromNew>(this, bytes);
  } else {
    ::operator delete(this);
  }
}

int lvrString::equiv(lvReferencable const& other) const {
  lvrString const* const string = asString(other);
  if (string == nullptr) {
    return addressDifference(other, *this);
  }
  if (string == this || string->text_ == text_) {
    return 1;
  }
  if (string->text_ == nullptr || text_ == nullptr) {
    return 0;
  }
  return string->hashCode() == hashCode() && hasSameBytes(*string) ? 1 : 0;
}

// Of two strings of the library's own classes.
bool lvrString::hasSameText(lvrString const& other) const {
  return other.text_ != nullptr && text_ != nullptr &&
         other.lvrString::hashCode() == lvrString::hashCode() && hasSameBytes(other);
}

bool lvrString::hasSameBytes(lvrString const& other) const {
  char const* const theirs = orEmpty(other.text_);  // A hash may be a function of the program,
  char const* const mine = orEmpty(text_);          // which may have taken the texts away.
  if (!isKnownLength()) {
    return std::strcmp(theirs, mine) == 0;
  }
  return other.length_ == length_ && std::strncmp(theirs, mine, length_) == 0;
}

unsigned int lvrString::hashCode() const {
  if (!hasFlag(HashFlag)) {
    cachedHash_.store(computeOwnHash(), std::memory_order_relaxed);
    // No addition to the flags: whoever else changes them now stores the very same.
    flags_.store(static_cast<std::uint16_t>(flags_.load(std::memory_order_relaxed) | HashFlag),
                 std::memory_order_release);
  }
  return cachedHash_.load(std::memory_order_relaxed);
}

int lvrString::compareTo(lvReferencable const& other) const {
  if (&other == this) {
    return 0;
  }
  lvrString const* const string = asString(other);
  if (string == nullptr) {
    return addressDifference(other, *this);
  }
  return std::strcmp(orEmpty(text_), orEmpty(string->text_));
}

int lvrString::setFrom(lvArg const& value) {
  char formatted[24];
  switch (value.getType()) {
    case lvArg::NilType:
      return setStringData(strNil, sizeof("(NIL)") - 1, Borrow);
    case lvArg::IntType:
      std::snprintf(formatted, sizeof(formatted), "%d", value.getInt());
      return setFormatted(formatted, value.getInt());
    case lvArg::PointerType:
      std::snprintf(formatted, sizeof(formatted), "%08" PRIxPTR,
                    static_cast<std::uintptr_t>(tarselvalues::addressWord(value.getPointer())));
      return setFormatted(formatted, tarselvalues::addressWord(value.getPointer()));
    case lvArg::StringType: {
      auto const* const source = static_cast<lvrString const*>(value.getReferencable());
      if (source == this) {
        return 0;
      }
      if (source == nullptr || source->text_ == nullptr) {
        return setStringData(strEmpty, 0, CopyAndOwnEmpty);
      }
      return setStringData(source->text_, source->getKnownLength(), CopyAndOwnEmpty);
    }
    default:
      return NotSupported;
  }
}

lvArg lvrString::toString() const { return lvArg(*this); }

int lvrString::setStringData(char const* newText, int newLength, int mode) {
  // A text inside the one that is about to be freed cannot be borrowed.
  bool const mustCopy = (mode & CopyBits) == 0 && ownsTextAt(newText);
  char* const old = mustFreeText() ? const_cast<char*>(text_) : nullptr;
  int const status = setStringDataFast(newText, newLength, mustCopy ? CopyAndOwn : mode);
  if (status == 0) {
    std::free(old);
  }
  return status;
}

int lvrString::setStringDataFast(char const* newText, int newLength, int mode) {
  return setStringDataFast(1, &newText, &newLength, mode);
}

int lvrString::setStringDataFast(int n, char const** pieces, int* lengths, int mode) {
  bool const owned = (mode & OwnBit) != 0;
  std::size_t total = 0;
  if (!measurePieces(n, pieces, lengths, total)) {
    return OutOfMemory;
  }
  if (total == 0) {
    bool const both = (mode & CopyBits) == CopyBits;
    storeText(both ? strEmpty : nullptr, 0, both || !owned);
    return 0;
  }
  char const* newText = pieces[0];
  if (n != 1 || (mode & CopyBits) != 0) {
    newText = joinPieces(n, pieces, lengths, total);
    if (newText == nullptr) {
      return OutOfMemory;
    }
  }
  storeText(newText, total, !owned);
  return 0;
}

int lvrString::releaseData() {
  noteTextChange();
  freeText();
  return 0;
}

int lvrString::getLength() const {
  return isKnownLength() ? length_ : static_cast<int>(std::strlen(text_));
}

int lvrString::getInteger() const {
  if (hasFlag(IntegerFlag)) {
    return static_cast<std::int16_t>(flags_.load(std::memory_order_relaxed)) >> IntegerShift;
  }
  if (text_ == nullptr) {
    return -1;
  }
  if (*text_ == '\0') {
    return 0;
  }
  char const* start = text_;
  while (*start == ' ' || *start == '\t' || *start == '\n' || *start == '\r') {
    ++start;
  }
  // The length of the whole text: leading blanks keep the words from being recognised.
  int const whole = getLength();
  if (isWord(start, whole, "#F") || isWord(start, whole, "false")) {
    return 0;
  }
  if (isWord(start, whole, "#T") || isWord(start, whole, "true")) {
    return 1;
  }
  if (*start == '$') {
    return parseInteger(start + 1, 16);
  }
  if (*start == '0' && std::toupper(static_cast<unsigned char>(start[1])) == 'X') {
    return parseInteger(start + 2, 16);
  }
  return *start >= '0' && *start <= '9' ? parseInteger(start, 10) : -1;
}

unsigned int lvrString::computeHashCode(char const* text, int length) {
  constexpr std::uint32_t start = 177573;  // 5381 * 33
  constexpr std::uint32_t factor = 33;
  constexpr std::uint32_t lengthFactor = 257;
  constexpr int longText = 18;  // From here on only the bytes before the last one are mixed in.
  constexpr int mixedOfLong = 17;

  auto const byteAt = [text](int i) { return std::uint32_t{static_cast<unsigned char>(text[i])}; };
  int const end = length < longText ? length : length - 1;
  int i = length < longText ? 0 : end - mixedOfLong;
  std::uint32_t hash = start + byteAt(0);
  for (; end - i >= 4; i += 4) {  // Four steps in one: their products do not wait for each other.
    hash = hash * (factor * factor * factor * factor) + byteAt(i) * (factor * factor * factor) +
           byteAt(i + 1) * (factor * factor) + (byteAt(i + 2) * factor + byteAt(i + 3));
  }
  for (; i < end; ++i) {
    hash = hash * factor + byteAt(i);
  }
  return hash + static_cast<std::uint32_t>(length) * lengthFactor;
}

void lvrString::markInterned(unsigned int hash) {
  markKeyText();
  cachedHash_.store(hash, std::memory_order_relaxed);
  flags_.fetch_or(InternedFlag | HashFlag, std::memory_order_release);
}

void lvrString::adoptBufferFast(char* buffer, std::size_t newLength) {
  storeText(buffer, newLength, false);
}

unsigned int lvrString::computeOwnHash() const {
  return text_ != nullptr ? computeHashCode(text_, getLength()) : computeHashCode(strEmpty, 0);
}

bool lvrString::ownsTextAt(char const* address) const {
  if (text_ == nullptr || hasFlag(BorrowedFlag)) {
    return false;
  }
  std::less<char const*> const before;
  return !before(address, text_) && !before(text_ + getLength(), address);
}

// Leaves a borrowed text.
void lvrString::freeText() {
  if (mustFreeText()) {
    std::free(const_cast<char*>(text_));
  }
  if (!hasFlag(BorrowedFlag)) {
    text_ = nullptr;
  }
}

// Counts a change of the text, if anything may find the string by it.
void lvrString::noteTextChange() {
  if (hasOwnBit(KeyTextBit)) {
    keyTextChanges_.fetch_add(1, std::memory_order_relaxed);
    if (tarselvalues::isExactly<lvString::StringEntry>(*this)) {
      entryTextChanges_.fetch_add(1, std::memory_order_relaxed);
    }
  }
}

// Drops both caches. The room of a text that stood behind the object stays unused.
void lvrString::storeText(char const* newText, std::size_t newLength, bool borrowed) {
  noteTextChange();
  clearOwnBit(OneBlockBit);
  text_ = newText;
  length_ = static_cast<std::uint16_t>(std::min<std::size_t>(newLength, UncountedLength));
  unsigned const kept = flags_.load(std::memory_order_relaxed) & ~unsigned{AllFlags};
  flags_.store(static_cast<std::uint16_t>(kept | (borrowed ? unsigned{BorrowedFlag} : 0U)),
               std::memory_order_release);
}

int lvrString::setFormatted(char const* formatted, std::intptr_t value) {
  int const status = setStringData(formatted, -1, CopyAndOwn);
  if (status == 0) {
    cacheInteger(value);
  }
  return status;
}

void lvrString::cacheInteger(std::intptr_t value) {
  if (value < CachedIntegerMin || value > CachedIntegerMax) {
    return;
  }
  unsigned const low = flags_.load(std::memory_order_relaxed) & unsigned{AllFlags};
  flags_.store(static_cast<std::uint16_t>((static_cast<unsigned>(value) << IntegerShift) | low |
                                          IntegerFlag),
               std::memory_order_release);
}
