// What strings take from the heap, what they give back, and what they do when there is no more.

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <string>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "support/Mallocs.h"
#include "support/StringObjects.h"
#include "support/StringTable.h"
#include "tarselvalues/core/BlockCache.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using namespace std::string_literals;
using tarselvalues::BlockCache;
using tarselvalues::FromNew;
using test::bytesOf;
using test::countOf;
using test::entriesWith;
using test::entryCount;
using test::entryOf;
using test::HeldString;
using test::integer;
using test::Mallocs;
using test::OutOfMemory;
using test::pointer;
using test::setCopy;
using test::StringFields;
using test::StringObjectTest;
using test::textOf;

constexpr int NoMemory = -12;
constexpr int CopyAndOwn = lvrString::CopyAndOwn;

// How many blocks more there are after `act` than before.
template <class Act>
int blocksOf(Act const& act) {
  int const before = Mallocs::alive;
  act();
  return Mallocs::alive - before;
}

// ---- String objects ----------------------------------------------------------------------------

using StringObjectMemory = StringObjectTest;

TEST_F(StringObjectMemory, HoldsOneBlockForAnOwnedText) {
  EXPECT_EQ(blocksOf([&] { string.setStringData("a", -1, CopyAndOwn); }), 1);
  EXPECT_EQ(blocksOf([&] { string.setStringData("other", -1, CopyAndOwn); }), 0);
  EXPECT_EQ(blocksOf([&] { string.releaseData(); }), -1);
}

TEST_F(StringObjectMemory, HoldsNoneForABorrowedText) {
  EXPECT_EQ(blocksOf([&] { string.setStringData("a", -1, lvrString::Borrow); }), 0);
  EXPECT_EQ(blocksOf([&] { string.releaseData(); }), 0);
}

TEST_F(StringObjectMemory, HoldsNoneForAnEmptyText) {
  for (int const mode : {0, 1, 2, 3}) {
    setCopy(string, "old");
    EXPECT_EQ(blocksOf([&] { string.setStringData("", 0, mode); }), -1) << mode;
  }
}

TEST_F(StringObjectMemory, IsFreedWhenAnOwnedTextIsReplacedByABorrowedOne) {
  setCopy(string, "old");
  EXPECT_EQ(blocksOf([&] { string.setStringData("a", -1, lvrString::Borrow); }), -1);
}

TEST_F(StringObjectMemory, OfABorrowedTextIsNotFreedByTheNextSetter) {
  auto* const text = static_cast<char*>(std::malloc(4));
  std::memcpy(text, "abc", 4);
  string.setStringData(text, 3, lvrString::Borrow);
  EXPECT_EQ(blocksOf([&] { setCopy(string, "new"); }), 1);
  EXPECT_STREQ(text, "abc");
  std::free(text);
}

TEST_F(StringObjectMemory, StaysAllocatedWithFastSetters) {
  setCopy(string, "old");
  auto* const old = const_cast<char*>(string.getText());
  EXPECT_EQ(blocksOf([&] { string.setStringDataFast("new", -1, CopyAndOwn); }), 1);
  std::free(old);
}

TEST_F(StringObjectMemory, OfACopyThatCountsAsBorrowedIsNeverFreed) {
  EXPECT_EQ(blocksOf([&] { string.setStringData("copy", -1, 1); }), 1);
  auto* const copy = const_cast<char*>(string.getText());
  EXPECT_EQ(blocksOf([&] { setCopy(string, "new"); }), 1);
  std::free(copy);
}

TEST_F(StringObjectMemory, OfAValuesTextReplacesTheOldText) {
  HeldString const source("source");
  setCopy(string, "old");
  EXPECT_EQ(blocksOf([&] { string.setFrom(integer(5)); }), 0);
  EXPECT_EQ(blocksOf([&] { string.setFrom(pointer(5)); }), 0);
  EXPECT_EQ(blocksOf([&] { string.setFrom(source.cell); }), 0);
  EXPECT_EQ(blocksOf([&] { string.setFrom(lvArg()); }), -1);
}

TEST_F(StringObjectMemory, IsKeptWhereAValueHasNoTextForm) {
  setCopy(string, "old");
  lvArg const map = test::newMap();
  EXPECT_EQ(blocksOf([&] { string.setFrom(map); }), 0);
  EXPECT_EQ(bytesOf(string), "old");
}

