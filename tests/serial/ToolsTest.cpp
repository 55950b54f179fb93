// The conversion functions: texts of values, values of texts, and where a text is cut.
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <string>

#include "support/InternedTexts.h"
#include "support/SourceRuns.h"
#include "support/TreeModel.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

using test::integer;
using test::mapOf;
using test::string;
using test::vectorOf;

// The longest text.
constexpr std::size_t MaxLength = 4089;

std::string toText(lvArg const& value) {
  lvString const text = lvToolsToString(value);
  return std::string(text, static_cast<std::size_t>(text.length()));
}

std::string ofLength(std::size_t length) { return std::string(length, 'a'); }

// The value that a text reads as, and behind an "@" how much of it was consumed.
std::string fromText(std::string const& text) {
  lvString const whole(static_cast<int>(text.size()), text.data(), lvrString::CopyAndOwnEmpty);
  int consumed = -1;
  lvArg const value = lvToolsFromString(whole, consumed);
  return test::described(value) + "@" + std::to_string(consumed);
}

// ---- To text -----------------------------------------------------------------------------------

TEST(ToolsToString, GivesTheTextOfAScalar) {
  EXPECT_EQ(toText(integer(-5)), "-5");
  EXPECT_EQ(toText(integer(-2147483647 - 1)), "-2147483648");
  EXPECT_EQ(toText(lvArg()), "#nil");
  EXPECT_EQ(toText(string("a b")), "\"a b\"");
  EXPECT_EQ(toText(string("")), "\"\"");
  EXPECT_EQ(toText(test::pointer(4096)), "#nil");
}

TEST(ToolsToString, WritesIdentifiersBareAndFramesWithoutSizes) {
  EXPECT_EQ(
      toText(vectorOf({integer(1), integer(-2), string("hello world"), lvArg(), string("abc")})),
      "{1,-2,\"hello world\",#nil,abc}");
  EXPECT_EQ(toText(mapOf({{string("name"), string("x y")}})), "{(name=\"x y\")}");
}

TEST(ToolsToString, EscapesWhatStringsNeed) {
  EXPECT_EQ(toText(vectorOf({string("say \"hi\": 100%"), string("a\nb"), string("_tmp1")})),
            "{\"say %22hi%22%3A 100%25\",\"a%0Ab\",_tmp1}");
}

TEST(ToolsToString, GivesTheTextSoFarOfWhatCannotBeWritten) {
  EXPECT_EQ(toText(vectorOf({integer(1), test::newListLike(), integer(2)})), "{1}}");
  EXPECT_EQ(toText(mapOf({{string("k"), test::newPlainObject()}})), "{(k)}}");
}

TEST(ToolsToString, GivesAnEmptyStringWhenNothingCanBeWritten) {
  for (lvArg const& value : {test::newStackLike(), test::newListLike(), test::newPlainObject(),
                             string(ofLength(5000))}) {
    lvString const text = lvToolsToString(value);
    EXPECT_EQ(text.getType(), lvArg::StringType);
    EXPECT_EQ(text.length(), 0);
    EXPECT_STREQ(text, "");
    EXPECT_TRUE(text.eq(lvString("")));
  }
}

TEST(ToolsToString, SharesTheInternedText) {
  lvString const before("{7,8}");
  lvString const text = lvToolsToString(vectorOf({integer(7), integer(8)}));
  EXPECT_TRUE(text.eq(before));
  EXPECT_EQ(test::countOf(before), 2);
}

TEST(ToolsToString, InternsANewText) {
  ASSERT_FALSE(test::isInterned("{77,88}"));
  {
    lvString const text = lvToolsToString(vectorOf({integer(77), integer(88)}));
    EXPECT_EQ(test::internedEntry("{77,88}"), text.getReferencable());
    EXPECT_EQ(test::countOf(text), 1);
    EXPECT_TRUE(lvString("{77,88}").eq(text));
  }
  EXPECT_FALSE(test::isInterned("{77,88}"));
}

