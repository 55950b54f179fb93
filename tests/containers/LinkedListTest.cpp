#include <gtest/gtest.h>

#include <climits>
#include <csignal>
#include <cstring>
#include <string>

#include "support/Cells.h"
#include "support/Nodes.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

namespace {

using test::acting;
using test::append;
using test::backward;
using test::bookkeepingOf;
using test::countOf;
using test::elementsOf;
using test::forward;
using test::integer;
using test::LinkedList;
using test::logging;
using test::Node;
using test::nodeOf;
using test::setBookkeeping;
using test::string;
using test::textOf;
using Layout = test::ListLayout;

constexpr unsigned Marks = 0x7FE0;

// The elements, whichever way they are read: "1 2 3 " and "3 2 1 ".
void expectElements(lvrDLList const& list, std::string const& ahead, std::string const& back) {
  EXPECT_EQ(forward(list), ahead);
  EXPECT_EQ(backward(list), back);
  EXPECT_EQ(elementsOf(list), ahead);
}

void expectNoNodes(lvrDLList const& list) {
  EXPECT_EQ(list.getSize(), 0);
  EXPECT_EQ(Layout::head(list), nullptr);
  EXPECT_EQ(Layout::tail(list), nullptr);
}

// --- Making --------------------------------------------------------------------------------------

TEST(LinkedListNew, MadeByItsStaticFunctionIsEmptyAndHeldByNobody) {
  lvReferencable* const made = lvrDLList::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  lvArg const holder(*made);
  expectNoNodes(dynamic_cast<lvrDLList&>(*made));
}

TEST(LinkedListNew, IsMadeByTheNameOfItsClass) {
  lvClass const known(lvtClassRegistry::getInstance()->getClass(lvString("DLList")));
  ASSERT_NE(known.getClass(), nullptr);
  lvArg const made(*known->instantiateDefaultObject());
  EXPECT_NE(dynamic_cast<lvrDLList*>(made.getReferencable()), nullptr);
}

TEST(LinkedListNew, IsOfTheClassDLList) {
  LinkedList const list;
  EXPECT_EQ(textOf(list->getClassDesc()), "DLList");
  EXPECT_TRUE(list->getClassDesc().eq(lvString("DLList")));
  EXPECT_EQ(&list->getClassDesc(), &lvrDLList::getStaticClassDesc());
}

TEST(LinkedListNew, GivesTheListTagToCellsThatHoldIt) {
  LinkedList list;
  EXPECT_EQ(list.cell().getType(), lvArg::ListType);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*list), 0x90);
}

TEST(LinkedListNew, ComparesAndHashesAsTheBaseDoes) {
  LinkedList const list{1, 2};
  LinkedList const other{1, 2};
  EXPECT_EQ(list->equiv(*list), 1);
  EXPECT_EQ(list->equiv(*other), 0);
  EXPECT_EQ(list->compareTo(*list), 0);
  EXPECT_EQ(list->compareTo(*other) < 0, &*list < &*other);
  EXPECT_EQ(list->hashCode(), 0U);
  EXPECT_EQ(list->__mark(), 0);
}

TEST(LinkedListNew, IsNotSorted) {
  LinkedList const list;
  EXPECT_FALSE(list->isSorted());
  append(*list, {1, 2, 3});
  EXPECT_FALSE(list->isSorted());
}

TEST(LinkedListNew, OffersTheListInterfaceThroughAHandle) {
  LinkedList list{1, 2};
  lvVector const handle(list.cell());
  ASSERT_EQ(handle.getList(), &*list);
  EXPECT_TRUE(handle->insert(integer(3), -1));
  EXPECT_EQ(handle->remove(integer(1)), 0);
  EXPECT_EQ(handle->remove(0).getInt(), 2);
  EXPECT_EQ(handle->getSize(), 1);
  EXPECT_EQ(handle->at(-1).getInt(), 3);
  EXPECT_EQ(forward(*list), "3 ");
}

