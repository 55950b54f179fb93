#include "support/FailLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "support/Callocs.h"
#include "support/Objects.h"
#include "support/StringTable.h"

namespace test {

namespace {

constexpr int Plenty = 1000000;
constexpr int GrowthExitStatus = 13;

// What came of one run.
struct Outcome {
  bool thrown = false;
  int failed = 0;  // calls
  std::string answer;
  std::string shown;

  bool isLike(Outcome const& other) const {
    return !thrown && answer == other.answer && shown == other.shown;
  }
};

// Runs the operation while only so many allocations succeed; of the others all fail, or one.
Outcome runOnce(Subject& subject, int allocations, bool once) {
  Outcome outcome;
  lvArg answer;
  Mallocs::failed = 0;
  Mallocs::failOnce = once;
  try {
    OutOfMemory const without(allocations);
    answer = subject.operate();
  } catch (std::bad_alloc const&) {
    outcome.thrown = true;
  }
  Mallocs::failOnce = false;
  outcome.failed = Mallocs::failed;
  outcome.answer = brief(answer);
  outcome.shown = subject.shown();
  return outcome;
}

std::string wordFor(Outcome const& outcome, Outcome const& whole) {
  if (outcome.thrown) {
    return Throws;
  }
  if (outcome.isLike(whole)) {
    return Copes;
  }
  return outcome.answer == whole.answer ? SaysNothing : outcome.answer;
}

// Runs a new subject out of memory after so many allocations. Returns the word for what came of it.
std::string failOnNew(MakeSubject const& make, int allocations, bool once, Outcome const& whole,
                      std::optional<std::string> const& after) {
  std::unique_ptr<Subject> const subject = make();
  std::string const before = subject->shown();
  std::size_t const entries = entryCount();
  Outcome const outcome = runOnce(*subject, allocations, once);
  EXPECT_GT(outcome.failed, 0);
  EXPECT_TRUE(isTableFree());
  if (!outcome.isLike(whole)) {
    EXPECT_EQ(outcome.shown, outcome.thrown ? before : after.value_or(before));
    if (outcome.shown == before) {
      EXPECT_EQ(entryCount(), entries);
      EXPECT_TRUE(runOnce(*subject, Mallocs::Never, false).isLike(whole)) << "not tried again";
    }
  }
  return wordFor(outcome, whole);
}

void failAtEach(MakeSubject const& make, int allocations, bool once, Outcome const& whole,
                std::string const& missing, std::optional<std::string> const& after) {
  std::string words;
  std::string last;
  words.reserve(100);
  last.reserve(100);
  for (int i = 0; i < allocations; ++i) {
    SCOPED_TRACE("after " + std::to_string(i) + (once ? " allocations, once" : " allocations"));
    int const before = Mallocs::alive;
    {
      std::string const word = failOnNew(make, i, once, whole, after);
      if (word != last) {
        words += (words.empty() ? "" : ", ") + word;
        last = word;
      }
    }
    int const left = Mallocs::alive - before;
    EXPECT_TRUE(left == 0 || testing::Test::HasFailure()) << left << " blocks stayed behind";
  }
  EXPECT_EQ(words, missing);
}

// Each time in a process of its own.
void exitAtEach(MakeSubject const& make, int allocations) {
  EXPECT_GT(allocations, 0);
  for (int i = 0; i < allocations; ++i) {
    std::unique_ptr<Subject> const subject = make();
    EXPECT_EXIT(runOnce(*subject, i, false), testing::ExitedWithCode(GrowthExitStatus),
                testing::IsEmpty());
  }
}

}  // namespace

void runOutOfMemory(std::string const& name, MakeSubject const& make, std::string const& missing,
                    std::optional<std::string> const& after) {
  SCOPED_TRACE(name);
  Outcome whole;
  int allocations = 0;
  {
    std::unique_ptr<Subject> const subject = make();
    subject->shown();
    whole = runOnce(*subject, Plenty, false);
  }
  {
    std::unique_ptr<Subject> const subject = make();
    allocations = allocationsOf([&subject] { subject->operate(); });
  }
  if (missing == Exits) {
    exitAtEach(make, allocations);
    return;
  }
  failAtEach(make, allocations, false, whole, missing, after);
  failAtEach(make, allocations, true, whole, missing, after);
}

int blocksAlive() { return Mallocs::alive; }

int allocationsOf(std::function<void()> const& action) {
  OutOfMemory const counted(Plenty);
  action();
  return Plenty - Mallocs::failAfter;
}

bool failsAfter(int allocations, std::function<void()> const& action) {
  try {
    OutOfMemory const without(allocations);
    action();
  } catch (std::bad_alloc const&) {
    return true;
  }
  return false;
}

}  // namespace test
