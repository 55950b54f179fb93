// The serializer beside slow models of both its sides, on random trees, failures and answers.
#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/SinkRuns.h"
#include "support/SourceRuns.h"
#include "support/TextWriter.h"
#include "support/TreeModel.h"
#include "support/WriterModel.h"

namespace {

using test::Answer;
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

// What the model makes of a tree, told as test::atom() tells it.
std::string expectedRun(Tree const& tree, test::SinkAnswers const& answers) {
  test::RecordingDest dest;
  for (auto const& answer : answers) {
    dest.answer(answer.first, answer.second);
  }
  std::string const status =
      std::to_string(test::TreeWriter<test::RecordingDest>(dest).write(tree));
  return status + ": " + dest.calls();
}

TEST(SerializerWalk, CallsTheSinkAsTheModelDoes) {
  for (unsigned seed = 1; seed <= 1000; ++seed) {
    TreeMaker maker(seed);
    lvArg const value = test::valueOf(randomTree(maker));
    for (int run = 0; run < 10; ++run) {
      test::SinkAnswers answers;
      for (int failures = maker.upTo(3); failures > 0; --failures) {
        answers[maker.upTo(20)] = maker.upTo(2) == 0 ? maker.upTo(10) : -1 - maker.upTo(10);
      }
      ASSERT_EQ(test::atom(value, answers), expectedRun(test::treeOf(value), answers))
          << "seed " << seed << " run " << run;
    }
  }
}

// Writes into buffers of every size.
void expectTextsOfTheModel(lvArg const& value, Tree const& tree) {
  std::size_t const whole = test::textOf(tree).size();
  for (int capacity = 1; capacity <= static_cast<int>(whole) + 20; ++capacity) {
    test::TextWriter writer(capacity);
    int const status = test::HeldSerializer()->serializeAtomInto(writer, value);
    test::WriterModel model(capacity);
    ASSERT_EQ(status, test::TreeWriter<test::WriterModel>(model).write(tree)) << capacity;
    ASSERT_EQ(writer.text(), model.block.substr(0, model.length)) << capacity;
    ASSERT_TRUE(writer.isRestUntouched()) << capacity;
  }
}

TEST(SerializerWalk, WritesTheTextOfTheModelIntoBuffersOfEverySize) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TreeMaker maker(seed);
    lvArg const value = test::valueOf(randomTree(maker));
    expectTextsOfTheModel(value, test::treeOf(value));
    if (testing::Test::HasFailure()) {
      return;
    }
  }
}

// ---- Reading -----------------------------------------------------------------------------------

// What one answer of a source is, for the model: values are told, not held.
struct Told {
  int code;
  std::string value;  // as described(); of a frame that begins, its kind
};

// Builds told values from told answers.
class ReadingModel {
 public:
  explicit ReadingModel(std::vector<Told> script) : script_(std::move(script)) {}

  // The answer, and what was read.
  std::pair<int, std::string> readItem() {
    for (;;) {
      Told const told = next();
      if (told.code == 0) {
        return {0, told.value};
      }
      if (told.code == 7 || told.code == 9) {
        return {told.code, ""};
      }
      if (told.code == 6) {
        return readFrame(told.value);
      }
    }
  }

  std::size_t reads() const { return reads_; }
  int unknownClasses() const { return unknownClasses_; }

 private:
  Told next() { return reads_++ < script_.size() ? script_[reads_ - 1] : Told{9, ""}; }

  std::pair<int, std::string> readFrame(std::string const& kind) {
    if (kind == "24") {
      return readMap();
    }
    if (kind == "25") {
      return {0, readVector()};
    }
    bool const isClass = kind[0] == '\'';
    unknownClasses_ += isClass ? 1 : 0;
    return {isClass ? -4 : -1, ""};
  }

