// Fields by name and by index, and objects by the name of their class: the same work for everyone
// who has them.
#pragma once

#include <benchmark/benchmark.h>

#include <array>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Copying.h"

namespace bench {

// What the objects have. They are looked for in this order.
constexpr std::array<char const*, 4> FieldNames = {"identifier", "name", "port", "place"};

// The class is one of several.
constexpr std::array<char const*, 4> ClassNames = {"Sensor", "Pump", "Valve", "Meter"};

// `Object` is made empty and has types Name and Value, static makeName() and makeValue(), and get()
// and set(), each for a name and for an index.

template <class Object>
std::vector<typename Object::Name> namesOfFields() {
  std::vector<typename Object::Name> names;
  for (char const* const name : FieldNames) {
    names.push_back(Object::makeName(name));
  }
  return names;
}

inline std::vector<int> indicesOfFields() { return {0, 1, 2, 3}; }

template <class Object, class Field>
void getEach(benchmark::State& state, std::vector<Field> const& fields) {
  Object object;
  for (Field const& field : fields) {
    object.set(field, Object::makeValue(SampleText));
  }
  for (auto _ : state) {
    for (Field const& field : fields) {
      typename Object::Value value = object.get(field);
      benchmark::DoNotOptimize(value);
    }
  }
  setWorkPerIteration(state, fields.size());
}

// Sets one value and another in turn.
template <class Object, class Field>
void setEach(benchmark::State& state, std::vector<Field> const& fields) {
  Object object;
  std::array<typename Object::Value, 2> const values = {Object::makeValue(SampleText),
                                                        Object::makeValue("another")};
  for (auto _ : state) {
    for (typename Object::Value const& value : values) {
      for (Field const& field : fields) {
        object.set(field, value);
      }
    }
  }
  setWorkPerIteration(state, values.size() * fields.size());
}

// `Factory` has a type Name, static makeName(), and static make(), which returns the owner of a new
// object of the class.
template <class Factory>
void makeByName(benchmark::State& state) {
  std::vector<typename Factory::Name> names;
  for (char const* const name : ClassNames) {
    names.push_back(Factory::makeName(name));
  }
  for (auto _ : state) {
    for (auto const& name : names) {
      auto made = Factory::make(name);
      benchmark::DoNotOptimize(made);
    }
  }
  setWorkPerIteration(state, names.size());
}

template <class Object>
void addFields(std::string const& who) {
  add("get a field by name", who,
      [](benchmark::State& state) { getEach<Object>(state, namesOfFields<Object>()); });
  add("set a field by name", who,
      [](benchmark::State& state) { setEach<Object>(state, namesOfFields<Object>()); });
  add("get a field by index", who,
      [](benchmark::State& state) { getEach<Object>(state, indicesOfFields()); });
  add("set a field by index", who,
      [](benchmark::State& state) { setEach<Object>(state, indicesOfFields()); });
}

template <class Factory>
void addFactory(std::string const& who) {
  add("make and end an object by its class name", who, makeByName<Factory>);
}

}  // namespace bench
