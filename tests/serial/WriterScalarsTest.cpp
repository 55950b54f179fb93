// What the text writer makes of single values, where room is no matter.
#include <gtest/gtest.h>

#include <climits>
#include <initializer_list>
#include <memory>
#include <string>

#include "support/Cells.h"
#include "support/TextWriter.h"
#include "support/WriterModel.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::integer;
using test::TextWriter;

// The text of one value, which must be accepted.
std::string written(lvArg const& value) {
  TextWriter writer;
  EXPECT_EQ(writer.putArg(value), 0);
  EXPECT_TRUE(writer.isRestUntouched());
  return writer.text();
}

std::string written(std::string const& text) { return written(test::string(text)); }

std::string quoted(std::string const& text) { return '"' + text + '"'; }

// ---- Integers ----------------------------------------------------------------------------------

TEST(WriterPutArg, WritesIntegersInDecimal) {
  EXPECT_EQ(written(integer(0)), "0");
  EXPECT_EQ(written(integer(7)), "7");
  EXPECT_EQ(written(integer(10)), "10");
  EXPECT_EQ(written(integer(INT_MAX)), "2147483647");
}

TEST(WriterPutArg, WritesAMinusBeforeNegativeIntegers) {
  EXPECT_EQ(written(integer(-1)), "-1");
  EXPECT_EQ(written(integer(-100)), "-100");
  EXPECT_EQ(written(integer(-INT_MAX)), "-2147483647");
}

TEST(WriterPutArg, WritesTheMostNegativeIntegerWhole) {
  EXPECT_EQ(written(integer(INT_MIN)), "-2147483648");
}

TEST(WriterPutArg, WritesBooleansAsOneAndZero) {
  EXPECT_EQ(written(lvArg::TrueValue), "1");
  EXPECT_EQ(written(lvArg::FalseValue), "0");
}

// ---- Words -------------------------------------------------------------------------------------

TEST(WriterPutArg, WritesIdentifiersBare) {
  for (std::string const text : {"a", "Z", "_", "abc", "_tmp1", "x_9", "A0", "__"}) {
    EXPECT_EQ(written(text), text);
  }
}

TEST(WriterPutArg, WritesInternedIdentifiersBare) { EXPECT_EQ(written(lvString("name")), "name"); }

TEST(WriterPutArg, QuotesWhatStartsWithADigit) { EXPECT_EQ(written("9a"), quoted("9a")); }

TEST(WriterPutArg, QuotesTextWithAnyOtherByteThanLettersDigitsAndUnderscores) {
  for (std::string const text : {"a b", "a-b", "a.b", "a(", "a@", "a[", "a`", "a{", "a/", "a\\"}) {
    EXPECT_EQ(written(text), quoted(text));
  }
}

TEST(WriterPutArg, QuotesTextThatStartsWithAnyOtherByte) {
  for (std::string const text : {" a", "-1", "#nil", "@a", "[a", "`a", "{a"}) {
    EXPECT_EQ(written(text), quoted(text));
  }
}

TEST(WriterPutArg, QuotesBytesFrom128OnInThePlainLocale) {
  for (int byte = 128; byte < 256; ++byte) {
    std::string const text(1, static_cast<char>(byte));
    EXPECT_EQ(written(text), quoted(text)) << byte;
    EXPECT_EQ(written("a" + text), quoted("a" + text)) << byte;
  }
}

TEST(WriterPutArg, QuotesIdentifiersWhenBareWordsAreOff) {
  TextWriter writer;
  lvLayoutAccess<lvtStringArgDest>::setFlags(writer, 0);
  EXPECT_EQ(writer.putArg(test::string("abc")), 0);
  EXPECT_EQ(writer.text(), "\"abc\"");
}

TEST(WriterPutArg, WritesTheEmptyStringAsTwoQuotes) {
  EXPECT_EQ(written(""), "\"\"");
  EXPECT_EQ(written(lvString("")), "\"\"");
}

TEST(WriterPutArg, WritesAStringWithoutTextAsTwoQuotes) {
  EXPECT_EQ(written(lvArg(*new lvrString)), "\"\"");
}

