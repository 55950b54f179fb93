// What elements and functions of the program may do to the vector, stack or linked list that
// compares, hashes, shows or releases them.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "support/ActingItems.h"
#include "support/Rings.h"
#include "support/Stacks.h"

namespace {

using test::acting;
using test::ActingRank;
using test::ActingText;
using test::append;
using test::countOf;
using test::elementsOf;
using test::fromTop;
using test::Held;
using test::integer;
using test::OnlyHeld;
using test::pushEach;
using test::string;
using test::VectorLayout;

constexpr int Endless = 200000;

// A predicate that runs a function for each element, and is false.
using OnEach = std::function<void()>;
bool runsFor(lvArg const& /*value*/, void* context) {
  (*static_cast<OnEach*>(context))();
  return false;
}

// --- Searching a vector --------------------------------------------------------------------------

// A vector of which the first element acts.
class VectorWhileComparing : public ::testing::Test {
 protected:
  VectorWhileComparing() : vector(4), acts(*new ActingText("acts")) {
    vector->insert(lvArg(acts), -1);
    vector->insert(string("behind"), -1);
    vector->insert(string("last"), -1);
  }

  Held<lvrVector> vector;
  ActingText& acts;
};

TEST_F(VectorWhileComparing, KeepsAnElementThatIsTakenOutUntilItIsCompared) {
  acts.onHash = [this] { vector->remove(0); };
  EXPECT_EQ(vector->getElementPos(string("acts")), 0);
  EXPECT_EQ(vector->getSize(), 2);
}

TEST_F(VectorWhileComparing, FindsNothingInAVectorThatIsCleared) {
  acts.onEquiv = [this] { vector->clear(); };
  EXPECT_EQ(vector->getElementPos(string("last")), -1);
  EXPECT_EQ(vector->getSize(), 0);
}

TEST_F(VectorWhileComparing, FindsNothingInAVectorWithoutArray) {
  acts.onEquiv = [this] { vector->releaseData(); };
  EXPECT_EQ(vector->getElementPos(string("last")), -1);
  EXPECT_EQ(VectorLayout::elements(*vector), nullptr);
}

TEST_F(VectorWhileComparing, GoesOnInAVectorThatGrows) {
  acts.onEquiv = [this] {
    for (int i = 0; i < 100; ++i) {
      vector->insert(integer(i), 1);
    }
  };
  EXPECT_EQ(vector->getElementPos(string("last")), 102);
}

TEST_F(VectorWhileComparing, EndsWhenAVectorThatGrowsEachTimeIsFull) {
  lvArg const endless = vector->at(0);
  acts.onEquiv = [this, &endless] { vector->insert(endless, -1); };
  EXPECT_EQ(vector->getElementPos(string("absent")), -1);
  EXPECT_EQ(vector->getSize(), 65535);
}

TEST_F(VectorWhileComparing, RemovesNothingFromAVectorThatIsCleared) {
  acts.onEquiv = [this] { vector->clear(); };
  EXPECT_EQ(vector->remove(string("acts")), 1);
  EXPECT_EQ(vector->getSize(), 0);
  append(*vector, {1});
  EXPECT_EQ(elementsOf(*vector), "1 ");
}

// --- Hashing a vector or a stack -----------------------------------------------------------------

void add(lvrVector& vector, lvArg const& value) { vector.insert(value, -1); }
void add(lvrStack& stack, lvArg const& value) { stack.push(value); }

// A container of 1, an object that acts when it is hashed, and 2.
template <class Container>
class WhileHashing : public ::testing::Test {
 protected:
  WhileHashing() : container(4), acts(*new ActingRank(7)) {
    add(*container, integer(1));
    add(*container, lvArg(acts));
    add(*container, integer(2));
  }

  // The hash of a container that nothing happened to.
  unsigned plainHash() const {
    Held<Container> const plain(4);
    add(*plain, integer(1));
    add(*plain, *new ActingRank(7));
    add(*plain, integer(2));
    return plain->hashCode();
  }

