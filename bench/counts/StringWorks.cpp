#include <cstddef>

#include "Works.h"

namespace counts {
namespace {

constexpr int Repetitions = 6400;

// Makes a handle to a text that has one, and drops it.
void find(int alive, int repetitions) {
  std::vector<lvArg> const keys = stringKeys(alive);
  std::vector<lvString> known;
  for (lvArg const& key : samples(keys)) {
    known.emplace_back(key);
  }
  int found = 0;
  repeat(repetitions, [&](int i) {
    lvString const& expected = known[static_cast<std::size_t>(i & SampleMask)];
    lvString const again(static_cast<char const*>(expected));
    found += again.eq(expected) ? 1 : 0;
  });
  require(found == repetitions, "a known text has one entry");
}

// Makes the only handle to a text, and drops it.
void make(int alive, int repetitions) {
  std::vector<lvArg> const keys = stringKeys(alive);
  int made = 0;
  repeat(repetitions, [&](int) {
    lvString const fresh("a new text");
    made += fresh.getType() == lvArg::StringType ? 1 : 0;
  });
  require(made == repetitions, "a new text gets an entry");
}

}  // namespace

std::vector<Work> stringWorks() {
  std::vector<Work> works;
  for (int const alive : {100, 10000}) {
    std::string const suffix = "-among-" + std::to_string(alive);
    works.push_back({"string-find" + suffix, Repetitions, [=](int n) { find(alive, n); }});
    works.push_back({"string-make" + suffix, Repetitions, [=](int n) { make(alive, n); }});
  }
  return works;
}

}  // namespace counts
