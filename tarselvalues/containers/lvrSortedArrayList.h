// lvrSortedArrayList: a sorted list in one growable array.
//
// Lookups are bisections; adding moves the elements behind with one memory move; the array grows by
// eight cells, or straight to what is needed.
//
// Equal elements: with duplicates allowed they stand side by side. Without, deliberate: adding an
//            element that is there replaces it and lengthens the list by a nil at its end.
// Nil:       deliberate: add() of nil into an empty list stores it; into a list that holds none it
//            does nothing; where it finds one, it takes that out, overwrites the element that moved
//            into its place with nil, and leaves a nil at the end, so the length stays.
// Ownership: the list holds references to its elements; its cursors hold none to the list and must
//            not outlive it.
// Threads:   one thread at a time for a list and all its cursors together.
// Errors:    deliberate: when the array of a list with elements cannot grow during add(), the
//            process ends with exit status 13. An empty list stays empty then, and a list that
//            cannot grow in addAll() or expand() has lost its elements and is empty.
// Cursors:   read through the list by position: they see every change, and nil where there is no
//            element any more. For that they have a pointer to the list.
// Callbacks: elements that are compared or released, and the cursors of another list, may change
//            the list, or drop its last reference, or that of the other. A search goes on in the
//            positions that it had left and ends where they are gone; add() may then insert out of
//            order. During addAll() the list is empty for them, and what they add to it is released
//            at the end. A list that grows while it is merged or looked for is done with at the
//            size that it had. Whatever an element throws leaves the list as it was; out of
//            addAll(), with some of the new elements.
// Layout:    on 32-bit ARM: array 36, count 40, capacity 44, growStep 48 (24 bits), allowDuplicates
//            51, size 52.
#pragma once

#include <climits>
#include <cstdint>

#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/core/Export.h"

namespace tarselvalues {
class SearchedKey;
struct Probe;
}  // namespace tarselvalues

class TARSELVALUES_API lvrSortedArrayList : public lviSortedList {
 public:
  // Where a cursor stands. Brought up to date with the list at each step.
  class TARSELVALUES_API BaseEnumerator {
   public:
    // Deliberate: at position 0 the cursor stands before the first element; at `position` 1 or more
    // it stands on that element as if it had just been returned, so next() gives the one behind.
    BaseEnumerator(lvrSortedArrayList const& list, int position);

    // Whether there is an element for next().
    bool hasNext(lvrSortedArrayList const& list) const;
    // Whether there is an element for previous().
    bool hasPrevious(lvrSortedArrayList const& list) const;
    // Steps forward and returns the element there; nil, without a step, at the end.
    lvArg next(lvrSortedArrayList const& list);
    // Returns the position that next() would step to; the number of elements if there is none.
    int nextIndex(lvrSortedArrayList const& list) const;
    // Steps back and returns the element there; nil at the start.
    lvArg previous(lvrSortedArrayList const& list);
    // Returns the position that previous() would step to; -1 if there is none.
    int previousIndex(lvrSortedArrayList const& list) const;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    TARSELVALUES_INTERNAL void setPosition(int position);
    TARSELVALUES_INTERNAL BaseEnumerator upToDate(lvrSortedArrayList const& list) const;
    TARSELVALUES_INTERNAL lvArg value() const;

    lvArg const* array;
    lvArg const* current;  // the cell returned last; null before the first step
    std::int32_t index;
    std::int32_t count;
  };

  // The list's read-only cursor.
  class TARSELVALUES_API Enumerator : public lviRealSortedListEnumerator {
   public:
    // Stands in `walked` as BaseEnumerator does.
    Enumerator(lvrSortedArrayList const& walked, int position)
        : base(walked, position), list(&walked) {}
    bool hasNext() const override;
    bool hasPrevious() const override;
    lvArg next() override;
    int nextIndex() const override;
    lvArg previous() override;
    int previousIndex() const override;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    BaseEnumerator base;
    lvrSortedArrayList const* list;
  };

