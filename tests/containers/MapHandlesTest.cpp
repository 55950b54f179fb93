#include <gtest/gtest.h>

#include <type_traits>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Objects.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvMapRWIterator.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/reflect/lvrClass.h"

namespace {

using test::bookkeepingOf;
using test::countOf;
using test::Held;
using test::integer;
using test::setBookkeeping;
using test::string;

lvrHashMap& hashMapOf(lvArg const& cell) {
  return dynamic_cast<lvrHashMap&>(*cell.getReferencable());
}

TEST(HashMapHandle, MakesAMapOfTheSizeGiven) {
  lvHashMap const map(13);
  EXPECT_EQ(map.getType(), lvArg::MapType);
  EXPECT_EQ(countOf(map), 1);
  EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(hashMapOf(map)), 13U);
  EXPECT_EQ(map->getSize(), 0);
}

TEST(HashMapHandle, TakesItsSizeAsUnsigned) {
  EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(hashMapOf(lvHashMap(0))), 0U);
  EXPECT_EQ(lvLayoutAccess<lvrHashMap>::hashSize(hashMapOf(lvHashMap(-1))), 0xFFFFFFFFU);
}

TEST(HashMapHandle, SharesTheMapOfACell) {
  lvHashMap const map(7);
  lvArg const cell(map);
  lvHashMap const shared(cell);
  EXPECT_EQ(shared.getMap(), map.getMap());
  EXPECT_EQ(countOf(map), 3);
  shared->put(integer(1), integer(10));
  EXPECT_EQ(map->get(integer(1)).getInt(), 10);
}

TEST(HashMapHandle, DropsItsReferenceWhenItGoes) {
  lvHashMap const map(7);
  { lvHashMap const shared{lvArg(map)}; }
  EXPECT_EQ(countOf(map), 1);
}

TEST(HashMapHandle, OfAnyOtherTagIsNil) {
  for (lvArg const& other :
       {lvArg(), integer(24), test::pointer(24), string("map"), lvArg(*new lvReferencable),
        lvArg(lvVector(3)), lvArg(*lvrClass::defaultCtorMethod())}) {
    lvHashMap const map(other);
    EXPECT_TRUE(map.isNil()) << other.getType();
    EXPECT_EQ(map.getMap(), nullptr);
    EXPECT_EQ(map.operator->(), nullptr);
  }
}

TEST(HashMapHandle, OfAnyOtherTagTakesNoReference) {
  lvVector const vector(3);
  lvHashMap const map(vector);
  EXPECT_EQ(countOf(vector), 1);
}

TEST(HashMapHandle, TakesTheTagForAMapAndOffersNoInterfaceWithoutOne) {
  lvArg cell;
  cell.setReferencableFast(*new lvReferencable, lvArg::MapType);
  lvHashMap const map(cell);
  EXPECT_EQ(map.getType(), lvArg::MapType);
  EXPECT_EQ(countOf(cell), 2);
  EXPECT_EQ(map.getMap(), nullptr);
  EXPECT_EQ(map.operator->(), nullptr);
}

TEST(HashMapHandle, IsNilForAMapUnderAnotherTag) {
  lvArg cell;
  cell.setReferencableFast(*new lvrHashMap(7), lvArg::ObjectType);
  EXPECT_TRUE(lvHashMap(cell).isNil());
}

TEST(HashMapHandle, OfAReleasedCellOffersNoInterface) {
  lvArg cell = lvHashMap(7);
  cell.releaseData();
  lvHashMap const map(cell);
  EXPECT_EQ(map.getMap(), nullptr);
}

TEST(HashMapHandle, LeavesTheBookkeepingOfTheCellBehind) {
  lvArg cell = lvHashMap(7);
  setBookkeeping(cell, 0x20);
  EXPECT_EQ(bookkeepingOf(lvHashMap(static_cast<lvArg const&>(cell))), 0U);
}

TEST(HashMapHandle, AssignedACellOfAnotherTagBecomesNil) {
  lvHashMap map(7);
  lvArg const former(map);
  map = integer(3);
  EXPECT_TRUE(map.isNil());
  EXPECT_EQ(countOf(former), 1);
}

TEST(HashMapHandle, IsACell) {
  lvVector const list(1);
  list->insert(lvHashMap(7), -1);
  EXPECT_EQ(lvHashMap(list->at(0))->getSize(), 0);
  static_assert(std::is_base_of_v<lvArg, lvHashMap>);
}

