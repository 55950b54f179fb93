#include <memory>

#include "Works.h"

namespace counts {
namespace {

constexpr int Repetitions = 1000;
constexpr int Size = 100;

void append(lviList& list, int count) {
  lvString const element("pump room");
  repeat(count, [&](int) { list.insert(element, -1); });
}

// Makes a vector, appends to it, and releases it.
void appendToVector(int repetitions) {
  int appended = 0;
  repeat(repetitions, [&](int) {
    lvVector const list(0);
    append(*list.getList(), Size);
    appended += list->getSize();
  });
  require(appended == repetitions * Size, "all is appended");
}

void insertInFrontAndRemove(int repetitions) {
  lvVector const list(Size + 1);
  append(*list.getList(), Size);
  lviList& elements = *list.getList();
  lvString const element("valve");
  repeat(repetitions, [&](int) {
    elements.insert(element, 0);
    elements.remove(0);
  });
  require(elements.getSize() == Size, "what is inserted is removed");
}

void insertInTheMiddleAndRemove(int repetitions) {
  lvVector const list(Size + 1);
  append(*list.getList(), Size);
  lviList& elements = *list.getList();
  lvString const element("valve");
  repeat(repetitions, [&](int) {
    elements.insert(element, Size / 2);
    elements.remove(Size / 2);
  });
  require(elements.getSize() == Size, "what is inserted is removed");
}

void readVector(int repetitions) {
  lvVector const list(Size);
  append(*list.getList(), Size);
  lviList const& elements = *list.getList();
  int strings = 0;
  repeat(repetitions, [&](int i) {
    strings += elements.at(i & SampleMask).getType() == lvArg::StringType ? 1 : 0;
  });
  require(strings == repetitions, "each element is a string");
}

void pushAndPop(int repetitions) {
  lvArg const holder(*lvrStack::defaultCtorMethod());
  auto& stack = dynamic_cast<lviStack&>(*holder.getReferencable());
  lvString const element("pump room");
  int popped = 0;
  repeat(repetitions, [&](int) {
    stack.push(element);
    popped += stack.pop().getType() == lvArg::StringType ? 1 : 0;
  });
  require(popped == repetitions && stack.isEmpty(), "what is pushed is popped");
}

// In the middle of a linked list, where a cursor stands.
void insertAndRemoveAtCursor(int repetitions) {
  lvVector const list{lvArg(*lvrDLList::defaultCtorMethod())};
  append(*list.getList(), Size);
  // Not in an lvListRWIterator, which never lets go of its list.
  std::unique_ptr<lviRealListRWIterator> const cursor(list->getListRWIterator());
  cursor->gotoIndex(Size / 2);
  lvString const element("valve");
  int removed = 0;
  repeat(repetitions, [&](int) {
    cursor->insert(element);
    cursor->gotoPrevious();
    removed += cursor->remove() ? 1 : 0;
  });
  require(removed == repetitions && list->getSize() == Size, "what is inserted is removed");
}

}  // namespace

std::vector<Work> listWorks() {
  return {
      {"vector-append-100", Repetitions, appendToVector},
      {"vector-insert-in-front-and-remove", Repetitions, insertInFrontAndRemove},
      {"vector-insert-in-the-middle-and-remove", Repetitions, insertInTheMiddleAndRemove},
      {"vector-at", Repetitions, readVector},
      {"stack-push-and-pop", Repetitions, pushAndPop},
      {"list-insert-and-remove-at-a-cursor", Repetitions, insertAndRemoveAtCursor},
  };
}

}  // namespace counts
