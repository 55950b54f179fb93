// One reading operation of a serializer on a scripted source, told as "status: what was read".
//
// "same" stands for an output that was left alone, "+N" for N answers that were not taken.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "support/ScriptedSource.h"
#include "support/SinkRuns.h"
#include "support/ValueTrees.h"

namespace test {

using Script = std::vector<Answer>;

// What an output holds before it is read into.
inline lvArg untouched() { return pointer(0x5A5A); }

inline std::string describedOutput(lvArg const& out) {
  return out.eq(untouched()) ? "same" : described(out);
}

template <class Operation>
std::string runOnSource(Operation operation, Script const& script) {
  ScriptedSource source(script);
  HeldSerializer const serializer;
  lvArg out = untouched();
  int const status = operation(*serializer, out, source);
  std::string const left =
      source.reads() < script.size() ? " +" + std::to_string(script.size() - source.reads()) : "";
  return std::to_string(status) + ": " + describedOutput(out) + left;
}

inline std::string readAll(Script const& script) {
  return runOnSource([](lvrCommonSerializer& serializer, lvArg& out,
                        lvArgSource& source) { return serializer.deserializeInto(out, source); },
                     script);
}

inline std::string readItem(Script const& script) {
  return runOnSource(
      [](lvrCommonSerializer& serializer, lvArg& out, lvArgSource& source) {
        return serializer.deserializeItemInto(out, source);
      },
      script);
}

inline std::string readFrame(lvArg const& kind, Script const& script) {
  return runOnSource(
      [&](lvrCommonSerializer& serializer, lvArg& out, lvArgSource& source) {
        return serializer.deserializeFrameInto(out, source, kind);
      },
      script);
}

inline std::string readObject(lvArg const& className, Script const& script) {
  return runOnSource(
      [&](lvrCommonSerializer& serializer, lvArg& out, lvArgSource& source) {
        return serializer.deserializeReferencableContentsInto(out, className, source);
      },
      script);
}

// The status stands before the key, the value behind it.
inline std::string readTuple(Script const& script) {
  lvArg value = untouched();
  std::string const key = runOnSource(
      [&](lvrCommonSerializer& serializer, lvArg& out, lvArgSource& source) {
        return serializer.deserializeTupleInto(out, value, source);
      },
      script);
  return key + " = " + describedOutput(value);
}

// Into a map and a vector that hold something already.
inline std::string readMapContents(Script const& script) {
  lvHashMap map(mapOf({{string("old"), integer(1)}}));
  return runOnSource(
      [&](lvrCommonSerializer& serializer, lvArg& out, lvArgSource& source) {
        int const status = serializer.deserializeMapContentsInto(map, source);
        out = map;
        return status;
      },
      script);
}

inline std::string readVectorContents(Script const& script) {
  lvVector vector(vectorOf({string("old")}));
  return runOnSource(
      [&](lvrCommonSerializer& serializer, lvArg& out, lvArgSource& source) {
        int const status = serializer.deserializeVectorContentsInto(vector, source);
        out = vector;
        return status;
      },
      script);
}

// Runs `read` and returns what it printed on standard output.
template <class Read>
std::string printedBy(Read read) {
  testing::internal::CaptureStdout();
  read();
  return testing::internal::GetCapturedStdout();
}

}  // namespace test
