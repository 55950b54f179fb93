// Every operation of the lists and the stack, their cursors and handles, at each of its allocations
// out of memory.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/FailLoop.h"
#include "support/IgnoreLeaks.h"
#include "support/Nodes.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "support/SortedLists.h"
#include "support/Stacks.h"
#include "tarselvalues/containers/lvListEnumerator.h"
#include "tarselvalues/containers/lvListIterator.h"
#include "tarselvalues/containers/lvListRWIterator.h"
#include "tarselvalues/containers/lvSortedList.h"
#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/containers/lvSortedListIterator.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using test::countOf;
using test::exhaust;
using test::Exits;
using test::Held;
using test::integer;
using test::NeedsNone;
using test::Nothing;
using test::SaysNothing;
using test::string;
using test::Throws;

constexpr char NoMemory[] = "-12";
constexpr int Last = -1;

bool isAny(lvArg const& /*value*/, void* /*ctx*/) { return true; }

// A container of 1, 2 and 3, and a value that is not in it.
template <class Container>
struct Filled {
  template <class... Arguments>
  explicit Filled(Arguments... arguments) : container(arguments...) {}

  Container* operator->() const { return &*container; }
  Container& operator*() const { return *container; }
  std::string heldBy() const {
    return "hash " + std::to_string(container->hashCode()) + " held " +
           std::to_string(countOf(*container)) + " " + std::to_string(countOf(value));
  }

  Held<Container> container;
  lvArg value = string("value");
};

// ---- The vector --------------------------------------------------------------------------------

// Without room for more.
struct FullVector : Filled<lvrVector> {
  FullVector() : Filled(3) { test::append(**this, {1, 2, 3}); }
  std::string shown() const {
    return test::slotsOf(**this) + heldBy() + (cursor != nullptr ? " cursor" : "");
  }

  std::unique_ptr<lviRealListEnumerator> cursor;
};

struct WrappedVector : FullVector {
  WrappedVector() {
    (*this)->remove(0);
    test::append(**this, {4});
  }
};

struct VectorWithCursor : FullVector {
  VectorWithCursor() {
    cursor.reset((*this)->getListEnumerator());
    cursor->gotoNext();
  }
};

TEST(VectorOutOfMemory, IsToldAndLeavesTheVectorAsItWas) {
  exhaust<Nothing>("lvrVector", "lvrVector, defaultCtorMethod", Throws,
                   [](Nothing&) { return lvArg(*lvrVector::defaultCtorMethod()); });
  for (int const index : {0, 1, 2, 3, Last}) {
    exhaust<FullVector>("lvrVector", "insert", Throws,
                        [index](FullVector& with) { return with->insert(with.value, index); });
  }
  exhaust<WrappedVector>("lvrVector", "insert", Throws,
                         [](WrappedVector& with) { return with->insert(with.value, 1); });
  exhaust<WrappedVector>("lvrVector", "setAlloced", Throws,
                         [](WrappedVector& with) { return with->setAlloced(9); });
  exhaust<FullVector>("lvrVector", "getListEnumerator", Throws,
                      [](FullVector& with) { with.cursor.reset(with->getListEnumerator()); });
}

TEST(VectorOutOfMemory, LeavesARingToWhoeverMadeIt) {
  auto ring = std::make_unique<lvArg[]>(3);
  lvArg taken;
  auto const adopt = [&] {
    taken = lvArg(*new lvrVector(3, 2, 0, ring.get()));
    ring.release();
  };
  EXPECT_TRUE(test::failsAfter(0, adopt));
  ASSERT_NE(ring, nullptr);
  EXPECT_EQ(test::allocationsOf(adopt), 1);
}

TEST(VectorOutOfMemory, NeedsNoMemoryToAsk) {
  exhaust<FullVector>("lvrVector", "at, getSize, getElementPos, hashCode, isSorted, merge",
                      NeedsNone, [](FullVector& with) {
                        with->at(1);
                        with->hashCode();
                        with->merge(*with);
                        return with->getSize() + with->getElementPos(with.value) +
                               static_cast<int>(with->isSorted());
                      });
  exhaust<FullVector>(
      "lvrVector",
      "getClassDesc, getStaticClassDesc, getListIterator, getListRWIterator, vectorEvent",
      NeedsNone, [](FullVector& with) {
        with->vectorEvent(lvrVector::InsertAction, 0, with.value);
        return with->getClassDesc().eq(lvrVector::getStaticClassDesc()) &&
               with->getListIterator() == nullptr && with->getListRWIterator() == nullptr;
      });
}

