#include "tarselvalues/core/lvArg.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <utility>
#include <vector>

#include "support/CellWords.h"
#include "support/Cells.h"

namespace {

using test::AllMarks;
using test::bookkeepingOf;
using test::countOf;
using test::integer;
using test::makeUnknown;
using test::marked;
using test::Marks;
using test::newClass;
using test::newList;
using test::newMap;
using test::OtherMarks;
using test::payload;
using test::pointer;
using test::Probe;
using test::setBookkeeping;
using test::staleNil;
using test::string;
using test::unheld;
using test::unknownTags;

// What the probe of a test went through.
class ArgProbeTest : public ::testing::Test {
 protected:
  Probe& newProbe() { return *new Probe(log); }
  bool isGone() const { return log.finalized == 1 && log.destroyed == 1; }
  bool isAlive() const { return log.finalized == 0 && log.destroyed == 0; }

  Probe::Log log;
};

using ArgMaking = ArgProbeTest;
using ArgCopy = ArgProbeTest;
using ArgMove = ArgProbeTest;
using ArgMoveAssign = ArgProbeTest;
using ArgRelease = ArgProbeTest;
using ArgAssign = ArgProbeTest;
using ArgAssignFast = ArgProbeTest;
using ArgSet = ArgProbeTest;
using ArgSetReferencable = ArgProbeTest;
using ArgSetReferencableFast = ArgProbeTest;
using ArgExchange = ArgProbeTest;

// ---- Constants
// -----------------------------------------------------------------------------------

TEST(ArgConstants, AreNilOneAndZero) {
  EXPECT_EQ(lvArg::NilValue.getType(), lvArg::NilType);
  EXPECT_EQ(lvArg::TrueValue.getType(), lvArg::IntType);
  EXPECT_EQ(lvArg::TrueValue.getInt(), 1);
  EXPECT_EQ(lvArg::FalseValue.getType(), lvArg::IntType);
  EXPECT_EQ(lvArg::FalseValue.getInt(), 0);
}

TEST(ArgConstants, CarryNoBookkeepingBits) {
  EXPECT_EQ(bookkeepingOf(lvArg::NilValue), 0U);
  EXPECT_EQ(bookkeepingOf(lvArg::TrueValue), 0U);
  EXPECT_EQ(bookkeepingOf(lvArg::FalseValue), 0U);
}

TEST(ArgConstants, NumberTheTypes) {
  EXPECT_EQ(lvArg::NilType, 0);
  EXPECT_EQ(lvArg::IntType, 5);
  EXPECT_EQ(lvArg::PointerType, 12);
  EXPECT_EQ(lvArg::ReferenceFlag, 16);
  EXPECT_EQ(lvArg::ObjectType, 18);
  EXPECT_EQ(lvArg::StringType, 19);
  EXPECT_EQ(lvArg::MapType, 24);
  EXPECT_EQ(lvArg::ListType, 25);
  EXPECT_EQ(lvArg::ClassType, 27);
}

// ---- Making
// --------------------------------------------------------------------------------------

TEST_F(ArgMaking, WithoutArgumentsGivesNilWithoutBookkeepingBits) {
  lvArg const cell;
  EXPECT_EQ(cell.getType(), lvArg::NilType);
  EXPECT_TRUE(cell.isNil());
  EXPECT_EQ(bookkeepingOf(cell), 0U);
}

TEST_F(ArgMaking, FromAnObjectTakesOneReference) {
  Probe& probe = newProbe();
  {
    lvArg const cell(probe);
    EXPECT_EQ(cell.getType(), lvArg::ObjectType);
    EXPECT_EQ(cell.getReferencable(), &probe);
    EXPECT_EQ(countOf(probe), 1);
    EXPECT_EQ(bookkeepingOf(cell), 0U);
  }
  EXPECT_TRUE(isGone());
}

TEST_F(ArgMaking, TakesTheTagFromTheKindOfTheObject) {
  EXPECT_EQ(lvArg(*new lvrString).getType(), lvArg::StringType);
  EXPECT_EQ(newMap().getType(), lvArg::MapType);
  EXPECT_EQ(newList().getType(), lvArg::ListType);
  EXPECT_EQ(newClass().getType(), lvArg::ClassType);
}

// ---- Copying
// -------------------------------------------------------------------------------------

TEST_F(ArgCopy, TakesAReference) {
  lvArg const original(newProbe());
  lvArg const copy(original);
  EXPECT_EQ(copy.getType(), lvArg::ObjectType);
  EXPECT_EQ(copy.getReferencable(), original.getReferencable());
  EXPECT_EQ(countOf(original), 2);
}

TEST_F(ArgCopy, CarriesTheBookkeepingBits) {
  for (lvArg original : {lvArg(), integer(3), pointer(0x1234), lvArg(newProbe())}) {
    setBookkeeping(original, Marks);
    lvArg const copy(original);  // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_EQ(bookkeepingOf(copy), Marks);
    EXPECT_TRUE(copy.eq(original));
  }
}

TEST_F(ArgCopy, OfAValueReturnedFromAFunctionCarriesTheBookkeepingBits) {
  lvArg kept = integer(3);
  setBookkeeping(kept, Marks);
  auto const returned = [&kept]() -> lvArg { return kept; };
  lvArg const copy = returned();
  EXPECT_EQ(copy.getInt(), 3);
  EXPECT_EQ(bookkeepingOf(copy), Marks);
}

TEST_F(ArgCopy, OfAnUnknownTagIsNilAndCarriesTheBookkeepingBits) {
  for (unsigned const tag : unknownTags()) {
    lvArg original;
    makeUnknown(original, tag);
    setBookkeeping(original, Marks);
    lvArg const copy(original);
    EXPECT_TRUE(copy.isNil()) << tag;
    EXPECT_EQ(bookkeepingOf(copy), Marks) << tag;
  }
}

TEST_F(ArgCopy, OfAReferenceToNoObjectHasItsTagAndNoObject) {
  lvArg original(newProbe());
  original.releaseData();
  lvArg const copy(original);
  EXPECT_EQ(copy.getType(), lvArg::ObjectType);
  EXPECT_EQ(copy.getReferencable(), nullptr);
}

// ---- Moving
// --------------------------------------------------------------------------------------

TEST_F(ArgMove, HandsTheReferenceOver) {
  Probe& probe = newProbe();
  lvArg source(probe);
  lvArg const moved(std::move(source));
  EXPECT_EQ(moved.getReferencable(), &probe);
  EXPECT_EQ(moved.getType(), lvArg::ObjectType);
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_TRUE(source.isNil());  // NOLINT(bugprone-use-after-move)
}

TEST_F(ArgMove, CarriesTheBookkeepingBitsAndLeavesThoseOfTheSource) {
  lvArg source(newProbe());
  setBookkeeping(source, Marks);
  lvArg const moved(std::move(source));
  EXPECT_EQ(bookkeepingOf(moved), Marks);
  EXPECT_EQ(bookkeepingOf(source), Marks);  // NOLINT(bugprone-use-after-move)
}

TEST_F(ArgMove, OfIntegersAndAddressesKeepsThem) {
  lvArg number = integer(INT_MIN);
  lvArg address = pointer(0x1234);
  EXPECT_EQ(lvArg(std::move(number)).getInt(), INT_MIN);
  EXPECT_EQ(lvArg(std::move(address)).getPointer(), reinterpret_cast<void*>(0x1234));
}

TEST_F(ArgMoveAssign, DropsTheOldReferenceAndHandsTheNewOneOver) {
  lvArg cell(newProbe());
  Probe::Log newLog;
  auto& added = *new Probe(newLog);
  lvArg source(added);
  EXPECT_EQ(&(cell = std::move(source)), &cell);
  EXPECT_TRUE(isGone());
  EXPECT_EQ(cell.getReferencable(), &added);
  EXPECT_EQ(countOf(added), 1);
  EXPECT_TRUE(source.isNil());  // NOLINT(bugprone-use-after-move)
}

TEST_F(ArgMoveAssign, LeavesTheBookkeepingBitsOfBothCells) {
  lvArg cell;
  lvArg source(newProbe());
  setBookkeeping(cell, Marks);
  setBookkeeping(source, OtherMarks);
  cell = std::move(source);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
  EXPECT_EQ(bookkeepingOf(source), OtherMarks);  // NOLINT(bugprone-use-after-move)
}

TEST_F(ArgMoveAssign, BetweenCellsOfOneObjectLeavesOneReference) {
  Probe& probe = newProbe();
  lvArg cell(probe);
  lvArg source(probe);
  cell = std::move(source);
  EXPECT_EQ(cell.getReferencable(), &probe);
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_TRUE(isAlive());
}

TEST_F(ArgMoveAssign, ToItselfChangesNothing) {
  Probe& probe = newProbe();
  lvArg cell(probe);
  lvArg& itself = cell;
  cell = std::move(itself);
  EXPECT_EQ(cell.getReferencable(), &probe);
  EXPECT_EQ(countOf(probe), 1);
}

TEST_F(ArgMoveAssign, OfNilDropsTheOldReference) {
  lvArg cell(newProbe());
  cell = lvArg();
  EXPECT_TRUE(cell.isNil());
  EXPECT_TRUE(isGone());
}

// ---- Releasing
// -----------------------------------------------------------------------------------

TEST_F(ArgRelease, DropsTheReferenceAndKeepsTheTag) {
  lvArg cell(newProbe());
  setBookkeeping(cell, Marks);
  EXPECT_EQ(cell.releaseData(), 0);
  EXPECT_TRUE(isGone());
  EXPECT_EQ(cell.getType(), lvArg::ObjectType);
  EXPECT_EQ(cell.getReferencable(), nullptr);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
}

TEST_F(ArgRelease, OfAReleasedCellDoesNothing) {
  Probe& probe = newProbe();
  lvArg const keeper(probe);
  lvArg cell(probe);
  cell.releaseData();
  EXPECT_EQ(cell.releaseData(), 0);
  EXPECT_EQ(countOf(probe), 1);
}

TEST_F(ArgRelease, LeavesOtherCellsAlone) {
  lvArg number = integer(5);
  lvArg address = pointer(0x1234);
  lvArg nil;
  EXPECT_EQ(number.releaseData() | address.releaseData() | nil.releaseData(), 0);
  EXPECT_EQ(number.getInt(), 5);
  EXPECT_EQ(address.getPointer(), reinterpret_cast<void*>(0x1234));
  EXPECT_TRUE(nil.isNil());
}

TEST_F(ArgRelease, ByTheDestructorDropsTheReference) {
  Probe& probe = newProbe();
  lvArg const keeper(probe);
  { lvArg const cell(probe); }
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_TRUE(isAlive());
}

// ---- Assigning
// -----------------------------------------------------------------------------------

TEST_F(ArgAssign, TakesTheNewReferenceAndDropsTheOldOne) {
  lvArg cell(newProbe());
  Probe::Log newLog;
  lvArg const source(*new Probe(newLog));
  EXPECT_EQ(cell.assign(source), 0);
  EXPECT_TRUE(isGone());
  EXPECT_TRUE(cell.eq(source));
  EXPECT_EQ(countOf(source), 2);
}

TEST_F(ArgAssign, OfTheSameObjectLeavesItsCountAlone) {
  Probe& probe = newProbe();
  lvArg cell(probe);
  lvArg const source(probe);
  EXPECT_EQ(cell.assign(source), 0);
  EXPECT_EQ(countOf(probe), 2);
}

TEST_F(ArgAssign, OfTheSameObjectCopiesTheTag) {
  Probe& probe = newProbe();
  lvArg cell(probe);
  lvArg source;
  source.setReferencableFast(probe, lvArg::ListType);
  cell.assign(source);
  EXPECT_EQ(cell.getType(), lvArg::ListType);
  EXPECT_EQ(countOf(probe), 2);
}

TEST_F(ArgAssign, ToItselfLeavesTheCountAlone) {
  Probe& probe = newProbe();
  lvArg cell(probe);
  cell.assign(cell);
  EXPECT_EQ(cell.getReferencable(), &probe);
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_TRUE(isAlive());
}

TEST_F(ArgAssign, ToItselfKeepsIntegersAndAddresses) {
  lvArg number = integer(8);
  lvArg address = pointer(0x1234);
  number.assign(number);
  address.assign(address);
  EXPECT_EQ(number.getInt(), 8);
  EXPECT_EQ(address.getPointer(), reinterpret_cast<void*>(0x1234));
}

TEST_F(ArgAssign, OfAReferenceToNoObjectDropsTheOldReference) {
  lvArg cell(newProbe());
  cell.assign(unheld(string("x")));
  EXPECT_TRUE(isGone());
  EXPECT_EQ(cell.getType(), lvArg::StringType);
  EXPECT_EQ(cell.getReferencable(), nullptr);
}

TEST_F(ArgAssign, OfNilDropsTheOldReference) {
  lvArg cell(newProbe());
  cell.assign(lvArg::NilValue);
  EXPECT_TRUE(isGone());
  EXPECT_TRUE(cell.isNil());
}

TEST_F(ArgAssign, FromAnUnknownTagGivesNil) {
  for (unsigned const tag : unknownTags()) {
    lvArg source;
    makeUnknown(source, tag);
    lvArg cell = integer(6);
    cell.assign(source);
    EXPECT_TRUE(cell.isNil()) << tag;
  }
}

TEST_F(ArgAssign, IsTheAssignmentOperator) {
  lvArg cell(newProbe());
  setBookkeeping(cell, Marks);
  lvArg source = integer(9);
  setBookkeeping(source, OtherMarks);
  EXPECT_EQ(&(cell = source), &cell);
  EXPECT_EQ(cell.getInt(), 9);
  EXPECT_EQ(source.getInt(), 9);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
  EXPECT_TRUE(isGone());
}

TEST_F(ArgAssignFast, TakesAReferenceAndLeavesTheOldOneCounted) {
  Probe& old = newProbe();
  lvArg cell(old);
  Probe::Log newLog;
  lvArg const source(*new Probe(newLog));
  EXPECT_EQ(cell.assignFast(source), 0);
  EXPECT_TRUE(cell.eq(source));
  EXPECT_EQ(countOf(source), 2);
  EXPECT_EQ(countOf(old), 1);
  EXPECT_EQ(old.__removeRef(), 1);
}

TEST_F(ArgAssignFast, CopiesIntegersAndAddresses) {
  lvArg cell;
  EXPECT_EQ(cell.assignFast(integer(-7)), 0);
  EXPECT_EQ(cell.getInt(), -7);
  EXPECT_EQ(cell.assignFast(pointer(0x1234)), 0);
  EXPECT_EQ(cell.getPointer(), reinterpret_cast<void*>(0x1234));
}

TEST_F(ArgAssignFast, CopiesAReferenceToNoObject) {
  lvArg source(newProbe());
  source.releaseData();
  lvArg cell = integer(3);
  cell.assignFast(source);
  EXPECT_EQ(cell.getType(), lvArg::ObjectType);
  EXPECT_EQ(payload(cell), 0U);
}

TEST_F(ArgAssignFast, OfNilOrAnUnknownTagLeavesTheSecondWord) {
  std::vector<unsigned> tags = unknownTags();
  tags.push_back(lvArg::NilType);
  for (unsigned const tag : tags) {
    lvArg source;
    makeUnknown(source, tag);
    lvArg cell = integer(6);
    EXPECT_EQ(cell.assignFast(source), 0);
    EXPECT_TRUE(cell.isNil()) << tag;
    EXPECT_EQ(payload(cell), 6U) << tag;
  }
}

// ---- Setters
// -------------------------------------------------------------------------------------

TEST_F(ArgSet, IntDropsTheOldReference) {
  lvArg cell(newProbe());
  EXPECT_EQ(cell.setInt(INT_MIN), 0);
  EXPECT_EQ(cell.getType(), lvArg::IntType);
  EXPECT_EQ(cell.getInt(), INT_MIN);
  EXPECT_TRUE(isGone());
}

TEST_F(ArgSet, PointerDropsTheOldReference) {
  lvArg cell(newProbe());
  EXPECT_EQ(cell.setPointer(&log), 0);
  EXPECT_EQ(cell.getType(), lvArg::PointerType);
  EXPECT_EQ(cell.getPointer(), &log);
  EXPECT_TRUE(isGone());
}

TEST_F(ArgSet, PointerNeitherCountsNorReleasesWhatItPointsAt) {
  Probe& probe = newProbe();
  lvArg const keeper(probe);
  {
    lvArg cell;
    cell.setPointer(&probe);
    lvArg const copy(cell);
    EXPECT_EQ(copy.getPointer(), &probe);
    EXPECT_EQ(countOf(probe), 1);
  }
  EXPECT_EQ(countOf(probe), 1);
}

TEST_F(ArgSet, NilDropsTheOldReference) {
  lvArg cell(newProbe());
  EXPECT_EQ(cell.setNil(), 0);
  EXPECT_TRUE(cell.isNil());
  EXPECT_TRUE(isGone());
}

TEST_F(ArgSet, NilKeepsTheStaleSecondWord) {
  lvArg cell = integer(6);
  EXPECT_EQ(cell.setNil(), 0);
  EXPECT_EQ(payload(cell), 6U);
}

TEST_F(ArgSetReferencable, TakesTheNewReferenceAndDropsTheOldOne) {
  lvArg cell(newProbe());
  Probe::Log newLog;
  auto& added = *new Probe(newLog);
  EXPECT_EQ(cell.setReferencable(added), 0);
  EXPECT_EQ(cell.getReferencable(), &added);
  EXPECT_EQ(countOf(added), 1);
  EXPECT_TRUE(isGone());
}

TEST_F(ArgSetReferencable, ToTheHeldObjectChangesNothing) {
  Probe& probe = newProbe();
  lvArg cell;
  cell.setReferencableFast(probe, lvArg::ListType);
  EXPECT_EQ(cell.setReferencable(probe), 0);
  EXPECT_EQ(cell.getType(), lvArg::ListType);
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_TRUE(isAlive());
}

TEST_F(ArgSetReferencable, ToAnObjectWhoseRawAddressItHoldsTakesAReference) {
  Probe& probe = newProbe();
  lvArg cell;
  cell.setPointer(static_cast<lvReferencable*>(&probe));
  cell.setReferencable(probe);
  EXPECT_EQ(cell.getType(), lvArg::ObjectType);
  EXPECT_EQ(countOf(probe), 1);
}

TEST_F(ArgSetReferencableFast, LeavesTheOldReferenceCounted) {
  Probe& old = newProbe();
  lvArg cell(old);
  EXPECT_EQ(cell.setReferencableFast(*new lvrString), 0);
  EXPECT_EQ(cell.getType(), lvArg::StringType);
  EXPECT_EQ(countOf(cell), 1);
  EXPECT_EQ(countOf(old), 1);
  EXPECT_EQ(old.__removeRef(), 1);
}

TEST_F(ArgSetReferencableFast, WithATypeTakesItsLowFiveBitsAsTag) {
  Probe& probe = newProbe();
  lvArg cell;
  setBookkeeping(cell, Marks);
  EXPECT_EQ(cell.setReferencableFast(probe, static_cast<lvArg::ValueType>(0x40 | lvArg::ListType)),
            0);
  EXPECT_EQ(cell.getType(), lvArg::ListType);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
  EXPECT_EQ(cell.getReferencable(), &probe);
  EXPECT_EQ(countOf(probe), 1);
}

TEST_F(ArgSetReferencableFast, WithATypeLeavesTheOldReferenceCounted) {
  Probe& old = newProbe();
  lvArg cell(old);
  cell.setReferencableFast(*new lvrString, lvArg::StringType);
  EXPECT_EQ(countOf(old), 1);
  EXPECT_EQ(old.__removeRef(), 1);
}

// Every way to change a cell leaves the bits of whoever stores it alone, whatever it held before.
struct Change {
  char const* name;
  std::function<void(lvArg&)> apply;
};

std::vector<Change> changes() {
  static lvArg const source = marked(string("new"), OtherMarks);
  static lvArg const gone = marked(unheld(string("gone")), OtherMarks);
  lvReferencable const& object = *source.getReferencable();
  return {
      {"assign", [](lvArg& cell) { cell.assign(source); }},
      {"assign of nil", [](lvArg& cell) { cell.assign(lvArg::NilValue); }},
      {"assign of an integer", [](lvArg& cell) { cell.assign(lvArg::TrueValue); }},
      {"assign of no object", [](lvArg& cell) { cell.assign(gone); }},
      {"assignFast", [](lvArg& cell) { cell.releaseData(), cell.assignFast(source); }},
      {"assignFast of nil", [](lvArg& cell) { cell.releaseData(), cell.assignFast(lvArg()); }},
      {"move", [](lvArg& cell) { cell = lvArg(source); }},
      {"setNil", [](lvArg& cell) { cell.setNil(); }},
      {"setInt", [](lvArg& cell) { cell.setInt(-1); }},
      {"setPointer", [](lvArg& cell) { cell.setPointer(&cell); }},
      {"releaseData", [](lvArg& cell) { cell.releaseData(); }},
      {"setReferencable", [&object](lvArg& cell) { cell.setReferencable(object); }},
      {"setReferencableFast",
       [&object](lvArg& cell) { cell.releaseData(), cell.setReferencableFast(object); }},
      {"setReferencableFast with a type",
       [&object](lvArg& cell) {
         cell.releaseData();
         cell.setReferencableFast(object, static_cast<lvArg::ValueType>(0xFF));
       }},
  };
}

TEST(ArgBookkeepingBits, OutliveEveryChangeOfTheValue) {
  std::vector<lvArg> const contents = {lvArg(), integer(-1), pointer(~std::uintptr_t{0}),
                                       string("old")};
  for (Change const& change : changes()) {
    for (lvArg const& content : contents) {
      for (std::uint32_t const bits : {Marks, OtherMarks, 0U, AllMarks}) {
        lvArg cell(content);
        setBookkeeping(cell, bits);
        change.apply(cell);
        EXPECT_EQ(bookkeepingOf(cell), bits) << change.name;
      }
    }
  }
}

// ---- Asking
// --------------------------------------------------------------------------------------

TEST(ArgGetInt, IsTheIntegerOfAnIntegerCell) {
  for (int const value : {0, 1, -1, -2, INT_MAX, INT_MIN}) {
    EXPECT_EQ(integer(value).getInt(), value);
  }
  EXPECT_EQ(lvArg::FalseValue.getInt(), 0);
}

TEST(ArgGetInt, IsMinusOneWithoutAnInteger) {
  EXPECT_EQ(lvArg().getInt(), -1);
  EXPECT_EQ(pointer(17).getInt(), -1);
  EXPECT_EQ(string("17").getInt(), -1);
  lvArg unknown;
  EXPECT_EQ(makeUnknown(unknown, 3).getInt(), -1);
}

TEST(ArgGetInt, OfANilCellWithAStaleIntegerIsMinusOne) { EXPECT_EQ(staleNil(6).getInt(), -1); }

TEST(ArgGetPointer, IsNullWithoutARawAddress) {
  EXPECT_EQ(pointer(0x1234).getPointer(), reinterpret_cast<void*>(0x1234));
  EXPECT_EQ(integer(0x1234).getPointer(), nullptr);
  EXPECT_EQ(string("text").getPointer(), nullptr);
  lvArg stale = pointer(0x1234);
  stale.setNil();
  EXPECT_EQ(stale.getPointer(), nullptr);
}

TEST(ArgGetPointer, KeepsAllBitsOfTheAddress) {
  for (std::uintptr_t const bits : {UINTPTR_MAX, UINTPTR_MAX / 3, UINTPTR_MAX / 3 * 2}) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pointer(bits).getPointer()), bits);
  }
}