// --- insert --------------------------------------------------------------------------------------

TEST(LinkedListInsert, IntoAnEmptyListMakesTheOneNodeHeadAndTail) {
  for (int const index : {0, -1}) {
    LinkedList const list;
    EXPECT_TRUE(list->insert(integer(7), index));
    EXPECT_EQ(list->getSize(), 1);
    EXPECT_EQ(Layout::head(*list), Layout::tail(*list));
    expectElements(*list, "7 ", "7 ");
  }
}

TEST(LinkedListInsert, IntoAnEmptyListIsRefusedAtAnyOtherPosition) {
  LinkedList const list;
  for (int const index : {1, 2, INT_MAX, -2, -3, INT_MIN}) {
    EXPECT_FALSE(list->insert(integer(7), index)) << index;
  }
  expectNoNodes(*list);
}

TEST(LinkedListInsert, LinksTheNodeBothWaysAtEveryPosition) {
  char const* const ahead[] = {"9 1 2 3 ", "1 9 2 3 ", "1 2 9 3 ", "1 2 3 9 "};
  char const* const back[] = {"3 2 1 9 ", "3 2 9 1 ", "3 9 2 1 ", "9 3 2 1 "};
  for (int index = 0; index <= 3; ++index) {
    for (int const given : {index, index - 4}) {  // -1 is the gap behind the last element.
      LinkedList const list{1, 2, 3};
      EXPECT_TRUE(list->insert(integer(9), given));
      EXPECT_EQ(list->getSize(), 4);
      expectElements(*list, ahead[index], back[index]);
    }
  }
}

TEST(LinkedListInsert, OutsideOfTheListIsRefusedAndChangesNothing) {
  LinkedList const list{1, 2, 3};
  lvArg const value = string("value");
  for (int const index : {4, 5, INT_MAX, -5, -6, INT_MIN}) {
    EXPECT_FALSE(list->insert(value, index)) << index;
  }
  EXPECT_EQ(list->getSize(), 3);
  expectElements(*list, "1 2 3 ", "3 2 1 ");
  EXPECT_EQ(countOf(value), 1);
}

TEST(LinkedListInsert, StoresACopy) {
  LinkedList const list;
  lvArg value = string("value");
  list->insert(value, -1);
  EXPECT_EQ(countOf(value), 2);
  value.setInt(1);
  EXPECT_EQ(forward(*list), "'value' ");
}

TEST(LinkedListInsert, StoresNilAsAnElement) {
  LinkedList const list;
  EXPECT_TRUE(list->insert(lvArg(), -1));
  EXPECT_EQ(list->getSize(), 1);
  EXPECT_EQ(list->getElementPos(lvArg::NilValue), 0);
}

TEST(LinkedListInsert, TakesAnElementOfItsOwn) {
  LinkedList const list{1, 2};
  EXPECT_TRUE(list->insert(nodeOf(*list, 1).value, 0));
  expectElements(*list, "2 1 2 ", "2 1 2 ");
}

TEST(LinkedListInsert, IsNotLimitedToWhatSixteenBitsCount) {
  LinkedList const list;
  for (int i = 0; i < 70000; ++i) {
    ASSERT_TRUE(list->insert(integer(i), -1));
  }
  EXPECT_EQ(list->getSize(), 70000);
  EXPECT_EQ(list->at(-1).getInt(), 69999);
  EXPECT_EQ(list->at(65536).getInt(), 65536);
}

// --- at ------------------------------------------------------------------------------------------

TEST(LinkedListAt, CountsFromTheFrontAndFromTheBack) {
  LinkedList const list{1, 2, 3, 4, 5};
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(list->at(i).getInt(), i + 1);
    EXPECT_EQ(list->at(i - 5).getInt(), i + 1);
  }
}

