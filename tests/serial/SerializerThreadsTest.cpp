// One serializer, and the conversion functions, used by several threads with values of their own,
// and with one value in turn.
#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <vector>

#include "support/FieldObjects.h"
#include "support/SinkRuns.h"
#include "support/StringTable.h"
#include "support/TextWriter.h"
#include "support/Together.h"
#include "support/TreeModel.h"
#include "tarselvalues/serial/lvTools.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::described;

constexpr int Rounds = 200;

// A small tree; every thread gets the same ones, so that they meet in the table of strings.
test::Tree treeOfRound(int round) {
  test::TreeMaker maker(static_cast<unsigned>(round));
  maker.budget = 20;
  return maker.make(6);
}

// Writes and reads with `serializer`, and returns how many trees came back changed.
int changedBySerializer(lvrCommonSerializer& serializer) {
  int changed = 0;
  for (int round = 1; round <= Rounds; ++round) {
    test::Tree const tree = treeOfRound(round);
    test::TextWriter writer(60000);
    serializer.serializeAtomInto(writer, test::valueOf(tree));
    std::string const text = writer.text();
    lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
    lvArg back;
    serializer.deserializeItemInto(back, parser);
    changed += described(back) == described(tree) ? 0 : 1;
  }
  return changed;
}

// The same through the conversion functions, for trees whose text is short enough.
int changedByTools() {
  int changed = 0;
  for (int round = 1; round <= Rounds; ++round) {
    test::Tree const tree = treeOfRound(round);
    if (test::textOf(tree).size() < 4000) {
      int consumed = 0;
      lvArg const back = lvToolsFromString(lvToolsToString(test::valueOf(tree)), consumed);
      changed += described(back) == described(tree) ? 0 : 1;
    }
  }
  return changed;
}

class SerializerThreads : public testing::TestWithParam<int> {
 protected:
  // How many trees each thread found changed.
  std::vector<int> changed = std::vector<int>(static_cast<std::size_t>(GetParam()), -1);

  int& changedOf(int thread) { return changed[static_cast<std::size_t>(thread)]; }
  static std::vector<int> none() {
    return std::vector<int>(static_cast<std::size_t>(GetParam()), 0);
  }
};

TEST_P(SerializerThreads, ShareOneSerializer) {
  test::HeldSerializer const serializer;
  test::runTogether(GetParam(),
                    [&](int thread) { changedOf(thread) = changedBySerializer(*serializer); });
  EXPECT_EQ(changed, none());
}

TEST_P(SerializerThreads, ConvertValuesOfTheirOwn) {
  test::runTogether(GetParam(), [&](int thread) { changedOf(thread) = changedByTools(); });
  EXPECT_EQ(changed, none());
}

// Objects of one thread, of classes that all threads look up, around a string that all share.
lvArg segment(int thread, int round, lvArg const& shared) {
  auto* const from = new test::Point;
  lvArg const fromCell(*from);
  from->x = test::integer(thread);
  from->y = shared;
  auto* const segment = new test::Segment;
  lvArg cell(*segment);
  segment->from = fromCell;
  segment->to = test::mapOf({{shared, test::integer(round)}});
  return cell;
}

TEST_P(SerializerThreads, WriteAndReadObjectsOfTheSameClasses) {
  test::registerClasses();
  lvArg const shared = test::string("shared");
  std::atomic<int> wrong{0};
  test::runTogether(GetParam(), [&](int thread) {
    for (int round = 0; round < Rounds; ++round) {
      lvArg const value = segment(thread, round, shared);
      lvString const text = lvToolsToString(value);
      wrong += test::textOf(text) == "*Segment{*Point{" + std::to_string(thread) +
                                         ",shared},{(shared=" + std::to_string(round) + ")},7}"
                   ? 0
                   : 1;
      int consumed = 0;
      wrong += described(lvToolsFromString(text, consumed)) == described(value) ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(test::countOf(shared), 1);
}

// A tree belongs to one thread at a time, though nobody changes it.
TEST_P(SerializerThreads, WriteOneTreeInTurn) {
  lvArg const tree = test::valueOf(treeOfRound(3));
  std::string const expected = described(treeOfRound(3));
  std::mutex mine;
  std::atomic<int> wrong{0};
  test::runTogether(GetParam(), [&](int /*thread*/) {
    for (int round = 0; round < Rounds / 4; ++round) {
      std::unique_lock<std::mutex> lock(mine);
      lvString const text = lvToolsToString(tree);
      lock.unlock();
      int consumed = 0;
      wrong += described(lvToolsFromString(text, consumed)) == expected ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

// Every way of making an interned string leads to the same entry while anybody holds it.
TEST_P(SerializerThreads, MakeOneEntryOfATextInWhateverWay) {
  std::size_t const before = test::entryCount();
  std::atomic<int> wrong{0};
  test::runTogether(GetParam(), [&](int thread) {
    for (int round = 0; round < 5 * Rounds; ++round) {
      int const number = 100 + (thread + round) % 3;
      std::string const text = std::to_string(number);
      lvString const handles[] = {lvToolsToString(test::integer(number)),
                                  lvString::valueOf(number),
                                  lvString(test::integer(number)),
                                  lvString(test::string(text)),
                                  lvString(text.substr(0, 1).c_str()) + text.substr(1).c_str(),
                                  lvString(text.c_str()),
                                  lvString((text + "1").c_str()).getLeft(3)};
      for (lvString const& handle : handles) {
        wrong += handle.eq(handles[0]) && test::textOf(handle) == text ? 0 : 1;
      }
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(test::entryCount(), before);
}

INSTANTIATE_TEST_SUITE_P(Threads, SerializerThreads, testing::Values(1, 4),
                         [](auto const& each) { return std::to_string(each.param); });

}  // namespace
