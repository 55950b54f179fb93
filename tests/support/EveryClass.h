// Uses every class of the library once, for programs that are tests by themselves: before main(),
// in exit handlers, in plugins. What it makes is released again, but for one entry of the registry.
#pragma once

#include <cstring>

#include "support/Cells.h"
#include "support/ProgramChecks.h"
#include "tarselvalues/tarselvalues.h"

namespace test {

inline bool reads(lvArg const& cell, char const* text) {
  return cell.getType() == lvArg::StringType && textOf(cell) == text;
}

// Whether `value` is written as `text`, and what is read from that is written so again.
inline bool isWritten(lvArg const& value, char const* text) {
  int consumed = 0;
  lvString const written = lvToolsToString(value);
  lvArg const back = lvToolsFromString(written, consumed);
  return reads(written, text) && consumed == written.length() && reads(lvToolsToString(back), text);
}

inline void useCellsAndStrings(char const* when) {
  LV_CHECK(lvArg::NilValue.isNil(), when);
  LV_CHECK(lvArg::TrueValue.getInt() == 1, when);
  lvArg cell = lvArg::TrueValue;
  cell = lvArg::FalseValue;
  LV_CHECK(cell.eq(integer(0)), when);
  LV_CHECK(reads(lvString("for the ") + "moment", "for the moment"), when);
  LV_CHECK(reads(lvString("moment").getLeft(3), "mom"), when);
  LV_CHECK(reads(lvString(-17), "-17"), when);
  LV_CHECK(reads(lvValue(integer(17)).toString(), "17"), when);
  LV_CHECK(string("own").equiv(lvString("own")) != 0, when);
}

inline void useMap(lvArg const& map, char const* when) {
  lvHashMap const entries(map);
  entries->put(lvString("one"), integer(1));
  entries->put(integer(2), string("two"));
  LV_CHECK(reads(entries->get(integer(2)), "two"), when);
  LV_CHECK(entries->get(string("one")).getInt() == 1, when);
  int walked = 0;
  for (lvMapEnumerator entry(*entries.getMap()); entry->next();) {
    walked += entry->getValue().isNil() ? 0 : 1;
  }
  LV_CHECK(walked == 2, when);
  entries->put(integer(2), lvArg::NilValue);
  LV_CHECK(isWritten(entries, "{(one=1)}"), when);
}

inline void useList(lviList& list, char const* when) {
  list.insert(lvString("last"), -1);
  list.insert(integer(1), 0);
  LV_CHECK(list.getElementPos(integer(1)) == 0, when);
  lvListEnumerator item(list);
  LV_CHECK(item->gotoNext() && item->getValue().getInt() == 1, when);
  LV_CHECK(item->gotoNext() && reads(item->getValue(), "last"), when);
  LV_CHECK(list.remove(1).getType() == lvArg::StringType, when);
}

inline void useSortedList(lviSortedList& list, char const* when) {
  list.add(integer(2));
  list.add(integer(1));
  int last = 0;
  for (lvSortedListEnumerator item(list, 0); item->hasNext();) {
    int const value = item->next().getInt();
    LV_CHECK(value == last + 1, when);
    last = value;
  }
  LV_CHECK(last == 2, when);
}

inline void useContainers(char const* when) {
  useMap(lvHashMap(3), when);
  useMap(*new lvrTupleSet(2, 2, 0), when);
  lvVector const vector(1);
  useList(*vector.getList(), when);
  LV_CHECK(isWritten(vector, "{1}"), when);
  auto* const linked = new lvrDLList;
  lvArg const linkedCell(*linked);
  useList(*linked, when);
  lvSortedList const sorted(*new lvrSortedArrayList(1));
  useSortedList(*sorted.getSortedList(), when);
  auto* const stack = new lvrStack(1);
  lvArg const stackCell(*stack);
  stack->push(lvString("top"));
  LV_CHECK(reads(stack->peek(0), "top") && stack->pop().getType() == lvArg::StringType, when);
}

inline void useRegistry(char const* when) {
  lvtClassRegistry& registry = *lvtClassRegistry::getInstance();
  lvString const name("Sequence");
  registry.putClass(name, lvClass(1, name, lvrVector::defaultCtorMethod));  // The first one stays.
  LV_CHECK(registry.putClass(name, lvArg::TrueValue) == -1, when);
  for (char const* const each :
       {"Class", "DLList", "HashMap", "Sequence", "Stack", "String", "TupleSet", "Vector"}) {
    lvClass const described(registry.getClass(lvString(each)));
    LV_CHECK(reads(described.getClassDesc(), each), when);
    lvArg const made(*described->instantiateDefaultObject());
    LV_CHECK(made.getReferencable() != nullptr && countOf(made) == 1, when);
  }
}

inline void useSerializer(char const* when) {
  char buffer[40];
  lvtStringArgDest writer(buffer, sizeof(buffer));
  auto* const serializer = new lvrCommonSerializer;
  lvArg const cell(*serializer);
  LV_CHECK(reads(cell.getReferencable()->getClassDesc(), "CommonSerializer"), when);
  serializer->serializeTupleInto(writer, lvString("key"), string("a value"));
  writer.terminate();
  LV_CHECK(std::strcmp(writer.getStringData(), "(key=\"a value\")") == 0, when);
  lvtStringArgSource parser("{1,{(a=b)}}", -1);
  lvArg read;
  LV_CHECK(serializer->deserializeItemInto(read, parser) == 0, when);
  LV_CHECK(lvVector(read)->getSize() == 2, when);
}

inline void useEveryClass(char const* when) {
  useCellsAndStrings(when);
  useContainers(when);
  useRegistry(when);
  useSerializer(when);
}

}  // namespace test
