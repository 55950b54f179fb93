// What runs while a cell lets its old content go.

#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvValue.h"

namespace {

using test::countOf;
using test::integer;
using test::string;
using test::textOf;

// An object with a cell of its own.
class Holder : public lvReferencable {
 public:
  explicit Holder(lvArg const& content) : inner(content) {}

  lvArg inner;
};

// A cell with the only reference to a holder of `content`.
lvArg holderOf(lvArg const& content) { return lvArg(*new Holder(content)); }

lvArg& innerOf(lvArg const& cell) { return static_cast<Holder*>(cell.getReferencable())->inner; }

TEST(ArgReplace, FromACellInsideItsOnlyObjectTakesWhatThatHeld) {
  lvArg cell = holderOf(integer(11));
  cell.assign(innerOf(cell));
  EXPECT_EQ(cell.getInt(), 11);
}

TEST(ArgReplace, FromACellInsideItsOnlyObjectKeepsTheInnerObjectAlive) {
  lvArg cell = holderOf(string("inner"));
  cell = innerOf(cell);
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
}

TEST(ArgReplace, ByAMoveFromACellInsideItsOnlyObjectKeepsTheInnerObjectAlive) {
  lvArg cell = holderOf(string("inner"));
  cell = std::move(innerOf(cell));
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
}

TEST(ArgReplace, ByAnObjectThatOnlyTheOldOneHoldsKeepsItAlive) {
  lvArg cell = holderOf(string("inner"));
  cell.setReferencable(*innerOf(cell).getReferencable());
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
}

TEST(ArgReplace, WalksDownAChainWhoseHeadItHolds) {
  lvArg cell = integer(0);
  for (int i = 0; i < 100; ++i) {
    cell = holderOf(cell);
  }
  int steps = 0;
  for (; cell.getReferencable() != nullptr; ++steps) {
    cell = innerOf(cell);
  }
  EXPECT_EQ(steps, 100);
  EXPECT_EQ(cell.getInt(), 0);
}

TEST(ValueReplace, ByATextInsideTheOldStringCopiesItFirst) {
  lvValue cell(string("a longer text"));
  cell.setString(cell.getString(nullptr) + 2, 6, lvrString::CopyAndOwn);
  EXPECT_EQ(textOf(cell), "longer");
  EXPECT_EQ(countOf(cell), 1);
}

TEST(ValueReplace, ByAStringThatOnlyTheOldObjectHoldsKeepsItAlive) {
  lvValue cell(holderOf(string("inner")));
  auto const& inner = static_cast<lvrString const&>(*innerOf(cell).getReferencable());
  cell.setString(inner);
  EXPECT_EQ(textOf(cell), "inner");
  EXPECT_EQ(countOf(cell), 1);
}

// Looks at a cell while it is finalized.
class Onlooker : public lvReferencable {
 public:
  explicit Onlooker(std::function<void()> act) : look(std::move(act)) {}
  int finalize() override {
    look();
    return 0;
  }

 private:
  std::function<void()> look;
};

// A cell that holds an onlooker, and what that saw in the cell when it was let go.
class ArgLetGo : public ::testing::Test {
 protected:
  ArgLetGo() {
    cell.setReferencableFast(*new Onlooker([this] {
      ++looks;
      seen = cell.getReferencable();
      countSeen = seen != nullptr ? countOf(*seen) : 0;
    }));
    onlooker = cell.getReferencable();
  }

  void expectOneLookPastTheOldObject() const {
    EXPECT_EQ(looks, 1);
    EXPECT_NE(seen, onlooker);
  }

  lvArg cell;
  lvReferencable const* onlooker = nullptr;
  int looks = 0;
  lvReferencable const* seen = nullptr;
  int countSeen = 0;
};

TEST_F(ArgLetGo, ByReleaseDataShowsNoObject) {
  cell.releaseData();
  EXPECT_EQ(looks, 1);
  EXPECT_EQ(seen, nullptr);
}

TEST_F(ArgLetGo, BySettersOfImmediatesShowsNoObject) {
  lvArg const original(cell);
  for (auto const& set : {std::function<void()>([this] { cell.setInt(1); }),
                          std::function<void()>([this] { cell.setPointer(this); }),
                          std::function<void()>([this] { cell.setNil(); })}) {
    looks = 0;
    seen = onlooker;
    cell.setReferencable(*new Onlooker([this] {
      ++looks;
      seen = cell.getReferencable();
    }));
    set();
    EXPECT_EQ(looks, 1);
    EXPECT_EQ(seen, nullptr);
  }
}

TEST_F(ArgLetGo, ByAssignDoesNotShowTheOldObject) {
  lvArg const source = string("new");
  cell.assign(source);
  expectOneLookPastTheOldObject();
  EXPECT_EQ(countOf(source), 2);
}

TEST_F(ArgLetGo, BySetReferencableDoesNotShowTheOldObject) {
  lvArg const source = string("new");
  cell.setReferencable(*source.getReferencable());
  expectOneLookPastTheOldObject();
  EXPECT_EQ(countOf(source), 2);
}

TEST_F(ArgLetGo, ByAMoveShowsACountedObjectOrNone) {
  cell = string("new");
  expectOneLookPastTheOldObject();
  EXPECT_EQ(countSeen, seen != nullptr ? 1 : 0);
  EXPECT_EQ(countOf(cell), 1);
}

TEST(ArgLetGoByItsOwnFinalize, ReleasesOnce) {
  int looks = 0;
  lvArg cell;
  cell.setReferencableFast(*new Onlooker([&] {
    ++looks;
    cell.releaseData();
  }));
  cell.setNil();
  EXPECT_EQ(looks, 1);
  EXPECT_TRUE(cell.isNil());
}

// A finalize() that drops the source of the assignment under way.
TEST(ArgReplace, OutlivesAFinalizeThatEmptiesTheSource) {
  lvArg source = string("new");
  lvArg cell;
  cell.setReferencableFast(*new Onlooker([&source] { source.setNil(); }));
  cell.assign(source);
  EXPECT_EQ(textOf(cell), "new");
  EXPECT_EQ(countOf(cell), 1);
}

}  // namespace