TEST(VectorOutOfMemory, NeedsNoMemoryToRemoveAndInsertAgain) {
  exhaust<WrappedVector>("lvrVector", "remove, insert, setAlloced", NeedsNone,
                         [](WrappedVector& with) {
                           with->remove(0);
                           with->insert(with.value, 1);
                           return with->remove(with.value) + with->setAlloced(3);
                         });
  exhaust<WrappedVector>("lvrVector", "clear, releaseData, finalize", NeedsNone,
                         [](WrappedVector& with) {
                           with->clear();
                           with->insert(with.value, 0);
                           return with->releaseData() + with->finalize();
                         });
}

TEST(VectorCursorOutOfMemory, NeedsNoMemoryOnceMade) {
  exhaust<VectorWithCursor>(
      "lvrVector::RealEnumerator",
      "gotoNext, gotoNextMatching, gotoPrevious, gotoPreviousMatching, gotoIndex, getIndex, "
      "getValue",
      NeedsNone, [](VectorWithCursor& with) {
        with.cursor->gotoNext();
        with.cursor->gotoNextMatching(isAny, nullptr);
        with.cursor->gotoPrevious();
        with.cursor->gotoPreviousMatching(isAny, nullptr);
        with.cursor->gotoIndex(2);
        with.cursor->getValue();
        return with.cursor->getIndex();
      });
  exhaust<FullVector>("lvrVector::RealEnumerator", "RealEnumerator", NeedsNone,
                      [](FullVector& with) { return lvrVector::RealEnumerator(*with).gotoNext(); });
}

// ---- The stack ---------------------------------------------------------------------------------

struct FullStack : Filled<lvrStack> {
  FullStack() : Filled(3) { test::pushUpTo(**this, 3); }
  std::string shown() const { return test::cellsOf(**this) + heldBy(); }
};

TEST(StackOutOfMemory, IsToldAndLeavesTheStackAsItWas) {
  exhaust<Nothing>("lvrStack", "lvrStack, defaultCtorMethod", Throws,
                   [](Nothing&) { return lvArg(*lvrStack::defaultCtorMethod()); });
  exhaust<FullStack>("lvrStack", "push", Throws,
                     [](FullStack& with) { return with->push(with.value); });
  for (int const capacity : {9, 3, -1}) {
    exhaust<FullStack>("lvrStack", "setAlloced", Throws,
                       [capacity](FullStack& with) { return with->setAlloced(capacity); });
  }
}

TEST(StackOutOfMemory, NeedsNoMemoryForTheRest) {
  exhaust<FullStack>("lvrStack", "pop, poke, push, peek, getSize, isEmpty, hashCode", NeedsNone,
                     [](FullStack& with) {
                       with->pop();
                       with->push(with.value);
                       with->poke(integer(9));
                       with->hashCode();
                       return with->peek(0).getInt() + with->getSize() +
                              static_cast<int>(with->isEmpty());
                     });
  exhaust<FullStack>(
      "lvrStack", "equiv, getClassDesc, getStaticClassDesc, stackEvent, releaseData, finalize",
      NeedsNone, [](FullStack& with) {
        with->stackEvent(lvrStack::PushAction, 0, with.value);
        bool const same = with->getClassDesc().eq(lvrStack::getStaticClassDesc());
        return static_cast<int>(same) + with->equiv(*with) + with->releaseData() + with->finalize();
      });
}

// ---- The linked list ---------------------------------------------------------------------------

struct Linked : Filled<lvrDLList> {
  Linked() { test::append(**this, {1, 2, 3}); }
  std::string shown() const {
    return test::forward(**this) + test::backward(**this) + heldBy() +
           (cursor != nullptr ? " cursor at " + std::to_string(cursor->getIndex()) : "");
  }

