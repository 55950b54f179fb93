// lvrVector: a list in a ring buffer.
//
// The elements lie in one array of cells, from a movable slot on and wrapping past the array's end,
// so that inserting and removing near either end moves only the shorter side. Element i lies in
// slot (start + i) mod alloced; the other slots are nil. A slot keeps its bookkeeping bits when
// elements move through it.
//
// Limits:    65535 elements. insert() refuses the next one and changes nothing; a capacity beyond
//            that is cut to it.
// Growth:    by half, plus ten: from n full cells to n * 3 / 2 + 10. Never shrinks by itself.
// Ownership: the vector holds references to its elements; its cursors hold one to the vector.
// Threads:   one thread at a time for a vector and all its cursors together.
// Errors:    out of memory is std::bad_alloc and leaves the vector as it was.
// Cursors:   hold a position, not an element: they see every change, and read nil where there is no
//            element any more.
// Callbacks: elements that are hashed, compared or released may change the vector, or drop its last
//            reference. A search goes on with the next position; a hash counts what is gone by then
//            as nil. Whatever an element throws leaves the vector as it was. A cursor that its
//            predicate moves shows at most as many elements as a vector may have.
// Life:      finalize() frees everything; the destructor itself frees nothing.
// Layout:    on 32-bit ARM: elements 40, alloced 44, start 46, count 48, flags 50, hashCache 52,
//            size 56.
#pragma once

#include <cstdint>
#include <utility>

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

namespace tarselvalues {
class KeptWhileAsking;
}  // namespace tarselvalues

class TARSELVALUES_API lvrVector : public lvReferencable, public lviList {
 public:
  // What vectorEvent() is told about.
  enum Action {
    InsertAction,  // insert()
    RemoveAction,  // remove()
    ClearAction,   // clear()
  };

  // The most elements that a vector holds.
  static constexpr int MaxSize = 65535;

  // The vector's cursor; keeps the vector alive.
  class TARSELVALUES_API RealEnumerator : public lviRealListEnumerator {
   public:
    // Stands before the first element of `walked`.
    explicit RealEnumerator(lvrVector const& walked);
    ~RealEnumerator() override;
    bool gotoNext() override;
    bool gotoNextMatching(Predicate* pred, void* ctx) override;
    bool gotoPrevious() override;
    bool gotoPreviousMatching(Predicate* pred, void* ctx) override;
    bool gotoIndex(int index) override;
    int getIndex() const override;
    lvArg getValue() const override;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    std::int32_t position = -1;
    lvrVector const* vector;
  };

  // Makes an empty vector with room for `size` elements; a negative `size` allocates nothing yet.
  explicit lvrVector(int size);

  // Takes a ring buffer over, which the vector will free as an array of lvArg: `ringCount` elements
  // from slot `ringStart` on in `ring`, an array of `ringAlloced` cells (null counts as none).
  // Numbers that do not fit each other are cut until they do, and slots without element become nil.
  lvrVector(int ringAlloced, int ringCount, int ringStart, lvArg* ring);

  // Returns a new vector with room for 7 elements. Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "Vector". Any thread.
  static lvString const& getStaticClassDesc();

  // Hash of the elements in order, cached until the next insert() or remove().
  // Deliberate: clear() keeps the cache, so a cleared vector still has the hash it had.
  unsigned int hashCode() const override;
  lvString const& getClassDesc() const override;
  // As releaseData(), and what is inserted meanwhile goes too.
  int finalize() override;
  // Frees nothing: finalize() has.
  ~lvrVector() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // False: a vector keeps the order it is given.
  bool isSorted() const override;
  // False when `index` is beyond the end or below -1, when the vector is full, or when setAlloced()
  // answered a negative number.
  bool insert(lvArg const& value, int index) override;
  lvArg remove(int index) override;
  // Removes the first element that is equivalent (lvArg::equiv); 1 if there was one, else 0.
  int remove(lvArg const& value) override;
  // Keeps the array.
  bool clear() override;
  lvArg at(int index) const override;
  int getSize() const override;
  // Sets the capacity to `capacity`, or to the number of elements if that is more; a negative one
  // cuts it to fit. Returns the capacity now in force.
  virtual int setAlloced(int capacity);
  // Position of the first element that is equivalent (lvArg::equiv), or -1.
  int getElementPos(lvArg const& value) const override;
  // Deliberate: does nothing and returns false; a vector offers no merge.
  bool merge(lviList const& other) override;
  lviRealListEnumerator* getListEnumerator() const override;
  // Always null: a vector offers the read-only cursor alone.
  lviRealListIterator* getListIterator() override;
  // Always null.
  lviRealListRWIterator* getListRWIterator() override;
  // Does nothing. A hook that no operation of the vector calls.
  virtual void vectorEvent(Action action, int index, lvArg const& value);

  // Releases all elements, the last slot first, and frees the array. Returns 0.
  int releaseData();

  // --- For the library itself; not exported -----------------------------------------------------

  // As at(), but borrows the element, until the vector changes.
  TARSELVALUES_INTERNAL lvArg const& borrow(int index) const {
    return index >= 0 && index < count ? slot(index) : lvArg::NilValue;
  }

  // Hands the element over; it is nil afterwards. Requires that there is one.
  TARSELVALUES_INTERNAL lvArg handOver(int index) { return std::move(slot(index)); }

  // As insert() with index -1, but takes the value over, if there is room.
  TARSELVALUES_INTERNAL bool append(lvArg&& value);

 private:
  template <class T>
  friend struct lvLayoutAccess;

  TARSELVALUES_INTERNAL int positionOf(lvArg const& value,
                                       tarselvalues::KeptWhileAsking& self) const;
  TARSELVALUES_INTERNAL lvArg& slot(int position) const {
    int const unwrapped = start + position;  // `start` may lie behind a new, smaller array.
    return elements[unwrapped < alloced ? unwrapped : unwrapped % alloced];
  }
  TARSELVALUES_INTERNAL bool makeRoom();
  TARSELVALUES_INTERNAL void shiftUp(int first, int last);
  TARSELVALUES_INTERNAL void shiftDown(int first, int last);

  lvArg* elements;
  std::uint16_t alloced;
  std::uint16_t start;
  std::uint16_t count;
  mutable std::uint16_t flags;
  mutable std::uint32_t hashCache;
};
