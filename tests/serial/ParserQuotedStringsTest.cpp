// Quoted strings: where they end, what their escapes stand for, and how long ones are stored.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/TextReading.h"

namespace {

using test::ExactText;
using test::TextReader;
using test::tokensOf;

// A long string moves from the stack to the heap behind so many bytes.
constexpr std::size_t LocalSize = 500;

// Reads one token, which must be a string, and returns its bytes.
std::string readString(std::string_view text) {
  ExactText const exact(text);
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg out;
  EXPECT_EQ(parser.getNextToken(out), lvtStringArgSource::TOKEN_STRING);
  EXPECT_EQ(parser.getParseOffset(), exact.size());
  return test::textOf(out);
}

std::string inQuotes(std::string const& raw) { return '"' + raw + '"'; }

// ---- Where a string ends -----------------------------------------------------------------------

TEST(ParserQuotedString, MayBeEmpty) {
  TextReader reader("\"\"a");
  EXPECT_EQ(reader.token(), "''");
  EXPECT_EQ(reader.offset(), 2);
}

TEST(ParserQuotedString, ThatIsEmptyHasATextOfItsOwn) {
  lvArg out;
  lvtStringArgSource("\"\"", 2).getNextToken(out);
  int length = -1;
  ASSERT_NE(lvValue(out).getString(&length), nullptr);
  EXPECT_EQ(length, 0);
}

TEST(ParserQuotedString, EndsAtTheQuoteWhichIsConsumed) {
  TextReader reader("\"a b\"c");
  EXPECT_EQ(reader.token(), "'a b'");
  EXPECT_EQ(reader.offset(), 5);
  EXPECT_EQ(reader.token(), "'c'");
}

TEST(ParserQuotedString, EndsAtTheEndOfTheText) {
  EXPECT_EQ(readString("\"abc"), "abc");
  EXPECT_EQ(readString("\""), "");
}

TEST(ParserQuotedString, DoesNotReadBeyondTheLengthOfTheText) {
  ExactText const text("\"abcdef\"");
  lvtStringArgSource parser(text.data(), 4);
  lvArg out;
  parser.getNextToken(out);
  EXPECT_EQ(test::textOf(out), "abc");
  EXPECT_EQ(parser.getParseOffset(), 4);
}

TEST(ParserQuotedString, EndsAtANulByteWhichIsNotConsumed) {
  TextReader reader(std::string("\"ab\0cd\"", 7));
  EXPECT_EQ(reader.token(), "'ab'");
  EXPECT_EQ(reader.offset(), 3);
  EXPECT_EQ(reader.allTokens(), "unknown 'cd' '' end");
}

TEST(ParserQuotedString, ThatIsLongEndsAtANulByteWhichIsNotConsumed) {
  std::string const longText(800, 'a');
  TextReader reader('"' + longText + std::string("\0b", 2));
  EXPECT_EQ(reader.token(), "'" + longText + "'");
  EXPECT_EQ(reader.offset(), 801);
  EXPECT_EQ(reader.allTokens(), "unknown 'b' end");
}

// ---- Escapes -----------------------------------------------------------------------------------

TEST(ParserQuotedString, StoresEveryOtherByteAsItStands) {
  for (int byte = 1; byte < 256; ++byte) {
    if (byte == '"' || byte == '\\' || byte == '%') {
      continue;
    }
    SCOPED_TRACE("byte " + std::to_string(byte));
    std::string const raw = "<" + std::string(1, static_cast<char>(byte)) + ">";
    EXPECT_EQ(readString(inQuotes(raw)), raw);
  }
}

// What an escaped byte stands for, unless it is a digit of a number.
char translated(int byte) {
  switch (byte) {
    case 'n':
      return 10;
    case 't':
      return 9;
    case 'r':
      return 13;
    default:
      return static_cast<char>(byte);
  }
}

TEST(ParserQuotedString, TranslatesEachByteBehindABackslash) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE("byte " + std::to_string(byte));
    std::string const raw = std::string("<\\") + static_cast<char>(byte) + ">";
    EXPECT_EQ(readString(inQuotes(raw)), std::string("<") + translated(byte) + ">");
  }
}

bool isHexDigit(int byte) {
  return byte > 0 &&
         std::string("0123456789abcdefABCDEF").find(static_cast<char>(byte)) != std::string::npos;
}

TEST(ParserQuotedString, TranslatesEachByteBehindAPercentSignThatIsNoHexDigit) {
  for (int byte = 0; byte < 256; ++byte) {
    if (isHexDigit(byte)) {
      continue;
    }
    SCOPED_TRACE("byte " + std::to_string(byte));
    std::string const raw = std::string("<%") + static_cast<char>(byte) + ">";
    EXPECT_EQ(readString(inQuotes(raw)), std::string("<") + translated(byte) + ">");
  }
}

