// Searching by the direct ways of comparing a key, beside the same search by lvArg::compareTo().

#include "tarselvalues/containers/SearchedKey.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>
#include <vector>

#include "support/ActingItems.h"
#include "support/Cells.h"
#include "support/UnusualObjects.h"
#include "support/walks/Choices.h"
#include "tarselvalues/containers/CellBlock.h"

namespace {

using tarselvalues::Probe;
using tarselvalues::SearchedKey;
using test::ActingText;
using test::countOf;
using test::Held;
using test::integer;
using test::pointer;
using test::string;
using Cells = std::vector<lvArg>;

int signOf(int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

// A cell with the tag of strings, and with an object that need not be one.
lvArg taggedAsString(lvReferencable const& object) {
  lvArg cell;
  cell.setReferencableFast(object, lvArg::StringType);
  return cell;
}

lvArg borrowed(char const* text) {
  auto& made = *new lvrString;
  lvArg cell(made);
  made.setStringData(text, -1, lvrString::Borrow);
  return cell;
}

lvArg withoutObject(lvArg cell) {
  cell.releaseData();
  return cell;
}

Cells unlikeCells() {
  static char const shared[] = "shared";
  Cells cells;
  for (int const number : {0, 1, -1, 5, 19, 1000, INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1}) {
    cells.push_back(integer(number));
  }
  for (char const* const text : {"", "a", "b", "ab", "42", "\xC3\xA4", "a longer text, and more"}) {
    cells.push_back(string(text));
    cells.push_back(string(text));
    cells.push_back(lvString(text));
    cells.emplace_back(*new ActingText(text));
  }
  cells.insert(cells.end(),
               {lvArg(), pointer(8), pointer(UINTPTR_MAX), borrowed(shared), borrowed(shared),
                string(std::string("a\0b", 3)), lvArg(*lvrString::defaultCtorMethod()),
                withoutObject(string("x")), test::newListLike(), test::newPlainObject()});
  lvArg const object = test::newPlainObject();
  cells.push_back(taggedAsString(*object.getReferencable()));
  cells.push_back(object);
  return cells;
}

Probe searchDirectly(Cells const& cells, lvArg const& key, lvReferencable const& container) {
  auto const inUse = static_cast<std::int32_t>(cells.size());
  return tarselvalues::bisect(
      SearchedKey(key, container), 0, inUse, inUse,
      [&cells](int i) -> lvArg const& { return cells[static_cast<std::size_t>(i)]; });
}

Probe searchPlainly(Cells const& cells, lvArg const& key) {
  auto const inUse = static_cast<std::int32_t>(cells.size());
  return tarselvalues::bisectBy(
      [&key](lvArg const& cell) { return key.compareTo(cell); }, 0, inUse, inUse,
      [&cells](int i) -> lvArg const& { return cells[static_cast<std::size_t>(i)]; });
}

class SearchedKeyTest : public ::testing::Test {
 protected:
  void expectTheSame(Cells const& cells, lvArg const& key) {
    Probe const direct = searchDirectly(cells, key, *container);
    Probe const plain = searchPlainly(cells, key);
    ASSERT_EQ(direct.position, plain.position);
    ASSERT_EQ(direct.found, plain.found);
    ASSERT_EQ(signOf(direct.order), signOf(plain.order));
  }

  Held<lvReferencable> container;
};

TEST_F(SearchedKeyTest, IsComparedWithEachCellAsCellsAre) {
  Cells const cells = unlikeCells();
  for (std::size_t i = 0; i < cells.size(); ++i) {
    for (std::size_t k = 0; k < cells.size(); ++k) {
      SCOPED_TRACE("cells " + std::to_string(i) + " and " + std::to_string(k));
      ASSERT_NO_FATAL_FAILURE(expectTheSame({cells[k]}, cells[i]));
    }
  }
}

TEST_F(SearchedKeyTest, IsComparedWithItself) {
  for (lvArg const& cell : unlikeCells()) {
    EXPECT_TRUE(searchDirectly({cell}, cell, *container).found) << "tag " << cell.getType();
  }
}

// In order or not: a search ends where it ends.
TEST_F(SearchedKeyTest, IsSoughtByTheSameStepsInAnyCells) {
  Cells const all = unlikeCells();
  test::SeededChoices choices(20261);
  for (int round = 0; round < 2000; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    Cells cells;
    for (int i = choices.below(20); i > 0; --i) {
      cells.push_back(all[choices.below(all.size())]);
    }
    ASSERT_NO_FATAL_FAILURE(expectTheSame(cells, all[choices.below(all.size())]));
  }
}

TEST_F(SearchedKeyTest, IsSoughtByTheSameStepsAmongSortedIntegers) {
  Cells cells;
  for (int size = 0; size < 70; ++size) {
    for (int number = -1; number <= 2 * size + 1; ++number) {
      SCOPED_TRACE(std::to_string(number) + " among " + std::to_string(size));
      ASSERT_NO_FATAL_FAILURE(expectTheSame(cells, integer(number)));
    }
    cells.push_back(integer(2 * (size / 3)));  // Each three times.
  }
}

TEST_F(SearchedKeyTest, KeepsTheContainerOnlyIfAFunctionOfTheProgramMayRun) {
  lvArg const foreign(*new ActingText("foreign"));
  lvArg const own = string("own");
  EXPECT_EQ(countOf(*container), 1);
  {
    SearchedKey const number(integer(1), *container);
    SearchedKey const text(own, *container);
    EXPECT_EQ(countOf(*container), 1);
    SearchedKey const other(foreign, *container);
    EXPECT_EQ(countOf(*container), 2);
  }
  EXPECT_EQ(countOf(*container), 1);
}

TEST_F(SearchedKeyTest, ComparesAForeignStringByItsOwnFunction) {
  auto& foreign = *new ActingText("m");
  lvArg const key(foreign);
  int compared = 0;
  foreign.onCompare = [&compared] { ++compared; };
  Cells const cells = {string("a"), string("k"), string("m"), string("z")};
  EXPECT_TRUE(searchDirectly(cells, key, *container).found);
  EXPECT_EQ(compared, 1);
  EXPECT_FALSE(searchDirectly({string("a"), string("b")}, key, *container).found);
  EXPECT_EQ(compared, 2);
}

}  // namespace
