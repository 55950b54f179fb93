// lvWalk(): what it visits, in which order, and where it does not go.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/FieldObjects.h"
#include "support/Nested.h"
#include "support/Objects.h"
#include "support/SortedLists.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "support/walks/Choices.h"
#include "tarselvalues/containers/lvItems.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvWalk.h"

namespace {

using test::brief;
using test::countOf;
using test::Held;
using test::integer;
using test::mapOf;
using test::point;
using test::string;
using test::vectorOf;

// Writes down each call: "depth role index value", and what else is to be told.
class Account : public lvWalkVisitor {
 public:
  Answer visit(lvArg const& value, lvWalkPlace const& place) override {
    static constexpr char const* meetings[] = {"", " again", " cycle"};
    lines_ += line(value, place) + meetings[place.meeting] + "\n";
    return GoOn;
  }
  Answer leave(lvArg const& value, lvWalkPlace const& place) override {
    lines_ += "end " + line(value, place) + "\n";
    return GoOn;
  }

  std::string const& lines() const { return lines_; }

 private:
  static std::string line(lvArg const& value, lvWalkPlace const& place) {
    static constexpr char const* roles[] = {"root", "element", "key", "value", "field"};
    std::string text = std::to_string(place.depth) + " " + roles[place.role] + " " +
                       std::to_string(place.index) + " " + brief(value);
    if (place.holder != nullptr) {
      text += " of " + brief(*place.holder);
    }
    if (place.key != nullptr) {
      text += " under " + brief(*place.key);
    }
    return text;
  }

