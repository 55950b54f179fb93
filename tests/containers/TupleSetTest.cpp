#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "support/Pairs.h"
#include "support/UnusualObjects.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using test::acting;
using test::areZero;
using test::countOf;
using test::entriesOf;
using test::EqualKeysSet;
using test::Held;
using test::integer;
using test::keysOf;
using test::logging;
using test::putEach;
using test::putUpTo;
using test::RankedKey;
using test::roomOf;
using test::string;
using test::textOf;
using Layout = test::SetLayout;

// A set with room for four pairs that grows by four.
class SmallSet : public Held<lvrTupleSet> {
 public:
  SmallSet() : Held(4, 4U, 0U) {}
};

// A set of the keys 1, 2 and 3 with room for one more.
class TupleSetOfThree : public ::testing::Test {
 protected:
  TupleSetOfThree() { putEach(*set, {1, 2, 3}); }
  void expectUnchanged() const { EXPECT_EQ(roomOf(*set), "1=10 2=20 3=30 . "); }

  SmallSet set;
};

using TupleSetPut = TupleSetOfThree;
using TupleSetGet = TupleSetOfThree;
using TupleSetAt = TupleSetOfThree;
using TupleSetSetValue = TupleSetOfThree;
using TupleSetRemoveEntry = TupleSetOfThree;
using TupleSetClear = TupleSetOfThree;
using TupleSetExpand = TupleSetOfThree;
using TupleSetFinalize = TupleSetOfThree;
using TupleSetWhileReleasing = TupleSetOfThree;

// --- Making --------------------------------------------------------------------------------------

TEST(TupleSetNew, HasTheRoomThatItIsMadeWith) {
  Held<lvrTupleSet> const set(3, 5U, 0U);
  EXPECT_EQ(set->getSize(), 0);
  EXPECT_EQ(Layout::allocated(*set), 3);
  EXPECT_EQ(Layout::increment(*set), 5U);
  EXPECT_EQ(Layout::setFlags(*set), 0U);
  EXPECT_EQ(roomOf(*set), ". . . ");
}

TEST(TupleSetNew, HasAnArrayOfZeroes) {
  Held<lvrTupleSet> const set(3, 5U, 0U);
  EXPECT_TRUE(areZero(Layout::entries(*set), 3));
}

TEST(TupleSetNew, OfNoOrANegativeSizeHasNoArray) {
  for (int const size : {0, -1, -5, INT_MIN}) {
    Held<lvrTupleSet> const set(size, 8U, 0U);
    EXPECT_EQ(Layout::entries(*set), nullptr);
    EXPECT_EQ(Layout::allocated(*set), 0);
    EXPECT_EQ(set->getSize(), 0);
  }
}

TEST(TupleSetNew, GrowsByAtLeastOneAndAtMostWhat24BitsHold) {
  EXPECT_EQ(Layout::increment(*Held<lvrTupleSet>(-5, 0U, 0U)), 1U);
  EXPECT_EQ(Layout::increment(*Held<lvrTupleSet>(0, 1U, 0U)), 1U);
  EXPECT_EQ(Layout::increment(*Held<lvrTupleSet>(0, 16777215U, 0U)), 16777215U);
  EXPECT_EQ(Layout::increment(*Held<lvrTupleSet>(0, 16777216U, 0U)), 16777215U);
  EXPECT_EQ(Layout::increment(*Held<lvrTupleSet>(0, 16777217U, 0U)), 16777215U);
  EXPECT_EQ(Layout::increment(*Held<lvrTupleSet>(0, UINT_MAX, 0U)), 16777215U);
}

TEST(TupleSetNew, KeepsTheLowEightBitsOfItsFlags) {
  EXPECT_EQ(Layout::setFlags(*Held<lvrTupleSet>(0, 1U, 2U)), 2U);
  EXPECT_EQ(Layout::setFlags(*Held<lvrTupleSet>(0, 1U, 0x100U)), 0U);
  EXPECT_EQ(Layout::setFlags(*Held<lvrTupleSet>(0, 1U, 0xFFFFFFFFU)), 0xFFU);
}

