// Containers that one thread after the other uses, and that others release than made them.

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/MapReading.h"
#include "support/Nested.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "support/Together.h"

namespace {

using test::countOf;
using test::Held;
using test::integer;

constexpr int Turns = 400;

// Lets the threads do their turns one after the other, 0, 1, 2 and so on.
class Baton {
 public:
  template <class Turn>
  void take(int turn, Turn const& work) {
    std::unique_lock<std::mutex> lock(mutex);
    passed.wait(lock, [&] { return next == turn; });
    work();
    ++next;
    passed.notify_all();
  }

 private:
  std::mutex mutex;
  std::condition_variable passed;
  int next = 0;
};

// The number of threads; with 1 the same work runs without any.
class HandedOn : public ::testing::TestWithParam<int> {
 protected:
  // Runs `work` with 0 to Turns - 1, each time in the next thread.
  template <class Turn>
  void inTurns(Turn const& work) {
    Baton baton;
    test::runTogether(GetParam(), [&](int thread) {
      for (int turn = thread; turn < Turns; turn += GetParam()) {
        baton.take(turn, [&] { work(turn); });
      }
    });
  }

  // In each turn a map gets an entry and loses the one of four turns before.
  void moveWindowOverMap(lviMap& map) {
    inTurns([&](int turn) {
      map.put(integer(turn), shared);
      EXPECT_TRUE(map.get(integer(turn)).eq(shared)) << turn;
      EXPECT_EQ(map.put(integer(turn - 4), lvArg::NilValue), 0);
    });
    ASSERT_EQ(map.getSize(), 4);
    for (int turn = Turns - 4; turn < Turns; ++turn) {
      EXPECT_TRUE(map.get(integer(turn)).eq(shared)) << turn;
    }
    EXPECT_EQ(countOf(shared), 1 + 4);
  }

  // In each turn a list gets an element at its end and loses its first, when it has five.
  void moveWindowOverList(lviList& list) {
    inTurns([&](int turn) {
      list.insert(turn % 2 == 0 ? shared : integer(turn), -1);
      if (list.getSize() == 5) {
        EXPECT_EQ(list.remove(0).isNil(), false) << turn;
      }
    });
    EXPECT_EQ(test::elementsOf(list), "'shared' 397 'shared' 399 ");
    EXPECT_EQ(countOf(shared), 1 + 2);
  }

  static lvArg textOrNumber(int i) {
    return i % 2 == 0 ? test::string("key " + std::to_string(i)) : integer(i);
  }

  lvArg const shared = test::string("shared");
};

INSTANTIATE_TEST_SUITE_P(Threads, HandedOn, ::testing::Values(1, 4));

TEST_P(HandedOn, HashMapIsWhatAllThreadsMadeOfIt) {
  Held<lvrHashMap> const map(3U);
  moveWindowOverMap(*map);
}

// The index that one thread has built grows in others, goes when a key is set anew, and comes back.
TEST_P(HandedOn, HashMapFindsAllKeysByWhicheverThreadTheyWerePut) {
  Held<lvrHashMap> const map(3U);
  lvArg const changing = test::string("at first");
  map->put(changing, integer(-1));
  inTurns([&](int turn) {
    map->put(textOrNumber(turn), integer(turn));
    for (int i = turn; i >= 0; i -= 7) {
      ASSERT_EQ(map->get(textOrNumber(i)).getInt(), i) << turn;
    }
    if (turn % 100 == 50) {
      static_cast<lvrString&>(*changing.getReferencable())
          .setStringData(std::to_string(turn).c_str(), -1, lvrString::CopyAndOwn);
    }
  });
  EXPECT_EQ(map->getSize(), 1 + Turns);
}

TEST_P(HandedOn, TupleSetIsWhatAllThreadsMadeOfIt) {
  Held<lvrTupleSet> const set(1, 1U, 0U);
  moveWindowOverMap(*set);
}

TEST_P(HandedOn, VectorIsWhatAllThreadsMadeOfIt) {
  Held<lvrVector> const vector(1);
  moveWindowOverList(*vector);
}

TEST_P(HandedOn, LinkedListIsWhatAllThreadsMadeOfIt) {
  Held<lvrDLList> const list;
  moveWindowOverList(*list);
}

TEST_P(HandedOn, StackGivesBackWhatOtherThreadsHavePushed) {
  Held<lvrStack> const stack(1);
  inTurns([&](int turn) {
    if (turn < Turns / 2) {
      EXPECT_EQ(stack->push(integer(turn)), 0);
    } else {
      EXPECT_EQ(stack->pop().getInt(), Turns - 1 - turn);
    }
  });
  EXPECT_TRUE(stack->isEmpty());
}

TEST_P(HandedOn, SortedListIsSortedForEveryThread) {
  Held<lvrSortedArrayList> const list(1U);
  inTurns([&](int turn) {
    list->add(integer((turn * 7) % Turns));  // Every number once.
    EXPECT_EQ(list->getSize(), turn + 1);
    EXPECT_NE(list->indexOf(integer((turn * 7) % Turns)), -1);
  });
  for (int i = 0; i < Turns; ++i) {
    ASSERT_EQ(list->get(i).getInt(), i);
  }
}

TEST_P(HandedOn, CursorGoesOnWhereTheThreadBeforeLeftIt) {
  Held<lvrDLList> const list;
  for (int i = 0; i < Turns; ++i) {
    list->insert(integer(i), -1);
  }
  std::unique_ptr<lviRealListEnumerator> const cursor(list->getListEnumerator());
  inTurns([&](int turn) {
    EXPECT_TRUE(cursor->gotoNext());
    EXPECT_EQ(cursor->getValue().getInt(), turn);
  });
  EXPECT_FALSE(cursor->gotoNext());
  EXPECT_EQ(countOf(*list), 2);
}

// ---- Made here, released there -----------------------------------------------------------------

// Cells on their way from one thread to another, no more than a few at once.
class Channel {
 public:
  void put(lvArg cell) {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&] { return cells.size() < 8; });
    cells.push_back(std::move(cell));
    changed.notify_all();
  }

  lvArg take() {
    std::unique_lock<std::mutex> lock(mutex);
    changed.wait(lock, [&] { return !cells.empty(); });
    lvArg cell = std::move(cells.front());
    cells.pop_front();
    changed.notify_all();
    return cell;
  }

 private:
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<lvArg> cells;
};

TEST(HandedOnContainers, AreReleasedWithAllTheyHoldByOtherThreadsThanMadeThem) {
  constexpr test::Wrap wraps[] = {test::inVector,   test::inMap,        test::inTupleSet,
                                  test::inStack,    test::inLinkedList, test::inSortedList,
                                  test::inMapAsKey, test::inLink};
  std::atomic<int> gone{0};
  Channel channel;
  test::runTogether(4, [&](int thread) {
    for (int i = 0; i < Turns; ++i) {
      if (thread % 2 == 0) {
        lvArg const probe = test::acting([&gone] { ++gone; });
        channel.put(wraps[i % 8](wraps[(i / 8) % 8](probe)));
      } else {
        lvArg const taken = channel.take();
        EXPECT_EQ(countOf(taken), 1);
      }
    }
  });
  EXPECT_EQ(gone, 2 * Turns);
}

}  // namespace
