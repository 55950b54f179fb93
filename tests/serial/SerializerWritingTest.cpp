// What the serializer calls on a sink, and what it answers.
#include <gtest/gtest.h>

#include <string>

#include "support/CellWords.h"
#include "support/SinkRuns.h"
#include "support/TextWriter.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"

namespace {

using test::atom;
using test::integer;
using test::map;
using test::mapOf;
using test::object;
using test::RecordingDest;
using test::string;
using test::tuple;
using test::vector;
using test::vectorOf;

// What a sink may answer.
constexpr int Failures[] = {-1, -2, -7, lvtStringArgDest::ROOM_ERROR, -2147483647 - 1};
constexpr int Positives[] = {1, 7, 9, 2147483647};

std::string number(int status) { return std::to_string(status); }

// The text that the text writer makes of a value.
std::string written(lvArg const& value) {
  test::TextWriter writer;
  test::HeldSerializer()->serializeAtomInto(writer, value);
  return writer.text();
}

// The cell that the sink is handed for a scalar.
lvArg const* handedOn(lvArg const& value) {
  RecordingDest dest;
  test::HeldSerializer()->serializeAtomInto(dest, value);
  return dest.lastPut();
}

// A vector that tells a size and elements of its own.
class CountingVector : public lvrVector {
 public:
  CountingVector() : lvrVector(1) {}
  int getSize() const override { return 3; }
  lvArg at(int index) const override { return integer(10 * index); }
};

// ---- The object --------------------------------------------------------------------------------

TEST(Serializer, IsAPlainObjectOfItsClass) {
  lvArg const cell(*new lvrCommonSerializer);
  EXPECT_EQ(cell.getType(), lvArg::ObjectType);
  EXPECT_EQ(cell.getReferencable()->getClassDesc(), lvString("CommonSerializer"));
  EXPECT_TRUE(lvrCommonSerializer::getStaticClassDesc().eq(lvString("CommonSerializer")));
}

TEST(Serializer, HasNoFieldsOfItsOwn) {
  EXPECT_EQ(sizeof(lvrCommonSerializer), sizeof(lvReferencable));
}

TEST(Serializer, KeepsTheOtherOperationsOfEveryObject) {
  lvArg const first(*new lvrCommonSerializer);
  lvArg const second(*new lvrCommonSerializer);
  lvReferencable& object = *first.getReferencable();
  EXPECT_EQ(object.equiv(object), 1);
  EXPECT_EQ(object.equiv(*second.getReferencable()), 0);
  EXPECT_EQ(object.hashCode(), 0U);
  EXPECT_TRUE(object.getValue().isNil());
  EXPECT_EQ(object.__mark(), 0);
  EXPECT_EQ(object.__hook(), 0);
}

TEST(Serializer, HasNothingToFinalize) {
  test::HeldSerializer const serializer;
  EXPECT_EQ(serializer->finalize(), 0);
  RecordingDest dest;
  EXPECT_EQ(serializer->serializeAtomInto(dest, lvArg::TrueValue), 0);
}

TEST(Serializer, ServesOneTreeAfterAnother) {
  test::HeldSerializer const serializer;
  RecordingDest failing;
  failing.answer(1, -1);
  serializer->serializeAtomInto(failing, vectorOf({integer(1)}));
  RecordingDest dest;
  EXPECT_EQ(serializer->serializeAtomInto(dest, vectorOf({integer(1)})), 0);
  EXPECT_EQ(dest.calls(), "enter(25,1) put(1) leave");
}

TEST(Serializer, StatusNumbersAreThoseOfCompiledPrograms) {
  EXPECT_EQ(lvrCommonSerializer::CS_ERR_FAILED, -1);
  EXPECT_EQ(lvrCommonSerializer::CS_ERR_SOURCE, -2);
  EXPECT_EQ(lvrCommonSerializer::CS_ERR_UNKNOWN_CLASS_KEY, -4);
  EXPECT_EQ(lvrCommonSerializer::CS_ERR_NO_CLASS_CTOR, -5);
  EXPECT_EQ(lvrCommonSerializer::CS_ERR_REF_SETUP_ERROR, -6);
}

// ---- One value ---------------------------------------------------------------------------------

TEST(SerializeAtom, PutsScalarsAsTheyAre) {
  EXPECT_EQ(atom(lvArg::NilValue), "0: put(nil)");
  EXPECT_EQ(atom(integer(-5)), "0: put(-5)");
  EXPECT_EQ(atom(test::pointer(4096)), "0: put(@4096)");
  EXPECT_EQ(atom(string("a b")), "0: put('a b')");
  EXPECT_EQ(atom(lvArg::TrueValue), "0: put(1)");
}

TEST(SerializeAtom, HandsOnTheVeryCell) {
  for (lvArg const& value : {integer(3), test::pointer(16), string("a")}) {
    EXPECT_EQ(handedOn(value), &value);
  }
}

TEST(SerializeAtom, HandsOnTheSharedNil) {
  lvArg const nil;
  EXPECT_EQ(handedOn(nil), &lvArg::NilValue);
  EXPECT_EQ(handedOn(test::newClass()), &lvArg::NilValue);
}

TEST(SerializeAtom, PutsNilForAClass) { EXPECT_EQ(atom(test::newClass()), "0: put(nil)"); }

TEST(SerializeAtom, PutsNilForUnknownTags) {
  for (unsigned const tag : test::unknownTags()) {
    lvArg value;
    EXPECT_EQ(atom(test::makeUnknown(value, tag)), "0: put(nil)") << tag;
  }
}

TEST(SerializeAtom, PutsNilForUnknownTagsOfReferences) {
  for (unsigned const tag : {16U, 17U, 20U, 21U, 22U, 23U, 26U, 28U, 29U, 30U, 31U}) {
    lvArg value = test::newMap();
    test::setTag(value, tag);
    EXPECT_EQ(atom(value), "0: put(nil)") << tag;
  }
}

TEST(SerializeAtom, GoesByTheTagAlone) {
  lvArg value = test::marked(integer(5), test::Marks);
  EXPECT_EQ(atom(value), "0: put(5)");
  value = test::marked(vectorOf({}), test::Marks);
  EXPECT_EQ(atom(value), "0: enter(25,0) leave");
}

TEST(SerializeAtom, HandsOnWhatTheSinkAnswers) {
  for (int const status : Failures) {
    EXPECT_EQ(atom(integer(1), {{0, status}}), number(status) + ": put(1)!");
    EXPECT_EQ(atom(test::newClass(), {{0, status}}), number(status) + ": put(nil)!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(atom(string("a"), {{0, status}}), number(status) + ": put('a')!");
    EXPECT_EQ(atom(lvArg::NilValue, {{0, status}}), number(status) + ": put(nil)!");
  }
}

TEST(SerializeAtom, WalksMapsAndVectors) {
  EXPECT_EQ(atom(mapOf({{string("k"), integer(1)}})),
            "0: enter(24,1) enter(32,2) put('k') put(1) leave leave");
  EXPECT_EQ(atom(vectorOf({integer(1), string("a"), lvArg()})),
            "0: enter(25,3) put(1) put('a') put(nil) leave");
}

TEST(SerializeAtom, PutsNilForAnObjectThatIsMissing) {
  EXPECT_EQ(atom(test::unheld(test::newPlainObject())), "0: put(nil)");
}

TEST(SerializeAtom, ReportsMissingMapsAndVectors) {
  EXPECT_EQ(atom(test::unheld(test::newMap())), "-2: error(1)");
  EXPECT_EQ(atom(test::unheld(test::newList())), "-2: error(2)");
}

TEST(SerializeAtom, HandsOnAStringThatIsMissing) {
  lvArg const value = test::unheld(string("a"));
  EXPECT_EQ(handedOn(value), &value);
}

TEST(SerializeAtom, NestsToAnyDepthThatTheSinkTakes) {
  lvArg value = integer(1);
  std::string expected = "put(1)";
  for (int i = 0; i < 100; ++i) {
    value = vectorOf({value});
    expected = "enter(25,1) " + expected + " leave";
  }
  EXPECT_EQ(atom(value), "0: " + expected);
}

TEST(SerializeAtom, TakesNoReferenceThatStays) {
  lvArg const inner = mapOf({{string("k"), string("v")}});
  lvArg const value = vectorOf({inner, inner});
  EXPECT_EQ(written(value), "{{(k=v)},{(k=v)}}");
  EXPECT_EQ(test::countOf(value), 1);
  EXPECT_EQ(test::countOf(inner), 3);
}

TEST(SerializeAtom, WritesTextThroughTheTextWriter) {
  EXPECT_EQ(written(vectorOf({integer(1), string("a"), lvArg()})), "{1,a,#nil}");
  EXPECT_EQ(written(mapOf({{string("k"), integer(1)}})), "{(k=1)}");
  EXPECT_EQ(
      written(vectorOf({integer(1), integer(-2), string("hello world"), lvArg(), string("abc")})),
      "{1,-2,\"hello world\",#nil,abc}");
}

TEST(SerializeAtom, TellsTheSizesThatTheTextWriterCanTransfer) {
  test::TextWriter writer;
  writer.setTransferSizes(true);
  lvArg const value = vectorOf({mapOf({{string("name"), string("x y")}}), vectorOf({})});
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, value), 0);
  EXPECT_EQ(writer.text(), "{[2]{[1]([2]name=\"x y\")},{[0]}}");
}

