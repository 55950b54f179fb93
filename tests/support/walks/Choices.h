// What a walk decides by: random numbers, or the bytes of an input that a fuzzer made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <vector>

namespace test {

class Choices {
 public:
  virtual ~Choices() = default;

  // 32 bits.
  virtual std::uint32_t bits() = 0;
  // Whether nothing is left to decide by. From then on every number is 0.
  virtual bool areUsedUp() const = 0;

  // A number from 0 up to `limit`, which is excluded and not 0.
  template <class Number>
  Number below(Number limit) {
    return static_cast<Number>(numberBelow(static_cast<std::uint32_t>(limit)));
  }
  bool oneIn(unsigned number) { return below(number) == 0; }
  template <class Item>
  Item const& pick(std::vector<Item> const& all) {
    return all[below(all.size())];
  }

 private:
  virtual std::uint32_t numberBelow(std::uint32_t limit) = 0;
};

// The same numbers for the same seed on every target, unlike those of
// std::uniform_int_distribution.
class SeededChoices : public Choices {
 public:
  explicit SeededChoices(unsigned seed) : engine_(seed) {}

  std::uint32_t bits() override { return static_cast<std::uint32_t>(engine_()); }
  bool areUsedUp() const override { return false; }

 private:
  std::uint32_t numberBelow(std::uint32_t limit) override { return bits() % limit; }

  std::mt19937 engine_;
};

// Takes no more bytes for a number than it needs, so that each byte counts.
class ByteChoices : public Choices {
 public:
  ByteChoices(std::uint8_t const* bytes, std::size_t count) : next_(bytes), end_(bytes + count) {}

  std::uint32_t bits() override { return take(0xFFFFFFFFU); }
  bool areUsedUp() const override { return next_ == end_; }

 private:
  std::uint32_t numberBelow(std::uint32_t limit) override { return take(limit - 1) % limit; }

  std::uint32_t take(std::uint32_t largest) {
    std::uint32_t number = 0;
    for (; largest != 0; largest >>= 8) {
      number = (number << 8) | (areUsedUp() ? 0U : *next_++);
    }
    return number;
  }

  std::uint8_t const* next_;
  std::uint8_t const* end_;
};

}  // namespace test
