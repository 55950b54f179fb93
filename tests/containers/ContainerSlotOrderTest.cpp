#include <gtest/gtest.h>

#include "support/Slots.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using test::NotVirtual;
using test::slotOf;

// Of the functions that come in two kinds.
using RemoveAt = lvArg (lvrVector::*)(int);
using RemoveValue = int (lvrVector::*)(lvArg const&);
using LinkedRemoveAt = lvArg (lvrDLList::*)(int);
using LinkedRemoveValue = int (lvrDLList::*)(lvArg const&);
using ListRemoveAt = lvArg (lviList::*)(int);
using ListRemoveValue = int (lviList::*)(lvArg const&);
using TupleSetGetValue = lvArg (lvrTupleSet::*)(int) const;

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

TEST(TupleSetSlots, FollowThoseOfTheBase) {
  EXPECT_EQ(slotOf(&lvrTupleSet::finalize), 7);
  EXPECT_EQ(slotOf(&lvrTupleSet::get), 11);
  EXPECT_EQ(slotOf(&lvrTupleSet::getSize), 12);
  EXPECT_EQ(slotOf(&lvrTupleSet::put), 13);
  EXPECT_EQ(slotOf(&lvrTupleSet::clear), 14);
  EXPECT_EQ(slotOf(&lvrTupleSet::getEnumerator), 15);
  EXPECT_EQ(slotOf(&lvrTupleSet::getIterator), 16);
  EXPECT_EQ(slotOf(&lvrTupleSet::getRWIterator), 17);
}

TEST(TupleSetSlots, AreNotTakenByThePlainOperations) {
  EXPECT_EQ(slotOf(&lvrTupleSet::search), NotVirtual);
  EXPECT_EQ(slotOf(&lvrTupleSet::getKey), NotVirtual);
  EXPECT_EQ(slotOf(static_cast<TupleSetGetValue>(&lvrTupleSet::getValue)), NotVirtual);
  EXPECT_EQ(slotOf(&lvrTupleSet::setValue), NotVirtual);
  EXPECT_EQ(slotOf(&lvrTupleSet::expand), NotVirtual);
  EXPECT_EQ(slotOf(&lvrTupleSet::removeEntry), NotVirtual);
}

TEST(TupleSetSlots, OfTheCursorsAreThoseOfTheirInterfaces) {
  EXPECT_EQ(slotOf(&lvrTupleSet::RealEnumerator::next), 3);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealEnumerator::getKey), 4);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealEnumerator::getValue), 5);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealIterator::next), 3);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealIterator::getKey), 4);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealIterator::getValue), 5);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealIterator::setValue), 6);
  EXPECT_EQ(slotOf(&lvrTupleSet::RealIterator::remove), 7);
}

class OwnTupleSet : public lvrTupleSet {
 public:
  using lvrTupleSet::lvrTupleSet;
  virtual void added() {}
};

TEST(TupleSetSlots, EndWithTheLastOfTheMapOperations) {
  EXPECT_EQ(slotOf(&OwnTupleSet::added), 18);
}

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

TEST(LinkedListSlots, FollowThoseOfTheBase) {
  EXPECT_EQ(slotOf(&lvrDLList::equiv), 1);
  EXPECT_EQ(slotOf(&lvrDLList::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrDLList::insert), 11);
  EXPECT_EQ(slotOf(static_cast<LinkedRemoveAt>(&lvrDLList::remove)), 12);
  EXPECT_EQ(slotOf(static_cast<LinkedRemoveValue>(&lvrDLList::remove)), 13);
  EXPECT_EQ(slotOf(&lvrDLList::clear), 14);
  EXPECT_EQ(slotOf(&lvrDLList::merge), 15);
  EXPECT_EQ(slotOf(&lvrDLList::at), 16);
  EXPECT_EQ(slotOf(&lvrDLList::getSize), 17);
  EXPECT_EQ(slotOf(&lvrDLList::getElementPos), 18);
  EXPECT_EQ(slotOf(&lvrDLList::getListEnumerator), 19);
  EXPECT_EQ(slotOf(&lvrDLList::getListIterator), 20);
  EXPECT_EQ(slotOf(&lvrDLList::getListRWIterator), 21);
  EXPECT_EQ(slotOf(&lvrDLList::isSorted), 22);
}

class OwnLinkedList : public lvrDLList {
 public:
  virtual void added() {}
};

TEST(LinkedListSlots, EndWithTheLastOfTheListOperations) {
  EXPECT_EQ(slotOf(&OwnLinkedList::added), 23);
}

TEST(LinkedListSlots, OfTheCursorsAreThoseOfTheirInterfaces) {
  expectEnumeratorSlots<lvrDLList::RealEnumerator>();
  expectEnumeratorSlots<lvrDLList::RealIterator>();
  expectEnumeratorSlots<lvrDLList::RealRWIterator>();
  EXPECT_EQ(slotOf(&lvrDLList::RealIterator::remove), 10);
  EXPECT_EQ(slotOf(&lvrDLList::RealRWIterator::remove), 10);
  EXPECT_EQ(slotOf(&lvrDLList::RealRWIterator::isWritable), 11);
  EXPECT_EQ(slotOf(&lvrDLList::RealRWIterator::insert), 12);
}

TEST(LinkedListSlots, AreNotTakenByTheCursorInside) {
  EXPECT_EQ(slotOf(&lvrDLList::IteratorLogic::gotoNext), NotVirtual);
  EXPECT_EQ(slotOf(&lvrDLList::IteratorLogic::remove), NotVirtual);
}

