// What the benchmarks of tables look up.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

// A text for every number, of the length that names have.
std::string nameOf(int number);

// A text for every number, all of which have one hash in the library: that of texts from 18 bytes
// on comes from the first byte and the 17 before the last alone.
std::string sameHashOf(int number);

// So many numbers below `size`, spread evenly: what is looked up again and again.
std::vector<int> fewOf(int size);

// All numbers below `size`, in random order.
std::vector<int> allOf(int size);

// The same, but no more than 100,000 of them.
std::vector<int> someOf(int size);

// Walks through the places of a list, over and over.
class Turns {
 public:
  explicit Turns(std::size_t placeCount) : count(placeCount) {}
  std::size_t next() {
    std::size_t const here = place++;
    if (place == count) {
      place = 0;
    }
    return here;
  }

 private:
  std::size_t count;
  std::size_t place = 0;
};

}  // namespace bench
