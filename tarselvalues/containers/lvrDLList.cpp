#include "tarselvalues/containers/lvrDLList.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "tarselvalues/containers/lvListEnumerator.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"

namespace {

using Node = lvrDLList::lvrDLListNode;

constexpr int NotFound = -1;
constexpr int Removed = 0;
constexpr int Append = -1;

// How many elements a search by predicate shows at least, if predicates keep on adding them.
constexpr std::int64_t LeastToShow = 65536;

// The direction of the next search of any list; any thread may disturb it.
std::atomic<bool> searchFromTail{false};

// Pins: a cursor pins the node it stands on. A node that is removed while it is pinned leaves the
// list at once but is only freed with its last pin, so no cursor ever reads a freed one. The number
// of pins and the mark of a removed node are kept in the bookkeeping bits of the node's cell.
constexpr std::uint32_t RemovedMark = 1;
constexpr std::uint32_t OnePin = 2;

bool isRemoved(Node const& node) { return (node.value.getBookkeeping() & RemovedMark) != 0; }

void pin(Node& node) { node.value.setBookkeeping(node.value.getBookkeeping() + OnePin); }

void unpin(Node* node) {
  std::uint32_t const left = node->value.getBookkeeping() - OnePin;
  node->value.setBookkeeping(left);
  if (left == RemovedMark) {
    delete node;
  }
}

// Frees a node that is out of the list, now or with its last pin. Its value has been taken out.
void retire(Node* node) {
  std::uint32_t const pins = node->value.getBookkeeping();
  if (pins == 0) {
    delete node;
  } else {
    node->value.setBookkeeping(pins | RemovedMark);
    node->next = nullptr;
    node->prev = nullptr;
  }
}

// The bookkeeping bits stay with the node.
lvArg copyOf(Node const* node) {
  lvArg value;
  if (node != nullptr) {
    value.assignFast(node->value);
  }
  return value;
}

}  // namespace

lvrDLList::lvrDLList() : count(0), head(nullptr), tail(nullptr) { setKind(ListKind); }

lvrDLList::~lvrDLList() {
  while (head != nullptr) {  // Again, if something was inserted while elements were released.
    lvrDLList::clear();
  }
}

lvReferencable* lvrDLList::defaultCtorMethod() { return new lvrDLList; }

lvString const& lvrDLList::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::DLList);
}

lvString const& lvrDLList::getClassDesc() const { return getStaticClassDesc(); }

// ---- Asking ------------------------------------------------------------------------------------

int lvrDLList::getSize() const { return count; }

bool lvrDLList::isSorted() const { return false; }

lvArg lvrDLList::at(int index) const { return copyOf(nodeAt(index)); }

int lvrDLList::getElementPos(lvArg const& value) const {
  int position = NotFound;
  nodeWith(value, &position);
  return position;
}

Node* lvrDLList::nodeAt(int index) const {
  int const position = index < 0 ? index + count : index;
  if (position < 0 || position >= count) {
    return nullptr;
  }
  Node* node = nullptr;
  if (position <= (count + 1) / 2) {
    node = head;
    for (int i = 0; i < position; ++i) {
      node = node->next;
    }
  } else {
    node = tail;
    for (int i = count - 1; i > position; --i) {
      node = node->prev;
    }
  }
  return node;
}

// Finds an element that is eq. `pos`, where not null, receives its position.
Node* lvrDLList::nodeWith(lvArg const& value, int* pos) const {
  bool const fromTail = searchFromTail.load(std::memory_order_relaxed);
  searchFromTail.store(!fromTail, std::memory_order_relaxed);
  int position = fromTail ? count - 1 : 0;
  for (Node* node = fromTail ? tail : head; node != nullptr;
       node = fromTail ? node->prev : node->next) {
    if (node->value.eq(value)) {
      if (pos != nullptr) {
        *pos = position;
      }
      return node;
    }
    position += fromTail ? -1 : 1;
  }
  return nullptr;
}

// ---- Changing ----------------------------------------------------------------------------------

bool lvrDLList::insert(lvArg const& value, int index) {
  int const position = index < 0 ? index + count + 1 : index;
  if (position < 0 || position > count) {
    return false;
  }
  auto* const made = new Node(value);
  linkAfter(made, position > 0 ? nodeAt(position - 1) : nullptr);
  return true;
}

// A null `before` makes the node the first.
void lvrDLList::linkAfter(Node* node, Node* before) {
  node->prev = before;
  node->next = before != nullptr ? before->next : head;
  (before != nullptr ? before->next : head) = node;
  (node->next != nullptr ? node->next->prev : tail) = node;
  ++count;
}

// Returns the value of the node that was taken out; nil for none.
lvArg lvrDLList::removeNode(Node* node) {
  lvArg value;
  if (node != nullptr) {
    value = std::move(node->value);
    (node->prev != nullptr ? node->prev->next : head) = node->next;
    (node->next != nullptr ? node->next->prev : tail) = node->prev;
    --count;
    retire(node);
  }
  return value;
}

lvArg lvrDLList::remove(int index) { return removeNode(nodeAt(index)); }

int lvrDLList::remove(lvArg const& value) {
  Node* const node = nodeWith(value, nullptr);
  removeNode(node);
  return node != nullptr ? Removed : NotFound;
}

bool lvrDLList::clear() {
  // Empty before the first release: what runs in there finds a list that it may use.
  Node* node = std::exchange(head, nullptr);
  tail = nullptr;
  count = 0;
  while (node != nullptr) {
    Node* const cleared = std::exchange(node, node->next);
    if (node != nullptr) {
      node->prev = nullptr;  // A cursor may stand there.
    }
    lvArg value;
    value = std::move(cleared->value);
    retire(cleared);
  }
  return true;
}

