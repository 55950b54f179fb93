// Writes one value, with all that it holds, to a sink. Not for users: lvrCommonSerializer is.
//
// What is open is kept in an array on the heap, so that the native stack does not grow with the
// depth of the value.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/serial/lvArgDest.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL TreeWriter {
 public:
  explicit TreeWriter(lvArgDest& sink) : dest(sink) {}

  // Each returns the status that lvrCommonSerializer's operation of the like name returns.
  int writeValue(lvArg const& value) { return finish(openValue(value)); }
  int writeTuple(lvArg const& key, lvArg const& value) { return finish(openTuple(key, value)); }
  int writeMap(lvArg const& value) { return finish(openMap(value)); }
  int writeVector(lvArg const& value) { return finish(openVector(value)); }
  int writeObject(lvArg const& value) { return finish(openObject(value)); }

 private:
  // The status of a value that has been written, or of one that failed; none when it has opened a
  // level, which is to be written now.
  using Written = std::optional<int>;

  // A level that is open in the sink.
  struct Level {
    enum Kind { Tuple, Map, Vector, Object };

    Kind kind;
    int next = 0;  // which element, or field, or part of the tuple, comes next
    int size = 0;
    lvArg held;                                    // the container or object; a tuple's key
    lvArg second;                                  // an object's class; a tuple's value
    std::unique_ptr<lviRealMapEnumerator> cursor;  // a map's
  };

  // Room for as many as most values have.
  static constexpr int FirstLevels = 8;

  Written openValue(lvArg const& value);
  Written openTuple(lvArg const& key, lvArg const& value);
  Written openMap(lvArg const& value);
  Written openVector(lvArg const& value);
  Written openObject(lvArg const& value);

  void push(Level level);

  int finish(Written written);
  Written writeNext();
  Written writeNextField(Level& object);
  int abandon(int status);
  int close();

  lvArgDest& dest;
  std::vector<Level> levels;
};

}  // namespace tarselvalues
