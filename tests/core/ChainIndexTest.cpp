// The index beside the chains of a table: by itself, with toy entries, and without memory.

#include "tarselvalues/core/ChainIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "support/Callocs.h"
#include "support/Cells.h"
#include "support/StringTable.h"
#include "support/walks/Choices.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::Mallocs;
using test::OutOfMemory;
using test::textOfOneHash;

// ---- A toy table -------------------------------------------------------------------------------

struct Toy {
  Toy* next = nullptr;
  int name = 0;
  std::uint32_t hash = 0;
  bool isFindable = true;
  mutable bool isWatched = false;
};

struct ToyLinks {
  using Entry = Toy;
  static Toy*& next(Toy& toy) { return toy.next; }
  static std::uint32_t hash(Toy const& toy, std::uint32_t /*seed*/) { return toy.hash; }
  static bool isFindable(Toy const& toy) { return toy.isFindable; }
  static bool watch(Toy const& toy) {
    toy.isWatched = true;
    return true;
  }
  static std::uint32_t countChanges() { return lvrString::getKeyTextChanges(); }
};

class ToyTable {
 public:
  explicit ToyTable(std::uint32_t chains) : heads(chains) {}
  ~ToyTable() { index.drop(); }
  ToyTable(ToyTable const&) = delete;
  ToyTable& operator=(ToyTable const&) = delete;

  // As a search does that has looked at so many toys.
  void walk(std::size_t steps) { index.noteWalk(steps, heads.data(), chains(), count); }
  // At so many that the index is built.
  void walkLong() { walk(heads.size() + count + 9); }

  // A toy that is in no chain yet.
  Toy& make(int name, std::uint32_t hash, bool isFindable = true) {
    toys.push_back(std::make_unique<Toy>(Toy{nullptr, name, hash, isFindable}));
    return *toys.back();
  }

  void link(Toy& toy, std::uint32_t chain, bool toHead) {
    Toy** const link = toHead ? &heads[chain] : index.isReady() ? index.endOf(chain) : endOf(chain);
    toy.next = *link;
    *link = &toy;
    ++count;
    if (index.isReady()) {
      index.add(toy, link, chain);
    }
  }

  void add(int name, std::uint32_t hash, std::uint32_t chain, bool toHead) {
    link(make(name, hash), chain, toHead);
  }

  // Frees the toy.
  void remove(Toy& toy) {
    Toy** const link = index.isReady() ? index.remove(toy) : linkTo(toy);
    ASSERT_NE(link, nullptr);
    ASSERT_EQ(*link, &toy);
    *link = toy.next;
    --count;
    toys.erase(std::find_if(toys.begin(), toys.end(),
                            [&toy](auto const& each) { return each.get() == &toy; }));
  }

  std::uint32_t chains() const { return static_cast<std::uint32_t>(heads.size()); }
  std::vector<Toy*> chain(std::uint32_t number) const {
    std::vector<Toy*> all;
    for (Toy* toy = heads[number]; toy != nullptr; toy = toy->next) {
      all.push_back(toy);
    }
    return all;
  }
  Toy* first(std::uint32_t number) const { return heads[number]; }
  Toy& any(test::Choices& choices) const { return *toys[choices.below(toys.size())]; }
  std::size_t size() const { return count; }

  Toy** endOf(std::uint32_t number) {
    Toy** link = &heads[number];
    while (*link != nullptr) {
      link = &(*link)->next;
    }
    return link;
  }

  tarselvalues::ChainIndex<ToyLinks> index;

 private:
  Toy** linkTo(Toy const& toy) {
    for (Toy*& head : heads) {
      for (Toy** link = &head; *link != nullptr; link = &(*link)->next) {
        if (*link == &toy) {
          return link;
        }
      }
    }
    return nullptr;
  }

  std::vector<Toy*> heads;
  std::vector<std::unique_ptr<Toy>> toys;
  std::size_t count = 0;
};

auto named(int name) {
  return [name](Toy const& toy) { return toy.name == name; };
}

// Looks for each toy, by its name and by the hash under which it was taken up, and for each end.
void expectAllFound(ToyTable& table) {
  for (std::uint32_t number = 0; number < table.chains(); ++number) {
    std::vector<Toy*> const chain = table.chain(number);
    for (std::size_t i = 0; i < chain.size(); ++i) {
      Toy const& toy = *chain[i];
      auto const same = std::count_if(chain.begin(), chain.end(), [&toy](Toy const* each) {
        return each->name == toy.name && each->hash == toy.hash;
      });
      auto const found = table.index.find(toy.hash, number, named(toy.name));
      ASSERT_EQ(found.ambiguous, same > 1) << toy.name;
      ASSERT_NE(found.link, nullptr) << toy.name;
      ASSERT_EQ((*found.link)->name, toy.name);
      ASSERT_TRUE(same > 1 || *found.link == &toy);
      ASSERT_TRUE(toy.isWatched);
    }
    ASSERT_EQ(table.index.endOf(number), table.endOf(number));
  }
}