TEST(TupleSetNew, KeepsStepAndFlagsInOneWordBehindTheRoom) {
  Held<lvrTupleSet> const set(0, 0x123456U, 0x9AU);
  auto const* const bytes = reinterpret_cast<unsigned char const*>(&*set);
  std::uint32_t word = 0;
  std::memcpy(&word, bytes + Layout::allocatedOffset + 4, sizeof(word));
  EXPECT_EQ(word, 0x9A123456U);
}

TEST(TupleSetNew, GivesTheMapTagToCellsThatHoldIt) {
  SmallSet set;
  EXPECT_EQ(set.cell().getType(), lvArg::MapType);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*set), 0x80);
}

TEST(TupleSetNew, IsHeldByMapHandles) {
  SmallSet set;
  lvHashMap const handle(set.cell());
  EXPECT_EQ(handle.getMap(), static_cast<lviMap*>(&*set));
  EXPECT_EQ(countOf(*set), 2);
}

TEST(TupleSetNew, MadeByNameHasRoomForEightAndGrowsByEight) {
  lvReferencable* const made = lvrTupleSet::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  lvArg const holder(*made);
  auto const& set = dynamic_cast<lvrTupleSet&>(*made);
  EXPECT_EQ(Layout::allocated(set), 8);
  EXPECT_EQ(Layout::increment(set), 8U);
  EXPECT_EQ(Layout::setFlags(set), 0U);
  EXPECT_EQ(set.getSize(), 0);
}

TEST(TupleSetNew, ComparesAndHashesAsTheBaseDoes) {
  SmallSet const set;
  SmallSet const other;
  EXPECT_EQ(set->equiv(*set), 1);
  EXPECT_EQ(set->equiv(*other), 0);
  EXPECT_EQ(set->compareTo(*other) < 0, &*set < &*other);
  EXPECT_EQ(set->hashCode(), 0U);
  putEach(*set, {1});
  EXPECT_EQ(set->hashCode(), 0U);
}

TEST(TupleSetNew, KeepsTheHooksOfTheBase) {
  SmallSet const set;
  EXPECT_EQ(set->__mark(), 0);
  EXPECT_EQ(set->__hook(), 0);
  EXPECT_TRUE(set->getValue().isNil());
}

// --- search --------------------------------------------------------------------------------------

TEST(TupleSetSearch, OfAnEmptySetFindsNothingAtZero) {
  for (int const size : {4, 0}) {
    Held<lvrTupleSet> const set(size, 4U, 0U);
    bool found = true;
    EXPECT_EQ(set->search(integer(1), &found), 0);
    EXPECT_FALSE(found);
  }
}

TEST(TupleSetSearch, FindsEveryKeyWhereItIs) {
  SmallSet const set;
  putUpTo(*set, 33);
  for (int key = 1; key <= 33; ++key) {
    bool found = false;
    EXPECT_EQ(set->search(integer(key), &found), key - 1);
    EXPECT_TRUE(found);
  }
}

TEST(TupleSetSearch, GivesThePositionProbedLastForAnAbsentKey) {
  SmallSet const set;
  putEach(*set, {10, 20, 30, 40, 50});
  int const probed[] = {0, 0, 1, 3, 3, 4};  // For 5, 15, 25, 35, 45 and 55.
  for (int i = 0; i < 6; ++i) {
    bool found = true;
    EXPECT_EQ(set->search(integer(10 * i + 5), &found), probed[i]) << i;
    EXPECT_FALSE(found);
  }
}

TEST(TupleSetSearch, ProbesTheUpperOfTwoMiddlesFirst) {
  SmallSet const set;
  putEach(*set, {10, 20});
  EXPECT_EQ(set->search(integer(5), nullptr), 0);
  EXPECT_EQ(set->search(integer(15), nullptr), 0);
  EXPECT_EQ(set->search(integer(25), nullptr), 1);
}

