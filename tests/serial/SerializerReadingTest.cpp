// What the serializer builds from the answers of a source, and what it answers itself.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/SourceRuns.h"
#include "support/UnusualObjects.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::begin;
using test::beginObject;
using test::frameEnd;
using test::inputEnd;
using test::integer;
using test::item;
using test::nothing;
using test::readAll;
using test::readFrame;
using test::readItem;
using test::readMapContents;
using test::readObject;
using test::readTuple;
using test::readVectorContents;
using test::Script;

constexpr int Map = 24;
constexpr int Vector = 25;
constexpr int Tuple = 32;

constexpr char UnknownClass[] = "CS_ERR_UNKNOWN_CLASS_KEY\n";

// Answers that mean that nothing was read.
std::vector<int> undocumentedCodes() {
  return {1, 2, 3, 4, 5, 8, 10, 24, 32, 256, -1, -2, -6, -7, -9, 2147483647, -2147483647 - 1};
}

// `script` with one answer that means nothing before each of its own, and one behind.
Script withNothingBetween(int code, Script const& script) {
  Script all;
  for (test::Answer const& answer : script) {
    all.push_back(nothing(code));
    all.push_back(answer);
  }
  all.push_back(nothing(code));
  return all;
}

std::string readText(char const* text) {
  lvtStringArgSource parser(text, -1);
  lvArg out = test::untouched();
  int const status = test::HeldSerializer()->deserializeInto(out, parser);
  return std::to_string(status) + ": " + test::describedOutput(out);
}

// ---- One item ----------------------------------------------------------------------------------

TEST(DeserializeItem, ReadsScalars) {
  EXPECT_EQ(readItem({item(-3), item(4)}), "0: -3 +1");
  EXPECT_EQ(readItem({item("a b")}), "0: 'a b'");
  EXPECT_EQ(readItem({item(lvArg())}), "0: nil");
}

TEST(DeserializeItem, HandsOutTheVeryStringOfTheSource) {
  lvArg const text = test::string("a");
  test::ScriptedSource source({item(text)});
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, source), 0);
  EXPECT_TRUE(out.eq(text));
}

TEST(DeserializeItem, ReadsOverCodesThatMeanNothing) {
  for (int const code : undocumentedCodes()) {
    EXPECT_EQ(readItem({nothing(code), nothing(code), item(1)}), "0: 1") << code;
  }
}

TEST(DeserializeItem, HandsOnTheEndOfTheFrame) {
  EXPECT_EQ(readItem({frameEnd(), item(1)}), "7: same +1");
  EXPECT_EQ(readItem({{lvArgSource::SOURCE_FRAME_END, integer(5)}}), "7: same");
}

TEST(DeserializeItem, HandsOnTheEndOfTheInput) {
  EXPECT_EQ(readItem({}), "9: same");
  EXPECT_EQ(readItem({inputEnd(), item(1)}), "9: same +1");
  EXPECT_EQ(readItem({{lvArgSource::SOURCE_END, integer(5)}}), "9: same");
}

TEST(DeserializeItem, BuildsAWholeFrame) {
  EXPECT_EQ(readItem({begin(Vector), item(1), begin(Vector), item(2), frameEnd(), item(3),
                      frameEnd(), item(4)}),
            "0: [1,[2],3] +1");
  EXPECT_EQ(readItem({begin(Map), begin(Tuple), item("k"), item(1), frameEnd(), frameEnd()}),
            "0: {'k'=1}");
}

TEST(DeserializeItem, HandsOnTheFailureOfItsFrame) {
  EXPECT_EQ(readItem({begin(Tuple), item(1)}), "-1: same +1");
  EXPECT_EQ(readItem({begin(lvArg()), item(1)}), "-1: same +1");
}

TEST(DeserializeItem, OfAnUnknownClassFailsAndNamesTheError) {
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] {
              outcome = readItem({beginObject("Nope"), item(1)});
            }),
            UnknownClass);
  EXPECT_EQ(outcome, "-4: same +1");
}

TEST(DeserializeItem, ReplacesWhatTheOutputHeld) {
  lvArg const old = test::string("old");
  lvArg out = old;
  test::ScriptedSource source({begin(Vector), frameEnd()});
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, source), 0);
  EXPECT_EQ(test::described(out), "[]");
  EXPECT_EQ(test::countOf(old), 1);
}

