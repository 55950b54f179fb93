// The parser against a slow model of it, on random texts.

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "support/walks/ParserWalk.h"
#include "support/walks/RandomTexts.h"

namespace {

using test::Choices;
using test::longString;
using test::meaningfulBytes;
using test::mutatedText;
using test::randomBytes;
using test::tokenSoup;

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
