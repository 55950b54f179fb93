// The tokens of the text format, except quoted strings.

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "support/TextReading.h"

namespace {

using test::TextReader;
using test::tokensOf;

TEST(ParserGetNextToken, OfAnEmptyTextIsTheEnd) {
  TextReader reader("");
  EXPECT_EQ(reader.token(), "end");
  EXPECT_EQ(reader.token(), "end");
  EXPECT_EQ(reader.offset(), 0);
}

TEST(ParserGetNextToken, OfBlanksOnlyIsTheEndBehindThem) {
  TextReader reader(" \t\n\v\f\r ");
  EXPECT_EQ(reader.token(), "end");
  EXPECT_EQ(reader.offset(), 7);
}

TEST(ParserGetNextToken, SkipsEveryKindOfBlankBetweenTokens) {
  EXPECT_EQ(tokensOf(" a\tb\n1\v{\f\"q\"\r}  "), "'a' 'b' 1 { 'q' } end");
}

TEST(ParserGetNextToken, NeedsNoBlanksBetweenTokens) {
  EXPECT_EQ(tokensOf("{a\"b\"-1#x}"), "{ 'a' 'b' - 1 # 'x' } end");
}

TEST(ParserGetNextToken, StandsJustBehindTheTokenThatWasRead) {
  TextReader reader(" ab  12 \"q\" , ");
  std::string const expected[] = {"'ab' 3", "12 7", "'q' 11", ", 13", "end 14", "end 14"};
  for (std::string const& each : expected) {
    std::string const token = reader.token();
    EXPECT_EQ(token + ' ' + std::to_string(reader.offset()), each);
  }
}

// The token of every single byte, by itself.
std::string tokenOfByte(int byte) {
  std::string const itself(1, static_cast<char>(byte));
  if ((byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || byte == '_') {
    return "'" + itself + "' end";
  }
  if (byte >= '0' && byte <= '9') {
    return itself + " end";
  }
  if (byte == ' ' || (byte >= '\t' && byte <= '\r')) {
    return "end";
  }
  if (byte == '"') {
    return "'' end";
  }
  bool const isPunctuation =
      byte != 0 && std::string("#()*,-=[]{}").find(itself) != std::string::npos;
  return (isPunctuation ? itself : "unknown") + " end";
}

TEST(ParserGetNextToken, TakesEachSingleByteForWhatItIs) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE("byte " + std::to_string(byte));
    EXPECT_EQ(tokensOf(std::string(1, static_cast<char>(byte))), tokenOfByte(byte));
  }
}

TEST(ParserGetNextToken, EndsAWordOrNumberAtEachByteThatCannotContinueIt) {
  for (int byte = 0; byte < 256; ++byte) {
    SCOPED_TRACE("byte " + std::to_string(byte));
    std::string const alone = tokenOfByte(byte);
    bool const isDigit = byte >= '0' && byte <= '9';
    bool const isWord = alone[0] == '\'' && byte != '"';
    std::string const itself(1, static_cast<char>(byte));
    EXPECT_EQ(tokensOf("a" + itself), isDigit || isWord ? "'a" + itself + "' end" : "'a' " + alone);
    EXPECT_EQ(tokensOf("7" + itself), isDigit ? "7" + itself + " end" : "7 " + alone);
  }
}

TEST(ParserGetNextToken, AnswersTheNumbersThatCompiledProgramsKnow) {
  lvArg out;
  lvtStringArgSource parser("1 a 4294967296 $ {", -1);
  EXPECT_EQ(parser.getNextToken(out), 257);
  EXPECT_EQ(parser.getNextToken(out), 258);
  EXPECT_EQ(parser.getNextToken(out), 259);
  EXPECT_EQ(parser.getNextToken(out), -1);
  EXPECT_EQ(parser.getNextToken(out), 123);
  EXPECT_EQ(parser.getNextToken(out), 256);
}

TEST(ParserGetNextToken, ConsumesOneByteForAnUnknownToken) {
  TextReader reader("$\xC3\xA9 a");
  EXPECT_EQ(reader.token(), "unknown");
  EXPECT_EQ(reader.offset(), 1);
  EXPECT_EQ(reader.token(), "unknown");
  EXPECT_EQ(reader.offset(), 2);
  EXPECT_EQ(reader.allTokens(), "unknown 'a' end");
}

TEST(ParserGetNextToken, TakesANulByteForAnUnknownToken) {
  EXPECT_EQ(tokensOf(std::string("a\0b\0", 4)), "'a' unknown 'b' unknown end");
}

// ---- Words -------------------------------------------------------------------------------------

TEST(ParserWord, TakesLettersDigitsAndUnderscores) {
  EXPECT_EQ(tokensOf("abcXYZ_019"), "'abcXYZ_019' end");
}

TEST(ParserWord, MayStartWithAnUnderscoreButNotWithADigit) {
  EXPECT_EQ(tokensOf("_ _9 __ 9_"), "'_' '_9' '__' 9 '_' end");
}

TEST(ParserWord, EndsAtTheEndOfTheText) {
  test::ExactText const text("abc");
  lvtStringArgSource parser(text.data(), 2);
  lvArg out;
  EXPECT_EQ(parser.getNextToken(out), lvtStringArgSource::TOKEN_STRING);
  EXPECT_EQ(test::textOf(out), "ab");
}

TEST(ParserWord, IsAStringOfItsOwnThatIsNotInterned) {
  lvString const interned("word");
  lvtStringArgSource parser("word", 4);
  lvArg out;
  parser.getNextToken(out);
  ASSERT_EQ(out.getType(), lvArg::StringType);
  EXPECT_EQ(test::countOf(out), 1);
  EXPECT_FALSE(static_cast<lvrString*>(out.getReferencable())->isInterned());
}

