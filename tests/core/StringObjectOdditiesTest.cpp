// What looks like a mistake of string objects, and is not.

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/Cells.h"
#include "support/StringObjects.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using namespace std::string_literals;
using test::bytesOf;
using test::HeldString;
using test::integer;
using test::isBorrowed;
using test::pointer;
using test::setCopy;

using StringObjectOddities = test::StringObjectTest;

// A string and an object that is none, so close that their distance is an int everywhere.
struct Neighbours {
  int distance() const {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(&object) -
                            reinterpret_cast<std::intptr_t>(static_cast<void const*>(&string)));
  }

  lvrString string;
  lvReferencable object;
};

TEST_F(StringObjectOddities, EquivWithAnObjectThatIsNoStringIsTheOthersAddressMinusItsOwn) {
  Neighbours const neighbours;
  EXPECT_EQ(neighbours.string.equiv(neighbours.object), neighbours.distance());
  EXPECT_NE(neighbours.distance(), 0);
}

TEST_F(StringObjectOddities, EquivOfOtherObjectsWithAStringFails) {
  Neighbours const neighbours;
  EXPECT_EQ(neighbours.object.equiv(neighbours.string), 0);
}

TEST_F(StringObjectOddities, CompareToWithAnObjectThatIsNoStringIsTheOthersAddressMinusItsOwn) {
  Neighbours const neighbours;
  EXPECT_EQ(neighbours.string.compareTo(neighbours.object), neighbours.distance());
}

// Between the heap and the stack of a 64-bit program the distance is no int.
TEST_F(StringObjectOddities, EquivWithAFarObjectIsTheDistanceCutToAnInt) {
  lvReferencable const object;
  auto const distance = static_cast<std::intptr_t>(
      reinterpret_cast<std::uintptr_t>(&object) -
      reinterpret_cast<std::uintptr_t>(static_cast<void const*>(&string)));
  EXPECT_EQ(string.equiv(object), std::clamp<std::int64_t>(distance, INT_MIN, INT_MAX));
  EXPECT_NE(string.equiv(object), 0);
}

TEST_F(StringObjectOddities, BorrowersOfOnePointerAreEquivalentWhateverTheirLengths) {
  char const text[] = "abcdef";
  HeldString const other;
  string.setStringData(text, 2, lvrString::Borrow);
  other->setStringData(text, 6, lvrString::Borrow);
  EXPECT_EQ(string.equiv(*other), 1);
  EXPECT_EQ(other->equiv(string), 1);
}

TEST_F(StringObjectOddities, TextsThatDifferBehindANulAreEquivalentWhereTheirHashesAgree) {
  setCopy(string, "same hash\0 and length."s);
  HeldString const other("same hash\0 and length!"s);
  EXPECT_EQ(string.equiv(*other), 1);
  HeldString const otherHash("same hash\0 but length."s);
  EXPECT_EQ(string.equiv(*otherHash), 0);
}

TEST_F(StringObjectOddities, OrderEndsAtTheFirstNul) {
  setCopy(string, "a\0b"s);
  HeldString const other("a\0c"s);
  EXPECT_EQ(string.compareTo(*other), 0);
  EXPECT_EQ(string.equiv(*other), 0);
}

TEST(StringHashOddities, LeavesTheLastByteOfALongTextOut) {
  std::string const text(20, 'x');
  EXPECT_EQ(lvrString::computeHashCode((std::string(19, 'x') + "y").c_str(), 20),
            lvrString::computeHashCode(text.c_str(), 20));
}

TEST(StringHashOddities, LeavesTheSecondByteOfALongTextOut) {
  std::string const text(20, 'x');
  EXPECT_EQ(lvrString::computeHashCode(("xy" + std::string(18, 'x')).c_str(), 20),
            lvrString::computeHashCode(text.c_str(), 20));
}

TEST(StringHashOddities, CountsTheByteAtATextOfLengthZero) {
  EXPECT_EQ(lvrString::computeHashCode("x", 0), 177573U + 'x');
  EXPECT_EQ(lvrString::computeHashCode("\xFF", 0), 177573U + 255);
}

