// A stack of up to so many items, in place. Not for users.
//
// It neither allocates nor initialises: what takes no items costs nothing.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace tarselvalues {

// The names are those of std::vector, so that either may be used.
template <class Item, std::size_t Capacity>
class FixedStack {
 public:
  FixedStack() = default;
  ~FixedStack() {
    while (!empty()) {
      pop_back();
    }
  }
  FixedStack(FixedStack const&) = delete;
  FixedStack& operator=(FixedStack const&) = delete;

  std::size_t size() const { return count; }
  static constexpr std::size_t capacity() { return Capacity; }
  bool empty() const { return count == 0; }
  Item& operator[](std::size_t i) { return *std::launder(reinterpret_cast<Item*>(place(i))); }
  Item& back() { return (*this)[count - 1]; }

  // NOLINTBEGIN(readability-identifier-naming): see above.
  // Requires that there is room.
  void push_back(Item item) { new (place(count++)) Item(std::move(item)); }
  void pop_back() { (*this)[--count].~Item(); }
  // NOLINTEND(readability-identifier-naming)

 private:
  unsigned char* place(std::size_t i) { return places + i * sizeof(Item); }

  std::size_t count = 0;
  alignas(Item) unsigned char places[Capacity * sizeof(Item)];
};

}  // namespace tarselvalues
