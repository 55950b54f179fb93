// The maps of the standard library, and those that are like them, beside ours.
#pragma once

#include <string>
#include <type_traits>

#include "bench/Maps.h"
#include "bench/StandardValues.h"

namespace bench {

// See Maps.h.
template <class Container>
class StandardMap {
 public:
  using Key = typename Container::key_type;
  using Value = typename Container::mapped_type;

  static Key makeKey(Keys const& keys, int number) {
    if constexpr (std::is_same_v<Key, int>) {
      return number * keys.factor;
    } else {
      return keys.textOf(number);
    }
  }
  static Value makeValue(std::string const& text) { return sharedText(text); }

  void put(Key const& key, Value const& value) { container[key] = value; }
  Value get(Key const& key) const { return container.find(key)->second; }

 private:
  Container container;
};

}  // namespace bench
