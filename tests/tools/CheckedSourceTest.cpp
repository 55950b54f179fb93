// Texts with faults: all verbs make the same of them.

#include <gmock/gmock.h>
#include <lvtext/Input.h>

#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tools/RandomTrees.h"

namespace {

// Tokens in any order, brackets often in their places.
std::string randomTokens(unsigned seed) {
  static char const* const tokens[] = {
      "{",         "}",       "(",           ")",         ",",
      "=",         "{(",      ")}",          "),(",       "*Named{",
      "*",         "#",       "#nil",        "-",         "5",
      "word",      "\"a%0",   "\"",          "\"q\"",     "\"%00\"",
      "*No{",      "[",       " ",           "a=",        "a=1",
      "(b=2)",     "(b={1})", "(b=)",        "{1}",       "{2,3}",
      "\n",        "?",       "99999999999", "),",        "},",
      ",",         ",",       "(a=1),",      "(a=#nil),", "*\"my class\"{1,2}",
      "4000000000"};
  std::mt19937 random(seed);
  std::string text;
  for (auto left = 1 + random() % 60; left > 0; --left) {
    text += tokens[random() % std::size(tokens)];
  }
  return text;
}

constexpr unsigned Texts = 100;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

class LvtextFaults : public testing::TestWithParam<unsigned> {
 protected:
  LvtextFaults() { declareRandomClasses(); }

  // As the verb print reads.
  static std::vector<lvArg> readValues(std::string const& text, std::FILE* out) {
    Input input("text", text, out);
    CheckedSource source(input);
    auto* const serializer = new lvrCommonSerializer;
    lvArg const holder(*serializer);
    std::vector<lvArg> values;
    lvArg value;
    while (serializer->deserializeItemInto(value, source) != lvArgSource::SOURCE_END) {
      values.push_back(value);
    }
    return values;
  }

  // As the others do.
  static std::vector<Node> readNodes(std::string const& text, std::FILE* out) {
    Input input("text", text, out);
    CheckedSource source(input);
    std::vector<Node> nodes;
    Node node;
    while (readNode(node, source)) {
      nodes.push_back(node);
    }
    return nodes;
  }
};

TEST_P(LvtextFaults, LeaveTheSameInTreesAndInTheLibrarysValues) {
  File const nowhere(std::fopen("/dev/null", "w"), std::fclose);
  ASSERT_NE(nowhere, nullptr);
  for (unsigned i = 0; i < Texts && !HasFailure(); ++i) {
    std::string const text = randomTokens(GetParam() * Texts + i);
    SCOPED_TRACE(text);
    std::vector<lvArg> const values = readValues(text, nowhere.get());
    std::vector<Node> const nodes = readNodes(text, nowhere.get());
    ASSERT_EQ(nodes.size(), values.size());
    for (std::size_t k = 0; k < nodes.size(); ++k) {
      EXPECT_TRUE(stands(nodes[k], values[k])) << "value " << k;
    }
  }
}
INSTANTIATE_TEST_SUITE_P(Random, LvtextFaults, testing::Range(0U, 4U));

}  // namespace