TEST_F(StringObjectMemory, IsGivenBackWithTheLastCell) {
  EXPECT_EQ(blocksOf([] { HeldString const another("text"); }), 0);
}

// ---- String objects without memory -------------------------------------------------------------

// A string with both caches filled, and a check that it is as it was.
class StringObjectOutOfMemory : public StringObjectTest {
 protected:
  StringObjectOutOfMemory() {
    string.setFrom(integer(7));
    string.hashCode();
    text = string.getText();
    flags = StringFields::flags(string);
  }

  void expectUnchanged() const {
    EXPECT_EQ(string.getText(), text);
    EXPECT_EQ(bytesOf(string), "7");
    EXPECT_EQ(StringFields::flags(string), flags);
    EXPECT_EQ(StringFields::cachedHash(string), lvrString::computeHashCode("7", 1));
    EXPECT_EQ(string.getInteger(), 7);
  }

  // The answer of `act`, for which there is no memory.
  template <class Act>
  static int starved(Act const& act) {
    OutOfMemory const out;
    return act();
  }

 private:
  char const* text;
  unsigned flags;
};

TEST_F(StringObjectOutOfMemory, KeepsTheOldTextInEverySetter) {
  char const* pieces[] = {"a", "b"};
  for (int const mode : {1, 2, 3}) {
    EXPECT_EQ(starved([&] { return string.setStringData("new", -1, mode); }), NoMemory);
    EXPECT_EQ(starved([&] { return string.setStringDataFast("new", -1, mode); }), NoMemory);
  }
  for (int const mode : {0, 1, 2, 3}) {
    EXPECT_EQ(starved([&] { return string.setStringDataFast(2, pieces, nullptr, mode); }),
              NoMemory);
  }
  expectUnchanged();
}

TEST_F(StringObjectOutOfMemory, KeepsTheOldTextWhenSetFromAValue) {
  HeldString const source("source");
  for (lvArg const& value : {integer(8), integer(8000), pointer(8), source.cell}) {
    EXPECT_EQ(starved([&] { return string.setFrom(value); }), NoMemory);
    expectUnchanged();
  }
}

TEST_F(StringObjectOutOfMemory, KeepsTheOldTextWhenSetFromAPartOfItself) {
  EXPECT_EQ(starved([&] { return string.setStringData(string.getText(), 1, CopyAndOwn); }),
            NoMemory);
  expectUnchanged();
}

TEST_F(StringObjectOutOfMemory, NeedsNoMemoryToBorrow) {
  EXPECT_EQ(starved([&] { return string.setStringData("new", -1, lvrString::Borrow); }), 0);
  EXPECT_EQ(bytesOf(string), "new");
  EXPECT_EQ(starved([&] { return string.setFrom(lvArg()); }), 0);
  EXPECT_EQ(starved([&] { return string.setStringData("", -1, CopyAndOwn); }), 0);
  EXPECT_EQ(string.getText(), nullptr);
}

TEST_F(StringObjectOutOfMemory, CopesWithoutMemoryWhenItReads) {
  HeldString const other("other");
  OutOfMemory const out;
  EXPECT_EQ(string.getInteger(), 7);
  EXPECT_EQ(string.equiv(*other), 0);
  EXPECT_LT(string.compareTo(*other), 0);
  EXPECT_EQ(string.toString().getReferencable(), &string);
}

// ---- Interned strings --------------------------------------------------------------------------

TEST(InternedMemory, IsOneBlockForAShortText) {
  EXPECT_EQ(blocksOf([] {
              lvString const handle("a new text");
              EXPECT_EQ(blocksOf([] { lvString const other("a new text"); }), 0);
            }),
            0);
  lvArg cell;
  EXPECT_EQ(blocksOf([&] { cell = lvString("a new text"); }), 1);
  EXPECT_EQ(blocksOf([&] { cell.setNil(); }), -1);
}

TEST(InternedMemory, IsAnEntryAndItsTextForALongOne) {
  std::string const text(129, 'a');
  lvArg cell;
  EXPECT_EQ(blocksOf([&] { cell = lvString(text.c_str()); }), 2);
  EXPECT_EQ(blocksOf([&] { cell.setNil(); }), -2);
}