TEST(TupleSetSearch, DoesWithoutAPlaceForTheAnswer) {
  SmallSet const set;
  EXPECT_EQ(set->search(integer(1), nullptr), 0);
  putEach(*set, {1, 2, 3});
  EXPECT_EQ(set->search(integer(3), nullptr), 2);
  EXPECT_EQ(set->search(integer(9), nullptr), 2);
}

TEST(TupleSetSearch, HalvesThePairsWithEachComparison) {
  SmallSet const set;
  for (int rank = 0; rank < 1000; ++rank) {
    set->put(*new RankedKey(rank), integer(rank));
  }
  for (int const rank : {-1, 0, 333, 500, 999, 1000}) {
    lvArg const key = *new RankedKey(rank);
    RankedKey::compared = 0;
    set->search(key, nullptr);
    EXPECT_LE(RankedKey::compared, 10) << rank;
    EXPECT_GE(RankedKey::compared, 1) << rank;
  }
}

// --- get -----------------------------------------------------------------------------------------

TEST_F(TupleSetGet, GivesTheValueOfEachKeyAndNilForOthers) {
  EXPECT_EQ(set->get(integer(1)).getInt(), 10);
  EXPECT_EQ(set->get(integer(3)).getInt(), 30);
  EXPECT_TRUE(set->get(integer(0)).isNil());
  EXPECT_TRUE(set->get(integer(4)).isNil());
  EXPECT_TRUE(set->get(lvArg()).isNil());
  EXPECT_TRUE(set->get(string("2")).isNil());
}

TEST_F(TupleSetGet, OfASetWithoutPairsIsNil) {
  EXPECT_TRUE(SmallSet()->get(integer(1)).isNil());
  EXPECT_TRUE(Held<lvrTupleSet>(0, 1U, 0U)->get(integer(1)).isNil());
}

TEST_F(TupleSetGet, GivesACopy) {
  lvArg const value = string("value");
  set->put(integer(2), value);
  lvArg copy = set->get(integer(2));
  EXPECT_EQ(countOf(value), 3);
  copy.setInt(1);
  EXPECT_TRUE(set->get(integer(2)).eq(value));
}

TEST_F(TupleSetGet, FindsTextsByTheirContentAndContainersByIdentity) {
  lvVector const inner(1);
  set->put(string("key"), integer(1));
  set->put(inner, integer(2));
  EXPECT_EQ(set->get(string("key")).getInt(), 1);
  EXPECT_EQ(set->get(inner).getInt(), 2);
  EXPECT_TRUE(set->get(lvVector(1)).isNil());
}

// --- put -----------------------------------------------------------------------------------------

TEST_F(TupleSetPut, KeepsTheKeysAscendingInAnyOrderOfInsertion) {
  std::vector<int> keys = {1, 2, 3, 4, 5};
  do {
    Held<lvrTupleSet> const permuted(0, 2U, 0U);
    for (int const key : keys) {
      EXPECT_EQ(permuted->put(integer(key), integer(10 * key)), 0);
    }
    ASSERT_EQ(entriesOf(*permuted), "1=10 2=20 3=30 4=40 5=50 ");
    ASSERT_EQ(permuted->getSize(), 5);
  } while (std::next_permutation(keys.begin(), keys.end()));
}

TEST_F(TupleSetPut, OrdersKeysOfDifferentKindsByTheirTags) {
  lvArg const keys[] = {test::newBare(lvReferencable::ClassKind),
                        lvVector(1),
                        lvHashMap(1),
                        string("text"),
                        test::keyWithHash(0),
                        test::pointer(8),
                        integer(-7),
                        lvArg()};
  SmallSet const mixed;
  for (lvArg const& key : keys) {
    mixed->put(key, integer(1));
  }
  EXPECT_EQ(keysOf(*mixed), "nil -7 <tag 12> <tag 18> 'text' <tag 24> <tag 25> <tag 27> ");
}

