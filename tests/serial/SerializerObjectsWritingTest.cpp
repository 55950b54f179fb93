// What the serializer calls on a sink for objects of registered classes, and for the containers
// that are not the usual ones.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/CellWords.h"
#include "support/FieldObjects.h"
#include "support/SinkRuns.h"
#include "support/TextWriter.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"

namespace {

using test::atom;
using test::integer;
using test::mapOf;
using test::object;
using test::objectOf;
using test::point;
using test::string;
using test::vectorOf;

constexpr int Failures[] = {-1, -2, -7, lvtStringArgDest::ROOM_ERROR, -2147483647 - 1};
constexpr int Positives[] = {1, 7, 9, 2147483647};

// The status, and the text that the text writer makes of a value.
std::string written(lvArg const& value) {
  test::TextWriter writer;
  int const status = test::HeldSerializer()->serializeAtomInto(writer, value);
  return std::to_string(status) + ": " + writer.text();
}

lvArg tupleSetOf(std::vector<std::pair<lvArg, lvArg>> const& entries) {
  test::Held<lvrTupleSet> set(4, 4U, 0U);
  for (auto const& entry : entries) {
    set->put(entry.first, entry.second);
  }
  return set.cell();
}

class SerializeObject : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }
};

// ---- A level of its fields ---------------------------------------------------------------------

TEST_F(SerializeObject, IsALevelOfUnknownSizeWithItsFieldsInTheOrderOfTheClass) {
  EXPECT_EQ(atom(point(3, 4)), "0: enter(*Point,-1) put(3) put(4) leave");
  EXPECT_EQ(object(point(3, 4)), "0: enter(*Point,-1) put(3) put(4) leave");
  EXPECT_EQ(written(point(3, 4)), "0: *Point{3,4}");
}

TEST_F(SerializeObject, OpensItsLevelWithTheHandleOfItsClass) {
  class KindSink : public test::RecordingDest {
   public:
    int enter(lvArg const& kind, int size) override {
      entered = kind;
      return RecordingDest::enter(kind, size);
    }
    lvArg entered;
  };
  KindSink sink;
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(sink, point(1, 2)), 0);
  EXPECT_TRUE(sink.entered.eq(lvtClassRegistry::getInstance()->getClass(lvString("Point"))));
  EXPECT_EQ(sink.entered.getType(), lvArg::ClassType);
}

TEST_F(SerializeObject, WritesFieldsThatWereNeverSetAsNil) {
  EXPECT_EQ(written(objectOf("Point")), "0: *Point{#nil,#nil}");
  EXPECT_EQ(written(objectOf("Segment")), "0: *Segment{#nil,#nil,7}");
}

TEST_F(SerializeObject, WritesInheritedFieldsBeforeItsOwn) {
  EXPECT_EQ(written(objectOf("Solid", {integer(1), integer(2), integer(3)})), "0: *Solid{1,2,3}");
}

TEST_F(SerializeObject, QuotesANameThatIsNoWord) {
  EXPECT_EQ(written(objectOf("my class", {string("a\nb"), string("_tmp1")})),
            "0: *\"my class\"{\"a%0Ab\",_tmp1}");
}

TEST_F(SerializeObject, WritesANameOfNoCharactersAsTwoQuotes) {
  EXPECT_EQ(written(objectOf("", {integer(1), integer(2)})), "0: *\"\"{1,2}");
}

TEST_F(SerializeObject, IsWrittenUnderTheNameOfItsClassAndNotUnderItsKey) {
  EXPECT_EQ(written(objectOf("Alias", {integer(1), integer(2)})), "0: *Point{1,2}");
  EXPECT_EQ(written(objectOf("Nameless", {integer(1), integer(2)})), "0: *#nil{1,2}");
}

TEST_F(SerializeObject, NeedsNoConstructor) {
  EXPECT_EQ(written(objectOf("Abstract", {integer(1), integer(2)})), "0: *Abstract{1,2}");
  EXPECT_EQ(written(objectOf("Barren", {integer(1), integer(2)})), "0: *Barren{1,2}");
}

TEST_F(SerializeObject, WritesTheTextOfAWholeGraph) {
  lvArg const value =
      vectorOf({mapOf({{string("k"), string("v")}}), point(1, 2), string("say \"hi\": 100%")});
  EXPECT_EQ(written(value), "0: {{(k=v)},*Point{1,2},\"say %22hi%22%3A 100%25\"}");
}

