// What the text writer does where its buffer ends.
#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "support/Cells.h"
#include "support/TextWriter.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::classNamed;
using test::integer;
using test::TextWriter;
using test::tupleKind;
using test::vectorKind;
using test::WriterWithRoom;

constexpr int RoomError = lvtStringArgDest::ROOM_ERROR;
constexpr auto SeparatorPending = WriterWithRoom::SeparatorPending;

// The status and what was written behind the bytes that were there.
struct Outcome {
  int status;
  std::string written;
};

bool operator==(Outcome const& a, Outcome const& b) {
  return a.status == b.status && a.written == b.written;
}

void PrintTo(Outcome const& outcome, std::ostream* out) {
  *out << outcome.status << ' ' << testing::PrintToString(outcome.written);
}

// Nothing is ever written behind the text.
template <class Call>
Outcome outcomeOf(WriterWithRoom& writer, Call call) {
  int const status = call(writer);
  EXPECT_TRUE(writer.isRestUntouched());
  return {status, writer.written()};
}

Outcome put(int room, lvArg const& value,
            WriterWithRoom::Separator separator = WriterWithRoom::NoSeparator) {
  WriterWithRoom writer(room, separator);
  return outcomeOf(writer, [&](lvtStringArgDest& sink) { return sink.putArg(value); });
}

Outcome put(int room, std::string const& text,
            WriterWithRoom::Separator separator = WriterWithRoom::NoSeparator) {
  return put(room, test::string(text), separator);
}

Outcome enter(int room, lvArg const& kind, int size,
              WriterWithRoom::Separator separator = WriterWithRoom::NoSeparator) {
  WriterWithRoom writer(room, separator);
  return outcomeOf(writer, [&](lvtStringArgDest& sink) { return sink.enter(kind, size); });
}

Outcome enterWithSizes(int room, lvArg const& kind, int size,
                       WriterWithRoom::Separator separator = WriterWithRoom::NoSeparator) {
  WriterWithRoom writer(room, separator);
  writer.setTransferSizes(true);
  return outcomeOf(writer, [&](lvtStringArgDest& sink) { return sink.enter(kind, size); });
}

Outcome const refused{RoomError, ""};

Outcome accepted(std::string const& text) { return {0, text}; }

TEST(WriterRoom, ErrorIsItsFixedNumber) { EXPECT_EQ(RoomError, -3072); }

// ---- putArg ------------------------------------------------------------------------------------

TEST(WriterPutArgRoom, OfLessThanTwoBytesTakesNothing) {
  for (int room = 0; room < 2; ++room) {
    for (lvArg const& value : {integer(1), lvArg(), test::string("")}) {
      EXPECT_EQ(put(room, value), refused);
      EXPECT_EQ(put(room, value, SeparatorPending), refused);
    }
  }
}

TEST(WriterPutArgRoom, OfLessThanTwoBytesLeavesTheSeparatorAsItWas) {
  WriterWithRoom writer(1);
  EXPECT_EQ(writer.putArg(integer(1)), RoomError);
  EXPECT_FALSE(writer.isSeparatorPending());
}

TEST(WriterPutArgRoom, OfABufferOfTwoBytesTakesNothing) {
  TextWriter writer(2);
  EXPECT_EQ(writer.putArg(integer(1)), RoomError);
  EXPECT_EQ(writer.putArg(test::string("")), RoomError);
  EXPECT_EQ(writer.text(), "");
}

TEST(WriterPutArgRoom, OfABufferOfThreeBytesTakesTwo) {
  TextWriter writer(3);
  EXPECT_EQ(writer.putArg(integer(12)), 0);
  EXPECT_EQ(writer.text(), "12");
}

TEST(WriterPutArgRoom, TakesAnIntegerOfItsVeryLength) {
  EXPECT_EQ(put(5, integer(12345)), accepted("12345"));
  EXPECT_EQ(put(4, integer(12345)), refused);
  EXPECT_EQ(put(11, integer(INT_MIN)), accepted("-2147483648"));
  EXPECT_EQ(put(10, integer(INT_MIN)), refused);
}

