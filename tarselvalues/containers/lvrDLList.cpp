#include "tarselvalues/containers/lvrDLList.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "tarselvalues/containers/lvListEnumerator.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"
#include "tarselvalues/core/Tuning.h"

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
constexpr std::uint32_t DisplacedMark = 2;
constexpr std::uint32_t OnePin = 4;

// Places: a cursor changes the list at its index, where its node is no more once others have
// changed the list. To find the node at the index without a walk, a list counts its changes, and a
// cursor that was seen to stand where its index says has noted their number down. Before that
// number comes round again, and when the list is cleared, nodes with pins are marked as displaced:
// who stands there takes the walk.

bool isRemoved(Node const& node) { return (node.value.getBookkeeping() & RemovedMark) != 0; }

void pin(Node& node) { node.value.addToBookkeeping(OnePin); }

// Marks end with the last pin.
void unpin(Node* node) {
  std::uint32_t const pins = node->value.getBookkeeping();
  bool const isLast = pins < 2 * OnePin;
  if (isLast && (pins & RemovedMark) != 0) {
    delete node;
  } else {
    node->value.setBookkeeping(isLast ? 0 : pins - OnePin);
  }
}

bool isDisplaced(Node const& node) { return (node.value.getBookkeeping() & DisplacedMark) != 0; }

void displace(Node& node) {
  std::uint32_t const pins = node.value.getBookkeeping();
  if (pins != 0) {
    node.value.setBookkeeping(pins | DisplacedMark);
  }
}

// Takes the mark away for a cursor that knows better, if no other stands there.
void placeOnlyCursor(Node& node) {
  if (node.value.getBookkeeping() == OnePin + DisplacedMark) {
    node.value.setBookkeeping(OnePin);
  }
}

// Whether all that happens to a list is what this class does: no function of the program replaces
// it.
bool isOwn(lvrDLList const& list) {
  return tarselvalues::Tuned && tarselvalues::isExactly<lvrDLList>(list);
}

// Whether walking a list runs no function of the program.
bool isWalkedWithoutProgram(lviList const& list) {
  return tarselvalues::isExactly<lvrDLList>(list) || tarselvalues::isExactly<lvrVector>(list);
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

// Moves the value of a node out. The bookkeeping bits stay with the node; so below.
lvArg valueOutOf(Node& node) {
  lvArg value(std::move(node.value));
  value.setBookkeeping(0);
  return value;
}

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
    releaseNodes();
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
  noteChange();
}

// Returns the value of the node that was taken out; nil for none.
lvArg lvrDLList::removeNode(Node* node) {
  if (node == nullptr) {
    return {};
  }
  lvArg value(valueOutOf(*node));
  noteChange();
  (node->prev != nullptr ? node->prev->next : head) = node->next;
  (node->next != nullptr ? node->next->prev : tail) = node->prev;
  --count;
  retire(node);
  return value;
}

// Counts a change of the links.
void lvrDLList::noteChange() {
  auto const number = static_cast<std::uint16_t>(getOwnNumber() + 1);
  setOwnNumber(number);
  if (number == 0) {
    displaceCursors();
  }
}

// From here on no cursor that stands on a node counts as standing where its index says.
void lvrDLList::displaceCursors() {
  for (Node* node = head; node != nullptr; node = node->next) {
    displace(*node);
  }
}

lvArg lvrDLList::remove(int index) { return removeNode(nodeAt(index)); }

int lvrDLList::remove(lvArg const& value) {
  Node* const node = nodeWith(value, nullptr);
  removeNode(node);
  return node != nullptr ? Removed : NotFound;
}

bool lvrDLList::clear() {
  displaceCursors();
  releaseNodes();
  return true;
}

void lvrDLList::releaseNodes() {
  // Empty before the first release: what runs in there finds a list that it may use.
  Node* node = std::exchange(head, nullptr);
  tail = nullptr;
  count = 0;
  while (node != nullptr) {
    Node* const cleared = std::exchange(node, node->next);
    if (node != nullptr) {
      node->prev = nullptr;  // A cursor may stand there.
    }
    lvArg const value(valueOutOf(*cleared));
    retire(cleared);
  }
}

bool lvrDLList::merge(lviList const& other) {
  if (head != nullptr && tail == nullptr) {
    return false;
  }
  bool const isOwnList = isOwn(*this);
  tarselvalues::KeptAlive const self(*this, !isOwnList || !isWalkedWithoutProgram(other));
  int const size = other.getSize();
  if (size == 0) {
    return false;
  }
  lvListEnumerator const element(other);
  for (int merged = 0; element.getCursor() != nullptr && element->gotoNext(); ++merged) {
    if (merged >= size && other.getSize() != size) {
      break;  // It grows with this list: it is this list, or shows it.
    }
    if (isOwnList) {
      auto* const made = new Node(element->getValue());
      linkAfter(made, tail);
    } else {
      insert(element->getValue(), Append);
    }
  }
  return true;
}

