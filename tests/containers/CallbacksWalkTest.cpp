// Random walks of containers whose elements act: when one is compared, hashed or released, it may
// change the very container, in the middle of what that does, or let it go. Nobody can foresee what
// such a container holds; but whenever it is at rest, its parts agree with each other, and nothing
// is lost.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "support/Nodes.h"
#include "support/Objects.h"
#include "support/Pairs.h"
#include "support/SortedLists.h"
#include "support/Stacks.h"
#include "tarselvalues/containers/lvListEnumerator.h"
#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using test::Held;
using test::integer;
using test::ListLayout;
using test::SetLayout;
using test::StackLayout;
using test::VectorLayout;

constexpr int Steps = 10000;
constexpr int Ranks = 12;
constexpr int MostEntries = 60;
constexpr int DeepestAct = 3;
constexpr unsigned OneActsIn = 6;

// What acts, and how many such objects there are.
class Actor {
 public:
  virtual void act() = 0;

  static void run() {
    if (current != nullptr) {
      current->act();
    }
  }
  static inline Actor* current = nullptr;
  static inline int alive = 0;

 protected:
  Actor() = default;
  ~Actor() = default;
  Actor(Actor const&) = default;
  Actor& operator=(Actor const&) = default;
};

// An object with a place in the order, which runs the actor whenever it is asked, and at its end.
class Item : public lvReferencable {
 public:
  explicit Item(int rank) : rank_(rank) { ++Actor::alive; }
  ~Item() override { --Actor::alive; }

  unsigned int hashCode() const override {
    unsigned const answer = static_cast<unsigned>(rank_) * 7919U;
    Actor::run();
    return answer;
  }
  int compareTo(lvReferencable const& other) const override {
    auto const* const item = dynamic_cast<Item const*>(&other);
    int const answer = item != nullptr ? rank_ - item->rank_ : lvReferencable::compareTo(other);
    Actor::run();
    return answer;
  }
  int finalize() override {
    Actor::run();
    return 0;
  }

 private:
  int const rank_;
};

// The same as a string.
class TextItem : public lvrString {
 public:
  explicit TextItem(int rank) {
    setStringData(std::to_string(rank).c_str(), -1, CopyAndOwn);
    ++Actor::alive;
  }
  ~TextItem() override { --Actor::alive; }

  int equiv(lvReferencable const& other) const override {
    int const answer = lvrString::equiv(other);
    Actor::run();
    return answer;
  }
  unsigned int hashCode() const override {
    unsigned const answer = lvrString::hashCode();
    Actor::run();
    return answer;
  }
  int compareTo(lvReferencable const& other) const override {
    int const answer = lvrString::compareTo(other);
    Actor::run();
    return answer;
  }
  int finalize() override {
    Actor::run();
    return lvrString::finalize();
  }
};

// The objects in some cells, each as often as there are cells with it.
class Objects {
 public:
  void note(lvArg const& cell) {
    if (cell.getReferencable() != nullptr) {
      objects_.push_back(cell.getReferencable());
    }
  }

  // Expects that no one else holds any of them.
  void checkCounts() {
    std::sort(objects_.begin(), objects_.end(), std::less<>());
    for (auto first = objects_.begin(); first != objects_.end();) {
      auto const end = std::upper_bound(first, objects_.end(), *first, std::less<>());
      ASSERT_EQ(test::countOf(**first), end - first);
      first = end;
    }
  }

 private:
  std::vector<lvReferencable const*> objects_;
};

// One walk: a container, cursors over it, and random changes from outside and from within.
class CallbacksWalk : public ::testing::TestWithParam<unsigned>, private Actor {
 protected:
  CallbacksWalk() : random_(GetParam()), aliveAtFirst_(alive) {}
  ~CallbacksWalk() override { current = nullptr; }

  // Makes any change of the container, or moves a cursor.
  virtual void change() = 0;
  // Expects that the container agrees with itself.
  virtual void check() = 0;
  // Notes the objects in all cells of the container, and in those of the test.
  virtual void noteAll(Objects& objects) const = 0;
  // Lets go of all that holds an item.
  virtual void end() = 0;

