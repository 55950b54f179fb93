// A sink of any class, as the serializer's loop uses it: through its virtual functions. Not for
// users.
#pragma once

#include <vector>

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/serial/SinkFrames.h"
#include "tarselvalues/serial/TreeLevel.h"
#include "tarselvalues/serial/lvArgDest.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL AnySink {
 public:
  // Each operation may run a function of the program.
  static constexpr bool RunsProgram = true;

  template <class Item>
  using Stack = std::vector<Item>;

  AnySink(lvArgDest& target, Stack<TreeLevel>& /*levels*/) : dest(target) {}

  // Writes nothing at once.
  static bool writeAtOnce(lvArg const& /*value*/) { return false; }
  static bool writeAtOnce(lvReferencable const& /*object*/, lvrClass const& /*described*/) {
    return false;
  }

  int enterTuple() { return dest.enter(frameCell(lvArgDest::TupleFrame), TupleSize); }
  int enterMap(int size) { return dest.enter(frameCell(lvArgDest::MapFrame), size); }
  int enterVector(int size) { return dest.enter(frameCell(lvArgDest::VectorFrame), size); }
  int enterObject(lvrClass const& described) { return dest.enter(lvArg(described), UnknownSize); }
  int leave() { return dest.leave(); }
  void abortLevel() { dest.abortLevel(); }
  void sourceError(lvArgDest::sourceError_t error) { dest.sourceError(error); }
  int putScalar(lvArg const& value) { return dest.putArg(value); }

 private:
  lvArgDest& dest;
};

}  // namespace tarselvalues