bool lvrDLList::merge(lviList const& other) {
  if (head != nullptr && tail == nullptr) {
    return false;
  }
  tarselvalues::KeptAlive const self(*this);
  int const size = other.getSize();
  if (size == 0) {
    return false;
  }
  lvListEnumerator const element(other);
  for (int merged = 0; element.getCursor() != nullptr && element->gotoNext(); ++merged) {
    if (merged >= size && other.getSize() != size) {
      break;  // It grows with this list: it is this list, or shows it.
    }
    insert(element->getValue(), Append);
  }
  return true;
}

// ---- Cursors -----------------------------------------------------------------------------------

lviRealListEnumerator* lvrDLList::getListEnumerator() const { return new RealEnumerator(*this); }

lviRealListIterator* lvrDLList::getListIterator() { return new RealIterator(*this); }

lviRealListRWIterator* lvrDLList::getListRWIterator() { return new RealRWIterator(*this); }

lvrDLList::IteratorLogic::IteratorLogic(lvrDLList& walked)
    : list(&walked), node(nullptr), invalid(false), index(-1) {
  tarselvalues::takeReference(walked);
}

lvrDLList::IteratorLogic::~IteratorLogic() {
  standOn(nullptr);
  tarselvalues::dropReference(*list);
}

void lvrDLList::IteratorLogic::standOn(Node* other) const {
  if (other != nullptr) {
    pin(*other);
  }
  if (node != nullptr) {
    unpin(node);
  }
  node = other;
}

// The node under the cursor. If it was taken away meanwhile, the cursor first moves to the element
// that has its position now, or after the last one.
Node* lvrDLList::IteratorLogic::liveNode() const {
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the pin keeps the node.
  if (node != nullptr && isRemoved(*node)) {
    standOn(index >= 0 ? list->nodeAt(index) : nullptr);
    if (node == nullptr && index >= 0) {
      index = list->count;
    }
  }
  return node;
}

bool lvrDLList::IteratorLogic::gotoNext() {
  if (invalid) {
    return false;
  }
  Node* const here = liveNode();
  Node* candidate = nullptr;
  if (index == -1) {
    candidate = list->head;
  } else if (here != nullptr) {
    candidate = here->next;
  }
  standOn(candidate);
  index = candidate != nullptr ? index + 1 : list->count;
  return candidate != nullptr;
}

bool lvrDLList::IteratorLogic::gotoPrevious() {
  if (invalid) {
    return false;
  }
  Node* const here = liveNode();
  Node* candidate = nullptr;
  if (index == list->count) {
    candidate = list->tail;
  } else if (here != nullptr) {
    candidate = here->prev;
  }
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the pin keeps the node.
  standOn(candidate);
  index = candidate != nullptr ? index - 1 : -1;
  return candidate != nullptr;
}

bool lvrDLList::IteratorLogic::gotoMatching(lviRealListEnumerator::Predicate* pred, void* ctx,
                                            bool backward) {
  // `pred` may add an element each time, or move the cursor back. From a negative gotoIndex() on the
  // way leads over the list up to twice.
  std::int64_t left = std::max(LeastToShow, 2 * std::int64_t{list->count});
  for (; (backward ? gotoPrevious() : gotoNext()) && left > 0; --left) {
    if (pred(getValue(), ctx)) {
      return true;
    }
  }
  return false;
}

bool lvrDLList::IteratorLogic::gotoIndex(int position) {
  standOn(list->nodeAt(position));
  invalid = node == nullptr;
  index = invalid ? -1 : position;
  return !invalid;
}

int lvrDLList::IteratorLogic::getIndex() const {
  liveNode();
  return index;
}

lvArg lvrDLList::IteratorLogic::getValue() const { return copyOf(liveNode()); }

bool lvrDLList::IteratorLogic::remove() {
  Node* const here = liveNode();
  if (invalid || index < 0 || here == nullptr) {
    return false;
  }
  int const size = list->count;
  IteratorLogic behind(*list);  // Pins the successor meanwhile.
  behind.standOn(here->next);
  lvArg const removed = list->remove(index);
  if (list->count >= size) {
    return false;
  }
  standOn(behind.node);
  if (node == nullptr) {
    index = list->count;
  }
  return !removed.isNil();
}

bool lvrDLList::IteratorLogic::insert(lvArg const& value) {
  liveNode();
  if (invalid || index < 0 || !list->insert(value, index)) {
    return false;
  }
  ++index;
  return true;
}

lvrDLList::RealEnumerator::RealEnumerator(lvrDLList const& walked)
    : Cursor(const_cast<lvrDLList&>(walked)) {}

lvrDLList::RealEnumerator::~RealEnumerator() = default;

lvrDLList::RealIterator::RealIterator(lvrDLList& walked) : Cursor(walked) {}

lvrDLList::RealIterator::~RealIterator() = default;

bool lvrDLList::RealIterator::remove() { return logic.remove(); }

lvrDLList::RealRWIterator::RealRWIterator(lvrDLList& walked) : Cursor(walked) {}

lvrDLList::RealRWIterator::~RealRWIterator() = default;

bool lvrDLList::RealRWIterator::remove() { return logic.remove(); }

bool lvrDLList::RealRWIterator::isWritable() { return true; }

bool lvrDLList::RealRWIterator::insert(lvArg const& value) { return logic.insert(value); }
