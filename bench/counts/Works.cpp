#include "Works.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace counts {

void require(bool holds, char const* claim) {
  if (!holds) {
    std::fprintf(stderr, "it does not hold that %s\n", claim);
    std::exit(1);
  }
}

lvArg integer(int value) {
  lvArg cell;
  cell.setInt(value);
  return cell;
}

std::vector<lvArg> integerKeys(int count) {
  std::vector<lvArg> keys;
  repeat(count, [&keys](int i) { keys.push_back(integer(i)); });
  return keys;
}

std::vector<lvArg> stringKeys(int count) {
  std::vector<lvArg> keys;
  repeat(count, [&keys](int i) { keys.push_back(lvString(("key-" + std::to_string(i)).c_str())); });
  return keys;
}

std::vector<lvArg> samples(std::vector<lvArg> const& keys) {
  constexpr std::size_t count = SampleMask + 1;
  std::vector<lvArg> spread;
  for (std::size_t i = 0; i < count; ++i) {
    spread.push_back(keys[i * keys.size() / count]);
  }
  return spread;
}

}  // namespace counts
