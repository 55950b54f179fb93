// Writes one value, with all that it holds, to a sink. Not for users: lvrCommonSerializer is.
//
// What is open is kept in a stack of its own, so that the native stack does not grow with the depth
// of the value.
//
// What is written is borrowed: from the caller, or from the container around it. Before a function
// of the program runs, which might let go of anything, all that is open is held. Such functions are
// those of the program's own objects, maps and vectors, and with a sink of its own, any of its.
#pragma once

#include <memory>
#include <optional>
#include <type_traits>

#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/serial/TreeLevel.h"

namespace tarselvalues {

// `Sink` is AnySink or TextSink.
template <class Sink>
class TARSELVALUES_INTERNAL TreeWriter {
 public:
  template <class Dest>
  explicit TreeWriter(Dest& dest) : sink(dest, levels) {}

  // Each returns the status that lvrCommonSerializer's operation of the like name returns.
  int writeValue(lvArg const& value) { return finish(openValue(value)); }
  int writeTuple(lvArg const& key, lvArg const& value) { return finish(openTuple(key, value)); }
  int writeMap(lvArg const& value) { return finish(openMap(value)); }
  int writeVector(lvArg const& value) { return finish(openVector(value)); }
  int writeObject(lvArg const& value) { return finish(openObject(value)); }

 private:
  // A cell as it may be handed to the sink, whose functions might change the original.
  using Element = std::conditional_t<Sink::RunsProgram, lvArg const, lvArg const&>;

  // The status of a value that has been written, or of one that failed; none when it has opened a
  // level, which is to be written now.
  using Written = std::optional<int>;

  // Keeps alive what a level reads.
  struct Holding {
    lvArg first;                                   // the container or object; a tuple's key
    lvArg second;                                  // a tuple's value
    std::unique_ptr<lviRealMapEnumerator> cursor;  // another map's
  };

  Written openValue(lvArg const& value);
  Written openTuple(lvArg const& key, lvArg const& value);
  Written openMap(lvArg const& value);
  Written openOtherMap(lvArg const& value);
  Written openVector(lvArg const& value);
  Written openOtherVector(lvArg const& value);
  Written openObject(lvArg const& value);
  lvrClass const* classOf(lvReferencable const& object);

  void push(TreeLevel const& level);
  void pushHeld(TreeLevel const& level, Holding holding);
  void pop();
  void holdAll();
  static Holding holdingOf(TreeLevel const& level);

  int finish(Written written);
  Written writeNext();
  Written writePart();
  Written writeEntry();
  Written writeElement();
  Written writeField();
  Written writeOtherEntry();
  Written writeOtherElement();
  Written abandon(int status);
  Written close();

  typename Sink::template Stack<TreeLevel> levels;
  typename Sink::template Stack<Holding> holdings;  // of the outer levels, or of all
  Sink sink;
  lvArg lastKey;  // the class key that was looked up last, and its class
  lvrClass const* lastClass = nullptr;
};

}  // namespace tarselvalues