TEST(DeserializeItem, GivesTheOutputTheOnlyReference) {
  lvArg out;
  test::ScriptedSource source({begin(Vector), begin(Map), frameEnd(), frameEnd()});
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, source), 0);
  EXPECT_EQ(test::countOf(out), 1);
  EXPECT_EQ(test::countOf(lvVector(out)->at(0)), 2);  // One of them is the cell that asks.
}

TEST(DeserializeItem, BuildsNewObjectsForEachFrame) {
  lvtStringArgSource parser("{{1},{1}}", -1);
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
  EXPECT_FALSE(lvVector(out)->at(0).eq(lvVector(out)->at(1)));
}

// ---- A frame -----------------------------------------------------------------------------------

TEST(DeserializeFrame, MakesAHashMapOrAVector) {
  lvArg out;
  test::ScriptedSource source({});
  test::HeldSerializer const serializer;
  EXPECT_EQ(serializer->deserializeFrameInto(out, source, integer(Map)), 0);
  EXPECT_EQ(out.getReferencable()->getClassDesc(), lvString("HashMap"));
  EXPECT_EQ(serializer->deserializeFrameInto(out, source, integer(Vector)), 0);
  EXPECT_EQ(out.getReferencable()->getClassDesc(), lvString("Vector"));
}

TEST(DeserializeFrame, ReadsUpToTheEndOfTheFrame) {
  EXPECT_EQ(readFrame(integer(Vector), {item(1), item(2), frameEnd(), item(3)}), "0: [1,2] +1");
  EXPECT_EQ(
      readFrame(integer(Map), {begin(Tuple), item(1), item(2), frameEnd(), frameEnd(), item(3)}),
      "0: {1=2} +1");
}

TEST(DeserializeFrame, IsCompleteAtTheEndOfTheInput) {
  EXPECT_EQ(readFrame(integer(Vector), {item(1)}), "0: [1]");
  EXPECT_EQ(readFrame(integer(Map), {begin(Tuple), item(1), item(2)}), "0: {1=2}");
}

TEST(DeserializeFrame, OfNoKindFails) { EXPECT_EQ(readFrame(lvArg(), {item(1)}), "-1: same +1"); }

TEST(DeserializeFrame, OfAnotherNumberFails) {
  for (int const kind : {Tuple, 0, -1, 1, 18, 23, 26, 27, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(readFrame(integer(kind), {item(1)}), "-1: same +1") << kind;
  }
}

TEST(DeserializeFrame, OfAnUnknownClassFailsAndReadsNothing) {
  for (lvArg const& name : {test::string("Nope"), test::string(""), lvArg(lvString("Nope")),
                            test::pointer(24), test::vectorOf({})}) {
    std::string outcome;
    EXPECT_EQ(test::printedBy([&] { outcome = readFrame(name, {item(1)}); }), UnknownClass);
    EXPECT_EQ(outcome, "-4: same +1");
  }
}

TEST(DeserializeFrame, FailsWhenItsMapFails) {
  EXPECT_EQ(readFrame(integer(Map), {begin(Vector), item(1)}), "-1: same +1");
}

TEST(DeserializeFrame, MayBeReadIntoItsOwnKind) {
  lvArg kindAndOut = integer(Vector);
  test::ScriptedSource source({item(1)});
  EXPECT_EQ(test::HeldSerializer()->deserializeFrameInto(kindAndOut, source, kindAndOut), 0);
  EXPECT_EQ(test::described(kindAndOut), "[1]");
}

// ---- An object ---------------------------------------------------------------------------------

TEST(DeserializeReferencable, OfAnUnknownClassFailsAndReadsNothing) {
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] {
              outcome = readObject(test::string("Nope"), {item(1), frameEnd()});
            }),
            UnknownClass);
  EXPECT_EQ(outcome, "-4: same +2");
}

TEST(DeserializeReferencable, NamesTheErrorEachTime) {
  EXPECT_EQ(test::printedBy([] { readText("*Nope{*Nope{*Nope{1}"); }),
            std::string(UnknownClass) + UnknownClass + UnknownClass);
}

