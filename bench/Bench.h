// What all benchmarks share.
//
// A benchmark is named "work/who" or "work/who/size". The work is one and the same for all who do
// it: "ours", a peer, or "floor: ..." for what the work cannot do without. scripts/lib/bench.py
// makes tables of these names.
#pragma once

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace bench {

// Runs `add`, which registers benchmarks, before main().
class Registration {
 public:
  explicit Registration(void (*add)()) { add(); }
};

// Registers `run`, to be called with `arguments`, as the work of `who`.
template <class Run, class... Arguments>
benchmark::internal::Benchmark* add(std::string const& work, std::string const& who, Run run,
                                    Arguments... arguments) {
  return benchmark::RegisterBenchmark((work + "/" + who).c_str(), run, arguments...);
}

// Says that each iteration does the work so many times. The tables give the time of one.
inline void setWorkPerIteration(benchmark::State& state, std::size_t times) {
  state.counters["times"] = static_cast<double>(times);
}

// The size that a benchmark is run with.
inline int sizeOf(benchmark::State const& state) { return static_cast<int>(state.range(0)); }

// Bounds what a benchmark takes to get ready, so that work which grows with the square of its size
// does not stop the rest: what is not ready by then is skipped, and the table says so.
class Patience {
 public:
  // To be asked before each small step.
  bool isOver() {
    return (++steps % StepsPerLook == 0) && std::chrono::steady_clock::now() - start > Limit;
  }

  static constexpr char const* Message = "not ready within 5 s";

 private:
  static constexpr std::chrono::seconds Limit{5};
  static constexpr std::uint32_t StepsPerLook = 64;

  std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
  std::uint32_t steps = 0;
};

}  // namespace bench
