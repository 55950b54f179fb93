#include <gtest/gtest.h>

#include <csignal>
#include <cstdint>
#include <new>
#include <string>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using test::acting;
using test::countOf;
using test::entriesOf;
using test::Held;
using test::integer;
using test::keysOf;
using test::keyWithHash;
using test::logging;
using test::pointer;
using test::string;
using test::textOf;
using Layout = lvLayoutAccess<lvrHashMap>;

constexpr unsigned EmptyHash = 0x8386a731;
constexpr unsigned HashFactor = 9563891;

unsigned hashOf(int value) { return static_cast<unsigned>(value) * 0xFFFFA460U + 0x110D5U; }

// A map that answers and counts in its own clear().
class OwnClear : public lvrHashMap {
 public:
  explicit OwnClear(int answer) : lvrHashMap(7), answer_(answer) {}
  int clear() override {
    ++clears_;
    return answer_;
  }
  int clears() const { return clears_; }
  // Lets the storage be freed after all.
  void agree() { answer_ = 0; }

 private:
  int answer_;
  int clears_ = 0;
};

TEST(HashMapNew, HasTheNumberOfBucketsThatItIsMadeWith) {
  EXPECT_EQ(Layout::hashSize(*Held<lvrHashMap>(3U)), 3U);
  EXPECT_EQ(Layout::hashSize(*Held<lvrHashMap>(0U)), 0U);
  EXPECT_EQ(Layout::hashSize(*Held<lvrHashMap>(0xFFFFFFFFU)), 0xFFFFFFFFU);
}

TEST(HashMapNew, IsEmptyAndHasAllocatedNothing) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
  EXPECT_EQ(Layout::spareEntry(*map), nullptr);
}

TEST(HashMapNew, HashesToTheNumberOfTheEmptyKeySet) {
  EXPECT_EQ(Held<lvrHashMap>(7U)->hashCode(), EmptyHash);
  EXPECT_EQ(Held<lvrHashMap>(0U)->hashCode(), EmptyHash);
}

TEST(HashMapNew, GivesTheMapTagToCellsThatHoldIt) {
  Held<lvrHashMap> map(7U);
  EXPECT_EQ(map.cell().getType(), lvArg::MapType);
  EXPECT_EQ(map->getKind(), lvReferencable::MapKind);
  EXPECT_EQ(lvLayoutAccess<lvReferencable>::typeByte(*map), 0x80);
}

TEST(HashMapNew, MadeByNameHasSevenBuckets) {
  lvReferencable* const made = lvrHashMap::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  lvArg const holder(*made);
  auto const& map = dynamic_cast<lvrHashMap&>(*made);
  EXPECT_EQ(Layout::hashSize(map), 7U);
  EXPECT_EQ(map.getSize(), 0);
  EXPECT_EQ(map.hashCode(), EmptyHash);
}

TEST(HashMapNew, IsOfTheClassHashMap) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(textOf(map->getClassDesc()), "HashMap");
  EXPECT_TRUE(map->getClassDesc().eq(lvString("HashMap")));
  EXPECT_EQ(&map->getClassDesc(), &lvrHashMap::getStaticClassDesc());
}

TEST(HashMapNew, ComparesAsTheBaseDoes) {
  Held<lvrHashMap> const map(7U);
  Held<lvrHashMap> const other(7U);
  EXPECT_EQ(map->equiv(*map), 1);
  EXPECT_EQ(map->equiv(*other), 0);
  EXPECT_EQ(map->compareTo(*map), 0);
  EXPECT_EQ(map->compareTo(*other) < 0, &*map < &*other);
}

// --- get -----------------------------------------------------------------------------------------

TEST(HashMapGet, OfAMapThatWasNeverFilledIsNil) {
  EXPECT_TRUE(Held<lvrHashMap>(7U)->get(integer(1)).isNil());
}

TEST(HashMapGet, OfAMapWithoutBucketsIsNil) {
  EXPECT_TRUE(Held<lvrHashMap>(0U)->get(integer(1)).isNil());
}

TEST(HashMapGet, OfAnEmptiedMapIsNil) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  map->put(integer(1), lvArg::NilValue);
  EXPECT_TRUE(map->get(integer(1)).isNil());
}

TEST(HashMapGet, OfAnEmptyMapDoesNotAskForTheHash) {
  class Unasked : public lvReferencable {
   public:
    unsigned int hashCode() const override {
      ADD_FAILURE() << "asked";
      return 0;
    }
  };
  Held<lvrHashMap> const map(7U);
  map->needStorage();
  lvArg const key(*new Unasked);
  EXPECT_TRUE(map->get(key).isNil());
}

TEST(HashMapGet, FindsEveryKeyOfOneChain) {
  Held<lvrHashMap> const map(1U);
  for (int i = 0; i < 50; ++i) {
    map->put(integer(i), integer(1000 + i));
  }
  for (int i = 0; i < 50; ++i) {
    EXPECT_EQ(map->get(integer(i)).getInt(), 1000 + i);
  }
  EXPECT_TRUE(map->get(integer(50)).isNil());
}