TEST_F(SerializeObject, HasNoSizeToTransfer) {
  test::TextWriter writer;
  writer.setTransferSizes(true);
  lvArg const value = vectorOf({point(vectorOf({integer(1)}), integer(2))});
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, value), 0);
  EXPECT_EQ(writer.text(), "{[1]*Point{{[1]1},2}}");
}

// ---- Nesting -----------------------------------------------------------------------------------

TEST_F(SerializeObject, TakesFieldsOfAnyKind) {
  EXPECT_EQ(atom(objectOf("Segment", {point(1, 2), vectorOf({integer(3)}), mapOf({})})),
            "0: enter(*Segment,-1) enter(*Point,-1) put(1) put(2) leave"
            " enter(25,1) put(3) leave enter(24,0) leave leave");
  EXPECT_EQ(atom(point(test::pointer(64), lvArg())), "0: enter(*Point,-1) put(@64) put(nil) leave");
}

TEST_F(SerializeObject, MayBeKeyAndValueOfAMap) {
  EXPECT_EQ(written(mapOf({{point(1, 2), point(3, 4)}})), "0: {(*Point{1,2}=*Point{3,4})}");
}

TEST_F(SerializeObject, IsWrittenOnceForEveryReference) {
  lvArg const shared = point(1, 2);
  EXPECT_EQ(written(objectOf("Segment", {shared, shared, vectorOf({shared})})),
            "0: *Segment{*Point{1,2},*Point{1,2},{*Point{1,2}}}");
  EXPECT_EQ(test::countOf(shared), 1);
}

TEST_F(SerializeObject, NestsToAnyDepthThatTheSinkTakes) {
  lvArg value = integer(1);
  std::string expected = "put(1)";
  for (int i = 0; i < 100; ++i) {
    value = point(value, lvArg());
    expected = "enter(*Point,-1) " + expected + " put(nil) leave";
  }
  EXPECT_EQ(atom(value), "0: " + expected);
}

TEST_F(SerializeObject, LeavesTheObjectAlone) {
  lvArg const inner = string("a b");
  lvArg const value = point(inner, inner);
  EXPECT_EQ(written(value), "0: *Point{\"a b\",\"a b\"}");
  EXPECT_EQ(test::countOf(value), 1);
  EXPECT_EQ(test::countOf(inner), 3);
  EXPECT_EQ(test::described(value), "*Point{'a b','a b'}");
}

