#include "tarselvalues/containers/lvrSortedArrayList.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

#include "tarselvalues/containers/CellBlock.h"
#include "tarselvalues/containers/SearchedKey.h"
#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"

using tarselvalues::Probe;
using tarselvalues::SearchedKey;

namespace {

constexpr unsigned int DefaultGrowStep = 8;
constexpr int NotFound = -1;
constexpr int NoSortedList = -1;

// Whether a list that had `size` elements, of which `seen` were seen, has others by now: a walk
// ends there, or comparing elements could make it go on for ever.
bool hasGrown(lviSortedList const& list, int size, int seen) {
  return seen >= size && list.getSize() != size;
}

}  // namespace

lviSortedList::lviSortedList() = default;

lviSortedList::~lviSortedList() = default;

lviRealSortedListEnumerator::~lviRealSortedListEnumerator() = default;

lvrSortedArrayList::lvrSortedArrayList(unsigned int duplicates)
    : array(nullptr),
      count(0),
      capacity(0),
      growStep(DefaultGrowStep),
      allowDuplicates(duplicates & 0xFFU) {
  setKind(ListKind);
}

lvrSortedArrayList::~lvrSortedArrayList() = default;

lvReferencable* lvrSortedArrayList::defaultCtorMethod() { return new lvrSortedArrayList(1); }

lvString const& lvrSortedArrayList::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::SortedArrayList);
}

lvString const& lvrSortedArrayList::getClassDesc() const { return getStaticClassDesc(); }

// Keeps a list and another one alive while their elements are compared, and released. Where both
// are the library's own, only from the first element on that may run a function of the program.
class lvrSortedArrayList::KeptLists {
 public:
  KeptLists(lviSortedList const& list, lviSortedList const& other)
      : KeptLists(list, other, isOwn(list) && isOwn(other)) {}

  lvArg const& ask(lvArg const& element) {
    firstWhileAsking.ask(element);
    return secondWhileAsking.ask(element);
  }

 private:
  KeptLists(lviSortedList const& list, lviSortedList const& other, bool areOwn)
      : first(list, !areOwn),
        second(other, !areOwn),
        firstWhileAsking(list, areOwn),
        secondWhileAsking(other, areOwn) {}

  static bool isOwn(lviSortedList const& list) {
    return tarselvalues::isExactly<lvrSortedArrayList>(list);
  }

  tarselvalues::KeptAlive const first;
  tarselvalues::KeptAlive const second;
  tarselvalues::KeptWhileAsking firstWhileAsking;
  tarselvalues::KeptWhileAsking secondWhileAsking;
};

// ---- Asking ------------------------------------------------------------------------------------

int lvrSortedArrayList::getSize() const { return count; }

bool lvrSortedArrayList::isEmpty() const { return count == 0; }

lvArg lvrSortedArrayList::get(int index) const {
  return index >= 0 && index < count ? array[index] : lvArg::NilValue;
}

Probe lvrSortedArrayList::find(SearchedKey const& value, int low, int high) const {
  return tarselvalues::bisect(value, std::max(low, 0), std::min(high, count), count,
                              [this](int i) -> lvArg const& { return elementAt(i); });
}

int lvrSortedArrayList::search(lvArg const& value, bool* found, int low, int high) const {
  Probe const probe = find(SearchedKey(value, *this), low, high);
  if (found != nullptr) {
    *found = probe.found;
  }
  return probe.position;
}

bool lvrSortedArrayList::contains(lvArg const& value) const {
  return find(SearchedKey(value, *this), 0, WholeList).found;
}

bool lvrSortedArrayList::containsAll(lviSortedList const& other) const {
  KeptLists kept(*this, other);
  int const size = other.getSize();
  lvSortedListEnumerator const element(other, 0);
  for (int seen = 0; element.getCursor() != nullptr && element->hasNext(); ++seen) {
    if (hasGrown(other, size, seen)) {
      break;
    }
    if (!contains(kept.ask(element->next()))) {
      return false;
    }
  }
  return true;
}

int lvrSortedArrayList::indexOf(lvArg const& value) const {
  SearchedKey const searched(value, *this);
  Probe probe = find(searched, 0, WholeList);
  int first = NotFound;
  while (probe.found) {
    first = probe.position;
    probe = find(searched, 0, keepsDuplicates() ? first : 0);
  }
  return first;
}

