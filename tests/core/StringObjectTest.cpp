#include "tarselvalues/core/lvrString.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <type_traits>
#include <vector>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringObjects.h"
#include "tarselvalues/core/lvString.h"

namespace {

using namespace std::string_literals;
using test::bytesOf;
using test::countOf;
using test::flagsOf;
using test::hasCachedHash;
using test::hasCachedInteger;
using test::HeldString;
using test::integer;
using test::isBorrowed;
using test::modelHash;
using test::pointer;
using test::setCopy;
using test::StringFields;
using test::StringObjectTest;

static_assert(std::is_base_of_v<lvReferencable, lvrString>);
static_assert(std::has_virtual_destructor_v<lvrString>);

constexpr int NotSupported = -38;
constexpr int OutOfMemory = -12;
constexpr int Modes[] = {0, 1, 2, 3};

using StringObjectMaking = StringObjectTest;
using StringObjectSetText = StringObjectTest;
using StringObjectJoin = StringObjectTest;
using StringObjectRelease = StringObjectTest;
using StringObjectLength = StringObjectTest;
using StringObjectHashCode = StringObjectTest;
using StringObjectEquiv = StringObjectTest;
using StringObjectCompareTo = StringObjectTest;
using StringObjectGetInteger = StringObjectTest;
using StringObjectSetFrom = StringObjectTest;
using StringObjectToString = StringObjectTest;

unsigned hashOf(std::string const& text) {
  return lvrString::computeHashCode(text.data(), static_cast<int>(text.size()));
}

// ---- Making ------------------------------------------------------------------------------------

TEST_F(StringObjectMaking, GivesNoTextNoLengthAndNothingCached) {
  EXPECT_EQ(string.getText(), nullptr);
  EXPECT_EQ(string.getLength(), 0);
  EXPECT_EQ(StringFields::length(string), 0U);
  EXPECT_EQ(StringFields::flags(string), 0U);
}

TEST_F(StringObjectMaking, GivesAnObjectOfTheStringKind) {
  EXPECT_EQ(string.getKind(), lvReferencable::StringKind);
  EXPECT_EQ(held.cell.getType(), lvArg::StringType);
  EXPECT_FALSE(string.isInterned());
}

TEST_F(StringObjectMaking, ByTheDefaultConstructorMethodGivesANewObjectNobodyHolds) {
  lvReferencable* const made = lvrString::defaultCtorMethod();
  EXPECT_EQ(countOf(*made), 0);
  EXPECT_NE(made, &string);
  auto* const madeString = dynamic_cast<lvrString*>(made);
  ASSERT_NE(madeString, nullptr);
  EXPECT_EQ(madeString->getText(), nullptr);
  delete made;
}

TEST(StringObjectConstants, AreTheTextsForMissingValues) {
  EXPECT_STREQ(lvrString::strNil, "(NIL)");
  EXPECT_STREQ(lvrString::strNull, "(NULL)");
  EXPECT_STREQ(lvrString::strEmpty, "");
}

TEST_F(StringObjectMaking, NamesItsClassByTheInternedString) {
  lvReferencable const& object = string;
  EXPECT_STREQ(object.getClassDesc(), "String");
  EXPECT_EQ(&object.getClassDesc(), &lvrString::getStaticClassDesc());
  EXPECT_EQ(object.getClassDesc().getReferencable(), lvString("String").getReferencable());
}

// ---- Setting one text --------------------------------------------------------------------------

TEST_F(StringObjectSetText, BorrowsTheCallersPointer) {
  char const text[] = "borrowed";
  EXPECT_EQ(string.setStringData(text, -1, lvrString::Borrow), 0);
  EXPECT_EQ(string.getText(), text);
  EXPECT_EQ(string.getLength(), 8);
  EXPECT_EQ(flagsOf(string), test::Borrowed);
}

TEST_F(StringObjectSetText, CopiesAndOwnsWithEitherOwningMode) {
  char const text[] = "copied";
  for (int const mode : {lvrString::CopyAndOwn, lvrString::CopyAndOwnEmpty}) {
    EXPECT_EQ(string.setStringData(text, -1, mode), 0);
    EXPECT_NE(string.getText(), text);
    EXPECT_STREQ(string.getText(), "copied");
    EXPECT_EQ(string.getLength(), 6);
    EXPECT_FALSE(isBorrowed(string));
  }
}

TEST_F(StringObjectSetText, MeasuresATextOfLengthMinusOne) {
  string.setStringData("abc\0def", -1, lvrString::CopyAndOwn);
  EXPECT_EQ(bytesOf(string), "abc");
}

TEST_F(StringObjectSetText, CopiesTheGivenLengthAndEndsItWithNul) {
  string.setStringData("abcdef", 4, lvrString::CopyAndOwn);
  EXPECT_STREQ(string.getText(), "abcd");
  EXPECT_EQ(string.getLength(), 4);
}

TEST_F(StringObjectSetText, KeepsNulBytesInside) {
  string.setStringData("a\0b\0", 4, lvrString::CopyAndOwn);
  EXPECT_EQ(bytesOf(string), "a\0b\0"s);
  EXPECT_EQ(string.getText()[4], '\0');
}

TEST_F(StringObjectSetText, BorrowsTheStartOfALongerText) {
  char const text[] = "abcdef";
  string.setStringData(text, 2, lvrString::Borrow);
  EXPECT_EQ(string.getText(), text);
  EXPECT_EQ(string.getLength(), 2);
}

TEST_F(StringObjectSetText, OfNoBytesLeavesNoTextUnlessBothModeBitsAreSet) {
  for (int const mode : {0, 1, 2}) {
    setCopy(string, "old");
    EXPECT_EQ(string.setStringData("ignored", 0, mode), 0);
    EXPECT_EQ(string.getText(), nullptr) << mode;
    EXPECT_EQ(StringFields::length(string), 0U);
    EXPECT_EQ(isBorrowed(string), mode != 2) << mode;
  }
}

TEST_F(StringObjectSetText, OfNoBytesWithBothModeBitsBorrowsTheEmptyText) {
  setCopy(string, "old");
  EXPECT_EQ(string.setStringData("ignored", 0, lvrString::CopyAndOwnEmpty), 0);
  EXPECT_EQ(string.getText(), lvrString::strEmpty);
  EXPECT_EQ(string.getLength(), 0);
  EXPECT_TRUE(isBorrowed(string));
}

TEST_F(StringObjectSetText, MeasuresAnEmptyTextAsNoBytes) {
  string.setStringData("", -1, lvrString::CopyAndOwn);
  EXPECT_EQ(string.getText(), nullptr);
  string.setStringData("", -1, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(string.getText(), lvrString::strEmpty);
}

TEST_F(StringObjectSetText, TakesANullTextForAnEmptyOne) {
  for (int const length : {-1, 0, 3}) {
    EXPECT_EQ(string.setStringData(nullptr, length, lvrString::CopyAndOwnEmpty), 0);
    EXPECT_EQ(string.getText(), lvrString::strEmpty);
    EXPECT_EQ(string.getLength(), 0);
  }
}

TEST_F(StringObjectSetText, DropsTheCachedInteger) {
  string.setFrom(integer(7));
  string.setStringData("8", -1, lvrString::Borrow);
  EXPECT_FALSE(hasCachedInteger(string));
  EXPECT_EQ(string.getInteger(), 8);
}

TEST_F(StringObjectSetText, DropsTheCachedHash) {
  for (char const* const text : {"new text", ""}) {
    setCopy(string, "old text");
    string.hashCode();
    string.setStringData(text, -1, lvrString::CopyAndOwnEmpty);
    EXPECT_FALSE(hasCachedHash(string));
    EXPECT_EQ(string.hashCode(), modelHash(text));
  }
}

TEST_F(StringObjectSetText, MayCopyAPartOfItsOwnText) {
  setCopy(string, "abcdef");
  EXPECT_EQ(string.setStringData(string.getText() + 2, 3, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(bytesOf(string), "cde");
}

TEST_F(StringObjectSetText, CopiesAPartOfItsOwnTextThatIsToBeBorrowed) {
  setCopy(string, "abcdef");
  EXPECT_EQ(string.setStringData(string.getText() + 2, 3, lvrString::Borrow), 0);
  EXPECT_STREQ(string.getText(), "cde");
  EXPECT_FALSE(isBorrowed(string));
}

TEST_F(StringObjectSetText, MayBorrowAgainWhatItBorrows) {
  char const text[] = "borrowed";
  string.setStringData(text, -1, lvrString::Borrow);
  string.setStringData(text + 3, -1, lvrString::Borrow);
  EXPECT_EQ(string.getText(), text + 3);
}

// ---- Joining pieces ----------------------------------------------------------------------------

TEST_F(StringObjectJoin, MeasuresAllPiecesWithoutLengths) {
  char const* pieces[] = {"one ", "", "two", " three"};
  EXPECT_EQ(string.setStringDataFast(4, pieces, nullptr, lvrString::CopyAndOwn), 0);
  EXPECT_STREQ(string.getText(), "one two three");
  EXPECT_EQ(string.getLength(), 13);
  EXPECT_FALSE(isBorrowed(string));
}

TEST_F(StringObjectJoin, TakesTheGivenLengthsAndLeavesThem) {
  char const* pieces[] = {"abc", "d\0f", "ghi"};
  int lengths[] = {2, 3, 0};
  EXPECT_EQ(string.setStringDataFast(3, pieces, lengths, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(bytesOf(string), "abd\0f"s);
  EXPECT_EQ(string.getText()[5], '\0');
  EXPECT_EQ(std::vector<int>(lengths, lengths + 3), (std::vector<int>{2, 3, 0}));
}

TEST_F(StringObjectJoin, SkipsPiecesWithoutBytes) {
  char const* pieces[] = {"", "a", nullptr, "b", nullptr};
  int lengths[] = {0, -1, 0, 1, 4};
  EXPECT_EQ(string.setStringDataFast(5, pieces, lengths, lvrString::CopyAndOwn), 0);
  EXPECT_STREQ(string.getText(), "ab");
}

TEST_F(StringObjectJoin, OfNoPiecesIsTheEmptyText) {
  char const* pieces[] = {"unread"};
  for (int const mode : Modes) {
    setCopy(string, "x");
    string.releaseData();
    EXPECT_EQ(string.setStringDataFast(0, pieces, nullptr, mode), 0);
    EXPECT_EQ(string.getText(), mode == 3 ? lvrString::strEmpty : nullptr);
    EXPECT_EQ(StringFields::length(string), 0U);
    EXPECT_EQ(isBorrowed(string), mode != 2) << mode;
  }
}

TEST_F(StringObjectJoin, OfEmptyPiecesIsTheEmptyText) {
  char const* pieces[] = {"", ""};
  for (int const mode : Modes) {
    EXPECT_EQ(string.setStringDataFast(2, pieces, nullptr, mode), 0);
    EXPECT_EQ(string.getText(), mode == 3 ? lvrString::strEmpty : nullptr);
    EXPECT_EQ(isBorrowed(string), mode != 2) << mode;
  }
}

TEST_F(StringObjectJoin, OfOnePieceBorrowsItInModeBorrow) {
  char const* pieces[] = {"one piece"};
  int lengths[] = {3};
  EXPECT_EQ(string.setStringDataFast(1, pieces, lengths, lvrString::Borrow), 0);
  EXPECT_EQ(string.getText(), pieces[0]);
  EXPECT_EQ(string.getLength(), 3);
}

TEST_F(StringObjectJoin, OfMoreThanTheAddressSpaceRunsOutOfMemory) {
  setCopy(string, "old");
  unsigned const hash = string.hashCode();
  char const* pieces[] = {"a", "b", "c"};
  int lengths[] = {INT_MAX / 2, INT_MAX / 2, 2};
  EXPECT_EQ(string.setStringDataFast(3, pieces, lengths, lvrString::CopyAndOwn), OutOfMemory);
  EXPECT_EQ(bytesOf(string), "old");
  EXPECT_EQ(flagsOf(string), test::HashValid);
  EXPECT_EQ(StringFields::cachedHash(string), hash);
}

// ---- Releasing ---------------------------------------------------------------------------------

TEST_F(StringObjectRelease, LeavesNoTextWhereItWasOwned) {
  setCopy(string, "owned");
  EXPECT_EQ(string.releaseData(), 0);
  EXPECT_EQ(string.getText(), nullptr);
  EXPECT_EQ(string.getInteger(), -1);
}

TEST_F(StringObjectRelease, KeepsABorrowedText) {
  char const text[] = "borrowed";
  string.setStringData(text, -1, lvrString::Borrow);
  EXPECT_EQ(string.releaseData(), 0);
  EXPECT_EQ(string.getText(), text);
  EXPECT_EQ(string.getLength(), 8);
}

TEST_F(StringObjectRelease, OfNoTextIsHarmless) {
  EXPECT_EQ(string.releaseData(), 0);
  setCopy(string, "owned");
  string.releaseData();
  EXPECT_EQ(string.releaseData(), 0);
  EXPECT_EQ(string.getText(), nullptr);
}

TEST_F(StringObjectRelease, IsWhatFinalizeDoes) {
  setCopy(string, "owned");
  EXPECT_EQ(string.finalize(), 0);
  EXPECT_EQ(string.getText(), nullptr);
  string.setStringData("borrowed", -1, lvrString::Borrow);
  EXPECT_EQ(string.finalize(), 0);
  EXPECT_STREQ(string.getText(), "borrowed");
}

// ---- Lengths -----------------------------------------------------------------------------------

TEST_F(StringObjectLength, IsStoredBelowItsLimitAndCountedFromThere) {
  for (int const length : {65533, 65534, 65535, 65536, 200000}) {
    std::string const text(static_cast<std::size_t>(length), 'x');
    ASSERT_EQ(setCopy(string, text), 0);
    EXPECT_EQ(string.getLength(), length);
    EXPECT_EQ(StringFields::length(string), static_cast<unsigned>(length < 65535 ? length : 65535));
    EXPECT_EQ(string.getKnownLength(), length < 65535 ? length : -1);
    EXPECT_EQ(bytesOf(string), text);
  }
}

TEST_F(StringObjectLength, CountsBytesBehindANulBelowTheLimitOnly) {
  std::string text(65534, 'x');
  text[100] = '\0';
  setCopy(string, text);
  EXPECT_EQ(string.getLength(), 65534);
  for (std::size_t const length : std::vector<std::size_t>{65535, 65536}) {
    text.resize(length, 'x');
    setCopy(string, text);
    EXPECT_EQ(string.getLength(), 100);
  }
}

TEST_F(StringObjectLength, IsCountedAnewInALongTextThatChanges) {
  std::string text(65535, 'x');
  string.setStringData(text.data(), 65535, lvrString::Borrow);
  text[65000] = '\0';
  EXPECT_EQ(string.getLength(), 65000);
}

// ---- Hashes ------------------------------------------------------------------------------------

TEST(StringHash, CountsTheFirstByteTwice) {
  EXPECT_EQ(hashOf(""), 177573U);
  EXPECT_EQ(hashOf("a"), (177573U + 97) * 33 + 97 + 257);
  EXPECT_EQ(hashOf("ab"), ((177573U + 97) * 33 + 97) * 33 + 98 + 2 * 257);
}

TEST(StringHash, TakesBytesForUnsigned) {
  EXPECT_EQ(hashOf("\xFF"), (177573U + 255) * 33 + 255 + 257);
  EXPECT_EQ(hashOf("a\x80"), ((177573U + 97) * 33 + 97) * 33 + 128 + 2 * 257);
}

TEST(StringHash, MixesEveryByteOfUpToSeventeen) {
  std::string const text(17, 'x');
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string changed = text;
    changed[i] = 'y';
    EXPECT_NE(hashOf(changed), hashOf(text)) << i;
  }
}

TEST(StringHash, MixesTheSeventeenBytesBeforeTheLastOfMore) {
  std::string const text(30, 'x');
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string changed = text;
    changed[i] = 'y';
    bool const isMixed = i == 0 || (i >= 30 - 18 && i <= 30 - 2);
    EXPECT_EQ(hashOf(changed) != hashOf(text), isMixed) << i;
  }
}

TEST(StringHash, IsWhatTheModelSaysAroundTheLimitOfLongTexts) {
  std::string text;
  for (int i = 0; i < 60; ++i) {
    EXPECT_EQ(hashOf(text), modelHash(text)) << text.size();
    text += static_cast<char>(255 - 7 * i);
  }
}

TEST(StringHash, MixesNulBytes) {
  EXPECT_EQ(hashOf("a\0b"s), modelHash("a\0b"s));
  EXPECT_NE(hashOf("a\0b"s), hashOf("a\0c"s));
}

TEST_F(StringObjectHashCode, IsThatOfTheText) {
  setCopy(string, "some text");
  EXPECT_EQ(string.hashCode(), modelHash("some text"));
  EXPECT_EQ(held.cell.hashCode(), modelHash("some text"));
}

TEST_F(StringObjectHashCode, IsComputedOnce) {
  char text[] = "before";
  string.setStringData(text, -1, lvrString::Borrow);
  EXPECT_FALSE(hasCachedHash(string));
  unsigned const hash = string.hashCode();
  EXPECT_TRUE(hasCachedHash(string));
  EXPECT_EQ(StringFields::cachedHash(string), hash);
  text[0] = 'B';
  EXPECT_EQ(string.hashCode(), hash);
}

TEST_F(StringObjectHashCode, KeepsTheOtherFlags) {
  string.setFrom(integer(-3));
  string.hashCode();
  EXPECT_EQ(flagsOf(string), test::IntegerValid | test::HashValid);
  EXPECT_EQ(string.getInteger(), -3);
}

TEST_F(StringObjectHashCode, OfALongTextGoesByTheCountedLength) {
  std::string text(70000, 'x');
  setCopy(string, text);
  EXPECT_EQ(string.hashCode(), modelHash(text));
  text[66000] = '\0';
  setCopy(string, text);
  EXPECT_EQ(string.hashCode(), modelHash(std::string(66000, 'x')));
}

TEST_F(StringObjectHashCode, WithoutTextIsThatOfTheEmptyText) {
  EXPECT_EQ(string.hashCode(), 177573U);
  string.setStringData("", 0, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(string.hashCode(), 177573U);
}

// ---- Equivalence -------------------------------------------------------------------------------

int equiv(std::string const& a, std::string const& b) {
  return HeldString(a)->equiv(*HeldString(b));
}

TEST_F(StringObjectEquiv, HoldsForTheVeryObject) {
  EXPECT_EQ(string.equiv(string), 1);
  setCopy(string, "text");
  EXPECT_EQ(string.equiv(string), 1);
  EXPECT_FALSE(hasCachedHash(string));
}

TEST_F(StringObjectEquiv, HoldsForEqualTextsOfTwoObjects) {
  EXPECT_EQ(equiv("text", "text"), 1);
  EXPECT_EQ(equiv("text", "tex"), 0);
  EXPECT_EQ(equiv("text", "texT"), 0);
  EXPECT_EQ(equiv("\xE4", "\xE4"), 1);
}

TEST_F(StringObjectEquiv, HoldsBetweenStringsWithoutText) {
  HeldString const other;
  EXPECT_EQ(string.equiv(*other), 1);
}

TEST_F(StringObjectEquiv, FailsBetweenNoTextAndTheEmptyText) {
  HeldString const empty;
  empty->setStringData("", 0, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(string.equiv(*empty), 0);
  EXPECT_EQ(empty->equiv(string), 0);
  EXPECT_FALSE(hasCachedHash(string));
  EXPECT_FALSE(hasCachedHash(*empty));
}

TEST_F(StringObjectEquiv, CachesBothHashes) {
  setCopy(string, "one");
  HeldString const other("two");
  EXPECT_EQ(string.equiv(*other), 0);
  EXPECT_TRUE(hasCachedHash(string));
  EXPECT_TRUE(hasCachedHash(*other));
}

TEST_F(StringObjectEquiv, GoesByTheCachedHashesFirst) {
  char text[] = "same";
  string.setStringData(text, -1, lvrString::Borrow);
  string.hashCode();
  HeldString const other("sane");
  text[2] = 'n';
  EXPECT_EQ(string.equiv(*other), 0);
  EXPECT_EQ(other->equiv(string), 0);
}

TEST_F(StringObjectEquiv, TellsTextsOfOneHashApart) {
  std::string const text(20, 'x');
  std::string changed = text;
  changed.back() = 'y';
  ASSERT_EQ(modelHash(text), modelHash(changed));
  EXPECT_EQ(equiv(text, changed), 0);
}

// A text that begins another of the same hash: what the longer one has more is weighed up by the
// bytes that it does not mix in.
std::string beginningOfOneHash(std::size_t size) { return std::string(size - 2, 'z') + "sY"; }

TEST_F(StringObjectEquiv, TellsLengthsOfOneHashApart) {
  std::string const shorter = beginningOfOneHash(20);
  std::string const longer = shorter + "!";
  ASSERT_EQ(modelHash(shorter), modelHash(longer));
  EXPECT_EQ(equiv(shorter, longer), 0);
  EXPECT_EQ(equiv(longer, shorter), 0);
}

TEST_F(StringObjectEquiv, ComparesWholeTextsFromTheLengthLimitOn) {
  for (std::size_t const size : std::vector<std::size_t>{65533, 65534, 65535, 65536}) {
    std::string const shorter = beginningOfOneHash(size);
    std::string const longer = shorter + "!";
    EXPECT_EQ(equiv(shorter, shorter), 1) << size;
    EXPECT_EQ(equiv(shorter, longer), 0) << size;
    EXPECT_EQ(equiv(longer, shorter), 0) << size;
  }
}

// ---- Order -------------------------------------------------------------------------------------

int compare(std::string const& a, std::string const& b) {
  return HeldString(a)->compareTo(*HeldString(b));
}

TEST_F(StringObjectCompareTo, IsTheOrderOfTheTexts) {
  EXPECT_LT(compare("abc", "abd"), 0);
  EXPECT_GT(compare("abd", "abc"), 0);
  EXPECT_LT(compare("ab", "abc"), 0);
  EXPECT_GT(compare("b", "abc"), 0);
  EXPECT_EQ(compare("abc", "abc"), 0);
}

TEST_F(StringObjectCompareTo, TakesBytesForUnsigned) {
  EXPECT_GT(compare("\x80", "\x7F"), 0);
  EXPECT_LT(compare("a", "\xFF"), 0);
}

TEST_F(StringObjectCompareTo, OfTheVeryObjectIsZero) {
  EXPECT_EQ(string.compareTo(string), 0);
  setCopy(string, "text");
  EXPECT_EQ(string.compareTo(string), 0);
}

TEST_F(StringObjectCompareTo, TakesNoTextForTheEmptyOne) {
  HeldString const other;
  EXPECT_EQ(string.compareTo(*other), 0);
  other->setStringData("", 0, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(string.compareTo(*other), 0);
  setCopy(*other, "a");
  EXPECT_LT(string.compareTo(*other), 0);
  EXPECT_GT(other->compareTo(string), 0);
}

// ---- Reading integers --------------------------------------------------------------------------

int readInteger(std::string const& text) { return HeldString(text)->getInteger(); }

TEST_F(StringObjectGetInteger, IsMinusOneWithoutText) { EXPECT_EQ(string.getInteger(), -1); }

TEST_F(StringObjectGetInteger, IsZeroOfTheEmptyText) {
  string.setStringData("", 0, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(string.getInteger(), 0);
  EXPECT_EQ(readInteger("\0x"s), 0);
}

TEST_F(StringObjectGetInteger, ReadsDecimalDigitsAndIgnoresWhatFollows) {
  EXPECT_EQ(readInteger("42"), 42);
  EXPECT_EQ(readInteger("17 apples"), 17);
  EXPECT_EQ(readInteger("017"), 17);
  EXPECT_EQ(readInteger("3.9"), 3);
  EXPECT_EQ(readInteger("9\0009"s), 9);
}

TEST_F(StringObjectGetInteger, SkipsLeadingBlanks) {
  EXPECT_EQ(readInteger("  42"), 42);
  EXPECT_EQ(readInteger(" \t\n\r42"), 42);
  EXPECT_EQ(readInteger("\v42"), -1);
  EXPECT_EQ(readInteger("\f42"), -1);
  EXPECT_EQ(readInteger(" $a"), 10);
}

TEST_F(StringObjectGetInteger, IsMinusOneOfBlanksAlone) {
  EXPECT_EQ(readInteger(" "), -1);
  EXPECT_EQ(readInteger("\r\n \t"), -1);
}

TEST_F(StringObjectGetInteger, IsMinusOneOfOtherTexts) {
  for (char const* const text : {"abc", "\xB2", "x1", ".5", "(NIL)", "tru", "truest", "fals", "T",
                                 "#", "#X", "#TT", "##", "F#"}) {
    EXPECT_EQ(readInteger(text), -1) << text;
  }
}

TEST_F(StringObjectGetInteger, ReadsTruthValuesInAnyCase) {
  for (char const* const text : {"#T", "#t", "true", "TRUE", "tRUE", "True"}) {
    EXPECT_EQ(readInteger(text), 1) << text;
  }
  for (char const* const text : {"#F", "#f", "false", "FALSE", "fALSE", "False"}) {
    EXPECT_EQ(readInteger(text), 0) << text;
  }
}

TEST_F(StringObjectGetInteger, ReadsTruthValuesAsTheWholeTextOnly) {
  EXPECT_EQ(readInteger("#T "), -1);
  EXPECT_EQ(readInteger("true "), -1);
  EXPECT_EQ(readInteger("true\0"s), -1);
  EXPECT_EQ(readInteger("false!"), -1);
}

TEST_F(StringObjectGetInteger, ReadsHexadecimalDigits) {
  EXPECT_EQ(readInteger("$ff"), 255);
  EXPECT_EQ(readInteger("$FFg"), 255);
  EXPECT_EQ(readInteger("0x1F"), 31);
  EXPECT_EQ(readInteger("0X1f"), 31);
  EXPECT_EQ(readInteger("  0x10"), 16);
}

TEST_F(StringObjectGetInteger, IsMinusOneOfHexadecimalWithoutDigits) {
  for (char const* const text : {"$", "$g", "0x", "0xg", "0X ", "$-", "$ "}) {
    EXPECT_EQ(readInteger(text), -1) << text;
  }
}

TEST_F(StringObjectGetInteger, CutsToTheRangeOfInt) {
  EXPECT_EQ(readInteger("2147483647"), INT_MAX);
  EXPECT_EQ(readInteger("2147483648"), INT_MAX);
  EXPECT_EQ(readInteger("99999999999999999999"), INT_MAX);
  EXPECT_EQ(readInteger("$7fffffff"), INT_MAX);
  EXPECT_EQ(readInteger("$ffffffff"), INT_MAX);
  EXPECT_EQ(readInteger("0x80000000"), INT_MAX);
}

TEST_F(StringObjectGetInteger, ReadsALongText) {
  EXPECT_EQ(readInteger("12" + std::string(70000, ' ')), 12);
  EXPECT_EQ(readInteger(std::string(70000, ' ') + "12"), 12);
}

TEST_F(StringObjectGetInteger, GivesTheCachedValueBackWithItsSign) {
  for (int const value : {-2048, -1, 0, 1, 2047}) {
    string.setFrom(integer(value));
    EXPECT_EQ(string.getInteger(), value);
  }
}

// ---- Setting from a value ----------------------------------------------------------------------

TEST_F(StringObjectSetFrom, NilBorrowsTheTextForNil) {
  setCopy(string, "old");
  EXPECT_EQ(string.setFrom(lvArg()), 0);
  EXPECT_EQ(string.getText(), lvrString::strNil);
  EXPECT_EQ(string.getLength(), 5);
  EXPECT_EQ(flagsOf(string), test::Borrowed);
}

TEST_F(StringObjectSetFrom, AnIntegerOwnsItsDecimalText) {
  EXPECT_EQ(string.setFrom(integer(-1234567)), 0);
  EXPECT_EQ(bytesOf(string), "-1234567");
  EXPECT_FALSE(isBorrowed(string));
  string.setFrom(integer(INT_MIN));
  EXPECT_EQ(bytesOf(string), "-2147483648");
  string.setFrom(integer(INT_MAX));
  EXPECT_EQ(bytesOf(string), "2147483647");
}

TEST_F(StringObjectSetFrom, ASmallIntegerCachesIt) {
  for (int const value : {-2048, -2047, -1, 0, 7, 2047}) {
    string.setFrom(integer(value));
    EXPECT_EQ(flagsOf(string), test::IntegerValid) << value;
    EXPECT_EQ(StringFields::flags(string) >> 4, static_cast<unsigned>(value) & 0xFFF);
  }
}

TEST_F(StringObjectSetFrom, AnyOtherIntegerCachesNothing) {
  for (int const value : {-2049, 2048, 5000, INT_MIN, INT_MAX}) {
    string.setFrom(integer(value));
    EXPECT_EQ(flagsOf(string), 0U) << value;
  }
  string.setFrom(integer(5000));
  EXPECT_EQ(string.getInteger(), 5000);
}

TEST_F(StringObjectSetFrom, APointerOwnsItsEightHexadecimalDigits) {
  EXPECT_EQ(string.setFrom(pointer(0x1234)), 0);
  EXPECT_EQ(bytesOf(string), "00001234");
  EXPECT_FALSE(isBorrowed(string));
  string.setFrom(pointer(0xDEADBEEF));
  EXPECT_EQ(bytesOf(string), "deadbeef");
  string.setFrom(pointer(0));
  EXPECT_EQ(bytesOf(string), "00000000");
}

TEST_F(StringObjectSetFrom, ASmallPointerCachesIt) {
  string.setFrom(pointer(2047));
  EXPECT_TRUE(hasCachedInteger(string));
  EXPECT_EQ(string.getInteger(), 2047);
  string.setFrom(pointer(2048));
  EXPECT_FALSE(hasCachedInteger(string));
  string.setFrom(pointer(static_cast<std::uintptr_t>(-2048)));
  EXPECT_EQ(string.getInteger(), -2048);
}

TEST_F(StringObjectSetFrom, AStringCopiesItsText) {
  HeldString const source("a\0b"s);
  EXPECT_EQ(string.setFrom(source.cell), 0);
  EXPECT_EQ(bytesOf(string), "a\0b"s);
  EXPECT_NE(string.getText(), source->getText());
  EXPECT_FALSE(isBorrowed(string));
  EXPECT_EQ(countOf(*source), 1);
}

TEST_F(StringObjectSetFrom, AStringCopiesABorrowedTextToo) {
  HeldString const source;
  source->setFrom(lvArg());
  EXPECT_EQ(string.setFrom(source.cell), 0);
  EXPECT_EQ(bytesOf(string), "(NIL)");
  EXPECT_NE(string.getText(), lvrString::strNil);
}

TEST_F(StringObjectSetFrom, AStringTakesNoneOfItsCaches) {
  HeldString const source;
  source->setFrom(integer(12));
  source->hashCode();
  string.setFrom(source.cell);
  EXPECT_EQ(flagsOf(string), 0U);
}

TEST_F(StringObjectSetFrom, AnInternedStringMakesNoEntryOfIt) {
  lvString const source("interned");
  EXPECT_EQ(string.setFrom(source), 0);
  EXPECT_EQ(bytesOf(string), "interned");
  EXPECT_FALSE(string.isInterned());
}

TEST_F(StringObjectSetFrom, AStringWithoutTextBorrowsTheEmptyText) {
  HeldString const source;
  setCopy(string, "old");
  EXPECT_EQ(string.setFrom(source.cell), 0);
  EXPECT_EQ(string.getText(), lvrString::strEmpty);
  setCopy(*source, "gone");
  source->releaseData();
  EXPECT_EQ(string.setFrom(source.cell), 0);
  EXPECT_EQ(string.getText(), lvrString::strEmpty);
}

TEST_F(StringObjectSetFrom, AStringTagWithoutObjectBorrowsTheEmptyText) {
  setCopy(string, "old");
  EXPECT_EQ(string.setFrom(test::unheld(test::string("x"))), 0);
  EXPECT_EQ(string.getText(), lvrString::strEmpty);
}

TEST_F(StringObjectSetFrom, ALongStringCopiesItToItsFirstNul) {
  std::string text(70000, 'x');
  HeldString const source(text);
  string.setFrom(source.cell);
  EXPECT_EQ(bytesOf(string), text);
  text[300] = '\0';
  setCopy(*source, text);
  string.setFrom(source.cell);
  EXPECT_EQ(bytesOf(string), text.substr(0, 300));
  EXPECT_EQ(string.getKnownLength(), 300);
}

TEST_F(StringObjectSetFrom, ItselfChangesNothing) {
  string.setFrom(integer(5));
  string.hashCode();
  char const* const text = string.getText();
  EXPECT_EQ(string.setFrom(held.cell), 0);
  EXPECT_EQ(string.getText(), text);
  EXPECT_EQ(flagsOf(string), test::IntegerValid | test::HashValid);
}

TEST_F(StringObjectSetFrom, AnyOtherValueIsRefused) {
  string.setFrom(integer(5));
  char const* const text = string.getText();
  lvArg const object(*new lvReferencable);
  for (lvArg const& value : {test::newMap(), test::newList(), test::newClass(), object}) {
    EXPECT_EQ(string.setFrom(value), NotSupported);
    EXPECT_EQ(string.getText(), text);
    EXPECT_EQ(flagsOf(string), test::IntegerValid);
  }
  for (unsigned const tag : test::unknownTags()) {
    lvArg cell;
    EXPECT_EQ(string.setFrom(test::makeUnknown(cell, tag)), NotSupported) << tag;
  }
}

TEST_F(StringObjectSetFrom, IgnoresTheBookkeepingOfTheCell) {
  EXPECT_EQ(string.setFrom(test::marked(integer(31), test::AllMarks)), 0);
  EXPECT_EQ(bytesOf(string), "31");
}

// ---- As a value --------------------------------------------------------------------------------

TEST_F(StringObjectToString, TakesAReferenceToThisString) {
  {
    lvArg const value = string.toString();
    EXPECT_EQ(value.getType(), lvArg::StringType);
    EXPECT_EQ(value.getReferencable(), &string);
    EXPECT_EQ(countOf(string), 2);
  }
  EXPECT_EQ(countOf(string), 1);
}

}  // namespace
