// What keys and values may do to the map that compares, hashes or releases them.

#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <string>

#include "support/ActingItems.h"
#include "support/Pairs.h"
#include "support/SortedLists.h"

namespace {

using test::acting;
using test::ActingRank;
using test::ActingText;
using test::addEach;
using test::countOf;
using test::entriesOf;
using test::EqualKeysSet;
using test::Held;
using test::integer;
using test::keysOf;
using test::OnlyHeld;
using test::Probe;
using test::putEach;
using test::ranked;
using test::SortedArray;
using test::startAlternation;
using test::string;
using test::WithDuplicates;

using MapLayout = lvLayoutAccess<lvrHashMap>;

constexpr int Endless = 1000;

// --- The hash map --------------------------------------------------------------------------------

// A map of one chain with three keys, of which the first one compared acts.
class HashMapWhileComparing : public ::testing::Test {
 protected:
  HashMapWhileComparing() : map(1U), acts(*new ActingText("acts")), key(acts) {
    startAlternation();
    map->put(string("behind"), integer(2));
    map->put(key, integer(1));
    map->put(string("last"), integer(3));
  }

  // What the map's hash is when it has these keys.
  static unsigned hashWith(std::initializer_list<char const*> keys) {
    Held<lvrHashMap> const same(1U);
    for (char const* const text : keys) {
      same->put(string(text), integer(1));
    }
    return same->hashCode();
  }