int lvrSortedArrayList::lastIndexOf(lvArg const& value) const {
  SearchedKey const searched(value, *this);
  int const end = count;  // Comparing may add elements, again and again.
  Probe probe = find(searched, 0, end);
  int last = NotFound;
  while (probe.found) {
    last = probe.position;
    probe = find(searched, keepsDuplicates() ? last + 1 : end, end);
  }
  return last;
}

bool lvrSortedArrayList::equals(lviSortedList const& other) const { return compareTo(other) == 0; }

int lvrSortedArrayList::compareTo(lvReferencable const& other) const {
  if (&other == this) {
    return 0;
  }
  if (other.getKind() != getKind()) {
    return static_cast<int>(getKind()) - static_cast<int>(other.getKind());
  }
  auto const* const list = dynamic_cast<lviSortedList const*>(&other);
  if (list == nullptr) {
    return NoSortedList;
  }
  KeptLists kept(*this, *list);
  int const size = count;
  int const theirSize = list->getSize();
  if (theirSize != size || size == 0) {
    return theirSize - size;
  }
  lvSortedListEnumerator const theirs(*list, 0);
  for (int i = 0; i < size; ++i) {
    lvArg theirValue;  // By itself: making it may change this list.
    if (theirs.getCursor() != nullptr) {
      theirValue = theirs->next();
    }
    int const order = kept.ask(get(i)).compareTo(theirValue);
    if (order != 0) {
      return order;
    }
  }
  return 0;
}

// ---- Changing ----------------------------------------------------------------------------------

int lvrSortedArrayList::expand(int needed) {
  return tarselvalues::growItems(array, count, capacity, growStep, needed);
}

void lvrSortedArrayList::growOrExit() { tarselvalues::exitUnlessGrown(expand(count + 1)); }

int lvrSortedArrayList::add(lvArg const& value) {
  SearchedKey const searched(value, *this);
  Probe const probe = find(searched, 0, WholeList);
  if (count == 0) {
    if (expand(1) == 0) {
      insertAt(0, value);
    }
  } else if (value.isNil()) {
    if (probe.found) {
      lvArg overwritten;
      removeEntry(probe.position);
      array[probe.position].exchange(overwritten);
      ++count;
    }
  } else if (!probe.found) {
    growOrExit();
    int const place = tarselvalues::placeFor(
        searched, probe, count, [this](int i) -> lvArg const& { return elementAt(i); });
    growOrExit();  // A comparison may have used the room, or lost it.
    insertAt(place, value);
  } else if (keepsDuplicates()) {
    growOrExit();
    insertAt(probe.position, value);
  } else {
    growOrExit();
    ++count;  // Takes the nil behind the last element in, deliberately.
    array[probe.position].assign(value);
  }
  return 0;
}

// Requires room for one more.
void lvrSortedArrayList::insertAt(int i, lvArg const& value) {
  lvArg const left(std::move(array[count]));  // See insertEmptyEntry().
  tarselvalues::openGap(array, count, i);
  ++count;
  array[i].assignFast(value);
}

void lvrSortedArrayList::insertEmptyEntry(int i) {
  if (i >= 0 && i <= count && count < capacity && array != nullptr) {
    lvArg const left(std::move(array[count]));  // The element that left the list the last time.
    tarselvalues::openGap(array, count, i);
  }
}

void lvrSortedArrayList::removeEntry(int i) {
  if (i < 0 || i >= count) {
    return;
  }
  lvArg const removed(std::move(array[i]));  // Released last, when the list is whole again.
  tarselvalues::closeGap(array, count, i);
  --count;
}

void lvrSortedArrayList::clear() {
  // Empty before the first release: what runs in there finds a list that it may use.
  lvArg* const cleared = std::exchange(array, nullptr);
  std::int32_t const room = std::exchange(capacity, 0);
  count = 0;
  if (cleared != nullptr) {
    std::destroy_n(cleared, room);
  }
  std::free(static_cast<void*>(cleared));
}

int lvrSortedArrayList::finalize() {
  tarselvalues::KeptAlive const self(*this, array != nullptr && !isEnding());
  while (array != nullptr) {  // Again, if something was added while elements were released.
    lvrSortedArrayList::clear();
  }
  return lviSortedList::finalize();
}

// ---- Merging -----------------------------------------------------------------------------------