TEST_F(TupleSetPut, OrdersTextsAsStrcmpDoes) {
  SmallSet const texts;
  for (char const* const text : {"b", "", "ab", "\xC3\xA4", "B", "a"}) {
    texts->put(string(text), integer(1));
  }
  EXPECT_EQ(keysOf(*texts), "'' 'B' 'a' 'ab' 'b' '\xC3\xA4' ");
}

TEST_F(TupleSetPut, InsertsAtTheFrontBetweenAndAtTheEnd) {
  putEach(*set, {5, 0, 4});
  EXPECT_EQ(roomOf(*set), "0=0 1=10 2=20 3=30 4=40 5=50 . . ");
}

TEST_F(TupleSetPut, ComparesOnceMoreThanTheSearch) {
  SmallSet const ranked;
  ranked->put(*new RankedKey(2), integer(2));
  lvArg const key = *new RankedKey(1);
  RankedKey::compared = 0;
  ranked->put(key, integer(1));
  EXPECT_EQ(RankedKey::compared, 2);
}

TEST_F(TupleSetPut, UnderAPresentKeyReplacesTheValue) {
  lvArg old = integer(77);
  EXPECT_EQ(set->put(integer(2), string("new"), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(roomOf(*set), "1=10 2='new' 3=30 . ");
}

TEST_F(TupleSetPut, UnderAPresentKeyKeepsTheFirstKeyCell) {
  lvArg const first = string("key");
  set->put(first, integer(1));
  set->put(string("key"), integer(2));
  EXPECT_TRUE(set->getKey(3).eq(first));
}

TEST_F(TupleSetPut, UnderAPresentKeyDoesNotGrowAFullSet) {
  putEach(*set, {4});
  set->put(integer(4), integer(44));
  set->put(integer(1), integer(11));
  EXPECT_EQ(roomOf(*set), "1=11 2=20 3=30 4=44 ");
}

TEST_F(TupleSetPut, GivesTheOldValueAReferenceOfItsOwn) {
  lvArg const value = string("value");
  lvArg old;
  set->put(integer(2), value);
  set->put(integer(2), integer(1), &old);
  EXPECT_TRUE(old.eq(value));
  EXPECT_EQ(countOf(value), 2);
}

TEST_F(TupleSetPut, OfNilUnderAPresentKeyRemovesThePair) {
  lvArg old = integer(77);
  EXPECT_EQ(set->put(integer(2), lvArg(), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(set->getSize(), 2);
  EXPECT_EQ(roomOf(*set), "1=10 3=30 . . ");
}

TEST_F(TupleSetPut, OfNilUnderTheOnlyKeyEmptiesTheSet) {
  SmallSet const single;
  putEach(*single, {1});
  EXPECT_EQ(single->put(integer(1), lvArg()), 0);
  EXPECT_EQ(single->getSize(), 0);
  EXPECT_EQ(roomOf(*single), ". . . . ");
}

TEST_F(TupleSetPut, OfNilUnderAnAbsentKeyDoesNothing) {
  lvArg old = integer(77);
  for (int const key : {0, 4}) {
    EXPECT_EQ(set->put(integer(key), lvArg(), &old), 0);
  }
  EXPECT_EQ(old.getInt(), 77);
  EXPECT_EQ(set->getSize(), 3);
  expectUnchanged();
}

TEST_F(TupleSetPut, OfNilUnderAnAbsentKeyDoesNotGrowAFullSet) {
  putEach(*set, {4});
  set->put(integer(5), lvArg());
  EXPECT_EQ(Layout::allocated(*set), 4);
}

TEST_F(TupleSetPut, LeavesTheOldCellAloneForANewKey) {
  lvArg old = integer(77);
  set->put(integer(0), integer(1), &old);
  set->put(integer(9), integer(1), &old);
  SmallSet()->put(integer(1), integer(1), &old);
  EXPECT_EQ(old.getInt(), 77);
}

TEST_F(TupleSetPut, StoresTheIntegerZero) {
  set->put(integer(2), integer(0));
  EXPECT_EQ(set->getSize(), 3);
  EXPECT_EQ(set->get(integer(2)).getInt(), 0);
}

TEST_F(TupleSetPut, OfTheNinthPairGrowsADefaultSetToSixteen) {
  lvArg const holder(*lvrTupleSet::defaultCtorMethod());
  auto& byDefault = dynamic_cast<lvrTupleSet&>(*holder.getReferencable());
  putUpTo(byDefault, 8);
  EXPECT_EQ(Layout::allocated(byDefault), 8);
  putEach(byDefault, {9});
  EXPECT_EQ(Layout::allocated(byDefault), 16);
  putUpTo(byDefault, 17);
  EXPECT_EQ(Layout::allocated(byDefault), 24);
}

TEST_F(TupleSetPut, MakesTheArrayOfASetThatHasNone) {
  Held<lvrTupleSet> const bare(0, 3U, 0U);
  putEach(*bare, {1});
  EXPECT_EQ(roomOf(*bare), "1=10 . . ");
  putEach(*bare, {4, 3, 2});
  EXPECT_EQ(roomOf(*bare), "1=10 2=20 3=30 4=40 . . ");
}

TEST_F(TupleSetPut, GrowsByOneAtATimeIfThatIsTheStep) {
  Held<lvrTupleSet> const slow(0, 0U, 0U);
  for (int size = 1; size <= 20; ++size) {
    putEach(*slow, {-size});
    EXPECT_EQ(Layout::allocated(*slow), size);
  }
}

TEST_F(TupleSetPut, TakesOneReferenceToEachCellHoweverThePairsMove) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  set->put(key, value);
  for (int i = 0; i < 50; ++i) {
    putEach(*set, {i});
  }
  for (int i = 0; i < 25; ++i) {
    set->put(integer(i), lvArg());
  }
  EXPECT_EQ(countOf(key), 2);
  EXPECT_EQ(countOf(value), 2);
  EXPECT_TRUE(set->get(key).eq(value));
}

TEST_F(TupleSetPut, TakesAValueThatOnlyTheOldOneKeepsAlive) {
  lvVector holder(1);
  holder->insert(string("inner"), -1);
  auto const& vector = dynamic_cast<lvrVector&>(*holder.getReferencable());
  lvArg const& inner = lvLayoutAccess<lvrVector>::elements(vector)[0];
  set->put(integer(2), holder);
  holder.setNil();
  EXPECT_EQ(set->put(integer(2), inner), 0);
  EXPECT_EQ(textOf(set->get(integer(2))), "inner");
}

TEST_F(TupleSetPut, TellsTheFirstFlagFromTheOthers) {
  Held<lvrTupleSet> const replacing(4, 4U, 0xFEU);
  putEach(*replacing, {1});
  replacing->put(integer(1), integer(11));
  EXPECT_EQ(roomOf(*replacing), "1=11 . . . ");
}

// --- Pairs by position ---------------------------------------------------------------------------

TEST_F(TupleSetAt, GivesThePairsInTheirOrder) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(set->getKey(i).getInt(), i + 1);
    EXPECT_EQ(set->getValue(i).getInt(), 10 * (i + 1));
  }
}

TEST_F(TupleSetAt, IsNilBesideThePairs) {
  Held<lvrTupleSet> const bare(0, 1U, 0U);
  for (int const i : {-1, 3, 4, INT_MAX, INT_MIN}) {
    EXPECT_TRUE(set->getKey(i).isNil()) << i;
    EXPECT_TRUE(set->getValue(i).isNil()) << i;
  }
  EXPECT_TRUE(bare->getKey(0).isNil());
  EXPECT_TRUE(bare->getValue(0).isNil());
}

TEST_F(TupleSetAt, GivesCopies) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  set->put(key, value);
  lvArg const keyCopy = set->getKey(3);
  lvArg const valueCopy = set->getValue(3);
  EXPECT_TRUE(keyCopy.eq(key));
  EXPECT_TRUE(valueCopy.eq(value));
  EXPECT_EQ(countOf(key), 3);
  EXPECT_EQ(countOf(value), 3);
}

