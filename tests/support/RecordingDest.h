// A sink that writes down every call, and answers chosen calls with a status of the test's own.
//
// A call reads  enter(25,2)  enter(*Point,-1)  put(1)  put('a')  leave  abort  error(1)  terminate,
// and has a "!" behind it when it did not answer 0.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "support/Cells.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/serial/lvArgDest.h"

namespace test {

// A scalar, as sinks get it.
inline std::string shownScalar(lvArg const& value) {
  switch (value.getType()) {
    case lvArg::NilType:
      return "nil";
    case lvArg::IntType:
      return std::to_string(value.getInt());
    case lvArg::PointerType:
      return "@" + std::to_string(reinterpret_cast<std::uintptr_t>(value.getPointer()));
    case lvArg::StringType:
      return "'" + textOf(value) + "'";
    default:
      return "<tag " + std::to_string(value.getType()) + ">";
  }
}

// The kind of a level: a number, or the name of a class behind a "*".
inline std::string shownKind(lvArg const& kind) {
  return kind.getType() == lvArg::ClassType ? "*" + textOf(lvClass(kind).getClassDesc())
                                            : shownScalar(kind);
}

class RecordingDest : public lvArgDest {
 public:
  // The call of this number, counted from 0, answers `status`. All others answer 0.
  RecordingDest& answer(int call, int status) {
    answers_[call] = status;
    return *this;
  }

  int terminate() override { return record("terminate"); }
  int enter(lvArg const& kind, int size) override {
    return record("enter(" + shownKind(kind) + "," + std::to_string(size) + ")");
  }
  int leave() override { return record("leave"); }
  int abortLevel() override { return record("abort"); }
  int sourceError(sourceError_t error) override {
    return record("error(" + std::to_string(error) + ")");
  }
  int putArg(lvArg const& value) override {
    lastPut_ = &value;
    return record("put(" + shownScalar(value) + ")");
  }

  std::string const& calls() const { return calls_; }
  int count() const { return count_; }
  // The very cell of the last putArg(), to compare its address.
  lvArg const* lastPut() const { return lastPut_; }

 private:
  int record(std::string const& call) {
    auto const chosen = answers_.find(count_++);
    int const status = chosen != answers_.end() ? chosen->second : 0;
    calls_ += (calls_.empty() ? "" : " ") + call + (status != 0 ? "!" : "");
    return status;
  }

  std::map<int, int> answers_;
  std::string calls_;
  int count_ = 0;
  lvArg const* lastPut_ = nullptr;
};

}  // namespace test
