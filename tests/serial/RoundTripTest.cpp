// Values to text and back: what is read equals what was written, and the text is the model's, byte
// for byte.
#include <gtest/gtest.h>

#include <string>

#include "support/SinkRuns.h"
#include "support/TextWriter.h"
#include "support/TreeModel.h"
#include "tarselvalues/serial/lvTools.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::described;
using test::Tree;
using test::TreeMaker;

// The levels that the text writer can open.
constexpr int MaxLevels = lvtStringArgDest::MaxDepth;

std::string written(lvArg const& value, std::size_t capacity) {
  test::TextWriter writer(static_cast<int>(capacity));
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, value), 0);
  return writer.text();
}

lvArg readBack(std::string const& text) {
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
  EXPECT_EQ(parser.getErrorCount(), 0);
  EXPECT_EQ(parser.getParseOffset(), static_cast<int>(text.size()));
  return out;
}

// Writes and reads one tree.
void expectToComeBack(Tree const& tree) {
  lvArg const value = test::valueOf(tree);
  ASSERT_EQ(described(value), described(tree));
  std::string const expected = test::textOf(test::treeOf(value));
  std::string const text = written(value, expected.size() + 20);
  ASSERT_EQ(text, expected);
  EXPECT_EQ(described(readBack(text)), described(tree));
}

Tree text(std::string const& bytes) { return {Tree::Text, 0, bytes, {}}; }

TEST(RoundTrip, KeepsRandomTrees) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    expectToComeBack(maker.make(maker.upTo(MaxLevels)));
    if (testing::Test::HasFailure()) {
      return;
    }
  }
}

TEST(RoundTrip, KeepsTreesOfAsManyLevelsAsTheWriterOpens) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    expectToComeBack(maker.makeDeep(MaxLevels - maker.upTo(2)));
    if (testing::Test::HasFailure()) {
      return;
    }
  }
}

TEST(RoundTrip, KeepsRandomTreesThroughTheConversionFunctions) {
  int compared = 0;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    maker.budget = 30;
    Tree const tree = maker.make(8);
    lvArg const value = test::valueOf(tree);
    std::string const expected = test::textOf(test::treeOf(value));
    if (expected.size() <= 4000) {
      lvString const converted = lvToolsToString(value);
      ASSERT_EQ(test::textOf(converted), expected);
      int consumed = -1;
      EXPECT_EQ(described(lvToolsFromString(converted, consumed)), described(tree));
      EXPECT_EQ(consumed, converted.length());
      ++compared;
    }
  }
  EXPECT_GT(compared, 150);
}

TEST(RoundTrip, KeepsEveryByteButNulAndBackslash) {
  std::string all;
  for (int code = 1; code < 256; ++code) {
    char const c = static_cast<char>(code);
    if (c != '\\') {
      expectToComeBack(text(std::string(1, c)));
      expectToComeBack(text(std::string("a") + c));
      expectToComeBack(text(std::string(1, c) + "n0"));
      all += c;
    }
  }
  expectToComeBack(text(all));
}

TEST(RoundTrip, KeepsLongStrings) {
  for (std::size_t const length : {498U, 499U, 500U, 501U, 600U, 65534U, 65535U, 70000U}) {
    SCOPED_TRACE(length);
    expectToComeBack(text(std::string(length, 'a')));
    expectToComeBack(text(std::string(length, ':')));
  }
}

TEST(RoundTrip, KeepsTheExtremeIntegers) {
  for (int const number : {0, 1, -1, 2147483647, -2147483647, -2147483647 - 1}) {
    expectToComeBack({Tree::Integer, number, "", {}});
  }
}

TEST(RoundTrip, KeepsNilButNotAsTheValueOfAnEntry) {
  expectToComeBack({});
  expectToComeBack({Tree::Vector, 0, "", {Tree(), Tree()}});
  expectToComeBack({Tree::Map, 0, "", {Tree(), text("v")}});
}

TEST(RoundTrip, KeepsTheEmptyStringAndTheStringNil) {
  expectToComeBack(text(""));
  expectToComeBack(text("nil"));
  expectToComeBack({Tree::Vector, 0, "", {text("nil"), Tree(), text("")}});
}

TEST(RoundTrip, TurnsInternedAndOwnStringsIntoOwnOnes) {
  lvArg const back = readBack(written(lvString("interned"), 100));
  EXPECT_EQ(test::textOf(back), "interned");
  EXPECT_FALSE(back.eq(lvString("interned")));
}

TEST(RoundTrip, KeepsTwiceWrittenText) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    Tree const tree = TreeMaker(seed).make(10);
    std::string const once = test::textOf(test::treeOf(test::valueOf(tree)));
    lvArg const back = readBack(once);
    EXPECT_EQ(described(readBack(written(back, once.size() + 20))), described(tree)) << seed;
  }
}

}  // namespace