  std::unique_ptr<lviRealListEnumerator> cursor;
};

struct LinkedWithCursor : Linked {
  LinkedWithCursor() : changing((*this)->getListRWIterator()) {
    cursor.reset(changing);
    changing->gotoIndex(1);
  }

  lviRealListRWIterator* changing;
};

struct TwoLinked : Linked {
  test::LinkedList other{7};
};

TEST(LinkedListOutOfMemory, IsToldAndLeavesTheListAsItWas) {
  exhaust<Nothing>("lvrDLList", "lvrDLList, defaultCtorMethod", Throws,
                   [](Nothing&) { return lvArg(*lvrDLList::defaultCtorMethod()); });
  for (int const index : {0, 2, 3, Last}) {
    exhaust<Linked>("lvrDLList", "insert", Throws,
                    [index](Linked& with) { return with->insert(with.value, index); });
  }
  exhaust<TwoLinked>("lvrDLList", "merge", Throws,
                     [](TwoLinked& with) { return with->merge(*with.other); });
  exhaust<Linked>("lvrDLList", "getListEnumerator", Throws,
                  [](Linked& with) { with.cursor.reset(with->getListEnumerator()); });
  exhaust<Linked>("lvrDLList", "getListIterator", Throws,
                  [](Linked& with) { with.cursor.reset(with->getListIterator()); });
  exhaust<Linked>("lvrDLList", "getListRWIterator", Throws,
                  [](Linked& with) { with.cursor.reset(with->getListRWIterator()); });
}

TEST(LinkedListOutOfMemory, NeedsNoMemoryToAskAndToRemove) {
  exhaust<Linked>("lvrDLList", "at, getSize, getElementPos, isSorted", NeedsNone, [](Linked& with) {
    return with->at(1).getInt() + with->getSize() + with->getElementPos(with.value) +
           static_cast<int>(with->isSorted());
  });
  exhaust<Linked>("lvrDLList", "getClassDesc, getStaticClassDesc, remove, clear", NeedsNone,
                  [](Linked& with) {
                    bool const same = with->getClassDesc().eq(lvrDLList::getStaticClassDesc());
                    with->remove(1);
                    int const status = with->remove(integer(3));
                    return status + static_cast<int>(same && with->clear());
                  });
}

TEST(LinkedListCursorOutOfMemory, StaysWhereItIs) {
  exhaust<LinkedWithCursor>(
      "lvrDLList::RealRWIterator", "insert", Throws,
      [](LinkedWithCursor& with) { return with.changing->insert(with.value); });
  exhaust<Linked>("lvrDLList::IteratorLogic", "insert", Throws, [](Linked& with) {
    lvrDLList::IteratorLogic cursor(*with);
    cursor.gotoIndex(1);
    return cursor.insert(with.value);
  });
}

// What each kind of cursor of a linked list can do.
int walkWith(lvrDLList::IteratorLogic& cursor) {
  cursor.gotoNext();
  cursor.gotoMatching(isAny, nullptr, false);
  cursor.gotoPrevious();
  cursor.gotoIndex(2);
  return cursor.getIndex() + cursor.getValue().getInt();
}

TEST(LinkedListCursorOutOfMemory, NeedsNoMemoryForTheRest) {
  exhaust<Linked>(
      "lvrDLList::IteratorLogic",
      "IteratorLogic, gotoNext, gotoMatching, gotoPrevious, gotoIndex, getIndex, getValue, remove",
      NeedsNone, [](Linked& with) {
        lvrDLList::IteratorLogic cursor(*with);
        return walkWith(cursor) + static_cast<int>(cursor.remove());
      });
  exhaust<LinkedWithCursor>("lvrDLList::RealRWIterator", "remove, isWritable", NeedsNone,
                            [](LinkedWithCursor& with) {
                              return with.changing->remove() && with.changing->isWritable();
                            });
  exhaust<Linked>("lvrDLList::RealRWIterator", "RealRWIterator", NeedsNone, [](Linked& with) {
    return lvrDLList::RealRWIterator(*with).gotoPreviousMatching(isAny, nullptr);
  });
  exhaust<Linked>("lvrDLList::RealIterator", "RealIterator, remove", NeedsNone, [](Linked& with) {
    lvrDLList::RealIterator cursor(*with);
    return cursor.gotoNextMatching(isAny, nullptr) && cursor.remove();
  });
  exhaust<Linked>("lvrDLList::RealEnumerator", "RealEnumerator", NeedsNone, [](Linked& with) {
    lvrDLList::RealEnumerator cursor(*with);
    return cursor.gotoNext() && cursor.gotoIndex(2) && !cursor.gotoNext() && cursor.gotoPrevious();
  });
}