  Held<Container> container;
  ActingRank& acts;
};

using HashedContainers = ::testing::Types<lvrVector, lvrStack>;
TYPED_TEST_SUITE(WhileHashing, HashedContainers, );

TYPED_TEST(WhileHashing, SurvivesTheEndOfTheArray) {
  this->acts.onHash = [this] { this->container->releaseData(); };
  this->container->hashCode();
  EXPECT_EQ(this->container->getSize(), 0);
}

TYPED_TEST(WhileHashing, SurvivesThatTheArrayGrows) {
  this->acts.onHash = [this] {
    for (int i = 0; i < 100; ++i) {
      add(*this->container, integer(i));
    }
  };
  this->container->hashCode();
  EXPECT_EQ(this->container->getSize(), 103);
}

TYPED_TEST(WhileHashing, HashesAgainWhatHasChangedMeanwhile) {
  this->acts.onHash = [this] { add(*this->container, integer(5)); };
  this->container->hashCode();
  this->acts.onHash = nullptr;
  Held<TypeParam> const same(4);
  add(*same, integer(1));
  add(*same, *new ActingRank(7));
  add(*same, integer(2));
  add(*same, integer(5));
  EXPECT_EQ(this->container->hashCode(), same->hashCode());
}

TYPED_TEST(WhileHashing, HashesAgainAfterTheHashOfAnElementThrew) {
  this->acts.onHash = [] { throw std::bad_alloc(); };
  EXPECT_THROW(this->container->hashCode(), std::bad_alloc);
  EXPECT_THROW(this->container->hashCode(), std::bad_alloc);
  this->acts.onHash = nullptr;
  EXPECT_EQ(this->container->hashCode(), this->plainHash());
}

TYPED_TEST(WhileHashing, EndsInAContainerThatHoldsItself) {
  lvArg const itself(*this->container);
  add(*this->container, itself);
  this->container->hashCode();
  EXPECT_EQ(this->container->getSize(), 4);
  this->container->releaseData();
  EXPECT_EQ(countOf(itself), 2);
}

TYPED_TEST(WhileHashing, KeepsAContainerThatIsTakenOutOfTheOneHashed) {
  Held<TypeParam> const outer(4);
  bool gone = false;
  {
    Held<TypeParam> const inner(4);
    add(*inner, acting([&gone] { gone = true; }));
    auto& innermost = *new ActingRank(7);
    add(*inner, lvArg(innermost));
    innermost.onHash = [&outer, &gone] {
      outer->releaseData();
      EXPECT_FALSE(gone);
    };
    add(*outer, lvArg(*inner));
  }
  outer->hashCode();
  EXPECT_TRUE(gone);
  EXPECT_EQ(outer->getSize(), 0);
}

// --- The vector ----------------------------------------------------------------------------------

TEST(VectorThatItsOwnElementLetsGo, LivesUntilClearIsOver) {
  OnlyHeld<lvrVector> vector(3);
  lvArg const other = string("other");
  vector->insert(vector.letsGoTooEarly(), -1);
  vector->insert(other, -1);
  EXPECT_TRUE(vector->clear());
  EXPECT_TRUE(vector.isGone());
  EXPECT_EQ(countOf(other), 1);
}

TEST(VectorThatItsOwnElementLetsGo, MayGoInRemoveAndReleaseData) {
  auto& removing = *new lvrVector(3);
  lvArg holder(removing);
  removing.insert(acting([&holder] { holder.setNil(); }), -1);
  removing.remove(0);
  EXPECT_TRUE(holder.isNil());
  auto& releasing = *new lvrVector(3);
  holder = lvArg(releasing);
  releasing.insert(acting([&holder] { holder.setNil(); }), -1);
  releasing.releaseData();
  EXPECT_TRUE(holder.isNil());
}

TEST(VectorAdoptedRing, ReleasesAtOnceWhatLiesBesideTheElements) {
  lvArg const left = string("left");
  auto* const ring = new lvArg[4];
  ring[0] = integer(1);
  ring[1] = left;
  ring[3] = left;
  Held<lvrVector> const vector(4, 2, 3, ring);
  EXPECT_EQ(countOf(left), 2);
  EXPECT_EQ(test::slotsOf(*vector), "1 . . 'left' ");
}

// A vector whose setAlloced() does something else first, or instead.
class ActingVector : public lvrVector {
 public:
  explicit ActingVector(std::function<int(ActingVector&, int)> act)
      : lvrVector(0), act_(std::move(act)) {}
  int setAlloced(int capacity) override {
    auto const act = std::exchange(act_, nullptr);
    return act ? act(*this, capacity) : lvrVector::setAlloced(capacity);
  }