// ---- A tuple -----------------------------------------------------------------------------------

TEST(SerializeTuple, IsALevelOfTwoElements) {
  EXPECT_EQ(tuple(string("k"), integer(1)), "0: enter(32,2) put('k') put(1) leave");
}

TEST(SerializeTuple, TakesKeysAndValuesOfAnyKind) {
  EXPECT_EQ(tuple(vectorOf({}), mapOf({})),
            "0: enter(32,2) enter(25,0) leave enter(24,0) leave leave");
  EXPECT_EQ(tuple(lvArg(), lvArg()), "0: enter(32,2) put(nil) put(nil) leave");
}

TEST(SerializeTuple, HandsOnARefusedLevelAsItIs) {
  for (int const status : Failures) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{0, status}}), number(status) + ": enter(32,2)!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{0, status}}), number(status) + ": enter(32,2)!");
  }
}

TEST(SerializeTuple, IsAbortedWhenItsKeyFails) {
  for (int const status : Failures) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{1, status}}),
              number(status) + ": enter(32,2) put(1)! abort");
  }
}

TEST(SerializeTuple, IsAbortedWhenItsValueFails) {
  for (int const status : Failures) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{2, status}}),
              number(status) + ": enter(32,2) put(1) put(2)! abort");
  }
}

TEST(SerializeTuple, TakesPositiveAnswersOfItsItemsForSuccess) {
  for (int const status : Positives) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{1, status}, {2, status}}),
              "0: enter(32,2) put(1)! put(2)! leave");
  }
}

