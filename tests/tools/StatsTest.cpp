#include <gmock/gmock.h>
#include <lvtext/Stats.h>
#include <tarselvalues/containers/lvBuilders.h>

#include <string>
#include <vector>

#include "tools/RandomTrees.h"

namespace {

// The number in the line that begins with `name`.
int numberOf(std::string const& name, std::vector<lvArg> const& values) {
  std::string const table = statsOf(values, 123);
  std::size_t const at = table.find(name + ' ');
  EXPECT_NE(at, std::string::npos) << table;
  return at != std::string::npos ? std::stoi(table.substr(at + name.size())) : -1;
}

TEST(LvtextStats, CountsValuesByTheirKind) {
  declareRandomClasses();
  lvArg const object(*lvClass(lvtClassRegistry::getInstance()->getClass(lvString("Named")))
                          ->instantiateDefaultObject());
  std::vector<lvArg> const values{lvListOf(1, "a", lvArg(), object), lvListOf(2),
                                  lvMapBuilder().put("k", 3).map()};
  EXPECT_EQ(numberOf("values", values), 12);
  EXPECT_EQ(numberOf("nil", values), 3);  // Two of them are fields.
  EXPECT_EQ(numberOf("integers", values), 3);
  EXPECT_EQ(numberOf("strings", values), 2);
  EXPECT_EQ(numberOf("lists", values), 2);
  EXPECT_EQ(numberOf("maps", values), 1);
  EXPECT_EQ(numberOf("objects of classes", values), 1);
  EXPECT_EQ(numberOf("counted objects", values), 6);
  EXPECT_EQ(numberOf("depth", values), 2);
  EXPECT_EQ(numberOf("bytes of text", values), 123);
}

TEST(LvtextStats, CountsWhatIsMetAgainInTheSameValueOrInAnother) {
  lvVector const shared = lvListOf(1);
  EXPECT_EQ(numberOf("met again", {lvListOf(shared, shared), shared}), 2);
}

TEST(LvtextStats, CountsCyclesOnce) {
  lvVector const list(1);
  list->insert(list, -1);
  EXPECT_EQ(numberOf("in cycles", {list}), 1);
  EXPECT_EQ(numberOf("met again", {list}), 0);
  list->clear();
}

TEST(LvtextStats, CountsTheMemoryOfEachObjectOnce) {
  lvArg const text = lvToCell("four");
  int const alone = numberOf("bytes of memory", {text});
  EXPECT_EQ(alone, static_cast<int>(sizeof(lvArg) + sizeof(lvrString) + 5));
  EXPECT_EQ(numberOf("bytes of memory", {text, text}), alone + static_cast<int>(sizeof(lvArg)));
}

}  // namespace
