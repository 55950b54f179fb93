// What the fuzz targets share.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/walks/Choices.h"

// What libFuzzer and the replay call with every input.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size);

namespace fuzz {

// From here on whatever GoogleTest finds wrong ends the process, because nobody catches it.
inline void dieOnFailure() { GTEST_FLAG_SET(throw_on_failure, true); }

inline std::string textOf(std::uint8_t const* data, std::size_t size) {
  return std::string(data, data + size);
}

// Goes on one of the walks, by the first byte of the input, until the input is used up.
inline int walkOneOf(std::vector<void (*)(test::ByteChoices&)> const& walks,
                     std::uint8_t const* data, std::size_t size) {
  dieOnFailure();
  test::ByteChoices choices(data, size);
  choices.pick(walks)(choices);
  return 0;
}

}  // namespace fuzz
