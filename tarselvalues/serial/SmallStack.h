// A stack with room for so many items in place, and on the heap for those that come on top. Not for
// users.
//
// It neither allocates nor initialises what it does not use.
#pragma once

#include <cstddef>
#include <new>
#include <utility>
#include <vector>

namespace tarselvalues {

// The names are those of std::vector, so that either may be used.
template <class Item, std::size_t InPlace>
class SmallStack {
 public:
  SmallStack() = default;
  ~SmallStack() {
    while (!empty()) {
      pop_back();
    }
  }
  SmallStack(SmallStack const&) = delete;
  SmallStack& operator=(SmallStack const&) = delete;

  std::size_t size() const { return count; }
  bool empty() const { return count == 0; }
  Item& operator[](std::size_t i) {
    return i < InPlace ? *std::launder(reinterpret_cast<Item*>(place(i))) : more[i - InPlace];
  }
  Item& back() { return (*this)[count - 1]; }

  // NOLINTBEGIN(readability-identifier-naming): see above.
  void push_back(Item item) {
    if (count < InPlace) {
      new (place(count)) Item(std::move(item));
    } else {
      more.push_back(std::move(item));
    }
    ++count;
  }
  void pop_back() {
    if (--count < InPlace) {
      (*this)[count].~Item();
    } else {
      more.pop_back();
    }
  }
  // NOLINTEND(readability-identifier-naming)

 private:
  unsigned char* place(std::size_t i) { return places + i * sizeof(Item); }

  std::size_t count = 0;
  alignas(Item) unsigned char places[InPlace * sizeof(Item)];
  std::vector<Item> more;
};

}  // namespace tarselvalues
