// lvArg: the one value type of the library.
//
// A cell is two words. It holds nil, a signed 32-bit integer, a raw address, or one counted
// reference to an lvReferencable.
//
//   word 0, bits 0-4    type tag (ValueType). With ReferenceFlag set, word 1 is a counted
//                       reference.
//   word 0, bits 5-31   belong to whoever stores the cell. Setters keep them; copy construction,
//                       move construction and exchange() carry them along. 0 in a fresh cell.
//   word 1              integer, address or object. Meaningless in a nil cell.
//
// On 32-bit targets a cell is 8 bytes. On 64-bit targets word 0 is still 32 bits wide (padding
// follows), word 1 is as wide as a pointer, and the cell is 16 bytes.
//
// Ownership: a cell whose tag has ReferenceFlag owns exactly one reference, unless its object is
//            null (after releaseData(), say).
// Threads:   one thread at a time per cell. Cells of different threads may hold the same object:
//            taking and dropping references is safe.
// Errors:    a cell asked for what it does not hold gives the neutral answer named at the function.
//            Nothing here allocates; an exception can only come out of a finalize() of the user's.
// Order:     what replaces an old content is referenced before the old one is released, so a cell
//            may be overwritten from something that only its old content keeps alive. What the old
//            object's finalize() stores into the very cell stays.
// Callbacks: an object of the program's class that is compared or hashed, and the one that it is
//            compared with, are held meanwhile: the cells may be emptied by then.
// Example:   README.md, "A first program"
#pragma once

#include <cstdint>

#include "tarselvalues/core/Export.h"

class lvReferencable;
template <class T>
struct lvLayoutAccess;

class TARSELVALUES_API lvArg {
 public:
  // The type tag. The tag of a counted reference is the object's kind (lvReferencable::Kind) with
  // ReferenceFlag added; no other values than these are ever produced by the library.
  // Compiled programs and debugger scripts rely on the numbers.
  enum ValueType : unsigned char {
    NilType = 0,         // nothing; booleans are integers, not a type of their own
    IntType = 5,         // signed 32-bit integer
    PointerType = 12,    // raw address, neither counted nor ever dereferenced
    ReferenceFlag = 16,  // bit value only: set in every tag below
    ObjectType = 18,     // plain lvReferencable object
    StringType = 19,     // lvrString
    MapType = 24,        // lvrHashMap, lvrTupleSet. Deliberate: lvrStack carries it too, so code
                         // that tells maps by the tag takes a stack for one.
    ListType = 25,       // lvrVector, lvrDLList, lvrSortedArrayList
    ClassType = 27,      // lvrClass
  };

  // Nil. Like the two below it exists before any code of a program runs.
  static lvArg const NilValue;
  // The integer 1.
  static lvArg const TrueValue;
  // The integer 0.
  static lvArg const FalseValue;

  // --- Making -----------------------------------------------------------------------------------

  // Makes a nil cell.
  constexpr lvArg() noexcept : tagWord_(NilType), payload_(0) {}

  // Makes a nil cell. Deliberate: all three arguments are ignored.
  lvArg(unsigned char, int, int) noexcept : lvArg() {}

  // Takes a reference to `object`; the tag follows from its kind.
  lvArg(lvReferencable const& object);  // NOLINT(google-explicit-constructor)

  // Takes a reference where there is one, and copies the bookkeeping bits too. A cell with a tag
  // that the library never produces is copied as nil.
  lvArg(lvArg const& other);

  // Hands the reference over, bookkeeping bits included, without touching its count. `other` is nil
  // afterwards and keeps its own bookkeeping bits. Costs no lock.
  lvArg(lvArg&& other) noexcept : tagWord_(other.tagWord_), payload_(other.payload_) {
    other.setTag(NilType);
  }

  // Drops the reference, if there is one.
  ~lvArg() {
    if (isReference()) {
      releaseData();
    }
  }

  // --- Asking -----------------------------------------------------------------------------------

  // Returns the 5-bit tag.
  ValueType getType() const { return static_cast<ValueType>(tagWord_ & TagMask); }
  // Whether the cell is nil.
  bool isNil() const { return getType() == NilType; }

  // Returns the integer, or -1 when the cell holds none. No text is converted: see lvValue.
  int getInt() const { return getType() == IntType ? integer() : -1; }

  // Returns the address when the cell holds a raw one, else null.
  void* getPointer() const {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the payload word is what was stored.
    return getType() == PointerType ? reinterpret_cast<void*>(payload_) : nullptr;
  }

  // Borrows the object until the cell changes; null when the cell holds no reference.
  lvReferencable* getReferencable() const { return isReference() ? object() : nullptr; }