TEST(SerializeTuple, HandsOnTheAnswerOfItsEnd) {
  for (int const status : Failures) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{3, status}}),
              number(status) + ": enter(32,2) put(1) put(2) leave!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(tuple(integer(1), integer(2), {{3, status}}),
              number(status) + ": enter(32,2) put(1) put(2) leave!");
  }
}

TEST(SerializeTuple, IgnoresTheAnswerOfTheAbort) {
  EXPECT_EQ(tuple(integer(1), integer(2), {{1, -7}, {2, -8}}), "-7: enter(32,2) put(1)! abort!");
}

TEST(SerializeTuple, HandsOnAnErrorOfItsKey) {
  EXPECT_EQ(tuple(test::newStackLike(), integer(2)), "-2: enter(32,2) error(1) abort");
}

// ---- A map -------------------------------------------------------------------------------------

TEST(SerializeMap, IsALevelOfItsTuples) {
  EXPECT_EQ(map(mapOf({})), "0: enter(24,0) leave");
  EXPECT_EQ(map(mapOf({{string("k"), integer(1)}})),
            "0: enter(24,1) enter(32,2) put('k') put(1) leave leave");
}

TEST(SerializeMap, KeepsTheOrderOfTheMap) {
  lvHashMap entries(3);
  for (int key = 0; key < 20; ++key) {
    entries->put(integer(key), integer(-key));
  }
  std::string expected = "0: enter(24,20)";
  for (lvMapEnumerator entry(*entries.getMap()); entry->next();) {
    std::string const key = number(entry->getKey().getInt());
    expected += " enter(32,2) put(" + key + ") put(" + (key == "0" ? "" : "-") + key + ") leave";
  }
  EXPECT_EQ(map(entries), expected + " leave");
}

