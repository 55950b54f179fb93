// A walk of a tuple set and its cursors beside a slow model of its array, pair by pair.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

#include "support/Pairs.h"
#include "support/RankedCells.h"
#include "support/walks/Choices.h"

namespace test {

// The set, by the numbers of the cells.
class TupleSetModel {
 public:
  using Id = RankedCells::Id;

  struct Pair {
    Id key = RankedCells::Nil;
    Id value = RankedCells::Nil;
  };
  struct Found {
    int position;
    bool isFound;
  };

  TupleSetModel(RankedCells const& cells, int step, bool insertsEqualKeys)
      : cells_(cells), step_(step), insertsEqualKeys_(insertsEqualKeys) {}

  int allocated() const { return static_cast<int>(pairs.size()); }
  Pair& at(int i) { return pairs[static_cast<std::size_t>(i)]; }
  bool has(int i) const { return i >= 0 && i < count; }

  // Looks at the middle of the positions from `low` up to `high`, then at that of one half.
  Found search(Id key, int low, int high) {
    int const middle = (low + high) / 2;
    int const order = cells_.compare(key, at(middle).key);
    if (order == 0) {
      return {middle, true};
    }
    int const newLow = order > 0 ? middle + 1 : low;
    int const newHigh = order > 0 ? high : middle;
    return newLow < newHigh ? search(key, newLow, newHigh) : Found{middle, false};
  }
  Found search(Id key) { return count > 0 ? search(key, 0, count) : Found{0, false}; }

  void expand(int needed) {
    if (allocated() < needed) {
      pairs.resize(static_cast<std::size_t>(std::max(allocated() + step_, needed)));
    }
  }

  void insert(int position, Id key, Id value) {
    expand(count + 1);
    for (int i = count; i > position; --i) {
      at(i) = at(i - 1);
    }
    at(position) = {key, value};
  }

  // How many keys are smaller.
  int placeOf(Id key) {
    int place = 0;
    while (place < count && cells_.compare(key, at(place).key) > 0) {
      ++place;
    }
    return place;
  }

  void put(Id key, Id value, Id& old) {
    Found const found = search(key);
    if (!found.isFound) {
      if (count == 0 || value != RankedCells::Nil) {
        insert(placeOf(key), key, value);
        ++count;
      }
      return;
    }
    old = at(found.position).value;
    if (value == RankedCells::Nil) {
      remove(found.position);
    } else if (insertsEqualKeys_) {
      insert(found.position, key, value);
    } else {
      at(found.position).value = value;
    }
  }

  void remove(int position) {
    for (int i = position; i < count - 1; ++i) {
      at(i) = at(i + 1);
    }
    at(count - 1) = Pair();
    --count;
  }

  void clear() {
    std::fill_n(pairs.begin(), count, Pair());
    count = 0;
  }

  std::vector<Pair> pairs;
  int count = 0;

 private:
  RankedCells const& cells_;
  int step_;
  bool insertsEqualKeys_;
};

class TupleSetWalk {
 public:
  TupleSetWalk(Choices& source, bool insertsEqualKeys)
      : choices(source),
        set(0, static_cast<unsigned>(GrowthStep), insertsEqualKeys ? 1U : 0U),
        model(cells, GrowthStep, insertsEqualKeys) {}

  void changeSet() {
    int const choice = choices.below(100);
    if (choice < 50) {
      put();
    } else if (choice < 75) {
      ask();
    } else if (choice < 85) {
      setValue();
    } else if (choice < 95) {
      removeEntry();
    } else if (choice < 99) {
      expand();
    } else {
      ASSERT_EQ(set->clear(), 0);
      model.clear();
    }
  }

  void moveCursor() {
    WalkingCursor& at = cursors[choices.below(Cursors)];
    int const choice = choices.below(20);
    if (at.cursor == nullptr || choice == 0) {
      at = newCursor();
    } else if (choice < 16 || at.changing == nullptr) {
      at.isOnAPair = model.has(++at.index);
      ASSERT_EQ(at.cursor->next(), at.isOnAPair);
    } else if (choice < 18) {
      ASSERT_NO_FATAL_FAILURE(setThroughCursor(at));
    } else {
      ASSERT_NO_FATAL_FAILURE(removeThroughCursor(at));
    }
  }

  // Every place of the array, the cursors, and who holds the objects.
  void compare() {
    ASSERT_EQ(set->getSize(), model.count);
    ASSERT_EQ(Layout::allocated(*set), model.allocated());
    std::vector<int> held(cells.size(), 0);
    for (int i = 0; i < model.allocated(); ++i) {
      lvrTupleSet::Pair const& pair = Layout::entries(*set)[i];
      ASSERT_EQ(cells.idOf(pair.key), model.at(i).key) << "pair " << i;
      ASSERT_EQ(cells.idOf(pair.value), model.at(i).value) << "pair " << i;
      ++held[model.at(i).key];
      ++held[model.at(i).value];
    }
    for (Id id = 0; id < cells.size(); ++id) {
      if (cells.cell(id).getReferencable() != nullptr) {
        ASSERT_EQ(cells.holders(id), held[id]) << "cell " << id;
      }
    }
    for (WalkingCursor const& at : cursors) {
      bool const isThere = at.isOnAPair && model.has(at.index);
      if (at.cursor != nullptr) {
        ASSERT_EQ(cells.idOf(at.cursor->getKey()), isThere ? model.at(at.index).key : Id{0});
        ASSERT_EQ(cells.idOf(at.cursor->getValue()), isThere ? model.at(at.index).value : Id{0});
      }
    }
  }