TEST(ParserQuotedString, ReadsTwoHexDigitsOfEitherCaseAsOneByte) {
  char const upper[] = "0123456789ABCDEF";
  char const lower[] = "0123456789abcdef";
  for (int byte = 1; byte < 256; ++byte) {
    SCOPED_TRACE("byte " + std::to_string(byte));
    std::string const raw = {'%', upper[byte / 16], lower[byte % 16], '.',
                             '%', lower[byte / 16], upper[byte % 16]};
    char const itself = static_cast<char>(byte);
    EXPECT_EQ(readString(inQuotes(raw)), std::string({itself, '.', itself}));
  }
}

TEST(ParserQuotedString, ReadsNoMoreThanTwoHexDigits) {
  EXPECT_EQ(readString("\"%414\""), "A4");
  EXPECT_EQ(readString("\"%4141\""), "A41");
}

TEST(ParserQuotedString, ReadsASingleHexDigitAsOneByteAndGoesOnNormally) {
  EXPECT_EQ(readString("\"%9z\""), "\tz");
  EXPECT_EQ(readString("\"%Fg\""), "\x0Fg");
  EXPECT_EQ(readString("\"%A\""), "\n");
  EXPECT_EQ(readString("\"%4%41\""),
            "\x04"
            "A");
  EXPECT_EQ(readString("\"%4\\n\""), "\x04\n");
}

TEST(ParserQuotedString, EndsAtAQuoteBehindASingleHexDigit) {
  TextReader reader("\"%9\"a");
  EXPECT_EQ(reader.token(), "'\t'");
  EXPECT_EQ(reader.token(), "'a'");
}

TEST(ParserQuotedString, ReadsASingleHexDigitAtTheEndOfTheText) {
  EXPECT_EQ(readString("\"a%9"), "a\t");
}

TEST(ParserQuotedString, EndsAtANulByteBehindASingleHexDigit) {
  EXPECT_EQ(tokensOf(std::string("\"%9\0", 4)), "'\t' unknown end");
}

TEST(ParserQuotedString, StoresNothingForTheValueZero) {
  EXPECT_EQ(readString("\"a%00b\""), "ab");
  EXPECT_EQ(readString("\"a%0z\""), "az");
  EXPECT_EQ(readString("\"%000\""), "0");
  EXPECT_EQ(readString("\"a%0"), "a");
  EXPECT_EQ(readString("\"%00\""), "");
}