  std::string lines_;
};

std::string account(lvArg const& root) {
  Account visitor;
  EXPECT_TRUE(lvWalk(root, visitor));
  return visitor.lines();
}

// How often each kind of meeting occurs.
std::string meetings(lvArg const& root) {
  std::map<lvWalkPlace::Meeting, int> counts;
  EXPECT_TRUE(lvWalk(root, [&](lvArg const&, lvWalkPlace const& place) {
    ++counts[place.meeting];
    return lvWalkVisitor::GoOn;
  }));
  return std::to_string(counts[lvWalkPlace::First]) + " first, " +
         std::to_string(counts[lvWalkPlace::Again]) + " again, " +
         std::to_string(counts[lvWalkPlace::Cycle]) + " cycle";
}

// ---- What is visited ---------------------------------------------------------------------------

TEST(ValueWalk, VisitsAValueThatHoldsNothing) {
  EXPECT_EQ(account(lvArg()), "0 root 0 nil\n");
  EXPECT_EQ(account(integer(5)), "0 root 0 5\n");
  EXPECT_EQ(account(string("a")), "0 root 0 'a'\n");
  EXPECT_EQ(account(test::pointer(16)), "0 root 0 <tag 12>\n");
}

TEST(ValueWalk, VisitsAListBeforeItsElementsAndLeavesItAfterThem) {
  EXPECT_EQ(account(vectorOf({integer(1), vectorOf({string("a")}), lvArg()})),
            "0 root 0 <tag 25>\n"
            "1 element 0 1 of <tag 25>\n"
            "1 element 1 <tag 25> of <tag 25>\n"
            "2 element 0 'a' of <tag 25>\n"
            "end 1 element 1 <tag 25> of <tag 25>\n"
            "1 element 2 nil of <tag 25>\n"
            "end 0 root 0 <tag 25>\n");
}

TEST(ValueWalk, VisitsTheKeyOfAnEntryBeforeTheValueUnderIt) {
  Held<lvrTupleSet> map(2, 2U, 0U);
  map->put(integer(1), string("one"));
  map->put(integer(2), vectorOf({integer(7)}));
  EXPECT_EQ(account(map.cell()),
            "0 root 0 <tag 24>\n"
            "1 key 0 1 of <tag 24>\n"
            "1 value 0 'one' of <tag 24> under 1\n"
            "1 key 1 2 of <tag 24>\n"
            "1 value 1 <tag 25> of <tag 24> under 2\n"
            "2 element 0 7 of <tag 25>\n"
            "end 1 value 1 <tag 25> of <tag 24> under 2\n"
            "end 0 root 0 <tag 24>\n");
}

TEST(ValueWalk, GoesIntoAKey) {
  EXPECT_EQ(account(mapOf({{vectorOf({integer(3)}), integer(4)}})),
            "0 root 0 <tag 24>\n"
            "1 key 0 <tag 25> of <tag 24>\n"
            "2 element 0 3 of <tag 25>\n"
            "end 1 key 0 <tag 25> of <tag 24>\n"
            "1 value 0 4 of <tag 24> under <tag 25>\n"
            "end 0 root 0 <tag 24>\n");
}

TEST(ValueWalk, VisitsLinkedListsSortedListsAndMapsOfTheProgram) {
  Held<lvrDLList> linked;
  linked->insert(integer(1), -1);
  linked->insert(integer(2), -1);
  EXPECT_EQ(account(linked.cell()),
            "0 root 0 <tag 25>\n1 element 0 1 of <tag 25>\n1 element 1 2 of <tag 25>\n"
            "end 0 root 0 <tag 25>\n");
  test::SortedArray sorted(test::WithDuplicates, {2, 1});
  EXPECT_EQ(account(sorted.cell()),
            "0 root 0 <tag 25>\n1 element 0 1 of <tag 25>\n1 element 1 2 of <tag 25>\n"
            "end 0 root 0 <tag 25>\n");
  EXPECT_EQ(account(*new test::PairMap({{integer(1), integer(2)}})),
            "0 root 0 <tag 24>\n1 key 0 1 of <tag 24>\n1 value 0 2 of <tag 24> under 1\n"
            "end 0 root 0 <tag 24>\n");
}

TEST(ValueWalk, VisitsAStackFromItsTop) {
  Held<lvrStack> stack(4);
  stack->push(integer(1));
  stack->push(integer(2));
  EXPECT_EQ(account(stack.cell()),
            "0 root 0 <tag 24>\n1 element 0 2 of <tag 24>\n1 element 1 1 of <tag 24>\n"
            "end 0 root 0 <tag 24>\n");
}

TEST(ValueWalk, VisitsTheFieldsOfAnObject) {
  test::registerClasses();
  EXPECT_EQ(account(point(integer(3), string("y"))),
            "0 root 0 <tag 18>\n1 field 0 3 of <tag 18>\n1 field 1 'y' of <tag 18>\n"
            "end 0 root 0 <tag 18>\n");
}

TEST(ValueWalk, ReadsPastFieldsThatTheTableDoesNotTell) {
  test::registerClasses();
  auto* const half = new test::Half;
  lvArg const cell(*half);
  half->x = integer(1);
  half->y = integer(2);
  EXPECT_EQ(account(cell), "0 root 0 <tag 18>\n1 field 0 1 of <tag 18>\nend 0 root 0 <tag 18>\n");
}

TEST(ValueWalk, AContainerOfObjectKindIsWalkedUnlessItsClassIsRegistered) {
  lvArg const map(*new test::PairMap({{integer(1), integer(2)}}, lvReferencable::ObjectKind));
  EXPECT_EQ(account(map),
            "0 root 0 <tag 18>\n1 key 0 1 of <tag 18>\n1 value 0 2 of <tag 18> under 1\n"
            "end 0 root 0 <tag 18>\n");
}

TEST(ValueWalk, WhatHoldsNothingIsNotLeft) {
  EXPECT_EQ(account(lvClass(1, lvString("Sample"), nullptr)), "0 root 0 <tag 27>\n");
  EXPECT_EQ(account(test::newPlainObject()), "0 root 0 <tag 18>\n");
  EXPECT_EQ(account(*new test::KeylessObject), "0 root 0 <tag 18>\n");
  EXPECT_EQ(account(test::newListLike()), "0 root 0 <tag 25>\n");
  EXPECT_EQ(account(test::newStackLike()), "0 root 0 <tag 24>\n");
  lvArg empty(string("gone"));
  empty.releaseData();
  EXPECT_EQ(account(vectorOf({empty, empty})),
            "0 root 0 <tag 25>\n1 element 0 '<no text>' of <tag 25>\n"
            "1 element 1 '<no text>' of <tag 25>\nend 0 root 0 <tag 25>\n");
}

TEST(ValueWalk, AContainerThatGivesNoCursorHoldsNothing) {
  class Cursorless : public test::PairMap {
   public:
    Cursorless() : PairMap({{integer(1), integer(2)}}) {}
    lviRealMapEnumerator* getEnumerator() const override { return nullptr; }
  };
  EXPECT_EQ(account(*new Cursorless), "0 root 0 <tag 24>\nend 0 root 0 <tag 24>\n");
  class CursorlessList : public lvrDLList {
   public:
    lviRealListEnumerator* getListEnumerator() const override { return nullptr; }
  };
  auto* const list = new CursorlessList;
  lvArg const cell(*list);
  list->insert(integer(1), -1);
  EXPECT_EQ(account(cell), "0 root 0 <tag 25>\nend 0 root 0 <tag 25>\n");
  EXPECT_FALSE(lvItems(cell).begin() != lvItems::End());
}

TEST(ValueWalk, AnEmptyContainerIsEnteredAndLeft) {
  EXPECT_EQ(account(vectorOf({})), "0 root 0 <tag 25>\nend 0 root 0 <tag 25>\n");
  EXPECT_EQ(account(mapOf({})), "0 root 0 <tag 24>\nend 0 root 0 <tag 24>\n");
}

// ---- Shared and cyclic values ------------------------------------------------------------------

TEST(ValueWalk, GoesIntoASharedValueOnceAndTellsTheOtherPlaces) {
  lvArg const shared = vectorOf({integer(1)});
  EXPECT_EQ(account(vectorOf({shared, shared})),
            "0 root 0 <tag 25>\n"
            "1 element 0 <tag 25> of <tag 25>\n"
            "2 element 0 1 of <tag 25>\n"
            "end 1 element 0 <tag 25> of <tag 25>\n"
            "1 element 1 <tag 25> of <tag 25> again\n"
            "end 0 root 0 <tag 25>\n");
}

TEST(ValueWalk, TellsSharedStrings) {
  lvString const text("one");
  EXPECT_EQ(meetings(vectorOf({text, text, string("one")})), "3 first, 1 again, 0 cycle");
}

TEST(ValueWalk, EndsWithAListThatContainsItself) {
  lvVector list(1);
  list->insert(list, -1);
  list->insert(integer(1), -1);
  EXPECT_EQ(account(list),
            "0 root 0 <tag 25>\n1 element 0 <tag 25> of <tag 25> cycle\n"
            "1 element 1 1 of <tag 25>\nend 0 root 0 <tag 25>\n");
  list->clear();
}

TEST(ValueWalk, TellsACycleThroughMapsAndObjects) {
  test::registerClasses();
  lvHashMap map(7);
  lvArg const object = point(map, vectorOf({map}));
  map->put(string("object"), object);
  EXPECT_EQ(meetings(map), "4 first, 0 again, 2 cycle");
  EXPECT_EQ(meetings(object), "4 first, 1 again, 1 cycle");
  map->clear();
}

TEST(ValueWalk, MeetsManyObjectsOnceEach) {
  constexpr int count = 5000;
  lvVector list(0);
  for (int i = 0; i < count; ++i) {
    list->insert(string(std::to_string(i)), -1);
  }
  EXPECT_EQ(meetings(vectorOf({list, list})), "5002 first, 1 again, 0 cycle");
  lvVector again(0);
  for (int i = 0; i < count; ++i) {
    again->insert(list->at(i), -1);
  }
  EXPECT_EQ(meetings(vectorOf({list, again})), "5003 first, 5000 again, 0 cycle");
}

// Its elements are made when they are asked for, and held by nobody.
class FreshElements : public lvrVector {
 public:
  FreshElements() : lvrVector(0) {}
  int getSize() const override { return 100; }
  lvArg at(int index) const override { return vectorOf({string(std::to_string(index))}); }
};

TEST(ValueWalk, AsksADerivedVectorForWhatItSaysThatItHas) {
  lvArg const list(*new FreshElements);
  EXPECT_FALSE(lvItems(list).begin() != lvItems::End());  // Its cursor knows of none.
  int elements = 0;
  EXPECT_TRUE(lvWalk(list, [&](lvArg const&, lvWalkPlace const& place) {
    elements += place.depth == 1 ? 1 : 0;
    return lvWalkVisitor::GoOn;
  }));
  EXPECT_EQ(elements, 100);
}

TEST(ValueWalk, DoesNotTakeAFreshObjectForOneThatIsGone) {
  EXPECT_EQ(meetings(*new FreshElements), "201 first, 0 again, 0 cycle");
}

// ---- What the visitor answers, and does --------------------------------------------------------

TEST(ValueWalk, GoesPastWhatIsSkippedAlsoWhereItIsMetAgain) {
  lvArg const shared = vectorOf({integer(1)});
  int visited = 0;
  EXPECT_TRUE(lvWalk(vectorOf({shared, shared}), [&](lvArg const&, lvWalkPlace const& place) {
    ++visited;
    return place.meeting == lvWalkPlace::First && place.depth == 1 ? lvWalkVisitor::Skip
                                                                   : lvWalkVisitor::GoOn;
  }));
  EXPECT_EQ(visited, 3);
}

TEST(ValueWalk, ReturnsFalseAtOnceWhenStopped) {
  lvArg const list = vectorOf({integer(1), vectorOf({integer(2)}), integer(3)});
  std::string visited;
  EXPECT_FALSE(lvWalk(list, [&](lvArg const& value, lvWalkPlace const&) {
    visited += brief(value) + " ";
    return value.getInt() == 2 ? lvWalkVisitor::Stop : lvWalkVisitor::GoOn;
  }));
  EXPECT_EQ(visited, "<tag 25> 1 <tag 25> 2 ");
  EXPECT_FALSE(
      lvWalk(lvArg(), [](lvArg const&, lvWalkPlace const&) { return lvWalkVisitor::Stop; }));
}

TEST(ValueWalk, MayBeStoppedOnTheWayBack) {
  class StopAtEnd : public Account {
   public:
    Answer leave(lvArg const& value, lvWalkPlace const& place) override {
      Account::leave(value, place);
      return Stop;
    }
  } visitor;
  EXPECT_FALSE(lvWalk(vectorOf({vectorOf({}), integer(1)}), visitor));
  EXPECT_EQ(visitor.lines(),
            "0 root 0 <tag 25>\n1 element 0 <tag 25> of <tag 25>\n"
            "end 1 element 0 <tag 25> of <tag 25>\n");
}

TEST(ValueWalk, SkipOnTheWayBackIsAsGoodAsGoOn) {
  class SkipAtEnd : public Account {
   public:
    Answer leave(lvArg const&, lvWalkPlace const&) override { return Skip; }
  } visitor;
  EXPECT_TRUE(lvWalk(vectorOf({vectorOf({}), integer(1)}), visitor));
  EXPECT_EQ(visitor.lines(),
            "0 root 0 <tag 25>\n1 element 0 <tag 25> of <tag 25>\n1 element 1 1 of <tag 25>\n");
}

TEST(ValueWalk, LetsAnExceptionOfTheVisitorThroughAndReleasesAll) {
  lvArg const inner = mapOf({{integer(1), integer(2)}});
  lvArg const list = vectorOf({inner});
  EXPECT_THROW(lvWalk(list,
                      [](lvArg const&, lvWalkPlace const& place) {
                        if (place.depth == 2) {
                          throw std::runtime_error("enough");
                        }
                        return lvWalkVisitor::GoOn;
                      }),
               std::runtime_error);
  EXPECT_EQ(countOf(list), 1);
  EXPECT_EQ(countOf(inner), 2);
}

TEST(ValueWalk, GoesOnWhenTheVisitorEmptiesWhatItIsIn) {
  lvHashMap map(7);
  lvVector list(0);
  list->insert(map, -1);
  list->insert(string("last"), -1);
  for (int i = 0; i < 20; ++i) {
    map->put(integer(i), string("x"));
  }
  int visited = 0;
  EXPECT_TRUE(lvWalk(list, [&](lvArg const&, lvWalkPlace const& place) {
    ++visited;
    if (place.role == lvWalkPlace::Key) {
      map->clear();
      list->clear();
    }
    return lvWalkVisitor::GoOn;
  }));
  EXPECT_EQ(visited, 4);  // The list, the map, one key, and the value that was under it.
}

TEST(ValueWalk, HoldsWhatItHasMetUntilItEnds) {
  test::Probe::Log log;
  lvVector list(0);
  list->insert(*new test::Probe(log), -1);
  list->insert(integer(1), -1);
  EXPECT_TRUE(lvWalk(list, [&](lvArg const& value, lvWalkPlace const&) {
    if (value.getType() == lvArg::ObjectType) {
      list->remove(0);
    }
    EXPECT_EQ(log.finalized, 0);
    return lvWalkVisitor::GoOn;
  }));
  EXPECT_EQ(log.finalized, 1);
}

TEST(ValueWalk, TheDepthOfAValueIsNoBurdenOnTheNativeStack) {
  constexpr int levels = 100000;
  lvArg value;
  for (int i = 0; i < levels; ++i) {
    value = test::inVector(value);
  }
  int deepest = 0;
  EXPECT_TRUE(lvWalk(value, [&](lvArg const&, lvWalkPlace const& place) {
    deepest = std::max(deepest, place.depth);
    return lvWalkVisitor::GoOn;
  }));
  EXPECT_EQ(deepest, levels);
}

// ---- Against a model ---------------------------------------------------------------------------

// The same walk, written as recursion over sets.
class WalkModel {
 public:
  std::string walk(lvArg const& value, int depth) {
    lvReferencable const* const object = value.getReferencable();
    lines_ += std::to_string(depth) + " " + brief(value);
    if (object == nullptr || met_.insert(object).second) {
      lines_ += "\n";
      if (object != nullptr) {
        within_.insert(object);
        walkParts(value, depth + 1);
        within_.erase(object);
      }
    } else {
      lines_ += within_.count(object) != 0 ? " cycle\n" : " again\n";
    }
    return lines_;
  }

