#include <gtest/gtest.h>

#include "support/Slots.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using test::NotVirtual;
using test::slotOf;

// Of the functions that come in two kinds.
using RemoveAt = lvArg (lvrVector::*)(int);
using RemoveValue = int (lvrVector::*)(lvArg const&);
using ListRemoveAt = lvArg (lviList::*)(int);
using ListRemoveValue = int (lviList::*)(lvArg const&);

TEST(MapSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  EXPECT_EQ(slotOf(&lviMap::getSize), 3);
  EXPECT_EQ(slotOf(&lviMap::get), 4);
  EXPECT_EQ(slotOf(&lviMap::put), 5);
  EXPECT_EQ(slotOf(&lviMap::clear), 6);
  EXPECT_EQ(slotOf(&lviMap::getEnumerator), 7);
  EXPECT_EQ(slotOf(&lviMap::getIterator), 8);
  EXPECT_EQ(slotOf(&lviMap::getRWIterator), 9);
}

TEST(MapCursorSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  EXPECT_EQ(slotOf(&lviRealMapEnumerator::next), 3);
  EXPECT_EQ(slotOf(&lviRealMapEnumerator::getKey), 4);
  EXPECT_EQ(slotOf(&lviRealMapEnumerator::getValue), 5);
  EXPECT_EQ(slotOf(&lviRealMapIterator::next), 3);
  EXPECT_EQ(slotOf(&lviRealMapIterator::getKey), 4);
  EXPECT_EQ(slotOf(&lviRealMapIterator::getValue), 5);
  EXPECT_EQ(slotOf(&lviRealMapIterator::setValue), 6);
  EXPECT_EQ(slotOf(&lviRealMapIterator::remove), 7);
}

TEST(HashMapSlots, FollowThoseOfTheBase) {
  EXPECT_EQ(slotOf(&lvrHashMap::hashCode), 2);
  EXPECT_EQ(slotOf(&lvrHashMap::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrHashMap::finalize), 7);
  EXPECT_EQ(slotOf(&lvrHashMap::get), 11);
  EXPECT_EQ(slotOf(&lvrHashMap::put), 12);
  EXPECT_EQ(slotOf(&lvrHashMap::clear), 13);
  EXPECT_EQ(slotOf(&lvrHashMap::getSize), 14);
  EXPECT_EQ(slotOf(&lvrHashMap::getEnumerator), 15);
  EXPECT_EQ(slotOf(&lvrHashMap::getIterator), 16);
  EXPECT_EQ(slotOf(&lvrHashMap::getRWIterator), 17);
}

TEST(HashMapSlots, AreNotTakenByThePlainOperations) {
  EXPECT_EQ(slotOf(&lvrHashMap::setHashSize), NotVirtual);
  EXPECT_EQ(slotOf(&lvrHashMap::needStorage), NotVirtual);
  EXPECT_EQ(slotOf(&lvrHashMap::freeStorage), NotVirtual);
  EXPECT_EQ(slotOf(&lvrHashMap::IteratorLogic::next), NotVirtual);
}

TEST(HashMapSlots, OfTheCursorAreThoseOfItsInterface) {
  EXPECT_EQ(slotOf(&lvrHashMap::RealEnumerator::next), 3);
  EXPECT_EQ(slotOf(&lvrHashMap::RealEnumerator::getKey), 4);
  EXPECT_EQ(slotOf(&lvrHashMap::RealEnumerator::getValue), 5);
}

// The first operation that a derived class adds comes after all others.
class OwnMap : public lvrHashMap {
 public:
  using lvrHashMap::lvrHashMap;
  virtual void added() {}
};

TEST(HashMapSlots, EndWithTheLastOfTheMapOperations) { EXPECT_EQ(slotOf(&OwnMap::added), 18); }

