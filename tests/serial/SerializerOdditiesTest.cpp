// Behaviour of the serializer that looks like a mistake and is none: other programs' texts, and
// what they make of ours, depend on it.
#include <gtest/gtest.h>

#include <string>

#include "support/FieldObjects.h"
#include "support/SinkRuns.h"
#include "support/SourceRuns.h"
#include "support/TextWriter.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/serial/lvTools.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::atom;
using test::integer;
using test::mapOf;
using test::objectOf;
using test::string;
using test::vectorOf;

std::string written(lvArg const& value, bool transferSizes = false) {
  test::TextWriter writer;
  writer.setTransferSizes(transferSizes);
  test::HeldSerializer()->serializeAtomInto(writer, value);
  return writer.text();
}

std::string readItem(std::string const& text) {
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0) << text;
  return test::described(out);
}

std::string readAll(std::string const& text) {
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeInto(out, parser), 0) << text;
  return test::described(out);
}

// ---- Writing -----------------------------------------------------------------------------------

TEST(SerializerOddities, AbandonedVectorSucceedsAndIsClosedTwice) {
  lvArg const value = vectorOf({integer(1), test::newListLike(), integer(2)});
  EXPECT_EQ(atom(value), "0: enter(25,3) put(1) error(2) abort leave");
  EXPECT_EQ(written(value), "{1}}");
}

TEST(SerializerOddities, AbandonedMapSucceedsAndIsClosedTwice) {
  lvArg const value = mapOf({{string("k"), test::newStackLike()}});
  EXPECT_EQ(atom(value), "0: enter(24,1) enter(32,2) put('k') error(1) abort abort leave");
  EXPECT_EQ(written(value), "{(k)}}");
}

TEST(SerializerOddities, SecondBracketClosesTheLevelAround) {
  lvArg const value = vectorOf({vectorOf({test::newStackLike()}), integer(2)});
  EXPECT_EQ(written(value), "{{}},2}");
}

TEST(SerializerOddities, AbandonedTupleIsClosedOnce) {
  test::TextWriter writer;
  EXPECT_EQ(test::HeldSerializer()->serializeTupleInto(writer, test::newStackLike(), integer(1)),
            -2);
  EXPECT_EQ(writer.text(), "()");
}

TEST(SerializerOddities, RefusedTupleWithAPositiveAnswerIsLeftOutOfItsMap) {
  EXPECT_EQ(test::map(mapOf({{integer(1), integer(2)}}), {{1, 5}}),
            "0: enter(24,1) enter(32,2)! leave");
}

TEST(SerializerOddities, StackHasTheMapTagButIsRefused) {
  lvArg const value = *lvrStack::defaultCtorMethod();
  EXPECT_EQ(value.getType(), lvArg::MapType);
  EXPECT_EQ(atom(value), "-2: error(1)");
  EXPECT_EQ(written(value), "");
}

TEST(SerializerOddities, ListThatIsNoVectorIsRefused) {
  for (lvArg const& value :
       {lvArg(*lvrDLList::defaultCtorMethod()), lvArg(*lvrSortedArrayList::defaultCtorMethod())}) {
    EXPECT_EQ(value.getType(), lvArg::ListType);
    EXPECT_EQ(atom(value), "-2: error(2)");
    EXPECT_EQ(written(value), "");
  }
}

TEST(SerializerOddities, RawAddressReadsBackAsNil) {
  std::string const text = written(vectorOf({test::pointer(4096)}));
  EXPECT_EQ(text, "{#nil}");
  EXPECT_EQ(readItem(text), "[nil]");
}

TEST(SerializerOddities, SharedObjectIsReadBackAsCopies) {
  lvArg const shared = vectorOf({integer(1)});
  std::string const text = written(vectorOf({shared, shared}));
  EXPECT_EQ(text, "{{1},{1}}");
  lvtStringArgSource parser(text.data(), -1);
  lvArg out;
  test::HeldSerializer()->deserializeItemInto(out, parser);
  EXPECT_FALSE(lvVector(out)->at(0).eq(lvVector(out)->at(1)));
}

TEST(SerializerOddities, CycleIsNotSeenAndEndsAtTheLevelsOfTheWriter) {
  lvVector cycle(1);
  cycle->insert(cycle, -1);
  // The 33rd level is refused, so the 32nd is closed twice and all others once.
  EXPECT_EQ(written(cycle), std::string(32, '{') + std::string(33, '}'));
  cycle->clear();
}

