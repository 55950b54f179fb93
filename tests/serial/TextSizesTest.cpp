// Texts of many bytes, and lengths at the ends of their types.

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <memory>
#include <string>

#include "support/Cells.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::integer;
using test::string;
using test::textOf;

constexpr std::size_t Long = 10000000;

std::string inQuotes(std::string const& text) { return "\"" + text + "\""; }

// The string that a text is read as, which must end with it.
std::string readBack(std::string const& text) {
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg item;
  EXPECT_EQ(parser.getArg(item), lvArgSource::SOURCE_ITEM);
  EXPECT_EQ(parser.getParseOffset(), static_cast<int>(text.size()));
  return textOf(item);
}

TEST(LongText, OfAQuotedStringIsReadWhole) {
  std::string const text(Long, '+');
  EXPECT_EQ(readBack(inQuotes(text)), text);
}

TEST(LongText, OfAWordIsReadWhole) {
  std::string const word(Long, 'w');
  EXPECT_EQ(readBack(word), word);
}

TEST(LongText, OfEscapesIsReadWhole) {
  std::string escapes;
  constexpr std::size_t times = 300000;
  for (std::size_t i = 0; i < times; ++i) {
    escapes += "%41\\n%4";
  }
  std::string const text = readBack(inQuotes(escapes));
  EXPECT_EQ(text.size(), 3 * times);
  EXPECT_EQ(text.substr(text.size() - 6), "A\n\004A\n\004");
}

TEST(LongText, OfAStringIsWrittenIntoTheLeastRoomThatItNeeds) {
  std::string const text(Long, '+');
  std::size_t const capacity = Long + 3;
  auto const buffer = std::make_unique<char[]>(capacity);
  lvtStringArgDest writer(buffer.get(), static_cast<int>(capacity));
  EXPECT_EQ(writer.putArg(string(text)), 0);
  EXPECT_EQ(writer.getStringLength(), static_cast<int>(Long + 2));
  EXPECT_EQ(std::string(buffer.get(), Long + 2), inQuotes(text));
  lvtStringArgDest tooSmall(buffer.get(), static_cast<int>(capacity) - 1);
  EXPECT_EQ(tooSmall.putArg(string(text)), lvtStringArgDest::ROOM_ERROR);
}

TEST(ParserLength, OfTheLargestNumberEndsWithTheItem) {
  lvtStringArgSource parser("12 ", INT_MAX);
  lvArg item;
  EXPECT_EQ(parser.getNextToken(item), lvtStringArgSource::TOKEN_INTEGER);
  EXPECT_EQ(item.getInt(), 12);
  EXPECT_EQ(parser.setParseOffset(INT_MAX), 0);
  EXPECT_EQ(parser.getNextToken(item), lvtStringArgSource::TOKEN_END);
}

TEST(ParserLength, BelowZeroReadsAsTheEnd) {
  for (int const length : {-2, INT_MIN}) {
    lvtStringArgSource parser("12", length);
    lvArg item;
    EXPECT_EQ(parser.getArg(item), lvArgSource::SOURCE_END) << length;
    EXPECT_EQ(parser.setParseOffset(0), -1);
    EXPECT_EQ(parser.setParseOffset(INT_MIN), 0);
    EXPECT_EQ(parser.getNextToken(item), lvtStringArgSource::TOKEN_END);
  }
}

TEST(WriterCapacity, BelowZeroHasNoRoomAtAll) {
  for (int const capacity : {-1, INT_MIN}) {
    char byte = 'x';
    lvtStringArgDest writer(&byte, capacity);
    EXPECT_EQ(writer.putArg(integer(1)), lvtStringArgDest::ROOM_ERROR);
    EXPECT_EQ(writer.enter(integer(25), -1), lvtStringArgDest::ROOM_ERROR);
    EXPECT_EQ(writer.leave(), lvtStringArgDest::ROOM_ERROR);
    EXPECT_EQ(writer.insertChar('y'), -1);
    EXPECT_EQ(writer.insertString("", 0), -1);
    EXPECT_EQ(writer.setStringOffset(0), -1);
    EXPECT_EQ(writer.terminate(), 0);
    EXPECT_EQ(byte, 'x');
  }
}

TEST(WriterCapacity, OfTheLargestNumberIsCountedWithoutOverflow) {
  // The writer is told more than there is, and writes no more than it must.
  char text[64] = {};
  lvtStringArgDest writer(text, INT_MAX);
  EXPECT_EQ(writer.enter(integer(25), INT_MAX), 0);
  EXPECT_EQ(writer.putArg(integer(INT_MIN)), 0);
  EXPECT_EQ(writer.putArg(string("a b")), 0);
  EXPECT_EQ(writer.leave(), 0);
  EXPECT_STREQ(text, "{-2147483648,\"a b\"}");
  EXPECT_EQ(writer.setStringOffset(INT_MAX - 1), 0);
  EXPECT_EQ(writer.putArg(integer(1)), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.enter(integer(25), 1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.insertString("abc", INT_MAX), -1);
}

}  // namespace
