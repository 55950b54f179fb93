// Sorted lists of strings: the same work for everyone who has them.
//
// A `List` is made empty and has a type Value, static makeValue(), add(), and contains().
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Maps.h"
#include "bench/Samples.h"

namespace bench {

constexpr int SortedCount = 1000;

template <class List>
std::vector<typename List::Value> sortedSamples() {
  std::vector<typename List::Value> samples;
  for (int const number : allOf(SortedCount)) {
    samples.push_back(List::makeValue(nameOf(number)));
  }
  return samples;
}

template <class List>
void buildSorted(benchmark::State& state) {
  std::vector<typename List::Value> const samples = sortedSamples<List>();
  for (auto _ : state) {
    List list;
    for (auto const& sample : samples) {
      list.add(sample);
    }
    benchmark::DoNotOptimize(list);
  }
  setWorkPerIteration(state, samples.size());
}

// Looks for strings with the texts of the elements, which are other objects.
template <class List>
void searchSorted(benchmark::State& state) {
  List list;
  for (auto const& sample : sortedSamples<List>()) {
    list.add(sample);
  }
  std::vector<typename List::Value> const samples = sortedSamples<List>();
  for (auto _ : state) {
    for (auto const& sample : samples) {
      benchmark::DoNotOptimize(list.contains(sample));
    }
  }
  setWorkPerIteration(state, samples.size());
}

template <class List>
void addSortedList(std::string const& who) {
  add("build a sorted list and release it", who, buildSorted<List>);
  add("search a sorted list", who, searchSorted<List>);
}

// Sorted maps are maps; see Maps.h.
template <class Map>
void addSortedMap(std::string const& who, Keys const& keys) {
  std::string const suffix = std::string(", ") + keys.name;
  add("build a sorted map and release it" + suffix, who, build<Map>, &keys)->Arg(SortedCount);
  add("get from a sorted map" + suffix, who, getAny<Map>, &keys)->Arg(SortedCount);
}

}  // namespace bench
