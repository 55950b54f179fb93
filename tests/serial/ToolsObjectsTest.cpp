// The conversion functions with objects of registered classes, and with the containers that are
// not the usual ones.
#include <gtest/gtest.h>

#include <string>

#include "support/FieldObjects.h"
#include "support/SinkModel.h"
#include "support/SourceRuns.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

using test::integer;
using test::mapOf;
using test::objectOf;
using test::point;
using test::string;
using test::vectorOf;

std::string toText(lvArg const& value) { return test::textOf(lvToolsToString(value)); }

// The value that a text reads as, behind an "@" how much of it was consumed, and behind a "|" what
// was printed.
std::string fromText(std::string const& text) {
  std::string outcome;
  std::string const printed = test::printedBy([&] {
    int consumed = -1;
    lvArg const value = lvToolsFromString(lvString(text.c_str()), consumed);
    outcome = test::described(value) + "@" + std::to_string(consumed);
  });
  return outcome + "|" + printed;
}

class ToolsObjects : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }
};

TEST_F(ToolsObjects, GiveTheTextOfAnObject) {
  EXPECT_EQ(toText(point(3, 4)), "*Point{3,4}");
  EXPECT_EQ(toText(objectOf("my class", {string("a\nb"), string("_tmp1")})),
            "*\"my class\"{\"a%0Ab\",_tmp1}");
  EXPECT_EQ(toText(vectorOf({mapOf({{string("k"), string("v")}}), point(1, 2)})),
            "{{(k=v)},*Point{1,2}}");
}

TEST_F(ToolsObjects, GiveTheTextSoFarOfAnObjectThatCannotBeWritten) {
  EXPECT_EQ(toText(objectOf("Stranger")), "");
  EXPECT_EQ(toText(objectOf("Half", {integer(1)})), "*Half{1");
  EXPECT_EQ(toText(point(integer(1), objectOf("Stranger"))), "*Point{1}");
}

TEST_F(ToolsObjects, GiveAnEmptyTextForContainersThatAreRefused) {
  EXPECT_EQ(toText(*lvrStack::defaultCtorMethod()), "");
  EXPECT_EQ(toText(*lvrDLList::defaultCtorMethod()), "");
  EXPECT_EQ(toText(*lvrSortedArrayList::defaultCtorMethod()), "");
}

TEST_F(ToolsObjects, WriteATupleSetAsTheMapThatItReadsBackAs) {
  lvHashMap set(*lvrTupleSet::defaultCtorMethod());
  set->put(string("b"), integer(2));
  set->put(string("a"), integer(1));
  EXPECT_EQ(toText(set), "{(a=1),(b=2)}");
  int consumed = 0;
  lvArg const back = lvToolsFromString(lvToolsToString(set), consumed);
  EXPECT_EQ(back.getReferencable()->getClassDesc(), lvString("HashMap"));
  EXPECT_EQ(test::described(back), "{'a'=1,'b'=2}");
}

TEST_F(ToolsObjects, CutTheTextOfALongObjectAsAWriterOfTheirCapacityDoes) {
  for (int length = 4060; length <= 4090; ++length) {
    lvArg const value =
        point(string(std::string(static_cast<std::size_t>(length), 'a')), integer(12));
    test::WriterModel model(4090);
    test::TreeWriter<test::WriterModel>(model).write(test::treeOf(value));
    ASSERT_EQ(toText(value), model.block.substr(0, model.length).substr(0, 4089)) << length;
  }
}

TEST_F(ToolsObjects, LeaveNoReferenceToTheObject) {
  lvArg const inner = point(1, 2);
  lvArg const value = point(inner, inner);
  EXPECT_EQ(toText(value), "*Point{*Point{1,2},*Point{1,2}}");
  EXPECT_EQ(test::countOf(inner), 3);
  EXPECT_EQ(test::countOf(value), 1);
}

TEST_F(ToolsObjects, ReadAnObjectAndTellWhereItEnds) {
  EXPECT_EQ(fromText("*Point{3,4},5"), "*Point{3,4}@11|");
  EXPECT_EQ(fromText("  *Point { 3 } tail"), "*Point{3,nil}@14|");
  EXPECT_EQ(fromText("{1,*\"my class\"{x}}"), "[1,*my class{'x',nil}]@18|");
  EXPECT_EQ(fromText("*Vector{} tail"), "[]@9|");
}

TEST_F(ToolsObjects, GiveTheCallerTheOnlyReference) {
  int consumed = 0;
  lvArg const value = lvToolsFromString(lvString("*Point{*Point{},2}"), consumed);
  EXPECT_EQ(test::countOf(value), 1);
  EXPECT_EQ(test::countOf(dynamic_cast<test::Point&>(*value.getReferencable()).x), 1);
}

TEST_F(ToolsObjects, ReadNilForAnObjectThatFails) {
  // Of a class that is no use only the beginning is consumed.
  EXPECT_EQ(fromText("*Nope{1,2},3"), "nil@6|CS_ERR_UNKNOWN_CLASS_KEY\n");
  EXPECT_EQ(fromText("*Abstract{1,2},3"), "nil@10|CS_ERR_NO_CLASS_CTOR\n");
  EXPECT_EQ(fromText("*Blank{1,2},3"), "nil@11|CS_ERR_REF_SETUP_ERROR\n");
}

TEST_F(ToolsObjects, ReadNilForAnObjectThatTheTextEndsIn) {
  EXPECT_EQ(fromText("*Point{3,4"), "nil@10|Unknown error: 9");
  EXPECT_EQ(fromText("{1,*Point{3,4"), "[1,nil]@13|Unknown error: 9");
  EXPECT_EQ(fromText("*Point"), "nil@6|");
}

}  // namespace
