// lvReadInt(), lvReadBool(), lvReadText().

#include <gtest/gtest.h>

#include <string>

#include "support/Cells.h"
#include "tarselvalues/core/lvRead.h"

namespace {

using test::integer;
using test::string;

TEST(ReadInt, ReturnsTheIntegerOrTheDefault) {
  EXPECT_EQ(lvReadInt(integer(-1), 7), -1);
  EXPECT_EQ(lvReadInt(lvArg(), 7), 7);
  EXPECT_EQ(lvReadInt(test::pointer(1), 7), 7);
}

TEST(ReadInt, ConvertsNoText) { EXPECT_EQ(lvReadInt(string("42"), 7), 7); }

TEST(ReadBool, IsTrueForAnyIntegerButZero) {
  EXPECT_TRUE(lvReadBool(integer(1), false));
  EXPECT_TRUE(lvReadBool(integer(-5), false));
  EXPECT_FALSE(lvReadBool(integer(0), true));
}

TEST(ReadBool, ReturnsTheDefaultForWhatIsNoInteger) {
  EXPECT_TRUE(lvReadBool(string("0"), true));
  EXPECT_FALSE(lvReadBool(lvArg(), false));
}

TEST(ReadText, ReturnsEveryByteOfAString) {
  using namespace std::string_literals;
  EXPECT_EQ(lvReadText(string("a\0b"s), "none"), "a\0b"s);
  EXPECT_EQ(lvReadText(lvString("pump"), "none"), "pump");
  EXPECT_EQ(lvReadText(string(""), "none"), "");
}

TEST(ReadText, EndsAtTheFirstNulOfATextOf65535Bytes) {
  std::string text(65534, 'x');
  text[3] = '\0';
  EXPECT_EQ(lvReadText(string(text), "none").size(), 65534U);
  text += 'x';
  EXPECT_EQ(lvReadText(string(text), "none"), "xxx");
}

TEST(ReadText, ReturnsTheDefaultForWhatIsNoString) {
  EXPECT_EQ(lvReadText(lvArg(), "none"), "none");  // lvValue has "(NIL)" here.
  EXPECT_EQ(lvReadText(integer(5), "none"), "none");
}

TEST(ReadText, ReturnsTheDefaultForAStringWithoutText) {
  EXPECT_EQ(lvReadText(*new lvrString, "none"), "none");
  lvArg empty(string("gone"));
  empty.releaseData();
  EXPECT_EQ(lvReadText(empty, "none"), "none");
}

}  // namespace