  // For whoever stores the cell: returns bits 5-31 of the first word as a number of 27 bits. Their
  // meaning is the holder's own.
  std::uint32_t getBookkeeping() const { return tagWord_ >> TagBits; }
  // Sets those bits to the low 27 of `bits`.
  void setBookkeeping(std::uint32_t bits) {
    tagWord_ = (bits << TagBits) | static_cast<std::uint32_t>(getType());
  }
  // Adds to those bits, which wrap around.
  void addToBookkeeping(std::uint32_t number) { tagWord_ += number << TagBits; }

  // --- Comparing --------------------------------------------------------------------------------

  // Identity: the same cell, both nil, or equal tags and equal second words. Two string objects
  // with the same text are not eq.
  bool eq(lvArg const& other) const;

  // Equality of content, as a truth value: cells with different tags are never equivalent, strings
  // are compared by lvrString::equiv(), everything else by identity (so containers too).
  // Deliberate: the integer 42 and the string "42" are not equivalent.
  // Two cells of one reference tag without an object are equivalent to each other only.
  int equiv(lvArg const& other) const;

  // Order: negative, 0 or positive. Different tags: their difference (nil, integers, pointers,
  // objects, strings, maps, lists, classes). References: the object's own compareTo(); a missing
  // object counts as address 0. Integers and addresses: the difference of the second words.
  // Deliberate: integers are subtracted with 32-bit wrap-around, which is no true order once the
  // difference overflows; the sorted containers use this very rule.
  int compareTo(lvArg const& other) const;

  // A 32-bit hash: a fixed number for nil, a mix of the integer or of the address, the object's
  // hashCode() for a reference, 0 for a reference without object and for unknown tags.
  unsigned int hashCode() const;

  // --- Changing ---------------------------------------------------------------------------------
  // All keep the cell's own bookkeeping bits, and all but exchange() and the operators return 0.

  // As assign().
  lvArg& operator=(lvArg const& other) {
    assign(other);
    return *this;
  }

  // Hands the reference over without touching its count; `other` is nil afterwards.
  lvArg& operator=(lvArg&& other) noexcept;

  // Takes what `src` holds and drops what this cell held. When both hold the same object only the
  // tag is copied and no count changes.
  int assign(lvArg const& src);

  // Stores nil.
  int setNil();

  // Stores an integer.
  int setInt(int value);

  // Stores a raw address. It is not counted and never dereferenced.
  int setPointer(void* address);

  // Takes a reference to `object`, unless the cell holds one to it already.
  int setReferencable(lvReferencable const& object);

  // Drops the reference, if there is one. The tag stays: the cell is then a reference of that tag
  // to no object.
  int releaseData();

  // Swaps both words, bookkeeping bits included. No count changes, nothing is locked.
  void exchange(lvArg& other) noexcept;

  // --- For the library itself; not exported -----------------------------------------------------

  // As eq(), inline.
  bool isSame(lvArg const& other) const {
    return getType() == other.getType() && (isNil() || payload_ == other.payload_);
  }

  // Makes a cell of a reference that the caller has taken.
  static lvArg ofTaken(ValueType type, lvReferencable const& object) {
    return {type, reinterpret_cast<std::uintptr_t>(&object)};
  }

  // What eq() compares besides the tag.
  std::uintptr_t getIdentity() const { return isNil() ? 0 : payload_; }

  // --- Changing without releasing ---------------------------------------------------------------
  // For fresh or released cells only: any other cell leaks the reference it held.

  // As assign(). From nil, or from a tag that the library never produces, the cell becomes nil.
  int assignFast(lvArg const& src);

  // As setReferencable().
  int setReferencableFast(lvReferencable const& object);

  // The same with a tag of the caller's choice, masked to 5 bits. A `type` without ReferenceFlag
  // leaves a reference that no cell will ever drop.
  int setReferencableFast(lvReferencable const& object, ValueType type);

 private:
  template <class T>
  friend struct lvLayoutAccess;

  static constexpr unsigned TagBits = 5;
  static constexpr std::uint32_t TagMask = (1U << TagBits) - 1;

  constexpr lvArg(ValueType tag, std::uintptr_t word) noexcept : tagWord_(tag), payload_(word) {}

  bool isReference() const { return (tagWord_ & ReferenceFlag) != 0; }
  void setTag(ValueType tag) { tagWord_ = (tagWord_ & ~TagMask) | (tag & TagMask); }
  void set(ValueType tag, std::uintptr_t word) {
    setTag(tag);
    payload_ = word;
  }
  int integer() const { return static_cast<int>(static_cast<std::uint32_t>(payload_)); }
  // NOLINTNEXTLINE(performance-no-int-to-ptr): the payload word is what was stored.
  lvReferencable* object() const { return reinterpret_cast<lvReferencable*>(payload_); }

  // Gives up the held object without dropping the reference, which is the caller's then.
  lvReferencable* detach() noexcept;

  std::uint32_t tagWord_;
  std::uintptr_t payload_;
};
