// A walk of a vector beside a slow model of its ring, slot by slot.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "support/CellPool.h"
#include "support/Objects.h"
#include "support/Rings.h"
#include "support/walks/Choices.h"

namespace test {

// The vector, by the numbers of the cells in the pool. Moves one element at a time.
class VectorModel {
 public:
  using Id = CellPool::Id;

  struct Slot {
    Id id = CellPool::Nil;
    unsigned marks = 0;
  };

  VectorModel(CellPool const& pool, int capacity)
      : slots(static_cast<std::size_t>(std::max(capacity, 0))),
        hasArray(capacity >= 0),
        pool_(pool) {}

  Slot& slot(int position) {
    return slots[static_cast<std::size_t>((start + position) % alloced())];
  }
  Id at(int index) { return index >= 0 && index < count ? slot(index).id : CellPool::Nil; }
  int alloced() const { return static_cast<int>(slots.size()); }

  bool insert(Id value, int index) {
    if (index > count || index < -1) {
      return false;
    }
    if (count == alloced()) {
      setAlloced(count * 3 / 2 + 10);
    }
    int const position = index == -1 ? count : index;
    if (index != -1 && index < count / 2) {
      for (int k = 0; k < index; ++k) {
        slot(k + alloced() - 1).id = slot(k).id;
      }
      start = (start + alloced() - 1) % alloced();
    } else {
      for (int k = count; k > position; --k) {
        slot(k).id = slot(k - 1).id;
      }
    }
    slot(position).id = value;
    ++count;
    isHashed = false;
    return true;
  }

  Id remove(int index) {
    if (count == 0 || index < -1 || index >= count) {
      return CellPool::Nil;
    }
    int const position = index == -1 ? count - 1 : index;
    Id const removed = at(position);
    int const rest = --count;
    isHashed = false;
    if (position < rest / 2) {
      for (int k = position; k > 0; --k) {
        slot(k).id = slot(k - 1).id;
      }
      slot(0).id = CellPool::Nil;
      start = (start + 1) % alloced();
    } else {
      for (int k = position; k < rest; ++k) {
        slot(k).id = slot(k + 1).id;
      }
      slot(rest).id = CellPool::Nil;
    }
    return removed;
  }

  int find(Id value) {
    for (int i = 0; i < count; ++i) {
      if (pool_.areEqual(at(i), value)) {
        return i;
      }
    }
    return -1;
  }

  void clear() {
    for (Slot& slot : slots) {
      slot.id = CellPool::Nil;
    }
    count = 0;
  }

  void releaseData() {
    if (hasArray) {
      slots.clear();
      hasArray = false;
      count = 0;
      isHashed = false;
    }
  }

  int setAlloced(int capacity) {
    if (hasArray && capacity < 0 && count == 0) {
      releaseData();
      return 0;
    }
    if (!hasArray && capacity < 1) {
      return 0;
    }
    int const wanted = std::max(capacity, count);
    if (wanted != alloced()) {
      std::vector<Slot> fresh(static_cast<std::size_t>(wanted));
      for (int i = 0; i < count; ++i) {
        fresh[static_cast<std::size_t>(i)].id = at(i);
      }
      start = count > 0 ? 0 : start;
      slots = fresh;
      hasArray = true;
    }
    return wanted;
  }

  unsigned hash() {
    if (!isHashed) {
      hashed = 74641U * static_cast<unsigned>(count);
      for (int i = count; i-- > 0;) {
        hashed = hashed * static_cast<unsigned>(-28535) + pool_.hash(at(i));
      }
      isHashed = true;
    }
    return hashed;
  }

  std::vector<Slot> slots;
  bool hasArray;
  int start = 0;
  int count = 0;
  bool isHashed = true;
  unsigned hashed = 0;

 private:
  CellPool const& pool_;
};

class VectorWalk {
 public:
  explicit VectorWalk(Choices& source)
      : choices(source), vector(3), model(pool, 3), cursor(vector->getListEnumerator()) {}

  void step() {
    int const choice = choices.below(200);
    if (choice < 80) {
      insertAny();
    } else if (choice < 130) {
      removeAny();
    } else if (choice < 145) {
      removeValue();
    } else if (choice < 180) {
      ask();
    } else if (choice < 188) {
      setAnyAlloced();
    } else if (choice < 198) {
      markAnySlot();
    } else {
      clearBoth();
    }
  }

