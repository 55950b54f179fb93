// Random walks of a stack beside a slow model of its array, cell by cell.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "support/CellPool.h"
#include "support/Stacks.h"

namespace {

using test::CellPool;
using test::Held;
using Id = CellPool::Id;
using Layout = test::StackLayout;

constexpr int Steps = 4000;
constexpr int Room = 3;

// The stack, by the numbers of the cells in the pool; the top is the last.
class StackModel {
 public:
  explicit StackModel(CellPool const& pool) : pool_(pool) {}

  int count() const { return static_cast<int>(elements.size()); }
  Id peek(int depth) const {
    bool const isThere = depth >= 0 && depth < count();
    return isThere ? elements[elements.size() - 1 - static_cast<std::size_t>(depth)]
                   : CellPool::Nil;
  }

  void push(Id value) {
    if (count() == room) {
      setAlloced(count() * 3 / 2 + 10);
    }
    elements.push_back(value);
    isHashed = false;
  }

  Id pop() {
    Id const top = peek(0);
    if (count() > 0) {
      elements.pop_back();
      isHashed = false;
    }
    return top;
  }

  Id poke(Id value) {
    Id const top = peek(0);
    if (count() > 0) {
      elements.back() = value;
    }
    return top;
  }

  void releaseData() {
    elements.clear();
    hasArray = false;
    room = 0;
  }

  int setAlloced(int capacity) {
    if (hasArray && capacity < 0 && count() == 0) {
      releaseData();
    } else if (hasArray || capacity > 0) {
      room = std::max(capacity, count());
      hasArray = true;
    }
    return room;
  }

  unsigned hash() {
    if (!isHashed) {
      hashed = 74641U * static_cast<unsigned>(count());
      for (int depth = 0; depth < count(); ++depth) {
        hashed = hashed * static_cast<unsigned>(-28535) + pool_.hash(peek(depth));
      }
      isHashed = true;
    }
    return hashed;
  }

  std::vector<Id> elements;
  bool hasArray = true;
  int room = Room;
  bool isHashed = true;
  unsigned hashed = 0;

 private:
  CellPool const& pool_;
};

class StackWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  StackWalk() : random(GetParam()), stack(Room), model(pool) {}

  Id anyCell() { return random() % pool.size(); }
  int anyBelow(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }

  void push() {
    Id const value = anyCell();
    ASSERT_EQ(stack->push(pool.cell(value)), 0);
    model.push(value);
  }

  void pop() { ASSERT_EQ(pool.idOf(stack->pop()), model.pop()); }

  void poke() {
    Id const value = anyCell();
    ASSERT_EQ(pool.idOf(stack->poke(pool.cell(value))), model.poke(value));
  }

  void ask() {
    int const depth = anyBelow(model.count() + 4) - 2;
    ASSERT_EQ(pool.idOf(stack->peek(depth)), model.peek(depth));
    ASSERT_EQ(stack->hashCode(), model.hash());
  }

  void setAlloced() {
    int const capacity = anyBelow(40) - 8;
    ASSERT_EQ(stack->setAlloced(capacity), model.setAlloced(capacity));
  }

  void releaseData() {
    ASSERT_EQ(stack->releaseData(), 0);
    model.releaseData();
  }

  void step() {
    int const choice = anyBelow(200);
    if (choice < 80) {
      push();
    } else if (choice < 140) {
      pop();
    } else if (choice < 160) {
      poke();
    } else if (choice < 190) {
      ask();
    } else if (choice < 199) {
      setAlloced();
    } else {
      releaseData();
    }
  }

  // Every cell of the array, the numbers, and who holds the objects.
  void compare() {
    ASSERT_EQ(stack->getSize(), model.count());
    ASSERT_EQ(stack->isEmpty(), model.elements.empty());
    ASSERT_EQ(Layout::elements(*stack) != nullptr, model.hasArray);
    ASSERT_EQ(Layout::alloced(*stack), model.room);
    ASSERT_EQ(Layout::flags(*stack), model.isHashed ? 1U : 0U);
    std::vector<int> held(pool.size(), 0);
    for (int i = 0; i < model.room; ++i) {
      Id const expected = model.peek(model.count() - 1 - i);
      ASSERT_EQ(pool.idOf(Layout::elements(*stack)[i]), expected) << "cell " << i;
      ++held[expected];
    }
    for (Id id = 0; id < pool.size(); ++id) {
      if (pool.cell(id).getReferencable() != nullptr) {
        ASSERT_EQ(pool.holders(id), held[id]) << "object " << id;
      }
    }
  }

  CellPool pool;
  std::mt19937 random;
  Held<lvrStack> stack;
  StackModel model;
};

TEST_P(StackWalk, AgreesWithTheModel) {
  for (int i = 0; i < Steps; ++i) {
    SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(i));
    ASSERT_NO_FATAL_FAILURE(step());
    ASSERT_NO_FATAL_FAILURE(compare());
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, StackWalk, ::testing::Values(1U, 20260U, 987654321U));

}  // namespace
