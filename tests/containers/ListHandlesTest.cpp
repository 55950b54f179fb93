#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <type_traits>

#include "support/Cells.h"
#include "support/IgnoreLeaks.h"
#include "support/Nodes.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvListRWIterator.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace {

using test::bookkeepingOf;
using test::countOf;
using test::Held;
using test::integer;
using test::setBookkeeping;
using test::string;

TEST(VectorHandle, MakesAVectorOfTheSizeGiven) {
  lvVector const vector(13);
  EXPECT_EQ(vector.getType(), lvArg::ListType);
  EXPECT_EQ(countOf(vector), 1);
  EXPECT_EQ(test::VectorLayout::alloced(dynamic_cast<lvrVector&>(*vector.getReferencable())), 13);
  EXPECT_EQ(vector->getSize(), 0);
}

TEST(VectorHandle, OfANegativeSizeMakesAVectorToo) {
  lvVector const vector(-1);
  EXPECT_TRUE(vector->insert(integer(1), -1));
  EXPECT_EQ(vector->getSize(), 1);
}

TEST(VectorHandle, SharesTheListOfACell) {
  lvVector const vector(7);
  lvArg const cell(vector);
  lvVector const shared(cell);
  EXPECT_EQ(shared.getList(), vector.getList());
  EXPECT_EQ(countOf(vector), 3);
  shared->insert(integer(1), -1);
  EXPECT_EQ(vector->at(0).getInt(), 1);
}

TEST(VectorHandle, DropsItsReferenceWhenItGoes) {
  lvVector const vector(7);
  { lvVector const shared{lvArg(vector)}; }
  EXPECT_EQ(countOf(vector), 1);
}

TEST(VectorHandle, OfAnyOtherTagIsNil) {
  for (lvArg const& other :
       {lvArg(), integer(25), test::pointer(25), string("list"), lvArg(*new lvReferencable),
        lvArg(lvHashMap(3)), lvArg(*lvrClass::defaultCtorMethod())}) {
    lvVector const vector(other);
    EXPECT_TRUE(vector.isNil()) << other.getType();
    EXPECT_EQ(vector.getList(), nullptr);
    EXPECT_EQ(vector.operator->(), nullptr);
  }
}

TEST(VectorHandle, OfAnyOtherTagTakesNoReference) {
  lvHashMap const map(3);
  lvVector const vector(map);
  EXPECT_EQ(countOf(map), 1);
}

TEST(VectorHandle, TakesTheTagForAListAndOffersNoInterfaceWithoutOne) {
  lvArg cell;
  cell.setReferencableFast(*new lvReferencable, lvArg::ListType);
  lvVector const vector(cell);
  EXPECT_EQ(vector.getType(), lvArg::ListType);
  EXPECT_EQ(countOf(cell), 2);
  EXPECT_EQ(vector.getList(), nullptr);
}

TEST(VectorHandle, IsNilForAVectorUnderAnotherTag) {
  lvArg cell;
  cell.setReferencableFast(*new lvrVector(7), lvArg::ObjectType);
  EXPECT_TRUE(lvVector(cell).isNil());
}

TEST(VectorHandle, OfAReleasedCellOffersNoInterface) {
  lvArg cell = lvVector(7);
  cell.releaseData();
  EXPECT_EQ(lvVector(static_cast<lvArg const&>(cell)).getList(), nullptr);
}

TEST(VectorHandle, LeavesTheBookkeepingOfTheCellBehind) {
  lvArg cell = lvVector(7);
  setBookkeeping(cell, 0x20);
  EXPECT_EQ(bookkeepingOf(lvVector(static_cast<lvArg const&>(cell))), 0U);
}

TEST(VectorHandle, AssignedACellOfAnotherTagBecomesNil) {
  lvVector vector(7);
  lvArg const former(vector);
  vector = integer(3);
  EXPECT_TRUE(vector.isNil());
  EXPECT_EQ(countOf(former), 1);
}

// --- The cursor handles --------------------------------------------------------------------------

