#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvArg.h"

namespace {

using test::integer;
using test::makeUnknown;
using test::marked;
using test::Marks;
using test::newClass;
using test::newList;
using test::newMap;
using test::payload;
using test::pointer;
using test::setTag;
using test::staleNil;
using test::string;
using test::unheld;
using test::unknownTags;

// ---- Comparing
// -----------------------------------------------------------------------------------

TEST(ArgEq, HoldsForACellAndItself) {
  lvArg unknown;
  makeUnknown(unknown, 3);
  lvArg const text = string("x");
  EXPECT_TRUE(unknown.eq(unknown));
  EXPECT_TRUE(text.eq(text));
}

TEST(ArgEq, OfDifferentTagsFails) {
  EXPECT_FALSE(integer(4).eq(pointer(4)));
  EXPECT_FALSE(integer(0).eq(lvArg()));
}

TEST(ArgEq, HoldsForNilWhateverTheStaleWords) {
  lvArg const stale = staleNil(6);
  EXPECT_TRUE(stale.eq(lvArg()));
  EXPECT_TRUE(lvArg().eq(stale));
}

TEST(ArgEq, ComparesIntegersAddressesAndObjectsByTheirSecondWord) {
  lvArg const text = string("x");
  EXPECT_TRUE(integer(-4).eq(integer(-4)));
  EXPECT_FALSE(integer(4).eq(integer(-4)));
  EXPECT_TRUE(pointer(0x1234).eq(pointer(0x1234)));
  EXPECT_FALSE(pointer(0x1234).eq(pointer(0x1238)));
  EXPECT_TRUE(text.eq(lvArg(text)));
  EXPECT_FALSE(text.eq(string("x")));
}

TEST(ArgEq, IgnoresTheBookkeepingBits) { EXPECT_TRUE(marked(integer(4), Marks).eq(integer(4))); }

TEST(ArgEquiv, OfACellAndItselfIsOne) {
  lvArg const gone = unheld(string("x"));
  EXPECT_EQ(gone.equiv(gone), 1);
  EXPECT_EQ(integer(3).equiv(integer(3)), 1);
}

TEST(ArgEquiv, OfDifferentTagsIsZero) {
  EXPECT_EQ(integer(4).equiv(pointer(4)), 0);
  EXPECT_EQ(lvArg().equiv(integer(0)), 0);
  EXPECT_EQ(lvArg().equiv(string("(NIL)")), 0);
}

TEST(ArgEquiv, OfTwoNilsIsOneWhateverTheStaleWords) {
  lvArg const stale = staleNil(6);
  EXPECT_EQ(stale.equiv(lvArg()), 1);
}

TEST(ArgEquiv, ComparesTheTextOfStrings) {
  EXPECT_EQ(string("same").equiv(string("same")), 1);
  EXPECT_EQ(string("same").equiv(string("some")), 0);
  EXPECT_EQ(string("same").equiv(string("same but longer")), 0);
}

TEST(ArgEquiv, ComparesIntegersAndAddressesByTheirSecondWord) {
  EXPECT_EQ(integer(-4).equiv(integer(-4)), 1);
  EXPECT_EQ(integer(4).equiv(integer(5)), 0);
  EXPECT_EQ(pointer(8).equiv(pointer(8)), 1);
  EXPECT_EQ(pointer(8).equiv(pointer(16)), 0);
}

TEST(ArgEquiv, ComparesContainersAndClassesByIdentity) {
  lvArg const map = newMap();
  lvArg const list = newList();
  lvArg const described = newClass();
  EXPECT_EQ(map.equiv(lvArg(map)), 1);
  EXPECT_EQ(map.equiv(newMap()), 0);
  EXPECT_EQ(list.equiv(lvArg(list)), 1);
  EXPECT_EQ(list.equiv(newList()), 0);
  EXPECT_EQ(described.equiv(lvArg(described)), 1);
  EXPECT_EQ(described.equiv(newClass()), 0);
}

// An object that answers what it is asked for with fixed numbers.
class Scripted : public lvReferencable {
 public:
  int equiv(lvReferencable const&) const override { return 42; }
  unsigned int hashCode() const override { return 0xFEDCBA98; }
  int compareTo(lvReferencable const& other) const override { return &other == this ? 99 : -42; }
};

TEST(ArgEquiv, DoesNotAskObjectsThatAreNoStrings) {
  EXPECT_EQ(lvArg(*new Scripted).equiv(lvArg(*new Scripted)), 0);
}

TEST(ArgEquiv, OfAStringWithoutObjectHoldsForAnotherSuchCellOnly) {
  lvArg const gone = unheld(string("x"));
  lvArg const another(gone);
  EXPECT_EQ(gone.equiv(another), 1);
  EXPECT_EQ(gone.equiv(string("")), 0);
  EXPECT_EQ(string("").equiv(gone), 0);
  EXPECT_EQ(gone.equiv(lvArg()), 0);
}

TEST(ArgEquiv, OfReferencesWithoutObjectHoldsForOneTagOnly) {
  lvArg const map = unheld(newMap());
  lvArg const list = unheld(newList());
  EXPECT_EQ(map.equiv(lvArg(map)), 1);
  EXPECT_EQ(map.equiv(newMap()), 0);
  EXPECT_EQ(map.equiv(list), 0);
}

TEST(ArgCompareTo, OfACellAndItselfIsZero) {
  lvArg const cell(*new Scripted);
  EXPECT_EQ(cell.compareTo(cell), 0);
}

TEST(ArgCompareTo, OfDifferentTagsIsTheirDifference) {
  EXPECT_EQ(lvArg().compareTo(integer(0)), -5);
  EXPECT_EQ(integer(0).compareTo(lvArg()), 5);
  EXPECT_EQ(string("").compareTo(integer(0)), 14);
  EXPECT_EQ(integer(1).compareTo(pointer(1)), -7);
  EXPECT_EQ(newClass().compareTo(lvArg()), 27);
}

TEST(ArgCompareTo, SortsTheTypesNilIntegersPointersObjectsStringsMapsListsClasses) {
  std::vector<lvArg> const sorted = {
      lvArg(),     integer(9), pointer(8), lvArg(*new lvReferencable),
      string("7"), newMap(),   newList(),  newClass(),
  };
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    for (std::size_t j = i + 1; j < sorted.size(); ++j) {
      EXPECT_LT(sorted[i].compareTo(sorted[j]), 0) << i << ' ' << j;
      EXPECT_GT(sorted[j].compareTo(sorted[i]), 0) << i << ' ' << j;
    }
  }
}