TEST(HashMapGet, FindsOneOfTwoKeysWithTheSameHash) {
  Held<lvrHashMap> const map(7U);
  lvArg const first = keyWithHash(5);
  lvArg const second = keyWithHash(5);
  map->put(first, integer(1));
  EXPECT_TRUE(map->get(second).isNil());
  map->put(second, integer(2));
  EXPECT_EQ(map->get(first).getInt(), 1);
  EXPECT_EQ(map->get(second).getInt(), 2);
}

TEST(HashMapGet, ComparesStringsByTheirText) {
  Held<lvrHashMap> const map(7U);
  map->put(string("key"), integer(1));
  EXPECT_EQ(map->get(string("key")).getInt(), 1);
  EXPECT_EQ(map->get(lvString("key")).getInt(), 1);
  EXPECT_TRUE(map->get(string("keys")).isNil());
}

TEST(HashMapGet, ComparesContainersByIdentity) {
  Held<lvrHashMap> const map(7U);
  lvVector const key(3);
  lvVector const twin(3);
  map->put(key, integer(1));
  EXPECT_EQ(map->get(key).getInt(), 1);
  EXPECT_TRUE(map->get(twin).isNil());
}

TEST(HashMapGet, TellsAnIntegerFromItsText) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(42), integer(1));
  map->put(string("42"), integer(2));
  EXPECT_EQ(map->get(integer(42)).getInt(), 1);
  EXPECT_EQ(map->get(string("42")).getInt(), 2);
}

TEST(HashMapGet, TellsAnIntegerFromAnAddressOfTheSameHash) {
  Held<lvrHashMap> const map(7U);
  ASSERT_EQ(pointer(8).hashCode(), integer(1).hashCode());
  map->put(integer(1), string("integer"));
  map->put(pointer(8), string("address"));
  EXPECT_EQ(textOf(map->get(integer(1))), "integer");
  EXPECT_EQ(textOf(map->get(pointer(8))), "address");
}

TEST(HashMapGet, FindsWhatIsUnderTheNilKey) {
  Held<lvrHashMap> const map(7U);
  map->put(lvArg(), integer(3));
  EXPECT_EQ(map->get(lvArg::NilValue).getInt(), 3);
}

TEST(HashMapGet, GivesACopyThatHoldsAReferenceOfItsOwn) {
  Held<lvrHashMap> const map(7U);
  lvArg const value = string("value");
  map->put(integer(1), value);
  lvArg copy = map->get(integer(1));
  EXPECT_EQ(countOf(value), 3);
  copy.setInt(7);
  EXPECT_TRUE(map->get(integer(1)).eq(value));
}

// --- put -----------------------------------------------------------------------------------------

TEST(HashMapPut, OfANewKeyAddsAnEntry) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(map->put(integer(1), integer(10)), 0);
  EXPECT_EQ(map->getSize(), 1);
  EXPECT_EQ(map->get(integer(1)).getInt(), 10);
}

TEST(HashMapPut, OfANewKeyLeavesTheOldCellAlone) {
  Held<lvrHashMap> const map(7U);
  lvArg old = integer(77);
  EXPECT_EQ(map->put(integer(1), integer(10), &old), 0);
  EXPECT_EQ(old.getInt(), 77);
}

TEST(HashMapPut, UnderAPresentKeyReplacesTheValue) {
  Held<lvrHashMap> const map(7U);
  lvArg old = integer(77);
  map->put(integer(1), string("first"));
  EXPECT_EQ(map->put(integer(1), string("second"), &old), 0);
  EXPECT_EQ(map->getSize(), 1);
  EXPECT_EQ(textOf(map->get(integer(1))), "second");
  EXPECT_EQ(textOf(old), "first");
}

TEST(HashMapPut, UnderAPresentKeyKeepsItsPlaceInTheOrder) {
  Held<lvrHashMap> const map(1U);
  for (int i = 1; i <= 4; ++i) {
    map->put(integer(i), integer(i));
  }
  std::string const before = keysOf(*map);
  map->put(integer(2), integer(20));
  EXPECT_EQ(keysOf(*map), before);
}

TEST(HashMapPut, OfTheSameValueOnceMoreChangesNoCount) {
  Held<lvrHashMap> const map(7U);
  lvArg const value = string("value");
  map->put(integer(1), value);
  map->put(integer(1), value);
  EXPECT_EQ(countOf(value), 2);
}

TEST(HashMapPut, OfNilUnderAnAbsentKeyDoesNothing) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  lvArg old = integer(77);
  EXPECT_EQ(map->put(integer(2), lvArg::NilValue, &old), 0);
  EXPECT_EQ(map->getSize(), 1);
  EXPECT_EQ(old.getInt(), 77);
  EXPECT_EQ(map->hashCode(), EmptyHash + HashFactor * hashOf(1));
}

TEST(HashMapPut, OfNilIntoAnEmptyMapStoresNothing) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(map->put(integer(1), lvArg::NilValue), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(entriesOf(*map), "");
}

TEST(HashMapPut, OfNilUnderAPresentKeyRemovesTheEntry) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), string("value"));
  lvArg old = integer(77);
  EXPECT_EQ(map->put(integer(1), lvArg::NilValue, &old), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_TRUE(map->get(integer(1)).isNil());
  EXPECT_EQ(textOf(old), "value");
}