TEST(WriterPutArg, WritesTheStringNilBare) { EXPECT_EQ(written("nil"), "nil"); }

// ---- Escapes -----------------------------------------------------------------------------------

TEST(WriterPutArg, EscapesControlBytesAndDelete) {
  EXPECT_EQ(written("\x01\x09\n\x1F\x7F"), "\"%01%09%0A%1F%7F\"");
}

TEST(WriterPutArg, EscapesQuotesAndPercentSigns) {
  EXPECT_EQ(written("\""), "\"%22\"");
  EXPECT_EQ(written("100%"), "\"100%25\"");
}

TEST(WriterPutArg, EscapesJustTheNamedBytes) {
  for (int byte = 1; byte < 256; ++byte) {
    auto const c = static_cast<char>(byte);
    bool const escapes = byte < 32 || byte == 127 || c == '"' || c == '%' || c == ':';
    std::string const expected =
        std::string("- ") + (escapes ? test::escaped(c) : std::string(1, c));
    EXPECT_EQ(written(std::string("- ") + c), quoted(expected)) << byte;
  }
}

TEST(WriterPutArg, EscapesWithTwoUpperCaseDigits) {
  EXPECT_EQ(written("\x0A\x0B\x0C\x0D\x0E\x0F"), "\"%0A%0B%0C%0D%0E%0F\"");
}

TEST(WriterPutArg, EndsAStringAtItsFirstNul) {
  EXPECT_EQ(written(std::string("a b\0c", 5)), "\"a b\"");
  EXPECT_EQ(written(std::string("\0", 1)), "\"\"");
}

TEST(WriterPutArg, QuotesAnIdentifierWithANulBehind) {
  EXPECT_EQ(written(std::string("abc\0", 4)), "\"abc\"");
}

TEST(WriterPutArg, WritesLongStringsWhole) {
  std::string const text = std::string(400, 'x') + ' ' + std::string(400, 'y');
  EXPECT_EQ(written(text), quoted(text));
  EXPECT_EQ(written(std::string(900, 'w')), std::string(900, 'w'));
}

TEST(WriterPutArg, WritesStringsBeyondTheLengthFieldWhole) {
  for (std::string const& text : {std::string(65534, 'w'), std::string(65535, 'w'),
                                  std::string(70000, 'w'), std::string(70000, '-')}) {
    TextWriter writer(80000);
    EXPECT_EQ(writer.putArg(test::string(text)), 0);
    EXPECT_EQ(writer.text(), text[0] == 'w' ? text : quoted(text));
  }
}

// ---- Everything else ---------------------------------------------------------------------------

TEST(WriterPutArg, WritesNilAsNil) { EXPECT_EQ(written(lvArg()), "#nil"); }

TEST(WriterPutArg, WritesWhatIsNoScalarAsNil) {
  test::Probe::Log log;
  EXPECT_EQ(written(lvArg(*new test::Probe(log))), "#nil");
  EXPECT_EQ(written(lvArg(*lvrHashMap::defaultCtorMethod())), "#nil");
  EXPECT_EQ(written(lvArg(*lvrVector::defaultCtorMethod())), "#nil");
  EXPECT_EQ(written(test::classNamed("Point")), "#nil");
}

TEST(WriterPutArg, WritesAStringCellWithoutObjectAsNil) {
  lvArg cell = test::string("gone");
  cell.releaseData();
  ASSERT_EQ(cell.getType(), lvArg::StringType);
  EXPECT_EQ(written(cell), "#nil");
}

TEST(WriterPutArg, IgnoresTheBitsThatBelongToContainers) {
  lvArg cell = integer(12);
  test::setBookkeeping(cell, 0xFFFFFFE0U);
  EXPECT_EQ(written(cell), "12");
}

TEST(WriterPutArg, LeavesTheCountOfAStringAlone) {
  lvArg const cell = test::string("text");
  EXPECT_EQ(written(cell), "text");
  EXPECT_EQ(test::countOf(cell), 1);
}

TEST(WriterPutArg, SeparatesTopLevelValuesByCommas) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.putArg(test::string("a b"));
  writer.putArg(lvArg());
  EXPECT_EQ(writer.text(), "1,\"a b\",#nil");
}

