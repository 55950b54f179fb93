// A walk of a linked list and its cursors beside a slow model, which numbers the elements and looks
// up where each of them is.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <vector>

#include "support/CellPool.h"
#include "support/Nodes.h"
#include "support/walks/Choices.h"
#include "tarselvalues/containers/lvListEnumerator.h"

namespace test {

// The list, by the numbers of the cells in the pool.
class LinkedListModel {
 public:
  using Id = CellPool::Id;
  static constexpr int NoSerial = 0;

  struct Element {
    Id id;
    int serial;  // never used twice
  };

  int size() const { return static_cast<int>(elements.size()); }
  Id at(int index) const {
    int const position = index < 0 ? index + size() : index;
    return has(position) ? elements[static_cast<std::size_t>(position)].id : CellPool::Nil;
  }
  int serialAt(int position) const {
    return has(position) ? elements[static_cast<std::size_t>(position)].serial : NoSerial;
  }
  // Where the element with the serial is now, or -1.
  int whereIs(int serial) const {
    for (int i = 0; i < size(); ++i) {
      if (serialAt(i) == serial) {
        return i;
      }
    }
    return -1;
  }

  bool insert(Id value, int index) {
    int const gap = index < 0 ? index + size() + 1 : index;
    if (gap < 0 || gap > size()) {
      return false;
    }
    elements.insert(elements.begin() + gap, {value, ++lastSerial});
    return true;
  }

  bool erase(int index) {
    int const position = index < 0 ? index + size() : index;
    if (!has(position)) {
      return false;
    }
    elements.erase(elements.begin() + position);
    return true;
  }

  int find(Id value) {
    std::vector<int> found;
    for (int i = 0; i < size(); ++i) {
      if (at(i) == value) {
        found.push_back(i);
      }
    }
    bool const fromTail = isLastSought;
    isLastSought = !isLastSought;
    if (found.empty()) {
      return -1;
    }
    return fromTail ? found.back() : found.front();
  }

  std::vector<Element> elements;

 private:
  bool has(int position) const { return position >= 0 && position < size(); }

  int lastSerial = NoSerial;
  bool isLastSought = false;
};

// A cursor of the model: the serial of its element and its index.
class LinkedListCursorModel {
 public:
  using Id = CellPool::Id;

  explicit LinkedListCursorModel(LinkedListModel& walked) : list(&walked) {}

  bool gotoNext() {
    if (isNowhere) {
      return false;
    }
    settle();
    int candidate = LinkedListModel::NoSerial;
    if (index == -1) {
      candidate = list->serialAt(0);
    } else if (serial != LinkedListModel::NoSerial) {
      candidate = list->serialAt(list->whereIs(serial) + 1);
    }
    serial = candidate;
    index = candidate != LinkedListModel::NoSerial ? index + 1 : list->size();
    return candidate != LinkedListModel::NoSerial;
  }

  bool gotoPrevious() {
    if (isNowhere) {
      return false;
    }
    settle();
    int candidate = LinkedListModel::NoSerial;
    if (index == list->size()) {
      candidate = list->serialAt(index - 1);
    } else if (serial != LinkedListModel::NoSerial) {
      candidate = list->serialAt(list->whereIs(serial) - 1);
    }
    serial = candidate;
    index = candidate != LinkedListModel::NoSerial ? index - 1 : -1;
    return candidate != LinkedListModel::NoSerial;
  }

  bool gotoIndex(int position) {
    serial = list->serialAt(position < 0 ? position + list->size() : position);
    isNowhere = serial == LinkedListModel::NoSerial;
    index = isNowhere ? -1 : position;
    return !isNowhere;
  }

  bool remove() {
    if (isNowhere || settle() == LinkedListModel::NoSerial || index < 0 || index >= list->size()) {
      return false;
    }
    int const next = list->serialAt(list->whereIs(serial) + 1);
    bool const isNil = list->at(index) == CellPool::Nil;
    list->erase(index);
    serial = next;
    if (next == LinkedListModel::NoSerial) {
      index = list->size();
    }
    return !isNil;
  }