TEST(ToolsToString, EndsTheTextWithANul) {
  lvString const text = lvToolsToString(integer(123456));
  EXPECT_STREQ(text, "123456");
  lvString const longest = lvToolsToString(string(" " + ofLength(MaxLength - 3)));
  EXPECT_EQ(static_cast<char const*>(longest)[MaxLength], '\0');
}

TEST(ToolsToString, KeepsNoBufferForAShortText) {
  lvString const text = lvToolsToString(vectorOf({integer(77), integer(99)}));
  EXPECT_LT(malloc_usable_size(const_cast<char*>(static_cast<char const*>(text))), 100U);
}

TEST(ToolsToString, LeavesTheValueAlone) {
  lvArg const inner = vectorOf({string("a b")});
  lvArg const value = vectorOf({inner, inner});
  EXPECT_EQ(toText(value), "{{\"a b\"},{\"a b\"}}");
  EXPECT_EQ(test::countOf(value), 1);
  EXPECT_EQ(test::countOf(inner), 3);
  EXPECT_EQ(test::described(value), "[['a b'],['a b']]");
}

TEST(ToolsToString, PrintsNothing) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(test::printedBy([] {
              lvToolsToString(vectorOf({test::newPlainObject(), string(ofLength(5000))}));
            }),
            "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ToolsToString, EndsACycleAtTheLevelsOfTheWriter) {
  lvVector cycle(1);
  cycle->insert(cycle, -1);
  EXPECT_EQ(toText(cycle), std::string(32, '{') + std::string(33, '}'));
  cycle->clear();
}

// ---- Where a text is cut -----------------------------------------------------------------------

TEST(ToolsToString, HoldsAStringOfUpToTheLongestText) {
  for (std::size_t const length : {MaxLength - 2, MaxLength - 1, MaxLength}) {
    std::string const text = " " + ofLength(length - 3);
    EXPECT_EQ(toText(string(text)), '"' + text + '"') << length;
  }
  EXPECT_EQ(toText(string(" " + ofLength(MaxLength - 2))), "");
}

TEST(ToolsToString, HoldsAWordOfTwoBytesLess) {
  EXPECT_EQ(toText(string(ofLength(MaxLength - 2))), ofLength(MaxLength - 2));
  EXPECT_EQ(toText(string(ofLength(MaxLength - 1))), "");
}

TEST(ToolsToString, HoldsAFrameOfUpToTheLongestText) {
  for (std::size_t const length : {MaxLength - 1, MaxLength}) {
    std::string const word = ofLength(length - 5);
    EXPECT_EQ(toText(vectorOf({string(word), integer(12)})), "{" + word + ",12}") << length;
  }
}

TEST(ToolsToString, LeavesOutTheBracketThatDoesNotFit) {
  std::string const word = ofLength(MaxLength - 4);
  EXPECT_EQ(toText(vectorOf({string(word), integer(12)})), "{" + word + ",12");
}

TEST(ToolsToString, CutsATextThatTakesTheLastByteOfTheBuffer) {
  std::string const word = ofLength(MaxLength - 3);
  std::string const text = toText(vectorOf({string(word), integer(12)}));
  EXPECT_EQ(text.size(), MaxLength);
  EXPECT_EQ(text, "{" + word + ",1");
}

TEST(ToolsToString, LeavesOutTheElementThatDoesNotFit) {
  // The text keeps the separator of the element, and is closed twice where there is room for that.
  EXPECT_EQ(toText(vectorOf({string(ofLength(4080)), integer(123456789)})),
            "{" + ofLength(4080) + ",}}");
  EXPECT_EQ(toText(vectorOf({string(ofLength(4086)), integer(123)})), "{" + ofLength(4086) + ",}");
  EXPECT_EQ(toText(vectorOf({string(ofLength(4087)), integer(1)})), "{}}");
}

// What a string of colons is written as.
std::string colonsWritten(int count) {
  std::string text = "\"";
  for (int i = 0; i < count; ++i) {
    text += "%3A";
  }
  return text + '"';
}

TEST(ToolsToString, CutsAStringThatItsEscapesMakeTooLong) {
  EXPECT_EQ(toText(string(std::string(4087, ':'))), colonsWritten(1362));
}