TEST(HashMapPut, OfNilRemovesFromTheHeadTheMiddleAndTheEndOfAChain) {
  for (std::string const gone : {"1 ", "2 ", "3 "}) {
    Held<lvrHashMap> const map(1U);
    for (int i = 1; i <= 3; ++i) {
      map->put(integer(i), integer(10 * i));
    }
    std::string order = keysOf(*map);
    map->put(integer(std::stoi(gone)), lvArg::NilValue);
    EXPECT_EQ(keysOf(*map), order.erase(order.find(gone), gone.size()));
    EXPECT_EQ(map->getSize(), 2);
  }
}

TEST(HashMapPut, DropsWhatTheOldCellHeld) {
  Held<lvrHashMap> const map(7U);
  lvArg const former = string("former");
  lvArg old = former;
  map->put(integer(1), integer(10));
  map->put(integer(1), integer(11), &old);
  EXPECT_EQ(countOf(former), 1);
  EXPECT_EQ(old.getInt(), 10);
}

TEST(HashMapPut, IntoAMapWithoutBucketsAnswersInvalidArgument) {
  Held<lvrHashMap> const map(0U);
  lvArg old = integer(77);
  EXPECT_EQ(map->put(integer(1), integer(10), &old), -22);
  EXPECT_EQ(map->put(integer(1), lvArg::NilValue, &old), -22);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->hashCode(), EmptyHash);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
  EXPECT_EQ(old.getInt(), 77);
}

TEST(HashMapPut, AllocatesTheBucketsEvenForNil) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), lvArg::NilValue);
  EXPECT_NE(Layout::buckets(*map), nullptr);
}

TEST(HashMapPut, WithTheOldCellAsTheKeyReplacesTheRightEntry) {
  Held<lvrHashMap> const map(7U);
  lvArg cell = string("key");
  map->put(string("key"), integer(1));
  map->put(cell, integer(2), &cell);
  EXPECT_EQ(cell.getInt(), 1);
  EXPECT_EQ(entriesOf(*map), "'key'=2 ");
}

TEST(HashMapPut, OfNilWithTheOldCellAsTheKeyRemovesTheRightEntry) {
  Held<lvrHashMap> const map(7U);
  lvArg cell = string("key");
  map->put(cell, integer(1));
  map->put(cell, lvArg::NilValue, &cell);
  EXPECT_EQ(cell.getInt(), 1);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->hashCode(), EmptyHash);
}

TEST(HashMapPut, WithTheOldCellAsANewKeyLeavesItAlone) {
  Held<lvrHashMap> const map(7U);
  lvArg cell = string("key");
  map->put(cell, integer(1), &cell);
  EXPECT_EQ(textOf(cell), "key");
  EXPECT_EQ(entriesOf(*map), "'key'=1 ");
}

TEST(HashMapPut, WithTheOldCellAsTheValueOfANewKeyLeavesItAlone) {
  Held<lvrHashMap> const map(7U);
  lvArg cell = string("value");
  map->put(integer(1), cell, &cell);
  EXPECT_EQ(textOf(cell), "value");
  EXPECT_EQ(entriesOf(*map), "1='value' ");
}

TEST(HashMapPut, OfNilUnderTheStoredKeyCellItselfRemovesTheEntry) {
  for (int entries = 1; entries <= 2; ++entries) {  // The first one is kept, the second one freed.
    Held<lvrHashMap> const map(1U);
    map->put(string("key"), integer(1));
    if (entries == 2) {
      map->put(string("spare"), integer(1));
      map->put(string("spare"), lvArg::NilValue);
    }
    map->put(Layout::buckets(*map)[0]->key, lvArg::NilValue);
    EXPECT_EQ(map->getSize(), 0);
    EXPECT_EQ(map->hashCode(), EmptyHash);
  }
}

TEST(HashMapPut, OfAStoredValueCellItselfKeepsTheValue) {
  Held<lvrHashMap> const map(1U);
  lvArg const value = string("value");
  map->put(integer(1), value);
  map->put(integer(1), Layout::buckets(*map)[0]->value);
  EXPECT_EQ(entriesOf(*map), "1='value' ");
  EXPECT_EQ(countOf(value), 2);
}

TEST(HashMapPut, TakesAKeyAndAValueThatOnlyTheOldCellKeepsAlive) {
  class Pair : public lvReferencable {
   public:
    lvArg key = string("key");
    lvArg value = string("value");
  };
  Held<lvrHashMap> const map(7U);
  map->put(string("key"), integer(1));
  auto const* const pair = new Pair;
  lvArg old(*pair);
  map->put(pair->key, pair->value, &old);
  EXPECT_EQ(entriesOf(*map), "'key'='value' ");
  EXPECT_EQ(old.getInt(), 1);
}

// --- The order and the buckets -------------------------------------------------------------------

// The index of the bucket that holds the map's only entry.
int bucketOfOnlyEntry(lvrHashMap const& map) {
  int index = -1;
  for (unsigned i = 0; i < Layout::hashSize(map); ++i) {
    if (Layout::buckets(map)[i] != nullptr) {
      index = static_cast<int>(i);
    }
  }
  return index;
}

