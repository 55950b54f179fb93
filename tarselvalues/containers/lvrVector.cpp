#include "tarselvalues/containers/lvrVector.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "tarselvalues/containers/ElementArrays.h"
#include "tarselvalues/core/CellMove.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"

namespace {

using tarselvalues::cutToLimit;
using tarselvalues::moveIntoNil;

constexpr int DefaultCapacity = 7;
constexpr int NotFound = -1;
constexpr int Last = -1;

}  // namespace

lvrVector::lvrVector(int size)
    : elements(size >= 0 ? new lvArg[cutToLimit(size)] : nullptr),
      alloced(cutToLimit(size)),
      start(0),
      count(0),
      flags(tarselvalues::HashCached),
      hashCache(0) {
  setKind(ListKind);
}

lvrVector::lvrVector(int ringAlloced, int ringCount, int ringStart, lvArg* ring)
    : elements(ring),
      alloced(ring != nullptr ? cutToLimit(ringAlloced) : std::uint16_t{0}),
      start(ringStart < alloced ? cutToLimit(ringStart) : std::uint16_t{0}),
      count(std::min(cutToLimit(ringCount), alloced)),
      flags(0),
      hashCache(0) {
  setKind(ListKind);
  for (int i = count; i < alloced; ++i) {
    slot(i).setNil();  // Or moving an element there would release something.
  }
}

lvrVector::~lvrVector() = default;

lvReferencable* lvrVector::defaultCtorMethod() { return new lvrVector(DefaultCapacity); }

lvString const& lvrVector::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::Vector);
}

lvString const& lvrVector::getClassDesc() const { return getStaticClassDesc(); }

int lvrVector::finalize() {
  tarselvalues::KeptAlive const self(*this);
  while (elements != nullptr) {  // Again, if something was inserted while elements were released.
    releaseData();
  }
  return 0;
}

// ---- Asking ------------------------------------------------------------------------------------

unsigned int lvrVector::hashCode() const {
  return tarselvalues::cachedHash(*this, flags, hashCache, count,
                                  [this](int i) -> lvArg const& { return slot(i); });
}

bool lvrVector::isSorted() const { return false; }

lvArg lvrVector::at(int index) const { return borrow(index); }

int lvrVector::getSize() const { return count; }

int lvrVector::getElementPos(lvArg const& value) const {
  tarselvalues::KeptWhileAsking self(*this);
  return positionOf(value, self);
}

int lvrVector::positionOf(lvArg const& value, tarselvalues::KeptWhileAsking& self) const {
  self.ask(value);
  for (int i = 0; i < count; ++i) {
    if (self.ask(slot(i)).equiv(value) != 0) {
      return i;
    }
  }
  return NotFound;
}

// ---- Changing ----------------------------------------------------------------------------------

// Moves the elements from `first` up to `last` one position up, into a free slot.
void lvrVector::shiftUp(int first, int last) {
  for (int i = last; i >= first; --i) {
    moveIntoNil(slot(i + 1), std::move(slot(i)));
  }
}

// Moves the elements from `first` up to `last` one position down, into a free slot.
void lvrVector::shiftDown(int first, int last) {
  for (int i = first; i <= last; ++i) {
    moveIntoNil(slot(i == 0 ? alloced - 1 : i - 1), std::move(slot(i)));
  }
}

// Sees to it that there is a free slot. A derived setAlloced() may refuse.
bool lvrVector::makeRoom() {
  return count < alloced ||
         (count < MaxSize && setAlloced(tarselvalues::grownCapacity(count)) >= 0 &&
          count < alloced);
}

bool lvrVector::append(lvArg&& value) {
  if (!makeRoom()) {
    return false;
  }
  flags = 0;
  moveIntoNil(slot(count), std::move(value));
  ++count;
  return true;
}

bool lvrVector::insert(lvArg const& value, int index) {
  if (index > count || index < Last || count == MaxSize) {
    return false;
  }
  lvArg incoming(value);  // It may lie in the array that is about to move.
  if (!makeRoom() || index > count) {
    return false;
  }
  int const size = count;
  int const position = index == Last ? size : index;
  if (position >= size / 2) {
    shiftUp(position, size - 1);
  } else {
    shiftDown(0, position - 1);
    start = static_cast<std::uint16_t>((start + alloced - 1) % alloced);
  }
  count = static_cast<std::uint16_t>(size + 1);
  flags = 0;
  moveIntoNil(slot(position), std::move(incoming));
  return true;
}

