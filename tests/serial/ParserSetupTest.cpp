// Making a parser, giving it a text, and moving about in that.

#include <gtest/gtest.h>

#include <string>

#include "support/TextReading.h"

namespace {

using test::ExactText;
using test::TextReader;
using Access = lvLayoutAccess<lvtStringArgSource>;

std::string argOf(lvtStringArgSource& parser) {
  lvArg out = test::pointer(test::UntouchedAddress);
  int const answer = parser.getArg(out);
  return test::shownAnswer(answer, test::shown(out));
}

// ---- The source interface ----------------------------------------------------------------------

// A source without tokens.
class Silence : public lvArgSource {
 public:
  int getArg(lvArg& /*out*/) override { return SOURCE_END; }
};

TEST(ArgSource, NamesTheNumbersThatCompiledProgramsKnow) {
  EXPECT_EQ(int{lvArgSource::SOURCE_ITEM}, 0);
  EXPECT_EQ(int{lvArgSource::SOURCE_FRAME_BEGIN}, 6);
  EXPECT_EQ(int{lvArgSource::SOURCE_FRAME_END}, 7);
  EXPECT_EQ(int{lvArgSource::SOURCE_END}, 9);
}

TEST(ArgSourceGetNextToken, OfASourceWithoutTokensIsTheEnd) {
  Silence source;
  lvArg out = test::integer(3);
  EXPECT_EQ(source.getNextToken(out), lvtStringArgSource::TOKEN_END);
  EXPECT_EQ(out.getInt(), 3);
}

TEST(ArgSource, IsWhatAParserIs) {
  lvtStringArgSource parser("a 1", -1);
  lvArgSource& source = parser;
  lvArg out;
  EXPECT_EQ(source.getNextToken(out), lvtStringArgSource::TOKEN_STRING);
  EXPECT_EQ(source.getArg(out), lvArgSource::SOURCE_ITEM);
  EXPECT_EQ(out.getInt(), 1);
}

TEST(ArgSource, DestroysThroughItsBase) {
  lvString const text("a text that is kept");
  int const before = test::countOf(text);
  lvArgSource* const source = new lvtStringArgSource(text);
  EXPECT_EQ(test::countOf(text), before + 1);
  delete source;
  EXPECT_EQ(test::countOf(text), before);
}

// ---- Making ------------------------------------------------------------------------------------

TEST(ParserConstructor, WithoutATextReadsAsTheEnd) {
  lvtStringArgSource parser;
  EXPECT_EQ(parser.getParseOffset(), 0);
  EXPECT_EQ(parser.getErrorCount(), 0);
  EXPECT_EQ(parser.setParseOffset(1), -1);
  EXPECT_EQ(argOf(parser), "end");
}

TEST(ParserConstructor, WithoutATextStartsClean) {
  lvtStringArgSource parser;
  EXPECT_EQ(Access::state(parser), 0);
  EXPECT_EQ(Access::flags(parser), 0U);
  EXPECT_TRUE(Access::tokenValue(parser).isNil());
  EXPECT_TRUE(Access::pendingClassName(parser).isNil());
  EXPECT_TRUE(Access::sourceString(parser).isNil());
}

TEST(ParserConstructor, WithATextReadsThat) {
  lvtStringArgSource parser("12 345", 4);
  EXPECT_EQ(parser.getParseOffset(), 0);
  EXPECT_EQ(argOf(parser), "12");
  EXPECT_EQ(argOf(parser), "end");
  EXPECT_EQ(parser.getErrorCount(), 1);
}

TEST(ParserConstructor, WithAnInternedStringReadsAllOfThat) {
  lvtStringArgSource parser(lvString("{1}"));
  EXPECT_EQ(argOf(parser), "begin(25)");
  EXPECT_EQ(argOf(parser), "1");
  EXPECT_EQ(argOf(parser), "close(nil)");
  EXPECT_EQ(argOf(parser), "end");
  EXPECT_EQ(parser.getParseOffset(), 3);
}

TEST(ParserInitOnce, DoesNothing) {
  TextReader reader("{(a=1)}");
  reader.arg();
  EXPECT_EQ(reader.parser().initOnce(), 0);
  EXPECT_EQ(reader.allArgs(), "begin(32) 'a' 1 close(nil) close(nil) end");
}

// ---- initParse() -------------------------------------------------------------------------------

TEST(ParserInitParse, StartsTheStateMachineAnew) {
  TextReader reader("1 2");
  reader.arg();
  EXPECT_EQ(reader.state(), 8);
  EXPECT_EQ(reader.parser().initParse(), 0);
  EXPECT_EQ(reader.state(), 0);
  EXPECT_EQ(reader.allArgs(), "2 end");
}

TEST(ParserInitParse, ForgetsAPushedBackToken) {
  TextReader reader("{(a=1)}");
  EXPECT_EQ(reader.arg(), "begin(24)");
  reader.parser().initParse();
  EXPECT_EQ(reader.flags(), 0U);
  EXPECT_EQ(reader.allArgs(), "'a' 1 close(nil) close(nil) end");
}

TEST(ParserInitParse, KeepsTheOffsetAndTheErrorCount) {
  TextReader reader("$$1,2");
  reader.arg();
  reader.parser().initParse();
  EXPECT_EQ(reader.offset(), 3);
  EXPECT_EQ(reader.errors(), 2);
  EXPECT_EQ(reader.allArgs(), "nil 2 end skipped:2");
}

TEST(ParserInitParse, ReleasesTheTokenValueAndThePendingClassName) {
  TextReader reader("word,*Point");
  reader.allArgs();
  lvArg const name = TextReader::Access::pendingClassName(reader.parser());
  ASSERT_EQ(test::textOf(name), "Point");
  EXPECT_EQ(test::countOf(name), 3) << "pending, of the token, and here";
  reader.parser().initParse();
  EXPECT_EQ(test::countOf(name), 1);
  EXPECT_TRUE(TextReader::Access::tokenValue(reader.parser()).isNil());
  EXPECT_TRUE(TextReader::Access::pendingClassName(reader.parser()).isNil());
}

TEST(ParserInitParse, LetsAUsedUpParserReadAgain) {
  TextReader reader("1");
  EXPECT_EQ(reader.allArgs(), "1 end");
  reader.parser().setParseOffset(0);
  reader.parser().initParse();
  EXPECT_EQ(reader.allArgs(), "1 end");
}

TEST(ParserInitParse, KeepsTheSourceString) {
  lvString const text("1,2");
  lvtStringArgSource parser(text);
  int const count = test::countOf(text);
  argOf(parser);
  parser.initParse();
  EXPECT_EQ(test::countOf(text), count);
  EXPECT_EQ(argOf(parser), "nil");
  EXPECT_EQ(argOf(parser), "2");
}

// ---- setSource() -------------------------------------------------------------------------------

TEST(ParserSetSource, StartsOnTheNewText) {
  TextReader reader("{(old");
  reader.arg();
  EXPECT_EQ(reader.parser().setSource("new", 3), 0);
  EXPECT_EQ(reader.offset(), 0);
  EXPECT_EQ(reader.state(), 0);
  EXPECT_EQ(reader.flags(), 0U);
  EXPECT_TRUE(TextReader::Access::tokenValue(reader.parser()).isNil());
  EXPECT_EQ(reader.allArgs(), "'new' end");
}

TEST(ParserSetSource, OfAnInternedStringStartsOnThatToo) {
  TextReader reader("{(old");
  reader.arg();
  EXPECT_EQ(reader.parser().setSource(lvString("new")), 0);
  EXPECT_EQ(reader.offset(), 0);
  EXPECT_EQ(reader.state(), 0);
  EXPECT_EQ(reader.flags(), 0U);
  EXPECT_EQ(reader.allArgs(), "'new' end");
}

TEST(ParserSetSource, EndsTheEnd) {
  lvtStringArgSource parser("", 0);
  EXPECT_EQ(argOf(parser), "end");
  parser.setSource("1", 1);
  EXPECT_EQ(argOf(parser), "1");
  EXPECT_EQ(argOf(parser), "end");
  parser.setSource(lvString("2"));
  EXPECT_EQ(argOf(parser), "2");
}

TEST(ParserSetSource, MeasuresATextOfLengthMinusOne) {
  char const text[] = "12,34\0,56";
  lvtStringArgSource parser(text, -1);
  EXPECT_EQ(parser.setParseOffset(5), 0);
  EXPECT_EQ(parser.setParseOffset(6), -1);
}

TEST(ParserSetSource, TakesALengthBeyondANulByte) {
  char const text[] = "12,34\0,56";
  lvtStringArgSource parser(text, sizeof(text) - 1);
  EXPECT_EQ(argOf(parser), "12");
  EXPECT_EQ(argOf(parser), "34");
  EXPECT_EQ(argOf(parser), "56");
  EXPECT_EQ(parser.getErrorCount(), 1);
}

TEST(ParserSetSource, ReadsTheCallersOwnBytes) {
  char text[] = "1,2";
  lvtStringArgSource parser(text, 3);
  text[2] = '7';
  EXPECT_EQ(argOf(parser), "1");
  EXPECT_EQ(argOf(parser), "7");
}

TEST(ParserSetSource, OfANullTextReadsAsTheEnd) {
  for (int const length : {-2, -1, 0, 1, 100}) {
    lvtStringArgSource parser(nullptr, length);
    lvArg out;
    EXPECT_EQ(parser.getNextToken(out), lvtStringArgSource::TOKEN_END) << length;
    EXPECT_EQ(argOf(parser), "end") << length;
  }
}

TEST(ParserSetSource, OfANegativeLengthReadsAsTheEnd) {
  ExactText const text("abc");
  for (int const length : {-2, -3, -1000, -2147483647 - 1}) {
    lvtStringArgSource parser(text.data(), length);
    lvArg out;
    EXPECT_EQ(parser.getNextToken(out), lvtStringArgSource::TOKEN_END) << length;
    EXPECT_EQ(argOf(parser), "end") << length;
  }
}

TEST(ParserSetSource, OfANilHandleReadsAsTheEnd) {
  lvtStringArgSource parser("1", 1);
  EXPECT_EQ(parser.setSource(lvString()), 0);
  EXPECT_EQ(argOf(parser), "end");
  EXPECT_EQ(parser.getParseOffset(), 0);
}

TEST(ParserSetSource, OfTheEmptyStringReadsAsTheEnd) {
  lvtStringArgSource parser(lvString(""));
  EXPECT_EQ(argOf(parser), "end");
}

TEST(ParserSetSource, KeepsAnInternedStringAlive) {
  lvString text("{a text that nobody else holds}");
  int const before = test::countOf(text);
  lvtStringArgSource parser(text);
  EXPECT_EQ(test::countOf(text), before + 1);
  text = lvString();
  EXPECT_EQ(argOf(parser), "begin(25)");
  EXPECT_EQ(argOf(parser), "'a'");
}

TEST(ParserSetSource, LetsGoOfTheStringBefore) {
  lvString const first("the first text");
  lvString const second("the second text");
  int const before = test::countOf(first);
  lvtStringArgSource parser(first);
  parser.setSource(second);
  EXPECT_EQ(test::countOf(first), before);
  parser.setSource("1", 1);
  EXPECT_EQ(test::countOf(second), before);
  EXPECT_TRUE(Access::sourceString(parser).isNil());
  EXPECT_EQ(argOf(parser), "1");
}

TEST(ParserSetSource, OfTheSameStringStartsThatAnew) {
  lvString text("1,2");
  lvtStringArgSource parser(text);
  argOf(parser);
  parser.setSource(text);
  int const count = test::countOf(text);
  EXPECT_EQ(argOf(parser), "1");
  EXPECT_EQ(count, 2);
}

TEST(ParserSetSource, KeepsTheErrorCount) {
  TextReader reader("$$");
  reader.allArgs();
  reader.parser().setSource("$1", 2);
  EXPECT_EQ(reader.allArgs(), "1 end skipped:3");
  reader.parser().setSource(lvString("$2"));
  EXPECT_EQ(reader.allArgs(), "2 end skipped:4");
}

// ---- Offsets -----------------------------------------------------------------------------------

TEST(ParserGetParseOffset, StandsJustBehindTheTokenThatWasRead) {
  TextReader reader(" { ab , \"q\" } ");
  std::string const expected[] = {"begin(25) 5", "'ab' 5", "'q' 11", "close(nil) 13", "end 14"};
  for (std::string const& each : expected) {
    std::string const answer = reader.arg();
    EXPECT_EQ(answer + ' ' + std::to_string(reader.offset()), each);
  }
}

TEST(ParserGetParseOffset, CountsAPushedBackTokenAsRead) {
  TextReader reader("{(a");
  EXPECT_EQ(reader.arg(), "begin(24)");
  EXPECT_EQ(reader.offset(), 2);
  EXPECT_EQ(reader.arg(), "begin(32)");
  EXPECT_EQ(reader.offset(), 2);
}

TEST(ParserSetParseOffset, MovesToAnyByteUpToTheLength) {
  TextReader reader("abc");
  for (int offset = 0; offset <= 3; ++offset) {
    EXPECT_EQ(reader.parser().setParseOffset(offset), 0);
    EXPECT_EQ(reader.offset(), offset);
  }
  EXPECT_EQ(reader.token(), "end");
}

TEST(ParserSetParseOffset, RefusesAnOffsetBeyondTheLength) {
  TextReader reader("abc");
  reader.parser().setParseOffset(1);
  EXPECT_EQ(reader.parser().setParseOffset(4), -1);
  EXPECT_EQ(reader.parser().setParseOffset(2147483647), -1);
  EXPECT_EQ(reader.offset(), 1);
  EXPECT_EQ(reader.token(), "'bc'");
}

TEST(ParserSetParseOffset, TakesANegativeOffsetWhichReadsAsTheEnd) {
  for (int const offset : {-1, -2, -1000, -2147483647 - 1}) {
    TextReader reader("abc");
    EXPECT_EQ(reader.parser().setParseOffset(offset), 0) << offset;
    EXPECT_EQ(reader.offset(), offset);
    EXPECT_EQ(reader.token(), "end") << offset;
    EXPECT_EQ(reader.arg(), "end") << offset;
  }
}

TEST(ParserSetParseOffset, GoesBackToAnOffsetThatWasSaved) {
  TextReader reader("{1,2}");
  reader.arg();
  reader.arg();
  int const saved = reader.offset();
  EXPECT_EQ(reader.arg(), "2");
  reader.parser().setParseOffset(saved);
  EXPECT_EQ(reader.arg(), "2");
}

TEST(ParserSetParseOffset, LeavesTheStateAlone) {
  TextReader reader("1");
  EXPECT_EQ(reader.arg(), "1");
  reader.parser().setParseOffset(0);
  EXPECT_EQ(reader.state(), 8);
  EXPECT_EQ(reader.allArgs(), "end skipped:1");
}

TEST(ParserSetParseOffset, LeavesAPushedBackTokenAlone) {
  TextReader reader("{(a)}");
  EXPECT_EQ(reader.arg(), "begin(24)");
  reader.parser().setParseOffset(0);
  EXPECT_EQ(reader.arg(), "begin(32)");
  EXPECT_EQ(reader.arg(), "begin(24)");
}

TEST(ParserSetParseOffset, DoesNotEndTheEnd) {
  TextReader reader("1");
  reader.allArgs();
  reader.parser().setParseOffset(0);
  EXPECT_EQ(reader.arg(), "end");
  EXPECT_EQ(reader.offset(), 0);
  EXPECT_EQ(reader.token(), "1") << "tokens can be read all the same";
}

// ---- The end of a parser -----------------------------------------------------------------------

TEST(ParserDestructor, ReleasesAllThatItHeld) {
  lvString const text("word,*Point");
  int const before = test::countOf(text);
  lvArg token;
  lvArg name;
  {
    lvtStringArgSource parser(text);
    parser.getArg(token);
    lvArg out;
    parser.getArg(out);
    name = Access::pendingClassName(parser);
    EXPECT_EQ(test::countOf(name), 3);
  }
  EXPECT_EQ(test::countOf(token), 1);
  EXPECT_EQ(test::countOf(name), 1);
  EXPECT_EQ(test::countOf(text), before);
}

TEST(ParserErrorCount, CountsEachSkippedToken) {
  TextReader reader("[[1 2 3,-a,*P x{}");
  EXPECT_EQ(reader.allArgs(), "1 'a' begin('P') close(same) end skipped:6");
}

}  // namespace
