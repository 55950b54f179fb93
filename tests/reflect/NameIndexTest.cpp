#include "tarselvalues/reflect/NameIndex.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "support/Registries.h"
#include "tarselvalues/containers/lvHashMap.h"

namespace {

using test::integer;
using test::keptClass;
using test::string;
using Index = tarselvalues::NameIndex<int>;

constexpr auto Fields = lvrClass::Fields;

// A text that is a key: to set it anew keeps indexes from being trusted.
void setAnew(lvArg const& name, char const* text) {
  static_cast<lvrString&>(*name.getReferencable()).setStringData(text, -1, lvrString::CopyAndOwn);
}

std::string nameOf(int i) { return "name-" + std::to_string(i); }

// An index of three names.
class NameIndex : public ::testing::Test {
 protected:
  static constexpr std::size_t Names = 3;

  // What is found; -1 for nothing.
  int find(lvArg const& name) const {
    int const* const found = index.find(name);
    return found != nullptr ? *found : -1;
  }

  std::vector<Index::Slot> slots{Index::slotsFor(Names)};
  Index index{slots.data(), Names};
  lvString first{"first"};
  lvString second{"second"};
};

TEST_F(NameIndex, FindsWhatANameWasGivenLast) {
  index.set(first, 1);
  index.set(second, 2);
  index.set(first, 3);
  EXPECT_EQ(find(first), 3);
  EXPECT_EQ(find(lvString("second")), 2);
}

TEST_F(NameIndex, FindsNothingForOtherNamesAndNoNames) {
  EXPECT_EQ(find(first), -1);
  index.set(first, 1);
  EXPECT_EQ(find(second), -1);
  EXPECT_EQ(find(string("first")), -1);
  EXPECT_EQ(find(integer(1)), -1);
  EXPECT_EQ(find(lvArg()), -1);
}

TEST_F(NameIndex, FindsNothingForANameUnderAnotherTag) {
  index.set(first, 1);
  lvArg tagged;
  tagged.setReferencableFast(*first.getReferencable(), lvArg::ObjectType);
  EXPECT_EQ(find(tagged), -1);
}

TEST_F(NameIndex, LeavesOutWhatItHasNoRoomFor) {
  std::vector<lvString> names;
  for (int i = 0; i < 5; ++i) {
    names.emplace_back(nameOf(i).c_str());
    index.set(names.back(), i);
  }
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(find(names[static_cast<std::size_t>(i)]), i < 3 ? i : -1);
  }
}

TEST_F(NameIndex, FindsNothingAnyMoreOnceItWasGivenANameThatIsNotInterned) {
  index.set(first, 1);
  index.set(string("second"), 2);
  EXPECT_EQ(find(first), -1);
}

TEST_F(NameIndex, FindsNothingAnyMoreOnceTheTextOfANameIsSetAnew) {
  index.set(first, 1);
  lvString const other("other");
  setAnew(other, "first");
  EXPECT_EQ(find(first), -1);
}

TEST_F(NameIndex, IsTrustedThoughTextsWereSetAnewBefore) {
  setAnew(lvString("other"), "first");
  index.set(first, 1);
  EXPECT_EQ(find(first), 1);
}

// --- What is found by it -------------------------------------------------------------------------

// A class of so many named fields.
lvrClass& classOf(int fields) {
  lvrClass& described = keptClass();
  test::Words entries;
  std::vector<std::string> names;
  std::vector<char const*> texts;
  for (int i = 0; i < fields; ++i) {
    entries.push_back(static_cast<std::uintptr_t>(i) + 1);
    names.push_back(nameOf(i));
  }
  for (std::string const& name : names) {
    texts.push_back(name.c_str());
  }
  EXPECT_EQ(described.setDirectObjectNamedOffsets(Fields, fields, entries.data(), texts.data()), 0);
  return described;
}

