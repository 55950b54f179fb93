// The nodes of a linked list, to look at, and the direction in which lists are searched.
#pragma once

#include <string>

#include "support/Objects.h"
#include "support/Rings.h"
#include "tarselvalues/containers/LayoutAccess.h"

namespace test {

using ListLayout = lvLayoutAccess<lvrDLList>;
using Node = lvrDLList::lvrDLListNode;

// The elements along the links from the head on, "1 2 ".
inline std::string forward(lvrDLList const& list) {
  std::string elements;
  for (Node const* node = ListLayout::head(list); node != nullptr; node = node->next) {
    elements += briefSlot(node->value) + " ";
  }
  return elements;
}

// The elements along the links from the tail back, "2 1 ".
inline std::string backward(lvrDLList const& list) {
  std::string elements;
  for (Node const* node = ListLayout::tail(list); node != nullptr; node = node->prev) {
    elements += briefSlot(node->value) + " ";
  }
  return elements;
}

// The node at a position that the list has, to tamper with.
inline Node& nodeOf(lvrDLList& list, int position) {
  Node const* node = ListLayout::head(list);
  for (int i = 0; i < position; ++i) {
    node = node->next;
  }
  return const_cast<Node&>(*node);
}

// A linked list of integers.
class LinkedList : public Held<lvrDLList> {
 public:
  LinkedList(std::initializer_list<int> values = {}) { append(**this, values); }
};

// Makes the next search of any linked list start at the head, and the one after at the tail.
inline void startSearchesAtTheHead() {
  LinkedList const list{1, 1};
  if (list->getElementPos(integer(1)) == 0) {
    list->getElementPos(integer(1));
  }
}

}  // namespace test