  Held<lvrHashMap> map;
  ActingText& acts;
  lvArg key;
};

TEST_F(HashMapWhileComparing, KeepsAKeyThatRemovesItselfUntilItIsCompared) {
  acts.onHash = [this] { map->clear(); };
  key.setNil();
  EXPECT_TRUE(map->get(string("acts")).isNil());
  EXPECT_EQ(map->getSize(), 0);
}

TEST_F(HashMapWhileComparing, KeepsAKeyThatTheSearchedOneRemoves) {
  Held<ActingText> const searched("behind");
  searched->onHash = [this] { map->clear(); };
  EXPECT_TRUE(map->get(lvArg(*searched)).isNil());
  EXPECT_EQ(map->getSize(), 0);
}

TEST_F(HashMapWhileComparing, FindsNothingInAMapThatIsCleared) {
  acts.onEquiv = [this] { map->clear(); };
  EXPECT_TRUE(map->get(string("last")).isNil());
  EXPECT_EQ(map->getSize(), 0);
}

TEST_F(HashMapWhileComparing, FindsNothingInAMapThatIsFinalized) {
  acts.onEquiv = [this] { map->finalize(); };
  EXPECT_TRUE(map->get(string("last")).isNil());
  EXPECT_EQ(MapLayout::buckets(*map), nullptr);
}

TEST_F(HashMapWhileComparing, GoesOnWhenAnotherEntryGoes) {
  acts.onEquiv = [this] { map->put(string("behind"), lvArg()); };
  EXPECT_EQ(map->get(string("last")).getInt(), 3);
  EXPECT_EQ(map->getSize(), 2);
}

TEST_F(HashMapWhileComparing, PutsIntoTheNewBucketsOfAMapThatIsFilledAnew) {
  acts.onEquiv = [this] {
    map->clear();
    map->setHashSize(11);
    map->put(string("new"), integer(5));
  };
  EXPECT_EQ(map->put(string("late"), integer(6)), 0);
  EXPECT_EQ(map->getSize(), 2);
  EXPECT_EQ(map->get(string("new")).getInt(), 5);
  EXPECT_EQ(map->get(string("late")).getInt(), 6);
}

TEST_F(HashMapWhileComparing, PutsIntoAMapWhoseStorageIsFreed) {
  acts.onEquiv = [this] { map->freeStorage(); };
  EXPECT_EQ(map->put(string("late"), integer(6)), 0);
  EXPECT_EQ(entriesOf(*map), "'late'=6 ");
}

TEST_F(HashMapWhileComparing, RemovesNothingFromAMapThatIsCleared) {
  acts.onEquiv = [this] { map->clear(); };
  lvArg old = integer(77);
  EXPECT_EQ(map->put(string("acts"), lvArg(), &old), 0);
  EXPECT_EQ(map->getSize(), 0);
  EXPECT_EQ(map->hashCode(), hashWith({}));
  EXPECT_EQ(old.getInt(), 77);
}

TEST_F(HashMapWhileComparing, DoesNotTakeAnEntryUsedAnewForTheOneCompared) {
  map->clear();
  map->put(key, integer(1));
  acts.onEquiv = [this] {
    map->put(key, lvArg());
    map->put(string("other"), integer(7));  // In the retired entry of the key.
  };
  EXPECT_TRUE(map->get(string("acts")).isNil());
  EXPECT_EQ(entriesOf(*map), "'other'=7 ");
}

TEST_F(HashMapWhileComparing, RemovesNoEntryUsedAnew) {
  map->clear();
  map->put(key, integer(1));
  acts.onEquiv = [this] {
    map->put(key, lvArg());
    map->put(string("other"), integer(7));
  };
  EXPECT_EQ(map->put(string("acts"), lvArg()), 0);
  EXPECT_EQ(entriesOf(*map), "'other'=7 ");
  EXPECT_EQ(map->hashCode(), hashWith({"other"}));
}

TEST_F(HashMapWhileComparing, EndsThoughEachComparisonAddsEntries) {
  int added = 0;
  acts.onEquiv = [this, &added] {
    for (int i = 0; i < 2 && added < Endless; ++i) {  // One to the head and one to the tail.
      Held<ActingText> const more("more " + std::to_string(++added));
      more->onEquiv = acts.onEquiv;
      map->put(lvArg(*more), integer(added));
    }
  };
  EXPECT_TRUE(map->get(string("absent")).isNil());
  EXPECT_LT(added, 10);
  EXPECT_EQ(map->getSize(), 3 + added);
}

// Has a key go to the head of its chain whenever it is compared.
void moveToHeadWhenCompared(lvrHashMap& map, ActingText& key, int& moves) {
  key.onEquiv = [&map, &key, &moves] {
    if (++moves < Endless) {
      lvArg const held(key);
      map.put(held, lvArg());
      startAlternation();
      Held<lvrHashMap>(1U)->put(integer(1), integer(1));
      map.put(held, integer(moves));
    }
  };
}

TEST_F(HashMapWhileComparing, EndsThoughEachComparisonMovesItsEntry) {
  int moves = 0;
  Held<ActingText> const other("moves too");
  map->put(lvArg(*other), integer(4));
  moveToHeadWhenCompared(*map, acts, moves);
  moveToHeadWhenCompared(*map, *other, moves);
  EXPECT_TRUE(map->get(string("absent")).isNil());
  EXPECT_LT(moves, 10);
  EXPECT_EQ(map->getSize(), 4);
}

TEST_F(HashMapWhileComparing, LetsTheHashOfAKeyChangeTheMap) {
  Held<ActingText> const searched("last");
  searched->onHash = [this] { map->clear(); };
  EXPECT_TRUE(map->get(lvArg(*searched)).isNil());
  searched->onHash = [this] { map->freeStorage(); };
  EXPECT_EQ(map->put(lvArg(*searched), integer(1)), 0);
  EXPECT_EQ(map->getSize(), 1);
}

TEST_F(HashMapWhileComparing, ShowsCursorsOnlyWhatIsLeft) {
  std::unique_ptr<lviRealMapEnumerator> const cursor(map->getEnumerator());
  cursor->next();
  acts.onEquiv = [this, &cursor] {
    map->clear();
    cursor->next();
    map->put(string("new"), integer(5));
  };
  map->get(string("last"));
  EXPECT_TRUE(cursor->getKey().isNil());
  EXPECT_FALSE(cursor->next());
  EXPECT_EQ(entriesOf(*map), "'new'=5 ");
}

TEST(HashMapThatItsOwnValueLetsGo, MayGoInClear) {
  OnlyHeld<lvrHashMap> map(3U);
  lvArg const other = string("other");
  map->put(integer(1), other);
  map->put(integer(2), map.letsGo());
  EXPECT_EQ(map->clear(), 0);
  EXPECT_TRUE(map.isGone());
  EXPECT_EQ(countOf(other), 1);
}

TEST(HashMapThatItsOwnValueLetsGo, LivesUntilItsStorageIsFreed) {
  OnlyHeld<lvrHashMap> map(3U);
  map->put(integer(1), map.letsGoTooEarly());
  EXPECT_EQ(map->freeStorage(), 0);
  EXPECT_TRUE(map.isGone());
}

TEST(HashMapThatItsOwnValueLetsGo, MayGoWhenTheValueIsRemovedOrReplaced) {
  OnlyHeld<lvrHashMap> removing(3U);
  removing->put(integer(1), removing.letsGo());
  EXPECT_EQ(removing->put(integer(1), lvArg()), 0);
  EXPECT_TRUE(removing.isGone());
  OnlyHeld<lvrHashMap> replacing(3U);
  replacing->put(integer(1), replacing.letsGo());
  EXPECT_EQ(replacing->put(integer(1), integer(2)), 0);
  EXPECT_TRUE(replacing.isGone());
}

// A map whose clear() puts something in again.
class RefillingMap : public lvrHashMap {
 public:
  explicit RefillingMap(lvArg const& value) : lvrHashMap(3), value_(value) {}
  int clear() override {
    lvrHashMap::clear();
    put(integer(1), value_);
    return 0;
  }

