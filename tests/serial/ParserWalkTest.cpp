// The parser against a slow model of it, on random texts.

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "support/walks/ParserWalk.h"

namespace {

using test::Choices;

// ---- Texts -------------------------------------------------------------------------------------

std::string randomBytes(Choices& dice) {
  std::string text;
  for (unsigned n = dice.below(40U); n > 0; --n) {
    text += static_cast<char>(dice.below(256));
  }
  return text;
}

// Bytes that mean something, so that they meet.
std::string meaningfulBytes(Choices& dice) {
  static char const meaningful[] = "#()*,-=[]{}\"\"\\%0019anrtxzAFG_ \t\n\0\x7F\x80\xE9\xFF$:";
  static std::string const bytes(meaningful, sizeof(meaningful) - 1);
  std::string text;
  for (unsigned n = dice.below(40U); n > 0; --n) {
    text += bytes[dice.below(static_cast<unsigned>(bytes.size()))];
  }
  return text;
}

std::string tokenSoup(Choices& dice) {
  static std::vector<std::string> const tokens = {
      "#",          "(",          ")",          "*",    ",",          "-",
      "=",          "[",          "]",          "{",    "}",          "$",
      "nil",        "word",       "_x9",        "0",    "17",         "2147483648",
      "4294967295", "4294967296", "9999999999", "\"\"", "\"a b\"",    "\"%41\\n\"",
      "\"%00%\"\"", "\"open",     " ",          "\n",   "99999999999"};
  std::string text;
  for (unsigned n = dice.below(16U); n > 0; --n) {
    text += dice.pick(tokens);
    text += dice.oneIn(4) ? " " : "";
  }
  return text;
}

std::string validText(Choices& dice, unsigned depth) {
  std::string items;
  switch (depth == 0 ? dice.below(4) : dice.below(7)) {
    case 0:
      return std::to_string(static_cast<int>(dice.below(4294967295U)));
    case 1:
      return "word";
    case 2:
      return "\"say %22hi%22%3A 100%25\"";
    case 3:
      return "#nil";
    case 4:
      for (unsigned n = dice.below(4U); n > 0; --n) {
        items += validText(dice, depth - 1) + (n > 1 ? "," : "");
      }
      return "{" + items + "}";
    case 5:
      for (unsigned n = 1 + dice.below(3U); n > 0; --n) {
        items += "(k=" + validText(dice, depth - 1) + ")" + (n > 1 ? "," : "");
      }
      return "{" + items + "}";
    default:
      return "*Point{" + validText(dice, depth - 1) + "," + validText(dice, depth - 1) + "}";
  }
}

std::string mutatedText(Choices& dice) {
  std::string text = validText(dice, 3);
  for (unsigned n = dice.below(4U); n > 0 && !text.empty(); --n) {
    std::size_t const at = dice.below(static_cast<unsigned>(text.size()));
    std::string const other = dice.oneIn(2) ? meaningfulBytes(dice).substr(0, 1) : "";
    text.replace(at, dice.oneIn(2) ? 1 : 0, other);
  }
  return text;
}

// A string that ends somewhere around the end of the stack area, of plain bytes and escapes.
std::string longString(Choices& dice) {
  static std::vector<std::string> const pieces = {"\\n", "\\\"", "\\\\", "%22", "%\"", "%\\",
                                                  "%4",  "%00",  "%0",   "%z",  "\\%", "%%"};
  unsigned const rarely = 1 + dice.below(100U);
  std::string text(1, '"');
  for (unsigned n = 480 + dice.below(40U); n > 0; --n) {
    text += dice.oneIn(rarely) ? dice.pick(pieces) : "a";
  }
  for (unsigned n = dice.below(300U); n > 0; --n) {
    text += dice.oneIn(3) ? dice.pick(pieces) : "b";
  }
  return text + dice.pick<std::string>({"\"", "", "\\", "%", "\",1", std::string("\0,2", 3)});
}

// ---- Walks -------------------------------------------------------------------------------------

// Reads to the end and once more.
void expectSameReading(std::string const& text) {
  SCOPED_TRACE(testing::PrintToString(text));
  test::ParserWalk(text).readAllArgs();
}

using Generator = std::string (*)(Choices&);

struct WalkCase {
  char const* name;
  Generator makeText;
  unsigned texts;
};

std::ostream& operator<<(std::ostream& stream, WalkCase const& each) { return stream << each.name; }

class ParserWalk : public testing::TestWithParam<WalkCase> {
 protected:
  // Calls `check` with many texts, until the first failure.
  template <class Check>
  void forTexts(unsigned count, Check check) {
    for (unsigned seed = 1; seed <= count && !HasFailure(); ++seed) {
      SCOPED_TRACE("seed " + std::to_string(seed));
      test::SeededChoices dice(seed);
      check(GetParam().makeText(dice), dice);
    }
  }
};

TEST_P(ParserWalk, ReadsTextsAsTheModelDoes) {
  forTexts(GetParam().texts, [](std::string const& text, Choices&) { expectSameReading(text); });
}

TEST_P(ParserWalk, ReadsTokensAsTheModelDoes) {
  forTexts(GetParam().texts, [](std::string const& text, Choices&) {
    SCOPED_TRACE(testing::PrintToString(text));
    test::ParserWalk(text).readAllTokens();
  });
}

TEST_P(ParserWalk, ReadsTextsThatAreCutAtAnyByteAsTheModelDoes) {
  forTexts(GetParam().texts / 10, [](std::string const& text, Choices& dice) {
    bool const isShort = text.size() <= 120;
    for (std::size_t size = isShort ? 0 : text.size() - dice.below(20U); size <= text.size();
         ++size) {
      expectSameReading(text.substr(0, size));
    }
  });
}

TEST_P(ParserWalk, TakesRandomStepsAsTheModelDoes) {
  forTexts(GetParam().texts, [](std::string const& text, Choices& dice) {
    SCOPED_TRACE(testing::PrintToString(text));
    test::ParserWalk pair(text);
    for (int step = 0; step < 40 && !HasFailure(); ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      pair.takeStep(dice);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(Texts, ParserWalk,
                         testing::Values(WalkCase{"RandomBytes", randomBytes, 3000},
                                         WalkCase{"MeaningfulBytes", meaningfulBytes, 4000},
                                         WalkCase{"TokenSoup", tokenSoup, 4000},
                                         WalkCase{"MutatedTexts", mutatedText, 3000},
                                         WalkCase{"LongStrings", longString, 600}),
                         [](auto const& each) { return std::string(each.param.name); });

}  // namespace