// A list without elements that keeps account of the cursors it gave, and frees those that nobody
// deleted.
class CursorList : public lvReferencable, public lviList {
 public:
  CursorList() { setKind(ListKind); }
  ~CursorList() override {
    while (!alive_.empty()) {
      delete *alive_.begin();
    }
  }

  bool isSorted() const override { return false; }
  bool insert(lvArg const& /*value*/, int /*index*/) override { return false; }
  lvArg remove(int /*index*/) override { return lvArg(); }
  int remove(lvArg const& /*value*/) override { return 0; }
  bool clear() override { return true; }
  bool merge(lviList const& /*other*/) override { return false; }
  lvArg at(int /*index*/) const override { return lvArg(); }
  int getSize() const override { return 0; }
  int getElementPos(lvArg const& /*value*/) const override { return -1; }
  lviRealListEnumerator* getListEnumerator() const override {
    return new Cursor<lviRealListEnumerator>(*this, Enumerator);
  }
  lviRealListIterator* getListIterator() override { return new Iterator(*this, Removing); }
  lviRealListRWIterator* getListRWIterator() override { return new RWIterator(*this); }

  // What a cursor answers to getIndex().
  enum Kind { Enumerator = 101, Removing = 102, Inserting = 103 };

  // How many cursors of the kind were not deleted.
  int alive(int kind) const {
    int found = 0;
    for (lviRealListEnumerator const* const cursor : alive_) {
      found += cursor->getIndex() == kind ? 1 : 0;
    }
    return found;
  }

 private:
  template <class Interface>
  class Cursor : public Interface {
   public:
    Cursor(CursorList const& list, int kind) : list_(list), kind_(kind) {
      list_.alive_.insert(this);
    }
    ~Cursor() override { list_.alive_.erase(this); }
    bool gotoNext() override { return false; }
    bool gotoNextMatching(lviRealListEnumerator::Predicate* /*pred*/, void* /*ctx*/) override {
      return false;
    }
    bool gotoPrevious() override { return false; }
    bool gotoPreviousMatching(lviRealListEnumerator::Predicate* /*pred*/, void* /*ctx*/) override {
      return false;
    }
    bool gotoIndex(int /*index*/) override { return false; }
    int getIndex() const override { return kind_; }
    lvArg getValue() const override { return lvArg(); }

   private:
    CursorList const& list_;
    int kind_;
  };

  template <class Interface>
  class RemovingCursor : public Cursor<Interface> {
   public:
    using Cursor<Interface>::Cursor;
    bool remove() override { return true; }
  };
  using Iterator = RemovingCursor<lviRealListIterator>;

  class RWIterator : public RemovingCursor<lviRealListRWIterator> {
   public:
    explicit RWIterator(CursorList const& list) : RemovingCursor(list, Inserting) {}
    bool isWritable() override { return true; }
    bool insert(lvArg const& /*value*/) override { return true; }
  };

  mutable std::set<lviRealListEnumerator*> alive_;
};

class ListCursorHandle : public ::testing::Test {
 protected:
  void expectAlive(int enumerators, int iterators, int rwIterators) const {
    EXPECT_EQ(list->alive(CursorList::Enumerator), enumerators);
    EXPECT_EQ(list->alive(CursorList::Removing), iterators);
    EXPECT_EQ(list->alive(CursorList::Inserting), rwIterators);
  }

  Held<CursorList> list;
};

TEST_F(ListCursorHandle, OfAnEnumeratorHoldsOneAndDeletesIt) {
  {
    lvListEnumerator const handle(*list);
    EXPECT_EQ(handle->getIndex(), CursorList::Enumerator);
    EXPECT_EQ(handle.getCursor(), handle.operator->());
    expectAlive(1, 0, 0);
  }
  expectAlive(0, 0, 0);
}

TEST_F(ListCursorHandle, OfAnIteratorHoldsTheRemovingCursor) {
  lvListIterator const handle(*list);
  EXPECT_EQ(handle->getIndex(), CursorList::Removing);
  EXPECT_TRUE(handle->remove());
  EXPECT_EQ(handle.getCursor(), handle.operator->());
}