  // The list's iterator.
  class TARSELVALUES_API Iterator : public lviRealSortedListIterator {
   public:
    // Stands in `walked` as BaseEnumerator does.
    Iterator(lvrSortedArrayList& walked, int position) : list(&walked), base(walked, position) {}
    bool hasNext() const override;
    bool hasPrevious() const override;
    lvArg next() override;
    int nextIndex() const override;
    lvArg previous() override;
    int previousIndex() const override;
    // Does nothing.
    void add(lvArg const& value) override;
    // Does nothing.
    void remove() override;
    // Does nothing.
    void set(lvArg const& value) override;

   private:
    template <class T>
    friend struct lvLayoutAccess;

    lvrSortedArrayList* list;
    BaseEnumerator base;
  };

  // What bounds a search of the whole list.
  static constexpr int WholeList = INT_MAX;

  // Makes an empty list. Only the lowest bit of `duplicates` counts.
  explicit lvrSortedArrayList(unsigned int duplicates);

  // Returns a new list that keeps duplicates. Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "SortedArrayList". Any thread.
  static lvString const& getStaticClassDesc();

  // 0 for this very list. Otherwise the kinds are compared, then the sizes, then the elements from
  // the front. Deliberate: a shorter list compares greater than a longer one.
  // -1 for an object of the same kind that is no sorted list.
  int compareTo(lvReferencable const& other) const override;
  lvString const& getClassDesc() const override;
  // As clear().
  int finalize() override;
  ~lvrSortedArrayList() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  int getSize() const override;
  int add(lvArg const& value) override;
  // Merges `other`, which may be this list, in place. Of equal elements the one of `other` comes
  // last. Where duplicates are not allowed it replaces this list's, and a nil ends `other`. Both
  // must be in order: in a list with a nil behind its last element, equal elements may stay.
  bool addAll(lviSortedList const& other) override;
  // Releases the elements and frees the array.
  void clear() override;
  bool contains(lvArg const& value) const override;
  bool containsAll(lviSortedList const& other) const override;
  bool equals(lviSortedList const& other) const override;
  lvArg get(int index) const override;
  int indexOf(lvArg const& value) const override;
  bool isEmpty() const override;
  lviRealSortedListIterator* getSortedListIterator(int position) override;
  lviRealSortedListEnumerator* getSortedListEnumerator(int position) const override;
  int lastIndexOf(lvArg const& value) const override;
  int reserved14() override;
  int reserved15() override;
  lvArg reserved16() override;
  lvArg reserved17() override;

  // Bisection in the positions from `low` up to `high`, both cut to the list. Returns the position
  // of an equal element, or the position probed last: a neighbour of where the value belongs.
  // `found`, where not null, says which.
  int search(lvArg const& value, bool* found, int low, int high) const;

  // Makes room for `needed` elements. Returns 0, or -12 without memory: the elements are lost then.
  int expand(int needed);

  // Removes the element at a position; nothing happens if there is none.
  void removeEntry(int i);

  // For derived classes, which then count the new element: moves the elements from a position on up
  // by one, and leaves nil at the position. Nothing happens without room. The size stays, so the
  // last element has left the list, and is released when its place is taken or the list goes.
  void insertEmptyEntry(int i);

 private:
  template <class T>
  friend struct lvLayoutAccess;

  class TARSELVALUES_INTERNAL KeptLists;
  class TARSELVALUES_INTERNAL Merge;

  TARSELVALUES_INTERNAL bool keepsDuplicates() const { return (allowDuplicates & 1U) != 0; }
  TARSELVALUES_INTERNAL lvArg const& elementAt(int i) const { return array[i]; }
  TARSELVALUES_INTERNAL tarselvalues::Probe find(tarselvalues::SearchedKey const& value, int low,
                                                 int high) const;
  TARSELVALUES_INTERNAL void growOrExit();
  TARSELVALUES_INTERNAL void insertAt(int i, lvArg const& value);
  TARSELVALUES_INTERNAL int mergedSize(lviSortedList const& other, KeptLists& kept,
                                       int& taken) const;

  lvArg* array;
  std::int32_t count;
  std::int32_t capacity;
  std::uint32_t growStep : 24;
  std::uint32_t allowDuplicates : 8;
};