TEST(InternedMemory, IsTheEntryAloneForTheEmptyText) {
  lvArg cell;
  EXPECT_EQ(blocksOf([&] { cell = lvString(""); }), 1);
}

TEST(InternedMemory, IsGivenBackByEveryOperation) {
  lvString const hello("hello");
  EXPECT_EQ(blocksOf([&] {
              lvString handle = hello + " there";
              handle += handle;
              handle += "!";
              handle = handle.getLeft(9) + handle.getRight(4) + handle.getMid(2, 3);
              handle = lvString(integer(12345));
              handle = lvString(test::string("plain"));
              handle = lvString::valueOf(77);
            }),
            0);
}

// Lets memory fail at the first allocation of `act`, the second and so on until it succeeds. After
// each failure there must be no more blocks and entries than before, and `check` is called.
template <class Act, class Check>
void failEverywhere(Act const& act, Check const& check) {
  std::size_t const entries = entryCount();
  for (int after = 0; after < 100; ++after) {
    int const before = Mallocs::alive;
    try {
      OutOfMemory const out(after);
      act();
      EXPECT_GT(after, 0) << "nothing was allocated";
      return;
    } catch (std::bad_alloc const&) {
      EXPECT_EQ(Mallocs::alive, before) << after;
    }
    ASSERT_TRUE(test::isTableFree()) << after;
    ASSERT_EQ(entryCount(), entries) << after;
    check();
  }
  FAIL() << "memory runs out for ever";
}

template <class Act>
void failEverywhere(Act const& act) {
  failEverywhere(act, [] {});
}

TEST(InternedOutOfMemory, LeavesTheTableAsItWas) {
  failEverywhere([] { lvString const handle("a new text"); });
  failEverywhere([] { lvString const handle(5, "a new text", CopyAndOwn); });
  failEverywhere([] { lvString::valueOf(4711); });
  EXPECT_EQ(entriesWith("a new text"), 0);
}

TEST(InternedOutOfMemory, NeedsNoMemoryForATextThatIsThere) {
  lvString const handle("a text");
  OutOfMemory const out;
  EXPECT_EQ(lvString("a text").getReferencable(), handle.getReferencable());
}

class InternedHandleOutOfMemory : public ::testing::Test {
 protected:
  // Runs `act`, which changes the handle, out of memory at each of its allocations.
  template <class Act>
  void failAndKeep(Act const& act) {
    test::setBookkeeping(handle, test::Marks);
    failEverywhere(act, [this] {
      EXPECT_EQ(handle.getReferencable(), old.getReferencable());
      EXPECT_EQ(handle.getType(), lvArg::StringType);
      EXPECT_EQ(countOf(old), 2);
    });
  }

  lvString const old{"hello there"};
  lvString handle{old};
};

TEST_F(InternedHandleOutOfMemory, IsAsItWasWhenATextIsAssigned) {
  failAndKeep([&] { handle = "a new text"; });
  EXPECT_STREQ(handle, "a new text");
  old.getReferencable()->__removeRef();  // What the assignment of a text forgets.
}

TEST_F(InternedHandleOutOfMemory, IsAsItWasWhenAnotherStringIsAssigned) {
  lvArg const plain = test::string("a new text");
  failAndKeep([&] { handle = lvString(plain); });
  EXPECT_STREQ(handle, "a new text");
}

TEST_F(InternedHandleOutOfMemory, IsAsItWasWhenTextIsAdded) {
  failAndKeep([&] { handle += " and new"; });
  EXPECT_STREQ(handle, "hello there and new");
  handle = old;
  failAndKeep([&] { handle += lvString(old); });
  EXPECT_STREQ(handle, "hello therehello there");
}

TEST_F(InternedHandleOutOfMemory, IsAsItWasWhenItIsJoinedOrCut) {
  failAndKeep([&] { lvString::concat(handle, " and new", 5); });
  failAndKeep([&] { lvString::concat(handle, lvString(old)); });
  failAndKeep([&] { handle.getLeft(3); });
  failAndKeep([&] { handle.getMid(3, 3); });
  failAndKeep([&] { handle.getRight(3); });
}

// ---- Buffers that are taken over ---------------------------------------------------------------

char* bufferOf(std::string const& text, std::size_t room) {
  auto* const buffer = static_cast<char*>(std::malloc(room));
  text.copy(buffer, text.size());
  return buffer;
}

