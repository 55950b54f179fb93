// What every list promises, whatever it is made of. A source that includes this adds its lists:
//
//   INSTANTIATE_TEST_SUITE_P(OfTheLibrary, ListContract,
//                            ::testing::Values(test::ListMaker{"Vector", &newVector, false}),
//                            test::nameOfList);
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>

#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/lvListEnumerator.h"
#include "tarselvalues/containers/lvVector.h"

namespace test {

// A kind of list: its name in the tests, how a cell with a new empty one is made, and whether it
// offers the cursors that change it.
struct ListMaker {
  std::string name;
  lvArg (*make)();
  bool hasIterators;
};

inline std::ostream& operator<<(std::ostream& out, ListMaker const& maker) {
  return out << maker.name;
}

inline std::string nameOfList(testing::TestParamInfo<ListMaker> const& info) {
  return info.param.name;
}

// Matches the integer that `ctx` points to.
inline bool isInteger(lvArg const& value, void* ctx) {
  return value.getType() == lvArg::IntType && value.getInt() == *static_cast<int const*>(ctx);
}

}  // namespace test

class ListContract : public ::testing::TestWithParam<test::ListMaker> {
 protected:
  ListContract() : list(GetParam().make()) {}

  void fill(std::initializer_list<int> values) { test::append(*list.getList(), values); }
  std::string elements() const { return test::elementsOf(*list.getList()); }

  lvVector list;
};

TEST_P(ListContract, OffersTheListInterfaceUnderTheListTag) {
  ASSERT_NE(list.getList(), nullptr);
  EXPECT_EQ(list.getType(), lvArg::ListType);
}

TEST_P(ListContract, StartsEmpty) {
  EXPECT_EQ(list->getSize(), 0);
  EXPECT_TRUE(list->at(0).isNil());
  EXPECT_TRUE(list->remove(0).isNil());
  EXPECT_TRUE(list->remove(-1).isNil());
  EXPECT_EQ(list->getElementPos(test::integer(1)), -1);
}

TEST_P(ListContract, KeepsTheOrderThatItIsGiven) {
  EXPECT_FALSE(list->isSorted());
  fill({3, 1, 2});
  EXPECT_EQ(elements(), "3 1 2 ");
}

TEST_P(ListContract, InsertsAtEveryPosition) {
  for (int index = 0; index <= 3; ++index) {
    list->clear();
    fill({1, 2, 3});
    EXPECT_TRUE(list->insert(test::integer(9), index));
    EXPECT_EQ(elements(), std::string("1 2 3 ").insert(static_cast<std::size_t>(2 * index), "9 "));
  }
}

TEST_P(ListContract, AppendsAtMinusOne) {
  EXPECT_TRUE(list->insert(test::integer(1), -1));
  EXPECT_TRUE(list->insert(test::integer(2), -1));
  EXPECT_EQ(elements(), "1 2 ");
}

TEST_P(ListContract, RefusesToInsertBeyondTheEnd) {
  EXPECT_FALSE(list->insert(test::integer(9), 1));
  fill({1, 2, 3});
  EXPECT_FALSE(list->insert(test::integer(9), 4));
  EXPECT_EQ(elements(), "1 2 3 ");
}

TEST_P(ListContract, RemovesAtEveryPosition) {
  for (int index = 0; index < 3; ++index) {
    list->clear();
    fill({1, 2, 3});
    EXPECT_EQ(list->remove(index).getInt(), index + 1);
    EXPECT_EQ(elements(), std::string("1 2 3 ").erase(static_cast<std::size_t>(2 * index), 2));
  }
}

TEST_P(ListContract, RemovesTheLastAtMinusOne) {
  fill({1, 2, 3});
  EXPECT_EQ(list->remove(-1).getInt(), 3);
  EXPECT_EQ(elements(), "1 2 ");
}

TEST_P(ListContract, RemovesNothingBeyondTheEnd) {
  fill({1, 2, 3});
  EXPECT_TRUE(list->remove(3).isNil());
  EXPECT_EQ(elements(), "1 2 3 ");
}