// --- The cursor handles --------------------------------------------------------------------------

// A map that counts the cursors it gives.
class CursorMap : public lviMap {
 public:
  int getSize() const override { return 0; }
  lvArg get(lvArg const& /*key*/) const override { return lvArg(); }
  int put(lvArg const& /*key*/, lvArg const& /*value*/, lvArg* /*old*/) override { return 0; }
  int clear() override { return 0; }
  lviRealMapEnumerator* getEnumerator() const override {
    ++enumerators_;
    return givesCursors_ ? new Cursor(*this) : nullptr;
  }
  lviRealMapIterator* getIterator() override {
    ++iterators_;
    return nullptr;
  }
  lviRealMapIterator* getRWIterator() override {
    ++iterators_;
    return nullptr;
  }

  void giveNoCursors() { givesCursors_ = false; }
  int enumerators() const { return enumerators_; }
  int iterators() const { return iterators_; }
  int alive() const { return alive_; }

 private:
  class Cursor : public lviRealMapEnumerator {
   public:
    explicit Cursor(CursorMap const& map) : map_(map) { ++map_.alive_; }
    ~Cursor() override { --map_.alive_; }
    bool next() override { return false; }
    lvArg getKey() const override { return integer(11); }
    lvArg getValue() const override { return integer(12); }

   private:
    CursorMap const& map_;
  };

  bool givesCursors_ = true;
  mutable int enumerators_ = 0;
  mutable int alive_ = 0;
  int iterators_ = 0;
};

template <class Handle>
class MapCursorHandle : public ::testing::Test {
 protected:
  CursorMap map;
};

using MapCursorHandles = ::testing::Types<lvMapEnumerator, lvMapIterator, lvMapRWIterator>;
TYPED_TEST_SUITE(MapCursorHandle, MapCursorHandles, );

TYPED_TEST(MapCursorHandle, HoldsOneEnumeratorAndDeletesIt) {
  {
    TypeParam const handle(this->map);
    EXPECT_EQ(this->map.enumerators(), 1);
    EXPECT_EQ(this->map.alive(), 1);
  }
  EXPECT_EQ(this->map.alive(), 0);
}

TYPED_TEST(MapCursorHandle, NeverAsksForAnIterator) {
  { TypeParam const handle(this->map); }
  EXPECT_EQ(this->map.iterators(), 0);
}

TYPED_TEST(MapCursorHandle, ReachesItsCursorByTheArrow) {
  TypeParam const handle(this->map);
  EXPECT_EQ(handle->getKey().getInt(), 11);
  EXPECT_EQ(handle.getCursor()->getValue().getInt(), 12);
  EXPECT_EQ(handle.operator->(), handle.getCursor());
}

TYPED_TEST(MapCursorHandle, TypesItsCursorAsAnEnumerator) {
  EXPECT_TRUE((std::is_same_v<decltype(TypeParam(this->map).getCursor()), lviRealMapEnumerator*>));
}

TYPED_TEST(MapCursorHandle, HoldsNullWhenTheMapGivesNoCursor) {
  this->map.giveNoCursors();
  TypeParam const handle(this->map);
  EXPECT_EQ(handle.getCursor(), nullptr);
}

TYPED_TEST(MapCursorHandle, CannotBeCopied) {
  EXPECT_FALSE(std::is_copy_constructible_v<TypeParam>);
  EXPECT_FALSE(std::is_copy_assignable_v<TypeParam>);
}

TYPED_TEST(MapCursorHandle, WalksAHashMapAndLetsGoOfIt) {
  Held<lvrHashMap> const hashMap(3U);
  for (int i = 0; i < 10; ++i) {
    hashMap->put(integer(i), integer(i));
  }
  {
    TypeParam const handle(*hashMap);
    EXPECT_EQ(countOf(*hashMap), 2);
    EXPECT_EQ(test::restOf(*handle.getCursor()), test::entriesOf(*hashMap));
  }
  EXPECT_EQ(countOf(*hashMap), 1);
}

TEST(MapCursorHandles, DeriveFromEachOther) {
  EXPECT_TRUE((std::is_base_of_v<lvMapEnumerator, lvMapIterator>));
  EXPECT_TRUE((std::is_base_of_v<lvMapIterator, lvMapRWIterator>));
  EXPECT_TRUE((std::is_base_of_v<lviRealMapEnumerator, lviRealMapIterator>));
}

}  // namespace
