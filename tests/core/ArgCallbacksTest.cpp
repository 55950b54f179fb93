// What objects may do to the very cells by which they are compared or hashed.

#include <gtest/gtest.h>

#include <cstddef>
#include <new>
#include <string>

#include "support/ActingItems.h"

namespace {

using test::Act;
using test::ActingText;
using test::countOf;
using test::string;
using test::textOf;

// An object that runs an action in the middle of each operation and looks at itself afterwards.
class Lasting : public lvReferencable {
 public:
  explicit Lasting(bool& gone) : gone_(gone) {}
  ~Lasting() override { gone_ = true; }

  int compareTo(lvReferencable const& other) const override {
    act();
    return this == &other ? 0 : answer_;
  }
  unsigned int hashCode() const override {
    act();
    return static_cast<unsigned>(answer_);
  }

  Act act;

 private:
  int const answer_ = 42;
  bool& gone_;
};

// Two cells with the only references to two objects, of which the first one acts.
class ArgWhileComparing : public ::testing::Test {
 protected:
  ArgWhileComparing()
      : acts(*new Lasting(actingIsGone)), first(acts), second(*new Lasting(otherIsGone)) {}

  bool actingIsGone = false;
  bool otherIsGone = false;
  Lasting& acts;
  lvArg first;
  lvArg second;
};

TEST_F(ArgWhileComparing, KeepsBothObjectsThoughTheirCellsAreEmptied) {
  bool wereThere = false;
  acts.act = [&] {
    first.setNil();
    second.setInt(7);
    wereThere = !actingIsGone && !otherIsGone;
  };
  EXPECT_EQ(first.compareTo(second), 42);
  EXPECT_TRUE(wereThere);
  EXPECT_TRUE(actingIsGone);
  EXPECT_TRUE(otherIsGone);
}

TEST_F(ArgWhileComparing, KeepsAnObjectWhoseCellIsEmptiedWhileItIsHashed) {
  bool wasThere = false;
  acts.act = [&] {
    first.setNil();
    wasThere = !actingIsGone;
  };
  EXPECT_EQ(first.hashCode(), 42U);
  EXPECT_TRUE(wasThere);
  EXPECT_TRUE(actingIsGone);
}

TEST_F(ArgWhileComparing, LeavesTheCountsAsTheyWere) {
  first.compareTo(second);
  first.equiv(second);
  first.hashCode();
  EXPECT_EQ(countOf(first), 1);
  EXPECT_EQ(countOf(second), 1);
}

TEST_F(ArgWhileComparing, LeavesTheCountsAsTheyWereWhenAnObjectThrows) {
  acts.act = [] { throw std::bad_alloc(); };
  EXPECT_THROW(first.compareTo(second), std::bad_alloc);
  EXPECT_THROW(first.hashCode(), std::bad_alloc);
  EXPECT_EQ(countOf(first), 1);
  EXPECT_EQ(countOf(second), 1);
}

// A cell with the only reference to a string that empties it when the string is hashed.
class StringWhileHashing : public ::testing::Test {
 protected:
  StringWhileHashing() {
    auto& acts = *new ActingText("a text of its own");
    cell = lvArg(acts);
    acts.onHash = [this] { cell.setNil(); };
  }

  lvArg cell;
};

TEST_F(StringWhileHashing, LastsUntilItIsCompared) {
  EXPECT_EQ(cell.equiv(string("a text of its own")), 1);
  EXPECT_TRUE(cell.isNil());
}

TEST_F(StringWhileHashing, LastsUntilItIsComparedAsTheOtherOne) {
  EXPECT_EQ(string("a text of its own").equiv(cell), 1);
  EXPECT_TRUE(cell.isNil());
}

TEST_F(StringWhileHashing, LastsUntilItIsInterned) {
  lvString const interned(cell);
  EXPECT_TRUE(cell.isNil());
  EXPECT_EQ(textOf(interned), "a text of its own");
}

TEST(StringInterning, TakesNoTextThatItsOwnHashTakesAway) {
  for (std::size_t const size : {std::size_t{4}, std::size_t{65535}}) {
    auto& acts = *new ActingText(std::string(size, 'x'));
    lvArg const cell(acts);
    acts.onHash = [&acts] { acts.finalize(); };
    EXPECT_TRUE(lvString(cell).isNil());
  }
}

TEST(StringEquiv, KeepsAPlainStringThatTheOtherOneLetsGo) {
  lvArg plain = string("same");
  auto& acts = *new ActingText("same");
  lvArg const other(acts);
  acts.onHash = [&plain] { plain.setNil(); };
  EXPECT_EQ(plain.equiv(other), 1);
  EXPECT_TRUE(plain.isNil());
}

TEST(StringEquiv, IsFalseForATextThatItsOwnHashTakesAway) {
  for (bool const actsFirst : {false, true}) {
    for (std::size_t const size : {std::size_t{4}, std::size_t{65535}}) {
      std::string const text(size, 'x');
      auto& acts = *new ActingText(text);
      lvArg const cell(acts);
      acts.onHash = [&acts] { acts.finalize(); };
      lvArg const other = string(text);
      EXPECT_EQ(actsFirst ? cell.equiv(other) : other.equiv(cell), 0);
    }
  }
}

}  // namespace
