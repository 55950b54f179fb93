// Runs operations out of memory: at their first allocation, at the second, and so on until they
// succeed, once with no memory from there on and once with that one call failing alone.
//
// For programs that link FailLoop.cpp and the static library, and wrap malloc, calloc, realloc and
// free. CheckFailLoops.cmake holds that every operation that the library exports is run somewhere.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "support/Cells.h"
#include "tarselvalues/core/lvArg.h"

namespace test {

// How a lack of memory shows: what it comes to at one allocation after the other, without
// repetitions. Besides these words, an answer that the operation gives to tell of it.
inline constexpr char NeedsNone[] = "";                // it allocates nothing
inline constexpr char Throws[] = "throws";             // std::bad_alloc
inline constexpr char Exits[] = "exits";               // the process ends, with status 13
inline constexpr char Copes[] = "copes";               // it succeeds all the same
inline constexpr char SaysNothing[] = "says nothing";  // it answers as if it had succeeded
inline constexpr char ThrowsThenCopes[] = "throws, copes";

// An operation, and what it works on.
class Subject {
 public:
  Subject() = default;
  virtual ~Subject() = default;
  Subject(Subject const&) = delete;
  Subject& operator=(Subject const&) = delete;

  // Runs the operation; allocates nothing besides.
  virtual lvArg operate() = 0;
  // All that the operation could change.
  virtual std::string shown() const = 0;
};

using MakeSubject = std::function<std::unique_ptr<Subject>()>;

// Runs what `make` makes out of memory at each of its allocations. It must show as `missing` says;
// after each failure the subject must be as before, or show `after` where the operation did not
// throw, and what is as before must be able to do what it could not do. Nothing may stay allocated.
void runOutOfMemory(std::string const& name, MakeSubject const& make, std::string const& missing,
                    std::optional<std::string> const& after);

// How many blocks are allocated, and how many allocations `action` makes.
int blocksAlive();
int allocationsOf(std::function<void()> const& action);

// Whether `action` ends with std::bad_alloc when only so many allocations succeed.
bool failsAfter(int allocations, std::function<void()> const& action);

template <class State, class Operate>
class SubjectOf : public Subject {
 public:
  explicit SubjectOf(Operate operation) : operation_(std::move(operation)) {}

  lvArg operate() override {
    using Answer = std::invoke_result_t<Operate&, State&>;
    if constexpr (std::is_void_v<Answer>) {
      operation_(state_);
      return lvArg();
    } else if constexpr (std::is_integral_v<Answer>) {
      return integer(static_cast<int>(operation_(state_)));
    } else {
      return operation_(state_);
    }
  }

  std::string shown() const override { return state_.shown(); }

 private:
  State state_;
  Operate operation_;
};

// Runs `operation` on a new State each time. `names` are the operations of the class that it calls,
// separated by commas.
template <class State, class Operate>
void exhaust(char const* className, char const* names, std::string const& missing,
             Operate operation, std::optional<std::string> const& after = std::nullopt) {
  runOutOfMemory(
      std::string(className) + "::" + names,
      [operation] { return std::make_unique<SubjectOf<State, Operate>>(operation); }, missing,
      after);
}

// For operations that work on nothing but their arguments.
struct Nothing {
  static std::string shown() { return ""; }
};

}  // namespace test
