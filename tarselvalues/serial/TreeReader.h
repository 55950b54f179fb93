// Reads one value, with all that it holds, from a source. Not for users: lvrCommonSerializer is.
//
// What has begun is kept in an array on the heap, so that the native stack does not grow with the
// depth of the text.
#pragma once

#include <vector>

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/serial/lvArgSource.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL TreeReader {
 public:
  explicit TreeReader(lvArgSource& items) : source(items) {}

  // Each returns the status that lvrCommonSerializer's operation of the like name returns.
  int readItem(lvArg& out);
  int readFrame(lvArg& out, lvArg const& kind);
  int readTuple(lvArg& key, lvArg& value);
  int readMapContents(lvHashMap const& map);
  int readVectorContents(lvVector const& vector);
  int readObjectContents(lvArg& out, lvArg const& className);

 private:
  // A frame that has begun. What it is made of lies in two cells.
  struct Level {
    enum Kind { Tuple, Map, Vector, Object };

    Kind kind = Vector;
    int items = 0;  // of a tuple: how many there were
    lvArg first;    // the container or the object; a tuple's key
    lvArg second;   // an object's field values, in a vector; a tuple's value
    lviMap* map = nullptr;
    lviList* list = nullptr;              // takes the items of a vector or an object
    lvrClass const* described = nullptr;  // an object's; classes are never unregistered
  };

  // Room for as many as most texts have.
  static constexpr int FirstLevels = 8;

  int begin(lvArg const& kind);
  int beginMap(lvHashMap map);
  int beginVector(lvVector vector);
  int beginObject(lvArg const& className);
  int beginTuple();
  void push(Level level);

  int readLevels();
  void readNext();
  void take(lvArg item);
  void end(int status);
  static int setFields(Level const& object);

  lvArgSource& source;
  std::vector<Level> levels;
  int keysOpen = 0;   // how many of the open tuples have no key yet
  Level outermost;    // once it has ended
  int endStatus = 0;  // the status it ended with
};

}  // namespace tarselvalues