TEST_F(TupleSetSetValue, ReplacesTheValueAndAnswersOne) {
  lvArg old = integer(77);
  EXPECT_EQ(set->setValue(0, string("new"), &old), 1);
  EXPECT_EQ(old.getInt(), 10);
  EXPECT_EQ(set->setValue(2, string("last"), nullptr), 1);
  EXPECT_EQ(roomOf(*set), "1='new' 2=20 3='last' . ");
}

TEST_F(TupleSetSetValue, BesideThePairsAnswersZeroAndChangesNothing) {
  lvArg old = integer(77);
  for (int const i : {-1, 3, 4, INT_MAX, INT_MIN}) {
    EXPECT_EQ(set->setValue(i, integer(1), &old), 0) << i;
  }
  EXPECT_EQ(Held<lvrTupleSet>(0, 1U, 0U)->setValue(0, integer(1), &old), 0);
  EXPECT_EQ(old.getInt(), 77);
  expectUnchanged();
}

TEST_F(TupleSetSetValue, OfNilAnswersZeroAndChangesNothing) {
  lvArg old = integer(77);
  EXPECT_EQ(set->setValue(1, lvArg(), &old), 0);
  EXPECT_EQ(old.getInt(), 77);
  expectUnchanged();
}

TEST_F(TupleSetSetValue, HandsTheReferenceToTheOldCell) {
  lvArg const value = string("value");
  lvArg old;
  set->setValue(1, value, nullptr);
  EXPECT_EQ(countOf(value), 2);
  set->setValue(1, integer(1), &old);
  EXPECT_EQ(countOf(value), 2);
  EXPECT_TRUE(old.eq(value));
}