TEST(WriterPutArgRoom, OfAnIntegerIsCountedBeforeTheSeparator) {
  EXPECT_EQ(put(5, integer(12345), SeparatorPending), accepted(",12345"));
  EXPECT_EQ(put(4, integer(12345), SeparatorPending), (Outcome{RoomError, ","}));
}

TEST(WriterPutArgRoom, TakesNilIntoFourBytes) {
  EXPECT_EQ(put(4, lvArg()), accepted("#nil"));
  EXPECT_EQ(put(3, lvArg()), refused);
}

TEST(WriterPutArgRoom, OfNilIsCountedBeforeTheSeparator) {
  EXPECT_EQ(put(4, lvArg(), SeparatorPending), accepted(",#nil"));
  EXPECT_EQ(put(3, lvArg(), SeparatorPending), (Outcome{RoomError, ","}));
}

TEST(WriterPutArgRoom, OfAWordIsTwoBytesMoreThanItsLength) {
  EXPECT_EQ(put(5, "abc"), accepted("abc"));
  EXPECT_EQ(put(4, "abc"), refused);
  EXPECT_EQ(put(5, "abc", SeparatorPending), accepted(",abc"));
  EXPECT_EQ(put(4, "abc", SeparatorPending), (Outcome{RoomError, ","}));
}

TEST(WriterPutArgRoom, OfAPlainQuotedStringIsTwoBytesMoreThanItsLength) {
  EXPECT_EQ(put(5, "a b"), accepted("\"a b\""));
  EXPECT_EQ(put(4, "a b"), refused);
  EXPECT_EQ(put(5, "a b", SeparatorPending), accepted(",\"a b\""));
  EXPECT_EQ(put(4, "a b", SeparatorPending), (Outcome{RoomError, ","}));
}

TEST(WriterPutArgRoom, TakesTheEmptyStringIntoTwoBytes) {
  EXPECT_EQ(put(2, ""), accepted("\"\""));
  EXPECT_EQ(put(2, "", SeparatorPending), accepted(",\"\""));
}

TEST(WriterPutArgRoom, CountsAStringBeyondItsNul) {
  EXPECT_EQ(put(5, std::string("a b\0c", 5)), refused);
  EXPECT_EQ(put(7, std::string("a b\0c", 5)), accepted("\"a b\""));
}

TEST(WriterPutArgRoom, CutsAStringBeforeTheEscapeThatDoesNotFit) {
  EXPECT_EQ(put(5, ":::"), accepted("\"%3A\""));
  EXPECT_EQ(put(7, ":::"), accepted("\"%3A\""));
  EXPECT_EQ(put(8, ":::"), accepted("\"%3A%3A\""));
  EXPECT_EQ(put(10, ":::"), accepted("\"%3A%3A\""));
  EXPECT_EQ(put(11, ":::"), accepted("\"%3A%3A%3A\""));
}

TEST(WriterPutArgRoom, CutsAStringThatIsNothingButOneEscape) {
  EXPECT_EQ(put(3, ":"), accepted("\"\""));
  EXPECT_EQ(put(4, ":"), accepted("\"\""));
  EXPECT_EQ(put(5, ":"), accepted("\"%3A\""));
}

TEST(WriterPutArgRoom, CutsTheSameBehindASeparator) {
  EXPECT_EQ(put(4, ":", SeparatorPending), accepted(",\"\""));
  EXPECT_EQ(put(5, ":", SeparatorPending), accepted(",\"%3A\""));
  EXPECT_EQ(put(8, ":::", SeparatorPending), accepted(",\"%3A%3A\""));
}

TEST(WriterPutArgRoom, GoesOnWithPlainBytesUntilNoneIsLeft) {
  EXPECT_EQ(put(7, "a:bcd"), accepted("\"a%3Abc\""));
  EXPECT_EQ(put(8, "a:bcd"), accepted("\"a%3Abcd\""));
}

