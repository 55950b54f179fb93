// Chains of the string table that are so long that its entries are found by an index: nothing about
// them changes with that.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringTable.h"
#include "support/walks/Choices.h"
#include "tarselvalues/core/lvString.h"

namespace {

using namespace std::string_literals;
using test::allEntries;
using test::chainOf;
using test::countOf;
using test::Entry;
using test::entryCount;
using test::entryOf;
using test::modelHash;
using test::textOfOneHash;

constexpr int CopyAndOwn = lvrString::CopyAndOwn;

std::vector<lvString> handlesOfOneHash(int count) {
  std::vector<lvString> handles;
  handles.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    handles.emplace_back(textOfOneHash(i).c_str());
  }
  return handles;
}

lvString intern(std::string const& text) {
  return {static_cast<int>(text.size()), text.data(), lvrString::CopyAndOwnEmpty};
}

lvrString& stringIn(lvString const& handle) {
  return static_cast<lvrString&>(*handle.getReferencable());
}

// So many that the index has been built, and has grown.
constexpr int Many = 3000;

// ---- Finding -----------------------------------------------------------------------------------

TEST(StringTableIndex, FindsEachOfManyTextsOfOneHash) {
  ASSERT_EQ(modelHash(textOfOneHash(0)), modelHash(textOfOneHash(Many - 1)));
  std::vector<lvString> const handles = handlesOfOneHash(Many);
  for (int i = 0; i < Many; ++i) {
    ASSERT_EQ(intern(textOfOneHash(i)).getReferencable(),
              handles[static_cast<std::size_t>(i)].getReferencable());
  }
}

TEST(StringTableIndex, FindsNoTextThatIsNotThere) {
  std::vector<lvString> const handles = handlesOfOneHash(Many);
  std::size_t const before = entryCount();
  EXPECT_EQ(countOf(intern(textOfOneHash(Many))), 1);
  EXPECT_EQ(entryCount(), before);
}

TEST(StringTableIndex, LeavesTheChainInTheOrderInWhichItGrew) {
  std::vector<lvString> handles = handlesOfOneHash(Many);
  std::vector<Entry const*> expected;
  for (int i = 0; i < Many; i += 3) {  // Every other third goes.
    expected.push_back(entryOf(handles[static_cast<std::size_t>(i)]));
    handles[static_cast<std::size_t>(i) + 1] = lvString();
    handles[static_cast<std::size_t>(i) + 2] = lvString();
  }
  lvString const last = intern(textOfOneHash(1));
  expected.push_back(entryOf(last));
  EXPECT_EQ(chainOf(textOfOneHash(0)), expected);
}

TEST(StringTableIndex, IsLeftBehindByEntriesInAnyOrder) {
  std::size_t const before = entryCount();
  test::SeededChoices choices(1);
  std::vector<lvString> handles = handlesOfOneHash(Many);
  while (!handles.empty()) {
    std::swap(handles[choices.below(handles.size())], handles.back());
    handles.pop_back();
  }
  EXPECT_EQ(entryCount(), before);
  EXPECT_TRUE(chainOf(textOfOneHash(0)).empty());
}

// What a program passes as hash decides where its text is filed and looked for.
TEST(StringTableIndex, FindsATextOnlyInTheChainThatItsHashNames) {
  std::vector<lvString> const handles = handlesOfOneHash(Many);
  test::TableLock const lock;
  Entry* const found = lvString::findStringObject(textOfOneHash(7).c_str(), -1, CopyAndOwn, 0);
  EXPECT_EQ(found, entryOf(handles[7]));
}

class StringTableWithIndex : public ::testing::Test {
 protected:
  std::vector<lvString> const handles = handlesOfOneHash(Many);
};

TEST_F(StringTableWithIndex, FindsTheEmptyText) {
  lvString const empty("");
  EXPECT_EQ(intern("").getReferencable(), empty.getReferencable());
  EXPECT_EQ(lvString(0, "x", CopyAndOwn).getReferencable(), empty.getReferencable());
}

TEST_F(StringTableWithIndex, FindsTextsWithNulsInThem) {
  lvString const one = intern("a\0b"s);
  EXPECT_NE(intern("a\0c"s).getReferencable(), one.getReferencable());
  EXPECT_EQ(intern("a\0b"s).getReferencable(), one.getReferencable());
}