// --- expand --------------------------------------------------------------------------------------

TEST_F(TupleSetExpand, WithEnoughRoomChangesNothing) {
  for (int const needed : {4, 3, 0, -1, INT_MIN}) {
    EXPECT_EQ(set->expand(needed), 0);
    EXPECT_EQ(Layout::allocated(*set), 4);
  }
  expectUnchanged();
}

TEST_F(TupleSetExpand, ToNothingMakesNoArray) {
  Held<lvrTupleSet> const bare(0, 8U, 0U);
  for (int const needed : {0, -1, INT_MIN}) {
    EXPECT_EQ(bare->expand(needed), 0);
    EXPECT_EQ(Layout::entries(*bare), nullptr);
    EXPECT_EQ(Layout::allocated(*bare), 0);
  }
}

TEST_F(TupleSetExpand, GrowsByOneStepIfThatIsEnough) {
  EXPECT_EQ(set->expand(5), 0);
  EXPECT_EQ(roomOf(*set), "1=10 2=20 3=30 . . . . . ");
  EXPECT_EQ(set->expand(12), 0);
  EXPECT_EQ(Layout::allocated(*set), 12);
}

TEST_F(TupleSetExpand, GrowsByMoreThanOneStepIfItMust) {
  EXPECT_EQ(set->expand(9), 0);
  EXPECT_EQ(roomOf(*set), "1=10 2=20 3=30 . . . . . . ");
  EXPECT_EQ(set->getSize(), 3);
}

TEST_F(TupleSetExpand, ZeroesTheNewPairs) {
  set->expand(100);
  EXPECT_TRUE(areZero(Layout::entries(*set) + 3, 97));
}

TEST_F(TupleSetExpand, MakesTheArrayOfASetThatHasNone) {
  Held<lvrTupleSet> const bare(0, 3U, 0U);
  EXPECT_EQ(bare->expand(1), 0);
  EXPECT_EQ(roomOf(*bare), ". . . ");
}

// --- removeEntry ---------------------------------------------------------------------------------

TEST_F(TupleSetRemoveEntry, ClosesTheGap) {
  set->removeEntry(1);
  EXPECT_EQ(roomOf(*set), "1=10 3=30 . . ");
  set->removeEntry(0);
  EXPECT_EQ(roomOf(*set), "3=30 . . . ");
  set->removeEntry(0);
  EXPECT_EQ(roomOf(*set), ". . . . ");
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetRemoveEntry, OfTheLastPairLeavesTheOthers) {
  set->removeEntry(2);
  EXPECT_EQ(roomOf(*set), "1=10 2=20 . . ");
  EXPECT_EQ(set->getSize(), 2);
}

