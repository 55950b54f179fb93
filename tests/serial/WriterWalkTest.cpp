// The text writer beside its model: fixed sequences of calls and random ones, in buffers of every
// small capacity.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/WriterModel.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::classNamed;
using test::integer;
using test::mapKind;
using test::tupleKind;
using test::vectorKind;
using test::WriterAndModel;
using test::WriterStep;

constexpr int LargestCapacity = 80;

std::string nameOf(lvArg const& kind) {
  return kind.getType() == lvArg::IntType ? std::to_string(kind.getInt())
                                          : test::textOf(lvClass(kind).getClassDesc());
}

WriterStep enter(lvArg const& kind, int size) {
  return {"enter " + testing::PrintToString(nameOf(kind)) + ", " + std::to_string(size),
          [=](auto& sink) { return sink.enter(kind, size); }};
}

WriterStep leave() {
  return {"leave", [](auto& sink) { return sink.leave(); }};
}

WriterStep abortLevel() {
  return {"abortLevel", [](auto& sink) { return sink.abortLevel(); }};
}

WriterStep put(lvArg const& value) {
  return {"putArg " + testing::PrintToString(test::textOf(lvValue(value).toString())),
          [=](auto& sink) { return sink.putArg(value); }};
}

WriterStep put(int value) { return put(integer(value)); }
WriterStep put(std::string const& text) { return put(test::string(text)); }

WriterStep insertChar(int c) {
  return {"insertChar " + std::to_string(c), [=](auto& sink) { return sink.insertChar(c); }};
}

WriterStep insertString(std::string const& text, int count) {
  return {"insertString " + testing::PrintToString(text) + ", " + std::to_string(count),
          [=](auto& sink) { return sink.insertString(text.c_str(), count); }};
}

WriterStep setTransferSizes(bool on) {
  return {on ? "setTransferSizes on" : "setTransferSizes off", [=](auto& sink) {
            sink.setTransferSizes(on);
            return 0;
          }};
}

WriterStep omitSeparator() {
  return {"omitSeparator", [](auto& sink) {
            sink.omitSeparator();
            return 0;
          }};
}

WriterStep setStringOffset(int offset) {
  return {"setStringOffset " + std::to_string(offset),
          [=](auto& sink) { return sink.setStringOffset(offset); }};
}

WriterStep terminate() {
  return {"terminate", [](auto& sink) { return sink.terminate(); }};
}

WriterStep init() {
  return {"init", [](auto& sink) { return sink.init(); }};
}

WriterStep initOnce() {
  return {"initOnce", [](auto& sink) { return sink.initOnce(); }};
}

WriterStep cleanup() {
  return {"cleanup", [](auto& sink) { return sink.cleanup() + sink.cleanupOnce(); }};
}

WriterStep sourceError() {
  return {"sourceError",
          [](auto& sink) { return sink.sourceError(lvArgDest::SOURCE_ERROR_NO_CLASS); }};
}

WriterStep pushLevel(bool tuple) {
  return {tuple ? "push tuple" : "push curly",
          [=](auto& sink) { return sink.pushMapStack(tuple); }};
}

WriterStep popLevel() {
  return {"pop", [](auto& sink) { return sink.peekMapStack() + 2 * sink.popMapStack(); }};
}

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

class RandomSteps {
 public:
  explicit RandomSteps(unsigned seed) : engine_(seed) {}

  int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }

  // `nesting` out of 100 steps open a level.
  WriterStep next(int nesting) {
    if (below(100) < nesting) {
      return enter(kind(), size());
    }
    switch (below(24)) {
      case 0:
      case 1:
      case 2:
        return leave();
      case 3:
        return abortLevel();
      case 4:
        return insertChar(below(256));
      case 5:
        return insertString(text(), -1);
      case 6: {
        std::string const whole = text();
        return insertString(whole, below(static_cast<int>(whole.size()) + 1));
      }
      case 7:
        return omitSeparator();
      case 8:
        return setTransferSizes(below(3) != 0);
      case 9:
        return setStringOffset(below(LargestCapacity + 2));
      case 10:
        return below(4) == 0 ? init() : terminate();
      case 11:
        return below(4) == 0 ? initOnce() : cleanup();
      case 12:
        return below(2) == 0 ? pushLevel(below(2) == 0) : popLevel();
      case 13:
        return sourceError();
      case 14:
      case 15:
        return put(lvArg());
      case 16:
      case 17:
      case 18:
        return put(number());
      default:
        return put(text());
    }
  }

 private:
  lvArg kind() {
    switch (below(6)) {
      case 0:
        return mapKind;
      case 1:
        return vectorKind;
      case 2:
        return below(4) == 0 ? lvArg(lvClass()) : classNamed(text());
      default:
        return tupleKind;
    }
  }

  int size() { return below(3) != 0 ? -1 - below(2) : number() & 0x7FFFFFFF; }

  int number() {
    auto const bits = static_cast<int>(engine_());
    return bits >> below(32);
  }

  // Mostly short, mostly of few kinds of byte, so that words, escapes and plain bytes all come up.
  std::string text() {
    static std::string const alphabets[] = {"ab_Z09",     "a:", ":%\"\n\x7F",
                                            "a b\\\xE9:", "x",  std::string("a\0:", 3)};
    std::string const& alphabet = alphabets[below(6)];
    std::string made(static_cast<std::size_t>(below(4) == 0 ? below(40) : below(6)), ' ');
    for (char& c : made) {
      c = alphabet[static_cast<std::size_t>(below(static_cast<int>(alphabet.size())))];
    }
    return made;
  }

  std::mt19937 engine_;
};

void walk(unsigned seed, int capacity, int stepCount, int nesting) {
  RandomSteps steps(seed);
  WriterAndModel both(capacity);
  for (int i = 0; i < stepCount; ++i) {
    ASSERT_TRUE(both.agreeOn(steps.next(nesting))) << "seed " << seed << ", step " << i;
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