// The array while elements are merged into it. It is out of the list meanwhile: comparing and
// releasing elements may run functions of the program, which then find the list empty.
//
// The greatest element goes to the last place first. The places behind `mine` and up to `place` are
// nil, so nothing is overwritten.
class lvrSortedArrayList::Merge {
 public:
  Merge(lvrSortedArrayList& merged, int mergedSize, KeptLists& keptLists)
      : list(merged),
        kept(keptLists),
        cells(std::exchange(merged.array, nullptr)),
        room(std::exchange(merged.capacity, 0)),
        size(mergedSize),
        mine(std::exchange(merged.count, 0) - 1),
        place(mergedSize - 1) {}
  Merge(Merge const&) = delete;
  Merge& operator=(Merge const&) = delete;

  // Puts the array back. What was added to the list meanwhile is released.
  ~Merge() {
    while (list.array != nullptr) {
      list.lvrSortedArrayList::clear();
    }
    int const left = place - mine;  // The elements to come were fewer than expected.
    tarselvalues::moveItems(cells + mine + 1, cells + place + 1, size - place - 1);
    tarselvalues::zeroItems(cells + size - left, left);
    list.array = cells;
    list.capacity = room;
    list.count = size - left;
  }

  // Takes `n` elements in, from the one before the cursor backwards.
  void takeAll(lviRealSortedListEnumerator& theirs, int n) {
    lvArg value = theirs.previous();
    while (n > 0) {
      int const order = mine >= 0 ? kept.ask(cells[mine]).compareTo(value) : -1;
      if (order > 0) {
        move();
        continue;
      }
      if (order < 0 && place == mine) {
        return;  // Out of order: behind a nil that add() left, say. The rest was found to be here.
      }
      lvArg const written(value);
      write(written, order == 0);
      do {
        --n;
        value = n > 0 ? theirs.previous() : lvArg();
      } while (!list.keepsDuplicates() && n > 0 && kept.ask(value).compareTo(written) == 0);
    }
  }

 private:
  void write(lvArg const& value, bool equal) {
    if (equal && !list.keepsDuplicates()) {
      cells[mine].assign(value);
      move();
      return;
    }
    cells[place--].assign(value);
    if (equal) {
      move();
    }
  }

  // Moves the list's own element up to the place.
  void move() {
    if (mine != place) {
      cells[place].exchange(cells[mine]);
    }
    --mine;
    --place;
  }

  lvrSortedArrayList& list;
  KeptLists& kept;
  lvArg* const cells;
  int const room;
  int const size;
  int mine;
  int place;
};

// Returns how many elements the merged list has; `taken` is how many of `other` come into it, from
// its front on. Without duplicates a nil ends `other`.
int lvrSortedArrayList::mergedSize(lviSortedList const& other, KeptLists& kept, int& taken) const {
  if (keepsDuplicates()) {
    taken = std::clamp(other.getSize(), 0, INT_MAX - count);
    return count + taken;
  }
  int size = count;
  int mine = 0;
  int const theirSize = other.getSize();
  lvSortedListEnumerator const theirs(other, 0);
  lvArg value;
  if (theirs.getCursor() != nullptr) {
    value = theirs->next();
  }
  while (!value.isNil() && !hasGrown(other, theirSize, taken)) {
    while (mine < count && kept.ask(array[mine]).compareTo(value) < 0) {
      ++mine;
    }
    size += mine < count && kept.ask(array[mine]).compareTo(value) == 0 ? 0 : 1;
    lvArg following;
    do {
      ++taken;
      following = theirs->next();
    } while (!following.isNil() && !hasGrown(other, theirSize, taken) &&
             kept.ask(following).compareTo(value) == 0);
    value = std::move(following);
  }
  return size;
}

bool lvrSortedArrayList::addAll(lviSortedList const& other) {
  if (&other == this) {
    lvArg const holder(*new lvrSortedArrayList(allowDuplicates));
    auto& copy = static_cast<lvrSortedArrayList&>(*holder.getReferencable());
    if (copy.expand(count) == 0) {
      std::copy(array, array + count, copy.array);
      copy.count = count;
    }
    return addAll(copy);
  }
  KeptLists kept(*this, other);
  int taken = 0;
  int const expected = std::max(mergedSize(other, kept, taken), count);
  if (taken != 0 && expand(expected) == 0) {
    lvSortedListEnumerator const theirs(other, taken);  // Making it may change this list.
    int const size =
        keepsDuplicates() ? count + std::min(taken, INT_MAX - count) : std::max(expected, count);
    if (theirs.getCursor() != nullptr && expand(size) == 0) {
      Merge(*this, size, kept).takeAll(*theirs.getCursor(), taken);
    }
  }
  return true;
}

// ---- Cursors -----------------------------------------------------------------------------------

