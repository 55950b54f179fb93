// Interned strings: the same work for everyone who has them.
//
// `Interner` has a type Handle, which holds one string and lets it go, and a static intern(), which
// finds or makes the string of a text.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "bench/Bench.h"
#include "bench/Samples.h"

namespace bench {

// What the texts are, and how works on them are called.
struct Texts {
  char const* suffix;
  std::string (*textOf)(int number);
};

constexpr Texts Names = {"", nameOf};
constexpr Texts TextsOfOneHash = {", one hash", sameHashOf};

// How many strings are alive meanwhile.
constexpr int AliveCounts[] = {100, 10000, 1000000};

// The strings that are alive, from one benchmark to the next.
template <class Interner>
class Population {
 public:
  // Sees to it that the first `count` texts are alive and no others. False without the patience.
  static bool bring(Texts const& texts, int count) {
    if (texts.textOf != textOf) {
      alive.clear();
      textOf = texts.textOf;
      tooMany = 0;
    }
    auto const wanted = static_cast<std::size_t>(count);
    if (tooMany != 0 && wanted >= tooMany) {
      return false;
    }
    Patience patience;
    alive.erase(alive.begin() + static_cast<std::ptrdiff_t>(std::min(alive.size(), wanted)),
                alive.end());
    while (alive.size() < wanted) {
      if (patience.isOver()) {
        alive.clear();
        tooMany = wanted;
        return false;
      }
      alive.push_back(Interner::intern(textOf(static_cast<int>(alive.size()))));
    }
    return true;
  }

 private:
  inline static std::vector<typename Interner::Handle> alive;
  inline static std::string (*textOf)(int number) = nullptr;
  inline static std::size_t tooMany = 0;
};

// Finds or makes the strings of the texts in turn, and lets each go.
template <class Interner>
void internEach(benchmark::State& state, Texts const& texts, std::vector<int> const& numbers) {
  if (!Population<Interner>::bring(texts, sizeOf(state))) {
    state.SkipWithError(Patience::Message);
    return;
  }
  std::vector<std::string> samples;
  for (int const number : numbers) {
    samples.push_back(texts.textOf(number));
  }
  Turns turns(samples.size());
  for (auto _ : state) {
    auto handle = Interner::intern(samples[turns.next()]);
    benchmark::DoNotOptimize(handle);
  }
}

template <class Interner>
void findSame(benchmark::State& state, Texts const* texts) {
  internEach<Interner>(state, *texts, fewOf(sizeOf(state)));
}

template <class Interner>
void findAny(benchmark::State& state, Texts const* texts) {
  internEach<Interner>(state, *texts, someOf(sizeOf(state)));
}

template <class Interner>
void makeNew(benchmark::State& state, Texts const* texts) {
  int const size = sizeOf(state);
  internEach<Interner>(state, *texts, {size, size + 1, size + 2, size + 3});
}

inline std::string findAnyWork(Texts const& texts) {
  return std::string("find any string") + texts.suffix;
}

// Finding only, for who cannot let go, with so many alive at most.
template <class Interner>
void addFinding(std::string const& who, int most = AliveCounts[2]) {
  for (Texts const* const texts : {&Names, &TextsOfOneHash}) {
    for (int const alive : AliveCounts) {
      if (alive > most) {
        break;
      }
      add(std::string("find the same 100 strings") + texts->suffix, who, findSame<Interner>, texts)
          ->Arg(alive);
      add(findAnyWork(*texts), who, findAny<Interner>, texts)->Arg(alive);
    }
  }
}

template <class Interner>
void addInterning(std::string const& who) {
  addFinding<Interner>(who);
  for (Texts const* const texts : {&Names, &TextsOfOneHash}) {
    for (int const alive : AliveCounts) {
      add(std::string("make and release a string") + texts->suffix, who, makeNew<Interner>, texts)
          ->Arg(alive);
    }
  }
}

}  // namespace bench
