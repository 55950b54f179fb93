#include <cstddef>

#include "Works.h"

namespace counts {
namespace {

using Keys = std::vector<lvArg>;
using MakeKeys = Keys (*)(int count);

constexpr int Repetitions = 640;

// Puts the integer 1 under each key.
void fill(lviMap& map, Keys const& keys) {
  for (lvArg const& key : keys) {
    map.put(key, lvArg::TrueValue);
  }
}

void find(lviMap& map, Keys const& keys, int repetitions) {
  fill(map, keys);
  Keys const sought = samples(keys);
  int found = 0;
  repeat(repetitions, [&](int i) {
    found += map.get(sought[static_cast<std::size_t>(i & SampleMask)]).getInt();
  });
  require(found == repetitions, "each key is found");
}

// Puts an entry in and takes it out again. The last key is the one that is not there at first.
void putAndRemove(lviMap& map, Keys keys, int repetitions) {
  lvArg const key = keys.back();
  keys.pop_back();
  fill(map, keys);
  int failed = 0;
  repeat(repetitions, [&](int) {
    failed |= map.put(key, lvArg::TrueValue);
    failed |= map.put(key, lvArg::NilValue);
  });
  require(failed == 0 && map.getSize() == static_cast<int>(keys.size()),
          "the map is as it was before");
}

void addHashMapWorks(std::vector<Work>& works, std::string const& kind, MakeKeys makeKeys) {
  for (int const entries : {8, 100, 10000}) {
    std::string const suffix = "-" + kind + "-of-" + std::to_string(entries);
    works.push_back({"map-find" + suffix, Repetitions, [=](int n) {
                       lvHashMap const map(lvrHashMap::DefaultHashSize);
                       find(*map.getMap(), makeKeys(entries), n);
                     }});
    works.push_back({"map-put-and-remove" + suffix, Repetitions, [=](int n) {
                       lvHashMap const map(lvrHashMap::DefaultHashSize);
                       putAndRemove(*map.getMap(), makeKeys(entries + 1), n);
                     }});
  }
}

lvHashMap tupleSet() { return {lvArg(*lvrTupleSet::defaultCtorMethod())}; }

void addTupleSetWorks(std::vector<Work>& works) {
  works.push_back({"tuple-set-find-integer-of-100", Repetitions,
                   [](int n) { find(*tupleSet().getMap(), integerKeys(100), n); }});
  works.push_back({"tuple-set-find-string-of-100", Repetitions,
                   [](int n) { find(*tupleSet().getMap(), stringKeys(100), n); }});
  works.push_back({"tuple-set-put-and-remove-string-of-100", Repetitions,
                   [](int n) { putAndRemove(*tupleSet().getMap(), stringKeys(101), n); }});
}

}  // namespace

std::vector<Work> mapWorks() {
  std::vector<Work> works;
  addHashMapWorks(works, "integer", integerKeys);
  addHashMapWorks(works, "string", stringKeys);
  addTupleSetWorks(works);
  return works;
}

}  // namespace counts
