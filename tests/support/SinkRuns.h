// One writing operation of a serializer on a fresh recording sink, told as "status: calls".
#pragma once

#include <map>
#include <string>

#include "support/RecordingDest.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

namespace test {

// Which call of the sink, counted from 0, answers what; all others answer 0.
using SinkAnswers = std::map<int, int>;

// A serializer that lives as long as the cell beside it.
class HeldSerializer {
 public:
  HeldSerializer() : serializer_(new lvrCommonSerializer), cell_(*serializer_) {}
  lvrCommonSerializer* operator->() const { return serializer_; }
  lvrCommonSerializer& operator*() const { return *serializer_; }

 private:
  lvrCommonSerializer* serializer_;
  lvArg cell_;
};

template <class Operation>
std::string runOnSink(Operation operation, SinkAnswers const& answers) {
  RecordingDest dest;
  for (auto const& answer : answers) {
    dest.answer(answer.first, answer.second);
  }
  HeldSerializer const serializer;
  std::string const status = std::to_string(operation(*serializer, dest));
  return status + ": " + dest.calls();
}

inline std::string atom(lvArg const& value, SinkAnswers const& answers = {}) {
  return runOnSink([&](lvrCommonSerializer& serializer,
                       lvArgDest& dest) { return serializer.serializeAtomInto(dest, value); },
                   answers);
}

inline std::string tuple(lvArg const& key, lvArg const& value, SinkAnswers const& answers = {}) {
  return runOnSink([&](lvrCommonSerializer& serializer,
                       lvArgDest& dest) { return serializer.serializeTupleInto(dest, key, value); },
                   answers);
}

inline std::string map(lvArg const& value, SinkAnswers const& answers = {}) {
  return runOnSink([&](lvrCommonSerializer& serializer,
                       lvArgDest& dest) { return serializer.serializeMapInto(dest, value); },
                   answers);
}

inline std::string vector(lvArg const& value, SinkAnswers const& answers = {}) {
  return runOnSink([&](lvrCommonSerializer& serializer,
                       lvArgDest& dest) { return serializer.serializeVectorInto(dest, value); },
                   answers);
}

inline std::string object(lvArg const& value, SinkAnswers const& answers = {}) {
  return runOnSink(
      [&](lvrCommonSerializer& serializer, lvArgDest& dest) {
        return serializer.serializeReferencableInto(dest, value);
      },
      answers);
}

}  // namespace test
