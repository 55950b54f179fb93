// Vectors, linked lists, stacks and sorted lists, with cursors that change them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "compare/Walk.h"
#include "support/Cells.h"
#include "support/Objects.h"
#include "tarselvalues/containers/lviRealSortedListIterator.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrVector.h"

namespace compared {

// Numbers and texts, each text one of a few objects.
class Elements {
 public:
  Elements() {
    for (int i = 0; i < 20; ++i) {
      texts.push_back(test::string(std::to_string(i % 15)));
    }
  }
  lvArg any(Walk& walk) const {
    return walk.choices.oneIn(2) ? test::integer(walk.choices.below(20)) : walk.choices.pick(texts);
  }
  std::string counts() const {
    std::string all;
    for (lvArg const& text : texts) {
      all += std::to_string(test::countOf(text)) + " ";
    }
    return all;
  }

 private:
  std::vector<lvArg> texts;
};

inline std::string elementsOf(lviList const& list) {
  std::string all;
  for (int i = 0; i < list.getSize(); ++i) {
    lvArg const element = list.at(i);
    all += test::brief(element) + "/" + std::to_string(test::bookkeepingOf(element)) + " ";
  }
  return all;
}

inline int anyPosition(Walk& walk, lviList const& list) {
  return walk.choices.below(list.getSize() + 3) - 2;
}

inline std::string changeList(Walk& walk, Elements const& elements, lviList& list,
                              lviList const& other) {
  lvArg const element = elements.any(walk);
  int const position = anyPosition(walk, list);
  std::string const at = " at " + std::to_string(position);
  switch (walk.choices.below(24)) {
    case 0:
    case 1:
      return "remove" + at + " " + test::brief(list.remove(position));
    case 2:
    case 3:
      return "remove " + test::brief(element) + " " + std::to_string(list.remove(element));
    case 4:
      return "position of " + test::brief(element) + " " +
             std::to_string(list.getElementPos(element));
    case 5:
      return walk.choices.oneIn(10) ? "merge " + std::to_string(list.merge(other) ? 1 : 0)
                                    : "read" + at + " " + test::brief(list.at(position));
    case 6:
      return walk.choices.oneIn(20) ? "clear " + std::to_string(list.clear() ? 1 : 0)
                                    : "all: " + elementsOf(list) + elements.counts();
    default:
      return "insert " + test::brief(element) + at + " " +
             std::to_string(list.insert(element, position) ? 1 : 0);
  }
}

inline std::string moveCursor(Walk& walk, Elements const& elements, lviRealListRWIterator& cursor) {
  switch (walk.choices.below(6)) {
    case 0:
      return "cursor removes " + std::to_string(cursor.remove() ? 1 : 0);
    case 1:
      return "cursor inserts " + std::to_string(cursor.insert(elements.any(walk)) ? 1 : 0);
    default:
      return "cursor " + std::to_string(cursor.gotoNext() ? 1 : 0) + " " +
             test::brief(cursor.getValue());
  }
}

template <class List, class... Size>
inline void walkList(std::string const& name, unsigned seed, Size... size) {
  constexpr int steps = 2500;
  Walk walk(name, seed);
  Elements const elements;
  test::Held<List> const list(size...);
  test::Held<List> const other(size...);
  other->insert(test::integer(1), -1);
  other->insert(test::string("one"), -1);
  std::unique_ptr<lviRealListRWIterator> cursor;
  for (int i = 0; i < steps; ++i) {
    walk.step(changeList(walk, elements, *list, *other));
    if (cursor == nullptr || walk.choices.oneIn(40)) {
      cursor.reset(list->getListRWIterator());
    }
    if (cursor != nullptr) {
      walk.step(moveCursor(walk, elements, *cursor));
    }
  }
  walk.step("all: " + elementsOf(*list) + elements.counts());
}

inline void walkStack(unsigned seed) {
  constexpr int steps = 1000;
  Walk walk("stack", seed);
  Elements const elements;
  test::Held<lvrStack> const stack(-1);
  for (int i = 0; i < steps; ++i) {
    lvArg const element = elements.any(walk);
    std::string answer;
    switch (walk.choices.below(6)) {
      case 0:
      case 1:
        answer = "pop " + test::brief(stack->pop());
        break;
      case 2:
        answer = "poke " + test::brief(stack->poke(element));
        break;
      case 3:
        answer = "peek " + test::brief(stack->peek(walk.choices.below(5)));
        break;
      default:
        answer = "push " + std::to_string(stack->push(element));
    }
    walk.step(answer + " size " + std::to_string(stack->getSize()));
  }
  walk.step(elements.counts());
}

inline std::string elementsOf(lviSortedList const& list) {
  std::string all;
  for (int i = 0; i < list.getSize(); ++i) {
    all += test::brief(list.get(i)) + " ";
  }
  return all;
}

inline void walkSortedList(unsigned seed) {
  constexpr int steps = 2500;
  Walk walk("sorted list", seed);
  Elements const elements;
  test::Held<lvrSortedArrayList> const list(seed % 2);
  test::Held<lvrSortedArrayList> const other(1U);
  for (int i = 0; i < steps; ++i) {
    lvArg const element = elements.any(walk);
    std::string answer = test::brief(element) + " ";
    switch (walk.choices.below(12)) {
      case 0:
        answer += "indexes " + std::to_string(list->indexOf(element)) + " " +
                  std::to_string(list->lastIndexOf(element));
        break;
      case 1:
        answer += "added to the other " + std::to_string(other->add(element));
        break;
      case 2:
        answer = "add all " + std::to_string(list->addAll(*other) ? 1 : 0);
        break;
      case 3:
        answer = "contains all " + std::to_string(list->containsAll(*other) ? 1 : 0) + " equals " +
                 std::to_string(list->equals(*other) ? 1 : 0);
        break;
      case 4: {
        std::unique_ptr<lviRealSortedListIterator> const cursor(
            list->getSortedListIterator(walk.choices.below(list->getSize() + 1)));
        answer =
            "cursor at " + std::to_string(cursor->nextIndex()) + " " + test::brief(cursor->next());
        cursor->remove();
        break;
      }
      case 5:
        if (walk.choices.oneIn(20)) {
          list->clear();
        }
        answer = "all: " + elementsOf(*list) + elements.counts();
        break;
      default:
        answer += "added " + std::to_string(list->add(element));
    }
    walk.step(answer + " size " + std::to_string(list->getSize()));
  }
}

inline void walkLists() {
  walkList<lvrVector>("vector", 1, -1);
  walkList<lvrDLList>("linked list", 2);
  walkStack(1);
  walkSortedList(1);
  walkSortedList(2);
}

}  // namespace compared