TEST(SerializeMap, WalksAMapOfTheUsersOwn) {
  lvArg const own(*new test::PairMap({{integer(2), string("b")}, {integer(1), lvArg()}}));
  EXPECT_EQ(atom(own),
            "0: enter(24,702) enter(32,2) put(2) put('b') leave"
            " enter(32,2) put(1) put(nil) leave leave");
}

// A map that nobody can walk.
class ClosedMap : public lvrHashMap {
 public:
  ClosedMap() : lvrHashMap(1) { lvrHashMap::put(integer(1), integer(2)); }
  lviRealMapEnumerator* getEnumerator() const override { return nullptr; }
};

TEST(SerializeMap, IsAnEmptyLevelWhereTheMapHasNoCursor) {
  EXPECT_EQ(map(*new ClosedMap), "0: enter(24,1) leave");
}

TEST(SerializeMap, AsksForTheInterfaceAndNotForTheTag) {
  lvArg const plain(*new test::PairMap({}, lvReferencable::ObjectKind));
  EXPECT_EQ(map(plain), "0: enter(24,700) leave");
}

TEST(SerializeMap, ReportsWhatIsNoMap) {
  for (lvArg const& value : {test::newStackLike(), vectorOf({}), string("a"), integer(1), lvArg(),
                             test::pointer(64), test::unheld(test::newMap())}) {
    EXPECT_EQ(map(value), "-2: error(1)") << value.getType();
  }
}

TEST(SerializeMap, IgnoresTheAnswerToItsReport) {
  EXPECT_EQ(map(test::newStackLike(), {{0, -9}}), "-2: error(1)!");
  EXPECT_EQ(map(test::newStackLike(), {{0, 9}}), "-2: error(1)!");
}