// ---- The sorted list ---------------------------------------------------------------------------

// Without room for more.
struct FullSorted : Filled<lvrSortedArrayList> {
  explicit FullSorted(unsigned duplicates = test::WithDuplicates) : Filled(duplicates) {
    for (int i = 1; i <= 8; ++i) {
      (*this)->add(integer(i));
    }
  }
  std::string shown() const {
    return test::elementsOf(**this) + heldBy() + " " +
           std::to_string(test::isRestNil(**this) ? 1 : 0) + test::elementsOf(*other) +
           std::to_string(countOf(*other)) + (cursor != nullptr ? " cursor" : "") +
           (changing != nullptr ? " cursor" : "");
  }

  test::SortedArray other{test::WithDuplicates, {1, 3, 9}};
  std::unique_ptr<lviRealSortedListEnumerator> cursor;
  std::unique_ptr<lviRealSortedListIterator> changing;
};

struct FullSortedWithoutDuplicates : FullSorted {
  FullSortedWithoutDuplicates() : FullSorted(test::WithoutDuplicates) {}
};

struct TwoEqualSorted : FullSorted {
  test::SortedArray equal{test::WithDuplicates, {1, 2, 3, 4, 5, 6, 7, 8}};
};

struct EmptySorted : FullSorted {
  EmptySorted() { (*this)->clear(); }
};

// What a list that lost its elements shows.
constexpr char Lost[] = "hash 0 held 1 1 11 3 9 1";

TEST(SortedListOutOfMemory, IsToldAndLeavesTheListAsItWas) {
  exhaust<Nothing>("lvrSortedArrayList", "lvrSortedArrayList, defaultCtorMethod", Throws,
                   [](Nothing&) { return lvArg(*lvrSortedArrayList::defaultCtorMethod()); });
  exhaust<FullSorted>(
      "lvrSortedArrayList", "getSortedListEnumerator", Throws,
      [](FullSorted& with) { with.cursor.reset(with->getSortedListEnumerator(1)); });
  exhaust<FullSorted>("lvrSortedArrayList", "getSortedListIterator", Throws, [](FullSorted& with) {
    with.changing.reset(with->getSortedListIterator(1));
  });
  exhaust<FullSorted>("lvrSortedArrayList", "containsAll", Throws,
                      [](FullSorted& with) { return with->containsAll(*with.other); });
  exhaust<TwoEqualSorted>(
      "lvrSortedArrayList", "compareTo, equals", Throws, [](TwoEqualSorted& with) {
        return with->compareTo(*with.equal) + static_cast<int>(with->equals(*with.equal));
      });
}

TEST(SortedListOutOfMemory, EndsTheProcessWhereAListWithElementsCannotGrow) {
  exhaust<FullSorted>("lvrSortedArrayList", "add", Exits,
                      [](FullSorted& with) { return with->add(with.value); });
  exhaust<FullSorted>("lvrSortedArrayList", "add", Exits,
                      [](FullSorted& with) { return with->add(integer(5)); });
  exhaust<FullSortedWithoutDuplicates>(
      "lvrSortedArrayList", "add", Exits,
      [](FullSortedWithoutDuplicates& with) { return with->add(integer(5)); });
}

TEST(SortedListOutOfMemory, LeavesAnEmptyListEmpty) {
  exhaust<EmptySorted>("lvrSortedArrayList", "add", SaysNothing,
                       [](EmptySorted& with) { return with->add(with.value); });
  exhaust<EmptySorted>("lvrSortedArrayList", "expand", NoMemory,
                       [](EmptySorted& with) { return with->expand(9); });
}