TEST(ToolsToString, CutsAThousandLongStringsWithinOneOfThem) {
  lvVector strings(1000);
  for (int i = 0; i < 1000; ++i) {
    strings->insert(string(std::string(50, ':')), -1);
  }
  std::string expected = "{";
  for (int i = 0; i < 26; ++i) {
    expected += colonsWritten(50) + ",";
  }
  EXPECT_EQ(toText(strings), expected + colonsWritten(36));
  EXPECT_EQ(toText(strings).size(), MaxLength);
}

// The buffer of the function, seen from outside: the text is that of a writer of this capacity.
TEST(ToolsToString, WritesAsAWriterOfItsCapacityDoes) {
  int cut = 0;
  for (unsigned seed = 1; seed <= 80; ++seed) {
    test::TreeMaker maker(seed);
    maker.budget = 1000;
    test::Tree tree;
    tree.kind = test::Tree::Vector;
    for (int i = 0; i < 250; ++i) {
      tree.children.push_back(maker.make(3));
    }
    lvArg const value = test::valueOf(tree);
    test::WriterModel model(4090);
    test::TreeWriter<test::WriterModel>(model).write(test::treeOf(value));
    ASSERT_EQ(toText(value), model.block.substr(0, std::min(model.length, MaxLength))) << seed;
    cut += model.length > 4000 ? 1 : 0;
  }
  EXPECT_GT(cut, 60) << "the trees are too small";
}

// ---- From text ---------------------------------------------------------------------------------

TEST(ToolsFromString, ReadsOneItem) {
  EXPECT_EQ(fromText("1,2"), "1@1");
  EXPECT_EQ(fromText("abc=2"), "'abc'@3");
  EXPECT_EQ(fromText("\"a b\""), "'a b'@5");
  EXPECT_EQ(fromText("-12,3"), "-12@3");
  EXPECT_EQ(fromText("12ab"), "12@2");
  EXPECT_EQ(fromText("#nil,1"), "nil@4");
}

TEST(ToolsFromString, ReadsAWholeFrame) {
  EXPECT_EQ(fromText("  {1,2} tail"), "[1,2]@7");
  EXPECT_EQ(fromText("{(a={1})},2"), "{'a'=[1]}@9");
  EXPECT_EQ(fromText("{}"), "[]@2");
}

TEST(ToolsFromString, CountsLeadingBlanksAsConsumed) {
  EXPECT_EQ(fromText(" \t\r\n 7 "), "7@6");
  EXPECT_EQ(fromText("\n-\n7\n"), "-7@4");
  EXPECT_EQ(fromText(" { 1 , 2 } ,3"), "[1,2]@10");
}

TEST(ToolsFromString, LeavesTrailingBlanks) {
  EXPECT_EQ(fromText("7   "), "7@1");
  EXPECT_EQ(fromText("{1}   "), "[1]@3");
}

TEST(ToolsFromString, LetsReadingGoOnBehindWhatWasConsumed) {
  std::string const text = "{1,2}{3}abc 4";
  std::string rest = text;
  std::string values;
  for (int i = 0; i < 4; ++i) {
    int consumed = 0;
    values += test::described(lvToolsFromString(lvString(rest.c_str()), consumed)) + " ";
    rest = rest.substr(static_cast<std::size_t>(consumed));
  }
  EXPECT_EQ(values, "[1,2] [3] 'abc' 4 ");
  EXPECT_EQ(rest, "");
}

TEST(ToolsFromString, OfNothingIsNil) {
  EXPECT_EQ(fromText(""), "nil@0");
  EXPECT_EQ(fromText(" \n "), "nil@3");
  int consumed = -1;
  EXPECT_TRUE(lvToolsFromString(lvString(), consumed).isNil());
  EXPECT_EQ(consumed, 0);
}

TEST(ToolsFromString, OfAnUnreadableTextIsNilAndConsumesWhatWasScanned) {
  EXPECT_EQ(fromText("$ ]["), "nil@4");
  EXPECT_EQ(fromText("4294967296"), "nil@10");
  EXPECT_EQ(fromText("-"), "nil@1");
  EXPECT_EQ(fromText("*"), "nil@1");
  EXPECT_EQ(fromText("*Point 3"), "nil@8");
}