// Hashes that stand at the end of the slots, of which there are 64 at first, so that what follows
// stands at their start; and some at random.
std::uint32_t anyHash(test::Choices& choices) {
  return choices.oneIn(3) ? choices.bits() : choices.pick<std::uint32_t>({60, 63, 127, 1023, 4095});
}

class ChainIndexWalk : public ::testing::TestWithParam<unsigned> {};

TEST_P(ChainIndexWalk, KnowsTheLinkToEachEntryAndTheEndOfEachChain) {
  test::SeededChoices choices(GetParam());
  ToyTable table(1 + choices.below(4U));
  for (int i = 0; i < 20; ++i) {
    table.add(i, anyHash(choices), 0, false);
  }
  table.walkLong();
  ASSERT_TRUE(table.index.isReady());
  std::size_t largest = 0;
  for (int step = 0; step < 3000; ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    unsigned const adds = step / 500 % 2 == 0 ? 70 : 30;
    if (table.size() == 0 || choices.below(100U) < adds) {
      table.add(choices.below(100), anyHash(choices), choices.below(table.chains()),
                choices.oneIn(2));
    } else {
      ASSERT_NO_FATAL_FAILURE(table.remove(table.any(choices)));
    }
    largest = std::max(largest, table.size());
    if (step % 10 == 0) {
      ASSERT_NO_FATAL_FAILURE(expectAllFound(table));
    }
  }
  EXPECT_TRUE(table.index.isReady());
  EXPECT_GT(largest, 100U) << "it never grew";
}

INSTANTIATE_TEST_SUITE_P(Seeds, ChainIndexWalk, ::testing::Values(1U, 20260U));

class ChainIndex : public ::testing::Test {
 protected:
  void fill(int toys) {
    for (int i = 0; i < toys; ++i) {
      table.add(i, hashOf(i), static_cast<std::uint32_t>(i % 2), false);
    }
  }
  static std::uint32_t hashOf(int i) { return static_cast<std::uint32_t>(i) * 0x9E3779B1U; }

  bool finds(int i) const {
    auto const found = table.index.find(hashOf(i), static_cast<std::uint32_t>(i % 2), named(i));
    return found.link != nullptr && (*found.link)->name == i;
  }

  std::vector<int> namesIn(std::uint32_t number) const {
    std::vector<int> names;
    for (Toy const* const toy : table.chain(number)) {
      names.push_back(toy->name);
    }
    return names;
  }

  ToyTable table{2};
};

// ---- When there is one -------------------------------------------------------------------------

TEST_F(ChainIndex, IsBuiltOnceWalksHaveLookedAtMoreThanItTakesToBuild) {
  fill(30);
  int walks = 0;
  for (; !table.index.isReady(); ++walks) {
    table.walk(15);
  }
  EXPECT_EQ(walks, 5);  // Each counts for the 7 beyond 8, and 35 are more than 30 in 2 chains.
}

TEST_F(ChainIndex, IsNotBuiltForShortWalks) {
  fill(16);
  for (int i = 0; i < 1000; ++i) {
    table.walk(8);
  }
  EXPECT_FALSE(table.index.isReady());
}

TEST_F(ChainIndex, IsNotBuiltAgainWhileItIsThere) {
  fill(30);
  table.walkLong();
  ASSERT_TRUE(table.index.isReady());
  OutOfMemory const none;
  for (int i = 0; i < 100; ++i) {
    table.walkLong();
  }
  EXPECT_TRUE(table.index.isReady());
  EXPECT_TRUE(finds(7));
}

TEST_F(ChainIndex, IsNotBuiltOnceItIsForgoneUntilItIsDropped) {
  fill(30);
  table.walkLong();
  table.index.forgo();
  EXPECT_FALSE(table.index.isReady());
  table.walkLong();
  EXPECT_FALSE(table.index.isReady());
  table.index.drop();
  table.walkLong();
  EXPECT_TRUE(table.index.isReady());
}