TEST(ListSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  EXPECT_EQ(slotOf(&lviList::isSorted), 3);
  EXPECT_EQ(slotOf(&lviList::insert), 4);
  EXPECT_EQ(slotOf(static_cast<ListRemoveAt>(&lviList::remove)), 5);
  EXPECT_EQ(slotOf(static_cast<ListRemoveValue>(&lviList::remove)), 6);
  EXPECT_EQ(slotOf(&lviList::clear), 7);
  EXPECT_EQ(slotOf(&lviList::merge), 8);
  EXPECT_EQ(slotOf(&lviList::at), 9);
  EXPECT_EQ(slotOf(&lviList::getSize), 10);
  EXPECT_EQ(slotOf(&lviList::getElementPos), 11);
  EXPECT_EQ(slotOf(&lviList::getListEnumerator), 12);
  EXPECT_EQ(slotOf(&lviList::getListIterator), 13);
  EXPECT_EQ(slotOf(&lviList::getListRWIterator), 14);
}

template <class Cursor>
void expectEnumeratorSlots() {
  EXPECT_EQ(slotOf(&Cursor::gotoNext), 3);
  EXPECT_EQ(slotOf(&Cursor::gotoNextMatching), 4);
  EXPECT_EQ(slotOf(&Cursor::gotoPrevious), 5);
  EXPECT_EQ(slotOf(&Cursor::gotoPreviousMatching), 6);
  EXPECT_EQ(slotOf(&Cursor::gotoIndex), 7);
  EXPECT_EQ(slotOf(&Cursor::getIndex), 8);
  EXPECT_EQ(slotOf(&Cursor::getValue), 9);
}

TEST(ListCursorSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  expectEnumeratorSlots<lviRealListEnumerator>();
  expectEnumeratorSlots<lviRealListIterator>();
  expectEnumeratorSlots<lviRealListRWIterator>();
  EXPECT_EQ(slotOf(&lviRealListIterator::remove), 10);
  EXPECT_EQ(slotOf(&lviRealListRWIterator::remove), 10);
  EXPECT_EQ(slotOf(&lviRealListRWIterator::isWritable), 11);
  EXPECT_EQ(slotOf(&lviRealListRWIterator::insert), 12);
}

TEST(VectorSlots, FollowThoseOfTheBase) {
  EXPECT_EQ(slotOf(&lvrVector::hashCode), 2);
  EXPECT_EQ(slotOf(&lvrVector::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrVector::finalize), 7);
  EXPECT_EQ(slotOf(&lvrVector::isSorted), 11);
  EXPECT_EQ(slotOf(&lvrVector::insert), 12);
  EXPECT_EQ(slotOf(static_cast<RemoveAt>(&lvrVector::remove)), 13);
  EXPECT_EQ(slotOf(static_cast<RemoveValue>(&lvrVector::remove)), 14);
  EXPECT_EQ(slotOf(&lvrVector::clear), 15);
  EXPECT_EQ(slotOf(&lvrVector::at), 16);
  EXPECT_EQ(slotOf(&lvrVector::getSize), 17);
  EXPECT_EQ(slotOf(&lvrVector::setAlloced), 18);
  EXPECT_EQ(slotOf(&lvrVector::getElementPos), 19);
  EXPECT_EQ(slotOf(&lvrVector::merge), 20);
  EXPECT_EQ(slotOf(&lvrVector::getListEnumerator), 21);
  EXPECT_EQ(slotOf(&lvrVector::getListIterator), 22);
  EXPECT_EQ(slotOf(&lvrVector::getListRWIterator), 23);
  EXPECT_EQ(slotOf(&lvrVector::vectorEvent), 24);
}

TEST(VectorSlots, AreNotTakenByThePlainOperations) {
  EXPECT_EQ(slotOf(&lvrVector::releaseData), NotVirtual);
}

TEST(VectorSlots, OfTheCursorAreThoseOfItsInterface) {
  expectEnumeratorSlots<lvrVector::RealEnumerator>();
}

}  // namespace
