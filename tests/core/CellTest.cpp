// lvToCell() and lvToKey().

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <string_view>

#include "support/Cells.h"
#include "tarselvalues/core/lvCell.h"

namespace {

using test::countOf;
using test::integer;
using test::textOf;

TEST(ToCell, MakesIntegers) {
  EXPECT_EQ(lvToCell(7).getInt(), 7);
  EXPECT_EQ(lvToCell(INT_MIN).getInt(), INT_MIN);
  EXPECT_EQ(lvToCell(std::int16_t{-3}).getInt(), -3);
  EXPECT_EQ(lvToCell(std::uint16_t{65535}).getInt(), 65535);
  EXPECT_EQ(lvToCell(std::uint8_t{255}).getInt(), 255);
  EXPECT_EQ(lvToCell(7).getType(), lvArg::IntType);
}

TEST(ToCell, MakesOneAndZeroOfTruthValues) {
  EXPECT_TRUE(lvToCell(true).eq(lvArg::TrueValue));
  EXPECT_TRUE(lvToCell(false).eq(lvArg::FalseValue));
}

TEST(ToCell, MakesAStringOfItsOwnOfEachText) {
  lvArg const first = lvToCell("pump");
  lvArg const second = lvToCell(std::string("pump"));
  EXPECT_EQ(first.getType(), lvArg::StringType);
  EXPECT_EQ(textOf(first), "pump");
  EXPECT_TRUE(first.equiv(second));
  EXPECT_FALSE(first.eq(second));
  EXPECT_EQ(countOf(first), 1);
}

TEST(ToCell, KeepsEveryByteOfAText) {
  using namespace std::string_literals;
  EXPECT_EQ(textOf(lvToCell("a\0b"s)), "a\0b"s);
  EXPECT_EQ(textOf(lvToCell(std::string_view("abc").substr(0, 2))), "ab");
}

TEST(ToCell, AnEmptyTextIsAStringAndANullOneIsNil) {
  EXPECT_EQ(textOf(lvToCell("")), "");
  EXPECT_EQ(textOf(lvToCell(std::string_view())), "");
  char const* const none = nullptr;
  EXPECT_TRUE(lvToCell(none).isNil());
  EXPECT_TRUE(lvToCell(nullptr).isNil());
}

TEST(ToCell, SharesWhatACellOrHandleHolds) {
  lvArg const string = test::string("a");
  EXPECT_TRUE(lvToCell(string).eq(string));
  lvString const handle("pump");
  EXPECT_TRUE(lvToCell(handle).eq(handle));
  EXPECT_TRUE(lvToCell(lvArg()).isNil());
}

TEST(ToCell, RefusesATextThatIsLongerThanAnIntCanTell) {
  EXPECT_THROW(lvToCell(std::string_view("", std::size_t{INT_MAX} + 1)), std::bad_alloc);
}

TEST(ToKey, InternsTexts) {
  EXPECT_TRUE(lvToKey("port").eq(lvString("port")));
  EXPECT_TRUE(lvToKey(std::string("port")).eq(lvString("port")));
  EXPECT_TRUE(lvToKey(test::string("port")).eq(lvString("port")));
}

TEST(ToKey, LeavesOtherKeysAsTheyAre) {
  EXPECT_TRUE(lvToKey(5).eq(integer(5)));
  EXPECT_TRUE(lvToKey(lvArg()).isNil());
}

}  // namespace