TEST(HashMapBuckets, AreChosenByTheUnsignedRemainderOfTheHash) {
  for (unsigned const hash : {0U, 6U, 7U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
    Held<lvrHashMap> const map(7U);
    map->put(keyWithHash(hash), integer(1));
    EXPECT_EQ(bucketOfOnlyEntry(*map), static_cast<int>(hash % 7U)) << hash;
  }
}

TEST(HashMapBuckets, AreChosenByTheHashOfTheCell) {
  for (int const value : {0, 1, -1, 1000000}) {
    Held<lvrHashMap> const map(1009U);
    map->put(integer(value), integer(1));
    EXPECT_EQ(bucketOfOnlyEntry(*map), static_cast<int>(hashOf(value) % 1009U)) << value;
  }
}

TEST(HashMapBuckets, AreWalkedFromTheFirstToTheLast) {
  Held<lvrHashMap> const map(5U);
  for (unsigned hash = 5; hash-- > 0;) {
    map->put(keyWithHash(hash), integer(static_cast<int>(hash)));
  }
  EXPECT_EQ(entriesOf(*map), "<tag 18>=0 <tag 18>=1 <tag 18>=2 <tag 18>=3 <tag 18>=4 ");
}

TEST(HashMapOrder, PutsNewEntriesToTheTailAndToTheHeadInTurn) {
  test::startAlternation();
  Held<lvrHashMap> const map(1U);
  for (int i = 1; i <= 6; ++i) {
    map->put(integer(i), integer(i));
  }
  EXPECT_EQ(keysOf(*map), "6 4 2 1 3 5 ");
}

TEST(HashMapOrder, CountsNeitherReplacedNorRemovedNorMissingEntries) {
  test::startAlternation();
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(1));                // The first goes to the tail.
  map->put(integer(1), integer(2));                // Replaced.
  map->put(integer(9), lvArg::NilValue);           // Not there.
  Held<lvrHashMap>(0U)->put(integer(1), lvArg());  // No room.
  map->put(integer(2), integer(2));                // The second goes to the head.
  EXPECT_EQ(keysOf(*map), "2 1 ");
  map->put(integer(1), lvArg::NilValue);  // Removed.
  map->put(integer(3), integer(3));       // The third goes to the tail.
  EXPECT_EQ(keysOf(*map), "2 3 ");
}

TEST(HashMapOrder, CountsEntriesThatTakeTheSpareOneToo) {
  test::startAlternation();
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(1));
  map->put(integer(1), lvArg::NilValue);
  map->put(integer(2), integer(2));  // To the head,
  map->put(integer(3), integer(3));  // to the tail,
  map->put(integer(4), integer(4));  // to the head.
  EXPECT_EQ(keysOf(*map), "4 2 3 ");
}

// --- The hash ------------------------------------------------------------------------------------

TEST(HashMapHash, AddsTheHashOfEachKeyTimesAFactor) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  map->put(integer(-5), integer(20));
  EXPECT_EQ(map->hashCode(), EmptyHash + HashFactor * (hashOf(1) + hashOf(-5)));
}

TEST(HashMapHash, IsTheSameForOneKeySetWhateverTheOrderTheValuesAndTheBuckets) {
  Held<lvrHashMap> const map(7U);
  Held<lvrHashMap> const other(2U);
  for (int i = 0; i < 20; ++i) {
    map->put(integer(i), integer(i));
    other->put(integer(19 - i), string("value"));
  }
  EXPECT_EQ(map->hashCode(), other->hashCode());
  other->put(integer(20), integer(1));
  EXPECT_NE(map->hashCode(), other->hashCode());
}

TEST(HashMapHash, StaysWhenAValueIsReplaced) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  unsigned const before = map->hashCode();
  map->put(integer(1), integer(20));
  EXPECT_EQ(map->hashCode(), before);
}

TEST(HashMapHash, IsThatOfTheEmptySetAgainWhenTheKeysHaveGone) {
  Held<lvrHashMap> const map(3U);
  for (int i = 0; i < 20; ++i) {
    map->put(integer(i), integer(i));
  }
  for (int i = 0; i < 20; ++i) {
    map->put(integer(i), lvArg::NilValue);
  }
  EXPECT_EQ(map->hashCode(), EmptyHash);
}

TEST(HashMapHash, IsThatOfTheEmptySetAgainAfterClear) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  map->clear();
  EXPECT_EQ(map->hashCode(), EmptyHash);
}

TEST(HashMapHash, IsTheHashOfACellThatHoldsTheMap) {
  Held<lvrHashMap> map(7U);
  map->put(integer(1), integer(10));
  EXPECT_EQ(map.cell().hashCode(), map->hashCode());
}

// --- The spare entry -----------------------------------------------------------------------------

TEST(HashMapSpareEntry, IsTheFirstOneRemoved) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  lvrHashMap::HashEntry const* const entry = Layout::buckets(*map)[0];
  map->put(integer(1), lvArg::NilValue);
  EXPECT_EQ(Layout::spareEntry(*map), entry);
  EXPECT_EQ(Layout::buckets(*map)[0], nullptr);
}