TEST(LinkedListAt, OutsideOfTheListIsNil) {
  LinkedList const list{1, 2, 3};
  for (int const index : {3, 4, INT_MAX, -4, -5, INT_MIN}) {
    EXPECT_TRUE(list->at(index).isNil()) << index;
  }
  for (int const index : {0, 1, -1}) {
    EXPECT_TRUE(LinkedList()->at(index).isNil()) << index;
  }
}

TEST(LinkedListAt, GivesACopy) {
  LinkedList const list;
  lvArg const value = string("value");
  list->insert(value, -1);
  lvArg copy = list->at(0);
  EXPECT_EQ(countOf(value), 3);
  copy.setInt(1);
  EXPECT_TRUE(list->at(0).eq(value));
}

// Whether at() comes to the node at `index` along the links from the head.
bool isReachedFromTheHead(lvrDLList& list, int index) {
  Node decoy(integer(99));
  Node& before = nodeOf(list, index - 1);
  Node* const link = before.next;
  before.next = &decoy;
  bool const isDecoy = list.at(index).getInt() == 99;
  before.next = link;
  return isDecoy;
}

TEST(LinkedListAt, WalksFromTheNearerEnd) {
  LinkedList const odd{1, 2, 3, 4, 5, 6, 7};
  LinkedList const even{1, 2, 3, 4, 5, 6};
  for (int index = 1; index < 7; ++index) {
    EXPECT_EQ(isReachedFromTheHead(*odd, index), index <= 4) << index;
  }
  for (int index = 1; index < 6; ++index) {
    EXPECT_EQ(isReachedFromTheHead(*even, index), index <= 3) << index;
  }
}

// --- remove --------------------------------------------------------------------------------------

TEST(LinkedListRemove, UnlinksTheNodeAtEveryPosition) {
  char const* const ahead[] = {"2 3 ", "1 3 ", "1 2 "};
  char const* const back[] = {"3 2 ", "3 1 ", "2 1 "};
  for (int index = 0; index < 3; ++index) {
    for (int const given : {index, index - 3}) {  // -1 is the last element.
      LinkedList const list{1, 2, 3};
      EXPECT_EQ(list->remove(given).getInt(), index + 1);
      EXPECT_EQ(list->getSize(), 2);
      expectElements(*list, ahead[index], back[index]);
    }
  }
}

TEST(LinkedListRemove, OfTheOnlyElementLeavesNeitherHeadNorTail) {
  for (int const index : {0, -1}) {
    LinkedList const list{7};
    EXPECT_EQ(list->remove(index).getInt(), 7);
    expectNoNodes(*list);
    append(*list, {8});
    expectElements(*list, "8 ", "8 ");
  }
}

TEST(LinkedListRemove, OutsideOfTheListGivesNilAndChangesNothing) {
  LinkedList const list{1, 2, 3};
  for (int const index : {3, 4, INT_MAX, -4, -5, INT_MIN}) {
    EXPECT_TRUE(list->remove(index).isNil()) << index;
  }
  EXPECT_EQ(list->getSize(), 3);
  expectElements(*list, "1 2 3 ", "3 2 1 ");
}

TEST(LinkedListRemove, FromAnEmptyListGivesNil) {
  LinkedList const list;
  EXPECT_TRUE(list->remove(0).isNil());
  EXPECT_TRUE(list->remove(-1).isNil());
  expectNoNodes(*list);
}

TEST(LinkedListRemove, HandsTheReferenceOver) {
  LinkedList const list;
  lvArg const value = string("value");
  list->insert(value, -1);
  lvArg const removed = list->remove(0);
  EXPECT_TRUE(removed.eq(value));
  EXPECT_EQ(countOf(value), 2);
}

TEST(LinkedListRemove, TakesANilElementOut) {
  LinkedList const list{1};
  list->insert(lvArg(), 0);
  EXPECT_TRUE(list->remove(0).isNil());
  expectElements(*list, "1 ", "1 ");
}