TEST_F(StringObjectOddities, JoiningWritesMeasuredLengthsBack) {
  char const* pieces[] = {"abc", "defg", "", "hi"};
  int lengths[] = {-1, 2, -7, INT_MIN};
  EXPECT_EQ(string.setStringDataFast(4, pieces, lengths, lvrString::CopyAndOwn), 0);
  EXPECT_STREQ(string.getText(), "abcdehi");
  EXPECT_EQ(lengths[0], 3);
  EXPECT_EQ(lengths[1], 2);
  EXPECT_EQ(lengths[2], 0);
  EXPECT_EQ(lengths[3], 2);
}

// Frees a copy that `string` has and counts as borrowed, which nobody else would.
void freeUnownedCopy(lvrString& string) {
  auto* const copy = const_cast<char*>(string.getText());
  string.setStringData(lvrString::strEmpty, 0, lvrString::Borrow);
  std::free(copy);
}

TEST_F(StringObjectOddities, CopiesMadeWithModeOneAreNeverFreed) {
  char const text[] = "copy";
  string.setStringData(text, -1, 1);
  EXPECT_NE(string.getText(), text);
  EXPECT_TRUE(isBorrowed(string));
  string.releaseData();
  EXPECT_STREQ(string.getText(), "copy");
  freeUnownedCopy(string);
}

TEST_F(StringObjectOddities, PiecesJoinedWithoutTheOwningBitAreNeverFreed) {
  char const* pieces[] = {"a", "b"};
  for (int const mode : {0, 1}) {
    string.setStringDataFast(2, pieces, nullptr, mode);
    EXPECT_TRUE(isBorrowed(string));
    string.releaseData();
    EXPECT_STREQ(string.getText(), "ab");
    freeUnownedCopy(string);
  }
}

TEST_F(StringObjectOddities, FastSettersLeaveTheOldTextAllocated) {
  setCopy(string, "old");
  auto* const old = const_cast<char*>(string.getText());
  string.setStringDataFast("new", -1, lvrString::CopyAndOwn);
  EXPECT_STREQ(old, "old");
  EXPECT_STREQ(string.getText(), "new");
  std::free(old);
}

TEST_F(StringObjectOddities, ASignIsNoPartOfADecimalNumber) {
  EXPECT_EQ(HeldString("-5")->getInteger(), -1);
  EXPECT_EQ(HeldString("+5")->getInteger(), -1);
}

TEST_F(StringObjectOddities, ASignIsPartOfAHexadecimalNumber) {
  EXPECT_EQ(HeldString("$-5")->getInteger(), -5);
  EXPECT_EQ(HeldString("0x+1F")->getInteger(), 31);
  EXPECT_EQ(HeldString("$ 0x1F")->getInteger(), 31);
  EXPECT_EQ(HeldString("$-80000001")->getInteger(), INT_MIN);
}

TEST_F(StringObjectOddities, ABlankHidesTheWordBehindIt) {
  for (char const* const text : {" true", "\tFALSE", " #T", "\n#f"}) {
    EXPECT_EQ(HeldString(text)->getInteger(), -1) << text;
  }
}

TEST_F(StringObjectOddities, ABorrowedStartOfALongerTextIsReadToItsEnd) {
  string.setStringData("123456", 2, lvrString::Borrow);
  EXPECT_EQ(string.getInteger(), 123456);
  string.setStringData(" truest", 4, lvrString::Borrow);
  EXPECT_EQ(string.getInteger(), 1);
}

TEST_F(StringObjectOddities, ACachedAddressIsNotWhatItsTextReadsAs) {
  string.setFrom(pointer(0x10));
  EXPECT_EQ(string.getInteger(), 16);
  HeldString const copy;
  copy->setFrom(held.cell);
  EXPECT_EQ(bytesOf(*copy), "00000010");
  EXPECT_EQ(copy->getInteger(), 10);
}

TEST_F(StringObjectOddities, ACachedNegativeIntegerIsNotWhatItsTextReadsAs) {
  string.setFrom(integer(-5));
  EXPECT_EQ(string.getInteger(), -5);
  string.setFrom(integer(-5000));
  EXPECT_EQ(string.getInteger(), -1);
}

}  // namespace