  void walk() {
    for (int step = 0; step < Steps; ++step) {
      SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", step " + std::to_string(step));
      current = this;
      change();
      current = nullptr;
      check();
      checkCounts();
      if (HasFailure()) {
        return;
      }
    }
    current = this;
    end();
    current = nullptr;
    end();  // Of what that left, now that nothing acts any more.
    EXPECT_GT(acts_, Steps / 100);
    EXPECT_EQ(alive, aliveAtFirst_);
  }

  int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
  bool onceIn(int n) { return below(n) == 0; }

  // An integer, a string that does nothing, or a new item.
  lvArg any() {
    int const rank = below(Ranks);
    switch (below(6)) {
      case 0:
        return integer(rank);
      case 1:
        return test::string(std::to_string(rank));
      case 2:
      case 3:
        return *new Item(rank);
      default:
        return *new TextItem(rank);
    }
  }

  // A few cursors, which what acts may replace at any time: whoever uses one holds it meanwhile.
  template <class Cursor>
  using Cursors = std::array<std::shared_ptr<Cursor>, 3>;
  std::size_t cursorAt() { return random_() % std::tuple_size<Cursors<int>>::value; }
  template <class Cursor>
  static void letGo(Cursors<Cursor>& cursors) {
    for (auto& cursor : cursors) {
      cursor.reset();
    }
  }

 private:
  void checkCounts() const {
    Objects objects;
    noteAll(objects);
    objects.checkCounts();
  }

  void act() override {
    if (depth_ < DeepestAct && random_() % OneActsIn == 0) {
      ++acts_;
      ++depth_;
      change();
      --depth_;
    }
  }

  std::mt19937 random_;
  int const aliveAtFirst_;
  int depth_ = 0;
  int acts_ = 0;
};

// --- Maps ----------------------------------------------------------------------------------------

class HashMapCallbacksWalk : public CallbacksWalk {
 protected:
  void change() override {
    switch (below(20)) {
      case 0:
        map->clear();
        break;
      case 1:
        map->setHashSize(static_cast<unsigned>(below(5)));
        break;
      case 2:
        map->freeStorage();
        break;
      case 18:
        map = Held<lvrHashMap>(2U);  // Whatever the old one is doing.
        break;
      case 3:
      case 4:
        cursors[cursorAt()].reset(map->getEnumerator());
        break;
      case 5:
      case 6:
      case 7: {
        auto const cursor = cursors[cursorAt()];
        if (cursor != nullptr && cursor->next()) {
          cursor->getKey();
          cursor->getValue();
        }
        break;
      }
      case 8:
      case 9:
        map->get(any());
        break;
      case 10:
      case 11:
      case 12:
      case 13:
        map->put(any(), lvArg(), onceIn(2) ? &old : nullptr);
        break;
      default:
        if (map->getSize() < MostEntries) {
          map->put(any(), any(), onceIn(3) ? &old : nullptr);
        }
    }
  }

  void check() override {
    int entries = 0;
    unsigned hash = 0x8386a731;
    for (lvMapEnumerator entry(*map); entry->next(); ++entries) {
      hash += 9563891U * entry->getKey().hashCode();
      ASSERT_FALSE(entry->getValue().isNil());
    }
    ASSERT_EQ(entries, map->getSize());
    ASSERT_EQ(hash, map->hashCode());
  }

  void noteAll(Objects& objects) const override {
    objects.note(old);
    for (lvMapEnumerator entry(*map); entry->next();) {
      objects.note(entry->getKey());
      objects.note(entry->getValue());
    }
  }

  void end() override {
    letGo(cursors);
    map->freeStorage();
    old.setNil();
  }

 private:
  Held<lvrHashMap> map{2U};
  lvArg old;
  Cursors<lviRealMapEnumerator> cursors;
};

TEST_P(HashMapCallbacksWalk, AgreesWithItself) { walk(); }

