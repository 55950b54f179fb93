// The text writer beside its model: fixed sequences of calls and random ones, in buffers of every
// small capacity.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/WriterSteps.h"
#include "support/walks/WriterWalk.h"

namespace {

using test::abortLevel;
using test::classNamed;
using test::enter;
using test::init;
using test::insertChar;
using test::insertString;
using test::leave;
using test::mapKind;
using test::omitSeparator;
using test::put;
using test::setStringOffset;
using test::setTransferSizes;
using test::terminate;
using test::tupleKind;
using test::vectorKind;
using test::WriterAndModel;
using test::WriterStep;

constexpr int LargestCapacity = test::WriterWalk::SmallCapacity;

// ---- Fixed sequences ---------------------------------------------------------------------------

using Steps = std::vector<WriterStep>;

void expectAgreementAtEveryCapacity(Steps const& steps) {
  for (int capacity = 0; capacity <= LargestCapacity; ++capacity) {
    WriterAndModel both(capacity);
    for (WriterStep const& step : steps) {
      ASSERT_TRUE(both.agreeOn(step));
    }
  }
}

Steps repeated(int times, Steps const& steps) {
  Steps all;
  for (int i = 0; i < times; ++i) {
    all.insert(all.end(), steps.begin(), steps.end());
  }
  return all;
}

TEST(WriterAtEveryCapacity, WritesVectorsOfScalarsAsTheModelDoes) {
  expectAgreementAtEveryCapacity({enter(vectorKind, 5), put(1), put(-2), put("hello world"),
                                  put(lvArg()), put("abc"), leave(), terminate()});
}

TEST(WriterAtEveryCapacity, WritesMapsAsTheModelDoes) {
  expectAgreementAtEveryCapacity({enter(mapKind, 2), enter(tupleKind, 2), put("name"), put("x y"),
                                  leave(), enter(tupleKind, 2), put("count"), put(3), leave(),
                                  leave(), terminate()});
}

TEST(WriterAtEveryCapacity, WritesSizePrefixesAsTheModelDoes) {
  expectAgreementAtEveryCapacity({setTransferSizes(true), enter(mapKind, 1), enter(tupleKind, 2),
                                  put("k"), enter(vectorKind, 2147483647), leave(), leave(),
                                  leave(), terminate()});
}

TEST(WriterAtEveryCapacity, WritesObjectsAsTheModelDoes) {
  expectAgreementAtEveryCapacity({enter(vectorKind, -1), enter(classNamed("Point"), -1), put(1),
                                  put(2), leave(), enter(classNamed("my class"), -1), put("a\nb"),
                                  put("_tmp1"), leave(), leave(), terminate()});
}

TEST(WriterAtEveryCapacity, WritesObjectsWithSizesAsTheModelDoes) {
  for (std::string const name : {"A", "Rectangle", "a name of 20 bytes..", "::::::::"}) {
    expectAgreementAtEveryCapacity({setTransferSizes(true), put(1), enter(classNamed(name), 12345),
                                    put(1), leave(), enter(classNamed(name), 0), leave()});
  }
}

TEST(WriterAtEveryCapacity, WritesUnsizedLevelsAsTheModelDoes) {
  expectAgreementAtEveryCapacity(repeated(
      10, {enter(tupleKind, -1), put(1), enter(vectorKind, -1), leave(), leave(), abortLevel()}));
}

TEST(WriterAtEveryCapacity, RefusesLevelsBeyondTheLastAsTheModelDoes) {
  Steps steps = repeated(17, {enter(tupleKind, -1), enter(classNamed("C"), -1)});
  steps.insert(steps.end(), {put(1), enter(mapKind, -1), enter(mapKind, 3), leave(), leave()});
  expectAgreementAtEveryCapacity(steps);
}

TEST(WriterAtEveryCapacity, CutsEscapedStringsAsTheModelDoes) {
  for (std::string const text : {":::::::::::", "a:b:c:d:e:f:g", "aaaaaaaa::", "::aaaaaaaaaaaa",
                                 "\x7F\x01z", "\xFF\xFE: \xE9", "%", " "}) {
    expectAgreementAtEveryCapacity({put(text), terminate(), put(text), put(text), terminate()});
    expectAgreementAtEveryCapacity({put(7), put(text), enter(tupleKind, -1), put(text), put(text)});
  }
}

TEST(WriterAtEveryCapacity, InsertsPlainTextAsTheModelDoes) {
  expectAgreementAtEveryCapacity(
      {insertString("key", -1), insertChar('='), put("v"), insertString("", 0), omitSeparator(),
       put(5), insertString("abcdef", 3), insertChar(255), insertString(std::string(3, '\0'), 3),
       put(6), insertChar('x'), insertChar('y'), insertString("", -1), terminate()});
}

TEST(WriterAtEveryCapacity, RewindsAsTheModelDoes) {
  expectAgreementAtEveryCapacity({enter(vectorKind, -1), put("word"), setStringOffset(1), put(1),
                                  setStringOffset(40), put(2), init(), put(3), setStringOffset(79),
                                  leave(), terminate(), insertChar('!'), terminate()});
}

// ---- Random walks ------------------------------------------------------------------------------

void walk(unsigned seed, int capacity, int stepCount, int nesting) {
  test::SeededChoices choices(seed);
  test::WriterWalk writer(choices, capacity, nesting);
  for (int i = 0; i < stepCount; ++i) {
    ASSERT_TRUE(writer.step()) << "seed " << seed << ", step " << i;
  }
}

TEST(WriterWalk, AgreesWithTheModelAtEveryCapacity) {
  for (int capacity = 0; capacity <= LargestCapacity && !HasFatalFailure(); ++capacity) {
    for (unsigned seed = 0; seed < 40 && !HasFatalFailure(); ++seed) {
      walk(1000 * static_cast<unsigned>(capacity) + seed, capacity, 40, 15);
    }
  }
}

TEST(WriterWalk, AgreesWithTheModelWhenLevelsPileUp) {
  for (unsigned seed = 0; seed < 100 && !HasFatalFailure(); ++seed) {
    walk(seed, 100 + static_cast<int>(seed), 120, 60);
  }
}

}  // namespace
