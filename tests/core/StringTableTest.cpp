// The table of interned strings, in one thread.

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringObjects.h"
#include "support/StringTable.h"
#include "tarselvalues/core/lvString.h"

namespace {

using namespace std::string_literals;
using test::allEntries;
using test::chainOf;
using test::countOf;
using test::entriesWith;
using test::Entry;
using test::entryCount;
using test::entryOf;
using test::isTableFree;
using test::modelHash;
using test::TableLock;
using test::textsOfOneChain;

using Table = lvLayoutAccess<lvString::HashTable>;

static_assert(std::is_base_of_v<lvrString, lvString::StringEntry>);
static_assert(!std::is_copy_constructible_v<lvString::HashTable>);

constexpr int CopyAndOwn = lvrString::CopyAndOwn;
constexpr int CopyAndOwnEmpty = lvrString::CopyAndOwnEmpty;

// As findStringObject(), under the lock.
Entry* find(std::string const& text, int mode = CopyAndOwnEmpty) {
  TableLock const lock;
  return lvString::findStringObject(text.data(), static_cast<int>(text.size()), mode, 0);
}

// Gives an entry that nobody holds a handle, and with that an end.
lvString handleOf(Entry const& entry) {
  lvArg const cell(entry);
  return cell;
}

// The texts of the entries that came to the chain of `text` behind those that were there before.
std::vector<std::string> newTextsOf(std::string const& text, std::size_t before) {
  std::vector<std::string> texts;
  for (Entry const* const entry : chainOf(text)) {
    texts.emplace_back(entry->getText());
  }
  return {texts.begin() + static_cast<std::ptrdiff_t>(before), texts.end()};
}

TEST(StringTable, IsMadeOnceForTheProcess) {
  EXPECT_NE(lvString::getHashTable(), nullptr);
  EXPECT_EQ(lvString::getHashTable(), lvString::getHashTable());
}

TEST(StringTable, HasItsFixedNumberOfChains) {
  lvString::HashTable const& table = *lvString::getHashTable();
  EXPECT_EQ(Table::bucketCount(table), 1009U);
  std::vector<lvString> handles;
  for (int i = 0; i < 3000; ++i) {
    handles.push_back(lvString::valueOf(i));
  }
  EXPECT_EQ(&table, lvString::getHashTable());
  EXPECT_EQ(Table::bucketCount(table), 1009U);
}

TEST(StringTable, StartsWithoutEntries) {
  lvString::HashTable const table;
  for (std::size_t i = 0; i < 1009; ++i) {
    ASSERT_EQ(Table::bucket(table, i), nullptr) << i;
  }
}

TEST(StringTable, FilesEveryEntryUnderItsHash) {
  std::vector<lvString> handles;
  for (int i = 0; i < 200; ++i) {
    handles.emplace_back(std::string(static_cast<std::size_t>(i), 'x').c_str());
  }
  for (std::size_t bucket = 0; bucket < 1009; ++bucket) {
    for (Entry const* const entry : test::chainAt(bucket)) {
      ASSERT_EQ(modelHash(entry->getText()) % 1009, bucket) << entry->getText();
      EXPECT_EQ(entry->hashCode(), modelHash(entry->getText()));
    }
  }
}

TEST(StringTable, HoldsNoTextTwice) {
  std::vector<lvString> handles;
  std::size_t const before = entryCount();
  for (int i = 0; i < 300; ++i) {
    handles.push_back(lvString::valueOf(i % 100));
  }
  EXPECT_EQ(entryCount(), before + 100);
}

TEST(StringTable, IsWhereItBeganWhenAllHandlesAreGone) {
  std::size_t const before = entryCount();
  {
    std::vector<lvString> handles;
    for (int i = 0; i < 2000; ++i) {
      handles.push_back(lvString::valueOf(i));
    }
    EXPECT_EQ(entryCount(), before + 2000);
  }
  EXPECT_EQ(entryCount(), before);
}

// ---- Chains ------------------------------------------------------------------------------------

class StringTableChain : public ::testing::Test {
 protected:
  // What the test has put into the chain, in its order there.
  std::vector<std::string> chained() const { return newTextsOf(texts[0], before); }

  std::vector<std::string> const texts = textsOfOneChain(4);
  std::size_t const before = chainOf(texts[0]).size();
};

TEST_F(StringTableChain, GrowsAtItsEnd) {
  lvString const b(texts[1].c_str());
  lvString const a(texts[0].c_str());
  lvString const d(texts[3].c_str());
  EXPECT_EQ(chained(), (std::vector<std::string>{texts[1], texts[0], texts[3]}));
}

TEST_F(StringTableChain, FindsEachOfItsEntries) {
  std::vector<lvString> handles;
  for (std::string const& text : texts) {
    handles.emplace_back(text.c_str());
  }
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(find(texts[i]), handles[i].getReferencable());
  }
}