class TupleSetCallbacksWalk : public CallbacksWalk {
 protected:
  void change() override {
    switch (below(24)) {
      case 0:
        set->clear();
        break;
      case 1:
        set->finalize();
        break;
      case 2:
        set->expand(below(40));
        break;
      case 3:
        set->removeEntry(below(10));
        break;
      case 4:
        set->setValue(below(10), any(), onceIn(2) ? &old : nullptr);
        break;
      case 5:
      case 6:
        cursors[cursorAt()].reset(set->getIterator());
        break;
      case 7:
      case 8:
      case 9:
      case 10:
        moveCursor();
        break;
      case 11:
      case 12:
        set->get(any());
        break;
      case 13:
      case 14:
      case 15:
        set->put(any(), lvArg(), onceIn(2) ? &old : nullptr);
        break;
      default:
        if (set->getSize() < MostEntries) {
          set->put(any(), any(), onceIn(3) ? &old : nullptr);
        }
    }
  }

  void check() override {
    int pairs = 0;
    for (lvMapEnumerator pair(*set); pair->next(); ++pairs) {
      ASSERT_TRUE(pair->getKey().eq(set->getKey(pairs)));
    }
    ASSERT_EQ(pairs, set->getSize());
    for (int unused = pairs; unused < SetLayout::allocated(*set); ++unused) {
      ASSERT_TRUE(SetLayout::entries(*set)[unused].key.isNil());
      ASSERT_TRUE(SetLayout::entries(*set)[unused].value.isNil());
    }
  }

  void noteAll(Objects& objects) const override {
    objects.note(old);
    for (int i = 0; i < set->getSize(); ++i) {
      objects.note(SetLayout::entries(*set)[i].key);
      objects.note(SetLayout::entries(*set)[i].value);
    }
  }

  void end() override {
    letGo(cursors);
    set->finalize();
    old.setNil();
  }

 private:
  void moveCursor() {
    auto const cursor = cursors[cursorAt()];
    if (cursor == nullptr || !cursor->next()) {
      return;
    }
    cursor->getKey();
    if (onceIn(3)) {
      cursor->setValue(onceIn(2) ? any() : lvArg(), &old);
    } else if (onceIn(2)) {
      cursor->remove();
    }
  }

  Held<lvrTupleSet> set{2, 3U, 0U};
  lvArg old;
  Cursors<lviRealMapIterator> cursors;
};

TEST_P(TupleSetCallbacksWalk, AgreesWithItself) { walk(); }

// --- Lists ---------------------------------------------------------------------------------------

// A predicate that acts, and is true now and then.
bool actsOnEach(lvArg const& value, void* /*context*/) {
  Actor::run();
  return value.getInt() % 5 == 1;
}

// Moves a cursor over a list anywhere.
void move(lviRealListEnumerator& cursor, int choice, int index) {
  switch (choice) {
    case 0:
      cursor.gotoNextMatching(actsOnEach, nullptr);
      break;
    case 1:
      cursor.gotoPreviousMatching(actsOnEach, nullptr);
      break;
    case 2:
      cursor.gotoPrevious();
      break;
    case 3:
      cursor.gotoIndex(index);
      break;
    default:
      cursor.gotoNext();
  }
  cursor.getValue();
  cursor.getIndex();
}

class ListCallbacksWalk : public CallbacksWalk {
 protected:
  template <class Cursor>
  void moveAny(Cursors<Cursor> const& cursors) {
    auto const cursor = cursors[cursorAt()];
    if (cursor != nullptr) {
      move(*cursor, below(6), below(20) - 5);
    }
  }

  // What its enumerator and at() agree on.
  static void checkElements(lviList const& list) {
    int elements = 0;
    for (lvListEnumerator element(list); element->gotoNext(); ++elements) {
      ASSERT_TRUE(element->getValue().eq(list.at(elements)));
      ASSERT_EQ(element->getIndex(), elements);
    }
    ASSERT_EQ(elements, list.getSize());
  }

  static void noteElements(lviList const& list, Objects& objects) {
    for (lvListEnumerator element(list); element->gotoNext();) {
      objects.note(element->getValue());
    }
  }
};