TEST(SerializerOddities, CycleOfMapsEndsAtTheLevelsOfTheWriter) {
  lvHashMap cycle(1);
  cycle->put(string("k"), cycle);
  std::string opened;
  std::string closed;
  for (int i = 0; i < 16; ++i) {
    opened += i == 0 ? "{(k" : "={(k";
    closed += ")}";
  }
  // The 17th map is refused. The end of the 16th closes the tuple around it, and so on outwards.
  EXPECT_EQ(written(cycle), opened + "=" + closed + "}");
  cycle->clear();
}

TEST(SerializerOddities, ObjectOfAClassWithoutFieldsIsLeftOpen) {
  test::registerClasses();
  EXPECT_EQ(atom(objectOf("Blank")), "0: enter(*Blank,-1)");
  EXPECT_EQ(written(objectOf("Blank")), "*Blank{");
}

TEST(SerializerOddities, ObjectThatIsLeftOpenTakesTheBracketOfTheLevelAround) {
  test::registerClasses();
  lvArg const value = vectorOf({integer(1), objectOf("Blank"), integer(2), integer(3)});
  EXPECT_EQ(written(value), "{1,*Blank{2,3}");
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] { outcome = readItem(written(value)); }),
            "CS_ERR_REF_SETUP_ERROR\n");
  EXPECT_EQ(outcome, "[1]");
}

TEST(SerializerOddities, FieldThatCannotBeReadLeavesTheObjectOpen) {
  test::registerClasses();
  lvArg const value = objectOf("Half", {integer(1), integer(2)});
  EXPECT_EQ(atom(value), "-2: enter(*Half,-1) put(1) error(5)");
  EXPECT_EQ(written(value), "*Half{1");
}

TEST(SerializerOddities, AbandonedObjectFailsAndIsClosedOnceUnlikeAVector) {
  test::registerClasses();
  lvArg const value = test::point(integer(1), test::newListLike());
  EXPECT_EQ(atom(value), "-1: enter(*Point,-1) put(1) error(2) abort");
  EXPECT_EQ(written(value), "*Point{1}");
}

TEST(SerializerOddities, CycleOfObjectsEndsAtTheLevelsOfTheWriter) {
  test::registerClasses();
  lvArg const cycle = objectOf("Point");
  lvArg& toItself = dynamic_cast<test::Point&>(*cycle.getReferencable()).x;
  toItself = cycle;
  std::string opened;
  for (int i = 0; i < 32; ++i) {
    opened += "*Point{";
  }
  // The name of the 33rd object stays, and each of the others is closed once.
  EXPECT_EQ(written(cycle), opened + "*Point" + std::string(32, '}'));
  toItself.setNil();
}

// ---- Reading -----------------------------------------------------------------------------------

TEST(SerializerOddities, EmptyMapReadsBackAsAnEmptyVector) {
  EXPECT_EQ(written(mapOf({})), "{}");
  EXPECT_EQ(readItem("{}"), "[]");
}

TEST(SerializerOddities, SizeReadsBackInPlaceOfTheFirstElement) {
  std::string const text = written(vectorOf({integer(1), integer(2), integer(3)}), true);
  EXPECT_EQ(text, "{[3]1,2,3}");
  EXPECT_EQ(readItem(text), "[3,2,3]");
}

TEST(SerializerOddities, MapWithSizesReadsBackAsAVector) {
  std::string const text = written(mapOf({{string("k"), integer(1)}}), true);
  EXPECT_EQ(text, "{[1]([2]k=1)}");
  // The size is the first element; "(" and the second size are skipped behind it.
  EXPECT_EQ(readItem(text), "[1,1]");
}

TEST(SerializerOddities, BackslashReadsBackAsAnEscape) {
  EXPECT_EQ(written(string("a\\n")), "\"a\\n\"");
  EXPECT_EQ(readItem(written(string("a\\n"))), "'a\\x0A'");
  EXPECT_EQ(readItem(written(string("a\\b"))), "'ab'");
}

TEST(SerializerOddities, BackslashAtTheEndSwallowsWhatFollowsTheString) {
  std::string const text = written(vectorOf({string("a\\"), integer(1)}));
  EXPECT_EQ(text, "{\"a\\\",1}");
  EXPECT_EQ(readItem(text), "['a\",1}']");
}

TEST(SerializerOddities, PercentBeforeALetterReadsAsAControlCharacter) {
  EXPECT_EQ(readItem("\"%n%t%r%z\""), "'\\x0A\\x09\\x0Dz'");
  EXPECT_EQ(readItem(written(string("%n"))), "'%n'");
}

TEST(SerializerOddities, StringIsCutAtItsNul) {
  std::string const text = written(string(std::string("a b\0c", 5)));
  EXPECT_EQ(text, "\"a b\"");
  EXPECT_EQ(readItem("\"a%00b\""), "'ab'");
}

