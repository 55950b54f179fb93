// The serializer beside slow models of both its sides, on random trees, failures and answers.
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/ReadingModel.h"
#include "support/SinkModel.h"
#include "support/SourceRuns.h"

namespace {

using test::Script;
using test::Tree;
using test::TreeMaker;

// ---- Writing -----------------------------------------------------------------------------------

Tree randomTree(TreeMaker& maker) {
  maker.allowsRefused = true;
  maker.allowsEmptyMaps = true;
  maker.budget = 40;
  return maker.make(6);
}

TEST(SerializerWalk, CallsTheSinkAsTheModelDoes) {
  for (unsigned seed = 1; seed <= 200; ++seed) {
    TreeMaker maker(seed);
    lvArg const value = test::valueOf(randomTree(maker));
    for (int run = 0; run < 10; ++run) {
      test::SinkAnswers const answers = test::randomAnswers(maker);
      ASSERT_EQ(test::atom(value, answers), test::modelRun(value, answers))
          << "seed " << seed << " run " << run;
    }
  }
}

TEST(SerializerWalk, WritesTheTextOfTheModelIntoBuffersOfEverySize) {
  for (unsigned seed = 1; seed <= 15; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    lvArg const value = test::valueOf(randomTree(maker));
    test::expectTextsOfTheModel(value);
    if (testing::Test::HasFailure()) {
      return;
    }
  }
}

// ---- Reading -----------------------------------------------------------------------------------

TEST(SerializerWalk, BuildsFromAnswersWhatTheModelBuilds) {
  int frames = 0;
  for (unsigned seed = 1; seed <= 1000; ++seed) {
    Script const script = test::ScriptMaker(seed, {"Nope"}).make(40);
    test::ReadingModel model(test::told(script));
    test::ScriptedSource source(script);
    test::HeldSerializer const serializer;
    std::string const printed = test::printedBy([&] {
      while (source.reads() < script.size()) {
        lvArg out = test::untouched();
        int const status = serializer->deserializeItemInto(out, source);
        auto const expected = model.readItem();
        ASSERT_EQ(status, expected.first) << "seed " << seed << " read " << source.reads();
        ASSERT_EQ(test::describedOutput(out), status == 0 ? expected.second : "same")
            << "seed " << seed << " read " << source.reads();
        ASSERT_EQ(source.reads(), model.reads()) << "seed " << seed;
        frames += out.getType() == lvArg::ListType || out.getType() == lvArg::MapType ? 1 : 0;
      }
    });
    ASSERT_EQ(printed, model.printed()) << "seed " << seed;
    ASSERT_FALSE(HasFatalFailure());
  }
  EXPECT_GT(frames, 2000) << "the scripts are too dull";
}

}  // namespace