TEST(ParserWord, IsACopyThatOutlivesTheText) {
  std::string text = "word";
  lvtStringArgSource parser(text.data(), 4);
  lvArg out;
  parser.getNextToken(out);
  text = "xxxx";
  EXPECT_EQ(test::textOf(out), "word");
}

TEST(ParserWord, IsReadWholeAtAnyLength) {
  for (std::size_t const length : {499U, 500U, 501U, 65534U, 65535U, 65536U, 100000U}) {
    SCOPED_TRACE(length);
    std::string const word(length, 'w');
    TextReader reader(word + "-");
    EXPECT_TRUE(reader.token() == "'" + word + "'");
    EXPECT_EQ(reader.token(), "-");
  }
}

// ---- Numbers -----------------------------------------------------------------------------------

TEST(ParserNumber, IsDecimalWhateverItsLeadingZeros) {
  EXPECT_EQ(tokensOf("0 7 007 0000000000000000012 1234567890"), "0 7 7 12 1234567890 end");
}

TEST(ParserNumber, EndsWhereTheDigitsEnd) {
  EXPECT_EQ(tokensOf("12ab 0x1F 1.5 1e3 1-2"), "12 'ab' 0 'x1F' 1 unknown 5 1 'e3' 1 - 2 end");
}

TEST(ParserNumber, HasNoSignOfItsOwn) { EXPECT_EQ(tokensOf("-5 +5"), "- 5 unknown 5 end"); }

TEST(ParserNumber, FromTwoToThePowerOf31OnIsNegative) {
  EXPECT_EQ(tokensOf("2147483647"), "2147483647 end");
  EXPECT_EQ(tokensOf("2147483648"), "-2147483648 end");
  EXPECT_EQ(tokensOf("4294967295"), "-1 end");
}

TEST(ParserNumber, OverflowsWhenAStepMakesItSmaller) {
  EXPECT_EQ(tokensOf("4294967296"), "overflow(nil) end");
  EXPECT_EQ(tokensOf("4294967299"), "overflow(nil) end");
  EXPECT_EQ(tokensOf("99999999999"), "overflow(nil) end");
}

TEST(ParserNumber, StaysOverflownWhenLaterDigitsMakeItLarger) {
  EXPECT_EQ(tokensOf("42949672960"), "overflow(nil) end");
  EXPECT_EQ(tokensOf("42949672961234567"), "overflow(nil) end");
}

TEST(ParserNumber, ThatOverflowsIsConsumedToItsLastDigit) {
  TextReader reader("4294967296000ab");
  EXPECT_EQ(reader.token(), "overflow(nil)");
  EXPECT_EQ(reader.offset(), 13);
  EXPECT_EQ(reader.token(), "'ab'");
}

TEST(ParserNumber, IsStoredAsAnIntegerCell) {
  lvtStringArgSource parser("2147483648", -1);
  lvArg out;
  parser.getNextToken(out);
  EXPECT_EQ(out.getType(), lvArg::IntType);
  EXPECT_EQ(out.getInt(), INT_MIN);
}

TEST(ParserNumber, EndsAtTheEndOfTheText) {
  test::ExactText const text("1239");
  lvtStringArgSource parser(text.data(), 3);
  lvArg out;
  parser.getNextToken(out);
  EXPECT_EQ(out.getInt(), 123);
}

// ---- The output value --------------------------------------------------------------------------

TEST(ParserGetNextToken, KeepsTheBookkeepingBitsOfItsOutputValue) {
  lvtStringArgSource parser("1 a \"q\" 4294967296", -1);
  lvArg out;
  test::setBookkeeping(out, 0xABCDE0);
  for (int token = 0; token < 4; ++token) {
    parser.getNextToken(out);
    EXPECT_EQ(test::bookkeepingOf(out), 0xABCDE0U) << "token " << token;
  }
}

TEST(ParserGetNextToken, ReleasesWhatItsOutputValueHeld) {
  for (char const* const text : {"1", "a", "\"q\"", "4294967296"}) {
    SCOPED_TRACE(text);
    lvArg const held = test::string("old");
    lvArg out(held);
    lvtStringArgSource(text, -1).getNextToken(out);
    EXPECT_EQ(test::countOf(held), 1);
  }
}

TEST(ParserGetNextToken, LeavesItsOutputValueAloneForPunctuationUnknownTokensAndTheEnd) {
  for (char const* const text : {"#", "(", ")", "*", ",", "-", "=", "[", "]", "{", "}", "$", ""}) {
    SCOPED_TRACE(text);
    lvArg const held = test::string("old");
    lvArg out(held);
    lvtStringArgSource(text, -1).getNextToken(out);
    EXPECT_TRUE(out.eq(held));
  }
}

TEST(ParserGetNextToken, DoesNotDisturbTheReadingOfItems) {
  TextReader reader("{1,skipped 2}");
  EXPECT_EQ(reader.arg(), "begin(25)");
  EXPECT_EQ(reader.arg(), "1");
  EXPECT_EQ(reader.token(), ",");
  EXPECT_EQ(reader.token(), "'skipped'");
  EXPECT_EQ(reader.allArgs(), "close(nil) end skipped:1");
}

TEST(ParserGetNextToken, LeavesAPushedBackTokenToTheReadingOfItems) {
  TextReader reader("{(lost,b)}");
  EXPECT_EQ(reader.arg(), "begin(24)");
  EXPECT_EQ(reader.token(), "'lost'");
  EXPECT_EQ(reader.allArgs(), "begin(32) nil 'b' close(nil) close(nil) end");
}

}  // namespace