TEST(DeserializeReferencable, PrintsNothingOnStandardError) {
  testing::internal::CaptureStderr();
  test::printedBy([] { readText("*Nope{1}"); });
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// ---- A tuple -----------------------------------------------------------------------------------

TEST(DeserializeTuple, ReadsKeyAndValue) {
  EXPECT_EQ(readTuple({item("k"), item(1), frameEnd(), item(2)}), "0: 'k' +1 = 1");
}

TEST(DeserializeTuple, OfOneItemHasNoValue) {
  EXPECT_EQ(readTuple({item("k"), frameEnd()}), "0: 'k' = nil");
}

TEST(DeserializeTuple, OfNoItemHasNoKeyAndLeavesTheValueAlone) {
  EXPECT_EQ(readTuple({frameEnd(), item(1)}), "0: nil +1 = same");
  EXPECT_EQ(readTuple({}), "0: nil = same");
}

TEST(DeserializeTuple, DropsFurtherItems) {
  EXPECT_EQ(readTuple({item(1), item(2), item(3), frameEnd()}), "0: 1 = 2");
  EXPECT_EQ(readTuple({item(1), item(2), item(3), begin(Vector), item(4), frameEnd(), item(5),
                       frameEnd(), item(6)}),
            "0: 1 +1 = 2");
}

TEST(DeserializeTuple, TakesFramesForKeyAndValue) {
  EXPECT_EQ(readTuple({begin(Vector), item(1), frameEnd(), begin(Map), frameEnd(), frameEnd()}),
            "0: [1] = {}");
}

TEST(DeserializeTuple, CountsNilItems) {
  EXPECT_EQ(readTuple({item(lvArg()), item(1), frameEnd()}), "0: nil = 1");
  EXPECT_EQ(readTuple({item(1), item(lvArg()), item(2), frameEnd()}), "0: 1 = nil");
}

TEST(DeserializeTuple, EndsWithTheInput) {
  EXPECT_EQ(readTuple({item(1)}), "0: 1 = nil");
  EXPECT_EQ(readTuple({item(1), item(2), inputEnd(), item(3)}), "0: 1 +1 = 2");
}

TEST(DeserializeTuple, ReadsOverCodesThatMeanNothing) {
  for (int const code : undocumentedCodes()) {
    EXPECT_EQ(readTuple(withNothingBetween(code, {item(1), item(2), item(3), frameEnd()})),
              "0: 1 +1 = 2")
        << code;
  }
}

TEST(DeserializeTuple, SkipsFramesThatFail) {
  EXPECT_EQ(readTuple({begin(Tuple), item(1), item(2), frameEnd(), item(3), frameEnd()}),
            "0: 1 +2 = 2");
  EXPECT_EQ(readTuple({begin(lvArg()), item(1), begin(7), item(2), begin(Tuple), frameEnd()}),
            "0: 1 = 2");
}

TEST(DeserializeTuple, ReplacesKeyAndValue) {
  lvArg const old = test::string("old");
  lvArg key = old;
  lvArg value = old;
  test::ScriptedSource source({item(1)});
  EXPECT_EQ(test::HeldSerializer()->deserializeTupleInto(key, value, source), 0);
  EXPECT_EQ(key.getInt(), 1);
  EXPECT_TRUE(value.isNil());
  EXPECT_EQ(test::countOf(old), 1);
}

// ---- The contents of a map ---------------------------------------------------------------------

TEST(DeserializeMapContents, AddsItsTuples) {
  EXPECT_EQ(readMapContents({begin(Tuple), item("a"), item(1), frameEnd(), begin(Tuple), item("b"),
                             item(2), frameEnd(), frameEnd(), item(3)}),
            "0: {'a'=1,'b'=2,'old'=1} +1");
}

TEST(DeserializeMapContents, MayBeNone) {
  EXPECT_EQ(readMapContents({frameEnd()}), "0: {'old'=1}");
}

TEST(DeserializeMapContents, EndWithTheInput) {
  EXPECT_EQ(readMapContents({}), "9: {'old'=1}");
  EXPECT_EQ(readMapContents({inputEnd(), item(1)}), "9: {'old'=1} +1");
}

TEST(DeserializeMapContents, KeepATupleThatTheInputDoesNotClose) {
  EXPECT_EQ(readMapContents({begin(Tuple), item("a"), item(1)}), "9: {'a'=1,'old'=1}");
}

TEST(DeserializeMapContents, DropItemsOutsideOfATuple) {
  EXPECT_EQ(readMapContents({item("a"), item(1), begin(Tuple), item(2), item(3), frameEnd(),
                             item(4), frameEnd()}),
            "0: {'old'=1,2=3}");
}

TEST(DeserializeMapContents, FailAtAnotherFrame) {
  for (lvArg const& kind : {integer(Map), integer(Vector), integer(0), integer(-1), lvArg(),
                            test::pointer(Tuple), test::string("Nope"), test::string("32")}) {
    EXPECT_EQ(readMapContents({begin(Tuple), item(1), item(2), frameEnd(), begin(kind), item(3)}),
              "-1: {'old'=1,1=2} +1");
  }
}

TEST(DeserializeMapContents, FailAtAnObjectWithoutNamingAnError) {
  EXPECT_EQ(test::printedBy([] { readMapContents({beginObject("Nope")}); }), "");
}

TEST(DeserializeMapContents, ReadOverCodesThatMeanNothing) {
  for (int const code : undocumentedCodes()) {
    EXPECT_EQ(readMapContents(withNothingBetween(
                  code, {begin(Tuple), item(1), item(2), frameEnd(), frameEnd()})),
              "0: {'old'=1,1=2} +1")
        << code;
  }
}

TEST(DeserializeMapContents, LetTheLastOfEqualKeysWin) {
  EXPECT_EQ(readMapContents({begin(Tuple), item("a"), item(1), frameEnd(), begin(Tuple), item("a"),
                             item(2), frameEnd(), frameEnd()}),
            "0: {'a'=2,'old'=1}");
}

TEST(DeserializeMapContents, ReplaceWhatTheMapHeld) {
  EXPECT_EQ(readMapContents({begin(Tuple), item("old"), item(2), frameEnd(), frameEnd()}),
            "0: {'old'=2}");
}

TEST(DeserializeMapContents, RemoveTheEntryOfATupleWithoutAValue) {
  EXPECT_EQ(readMapContents({begin(Tuple), item("old"), frameEnd(), frameEnd()}), "0: {}");
  EXPECT_EQ(readMapContents({begin(Tuple), item("a"), frameEnd(), frameEnd()}), "0: {'old'=1}");
}

TEST(DeserializeMapContents, IgnoreATupleOfNoItems) {
  EXPECT_EQ(readMapContents({begin(Tuple), frameEnd(), frameEnd()}), "0: {'old'=1}");
}

TEST(DeserializeMapContents, StartEachTupleAnew) {
  EXPECT_EQ(readMapContents({begin(Tuple), item("a"), item(1), frameEnd(), begin(Tuple), item("b"),
                             frameEnd(), begin(Tuple), frameEnd(), frameEnd()}),
            "0: {'a'=1,'old'=1}");
}

TEST(DeserializeMapContents, TakeKeysOfAnyKind) {
  EXPECT_EQ(readMapContents({begin(Tuple), item(lvArg()), item(1), frameEnd(), begin(Tuple),
                             begin(Vector), item(2), frameEnd(), item(3), frameEnd(), frameEnd()}),
            "0: {'old'=1,[2]=3,nil=1}");
}

// What the map of a handle is asked for.
class PutRecorder : public test::PairMap {
 public:
  explicit PutRecorder(std::string& calls) : PairMap({}), calls_(calls) {}
  int put(lvArg const& key, lvArg const& value, lvArg* old) override {
    calls_ += test::described(key) + "=" + test::described(value) + (old == nullptr ? ";" : "!");
    return -22;
  }

 private:
  std::string& calls_;
};

TEST(DeserializeMapContents, GoThroughTheMapInterfaceAndIgnoreItsAnswer) {
  std::string calls;
  lvHashMap map(lvArg(*new PutRecorder(calls)));
  test::ScriptedSource source({begin(Tuple), item(1), frameEnd(), begin(Tuple), item("a"), item(2),
                               frameEnd(), frameEnd()});
  EXPECT_EQ(test::HeldSerializer()->deserializeMapContentsInto(map, source), 0);
  EXPECT_EQ(calls, "1=nil;'a'=2;");
}

TEST(DeserializeMapContents, FailOnAHandleThatHoldsNoMap) {
  test::HeldSerializer const serializer;
  for (lvArg const& held : {lvArg(), test::newStackLike()}) {
    lvHashMap map(held);
    test::ScriptedSource source({frameEnd()});
    EXPECT_EQ(serializer->deserializeMapContentsInto(map, source), -1);
    EXPECT_EQ(source.reads(), 0U);
  }
}

// ---- The contents of a vector ------------------------------------------------------------------

TEST(DeserializeVectorContents, AppendsItsItems) {
  EXPECT_EQ(readVectorContents({item(1), item(lvArg()), item("a"), frameEnd(), item(2)}),
            "0: ['old',1,nil,'a'] +1");
}

TEST(DeserializeVectorContents, MayBeNone) {
  EXPECT_EQ(readVectorContents({frameEnd()}), "0: ['old']");
}

TEST(DeserializeVectorContents, EndWithTheInput) {
  EXPECT_EQ(readVectorContents({item(1)}), "9: ['old',1]");
  EXPECT_EQ(readVectorContents({inputEnd(), item(1)}), "9: ['old'] +1");
}

TEST(DeserializeVectorContents, ReadOverCodesThatMeanNothing) {
  for (int const code : undocumentedCodes()) {
    EXPECT_EQ(readVectorContents(withNothingBetween(code, {item(1), frameEnd()})),
              "0: ['old',1] +1")
        << code;
  }
}

TEST(DeserializeVectorContents, DropFramesThatFailAndTakeTheirItems) {
  EXPECT_EQ(readVectorContents({begin(Tuple), item(1), item(2), frameEnd(), item(3)}),
            "0: ['old',1,2] +1");
  EXPECT_EQ(readVectorContents({begin(lvArg()), begin(0), item(1), frameEnd()}), "0: ['old',1]");
}

TEST(DeserializeVectorContents, TakeTheItemsOfAnUnknownClass) {
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] {
              outcome = readVectorContents({beginObject("Nope"), item(1), frameEnd(), item(2)});
            }),
            UnknownClass);
  EXPECT_EQ(outcome, "0: ['old',1] +1");
}

