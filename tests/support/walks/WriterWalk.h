// A walk of a text writer beside its model.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/WriterSteps.h"
#include "support/walks/Choices.h"

namespace test {

class WriterWalk {
 public:
  // Buffers up to here are small.
  static constexpr int SmallCapacity = 80;

  // `nesting` out of 100 calls open a level.
  WriterWalk(Choices& source, int capacity, int nestingRate)
      : choices(source), nesting(nestingRate), both(capacity) {}

  // Makes a call on both. Succeeds when answer, bytes and state are the same.
  testing::AssertionResult step() { return both.agreeOn(anyCall()); }

 private:
  WriterStep anyCall() {
    if (choices.below(100) < nesting) {
      lvArg const opened = kind();
      return enter(opened, size());
    }
    switch (choices.below(24)) {
      case 0:
      case 1:
      case 2:
        return leave();
      case 3:
        return abortLevel();
      case 4:
        return insertChar(choices.below(256));
      case 5:
        return insertString(text(), -1);
      case 6: {
        std::string const whole = text();
        return insertString(whole, choices.below(static_cast<int>(whole.size()) + 1));
      }
      case 7:
        return omitSeparator();
      case 8:
        return setTransferSizes(choices.below(3) != 0);
      case 9:
        return setStringOffset(choices.below(SmallCapacity + 2));
      case 10:
        return choices.below(4) == 0 ? init() : terminate();
      case 11:
        return choices.below(4) == 0 ? initOnce() : cleanup();
      case 12:
        return choices.below(2) == 0 ? pushLevel(choices.below(2) == 0) : popLevel();
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

  lvArg kind() {
    switch (choices.below(6)) {
      case 0:
        return mapKind;
      case 1:
        return vectorKind;
      case 2:
        return choices.below(4) == 0 ? lvArg(lvClass()) : classNamed(text());
      default:
        return tupleKind;
    }
  }

  int size() { return choices.below(3) != 0 ? -1 - choices.below(2) : number() & 0x7FFFFFFF; }

  int number() {
    auto const bits = static_cast<int>(choices.bits());
    return bits >> choices.below(32);
  }

  // Mostly short, mostly of few kinds of byte, so that words, escapes and plain bytes all come up.
  std::string text() {
    static std::string const alphabets[] = {"ab_Z09",     "a:", ":%\"\n\x7F",
                                            "a b\\\xE9:", "x",  std::string("a\0:", 3)};
    std::string const& alphabet = alphabets[choices.below(6)];
    std::string made(
        static_cast<std::size_t>(choices.below(4) == 0 ? choices.below(40) : choices.below(6)),
        ' ');
    for (char& c : made) {
      c = alphabet[static_cast<std::size_t>(choices.below(static_cast<int>(alphabet.size())))];
    }
    return made;
  }

  Choices& choices;
  int nesting;
  WriterAndModel both;
};

}  // namespace test