TEST(SortedListOutOfMemory, LosesTheElementsOfAListThatTakesAnotherIn) {
  exhaust<FullSorted>(
      "lvrSortedArrayList", "expand", NoMemory, [](FullSorted& with) { return with->expand(9); },
      Lost);
  exhaust<FullSorted>(
      "lvrSortedArrayList", "addAll", "says nothing, throws",
      [](FullSorted& with) { return with->addAll(*with.other); }, Lost);
  exhaust<FullSortedWithoutDuplicates>(
      "lvrSortedArrayList", "addAll", "throws, says nothing, throws",
      [](FullSortedWithoutDuplicates& with) { return with->addAll(*with.other); }, Lost);
}

TEST(SortedListOutOfMemory, NeedsNoMemoryToAsk) {
  exhaust<FullSorted>(
      "lvrSortedArrayList", "getSize, isEmpty, get, contains, indexOf, lastIndexOf, search",
      NeedsNone, [](FullSorted& with) {
        with->get(3);
        with->isEmpty();
        with->contains(with.value);
        return with->getSize() + with->indexOf(integer(3)) + with->lastIndexOf(integer(9)) +
               with->search(integer(4), nullptr, 0, lvrSortedArrayList::WholeList);
      });
  exhaust<FullSorted>("lvrSortedArrayList", "equals, getClassDesc, getStaticClassDesc", NeedsNone,
                      [](FullSorted& with) {
                        with->getClassDesc();
                        lvrSortedArrayList::getStaticClassDesc();
                        return with->equals(*with) && !with->equals(*with.other);
                      });
  exhaust<FullSorted>("lvrSortedArrayList", "reserved14, reserved15, reserved16, reserved17",
                      NeedsNone, [](FullSorted& with) {
                        return with->reserved14() + with->reserved15() +
                               with->reserved16().getInt() + with->reserved17().getInt();
                      });
}

TEST(SortedListOutOfMemory, NeedsNoMemoryToRemoveAndAddAgain) {
  exhaust<FullSorted>("lvrSortedArrayList", "removeEntry, insertEmptyEntry, add, expand", NeedsNone,
                      [](FullSorted& with) {
                        with->removeEntry(1);
                        with->insertEmptyEntry(7);
                        return with->add(with.value) + with->expand(8);
                      });
  exhaust<FullSorted>("lvrSortedArrayList", "clear, finalize", NeedsNone, [](FullSorted& with) {
    with->clear();
    return with->finalize();
  });
}

TEST(SortedListCursorOutOfMemory, NeedsNoMemoryOnceMade) {
  exhaust<FullSorted>("lvrSortedArrayList::Enumerator",
                      "hasNext, hasPrevious, next, nextIndex, previous, previousIndex", NeedsNone,
                      [](FullSorted& with) {
                        lvrSortedArrayList::Enumerator cursor(*with, 1);
                        cursor.next();
                        cursor.previous();
                        return cursor.nextIndex() + cursor.previousIndex() +
                               static_cast<int>(cursor.hasNext() && cursor.hasPrevious());
                      });
  exhaust<FullSorted>(
      "lvrSortedArrayList::Iterator",
      "hasNext, hasPrevious, next, nextIndex, previous, previousIndex, add, remove, set", NeedsNone,
      [](FullSorted& with) {
        lvrSortedArrayList::Iterator cursor(*with, 1);
        cursor.next();
        cursor.previous();
        cursor.add(with.value);
        cursor.set(with.value);
        cursor.remove();
        return cursor.nextIndex() + cursor.previousIndex() +
               static_cast<int>(cursor.hasNext() && cursor.hasPrevious());
      });
  exhaust<FullSorted>(
      "lvrSortedArrayList::BaseEnumerator",
      "BaseEnumerator, hasNext, hasPrevious, next, nextIndex, previous, previousIndex", NeedsNone,
      [](FullSorted& with) {
        lvrSortedArrayList::BaseEnumerator cursor(*with, 1);
        cursor.next(*with);
        cursor.previous(*with);
        return cursor.nextIndex(*with) + cursor.previousIndex(*with) +
               static_cast<int>(cursor.hasNext(*with) && cursor.hasPrevious(*with));
      });
}