TEST(SerializeMap, FailsWhenItsLevelIsRefused) {
  lvArg const value = mapOf({{integer(1), integer(2)}});
  for (int const status : Failures) {
    EXPECT_EQ(map(value, {{0, status}}), "-1: enter(24,1)!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(map(value, {{0, status}}), "-1: enter(24,1)!");
  }
}

TEST(SerializeMap, StopsAtTheFirstTupleThatFails) {
  lvArg const value = mapOf({{integer(1), integer(1)}, {integer(2), integer(2)}});
  for (int const status : Failures) {
    EXPECT_EQ(map(value, {{1, status}}), "0: enter(24,2) enter(32,2)! abort leave");
  }
}

TEST(SerializeMap, GoesOnAfterAPositiveAnswerForATuple) {
  lvArg const value = mapOf({{integer(1), integer(2)}});
  for (int const status : Positives) {
    EXPECT_EQ(map(value, {{1, status}}), "0: enter(24,1) enter(32,2)! leave");
    EXPECT_EQ(map(value, {{4, status}}), "0: enter(24,1) enter(32,2) put(1) put(2) leave! leave");
  }
  lvArg const two(*new test::PairMap({{integer(1), integer(1)}, {integer(2), integer(2)}}));
  EXPECT_EQ(map(two, {{1, 7}}),
            "0: enter(24,702) enter(32,2)! enter(32,2) put(2) put(2) leave leave");
}

TEST(SerializeMap, FailsWhenItsEndFails) {
  for (int const status : Failures) {
    EXPECT_EQ(map(mapOf({}), {{1, status}}), "-1: enter(24,0) leave!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(map(mapOf({}), {{1, status}}), "0: enter(24,0) leave!");
  }
}

TEST(SerializeMap, FailsWhenTheEndAfterItsAbortFails) {
  lvArg const value = mapOf({{integer(1), integer(2)}});
  EXPECT_EQ(map(value, {{1, -7}, {3, -8}}), "-1: enter(24,1) enter(32,2)! abort leave!");
  EXPECT_EQ(map(value, {{1, -7}, {2, -8}}), "0: enter(24,1) enter(32,2)! abort! leave");
}

// ---- A vector ----------------------------------------------------------------------------------

TEST(SerializeVector, IsALevelOfItsElements) {
  EXPECT_EQ(vector(vectorOf({})), "0: enter(25,0) leave");
  EXPECT_EQ(vector(vectorOf({integer(1), vectorOf({lvArg()})})),
            "0: enter(25,2) put(1) enter(25,1) put(nil) leave leave");
}

TEST(SerializeVector, AsksTheVectorForSizeAndElements) {
  EXPECT_EQ(vector(*new CountingVector), "0: enter(25,3) put(0) put(10) put(20) leave");
}

TEST(SerializeVector, AsksForTheClassAndNotForTheTag) {
  lvArg plain;
  plain.setReferencableFast(*new CountingVector, lvArg::ObjectType);
  EXPECT_EQ(vector(plain), "0: enter(25,3) put(0) put(10) put(20) leave");
}

TEST(SerializeVector, ReportsWhatIsNoVector) {
  for (lvArg const& value : {test::newListLike(), mapOf({}), string("a"), integer(1), lvArg(),
                             test::pointer(64), test::unheld(test::newList())}) {
    EXPECT_EQ(vector(value), "-2: error(2)") << value.getType();
  }
}

TEST(SerializeVector, IgnoresTheAnswerToItsReport) {
  EXPECT_EQ(vector(test::newListLike(), {{0, -9}}), "-2: error(2)!");
  EXPECT_EQ(vector(test::newListLike(), {{0, 9}}), "-2: error(2)!");
}

TEST(SerializeVector, FailsWhenItsLevelIsRefused) {
  lvArg const value = vectorOf({integer(1)});
  for (int const status : Failures) {
    EXPECT_EQ(vector(value, {{0, status}}), "-1: enter(25,1)!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(vector(value, {{0, status}}), "-1: enter(25,1)!");
  }
}

TEST(SerializeVector, StopsAtTheFirstElementThatFails) {
  lvArg const value = vectorOf({integer(1), integer(2), integer(3)});
  for (int const status : Failures) {
    EXPECT_EQ(vector(value, {{2, status}}), "0: enter(25,3) put(1) put(2)! abort leave");
  }
}

TEST(SerializeVector, GoesOnAfterAPositiveAnswerForAnElement) {
  lvArg const value = vectorOf({integer(1), integer(2)});
  for (int const status : Positives) {
    EXPECT_EQ(vector(value, {{1, status}}), "0: enter(25,2) put(1)! put(2) leave");
  }
}

TEST(SerializeVector, FailsWhenItsEndFails) {
  for (int const status : Failures) {
    EXPECT_EQ(vector(vectorOf({}), {{1, status}}), "-1: enter(25,0) leave!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(vector(vectorOf({}), {{1, status}}), "0: enter(25,0) leave!");
  }
}

TEST(SerializeVector, FailsWhenTheEndAfterItsAbortFails) {
  lvArg const value = vectorOf({integer(1)});
  EXPECT_EQ(vector(value, {{1, -7}, {3, -8}}), "-1: enter(25,1) put(1)! abort leave!");
  EXPECT_EQ(vector(value, {{1, -7}, {2, -8}}), "0: enter(25,1) put(1)! abort! leave");
}

// ---- An object ---------------------------------------------------------------------------------

TEST(SerializeReferencable, ReportsAnObjectOfAClassThatNobodyRegistered) {
  EXPECT_EQ(atom(test::newPlainObject()), "-2: error(4)");
  EXPECT_EQ(object(test::newPlainObject()), "-2: error(4)");
  EXPECT_EQ(atom(*new lvrCommonSerializer), "-2: error(4)");
}

TEST(SerializeReferencable, ReportsAnObjectWithoutAClassKey) {
  EXPECT_EQ(atom(*new test::KeylessObject), "-2: error(4)");
}

TEST(SerializeReferencable, IgnoresTheAnswerToItsReport) {
  EXPECT_EQ(object(test::newPlainObject(), {{0, -9}}), "-2: error(4)!");
  EXPECT_EQ(object(test::newPlainObject(), {{0, 9}}), "-2: error(4)!");
}

TEST(SerializeReferencable, PutsNilForAnObjectThatIsMissing) {
  EXPECT_EQ(object(test::unheld(test::newPlainObject())), "0: put(nil)");
  EXPECT_EQ(object(test::unheld(test::newPlainObject()), {{0, -7}}), "-7: put(nil)!");
}

TEST(SerializeReferencable, PrintsNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  atom(test::newPlainObject());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