lvArg lvrVector::remove(int index) {
  if (count == 0 || index < Last || index >= count) {
    return lvArg::NilValue;
  }
  int const position = index == Last ? count - 1 : index;
  int const rest = count - 1;
  flags = 0;
  lvArg removed(std::move(slot(position)));
  if (position < rest / 2) {
    shiftUp(0, position - 1);
    start = static_cast<std::uint16_t>((start + 1) % alloced);
  } else {
    shiftDown(position + 1, rest);
  }
  count = static_cast<std::uint16_t>(rest);
  return removed;
}

int lvrVector::remove(lvArg const& value) {
  tarselvalues::KeptWhileAsking self(*this);
  int const position = positionOf(value, self);
  if (position == NotFound) {
    return 0;
  }
  remove(position);
  return 1;
}

bool lvrVector::clear() {
  if (count == 0) {
    return true;
  }
  // Out of the way before the first release: what runs in there finds a vector that it may use, or
  // let go.
  tarselvalues::KeptAlive const self(*this);
  std::unique_ptr<lvArg[]> ring(std::exchange(elements, nullptr));
  std::uint16_t const capacity = std::exchange(alloced, std::uint16_t{0});
  std::uint16_t const size = std::exchange(count, std::uint16_t{0});
  std::uint16_t const first = start;
  for (int i = 0; i < size; ++i) {
    ring[static_cast<std::size_t>((first + i) % capacity)].setNil();
  }
  if (elements == nullptr) {
    elements = ring.release();
    alloced = capacity;
  }
  return true;
}

bool lvrVector::merge(lviList const& /*other*/) { return false; }

int lvrVector::setAlloced(int capacity) {
  if (elements != nullptr && capacity < 0 && count == 0) {
    return releaseData();
  }
  if (elements == nullptr && capacity < 1) {
    return 0;
  }
  std::uint16_t const wanted = std::max(cutToLimit(capacity), count);
  if (wanted == alloced) {
    return alloced;
  }
  std::unique_ptr<lvArg[]> ring(new lvArg[wanted]);
  for (int i = 0; i < count; ++i) {
    moveIntoNil(ring[static_cast<std::size_t>(i)], std::move(slot(i)));
  }
  if (elements != nullptr && count > 0) {
    start = 0;
  }
  std::unique_ptr<lvArg[]> const old(std::exchange(elements, ring.release()));
  alloced = wanted;
  return wanted;
}

int lvrVector::releaseData() {
  if (elements == nullptr) {
    return 0;
  }
  std::unique_ptr<lvArg[]> const ring(
      std::exchange(elements, nullptr));  // The last slot goes first.
  alloced = 0;
  count = 0;
  flags = 0;
  return 0;
}

void lvrVector::vectorEvent(Action /*action*/, int /*index*/, lvArg const& /*value*/) {}

// ---- Cursors -----------------------------------------------------------------------------------

lviRealListEnumerator* lvrVector::getListEnumerator() const { return new RealEnumerator(*this); }

lviRealListIterator* lvrVector::getListIterator() { return nullptr; }

lviRealListRWIterator* lvrVector::getListRWIterator() { return nullptr; }

lvrVector::RealEnumerator::RealEnumerator(lvrVector const& walked) : vector(&walked) {
  tarselvalues::takeReference(walked);
}

lvrVector::RealEnumerator::~RealEnumerator() { tarselvalues::dropReference(*vector); }

bool lvrVector::RealEnumerator::gotoNext() {
  if (position + 1 >= vector->count) {
    return false;
  }
  ++position;
  return true;
}

bool lvrVector::RealEnumerator::gotoNextMatching(Predicate* pred, void* ctx) {
  for (int left = MaxSize; gotoNext() && left > 0; --left) {
    if (pred(getValue(), ctx)) {
      return true;
    }
  }
  return false;
}

bool lvrVector::RealEnumerator::gotoPrevious() {
  if (position < 1) {
    return false;
  }
  --position;
  return true;
}

bool lvrVector::RealEnumerator::gotoPreviousMatching(Predicate* pred, void* ctx) {
  for (int left = MaxSize; gotoPrevious() && left > 0; --left) {
    if (pred(getValue(), ctx)) {
      return true;
    }
  }
  return false;
}

bool lvrVector::RealEnumerator::gotoIndex(int index) {
  if (index < 0 || index >= vector->count) {
    return false;
  }
  position = index;
  return true;
}

int lvrVector::RealEnumerator::getIndex() const { return position; }

lvArg lvrVector::RealEnumerator::getValue() const {
  return position >= 0 && position < vector->count ? vector->slot(position) : lvArg::NilValue;
}
