// lvReferencable: base of every object that a cell (lvArg) can reference.
//
// It carries the object's kind, which becomes the tag of the cells that hold it, a reference count,
// and a mutex of its own that makes counting safe across threads.
//
// Life:      new -> count 0 -> every cell, handle or cursor that holds the object adds one -> the
//            last __removeRef() runs finalize(), then the destructor, and frees the object.
//            An object that no cell ever held is the caller's to delete.
// Ownership: whoever takes a reference drops it. Only cells, handles and cursors take one.
// Threads:   one thread at a time per object, unless its class says otherwise. But taking and
//            dropping references is safe from any thread; each change of the count is made under
//            the object's recursive mutex, which is never held while finalize() runs, and which is
//            left alone for as long as the process has never had a second thread.
// Layout:    on 32-bit ARM: virtual table 0, type byte 4, count 8, mutex 12, size 36.
// Deriving:  call setKind() in the constructor for another kind than ObjectKind; override
//            getClassDesc() to be found in the class registry; drop what the object holds in
//            finalize(), which runs before the destructors.
#pragma once

#include <pthread.h>

#include <atomic>
#include <climits>
#include <cstdint>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/lvArg.h"

class lvString;

class TARSELVALUES_API lvReferencable {
 public:
  // What an object is. A cell that holds it has the kind plus lvArg::ReferenceFlag as its tag.
  // Compiled programs and debugger scripts rely on the numbers.
  enum Kind : unsigned char {
    ObjectKind = 2,  // any other object
    StringKind = 3,  // lvrString
    MapKind = 8,     // lvrHashMap, lvrTupleSet. Deliberate: stacks too.
    ListKind = 9,    // lvrVector, lvrDLList, lvrSortedArrayList
    ClassKind = 11,  // lvrClass
  };

  // Makes an object of ObjectKind with count 0 and a fresh mutex. Bits 2-3 of the type byte, which
  // are left to derived classes, are 0.
  lvReferencable();

  lvReferencable(lvReferencable const&) = delete;
  lvReferencable& operator=(lvReferencable const&) = delete;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // Equality of content, as a truth value. Here: 1 for this very object, else 0.
  virtual int equiv(lvReferencable const& other) const;
  // A hash that agrees with equiv(). Here: 0.
  virtual unsigned int hashCode() const;
  // Order. Here: by address (in units of four bytes).
  virtual int compareTo(lvReferencable const& other) const;
  // Returns nil. A hook that no class of the library uses.
  virtual lvArg getValue() const;
  // Returns 0. A hook for walks over object graphs that no class of the library uses.
  virtual int __mark();
  // Returns the class key: the interned name of the class, here getStaticClassDesc(). Any thread.
  virtual lvString const& getClassDesc() const;
  // Drops what the object holds; runs when the last reference has gone, before the destructor, with
  // no lock held. It may run more than once and must then do no harm. Returns 0.
  virtual int finalize();
  // Destroys the mutex.
  virtual ~lvReferencable();
  // Returns 0. A hook that no class of the library uses.
  virtual int __hook();

  // Returns the interned "Referencable". It is made by the first call, and released by the exit
  // handlers; a call after that makes it again. Any thread.
  static lvString const& getStaticClassDesc();

  // Drops one reference. Returns 1 when that was the last one and the object is gone, else 0.
  // What the object holds is released within its own end; more than 100 levels below the outermost
  // release an end may be put off, but it comes before the outermost call returns.
  // Dropping a reference that nobody took leaves a negative count and deletes nothing.
  // An immortal object is never deleted: its count goes from 0 to 10000 instead. Any thread.
  int __removeRef();

  // Sets both lifetime bits: the object is never deleted from then on. Any thread.
  void __makeImmortal();

  // Returns the object's kind. Any thread.
  Kind getKind() const {
    return static_cast<Kind>(typeByte_.load(std::memory_order_relaxed) >> KindShift);
  }