TEST_F(ListCursorHandle, OfAReadWriteIteratorHoldsTheInsertingCursor) {
  lvListRWIterator const handle(*list);
  EXPECT_EQ(handle->getIndex(), CursorList::Inserting);
  EXPECT_TRUE(handle->isWritable());
  EXPECT_TRUE(handle->insert(integer(1)));
  EXPECT_EQ(handle.getCursor(), handle.operator->());
}

TEST_F(ListCursorHandle, IsReachedThroughItsBases) {
  lvListRWIterator const handle(*list);
  lvListIterator const& iterator = handle;
  lvListEnumerator const& enumerator = handle;
  EXPECT_EQ(iterator->getIndex(), CursorList::Inserting);
  EXPECT_EQ(enumerator->getIndex(), CursorList::Inserting);
}

TEST(ListCursorHandles, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<lvListEnumerator>);
  EXPECT_FALSE(std::is_copy_constructible_v<lvListIterator>);
  EXPECT_FALSE(std::is_copy_constructible_v<lvListRWIterator>);
  EXPECT_FALSE(std::is_copy_assignable_v<lvListEnumerator>);
  EXPECT_FALSE(std::is_copy_assignable_v<lvListIterator>);
  EXPECT_FALSE(std::is_copy_assignable_v<lvListRWIterator>);
}

TEST(ListCursorHandles, DeriveFromEachOther) {
  EXPECT_TRUE((std::is_base_of_v<lvListEnumerator, lvListIterator>));
  EXPECT_TRUE((std::is_base_of_v<lvListIterator, lvListRWIterator>));
  EXPECT_TRUE((std::is_base_of_v<lviRealListEnumerator, lviRealListIterator>));
  EXPECT_TRUE((std::is_base_of_v<lviRealListIterator, lviRealListRWIterator>));
}

TEST(ListEnumeratorHandle, WalksAVectorAndLetsGoOfIt) {
  Held<lvrVector> const vector(3);
  test::append(*vector, {1, 2, 3});
  {
    lvListEnumerator const item(*vector);
    EXPECT_EQ(countOf(*vector), 2);
    int sum = 0;
    while (item->gotoNext()) {
      sum += item->getValue().getInt();
    }
    EXPECT_EQ(sum, 6);
  }
  EXPECT_EQ(countOf(*vector), 1);
}

// --- What stays behind ---------------------------------------------------------------------------

using ListHandleOddities = ListCursorHandle;

TEST_F(ListHandleOddities, AnIteratorLeavesOneEnumeratorBehind) {
  {
    lvListIterator const handle(*list);
    expectAlive(1, 1, 0);
  }
  expectAlive(1, 0, 0);
}

TEST_F(ListHandleOddities, AReadWriteIteratorLeavesAnEnumeratorAndAnIteratorBehind) {
  {
    lvListRWIterator const handle(*list);
    expectAlive(1, 1, 1);
  }
  expectAlive(1, 1, 0);
}

// A vector whose last reference is not counted by the test itself: it tells when it goes.
class ListHandleOnAVector : public ::testing::Test {
 protected:
  ListHandleOnAVector() {
    vector->insert(test::acting([this] { isGone = true; }), -1);
  }

  // Drops one reference that a cursor left behind, so that no more than the cursor is lost.
  void dropReference() { EXPECT_EQ(vector->__removeRef(), 0); }

  bool isGone = false;
  Held<lvrVector> vector{3};
};

TEST_F(ListHandleOnAVector, HoldsNullForAnIterator) {
  test::IgnoreLeaks const ignore;
  lvListIterator const iterator(*vector);
  lvListRWIterator const readWrite(*vector);
  EXPECT_EQ(iterator.getCursor(), nullptr);
  EXPECT_EQ(iterator.operator->(), nullptr);
  EXPECT_EQ(readWrite.getCursor(), nullptr);
  EXPECT_EQ(readWrite.operator->(), nullptr);
  dropReference();
  dropReference();
}