TEST_P(ListContract, RemovesByValue) {
  fill({1, 2, 3});
  list->remove(test::integer(2));
  list->remove(test::integer(9));
  EXPECT_EQ(elements(), "1 3 ");
}

TEST_P(ListContract, ReadsNilBeyondTheEnd) {
  fill({1, 2, 3});
  EXPECT_EQ(list->at(2).getInt(), 3);
  EXPECT_TRUE(list->at(3).isNil());
}

TEST_P(ListContract, FindsAnElement) {
  fill({1, 2, 3});
  EXPECT_EQ(list->getElementPos(test::integer(3)), 2);
  EXPECT_EQ(list->getElementPos(test::integer(9)), -1);
  EXPECT_EQ(list->getElementPos(test::string("3")), -1);
}

TEST_P(ListContract, HoldsManyElements) {
  for (int i = 0; i < 1000; ++i) {
    ASSERT_TRUE(list->insert(test::integer(i), i / 2));
  }
  EXPECT_EQ(list->getSize(), 1000);
  for (int i = 999; i >= 0; --i) {
    ASSERT_EQ(list->remove(i / 2).getInt(), i);
  }
  EXPECT_EQ(list->getSize(), 0);
}

TEST_P(ListContract, EmptiesItselfAndCanBeFilledAgain) {
  fill({1, 2, 3});
  EXPECT_TRUE(list->clear());
  EXPECT_EQ(list->getSize(), 0);
  EXPECT_TRUE(list->clear());
  fill({4});
  EXPECT_EQ(elements(), "4 ");
}

TEST_P(ListContract, HoldsOneReferenceToEachElement) {
  lvArg const value = test::string("value");
  list->insert(value, 0);
  list->insert(value, 0);
  EXPECT_EQ(test::countOf(value), 3);
}