class VectorCallbacksWalk : public ListCallbacksWalk {
 protected:
  void change() override {
    switch (below(24)) {
      case 0:
        vector->clear();
        break;
      case 1:
        vector->releaseData();
        break;
      case 22:
        vector = Held<lvrVector>(2);
        break;
      case 2:
      case 3:
        vector->setAlloced(below(40) - 8);
        break;
      case 4:
        vector->hashCode();
        break;
      case 5:
      case 6:
        vector->getElementPos(any());
        break;
      case 7:
        vector->remove(any());
        break;
      case 8:
      case 9:
      case 10:
        vector->remove(below(12) - 1);
        break;
      case 11:
        cursors[cursorAt()].reset(vector->getListEnumerator());
        break;
      case 12:
      case 13:
      case 14:
        moveAny(cursors);
        break;
      default:
        if (vector->getSize() < MostEntries) {
          vector->insert(any(), below(12) - 1);
        }
    }
  }

  void check() override {
    checkElements(*vector);
    int used = 0;  // No element is nil.
    for (int i = 0; i < VectorLayout::alloced(*vector); ++i) {
      used += VectorLayout::elements(*vector)[i].isNil() ? 0 : 1;
    }
    ASSERT_EQ(used, vector->getSize());
  }

  void noteAll(Objects& objects) const override { noteElements(*vector, objects); }

  void end() override {
    letGo(cursors);
    vector->finalize();
  }

 private:
  Held<lvrVector> vector{2};
  Cursors<lviRealListEnumerator> cursors;
};

TEST_P(VectorCallbacksWalk, AgreesWithItself) { walk(); }

class LinkedListCallbacksWalk : public ListCallbacksWalk {
 protected:
  void change() override {
    switch (below(24)) {
      case 0:
        list->clear();
        break;
      case 22:
        list = Held<lvrDLList>();
        break;
      case 1:
      case 2:
      case 3:
        list->remove(below(24) - 12);
        break;
      case 4:
        list->remove(list->at(below(10)));
        break;
      case 5:
        if (list->getSize() < MostEntries / 2) {
          list->merge(*list);
        }
        break;
      case 6:
        cursors[cursorAt()].reset(list->getListRWIterator());
        break;
      case 7:
      case 8:
      case 9:
      case 10:
        moveAny(cursors);
        break;
      case 11:
      case 12:
      case 13:
        changeByCursor();
        break;
      default:
        if (list->getSize() < MostEntries) {
          list->insert(any(), below(24) - 12);
        }
    }
  }

  void check() override {
    checkElements(*list);
    test::Node const* before = nullptr;
    for (auto const* node = ListLayout::head(*list); node != nullptr; node = node->next) {
      ASSERT_EQ(node->prev, before);
      before = node;
    }
    ASSERT_EQ(ListLayout::tail(*list), before);
  }

  void noteAll(Objects& objects) const override { noteElements(*list, objects); }

  void end() override {
    letGo(cursors);
    list->clear();
  }

 private:
  void changeByCursor() {
    auto const cursor = cursors[cursorAt()];
    if (cursor == nullptr) {
      return;
    }
    if (onceIn(2)) {
      cursor->remove();
    } else if (list->getSize() < MostEntries) {
      cursor->insert(any());
    }
  }

  Held<lvrDLList> list;
  Cursors<lviRealListRWIterator> cursors;
};

TEST_P(LinkedListCallbacksWalk, AgreesWithItself) { walk(); }

class StackCallbacksWalk : public CallbacksWalk {
 protected:
  void change() override {
    switch (below(20)) {
      case 0:
        stack->releaseData();
        break;
      case 18:
        stack = Held<lvrStack>(2);
        break;
      case 1:
      case 2:
        stack->setAlloced(below(40) - 8);
        break;
      case 3:
      case 4:
        stack->hashCode();
        break;
      case 5:
      case 6:
      case 7:
      case 8:
        stack->pop();
        break;
      case 9:
      case 10:
      case 11:
        stack->poke(any());
        break;
      default:
        if (stack->getSize() < MostEntries) {
          stack->push(onceIn(4) ? lvArg(stack->peek(below(4))) : any());
        }
    }
  }

  void check() override {
    ASSERT_EQ(stack->isEmpty(), stack->getSize() == 0);
    ASSERT_GE(StackLayout::alloced(*stack), stack->getSize());
    for (int unused = stack->getSize(); unused < StackLayout::alloced(*stack); ++unused) {
      ASSERT_TRUE(StackLayout::elements(*stack)[unused].isNil());
    }
  }

