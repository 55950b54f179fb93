// lvrDLList: a doubly linked list.
//
// Inserting and removing at a known place touches two neighbours; a position is reached from the
// nearer end. Elements are compared by lvArg::eq(), that is by identity.
//
// Positions: deliberate: insert() counts gaps and everything else counts elements, so a negative
//            position means one place further on in insert(): -1 appends there and is the last
//            element here.
// Search:    deliberate: remove(value) and getElementPos() search from the front and from the back
//            in turn, counted over all lists of the process, so of several equal elements they find
//            the first and the last alternately.
// Ownership: the list holds references to its elements; its cursors hold one to the list.
// Threads:   one thread at a time for a list and all its cursors together. The direction of search
//            may be disturbed by any thread.
// Errors:    out of memory is std::bad_alloc and leaves the list as it was.
// Cursors:   a cursor whose element is taken away stands on the element that has its position when
//            the cursor is next used, or after the last one. It never reads a freed node.
// Cost:      a cursor inserts and removes in constant time. Once others have changed the list it
//            walks to its index for that, until it stands where that says again; so does the cursor
//            of a list of a derived class.
// Callbacks: elements that are released, predicates, and the cursor of a list that is merged may
//            change the list, or drop its last reference. However many elements a predicate adds,
//            gotoNextMatching() and gotoPreviousMatching() end when they have shown it 65,536, or
//            twice as many as the list had at first if that is more.
// Layout:    on 32-bit ARM: count 40, head 44, tail 48, size 52.
#pragma once

#include <cstdint>
#include <utility>

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvReferencable.h"

class TARSELVALUES_API lvrDLList : public lvReferencable, public lviList {
 public:
  // One element. The bookkeeping bits of its cell are the list's: see Pins in lvrDLList.cpp.
  struct lvrDLListNode {
    // Holds a copy of `element`, linked to nothing.
    explicit lvrDLListNode(lvArg const& element) { value.assignFast(element); }
    explicit lvrDLListNode(lvArg&& element) { value = std::move(element); }

    lvArg value;                    // the element
    lvrDLListNode* next = nullptr;  // null: this is the last
    lvrDLListNode* prev = nullptr;  // null: this is the first
  };

  // Where a cursor stands: before the first element (index -1), on one, after the last (index is
  // the size), or nowhere after a failed gotoIndex(), from where only another gotoIndex() leads
  // away.
  class TARSELVALUES_API IteratorLogic {
   public:
    // Takes a reference to `walked`, which the destructor drops.
    explicit IteratorLogic(lvrDLList& walked);
    ~IteratorLogic();
    IteratorLogic(IteratorLogic const&) = delete;
    IteratorLogic& operator=(IteratorLogic const&) = delete;

    // Steps forward one element; false at the end.
    bool gotoNext();
    // Steps back one element; false at the start.
    bool gotoPrevious();
    // Steps on, or back, until `pred` answers true; false when there are no more elements.
    bool gotoMatching(lviRealListEnumerator::Predicate* pred, void* ctx, bool backward);
    // Deliberate: a negative position is kept as given: gotoIndex(-1) stands on the last element
    // while getIndex() answers -1, and gotoNext() then goes to the first.
    bool gotoIndex(int position);
    // Returns the current position.
    int getIndex() const;
    // Returns a copy of the current element; nil when the cursor stands on none.
    lvArg getValue() const;
    // Removes the current element; the cursor is then on the one behind it, under the same index.
    // Deliberate: false for an element that is nil, though it is removed.
    bool remove();
    // Inserts before the current element, or at the end when the cursor is after the last.
    bool insert(lvArg const& value);

   private:
    template <class T>
    friend struct lvLayoutAccess;

    TARSELVALUES_INTERNAL void standOn(lvrDLListNode* other) const;
    TARSELVALUES_INTERNAL lvrDLListNode* liveNode() const;
    TARSELVALUES_INTERNAL void leaveRemoved() const;
    TARSELVALUES_INTERNAL bool isPlaced() const;
    TARSELVALUES_INTERNAL lvrDLListNode* nodeAtIndex() const;
    TARSELVALUES_INTERNAL void setPlaced(bool isAtIndex) const;
    TARSELVALUES_INTERNAL bool removeFromOwn();
    TARSELVALUES_INTERNAL bool insertIntoOwn(lvArg const& value);