  bool insert(Id value) {
    if (isNowhere) {
      return false;
    }
    settle();
    if (index < 0 || !list->insert(value, index)) {
      return false;
    }
    ++index;
    return true;
  }

  int getIndex() {
    settle();
    return index;
  }
  Id getValue() {
    return settle() != LinkedListModel::NoSerial ? list->at(list->whereIs(serial)) : CellPool::Nil;
  }

 private:
  // If the element has gone, goes to the one that has its index now, or behind the last.
  int settle() {
    if (serial != LinkedListModel::NoSerial && list->whereIs(serial) < 0) {
      serial = index >= 0 ? list->serialAt(index) : LinkedListModel::NoSerial;
      if (serial == LinkedListModel::NoSerial && index >= 0) {
        index = list->size();
      }
    }
    return serial;
  }

  LinkedListModel* list;
  int serial = LinkedListModel::NoSerial;
  int index = -1;
  bool isNowhere = false;
};

class LinkedListWalk {
 public:
  explicit LinkedListWalk(Choices& source) : choices(source) {
    startSearchesAtTheHead();
    for (int i = 0; i < Cursors; ++i) {
      cursors.push_back(newPair());
    }
  }

  void step() {
    Pair& cursor = cursors[static_cast<std::size_t>(choices.below(Cursors))];
    int const choice = choices.below(200);
    if (choice < 40) {
      insertAny();
    } else if (choice < 65) {
      removeAny();
    } else if (choice < 80) {
      removeValue();
    } else if (choice < 95) {
      ask();
    } else if (choice < 98) {
      mergeSome();
    } else if (choice < 100) {
      clearBoth();
    } else if (choice < 165 || (choice < 190 && cursor.changing == nullptr)) {
      moveAny(cursor);
    } else if (choice < 190) {
      changeBy(cursor);
    } else if (choice < 197) {
      matchBy(cursor);
    } else {
      cursor = newPair();
    }
  }

  // The links both ways, the walk of a new cursor, and who holds the objects and the list.
  void compare() {
    ASSERT_EQ(list->getSize(), model.size());
    ASSERT_EQ(list->hashCode(), 0U);
    std::vector<int> held(pool.size(), 0);
    lvListEnumerator const walk(*list);
    Node const* node = Layout::head(*list);
    Node const* before = nullptr;
    for (LinkedListModel::Element const& element : model.elements) {
      ASSERT_NE(node, nullptr);
      ASSERT_EQ(node->prev, before);
      ASSERT_EQ(pool.idOf(node->value), element.id);
      ASSERT_TRUE(walk->gotoNext());
      ASSERT_EQ(pool.idOf(walk->getValue()), element.id);
      ++held[element.id];
      before = node;
      node = node->next;
    }
    ASSERT_EQ(node, nullptr);
    ASSERT_EQ(Layout::tail(*list), before);
    ASSERT_FALSE(walk->gotoNext());
    for (Id id = 0; id < pool.size(); ++id) {
      ASSERT_EQ(pool.holders(id), pool.cell(id).getReferencable() != nullptr ? held[id] : 0);
    }
    ASSERT_EQ(countOf(*list), Cursors + 2);  // The test, the cursors, the walk.
  }

  // What a cursor answers, sometimes: asking brings it up to date.
  void compareCursors() {
    for (Pair& cursor : cursors) {
      if (choices.below(3) == 0) {
        ASSERT_EQ(cursor.real->getIndex(), cursor.model.getIndex());
        ASSERT_EQ(pool.idOf(cursor.real->getValue()), cursor.model.getValue());
      }
    }
  }

 private:
  using Id = CellPool::Id;
  using Layout = ListLayout;
  static constexpr int Cursors = 4;

  struct Pair {
    std::unique_ptr<lviRealListEnumerator> real;
    lviRealListRWIterator* changing;  // The same, or null if it only reads.
    LinkedListCursorModel model;
  };