 protected:
  // For the library itself; not exported: makes an object of this kind with these of the bits that
  // are left to derived classes set. Inline in core/OneBlockString.h.
  TARSELVALUES_INTERNAL inline lvReferencable(Kind kind, unsigned ownBits) noexcept;

  // For constructors: sets the kind and keeps the low four bits of the type byte.
  void setKind(Kind kind) {
    unsigned const low = typeByte_.load(std::memory_order_relaxed) & LowBits;
    typeByte_.store(static_cast<std::uint8_t>(low | (static_cast<unsigned>(kind) << KindShift)),
                    std::memory_order_relaxed);
  }

  // Bits 2-3 of the type byte, which are the derived class's own; lvrString uses both.
  static constexpr unsigned FirstOwnBit = 0x04;   // bit 2
  static constexpr unsigned SecondOwnBit = 0x08;  // bit 3
  // Whether the bit is set. Any thread.
  bool hasOwnBit(unsigned bit) const {
    return (typeByte_.load(std::memory_order_relaxed) & bit) != 0;
  }
  // Sets the bit. Any thread.
  void setOwnBit(unsigned bit) const {
    if (!hasOwnBit(bit)) {
      typeByte_.fetch_or(static_cast<std::uint8_t>(bit), std::memory_order_relaxed);
    }
  }
  // Clears the bit. Any thread.
  void clearOwnBit(unsigned bit) const {
    if (hasOwnBit(bit)) {
      typeByte_.fetch_and(static_cast<std::uint8_t>(~bit), std::memory_order_relaxed);
    }
  }

  // Returns a number that is the derived class's own, 0 at first, in the bytes that the type byte
  // leaves free.
  std::uint16_t getOwnNumber() const { return ownNumber_; }
  // Sets that number.
  void setOwnNumber(std::uint16_t number) { ownNumber_ = number; }

  // Whether finalize() runs because the last reference has gone.
  bool isEnding() const { return count() < DyingCount / 2; }

  // What finalize() answers to stay alive, for objects that others can find without holding a
  // reference: only interned strings do. Whoever answers it must have seen isStillUnheld() fail.
  static constexpr int FinalizeRefused = INT_MIN;

  // For such a finalize(), under the lock that guards the finding: false when somebody has taken a
  // reference, or made the object immortal, since the last reference went. The count is then put
  // right again.
  TARSELVALUES_INTERNAL bool isStillUnheld();

 private:
  template <class T>
  friend struct lvLayoutAccess;
  friend struct tarselvalues::Counting;
  friend class tarselvalues::KeptAlive;

  // Type byte: bits 0-1 lifetime (immortal when both are set), bits 2-3 left to derived classes,
  // bits 4-7 the kind.
  static constexpr unsigned ImmortalBits = 0x03;
  static constexpr unsigned LowBits = 0x0F;
  static constexpr unsigned KindShift = 4;

  // The count is set under ObjectLock; read without, it may be a moment late.
  std::int32_t count() const { return count_.load(std::memory_order_relaxed); }
  void setCount(std::int32_t count) const { count_.store(count, std::memory_order_relaxed); }

  bool isImmortal() const;
  TARSELVALUES_INTERNAL int finish();
  TARSELVALUES_INTERNAL void putOff();
  TARSELVALUES_INTERNAL static void finishWaiting();

  // The count an immortal object gets in place of 0: high enough not to be back there soon.
  static constexpr std::int32_t ImmortalCount = 10000;
  // The count while the last release carries on. Far below 0, so that references that are taken
  // and dropped meanwhile never bring it to 0 a second time.
  static constexpr std::int32_t DyingCount = INT_MIN / 2;

  mutable std::atomic<std::uint8_t> typeByte_;  // Atomic: others may read the kind meanwhile.
  std::uint16_t ownNumber_;
  mutable std::atomic<std::int32_t> count_;  // How many hold the object. Set under `mutex_`.
  mutable pthread_mutex_t mutex_;            // Recursive.
};
