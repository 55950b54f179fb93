// Reads one value, with all that it holds, from a source. Not for users: lvrCommonSerializer is.
//
// What has begun is kept in an array on the heap: the native stack does not grow with the depth of
// the text by more than the levels that PlainParser reads at once.
#pragma once

#include <optional>
#include <vector>

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/core/Export.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/serial/PlainParser.h"
#include "tarselvalues/serial/ReaderLevel.h"
#include "tarselvalues/serial/lvArgSource.h"

namespace tarselvalues {

class TARSELVALUES_INTERNAL TreeReader {
 public:
  explicit TreeReader(lvArgSource& items);

  // Each returns the status that lvrCommonSerializer's operation of the like name returns.
  int readItem(lvArg& out);
  int readFrame(lvArg& out, lvArg const& kind);
  int readTuple(lvArg& key, lvArg& value);
  int readMapContents(lvHashMap const& map);
  int readVectorContents(lvVector const& vector);
  int readObjectContents(lvArg& out, lvArg const& className);

 private:
  using Level = ReaderLevel;

  // Room for as many as most texts have.
  static constexpr int FirstLevels = 8;

  int begin(lvArg const& kind);
  int beginMap(lvHashMap map, bool isNew);
  int beginVector(lvVector vector);
  int beginObject(lvArg const& className);
  int beginTuple();
  void push(Level level);

  int readLevels();
  int finishFrame(lvArg& out);
  void readNext();
  bool readAtOnce();
  void take(lvArg item);
  void end(int status);
  static void put(Level& around, Level& tuple);
  static int setFields(Level const& object);
  lvrClass const* classNamed(lvArg const& name);

  lvArgSource& source;
  std::vector<Level> levels;
  int keysOpen = 0;                   // how many of the open tuples have no key yet
  std::optional<PlainParser> atOnce;  // where the source allows it
  Level outermost;                    // once it has ended
  int endStatus = 0;                  // the status it ended with
  lvArg spareValues;                  // an empty vector for the values of the next object, or nil
  lvArg lastName;                     // the class name that was looked up last, and its class
  lvrClass const* lastClass = nullptr;
};

}  // namespace tarselvalues
