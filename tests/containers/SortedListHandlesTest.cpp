#include <gtest/gtest.h>

#include <type_traits>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "support/UnusualObjects.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvSortedList.h"
#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/containers/lvSortedListIterator.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace {

using test::bookkeepingOf;
using test::countOf;
using test::Held;
using test::integer;
using test::integers;
using test::OwnSortedList;
using test::setBookkeeping;
using test::SortedArray;
using test::string;
using test::WithDuplicates;

class SortedListHandle : public ::testing::Test {
 protected:
  SortedArray list{WithDuplicates, {1, 2, 3}};
};

TEST_F(SortedListHandle, SharesTheListOfACell) {
  lvSortedList const handle(list.cell());
  EXPECT_EQ(handle.getType(), lvArg::ListType);
  EXPECT_EQ(handle.getSortedList(), &*list);
  EXPECT_EQ(handle.operator->(), &*list);
  EXPECT_EQ(countOf(*list), 2);
  handle->add(integer(0));
  EXPECT_EQ(list->get(0).getInt(), 0);
}

TEST_F(SortedListHandle, TakesAReferenceToAnObject) {
  lvReferencable const& object = *list;
  lvSortedList const handle(object);
  EXPECT_EQ(handle.getType(), lvArg::ListType);
  EXPECT_EQ(handle.getSortedList(), &*list);
  EXPECT_EQ(countOf(*list), 2);
}

TEST_F(SortedListHandle, DropsItsReferenceWhenItGoes) {
  { lvSortedList const handle(list.cell()); }
  { lvSortedList const handle(*list); }
  EXPECT_EQ(countOf(*list), 1);
}

TEST(SortedListHandles, HoldsAListOfTheUsersOwn) {
  Held<OwnSortedList> own(integers({4}));
  EXPECT_EQ(lvSortedList(own.cell()).getSortedList(), &*own);
  EXPECT_EQ(lvSortedList(*own)->get(0).getInt(), 4);
}

TEST(SortedListHandles, OfAnyOtherTagAreNil) {
  for (lvArg const& other :
       {lvArg(), integer(25), test::pointer(25), string("list"), test::newPlainObject(),
        lvArg(lvHashMap(3)), lvArg(*lvrClass::defaultCtorMethod())}) {
    lvSortedList const handle(other);
    EXPECT_TRUE(handle.isNil()) << other.getType();
    EXPECT_EQ(handle.getSortedList(), nullptr);
    EXPECT_EQ(handle.operator->(), nullptr);
  }
}

TEST(SortedListHandles, OfAListThatIsNotSortedAreNil) {
  lvVector const vector(3);
  lvArg const bare = test::newListLike();
  for (lvArg const* const other : {static_cast<lvArg const*>(&vector), &bare}) {
    EXPECT_TRUE(lvSortedList(*other).isNil());
    EXPECT_TRUE(lvSortedList(*other->getReferencable()).isNil());
    EXPECT_EQ(countOf(*other), 1);
  }
}

TEST(SortedListHandles, OfAnObjectOfAnotherKindAreNil) {
  Held<OwnSortedList> const own(integers({4}), 1, lvReferencable::ObjectKind);
  lvReferencable const& object = *own;
  EXPECT_TRUE(lvSortedList(object).isNil());
  EXPECT_TRUE(lvSortedList(*test::newPlainObject().getReferencable()).isNil());
  EXPECT_EQ(countOf(*own), 1);
}

TEST(SortedListHandles, OfAListUnderAnotherTagAreNil) {
  lvArg cell;
  cell.setReferencableFast(*new lvrSortedArrayList(1), lvArg::ObjectType);
  EXPECT_TRUE(lvSortedList(cell).isNil());
  EXPECT_EQ(countOf(cell), 1);
}

TEST(SortedListHandles, OfAReleasedCellAreNil) {
  lvArg cell(*new lvrSortedArrayList(1));
  cell.releaseData();
  EXPECT_EQ(cell.getType(), lvArg::ListType);
  lvSortedList const handle(cell);
  EXPECT_TRUE(handle.isNil());
  EXPECT_EQ(handle.getSortedList(), nullptr);
}

TEST_F(SortedListHandle, LeavesTheBookkeepingOfTheCellBehind) {
  setBookkeeping(list.cell(), 0x20);
  EXPECT_EQ(bookkeepingOf(lvSortedList(list.cell())), 0U);
}

TEST_F(SortedListHandle, AssignedAnythingElseBecomesNil) {
  lvSortedList handle(list.cell());
  handle = integer(3);
  EXPECT_TRUE(handle.isNil());
  EXPECT_EQ(countOf(*list), 1);
}