TEST_F(StringTableChain, ClosesOverAnEntryThatLeavesItAnywhere) {
  for (std::size_t leaving = 0; leaving < texts.size(); ++leaving) {
    std::vector<lvString> handles;
    std::vector<std::string> expected = texts;
    for (std::string const& text : texts) {
      handles.emplace_back(text.c_str());
    }
    handles[leaving] = lvString();
    expected.erase(expected.begin() + static_cast<std::ptrdiff_t>(leaving));
    EXPECT_EQ(chained(), expected) << leaving;
  }
  EXPECT_TRUE(chained().empty());
}

TEST_F(StringTableChain, TakesAReturningTextAtItsEnd) {
  lvString a(texts[0].c_str());
  lvString const b(texts[1].c_str());
  a = lvString();
  a = lvString(texts[0].c_str());
  EXPECT_EQ(chained(), (std::vector<std::string>{texts[1], texts[0]}));
}

// ---- Finding -----------------------------------------------------------------------------------

TEST(StringTableFind, MakesAMarkedEntryThatNobodyHolds) {
  Entry* const entry = find("made");
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(countOf(*entry), 0);
  EXPECT_TRUE(entry->isInterned());
  EXPECT_STREQ(entry->getText(), "made");
  EXPECT_EQ(entry->getKind(), lvReferencable::StringKind);
  EXPECT_EQ(chainOf("made").back(), entry);
  handleOf(*entry);
}

TEST(StringTableFind, GivesAnEntryThatNobodyHoldsAgain) {
  Entry* const entry = find("made");
  EXPECT_EQ(find("made"), entry);
  EXPECT_EQ(countOf(*entry), 0);
  {
    lvString const handle("made");
    EXPECT_EQ(handle.getReferencable(), entry);
    EXPECT_EQ(countOf(handle), 1);
  }
  EXPECT_EQ(entriesWith("made"), 0);
}

TEST(StringTableFind, OfAnEntryThatIsThereTakesNoReference) {
  lvString const handle("held");
  EXPECT_EQ(find("held"), handle.getReferencable());
  EXPECT_EQ(countOf(handle), 1);
}

TEST(StringTableFind, MeasuresATextOfLengthMinusOne) {
  lvString const handle("abc");
  TableLock const lock;
  EXPECT_EQ(lvString::findStringObject("abc\0def", -1, CopyAndOwn, 0), entryOf(handle));
}

TEST(StringTableFind, TakesTheHashOfACallerWhoKnowsIt) {
  lvString const handle("abc");
  TableLock const lock;
  EXPECT_EQ(lvString::findStringObject("abc", 3, CopyAndOwn, modelHash("abc")), entryOf(handle));
}

TEST(StringTableFind, ComparesBytesBehindNulToo) {
  lvString const a(3, "a\0b", CopyAndOwn);
  EXPECT_EQ(find("a\0b"s), a.getReferencable());
  Entry* const other = find("a\0c"s);
  EXPECT_NE(other, a.getReferencable());
  handleOf(*other);
}

TEST(StringTableFind, PassesAnEntryByWhoseTextWasReleasedByHand) {
  lvString const emptied("released by hand");
  static_cast<Entry&>(*emptied.getReferencable()).releaseData();
  lvString const fresh("released by hand");
  EXPECT_NE(entryOf(fresh), entryOf(emptied));
  EXPECT_STREQ(fresh, "released by hand");
  EXPECT_STREQ(emptied, "");
}

TEST(StringTableFind, FindsTheEmptyTextByAnyPointerAndHash) {
  lvString const empty("");
  TableLock const lock;
  EXPECT_EQ(lvString::findStringObject("xyz", 0, CopyAndOwn, 0), entryOf(empty));
  EXPECT_EQ(lvString::findStringObject("", -1, CopyAndOwn, 5), entryOf(empty));
  EXPECT_EQ(lvString::findStringObject("x", 0, CopyAndOwn, lvrString::computeHashCode("x", 0)),
            entryOf(empty));
}

TEST(StringTableFind, StoresANewTextByTheMode) {
  static char const text[] = "stays where it is";
  lvString handle;
  TableLock const lock;
  handle.findSetFast(text, -1, lvrString::Borrow, 0);
  EXPECT_EQ(entryOf(handle)->getText(), text);
}