TEST_F(ListHandleOnAVector, KeepsOneReferenceForAnIteratorThatIsGone) {
  {
    test::IgnoreLeaks const ignore;
    lvListIterator const handle(*vector);
  }
  EXPECT_EQ(countOf(*vector), 2);
  dropReference();
}

TEST_F(ListHandleOnAVector, KeepsOneReferenceForAReadWriteIteratorThatIsGone) {
  {
    test::IgnoreLeaks const ignore;
    lvListRWIterator const handle(*vector);
  }
  EXPECT_EQ(countOf(*vector), 2);  // There is no iterator that could keep a second one.
  dropReference();
}

TEST_F(ListHandleOnAVector, KeepsTheVectorAliveForGoodOnceAnIteratorWasMade) {
  {
    test::IgnoreLeaks const ignore;
    lvListIterator const handle(*vector);
  }
  lvrVector& left = *vector;
  vector.cell().setNil();
  EXPECT_FALSE(isGone);
  EXPECT_EQ(countOf(left), 1);
  EXPECT_EQ(left.__removeRef(), 1);
  EXPECT_TRUE(isGone);
}

TEST_F(ListHandleOnAVector, KeepsNothingForAnEnumeratorThatIsGone) {
  { lvListEnumerator const handle(*vector); }
  EXPECT_EQ(countOf(*vector), 1);
}

// --- A linked list, which has all three cursors --------------------------------------------------

class ListHandleOnALinkedList : public ::testing::Test {
 protected:
  // What cursors that were left behind hold; takes their references, so that they alone are lost.
  void expectLeftBehind(int cursors) {
    EXPECT_EQ(countOf(*list), 1 + cursors);
    for (int i = 0; i < cursors; ++i) {
      EXPECT_EQ(list->__removeRef(), 0);
    }
  }

  test::LinkedList list{1, 2, 3};
};

TEST_F(ListHandleOnALinkedList, WalksItAsAnEnumeratorAndLetsGoOfIt) {
  {
    lvListEnumerator const item(*list);
    int sum = 0;
    while (item->gotoNext()) {
      sum += item->getValue().getInt();
    }
    EXPECT_EQ(sum, 6);
    EXPECT_EQ(countOf(*list), 2);
  }
  expectLeftBehind(0);
}

TEST_F(ListHandleOnALinkedList, RemovesAsAnIteratorAndLeavesOneReferenceBehind) {
  {
    test::IgnoreLeaks const ignore;
    lvListIterator const item(*list);
    EXPECT_TRUE(item->gotoIndex(1));
    EXPECT_TRUE(item->remove());
    EXPECT_EQ(item->getValue().getInt(), 3);
    EXPECT_EQ(countOf(*list), 3);
  }
  EXPECT_EQ(test::forward(*list), "1 3 ");
  expectLeftBehind(1);
}

TEST_F(ListHandleOnALinkedList, InsertsAsAReadWriteIteratorAndLeavesTwoReferencesBehind) {
  {
    test::IgnoreLeaks const ignore;
    lvListRWIterator const item(*list);
    EXPECT_TRUE(item->isWritable());
    EXPECT_TRUE(item->gotoIndex(1));
    EXPECT_TRUE(item->insert(integer(7)));
    EXPECT_TRUE(item->remove());
    EXPECT_EQ(countOf(*list), 4);
  }
  EXPECT_EQ(test::forward(*list), "1 7 3 ");
  expectLeftBehind(2);
}

TEST_F(ListHandleOnALinkedList, KeepsItAliveForGoodOnceAnIteratorWasMade) {
  bool isGone = false;
  list->insert(test::acting([&isGone] { isGone = true; }), -1);
  {
    test::IgnoreLeaks const ignore;
    lvListIterator const handle(*list);
  }
  lvrDLList& left = *list;
  list.cell().setNil();
  EXPECT_FALSE(isGone);
  EXPECT_EQ(left.__removeRef(), 1);
  EXPECT_TRUE(isGone);
}

}  // namespace
