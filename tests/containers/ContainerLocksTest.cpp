// How often containers lock an object in a process with a second thread: their own mutex never, and
// those of elements once for each reference that is taken or dropped.
//
// The program is linked with --wrap for pthread_mutex_lock.

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <future>
#include <memory>
#include <thread>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"

namespace {

int locks = 0;

}  // namespace

// The names are the linker's.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
  ++locks;
  return __real_pthread_mutex_lock(mutex);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

using test::Held;
using test::integer;
using test::SortedArray;
using test::string;
using test::WithDuplicates;
using test::WithoutDuplicates;

// A thread that waits until the test is over.
class ContainerLocks : public ::testing::Test {
 protected:
  ContainerLocks() : waiting([this] { over.get_future().wait(); }) {}
  ~ContainerLocks() override {
    over.set_value();
    waiting.join();
  }

  static int locksOf(std::function<void()> const& action) {
    int const before = locks;
    action();
    return locks - before;
  }

  lvArg const text = string("text");

 private:
  std::promise<void> over;
  std::thread waiting;
};

void fill(lvrTupleSet& set, lvArg const& value) {
  for (int i = 0; i < 3; ++i) {
    set.put(integer(i), value);
  }
}

void fill(lvrStack& stack, lvArg const& value) {
  for (int i = 0; i < 3; ++i) {
    stack.push(value);
  }
}

void fill(lvrDLList& list, lvArg const& value) {
  for (int i = 0; i < 3; ++i) {
    list.insert(value, -1);
  }
}

void fill(lvrSortedArrayList& list, lvArg const& value) {
  for (int i = 0; i < 3; ++i) {
    list.add(value);
  }
}

lvArg filled(lvReferencable* container, lvArg const& value) {
  lvArg holder(*container);
  if (auto* const set = dynamic_cast<lvrTupleSet*>(container)) {
    fill(*set, value);
  } else if (auto* const stack = dynamic_cast<lvrStack*>(container)) {
    fill(*stack, value);
  } else if (auto* const list = dynamic_cast<lvrDLList*>(container)) {
    fill(*list, value);
  } else {
    fill(dynamic_cast<lvrSortedArrayList&>(*container), value);
  }
  return holder;
}

TEST_F(ContainerLocks, AreTakenOnceForTheLastReferenceToAContainer) {
  for (auto* const make : {lvrTupleSet::defaultCtorMethod, lvrStack::defaultCtorMethod,
                           lvrDLList::defaultCtorMethod, lvrSortedArrayList::defaultCtorMethod}) {
    lvArg holder = filled(make(), integer(7));
    EXPECT_EQ(locksOf([&] { holder.setNil(); }), 1);
    holder = filled(make(), text);
    EXPECT_EQ(locksOf([&] { holder.setNil(); }), 1 + 3);
  }
}

TEST_F(ContainerLocks, AreTakenForTheElementsOfAContainerThatIsCleared) {
  Held<lvrTupleSet> const set(3, 1U, 0U);
  fill(*set, text);
  EXPECT_EQ(locksOf([&] { set->clear(); }), 3);
  fill(*set, integer(7));
  EXPECT_EQ(locksOf([&] { set->clear(); }), 0);
  Held<lvrDLList> const list;
  fill(*list, text);
  EXPECT_EQ(locksOf([&] { list->clear(); }), 3);
}

TEST_F(ContainerLocks, AreNotTakenForASearch) {
  Held<lvrTupleSet> const set(3, 1U, 0U);
  for (lvArg const& key : {integer(1), integer(2), text}) {
    set->put(key, integer(7));
  }
  SortedArray const list(WithDuplicates, {1, 2, 3});
  list->add(text);
  int found = 0;
  EXPECT_EQ(locksOf([&] {
              found += set->get(integer(2)).getInt() + set->get(text).getInt();
              found += list->contains(integer(2)) && list->contains(text) ? 1 : 0;
              found += list->indexOf(text) + list->lastIndexOf(integer(3));
            }),
            0);
  EXPECT_EQ(found, 7 + 7 + 1 + 3 + 2);
}

TEST_F(ContainerLocks, AreTakenOnceForAReferenceThatIsPutIn) {
  Held<lvrTupleSet> const set(3, 1U, 0U);
  EXPECT_EQ(locksOf([&] { set->put(integer(1), text); }), 1);
  SortedArray const list(WithDuplicates, {1, 2, 3});
  EXPECT_EQ(locksOf([&] { list->add(text); }), 1);
  Held<lvrStack> const stack(3);
  EXPECT_EQ(locksOf([&] { stack->push(text); }), 1);
  lvArg popped;
  EXPECT_EQ(locksOf([&] { popped = stack->pop(); }), 0);
  EXPECT_TRUE(popped.eq(text));
}

TEST_F(ContainerLocks, AreTakenOnceForWhatACursorInsertsOrRemoves) {
  Held<lvrDLList> const list;
  fill(*list, integer(7));
  std::unique_ptr<lviRealListRWIterator> const cursor(list->getListRWIterator());
  cursor->gotoIndex(1);
  EXPECT_EQ(locksOf([&] { cursor->insert(text); }), 1);
  cursor->gotoPrevious();
  EXPECT_EQ(locksOf([&] { cursor->remove(); }), 1);
  EXPECT_EQ(locksOf([&] { cursor->remove(); }), 0);
  EXPECT_EQ(list->getSize(), 2);
}

TEST_F(ContainerLocks, AreNotTakenToCompareAndMergeSortedListsOfIntegers) {
  for (unsigned const duplicates : {WithDuplicates, WithoutDuplicates}) {
    SortedArray const list(duplicates, {1, 2, 3});
    SortedArray const other(duplicates, {2, 3, 5});
    bool isEqual = true;
    bool hasAll = true;
    EXPECT_EQ(locksOf([&] {
                isEqual = list->equals(*other);
                hasAll = list->containsAll(*other);
                list->addAll(*other);
              }),
              0);
    EXPECT_FALSE(isEqual || hasAll);
    EXPECT_EQ(list->getSize(), duplicates == WithDuplicates ? 6 : 4);
  }
}

// A cursor, as all cursors of linked lists, takes a reference to the list that it walks.
TEST_F(ContainerLocks, AreTakenForTheCursorOfALinkedListThatIsMerged) {
  Held<lvrDLList> const list;
  Held<lvrDLList> const other;
  fill(*other, integer(7));
  EXPECT_EQ(locksOf([&] { list->merge(*other); }), 2);
  EXPECT_EQ(list->getSize(), 3);
}

}  // namespace