TEST(StringTableFind, OfANullTextIsNullAndSaysSoOnce) {
  std::size_t const before = entryCount();
  testing::internal::CaptureStderr();
  {
    TableLock const lock;
    EXPECT_EQ(lvString::findStringObject(nullptr, -1, CopyAndOwn, 0), nullptr);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "lvString::findStringObject(): Returning NULL.\n");
  EXPECT_EQ(entryCount(), before);
}

TEST(StringTableFindSetFast, HoldsWhatItFinds) {
  lvString const held("abc");
  lvString handle;
  TableLock const lock;
  handle.findSetFast("abcd", 3, CopyAndOwn, 0);
  EXPECT_EQ(handle.getReferencable(), held.getReferencable());
  EXPECT_EQ(handle.getType(), lvArg::StringType);
  EXPECT_EQ(countOf(held), 2);
}

TEST(StringTableFindSetFast, OfANullTextIsNil) {
  lvString handle("abc");
  lvString const kept(handle);
  testing::internal::CaptureStderr();
  {
    TableLock const lock;
    handle.findSetFast(nullptr, 3, CopyAndOwn, 0);
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "lvString::findStringObject(): Returning NULL.\n");
  EXPECT_TRUE(handle.isNil());
  EXPECT_EQ(countOf(kept), 2);
  kept.getReferencable()->__removeRef();
}

// ---- Letting go --------------------------------------------------------------------------------

TEST(StringTableRelease, TakesTheEntryOutWithTheLastReferenceOnly) {
  lvString first("abc");
  lvString second(first);
  first = lvString();
  EXPECT_EQ(entriesWith("abc"), 1);
  second = lvString();
  EXPECT_EQ(entriesWith("abc"), 0);
}

TEST(StringTableRelease, TellsTheDropperOfTheLastReference) {
  Entry* const entry = find("abc");
  lvArg taken;
  taken.setReferencableFast(*entry, lvArg::NilType);  // The reference is the test's from here on.
  EXPECT_EQ(entry->__removeRef(), 1);
  EXPECT_EQ(entriesWith("abc"), 0);
}

TEST(StringTableRelease, LeavesAnEntryMadeImmortalInTheTable) {
  Entry* const entry = find("immortal");
  entry->__makeImmortal();
  handleOf(*entry);
  EXPECT_EQ(countOf(*entry), 10000);
  EXPECT_EQ(lvString("immortal").getReferencable(), entry);
}

// ---- The lock ----------------------------------------------------------------------------------

TEST(StringTableLock, IsFreeAfterEveryOperation) {
  char const* const missing = nullptr;
  EXPECT_TRUE(isTableFree());
  lvString handle;
  handle = "assigned";
  EXPECT_TRUE(isTableFree());
  handle = lvString("made");
  EXPECT_TRUE(isTableFree());
  handle += " and joined";
  EXPECT_TRUE(isTableFree());
  handle = handle.getLeft(3);
  EXPECT_TRUE(isTableFree());
  handle = lvString();
  EXPECT_TRUE(isTableFree());
  testing::internal::CaptureStderr();
  handle = missing;
  testing::internal::GetCapturedStderr();
  EXPECT_TRUE(isTableFree());
}

TEST(StringTableLock, IsHeldBetweenItsOperations) {
  lvString::getHashTable()->writeLock();
  EXPECT_FALSE(isTableFree());
  lvString::getHashTable()->unlock();
  EXPECT_TRUE(isTableFree());
}

// ---- finalize() --------------------------------------------------------------------------------

class StringTableFinalize : public ::testing::Test {
 protected:
  lvString const handle{"finalized by hand"};
  Entry& entry = static_cast<Entry&>(*handle.getReferencable());
};

TEST_F(StringTableFinalize, TakesTheEntryOutAndFreesTheText) {
  EXPECT_EQ(entry.finalize(), 0);
  EXPECT_EQ(entry.getText(), nullptr);
  for (Entry const* const other : allEntries()) {
    EXPECT_NE(other, &entry);
  }
}

TEST_F(StringTableFinalize, OfAnEntryThatIsNotInTheTableChangesNothingThere) {
  entry.finalize();
  std::size_t const before = entryCount();
  EXPECT_EQ(entry.finalize(), 0);
  EXPECT_EQ(entryCount(), before);
}

TEST_F(StringTableFinalize, MakesRoomForANewEntryOfTheText) {
  entry.finalize();
  lvString const other("finalized by hand");
  EXPECT_NE(other.getReferencable(), &entry);
  entry.finalize();
  EXPECT_EQ(entriesWith("finalized by hand"), 1);
}

TEST_F(StringTableFinalize, LeavesTheEntryToItsHoldersUntilTheyLetGo) {
  entry.finalize();
  EXPECT_EQ(countOf(entry), 1);
  EXPECT_STREQ(handle, "");
}

}  // namespace
