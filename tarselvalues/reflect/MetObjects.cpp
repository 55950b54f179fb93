#include "tarselvalues/reflect/MetObjects.h"

namespace tarselvalues {

namespace {

constexpr std::size_t FirstSize = 16;

// Spreads addresses, whose low bits are all the same and whose high bits hardly differ.
std::size_t hashOf(lvReferencable const* object) {
  constexpr std::uint64_t golden = 0x9E3779B97F4A7C15U;
  return static_cast<std::size_t>((reinterpret_cast<std::uintptr_t>(object) * golden) >> 32U);
}

}  // namespace

MetObjects::State MetObjects::meet(lvArg const& reference) {
  if (2 * used_ >= cells_.size()) {
    grow();
  }
  lvArg& cell = find(reference);
  if (!cell.isNil()) {
    return static_cast<State>(cell.getBookkeeping());
  }
  cell = reference;
  cell.setBookkeeping(Closed);
  ++used_;
  return Unknown;
}

void MetObjects::setState(lvArg const& reference, State state) {
  find(reference).setBookkeeping(state);
}

lvArg& MetObjects::find(lvArg const& reference) {
  lvReferencable const* const object = reference.getReferencable();
  std::size_t const mask = cells_.size() - 1;
  std::size_t i = hashOf(object) & mask;
  while (!cells_[i].isNil() && cells_[i].getReferencable() != object) {
    i = (i + 1) & mask;
  }
  return cells_[i];
}

void MetObjects::grow() {
  std::vector<lvArg> old(cells_.empty() ? FirstSize : 2 * cells_.size());
  old.swap(cells_);
  for (lvArg& cell : old) {
    if (!cell.isNil()) {
      find(cell).exchange(cell);
    }
  }
}

}  // namespace tarselvalues
