// Sinks and sources that answer something else at each of their calls in turn, beside models of
// what becomes of that.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/FieldObjects.h"
#include "support/ReadingModel.h"
#include "support/SinkModel.h"
#include "support/SourceRuns.h"
#include "support/TextReading.h"

namespace {

using test::atom;
using test::integer;
using test::mapOf;
using test::objectOf;
using test::point;
using test::Script;
using test::SinkAnswers;
using test::string;
using test::vectorOf;

constexpr int Failure = -7;

class SerializerObjectsFailures : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }
};

// ---- Of a sink ---------------------------------------------------------------------------------

// What becomes of a value when the call 0, 1, 2 ... of the sink answers `status`, up to the run in
// which none did.
std::vector<std::string> runsWith(lvArg const& value, int status) {
  std::vector<std::string> runs;
  do {
    runs.push_back(atom(value, {{static_cast<int>(runs.size()), status}}));
  } while (runs.back().find('!') != std::string::npos && runs.size() < 100);
  return runs;
}

TEST_F(SerializerObjectsFailures, OfEachCallAbortTheObjectAndTheLevelsAroundIt) {
  lvArg const value = vectorOf({point(objectOf("Point", {integer(1), integer(2)}), integer(3))});
  std::string const outer = "enter(25,1) enter(*Point,-1)";
  std::string const inner = outer + " enter(*Point,-1) put(1) put(2)";
  std::vector<std::string> const expected = {
      "-1: enter(25,1)!",
      "0: enter(25,1) enter(*Point,-1)! abort leave",
      "0: " + outer + " enter(*Point,-1)! abort abort leave",
      "0: " + outer + " enter(*Point,-1) put(1)! abort abort abort leave",
      "0: " + inner + "! abort abort abort leave",
      "0: " + inner + " leave! abort abort leave",
      "0: " + inner + " leave put(3)! abort abort leave",
      "0: " + inner + " leave put(3) leave! abort leave",
      "-1: " + inner + " leave put(3) leave leave!",
      "0: " + inner + " leave put(3) leave leave",
  };
  EXPECT_EQ(runsWith(value, Failure), expected);
}

TEST_F(SerializerObjectsFailures, OfAMapInAnObjectDoNotMakeTheObjectFail) {
  lvArg const value = point(mapOf({{string("k"), integer(1)}}), integer(2));
  EXPECT_EQ(atom(value, {{4, Failure}}),
            "0: enter(*Point,-1) enter(24,1) enter(32,2) put('k') put(1)! abort abort leave"
            " put(2) leave");
}

// Values in which objects, maps and vectors hold each other, and some that the serializer refuses.
std::vector<lvArg> nestedValues() {
  lvArg const inMap = mapOf({{point(1, 2), vectorOf({objectOf("Solid"), integer(3)})}});
  return {
      objectOf("Segment", {inMap, vectorOf({inMap, point(inMap, lvArg())}), string("a b")}),
      vectorOf({objectOf("Blank"), point(objectOf("Tabled"), integer(1)), objectOf("Half")}),
      mapOf({{string("k"), objectOf("Hollow")}, {objectOf("Stranger"), point(4, 5)}}),
      point(vectorOf({objectOf("Bogus")}), objectOf("Alias", {test::newStackLike()})),
      objectOf("Segment", {vectorOf({*lvrDLList::defaultCtorMethod()}), objectOf("my class")}),
  };
}

// One call answers `status`, each of the calls in turn, up to the run in which none did.
void expectTheModelWithEachAnswer(lvArg const& value, int status) {
  std::string run = "!";
  for (int call = 0; run.find('!') != std::string::npos; ++call) {
    SinkAnswers const answers = {{call, status}};
    run = atom(value, answers);
    ASSERT_EQ(run, test::modelRun(value, answers)) << call << " of " << status;
  }
}

TEST_F(SerializerObjectsFailures, OfEachCallAreThoseOfTheModel) {
  for (lvArg const& value : nestedValues()) {
    for (int const status : {-1, -2, Failure, lvtStringArgDest::ROOM_ERROR, 1, 7, 9}) {
      expectTheModelWithEachAnswer(value, status);
    }
  }
}

TEST_F(SerializerObjectsFailures, OfTwoCallsAreThoseOfTheModel) {
  for (lvArg const& value : nestedValues()) {
    for (int first = 0; first < 20; ++first) {
      for (int second = first + 1; second < first + 6; ++second) {
        SinkAnswers const answers = {{first, Failure}, {second, Failure}};
        ASSERT_EQ(atom(value, answers), test::modelRun(value, answers)) << first << " " << second;
      }
    }
  }
}

TEST_F(SerializerObjectsFailures, OfElementsLeaveTheirReferencesBalanced) {
  lvArg const inner = string("inner");
  lvArg const value = vectorOf({point(inner, point(inner, integer(1)))});
  for (int call = 0; call < 10; ++call) {
    atom(value, {{call, Failure}});
    ASSERT_EQ(test::countOf(inner), 3) << call;
    ASSERT_EQ(test::countOf(value), 1) << call;
  }
}

TEST_F(SerializerObjectsFailures, ForWantOfRoomAreThoseOfTheModel) {
  for (lvArg const& value : nestedValues()) {
    test::expectTextsOfTheModel(value);
  }
}