 private:
  std::function<int(ActingVector&, int)> act_;
};

TEST(VectorWithItsOwnGrowth, InsertsBehindWhatThatInserts) {
  Held<ActingVector> const vector([](ActingVector& growing, int capacity) {
    append(growing, {1, 2, 3});
    return growing.setAlloced(capacity);
  });
  EXPECT_TRUE(vector->insert(integer(4), -1));
  EXPECT_EQ(elementsOf(*vector), "1 2 3 4 ");
}

TEST(VectorWithItsOwnGrowth, RefusesWhatThatMakesNoRoomFor) {
  Held<ActingVector> const vector([](ActingVector& shrinking, int /*capacity*/) {
    shrinking.releaseData();
    return 100;
  });
  EXPECT_FALSE(vector->insert(integer(4), -1));
  EXPECT_EQ(vector->getSize(), 0);
}

TEST(VectorWithItsOwnGrowth, RefusesAPositionThatIsGone) {
  Held<ActingVector> const vector([](ActingVector& growing, int /*capacity*/) {
    growing.setAlloced(3);
    append(growing, {1, 2, 3});
    return 3;
  });
  EXPECT_FALSE(vector->insert(integer(4), 0));
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
}

TEST(VectorWithItsOwnGrowth, IsNotAskedOnceMoreThanNeeded) {
  int asked = 0;
  Held<ActingVector> const vector([&asked](ActingVector& growing, int capacity) {
    ++asked;
    return growing.setAlloced(capacity);
  });
  append(*vector, {1, 2, 3});
  EXPECT_EQ(asked, 1);
  EXPECT_EQ(elementsOf(*vector), "1 2 3 ");
}

// --- Cursors over a vector and a linked list -----------------------------------------------------

template <class List>
class CursorInPredicate : public ::testing::Test {
 protected:
  CursorInPredicate()
      : list(static_cast<List*>(List::defaultCtorMethod())),
        holder(*list),
        cursor(list->getListEnumerator()) {
    append(*list, {1, 2, 3, 4});
  }

  bool gotoNextMatching(OnEach action) { return cursor->gotoNextMatching(runsFor, &action); }
  bool gotoPreviousMatching(OnEach action) {
    return cursor->gotoPreviousMatching(runsFor, &action);
  }