// ---- Cursors -----------------------------------------------------------------------------------

lviRealListEnumerator* lvrDLList::getListEnumerator() const { return new RealEnumerator(*this); }

lviRealListIterator* lvrDLList::getListIterator() { return new RealIterator(*this); }

lviRealListRWIterator* lvrDLList::getListRWIterator() { return new RealRWIterator(*this); }

lvrDLList::IteratorLogic::IteratorLogic(lvrDLList& walked)
    : list(&walked), node(nullptr), invalid(false), placed(false), seenChanges(0), index(-1) {
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

// Whether the node is known to be where the index says.
bool lvrDLList::IteratorLogic::isPlaced() const {
  return node != nullptr && placed && seenChanges == list->getOwnNumber() && !isDisplaced(*node);
}

// The node at the index, which need not be the one that the cursor stands on.
Node* lvrDLList::IteratorLogic::nodeAtIndex() const {
  return isPlaced() ? node : list->nodeAt(index);
}

void lvrDLList::IteratorLogic::setPlaced(bool isAtIndex) const {
  placed = isAtIndex;
  seenChanges = list->getOwnNumber();
}

// The node under the cursor. If it was taken away meanwhile, the cursor first moves to the element
// that has its position now, or after the last one.
Node* lvrDLList::IteratorLogic::liveNode() const {
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the pin keeps the node.
  if (node != nullptr && isRemoved(*node)) {
    leaveRemoved();
  }
  return node;
}

void lvrDLList::IteratorLogic::leaveRemoved() const {
  standOn(index >= 0 ? list->nodeAt(index) : nullptr);
  setPlaced(true);
  if (node == nullptr && index >= 0) {
    index = list->count;
  }
}

bool lvrDLList::IteratorLogic::gotoNext() {
  if (invalid) {
    return false;
  }
  Node* const here = liveNode();
  Node* candidate = nullptr;
  bool const isAtIndex = index == -1 || isPlaced();
  if (index == -1) {
    candidate = list->head;
  } else if (here != nullptr) {
    candidate = here->next;
  }
  standOn(candidate);
  setPlaced(isAtIndex);
  index = candidate != nullptr ? index + 1 : list->count;
  return candidate != nullptr;
}

bool lvrDLList::IteratorLogic::gotoPrevious() {
  if (invalid) {
    return false;
  }
  Node* const here = liveNode();
  Node* candidate = nullptr;
  bool const isAtIndex = index == list->count || isPlaced();
  if (index == list->count) {
    candidate = list->tail;
  } else if (here != nullptr) {
    candidate = here->prev;
  }
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the pin keeps the node.
  standOn(candidate);
  setPlaced(isAtIndex);
  index = candidate != nullptr ? index - 1 : -1;
  return candidate != nullptr;
}

bool lvrDLList::IteratorLogic::gotoMatching(lviRealListEnumerator::Predicate* pred, void* ctx,
                                            bool backward) {
  // `pred` may add an element each time, or move the cursor back. From a negative gotoIndex() on
  // the way leads over the list up to twice.
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
  setPlaced(position >= 0);
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
  if (isOwn(*list)) {
    return removeFromOwn();
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

// The same where the list's own remove(index) is the one of this class. Requires an index that is
// not negative, and a node.
bool lvrDLList::IteratorLogic::removeFromOwn() {
  Node* const gone = nodeAtIndex();
  if (gone == nullptr) {
    return false;
  }
  bool const isHere = gone == node;
  standOn(node->next);
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the list still has the node.
  lvArg const removed = list->removeNode(gone);
  setPlaced(isHere);
  if (node == nullptr) {
    index = list->count;
  }
  return !removed.isNil();
}

bool lvrDLList::IteratorLogic::insert(lvArg const& value) {
  liveNode();
  if (invalid || index < 0) {
    return false;
  }
  if (!(isOwn(*list) ? insertIntoOwn(value) : list->insert(value, index))) {
    return false;
  }
  ++index;
  return true;
}

// The same as the list's own insert(value, index) where that is the one of this class. Requires an
// index that is not negative.
bool lvrDLList::IteratorLogic::insertIntoOwn(lvArg const& value) {
  if (index > list->count) {
    return false;
  }
  auto* const made = new Node(value);
  Node* const behind = nodeAtIndex();  // A std::new_handler may have changed the list.
  if (behind != nullptr) {
    list->linkAfter(made, behind->prev);
  } else {
    list->linkAfter(made, index > 0 ? list->nodeAt(index - 1) : nullptr);
  }
  setPlaced(behind == node);
  if (placed && node != nullptr) {
    placeOnlyCursor(*node);
  }
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