TEST(SerializerOddities, StringThatReadsNilIsNoNil) {
  EXPECT_EQ(written(vectorOf({string("nil"), lvArg()})), "{nil,#nil}");
  EXPECT_EQ(readItem("{nil,#nil}"), "['nil',nil]");
}

TEST(SerializerOddities, AnyTokenBehindAHashIsNil) {
  EXPECT_EQ(readItem("{#nil,#null,#0,#\"x\",#{,1}"), "[nil,nil,nil,nil,nil,1]");
}

TEST(SerializerOddities, ClosingBracketOfATupleOutsideOfAMapEndsTheReading) {
  EXPECT_EQ(readAll("(a=1),2"), "['a',1]");
  EXPECT_EQ(readAll("0,(a=1),2"), "[0,'a',1]");
}

TEST(SerializerOddities, BracketsAreNotMatched) {
  EXPECT_EQ(readItem("{1)"), "[1]");
  EXPECT_EQ(readItem("{(a=1}}"), "{'a'=1}");
}

TEST(SerializerOddities, TopLevelItemsNeedASeparator) {
  EXPECT_EQ(readAll("1 2"), "[1]");
  EXPECT_EQ(readAll("1,2"), "[1,2]");
  EXPECT_EQ(readAll("1=2"), "[1,2]");
}

TEST(SerializerOddities, NilValueRemovesTheEntryOfAnEarlierTuple) {
  EXPECT_EQ(readItem("{(a=1),(a=#nil)}"), "{}");
  EXPECT_EQ(readItem("{(a=1),(a)}"), "{}");
}

TEST(SerializerOddities, FailedFrameGivesItsItemsToTheLevelAround) {
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] { outcome = readItem("{1,*Nope{2,3},4}"); }),
            "CS_ERR_UNKNOWN_CLASS_KEY\n");
  EXPECT_EQ(outcome, "[1,2,3]");
}

TEST(SerializerOddities, ObjectThatTheInputEndsInIsReadAsNilAndSucceeds) {
  test::registerClasses();
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] { outcome = readItem("*Point{1,2"); }), "Unknown error: 9");
  EXPECT_EQ(outcome, "nil");
}

TEST(SerializerOddities, ObjectTakesTheValuesOfAFailedOneForItsOwn) {
  test::registerClasses();
  std::string outcome;
  EXPECT_EQ(test::printedBy([&] { outcome = readItem("*Segment{0,*Nope{1,2},3}"); }),
            "CS_ERR_UNKNOWN_CLASS_KEY\n");
  EXPECT_EQ(outcome, "*Segment{0,1,2}");
}

unsigned int bucketsOf(lvArg const& map) {
  auto const& object = static_cast<lvrHashMap const&>(*map.getReferencable());
  return lvLayoutAccess<lvrHashMap>::hashSize(object);
}

TEST(SerializerOddities, AMapIsReadBackWithSixBucketsWhateverItHad) {
  for (int const size : {7, 1, 100}) {
    lvHashMap const map(size);
    map->put(lvString("key"), integer(1));
    int consumed = 0;
    EXPECT_EQ(bucketsOf(lvToolsFromString(lvToolsToString(map), consumed)), 6U);
  }
}

TEST(SerializerOddities, AMapThatIsReadIntoKeepsItsBuckets) {
  lvHashMap map{lvArg(*lvrHashMap::defaultCtorMethod())};
  lvtStringArgSource parser("(key=1)}", -1);
  EXPECT_EQ(test::HeldSerializer()->deserializeMapContentsInto(map, parser), 0);
  EXPECT_EQ(map->getSize(), 1);
  EXPECT_EQ(bucketsOf(map), 7U);
}

TEST(SerializerOddities, HashMapMadeByItsNameIsAVector) {
  lvtStringArgSource parser("*HashMap{}", -1);
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
  EXPECT_EQ(out.getReferencable()->getClassDesc(), lvString("Vector"));
}

TEST(SerializerOddities, NumberInPlaceOfAClassNameIsTheKindOfTheFrame) {
  EXPECT_EQ(readItem("*25{1,2}"), "[1,2]");
  EXPECT_EQ(readItem("*24{(a=1)}"), "{'a'=1}");
}

TEST(SerializerOddities, PunctuationInPlaceOfAClassNameGivesTheFrameNoKind) {
  lvtStringArgSource parser("*#{1}", -1);
  lvArg out = integer(5);
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), -1);
  EXPECT_EQ(out.getInt(), 5);
}

TEST(SerializerOddities, TupleLeavesTheValueAloneWhenItHasNoItems) {
  EXPECT_EQ(test::readTuple({test::frameEnd()}), "0: nil = same");
}

}  // namespace