TEST(ToolsFromString, OfAClosingBracketIsNil) {
  EXPECT_EQ(fromText("},1"), "nil@1");
  EXPECT_EQ(fromText(" )1"), "nil@2");
}

TEST(ToolsFromString, OfASeparatorIsNil) {
  EXPECT_EQ(fromText(",1"), "nil@1");
  EXPECT_EQ(fromText("=1"), "nil@1");
}

TEST(ToolsFromString, OfAHashIsNilWithOneTokenMore) {
  EXPECT_EQ(fromText("#0,1"), "nil@2");
  EXPECT_EQ(fromText("# \"x\" 1"), "nil@5");
  EXPECT_EQ(fromText("#"), "nil@1");
}

TEST(ToolsFromString, OfATupleOutsideOfAMapIsNil) { EXPECT_EQ(fromText("(a=1)"), "nil@1"); }

TEST(ToolsFromString, SkipsWhatIsNoItem) {
  EXPECT_EQ(fromText("$]5"), "5@3");
  EXPECT_EQ(fromText("-x,1"), "'x'@2");
  EXPECT_EQ(fromText("99999999999999 7"), "7@16");
}

TEST(ToolsFromString, ReadsNumbersWithLeadingZeros) { EXPECT_EQ(fromText("007"), "7@3"); }

TEST(ToolsFromString, CompletesAFrameThatTheTextLeavesOpen) {
  EXPECT_EQ(fromText("{1,{2"), "[1,[2]]@5");
  EXPECT_EQ(fromText("{(a=1"), "{'a'=1}@5");
  EXPECT_EQ(fromText("\"abc"), "'abc'@4");
}

TEST(ToolsFromString, ReadsTheTextUpToItsLength) {
  // A NUL byte is a character outside of the grammar, but it ends a quoted string.
  EXPECT_EQ(fromText(std::string("\0 7", 3)), "7@3");
  EXPECT_EQ(fromText(std::string("{1\0,2}", 6)), "[1,2]@6");
  EXPECT_EQ(fromText(std::string("\"a\0b\"", 5)), "'a'@2");
  EXPECT_EQ(fromText(std::string("ab\0c", 4)), "'ab'@2");
}

TEST(ToolsFromString, NamesAnUnknownClassOnStandardOutput) {
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] { outcome = fromText("*Nope{1},2"); }),
            "CS_ERR_UNKNOWN_CLASS_KEY\n");
  EXPECT_EQ(outcome, "nil@6");
}

TEST(ToolsFromString, NamesAnUnknownClassWithinAFrame) {
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] { outcome = fromText("{0,*\"my class\"{1},2}"); }),
            "CS_ERR_UNKNOWN_CLASS_KEY\n");
  EXPECT_EQ(outcome, "[0,1]@17");
}

TEST(ToolsFromString, PrintsNothingElse) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(test::printedBy([] {
              for (char const* const text : {"1", "", "$", "{1,2", "(a=1)", "}"}) {
                fromText(text);
              }
            }),
            "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ToolsFromString, KeepsNoReferenceToTheText) {
  lvString const text("{kept,\"and read\"}");
  int consumed = 0;
  lvArg const value = lvToolsFromString(text, consumed);
  EXPECT_EQ(test::countOf(text), 1);
  EXPECT_EQ(test::described(value), "['kept','and read']");
}

TEST(ToolsFromString, ReadsATextOfAnyLength) {
  std::string text = "{0";
  for (int i = 1; i < 20000; ++i) {
    text += "," + std::to_string(i);
  }
  text += "}";
  int consumed = 0;
  lvVector const value(lvToolsFromString(lvString(text.c_str()), consumed));
  EXPECT_EQ(consumed, static_cast<int>(text.size()));
  ASSERT_EQ(value->getSize(), 20000);
  EXPECT_EQ(value->at(19999).getInt(), 19999);
}

}  // namespace
