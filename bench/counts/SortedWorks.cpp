#include <cstddef>

#include "Works.h"

namespace counts {
namespace {

constexpr int Repetitions = 640;

void search(std::vector<lvArg> const& elements, int repetitions) {
  lvSortedList const list{lvArg(*lvrSortedArrayList::defaultCtorMethod())};
  for (lvArg const& element : elements) {
    list->add(element);
  }
  lviSortedList const& sorted = *list.getSortedList();
  std::vector<lvArg> const sought = samples(elements);
  int found = 0;
  repeat(repetitions, [&](int i) {
    found += sorted.contains(sought[static_cast<std::size_t>(i & SampleMask)]) ? 1 : 0;
  });
  require(found == repetitions, "each element is found");
}

}  // namespace

std::vector<Work> sortedWorks() {
  return {
      {"sorted-list-find-integer-of-100", Repetitions, [](int n) { search(integerKeys(100), n); }},
      {"sorted-list-find-string-of-100", Repetitions, [](int n) { search(stringKeys(100), n); }},
  };
}

}  // namespace counts