TEST(WriterPutArgRoom, OfACutStringMayReachTheCapacity) {
  WriterWithRoom writer(7);
  EXPECT_EQ(writer.putArg(test::string("a:bcd")), 0);
  EXPECT_EQ(writer.getStringLength(), test::capacityOf(writer));
}

TEST(WriterPutArgRoom, GivesTheLastPlainByteUpForTheQuoteBehindASeparator) {
  EXPECT_EQ(put(7, "a:bcd", SeparatorPending), accepted(",\"a%3Ab\""));
  EXPECT_EQ(put(8, "a:bcd", SeparatorPending), accepted(",\"a%3Abc\""));
  EXPECT_EQ(put(9, "a:bcd", SeparatorPending), accepted(",\"a%3Abcd\""));
}

TEST(WriterPutArgRoom, OfACutStringBehindASeparatorReachesTheCapacityAndNoMore) {
  WriterWithRoom writer(7, SeparatorPending);
  EXPECT_EQ(writer.putArg(test::string("a:bcd")), 0);
  EXPECT_EQ(writer.getStringLength(), test::capacityOf(writer));
}

TEST(WriterPutArgRoom, OfASeparatorInATupleIsTheSame) {
  WriterWithRoom writer(8);
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  EXPECT_EQ(writer.putArg(integer(123456)), 0);
  EXPECT_EQ(writer.written(), "(1=123456");
  EXPECT_EQ(writer.getStringLength(), test::capacityOf(writer));
}

// ---- enter -------------------------------------------------------------------------------------

TEST(WriterEnterRoom, OfAnUnknownSizeIsOneByte) {
  EXPECT_EQ(enter(0, vectorKind, -1), refused);
  EXPECT_EQ(enter(1, vectorKind, -1), accepted("{"));
  EXPECT_EQ(enter(0, tupleKind, INT_MIN), refused);
  EXPECT_EQ(enter(1, tupleKind, INT_MIN), accepted("("));
}

TEST(WriterEnterRoom, OfAnUnknownSizeIsOneByteBehindASeparatorToo) {
  EXPECT_EQ(enter(0, vectorKind, -1, SeparatorPending), refused);
  EXPECT_EQ(enter(1, vectorKind, -1, SeparatorPending), accepted(",{"));
}

TEST(WriterEnterRoom, OfASizeIsFifteenBytes) {
  for (int const size : {0, 1, INT_MAX}) {
    EXPECT_EQ(enter(14, vectorKind, size), refused);
    EXPECT_EQ(enter(15, vectorKind, size), accepted("{"));
    EXPECT_EQ(enterWithSizes(14, vectorKind, size), refused);
    EXPECT_EQ(enterWithSizes(15, vectorKind, size), accepted("{[" + std::to_string(size) + "]"));
  }
}

TEST(WriterEnterRoom, OfASizeIsOneByteMoreBehindASeparator) {
  EXPECT_EQ(enter(15, vectorKind, 0, SeparatorPending), refused);
  EXPECT_EQ(enter(16, vectorKind, 0, SeparatorPending), accepted(",{"));
  EXPECT_EQ(enterWithSizes(15, tupleKind, 2, SeparatorPending), refused);
  EXPECT_EQ(enterWithSizes(16, tupleKind, INT_MAX, SeparatorPending), accepted(",([2147483647]"));
}

TEST(WriterEnterRoom, ThatIsMissingChangesNothing) {
  WriterWithRoom writer(14);
  EXPECT_EQ(writer.enter(vectorKind, 3), RoomError);
  EXPECT_FALSE(writer.isSeparatorPending());
  EXPECT_EQ(writer.depth(), 0U);
}