TEST(ParserQuotedString, TakesTheEscapesOfQuotesBackslashesAndPercentSigns) {
  EXPECT_EQ(readString(R"("say \"hi\" %"there%" ")"), R"(say "hi" "there" )");
  EXPECT_EQ(readString(R"("a\\b%%c\%d%\e")"), R"(a\b%c%d\e)");
  EXPECT_EQ(readString("\"say %22hi%22%3A 100%25\""), "say \"hi\": 100%");
}

TEST(ParserQuotedString, EndsBehindAnEscapedBackslash) {
  TextReader reader(R"("a\\"b)");
  EXPECT_EQ(reader.token(), "'a\\'");
  EXPECT_EQ(reader.token(), "'b'");
}

TEST(ParserQuotedString, StoresABackslashOrPercentSignAtTheEndOfTheTextAsItStands) {
  EXPECT_EQ(readString("\"ab\\"), "ab\\");
  EXPECT_EQ(readString("\"ab%"), "ab%");
  EXPECT_EQ(readString("\"\\"), "\\");
  EXPECT_EQ(readString("\"%"), "%");
  EXPECT_EQ(readString("\"\\\\\\"), "\\\\");
}

TEST(ParserQuotedString, GoesOnBehindAnEscapedNulByte) {
  std::string const nul(1, '\0');
  EXPECT_EQ(readString("\"a\\" + nul + "b\""), "a" + nul + "b");
  EXPECT_EQ(readString("\"a%" + nul + "b\""), "a" + nul + "b");
  EXPECT_EQ(readString("\"a\\" + nul), "a" + nul);
}

// ---- Long strings ------------------------------------------------------------------------------

TEST(ParserLongString, IsReadWholeAtAnyLength) {
  for (std::size_t const length :
       {499U, 500U, 501U, 502U, 600U, 999U, 1000U, 1001U, 65534U, 65535U, 65536U, 100000U}) {
    SCOPED_TRACE(length);
    std::string raw(length, 'a');
    raw.front() = '<';
    raw.back() = '>';
    EXPECT_TRUE(readString(inQuotes(raw)) == raw);
    EXPECT_TRUE(readString('"' + raw) == raw) << "without a closing quote";
  }
}

struct Escape {
  char const* raw;
  std::string bytes;
};

std::vector<Escape> const& escapes() {
  static std::vector<Escape> const all = {
      {"\\n", "\n"},    {"\\\"", "\""}, {"\\\\", "\\"}, {"%22", "\""}, {"%\"", "\""}, {"%n", "\n"},
      {"%4z", "\x04z"}, {"%00", ""},    {"%0", ""},     {"%\\", "\\"}, {"\\%", "%"},  {"x", "x"},
  };
  return all;
}

std::string joined(std::string const& front, std::string const& middle, std::string const& back) {
  return front + middle + back;
}

TEST(ParserLongString, KeepsEveryEscapeAroundTheEndOfTheStackArea) {
  for (Escape const& escape : escapes()) {
    for (std::size_t lead = LocalSize - 4; lead <= LocalSize + 4; ++lead) {
      for (std::string const& tail : {std::string(), std::string("."), std::string(700, '.')}) {
        SCOPED_TRACE(std::string(escape.raw) + " behind " + std::to_string(lead) + " bytes");
        std::string const front(lead, 'a');
        EXPECT_EQ(readString(inQuotes(joined(front, escape.raw, tail))),
                  joined(front, escape.bytes, tail));
      }
    }
  }
}

TEST(ParserLongString, KeepsEveryEscapeAtTheEndOfATextWithoutAClosingQuote) {
  for (Escape const& escape : escapes()) {
    for (std::size_t lead = LocalSize - 4; lead <= LocalSize + 4; ++lead) {
      SCOPED_TRACE(std::string(escape.raw) + " behind " + std::to_string(lead) + " bytes");
      std::string const front(lead, 'a');
      EXPECT_EQ(readString('"' + front + escape.raw), front + escape.bytes);
    }
  }
}

TEST(ParserLongString, StoresABackslashOrPercentSignAtTheEndOfTheTextAsItStands) {
  for (std::size_t lead = LocalSize - 2; lead <= LocalSize + 2; ++lead) {
    std::string const front(lead, 'a');
    EXPECT_EQ(readString('"' + front + '\\'), front + '\\');
    EXPECT_EQ(readString('"' + front + '%'), front + '%');
  }
}

// A quote behind a percent sign does not end the string, however much follows it.
TEST(ParserLongString, HasRoomForAllThatFollowsAnEscapedQuote) {
  for (char const* const escape : {"%\"", "\\\"", "\\\\\\\"", "%\\%\""}) {
    SCOPED_TRACE(escape);
    std::string const front(LocalSize, 'a');
    std::string const back(20000, 'b');
    std::string const bytes = readString(inQuotes(joined(front, escape, back)));
    EXPECT_EQ(bytes.size(), front.size() + std::string(escape).size() / 2 + back.size());
    EXPECT_EQ(bytes.back(), 'b');
  }
}

TEST(ParserLongString, HasRoomForManyEscapedQuotes) {
  std::string raw(LocalSize - 1, 'a');
  std::string expected = raw;
  for (int i = 0; i < 5000; ++i) {
    raw += i % 2 == 0 ? "%\"" : "\\\"";
    expected += '"';
  }
  EXPECT_TRUE(readString(inQuotes(raw)) == expected);
}

TEST(ParserLongString, EndsAtAQuoteBehindEscapedBackslashes) {
  std::string const front(LocalSize, 'a');
  TextReader reader('"' + front + R"(\\\\"next "far away")");
  EXPECT_EQ(reader.token(), "'" + front + "\\\\'");
  EXPECT_EQ(reader.allTokens(), "'next' 'far away' end");
}

TEST(ParserLongString, OfEscapesOnlyIsReadWhole) {
  std::string raw;
  for (int i = 0; i < 700; ++i) {
    raw += "%0A";
  }
  EXPECT_EQ(readString(inQuotes(raw)), std::string(700, '\n'));
}

TEST(ParserLongString, ThatShrinksBelowTheStackAreaIsReadWhole) {
  std::string raw;
  for (int i = 0; i < 400; ++i) {
    raw += "%00%41";
  }
  EXPECT_EQ(readString(inQuotes(raw)), std::string(400, 'A'));
}

TEST(ParserLongString, OfSixHundredBytesWithEscapesReadsBackWhole) {
  std::string raw;
  std::string expected;
  for (int i = 0; i < 100; ++i) {
    raw += R"(ab%3A\tc%n)";
    expected += "ab:\tc\n";
  }
  EXPECT_EQ(expected.size(), 600U);
  EXPECT_EQ(readString(inQuotes(raw)), expected);
}

TEST(ParserLongString, ThatIsAnItemStandsBetweenItsNeighbours) {
  std::string const longText(600, 'a');
  EXPECT_EQ(test::argsOf("{1,\"" + longText + "\",2}"),
            "begin(25) 1 '" + longText + "' 2 close(nil) end");
}

TEST(ParserLongString, IsAStringOfItsOwnThatIsNotInterned) {
  std::string const text = inQuotes(std::string(600, 'a'));
  lvArg out;
  lvtStringArgSource(text.data(), -1).getNextToken(out);
  ASSERT_EQ(out.getType(), lvArg::StringType);
  EXPECT_EQ(test::countOf(out), 1);
  auto const& string = static_cast<lvrString const&>(*out.getReferencable());
  EXPECT_FALSE(string.isInterned());
  EXPECT_EQ(string.getText()[string.getLength()], '\0');
}

TEST(ParserLongString, HashesAndComparesAsTheSameTextDoes) {
  std::string const bytes(600, 'a');
  std::string const text = inQuotes(bytes);
  lvArg out;
  lvtStringArgSource(text.data(), -1).getNextToken(out);
  lvArg const same = test::string(bytes);
  EXPECT_EQ(out.hashCode(), same.hashCode());
  EXPECT_EQ(out.equiv(same), 1);
  EXPECT_EQ(out.compareTo(same), 0);
}

// ---- Strings whose opening quote is behind -----------------------------------------------------

// Reads as from within a string.
std::string tokensBehindAQuote(std::string_view text) {
  TextReader reader(text);
  reader.parser().expectQuotedString();
  return reader.allTokens();
}

TEST(ParserExpectQuotedString, StartsAStringAtTheNextByteThatStartsNoWordOrNumber) {
  EXPECT_EQ(tokensBehindAQuote("-a b\" c"), "'-a b' 'c' end");
  EXPECT_EQ(tokensBehindAQuote("{1}\"{"), "'{1}' { end");
  EXPECT_EQ(tokensBehindAQuote("\\n%41\"2"), "'\nA' 2 end");
}

TEST(ParserExpectQuotedString, ReadsAQuoteAsTheEndOfAnEmptyString) {
  EXPECT_EQ(tokensBehindAQuote("\"a"), "'' 'a' end");
}

TEST(ParserExpectQuotedString, SkipsBlanksBeforeTheString) {
  EXPECT_EQ(tokensBehindAQuote("  , \"x"), "', ' 'x' end");
}

TEST(ParserExpectQuotedString, WaitsWhileWordsAndNumbersCome) {
  EXPECT_EQ(tokensBehindAQuote("a _b 12 (c)\"d"), "'a' '_b' 12 '(c)' 'd' end");
}

TEST(ParserExpectQuotedString, HoldsForOneStringOnly) {
  TextReader reader("-\"-");
  reader.parser().expectQuotedString();
  EXPECT_EQ(reader.flags(), 2U);
  EXPECT_EQ(reader.token(), "'-'");
  EXPECT_EQ(reader.flags(), 0U);
  EXPECT_EQ(reader.token(), "-");
}

TEST(ParserExpectQuotedString, IsStillExpectedAfterTheEndOfTheInput) {
  TextReader reader(" ");
  reader.parser().expectQuotedString();
  EXPECT_EQ(reader.token(), "end");
  EXPECT_EQ(reader.flags(), 2U);
}

TEST(ParserExpectQuotedString, WaitsWhileAPushedBackTokenIsReadAgain) {
  TextReader reader("{a,}x\",2");
  EXPECT_EQ(reader.arg(), "begin(25)");
  EXPECT_EQ(reader.flags(), 1U);
  reader.parser().expectQuotedString();
  EXPECT_EQ(reader.arg(), "'a'");
  EXPECT_EQ(reader.flags(), 2U);
  EXPECT_EQ(reader.allArgs(), "2 end skipped:1");
}

TEST(ParserExpectQuotedString, HoldsForLongStringsToo) {
  std::string const bytes = "." + std::string(700, 'a');
  EXPECT_EQ(tokensBehindAQuote(bytes + "\"-"), "'" + bytes + "' - end");
}

TEST(ParserExpectQuotedString, IsForgottenByInitParse) {
  TextReader reader("-\"");
  reader.parser().expectQuotedString();
  reader.parser().initParse();
  EXPECT_EQ(reader.allTokens(), "- '' end");
}

TEST(ParserExpectQuotedString, GivesAnItem) {
  TextReader reader("{1,2}\",3");
  reader.parser().expectQuotedString();
  EXPECT_EQ(reader.allArgs(), "'{1,2}' 3 end");
}

}  // namespace
