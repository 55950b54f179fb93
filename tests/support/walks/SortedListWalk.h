// A walk of a sorted list, and of cursors over it, beside a slow model.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "support/CellPool.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "support/walks/Choices.h"

namespace test {

// Which of two cells of the pool is greater, told by their contents: nil, integers, addresses,
// objects by their address, strings.
class PoolOrder {
 public:
  using Id = CellPool::Id;

  explicit PoolOrder(CellPool const& pool) : pool_(pool) {}

  int operator()(Id a, Id b) const {
    lvArg const& left = pool_.cell(a);
    lvArg const& right = pool_.cell(b);
    if (left.getType() != right.getType()) {
      return left.getType() < right.getType() ? -1 : 1;
    }
    switch (left.getType()) {
      case lvArg::IntType:
        return signOf(left.getInt(), right.getInt());
      case lvArg::PointerType:
        return signOf(left.getPointer(), right.getPointer());
      case lvArg::StringType:
        return std::strcmp(textOf(left).c_str(), textOf(right).c_str());
      default:
        return signOf(left.getReferencable(), right.getReferencable());
    }
  }

 private:
  template <class T>
  static int signOf(T left, T right) {
    return left == right ? 0 : left < right ? -1 : 1;
  }

  CellPool const& pool_;
};

// The list, by the numbers of the cells in the pool. While it is in order, which a nil may disturb,
// it answers by looking at every element.
class SortedListModel {
 public:
  using Id = CellPool::Id;
  using Ids = std::vector<Id>;

  SortedListModel(CellPool const& pool, bool keepsDuplicates)
      : order_(pool), keepsDuplicates_(keepsDuplicates) {}

  int size() const { return static_cast<int>(ids.size()); }
  Id at(int index) const {
    return index >= 0 && index < size() ? ids[static_cast<std::size_t>(index)] : CellPool::Nil;
  }
  bool isInOrder() const {
    return std::is_sorted(ids.begin(), ids.end(), [this](Id a, Id b) { return order_(a, b) < 0; });
  }

  // Halves the range, one probe after the other; the last one is remembered.
  bool find(Id value, int low, int high, int& probed) const {
    probed = low;
    while (low < high) {
      probed = (low + high) / 2;
      int const order = order_(value, at(probed));
      if (order == 0) {
        return true;
      }
      (order < 0 ? high : low) = order < 0 ? probed : probed + 1;
    }
    return false;
  }

  void add(Id value) {
    int probed = 0;
    bool const found = find(value, 0, size(), probed);
    if (ids.empty()) {
      insert(0, value);
      hasArray = true;
    } else if (value == CellPool::Nil) {
      if (found) {
        ids.erase(ids.begin() + probed);
        ids.push_back(CellPool::Nil);
        ids[static_cast<std::size_t>(probed)] = CellPool::Nil;
      }
    } else if (found && !keepsDuplicates_) {
      ids[static_cast<std::size_t>(probed)] = value;
      ids.push_back(CellPool::Nil);
    } else {
      insert(!found && order_(value, at(probed)) > 0 ? probed + 1 : probed, value);
    }
  }

  // Requires both lists in order and, without duplicates, no nil in `other`. Each element of
  // `other` goes behind those that are not greater, or in the place of the last one that
  // is equal: add() can leave several without duplicates, behind its nil at the end.
  void addAll(Ids const& other) {
    hasArray = hasArray || !other.empty();
    Ids result;
    if (!keepsDuplicates_) {
      result = ids;
      for (Id const value : other) {
        auto const equal = std::find_if(result.rbegin(), result.rend(),
                                        [&](Id id) { return order_(id, value) == 0; });
        if (equal != result.rend()) {
          *equal = value;
        } else {
          result.insert(std::upper_bound(result.begin(), result.end(), value, before()), value);
        }
      }
    } else {
      result = pairedFromTheEnd(other);
    }
    ids = result;
  }

  int first(Id value) const { return position(ids.begin(), ids.end(), value, 0, 1); }
  int last(Id value) const { return position(ids.rbegin(), ids.rend(), value, size() - 1, -1); }

