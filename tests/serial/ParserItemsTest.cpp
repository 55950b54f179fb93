// Items and frames: what each state makes of each token, and the grammar that comes of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "support/TextReading.h"

namespace {

using test::argsOf;
using test::TextReader;

// ---- The state machine -------------------------------------------------------------------------

// Tokens are written as one letter here: punctuation as itself, the others as
//   i integer 5   s string 'word'   o overflow   u unknown   e end
constexpr char AllTokens[] = "#()*,-=[]{}isoue";

// Hands out a script of tokens, then the end, and notes the state at each request.
class ScriptedParser : public lvtStringArgSource {
 public:
  struct Moment {
    int state;
    int errors;
  };

  explicit ScriptedParser(std::string const& tokens) : script(tokens) {}

  int getNextToken(lvArg& out) override {
    std::size_t const index = requests.size();
    requests.push_back({lvLayoutAccess<lvtStringArgSource>::state(*this), getErrorCount()});
    switch (char const token = index < script.size() ? script[index] : 'e') {
      case 'i':
        out = test::integer(5);
        return TOKEN_INTEGER;
      case 's':
        out = test::string("word");
        return TOKEN_STRING;
      case 'o':
        out.setNil();
        return TOKEN_OVERFLOW;
      case 'u':
        return TOKEN_UNKNOWN;
      case 'e':
        return TOKEN_END;
      default:
        return token;
    }
  }

  std::string arg() {
    lvArg out = test::pointer(test::UntouchedAddress);
    int const answer = getArg(out);
    return test::shownAnswer(answer, test::shown(out));
  }

  std::vector<Moment> requests;

