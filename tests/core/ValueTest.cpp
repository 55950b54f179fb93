#include "tarselvalues/core/lvValue.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::bookkeepingOf;
using test::countOf;
using test::integer;
using test::marked;
using test::Marks;
using test::newMap;
using test::OtherMarks;
using test::pointer;
using test::Probe;
using test::setBookkeeping;
using test::string;
using test::textOf;
using test::unheld;

lvrString const& stringIn(lvArg const& cell) {
  return static_cast<lvrString const&>(*cell.getReferencable());
}

// ---- Making
// --------------------------------------------------------------------------------------

TEST(ValueMaking, WithoutArgumentsGivesNil) {
  lvValue const value;
  EXPECT_TRUE(value.isNil());
  EXPECT_EQ(bookkeepingOf(value), 0U);
}

TEST(ValueMaking, FromAStringTakesAReference) {
  auto& text = *new lvrString;
  lvValue const value(text);
  EXPECT_EQ(value.getType(), lvArg::StringType);
  EXPECT_EQ(value.getReferencable(), &text);
  EXPECT_EQ(countOf(text), 1);
}

TEST(ValueMaking, FromACellCopiesItBookkeepingBitsIncluded) {
  lvArg const cell = marked(string("x"), Marks);
  lvValue const value(cell);
  EXPECT_TRUE(value.eq(cell));
  EXPECT_EQ(countOf(cell), 2);
  EXPECT_EQ(bookkeepingOf(value), Marks);
}

TEST(ValueMaking, FromAMovedCellHandsTheReferenceOver) {
  lvArg cell = string("x");
  lvValue const value(std::move(cell));
  EXPECT_EQ(textOf(value), "x");
  EXPECT_EQ(countOf(value), 1);
  EXPECT_TRUE(cell.isNil());  // NOLINT(bugprone-use-after-move)
}

TEST(ValueMaking, ByCopyAndAssignmentActsAsACell) {
  lvValue const original(marked(string("x"), Marks));
  lvValue copy(original);
  EXPECT_EQ(countOf(original), 2);
  EXPECT_EQ(bookkeepingOf(copy), Marks);
  lvValue assigned;
  setBookkeeping(assigned, OtherMarks);
  assigned = copy;
  EXPECT_EQ(countOf(original), 3);
  EXPECT_EQ(bookkeepingOf(assigned), OtherMarks);
  assigned = integer(4);
  EXPECT_EQ(assigned.getInt(), 4);
  EXPECT_EQ(countOf(original), 2);
}

// ---- Reading texts
// -------------------------------------------------------------------------------

// What getString() answers and does to a length of 99.
struct Reading {
  explicit Reading(lvValue const& value) : text(value.getString(&length)) {}

  int length = 99;
  char const* text;
};

TEST(ValueGetString, OfNilIsNilInParentheses) {
  Reading const reading{lvValue()};
  EXPECT_STREQ(reading.text, "(NIL)");
  EXPECT_EQ(reading.text, lvrString::strNil);
  EXPECT_EQ(reading.length, 5);
}

TEST(ValueGetString, OfAStringIsItsOwnText) {
  lvValue const value(string(std::string("a\0b", 3)));
  Reading const reading(value);
  EXPECT_EQ(reading.text, stringIn(value).getText());
  EXPECT_EQ(reading.length, 3);
}

TEST(ValueGetString, OfALongStringCountsItsBytes) {
  lvValue const value(string(std::string(70000, 'x')));
  EXPECT_EQ(Reading(value).length, 70000);
}

TEST(ValueGetString, OfAStringWithoutTextIsNullOfLengthZero) {
  lvValue const value(*new lvrString);
  Reading const reading(value);
  EXPECT_EQ(reading.text, nullptr);
  EXPECT_EQ(reading.length, 0);
}

TEST(ValueGetString, WithoutStringIsNullAndLeavesTheLengthAlone) {
  for (lvArg const& cell :
       {integer(3), pointer(8), newMap(), unheld(string("x")), lvArg(*new lvReferencable)}) {
    Reading const reading{lvValue(cell)};
    EXPECT_EQ(reading.text, nullptr);
    EXPECT_EQ(reading.length, 99);
  }
}

TEST(ValueGetString, MayBeAskedForTheTextAlone) {
  lvValue const value(string("text"));
  EXPECT_STREQ(value.getString(nullptr), "text");
  EXPECT_STREQ(lvValue().getString(nullptr), "(NIL)");
  EXPECT_EQ(lvValue(integer(3)).getString(nullptr), nullptr);
}

// ---- Reading integers
// ----------------------------------------------------------------------------

TEST(ValueGetInt, ReadsAString) {
  EXPECT_EQ(lvValue(string("17")).getInt(), 17);
  EXPECT_EQ(lvValue(string("0x1F")).getInt(), 31);
  EXPECT_EQ(lvValue(string("abc")).getInt(), -1);
}