lviRealSortedListIterator* lvrSortedArrayList::getSortedListIterator(int position) {
  return new Iterator(*this, position);
}

lviRealSortedListEnumerator* lvrSortedArrayList::getSortedListEnumerator(int position) const {
  return new Enumerator(*this, position);
}

int lvrSortedArrayList::reserved14() { return 0; }

int lvrSortedArrayList::reserved15() { return 0; }

lvArg lvrSortedArrayList::reserved16() { return lvArg::NilValue; }

lvArg lvrSortedArrayList::reserved17() { return lvArg::NilValue; }

lvrSortedArrayList::BaseEnumerator::BaseEnumerator(lvrSortedArrayList const& list, int position)
    : array(list.array), current(nullptr), index(0), count(list.count) {
  if (position >= 1) {
    setPosition(position);
  }
}

void lvrSortedArrayList::BaseEnumerator::setPosition(int position) {
  index = std::min(position, count);
  current = position <= count ? array + index : nullptr;
}

// Where the cursor stands in the list as it is now.
lvrSortedArrayList::BaseEnumerator lvrSortedArrayList::BaseEnumerator::upToDate(
    lvrSortedArrayList const& list) const {
  BaseEnumerator now(list, 0);
  now.index = std::min(index, list.count);
  now.current = current != nullptr && list.array != nullptr ? list.array + now.index : nullptr;
  return now;
}

// The element at the index, which may be that behind the last.
lvArg lvrSortedArrayList::BaseEnumerator::value() const {
  return index < count ? array[index] : lvArg::NilValue;
}

bool lvrSortedArrayList::BaseEnumerator::hasNext(lvrSortedArrayList const& list) const {
  BaseEnumerator const now = upToDate(list);
  return now.index < (now.current == nullptr ? now.count : now.count - 1);
}

bool lvrSortedArrayList::BaseEnumerator::hasPrevious(lvrSortedArrayList const& list) const {
  return upToDate(list).index > 0;
}

lvArg lvrSortedArrayList::BaseEnumerator::next(lvrSortedArrayList const& list) {
  *this = upToDate(list);
  if (index >= (current == nullptr ? count : count - 1)) {
    return lvArg::NilValue;
  }
  index += current != nullptr ? 1 : 0;
  current = array + index;
  return value();
}

int lvrSortedArrayList::BaseEnumerator::nextIndex(lvrSortedArrayList const& list) const {
  BaseEnumerator const now = upToDate(list);
  return now.current != nullptr && now.index < now.count - 1 ? now.index + 1 : now.count;
}

lvArg lvrSortedArrayList::BaseEnumerator::previous(lvrSortedArrayList const& list) {
  *this = upToDate(list);
  if (index < 1) {
    current = nullptr;
    return lvArg::NilValue;
  }
  index -= current != nullptr ? 1 : 0;
  current = array + index;
  return value();
}

int lvrSortedArrayList::BaseEnumerator::previousIndex(lvrSortedArrayList const& list) const {
  BaseEnumerator const now = upToDate(list);
  return now.current == nullptr || now.index < 1 ? -1 : now.index - 1;
}

bool lvrSortedArrayList::Enumerator::hasNext() const { return base.hasNext(*list); }

bool lvrSortedArrayList::Enumerator::hasPrevious() const { return base.hasPrevious(*list); }

lvArg lvrSortedArrayList::Enumerator::next() { return base.next(*list); }

int lvrSortedArrayList::Enumerator::nextIndex() const { return base.nextIndex(*list); }

lvArg lvrSortedArrayList::Enumerator::previous() { return base.previous(*list); }

int lvrSortedArrayList::Enumerator::previousIndex() const { return base.previousIndex(*list); }

bool lvrSortedArrayList::Iterator::hasNext() const { return base.hasNext(*list); }

bool lvrSortedArrayList::Iterator::hasPrevious() const { return base.hasPrevious(*list); }

lvArg lvrSortedArrayList::Iterator::next() { return base.next(*list); }

int lvrSortedArrayList::Iterator::nextIndex() const { return base.nextIndex(*list); }

lvArg lvrSortedArrayList::Iterator::previous() { return base.previous(*list); }

int lvrSortedArrayList::Iterator::previousIndex() const { return base.previousIndex(*list); }

void lvrSortedArrayList::Iterator::add(lvArg const& /*value*/) {}

void lvrSortedArrayList::Iterator::remove() {}

void lvrSortedArrayList::Iterator::set(lvArg const& /*value*/) {}
