// What looks like a mistake of interned strings, and is not.

#include <gtest/gtest.h>

#include <string>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "support/StringTable.h"
#include "tarselvalues/core/lvString.h"

namespace {

using namespace std::string_literals;
using test::bookkeepingOf;
using test::countOf;
using test::entriesWith;
using test::entryCount;
using test::entryOf;
using test::Marks;
using test::setBookkeeping;
using test::textOf;

// Drops a reference that nobody else would, and tells whether it was the last.
bool dropForgotten(lvArg const& handle) { return handle.getReferencable()->__removeRef() == 1; }

TEST(InternedStringOddities, AssigningATextKeepsTheOldEntryCounted) {
  lvString handle("old");
  lvString const old(handle);
  lvString& answer = handle = "new";
  EXPECT_EQ(&answer, &handle);
  EXPECT_STREQ(handle, "new");
  EXPECT_EQ(countOf(handle), 1);
  EXPECT_EQ(countOf(old), 2);
  EXPECT_FALSE(dropForgotten(old));
}

TEST(InternedStringOddities, AssigningATextLeaksExactlyOneReference) {
  lvReferencable* old = nullptr;
  {
    lvString handle("old");
    old = handle.getReferencable();
    handle = "new";
  }
  EXPECT_EQ(entriesWith("new"), 0);
  EXPECT_EQ(entriesWith("old"), 1);
  EXPECT_EQ(countOf(*old), 1);
  EXPECT_EQ(old->__removeRef(), 1);
  EXPECT_EQ(entriesWith("old"), 0);
}

TEST(InternedStringOddities, AssigningTheSameTextCountsOnceMore) {
  lvString handle("same");
  handle = "same";
  handle = static_cast<char const*>(handle);
  EXPECT_EQ(countOf(handle), 3);
  EXPECT_FALSE(dropForgotten(handle));
  EXPECT_FALSE(dropForgotten(handle));
}

TEST(InternedStringOddities, AssigningANullTextIsNilAndKeepsTheOldEntryCounted) {
  lvString handle("old");
  lvString const old(handle);
  char const* const missing = nullptr;
  testing::internal::CaptureStderr();
  handle = missing;
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "lvString::findStringObject(): Returning NULL.\n");
  EXPECT_TRUE(handle.isNil());
  EXPECT_EQ(countOf(old), 2);
  EXPECT_FALSE(dropForgotten(old));
}

TEST(InternedStringOddities, AssigningATextToNilLeaksNothing) {
  {
    lvString handle;
    setBookkeeping(handle, Marks);
    handle = "new";
    EXPECT_EQ(bookkeepingOf(handle), Marks & test::AllMarks);
  }
  EXPECT_EQ(entriesWith("new"), 0);
}

TEST(InternedStringOddities, AssigningAHandleOrAValueLeaksNothing) {
  lvString handle("old");
  handle = lvString("new");
  EXPECT_EQ(entriesWith("old"), 0);
  handle = test::string("newer");
  EXPECT_EQ(entriesWith("new"), 0);
}

TEST(InternedStringOddities, SettingFastKeepsTheOldEntryCounted) {
  lvString handle("old");
  lvString const old(handle);
  {
    test::TableLock const lock;
    handle.findSetFast("new", -1, lvrString::CopyAndOwnEmpty, 0);
  }
  EXPECT_STREQ(handle, "new");
  EXPECT_EQ(countOf(old), 2);
  EXPECT_FALSE(dropForgotten(old));
}

TEST(InternedStringOddities, CompareToATextIsOneForANilHandleWhateverTheText) {
  EXPECT_EQ(lvString().compareTo(""), 1);
  EXPECT_EQ(lvString().compareTo("\xFF"), 1);
}

TEST(InternedStringOddities, OrderEndsAtTheFirstNul) {
  lvString const a(3, "a\0b", lvrString::CopyAndOwn);
  lvString const b(3, "a\0c", lvrString::CopyAndOwn);
  EXPECT_NE(a.getReferencable(), b.getReferencable());
  EXPECT_EQ(a.compareTo(b), 0);
  EXPECT_EQ(a.compareTo("a"), 0);
  EXPECT_EQ(a.find('b'), -1);
}

TEST(InternedStringOddities, ATextThatBeginsWithNulAddsNothing) {
  lvString const a("a");
  lvString const hidden(2, "\0b", lvrString::CopyAndOwn);
  EXPECT_EQ((a + hidden).getReferencable(), a.getReferencable());
  EXPECT_EQ(lvString::concat(a, "\0b", 2).getReferencable(), a.getReferencable());
  EXPECT_EQ(textOf(hidden + a), "\0ba"s);
}

TEST(InternedStringOddities, TheLastBytesOfNilAreTheEmptyString) {
  EXPECT_TRUE(lvString().getLeft(1).isNil());
  EXPECT_FALSE(lvString().getRight(1).isNil());
  EXPECT_FALSE(lvString().getMid(0, 1).isNil());
}

TEST(InternedStringOddities, ALongTextWithANulInsideIsNeverFoundAgain) {
  std::string text(65536, 'x');
  text[100] = '\0';
  std::size_t const before = entryCount();
  {
    lvString const first(65536, text.data(), lvrString::CopyAndOwn);
    lvString const second(65536, text.data(), lvrString::CopyAndOwn);
    EXPECT_NE(first.getReferencable(), second.getReferencable());
    EXPECT_EQ(first.length(), 100);
    EXPECT_EQ(entryCount(), before + 2);
  }
  EXPECT_EQ(entryCount(), before);
}

TEST(InternedStringOddities, ALengthBelowMinusOneMakesAnEntryOfTheWholeTextThatIsNeverFoundAgain) {
  std::size_t const before = entryCount();
  {
    lvString const first(-2, "abc", lvrString::CopyAndOwn);
    lvString const second(-2, "abc", lvrString::CopyAndOwn);
    EXPECT_STREQ(first, "abc");
    EXPECT_EQ(first.length(), 3);
    EXPECT_NE(first.getReferencable(), second.getReferencable());
    EXPECT_NE(first.getReferencable(), lvString("abc").getReferencable());
  }
  EXPECT_EQ(entryCount(), before);
}

TEST(InternedStringOddities, ABorrowedStartOfALongerTextReadsToItsEnd) {
  lvString const handle(2, "abcdef", lvrString::Borrow);
  EXPECT_EQ(handle.length(), 2);
  EXPECT_STREQ(handle, "abcdef");
  EXPECT_EQ(handle.getReferencable(), lvString("ab").getReferencable());
  EXPECT_EQ(textOf(handle), "ab");
}

TEST(InternedStringOddities, AnInternedAddressReadsAsItsDigitsAndNotAsTheAddress) {
  lvArg const address = test::pointer(0x10);
  EXPECT_EQ(lvValue(address).toString().getInt(), 16);
  lvString const handle(address);
  EXPECT_STREQ(handle, "00000010");
  EXPECT_EQ(entryOf(handle)->getInteger(), 10);
}

}  // namespace