TEST(DeserializeVectorContents, TakeTheItemsOfAMapThatFails) {
  EXPECT_EQ(readVectorContents({begin(Map), begin(Tuple), item(1), item(2), frameEnd(),
                                begin(Vector), item(3), frameEnd(), item(4)}),
            "0: ['old',3] +1");
}

// It tells where it is asked to insert.
class InsertRecorder : public lvrVector {
 public:
  explicit InsertRecorder(std::string& calls) : lvrVector(1), calls_(calls) {}
  bool insert(lvArg const& value, int index) override {
    calls_ += test::described(value) + "@" + std::to_string(index) + ";";
    return false;
  }

 private:
  std::string& calls_;
};

TEST(DeserializeVectorContents, GoThroughTheListInterfaceAndIgnoreItsAnswer) {
  std::string calls;
  lvVector vector(lvArg(*new InsertRecorder(calls)));
  test::ScriptedSource source({item(1), item("a"), frameEnd()});
  EXPECT_EQ(test::HeldSerializer()->deserializeVectorContentsInto(vector, source), 0);
  EXPECT_EQ(calls, "1@-1;'a'@-1;");
}

TEST(DeserializeVectorContents, DropElementsBeyondTheLimitOfAVector) {
  Script script(lvrVector::MaxSize, item(1));
  script.push_back(item(2));
  script.push_back(frameEnd());
  lvVector vector(6);
  test::ScriptedSource source(script);
  EXPECT_EQ(test::HeldSerializer()->deserializeVectorContentsInto(vector, source), 0);
  EXPECT_EQ(vector->getSize(), lvrVector::MaxSize);
  EXPECT_EQ(vector->at(lvrVector::MaxSize - 1).getInt(), 1);
}

