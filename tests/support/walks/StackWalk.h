// A walk of a stack beside a slow model of its array, cell by cell.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <vector>

#include "support/CellPool.h"
#include "support/Stacks.h"
#include "support/walks/Choices.h"

namespace test {

// The stack, by the numbers of the cells in the pool; the top is the last.
class StackModel {
 public:
  using Id = CellPool::Id;

  StackModel(CellPool const& pool, int capacity) : room(capacity), pool_(pool) {}

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
  int room;
  bool isHashed = true;
  unsigned hashed = 0;

 private:
  CellPool const& pool_;
};

class StackWalk {
 public:
  explicit StackWalk(Choices& source) : choices(source), stack(Room), model(pool, Room) {}

  void step() {
    int const choice = choices.below(200);
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

 private:
  using Id = CellPool::Id;
  using Layout = StackLayout;
  static constexpr int Room = 3;

  Id anyCell() { return choices.below(pool.size()); }

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
    int const depth = choices.below(model.count() + 4) - 2;
    ASSERT_EQ(pool.idOf(stack->peek(depth)), model.peek(depth));
    ASSERT_EQ(stack->hashCode(), model.hash());
  }

  void setAlloced() {
    int const capacity = choices.below(40) - 8;
    ASSERT_EQ(stack->setAlloced(capacity), model.setAlloced(capacity));
  }

  void releaseData() {
    ASSERT_EQ(stack->releaseData(), 0);
    model.releaseData();
  }

  Choices& choices;
  CellPool pool;
  Held<lvrStack> stack;
  StackModel model;
};

}  // namespace test