TEST(LinkedListRemoveValue, TakesOneElementFromAnyPlace) {
  for (int const value : {1, 2, 3}) {
    LinkedList const list{1, 2, 3};
    EXPECT_EQ(list->remove(integer(value)), 0);
    EXPECT_EQ(list->getSize(), 2);
    EXPECT_EQ(list->getElementPos(integer(value)), -1);
    EXPECT_EQ(forward(*list).size(), backward(*list).size());
  }
}

TEST(LinkedListRemoveValue, TakesNoMoreThanOneOfSeveral) {
  test::startSearchesAtTheHead();
  LinkedList const list{1, 2, 1, 1};
  EXPECT_EQ(list->remove(integer(1)), 0);
  expectElements(*list, "2 1 1 ", "1 1 2 ");
  EXPECT_EQ(list->remove(integer(1)), 0);
  expectElements(*list, "2 1 ", "1 2 ");
}

TEST(LinkedListRemoveValue, OfAnAbsentValueAnswersMinusOneAndChangesNothing) {
  LinkedList const list{1, 2};
  EXPECT_EQ(list->remove(integer(3)), -1);
  EXPECT_EQ(list->remove(lvArg()), -1);
  EXPECT_EQ(list->remove(test::pointer(1)), -1);
  EXPECT_EQ(list->getSize(), 2);
  expectElements(*list, "1 2 ", "2 1 ");
  EXPECT_EQ(LinkedList()->remove(integer(1)), -1);
}

TEST(LinkedListRemoveValue, OfTheOnlyElementLeavesNeitherHeadNorTail) {
  LinkedList const list{1};
  EXPECT_EQ(list->remove(integer(1)), 0);
  expectNoNodes(*list);
}

TEST(LinkedListRemoveValue, DropsTheElement) {
  LinkedList const list;
  lvArg const value = string("value");
  list->insert(value, -1);
  EXPECT_EQ(list->remove(value), 0);
  EXPECT_EQ(countOf(value), 1);
}

TEST(LinkedListRemoveValue, OfAnElementItselfIsSafe) {
  LinkedList const list;
  list->insert(string("first"), -1);
  list->insert(string("second"), -1);
  EXPECT_EQ(list->remove(nodeOf(*list, 0).value), 0);
  expectElements(*list, "'second' ", "'second' ");
}

// --- getElementPos -------------------------------------------------------------------------------

TEST(LinkedListElementPos, IsCountedFromTheFrontWhicheverWayTheSearchGoes) {
  LinkedList const list{1, 2, 3, 4};
  for (int turn = 0; turn < 2; ++turn) {
    for (int i = 0; i < 4; ++i) {
      EXPECT_EQ(list->getElementPos(integer(i + 1)), i);
    }
    list->getElementPos(lvArg());  // Gives the turn over.
  }
}

TEST(LinkedListElementPos, OfWhatIsNotThereIsMinusOneWhicheverWayTheSearchGoes) {
  LinkedList const list{1, 2};
  for (int turn = 0; turn < 2; ++turn) {
    EXPECT_EQ(list->getElementPos(integer(3)), -1);
    EXPECT_EQ(list->getElementPos(integer(4)), -1);
    EXPECT_EQ(list->getElementPos(string("1")), -1);
  }
  EXPECT_EQ(LinkedList()->getElementPos(lvArg()), -1);
}

TEST(LinkedListElementPos, FindsTheVeryObject) {
  LinkedList const list{1};
  lvArg const value = string("value");
  lvVector const inner(1);
  list->insert(value, -1);
  list->insert(inner, -1);
  EXPECT_EQ(list->getElementPos(value), 1);
  EXPECT_EQ(list->getElementPos(inner), 2);
  EXPECT_EQ(list->getElementPos(lvVector(1)), -1);
}

// --- clear, and the end --------------------------------------------------------------------------

TEST(LinkedListClear, LeavesAnEmptyListThatCanBeFilledAgain) {
  LinkedList const list{1, 2, 3};
  EXPECT_TRUE(list->clear());
  expectNoNodes(*list);
  append(*list, {4, 5});
  expectElements(*list, "4 5 ", "5 4 ");
}