  List* const list;
  lvArg holder;
  std::unique_ptr<lviRealListEnumerator> cursor;
};

using Lists = ::testing::Types<lvrVector, lvrDLList>;
TYPED_TEST_SUITE(CursorInPredicate, Lists, );

TYPED_TEST(CursorInPredicate, StopsWhenTheListIsCleared) {
  int seen = 0;
  EXPECT_FALSE(this->gotoNextMatching([this, &seen] {
    ++seen;
    this->list->clear();
  }));
  EXPECT_EQ(seen, 1);
  EXPECT_TRUE(this->cursor->getValue().isNil());
  EXPECT_FALSE(this->cursor->gotoNext());
}

TYPED_TEST(CursorInPredicate, StopsBackwardWhenTheListIsCleared) {
  this->cursor->gotoIndex(3);
  int seen = 0;
  this->gotoPreviousMatching([this, &seen] {
    ++seen;
    this->list->clear();
  });
  EXPECT_LE(seen, 3);
  EXPECT_TRUE(this->cursor->getValue().isNil());
}

TYPED_TEST(CursorInPredicate, StopsWhenEachElementShownIsRemoved) {
  EXPECT_FALSE(this->gotoNextMatching([this] { this->list->remove(this->cursor->getIndex()); }));
  EXPECT_EQ(elementsOf(*this->list), "2 4 ");
}

TYPED_TEST(CursorInPredicate, StopsWhenAllElementsAreReplaced) {
  int seen = 0;
  EXPECT_FALSE(this->gotoNextMatching([this, &seen] {
    ++seen;
    this->list->clear();
    append(*this->list, {5, 6, 7, 8});
  }));
  EXPECT_LE(seen, 4);
  EXPECT_EQ(elementsOf(*this->list), "5 6 7 8 ");
}

TYPED_TEST(CursorInPredicate, EndsThoughEachElementShownAddsOneBehind) {
  int added = 0;
  EXPECT_FALSE(this->gotoNextMatching([this, &added] {
    if (added < Endless) {
      append(*this->list, {++added});
    }
  }));
  EXPECT_LT(added, Endless);
  EXPECT_GT(this->list->getSize(), 4);
  EXPECT_LE(this->list->getSize(), 4 + added);  // A full vector takes no more.
}

TYPED_TEST(CursorInPredicate, EndsThoughEachElementShownAddsOneBefore) {
  this->cursor->gotoIndex(3);
  int added = 0;
  EXPECT_FALSE(this->gotoPreviousMatching([this, &added] {
    if (added < Endless) {
      this->list->insert(integer(++added), 0);
    }
  }));
  EXPECT_LT(added, Endless);
}

TYPED_TEST(CursorInPredicate, MayBeMovedByThePredicate) {
  int seen = 0;
  EXPECT_FALSE(this->gotoNextMatching([this, &seen] {
    ++seen;
    this->cursor->gotoNext();
  }));
  EXPECT_EQ(seen, 2);
  EXPECT_EQ(this->list->getSize(), 4);
}

TYPED_TEST(CursorInPredicate, KeepsTheListThatThePredicateLetsGo) {
  bool gone = false;
  this->list->insert(acting([&gone] { gone = true; }), -1);
  this->gotoNextMatching([this] { this->holder.setNil(); });
  EXPECT_FALSE(gone);
  EXPECT_EQ(this->list->getSize(), 5);
  this->cursor.reset();
  EXPECT_TRUE(gone);
}

TYPED_TEST(CursorInPredicate, MayMoveItselfBackForAWhile) {
  int back = 0;
  EXPECT_FALSE(this->gotoNextMatching([this, &back] {
    if (this->cursor->getIndex() == 2 && ++back <= 3) {
      this->cursor->gotoIndex(0);
    }
  }));
  EXPECT_GE(back, 1);
  EXPECT_LE(back, 4);
}

TYPED_TEST(CursorInPredicate, EndsThoughThePredicateMovesItBackEachTime) {
  int seen = 0;
  EXPECT_FALSE(this->gotoNextMatching([this, &seen] {
    if (++seen < Endless) {
      this->cursor->gotoIndex(0);
    }
  }));
  EXPECT_LT(seen, Endless);
  EXPECT_FALSE(this->gotoPreviousMatching([this, &seen] {
    if (++seen < 2 * Endless) {
      this->cursor->gotoIndex(3);
    }
  }));
  EXPECT_LT(seen, 2 * Endless);
}

// --- The stack -----------------------------------------------------------------------------------

TEST(StackThatItsOwnElementLetsGo, MayGoInEachOperation) {
  lvArg holder;
  auto const next = [&holder] {
    auto& stack = *new lvrStack(2);
    holder = lvArg(stack);
    stack.push(acting([&holder] { holder.setNil(); }));
    return &stack;
  };
  next()->pop();
  EXPECT_TRUE(holder.isNil());
  next()->poke(integer(1));
  EXPECT_TRUE(holder.isNil());
  next()->releaseData();
  EXPECT_TRUE(holder.isNil());
}

// A stack whose virtual functions do something else first.
class ActingStack : public lvrStack {
 public:
  explicit ActingStack(int size) : lvrStack(size) {}
  int setAlloced(int capacity) override {
    onGrowth();
    return noRoom ? capacity : lvrStack::setAlloced(capacity);
  }
  bool isEmpty() const override {
    bool const answer = lvrStack::isEmpty();
    onIsEmpty();
    return answer;
  }