  Ids ids;
  bool hasArray = false;

 private:
  struct Before {
    PoolOrder order;
    bool operator()(Id a, Id b) const { return order(a, b) < 0; }
  };
  Before before() const { return Before{order_}; }

  void insert(int position, Id value) { ids.insert(ids.begin() + position, value); }

  // Merges run by run: of equal elements the last of `other` is the last, then the last of this
  // list, then the one but last of `other`, and so on.
  Ids pairedFromTheEnd(Ids const& other) const {
    Ids mine = ids;
    Ids theirs = other;
    Ids reversed;
    while (!mine.empty() || !theirs.empty()) {
      if (theirs.empty() || (!mine.empty() && order_(mine.back(), theirs.back()) > 0)) {
        reversed.push_back(mine.back());
        mine.pop_back();
        continue;
      }
      bool const isPair = !mine.empty() && order_(mine.back(), theirs.back()) == 0;
      reversed.push_back(theirs.back());
      theirs.pop_back();
      if (isPair) {
        reversed.push_back(mine.back());
        mine.pop_back();
      }
    }
    return Ids(reversed.rbegin(), reversed.rend());
  }

  template <class Where>
  int position(Where begin, Where end, Id value, int start, int step) const {
    for (Where where = begin; where != end; ++where, start += step) {
      if (order_(*where, value) == 0) {
        return start;
      }
    }
    return -1;
  }

  PoolOrder order_;
  bool keepsDuplicates_;
};

// Where a cursor stands. Only its steps move it, though the list may get shorter than its position.
class SortedListCursorModel {
 public:
  using Id = CellPool::Id;

  SortedListCursorModel(SortedListModel const& list, int position)
      : list_(list),
        index_(std::clamp(position, 0, list.size())),
        isStarted_(position >= 1 && position <= list.size()) {}

  bool hasNext() const { return index() + (isStarted() ? 1 : 0) < list_.size(); }
  bool hasPrevious() const { return index() > 0; }
  Id next() { return hasNext() ? goTo(index() + (isStarted() ? 1 : 0)) : stay(isStarted()); }
  Id previous() { return hasPrevious() ? goTo(index() - (isStarted() ? 1 : 0)) : stay(false); }
  int nextIndex() const { return hasNext() && isStarted() ? index() + 1 : list_.size(); }
  int previousIndex() const { return hasPrevious() && isStarted() ? index() - 1 : -1; }

 private:
  int index() const { return std::min(index_, list_.size()); }
  bool isStarted() const { return isStarted_ && list_.hasArray; }

  Id goTo(int index) {
    index_ = index;
    isStarted_ = true;
    return list_.at(index);
  }
  Id stay(bool isStarted) {
    index_ = index();
    isStarted_ = isStarted;
    return CellPool::Nil;
  }

  SortedListModel const& list_;
  int index_;
  bool isStarted_;
};

class SortedListWalk {
 public:
  SortedListWalk(Choices& source, unsigned duplicateMode)
      : choices(source),
        duplicates(duplicateMode),
        list(duplicateMode),
        model(pool, duplicateMode == WithDuplicates) {
    for (Id id = 0; id < pool.size(); ++id) {  // Without the two whose difference wraps around.
      if (std::abs(static_cast<long long>(pool.cell(id).getInt())) < 1000000) {
        usable.push_back(id);
      }
    }
  }

  void step() {
    int const choice = choices.below(200);
    if (choice < 90) {
      addAny();
    } else if (choice < 100) {
      addAllOfAny();
    } else if (choice < 101 && model.size() < 60) {
      addAllToItself();
    } else if (choice < 145) {
      removeAny();
    } else if (choice < 180) {
      ask();
    } else if (choice < 190) {
      compareWithAnother();
    } else if (choice < 192 || model.size() > 60 || !model.isInOrder()) {
      clearBoth();  // Out of order less is known.
    }
  }