TEST(ArgCompareTo, OfTwoNilsIsZeroWhateverTheStaleWords) {
  lvArg const stale = staleNil(6);
  EXPECT_EQ(stale.compareTo(lvArg()), 0);
}

TEST(ArgCompareTo, SubtractsIntegers) {
  EXPECT_EQ(integer(7).compareTo(integer(3)), 4);
  EXPECT_EQ(integer(-3).compareTo(integer(7)), -10);
  EXPECT_EQ(integer(7).compareTo(integer(7)), 0);
  EXPECT_EQ(integer(0).compareTo(integer(INT_MAX)), -INT_MAX);
}

TEST(ArgCompareTo, SubtractsAddresses) {
  EXPECT_EQ(pointer(0x1010).compareTo(pointer(0x1000)), 0x10);
  EXPECT_EQ(pointer(0x1000).compareTo(pointer(0x1010)), -0x10);
  EXPECT_EQ(pointer(0x1000).compareTo(pointer(0x1000)), 0);
}

TEST(ArgCompareTo, OfEqualObjectsIsZeroWithoutAskingThem) {
  lvArg const cell(*new Scripted);
  EXPECT_EQ(cell.compareTo(lvArg(cell)), 0);
}

TEST(ArgCompareTo, OfDifferentObjectsAsksTheFirst) {
  EXPECT_EQ(lvArg(*new Scripted).compareTo(lvArg(*new lvReferencable)), -42);
  EXPECT_LT(string("abc").compareTo(string("abd")), 0);
  EXPECT_GT(string("b").compareTo(string("abd")), 0);
  EXPECT_EQ(string("abc").compareTo(string("abc")), 0);
}

// Gives `cell` a reference of tag 18 with this second word, which is no object: it must be 0 again
// before the cell is destroyed.
void setReferenceWord(lvArg& cell, std::uintptr_t word) {
  setTag(cell, lvArg::ObjectType);
  payload(cell) = word;
}

TEST(ArgCompareTo, TakesAMissingObjectForAddressZero) {
  lvArg gone;
  lvArg low;
  setReferenceWord(gone, 0);
  setReferenceWord(low, 0x7654320);
  EXPECT_EQ(gone.compareTo(low), -0x7654320);
  EXPECT_EQ(low.compareTo(gone), 0x7654320);
  payload(low) = 0;
  EXPECT_EQ(gone.compareTo(low), 0);
}

#if UINTPTR_MAX > 0xFFFFFFFF

