// Walks through the library that write down whatever it answers. The library is built twice, with
// and without what is there for speed alone; both must give the same answers.
//
// What may differ between two runs must not be written down: addresses, and orders by them.
#pragma once

#include <cstdio>
#include <string>
#include <utility>

#include "support/walks/Choices.h"

namespace compared {

inline void write(std::string const& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
}

// One walk, whose lines begin with its name and step.
class Walk {
 public:
  Walk(std::string name, unsigned seed)
      : choices(seed), heading(std::move(name) + " " + std::to_string(seed)) {}

  test::SeededChoices choices;

  void step(std::string const& answer) {
    write(heading + ", " + std::to_string(++steps) + ": " + answer);
  }

 private:
  std::string const heading;
  int steps = 0;
};

}  // namespace compared