TEST(DeserializeVectorContents, FailOnAHandleThatHoldsNoList) {
  test::HeldSerializer const serializer;
  for (lvArg const& held : {lvArg(), test::newListLike()}) {
    lvVector vector(held);
    test::ScriptedSource source({item(1), frameEnd()});
    EXPECT_EQ(serializer->deserializeVectorContentsInto(vector, source), -1);
    EXPECT_EQ(source.reads(), 0U);
  }
}

// ---- All items ---------------------------------------------------------------------------------

TEST(Deserialize, ReadsEveryItemUpToTheEndOfTheInput) {
  EXPECT_EQ(readAll({item(1), begin(Vector), item(2), frameEnd(), item("a")}), "0: [1,[2],'a']");
  EXPECT_EQ(readText("1,{2},a"), "0: [1,[2],'a']");
}

TEST(Deserialize, OfNoInputIsAnEmptyVector) {
  EXPECT_EQ(readAll({}), "0: []");
  EXPECT_EQ(readText(""), "0: []");
}

TEST(Deserialize, StopsAtTheEndOfAFrameThatWasOpen) {
  EXPECT_EQ(readAll({item(1), frameEnd(), item(2)}), "0: [1] +1");
  EXPECT_EQ(readText("1},2"), "0: [1]");
}