  void noteAll(Objects& objects) const override {
    for (int i = 0; i < stack->getSize(); ++i) {
      objects.note(StackLayout::elements(*stack)[i]);
    }
  }

  void end() override { stack->finalize(); }

 private:
  Held<lvrStack> stack{2};
};

TEST_P(StackCallbacksWalk, AgreesWithItself) { walk(); }

// --- Sorted lists --------------------------------------------------------------------------------

class SortedListCallbacksWalk : public CallbacksWalk {
 protected:
  void change() override {
    lvrSortedArrayList& list = *lists[onceIn(2) ? 1 : 0];
    switch (below(24)) {
      case 0:
        list.clear();
        break;
      case 1:
        list.finalize();
        break;
      case 2:
        list.expand(below(30));
        break;
      case 3:
      case 4:
        list.removeEntry(below(10));
        break;
      case 5:
      case 6:
        merge(list);
        break;
      case 7:
        list.containsAll(*lists[0]);
        list.equals(*lists[1]);
        break;
      case 8:
        list.contains(any());
        break;
      case 9:
        list.indexOf(any());
        break;
      case 10:
        list.lastIndexOf(any());
        break;
      case 11:
        cursors[cursorAt()].reset(list.getSortedListIterator(below(5)));
        break;
      case 12:
      case 13:
        moveCursor();
        break;
      default:
        if (list.getSize() < MostEntries) {
          list.add(onceIn(20) ? lvArg() : any());
        }
    }
  }

  void check() override {
    for (auto const& list : lists) {
      int elements = 0;
      for (lvSortedListEnumerator element(*list, 0); element->hasNext(); ++elements) {
        ASSERT_TRUE(element->next().eq(list->get(elements)));
      }
      ASSERT_EQ(elements, list->getSize());
      ASSERT_TRUE(test::isRestNil(*list));
    }
  }

  void noteAll(Objects& objects) const override {
    for (auto const& list : lists) {
      for (int i = 0; i < list->getSize(); ++i) {
        objects.note(list->get(i));
      }
    }
  }

  void end() override {
    letGo(cursors);
    for (auto const& list : lists) {
      list->finalize();
    }
  }

 private:
  void merge(lvrSortedArrayList& list) {
    lvrSortedArrayList const& other = *lists[onceIn(2) ? 1 : 0];
    if (list.getSize() + other.getSize() < MostEntries) {
      list.addAll(other);
    }
  }

  void moveCursor() {
    auto const cursor = cursors[cursorAt()];
    if (cursor != nullptr) {
      onceIn(3) ? cursor->previous() : cursor->next();
      cursor->nextIndex();
      cursor->previousIndex();
    }
  }

  Held<lvrSortedArrayList> lists[2]{Held<lvrSortedArrayList>(test::WithDuplicates),
                                    Held<lvrSortedArrayList>(test::WithoutDuplicates)};
  Cursors<lviRealSortedListIterator> cursors;
};

TEST_P(SortedListCallbacksWalk, AgreesWithItself) { walk(); }

constexpr unsigned FirstSeed = 7;
constexpr unsigned SecondSeed = 20261;

INSTANTIATE_TEST_SUITE_P(Seeds, HashMapCallbacksWalk, ::testing::Values(FirstSeed, SecondSeed));
INSTANTIATE_TEST_SUITE_P(Seeds, TupleSetCallbacksWalk, ::testing::Values(FirstSeed, SecondSeed));
INSTANTIATE_TEST_SUITE_P(Seeds, VectorCallbacksWalk, ::testing::Values(FirstSeed, SecondSeed));
INSTANTIATE_TEST_SUITE_P(Seeds, LinkedListCallbacksWalk, ::testing::Values(FirstSeed, SecondSeed));
INSTANTIATE_TEST_SUITE_P(Seeds, StackCallbacksWalk, ::testing::Values(FirstSeed, SecondSeed));
INSTANTIATE_TEST_SUITE_P(Seeds, SortedListCallbacksWalk, ::testing::Values(FirstSeed, SecondSeed));

}  // namespace