TEST(LinkedListClear, OfAnEmptyListAnswersTrue) {
  LinkedList const list;
  EXPECT_TRUE(list->clear());
  expectNoNodes(*list);
}

TEST(LinkedListClear, ReleasesEachElementFromTheHeadOn) {
  std::string log;
  LinkedList const list;
  for (char const* const name : {"b ", "c "}) {
    list->insert(logging(log, name), -1);
  }
  list->insert(logging(log, "a "), 0);
  list->clear();
  EXPECT_EQ(log, "a b c ");
}

TEST(LinkedListClear, IsOverForTheListBeforeAnElementGoes) {
  LinkedList const list{1, 2};
  list->insert(acting([&] {
                 expectNoNodes(*list);
                 EXPECT_TRUE(list->at(0).isNil());
                 EXPECT_TRUE(list->clear());
                 append(*list, {8, 9});
               }),
               1);
  EXPECT_TRUE(list->clear());
  expectElements(*list, "8 9 ", "9 8 ");
}

TEST(LinkedListRemoval, IsOverForTheListBeforeTheElementGoes) {
  std::string seen;
  LinkedList const list{1, 2};
  list->insert(acting([&] { seen = forward(*list) + backward(*list); }), 1);
  lvArg value = list->at(1);
  EXPECT_EQ(list->remove(value), 0);
  value.setNil();
  EXPECT_EQ(seen, "1 2 2 1 ");
}

TEST(LinkedListEnd, ReleasesEachElementFromTheHeadOn) {
  std::string log;
  {
    LinkedList const list;
    list->insert(logging(log, "a "), -1);
    list->insert(logging(log, "b "), -1);
  }
  EXPECT_EQ(log, "a b ");
}

TEST(LinkedListEnd, RunsWhenTheLastReferenceGoes) {
  bool isGone = false;
  lvArg holder;
  {
    LinkedList inner;
    inner->insert(acting([&isGone] { isGone = true; }), -1);
    LinkedList outer;
    outer->insert(inner.cell(), -1);
    outer->insert(inner.cell(), -1);
    EXPECT_EQ(countOf(inner.cell()), 3);
    holder = outer.cell();
  }
  EXPECT_FALSE(isGone);
  holder.setNil();
  EXPECT_TRUE(isGone);
}

TEST(LinkedListEnd, EndsTheProcessWhenAnElementThrows) {
  EXPECT_EXIT(
      {
        LinkedList const list;
        list->insert(acting([] { throw 1; }), -1);
      },
      ::testing::KilledBySignal(SIGABRT), "");
}

// --- merge ---------------------------------------------------------------------------------------

TEST(LinkedListMerge, AppendsTheElementsInTheirOrder) {
  LinkedList const list{1, 2};
  LinkedList const other{5, 3, 4};
  EXPECT_TRUE(list->merge(*other));
  EXPECT_EQ(list->getSize(), 5);
  expectElements(*list, "1 2 5 3 4 ", "4 3 5 2 1 ");
  expectElements(*other, "5 3 4 ", "4 3 5 ");
}

TEST(LinkedListMerge, FillsAnEmptyList) {
  LinkedList const list;
  EXPECT_TRUE(list->merge(*LinkedList{1, 2}));
  expectElements(*list, "1 2 ", "2 1 ");
}

TEST(LinkedListMerge, TakesTheElementsOfAnyList) {
  LinkedList const list{1};
  test::RingVector const vector(3, 2, {7, 8});
  EXPECT_TRUE(list->merge(*vector));
  expectElements(*list, "1 7 8 ", "8 7 1 ");
}

// A list that tells fewer elements than it has.
class UnderstatedList : public lvrDLList {
 public:
  int getSize() const override { return 1; }
};

