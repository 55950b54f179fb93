// Copying, assigning and moving one value, and making and ending one object; in a process that has
// never had a second thread, and with --second-thread in one that has.

#include <benchmark/benchmark.h>
#include <tarselvalues/tarselvalues.h>

#include <any>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>

#include "bench/Bench.h"
#include "bench/Copying.h"
#include "bench/Floors.h"
#include "bench/StandardValues.h"

namespace bench {

namespace {

template <class Value>
void addStandard() {
  addTexts<Value>(peerName<Value>, [](std::string const& text) { return Value(sharedText(text)); });
}

// ---- Ours --------------------------------------------------------------------------------------

lvArg ourText(std::string const& text) {
  lvValue value;
  value.setString(text.c_str(), -1, lvrString::CopyAndOwn);
  return value;
}

lvArg ourInteger(int number) {
  lvArg value;
  value.setInt(number);
  return value;
}

// An object with two cells.
class OurPoint : public lvReferencable {
 public:
  lvArg x;
  lvArg y;
};

template <class Object>
void makeOurs(benchmark::State& state) {
  for (auto _ : state) {
    lvArg held(*new Object);
    benchmark::DoNotOptimize(held);
  }
}

// ---- Peers -------------------------------------------------------------------------------------

struct VariantPoint {
  VariantValue x;
  VariantValue y;
};

template <class Object>
void makeShared(benchmark::State& state) {
  for (auto _ : state) {
    auto held = std::make_shared<Object>();
    benchmark::DoNotOptimize(held);
  }
}

// ---- Floors ------------------------------------------------------------------------------------

// A block of the object's size that has a mutex in it.
template <class Object, bool Locked>
void makeBlock(benchmark::State& state) {
  for (auto _ : state) {
    void* const block = std::malloc(sizeof(Object));
    auto* const count = new (block) LockedCount;
    benchmark::DoNotOptimize(count);
    if (Locked) {
      count->change(1);
      benchmark::ClobberMemory();
      count->change(-1);
      benchmark::ClobberMemory();
    }
    count->~LockedCount();
    std::free(block);
  }
}

template <class Object>
void addObjects(std::string const& work) {
  add(work, "ours", makeOurs<Object>);
  add(work, "floor: malloc, mutex", makeBlock<Object, false>);
  add(work, "floor: malloc, mutex, two lock pairs", makeBlock<Object, true>);
}

// ------------------------------------------------------------------------------------------------

void addAll() {
  addTexts<lvArg>("ours", ourText);
  addStandard<SharedText>();
  addStandard<VariantValue>();
  addStandard<std::any>();
  for (char const* const work : {"copy and release a string", "assign a string"}) {
    addCountingFloors(work);
  }
  addIntegers("ours", ourInteger(1), ourInteger(2));
  addIntegers("std::variant", VariantValue(1), VariantValue(2));
  addIntegers("std::any", std::any(1), std::any(2));

  addObjects<lvrString>("make and end a string object");
  add("make and end a string object", "std::shared_ptr", makeShared<std::string>);
  addObjects<OurPoint>("make and end an object of two cells");
  add("make and end an object of two cells", "std::shared_ptr", makeShared<VariantPoint>);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
