// Copying, assigning and moving one value: the same work for everyone who has values.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

#include "bench/Bench.h"

namespace bench {

// Longer than what std::string keeps without a block of its own.
inline constexpr char const* SampleText = "a text of thirty-one characters";

// Copies and releases.
template <class Value>
void copy(benchmark::State& state, Value const& value) {
  for (auto _ : state) {
    Value copied(value);
    benchmark::DoNotOptimize(copied);
  }
}

// Assigns one value and another in turn.
template <class Value>
void assign(benchmark::State& state, Value const& one, Value const& other) {
  Value target;
  for (auto _ : state) {
    target = one;
    benchmark::DoNotOptimize(target);
    target = other;
    benchmark::DoNotOptimize(target);
  }
  setWorkPerIteration(state, 2);
}

// Moves out of a value and back.
template <class Value>
void move(benchmark::State& state, Value value) {
  for (auto _ : state) {
    Value moved(std::move(value));
    benchmark::DoNotOptimize(moved);
    value = std::move(moved);
    benchmark::DoNotOptimize(value);
  }
  setWorkPerIteration(state, 2);
}

template <class Value>
void addTexts(std::string const& who, Value (*make)(std::string const& text)) {
  add("copy and release a string", who,
      [make](benchmark::State& state) { copy(state, make(SampleText)); });
  add("assign a string", who,
      [make](benchmark::State& state) { assign(state, make(SampleText), make("another")); });
  add("move a string", who, [make](benchmark::State& state) { move(state, make(SampleText)); });
}

template <class Value>
void addIntegers(std::string const& who, Value const& one, Value const& other) {
  add("copy and release an integer", who, [one](benchmark::State& state) { copy(state, one); });
  add("assign an integer", who,
      [one, other](benchmark::State& state) { assign(state, one, other); });
}

}  // namespace bench