TEST_F(SerializeObject, PrintsNothing) {
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  for (char const* const key : {"Point", "Blank", "Abstract", "Hollow", "Bogus", "Stranger"}) {
    written(objectOf(key));
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// ---- Objects without a class -------------------------------------------------------------------

TEST_F(SerializeObject, IsReportedWhenNothingIsRegisteredUnderItsKey) {
  EXPECT_EQ(atom(objectOf("Stranger", {integer(1)})), "-2: error(4)");
}

TEST_F(SerializeObject, IsReportedWhenWhatIsRegisteredIsNoClass) {
  ASSERT_EQ(lvtClassRegistry::getInstance()->getClass(lvString("Bogus")).getInt(), 5);
  EXPECT_EQ(atom(objectOf("Bogus", {integer(1)})), "-2: error(4)");
}

TEST_F(SerializeObject, HandsAProblemOfAFieldToItsOwnLevel) {
  EXPECT_EQ(atom(point(objectOf("Stranger"), integer(2))), "-1: enter(*Point,-1) error(4) abort");
  EXPECT_EQ(written(point(integer(1), objectOf("Stranger"))), "-1: *Point{1}");
}

// ---- Objects without fields --------------------------------------------------------------------

TEST_F(SerializeObject, WithoutTablesOpensALevelOnly) {
  EXPECT_EQ(atom(objectOf("Blank")), "0: enter(*Blank,-1)");
}

TEST_F(SerializeObject, WithATableOfNoFieldsOpensALevelOnly) {
  EXPECT_EQ(atom(objectOf("Tabled")), "0: enter(*Tabled,-1)");
}

TEST_F(SerializeObject, WithoutFieldsFailsWhenItsLevelIsRefused) {
  EXPECT_EQ(atom(objectOf("Blank"), {{0, -7}}), "-1: enter(*Blank,-1)!");
  EXPECT_EQ(atom(objectOf("Blank"), {{0, 7}}), "0: enter(*Blank,-1)!");
}

TEST_F(SerializeObject, WithoutFieldsLetsTheLevelAroundGoOn) {
  EXPECT_EQ(atom(vectorOf({objectOf("Blank"), integer(2)})),
            "0: enter(25,2) enter(*Blank,-1) put(2) leave");
  EXPECT_EQ(atom(point(objectOf("Blank"), integer(2))),
            "0: enter(*Point,-1) enter(*Blank,-1) put(2) leave");
}

// ---- Fields that cannot be read ----------------------------------------------------------------

TEST_F(SerializeObject, ReportsAFieldThatItsClassCannotReadAndLeavesTheLevelOpen) {
  EXPECT_EQ(atom(objectOf("Hollow")), "-2: enter(*Hollow,-1) error(5)");
  EXPECT_EQ(written(objectOf("Hollow")), "-2: *Hollow{");
}

TEST_F(SerializeObject, WritesTheFieldsBeforeTheOneThatCannotBeRead) {
  EXPECT_EQ(atom(objectOf("Half", {integer(1), integer(2)})),
            "-2: enter(*Half,-1) put(1) error(5)");
  EXPECT_EQ(atom(objectOf("Half", {integer(1), integer(2)}), {{2, 9}}),
            "-2: enter(*Half,-1) put(1) error(5)!");
}

// ---- What the sink answers ---------------------------------------------------------------------

TEST_F(SerializeObject, FailsWhenItsLevelIsRefused) {
  for (int const status : Failures) {
    EXPECT_EQ(object(point(1, 2), {{0, status}}), "-1: enter(*Point,-1)!");
  }
}

TEST_F(SerializeObject, TakesAPositiveAnswerToItsLevelForSuccess) {
  for (int const status : Positives) {
    EXPECT_EQ(object(point(1, 2), {{0, status}}), "0: enter(*Point,-1)! put(1) put(2) leave");
  }
}

TEST_F(SerializeObject, IsAbortedAndNotLeftAtTheFirstFieldThatFails) {
  for (int const status : Failures) {
    EXPECT_EQ(object(point(1, 2), {{1, status}}), "-1: enter(*Point,-1) put(1)! abort");
    EXPECT_EQ(object(point(1, 2), {{2, status}}), "-1: enter(*Point,-1) put(1) put(2)! abort");
  }
}

TEST_F(SerializeObject, GoesOnAfterAPositiveAnswerForAField) {
  for (int const status : Positives) {
    EXPECT_EQ(object(point(1, 2), {{1, status}, {2, status}}),
              "0: enter(*Point,-1) put(1)! put(2)! leave");
  }
}

TEST_F(SerializeObject, FailsWhenItsEndFails) {
  for (int const status : Failures) {
    EXPECT_EQ(object(point(1, 2), {{3, status}}), "-1: enter(*Point,-1) put(1) put(2) leave!");
  }
  for (int const status : Positives) {
    EXPECT_EQ(object(point(1, 2), {{3, status}}), "0: enter(*Point,-1) put(1) put(2) leave!");
  }
}

TEST_F(SerializeObject, IgnoresTheAnswerOfTheAbort) {
  EXPECT_EQ(object(point(1, 2), {{1, -7}, {2, -8}}), "-1: enter(*Point,-1) put(1)! abort!");
}

TEST_F(SerializeObject, IgnoresTheAnswerToItsReport) {
  for (int const status : {-9, 9}) {
    EXPECT_EQ(atom(objectOf("Stranger"), {{0, status}}), "-2: error(4)!");
    EXPECT_EQ(atom(objectOf("Hollow"), {{1, status}}), "-2: enter(*Hollow,-1) error(5)!");
  }
}

// ---- Asked for directly ------------------------------------------------------------------------

TEST_F(SerializeObject, AskedForDirectlyTakesContainersAndStringsForObjectsOfTheirClass) {
  EXPECT_EQ(object(vectorOf({integer(1)})), "0: enter(*Vector,-1)");
  EXPECT_EQ(object(mapOf({})), "0: enter(*HashMap,-1)");
  EXPECT_EQ(object(*lvrStack::defaultCtorMethod()), "0: enter(*Stack,-1)");
  EXPECT_EQ(object(*lvrDLList::defaultCtorMethod()), "0: enter(*DLList,-1)");
  EXPECT_EQ(object(string("a")), "0: enter(*String,-1)");
  EXPECT_EQ(object(test::newClass()), "0: enter(*Class,-1)");
}

TEST_F(SerializeObject, AskedForDirectlyReportsContainersOfNoRegisteredClass) {
  EXPECT_EQ(object(*lvrSortedArrayList::defaultCtorMethod()), "-2: error(4)");
  // A tuple set has no key of its own.
  EXPECT_EQ(object(*lvrTupleSet::defaultCtorMethod()), "-2: error(4)");
}

TEST_F(SerializeObject, AskedForDirectlyPutsNilForWhatIsNoObject) {
  for (lvArg const& value : {lvArg(), integer(1), test::pointer(64)}) {
    EXPECT_EQ(object(value), "0: put(nil)");
  }
}

// ---- By the tag --------------------------------------------------------------------------------

TEST_F(SerializeObject, IsChosenByTheTag) {
  lvArg const value = point(1, 2);
  for (auto const& expected :
       std::vector<std::pair<lvArg::ValueType, std::string>>{{lvArg::MapType, "-2: error(1)"},
                                                             {lvArg::ListType, "-2: error(2)"},
                                                             {lvArg::ClassType, "0: put(nil)"}}) {
    lvArg tagged;
    tagged.setReferencableFast(*value.getReferencable(), expected.first);
    EXPECT_EQ(atom(tagged), expected.second) << expected.first;
  }
}

TEST_F(SerializeObject, TakesAVectorWithTheTagOfObjectsForOne) {
  lvArg const value = vectorOf({integer(1)});
  lvArg tagged;
  tagged.setReferencableFast(*value.getReferencable(), lvArg::ObjectType);
  EXPECT_EQ(atom(tagged), "0: enter(*Vector,-1)");
}

TEST_F(SerializeObject, PutsNilForItsClass) {
  lvArg const described = lvtClassRegistry::getInstance()->getClass(lvString("Point"));
  ASSERT_EQ(described.getType(), lvArg::ClassType);
  EXPECT_EQ(atom(described), "0: put(nil)");
  EXPECT_EQ(written(vectorOf({described, integer(1)})), "0: {#nil,1}");
}

// ---- Other containers --------------------------------------------------------------------------

TEST(SerializeTupleSet, IsALevelOfItsTuplesInTheOrderOfTheirKeys) {
  lvArg const set = tupleSetOf({{integer(3), string("c")}, {integer(1), string("a")}});
  ASSERT_EQ(set.getType(), lvArg::MapType);
  EXPECT_EQ(atom(set),
            "0: enter(24,2) enter(32,2) put(1) put('a') leave enter(32,2) put(3) put('c') leave"
            " leave");
  EXPECT_EQ(written(set), "0: {(1=a),(3=c)}");
}

TEST(SerializeTupleSet, MayBeEmpty) {
  EXPECT_EQ(atom(tupleSetOf({})), "0: enter(24,0) leave");
  EXPECT_EQ(written(tupleSetOf({})), "0: {}");
}

TEST(SerializeTupleSet, StopsAtTheFirstTupleThatFails) {
  lvArg const set = tupleSetOf({{integer(1), integer(1)}, {integer(2), integer(2)}});
  EXPECT_EQ(atom(set, {{2, -7}}), "0: enter(24,2) enter(32,2) put(1)! abort abort leave");
}

TEST(SerializeStack, IsReportedAsNoMap) {
  test::Held<lvrStack> stack(2);
  stack->push(integer(1));
  ASSERT_EQ(stack.cell().getType(), lvArg::MapType);
  EXPECT_EQ(atom(stack.cell()), "-2: error(1)");
  EXPECT_EQ(test::map(stack.cell()), "-2: error(1)");
  EXPECT_EQ(atom(vectorOf({integer(1), stack.cell()})),
            "0: enter(25,2) put(1) error(1) abort leave");
}

TEST(SerializeList, IsReportedUnlessItIsAVector) {
  test::Held<lvrDLList> linked;
  linked->insert(integer(1), -1);
  test::Held<lvrSortedArrayList> sorted(1U);
  sorted->add(integer(1));
  for (lvArg const& list : {linked.cell(), sorted.cell()}) {
    ASSERT_EQ(list.getType(), lvArg::ListType);
    EXPECT_EQ(atom(list), "-2: error(2)");
    EXPECT_EQ(test::vector(list), "-2: error(2)");
    EXPECT_EQ(atom(mapOf({{string("k"), list}})),
              "0: enter(24,1) enter(32,2) put('k') error(2) abort abort leave");
  }
}

TEST(SerializeList, MakesAnObjectFailThatHoldsIt) {
  test::registerClasses();
  EXPECT_EQ(written(point(integer(1), *lvrDLList::defaultCtorMethod())), "-1: *Point{1}");
  EXPECT_EQ(written(vectorOf({point(*lvrStack::defaultCtorMethod(), integer(1)), integer(2)})),
            "0: {*Point{}}}");
}

}  // namespace