TEST(HashMapSpareEntry, HoldsNothing) {
  Held<lvrHashMap> const map(1U);
  lvArg const key = string("key");
  lvArg const value = string("value");
  map->put(key, value);
  map->put(integer(2), integer(2));
  map->put(key, lvArg::NilValue);
  lvrHashMap::HashEntry const* const spare = Layout::spareEntry(*map);
  ASSERT_NE(spare, nullptr);
  EXPECT_TRUE(spare->key.isNil());
  EXPECT_TRUE(spare->value.isNil());
  EXPECT_EQ(spare->next, nullptr);
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
}

TEST(HashMapSpareEntry, IsTakenByTheNextNewKey) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  map->put(integer(1), lvArg::NilValue);
  lvrHashMap::HashEntry const* const spare = Layout::spareEntry(*map);
  map->put(integer(2), integer(20));
  EXPECT_EQ(Layout::buckets(*map)[0], spare);
  EXPECT_EQ(Layout::spareEntry(*map), nullptr);
  EXPECT_EQ(entriesOf(*map), "2=20 ");
}

TEST(HashMapSpareEntry, IsNotReplacedByTheNextOneRemoved) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  map->put(integer(2), integer(20));
  map->put(integer(1), lvArg::NilValue);
  lvrHashMap::HashEntry const* const spare = Layout::spareEntry(*map);
  map->put(integer(2), lvArg::NilValue);
  EXPECT_EQ(Layout::spareEntry(*map), spare);
}

TEST(HashMapSpareEntry, IsNotTakenWhenAValueIsReplaced) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  map->put(integer(2), integer(20));
  map->put(integer(2), lvArg::NilValue);
  map->put(integer(1), integer(11));
  EXPECT_NE(Layout::spareEntry(*map), nullptr);
}

TEST(HashMapSpareEntry, SurvivesClearAndSetHashSize) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  map->put(integer(2), integer(20));
  map->put(integer(1), lvArg::NilValue);
  lvrHashMap::HashEntry const* const spare = Layout::spareEntry(*map);
  map->clear();
  EXPECT_EQ(Layout::spareEntry(*map), spare);
  map->setHashSize(3);
  EXPECT_EQ(Layout::spareEntry(*map), spare);
}

TEST(HashMapSpareEntry, IsFreedWithTheStorage) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  map->put(integer(1), lvArg::NilValue);
  map->freeStorage();
  EXPECT_EQ(Layout::spareEntry(*map), nullptr);
}

TEST(HashMapEntry, CopiesBothCellsAndLeadsNowhere) {
  lvArg const key = test::string("key");
  lvArg const value = test::string("value");
  {
    lvrHashMap::HashEntry const entry(key, value);
    EXPECT_TRUE(entry.key.eq(key));
    EXPECT_TRUE(entry.value.eq(value));
    EXPECT_EQ(entry.next, nullptr);
    EXPECT_EQ(countOf(key), 2);
    EXPECT_EQ(countOf(value), 2);
  }
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
}

// --- Bookkeeping bits ----------------------------------------------------------------------------

// A map with one entry, made from cells with the bits 0x20 and 0x40.
class HashMapBookkeeping : public ::testing::Test {
 protected:
  HashMapBookkeeping() : map(1U) {
    test::setBookkeeping(key, 0x20);
    test::setBookkeeping(value, 0x40);
    map->put(key, value);
  }
  lvrHashMap::HashEntry const& entry() const { return *Layout::buckets(*map)[0]; }

  Held<lvrHashMap> map;
  lvArg key = integer(1);
  lvArg value = integer(10);
};

TEST_F(HashMapBookkeeping, ComesFromTheCellsOfANewEntry) {
  EXPECT_EQ(test::bookkeepingOf(entry().key), 0x20U);
  EXPECT_EQ(test::bookkeepingOf(entry().value), 0x40U);
  EXPECT_EQ(test::bookkeepingOf(map->get(key)), 0x40U);
}

TEST_F(HashMapBookkeeping, StaysWhenTheValueIsReplaced) {
  lvArg other = integer(11);
  test::setBookkeeping(other, 0x80);
  map->put(integer(1), other);
  EXPECT_EQ(entry().value.getInt(), 11);
  EXPECT_EQ(test::bookkeepingOf(entry().key), 0x20U);
  EXPECT_EQ(test::bookkeepingOf(entry().value), 0x40U);
}

TEST_F(HashMapBookkeeping, OfTheOldCellIsItsOwn) {
  lvArg old;
  test::setBookkeeping(old, 0x80);
  map->put(key, lvArg::NilValue, &old);
  EXPECT_EQ(old.getInt(), 10);
  EXPECT_EQ(test::bookkeepingOf(old), 0x80U);
}

TEST_F(HashMapBookkeeping, StaysWithASpareEntry) {
  map->put(key, lvArg::NilValue);
  map->put(integer(2), integer(20));
  EXPECT_EQ(entry().value.getInt(), 20);
  EXPECT_EQ(test::bookkeepingOf(entry().key), 0x20U);
  EXPECT_EQ(test::bookkeepingOf(entry().value), 0x40U);
}

// --- setHashSize and needStorage -----------------------------------------------------------------