TEST_F(ChainIndex, IsDroppedWhenATextThatIsWatchedChanges) {
  fill(30);
  table.walkLong();
  lvArg const cell = test::string("key");
  auto& key = static_cast<lvrString&>(*cell.getReferencable());
  key.setStringData("unwatched", -1, lvrString::CopyAndOwn);
  EXPECT_TRUE(table.index.isReady());
  key.markKeyText();
  key.setStringData("watched", -1, lvrString::CopyAndOwn);
  EXPECT_FALSE(table.index.isReady());
  table.walkLong();
  EXPECT_FALSE(table.index.isReady()) << "walks are cheaper than to build it in vain";
  for (int i = 0; i < 32; ++i) {
    table.walkLong();
  }
  EXPECT_TRUE(table.index.isReady());
  key.releaseData();
  EXPECT_FALSE(table.index.isReady());
}

// ---- What it finds -----------------------------------------------------------------------------

TEST_F(ChainIndex, FindsEntriesOfOneHashByWhatTheyAre) {
  for (int i = 0; i < 200; ++i) {
    table.add(i, 42, 0, i % 2 == 0);
  }
  table.walkLong();
  for (int i = 0; i < 200; ++i) {
    auto const found = table.index.find(42, 0, named(i));
    ASSERT_FALSE(found.ambiguous);
    ASSERT_EQ((*found.link)->name, i);
  }
  EXPECT_EQ(table.index.find(42, 0, named(200)).link, nullptr);
  EXPECT_EQ(table.index.find(42, 1, named(7)).link, nullptr) << "of another chain";
}

TEST_F(ChainIndex, SaysThatSeveralEntriesMatch) {
  fill(30);
  for (int same = 1; same <= 3; ++same) {
    table.add(99, hashOf(99), 1, false);
    table.index.drop();
    table.walkLong();
    EXPECT_EQ(table.index.find(hashOf(99), 1, named(99)).ambiguous, same > 1) << same;
  }
}

TEST_F(ChainIndex, CountsTheEntriesThatItCannotFind) {
  fill(30);
  Toy& first = table.make(98, 0, false);
  Toy& second = table.make(99, 0, false);
  table.link(first, 0, false);
  table.walkLong();
  EXPECT_FALSE(table.index.findsAll());
  table.link(second, 1, true);
  table.remove(first);
  EXPECT_FALSE(table.index.findsAll());
  table.remove(second);
  EXPECT_TRUE(table.index.findsAll());
}

TEST_F(ChainIndex, RemovesEntriesWhoseHashHasChangedUnseen) {
  fill(100);
  table.walkLong();
  for (std::uint32_t number = 0; number < 2; ++number) {
    std::vector<Toy*> const chain = table.chain(number);
    for (std::size_t i = 0; i < chain.size(); i += 2) {
      chain[i]->hash += 12345;
    }
    for (std::size_t i = 0; i < chain.size(); i += 2) {
      ASSERT_NO_FATAL_FAILURE(table.remove(*chain[i]));
    }
  }
  ASSERT_EQ(table.size(), 50U);
  expectAllFound(table);
}

TEST_F(ChainIndex, KnowsNoLinkToWhatIsNotInIt) {
  fill(30);
  table.walkLong();
  Toy stranger;
  stranger.hash = hashOf(7);
  EXPECT_EQ(table.index.remove(stranger), nullptr);
  EXPECT_TRUE(finds(7));
}

// ---- Without memory ----------------------------------------------------------------------------

TEST_F(ChainIndex, IsNotThereWhereverTheMemoryForItRunsOut) {
  fill(500);
  int const before = Mallocs::alive;
  int failures = 0;
  for (bool const once : {true, false}) {
    for (int after = 0; !table.index.isReady(); ++after) {
      {
        OutOfMemory const none(after);
        Mallocs::failOnce = once;
        table.walkLong();
        Mallocs::failOnce = false;
      }
      failures += table.index.isReady() ? 0 : 1;
      ASSERT_TRUE(table.index.isReady() || Mallocs::alive == before) << after;
    }
    ASSERT_TRUE(finds(499));
    table.index.drop();
    EXPECT_EQ(Mallocs::alive, before);
  }
  EXPECT_EQ(failures, 2 * 3);  // Itself, slots, ends.
}

TEST_F(ChainIndex, IsDroppedWhenItCannotGrow) {
  fill(30);
  table.walkLong();
  int toys = 30;
  int freed = 0;
  for (; table.index.isReady(); ++toys) {
    Toy& toy = table.make(toys, hashOf(toys));
    int const before = Mallocs::alive;
    OutOfMemory const none;
    table.link(toy, 0, false);
    freed = before - Mallocs::alive;
  }
  EXPECT_EQ(toys, 49);  // One more than three in four of 64 slots.
  EXPECT_EQ(freed, 3);
  EXPECT_EQ(table.chain(0).size(), 34U);
  table.walkLong();
  EXPECT_TRUE(finds(0));
  EXPECT_NE(table.index.find(hashOf(48), 0, named(48)).link, nullptr);
}