 private:
  lvArg value_;
};

TEST(HashMapFinalize, ReleasesWhatADerivedClearPutsIn) {
  lvArg const value = string("value");
  {
    Held<RefillingMap> const map(value);
    map->put(integer(2), integer(2));
  }
  EXPECT_EQ(countOf(value), 1);
}

// --- The tuple set -------------------------------------------------------------------------------

// A set of the ranks 1, 3 and 5. The searched key acts.
class TupleSetWhileComparing : public ::testing::Test {
 protected:
  TupleSetWhileComparing() : set(3, 1U, 0U) {
    for (int const rank : {1, 3, 5}) {
      set->put(ranked(rank), integer(10 * rank));
    }
  }

  ActingRank& searched(int rank) {
    auto& item = *new ActingRank(rank);
    key = lvArg(item);
    return item;
  }
  std::string ranks() const {
    std::string text;
    for (int i = 0; i < set->getSize(); ++i) {
      text += std::to_string(test::rankOf(set->getKey(i))) + " ";
    }
    return text;
  }

  Held<lvrTupleSet> set;
  lvArg key;
};

TEST_F(TupleSetWhileComparing, FindsNothingInASetThatIsCleared) {
  searched(3).onCompare = [this] { set->clear(); };
  EXPECT_TRUE(set->get(key).isNil());
  EXPECT_EQ(set->getSize(), 0);
}

TEST_F(TupleSetWhileComparing, FindsNothingInASetThatIsFinalized) {
  for (int const rank : {0, 3, 5, 9}) {
    searched(rank).onCompare = [this] { set->finalize(); };
    EXPECT_TRUE(set->get(key).isNil());
    set->put(ranked(rank), integer(1));
  }
}

TEST_F(TupleSetWhileComparing, PutsIntoASetThatIsEmptied) {
  for (int const rank : {0, 3, 9}) {
    searched(rank).onCompare = [this] { set->finalize(); };
    EXPECT_EQ(set->put(key, integer(1)), 0);
    EXPECT_EQ(ranks(), std::to_string(rank) + " ");
  }
}

TEST_F(TupleSetWhileComparing, PutsIntoASetThatGrows) {
  int next = 100;
  searched(4).onCompare = [this, &next] {
    for (int i = 0; i < 40; ++i) {
      set->put(ranked(next++), integer(1));
    }
  };
  EXPECT_EQ(set->put(key, integer(44)), 0);
  EXPECT_EQ(set->getSize(), next - 100 + 4);
  EXPECT_EQ(ranks().substr(0, 8), "1 3 4 5 ");
}

TEST_F(TupleSetWhileComparing, PutsIntoASetThatLosesThePairBesideThePlace) {
  int comparisons = 0;
  searched(9).onCompare = [this, &comparisons] {
    if (++comparisons == 3) {  // After the search.
      set->removeEntry(2);
      set->removeEntry(1);
    }
  };
  EXPECT_EQ(set->put(key, integer(90)), 0);
  EXPECT_EQ(ranks(), "1 9 ");
}

TEST_F(TupleSetWhileComparing, TakesASetThatIsClearedForAnyEmptyOne) {
  searched(3).onCompare = [this] { set->clear(); };
  lvArg old = integer(77);
  EXPECT_EQ(set->put(key, lvArg(), &old), 0);
  EXPECT_EQ(ranks(), "3 ");  // With nil, as nil is put into an empty set.
  EXPECT_TRUE(set->getValue(0).isNil());
  EXPECT_EQ(old.getInt(), 77);
}

TEST_F(TupleSetWhileComparing, EndsThoughEachComparisonAddsAPair) {
  int added = 0;
  searched(1000000).onCompare = [this, &added] {
    if (added < Endless) {
      set->put(ranked(100 + added++), integer(1));
    }
  };
  EXPECT_TRUE(set->get(key).isNil());
  EXPECT_LT(added, 10);
}

TEST_F(TupleSetWhileComparing, KeepsAListThatIsTakenOutWhileItIsCompared) {
  // Comparing the lists compares their elements, of which one empties the set.
  Held<lvrTupleSet> const lists(1, 1U, 0U);
  SortedArray const wanted(WithDuplicates, {1, 2});
  lvArg const acts = ranked(1);
  addEach(*wanted, {acts, string("x")});
  {
    SortedArray const same(WithDuplicates, {1, 2});
    lists->put(addEach(*same, {ranked(1), string("x")}), integer(1));
  }
  static_cast<ActingRank&>(*acts.getReferencable()).onCompare = [&lists] { lists->clear(); };
  EXPECT_TRUE(lists->get(lvArg(*wanted)).isNil());
  EXPECT_EQ(lists->getSize(), 0);
}

TEST(TupleSetThatItsOwnValueLetsGo, LivesUntilClearIsOver) {
  OnlyHeld<lvrTupleSet> set(3, 1U, 0U);
  lvArg const other = string("other");
  set->put(integer(1), set.letsGoTooEarly());
  set->put(integer(2), other);
  EXPECT_EQ(set->clear(), 0);
  EXPECT_TRUE(set.isGone());
  EXPECT_EQ(countOf(other), 1);
}

TEST(TupleSetThatItsOwnValueLetsGo, MayGoWhenTheValueIsRemovedOrReplaced) {
  OnlyHeld<lvrTupleSet> removing(3, 1U, 0U);
  removing->put(integer(1), removing.letsGo());
  removing->removeEntry(0);
  EXPECT_TRUE(removing.isGone());
  OnlyHeld<lvrTupleSet> replacing(3, 1U, 0U);
  replacing->put(integer(1), replacing.letsGo());
  EXPECT_EQ(replacing->setValue(0, integer(2), nullptr), 1);
  EXPECT_TRUE(replacing.isGone());
}

TEST(TupleSetFinalize, ReleasesWhatIsPutInByPairsThatHadLeft) {
  // Each pair that left the set with an equal key puts in the next two when it goes.
  Probe::Log log;
  {
    EqualKeysSet const set;
    lvrTupleSet* const bare = &*set;
    auto const third = [bare, &log] { bare->put(integer(3), *new Probe(log)); };
    auto const second = [bare, third] {
      bare->put(integer(2), acting(third));
      bare->put(integer(2), integer(0));
    };
    set->put(integer(1), acting(second));
    set->put(integer(1), integer(0));
  }
  EXPECT_EQ(log.destroyed, 1);
}

// A set whose clear() puts something in again.
class RefillingSet : public lvrTupleSet {
 public:
  explicit RefillingSet(lvArg const& value) : lvrTupleSet(3, 1, 0), value_(value) {}
  int clear() override {
    lvrTupleSet::clear();
    return put(integer(1), value_);
  }