TEST(HashMapSetHashSize, OfAnEmptyMapChangesTheNumberOfBuckets) {
  Held<lvrHashMap> const map(7U);
  EXPECT_EQ(map->setHashSize(100), 0);
  EXPECT_EQ(Layout::hashSize(*map), 100U);
  map->put(keyWithHash(99), integer(1));
  EXPECT_EQ(bucketOfOnlyEntry(*map), 99);
}

TEST(HashMapSetHashSize, FreesTheBucketsOfAnEmptyMap) {
  Held<lvrHashMap> const map(7U);
  map->needStorage();
  EXPECT_EQ(map->setHashSize(8), 0);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
}

TEST(HashMapSetHashSize, ToTheSameNumberKeepsTheBuckets) {
  Held<lvrHashMap> const map(7U);
  map->needStorage();
  auto const* const before = Layout::buckets(*map);
  EXPECT_EQ(map->setHashSize(7), 0);
  EXPECT_EQ(Layout::buckets(*map), before);
}

TEST(HashMapSetHashSize, ToTheSameNumberSucceedsOnAFilledMap) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), integer(10));
  EXPECT_EQ(map->setHashSize(3), 0);
  EXPECT_EQ(entriesOf(*map), "1=10 ");
}

TEST(HashMapSetHashSize, OfAFilledMapAnswersBusyAndChangesNothing) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), integer(10));
  auto const* const before = Layout::buckets(*map);
  EXPECT_EQ(map->setHashSize(5), -16);
  EXPECT_EQ(map->setHashSize(0), -16);
  EXPECT_EQ(Layout::hashSize(*map), 3U);
  EXPECT_EQ(Layout::buckets(*map), before);
  EXPECT_EQ(entriesOf(*map), "1=10 ");
}

TEST(HashMapSetHashSize, ToZeroSetsSeven) {
  Held<lvrHashMap> const map(3U);
  EXPECT_EQ(map->setHashSize(0), 0);
  EXPECT_EQ(Layout::hashSize(*map), 7U);
  EXPECT_EQ(map->put(integer(1), integer(10)), 0);
}

TEST(HashMapSetHashSize, ToZeroOfAFilledMapOfSevenBucketsAnswersBusy) {
  Held<lvrHashMap> const map(7U);
  map->put(integer(1), integer(10));
  EXPECT_EQ(map->setHashSize(0), -16);
}

TEST(HashMapSetHashSize, MakesAMapWithoutBucketsUsable) {
  Held<lvrHashMap> const map(0U);
  EXPECT_EQ(map->setHashSize(2), 0);
  EXPECT_EQ(map->put(integer(1), integer(10)), 0);
  EXPECT_EQ(map->get(integer(1)).getInt(), 10);
}

TEST(HashMapSetHashSize, SucceedsOnAMapThatWasEmptied) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), integer(10));
  map->put(integer(1), lvArg::NilValue);
  EXPECT_EQ(map->setHashSize(5), 0);
  map->put(integer(1), integer(11));
  EXPECT_EQ(entriesOf(*map), "1=11 ");
}

TEST(HashMapNeedStorage, MakesEmptyBuckets) {
  Held<lvrHashMap> const map(1000U);
  EXPECT_EQ(map->needStorage(), 0);
  ASSERT_NE(Layout::buckets(*map), nullptr);
  EXPECT_EQ(bucketOfOnlyEntry(*map), -1);
}

TEST(HashMapNeedStorage, KeepsTheBucketsThatAreThere) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), integer(10));
  auto const* const before = Layout::buckets(*map);
  EXPECT_EQ(map->needStorage(), 0);
  EXPECT_EQ(Layout::buckets(*map), before);
  EXPECT_EQ(entriesOf(*map), "1=10 ");
}

TEST(HashMapNeedStorage, OfNoBucketsAnswersInvalidArgument) {
  Held<lvrHashMap> const map(0U);
  EXPECT_EQ(map->needStorage(), -22);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
}

TEST(HashMapNeedStorage, OfMoreBucketsThanAddressesRaisesTheArrayLengthException) {
  if (sizeof(void*) != 4) {
    GTEST_SKIP() << "the largest number of buckets can be addressed here";
  }
  Held<lvrHashMap> const map(0xFFFFFFFFU);
  EXPECT_THROW(map->needStorage(), std::bad_array_new_length);
  EXPECT_THROW(map->put(integer(1), integer(1)), std::bad_array_new_length);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_TRUE(map->get(integer(1)).isNil());
  EXPECT_EQ(map->setHashSize(7), 0);
  EXPECT_EQ(map->put(integer(1), integer(1)), 0);
}

// --- clear, freeStorage, finalize ----------------------------------------------------------------

