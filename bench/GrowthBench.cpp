// Work whose time is to grow with its size and no faster. Twice the size is to take about twice the
// time.

#include <benchmark/benchmark.h>
#include <tarselvalues/tarselvalues.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <limits>
#include <list>
#include <memory>
#include <optional>
#include <string>

#include "bench/Bench.h"
#include "bench/OurCells.h"
#include "bench/OurText.h"
#include "bench/Samples.h"
#include "bench/StandardValues.h"

namespace bench {

namespace {

// The least of three times, in seconds of the processor.
template <class Prepare>
double timeOf(Prepare prepare, int size) {
  auto work = prepare(size);
  double least = std::numeric_limits<double>::max();
  for (int i = 0; i < 3; ++i) {
    std::clock_t const start = std::clock();
    work();
    least = std::min(least, static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
  }
  return least;
}

// Whether work of this size would take too long, judged by how it grows at a small part of it.
template <class Prepare>
bool isTooLong(Prepare prepare, int size) {
  constexpr double limit = 2;
  constexpr double mostGrowth = 4;  // Twice the size, with the square.
  constexpr int part = 16;
  double time = timeOf(prepare, size / part);
  double const ofQuarter = timeOf(prepare, size / (4 * part));
  double const growth = std::min(std::sqrt(time / ofQuarter), mostGrowth);
  for (int reached = size / part; reached < size; reached *= 2) {
    time *= growth;
  }
  return time > limit;
}

// Measures what `prepare` returns for a size.
template <class Prepare>
class Growing {
 public:
  explicit Growing(Prepare work) : prepare(work) {}

  void operator()(benchmark::State& state) const {
    if (!*tooLong) {
      *tooLong = isTooLong(prepare, sizeOf(state));
    }
    if (**tooLong) {
      state.SkipWithError("would take more than 2 s");
      return;
    }
    auto work = prepare(sizeOf(state));
    for (auto _ : state) {
      work();
      benchmark::ClobberMemory();
    }
  }

 private:
  Prepare prepare;
  std::shared_ptr<std::optional<bool>> tooLong = std::make_shared<std::optional<bool>>();
};

// ---- Lists -------------------------------------------------------------------------------------

// Fills a linked list, walks through it and removes every other element on the way.
auto removeWhileWalking(int size) {
  return [size] {
    lvArg const value = OurCells::makeValue("an element");
    auto* const list = new lvrDLList;
    lvArg const held(*list);
    for (int i = 0; i < size; ++i) {
      list->insert(value, -1);
    }
    lvListIterator cursor(*list);
    while (cursor->gotoNext()) {
      cursor->remove();  // Is then on the next one, which stays.
    }
  };
}

auto removeWhileWalkingStandard(int size) {
  return [size] {
    SharedText const value = sharedText("an element");
    std::list<SharedText> list;
    for (int i = 0; i < size; ++i) {
      list.push_back(value);
    }
    for (auto element = list.begin(); element != list.end();) {
      element = list.erase(element);
      if (element != list.end()) {
        ++element;
      }
    }
  };
}

lvSortedList everyOther(int size, int first) {
  lvArg const held(*new lvrSortedArrayList(1));
  lvSortedList list(held);
  lvArg integer;
  for (int i = first; i < 2 * size; i += 2) {
    integer.setInt(i);
    list->add(integer);
  }
  return list;
}

// Adds a sorted list to an empty one, and then another whose elements lie between the first ones.
auto addAllOf(int size) {
  return [even = everyOther(size, 0), odd = everyOther(size, 1)] {
    lvArg const held(*new lvrSortedArrayList(1));
    lvSortedList const merged(held);
    merged->addAll(*even.getSortedList());
    merged->addAll(*odd.getSortedList());
  };
}

// ---- Text --------------------------------------------------------------------------------------

auto readText(std::string text) {
  return [text = std::move(text), reader = OurText()]() mutable {
    lvArg value = reader.read(text);
    benchmark::DoNotOptimize(value);
  };
}

auto readLongString(int size) {
  return readText('"' + std::string(static_cast<std::size_t>(size), 'x') + '"');
}

// Every hundredth byte is escaped.
auto readEscapedString(int size) {
  std::string text = "\"";
  while (text.size() < static_cast<std::size_t>(size)) {
    text += std::string(97, 'x') + "%0A";
  }
  return readText(text + '"');
}

auto skipUnknownTokens(int size) {
  return readText(std::string(static_cast<std::size_t>(size), '?') + "1");
}

template <class KeyOf>
auto readMap(int size, KeyOf keyOf) {
  std::string text = "{";
  for (int i = 0; i < size; ++i) {
    text += (i == 0 ? "(" : ",(") + keyOf(i) + "=" + std::to_string(i) + ")";
  }
  return readText(text + "}");
}

auto readMapOfIntegers(int size) {
  return readMap(size, [](int number) { return std::to_string(number); });
}
auto readMapOfStrings(int size) { return readMap(size, nameOf); }
auto readMapOfOneHash(int size) { return readMap(size, sameHashOf); }

// ------------------------------------------------------------------------------------------------

template <class Prepare>
void addGrowing(std::string const& work, std::string const& who, Prepare prepare,
                std::vector<int> const& sizes) {
  for (int const size : sizes) {
    add(work, who, Growing<Prepare>(prepare))->Arg(size);
  }
}

void addAll() {
  std::vector<int> const elements = {8000, 16000, 64000, 128000};
  addGrowing("fill a list and remove every other element", "ours", removeWhileWalking, elements);
  addGrowing("fill a list and remove every other element", "std::shared_ptr",
             removeWhileWalkingStandard, elements);
  addGrowing("add all of two sorted lists", "ours", addAllOf, elements);

  std::vector<int> const bytes = {50000, 100000, 500000, 1000000};
  addGrowing("read a long string", "ours", readLongString, bytes);
  addGrowing("read a long string with escapes", "ours", readEscapedString, bytes);
  addGrowing("skip unknown tokens", "ours", skipUnknownTokens, bytes);

  std::vector<int> const entries = {1000, 2000, 25000, 50000, 250000, 500000};
  addGrowing("read a map, integers", "ours", readMapOfIntegers, entries);
  addGrowing("read a map, strings", "ours", readMapOfStrings, entries);
  addGrowing("read a map, strings of one hash", "ours", readMapOfOneHash, entries);
}

Registration const registration(addAll);

}  // namespace

}  // namespace bench