 private:
  std::string script;
};

// What a state makes of one token. An empty answer means that it reads on.
struct Outcome {
  std::string answer;
  int state;
  int errors;
  bool pushedBack;
};

bool operator==(Outcome const& a, Outcome const& b) {
  return a.answer == b.answer && a.state == b.state && a.errors == b.errors &&
         a.pushedBack == b.pushedBack;
}

std::ostream& operator<<(std::ostream& stream, Outcome const& outcome) {
  return stream << (outcome.answer.empty() ? "reads on" : outcome.answer) << ", state "
                << outcome.state << ", skipped " << outcome.errors
                << (outcome.pushedBack ? ", pushed back" : "");
}

Outcome gives(std::string const& answer, int state, int errors = 0) {
  return {answer, state, errors, false};
}
Outcome givesAndPushesBack(std::string const& answer, int state, int errors = 0) {
  return {answer, state, errors, true};
}
Outcome readsOn(int state, int errors = 0) { return {"", state, errors, false}; }

struct Row {
  char const* tokens;
  Outcome outcome;
};

struct StateCase {
  char const* name;
  int state;
  char const* wayIn;  // the tokens that lead to the state
  int argsBefore;     // how many reads of an item they answer
  std::vector<Row> rows;
};

std::ostream& operator<<(std::ostream& stream, StateCase const& each) {
  return stream << each.name;
}

// A tuple's state is entered with its "(" pushed back, so it sees no other token.
std::vector<StateCase> stateTable() {
  return {
      {"ItemAfterSeparator",
       0,
       "",
       0,
       {{"#", readsOn(3)},
        {"(", gives("begin(32)", 1)},
        {")}", gives("close(same)", 8, 1)},
        {"*", readsOn(6)},
        {",=", gives("nil", 1)},
        {"-", readsOn(2)},
        {"{", readsOn(4)},
        {"e", gives("end", 9)},
        {"i", gives("5", 8)},
        {"s", gives("'word'", 8)},
        {"[]ou", readsOn(0, 1)}}},
      {"Item",
       1,
       ",",
       1,
       {{"#", readsOn(3)},
        {"(", gives("begin(32)", 1)},
        {")}", gives("close(same)", 8)},
        {"*", readsOn(6)},
        {",=", gives("nil", 1)},
        {"-", readsOn(2)},
        {"{", readsOn(4)},
        {"e", gives("end", 9)},
        {"i", gives("5", 8)},
        {"s", gives("'word'", 8)},
        {"[]ou", readsOn(1, 1)}}},
      {"AfterMinus",
       2,
       "-",
       0,
       {{"i", gives("-5", 8)},
        {"#", readsOn(3, 1)},
        {"(", gives("begin(32)", 1, 1)},
        {")}", gives("close(same)", 8, 1)},
        {"*", readsOn(6, 1)},
        {",=", gives("nil", 1, 1)},
        {"-", readsOn(2, 1)},
        {"{", readsOn(4, 1)},
        {"e", gives("end", 9, 1)},
        {"s", gives("'word'", 8, 1)},
        {"[]ou", readsOn(1, 2)}}},
      {"AfterHash", 3, "#", 0, {{AllTokens, gives("nil", 8)}}},
      {"AfterBrace",
       4,
       "{",
       0,
       {{"(", givesAndPushesBack("begin(24)", 5)},
        {"#)*,-=[]{}isoue", givesAndPushesBack("begin(25)", 1)}}},
      {"AfterStar", 6, "*", 0, {{"#()*,-=[]{}isou", readsOn(7)}, {"e", gives("end", 9)}}},
      {"ClassNameRead",
       7,
       "*s",
       0,
       {{"{", gives("begin('word')", 1)},
        {"e", gives("end", 9)},
        {"#()*,-=[]}isou", readsOn(7, 1)}}},
      {"AfterItem",
       8,
       "i",
       1,
       {{")}", gives("close(nil)", 8)},
        {",=", readsOn(0)},
        {"e", gives("end", 9)},
        {"#(*-[]{isou", readsOn(8, 1)}}},
      {"UsedUp", 9, "e", 1, {{AllTokens, gives("end", 9)}}},
  };
}

class ParserStateTable : public testing::TestWithParam<StateCase> {
 protected:
  // Leads a parser to the state and shows it one token more.
  static Outcome outcomeOf(StateCase const& each, char token) {
    std::string const wayIn = each.wayIn;
    ScriptedParser parser(wayIn + token);
    for (int i = 0; i < each.argsBefore; ++i) {
      parser.arg();
    }
    std::string const answer = parser.arg();
    if (parser.requests.size() > wayIn.size() + 1) {
      ScriptedParser::Moment const next = parser.requests[wayIn.size() + 1];
      return readsOn(next.state, next.errors);
    }
    using Access = lvLayoutAccess<lvtStringArgSource>;
    return {answer, Access::state(parser), parser.getErrorCount(),
            (Access::flags(parser) & 1) != 0};
  }
};

TEST_P(ParserStateTable, CoversEachTokenOnce) {
  std::string covered;
  for (Row const& row : GetParam().rows) {
    covered += row.tokens;
  }
  for (char const token : std::string(AllTokens)) {
    EXPECT_EQ(std::count(covered.begin(), covered.end(), token), 1) << token;
  }
}

TEST_P(ParserStateTable, ActsOnEachTokenAsItsRowSays) {
  for (Row const& row : GetParam().rows) {
    for (char const token : std::string(row.tokens)) {
      EXPECT_EQ(outcomeOf(GetParam(), token), row.outcome) << "token " << token;
    }
  }
}

TEST_P(ParserStateTable, IsEnteredByItsWayIn) {
  std::string const wayIn = GetParam().wayIn;
  ScriptedParser parser(wayIn);
  for (int i = 0; i < GetParam().argsBefore; ++i) {
    parser.arg();
  }
  if (GetParam().argsBefore == 0) {  // In the middle of a read: seen when it asks for a token.
    parser.arg();
    EXPECT_EQ(parser.requests.at(wayIn.size()).state, GetParam().state);
  } else {
    EXPECT_EQ(lvLayoutAccess<lvtStringArgSource>::state(parser), GetParam().state);
  }
}

INSTANTIATE_TEST_SUITE_P(States, ParserStateTable, testing::ValuesIn(stateTable()),
                         [](auto const& each) { return std::string(each.param.name); });

TEST(ParserStates, ATupleConsumesItsPushedBackBracket) {
  ScriptedParser parser("{(i");
  EXPECT_EQ(parser.arg(), "begin(24)");
  EXPECT_EQ(lvLayoutAccess<lvtStringArgSource>::state(parser), 5);
  EXPECT_EQ(lvLayoutAccess<lvtStringArgSource>::flags(parser), 1U);
  EXPECT_EQ(parser.arg(), "begin(32)");
  EXPECT_EQ(lvLayoutAccess<lvtStringArgSource>::state(parser), 1);
  EXPECT_EQ(lvLayoutAccess<lvtStringArgSource>::flags(parser), 0U);
  EXPECT_EQ(parser.requests.size(), 2U);
  EXPECT_EQ(parser.arg(), "5");
}

TEST(ParserStates, AskForNoTokenOnceTheInputIsUsedUp) {
  ScriptedParser parser("e");
  parser.arg();
  EXPECT_EQ(parser.arg(), "end");
  EXPECT_EQ(parser.requests.size(), 1U);
}

TEST(ParserStates, ReadEachPushedBackTokenOnlyOnce) {
  ScriptedParser parser("{-{i");
  EXPECT_EQ(parser.arg(), "begin(25)");
  EXPECT_EQ(parser.requests.size(), 2U);
  EXPECT_EQ(parser.arg(), "begin(25)");
  EXPECT_EQ(parser.requests.size(), 4U);
  EXPECT_EQ(parser.arg(), "5");
  EXPECT_EQ(parser.requests.size(), 4U);
}

// ---- getNextToken() of a derived class ---------------------------------------------------------

// Answers one code for good, with a value.
class ConstantParser : public lvtStringArgSource {
 public:
  ConstantParser(int token, lvArg const& content) : code(token), value(content) {}
  int getNextToken(lvArg& out) override {
    out = value;
    int const answer = code;
    code = TOKEN_END;
    return answer;
  }

