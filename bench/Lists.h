// Lists and stacks of counted values: the same work for everyone who has them.
#pragma once

#include <benchmark/benchmark.h>

#include <string>

#include "bench/Bench.h"
#include "bench/Copying.h"
#include "bench/Floors.h"
#include "bench/Samples.h"

namespace bench {

constexpr char const* AppendWork = "append to a vector";
constexpr char const* PrependWork = "insert in front of a vector";
constexpr char const* ReadAtWork = "read at any position of a vector";
constexpr char const* StackWork = "push and pop";
constexpr char const* CursorWork = "insert and remove at a cursor of a list";

constexpr int ElementCount = 1000;
constexpr int StackDepth = 100;

// `List` is made empty and has a type Value, static makeValue(), append(), prepend() and at(),
// which returns a copy.

template <class List>
void append(benchmark::State& state) {
  auto const value = List::makeValue(SampleText);
  for (auto _ : state) {
    List list;
    for (int i = 0; i < ElementCount; ++i) {
      list.append(value);
    }
    benchmark::DoNotOptimize(list);
  }
  setWorkPerIteration(state, ElementCount);
}

template <class List>
void prepend(benchmark::State& state) {
  auto const value = List::makeValue(SampleText);
  for (auto _ : state) {
    List list;
    for (int i = 0; i < ElementCount; ++i) {
      list.prepend(value);
    }
    benchmark::DoNotOptimize(list);
  }
  setWorkPerIteration(state, ElementCount);
}

template <class List>
void readAt(benchmark::State& state) {
  List list;
  for (int i = 0; i < ElementCount; ++i) {
    list.append(List::makeValue(nameOf(i)));
  }
  std::vector<int> const positions = allOf(ElementCount);
  for (auto _ : state) {
    for (int const position : positions) {
      typename List::Value value = list.at(position);
      benchmark::DoNotOptimize(value);
    }
  }
  setWorkPerIteration(state, positions.size());
}

// `Stack` is made empty and has static makeValue(), push(), and pop(), which returns the value.
template <class Stack>
void pushAndPop(benchmark::State& state) {
  auto const value = Stack::makeValue(SampleText);
  Stack stack;
  for (int i = 0; i < StackDepth; ++i) {
    stack.push(value);
  }
  for (auto _ : state) {
    stack.push(value);
    auto popped = stack.pop();
    benchmark::DoNotOptimize(popped);
  }
}

// `List` has static makeValue(), append(), goInto(), which puts its cursor on an element, and
// insertAndRemove(), which inserts before the cursor and takes that out again.
template <class List>
void changeAtCursor(benchmark::State& state) {
  auto const value = List::makeValue(SampleText);
  List list;
  for (int i = 0; i < ElementCount; ++i) {
    list.append(value);
  }
  list.goInto(ElementCount / 2);
  for (auto _ : state) {
    list.insertAndRemove(value);
  }
}

template <class List>
void addAppending(std::string const& who) {
  add(AppendWork, who, append<List>);
  add(ReadAtWork, who, readAt<List>);
}

template <class List>
void addPrepending(std::string const& who) {
  add(PrependWork, who, prepend<List>);
}

template <class Stack>
void addStack(std::string const& who) {
  add(StackWork, who, pushAndPop<Stack>);
}

template <class List>
void addCursor(std::string const& who) {
  add(CursorWork, who, changeAtCursor<List>);
}

}  // namespace bench
