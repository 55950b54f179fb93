#include "tarselvalues/core/lvString.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "support/StringObjects.h"
#include "support/StringTable.h"

namespace {

using namespace std::string_literals;
using test::bookkeepingOf;
using test::countOf;
using test::entriesWith;
using test::entryOf;
using test::HeldString;
using test::integer;
using test::Marks;
using test::OtherMarks;
using test::pointer;
using test::setBookkeeping;
using test::textOf;
using test::unheld;

static_assert(std::is_base_of_v<lvArg, lvString>);
static_assert(sizeof(lvString) == sizeof(lvArg), "a handle adds no fields");
static_assert(std::is_convertible_v<char const*, lvString>);
static_assert(std::is_convertible_v<lvString const&, lvArg const&>);

constexpr char Message[] = "lvString::findStringObject(): Returning NULL.\n";

lvString ofBytes(std::string const& bytes, int mode = lvrString::CopyAndOwnEmpty) {
  return {static_cast<int>(bytes.size()), bytes.data(), mode};
}

// Whether both handles hold the same entry, or both none.
bool isShared(lvArg const& a, lvArg const& b) {
  return a.getType() == b.getType() && a.getReferencable() == b.getReferencable();
}

// Whether it is the interned empty string.
bool isEmptyEntry(lvString const& handle) {
  return !handle.isNil() && isShared(handle, lvString(""));
}

// What `act` writes to standard error.
template <class Act>
std::string errorsOf(Act const& act) {
  testing::internal::CaptureStderr();
  act();
  return testing::internal::GetCapturedStderr();
}

// ---- Making ------------------------------------------------------------------------------------

TEST(InternedMaking, WithoutTextIsNil) {
  lvString const handle;
  EXPECT_TRUE(handle.isNil());
  EXPECT_EQ(handle.getReferencable(), nullptr);
}

TEST(InternedMaking, FromATextHoldsOneReferenceToAMarkedEntry) {
  lvString const handle("a text of its own");
  EXPECT_EQ(handle.getType(), lvArg::StringType);
  EXPECT_STREQ(handle, "a text of its own");
  EXPECT_EQ(countOf(handle), 1);
  EXPECT_TRUE(entryOf(handle)->isInterned());
  EXPECT_NE(test::flagsOf(*entryOf(handle)) & test::Interned, 0U);
  EXPECT_EQ(bookkeepingOf(handle), 0U);
}

TEST(InternedMaking, FromOneTextTwiceSharesTheEntry) {
  std::string const text = "abc";
  lvString const first(text.c_str());
  lvString const second("abc");
  EXPECT_TRUE(isShared(first, second));
  EXPECT_EQ(countOf(first), 2);
  EXPECT_EQ(entriesWith("abc"), 1);
}

TEST(InternedMaking, CopiesTheText) {
  std::string text = "abc";
  lvString const handle(text.c_str());
  text[0] = 'x';
  EXPECT_STREQ(handle, "abc");
  EXPECT_FALSE(test::isBorrowed(*entryOf(handle)));
}

TEST(InternedMaking, TellsTextsApart) {
  lvString const handle("abc");
  for (char const* const other : {"ab", "abd", "abcd", "Abc", "", "bc"}) {
    EXPECT_FALSE(isShared(handle, lvString(other))) << other;
  }
}

TEST(InternedMaking, OfAGivenLengthTakesSoManyBytes) {
  lvString const handle(2, "abc", lvrString::CopyAndOwn);
  EXPECT_STREQ(handle, "ab");
  EXPECT_EQ(handle.length(), 2);
  EXPECT_TRUE(isShared(handle, lvString("ab")));
}

TEST(InternedMaking, OfLengthMinusOneMeasuresTheText) {
  EXPECT_TRUE(isShared(lvString(-1, "abc", lvrString::CopyAndOwn), lvString("abc")));
}

TEST(InternedMaking, KeepsNulBytesInside) {
  lvString const handle = ofBytes("a\0b"s);
  EXPECT_EQ(handle.length(), 3);
  EXPECT_EQ(textOf(handle), "a\0b"s);
  EXPECT_TRUE(isShared(handle, ofBytes("a\0b"s)));
  EXPECT_FALSE(isShared(handle, ofBytes("a\0c"s)));
  EXPECT_FALSE(isShared(handle, lvString("a")));
}

TEST(InternedMaking, TellsTextsOfOneHashApart) {
  for (std::string const& text : {"alike in all but the end."s, "alike\0in all but the end."s}) {
    std::string const other = text.substr(0, text.size() - 1) + "!";
    ASSERT_EQ(test::modelHash(text), test::modelHash(other));
    lvString const handle = ofBytes(text);
    EXPECT_FALSE(isShared(handle, ofBytes(other)));
    EXPECT_TRUE(isShared(handle, ofBytes(text)));
  }
}

TEST(InternedMaking, CopiesWithBothOwningModes) {
  for (int const mode : {lvrString::CopyAndOwn, lvrString::CopyAndOwnEmpty}) {
    std::string text = "copied";
    lvString const handle(6, text.c_str(), mode);
    EXPECT_NE(static_cast<char const*>(handle), text.c_str());
    EXPECT_STREQ(handle, "copied");
  }
}

TEST(InternedMaking, BorrowsWithModeBorrow) {
  static char const text[] = "a text that stays";
  lvString const handle(-1, text, lvrString::Borrow);
  EXPECT_EQ(static_cast<char const*>(handle), text);
  EXPECT_TRUE(test::isBorrowed(*entryOf(handle)));
}

TEST(InternedMaking, OfATextThatIsThereIgnoresTheMode) {
  lvString const first("abc");
  static char const text[] = "abc";
  lvString const second(-1, text, lvrString::Borrow);
  EXPECT_TRUE(isShared(first, second));
  EXPECT_NE(static_cast<char const*>(second), text);
}

TEST(InternedMaking, FromAnIntegerInternsItsDecimalText) {
  EXPECT_STREQ(lvString(42), "42");
  EXPECT_STREQ(lvString(-7), "-7");
  EXPECT_TRUE(isShared(lvString(42), lvString("42")));
  EXPECT_TRUE(isShared(lvString::valueOf(42), lvString("42")));
  EXPECT_STREQ(lvString::valueOf(INT_MIN), "-2147483648");
  EXPECT_STREQ(lvString::valueOf(INT_MAX), "2147483647");
  EXPECT_STREQ(lvString::valueOf(0), "0");
}

TEST(InternedMaking, AfterTheLastHandleMakesANewEntry) {
  { lvString const handle("abc"); }
  EXPECT_EQ(entriesWith("abc"), 0);
  lvString const handle("abc");
  EXPECT_EQ(countOf(handle), 1);
  EXPECT_EQ(entriesWith("abc"), 1);
}

TEST(InternedMaking, OfALongTextSharesTheEntryAsWell) {
  for (std::size_t const size : std::vector<std::size_t>{65534, 65535, 65536}) {
    std::string const text(size, 'x');
    lvString const handle(text.c_str());
    EXPECT_EQ(handle.length(), static_cast<int>(size));
    EXPECT_TRUE(isShared(handle, ofBytes(text))) << size;
    EXPECT_FALSE(isShared(handle, ofBytes(text + "x"))) << size;
    EXPECT_EQ(textOf(handle), text);
  }
}

TEST(InternedMaking, FromANullTextIsNilAndSaysSoOnce) {
  lvString handle("before");
  EXPECT_EQ(errorsOf([&] { handle = lvString(nullptr); }), Message);
  EXPECT_TRUE(handle.isNil());
  EXPECT_EQ(errorsOf([&] { handle = lvString(3, nullptr, lvrString::CopyAndOwn); }), Message);
  EXPECT_TRUE(handle.isNil());
}

TEST(InternedMaking, FromATextSaysNothing) {
  EXPECT_EQ(errorsOf([] { lvString const handle("abc"); }), "");
}

// ---- The empty text ----------------------------------------------------------------------------

TEST(InternedEmpty, HasOneEntryWhateverItIsLookedUpWith) {
  lvString const empty("");
  EXPECT_FALSE(empty.isNil());
  EXPECT_TRUE(isShared(empty, lvString(0, "abc", lvrString::CopyAndOwnEmpty)));
  EXPECT_TRUE(isShared(empty, lvString(0, "xyz", lvrString::CopyAndOwn)));
  EXPECT_TRUE(isShared(empty, lvString(-1, "", lvrString::Borrow)));
  EXPECT_TRUE(isShared(empty, lvString("abc").getLeft(0)));
  EXPECT_EQ(entriesWith(""), 1);
}

TEST(InternedEmpty, BorrowsTheStaticTextWhenBothModeBitsAreSet) {
  ASSERT_EQ(entriesWith(""), 0);
  lvString const empty("");
  EXPECT_EQ(entryOf(empty)->getText(), lvrString::strEmpty);
  EXPECT_EQ(empty.length(), 0);
}

TEST(InternedEmpty, MadeWithAnyOtherModeHasNoTextButNeverAnswersNull) {
  for (int const mode : {0, 1, 2}) {
    ASSERT_EQ(entriesWith(""), 0);
    lvString const empty(0, "abc", mode);
    EXPECT_EQ(entryOf(empty)->getText(), nullptr);
    EXPECT_STREQ(empty, "");
    EXPECT_EQ(static_cast<char const*>(empty), static_cast<char const*>(lvString()));
    EXPECT_EQ(empty.length(), 0);
  }
}

TEST(InternedEmpty, WithoutTextOfItsOwnAnswersAsAnyEmptyText) {
  lvString const empty(0, "", lvrString::CopyAndOwn);
  EXPECT_EQ(empty.compareTo(""), 0);
  EXPECT_LT(empty.compareTo("a"), 0);
  EXPECT_LT(empty.compareTo(lvString("a")), 0);
  EXPECT_GT(lvString("a").compareTo(empty), 0);
  EXPECT_EQ(empty.find('x'), -1);
  EXPECT_EQ(empty[0], -1);
  EXPECT_TRUE(isShared(empty + "a", lvString("a")));
  EXPECT_TRUE(isShared(lvString("a") + empty, lvString("a")));
  EXPECT_EQ(empty.hashCode(), 177573U);
}

TEST(InternedEmpty, LeavesTheTableWithItsLastHandle) {
  { lvString const empty(0, "xyz", lvrString::CopyAndOwn); }
  EXPECT_EQ(entriesWith(""), 0);
}

// ---- Making from values ------------------------------------------------------------------------

TEST(InternedFromValue, NilIsNil) {
  EXPECT_EQ(errorsOf([] { EXPECT_TRUE(lvString(lvArg()).isNil()); }), "");
}

TEST(InternedFromValue, AnInternedStringIsShared) {
  lvArg const value = lvString("abc");
  lvString const handle(value);
  EXPECT_TRUE(isShared(handle, value));
  EXPECT_EQ(countOf(value), 2);
}

// The entry of a length that is measured late is not what a look-up of its text finds.
TEST(InternedFromValue, AnInternedStringIsSharedWithoutLookingItUp) {
  lvArg const value = lvString(-2, "abc", lvrString::CopyAndOwn);
  lvString const found("abc");
  ASSERT_FALSE(isShared(found, value));
  EXPECT_TRUE(isShared(lvString(value), value));
}

TEST(InternedFromValue, AnotherStringsTextIsInterned) {
  HeldString const source("abc");
  lvString const handle(source.cell);
  EXPECT_FALSE(isShared(handle, source.cell));
  EXPECT_TRUE(isShared(handle, lvString("abc")));
  EXPECT_EQ(countOf(*source), 1);
  EXPECT_FALSE(source->isInterned());
}

TEST(InternedFromValue, AnotherStringIsLookedUpByItsOwnHash) {
  HeldString const source("abc");
  lvString const handle(source.cell);
  EXPECT_TRUE(test::hasCachedHash(*source));
}

TEST(InternedFromValue, AStringWithNulBytesKeepsThem) {
  HeldString const source("a\0b"s);
  EXPECT_TRUE(isShared(lvString(source.cell), ofBytes("a\0b"s)));
}

TEST(InternedFromValue, ALongStringIsTakenToItsFirstNul) {
  std::string text(70000, 'x');
  HeldString const source(text);
  EXPECT_TRUE(isShared(lvString(source.cell), lvString(text.c_str())));
  text[66000] = '\0';
  test::setCopy(*source, text);
  EXPECT_EQ(textOf(lvString(source.cell)), std::string(66000, 'x'));
}

TEST(InternedFromValue, AnEmptyStringIsTheEmptyEntry) {
  HeldString const source;
  source->setStringData("", 0, lvrString::CopyAndOwnEmpty);
  EXPECT_TRUE(isShared(lvString(source.cell), lvString("")));
}

TEST(InternedFromValue, AnIntegerIsItsDecimalText) {
  EXPECT_TRUE(isShared(lvString(integer(-42)), lvString("-42")));
}

TEST(InternedFromValue, AnAddressIsItsHexadecimalText) {
  EXPECT_TRUE(isShared(lvString(pointer(0x1234)), lvString("00001234")));
}

TEST(InternedFromValue, WhatHasNoTextFormIsNilAndSaysSoOnce) {
  lvArg const object(*new lvReferencable);
  for (lvArg const& value : {test::newMap(), test::newList(), test::newClass(), object}) {
    EXPECT_EQ(errorsOf([&] { EXPECT_TRUE(lvString(value).isNil()); }), Message);
  }
}

TEST(InternedFromValue, AStringWithoutTextIsNilAndSaysSoOnce) {
  HeldString const source;
  EXPECT_EQ(errorsOf([&] { EXPECT_TRUE(lvString(source.cell).isNil()); }), Message);
}

TEST(InternedFromValue, AStringTagWithoutObjectIsNil) {
  EXPECT_TRUE(lvString(unheld(test::string("x"))).isNil());
}

TEST(InternedFromValue, ConvertsOnAssignmentAndReleasesTheOldEntry) {
  lvString handle("old");
  handle = integer(12);
  EXPECT_STREQ(handle, "12");
  EXPECT_EQ(entriesWith("old"), 0);
}

// ---- Copying, moving, letting go ---------------------------------------------------------------

TEST(InternedCopying, TakesAReferenceAndTheWholeFirstWord) {
  lvString handle("abc");
  setBookkeeping(handle, Marks);
  lvString const copy(handle);
  EXPECT_TRUE(isShared(copy, handle));
  EXPECT_EQ(countOf(handle), 2);
  EXPECT_EQ(bookkeepingOf(copy), Marks & test::AllMarks);
}

TEST(InternedCopying, OfNilTakesTheWholeFirstWordToo) {
  lvString nil;
  setBookkeeping(nil, Marks);
  lvString const copy(nil);
  EXPECT_TRUE(copy.isNil());
  EXPECT_EQ(bookkeepingOf(copy), Marks & test::AllMarks);
}

TEST(InternedCopying, ByAssignmentKeepsItsOwnBookkeepingAndReleasesTheOldEntry) {
  lvString handle("old");
  lvString source("abc");
  setBookkeeping(handle, Marks);
  setBookkeeping(source, OtherMarks);
  handle = source;
  EXPECT_TRUE(isShared(handle, source));
  EXPECT_EQ(bookkeepingOf(handle), Marks & test::AllMarks);
  EXPECT_EQ(entriesWith("old"), 0);
}

TEST(InternedMoving, HandsTheReferenceOver) {
  lvString handle("abc");
  lvString moved(std::move(handle));
  EXPECT_STREQ(moved, "abc");
  EXPECT_EQ(countOf(moved), 1);
  lvString assigned("old");
  assigned = std::move(moved);
  EXPECT_EQ(countOf(assigned), 1);
  EXPECT_EQ(entriesWith("old"), 0);
}

TEST(InternedDestroying, ReleasesTheReference) {
  lvString const kept("abc");
  { lvString const handle("abc"); }
  EXPECT_EQ(countOf(kept), 1);
}

TEST(InternedDestroying, LeavesTheEntryToACellThatHoldsIt) {
  lvArg cell;
  {
    lvString const handle("abc");
    cell = handle;
  }
  EXPECT_EQ(countOf(cell), 1);
  EXPECT_EQ(entriesWith("abc"), 1);
  EXPECT_TRUE(isShared(lvString("abc"), cell));
  cell.setNil();
  EXPECT_EQ(entriesWith("abc"), 0);
}

// ---- Asking ------------------------------------------------------------------------------------

TEST(InternedText, IsTheEntrysOrTheEmptyText) {
  lvString const handle("abc");
  EXPECT_EQ(static_cast<char const*>(handle), entryOf(handle)->getText());
  EXPECT_STREQ(lvString(), "");
}

TEST(InternedText, OfAHandleWithoutEntryIsEmpty) {
  lvString handle("abc");
  handle.releaseData();
  EXPECT_STREQ(handle, "");
  EXPECT_EQ(handle.length(), 0);
  EXPECT_EQ(handle[0], -1);
  EXPECT_EQ(handle.find('a'), -1);
  EXPECT_EQ(handle.findRev('a'), -1);
  EXPECT_EQ(handle.find("a"), -1);
}

// With no entry there is not even a terminating NUL to be found.
TEST(InternedText, OfAHandleWithoutEntryContainsNothingAtAll) {
  lvString handle("abc");
  handle.releaseData();
  EXPECT_EQ(handle.find('\0'), -1);
  EXPECT_EQ(handle.findRev('\0'), -1);
  EXPECT_EQ(handle.find(""), -1);
}

TEST(InternedLength, IsTheEntrysOrZero) {
  EXPECT_EQ(lvString("hello").length(), 5);
  EXPECT_EQ(ofBytes("a\0b\0"s).length(), 4);
  EXPECT_EQ(lvString("").length(), 0);
  EXPECT_EQ(lvString().length(), 0);
}

TEST(InternedCompareTo, IsZeroForOneEntry) {
  lvString const handle("abc");
  EXPECT_EQ(handle.compareTo(handle), 0);
  EXPECT_EQ(handle.compareTo(lvString("abc")), 0);
}

// The text has no NUL within its borrowed bytes: comparing it would read past them.
TEST(InternedCompareTo, OfOneEntryReadsNoText) {
  std::vector<char> const bytes(3, 'x');
  lvString const handle(3, bytes.data(), lvrString::Borrow);
  lvString const copy(handle);
  EXPECT_EQ(handle.compareTo(copy), 0);
}

TEST(InternedCompareTo, IsTheOrderOfTheTexts) {
  lvString const abc("abc");
  EXPECT_LT(abc.compareTo(lvString("abd")), 0);
  EXPECT_GT(abc.compareTo(lvString("abb")), 0);
  EXPECT_LT(abc.compareTo(lvString("abcd")), 0);
  EXPECT_GT(lvString("\xE4").compareTo(lvString("z")), 0);
}

TEST(InternedCompareTo, BetweenNilAndAStringIsTheDifferenceOfTheTags) {
  lvString const nil;
  lvString const text("abc");
  EXPECT_EQ(nil.compareTo(text), -19);
  EXPECT_EQ(text.compareTo(nil), 19);
  EXPECT_EQ(nil.compareTo(lvString("")), -19);
}

TEST(InternedCompareTo, BetweenTwoNilHandlesIsZero) {
  lvString const nil;
  EXPECT_EQ(nil.compareTo(lvString()), 0);
  EXPECT_EQ(nil.compareTo(nil), 0);
}

TEST(InternedCompareTo, WithATextIsTheOrderOfTheTexts) {
  lvString const abc("abc");
  EXPECT_EQ(abc.compareTo("abc"), 0);
  EXPECT_LT(abc.compareTo("abd"), 0);
  EXPECT_GT(abc.compareTo("abb"), 0);
  EXPECT_GT(abc.compareTo(""), 0);
  EXPECT_LT(abc.compareTo("\xFF"), 0);
}

TEST(InternedCompareTo, WithATextIsOneWhereEitherIsMissing) {
  char const* const missing = nullptr;
  EXPECT_EQ(lvString().compareTo("abc"), 1);
  EXPECT_EQ(lvString().compareTo(""), 1);
  EXPECT_EQ(lvString().compareTo(missing), 1);
  EXPECT_EQ(lvString("abc").compareTo(missing), 1);
}

TEST(InternedEquality, WithATextGoesByItsOrder) {
  lvString const abc("abc");
  char const* const missing = nullptr;
  EXPECT_TRUE("abc" == abc);
  EXPECT_TRUE(abc == "abc");
  EXPECT_FALSE("abd" == abc);
  EXPECT_TRUE("abd" != abc);
  EXPECT_TRUE(abc != "abd");
  EXPECT_FALSE(abc != "abc");
  EXPECT_FALSE(missing == abc);
}

TEST(InternedEquality, NeverHoldsBetweenANilHandleAndAText) {
  lvString const nil;
  char const* const missing = nullptr;
  EXPECT_FALSE("" == nil);
  EXPECT_FALSE(missing == nil);
}

TEST(InternedEquality, BetweenHandlesGoesByTheTexts) {
  lvString const abc("abc");
  EXPECT_TRUE(abc == lvString("abc"));
  EXPECT_TRUE(abc != lvString("abd"));
  EXPECT_FALSE(abc == lvString());
  EXPECT_TRUE(lvString() == lvString());
}

TEST(InternedFind, GivesTheFirstPlaceOfAByte) {
  lvString const hello("hello");
  EXPECT_EQ(hello.find('h'), 0);
  EXPECT_EQ(hello.find('l'), 2);
  EXPECT_EQ(hello.find('o'), 4);
  EXPECT_EQ(hello.find('z'), -1);
  EXPECT_EQ(lvString("a\xE9").find('\xE9'), 1);
}

TEST(InternedFind, GivesTheFirstPlaceOfAText) {
  lvString const hello("hello hello");
  EXPECT_EQ(hello.find("hello"), 0);
  EXPECT_EQ(hello.find("lo"), 3);
  EXPECT_EQ(hello.find("lo h"), 3);
  EXPECT_EQ(hello.find("hello!"), -1);
  EXPECT_EQ(hello.find(""), 0);
}

TEST(InternedFind, ReversedGivesTheLastPlaceOfAByte) {
  lvString const hello("hello");
  EXPECT_EQ(hello.findRev('l'), 3);
  EXPECT_EQ(hello.findRev('h'), 0);
  EXPECT_EQ(hello.findRev('z'), -1);
  EXPECT_EQ(lvString("\xE9 a").findRev('\xE9'), 0);
}

TEST(InternedFind, OfTheNulFindsTheEndOfTheText) {
  EXPECT_EQ(lvString("hello").find('\0'), 5);
  EXPECT_EQ(lvString("hello").findRev('\0'), 5);
  EXPECT_EQ(lvString("").find('\0'), 0);
}

TEST(InternedFind, OfANullTextOrInNilFindsNothing) {
  lvString const nil;
  char const* const missing = nullptr;
  EXPECT_EQ(lvString("abc").find(missing), -1);
  EXPECT_EQ(nil.find('a'), -1);
  EXPECT_EQ(nil.find('\0'), -1);
  EXPECT_EQ(nil.find("a"), -1);
  EXPECT_EQ(nil.find(""), -1);
  EXPECT_EQ(nil.findRev('a'), -1);
  EXPECT_EQ(nil.findRev('\0'), -1);
}

TEST(InternedIndex, GivesTheByteUnsigned) {
  lvString const text("a\xFF");
  EXPECT_EQ(text[0], 'a');
  EXPECT_EQ(text[1], 255);
  EXPECT_EQ(ofBytes("a\0b"s)[1], 0);
  EXPECT_EQ(ofBytes("a\0b"s)[2], 'b');
}

TEST(InternedIndex, OutsideTheTextIsMinusOne) {
  lvString const hello("hello");
  EXPECT_EQ(hello[4], 'o');
  for (int const i : {5, 6, INT_MAX, -1, -5, INT_MIN}) {
    EXPECT_EQ(hello[i], -1) << i;
  }
  EXPECT_EQ(lvString()[0], -1);
  EXPECT_EQ(lvString("")[0], -1);
}

// ---- Joining -----------------------------------------------------------------------------------

TEST(InternedConcat, InternsBothTexts) {
  lvString const ab("ab");
  lvString const joined = lvString::concat(ab, "cdef", 2);
  EXPECT_TRUE(isShared(joined, lvString("abcd")));
  EXPECT_EQ(countOf(joined), 1);
  EXPECT_STREQ(ab, "ab");
}

TEST(InternedConcat, OfNoTextIsACopyOfTheFirst) {
  lvString const ab("ab");
  EXPECT_TRUE(isShared(lvString::concat(ab, "", 0), ab));
  EXPECT_TRUE(isShared(lvString::concat(ab, "", 1), ab));
  EXPECT_TRUE(isShared(lvString::concat(ab, nullptr, 3), ab));
  EXPECT_TRUE(lvString::concat(lvString(), "", 0).isNil());
}

TEST(InternedConcat, OfNoBytesIsACopyOfTheFirst) {
  EXPECT_TRUE(isShared(lvString::concat("ab", "cd", 0), lvString("ab")));
  EXPECT_TRUE(lvString::concat(lvString(), "cd", 0).isNil());
  EXPECT_TRUE(isShared(lvString::concat("", "cd", 0), lvString("")));
}

TEST(InternedConcat, OfANegativeNumberOfBytesIsACopyOfTheFirst) {
  for (int const n : {-1, -2, INT_MIN}) {
    EXPECT_TRUE(isShared(lvString::concat("ab", "cd", n), lvString("ab"))) << n;
  }
}

TEST(InternedConcat, OfMoreBytesThanAnIntCountsRunsOutOfMemory) {
  lvString const ab("ab");
  EXPECT_THROW(lvString::concat(ab, "cd", INT_MAX), std::bad_alloc);
  EXPECT_THROW(lvString::concat(ab, "cd", INT_MAX - 2), std::bad_alloc);
  EXPECT_EQ(countOf(ab), 1);
}

TEST(InternedConcat, ToNilInternsTheText) {
  EXPECT_TRUE(isShared(lvString::concat(lvString(), "cd", 2), lvString("cd")));
}

TEST(InternedConcat, KeepsNulBytes) {
  lvString const joined = lvString::concat(ofBytes("a\0"s), "b\0c", 3);
  EXPECT_EQ(textOf(joined), "a\0b\0c"s);
}

TEST(InternedConcat, OfHandlesJoinsThem) {
  EXPECT_TRUE(isShared(lvString::concat(lvString("ab"), lvString("cd")), lvString("abcd")));
  EXPECT_EQ(textOf(lvString::concat(lvString("ab"), ofBytes("c\0d"s))), "abc\0d"s);
}

TEST(InternedConcat, OfNilHandlesIsTheOtherOrTheEmptyString) {
  lvString const ab("ab");
  EXPECT_TRUE(isShared(lvString::concat(ab, lvString()), ab));
  EXPECT_TRUE(isShared(lvString::concat(lvString(), ab), ab));
  EXPECT_TRUE(isEmptyEntry(lvString::concat(lvString(), lvString())));
}

TEST(InternedConcat, OfALongTextCrossesTheLengthLimit) {
  std::string const half(40000, 'x');
  lvString const joined = lvString(half.c_str()) + half.c_str();
  EXPECT_EQ(joined.length(), 80000);
  EXPECT_TRUE(isShared(joined, lvString((half + half).c_str())));
}

TEST(InternedPlus, JoinsATextOrAHandle) {
  lvString const ab("ab");
  EXPECT_TRUE(isShared(ab + "cd", lvString("abcd")));
  EXPECT_TRUE(isShared(ab + lvString("cd"), lvString("abcd")));
  EXPECT_TRUE(isShared(lvString() + "cd", lvString("cd")));
  EXPECT_STREQ(ab, "ab");
}

TEST(InternedPlus, OfNothingIsACopy) {
  lvString const ab("ab");
  char const* const missing = nullptr;
  EXPECT_TRUE(isShared(ab + missing, ab));
  EXPECT_TRUE(isShared(ab + "", ab));
  EXPECT_TRUE(isShared(ab + lvString(), ab));
  EXPECT_TRUE((lvString() + missing).isNil());
  EXPECT_TRUE((lvString() + "").isNil());
}

TEST(InternedPlus, OfTwoNilHandlesIsTheEmptyString) {
  EXPECT_TRUE(isEmptyEntry(lvString() + lvString()));
}

TEST(InternedPlusAssign, JoinsInPlaceAndReleasesTheOldEntry) {
  lvString handle("ab");
  lvString& answer = handle += "cd";
  EXPECT_EQ(&answer, &handle);
  EXPECT_STREQ(handle, "abcd");
  EXPECT_EQ(countOf(handle), 1);
  EXPECT_EQ(entriesWith("ab"), 0);
  handle += lvString("ef");
  EXPECT_STREQ(handle, "abcdef");
  EXPECT_EQ(entriesWith("abcd"), 0);
}

TEST(InternedPlusAssign, OfNothingChangesNothing) {
  lvString handle("ab");
  char const* const missing = nullptr;
  handle += missing;
  handle += "";
  handle += lvString();
  EXPECT_STREQ(handle, "ab");
  EXPECT_EQ(countOf(handle), 1);
}

TEST(InternedPlusAssign, ToNilIsWhatIsAdded) {
  lvString handle;
  char const* const missing = nullptr;
  handle += missing;
  EXPECT_TRUE(handle.isNil());
  handle += "ab";
  EXPECT_STREQ(handle, "ab");
  lvString nil;
  nil += lvString();
  EXPECT_TRUE(isEmptyEntry(nil));
}

TEST(InternedPlusAssign, MayAddTheHandleToItself) {
  lvString handle("ab");
  handle += handle;
  EXPECT_STREQ(handle, "abab");
  handle += static_cast<char const*>(handle);
  EXPECT_STREQ(handle, "abababab");
}

TEST(InternedPlusAssign, KeepsTheBookkeeping) {
  lvString handle("ab");
  setBookkeeping(handle, Marks);
  handle += "cd";
  EXPECT_EQ(bookkeepingOf(handle), Marks & test::AllMarks);
}

// ---- Cutting -----------------------------------------------------------------------------------

TEST(InternedGetLeft, GivesTheFirstBytes) {
  lvString const hello("hello");
  EXPECT_TRUE(isShared(hello.getLeft(2), lvString("he")));
  EXPECT_TRUE(isShared(hello.getLeft(4), lvString("hell")));
  EXPECT_TRUE(isEmptyEntry(hello.getLeft(0)));
}

TEST(InternedGetLeft, IsACopyWhenNothingIsCut) {
  lvString const hello("hello");
  for (int const n : {-1, 5, 6, 100, INT_MAX, INT_MIN}) {
    EXPECT_TRUE(isShared(hello.getLeft(n), hello)) << n;
  }
  EXPECT_TRUE(lvString().getLeft(0).isNil());
  EXPECT_TRUE(lvString().getLeft(3).isNil());
}

TEST(InternedGetMid, GivesTheBytesFromAPlaceOn) {
  lvString const hello("hello");
  EXPECT_STREQ(hello.getMid(1, 3), "ell");
  EXPECT_STREQ(hello.getMid(0, 5), "hello");
  EXPECT_STREQ(hello.getMid(4, 1), "o");
  EXPECT_TRUE(isShared(hello.getMid(0, 5), hello));
}

TEST(InternedGetMid, CutsAtTheEndOfTheText) {
  lvString const hello("hello");
  EXPECT_STREQ(hello.getMid(3, 100), "lo");
  EXPECT_STREQ(hello.getMid(3, -1), "lo");
  EXPECT_STREQ(hello.getMid(1, INT_MAX), "ello");
  EXPECT_STREQ(hello.getMid(4, INT_MAX), "o");
}

TEST(InternedGetMid, TakesANegativeStartForZero) {
  lvString const hello("hello");
  EXPECT_STREQ(hello.getMid(-2, 2), "he");
  EXPECT_STREQ(hello.getMid(INT_MIN, 2), "he");
  EXPECT_STREQ(hello.getMid(-1, -1), "hello");
}

TEST(InternedGetMid, FromTheEndOnIsTheEmptyString) {
  lvString const hello("hello");
  for (int const start : {5, 7, INT_MAX}) {
    EXPECT_TRUE(isEmptyEntry(hello.getMid(start, 1))) << start;
    EXPECT_TRUE(isEmptyEntry(hello.getMid(start, -1))) << start;
  }
  EXPECT_TRUE(isEmptyEntry(lvString().getMid(0, 1)));
  EXPECT_TRUE(isEmptyEntry(lvString("").getMid(0, -1)));
}

TEST(InternedGetMid, OfNoBytesIsTheEmptyString) {
  lvString const hello("hello");
  for (int const count : {0, -2, INT_MIN}) {
    EXPECT_TRUE(isEmptyEntry(hello.getMid(1, count))) << count;
  }
}

TEST(InternedGetRight, GivesTheLastBytes) {
  lvString const hello("hello");
  EXPECT_TRUE(isShared(hello.getRight(2), lvString("lo")));
  EXPECT_STREQ(hello.getRight(4), "ello");
  EXPECT_TRUE(isEmptyEntry(hello.getRight(0)));
}

TEST(InternedGetRight, IsTheWholeTextWhenNothingIsCut) {
  lvString const hello("hello");
  for (int const n : {-1, 5, 9, INT_MAX, INT_MIN}) {
    EXPECT_TRUE(isShared(hello.getRight(n), hello)) << n;
  }
}

TEST(InternedGetRight, OfNilIsNilOrTheEmptyString) {
  EXPECT_TRUE(lvString().getRight(0).isNil());
  EXPECT_TRUE(lvString().getRight(-1).isNil());
  EXPECT_TRUE(isEmptyEntry(lvString().getRight(1)));
}

TEST(InternedCutting, KeepsNulBytes) {
  lvString const text = ofBytes("ab\0cd"s);
  EXPECT_EQ(textOf(text.getLeft(3)), "ab\0"s);
  EXPECT_EQ(textOf(text.getMid(1, 3)), "b\0c"s);
  EXPECT_EQ(textOf(text.getRight(3)), "\0cd"s);
}

TEST(InternedCutting, LeavesTheOperandAlone) {
  lvString const hello("hello");
  hello.getLeft(2);
  hello.getMid(1, 2);
  hello.getRight(2);
  EXPECT_STREQ(hello, "hello");
  EXPECT_EQ(countOf(hello), 1);
  EXPECT_EQ(entriesWith("he"), 0);
}

TEST(InternedCutting, OfALongTextCountsFromItsEnd) {
  std::string const text = std::string(70000, 'x') + "end";
  lvString const handle(text.c_str());
  EXPECT_STREQ(handle.getRight(3), "end");
  EXPECT_STREQ(handle.getMid(70000, -1), "end");
  EXPECT_EQ(handle.getLeft(70000).length(), 70000);
}

}  // namespace