    lvrDLList* list;
    mutable lvrDLListNode* node;  // pinned
    bool invalid;
    mutable bool placed;                // `node` was at `index` when the list had had so many
    mutable std::uint16_t seenChanges;  // changes; see Places in lvrDLList.cpp
    mutable std::int32_t index;
  };

 private:
  // A cursor of one of the list interfaces: an IteratorLogic and nothing else.
  template <class Interface>
  class Cursor : public Interface {
   public:
    explicit Cursor(lvrDLList& walked) : logic(walked) {}

    bool gotoNext() override { return logic.gotoNext(); }
    bool gotoNextMatching(lviRealListEnumerator::Predicate* pred, void* ctx) override {
      return logic.gotoMatching(pred, ctx, false);
    }
    bool gotoPrevious() override { return logic.gotoPrevious(); }
    bool gotoPreviousMatching(lviRealListEnumerator::Predicate* pred, void* ctx) override {
      return logic.gotoMatching(pred, ctx, true);
    }
    bool gotoIndex(int index) override { return logic.gotoIndex(index); }
    int getIndex() const override { return logic.getIndex(); }
    lvArg getValue() const override { return logic.getValue(); }

   protected:
    IteratorLogic logic;
  };

 public:
  // The list's read-only cursor; keeps the list alive.
  class TARSELVALUES_API RealEnumerator : public Cursor<lviRealListEnumerator> {
   public:
    // Stands before the first element of `walked`.
    explicit RealEnumerator(lvrDLList const& walked);
    ~RealEnumerator() override;
  };
  // The list's removing cursor; keeps the list alive.
  class TARSELVALUES_API RealIterator : public Cursor<lviRealListIterator> {
   public:
    // Stands before the first element of `walked`.
    explicit RealIterator(lvrDLList& walked);
    ~RealIterator() override;
    // As IteratorLogic::remove().
    bool remove() override;
  };
  // The list's inserting cursor; keeps the list alive.
  class TARSELVALUES_API RealRWIterator : public Cursor<lviRealListRWIterator> {
   public:
    // Stands before the first element of `walked`.
    explicit RealRWIterator(lvrDLList& walked);
    ~RealRWIterator() override;
    // As IteratorLogic::remove().
    bool remove() override;
    // Always true.
    bool isWritable() override;
    // As IteratorLogic::insert().
    bool insert(lvArg const& value) override;
  };

  // Makes an empty list.
  lvrDLList();

  // Returns a new empty list. Any thread.
  static lvReferencable* defaultCtorMethod();

  // Returns the interned "DLList". Any thread.
  static lvString const& getStaticClassDesc();

  lvString const& getClassDesc() const override;
  // Releases all elements.
  ~lvrDLList() override;

  // Declaration order is the binary interface: no virtual function comes, goes or moves.

  // -1 appends, -2 inserts before the last element, and so on; false for a position that is not
  // there.
  bool insert(lvArg const& value, int index) override;
  // -1 is the last element; so for at().
  lvArg remove(int index) override;
  // Returns 0 when an element was removed, -1 when none is equal (lvArg::eq).
  int remove(lvArg const& value) override;
  bool clear() override;
  // Appends copies of the elements of `other`, which may be this list: it has each twice then. An
  // `other` that grows meanwhile is done with at the size that it had; one without cursor is empty.
  // Deliberate: false for an empty `other`, though nothing is wrong.
  bool merge(lviList const& other) override;
  lvArg at(int index) const override;
  int getSize() const override;
  int getElementPos(lvArg const& value) const override;
  lviRealListEnumerator* getListEnumerator() const override;
  lviRealListIterator* getListIterator() override;
  lviRealListRWIterator* getListRWIterator() override;
  // False: the list keeps the order it is given.
  bool isSorted() const override;

 private:
  template <class T>
  friend struct lvLayoutAccess;

  TARSELVALUES_INTERNAL lvrDLListNode* nodeAt(int index) const;
  TARSELVALUES_INTERNAL lvrDLListNode* nodeWith(lvArg const& value, int* pos) const;
  TARSELVALUES_INTERNAL void linkAfter(lvrDLListNode* node, lvrDLListNode* before);
  TARSELVALUES_INTERNAL lvArg removeNode(lvrDLListNode* node);
  TARSELVALUES_INTERNAL void noteChange();
  TARSELVALUES_INTERNAL void displaceCursors();
  TARSELVALUES_INTERNAL void releaseNodes();

  std::int32_t count;
  lvrDLListNode* head;
  lvrDLListNode* tail;
};