 private:
  int code;
  lvArg value;
};

TEST(ParserGetArg, TakesItsTokensFromADerivedClass) {
  ConstantParser parser(lvtStringArgSource::TOKEN_STRING, test::string("from elsewhere"));
  lvArg out;
  EXPECT_EQ(parser.getArg(out), lvArgSource::SOURCE_ITEM);
  EXPECT_EQ(test::textOf(out), "from elsewhere");
}

TEST(ParserGetArg, SkipsAndCountsTokensThatItDoesNotKnow) {
  for (int const token : {0, 1, 7, int{'x'}, 255, 260, -2, 100000}) {
    ConstantParser parser(token, lvArg());
    lvArg out;
    EXPECT_EQ(parser.getArg(out), lvArgSource::SOURCE_END) << token;
    EXPECT_EQ(parser.getErrorCount(), 1) << token;
  }
}

// ---- Items -------------------------------------------------------------------------------------

TEST(ParserGetArg, AnswersTheNumbersThatCompiledProgramsKnow) {
  lvtStringArgSource parser("{1}", -1);
  lvArg out;
  EXPECT_EQ(parser.getArg(out), 6);
  EXPECT_EQ(parser.getArg(out), 0);
  EXPECT_EQ(parser.getArg(out), 7);
  EXPECT_EQ(parser.getArg(out), 9);
}

TEST(ParserGetArg, OfAnEmptyTextIsTheEnd) {
  EXPECT_EQ(argsOf(""), "end");
  EXPECT_EQ(argsOf(" \n"), "end");
}

TEST(ParserGetArg, ReadsIntegersWordsAndStrings) {
  EXPECT_EQ(argsOf("12"), "12 end");
  EXPECT_EQ(argsOf("word"), "'word' end");
  EXPECT_EQ(argsOf("\"a string\""), "'a string' end");
  EXPECT_EQ(argsOf("\"\""), "'' end");
  EXPECT_EQ(argsOf("007"), "7 end");
}

TEST(ParserGetArg, ReadsTheItemsOfTheTopLevel) {
  EXPECT_EQ(argsOf("1,a=\"b\" , #nil"), "1 'a' 'b' nil end");
}

TEST(ParserGetArg, SkipsBlanksBetweenTokens) {
  EXPECT_EQ(argsOf(" { ( a = - 1 ) , \n ( # nil , * P { } ) } "),
            "begin(24) begin(32) 'a' -1 close(nil) begin(32) nil begin('P') close(same) "
            "close(nil) close(nil) end");
}

TEST(ParserGetArg, ReadsHashAndAnyTokenAsNil) {
  for (char const* const text : {"#nil", "#null", "#0", "#{", "#\"a b\"", "#,", "##", "#-", "# nil",
                                 "#4294967296", "#$", "#)"}) {
    EXPECT_EQ(argsOf(text), "nil end") << text;
  }
}

TEST(ParserGetArg, ConsumesOneTokenBehindAHash) {
  EXPECT_EQ(argsOf("{#-1,2}"), "begin(25) nil 2 close(nil) end skipped:1");
  EXPECT_EQ(argsOf("#}}"), "nil close(nil) end");
}

TEST(ParserGetArg, NegatesANumberBehindAMinus) {
  EXPECT_EQ(argsOf("-1"), "-1 end");
  EXPECT_EQ(argsOf("-0"), "0 end");
  EXPECT_EQ(argsOf("- 17"), "-17 end");
  EXPECT_EQ(argsOf("-2147483647"), "-2147483647 end");
  EXPECT_EQ(argsOf("-2147483648"), "-2147483648 end");
  EXPECT_EQ(argsOf("-4294967295"), "1 end");
}

TEST(ParserGetArg, DropsAMinusThatNoNumberFollows) {
  EXPECT_EQ(argsOf("-abc"), "'abc' end skipped:1");
  EXPECT_EQ(argsOf("-x"), "'x' end skipped:1");
  EXPECT_EQ(argsOf("--5"), "-5 end skipped:1");
  EXPECT_EQ(argsOf("-{1}"), "begin(25) 1 close(nil) end skipped:1");
  EXPECT_EQ(argsOf("-#nil"), "nil end skipped:1");
  EXPECT_EQ(argsOf("{-}"), "begin(25) close(same) end skipped:1");
  EXPECT_EQ(argsOf("{-,1}"), "begin(25) nil 1 close(nil) end skipped:1");
}

TEST(ParserGetArg, SkipsNumbersThatOverflow) {
  EXPECT_EQ(argsOf("4294967296"), "end skipped:1");
  EXPECT_EQ(argsOf("{1,4294967296,2}"), "begin(25) 1 nil 2 close(nil) end skipped:1");
  EXPECT_EQ(argsOf("-4294967296"), "end skipped:2");
  EXPECT_EQ(argsOf("1 4294967296"), "1 end skipped:1");
}

TEST(ParserGetArg, ReadsASeparatorWhereAnItemIsExpectedAsNil) {
  EXPECT_EQ(argsOf("{,}"), "begin(25) nil close(same) end");
  EXPECT_EQ(argsOf("{1,,2}"), "begin(25) 1 nil 2 close(nil) end");
  EXPECT_EQ(argsOf("{,,}"), "begin(25) nil nil close(same) end");
  EXPECT_EQ(argsOf("{=1}"), "begin(25) nil 1 close(nil) end");
  EXPECT_EQ(argsOf(",1"), "nil 1 end");
  EXPECT_EQ(argsOf("(=1)"), "begin(32) nil 1 close(nil) end");
}

TEST(ParserGetArg, ReadsNoItemBetweenASeparatorAndAClosingBracket) {
  EXPECT_EQ(argsOf("{1,}"), "begin(25) 1 close(same) end skipped:1");
  EXPECT_EQ(argsOf("(a=)"), "begin(32) 'a' close(same) end skipped:1");
  EXPECT_EQ(argsOf("1,"), "1 end");
}

TEST(ParserGetArg, CountsAClosingBracketAtTheVeryStart) {
  EXPECT_EQ(argsOf("}"), "close(same) end skipped:1");
  EXPECT_EQ(argsOf(")"), "close(same) end skipped:1");
}

// ---- Frames ------------------------------------------------------------------------------------

TEST(ParserGetArg, ReadsAnEmptyPairOfBrackets) {
  EXPECT_EQ(argsOf("{}"), "begin(25) close(same) end");
  EXPECT_EQ(argsOf("()"), "begin(32) close(same) end");
}

TEST(ParserGetArg, TellsAMapByTheTokenBehindTheBrace) {
  EXPECT_EQ(argsOf("{(a=1)}"), "begin(24) begin(32) 'a' 1 close(nil) close(nil) end");
  EXPECT_EQ(argsOf("{ \n ("), "begin(24) begin(32) end");
  EXPECT_EQ(argsOf("{1,(a=1)}"), "begin(25) 1 begin(32) 'a' 1 close(nil) close(nil) end");
}

TEST(ParserGetArg, ReadsAVectorOfVectors) {
  EXPECT_EQ(argsOf("{{},{1},{{2}}}"),
            "begin(25) begin(25) close(same) begin(25) 1 close(nil) begin(25) begin(25) 2 "
            "close(nil) close(nil) close(nil) end");
}

TEST(ParserGetArg, ReadsATupleAtTheTopLevel) {
  EXPECT_EQ(argsOf("(a=1),(b=2)"), "begin(32) 'a' 1 close(nil) begin(32) 'b' 2 close(nil) end");
}

TEST(ParserGetArg, ReadsAnObjectByItsClassName) {
  EXPECT_EQ(argsOf("*Point{3,4}"), "begin('Point') 3 4 close(nil) end");
  EXPECT_EQ(argsOf("*\"my class\"{}"), "begin('my class') close(same) end");
  EXPECT_EQ(argsOf("*P{(1)}"), "begin('P') begin(32) 1 close(nil) close(nil) end");
}

TEST(ParserGetArg, SkipsWhatStandsBetweenAClassNameAndItsBrace) {
  EXPECT_EQ(argsOf("*Point junk{1}"), "begin('Point') 1 close(nil) end skipped:1");
  EXPECT_EQ(argsOf("*Point,},(*#-17 x{1}"), "begin('Point') 1 close(nil) end skipped:9");
}

TEST(ParserGetArg, HandsTheClassNameOverAtTheBrace) {
  using Access = lvLayoutAccess<lvtStringArgSource>;
  lvtStringArgSource parser("*Point{}", -1);
  lvArg out;
  ASSERT_EQ(parser.getArg(out), lvArgSource::SOURCE_FRAME_BEGIN);
  EXPECT_EQ(test::textOf(out), "Point");
  EXPECT_TRUE(Access::pendingClassName(parser).isNil());
  EXPECT_EQ(test::countOf(out), 2) << "held by the output value and the token value";
}

TEST(ParserGetArg, SkipsASecondItemWithoutASeparator) {
  EXPECT_EQ(argsOf("1 2"), "1 end skipped:1");
  EXPECT_EQ(argsOf("{a b,c}"), "begin(25) 'a' 'c' close(nil) end skipped:1");
  EXPECT_EQ(argsOf("1#nil"), "1 end skipped:2");
}

TEST(ParserGetArg, SkipsUnknownTokens) {
  EXPECT_EQ(argsOf("$1;,:2"), "1 2 end skipped:3");
  EXPECT_EQ(argsOf("[1]"), "1 end skipped:2");
}

TEST(ParserGetArg, ReadsWholeTextsAsTheWriterMakesThem) {
  EXPECT_EQ(argsOf(R"({1,-2,"hello world",#nil,abc})"),
            "begin(25) 1 -2 'hello world' nil 'abc' close(nil) end");
  EXPECT_EQ(argsOf(R"({(name="x y"),(count=3)})"),
            "begin(24) begin(32) 'name' 'x y' close(nil) begin(32) 'count' 3 close(nil) "
            "close(nil) end");
  EXPECT_EQ(argsOf(R"({{(k=v)},*Point{1,2},"say %22hi%22%3A 100%25"})"),
            "begin(25) begin(24) begin(32) 'k' 'v' close(nil) close(nil) begin('Point') 1 2 "
            "close(nil) 'say \"hi\": 100%' close(nil) end");
  EXPECT_EQ(argsOf(R"(*"my class"{"a%0Ab",_tmp1})"),
            "begin('my class') 'a\nb' '_tmp1' close(nil) end");
}

// ---- The end of the input ----------------------------------------------------------------------

TEST(ParserGetArg, AnswersTheEndInEveryState) {
  EXPECT_EQ(argsOf("1,"), "1 end") << "behind a separator";
  EXPECT_EQ(argsOf(","), "nil end") << "where an item is expected";
  EXPECT_EQ(argsOf("-"), "end skipped:1") << "behind a minus";
  EXPECT_EQ(argsOf("#"), "nil end") << "behind a hash";
  EXPECT_EQ(argsOf("{"), "begin(25) end") << "behind a brace";
  EXPECT_EQ(argsOf("("), "begin(32) end") << "behind a parenthesis";
  EXPECT_EQ(argsOf("{("), "begin(24) begin(32) end") << "in the tuple of a map";
  EXPECT_EQ(argsOf("*"), "end") << "behind a star";
  EXPECT_EQ(argsOf("*Point"), "end") << "behind a class name";
  EXPECT_EQ(argsOf("*Point junk"), "end skipped:1") << "behind a class name and more";
  EXPECT_EQ(argsOf("1"), "1 end") << "behind an item";
  EXPECT_EQ(argsOf("{1"), "begin(25) 1 end") << "inside a vector";
}

TEST(ParserGetArg, KeepsAnsweringTheEnd) {
  for (char const* const text : {"", "1", "{", "#", "*", "*P", "-", "("}) {
    SCOPED_TRACE(text);
    TextReader reader(text);
    reader.allArgs();
    int const offset = reader.offset();
    int const errors = reader.errors();
    EXPECT_EQ(reader.arg(), "end");
    EXPECT_EQ(reader.arg(), "end");
    EXPECT_EQ(reader.offset(), offset);
    EXPECT_EQ(reader.errors(), errors);
    EXPECT_EQ(reader.state(), 9);
  }
}

// ---- The output value --------------------------------------------------------------------------

TEST(ParserGetArg, KeepsTheBookkeepingBitsOfItsOutputValue) {
  lvtStringArgSource parser("*P{(a=-1),{(#nil,2)},,\"q\"}", -1);
  lvArg out;
  test::setBookkeeping(out, 0x12340);
  while (parser.getArg(out) != lvArgSource::SOURCE_END) {
    EXPECT_EQ(test::bookkeepingOf(out), 0x12340U) << "before " << parser.getParseOffset();
  }
  EXPECT_EQ(test::bookkeepingOf(out), 0x12340U);
}

// Whether the read that the text answers last before its end releases what `out` held.
bool releasesOldContent(std::string const& text, int readsBefore) {
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg before;
  for (int i = 0; i < readsBefore; ++i) {
    parser.getArg(before);
  }
  lvArg const held = test::string("old");
  lvArg out(held);
  parser.getArg(out);
  return test::countOf(held) == 1;
}

TEST(ParserGetArg, ReleasesWhatItsOutputValueHeld) {
  EXPECT_TRUE(releasesOldContent("1", 0));
  EXPECT_TRUE(releasesOldContent("-1", 0));
  EXPECT_TRUE(releasesOldContent("word", 0));
  EXPECT_TRUE(releasesOldContent("#nil", 0));
  EXPECT_TRUE(releasesOldContent(",", 0));
  EXPECT_TRUE(releasesOldContent("{", 0));
  EXPECT_TRUE(releasesOldContent("(", 0));
  EXPECT_TRUE(releasesOldContent("*P{", 0));
  EXPECT_TRUE(releasesOldContent("1}", 1));
}

TEST(ParserGetArg, LeavesItsOutputValueAloneAtTheEndAndAtAnEmptyEndOfFrame) {
  EXPECT_FALSE(releasesOldContent("", 0));
  EXPECT_FALSE(releasesOldContent("{}", 1));
  EXPECT_FALSE(releasesOldContent("{1,}", 2));
}

TEST(ParserGetArg, HandsOutTheStringOfTheToken) {
  using Access = lvLayoutAccess<lvtStringArgSource>;
  lvtStringArgSource parser("word", -1);
  lvArg out;
  parser.getArg(out);
  EXPECT_TRUE(out.eq(Access::tokenValue(parser)));
  EXPECT_EQ(test::countOf(out), 2);
}

TEST(ParserGetArg, GivesEachStringAnObjectOfItsOwn) {
  lvtStringArgSource parser("same,same", -1);
  lvArg first;
  lvArg second;
  parser.getArg(first);
  parser.getArg(second);
  EXPECT_FALSE(first.eq(second));
  EXPECT_EQ(first.equiv(second), 1);
}

}  // namespace