TEST(WriterPutArg, LeavesASeparatorPending) {
  TextWriter writer;
  EXPECT_FALSE(writer.isSeparatorPending());
  writer.putArg(lvArg());
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST(WriterPutArg, NeverWritesBlanks) {
  TextWriter writer;
  writer.enter(test::vectorKind, 2);
  writer.putArg(integer(1));
  writer.putArg(test::string("\t\n\v\f\r"));
  writer.leave();
  EXPECT_EQ(writer.text().find_first_of(" \t\n\v\f\r"), std::string::npos);
}

TEST(WriterSourceError, IsAcceptedAndLeavesNoMark) {
  TextWriter writer;
  writer.putArg(integer(1));
  for (int error = lvArgDest::SOURCE_ERROR_NOT_A_MAP; error <= lvArgDest::SOURCE_ERROR_FIELD_ACCESS;
       ++error) {
    EXPECT_EQ(writer.sourceError(static_cast<lvArgDest::sourceError_t>(error)), 0);
  }
  EXPECT_EQ(writer.text(), "1");
  EXPECT_TRUE(writer.isSeparatorPending());
}

// ---- Whole texts -------------------------------------------------------------------------------

class WriterWholeText : public testing::Test {
 protected:
  void putAll(std::initializer_list<lvArg> values) {
    for (lvArg const& value : values) {
      EXPECT_EQ(writer.putArg(value), 0);
    }
  }

  void putTuple(lvArg const& key, lvArg const& value) {
    EXPECT_EQ(writer.enter(test::tupleKind, 2), 0);
    putAll({key, value});
    EXPECT_EQ(writer.leave(), 0);
  }

  void enterMap(int size) { EXPECT_EQ(writer.enter(test::mapKind, size), 0); }
  void enterVector(int size) { EXPECT_EQ(writer.enter(test::vectorKind, size), 0); }
  void enterObject(char const* name) { EXPECT_EQ(writer.enter(test::classNamed(name), -1), 0); }
  void leave() { EXPECT_EQ(writer.leave(), 0); }

  void putScalars() {
    enterVector(5);
    putAll({integer(1), integer(-2), test::string("hello world"), lvArg(), test::string("abc")});
    leave();
  }

  void putNameAndCount() {
    enterMap(2);
    putTuple(test::string("name"), test::string("x y"));
    putTuple(test::string("count"), integer(3));
    leave();
  }

  TextWriter writer;
};

TEST_F(WriterWholeText, OfAVectorOfScalars) {
  putScalars();
  EXPECT_EQ(writer.text(), "{1,-2,\"hello world\",#nil,abc}");
}

TEST_F(WriterWholeText, OfAMap) {
  putNameAndCount();
  EXPECT_EQ(writer.text(), "{(name=\"x y\"),(count=3)}");
}

TEST_F(WriterWholeText, OfAnObject) {
  enterObject("Point");
  putAll({integer(3), integer(4)});
  leave();
  EXPECT_EQ(writer.text(), "*Point{3,4}");
}

TEST_F(WriterWholeText, OfNestedContainers) {
  enterVector(3);
  enterMap(1);
  putTuple(test::string("k"), test::string("v"));
  leave();
  enterObject("Point");
  putAll({integer(1), integer(2)});
  leave();
  putAll({test::string("say \"hi\": 100%")});
  leave();
  EXPECT_EQ(writer.text(), "{{(k=v)},*Point{1,2},\"say %22hi%22%3A 100%25\"}");
}

TEST_F(WriterWholeText, OfAnObjectWhoseClassNameNeedsQuotes) {
  enterObject("my class");
  putAll({test::string("a\nb"), test::string("_tmp1")});
  leave();
  EXPECT_EQ(writer.text(), "*\"my class\"{\"a%0Ab\",_tmp1}");
}

TEST_F(WriterWholeText, OfAVectorWithItsSize) {
  writer.setTransferSizes(true);
  putScalars();
  EXPECT_EQ(writer.text(), "{[5]1,-2,\"hello world\",#nil,abc}");
}

TEST_F(WriterWholeText, OfAMapWithItsSizes) {
  writer.setTransferSizes(true);
  putNameAndCount();
  EXPECT_EQ(writer.text(), "{[2]([2]name=\"x y\"),([2]count=3)}");
}

TEST_F(WriterWholeText, OfEmptyContainers) {
  enterVector(0);
  leave();
  enterMap(0);
  leave();
  EXPECT_EQ(writer.text(), "{},{}");
}

// ---- The two output routines -------------------------------------------------------------------

// A place of `room` bytes on the heap, and the cursor and the room that the routines move.
struct Place {
  explicit Place(int bytes)
      : block(std::make_unique<char[]>(static_cast<std::size_t>(bytes))),
        cursor(block.get()),
        room(bytes) {}

  std::string text() const { return std::string(block.get(), cursor); }

  std::unique_ptr<char[]> block;
  char* cursor;
  int room;
};

TEST(WriterOutputInteger, WritesInDecimalAndMovesOn) {
  TextWriter writer;
  Place place(20);
  EXPECT_EQ(writer.outputInteger(&place.cursor, &place.room, -120), 0);
  EXPECT_EQ(writer.outputInteger(&place.cursor, &place.room, 3), 0);
  EXPECT_EQ(place.text(), "-1203");
  EXPECT_EQ(place.room, 15);
}

TEST(WriterOutputInteger, LeavesTheWritersOwnTextAlone) {
  TextWriter writer;
  Place place(20);
  writer.outputInteger(&place.cursor, &place.room, 5);
  EXPECT_EQ(writer.text(), "");
  EXPECT_TRUE(writer.isRestUntouched());
}

TEST(WriterOutputInteger, FitsInAPlaceOfItsLengthAndInNoSmallerOne) {
  TextWriter writer;
  for (int const value : {0, 9, 10, -1, -10, 99999, INT_MAX, INT_MIN, -999999999, 1000000000}) {
    std::string const digits = std::to_string(value);
    auto const length = static_cast<int>(digits.size());
    for (int bytes = 0; bytes <= 12; ++bytes) {
      Place place(bytes);
      int const status = writer.outputInteger(&place.cursor, &place.room, value);
      EXPECT_EQ(status, bytes < length ? lvtStringArgDest::ROOM_ERROR : 0) << value << ' ' << bytes;
      EXPECT_EQ(place.text(), bytes < length ? "" : digits);
      EXPECT_EQ(place.room, bytes < length ? bytes : bytes - length);
    }
  }
}

TEST(WriterOutputInteger, WritesNothingIntoANegativeRoom) {
  TextWriter writer;
  Place place(0);
  place.room = -1;
  EXPECT_EQ(writer.outputInteger(&place.cursor, &place.room, 1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(place.text(), "");
  EXPECT_EQ(place.room, -1);
}

class WriterOutputQuotedString : public testing::Test {
 protected:
  int output(Place& place, std::string const& text, int count) {
    return writer.outputQuotedString(&place.cursor, &place.room, text.c_str(), count);
  }

  TextWriter writer;
};

TEST_F(WriterOutputQuotedString, WritesNoQuotesOfItsOwn) {
  Place place(20);
  EXPECT_EQ(output(place, "a b", -1), 0);
  EXPECT_EQ(place.text(), "a b");
  EXPECT_EQ(place.room, 17);
}

TEST_F(WriterOutputQuotedString, EscapesAndCountsThreeBytesEach) {
  Place place(20);
  EXPECT_EQ(output(place, "a:\"%", -1), 0);
  EXPECT_EQ(place.text(), "a%3A%22%25");
  EXPECT_EQ(place.room, 10);
}

TEST_F(WriterOutputQuotedString, OfNoBytesWritesNothing) {
  Place place(20);
  EXPECT_EQ(output(place, "abc", 0), 0);
  EXPECT_EQ(place.text(), "");
  EXPECT_EQ(place.room, 20);
}

TEST_F(WriterOutputQuotedString, OfACountWritesSoManyBytes) {
  Place place(20);
  EXPECT_EQ(output(place, "ab:cd", 3), 0);
  EXPECT_EQ(place.text(), "ab%3A");
}

TEST_F(WriterOutputQuotedString, TakesANullForAnEmptyText) {
  for (int const count : {-1, 0, 5}) {
    Place place(20);
    EXPECT_EQ(writer.outputQuotedString(&place.cursor, &place.room, nullptr, count), 0);
    EXPECT_EQ(place.text(), "");
    EXPECT_EQ(place.room, 20);
  }
}

TEST_F(WriterOutputQuotedString, ReadsNoFurtherThanTheCount) {
  Place place(20);
  std::unique_ptr<char[]> const unterminated(new char[3]{'a', 'b', 'c'});
  EXPECT_EQ(writer.outputQuotedString(&place.cursor, &place.room, unterminated.get(), 3), 0);
  EXPECT_EQ(place.text(), "abc");
}

TEST_F(WriterOutputQuotedString, StopsAtANulBeforeTheCount) {
  Place place(20);
  EXPECT_EQ(output(place, std::string("ab\0cd", 5), 5), 0);
  EXPECT_EQ(place.text(), "ab");
}

TEST_F(WriterOutputQuotedString, OfAnyNegativeCountStopsAtTheFirstNul) {
  for (int const count : {-1, -2, INT_MIN}) {
    Place place(20);
    EXPECT_EQ(output(place, std::string("ab\0cd", 5), count), 0);
    EXPECT_EQ(place.text(), "ab");
  }
}

TEST_F(WriterOutputQuotedString, CutsPlainBytesWithoutAComplaint) {
  Place place(3);
  EXPECT_EQ(output(place, "abcd", -1), 0);
  EXPECT_EQ(place.text(), "abc");
  EXPECT_EQ(place.room, 0);
}

TEST_F(WriterOutputQuotedString, AsksForFourBytesForAnEscapedOne) {
  Place place(3);
  EXPECT_EQ(output(place, ":", -1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(place.text(), "");
  EXPECT_EQ(place.room, 3);
}

TEST_F(WriterOutputQuotedString, TakesThreeOfTheFourBytes) {
  Place place(4);
  EXPECT_EQ(output(place, ":", -1), 0);
  EXPECT_EQ(place.text(), "%3A");
  EXPECT_EQ(place.room, 1);
}

TEST_F(WriterOutputQuotedString, FillsWhatAnEscapeLeftWithAPlainByte) {
  Place place(4);
  EXPECT_EQ(output(place, ":a:", -1), 0);
  EXPECT_EQ(place.text(), "%3Aa");
  EXPECT_EQ(place.room, 0);
}

TEST_F(WriterOutputQuotedString, AnswersTheRoomErrorForTheEscapeThatIsCut) {
  Place place(7);
  EXPECT_EQ(output(place, "a:b:", -1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(place.text(), "a%3Ab");
  EXPECT_EQ(place.room, 2);
}

TEST_F(WriterOutputQuotedString, StopsQuietlyWhenNoRoomIsLeftAtAll) {
  Place place(0);
  EXPECT_EQ(output(place, "a", -1), 0);
  EXPECT_EQ(output(place, ":", -1), 0);
  place.room = -5;
  EXPECT_EQ(output(place, "a", -1), 0);
  EXPECT_EQ(place.text(), "");
  EXPECT_EQ(place.room, -5);
}

TEST_F(WriterOutputQuotedString, AgreesWithTheModelInEveryRoom) {
  for (std::string const text :
       {"", "plain text", ":::::", "a:b:c:d", "ab:\x7F:xyz", "\xFF:\xC3\xA9", "\n", "::a", "a::"}) {
    for (int bytes = 0; bytes <= 24; ++bytes) {
      for (int count = -1; count <= static_cast<int>(text.size()); ++count) {
        Place place(bytes);
        int const status = output(place, text, count);
        test::Escapes const expected(
            count < 0 ? text : text.substr(0, static_cast<std::size_t>(count)), bytes);
        EXPECT_EQ(status, expected.status) << text << ' ' << bytes << ' ' << count;
        EXPECT_EQ(place.text(), expected.joined()) << text << ' ' << bytes << ' ' << count;
        EXPECT_EQ(place.room, expected.room) << text << ' ' << bytes << ' ' << count;
      }
    }
  }
}

}  // namespace