// ---- Comparisons that need memory --------------------------------------------------------------

// Sorted lists of one element each: comparing two of them takes a cursor.
lvArg listOf(int value) { return test::SortedArray(test::WithDuplicates, {value}).cell(); }

std::string shownLists(std::vector<lvArg> const& lists) {
  std::string all;
  for (lvArg const& list : lists) {
    all += test::elementsOf(*lvSortedList(list).getSortedList()) + std::to_string(countOf(list)) +
           "; ";
  }
  return all;
}

// A sorted list of sorted lists, and more of them.
struct ListOfLists : Filled<lvrSortedArrayList> {
  explicit ListOfLists(unsigned duplicates = test::WithDuplicates) : Filled(duplicates) {
    test::addEach(**this, lists);
    test::addEach(*other, {listOf(0), listOf(2), listOf(3), listOf(7)});
  }
  std::string shown() const {
    std::vector<lvArg> elements{fresh, lists[0], lists[1], lists[2]};
    for (int i = 0; i < (*this)->getSize(); ++i) {
      elements.push_back((*this)->get(i));
    }
    return shownLists(elements);
  }

  std::vector<lvArg> lists{listOf(1), listOf(3), listOf(5)};
  lvArg fresh = listOf(4);
  lvArg second = listOf(3);
  Held<lvrSortedArrayList> other{test::WithDuplicates};
};

TEST(SortedListOutOfMemory, IsToldWhereElementsNeedItToBeCompared) {
  exhaust<ListOfLists>("lvrSortedArrayList", "add", Throws,
                       [](ListOfLists& with) { return with->add(with.fresh); });
  exhaust<ListOfLists>("lvrSortedArrayList", "add", Throws,
                       [](ListOfLists& with) { return with->add(with.second); });
  exhaust<ListOfLists>("lvrSortedArrayList", "contains, indexOf, lastIndexOf, search", Throws,
                       [](ListOfLists& with) {
                         return static_cast<int>(with->contains(with.fresh)) +
                                with->indexOf(with.fresh) + with->lastIndexOf(with.fresh) +
                                with->search(with.fresh, nullptr, 0, 2);
                       });
}

std::string firstsOf(lvrSortedArrayList const& list) {
  std::string firsts;
  for (int i = 0; i < list.getSize(); ++i) {
    firsts += test::brief(lvSortedList(list.get(i))->get(0)) + " ";
  }
  return firsts;
}

// What was merged before stays, from the greatest element down.
TEST(SortedListOutOfMemory, KeepsItsElementsInOrderWhereAMergeNeedsItToCompare) {
  std::vector<std::string> outcomes;
  int allocations = 0;
  do {
    ListOfLists const with;
    int const before = test::blocksAlive();
    bool const thrown = test::failsAfter(allocations, [&] { with->addAll(*with.other); });
    int const after = test::blocksAlive();
    EXPECT_EQ(after, before);
    outcomes.push_back((thrown ? "" : "all: ") + firstsOf(*with));
    EXPECT_EQ(countOf(with.lists[0]), 2);
    ++allocations;
  } while (outcomes.back().substr(0, 3) != "all");
  outcomes.erase(std::unique(outcomes.begin(), outcomes.end()), outcomes.end());
  EXPECT_THAT(outcomes, testing::ElementsAre("1 3 5 ", "1 3 5 7 ", "1 3 3 5 7 ", "1 2 3 3 5 7 ",
                                             "all: 0 1 2 3 3 5 7 "));
}

// A tuple set whose keys are sorted lists.
struct SetOfLists : Filled<lvrTupleSet> {
  SetOfLists() : Filled(8, 8U, 0U) {
    for (lvArg const& key : lists) {
      container->put(key, integer(1));
    }
  }
  std::string shown() const {
    std::vector<lvArg> keys{fresh, lists[0], lists[1], lists[2]};
    for (int i = 0; i < container->getSize(); ++i) {
      keys.push_back(container->getKey(i));
    }
    return shownLists(keys) + test::brief(container->getValue(1));
  }

  std::vector<lvArg> lists{listOf(1), listOf(3), listOf(5)};
  lvArg fresh = listOf(4);
  lvArg second = listOf(3);
};