TEST(WriterEnterRoom, OfAClassNameIsThatOfAnElementBehindTheStar) {
  EXPECT_EQ(enter(6, classNamed("AB"), -1), accepted("*AB{"));
  EXPECT_EQ(enter(5, classNamed("AB"), -1), accepted("*AB{"));
  EXPECT_EQ(enter(4, classNamed("AB"), -1), accepted("*{"));
  EXPECT_EQ(enter(1, classNamed("AB"), -1), accepted("*{"));
}

TEST(WriterEnterRoom, OfAClassNameIsOneByteLessBehindASeparator) {
  EXPECT_EQ(enter(6, classNamed("AB"), -1, SeparatorPending), accepted(",*AB{"));
  EXPECT_EQ(enter(5, classNamed("AB"), -1, SeparatorPending), accepted(",*{"));
  EXPECT_EQ(enter(2, classNamed("AB"), -1, SeparatorPending), accepted(",*{"));
}

TEST(WriterEnterRoom, ThatEndsBehindTheStarRefusesTheLevel) {
  WriterWithRoom writer(1, SeparatorPending);
  EXPECT_EQ(writer.enter(classNamed("AB"), -1), RoomError);
  EXPECT_EQ(writer.written(), ",*");
  EXPECT_EQ(writer.depth(), 0U);
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST(WriterEnterRoom, ThatACutClassNameTakesWholeRefusesTheLevel) {
  WriterWithRoom writer(8);
  EXPECT_EQ(writer.enter(classNamed("a:bcd"), -1), RoomError);
  EXPECT_EQ(writer.written(), "*\"a%3Abc\"");
  EXPECT_EQ(writer.depth(), 0U);
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST(WriterEnterRoom, ThatACutClassNameLeavesTakesTheBracket) {
  EXPECT_EQ(enter(6, classNamed(":::"), -1), accepted("*\"%3A\"{"));
  EXPECT_EQ(enter(7, classNamed(":::"), -1, SeparatorPending), accepted(",*\"%3A\"{"));
  EXPECT_EQ(enter(6, classNamed("::"), -1, SeparatorPending), accepted(",*\"\"{"));
}

TEST(WriterEnterRoom, ThatAClassNameLeavesMayTakeTheWholeSize) {
  std::string const name = "abcdefghijk";
  EXPECT_EQ(enterWithSizes(15, classNamed(name), 3), accepted("*" + name + "{[3]"));
  EXPECT_EQ(enterWithSizes(16, classNamed(name), 10), accepted("*" + name + "{[10]"));
}

TEST(WriterEnterRoom, ThatAClassNameLeavesTakesNoPartOfASize) {
  std::string const name = "abcdefghijkl";
  EXPECT_EQ(enterWithSizes(15, classNamed(name), 3), accepted("*" + name + "{"));
  EXPECT_EQ(enterWithSizes(16, classNamed(name), 10), accepted("*" + name + "{"));
  EXPECT_EQ(enterWithSizes(16, classNamed(name), 3, SeparatorPending), accepted(",*" + name + "{"));
}

// ---- leave and abortLevel ----------------------------------------------------------------------

class WriterLeaveRoom : public testing::Test {
 protected:
  // A level is open, and so many bytes of the buffer are left.
  void openUpTo(TextWriter& writer, int bytesLeft) {
    writer.enter(tupleKind, -1);
    while (test::capacityOf(writer) - writer.getStringLength() > bytesLeft) {
      ASSERT_EQ(writer.insertChar('.'), 0);
    }
  }
};

TEST_F(WriterLeaveRoom, OfTwoBytesIsEnough) {
  TextWriter writer(10);
  openUpTo(writer, 2);
  EXPECT_EQ(writer.leave(), 0);
  EXPECT_EQ(writer.text(), "(.......)");
}

TEST_F(WriterLeaveRoom, OfOneByteChangesNothing) {
  TextWriter writer(10);
  openUpTo(writer, 1);
  EXPECT_EQ(writer.leave(), RoomError);
  EXPECT_EQ(writer.text(), "(........");
  EXPECT_TRUE(writer.isRestUntouched());
  EXPECT_EQ(writer.depth(), 1U);
  EXPECT_FALSE(writer.isSeparatorPending());
}

TEST_F(WriterLeaveRoom, OfNoByteChangesNothing) {
  TextWriter writer(10);
  openUpTo(writer, 0);
  EXPECT_EQ(writer.leave(), RoomError);
  EXPECT_EQ(writer.text(), "(.........");
  EXPECT_EQ(writer.depth(), 1U);
}

TEST_F(WriterLeaveRoom, ThatIsMissingLetsAbortLevelSucceedWithoutAnyChange) {
  for (int bytesLeft = 0; bytesLeft < 2; ++bytesLeft) {
    TextWriter writer(10);
    openUpTo(writer, bytesLeft);
    std::string const before = writer.block();
    EXPECT_EQ(writer.abortLevel(), 0);
    EXPECT_EQ(writer.block(), before);
    EXPECT_EQ(writer.getStringLength(), 10 - bytesLeft);
    EXPECT_EQ(writer.depth(), 1U);
    EXPECT_FALSE(writer.isSeparatorPending());
  }
}

TEST_F(WriterLeaveRoom, OfTwoBytesIsEnoughForAbortLevel) {
  TextWriter writer(10);
  openUpTo(writer, 2);
  EXPECT_EQ(writer.abortLevel(), 0);
  EXPECT_EQ(writer.text(), "(.......)");
  EXPECT_EQ(writer.depth(), 0U);
}

TEST_F(WriterLeaveRoom, IsLeftByAbortLevelAfterAFailedElement) {
  TextWriter writer(8);
  writer.enter(vectorKind, -1);
  writer.putArg(integer(123));
  EXPECT_EQ(writer.putArg(integer(45678)), RoomError);
  EXPECT_EQ(writer.abortLevel(), 0);
  EXPECT_EQ(writer.text(), "{123,}");
}

// ---- Buffers that take nothing -----------------------------------------------------------------

void expectNothingIsTaken(lvtStringArgDest& writer) {
  EXPECT_EQ(writer.putArg(integer(1)), RoomError);
  EXPECT_EQ(writer.putArg(lvArg()), RoomError);
  EXPECT_EQ(writer.putArg(test::string("")), RoomError);
  EXPECT_EQ(writer.enter(vectorKind, -1), RoomError);
  EXPECT_EQ(writer.enter(classNamed("C"), 3), RoomError);
  EXPECT_EQ(writer.leave(), RoomError);
  EXPECT_EQ(writer.abortLevel(), 0);
  EXPECT_EQ(writer.insertChar('x'), -1);
  EXPECT_EQ(writer.insertString("x", -1), -1);
  EXPECT_EQ(writer.insertString("", 0), -1);
  EXPECT_EQ(writer.terminate(), 0);
}

TEST(WriterFullBuffer, TakesNothing) {
  TextWriter writer(3);
  writer.insertString("ab", 2);
  writer.insertChar('c');
  expectNothingIsTaken(writer);
  EXPECT_EQ(writer.block(), "abc");
  EXPECT_EQ(writer.getStringLength(), 3);
}

TEST(WriterEmptyBuffer, TakesNothing) {
  TextWriter writer(0);
  expectNothingIsTaken(writer);
  EXPECT_EQ(writer.setStringOffset(0), -1);
  EXPECT_EQ(writer.getStringLength(), 0);
}

TEST(WriterNegativeCapacity, TakesNothing) {
  for (int const size : {-1, -100, INT_MIN}) {
    char byte = test::Untouched;
    lvtStringArgDest writer(&byte, size);
    expectNothingIsTaken(writer);
    EXPECT_EQ(writer.setStringOffset(0), -1);
    EXPECT_EQ(writer.setStringOffset(size), -1);
    EXPECT_EQ(byte, test::Untouched);
  }
}

TEST(WriterNegativeCapacity, MakesAnEmptyBufferOfItsOwn) {
  lvtStringArgDest writer(nullptr, -5);
  expectNothingIsTaken(writer);
  EXPECT_EQ(test::flagsOf(writer), test::OwnsBufferBit | test::BareWordsBit);
}

TEST(WriterWithoutBuffer, TakesNothing) {
  lvtStringArgDest writer;
  expectNothingIsTaken(writer);
  EXPECT_EQ(writer.setStringOffset(0), -1);
  EXPECT_EQ(writer.getStringData(), nullptr);
  EXPECT_EQ(writer.getStringLength(), 0);
}

// ---- Whether everything had room ---------------------------------------------------------------

// Whether an operation with this much room has fitted.
template <class Call>
bool fits(int room, Call call) {
  WriterWithRoom writer(room);
  call(writer);
  return writer.hasFitted();
}

TEST(WriterFit, TellsOfEachOperationThatHadNoRoom) {
  using Writer = lvtStringArgDest;
  lvArg const longName = classNamed(std::string(20, 'n'));
  EXPECT_FALSE(fits(1, [](Writer& to) { to.putArg(integer(1)); }));
  EXPECT_FALSE(fits(3, [](Writer& to) { to.putArg(integer(1234)); }));
  EXPECT_FALSE(fits(3, [](Writer& to) { to.putArg(lvArg()); }));
  EXPECT_FALSE(fits(8, [](Writer& to) { to.putArg(test::string("12345678")); }));
  EXPECT_FALSE(fits(14, [](Writer& to) { to.enter(vectorKind, 1); }));
  EXPECT_FALSE(fits(0, [](Writer& to) { to.enter(vectorKind, -1); }));
  EXPECT_FALSE(fits(16, [&](Writer& to) { to.enter(longName, 1); }));
  EXPECT_FALSE(fits(0, [](Writer& to) { to.leave(); }));
  EXPECT_FALSE(fits(0, [](Writer& to) { to.insertChar('a'), to.insertChar('b'); }));
  EXPECT_FALSE(fits(2, [](Writer& to) { to.insertString("abc", -1); }));
}

TEST(WriterFit, TellsOfAStringThatWasCutWithSuccess) {
  WriterWithRoom writer(10);
  EXPECT_EQ(writer.putArg(test::string("\"\"\"")), 0);
  EXPECT_FALSE(writer.hasFitted());
}

TEST(WriterFit, TellsOfASizeThatWasLeftOut) {
  WriterWithRoom writer(15);
  writer.setTransferSizes(true);
  EXPECT_EQ(writer.enter(classNamed("twelve_bytes"), 1), 0);
  EXPECT_FALSE(writer.hasFitted());
}

TEST(WriterFit, HoldsWhileThereIsRoom) {
  EXPECT_TRUE(fits(100, [](lvtStringArgDest& to) {
    to.enter(tupleKind, 2);
    to.putArg(test::string("a b\""));
    to.putArg(lvArg());
    to.leave();
    to.insertChar(',');
    to.insertString("word", -1);
  }));
}

TEST(WriterFit, IsNoMatterOfTheDepth) {
  WriterWithRoom writer(1000);
  for (int i = 0; i < lvtStringArgDest::MaxDepth; ++i) {
    EXPECT_EQ(writer.enter(vectorKind, -1), 0);
  }
  EXPECT_EQ(writer.enter(vectorKind, -1), RoomError);
  EXPECT_TRUE(writer.hasFitted());
}

TEST(WriterFit, BeginsAnewWithABuffer) {
  char buffer[16];
  lvtStringArgDest writer(buffer, 1);
  EXPECT_EQ(writer.putArg(integer(1)), RoomError);
  EXPECT_EQ(writer.init(), 0);
  EXPECT_EQ(writer.initOnce(), 0);
  EXPECT_FALSE(writer.hasFitted());
  writer.setStringBuffer(buffer, sizeof(buffer));
  EXPECT_TRUE(writer.hasFitted());
}

}  // namespace
