// A text writer of that very class, as the serializer's loop uses it: without virtual calls, and at
// once where that can be. Not for users.
#pragma once

#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/serial/PlainText.h"
#include "tarselvalues/serial/SinkFrames.h"
#include "tarselvalues/serial/SmallStack.h"
#include "tarselvalues/serial/lvtStringArgDest.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL TextSink {
 public:
  // No function of the program runs while it writes.
  static constexpr bool RunsProgram = false;

  // There may be more than the writer's levels: a failure closes one of those twice.
  template <class Item>
  using Stack = SmallStack<Item, lvtStringArgDest::MaxDepth>;

  TextSink(lvtStringArgDest& target, Stack<TreeLevel>& levels)
      : writer(target), atOnce(target, levels) {}

  // Write a value, or begin to: see PlainText.
  bool writeAtOnce(lvArg const& value) { return atOnce.write(value); }
  bool writeAtOnce(lvReferencable const& object, lvrClass const& described) {
    return atOnce.writeObject(object, described);
  }

  int enterTuple() { return enter(lvArgDest::TupleFrame, TupleSize); }
  int enterMap(int size) { return enter(lvArgDest::MapFrame, size); }
  int enterVector(int size) { return enter(lvArgDest::VectorFrame, size); }
  int enterObject(lvrClass const& described) {
    return writer.lvtStringArgDest::enter(lvArg(described), UnknownSize);
  }
  int leave() { return writer.lvtStringArgDest::leave(); }
  void abortLevel() { writer.lvtStringArgDest::abortLevel(); }
  void sourceError(lvArgDest::sourceError_t error) { writer.lvtStringArgDest::sourceError(error); }
  int putScalar(lvArg const& value) { return writer.lvtStringArgDest::putArg(value); }

 private:
  int enter(lvArgDest::FrameKind kind, int size) {
    return writer.lvtStringArgDest::enter(frameCell(kind), size);
  }

  lvtStringArgDest& writer;
  PlainText atOnce;
};

}  // namespace tarselvalues