  // Every element, the rest of the array, and who holds the objects.
  void compare() {
    ASSERT_EQ(list->getSize(), model.size());
    ASSERT_EQ(list->isEmpty(), model.ids.empty());
    ASSERT_EQ(Layout::array(*list) != nullptr, model.hasArray);
    ASSERT_EQ(list->hashCode(), 0U);
    ASSERT_TRUE(isRestNil(*list));
    std::vector<int> held(pool.size(), 0);
    for (int i = 0; i < model.size(); ++i) {
      ASSERT_EQ(pool.idOf(Layout::array(*list)[i]), model.at(i)) << "element " << i;
      ++held[model.at(i)];
    }
    for (Id const id : usable) {
      if (pool.cell(id).getReferencable() != nullptr) {
        ASSERT_EQ(pool.holders(id), held[id]) << "cell " << id;
      }
    }
  }

  // Cursors that live through all changes.
  void moveCursors() {
    if (walkers.size() == 8) {
      walkers.erase(walkers.begin() + choices.below(8));
    }
    if (walkers.empty() || choices.below(10) == 0) {
      int const position = anyPosition();
      bool const isIterator = choices.below(2) == 0;
      walkers.push_back(std::make_unique<Walker>(*list, model, position, isIterator));
    }
    for (auto const& walker : walkers) {
      ASSERT_NO_FATAL_FAILURE(move(*walker));
    }
  }

 private:
  using Id = CellPool::Id;
  using Ids = std::vector<Id>;
  using Layout = SortedLayout;

  // A cursor and its model.
  struct Walker {
    Walker(lvrSortedArrayList& list, SortedListModel const& where, int position, bool isIterator)
        : cursor(isIterator ? list.getSortedListIterator(position)
                            : list.getSortedListEnumerator(position)),
          model(where, position) {}

    std::unique_ptr<lviRealSortedListEnumerator> cursor;
    SortedListCursorModel model;
  };

  int anyPosition() { return choices.below(model.size() + 5) - 2; }
  // Nil is among them, but not often.
  Id anyCell() {
    Id const id = choices.pick(usable);
    return id == CellPool::Nil && choices.below(4) != 0 ? usable.back() : id;
  }

  void addAny() {
    Id const value = anyCell();
    ASSERT_EQ(list->add(pool.cell(value)), 0);
    model.add(value);
  }

  // Fills another list by another road: in order, as a list of the user's own, or added.
  void addAllOfAny() {
    SortedListModel other(pool, true);
    for (int i = choices.below(6); i > 0; --i) {
      Id const value = anyCell();
      if (value != CellPool::Nil) {
        other.add(value);
      }
    }
    std::vector<lvArg> cells;
    for (Id const id : other.ids) {
      cells.push_back(pool.cell(id));
    }
    Ids const before = model.ids;
    bool const isInOrder = model.isInOrder();
    if (choices.below(2) == 0) {
      ASSERT_TRUE(list->addAll(*Held<OwnSortedList>(cells)));
    } else {
      Held<lvrSortedArrayList> const array(WithDuplicates);
      array->addAll(*Held<OwnSortedList>(cells));
      ASSERT_TRUE(list->addAll(*array));
    }
    if (isInOrder) {
      model.addAll(other.ids);
    } else {
      adopt(before, other.ids);
    }
  }

  void addAllToItself() {
    Ids const before = model.ids;
    bool const isInOrder = model.isInOrder() && model.first(CellPool::Nil) == -1;
    ASSERT_TRUE(list->addAll(*list));
    if (isInOrder) {
      model.addAll(before);
    } else {
      adopt(before, before);
    }
  }

