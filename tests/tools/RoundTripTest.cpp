// What lvtext writes is what the library reads back.

#include <gmock/gmock.h>
#include <lvtext/FromJson.h>
#include <lvtext/Input.h>
#include <lvtext/JsonText.h>
#include <lvtext/TextLayout.h>
#include <lvtext/ToJson.h>
#include <lvtext/ValueText.h>
#include <tarselvalues/serial/lvText.h>

#include <cstdio>
#include <string>

#include "tools/RandomTrees.h"

namespace {

constexpr unsigned Trees = 200;
constexpr int Levels = 8;
// Of lines; of the strings in random trees for JSON, with a key in front.
constexpr std::size_t FullWidth = 150;
constexpr std::size_t LongestAtom = 100;
constexpr int MostLevels = lvtStringArgDest::MaxDepth;

// Calls `check` with random trees, and with one that goes as deep as text does.
template <class Check>
void forRandomTrees(bool forJson, Check check) {
  for (unsigned seed = 0; seed < Trees && !testing::Test::HasFailure(); ++seed) {
    RandomTrees trees(seed, forJson);
    Node const tree = trees.make(seed % 10 == 0 ? MostLevels : Levels);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + oneLine(tree));
    check(tree, trees);
  }
}

// The trees that lvtext makes of a text, in which it finds no fault.
Node readBack(std::string const& text) {
  Input input("text", text);
  CheckedSource source(input);
  Node node;
  EXPECT_TRUE(readNode(node, source)) << text;
  Node more;
  EXPECT_FALSE(readNode(more, source)) << text;
  EXPECT_FALSE(input.problems.any()) << text;
  return node;
}

TEST(LvtextText, OnOneLineIsReadBackByTheLibrary) {
  forRandomTrees(false, [](Node const& tree, RandomTrees& /*trees*/) {
    EXPECT_TRUE(stands(tree, lvFromText(oneLine(tree))));
  });
}

TEST(LvtextText, IndentedIsReadBackByTheLibraryWhateverItsWidth) {
  forRandomTrees(false, [](Node const& tree, RandomTrees& trees) {
    std::string const text = indented(tree, 1 + static_cast<std::size_t>(trees.below(100)));
    EXPECT_TRUE(stands(tree, lvFromText(text))) << text;
  });
}

TEST(LvtextText, IndentedHasLinesThatAreHardlyLongerThanItsWidth) {
  forRandomTrees(true, [](Node const& tree, RandomTrees& /*trees*/) {
    std::string const text = indented(tree, FullWidth);
    std::size_t longest = 0;
    for (std::size_t begin = 0; begin < text.size();) {
      std::size_t const end = std::min(text.find('\n', begin), text.size());
      longest = std::max(longest, end - begin);
      begin = end + 1;
    }
    EXPECT_LE(longest, FullWidth + LongestAtom) << text;
  });
}

TEST(LvtextText, OfAValueIsReadBackByTheLibrary) {
  forRandomTrees(false, [](Node const& tree, RandomTrees& /*trees*/) {
    lvArg const value = lvFromText(oneLine(tree));
    EXPECT_TRUE(stands(tree, lvFromText(valueText(value)))) << valueText(value);
  });
}

TEST(LvtextText, IsWithoutFaultAndReadsAsTheSameTree) {
  forRandomTrees(false, [](Node const& tree, RandomTrees& /*trees*/) {
    EXPECT_EQ(oneLine(readBack(oneLine(tree))), oneLine(tree));
    EXPECT_EQ(oneLine(readBack(indented(tree, 30))), oneLine(tree));
  });
}

TEST(LvtextText, WithSortedMapsHasTheSameValues) {
  forRandomTrees(false, [](Node const& tree, RandomTrees& /*trees*/) {
    Node sorted = tree;
    sortMaps(sorted);
    EXPECT_TRUE(stands(tree, lvFromText(oneLine(sorted))));
  });
}

// Reads JSON that has a counterpart in text.
Node fromJsonText(std::string const& json) {
  Input input("json", json);
  JsonValue value;
  EXPECT_EQ(readJsonTree(value, json, 0, [](std::size_t) {}), json.size()) << json;
  Node const node = fromJson(value, input.problems);
  EXPECT_FALSE(input.problems.any()) << json;
  return node;
}

std::string toJsonText(Node const& tree) {
  Input input("text", "");
  std::string json = toJson(tree, input.problems);
  EXPECT_FALSE(input.problems.any()) << json;
  return json;
}

TEST(LvtextJson, OfATreeComesBackAsTheSameTree) {
  forRandomTrees(true, [](Node const& tree, RandomTrees& /*trees*/) {
    EXPECT_EQ(oneLine(fromJsonText(toJsonText(tree))), oneLine(tree));
  });
}

TEST(LvtextJson, IsTheSameAfterGoingThroughText) {
  forRandomTrees(true, [](Node const& tree, RandomTrees& /*trees*/) {
    std::string const json = toJsonText(tree);
    EXPECT_EQ(toJsonText(readBack(oneLine(fromJsonText(json)))), json);
  });
}

// Random JSON, made without knowing text: objects whose members have any name, a "*" in front.
class RandomJson {
 public:
  explicit RandomJson(unsigned seed) : random_(seed) {}

  std::string make(int levels) {
    switch (levels > 0 ? below(6) : below(4)) {
      case 0:
        return "null";
      case 1:
        return std::to_string(static_cast<int>(random_()));
      case 2:
      case 3:
        return jsonString(makeText());
      case 4:
        return makeArray(levels - 1);
      default:
        return makeObject(levels - 1);
    }
  }

 private:
  int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(random_); }

  std::string makeText() {
    std::string text;
    for (int left = below(5); left > 0; --left) {
      text += "*\\\"/a \n{}"[below(9)];
    }
    return text;
  }

  std::string makeArray(int levels) {
    std::string array;
    for (int left = below(4); left > 0; --left) {
      array += (array.empty() ? "" : ",") + make(levels);
    }
    return '[' + array + ']';
  }

  std::string makeObject(int levels) {
    std::string members;
    std::set<std::string> names;
    for (int left = below(4); left > 0; --left) {
      std::string const value = make(levels);
      std::string const name = makeText();
      if (value != "null" && names.insert(name).second) {
        members += (members.empty() ? "" : ",") + jsonString(name) + ':' + value;
      }
    }
    bool const meansAnObject = names.size() == 1 && names.begin()->rfind('*', 0) == 0 &&
                               names.begin()->rfind("**", 0) != 0;
    return meansAnObject ? "{}" : '{' + members + '}';
  }

  std::mt19937 random_;
};

TEST(LvtextJson, ThatHasACounterpartComesBackByteForByte) {
  for (unsigned seed = 0; seed < 2 * Trees && !HasFailure(); ++seed) {
    std::string const json = RandomJson(seed).make(7);
    SCOPED_TRACE(json);
    EXPECT_EQ(toJsonText(readBack(oneLine(fromJsonText(json)))), json);
  }
}

}  // namespace