// The destructors come last: the first operation that a derived class adds follows both of them.
class OwnStackInterface : public lviStack {
 public:
  virtual void added() {}
};

TEST(StackInterfaceSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  EXPECT_EQ(slotOf(&lviStack::push), 1);
  EXPECT_EQ(slotOf(&lviStack::pop), 2);
  EXPECT_EQ(slotOf(&lviStack::poke), 3);
  EXPECT_EQ(slotOf(&lviStack::peek), 4);
  EXPECT_EQ(slotOf(&lviStack::getSize), 5);
  EXPECT_EQ(slotOf(&lviStack::isEmpty), 6);
  EXPECT_EQ(slotOf(&OwnStackInterface::added), 9);
}

TEST(StackSlots, FollowThoseOfTheBase) {
  EXPECT_EQ(slotOf(&lvrStack::equiv), 1);
  EXPECT_EQ(slotOf(&lvrStack::hashCode), 2);
  EXPECT_EQ(slotOf(&lvrStack::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrStack::finalize), 7);
  EXPECT_EQ(slotOf(&lvrStack::poke), 11);
  EXPECT_EQ(slotOf(&lvrStack::push), 12);
  EXPECT_EQ(slotOf(&lvrStack::pop), 13);
  EXPECT_EQ(slotOf(&lvrStack::peek), 14);
  EXPECT_EQ(slotOf(&lvrStack::getSize), 15);
  EXPECT_EQ(slotOf(&lvrStack::setAlloced), 16);
  EXPECT_EQ(slotOf(&lvrStack::isEmpty), 17);
  EXPECT_EQ(slotOf(&lvrStack::stackEvent), 18);
}

TEST(StackSlots, AreNotTakenByThePlainOperations) {
  EXPECT_EQ(slotOf(&lvrStack::releaseData), NotVirtual);
}

template <class List>
void expectSortedListSlots() {
  EXPECT_EQ(slotOf(&List::getSize), 11);
  EXPECT_EQ(slotOf(&List::add), 12);
  EXPECT_EQ(slotOf(&List::addAll), 13);
  EXPECT_EQ(slotOf(&List::clear), 14);
  EXPECT_EQ(slotOf(&List::contains), 15);
  EXPECT_EQ(slotOf(&List::containsAll), 16);
  EXPECT_EQ(slotOf(&List::equals), 17);
  EXPECT_EQ(slotOf(&List::get), 18);
  EXPECT_EQ(slotOf(&List::indexOf), 19);
  EXPECT_EQ(slotOf(&List::isEmpty), 20);
  EXPECT_EQ(slotOf(&List::getSortedListIterator), 21);
  EXPECT_EQ(slotOf(&List::getSortedListEnumerator), 22);
  EXPECT_EQ(slotOf(&List::lastIndexOf), 23);
  EXPECT_EQ(slotOf(&List::reserved14), 24);
  EXPECT_EQ(slotOf(&List::reserved15), 25);
  EXPECT_EQ(slotOf(&List::reserved16), 26);
  EXPECT_EQ(slotOf(&List::reserved17), 27);
}

TEST(SortedListSlots, FollowThoseOfTheBaseInTheInterfaceAndInTheList) {
  expectSortedListSlots<lviSortedList>();
  expectSortedListSlots<lvrSortedArrayList>();
}

TEST(SortedListSlots, OfTheBaseAreTakenByTheList) {
  EXPECT_EQ(slotOf(&lvrSortedArrayList::compareTo), 3);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::finalize), 7);
}

TEST(SortedListSlots, AreNotTakenByThePlainOperations) {
  EXPECT_EQ(slotOf(&lvrSortedArrayList::search), NotVirtual);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::expand), NotVirtual);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::removeEntry), NotVirtual);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::insertEmptyEntry), NotVirtual);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::BaseEnumerator::next), NotVirtual);
}

class OwnSortedArray : public lvrSortedArrayList {
 public:
  using lvrSortedArrayList::lvrSortedArrayList;
  virtual void added() {}
};

TEST(SortedListSlots, EndWithTheLastOfTheListOperations) {
  EXPECT_EQ(slotOf(&OwnSortedArray::added), 28);
}

// The destructors come last, unlike in the other cursors.
template <class Cursor>
void expectSortedCursorSlots() {
  EXPECT_EQ(slotOf(&Cursor::hasNext), 1);
  EXPECT_EQ(slotOf(&Cursor::hasPrevious), 2);
  EXPECT_EQ(slotOf(&Cursor::next), 3);
  EXPECT_EQ(slotOf(&Cursor::nextIndex), 4);
  EXPECT_EQ(slotOf(&Cursor::previous), 5);
  EXPECT_EQ(slotOf(&Cursor::previousIndex), 6);
}

TEST(SortedListCursorSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  expectSortedCursorSlots<lviRealSortedListEnumerator>();
  expectSortedCursorSlots<lviRealSortedListIterator>();
  expectSortedCursorSlots<lvrSortedArrayList::Enumerator>();
  expectSortedCursorSlots<lvrSortedArrayList::Iterator>();
  EXPECT_EQ(slotOf(&lviRealSortedListIterator::add), 9);
  EXPECT_EQ(slotOf(&lviRealSortedListIterator::remove), 10);
  EXPECT_EQ(slotOf(&lviRealSortedListIterator::set), 11);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::Iterator::add), 9);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::Iterator::remove), 10);
  EXPECT_EQ(slotOf(&lvrSortedArrayList::Iterator::set), 11);
}

}  // namespace
