// Cells as keys of standard containers.

#include <gtest/gtest.h>

#include <climits>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

#include "support/Cells.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/core/lvHashing.h"

namespace {

using test::integer;
using test::string;

TEST(Hashing, FindsStringsByTheirText) {
  std::unordered_map<lvArg, int, lvHasher, lvEquivalent> numbers;
  numbers[lvString("one")] = 1;
  numbers[string("two")] = 2;
  EXPECT_EQ(numbers.at(string("one")), 1);
  EXPECT_EQ(numbers.at(lvString("two")), 2);
  EXPECT_EQ(numbers.count(string("three")), 0U);
}

TEST(Hashing, TellsIntegersFromTheirTexts) {
  std::unordered_set<lvArg, lvHasher, lvEquivalent> const set{integer(42), string("42"), lvArg(),
                                                              integer(42)};
  EXPECT_EQ(set.size(), 3U);
}

TEST(Hashing, TellsObjectsApartByTheirIdentity) {
  lvArg const one(*new lvReferencable);
  lvArg const other(*new lvReferencable);
  std::unordered_set<lvArg, lvHasher, lvEquivalent> const set{one, other, one};
  EXPECT_EQ(set.size(), 2U);
}

TEST(Hashing, DoesNotFindAContainerThatHasChanged) {
  lvVector vector(1);
  lvHashMap map(1);
  std::unordered_set<lvArg, lvHasher, lvEquivalent> const set{vector, map};
  EXPECT_EQ(set.count(vector) + set.count(map), 2U);
  vector->insert(integer(1), -1);
  map->put(integer(1), integer(2));
  EXPECT_EQ(set.count(vector) + set.count(map), 0U);
}

TEST(Hashing, OrdersAsTheLibraryDoes) {
  std::set<lvArg, lvOrdered> const set{string("b"), integer(2), lvArg(), integer(-1), string("a")};
  std::string order;
  for (lvArg const& cell : set) {
    order += cell.isNil()                       ? "nil "
             : cell.getType() == lvArg::IntType ? std::to_string(cell.getInt()) + " "
                                                : test::textOf(cell) + " ";
  }
  EXPECT_EQ(order, "nil -1 2 a b ");
}

TEST(Hashing, OrdersIntegersThatAreTooFarApartTheWrongWayRound) {
  EXPECT_TRUE(lvOrdered()(integer(-1), integer(INT_MAX - 1)));
  EXPECT_FALSE(lvOrdered()(integer(-2), integer(INT_MAX)));
}

}  // namespace