TEST_F(StringTableWithIndex, FindsTextsThatAreTooLongForTheirLengthToBeStored) {
  std::string const text(70000, 'x');
  lvString const one = intern(text);
  EXPECT_EQ(intern(text).getReferencable(), one.getReferencable());
  EXPECT_NE(intern(text + "x").getReferencable(), one.getReferencable());
}

TEST_F(StringTableWithIndex, FindsABorrowedStartOfALongerText) {
  lvString const start(2, "abcdef", lvrString::Borrow);
  EXPECT_EQ(intern("ab").getReferencable(), start.getReferencable());
}

// Two entries of one text can come about by hand: the chain tells which is found.
TEST_F(StringTableWithIndex, FindsTheFirstOfTwoEntriesOfOneText) {
  lvString const first = intern(textOfOneHash(Many));
  lvString const second = intern(textOfOneHash(Many + 1));
  std::string const text = textOfOneHash(Many + 2);
  for (lvString const* const handle : {&second, &first}) {
    stringIn(*handle).setStringData(text.c_str(), -1, CopyAndOwn);
  }
  for (int i = 0; i < 100; ++i) {  // Soon by its index again.
    ASSERT_EQ(intern(text).getReferencable(), first.getReferencable());
  }
}

// A described oddity, here with an index.
TEST_F(StringTableWithIndex, MakesAnEntryOfTheWholeTextForALengthBelowMinusOne) {
  lvString const first(-2, "abc", CopyAndOwn);
  lvString const second(-2, "abc", CopyAndOwn);
  EXPECT_STREQ(first, "abc");
  EXPECT_NE(first.getReferencable(), second.getReferencable());
}

// ---- Entries that are changed by hand ----------------------------------------------------------

class EntryChangedByHand : public StringTableWithIndex {
 protected:
  EntryChangedByHand() : handle(intern(Text)), object(handle.getReferencable()) {}

  bool isInAChain() const {
    std::vector<Entry const*> const all = allEntries();
    return std::find(all.begin(), all.end(), object) != all.end();
  }

  // Looks up one text after the other, so that the index is built.
  void lookUpAll() const {
    for (int i = 0; i < Many; ++i) {
      ASSERT_EQ(intern(textOfOneHash(i)).getReferencable(),
                handles[static_cast<std::size_t>(i)].getReferencable());
    }
  }

  static constexpr char Text[] = "a text of its own";

  lvString handle;
  lvReferencable const* const object;
};

TEST_F(EntryChangedByHand, IsNotFoundByItsOldText) {
  stringIn(handle).setStringData("new", -1, CopyAndOwn);
  lookUpAll();
  EXPECT_NE(intern(Text).getReferencable(), object);
}

TEST_F(EntryChangedByHand, LeavesItsChainWhenItIsLetGo) {
  stringIn(handle).setStringData("new", -1, CopyAndOwn);
  lookUpAll();
  EXPECT_TRUE(isInAChain());
  handle = lvString();
  EXPECT_FALSE(isInAChain());
  lookUpAll();
}

TEST_F(EntryChangedByHand, LeavesItsChainAtOnceWhenItIsLetGo) {
  stringIn(handle).setStringData("new", -1, CopyAndOwn);
  handle = lvString();
  EXPECT_FALSE(isInAChain());
}

TEST_F(EntryChangedByHand, LeavesItsChainWhenItsTextWasReleased) {
  stringIn(handle).releaseData();
  EXPECT_NE(intern(Text).getReferencable(), object);
  lookUpAll();
  handle = lvString();
  EXPECT_FALSE(isInAChain());
}

TEST_F(EntryChangedByHand, IsOutOfItsChainOnceFinalized) {
  stringIn(handle).finalize();
  EXPECT_FALSE(isInAChain());
  lookUpAll();
  stringIn(handle).setStringData(Text, -1, CopyAndOwn);
  EXPECT_NE(intern(Text).getReferencable(), object);
  handle = lvString();
  lookUpAll();
}

// ---- A walk ------------------------------------------------------------------------------------

// The table beside a slow model of its chains.
class TableWalk {
 public:
  explicit TableWalk(unsigned seed) : choices(seed) {
    for (int i = 0; i < 600; ++i) {
      texts.push_back(textOfOneHash(i));
    }
    for (std::string const& text : test::textsOfOneChain(60)) {
      texts.push_back(text);
    }
    for (int i = 0; texts.size() < 670; ++i) {  // In the chain of the empty text.
      std::string const text = "empty " + std::to_string(i);
      if (chainNumberOf(text) == chainNumberOf("")) {
        texts.push_back(text);
      }
    }
    texts.insert(texts.end(), {"", "short", "nul\0one"s, "nul\0two"s, std::string(70000, 'y')});
  }