 private:
  using Id = RankedCells::Id;
  using Layout = SetLayout;
  static constexpr int Cursors = 3;
  static constexpr int GrowthStep = 3;

  // A cursor, and where it must be.
  struct WalkingCursor {
    std::unique_ptr<lviRealMapEnumerator> cursor;
    lviRealMapIterator* changing = nullptr;  // The same, unless it only reads.
    int index = -1;
    bool isOnAPair = false;
  };

  // Every third one only reads.
  WalkingCursor newCursor() {
    WalkingCursor made;
    if (++cursorsMade % 3 == 0) {
      made.cursor.reset(set->getEnumerator());
    } else {
      made.changing = set->getIterator();
      made.cursor.reset(made.changing);
    }
    return made;
  }

  Id anyCell() { return choices.below(cells.size()); }
  Id anyValue() { return choices.below(3) == 0 ? RankedCells::Nil : anyCell(); }
  int anyPosition() { return choices.below(model.count + 4) - 2; }

  void put() {
    Id const key = anyCell();
    Id const value = anyValue();
    Id const before = anyCell();
    lvArg old = cells.cell(before);
    Id expectedOld = before;
    model.put(key, value, expectedOld);
    ASSERT_EQ(set->put(cells.cell(key), cells.cell(value), &old), 0);
    ASSERT_EQ(cells.idOf(old), expectedOld);
  }

  void ask() {
    Id const key = anyCell();
    TupleSetModel::Found const expected = model.search(key);
    bool found = !expected.isFound;
    ASSERT_EQ(set->search(cells.cell(key), &found), expected.position);
    ASSERT_EQ(found, expected.isFound);
    ASSERT_EQ(cells.idOf(set->get(cells.cell(key))),
              found ? model.at(expected.position).value : RankedCells::Nil);
    int const i = anyPosition();
    ASSERT_EQ(cells.idOf(set->getKey(i)), model.has(i) ? model.at(i).key : RankedCells::Nil);
    ASSERT_EQ(cells.idOf(set->getValue(i)), model.has(i) ? model.at(i).value : RankedCells::Nil);
  }

  void setValue() {
    int const i = anyPosition();
    Id const value = anyValue();
    bool const isSet = model.has(i) && value != RankedCells::Nil;
    lvArg old = cells.cell(1);
    ASSERT_EQ(set->setValue(i, cells.cell(value), &old), isSet ? 1 : 0);
    ASSERT_EQ(cells.idOf(old), isSet ? model.at(i).value : Id{1});
    if (isSet) {
      model.at(i).value = value;
    }
  }

  void removeEntry() {
    int const i = anyPosition();
    set->removeEntry(i);
    if (model.has(i)) {
      model.remove(i);
    }
  }

  void expand() {
    int const needed = model.allocated() - 5 + choices.below(8);
    if (needed > 0 && needed < 100) {
      ASSERT_EQ(set->expand(needed), 0);
      model.expand(needed);
    }
  }

  void setThroughCursor(WalkingCursor& at) {
    Id const value = anyValue();
    lvArg old = cells.cell(1);
    bool const isThere = at.isOnAPair && model.has(at.index);
    int const missing = at.isOnAPair ? -2 : -1;
    Id const expectedOld = isThere ? model.at(at.index).value : RankedCells::Nil;
    ASSERT_EQ(at.changing->setValue(cells.cell(value), &old), isThere ? 0 : missing);
    ASSERT_EQ(cells.idOf(old), expectedOld);
    if (isThere && value != RankedCells::Nil) {
      model.at(at.index).value = value;
    } else if (isThere) {
      model.remove(at.index);
      at.isOnAPair = model.has(at.index);
    }
  }

  void removeThroughCursor(WalkingCursor& at) {
    bool const isThere = at.isOnAPair && model.has(at.index);
    int const missing = at.isOnAPair ? -2 : -1;
    ASSERT_EQ(at.changing->remove(), isThere ? 0 : missing);
    if (isThere) {
      model.remove(at.index);
      at.isOnAPair = model.has(at.index);
    }
  }

  Choices& choices;
  RankedCells cells;
  Held<lvrTupleSet> set;
  TupleSetModel model;
  WalkingCursor cursors[Cursors];
  int cursorsMade = 0;
};

}  // namespace test