  std::string readVector() {
    std::vector<std::string> elements;
    for (;;) {
      auto const item = readItem();
      if (item.first > 0) {
        return "[" + test::joined(elements) + "]";
      }
      if (item.first == 0) {
        elements.push_back(item.second);
      }
    }
  }

  std::pair<int, std::string> readMap() {
    std::map<std::string, std::string> entries;
    for (;;) {
      Told const told = next();
      if (told.code == 7 || told.code == 9) {
        std::vector<std::string> pieces;
        for (auto const& entry : entries) {
          pieces.push_back(entry.first + "=" + entry.second);
        }
        return {0, test::describedEntries(pieces)};
      }
      if (told.code == 6 && told.value != "32") {
        return {-1, ""};
      }
      if (told.code == 6) {
        readTuple(entries);
      }
    }
  }

  void readTuple(std::map<std::string, std::string>& entries) {
    std::vector<std::string> items;
    for (auto item = readItem(); item.first <= 0; item = readItem()) {
      if (item.first == 0) {
        items.push_back(item.second);
      }
    }
    items.resize(items.size() < 2 ? 2 : items.size(), "nil");
    if (items[1] == "nil") {
      entries.erase(items[0]);
    } else {
      entries[items[0]] = items[1];
    }
  }

  std::vector<Told> script_;
  std::size_t reads_ = 0;
  int unknownClasses_ = 0;
};

// Keys that are frames are told apart by what they are, not by what is in them; so in the random
// scripts a tuple begins with a scalar, if it holds anything.
class ScriptMaker {
 public:
  explicit ScriptMaker(unsigned seed) : random_(seed) {}

  Script make(std::size_t length) {
    Script script;
    while (script.size() < length) {
      add(script);
    }
    return script;
  }

 private:
  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }

  lvArg scalar() {
    switch (upTo(3)) {
      case 0:
        return lvArg();
      case 1:
        return test::string(std::string(1, static_cast<char>('a' + upTo(2))));
      default:
        return test::integer(upTo(3));
    }
  }

  void add(Script& script) {
    int const choice = upTo(21);
    if (choice < 7) {
      script.push_back(test::item(scalar()));
    } else if (choice < 13) {
      script.push_back(test::frameEnd());
    } else if (choice < 15) {
      script.push_back(test::begin(25));
    } else if (choice < 16) {
      script.push_back(test::begin(24));
    } else if (choice < 19) {
      addTuple(script);
    } else if (choice < 20) {
      script.push_back(test::nothing(upTo(1) == 0 ? 8 : -upTo(5) - 1));
    } else if (choice < 21) {
      script.push_back(test::beginObject("Nope"));
    } else {
      script.push_back(test::begin(upTo(1) == 0 ? lvArg() : test::integer(upTo(31) == 0 ? 26 : 0)));
    }
  }

  void addTuple(Script& script) {
    if (upTo(3) == 0) {
      script.push_back(test::begin(24));
    }
    script.push_back(test::begin(32));
    script.push_back(upTo(5) == 0 ? test::frameEnd() : test::item(scalar()));
  }

  std::mt19937 random_;
};

std::vector<Told> told(Script const& script) {
  std::vector<Told> all;
  for (Answer const& answer : script) {
    all.push_back({answer.code, answer.value ? test::described(*answer.value) : ""});
  }
  return all;
}

TEST(SerializerWalk, BuildsFromAnswersWhatTheModelBuilds) {
  int frames = 0;
  for (unsigned seed = 1; seed <= 3000; ++seed) {
    Script const script = ScriptMaker(seed).make(40);
    ReadingModel model(told(script));
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
    std::string expected;
    for (int i = 0; i < model.unknownClasses(); ++i) {
      expected += "CS_ERR_UNKNOWN_CLASS_KEY\n";
    }
    ASSERT_EQ(printed, expected) << "seed " << seed;
    ASSERT_FALSE(HasFatalFailure());
  }
  EXPECT_GT(frames, 3000) << "the scripts are too dull";
}

}  // namespace