TEST_F(ChainIndex, NeedsNoMemoryWhileAsManyEntriesGoAsCome) {
  fill(40);
  table.walkLong();
  for (int i = 40; i < 1000; ++i) {
    Toy& toy = table.make(i, hashOf(i));
    ASSERT_NO_FATAL_FAILURE(table.remove(*table.chain(0).front()));
    OutOfMemory const none;
    table.link(toy, 0, false);
  }
  EXPECT_TRUE(table.index.isReady());
}

class ChainIndexOfManyThatGo : public ChainIndex {
 protected:
  ChainIndexOfManyThatGo() {
    fill(1500);
    table.walkLong();
  }

  // Needs no memory.
  void removeAllBut(std::size_t left) {
    for (std::size_t size = table.size(); size > left; --size) {
      table.remove(*table.first(table.first(0) == nullptr ? 1 : 0));
    }
    ASSERT_EQ(table.size(), left);
  }
};

// What is left of the slots is soon too little for as many as there were.
TEST_F(ChainIndexOfManyThatGo, GivesMemoryBack) {
  removeAllBut(40);
  ASSERT_TRUE(table.index.isReady());
  for (int i = 0; i < 300; ++i) {
    Toy& toy = table.make(i, hashOf(i));
    OutOfMemory const none;
    table.link(toy, 0, true);
  }
  EXPECT_FALSE(table.index.isReady()) << "it had no need to grow";
}

TEST_F(ChainIndexOfManyThatGo, KeepsItsMemoryWhereThereIsNoneForLess) {
  Mallocs::failed = 0;
  {
    OutOfMemory const none;
    removeAllBut(40);
  }
  EXPECT_GT(Mallocs::failed, 0);
  ASSERT_TRUE(table.index.isReady());
  expectAllFound(table);
}

// ---- The string table without memory -----------------------------------------------------------

// More of one hash than a table does without an index for.
class StringTableWithoutMemory : public ::testing::Test {
 protected:
  static constexpr int Texts = 1500;

  StringTableWithoutMemory() {
    handles.reserve(std::size_t{2} * Texts);
    for (int i = 0; i < Texts; ++i) {
      texts.push_back(textOfOneHash(i));
      handles.emplace_back(texts.back().c_str());
    }
  }

  // The index goes: a text that it has watched changes.
  void dropIndex() {
    static_cast<lvrString&>(*handles.back().getReferencable()).releaseData();
    handles.pop_back();
    texts.pop_back();
  }

  // Needs no memory but for an index.
  void lookUpAll() {
    for (std::size_t i = 0; i < handles.size(); ++i) {
      ASSERT_EQ(lvString(texts[i].c_str()).getReferencable(), handles[i].getReferencable());
    }
  }

  void expectChained() {
    std::vector<test::Entry const*> expected;
    for (lvString const& handle : handles) {
      expected.push_back(test::entryOf(handle));
    }
    ASSERT_EQ(test::chainOf(texts[0]), expected);
  }

  std::vector<std::string> texts;
  std::vector<lvString> handles;
};

TEST_F(StringTableWithoutMemory, FindsAllWithoutAnIndex) {
  dropIndex();
  Mallocs::failed = 0;
  {
    OutOfMemory const none;
    lookUpAll();
  }
  EXPECT_GT(Mallocs::failed, 100) << "no index was tried";
  expectChained();
}

TEST_F(StringTableWithoutMemory, LosesNothingWhereverTheMemoryForItsIndexRunsOut) {
  for (int after = 0; after < 3; ++after) {  // Itself, slots, ends.
    dropIndex();
    Mallocs::failed = 0;
    {
      OutOfMemory const none(after);
      Mallocs::failOnce = true;
      lookUpAll();
      Mallocs::failOnce = false;
    }
    EXPECT_EQ(Mallocs::failed, 1) << after;
    expectChained();
  }
}

TEST_F(StringTableWithoutMemory, LosesNothingWhenTheIndexCannotGrow) {
  lookUpAll();
  Mallocs::failed = 0;
  for (int i = Texts; i < 2 * Texts; ++i) {
    texts.push_back(textOfOneHash(i));
    OutOfMemory const none(1);  // The first is an entry with its text, or the start of an index.
    Mallocs::failOnce = true;
    handles.emplace_back(texts.back().c_str());
    Mallocs::failOnce = false;
  }
  EXPECT_GT(Mallocs::failed, 0) << "it never grew";
  lookUpAll();
  expectChained();
}

}  // namespace
