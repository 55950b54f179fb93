// Behaviour of the text writer that looks like a mistake and is none: texts of other programs, and
// the places where they are cut, depend on it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/TextWriter.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::integer;
using test::TextWriter;
using test::vectorKind;
using test::WriterWithRoom;

std::string written(lvArg const& value) {
  TextWriter writer;
  writer.putArg(value);
  return writer.text();
}

// What the parser makes of the text of a string.
std::string readBack(std::string const& text) {
  std::string const whole = written(test::string(text));
  lvtStringArgSource parser(whole.c_str(), static_cast<int>(whole.size()));
  lvArg item;
  EXPECT_EQ(parser.getArg(item), lvArgSource::SOURCE_ITEM);
  return test::textOf(item);
}

// The integers that the parser finds between two brackets.
std::vector<int> elementsRead(std::string const& text) {
  lvtStringArgSource parser(text.c_str(), -1);
  lvArg item;
  EXPECT_EQ(parser.getArg(item), lvArgSource::SOURCE_FRAME_BEGIN);
  std::vector<int> elements;
  for (int result = parser.getArg(item);
       result != lvArgSource::SOURCE_FRAME_END && result != lvArgSource::SOURCE_END;
       result = parser.getArg(item)) {
    if (result == lvArgSource::SOURCE_ITEM) {
      elements.push_back(item.getInt());
    }
  }
  return elements;
}

TEST(WriterOddities, SizedLevelNeedsFifteenBytesThoughItTakesOne) {
  WriterWithRoom writer(14);
  EXPECT_EQ(writer.enter(vectorKind, 0), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.enter(vectorKind, -1), 0);
  EXPECT_EQ(writer.written(), "{");
}

TEST(WriterOddities, ColonIsEscapedThoughItHasNoMeaning) {
  EXPECT_EQ(written(test::string(":")), "\"%3A\"");
}

TEST(WriterOddities, RawAddressIsLost) { EXPECT_EQ(written(test::pointer(0x1234)), "#nil"); }

TEST(WriterOddities, CutStringIsClosedAndSucceeds) {
  WriterWithRoom writer(5);
  EXPECT_EQ(writer.putArg(test::string(":::")), 0);
  EXPECT_EQ(writer.written(), "\"%3A\"");
}

TEST(WriterOddities, StringIsCutByEscapingButRefusedByItsLength) {
  WriterWithRoom writer(5);
  EXPECT_EQ(writer.putArg(test::string("a b.")), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.putArg(test::string("a:b")), 0);
}

TEST(WriterOddities, FailedElementLeavesItsSeparatorForTheNextToDouble) {
  WriterWithRoom writer(4, WriterWithRoom::SeparatorPending);
  EXPECT_EQ(writer.putArg(integer(12345)), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.written(), ",");
  EXPECT_EQ(writer.putArg(integer(1)), 0);
  EXPECT_EQ(writer.written(), ",,1");
}

TEST(WriterOddities, FailedFirstElementCountsAsAnElement) {
  WriterWithRoom writer(4);
  EXPECT_EQ(writer.putArg(integer(12345)), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.putArg(integer(1)), 0);
  EXPECT_EQ(writer.written(), ",1");
}

TEST(WriterOddities, LastElementMayTakeTheByteKeptForTheNul) {
  WriterWithRoom writer(2, WriterWithRoom::SeparatorPending);
  EXPECT_EQ(writer.putArg(integer(12)), 0);
  EXPECT_EQ(writer.getStringLength(), test::capacityOf(writer));
  EXPECT_EQ(writer.terminate(), 0);
  EXPECT_EQ(writer.written(), ",12");
}

TEST(WriterOddities, InsertCharTakesTheByteThatInsertStringLeavesFree) {
  TextWriter writer(1);
  EXPECT_EQ(writer.insertString("x", 1), -1);
  EXPECT_EQ(writer.insertChar('x'), 0);
}

TEST(WriterOddities, LeaveWithoutALevelWritesACurlyBracket) {
  TextWriter writer;
  EXPECT_EQ(writer.leave(), 0);
  EXPECT_EQ(writer.text(), "}");
  EXPECT_EQ(writer.depth(), 0U);
}

TEST(WriterOddities, AbandonedLevelThatIsLeftTooGetsTwoBrackets) {
  TextWriter writer;
  writer.enter(vectorKind, -1);
  writer.putArg(integer(1));
  writer.abortLevel();
  writer.leave();
  EXPECT_EQ(writer.text(), "{1}}");
}

TEST(WriterOddities, ClassNameThatDoesNotFitIsLeftOutWithoutAComplaint) {
  WriterWithRoom writer(6);
  EXPECT_EQ(writer.enter(test::classNamed("Point"), -1), 0);
  EXPECT_EQ(writer.written(), "*{");
}

TEST(WriterOddities, SizeIsReadBackAsAnElementInPlaceOfTheFirst) {
  TextWriter writer;
  writer.setTransferSizes(true);
  writer.enter(vectorKind, 2);
  writer.putArg(integer(5));
  writer.putArg(integer(6));
  writer.leave();
  EXPECT_EQ(writer.text(), "{[2]5,6}");
  EXPECT_EQ(elementsRead(writer.text()), (std::vector<int>{2, 6}));
}

TEST(WriterOddities, BackslashIsWrittenPlainButReadAsAnEscape) {
  EXPECT_EQ(written(test::string("a\\n")), "\"a\\n\"");
  EXPECT_EQ(readBack("a\\n"), "a\n");
}

TEST(WriterOddities, BackslashAtTheEndSwallowsTheQuoteWhenReadBack) {
  EXPECT_EQ(written(test::string("a b\\")), "\"a b\\\"");
  EXPECT_EQ(readBack("a b\\"), "a b\"");
}

TEST(WriterOddities, StringIsCutAtItsNul) { EXPECT_EQ(readBack(std::string("a b\0c", 5)), "a b"); }

TEST(WriterOddities, StringNilIsReadBackAsAString) { EXPECT_EQ(readBack("nil"), "nil"); }

}  // namespace
