// A sink that fails at each of its calls in turn, until there is none left to fail at, and texts
// that end at each of their bytes.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/RecordingDest.h"
#include "support/SinkRuns.h"
#include "support/SourceRuns.h"
#include "support/TextReading.h"
#include "support/TextWriter.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::atom;
using test::integer;
using test::mapOf;
using test::string;
using test::vectorOf;

constexpr int Failure = -7;
constexpr int Positive = 7;

// What becomes of a value when the call 0, 1, 2 ... of the sink answers `status`, up to the run in
// which none did.
std::vector<std::string> runsWith(lvArg const& value, int status) {
  std::vector<std::string> runs;
  do {
    runs.push_back(atom(value, {{static_cast<int>(runs.size()), status}}));
  } while (runs.back().find('!') != std::string::npos && runs.size() < 100);
  return runs;
}

lvArg nestedValue() {
  return vectorOf({integer(1), mapOf({{string("k"), vectorOf({})}}), integer(2)});
}

// The calls for the nested value up to the one that fails, each without the blank behind it.
std::string const enterMap = "enter(25,3) put(1) enter(24,1)";
std::string const putKey = enterMap + " enter(32,2) put('k')";
std::string const leaveInner = putKey + " enter(25,0) leave";
std::string const leaveMap = leaveInner + " leave leave";

TEST(SerializerFailures, OfEachCallEndTheLevelsAroundIt) {
  std::vector<std::string> const expected = {
      "-1: enter(25,3)!",
      "0: enter(25,3) put(1)! abort leave",
      "0: " + enterMap + "! abort leave",
      // A level inside of a map that fails does not make the map fail.
      "0: " + enterMap + " enter(32,2)! abort leave put(2) leave",
      "0: " + putKey + "! abort abort leave put(2) leave",
      "0: " + putKey + " enter(25,0)! abort abort leave put(2) leave",
      "0: " + leaveInner + "! abort abort leave put(2) leave",
      "0: " + leaveInner + " leave! abort leave put(2) leave",
      "0: " + leaveMap + "! abort leave",
      "0: " + leaveMap + " put(2)! abort leave",
      "-1: " + leaveMap + " put(2) leave!",
      "0: " + leaveMap + " put(2) leave",
  };
  EXPECT_EQ(runsWith(nestedValue(), Failure), expected);
}

TEST(SerializerFailures, OfEachCallAreTakenByTheirSignOnly) {
  for (int const status : {-1, -2, -12, lvtStringArgDest::ROOM_ERROR, -2147483647 - 1}) {
    EXPECT_EQ(runsWith(nestedValue(), status), runsWith(nestedValue(), Failure)) << status;
  }
}

TEST(SerializerFailures, AreNoneForPositiveAnswersButToEnter) {
  std::string const rest = " put(2) leave";
  std::vector<std::string> const expected = {
      "-1: enter(25,3)!",
      "0: enter(25,3) put(1)! enter(24,1) enter(32,2) put('k') enter(25,0) leave leave leave" +
          rest,
      "0: " + enterMap + "! abort leave",
      // The tuple hands the answer on, and its map goes by the sign.
      "0: " + enterMap + " enter(32,2)! leave" + rest,
      "0: " + putKey + "! enter(25,0) leave leave leave" + rest,
      "0: " + putKey + " enter(25,0)! abort abort leave" + rest,
      "0: " + leaveInner + "! leave leave" + rest,
      "0: " + leaveInner + " leave! leave" + rest,
      "0: " + leaveMap + "!" + rest,
      "0: " + leaveMap + " put(2)! leave",
      "0: " + leaveMap + " put(2) leave!",
      "0: " + leaveMap + rest,
  };
  EXPECT_EQ(runsWith(nestedValue(), Positive), expected);
  EXPECT_EQ(runsWith(nestedValue(), 1), expected);
}

TEST(SerializerFailures, OfATupleAreHandedOn) {
  EXPECT_EQ(test::tuple(vectorOf({}), integer(1), {{1, Failure}}),
            "-1: enter(32,2) enter(25,0)! abort");
  EXPECT_EQ(test::tuple(integer(1), vectorOf({}), {{2, Failure}}),
            "-1: enter(32,2) put(1) enter(25,0)! abort");
  EXPECT_EQ(test::tuple(integer(1), test::newPlainObject(), {}),
            "-2: enter(32,2) put(1) error(4) abort");
}

TEST(SerializerFailures, OfAValueEndTheLevelsAroundIt) {
  EXPECT_EQ(atom(vectorOf({integer(1), test::newStackLike(), integer(2)})),
            "0: enter(25,3) put(1) error(1) abort leave");
  EXPECT_EQ(atom(vectorOf({test::newListLike(), integer(2)})),
            "0: enter(25,2) error(2) abort leave");
  EXPECT_EQ(atom(mapOf({{string("k"), test::newPlainObject()}})),
            "0: enter(24,1) enter(32,2) put('k') error(4) abort abort leave");
}