  // Every third cursor only reads.
  Pair newPair() {
    using Real = std::unique_ptr<lviRealListEnumerator>;
    if (++cursorsMade % 3 == 0) {
      return {Real(list->getListEnumerator()), nullptr, LinkedListCursorModel(model)};
    }
    lviRealListRWIterator* const changing = list->getListRWIterator();
    return {Real(changing), changing, LinkedListCursorModel(model)};
  }

  Id anyCell() { return choices.below(pool.size()); }
  // From below the valid positions, negative ones included, to beyond them.
  int anyPosition() {
    return choices.below(3) == 0 ? -1 : choices.below(2 * model.size() + 6) - model.size() - 3;
  }

  void insertAny() {
    Id const value = choices.below(4) == 0 ? CellPool::Nil : anyCell();
    int const index = anyPosition();
    ASSERT_EQ(list->insert(pool.cell(value), index), model.insert(value, index));
  }

  void removeAny() {
    int const index = anyPosition();
    Id const expected = model.at(index);
    model.erase(index);
    ASSERT_EQ(pool.idOf(list->remove(index)), expected);
  }

  void removeValue() {
    Id const value = anyCell();
    int const position = model.find(value);
    ASSERT_EQ(list->remove(pool.cell(value)), position >= 0 ? 0 : -1);
    if (position >= 0) {
      model.erase(position);
    }
  }

  void ask() {
    Id const value = anyCell();
    int const index = anyPosition();
    ASSERT_EQ(pool.idOf(list->at(index)), model.at(index));
    ASSERT_EQ(list->getElementPos(pool.cell(value)), model.find(value));
  }

  void mergeSome() {
    Held<lvrDLList> other;
    for (int i = choices.below(3); i > 0; --i) {
      other->insert(pool.cell(anyCell()), -1);
    }
    lviList const& merged = choices.below(4) == 0 && model.size() < 8 ? *list : *other;
    std::vector<Id> added;
    for (int i = 0; i < merged.getSize(); ++i) {
      added.push_back(pool.idOf(merged.at(i)));
    }
    ASSERT_EQ(list->merge(merged), !added.empty());
    for (Id const id : added) {
      model.insert(id, -1);
    }
  }

  void clearBoth() {
    ASSERT_TRUE(list->clear());
    model.elements.clear();
  }

  void moveAny(Pair& cursor) {
    int const index = anyPosition();
    switch (choices.below(5)) {
      case 0:
        ASSERT_EQ(cursor.real->gotoIndex(index), cursor.model.gotoIndex(index));
        break;
      case 1:
      case 2:
        ASSERT_EQ(cursor.real->gotoPrevious(), cursor.model.gotoPrevious());
        break;
      default:
        ASSERT_EQ(cursor.real->gotoNext(), cursor.model.gotoNext());
        break;
    }
  }

  void changeBy(Pair& cursor) {
    if (choices.below(2) == 0) {
      ASSERT_EQ(cursor.changing->remove(), cursor.model.remove());
    } else {
      Id const value = anyCell();
      ASSERT_EQ(cursor.changing->insert(pool.cell(value)), cursor.model.insert(value));
    }
  }

  // Searches for one value on the way.
  void matchBy(Pair& cursor) {
    Id const wanted = anyCell();
    auto const matches = [](lvArg const& value, void* ctx) {
      return value.eq(*static_cast<lvArg const*>(ctx));
    };
    bool const back = choices.below(2) == 0;
    lvArg sought = pool.cell(wanted);
    bool isFound = false;
    while (!isFound && (back ? cursor.model.gotoPrevious() : cursor.model.gotoNext())) {
      isFound = cursor.model.getValue() == wanted;
    }
    ASSERT_EQ(back ? cursor.real->gotoPreviousMatching(matches, &sought)
                   : cursor.real->gotoNextMatching(matches, &sought),
              isFound);
  }

  Choices& choices;
  CellPool pool;
  Held<lvrDLList> list;
  LinkedListModel model;
  std::vector<Pair> cursors;
  int cursorsMade = 0;
};

}  // namespace test