  // Every slot with its marks, the numbers, and who holds the objects.
  void compare() {
    ASSERT_EQ(vector->getSize(), model.count);
    ASSERT_EQ(Layout::elements(*vector) != nullptr, model.hasArray);
    ASSERT_EQ(Layout::alloced(*vector), model.alloced());
    ASSERT_EQ(Layout::start(*vector), model.start);
    ASSERT_EQ(Layout::flags(*vector), model.isHashed ? 1U : 0U);
    std::vector<int> held(pool.size(), 0);
    for (std::size_t i = 0; i < model.slots.size(); ++i) {
      lvArg const& cell = Layout::elements(*vector)[i];
      ASSERT_EQ(pool.idOf(cell), model.slots[i].id) << "slot " << i;
      ASSERT_EQ(bookkeepingOf(cell), model.slots[i].marks) << "slot " << i;
      ++held[model.slots[i].id];
    }
    for (Id id = 0; id < pool.size(); ++id) {
      if (pool.cell(id).getReferencable() != nullptr) {
        ASSERT_EQ(pool.holders(id), held[id]) << "cell " << id;
      }
    }
  }

  // Moves a cursor that lives through all changes.
  void moveCursor() {
    int const index = anyPosition();
    switch (choices.below(3)) {
      case 0:
        ASSERT_EQ(cursor->gotoNext(), cursorIndex + 1 < model.count);
        cursorIndex += cursorIndex + 1 < model.count ? 1 : 0;
        break;
      case 1:
        ASSERT_EQ(cursor->gotoPrevious(), cursorIndex >= 1);
        cursorIndex -= cursorIndex >= 1 ? 1 : 0;
        break;
      default:
        ASSERT_EQ(cursor->gotoIndex(index), index >= 0 && index < model.count);
        cursorIndex = index >= 0 && index < model.count ? index : cursorIndex;
        break;
    }
    ASSERT_EQ(cursor->getIndex(), cursorIndex);
    ASSERT_EQ(pool.idOf(cursor->getValue()), model.at(cursorIndex));
  }

 private:
  using Id = CellPool::Id;
  using Layout = VectorLayout;

  Id anyCell() { return choices.below(pool.size()); }
  // From below the valid positions to beyond them, the ends more often than the others.
  int anyPosition() {
    switch (choices.below(4)) {
      case 0:
        return -1;
      case 1:
        return 0;
      default:
        return choices.below(model.count + 5) - 3;
    }
  }

  void insertAny() {
    Id const value = anyCell();
    int const index = anyPosition();
    ASSERT_EQ(vector->insert(pool.cell(value), index), model.insert(value, index));
  }

  void removeAny() {
    int const index = anyPosition();
    ASSERT_EQ(pool.idOf(vector->remove(index)), model.remove(index));
  }

  void removeValue() {
    Id const value = anyCell();
    int const position = model.find(value);
    ASSERT_EQ(vector->remove(pool.cell(value)), position >= 0 ? 1 : 0);
    if (position >= 0) {
      model.remove(position);
    }
  }

  void ask() {
    Id const value = anyCell();
    int const index = anyPosition();
    ASSERT_EQ(pool.idOf(vector->at(index)), model.at(index));
    ASSERT_EQ(vector->getElementPos(pool.cell(value)), model.find(value));
    ASSERT_EQ(vector->hashCode(), model.hash());
  }

  void setAnyAlloced() {
    int const capacity = choices.below(40) - 8;
    ASSERT_EQ(vector->setAlloced(capacity), model.setAlloced(capacity));
  }

  void markAnySlot() {
    if (model.alloced() != 0) {
      std::size_t const slot = choices.below(model.slots.size());
      model.slots[slot].marks = choices.bits() & 0xFFFFFFE0U;
      setBookkeeping(Layout::elements(*vector)[slot], model.slots[slot].marks);
    }
  }

  void clearBoth() {
    if (choices.below(2) == 0) {
      ASSERT_TRUE(vector->clear());
      model.clear();
    } else {
      ASSERT_EQ(vector->releaseData(), 0);
      model.releaseData();
    }
  }

  Choices& choices;
  CellPool pool;
  Held<lvrVector> vector;
  VectorModel model;
  std::unique_ptr<lviRealListEnumerator> cursor;
  int cursorIndex = -1;
};

}  // namespace test
