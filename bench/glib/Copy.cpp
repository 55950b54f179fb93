// GLib's counted values, beside CopyBench.cpp.

#include <benchmark/benchmark.h>
#include <glib.h>

#include <string>

#include "bench/Bench.h"
#include "bench/Copying.h"
#include "bench/glib/Held.h"

namespace bench {

namespace {

// A block of two addresses under an atomic count.
void makeBox(benchmark::State& state) {
  for (auto _ : state) {
    void* box = g_atomic_rc_box_alloc(2 * sizeof(void*));
    benchmark::DoNotOptimize(box);
    g_atomic_rc_box_release(box);
  }
}

void addAll() {
  addTexts<CountedVariant>("GLib", [](std::string const& text) { return CountedVariant(text); });
  add("make and end an object of two cells", "GLib", makeBox);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