TEST(LinkedListMerge, TakesAllThatTheOtherListsCursorFinds) {
  LinkedList const list;
  test::Held<UnderstatedList> const other;
  append(*other, {1, 2, 3});
  EXPECT_TRUE(list->merge(*other));
  expectElements(*list, "1 2 3 ", "3 2 1 ");
}

TEST(LinkedListMerge, SharesTheElementsAndKeepsNoHoldOnTheOtherList) {
  lvArg const value = string("value");
  LinkedList const list;
  LinkedList const other;
  other->insert(value, -1);
  EXPECT_TRUE(list->merge(*other));
  EXPECT_TRUE(list->at(0).eq(value));
  EXPECT_EQ(countOf(value), 3);
  EXPECT_EQ(countOf(*other), 1);
}

TEST(LinkedListMerge, OfNilElementsAppendsThemToo) {
  LinkedList const list{1};
  LinkedList const other;
  other->insert(lvArg(), -1);
  EXPECT_TRUE(list->merge(*other));
  expectElements(*list, "1 . ", ". 1 ");
}

TEST(LinkedListMerge, WithItselfDoublesIt) {
  LinkedList const list{1, 2, 3};
  EXPECT_TRUE(list->merge(*list));
  EXPECT_EQ(list->getSize(), 6);
  expectElements(*list, "1 2 3 1 2 3 ", "3 2 1 3 2 1 ");
  EXPECT_EQ(countOf(*list), 1);
}

// Takes the tail away until it goes.
class WithoutTail {
 public:
  explicit WithoutTail(lvrDLList& list)
      : at_(reinterpret_cast<char*>(&list) + Layout::tailOffset), tail_(Layout::tail(list)) {
    set(nullptr);
  }
  ~WithoutTail() { set(tail_); }
  WithoutTail(WithoutTail const&) = delete;
  WithoutTail& operator=(WithoutTail const&) = delete;

 private:
  void set(Node const* tail) { std::memcpy(at_, &tail, sizeof(Node const*)); }

  char* at_;
  Node const* tail_;
};

TEST(LinkedListMerge, IsRefusedByAListThatHasLostItsTail) {
  LinkedList const list{1, 2};
  LinkedList const other{3};
  {
    WithoutTail const broken(*list);
    EXPECT_FALSE(list->merge(*other));
  }
  EXPECT_EQ(list->getSize(), 2);
  expectElements(*list, "1 2 ", "2 1 ");
}

// --- The bookkeeping bits of cells ---------------------------------------------------------------

// A list of one element, inserted from a cell with bookkeeping bits, under a cursor.
class LinkedListBookkeeping : public ::testing::Test {
 protected:
  LinkedListBookkeeping() {
    lvArg marked = integer(5);
    setBookkeeping(marked, Marks);
    list->insert(marked, -1);
    cursor.gotoNext();
  }

  LinkedList list;
  lvrDLList::IteratorLogic cursor{*list};
};

TEST_F(LinkedListBookkeeping, IsTheListsOwn) {
  EXPECT_EQ(bookkeepingOf(list->at(0)), 0U);
  EXPECT_EQ(bookkeepingOf(cursor.getValue()), 0U);
  lvArg const removed = list->remove(0);
  EXPECT_EQ(bookkeepingOf(removed), 0U);
  EXPECT_EQ(removed.getInt(), 5);
}

TEST_F(LinkedListBookkeeping, KeepsNothingFromElementToElement) {
  EXPECT_EQ(list->remove(integer(5)), 0);
  append(*list, {6});
  EXPECT_EQ(bookkeepingOf(nodeOf(*list, 0).value), 0U);
}

TEST(LinkedListEnd, ReleasesWhatIsInsertedIntoAListThatGoes) {
  bool isGone = false;
  {
    LinkedList const list;
    lvrDLList& dying = *list;
    list->insert(
        acting([&dying, &isGone] { dying.insert(acting([&isGone] { isGone = true; }), -1); }), -1);
  }
  EXPECT_TRUE(isGone);
}

}  // namespace