  test::Act onGrowth;
  test::Act onIsEmpty;
  bool noRoom = false;
};

TEST(StackWithItsOwnGrowth, PushesOntoWhatThatPushes) {
  Held<ActingStack> const stack(1);
  pushEach(*stack, {1});
  stack->onGrowth = [&stack] { pushEach(*stack, {2, 3, 4}); };
  EXPECT_EQ(stack->push(integer(5)), 0);
  EXPECT_EQ(fromTop(*stack), "5 4 3 2 1 ");
}

TEST(StackWithItsOwnGrowth, PushesOntoAStackThatIsEmptied) {
  Held<ActingStack> const stack(1);
  pushEach(*stack, {1});
  stack->onGrowth = [&stack] { stack->releaseData(); };
  EXPECT_EQ(stack->push(integer(5)), 0);
  EXPECT_EQ(fromTop(*stack), "5 ");
}

TEST(StackWithItsOwnGrowth, RefusesWhatThatMakesNoRoomFor) {
  Held<ActingStack> const stack(1);
  pushEach(*stack, {1});
  stack->noRoom = true;
  EXPECT_EQ(stack->push(integer(5)), -12);
  EXPECT_EQ(fromTop(*stack), "1 ");
}

TEST(StackWithItsOwnGrowth, PushesACopyOfAnElementThatMoves) {
  Held<ActingStack> const stack(1);
  lvArg const value = string("value");
  stack->push(value);
  stack->onGrowth = [&stack] { stack->releaseData(); };
  EXPECT_EQ(stack->push(stack->peek(0)), 0);
  EXPECT_EQ(fromTop(*stack), "'value' ");
  EXPECT_EQ(countOf(value), 2);
}

TEST(StackWithItsOwnIsEmpty, PokesNothingIntoAStackThatIsEmptied) {
  Held<ActingStack> const stack(3);
  pushEach(*stack, {1, 2});
  stack->onIsEmpty = [&stack] { stack->releaseData(); };
  EXPECT_TRUE(stack->poke(integer(5)).isNil());
  EXPECT_EQ(stack->getSize(), 0);
}

// --- The linked list -----------------------------------------------------------------------------

TEST(LinkedListThatItsOwnElementLetsGo, MayGoInEachOperation) {
  lvArg holder;
  auto const next = [&holder] {
    auto& list = *new lvrDLList;
    holder = lvArg(list);
    list.insert(acting([&holder] { holder.setNil(); }), -1);
    return &list;
  };
  next()->clear();
  EXPECT_TRUE(holder.isNil());
  next()->remove(0);
  EXPECT_TRUE(holder.isNil());
  auto* const list = next();
  EXPECT_EQ(list->remove(list->at(0)), 0);
  EXPECT_TRUE(holder.isNil());
}

TEST(LinkedListIteratorWhileRemoving, MayGoTogetherWithTheList) {
  auto& list = *new lvrDLList;
  lvArg holder(list);
  std::unique_ptr<lviRealListIterator> cursor(list.getListIterator());
  list.insert(acting([&holder, &cursor] {
                holder.setNil();
                cursor.reset();
              }),
              -1);
  lvArg const behind = string("behind");
  list.insert(behind, -1);
  cursor->gotoNext();
  EXPECT_TRUE(cursor->remove());
  EXPECT_EQ(cursor, nullptr);
  EXPECT_EQ(countOf(behind), 1);
}

// A list that shows another one's elements.
class ListView : public lvrDLList {
 public:
  explicit ListView(lvrDLList& shown) : shown_(shown) {}
  int getSize() const override { return shown_.getSize(); }
  lviRealListEnumerator* getListEnumerator() const override {
    return cursorless ? nullptr : shown_.getListEnumerator();
  }

  bool cursorless = false;

 private:
  lvrDLList& shown_;
};

// A list that refuses more than so many.
class BoundedList : public lvrDLList {
 public:
  bool insert(lvArg const& value, int index) override {
    return getSize() < Endless && lvrDLList::insert(value, index);
  }
};

TEST(LinkedListMerge, OfAViewOfTheListHasItsElementsTwice) {
  Held<BoundedList> const list;
  append(*list, {1, 2, 3});
  Held<ListView> const view(*list);
  EXPECT_TRUE(list->merge(*view));
  EXPECT_EQ(elementsOf(*list).substr(0, 20), "1 2 3 1 2 3 ");
}

TEST(LinkedListMerge, OfAListWithoutCursorAppendsNothing) {
  Held<lvrDLList> const list;
  append(*list, {1});
  Held<ListView> const view(*list);
  view->cursorless = true;
  EXPECT_TRUE(list->merge(*view));
  EXPECT_EQ(elementsOf(*list), "1 ");
}

// A list whose cursor does something at each step.
class ActingList : public lvrDLList {
 public:
  explicit ActingList(OnEach onStep) : onStep_(std::move(onStep)) {}
  lviRealListEnumerator* getListEnumerator() const override { return new Cursor(*this); }

 private:
  class Cursor : public RealEnumerator {
   public:
    explicit Cursor(ActingList const& list) : RealEnumerator(list), onStep_(list.onStep_) {}
    bool gotoNext() override {
      onStep_();
      return RealEnumerator::gotoNext();
    }

   private:
    OnEach onStep_;
  };

  OnEach onStep_;
};

TEST(LinkedListMerge, AppendsToAListThatTheOthersCursorClears) {
  Held<lvrDLList> const list;
  append(*list, {1, 2});
  Held<ActingList> const other([&list] { list->clear(); });
  append(*other, {7, 8, 9});
  EXPECT_TRUE(list->merge(*other));
  EXPECT_EQ(list->getSize(), 0);
}

TEST(LinkedListMerge, StopsWhenTheOthersCursorClearsTheOther) {
  Held<lvrDLList> const list;
  append(*list, {1, 2});
  lvrDLList* cleared = nullptr;
  Held<ActingList> const other([&cleared] { cleared->clear(); });
  append(*other, {7, 8, 9});
  cleared = &*other;
  EXPECT_TRUE(list->merge(*other));
  EXPECT_EQ(elementsOf(*list), "1 2 ");
}

}  // namespace
