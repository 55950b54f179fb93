// One string object that several threads read: what they ask it fills its caches.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <string>

#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringTable.h"
#include "support/Together.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvValue.h"

namespace {

using test::countOf;
using test::Gate;
using test::runTogether;
using test::string;

constexpr int Threads = 4;
constexpr int Rounds = 600;

lvrString const& stringIn(lvArg const& cell) {
  return static_cast<lvrString const&>(*cell.getReferencable());
}

// Each test runs with one thread, too: what fails there is no matter of threads.
class SharedString : public ::testing::TestWithParam<int> {
 protected:
  // Makes a string in each round and lets all threads ask it at once; `ask` answers how many
  // answers were wrong. Returns their sum.
  template <class Make, class Ask>
  int askTogether(int rounds, Make make, Ask ask) {
    lvArg shared;
    std::atomic<int> wrong{0};
    Gate gate(GetParam());
    runTogether(GetParam(), [&](int thread) {
      for (int i = 0; i < rounds; ++i) {
        if (thread == 0) {
          shared = make(i);
        }
        gate.pass();
        wrong += ask(shared, i);
        gate.pass();
      }
    });
    EXPECT_EQ(countOf(shared), 1);
    return wrong;
  }
};

INSTANTIATE_TEST_SUITE_P(Threads, SharedString, ::testing::Values(1, Threads));

// A text that differs from round to round in a byte that the hash takes in.
std::string longText(int round) {
  return "a text of more than eighteen bytes " + std::to_string(round);
}

TEST_P(SharedString, GivesEveryReaderTheHashOfItsText) {
  int const wrong = askTogether(
      Rounds, [](int round) { return string(longText(round)); },
      [](lvArg const& shared, int round) {
        unsigned const expected = test::modelHash(longText(round));
        return (shared.hashCode() == expected ? 0 : 1) + (shared.hashCode() == expected ? 0 : 1);
      });
  EXPECT_EQ(wrong, 0);
}

TEST_P(SharedString, KeepsItsIntegerWhileReadersFillInItsHash) {
  int const wrong = askTogether(
      Rounds,
      [](int round) -> lvArg { return lvValue(test::integer(round - Rounds / 2)).toString(); },
      [](lvArg const& shared, int round) {
        int const value = round - Rounds / 2;
        int mistakes = lvValue(shared).getInt() == value ? 0 : 1;
        mistakes += shared.hashCode() == test::modelHash(std::to_string(value)) ? 0 : 1;
        return mistakes + (lvValue(shared).getInt() == value ? 0 : 1);
      });
  EXPECT_EQ(wrong, 0);
}

TEST_P(SharedString, IsEquivalentToItsCopyForEveryReader) {
  int const wrong = askTogether(
      Rounds, [](int round) { return string(longText(round)); },
      [](lvArg const& shared, int round) {
        int mistakes = shared.equiv(string(longText(round))) != 0 ? 0 : 1;
        mistakes += shared.equiv(string(longText(round + 1))) == 0 ? 0 : 1;
        mistakes += shared.compareTo(string(longText(round))) == 0 ? 0 : 1;
        return mistakes;
      });
  EXPECT_EQ(wrong, 0);
}

TEST_P(SharedString, IsCountedByEveryReaderWhereItIsTooLongForAStoredLength) {
  constexpr std::size_t length = 70000;
  int const wrong = askTogether(
      3, [](int /*round*/) { return string(std::string(length, 'x')); },
      [](lvArg const& shared, int /*round*/) {
        lvrString const& text = stringIn(shared);
        int mistakes = text.getLength() == static_cast<int>(length) ? 0 : 1;
        mistakes += text.hashCode() == test::modelHash(std::string(length, 'x')) ? 0 : 1;
        return mistakes + (text.getInteger() == -1 ? 0 : 1);
      });
  EXPECT_EQ(wrong, 0);
}

TEST_P(SharedString, IsInternedByAllAsOneEntry) {
  std::size_t const before = test::entryCount();
  std::array<lvString, Threads> handles;
  std::atomic<int> wrong{0};
  lvArg shared;
  Gate gate(GetParam());
  runTogether(GetParam(), [&](int thread) {
    lvString& mine = handles.at(static_cast<std::size_t>(thread));
    for (int i = 0; i < Rounds; ++i) {
      if (thread == 0) {
        shared = string(longText(i));
      }
      gate.pass();
      mine = lvString(shared);
      gate.pass();
      wrong += mine.eq(handles[0]) && countOf(mine) == GetParam() ? 0 : 1;
      gate.pass();
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(test::entryCount(), before + 1);
  handles.fill(lvString());
  EXPECT_EQ(test::entryCount(), before);
}

}  // namespace