TEST(ClassLookupIndex, OfAnyNumberOfNamesIsThatOfTheName) {
  for (int const fields : {1, 4, 100, 1000, 1001, 3000}) {
    lvrClass const& described = classOf(fields);
    for (int i = 0; i < fields; i += 1 + fields / 50) {
      EXPECT_EQ(described.localLookupIndex(Fields, lvString(nameOf(i).c_str())), i);
      EXPECT_EQ(described.localLookupIndex(Fields, string(nameOf(i))), i);
    }
    EXPECT_EQ(described.localLookupIndex(Fields, lvString(nameOf(fields).c_str())), -1);
    EXPECT_EQ(described.localLookupIndex(Fields, integer(0)), -1);
  }
}

TEST(ClassLookupIndex, OfANameThatIsThereTwiceIsTheLast) {
  char const* const names[] = {"twice", "once", "twice"};
  test::Words const entries{1, 2, 3};
  lvrClass& described = keptClass();
  described.setDirectObjectNamedOffsets(Fields, 3, entries.data(), names);
  EXPECT_EQ(described.localLookupIndex(Fields, lvString("twice")), 2);
  EXPECT_EQ(described.localLookupIndex(Fields, lvString("once")), 1);
}

// The map of names files an entry under the hash of the text that it had.
TEST(ClassLookupIndex, IsWhatTheMapOfNamesSaysOnceTheTextOfANameIsSetAnew) {
  lvrClass const& described = classOf(4);
  lvString const name(nameOf(2).c_str());
  setAnew(name, "another text");
  lvArg const& names = test::tableOf(described, Fields)->names;
  EXPECT_EQ(described.localLookupIndex(Fields, name), lvHashMap(names)->get(name).getInt());
  EXPECT_EQ(described.localLookupIndex(Fields, lvString(nameOf(1).c_str())), 1);
  setAnew(name, nameOf(2).c_str());
}

lvArg newClass() { return lvClass(1, lvArg(), nullptr); }

TEST(ClassRegistryGetClass, FindsAnyNumberOfClasses) {
  constexpr int many = 300;
  lvtClassRegistry& registry = *lvtClassRegistry::getInstance();
  std::vector<lvArg> classes;
  for (int i = 0; i < many; ++i) {
    classes.push_back(newClass());
    ASSERT_EQ(registry.putClass(lvString(nameOf(i).c_str()), classes.back()), 0);
  }
  for (int i = 0; i < many; ++i) {
    lvArg const& expected = classes[static_cast<std::size_t>(i)];
    EXPECT_TRUE(registry.getClass(lvString(nameOf(i).c_str())).eq(expected));
    EXPECT_TRUE(registry.getClass(string(nameOf(i))).eq(expected));
  }
  EXPECT_TRUE(registry.getClass(lvString(nameOf(many).c_str())).isNil());
}

TEST(ClassRegistryGetClass, GivesWhatWasPutInEvenIfThatIsNoClass) {
  lvtClassRegistry& registry = *lvtClassRegistry::getInstance();
  registry.putClass(lvString("a number"), integer(7));
  EXPECT_EQ(registry.getClass(lvString("a number")).getInt(), 7);
}

TEST(ClassRegistryGetClass, OfOneRegistryKnowsNothingOfAnother) {
  lvtClassRegistry other;
  lvArg const theirs = newClass();
  lvString const name("Vector");
  EXPECT_TRUE(other.getClass(name).isNil());
  EXPECT_EQ(other.putClass(name, theirs), 0);
  EXPECT_TRUE(other.getClass(name).eq(theirs));
  EXPECT_FALSE(lvtClassRegistry::getInstance()->getClass(name).eq(theirs));
}

// Whatever the set answers then.
TEST(ClassRegistryGetClass, IsWhatTheSetSaysOnceTheTextOfANameIsSetAnew) {
  lvtClassRegistry& registry = *lvtClassRegistry::getInstance();
  lvString const name("to be changed");
  lvArg const known = newClass();
  registry.putClass(name, known);
  EXPECT_TRUE(registry.getClass(name).eq(known));
  setAnew(name, "A text that comes before all others");
  EXPECT_TRUE(registry.getClass(name).eq(test::setOf(registry).get(name)));
  setAnew(name, "to be changed");
  EXPECT_TRUE(registry.getClass(name).eq(known));
}

}  // namespace
