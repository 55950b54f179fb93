// Graphs that are nested deep, made without recursion.
#pragma once

#include "support/Cells.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"

namespace test {

// An object with one field.
class Link : public lvReferencable {
 public:
  static lvReferencable* make() { return new Link; }
  lvString const& getClassDesc() const override {
    static lvString const key("Link");
    return key;
  }

  lvArg next;
};

// Makes something that holds `inner` alone.
using Wrap = lvArg (*)(lvArg const& inner);

inline lvArg inVector(lvArg const& inner) {
  auto* const vector = new lvrVector(1);
  lvArg cell(*vector);
  vector->insert(inner, -1);
  return cell;
}

inline lvArg inMap(lvArg const& inner) {
  auto* const map = new lvrHashMap(1);
  lvArg cell(*map);
  map->put(integer(1), inner);
  return cell;
}

inline lvArg inMapAsKey(lvArg const& inner) {
  auto* const map = new lvrHashMap(1);
  lvArg cell(*map);
  map->put(inner, integer(1));
  return cell;
}

inline lvArg inTupleSet(lvArg const& inner) {
  auto* const set = new lvrTupleSet(1, 1, 0);
  lvArg cell(*set);
  set->put(integer(1), inner);
  return cell;
}

inline lvArg inStack(lvArg const& inner) {
  auto* const stack = new lvrStack(1);
  lvArg cell(*stack);
  stack->push(inner);
  return cell;
}

inline lvArg inLinkedList(lvArg const& inner) {
  auto* const list = new lvrDLList;
  lvArg cell(*list);
  list->insert(inner, -1);
  return cell;
}

inline lvArg inSortedList(lvArg const& inner) {
  auto* const list = new lvrSortedArrayList(1);
  lvArg cell(*list);
  list->add(inner);
  return cell;
}

inline lvArg inLink(lvArg const& inner) {
  auto* const link = new Link;
  lvArg cell(*link);
  link->next = inner;
  return cell;
}

// Each wrap in turn, `depth` times in all, around 1.
template <int N>
lvArg nested(Wrap const (&wraps)[N], int depth) {
  lvArg value = lvArg::TrueValue;
  for (int i = 0; i < depth; ++i) {
    value = wraps[i % N](value);
  }
  return value;
}

}  // namespace test
