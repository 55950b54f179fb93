// One serializer, and the conversion functions, used by several threads with values of their own.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/SinkRuns.h"
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

INSTANTIATE_TEST_SUITE_P(Threads, SerializerThreads, testing::Values(1, 4),
                         [](auto const& each) { return std::to_string(each.param); });

}  // namespace