TEST(Deserialize, TakesTheItemsOfATupleOutsideOfAMap) {
  EXPECT_EQ(readText("(a=1)"), "0: ['a',1]");
  EXPECT_EQ(readText("(a=1),2"), "0: ['a',1]");
}

TEST(Deserialize, ReadsMapsOfTheTextParser) {
  EXPECT_EQ(readText("{(k=1)}"), "0: [{'k'=1}]");
  EXPECT_EQ(readText("{(a=1),(b={(c=2)})},{}"), "0: [{'a'=1,'b'={'c'=2}},[]]");
}

TEST(Deserialize, GivesATupleOfTheTextParserItsTwoFirstItems) {
  EXPECT_EQ(readText("{(),(a=),(b),(c=1),(d=2=3),(e,4)}"), "0: [{'c'=1,'d'=2,'e'=4}]");
  EXPECT_EQ(readText("{(=1)}"), "0: [{nil=1}]");
}

TEST(Deserialize, TakesTheTwoSeparatorsForTheSame) {
  EXPECT_EQ(readText("{1=2,3}"), "0: [[1,2,3]]");
  EXPECT_EQ(readText("{(a,1)=(b=2)}"), "0: [{'a'=1,'b'=2}]");
}

TEST(Deserialize, ReadsAnItemThatIsMissingAsNil) {
  EXPECT_EQ(readText("{,}"), "0: [[nil]]");
  EXPECT_EQ(readText("{1,,2}"), "0: [[1,nil,2]]");
  EXPECT_EQ(readText("{1,}"), "0: [[1]]");
  EXPECT_EQ(readText(",1"), "0: [nil,1]");
}

TEST(Deserialize, DropsWhatStandsBetweenTuples) {
  EXPECT_EQ(readText("{(a=1),2,,(b=3)}"), "0: [{'a'=1,'b'=3}]");
}

// What is read of a text that ends early, by the number of its characters.
TEST(Deserialize, CompletesTheFramesThatTheInputLeavesOpen) {
  std::string const text = "{1,{(k={2})},3}";
  std::vector<std::string> const expected = {
      "0: []",
      "0: [[]]",
      "0: [[1]]",
      "0: [[1]]",
      "0: [[1,[]]]",
      "0: [[1,{}]]",
      "0: [[1,{}]]",
      "0: [[1,{}]]",
      "0: [[1,{'k'=[]}]]",
      "0: [[1,{'k'=[2]}]]",
      "0: [[1,{'k'=[2]}]]",
      "0: [[1,{'k'=[2]}]]",
      "0: [[1,{'k'=[2]}]]",
      "0: [[1,{'k'=[2]}]]",
      "0: [[1,{'k'=[2]},3]]",
      "0: [[1,{'k'=[2]},3]]",
  };
  ASSERT_EQ(expected.size(), text.size() + 1);
  for (std::size_t length = 0; length <= text.size(); ++length) {
    EXPECT_EQ(readText(text.substr(0, length).c_str()), expected[length]) << length;
  }
}

TEST(Deserialize, ReplacesWhatTheOutputHeld) {
  lvArg const old = test::string("old");
  lvArg out = old;
  test::ScriptedSource source({});
  EXPECT_EQ(test::HeldSerializer()->deserializeInto(out, source), 0);
  EXPECT_EQ(test::countOf(old), 1);
  EXPECT_EQ(test::countOf(out), 1);
}

TEST(Deserialize, PrintsNothingAboutSoundInput) {
  EXPECT_EQ(test::printedBy([] { readText("{1,{(k={2})},3},(x=y)"); }), "");
}

}  // namespace
