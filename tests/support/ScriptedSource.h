// A source that answers from a list, and then that the input is used up.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "tarselvalues/serial/lvArgSource.h"

namespace test {

// What getArg() answers, and what it stores; without a value the output is left alone.
struct Answer {
  int code;
  std::optional<lvArg> value;
};

inline Answer item(lvArg const& value) { return {lvArgSource::SOURCE_ITEM, value}; }
inline Answer item(int value) { return item(integer(value)); }
inline Answer item(char const* text) { return item(string(text)); }
inline Answer begin(lvArg const& kind) { return {lvArgSource::SOURCE_FRAME_BEGIN, kind}; }
inline Answer begin(int kind) { return begin(integer(kind)); }
inline Answer beginObject(char const* className) { return begin(string(className)); }
inline Answer frameEnd() { return {lvArgSource::SOURCE_FRAME_END, std::nullopt}; }
inline Answer inputEnd() { return {lvArgSource::SOURCE_END, std::nullopt}; }
// Nothing was read, whatever is stored.
inline Answer nothing(int code) { return {code, integer(666)}; }

class ScriptedSource : public lvArgSource {
 public:
  explicit ScriptedSource(std::vector<Answer> answers) : answers_(std::move(answers)) {}

  int getArg(lvArg& out) override {
    std::size_t const position = reads_++;
    if (position >= answers_.size()) {
      return SOURCE_END;
    }
    Answer const& given = answers_[position];
    if (given.value) {
      out = *given.value;
    }
    return given.code;
  }

  // How many answers were taken.
  std::size_t reads() const { return reads_; }

 private:
  std::vector<Answer> answers_;
  std::size_t reads_ = 0;
};

}  // namespace test