TEST(HashMapClear, RemovesAllEntriesAndKeepsTheBuckets) {
  Held<lvrHashMap> const map(3U);
  for (int i = 0; i < 10; ++i) {
    map->put(integer(i), integer(i));
  }
  auto const* const before = Layout::buckets(*map);
  EXPECT_EQ(map->clear(), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_TRUE(map->get(integer(1)).isNil());
  EXPECT_EQ(Layout::buckets(*map), before);
  EXPECT_EQ(bucketOfOnlyEntry(*map), -1);
}

TEST(HashMapClear, OfAnEmptyMapAnswersZero) {
  Held<lvrHashMap> const map(3U);
  EXPECT_EQ(map->clear(), 0);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
  map->needStorage();
  EXPECT_EQ(map->clear(), 0);
  EXPECT_NE(Layout::buckets(*map), nullptr);
}

TEST(HashMapClear, LeavesAMapThatCanBeFilledAgain) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), integer(10));
  map->clear();
  map->put(integer(1), integer(11));
  EXPECT_EQ(entriesOf(*map), "1=11 ");
}

TEST(HashMapClear, ReleasesTheLastBucketFirstAndEachValueBeforeItsKey) {
  test::startAlternation();
  std::string log;
  Held<lvrHashMap> const map(2U);
  map->put(logging(log, "k0 ", 0), logging(log, "v0 "));
  map->put(logging(log, "k2 ", 2), logging(log, "v2 "));  // To the head.
  map->put(logging(log, "k1 ", 1), logging(log, "v1 "));
  map->clear();
  EXPECT_EQ(log, "v1 k1 v2 k2 v0 k0 ");
}

// A cell with the only reference to an object that throws when it goes.
lvArg throwing() {
  return acting([] { throw 1; });
}

TEST(HashMapClear, EndsTheProcessWhenAnEntryThrows) {
  Held<lvrHashMap> const map(3U);
  EXPECT_EXIT(
      {
        map->put(integer(1), throwing());
        map->clear();
      },
      ::testing::KilledBySignal(SIGABRT), "");
}

TEST(HashMapFinalize, EndsTheProcessWhenAnEntryThrows) {
  EXPECT_EXIT(
      {
        lvHashMap const map(3);
        map->put(throwing(), integer(1));
      },
      ::testing::KilledBySignal(SIGABRT), "");
}

TEST(HashMapFreeStorage, FreesEntriesBucketsAndSpareEntryButKeepsTheirNumber) {
  Held<lvrHashMap> const map(3U);
  lvArg const value = string("value");
  map->put(integer(1), value);
  map->put(integer(2), integer(2));
  map->put(integer(2), lvArg::NilValue);
  EXPECT_EQ(map->freeStorage(), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->hashCode(), EmptyHash);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
  EXPECT_EQ(Layout::spareEntry(*map), nullptr);
  EXPECT_EQ(Layout::hashSize(*map), 3U);
  EXPECT_EQ(countOf(value), 1);
}

TEST(HashMapFreeStorage, LeavesAMapThatCanBeFilledAgain) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), integer(10));
  map->freeStorage();
  EXPECT_EQ(map->put(integer(2), integer(20)), 0);
  EXPECT_EQ(entriesOf(*map), "2=20 ");
}

TEST(HashMapFreeStorage, OfAnUnusedMapAnswersZero) {
  EXPECT_EQ(Held<lvrHashMap>(0U)->freeStorage(), 0);
  EXPECT_EQ(Held<lvrHashMap>(7U)->freeStorage(), 0);
}

TEST(HashMapFreeStorage, GoesThroughAClearOfADerivedClass) {
  Held<OwnClear> const map(0);
  map->put(integer(1), integer(10));
  EXPECT_EQ(map->freeStorage(), 0);
  EXPECT_EQ(map->clears(), 1);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
}

TEST(HashMapFreeStorage, ReleasesWhatAClearOfADerivedClassLeavesBehind) {
  Held<OwnClear> const map(0);
  lvArg const value = string("value");
  map->put(integer(1), value);
  map->freeStorage();
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(map->getSize(), 0);
}

TEST(HashMapFreeStorage, EndsWithTheNegativeAnswerOfAClearOfADerivedClass) {
  Held<OwnClear> const map(-5);
  map->put(integer(1), integer(10));
  EXPECT_EQ(map->freeStorage(), -5);
  EXPECT_EQ(entriesOf(*map), "1=10 ");
  map->agree();
}

TEST(HashMapFinalize, FreesTheStorageAndHandsItsAnswerOn) {
  Held<OwnClear> const refusing(-5);
  refusing->put(integer(1), integer(10));
  EXPECT_EQ(refusing->finalize(), -5);
  EXPECT_EQ(refusing->getSize(), 1);
  refusing->agree();
  Held<OwnClear> const agreeing(3);
  agreeing->put(integer(1), integer(10));
  EXPECT_EQ(agreeing->finalize(), 0);
  EXPECT_EQ(Layout::buckets(*agreeing), nullptr);
}

TEST(HashMapFinalize, DoesNoHarmTheSecondTime) {
  Held<lvrHashMap> const map(3U);
  map->put(integer(1), string("value"));
  EXPECT_EQ(map->finalize(), 0);
  EXPECT_EQ(map->finalize(), 0);
  EXPECT_EQ(map->getSize(), 0);
}

TEST(HashMapFinalize, RunsWhenTheLastReferenceGoes) {
  lvArg const key = string("key");
  lvArg const value = string("value");
  {
    Held<lvrHashMap> const map(3U);
    map->put(key, value);
    EXPECT_EQ(countOf(key), 2);
    EXPECT_EQ(countOf(value), 2);
  }
  EXPECT_EQ(countOf(key), 1);
  EXPECT_EQ(countOf(value), 1);
}