TEST(SerializerFailures, OfAnInnerLevelLeaveTheOuterOneWhole) {
  EXPECT_EQ(atom(vectorOf({vectorOf({test::newStackLike()}), integer(2)})),
            "0: enter(25,2) enter(25,1) error(1) abort leave put(2) leave");
}

// ---- Text without room -------------------------------------------------------------------------

// The status and the text for a buffer of this capacity.
std::string writtenInto(int capacity, lvArg const& value) {
  test::TextWriter writer(capacity);
  int const status = test::HeldSerializer()->serializeAtomInto(writer, value);
  return std::to_string(status) + ": " + writer.text();
}

TEST(SerializerFailures, OfAScalarHandOnTheRoomError) {
  EXPECT_EQ(writtenInto(2, integer(1)), "-3072: ");
  EXPECT_EQ(writtenInto(4, integer(1000)), "-3072: ");
  EXPECT_EQ(writtenInto(5, integer(1000)), "0: 1000");
}

TEST(SerializerFailures, OfElementsWithoutRoomAreToldByTheEndOfTheVector) {
  lvArg const value = vectorOf({string("abcdefgh"), integer(1234567), integer(8)});
  EXPECT_EQ(writtenInto(15, value), "-1: ");
  // The integer has no room behind its separator, so the vector is aborted and left.
  EXPECT_EQ(writtenInto(16, value), "0: {abcdefgh,}}");
  EXPECT_EQ(writtenInto(17, value), "-1: {abcdefgh,1234567");
  EXPECT_EQ(writtenInto(18, value), "-1: {abcdefgh,1234567");
  EXPECT_EQ(writtenInto(19, value), "-1: {abcdefgh,1234567}");
  EXPECT_EQ(writtenInto(20, value), "-1: {abcdefgh,1234567,8");
  EXPECT_EQ(writtenInto(21, value), "0: {abcdefgh,1234567,8}");
}

// ---- Texts that end early ----------------------------------------------------------------------

// Reads the first `length` bytes, from a block of exactly that size.
std::string readStart(std::string const& text, std::size_t length) {
  test::ExactText const exact(text.substr(0, length));
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg out = test::untouched();
  int const status = test::HeldSerializer()->deserializeItemInto(out, parser);
  return std::to_string(status) + ": " + test::describedOutput(out);
}

TEST(SerializerFailures, AreNoneForAFrameThatTheInputLeavesOpen) {
  std::string const text = "{(k={1,{}}),(l=2)}";
  std::vector<std::string> const expected = {
      "9: same",
      "0: []",
      "0: {}",
      "0: {}",
      "0: {}",
      "0: {'k'=[]}",
      "0: {'k'=[1]}",
      "0: {'k'=[1]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]]}",
      "0: {'k'=[1,[]],'l'=2}",
      "0: {'k'=[1,[]],'l'=2}",
      "0: {'k'=[1,[]],'l'=2}",
  };
  ASSERT_EQ(expected.size(), text.size() + 1);
  for (std::size_t length = 0; length <= text.size(); ++length) {
    EXPECT_EQ(readStart(text, length), expected[length]) << text.substr(0, length);
  }
}

TEST(SerializerFailures, OfAnObjectNeedItsBracket) {
  std::string const text = "*Nope{1}";
  for (std::size_t length = 0; length < 6; ++length) {
    EXPECT_EQ(test::printedBy([&] { EXPECT_EQ(readStart(text, length), "9: same"); }), "");
  }
  for (std::size_t length = 6; length <= text.size(); ++length) {
    EXPECT_EQ(test::printedBy([&] { EXPECT_EQ(readStart(text, length), "-4: same"); }),
              "CS_ERR_UNKNOWN_CLASS_KEY\n");
  }
}

TEST(SerializerFailures, OfAnObjectLeaveItsItemsToTheLevelAround) {
  std::string outcome;
  test::printedBy([&] { outcome = readStart("{0,*Nope{1,{2}},3}", 18); });
  EXPECT_EQ(outcome, "0: [0,1,[2]]");
  test::printedBy([&] { outcome = readStart("{(k=*Nope{1}),(l=2)}", 20); });
  // The object's end closes the tuple, and the tuple's end the map.
  EXPECT_EQ(outcome, "0: {'k'=1}");
}

TEST(SerializerFailures, OfATupleInAVectorLeaveItsItemsThere) {
  EXPECT_EQ(readStart("{0,(a=1),2}", 11), "0: [0,'a',1]");
  EXPECT_EQ(readStart("(a=1)", 5), "-1: same");
}

TEST(SerializerFailures, OfAMapThatHoldsAVectorLeaveItsRestUnread) {
  EXPECT_EQ(readStart("{(a=1),{2},(b=3)}", 17), "-1: same");
}

}  // namespace