  // The table grows and shrinks by turns; at times entries are changed by hand.
  void step() {
    ++steps;
    if (!held.empty() && steps / 400 % 3 == 1 && choices.oneIn(20)) {
      changeAnyByHand();
    } else if (held.empty() || choices.below(100) < (steps / 2000 % 2 == 0 ? 80 : 30)) {
      look(choices.pick(texts));
    } else {
      letGoOfAny();
    }
  }

  // Every chain, as far as the entries in it are the walk's.
  void compare() const {
    std::unordered_set<lvReferencable const*> known;
    for (auto const& one : held) {
      known.insert(one->handle.getReferencable());
    }
    for (std::size_t number = 0; number < chains.size(); ++number) {
      std::vector<lvReferencable const*> found;
      for (Entry const* const entry : test::chainAt(number)) {
        if (known.count(entry) != 0) {
          found.push_back(entry);
        }
      }
      std::vector<lvReferencable const*> expected;
      for (Held const* const one : chains[number]) {
        expected.push_back(one->handle.getReferencable());
      }
      ASSERT_EQ(found, expected) << "chain " << number;
    }
  }

  // The most entries that were held at a time.
  std::size_t largest() const { return most; }

 private:
  // An entry, and what the model knows of it.
  struct Held {
    bool matches(std::string const& text) const {
      return length == text.size() && (text.empty() || (hasText && bytes == text));
    }

    lvString handle;
    std::size_t chain;
    std::string bytes;
    std::size_t length;  // stays when the text is released
    bool hasText = true;
  };

  static std::size_t chainNumberOf(std::string const& text) { return modelHash(text) % 1009; }

  void look(std::string const& text) {
    std::vector<Held*>& chain = chains[chainNumberOf(text)];
    auto const expected = std::find_if(chain.begin(), chain.end(),
                                       [&text](Held const* one) { return one->matches(text); });
    lvString const handle = intern(text);
    if (expected != chain.end()) {
      ASSERT_EQ(handle.getReferencable(), (*expected)->handle.getReferencable());
      return;
    }
    ASSERT_EQ(countOf(handle), 1) << "somebody else's";
    held.push_back(std::make_unique<Held>(Held{handle, chainNumberOf(text), text, text.size()}));
    chain.push_back(held.back().get());
    most = std::max(most, held.size());
  }

  void takeOut(Held const& one) {
    std::vector<Held*>& chain = chains[one.chain];
    chain.erase(std::remove(chain.begin(), chain.end(), &one), chain.end());
  }

  void letGoOfAny() {
    std::swap(held[choices.below(held.size())], held.back());
    takeOut(*held.back());
    held.pop_back();
  }

  void changeAnyByHand() {
    Held& one = *choices.pick(held);
    lvrString& string = stringIn(one.handle);
    if (choices.oneIn(3)) {
      string.finalize();
      takeOut(one);
    } else if (choices.oneIn(2)) {
      string.releaseData();
    } else {
      one.bytes = choices.pick(texts);
      one.length = one.bytes.size();
      ASSERT_EQ(string.setStringData(one.bytes.data(), static_cast<int>(one.length), CopyAndOwn),
                0);
    }
    one.hasText = string.getText() != nullptr;  // An empty one may be borrowed, which stays.
  }

  test::SeededChoices choices;
  int steps = 0;
  std::vector<std::string> texts;
  std::vector<std::unique_ptr<Held>> held;
  std::vector<std::vector<Held*>> chains = std::vector<std::vector<Held*>>(1009);
  std::size_t most = 0;
};

class StringTableWalk : public ::testing::TestWithParam<unsigned> {};

TEST_P(StringTableWalk, FindsAndOrdersEntriesAsTheModelDoes) {
  constexpr int steps = 8000;
  std::size_t const before = entryCount();
  {
    TableWalk walk(GetParam());
    for (int i = 0; i < steps; ++i) {
      SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
      ASSERT_NO_FATAL_FAILURE(walk.step());
      if (i % 100 == 0) {
        ASSERT_NO_FATAL_FAILURE(walk.compare());
      }
    }
    EXPECT_GT(walk.largest(), 300U);
  }
  EXPECT_EQ(entryCount(), before);
}

INSTANTIATE_TEST_SUITE_P(Seeds, StringTableWalk, ::testing::Values(1U, 20260U));

}  // namespace