TEST_F(SortedListHandle, CanBeCopied) {
  lvSortedList const handle(list.cell());
  lvSortedList const copy = handle;  // NOLINT(performance-unnecessary-copy-initialization)
  EXPECT_EQ(copy.getSortedList(), &*list);
  EXPECT_EQ(countOf(*list), 3);
}

// --- The cursor handles --------------------------------------------------------------------------

TEST_F(SortedListHandle, OfAnEnumeratorStandsWhereItIsTold) {
  EXPECT_EQ(lvSortedListEnumerator(*list, 0)->next().getInt(), 1);
  EXPECT_EQ(lvSortedListEnumerator(*list, 1)->next().getInt(), 3);
  EXPECT_EQ(lvSortedListEnumerator(list.cell(), 0)->next().getInt(), 1);
  EXPECT_EQ(lvSortedListEnumerator(list.cell(), 1)->next().getInt(), 3);
}

TEST_F(SortedListHandle, OfAnIteratorStandsWhereItIsTold) {
  EXPECT_EQ(lvSortedListIterator(*list, 0)->next().getInt(), 1);
  EXPECT_EQ(lvSortedListIterator(*list, 1)->next().getInt(), 3);
  EXPECT_EQ(lvSortedListIterator(list.cell(), 0)->next().getInt(), 1);
  EXPECT_EQ(lvSortedListIterator(list.cell(), 1)->next().getInt(), 3);
}

TEST_F(SortedListHandle, OfAnIteratorOffersItsOwnOperations) {
  lvSortedListIterator const handle(*list, 0);
  handle->set(integer(7));
  EXPECT_EQ(handle.getCursor(), handle.operator->());
  EXPECT_EQ(handle->next().getInt(), 1);
}

TEST_F(SortedListHandle, OfACursorTakesNoReference) {
  lvSortedListEnumerator const enumerator(list.cell(), 0);
  lvSortedListIterator const iterator(list.cell(), 0);
  EXPECT_EQ(countOf(*list), 1);
}

TEST(SortedListCursorHandles, DeleteTheirCursor) {
  Held<OwnSortedList> own(integers({4}));
  {
    lvSortedListEnumerator const one(*own, 0);
    lvSortedListEnumerator const two(own.cell(), 0);
    lvSortedListIterator const three(*own, 0);
    lvSortedListIterator const four(own.cell(), 0);
    EXPECT_EQ(own->cursorsAlive(), 4);
    EXPECT_EQ(two.getCursor(), two.operator->());
  }
  EXPECT_EQ(own->cursorsMade(), 4);
  EXPECT_EQ(own->cursorsAlive(), 0);
}

TEST(SortedListCursorHandles, LookAtTheObjectNotAtItsTag) {
  lvArg cell;
  cell.setReferencableFast(*SortedArray(WithDuplicates, {7}), lvArg::ObjectType);
  EXPECT_EQ(lvSortedListEnumerator(cell, 0)->next().getInt(), 7);
  EXPECT_EQ(lvSortedListIterator(cell, 0)->next().getInt(), 7);
}

TEST(SortedListCursorHandles, HoldNullWithoutASortedList) {
  lvArg released(*new lvrSortedArrayList(1));
  released.releaseData();
  for (lvArg const& other : {lvArg(), integer(25), test::pointer(25), released, string("list"),
                             lvArg(lvVector(3)), test::newListLike()}) {
    EXPECT_EQ(lvSortedListEnumerator(other, 0).getCursor(), nullptr) << other.getType();
    EXPECT_EQ(lvSortedListIterator(other, 0).getCursor(), nullptr) << other.getType();
    EXPECT_EQ(lvSortedListEnumerator(other, 0).operator->(), nullptr);
  }
}

TEST(SortedListCursorHandles, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<lvSortedListEnumerator>);
  EXPECT_FALSE(std::is_copy_constructible_v<lvSortedListIterator>);
  EXPECT_FALSE(std::is_copy_assignable_v<lvSortedListEnumerator>);
  EXPECT_FALSE(std::is_copy_assignable_v<lvSortedListIterator>);
}

TEST(SortedListCursorHandles, HoldInterfacesThatDeriveFromEachOther) {
  EXPECT_TRUE((std::is_base_of_v<lviRealSortedListEnumerator, lviRealSortedListIterator>));
  EXPECT_TRUE((std::is_base_of_v<lvReferencable, lviSortedList>));
}

}  // namespace
