// What looks like a mistake of the parser and is required.

#include <gtest/gtest.h>

#include <string>

#include "support/TextReading.h"

namespace {

using test::argsOf;
using test::TextReader;
using test::tokensOf;

TEST(ParserOddities, SizePrefixesAreReadAsItems) {
  EXPECT_EQ(argsOf("{[3]1,2,3}"), "begin(25) 3 2 3 close(nil) end skipped:3");
  EXPECT_EQ(argsOf("{[5]1,-2,\"hello world\",#nil,abc}"),
            "begin(25) 5 -2 'hello world' nil 'abc' close(nil) end skipped:3");
}

TEST(ParserOddities, AMapWithASizePrefixIsReadAsAVector) {
  EXPECT_EQ(argsOf("{[2]([2]name=\"x y\"),([2]count=3)}"),
            "begin(25) 2 'x y' close(nil) begin(32) 2 3 close(nil) close(nil) end skipped:10");
}

TEST(ParserOddities, AnEmptyMapIsReadAsAVector) {
  EXPECT_EQ(argsOf("{}"), "begin(25) close(same) end");
}

TEST(ParserOddities, ABackslashIsAnEscapeThoughTheWriterNeverEscapesIt) {
  EXPECT_EQ(tokensOf(R"("a\nb")"), "'a\nb' end");
  EXPECT_EQ(tokensOf(R"("dir\",next)"), "'dir\",next' end");
}

TEST(ParserOddities, APercentSignTranslatesLettersAsABackslashDoes) {
  EXPECT_EQ(tokensOf("\"%n%t%r%z\""), "'\n\t\rz' end");
}

TEST(ParserOddities, AnEscapedZeroVanishes) { EXPECT_EQ(tokensOf("\"a%00b\""), "'ab' end"); }

TEST(ParserOddities, TheWordNilIsAString) { EXPECT_EQ(argsOf("nil"), "'nil' end"); }

TEST(ParserOddities, AnyTokenBehindAHashIsConsumed) {
  EXPECT_EQ(argsOf("{#}"), "begin(25) nil end");
  EXPECT_EQ(argsOf("{#,1}"), "begin(25) nil close(nil) end skipped:1");
}

TEST(ParserOddities, AHashAtTheEndStillGivesNil) {
  TextReader reader("#");
  EXPECT_EQ(reader.arg(), "nil");
  EXPECT_EQ(reader.arg(), "end");
}

TEST(ParserOddities, TheTwoSeparatorsAreInterchangeable) {
  EXPECT_EQ(argsOf("(a,b)"), argsOf("(a=b)"));
  EXPECT_EQ(argsOf("{1=2=3}"), argsOf("{1,2,3}"));
  EXPECT_EQ(argsOf("*P{1=2}"), argsOf("*P{1,2}"));
  EXPECT_EQ(argsOf("1=2"), argsOf("1,2"));
}

TEST(ParserOddities, BracketsAreNotMatched) {
  EXPECT_EQ(argsOf("{1)"), "begin(25) 1 close(nil) end");
  EXPECT_EQ(argsOf("(1}"), "begin(32) 1 close(nil) end");
  EXPECT_EQ(argsOf("1}})"), "1 close(nil) close(nil) close(nil) end");
}

TEST(ParserOddities, AMinusThatNoNumberFollowsIsDropped) {
  EXPECT_EQ(argsOf("-x"), "'x' end skipped:1");
}

TEST(ParserOddities, AWrapThatDoesNotMakeANumberSmallerGoesUnnoticed) {
  EXPECT_EQ(tokensOf("9999999999"), "1410065407 end");
  EXPECT_EQ(tokensOf("4294967296"), "overflow(nil) end");
}

TEST(ParserOddities, NumbersBeyondTheSignedRangeAreNegative) {
  EXPECT_EQ(argsOf("4294967295"), "-1 end");
  EXPECT_EQ(argsOf("-4294967295"), "1 end");
}

TEST(ParserOddities, TopLevelItemsWithoutASeparatorAreSkipped) {
  EXPECT_EQ(argsOf("1 2"), "1 end skipped:1");
}

TEST(ParserOddities, AnEndOfFrameIsCountedAsSkippedBehindASeparatorOnly) {
  EXPECT_EQ(argsOf("{1,}"), "begin(25) 1 close(same) end skipped:1");
  EXPECT_EQ(argsOf("{,}"), "begin(25) nil close(same) end");
}

TEST(ParserOddities, AStarTakesWhateverValueTheLastTokenLeftForTheClassName) {
  EXPECT_EQ(argsOf("*{{1}"), "begin(nil) 1 close(nil) end");
  EXPECT_EQ(argsOf("abc,*,{1}"), "'abc' begin('abc') 1 close(nil) end");
  EXPECT_EQ(argsOf("17,*#{1}"), "17 begin(17) 1 close(nil) end");
  EXPECT_EQ(argsOf("*4294967296{1}"), "begin(nil) 1 close(nil) end");
}

TEST(ParserOddities, AStarTakesTheBraceBehindItForTheClassName) {
  EXPECT_EQ(argsOf("*{"), "end");
  EXPECT_EQ(argsOf("abc,*{1}"), "'abc' end skipped:2");
}

TEST(ParserOddities, ANumberServesAsAClassName) {
  EXPECT_EQ(argsOf("*24{"), "begin(24) end");
  EXPECT_EQ(argsOf("*5{1}"), "begin(5) 1 close(nil) end");
}

TEST(ParserOddities, TheLastTokenValueOutlivesTheTokensThatHaveNone) {
  TextReader reader("word,,{*");
  reader.allArgs();
  EXPECT_EQ(test::textOf(TextReader::Access::tokenValue(reader.parser())), "word");
}

TEST(ParserOddities, TheErrorCountIsNeverReset) {
  TextReader reader("$1");
  reader.allArgs();
  reader.parser().initParse();
  reader.parser().setSource("$2", 2);
  EXPECT_EQ(reader.allArgs(), "2 end skipped:2");
}

TEST(ParserOddities, TheErrorCountHasSixteenBits) {
  TextReader reader(std::string(65535, '['));
  EXPECT_EQ(reader.allArgs(), "end skipped:65535");
  reader.parser().setSource("[[1", 3);
  EXPECT_EQ(reader.allArgs(), "1 end skipped:1");
}

TEST(ParserOddities, AnUnterminatedStringIsNoError) {
  EXPECT_EQ(argsOf("{1,\"abc}"), "begin(25) 1 'abc}' end");
}

TEST(ParserOddities, AnExpectedStringStartsAtTheFirstByteThatIsNoBlank) {
  TextReader reader("  }a\"");
  reader.parser().expectQuotedString();
  EXPECT_EQ(reader.token(), "'}a'");
}

}  // namespace
