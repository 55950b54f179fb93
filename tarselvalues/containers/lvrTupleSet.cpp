#include "tarselvalues/containers/lvrTupleSet.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>
#include <utility>

#include "tarselvalues/containers/CellBlock.h"
#include "tarselvalues/containers/DeliveredOld.h"
#include "tarselvalues/containers/SearchedKey.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/Reference.h"

using tarselvalues::Probe;
using tarselvalues::SearchedKey;

namespace {

constexpr int DefaultSize = 8;
constexpr unsigned int DefaultIncrement = 8;
constexpr unsigned int MaxIncrement = 16777215;

// What a cursor's remove() answers.
constexpr int OnNoPair = -1;
constexpr int PastTheEnd = -2;

}  // namespace

lvrTupleSet::lvrTupleSet(int size, unsigned int step, unsigned int flags)
    : entries(nullptr),
      count(0),
      allocated(std::max(size, 0)),
      increment(std::clamp(step, 1U, MaxIncrement) & MaxIncrement),
      setFlags(flags & 0xFFU) {
  setKind(MapKind);
  if (allocated > 0) {
    entries = static_cast<Pair*>(std::calloc(static_cast<std::size_t>(allocated), sizeof(Pair)));
    if (entries == nullptr) {
      throw std::bad_alloc();
    }
  }
}

lvrTupleSet::~lvrTupleSet() { lvrTupleSet::finalize(); }

lvReferencable* lvrTupleSet::defaultCtorMethod() {
  return new lvrTupleSet(DefaultSize, DefaultIncrement, 0);
}

// ---- Asking ------------------------------------------------------------------------------------

bool lvrTupleSet::has(int i) const { return entries != nullptr && i >= 0 && i < count; }

// The pair at a position, or null.
lvrTupleSet::Pair const* lvrTupleSet::pairAt(int i) const { return has(i) ? &entries[i] : nullptr; }

Probe lvrTupleSet::find(SearchedKey const& key) const {
  return tarselvalues::bisect(key, 0, count, count,
                              [this](int i) -> lvArg const& { return keyAt(i); });
}

int lvrTupleSet::search(lvArg const& key, bool* found) const {
  Probe const probe = find(SearchedKey(key, *this));
  if (found != nullptr) {
    *found = probe.found;
  }
  return probe.position;
}

lvArg lvrTupleSet::get(lvArg const& key) const {
  SearchedKey const searched(key, *this);
  Probe const probe = find(searched);
  return probe.found ? entries[probe.position].value : lvArg::NilValue;
}

int lvrTupleSet::getSize() const { return count; }

lvArg lvrTupleSet::getKey(int i) const { return has(i) ? entries[i].key : lvArg::NilValue; }

lvArg lvrTupleSet::getValue(int i) const { return has(i) ? entries[i].value : lvArg::NilValue; }

// ---- Changing ----------------------------------------------------------------------------------

int lvrTupleSet::expand(int needed) {
  return tarselvalues::growItems(entries, count, allocated, increment, needed);
}

void lvrTupleSet::growOrExit() { tarselvalues::exitUnlessGrown(expand(count + 1)); }

// Requires room for one more pair. `counted` is what the size grows by.
void lvrTupleSet::insertAt(int i, lvArg const& key, lvArg const& value, int counted) {
  // A pair that left the set when an equal key was inserted may still stand behind the last one.
  Pair const left(std::move(entries[count]));
  tarselvalues::openGap(entries, count, i);
  entries[i].key.assignFast(key);
  entries[i].value.assignFast(value);
  count += counted;
}

int lvrTupleSet::put(lvArg const& key, lvArg const& value, lvArg* old) {
  SearchedKey const searched(key, *this);
  Probe const probe = find(searched);
  if (probe.found) {
    return putOverFound(probe.position, key, value, old);
  }
  if (count == 0) {
    if (expand(1) == 0) {
      insertAt(0, key, value, 1);  // A nil value, too, deliberately.
    }
  } else if (!value.isNil()) {
    growOrExit();
    int const place = tarselvalues::placeFor(searched, probe, count,
                                             [this](int i) -> lvArg const& { return keyAt(i); });
    growOrExit();  // A comparison may have used the room, or lost it.
    insertAt(place, key, value, 1);
  }
  return 0;
}

int lvrTupleSet::putOverFound(int i, lvArg const& key, lvArg const& value, lvArg* old) {
  tarselvalues::DeliveredOld const delivered(old, entries[i].value);
  if (value.isNil()) {
    removeEntry(i);
  } else if ((setFlags & InsertEqualKeys) == 0) {
    entries[i].value.assign(value);
  } else {
    growOrExit();
    insertAt(i, key, value, 0);  // The size stays, deliberately.
  }
  return 0;
}

