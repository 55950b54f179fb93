// Random graphs of objects and containers: onto sinks and into texts, back from texts and answers,
// beside slow models; and sinks that change what is being written.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "support/FieldObjects.h"
#include "support/ReadingModel.h"
#include "support/SinkModel.h"
#include "support/SourceRuns.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::described;
using test::Script;
using test::TreeMaker;

class SerializerObjectsWalk : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }
};

// A graph with anything in it that can be in one.
lvArg randomValue(TreeMaker& maker) {
  maker.allowsObjects = true;
  maker.allowsUnusualClasses = true;
  maker.allowsRefused = true;
  maker.allowsEmptyMaps = true;
  maker.budget = 40;
  return test::valueOf(maker.make(7));
}

std::string written(lvArg const& value, int capacity) {
  test::TextWriter writer(capacity);
  test::HeldSerializer()->serializeAtomInto(writer, value);
  return writer.text();
}

// ---- Writing -----------------------------------------------------------------------------------

TEST_F(SerializerObjectsWalk, CallsTheSinkAsTheModelDoes) {
  int objects = 0;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    TreeMaker maker(seed);
    lvArg const value = randomValue(maker);
    for (int run = 0; run < 6; ++run) {
      test::SinkAnswers const answers = test::randomAnswers(maker);
      std::string const actual = test::atom(value, answers);
      ASSERT_EQ(actual, test::modelRun(value, answers)) << "seed " << seed << " run " << run;
      objects += actual.find("(*") != std::string::npos ? 1 : 0;
    }
  }
  EXPECT_GT(objects, 400) << "the values are too dull";
}

TEST_F(SerializerObjectsWalk, WritesTheTextOfTheModelIntoBuffersOfEverySize) {
  for (unsigned seed = 1; seed <= 4; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    test::expectTextsOfTheModel(randomValue(maker));
    if (HasFailure()) {
      return;
    }
  }
}

// ---- To text and back --------------------------------------------------------------------------

// Ordinary objects in ordinary containers come back as they were.
void expectToComeBack(lvArg const& value) {
  std::string const expected = test::textOf(test::treeOf(value));
  std::string const text = written(value, static_cast<int>(expected.size()) + 20);
  ASSERT_EQ(text, expected);
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg back;
  EXPECT_EQ(test::printedBy(
                [&] { EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(back, parser), 0); }),
            "");
  EXPECT_EQ(parser.getErrorCount(), 0);
  EXPECT_EQ(parser.getParseOffset(), static_cast<int>(text.size()));
  EXPECT_EQ(described(back), described(value));
}

TEST_F(SerializerObjectsWalk, KeepsOrdinaryObjects) {
  for (unsigned seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    maker.allowsObjects = true;
    maker.budget = 60;
    expectToComeBack(test::valueOf(maker.make(maker.upTo(12))));
    if (HasFailure()) {
      return;
    }
  }
}

TEST_F(SerializerObjectsWalk, KeepsObjectsOfAsManyLevelsAsTheWriterOpens) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    maker.allowsObjects = true;
    expectToComeBack(test::valueOf(maker.makeDeep(lvtStringArgDest::MaxDepth - maker.upTo(2))));
    if (HasFailure()) {
      return;
    }
  }
}

// ---- Reading -----------------------------------------------------------------------------------

// Reads item by item, through any source, and compares each with the model's.
void expectItemsOfTheModel(lvArgSource& source, test::ReadingModel& model, std::size_t answers) {
  test::HeldSerializer const serializer;
  std::string const printed = test::printedBy([&] {
    while (model.reads() < answers) {
      lvArg out = test::untouched();
      int const status = serializer->deserializeItemInto(out, source);
      auto const expected = model.readItem();
      ASSERT_EQ(status, expected.first) << "read " << model.reads();
      ASSERT_EQ(test::describedOutput(out), status == 0 ? expected.second : "same")
          << "read " << model.reads();
    }
  });
  EXPECT_EQ(printed, model.printed());
}

// The texts of any values, those with open levels and superfluous brackets included.
TEST_F(SerializerObjectsWalk, ReadsTheTextsOfAnythingAsTheModelDoes) {
  int faulty = 0;
  for (unsigned seed = 1; seed <= 200; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    maker.hasScalarKeys = true;
    std::string text;
    for (int i = 0; i < 3; ++i) {
      lvArg const value = randomValue(maker);
      text += (text.empty() ? "" : ",") + written(value, 20000);
    }
    Script const script = test::scriptOf(text);
    test::ReadingModel model(test::told(script), test::Classes::All);
    lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
    expectItemsOfTheModel(parser, model, script.size());
    if (HasFailure()) {
      return;
    }
    faulty += model.printed().empty() ? 0 : 1;
  }
  EXPECT_GT(faulty, 50) << "the values are too sound";
}