TEST(HashMapFinalize, ReleasesMapsInsideOfMaps) {
  test::Probe::Log log;
  {
    lvHashMap const outer(7);
    lvHashMap const middle(7);
    lvHashMap const inner(7);
    inner->put(integer(1), *new test::Probe(log));
    middle->put(integer(1), inner);
    outer->put(middle, integer(1));
    EXPECT_EQ(countOf(inner), 2);
  }
  EXPECT_EQ(log.finalized, 1);
  EXPECT_EQ(log.destroyed, 1);
}

// --- What runs while entries are released --------------------------------------------------------

TEST(HashMapWhileReleasing, LetsAReplacedValueRemoveTheEntry) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), acting([&map] { map->put(integer(1), lvArg::NilValue); }));
  EXPECT_EQ(map->put(integer(1), integer(2)), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->hashCode(), EmptyHash);
}

TEST(HashMapWhileReleasing, LetsARemovedValueClearTheMap) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), acting([&map] { map->clear(); }));
  map->put(integer(2), string("other"));
  EXPECT_EQ(map->put(integer(1), lvArg::NilValue), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->hashCode(), EmptyHash);
}

TEST(HashMapWhileReleasing, LetsARemovedValueFreeTheStorage) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), acting([&map] { map->freeStorage(); }));
  EXPECT_EQ(map->put(integer(1), lvArg::NilValue), 0);
  EXPECT_EQ(Layout::buckets(*map), nullptr);
  EXPECT_EQ(Layout::spareEntry(*map), nullptr);
}

TEST(HashMapWhileReleasing, LetsARemovedValuePutItsKeyBack) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), acting([&map] { map->put(integer(1), integer(2)); }));
  map->put(integer(1), lvArg::NilValue);
  EXPECT_EQ(entriesOf(*map), "1=2 ");
}

TEST(HashMapWhileReleasing, LetsTheOldContentOfTheOldCellChangeTheMap) {
  Held<lvrHashMap> const map(1U);
  map->put(integer(1), integer(10));
  lvArg old = acting([&map] { map->clear(); });
  EXPECT_EQ(map->put(integer(1), integer(11), &old), 0);
  EXPECT_EQ(old.getInt(), 10);
  EXPECT_EQ(map->getSize(), 0);
}

TEST(HashMapWhileReleasing, ShowsAnEmptyMapToWhatClearReleases) {
  Held<lvrHashMap> const map(1U);
  int size = -1;
  bool found = true;
  map->put(integer(1), integer(1));
  map->put(integer(2), acting([&] {
             size = map->getSize();
             found = !map->get(integer(1)).isNil();
           }));
  map->clear();
  EXPECT_EQ(size, 0);
  EXPECT_FALSE(found);
}

TEST(HashMapWhileReleasing, KeepsWhatIsPutDuringClear) {
  Held<lvrHashMap> const map(3U);
  for (int i = 0; i < 5; ++i) {
    map->put(integer(i), acting([&map, i] { map->put(integer(100 + i), integer(i)); }));
  }
  EXPECT_EQ(map->clear(), 0);
  EXPECT_EQ(map->getSize(), 5);
  EXPECT_EQ(map->get(integer(103)).getInt(), 3);
  unsigned sum = EmptyHash;
  for (int i = 0; i < 5; ++i) {
    sum += HashFactor * hashOf(100 + i);
  }
  EXPECT_EQ(map->hashCode(), sum);
}

TEST(HashMapWhileReleasing, LetsClearChangeTheNumberOfBuckets) {
  Held<lvrHashMap> const map(3U);
  int status = 1;
  map->put(integer(1), acting([&] { status = map->setHashSize(50); }));
  map->put(integer(2), integer(2));
  EXPECT_EQ(map->clear(), 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Layout::hashSize(*map), 50U);
  map->put(keyWithHash(49), integer(1));
  EXPECT_EQ(bucketOfOnlyEntry(*map), 49);
}

TEST(HashMapWhileReleasing, LetsClearRunInsideOfClear) {
  Held<lvrHashMap> const map(1U);
  lvArg const value = string("value");
  map->put(integer(1), acting([&map] { map->clear(); }));
  map->put(integer(2), value);
  map->clear();
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(countOf(value), 1);
}

TEST(HashMapWhileReleasing, ReleasesWhatIsPutIntoAMapThatGoes) {
  lvArg const late = string("late");
  {
    lvArg holder;
    auto& map = *new lvrHashMap(1);
    holder.setReferencable(map);
    map.put(integer(1), acting([&map, &late] { map.put(integer(2), late); }));
  }
  EXPECT_EQ(countOf(late), 1);
}

TEST(HashMapWhileReleasing, ReleasesTheSpareEntryOfAMapThatGoes) {
  lvArg const late = string("late");
  {
    auto& map = *new lvrHashMap(1);
    lvArg const holder(map);
    map.put(integer(1), acting([&map, &late] {
              map.put(integer(2), late);
              map.put(integer(2), lvArg::NilValue);
            }));
  }
  EXPECT_EQ(countOf(late), 1);
}

}  // namespace