TEST(ArgGetReferencable, IsNullWithoutAReference) {
  EXPECT_NE(string("text").getReferencable(), nullptr);
  EXPECT_EQ(integer(0x1234).getReferencable(), nullptr);
  EXPECT_EQ(pointer(0x1234).getReferencable(), nullptr);
  EXPECT_EQ(lvArg().getReferencable(), nullptr);
}

TEST(ArgIsNil, HoldsForTheNilTagOnly) {
  lvArg unknown;
  EXPECT_TRUE(lvArg::NilValue.isNil());
  EXPECT_FALSE(integer(0).isNil());
  EXPECT_FALSE(pointer(0).isNil());
  EXPECT_FALSE(makeUnknown(unknown, 3).isNil());
  EXPECT_FALSE(unheld(string("x")).isNil());
}

TEST(ArgGetType, SeesTheTagBitsOnly) {
  lvArg const cell = marked(integer(1), AllMarks);
  EXPECT_EQ(cell.getType(), lvArg::IntType);
  EXPECT_EQ(cell.getInt(), 1);
}

// ---- Exchanging
// ----------------------------------------------------------------------------------

TEST_F(ArgExchange, SwapsValuesAndBookkeepingBits) {
  Probe& probe = newProbe();
  lvArg a(probe);
  lvArg b = integer(8);
  setBookkeeping(a, Marks);
  setBookkeeping(b, OtherMarks);
  a.exchange(b);
  EXPECT_EQ(a.getInt(), 8);
  EXPECT_EQ(bookkeepingOf(a), OtherMarks);
  EXPECT_EQ(b.getReferencable(), &probe);
  EXPECT_EQ(bookkeepingOf(b), Marks);
  EXPECT_EQ(countOf(probe), 1);
}

TEST_F(ArgExchange, SwapsTheSecondWordsOfNilCellsToo) {
  lvArg stale = staleNil(6);
  lvArg other = pointer(0x1234);
  stale.exchange(other);
  EXPECT_EQ(payload(other), 6U);
  EXPECT_TRUE(other.isNil());
  EXPECT_EQ(stale.getPointer(), reinterpret_cast<void*>(0x1234));
}

TEST_F(ArgExchange, WithItselfChangesNothing) {
  Probe& probe = newProbe();
  lvArg cell(probe);
  setBookkeeping(cell, Marks);
  cell.exchange(cell);
  EXPECT_EQ(cell.getReferencable(), &probe);
  EXPECT_EQ(bookkeepingOf(cell), Marks);
  EXPECT_EQ(countOf(probe), 1);
}

}  // namespace