TEST_F(TupleSetRemoveEntry, ZeroesAllBytesOfThePlaceThatGetsFree) {
  set->removeEntry(0);
  EXPECT_TRUE(areZero(Layout::entries(*set) + 2, 2));
}

TEST_F(TupleSetRemoveEntry, ReleasesBothCellsTheKeyFirst) {
  std::string log;
  SmallSet const logged;
  logged->put(logging(log, "key "), logging(log, "value "));
  logged->removeEntry(0);
  EXPECT_EQ(log, "key value ");
}

TEST_F(TupleSetRemoveEntry, BesideThePairsChangesNothing) {
  for (int const i : {-1, 3, 4, INT_MAX, INT_MIN}) {
    set->removeEntry(i);
  }
  Held<lvrTupleSet>(0, 1U, 0U)->removeEntry(0);
  EXPECT_EQ(set->getSize(), 3);
  expectUnchanged();
}

// --- clear, finalize -----------------------------------------------------------------------------

TEST_F(TupleSetClear, KeepsTheArray) {
  lvrTupleSet::Pair const* const array = Layout::entries(*set);
  EXPECT_EQ(set->clear(), 0);
  EXPECT_EQ(set->getSize(), 0);
  EXPECT_EQ(Layout::entries(*set), array);
  EXPECT_EQ(roomOf(*set), ". . . . ");
}

TEST_F(TupleSetClear, ReleasesKeysAndValues) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  set->put(key, value);
  set->clear();
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(TupleSetClear, OfASetWithoutArrayAnswersZero) {
  Held<lvrTupleSet> const bare(0, 1U, 0U);
  EXPECT_EQ(bare->clear(), 0);
  EXPECT_EQ(Layout::entries(*bare), nullptr);
}

TEST_F(TupleSetClear, LeavesASetThatCanBeFilledAgain) {
  set->clear();
  putEach(*set, {6, 5});
  EXPECT_EQ(roomOf(*set), "5=50 6=60 . . ");
}

TEST_F(TupleSetFinalize, ReleasesThePairsAndDoesNoHarmTheSecondTime) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  set->put(key, value);
  EXPECT_EQ(set->finalize(), 0);
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(set->getSize(), 0);
  EXPECT_EQ(set->finalize(), 0);
}

TEST_F(TupleSetFinalize, LeavesASetThatCanBeFilledAgain) {
  set->finalize();
  EXPECT_TRUE(set->get(integer(1)).isNil());
  putEach(*set, {2, 1});
  EXPECT_EQ(entriesOf(*set), "1=10 2=20 ");
}

TEST_F(TupleSetFinalize, RunsWhenTheLastReferenceGoes) {
  test::Probe::Log log;
  {
    SmallSet const outer;
    SmallSet inner;
    inner->put(*new test::Probe(log), *new test::Probe(log));
    outer->put(inner.cell(), integer(1));
  }
  EXPECT_EQ(log.finalized, 2);
  EXPECT_EQ(log.destroyed, 2);
}

TEST_F(TupleSetFinalize, IsMadeUpForByTheDestructor) {
  lvArg const value = string("value");
  auto* const unheld = new lvrTupleSet(4, 4, 0);
  unheld->put(integer(1), value);
  delete unheld;
  EXPECT_EQ(countOf(value), 1);
}

// A set that counts the calls of its clear(), which does nothing but answer.
class KeepingSet : public lvrTupleSet {
 public:
  explicit KeepingSet(int size) : lvrTupleSet(size, 4, 0) {}
  int clear() override {
    ++cleared;
    return -7;
  }

  int cleared = 0;
};

TEST_F(TupleSetFinalize, GoesThroughADerivedClear) {
  Held<KeepingSet> const keeping(4);
  EXPECT_EQ(keeping->finalize(), 0);
  EXPECT_EQ(keeping->cleared, 1);
}

