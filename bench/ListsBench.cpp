// Vectors, stacks and linked lists.

#include <tarselvalues/tarselvalues.h>

#include <any>
#include <deque>
#include <iterator>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/Bench.h"
#include "bench/Lists.h"
#include "bench/OurCells.h"
#include "bench/StandardValues.h"

namespace bench {

namespace {

// ---- Ours --------------------------------------------------------------------------------------

class OurVector : public OurCells {
 public:
  OurVector() : handle(Room), list(handle.getList()) {}
  void append(lvArg const& value) { list->insert(value, -1); }
  void prepend(lvArg const& value) { list->insert(value, 0); }
  lvArg at(int position) const { return list->at(position); }

 private:
  static constexpr int Room = 7;  // As it is made with by name.

  lvVector handle;
  lviList* list;
};

class OurStack : public OurCells {
 public:
  OurStack() : stack(new lvrStack(Room)), held(*stack) {}
  void push(lvArg const& value) { stack->push(value); }
  lvArg pop() { return stack->pop(); }

 private:
  static constexpr int Room = 7;

  lvrStack* stack;
  lvArg held;
};

class OurLinkedList : public OurCells {
 public:
  OurLinkedList() : list(new lvrDLList), held(*list), cursor(list->getListRWIterator()) {}
  void append(lvArg const& value) { list->insert(value, -1); }
  void goInto(int position) { cursor->gotoIndex(position); }
  void insertAndRemove(lvArg const& value) {
    cursor->insert(value);
    cursor->gotoPrevious();
    cursor->remove();
  }

 private:
  lvrDLList* list;
  lvArg held;
  std::unique_ptr<lviRealListRWIterator> cursor;
};

// ---- The standard library's --------------------------------------------------------------------

template <class Container>
class StandardList {
 public:
  using Value = typename Container::value_type;

  static Value makeValue(std::string const& text) { return Value(sharedText(text)); }

  void append(Value const& value) { container.push_back(value); }
  void prepend(Value const& value) { container.push_front(value); }
  Value at(int position) const { return container[static_cast<std::size_t>(position)]; }

  void push(Value const& value) { container.push_back(value); }
  Value pop() {
    Value value = std::move(container.back());
    container.pop_back();
    return value;
  }

  void goInto(int position) { cursor = std::next(container.begin(), position); }
  void insertAndRemove(Value const& value) {
    cursor = container.insert(cursor, value);
    cursor = container.erase(cursor);
  }

 private:
  Container container;
  typename Container::iterator cursor;
};

template <class Value>
void addStandard() {
  addAppending<StandardList<std::vector<Value>>>(peerName<Value>);
  addPrepending<StandardList<std::deque<Value>>>(peerName<Value>);
  addStack<StandardList<std::vector<Value>>>(peerName<Value>);
  addCursor<StandardList<std::list<Value>>>(peerName<Value>);
}

// ------------------------------------------------------------------------------------------------

void addAll() {
  addAppending<OurVector>("ours");
  addPrepending<OurVector>("ours");
  addStack<OurStack>("ours");
  addCursor<OurLinkedList>("ours");
  for (char const* const work : {AppendWork, ReadAtWork, PrependWork, StackWork, CursorWork}) {
    addCountingFloors(work);
  }
  addStandard<SharedText>();
  addStandard<VariantValue>();
  addStandard<std::any>();
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
