// The works whose instructions are counted: small pieces of what programs do with the library.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <functional>
#include <string>
#include <vector>

namespace counts {

struct Work {
  std::string name;
  int repetitions;  // in one round; even, because some operations do two things in turn
  // Sets up, does the work that many times, and then checks that it was done.
  std::function<void(int)> run;
};

// The works by subject.
std::vector<Work> cellWorks();
std::vector<Work> textWorks();
std::vector<Work> stringWorks();
std::vector<Work> mapWorks();
std::vector<Work> listWorks();
std::vector<Work> sortedWorks();
std::vector<Work> classWorks();

// Ends the process with status 1, having named the claim, where it does not hold.
void require(bool holds, char const* claim);

// Calls operation(0), operation(1) and so on, `count` times.
template <class Operation>
void repeat(int count, Operation const& operation) {
  for (int i = 0; i < count; ++i) {
    operation(i);
  }
}

lvArg integer(int value);

// Return different keys, `count` of them.
std::vector<lvArg> integerKeys(int count);
std::vector<lvArg> stringKeys(int count);

// Keys to be looked up in turn: as many as the mask has numbers, spread evenly over all.
constexpr int SampleMask = 63;
std::vector<lvArg> samples(std::vector<lvArg> const& keys);

}  // namespace counts