TEST(TupleSetOutOfMemory, IsToldWhereKeysNeedItToBeCompared) {
  exhaust<SetOfLists>("lvrTupleSet", "put", Throws,
                      [](SetOfLists& with) { return with->put(with.fresh, integer(2)); });
  exhaust<SetOfLists>("lvrTupleSet", "put", Throws,
                      [](SetOfLists& with) { return with->put(with.second, lvArg()); });
  exhaust<SetOfLists>("lvrTupleSet", "get, search", Throws, [](SetOfLists& with) {
    return with->get(with.fresh).getInt() + with->search(with.fresh, nullptr);
  });
}

// ---- Handles -----------------------------------------------------------------------------------

TEST(ListHandlesOutOfMemory, AreNotMadeAndTakeNoReference) {
  exhaust<Nothing>("lvVector", "lvVector", Throws, [](Nothing&) { return lvVector(7); });
  exhaust<FullVector>("lvListEnumerator", "lvListEnumerator", Throws,
                      [](FullVector& with) { return lvListEnumerator(*with)->gotoNext(); });
  exhaust<Linked>("lvListEnumerator", "lvListEnumerator", Throws,
                  [](Linked& with) { return lvListEnumerator(*with)->gotoNext(); });
  exhaust<FullSorted>("lvSortedListEnumerator", "lvSortedListEnumerator", Throws,
                      [](FullSorted& with) { return lvSortedListEnumerator(*with, 1)->hasNext(); });
  exhaust<FullSorted>(
      "lvSortedListEnumerator", "lvSortedListEnumerator", Throws,
      [](FullSorted& with) { return lvSortedListEnumerator(with.container.cell(), 1)->hasNext(); });
  exhaust<FullSorted>("lvSortedListIterator", "lvSortedListIterator", Throws,
                      [](FullSorted& with) { return lvSortedListIterator(*with, 1)->hasNext(); });
  exhaust<FullSorted>("lvSortedListIterator", "lvSortedListIterator", Throws, [](FullSorted& with) {
    return lvSortedListIterator(with.container.cell(), 1)->hasNext();
  });
}

TEST(ListHandlesOutOfMemory, NeedNoMemoryToShareAList) {
  exhaust<FullVector>("lvVector", "lvVector, getList", NeedsNone, [](FullVector& with) {
    return lvVector(with.container.cell()).getList() != nullptr;
  });
  exhaust<FullSorted>("lvSortedList", "lvSortedList, getSortedList", NeedsNone,
                      [](FullSorted& with) {
                        return lvSortedList(with.container.cell()).getSortedList() != nullptr &&
                               lvSortedList(*with).getSortedList() != nullptr;
                      });
}

// How many blocks the making of a handle leaves behind when only so many allocations succeed. The
// cursors among them keep the list.
template <class Handle>
int leftByFailing(lvrDLList& list, int allocations) {
  test::IgnoreLeaks const leaks;
  int const before = test::blocksAlive();
  EXPECT_TRUE(test::failsAfter(allocations, [&] { Handle{list}; }));
  return test::blocksAlive() - before;
}

TEST(ListHandlesOutOfMemory, LeaveNothingWhereTheIteratorIsMissing) {
  Linked const with;
  EXPECT_EQ(leftByFailing<lvListIterator>(*with, 0), 0);
  EXPECT_EQ(leftByFailing<lvListIterator>(*with, 1), 0);
  EXPECT_EQ(leftByFailing<lvListRWIterator>(*with, 0), 0);
  EXPECT_EQ(leftByFailing<lvListRWIterator>(*with, 1), 0);
  EXPECT_EQ(countOf(*with), 1);
}

TEST(ListHandlesOutOfMemory, LeaveTheEnumeratorWhereTheInsertingCursorIsMissing) {
  Linked const with;
  std::string const before = with.shown();
  EXPECT_EQ(leftByFailing<lvListRWIterator>(*with, 2), 1);
  EXPECT_EQ(countOf(*with), 2);
  (*with).__removeRef();  // What the enumerator holds.
  EXPECT_EQ(with.shown(), before);
}

}  // namespace