lvString internBuffer(std::string const& text, std::size_t room) {
  return lvString::internBuffer(bufferOf(text, room), static_cast<int>(text.size()));
}

TEST(InternBuffer, KeepsTheBufferForANewText) {
  lvArg cell;
  EXPECT_EQ(blocksOf([&] { cell = internBuffer("taken over", 4090); }), 2);
  EXPECT_EQ(textOf(cell), "taken over");
  EXPECT_EQ(entryOf(cell)->getText()[10], '\0');
  EXPECT_FALSE(test::isBorrowed(*entryOf(cell)));
  EXPECT_EQ(countOf(cell), 1);
  EXPECT_EQ(blocksOf([&] { cell.setNil(); }), -2);
}

TEST(InternBuffer, CutsTheBufferToTheTextAndItsNul) {
  lvString const handle = internBuffer("taken over", 4090);
  EXPECT_EQ(Mallocs::cutTo, 11U);
}

TEST(InternBuffer, MakesAnEntryAsAnyOther) {
  lvString const handle = internBuffer("taken over", 4090);
  EXPECT_EQ(handle.getReferencable(), lvString("taken over").getReferencable());
  EXPECT_TRUE(entryOf(handle)->isInterned());
  EXPECT_EQ(handle.hashCode(), lvrString::computeHashCode("taken over", 10));
  EXPECT_TRUE(test::isTableFree());
}

TEST(InternBuffer, FreesTheBufferOfATextThatIsThere) {
  lvString const handle("taken over");
  lvArg cell;
  EXPECT_EQ(blocksOf([&] { cell = internBuffer("taken over", 4090); }), 0);
  EXPECT_EQ(cell.getReferencable(), handle.getReferencable());
  EXPECT_EQ(countOf(handle), 2);
}

TEST(InternBuffer, FreesTheBufferOfAnEmptyText) {
  lvArg cell;
  EXPECT_EQ(blocksOf([&] { cell = internBuffer("", 4090); }), 1);
  EXPECT_EQ(entryOf(cell)->getText(), nullptr);
  EXPECT_EQ(cell.getReferencable(), lvString("").getReferencable());
  EXPECT_STREQ(lvString(cell), "");
}

TEST(InternBuffer, NeedsRoomForTheNulOnly) {
  for (std::string const& text : {"a"s, "seven b"s, "a\0b"s, std::string(65535, 'x')}) {
    lvString const handle = internBuffer(text, text.size() + 1);
    EXPECT_EQ(textOf(handle), text);
    EXPECT_EQ(handle.length(), static_cast<int>(text.size()));
  }
}

TEST(InternBuffer, KeepsTheWholeBufferWhenItCannotBeCut) {
  char* const buffer = bufferOf("taken over", 4090);
  int const before = Mallocs::alive;
  {
    lvString handle;
    {
      OutOfMemory const out(1);  // Enough for the entry.
      handle = lvString::internBuffer(buffer, 10);
    }
    EXPECT_EQ(entryOf(handle)->getText(), buffer);
    EXPECT_EQ(textOf(handle), "taken over");
    EXPECT_EQ(Mallocs::alive, before + 1);
  }
  EXPECT_EQ(Mallocs::alive, before - 1);
}

TEST(InternBuffer, FreesTheBufferWhenThereIsNoMemoryForTheEntry) {
  for (std::string const& text : {"taken over"s, ""s}) {
    std::size_t const entries = entryCount();
    char* const buffer = bufferOf(text, 4090);
    EXPECT_EQ(blocksOf([&] {
                OutOfMemory const out;
                EXPECT_THROW(lvString::internBuffer(buffer, static_cast<int>(text.size())),
                             std::bad_alloc);
              }),
              -1);
    EXPECT_TRUE(test::isTableFree());
    EXPECT_EQ(entryCount(), entries);
  }
}

// ---- Small blocks ------------------------------------------------------------------------------

TEST(SmallBlocks, AreFreedAtOnceInAProgramThatHasNoneKept) {
  void* block = nullptr;
  EXPECT_EQ(blocksOf([&] { block = BlockCache::take<FromNew>(1); }), 1);
  EXPECT_EQ(blocksOf([&] { BlockCache::give<FromNew>(block, 1); }), -1);
}

}  // namespace