int lvrTupleSet::setValue(int i, lvArg const& value, lvArg* old) {
  if (!has(i) || value.isNil()) {
    return 0;
  }
  tarselvalues::DeliveredOld const delivered(old, entries[i].value);
  entries[i].value.assign(value);
  return 1;
}

void lvrTupleSet::removeEntry(int i) {
  if (has(i)) {
    // Out of the set before they are released, the key first: what runs in there finds it whole.
    lvArg value;
    lvArg key;
    takeOut(i, key, value);
  }
}

// Moves the cells of a pair out and closes the gap.
void lvrTupleSet::takeOut(int i, lvArg& key, lvArg& value) {
  value = std::move(entries[i].value);
  key = std::move(entries[i].key);
  tarselvalues::closeGap(entries, count, i);
  --count;
}

int lvrTupleSet::clear() {
  if (count == 0) {
    return 0;
  }
  tarselvalues::KeptWhileAsking self(*this);
  releasePairs(self);
  return 0;
}

// Keeps the array.
void lvrTupleSet::releasePairs(tarselvalues::KeptWhileAsking& self) {
  // Out of the way before the first release: what runs in there finds a set that it may use, or let
  // go.
  Pair* const cleared = std::exchange(entries, nullptr);
  std::int32_t const room = std::exchange(allocated, 0);
  std::int32_t const held = std::exchange(count, 0);
  for (std::int32_t i = 0; i < held; ++i) {
    self.ask(cleared[i].key);
    cleared[i].key.setNil();
    self.ask(cleared[i].value);
    cleared[i].value.setNil();
  }
  if (entries == nullptr) {
    entries = cleared;
    allocated = room;
  } else {
    std::destroy_n(cleared, room);
    std::free(static_cast<void*>(cleared));
  }
}

int lvrTupleSet::finalize() {
  tarselvalues::KeptAlive const self(*this, entries != nullptr && !isEnding());
  tarselvalues::KeptWhileAsking keptAlready(*this, false);
  if (entries != nullptr) {
    if (!tarselvalues::isExactly<lvrTupleSet>(*this)) {
      clear();
    }
    while (entries != nullptr) {  // Again, if something was put in while pairs were released.
      while (count != 0) {        // Left by a derived clear(), or put in during the last one.
        releasePairs(keptAlready);
      }
      Pair* const freed = std::exchange(entries, nullptr);
      std::destroy_n(freed, std::exchange(allocated, 0));
      std::free(static_cast<void*>(freed));
    }
  }
  return lvReferencable::finalize();
}

// ---- Cursors -----------------------------------------------------------------------------------

lviRealMapEnumerator* lvrTupleSet::getEnumerator() const { return new RealEnumerator(*this); }

lviRealMapIterator* lvrTupleSet::getIterator() { return new RealIterator(*this); }

lviRealMapIterator* lvrTupleSet::getRWIterator() { return nullptr; }

bool lvrTupleSet::IteratorLogic::next() {
  current = set->pairAt(++index);
  return current != nullptr;
}

lvArg lvrTupleSet::IteratorLogic::getKey() const {
  return current != nullptr ? set->getKey(index) : lvArg::NilValue;
}

lvArg lvrTupleSet::IteratorLogic::getValue() const {
  return current != nullptr ? set->getValue(index) : lvArg::NilValue;
}

bool lvrTupleSet::RealEnumerator::next() { return logic.next(); }

lvArg lvrTupleSet::RealEnumerator::getKey() const { return logic.getKey(); }

lvArg lvrTupleSet::RealEnumerator::getValue() const { return logic.getValue(); }

bool lvrTupleSet::RealIterator::next() { return logic.next(); }

lvArg lvrTupleSet::RealIterator::getKey() const { return logic.getKey(); }

lvArg lvrTupleSet::RealIterator::getValue() const { return logic.getValue(); }

int lvrTupleSet::RealIterator::setValue(lvArg const& value, lvArg* old) {
  if (logic.current == nullptr) {
    if (old != nullptr) {
      old->setNil();
    }
    return OnNoPair;
  }
  tarselvalues::DeliveredOld const delivered(old, logic.getValue());
  if (value.isNil()) {
    return remove();
  }
  return logic.set->setValue(logic.index, value, nullptr) != 0 ? 0 : PastTheEnd;
}

int lvrTupleSet::RealIterator::remove() {
  if (logic.current == nullptr) {
    return OnNoPair;
  }
  if (logic.index >= logic.set->count) {
    return PastTheEnd;
  }
  lvArg value;  // Released last, the key first: that may be the end of the cursor.
  lvArg key;
  logic.set->takeOut(logic.index, key, value);
  logic.current = logic.set->pairAt(logic.index);
  return 0;
}