TEST_F(TupleSetFinalize, OfASetWithoutArrayCallsNoClear) {
  Held<KeepingSet> const keeping(0);
  EXPECT_EQ(keeping->finalize(), 0);
  EXPECT_EQ(keeping->cleared, 0);
}

TEST_F(TupleSetFinalize, ReleasesWhatADerivedClearLeaves) {
  lvArg const value = string("value");
  Held<KeepingSet> const keeping(4);
  keeping->put(integer(1), value);
  keeping->finalize();
  EXPECT_EQ(countOf(value), 1);
}

// --- What runs while cells are released ----------------------------------------------------------

TEST_F(TupleSetWhileReleasing, ShowsAnEmptySetToWhatClearReleases) {
  int size = -1;
  set->put(integer(0), acting([&] { size = set->getSize(); }));
  set->clear();
  EXPECT_EQ(size, 0);
}

TEST_F(TupleSetWhileReleasing, KeepsWhatIsPutDuringClear) {
  lvArg const value = string("value");
  set->put(integer(0), acting([this] { putEach(*set, {8, 7}); }));
  set->put(integer(9), value);
  EXPECT_EQ(set->clear(), 0);
  EXPECT_EQ(entriesOf(*set), "7=70 8=80 ");
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(TupleSetWhileReleasing, LetsClearRunInsideOfClear) {
  lvArg const value = string("value");
  set->put(integer(0), acting([this] { set->clear(); }));
  set->put(integer(9), value);
  set->clear();
  EXPECT_EQ(set->getSize(), 0);
  EXPECT_EQ(countOf(value), 1);
}

TEST_F(TupleSetWhileReleasing, LetsARemovedPairChangeTheSet) {
  set->put(integer(2), acting([this] { putEach(*set, {4, 5, 6, 0}); }));
  set->put(integer(2), lvArg());
  EXPECT_EQ(entriesOf(*set), "0=0 1=10 3=30 4=40 5=50 6=60 ");
  set->put(integer(3), acting([this] { set->clear(); }));
  set->put(integer(3), lvArg());
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetWhileReleasing, LetsAReplacedValueChangeTheSet) {
  set->put(integer(2), acting([this] { putUpTo(*set, 20); }));
  set->put(integer(2), string("new"));
  EXPECT_EQ(set->getSize(), 20);
  EXPECT_EQ(set->get(integer(2)).getInt(), 20);
  set->setValue(4, acting([this] { set->finalize(); }), nullptr);
  EXPECT_EQ(set->setValue(4, string("new"), nullptr), 1);
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetWhileReleasing, LetsAnOverwrittenOldCellChangeTheSet) {
  lvArg old = acting([this] { set->clear(); });
  EXPECT_EQ(set->put(integer(2), integer(22), &old), 0);
  EXPECT_EQ(old.getInt(), 20);
  EXPECT_EQ(set->getSize(), 0);
  putEach(*set, {1});
  old = acting([this] { set->finalize(); });
  EXPECT_EQ(set->setValue(0, integer(11), &old), 1);
  EXPECT_EQ(old.getInt(), 10);
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetWhileReleasing, LetsAPairThatLeftEarlierChangeTheSet) {
  EqualKeysSet const equalKeys;
  equalKeys->put(integer(1), acting([&equalKeys] { putEach(*equalKeys, {5}); }));
  equalKeys->put(integer(1), integer(11));
  putEach(*equalKeys, {3});
  EXPECT_EQ(entriesOf(*equalKeys), "1=11 3=30 5=50 ");
}

TEST_F(TupleSetWhileReleasing, ReleasesWhatIsPutIntoASetThatGoes) {
  lvArg const late = string("late");
  {
    auto& going = *new lvrTupleSet(4, 4, 0);
    lvArg const holder(going);
    going.put(integer(1), acting([&going, &late] { going.put(integer(2), late); }));
  }
  EXPECT_EQ(countOf(late), 1);
}

}  // namespace
