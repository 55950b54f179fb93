#include "tarselvalues/containers/lvrStack.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "tarselvalues/containers/ElementArrays.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Reference.h"

namespace {

constexpr int DefaultCapacity = 7;
constexpr int Full = -12;

}  // namespace

lviStack::~lviStack() = default;

lvrStack::lvrStack(int size)
    : elements(size >= 0 ? new lvArg[tarselvalues::cutToLimit(size)] : nullptr),
      alloced(tarselvalues::cutToLimit(size)),
      count(0),
      flags(tarselvalues::HashCached),
      hashCache(0) {
  setKind(MapKind);
}

lvrStack::~lvrStack() { lvrStack::finalize(); }

lvReferencable* lvrStack::defaultCtorMethod() { return new lvrStack(DefaultCapacity); }

lvString const& lvrStack::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::Stack);
}

lvString const& lvrStack::getClassDesc() const { return getStaticClassDesc(); }

int lvrStack::equiv(lvReferencable const& other) const { return &other == this ? 1 : 0; }

unsigned int lvrStack::hashCode() const {
  return tarselvalues::cachedHash(*this, flags, hashCache, count,
                                  [this](int i) -> lvArg const& { return elements[i]; });
}

int lvrStack::finalize() {
  tarselvalues::KeptAlive const self(*this, elements != nullptr && !isEnding());
  while (elements != nullptr) {  // Again, if something was pushed while elements were released.
    releaseData();
  }
  return 0;
}

int lvrStack::getSize() const { return count; }

bool lvrStack::isEmpty() const { return getSize() == 0; }

lvArg const& lvrStack::peek(int depth) const {
  return depth >= 0 && depth < count ? elements[count - 1 - depth] : lvArg::NilValue;
}

int lvrStack::push(lvArg const& value) {
  if (count < alloced) {
    pushInto(elements[count], value);
    return 0;
  }
  if (count == MaxSize) {
    return Full;
  }
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
  lvArg const incoming(value);  // It may lie in the array that is about to move.
  int const status = setAlloced(tarselvalues::grownCapacity(count));
  if (status < 0) {
    return status;
  }
  if (alloced <= count) {
    return Full;  // A derived setAlloced() made no room.
  }
  pushInto(elements[count], incoming);
  return 0;
}

// Takes the value into the cell behind the last element, which holds nothing.
void lvrStack::pushInto(lvArg& behind, lvArg const& value) {
  behind.assignFast(value);
  ++count;
  flags = 0;
}

lvArg lvrStack::pop() {
  if (count == 0) {
    return lvArg::NilValue;
  }
  --count;
  flags = 0;
  return std::move(elements[count]);
}

lvArg lvrStack::poke(lvArg const& value) {
  if (isEmpty() || count == 0) {
    return lvArg::NilValue;
  }
  lvArg& top = elements[count - 1];
  lvArg previous(top);
  top.assign(value);  // The hash cache stays, deliberately.
  return previous;
}

int lvrStack::setAlloced(int capacity) {
  if (elements != nullptr && capacity < 0 && count == 0) {
    return releaseData();
  }
  if (elements == nullptr && capacity < 1) {
    return 0;
  }
  std::uint16_t const wanted = std::max(tarselvalues::cutToLimit(capacity), count);
  std::unique_ptr<lvArg[]> grown(new lvArg[wanted]);
  std::move(elements, elements + count, grown.get());
  std::unique_ptr<lvArg[]> const old(std::exchange(elements, grown.release()));
  alloced = wanted;
  return wanted;
}

void lvrStack::stackEvent(Action /*action*/, int /*index*/, lvArg const& /*value*/) {}

int lvrStack::releaseData() {
  std::unique_ptr<lvArg[]> const released(std::exchange(elements, nullptr));
  alloced = 0;
  count = 0;
  return 0;
}