TEST_F(SerializerObjectsFailures, ForWantOfRoomAreToldByTheObject) {
  lvArg const value = point(integer(12345), integer(6));
  std::vector<std::string> texts;
  for (int const capacity : {1, 2, 8, 13, 14, 15, 16}) {
    test::TextWriter writer(capacity);
    int const status = test::HeldSerializer()->serializeAtomInto(writer, value);
    texts.push_back(std::to_string(status) + ": " + writer.text());
  }
  std::vector<std::string> const expected = {
      "-1: ",
      // The name of the class is left out without a complaint.
      "-1: *{",
      "-1: *{12345",
      "-1: *Point{12345",
      "-1: *Point{12345}",
      "-1: *Point{12345,6",
      "0: *Point{12345,6}",
  };
  EXPECT_EQ(texts, expected);
}

// ---- Of a source -------------------------------------------------------------------------------

// What is read of a script, item by item, to its end, and behind a "|" what is printed.
std::string itemsOf(Script const& script) {
  test::ScriptedSource source(script);
  test::HeldSerializer const serializer;
  std::string items;
  std::string const printed = test::printedBy([&] {
    do {
      lvArg out = test::untouched();
      int const status = serializer->deserializeItemInto(out, source);
      items += std::to_string(status) + ": " + test::describedOutput(out) + " ";
    } while (source.reads() < script.size());
  });
  return items + "|" + printed;
}

std::string modelItemsOf(Script const& script) {
  test::ReadingModel model(test::told(script), test::Classes::All);
  std::string items;
  do {
    auto const item = model.readItem();
    items += std::to_string(item.first) + ": " + (item.first == 0 ? item.second : "same") + " ";
  } while (model.reads() < script.size());
  return items + "|" + model.printed();
}

// Texts whose answers are tampered with.
std::vector<std::string> nestedTexts() {
  return {
      "*Segment{{(a=*Point{1,2})},*\"my class\"{x,{*Solid{1,2,3},4}},5}",
      "{*Blank{},*Point{*Tabled{},1},(k=1),*Half{1},*HashMap{}}",
      "{(a=*Point{1,2,3}),(b=*Segment{*Vector{},*Alias{8}}),(c=d)},*Nope{7},9",
  };
}

// What a source may answer in place of what it did.
std::vector<test::Answer> tampered() {
  return {
      test::item(77),
      test::item(lvArg()),
      test::frameEnd(),
      test::inputEnd(),
      test::nothing(8),
      test::nothing(-6),
      test::begin(24),
      test::begin(25),
      test::begin(32),
      test::begin(26),
      test::begin(lvArg()),
      test::beginObject("Nope"),
      test::beginObject("Abstract"),
      test::beginObject("Barren"),
      test::beginObject("Blank"),
      test::beginObject("Point"),
      test::beginObject("Hollow"),
      test::beginObject("Stack"),
  };
}

TEST_F(SerializerObjectsFailures, OfEachAnswerAreThoseOfTheModel) {
  for (std::string const& text : nestedTexts()) {
    Script const script = test::scriptOf(text);
    ASSERT_EQ(itemsOf(script), modelItemsOf(script)) << text;
    for (std::size_t i = 0; i < script.size(); ++i) {
      for (test::Answer const& answer : tampered()) {
        Script changed = script;
        changed[i] = answer;
        ASSERT_EQ(itemsOf(changed), modelItemsOf(changed)) << text << " at " << i;
      }
    }
  }
}

TEST_F(SerializerObjectsFailures, OfAnAnswerTooManyOrTooFewAreThoseOfTheModel) {
  for (std::string const& text : nestedTexts()) {
    Script const script = test::scriptOf(text);
    for (std::size_t i = 0; i < script.size(); ++i) {
      auto const at = static_cast<std::ptrdiff_t>(i);
      Script shorter = script;
      shorter.erase(shorter.begin() + at);
      ASSERT_EQ(itemsOf(shorter), modelItemsOf(shorter)) << text << " without " << i;
      for (test::Answer const& answer : {test::item(77), test::frameEnd(), test::begin(32)}) {
        Script longer = script;
        longer.insert(longer.begin() + at, answer);
        ASSERT_EQ(itemsOf(longer), modelItemsOf(longer)) << text << " before " << i;
      }
    }
  }
}

TEST_F(SerializerObjectsFailures, OfTextsThatEndAtEachOfTheirBytesAreThoseOfTheModel) {
  for (std::string const& text : nestedTexts()) {
    for (std::size_t length = 0; length <= text.size(); ++length) {
      std::string const start = text.substr(0, length);
      ASSERT_EQ(itemsOf(test::scriptOf(start)), modelItemsOf(test::scriptOf(start))) << start;
    }
  }
}

TEST_F(SerializerObjectsFailures, OfEveryKindOfObjectLeaveNoReferenceBehind) {
  lvArg const value = string("value");
  for (char const* const name : {"Point", "Blank", "Half", "Abstract", "Barren", "Nope", "Stack"}) {
    itemsOf({test::beginObject(name), test::item(value), test::item(value), test::frameEnd()});
    itemsOf({test::beginObject(name), test::item(value)});
    EXPECT_EQ(test::countOf(value), 1) << name;
  }
}

}  // namespace