TEST(ArgCompareTo, TellsAddressesApartThatDifferInTheirHighHalvesOnly) {
  EXPECT_GT(pointer(0x100001000).compareTo(pointer(0x1000)), 0);
  EXPECT_LT(pointer(0x1000).compareTo(pointer(0x100001000)), 0);
  EXPECT_GT(pointer(0x7000'0000'0000'0000).compareTo(pointer(0x1000)), 0);
}

TEST(ArgCompareTo, TellsAMissingObjectFromOneAtAnAddressWithEmptyLowHalf) {
  lvArg gone;
  lvArg high;
  setReferenceWord(gone, 0);
  setReferenceWord(high, 0x500000000);
  EXPECT_LT(gone.compareTo(high), 0);
  EXPECT_GT(high.compareTo(gone), 0);
  payload(high) = 0;
}

TEST(ArgEq, TellsAddressesApartThatDifferInTheirHighHalvesOnly) {
  EXPECT_FALSE(pointer(0x100001000).eq(pointer(0x1000)));
  EXPECT_EQ(pointer(0x100001000).equiv(pointer(0x1000)), 0);
}

#else

TEST(ArgCompareTo, SubtractsAddressesWithWrapAround) {
  EXPECT_EQ(pointer(0x80000000).compareTo(pointer(1)), INT_MAX);
  EXPECT_EQ(pointer(0).compareTo(pointer(0xFFFFFFFF)), 1);
  EXPECT_EQ(pointer(0xFFFFFFF0).compareTo(pointer(0)), -0x10);
}

TEST(ArgCompareTo, OfAMissingObjectNegatesWithWrapAround) {
  lvArg gone;
  lvArg high;
  setReferenceWord(gone, 0);
  setReferenceWord(high, 0xFFFFFFF0);
  EXPECT_EQ(gone.compareTo(high), 0x10);
  EXPECT_EQ(high.compareTo(gone), -0x10);
  payload(high) = 0;
}

#endif

// ---- Hashing
// -------------------------------------------------------------------------------------

TEST(ArgHashCode, OfNilIsAFixedNumberWhateverTheStaleWord) {
  lvArg const stale = staleNil(6);
  EXPECT_EQ(lvArg().hashCode(), 19567U);
  EXPECT_EQ(stale.hashCode(), 19567U);
}

TEST(ArgHashCode, OfIntegersIsALinearMixWithWrapAround) {
  EXPECT_EQ(integer(0).hashCode(), 69845U);
  EXPECT_EQ(integer(1).hashCode(), 46389U);
  EXPECT_EQ(integer(3).hashCode(), 0xFFFFFDF5);
  EXPECT_EQ(integer(-1).hashCode(), 93301U);
  EXPECT_EQ(integer(100000).hashCode(), 1949437141U);
  EXPECT_EQ(integer(INT_MIN).hashCode(), 69845U);
  EXPECT_EQ(integer(INT_MAX).hashCode(), 93301U);
}

TEST(ArgHashCode, OfAddressesMixesTheirEighths) {
  EXPECT_EQ(pointer(0).hashCode(), 69845U);
  EXPECT_EQ(pointer(7).hashCode(), 69845U);
  EXPECT_EQ(pointer(8).hashCode(), 46389U);
  EXPECT_EQ(pointer(800000).hashCode(), 1949437141U);
}

TEST(ArgHashCode, OfHighAddressesTakesThemForNegativeOnes) {
  EXPECT_EQ(pointer(static_cast<std::uintptr_t>(-8)).hashCode(), 93301U);
  EXPECT_EQ(pointer(static_cast<std::uintptr_t>(-1)).hashCode(), 93301U);
}

TEST(ArgHashCode, OfAReferenceIsThatOfTheObject) {
  EXPECT_EQ(lvArg(*new Scripted).hashCode(), 0xFEDCBA98);
  EXPECT_EQ(string("text").hashCode(), lvrString::computeHashCode("text", 4));
  EXPECT_EQ(lvArg(*new lvReferencable).hashCode(), 0U);
}

TEST(ArgHashCode, OfAReferenceWithoutObjectIsZero) {
  lvArg const gone = unheld(string("x"));
  EXPECT_EQ(gone.hashCode(), 0U);
}

TEST(ArgHashCode, OfAnUnknownTagIsZero) {
  for (unsigned const tag : unknownTags()) {
    lvArg cell;
    EXPECT_EQ(makeUnknown(cell, tag).hashCode(), 0U) << tag;
  }
}

TEST(ArgHashCode, IgnoresTheBookkeepingBits) {
  EXPECT_EQ(marked(integer(1), Marks).hashCode(), 46389U);
}

}  // namespace