  // Out of order no more is promised than whose elements are there: all of both lists, or without
  // duplicates nobody else's. The model takes them over as they are.
  void adopt(Ids const& mine, Ids const& theirs) {
    Ids both = mine;
    both.insert(both.end(), theirs.begin(), theirs.end());
    Ids there;
    for (int i = 0; i < list->getSize(); ++i) {
      there.push_back(pool.idOf(list->get(i)));
    }
    model.ids = there;
    model.hasArray = model.hasArray || !theirs.empty();
    std::sort(both.begin(), both.end());
    std::sort(there.begin(), there.end());
    if (duplicates == WithDuplicates) {
      ASSERT_EQ(there, both);
    } else {
      there.erase(std::unique(there.begin(), there.end()), there.end());
      there.erase(there.begin(), std::upper_bound(there.begin(), there.end(), CellPool::Nil));
      ASSERT_TRUE(std::includes(both.begin(), both.end(), there.begin(), there.end()));
      ASSERT_GE(list->getSize(), static_cast<int>(mine.size()));
    }
  }

  void removeAny() {
    int const position = anyPosition();
    list->removeEntry(position);
    if (position >= 0 && position < model.size()) {
      model.ids.erase(model.ids.begin() + position);
    }
  }

  void clearBoth() {
    if (choices.below(2) == 0) {
      list->clear();
    } else {
      ASSERT_EQ(list->finalize(), 0);
    }
    model.ids.clear();
    model.hasArray = false;
  }

  void ask() {
    int const position = anyPosition();
    ASSERT_EQ(pool.idOf(list->get(position)), model.at(position));
    Id const value = anyCell();
    lvArg const& cell = pool.cell(value);
    int probed = 0;
    bool const isFound = model.find(value, 0, model.size(), probed);
    bool found = !isFound;
    ASSERT_EQ(list->search(cell, &found, 0, lvrSortedArrayList::WholeList), probed);
    ASSERT_EQ(found, isFound);
    ASSERT_EQ(list->contains(cell), isFound);
    if (!model.isInOrder()) {
      return;
    }
    ASSERT_EQ(isFound, model.first(value) != -1);
    bool const findsEnds = duplicates == WithDuplicates;  // Two nils may be in any list.
    int const hit = isFound ? probed : -1;
    ASSERT_EQ(list->indexOf(cell), findsEnds ? model.first(value) : hit);
    ASSERT_EQ(list->lastIndexOf(cell), findsEnds ? model.last(value) : hit);
  }

  // Against a list that has the same elements, or one of them replaced.
  void compareWithAnother() {
    std::vector<lvArg> cells;
    for (Id const id : model.ids) {
      cells.push_back(pool.cell(id));
    }
    ASSERT_EQ(list->compareTo(*Held<OwnSortedList>(cells)), 0);
    if (!cells.empty()) {
      auto const changed = static_cast<std::size_t>(choices.below(model.size()));
      Id const value = anyCell();
      cells[changed] = pool.cell(value);
      Held<OwnSortedList> const other(cells);
      int const order = PoolOrder(pool)(model.ids[changed], value);
      int const answer = list->compareTo(*other);
      ASSERT_EQ(answer < 0, order < 0);
      ASSERT_EQ(answer > 0, order > 0);
      ASSERT_EQ(list->equals(*other), order == 0);
    }
  }

  void move(Walker& walker) {
    lviRealSortedListEnumerator& cursor = *walker.cursor;
    switch (choices.below(5)) {
      case 0:
        ASSERT_EQ(pool.idOf(cursor.next()), walker.model.next());
        break;
      case 1:
        ASSERT_EQ(pool.idOf(cursor.previous()), walker.model.previous());
        break;
      case 2:
        ASSERT_EQ(cursor.hasNext(), walker.model.hasNext());
        ASSERT_EQ(cursor.hasPrevious(), walker.model.hasPrevious());
        break;
      case 3:
        ASSERT_EQ(cursor.nextIndex(), walker.model.nextIndex());
        ASSERT_EQ(cursor.previousIndex(), walker.model.previousIndex());
        break;
      default:
        break;  // It sleeps through this change.
    }
  }

  Choices& choices;
  unsigned duplicates;
  CellPool pool;
  Ids usable;
  Held<lvrSortedArrayList> list;
  SortedListModel model;
  std::vector<std::unique_ptr<Walker>> walkers;
};

}  // namespace test