 private:
  void walkParts(lvArg const& value, int depth) {
    if (lviList* const list = lvVector(value).getList()) {
      for (int i = 0; i < list->getSize(); ++i) {
        walk(list->at(i), depth);
      }
    } else if (lviMap* const map = lvHashMap(value).getMap()) {
      for (lvMapEnumerator entry(*map); entry->next();) {
        walk(entry->getKey(), depth);
        walk(entry->getValue(), depth);
      }
    }
  }

  std::string lines_;
  std::set<lvReferencable const*> met_;
  std::set<lvReferencable const*> within_;
};

TEST(ValueWalk, AgreesWithAModelOnRandomGraphs) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    test::SeededChoices random(seed);
    std::vector<lvArg> pool{lvArg(), integer(1), string("text")};
    for (std::size_t i = 0, count = 2 + random.below(std::size_t{10}); i < count; ++i) {
      pool.push_back(random.oneIn(2) ? vectorOf({}) : mapOf({}));
    }
    for (std::size_t i = 0, count = random.below(std::size_t{40}); i < count; ++i) {
      lvArg const& holder = pool[3 + random.below(pool.size() - 3)];
      lvArg const& part = random.pick(pool);
      if (lviList* const list = lvVector(holder).getList()) {
        list->insert(part, -1);
      } else {
        // A string as key: the hash of a container that contains itself does not end.
        lvHashMap(holder)->put(string(std::to_string(i)), part);
      }
    }
    std::string lines;
    lvArg const root = pool[3];
    EXPECT_TRUE(lvWalk(root, [&](lvArg const& value, lvWalkPlace const& place) {
      static constexpr char const* meetings[] = {"\n", " again\n", " cycle\n"};
      lines += std::to_string(place.depth) + " " + brief(value) + meetings[place.meeting];
      return lvWalkVisitor::GoOn;
    }));
    ASSERT_EQ(lines, WalkModel().walk(root, 0)) << "seed " << seed;
    for (lvArg const& value : pool) {
      if (lviList* const list = lvVector(value).getList()) {
        list->clear();
      } else if (lviMap* const map = lvHashMap(value).getMap()) {
        map->clear();
      }
    }
  }
}

}  // namespace