TEST_P(ListContract, HandsTheReferenceOfARemovedElementOver) {
  lvArg const value = test::string("value");
  list->insert(value, 0);
  {
    lvArg const removed = list->remove(0);
    EXPECT_TRUE(removed.eq(value));
    EXPECT_EQ(test::countOf(value), 2);
  }
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(ListContract, DropsWhatIsRemovedByValue) {
  lvArg const value = test::string("value");
  list->insert(value, 0);
  list->remove(value);
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(ListContract, DropsItsElementsWhenItIsCleared) {
  lvArg const value = test::string("value");
  list->insert(value, 0);
  list->clear();
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(ListContract, DropsItsElementsWhenItGoes) {
  lvArg const value = test::string("value");
  list->insert(value, 0);
  list.setNil();
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_P(ListContract, HoldsOtherLists) {
  lvVector const inner(GetParam().make());
  inner->insert(test::integer(1), 0);
  list->insert(inner, 0);
  EXPECT_EQ(lvVector(list->at(0))->at(0).getInt(), 1);
}

TEST_P(ListContract, GivesCopies) {
  fill({1});
  lvArg copy = list->at(0);
  copy.setInt(77);
  EXPECT_EQ(elements(), "1 ");
}

// --- Cursors -------------------------------------------------------------------------------------

TEST_P(ListContract, GivesCursorsThatStandBeforeTheFirstElement) {
  fill({1, 2});
  lvListEnumerator const item(*list.getList());
  EXPECT_EQ(item->getIndex(), -1);
  EXPECT_FALSE(item->gotoPrevious());
}

TEST_P(ListContract, IsWalkedForward) {
  fill({1, 2, 3});
  lvListEnumerator const item(*list.getList());
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(item->gotoNext());
    EXPECT_EQ(item->getIndex(), i);
    EXPECT_EQ(item->getValue().getInt(), i + 1);
  }
  EXPECT_FALSE(item->gotoNext());
}

TEST_P(ListContract, IsWalkedBack) {
  fill({1, 2, 3});
  lvListEnumerator const item(*list.getList());
  EXPECT_TRUE(item->gotoIndex(2));
  for (int i = 1; i >= 0; --i) {
    EXPECT_TRUE(item->gotoPrevious());
    EXPECT_EQ(item->getIndex(), i);
    EXPECT_EQ(item->getValue().getInt(), i + 1);
  }
  EXPECT_FALSE(item->gotoPrevious());
}

TEST_P(ListContract, IsNotWalkedWhenEmpty) {
  lvListEnumerator const item(*list.getList());
  EXPECT_FALSE(item->gotoNext());
  EXPECT_FALSE(item->gotoPrevious());
  EXPECT_FALSE(item->gotoIndex(0));
  EXPECT_TRUE(item->getValue().isNil());
}

TEST_P(ListContract, IsSearchedForward) {
  fill({1, 2, 3, 2});
  int wanted = 2;
  lvListEnumerator const item(*list.getList());
  EXPECT_TRUE(item->gotoNextMatching(&test::isInteger, &wanted));
  EXPECT_EQ(item->getIndex(), 1);
  EXPECT_TRUE(item->gotoNextMatching(&test::isInteger, &wanted));
  EXPECT_EQ(item->getIndex(), 3);
  EXPECT_FALSE(item->gotoNextMatching(&test::isInteger, &wanted));
}

TEST_P(ListContract, IsSearchedBack) {
  fill({2, 1, 2, 3});
  int wanted = 2;
  lvListEnumerator const item(*list.getList());
  item->gotoIndex(2);
  EXPECT_TRUE(item->gotoPreviousMatching(&test::isInteger, &wanted));
  EXPECT_EQ(item->getIndex(), 0);
  EXPECT_FALSE(item->gotoPreviousMatching(&test::isInteger, &wanted));
}

TEST_P(ListContract, RefusesToJumpBeyondTheEnd) {
  fill({1, 2});
  lvListEnumerator const item(*list.getList());
  EXPECT_TRUE(item->gotoIndex(1));
  EXPECT_EQ(item->getValue().getInt(), 2);
  EXPECT_FALSE(item->gotoIndex(2));
}

TEST_P(ListContract, IsKeptAliveByItsCursors) {
  bool gone = false;
  list->insert(test::acting([&gone] { gone = true; }), 0);
  {
    lvListEnumerator const item(*list.getList());
    list.setNil();
    EXPECT_TRUE(item->gotoNext());
    EXPECT_FALSE(gone);
  }
  EXPECT_TRUE(gone);
}

TEST_P(ListContract, GivesIteratorsThatWalkAllElementsIfItHasThem) {
  fill({1, 2, 3});
  for (bool const readWrite : {false, true}) {
    std::unique_ptr<lviRealListEnumerator> const iterator(readWrite ? list->getListRWIterator()
                                                                    : list->getListIterator());
    ASSERT_EQ(iterator != nullptr, GetParam().hasIterators);
    int sum = 0;
    while (iterator != nullptr && iterator->gotoNext()) {
      sum += iterator->getValue().getInt();
    }
    EXPECT_EQ(sum, GetParam().hasIterators ? 6 : 0);
  }
}

TEST_P(ListContract, GivesIteratorsThatRemoveTheirElementIfItHasThem) {
  for (bool const readWrite : {false, true}) {
    list->clear();
    fill({1, 2, 3});
    std::unique_ptr<lviRealListIterator> const iterator(readWrite ? list->getListRWIterator()
                                                                  : list->getListIterator());
    ASSERT_EQ(iterator != nullptr, GetParam().hasIterators);
    if (iterator != nullptr) {
      iterator->gotoIndex(1);
      EXPECT_TRUE(iterator->remove());
      EXPECT_EQ(elements(), "1 3 ");
    }
  }
}

TEST_P(ListContract, GivesReadWriteIteratorsThatInsertBeforeTheirElementIfItHasThem) {
  fill({1, 2, 3});
  std::unique_ptr<lviRealListRWIterator> const iterator(list->getListRWIterator());
  ASSERT_EQ(iterator != nullptr, GetParam().hasIterators);
  if (iterator != nullptr) {
    iterator->gotoIndex(1);
    EXPECT_TRUE(iterator->isWritable());
    EXPECT_TRUE(iterator->insert(test::integer(9)));
    EXPECT_EQ(elements(), "1 9 2 3 ");
  }
}