TEST(ValueGetInt, IsTheIntegerOfAnIntegerCell) {
  EXPECT_EQ(lvValue(integer(3)).getInt(), 3);
  EXPECT_EQ(lvValue(integer(INT_MIN)).getInt(), INT_MIN);
}

TEST(ValueGetInt, IsMinusOneWithoutIntegerAndString) {
  EXPECT_EQ(lvValue().getInt(), -1);
  EXPECT_EQ(lvValue(pointer(17)).getInt(), -1);
  EXPECT_EQ(lvValue(newMap()).getInt(), -1);
  EXPECT_EQ(lvValue(unheld(string("17"))).getInt(), -1);
}

TEST(ValueGetInt, OfTheSameStringSeenAsAPlainCellIsMinusOne) {
  lvValue const value(string("17"));
  lvArg const& cell = value;
  EXPECT_EQ(cell.getInt(), -1);
}

// ---- Setting texts
// -------------------------------------------------------------------------------

TEST(ValueSetString, MakesAFreshStringObject) {
  lvValue value;
  EXPECT_EQ(value.setString("text", -1, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(value.getType(), lvArg::StringType);
  EXPECT_EQ(textOf(value), "text");
  EXPECT_EQ(countOf(value), 1);
  EXPECT_FALSE(stringIn(value).isInterned());
  EXPECT_NE(value.getReferencable(), lvString("text").getReferencable());
}

TEST(ValueSetString, TakesTheGivenNumberOfBytes) {
  lvValue value;
  value.setString("text", 2, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(textOf(value), "te");
  value.setString("text", 0, lvrString::CopyAndOwnEmpty);
  EXPECT_EQ(value.getString(nullptr), lvrString::strEmpty);
  value.setString("text", 0, lvrString::CopyAndOwn);
  EXPECT_EQ(value.getString(nullptr), nullptr);
}

TEST(ValueSetString, CopiesOrBorrowsByTheMode) {
  char text[] = "text";
  lvValue copied;
  lvValue borrowed;
  copied.setString(text, -1, lvrString::CopyAndOwn);
  borrowed.setString(text, -1, lvrString::Borrow);
  EXPECT_NE(copied.getString(nullptr), text);
  EXPECT_EQ(borrowed.getString(nullptr), text);
}

TEST(ValueSetString, DropsTheOldReference) {
  Probe::Log log;
  lvValue value(lvArg(*new Probe(log)));
  EXPECT_EQ(value.setString("text", -1, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(log.destroyed, 1);
}

TEST(ValueSetString, DoesNotChangeTheOldStringForItsOtherHolders) {
  lvValue value(string("old"));
  lvArg const other(value);
  value.setString("new", -1, lvrString::CopyAndOwn);
  EXPECT_EQ(textOf(value), "new");
  EXPECT_EQ(textOf(other), "old");
  EXPECT_EQ(countOf(other), 1);
}

TEST(ValueSetString, KeepsTheBookkeepingBits) {
  lvArg const text = string("shared");
  lvValue value;
  setBookkeeping(value, Marks);
  value.setString("text", -1, lvrString::CopyAndOwn);
  EXPECT_EQ(bookkeepingOf(value), Marks);
  value.setString(stringIn(text));
  EXPECT_EQ(bookkeepingOf(value), Marks);
}

TEST(ValueSetString, OfATextThatCannotBeStoredLeavesAStringWithoutText) {
  lvValue value(string("old"));
  EXPECT_EQ(value.setString("x", INT_MAX, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(value.getType(), lvArg::StringType);
  EXPECT_EQ(value.getString(nullptr), nullptr);
  EXPECT_EQ(countOf(value), 1);
}

TEST(ValueSetString, OfAStringTakesTheNewReferenceAndDropsTheOldOne) {
  Probe::Log log;
  lvArg const text = string("shared");
  lvValue value(lvArg(*new Probe(log)));
  EXPECT_EQ(value.setString(stringIn(text)), 0);
  EXPECT_TRUE(value.eq(text));
  EXPECT_EQ(countOf(text), 2);
  EXPECT_EQ(log.destroyed, 1);
}

TEST(ValueSetString, OfTheHeldStringLeavesItsCountAlone) {
  lvValue value(string("text"));
  EXPECT_EQ(value.setString(stringIn(value)), 0);
  EXPECT_EQ(textOf(value), "text");
  EXPECT_EQ(countOf(value), 1);
}

TEST(ValueSetString, OfTheHeldStringGivesTheStringTag) {
  auto& text = *new lvrString;
  lvValue value;
  value.setReferencableFast(text, lvArg::ObjectType);
  EXPECT_EQ(value.setString(text), 0);
  EXPECT_EQ(value.getType(), lvArg::StringType);
  EXPECT_EQ(countOf(text), 1);
}

// A string that passes for a plain object.
class Disguised : public lvrString {
 public:
  Disguised() { setKind(ObjectKind); }
};

TEST(ValueSetString, OfAnyStringGivesTheStringTagWhateverItsKind) {
  lvValue value;
  value.setString(*new Disguised);
  EXPECT_EQ(value.getType(), lvArg::StringType);
  lvValue made(*new Disguised);
  EXPECT_EQ(made.getType(), lvArg::StringType);
}

TEST(ValueSetStringFast, OfATextLeavesTheOldReferenceCounted) {
  Probe::Log log;
  auto& old = *new Probe(log);
  lvValue value{lvArg(old)};
  EXPECT_EQ(value.setStringFast("text", -1, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(textOf(value), "text");
  EXPECT_EQ(countOf(value), 1);
  EXPECT_EQ(countOf(old), 1);
  EXPECT_EQ(old.__removeRef(), 1);
}

TEST(ValueSetStringFast, OfAStringLeavesTheOldReferenceCounted) {
  Probe::Log log;
  auto& old = *new Probe(log);
  lvArg const text = string("shared");
  lvValue value{lvArg(old)};
  EXPECT_EQ(value.setStringFast(stringIn(text)), 0);
  EXPECT_TRUE(value.eq(text));
  EXPECT_EQ(countOf(text), 2);
  EXPECT_EQ(countOf(old), 1);
  EXPECT_EQ(old.__removeRef(), 1);
}

TEST(ValueSetStringFast, OfAHeldStringCountsItTwice) {
  auto& text = *new lvrString;
  lvValue value(text);
  value.setStringFast(text);
  EXPECT_EQ(countOf(text), 2);
  text.__removeRef();
}

TEST(ValueSetStringFast, KeepsTheBookkeepingBits) {
  lvArg const text = string("shared");
  lvValue made;
  lvValue shared;
  setBookkeeping(made, Marks);
  setBookkeeping(shared, OtherMarks);
  made.setStringFast("text", -1, lvrString::CopyAndOwn);
  shared.setStringFast(stringIn(text));
  EXPECT_EQ(bookkeepingOf(made), Marks);
  EXPECT_EQ(bookkeepingOf(shared), OtherMarks);
}

TEST(ValueSetStringFast, OfATextThatCannotBeStoredLeavesAStringWithoutText) {
  lvValue value;
  EXPECT_EQ(value.setStringFast("x", INT_MAX, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(value.getType(), lvArg::StringType);
  EXPECT_EQ(value.getString(nullptr), nullptr);
  EXPECT_EQ(countOf(value), 1);
}

// ---- Converting
// ----------------------------------------------------------------------------------

TEST(ValueToString, OfAStringSharesIt) {
  lvValue const value(string("text"));
  lvValue const text = value.toString();
  EXPECT_EQ(text.getReferencable(), value.getReferencable());
  EXPECT_EQ(countOf(value), 2);
}

TEST(ValueToString, OfNilIsNilInParentheses) { EXPECT_EQ(textOf(lvValue().toString()), "(NIL)"); }

TEST(ValueToString, OfAnIntegerIsItsDecimalText) {
  EXPECT_EQ(textOf(lvValue(integer(-12)).toString()), "-12");
  EXPECT_EQ(textOf(lvValue(integer(0)).toString()), "0");
  EXPECT_EQ(textOf(lvValue(integer(INT_MIN)).toString()), "-2147483648");
}

TEST(ValueToString, OfAnAddressIsAtLeastEightHexadecimalDigits) {
  EXPECT_EQ(textOf(lvValue(pointer(0x1234)).toString()), "00001234");
  EXPECT_EQ(textOf(lvValue(pointer(0xFEDCBA98)).toString()), "fedcba98");
}

TEST(ValueToString, OfAnyOtherValueIsAStringWithoutText) {
  for (lvArg const& cell : {newMap(), lvArg(*new lvReferencable), unheld(newMap())}) {
    lvValue const text = lvValue(cell).toString();
    EXPECT_EQ(text.getType(), lvArg::StringType);
    EXPECT_EQ(text.getString(nullptr), nullptr);
    EXPECT_EQ(countOf(text), 1);
  }
}

TEST(ValueToString, MakesAFreshStringThatTheResultAloneHolds) {
  lvValue const number(integer(4));
  lvValue const text = number.toString();
  EXPECT_EQ(text.getType(), lvArg::StringType);
  EXPECT_EQ(countOf(text), 1);
  EXPECT_FALSE(stringIn(text).isInterned());
  EXPECT_EQ(number.getInt(), 4);
}

TEST(ValueToString, OfASmallNegativeIntegerKeepsItsValue) {
  EXPECT_EQ(lvValue(integer(-12)).toString().getInt(), -12);
  EXPECT_EQ(lvValue(integer(-5000)).toString().getInt(), -1);
}

TEST(ValueToString, OfAStringCellWithoutObjectHasNoTextEither) {
  lvValue const text = lvValue(unheld(string("x"))).toString();
  EXPECT_EQ(text.getType(), lvArg::StringType);
  EXPECT_EQ(text.getString(nullptr), nullptr);
}

}  // namespace