 private:
  lvArg value_;
};

TEST(TupleSetFinalize, ReleasesWhatADerivedClearPutsIn) {
  lvArg const value = string("value");
  {
    Held<RefillingSet> const set(value);
    set->put(integer(2), integer(2));
  }
  EXPECT_EQ(countOf(value), 1);
}

// A set and a cursor that stands on its first pair, whose value acts when it goes.
class TupleSetIteratorWhileRemoving : public ::testing::Test {
 protected:
  TupleSetIteratorWhileRemoving() : set(3, 1U, 0U) {}

  void standOn(lvArg const& value) {
    set->put(integer(1), value);
    putEach(*set, {2, 3});
    cursor.reset(set->getIterator());
    cursor->next();
  }

  Held<lvrTupleSet> set;
  std::unique_ptr<lviRealMapIterator> cursor;
};

TEST_F(TupleSetIteratorWhileRemoving, MayGo) {
  standOn(acting([this] { cursor.reset(); }));
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_EQ(keysOf(*set), "2 3 ");
}

TEST_F(TupleSetIteratorWhileRemoving, MayGoInSetValue) {
  standOn(acting([this] { cursor.reset(); }));
  EXPECT_EQ(cursor->setValue(integer(5), nullptr), 0);
  EXPECT_EQ(entriesOf(*set), "1=5 2=20 3=30 ");
  set->clear();
  standOn(acting([this] { cursor.reset(); }));
  EXPECT_EQ(cursor->setValue(lvArg(), nullptr), 0);
  EXPECT_EQ(keysOf(*set), "2 3 ");
}

TEST_F(TupleSetIteratorWhileRemoving, StandsOnNothingWhenTheSetIsEmptied) {
  standOn(acting([this] { set->finalize(); }));
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_TRUE(cursor->getKey().isNil());
  EXPECT_FALSE(cursor->next());
}

TEST_F(TupleSetIteratorWhileRemoving, SurvivesThatItIsUsedAgain) {
  standOn(acting([this] {
    cursor->remove();
    cursor->next();
    cursor->setValue(integer(4), nullptr);
  }));
  EXPECT_EQ(cursor->remove(), 0);
  EXPECT_LE(set->getSize(), 2);
}

}  // namespace