TEST_F(SerializerObjectsWalk, BuildsFromAnswersWhatTheModelBuilds) {
  std::vector<std::string> const keys = {"Point",    "Point",  "Solid",  "Segment", "Segment",
                                         "my class", "Blank",  "Tabled", "Half",    "Hollow",
                                         "Abstract", "Barren", "Alias",  "Vector",  "HashMap",
                                         "Nope",     "Bogus",  "Stack",  ""};
  for (unsigned seed = 1; seed <= 600; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Script const script = test::ScriptMaker(seed, keys).make(40);
    test::ReadingModel model(test::told(script), test::Classes::All);
    test::ScriptedSource source(script);
    expectItemsOfTheModel(source, model, script.size());
    EXPECT_EQ(source.reads(), model.reads());
    if (HasFailure()) {
      return;
    }
  }
}

// ---- Sinks that change what is being written ---------------------------------------------------

// A sink that at every call may change a container or an object of the graph. It counts levels.
class MeddlingSink : public lvArgDest {
 public:
  MeddlingSink(unsigned seed, std::vector<lvArg> parts) : random_(seed), parts_(std::move(parts)) {}

  int terminate() override { return 0; }
  int enter(lvArg const& /*kind*/, int /*size*/) override {
    ++open;
    return meddled();
  }
  int leave() override {
    --open;
    return meddled();
  }
  int abortLevel() override { return meddled(); }
  int sourceError(sourceError_t /*error*/) override { return meddled(); }
  int putArg(lvArg const& value) override {
    // Nothing but scalars is ever seen, whatever became of where they were.
    scalars += value.isNil() || value.getType() == lvArg::IntType ? 1 : 0;
    ++puts;
    return meddled();
  }

  int open = 0;
  int puts = 0;
  int scalars = 0;

 private:
  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
  lvArg const& anyPart() {
    return parts_[static_cast<std::size_t>(upTo(static_cast<int>(parts_.size()) - 1))];
  }

  int meddled() {
    lvArg const part = anyPart();
    if (lviList* const list = lvVector(part).getList()) {
      changeList(*list);
    } else if (lviMap* const map = lvHashMap(part).getMap()) {
      changeMap(*map);
    } else {
      auto& object = dynamic_cast<test::FieldObject&>(*part.getReferencable());
      *object.cells()[static_cast<std::size_t>(upTo(1))] = test::integer(upTo(9));
    }
    return 0;
  }

  void changeList(lviList& list) {
    switch (upTo(5)) {
      case 0:
        list.clear();
        break;
      case 1:
      case 2:
        list.remove(0);
        break;
      default:
        list.insert(test::integer(upTo(9)), upTo(1) - 1);
    }
  }

  void changeMap(lviMap& map) {
    switch (upTo(7)) {
      case 0:
        map.clear();
        break;
      case 1:
      case 2:
      case 3:
        map.put(test::integer(upTo(5)), lvArg());
        break;
      default:
        map.put(test::integer(upTo(5)), test::integer(upTo(9)));
    }
  }

  std::mt19937 random_;
  std::vector<lvArg> parts_;
};

// All parts that can be changed, each held by the one before it: a vector, a hash map, an object, a
// tuple set and an object.
std::vector<lvArg> chainOfParts() {
  lvArg const last = test::point(8, 9);
  lvHashMap set(*lvrTupleSet::defaultCtorMethod());
  set->put(test::integer(1), last);
  set->put(test::integer(2), test::integer(2));
  lvArg const middle = test::point(test::integer(1), set);
  lvArg const map = test::mapOf({{test::integer(1), test::integer(1)}, {test::integer(2), middle}});
  lvArg const vector = test::vectorOf({map, test::integer(3), map});
  return {vector, map, middle, set, last};
}

TEST_F(SerializerObjectsWalk, LeavesEachLevelThatItEnteredThoughTheSinkChangesWhatIsWritten) {
  for (unsigned seed = 1; seed <= 1000; ++seed) {
    std::vector<lvArg> parts = chainOfParts();
    lvArg const value = parts.front();
    MeddlingSink sink(seed, std::move(parts));
    ASSERT_EQ(test::HeldSerializer()->serializeAtomInto(sink, value), 0) << "seed " << seed;
    ASSERT_EQ(sink.open, 0) << "seed " << seed;
    ASSERT_EQ(sink.scalars, sink.puts) << "seed " << seed;
  }
}

// ---- Many elements -----------------------------------------------------------------------------

TEST_F(SerializerObjectsWalk, ReadsAsManyElementsAndObjectsAsThereAre) {
  std::string text = "*Segment{{0";
  for (int i = 1; i < 3000; ++i) {
    text += ",*Point{" + std::to_string(i) + "}";
  }
  text += "},1}";
  lvtStringArgSource parser(text.data(), static_cast<int>(text.size()));
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
  auto const& segment = dynamic_cast<test::Segment const&>(*out.getReferencable());
  lvVector const points(segment.from);
  ASSERT_EQ(points->getSize(), 3000);
  EXPECT_EQ(described(points->at(2999)), "*Point{2999,nil}");
  EXPECT_EQ(segment.to.getInt(), 1);
}

}  // namespace
