#include "tarselvalues/serial/TreeReader.h"

#include <cstdio>
#include <typeinfo>
#include <utility>

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"
#include "tarselvalues/serial/lvArgDest.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace tarselvalues {

namespace {

// What a tuple keeps of its items.
constexpr int TupleSize = 2;

constexpr int Failed = lvrCommonSerializer::CS_ERR_FAILED;

// Whether comparing, hashing or releasing the value runs no function of the program.
bool isPlain(lvArg const& value) {
  lvReferencable const* const object = value.getReferencable();
  return object == nullptr || isOwnString(*object);
}

}  // namespace

// Reading at once makes no difference to what is read.
TreeReader::TreeReader(lvArgSource& items) : source(items) {
  if (Tuned && typeid(items) == typeid(lvtStringArgSource)) {
    atOnce.emplace(static_cast<lvtStringArgSource&>(items), levels, keysOpen);
  }
}

// ---- Entries -----------------------------------------------------------------------------------

int TreeReader::readItem(lvArg& out) {
  for (;;) {
    lvArg item;
    if (atOnce.has_value() && atOnce->readItem(item)) {
      out = std::move(item);
      return 0;
    }
    if (!levels.empty()) {
      return finishFrame(out);
    }
    if (atOnce.has_value() && atOnce->hasClassName()) {
      return readFrame(out, atOnce->takeClassName());
    }
    int const result = source.getArg(item);
    switch (result) {
      case lvArgSource::SOURCE_ITEM:
        out = std::move(item);
        return 0;
      case lvArgSource::SOURCE_FRAME_BEGIN:
        return readFrame(out, item);
      case lvArgSource::SOURCE_FRAME_END:
      case lvArgSource::SOURCE_END:
        return result;
      default:
        break;  // Nothing was read.
    }
  }
}

int TreeReader::readFrame(lvArg& out, lvArg const& kind) {
  int const status = begin(kind);
  lastClass = nullptr;  // The name may be the caller's, who may set it anew.
  return status == 0 ? finishFrame(out) : status;
}

// Reads the rest of what has begun.
int TreeReader::finishFrame(lvArg& out) {
  int const status = readLevels();
  if (status < 0) {
    return status;
  }
  out = std::move(outermost.first);
  return 0;
}

int TreeReader::readTuple(lvArg& key, lvArg& value) {
  beginTuple();
  readLevels();
  key = std::move(outermost.first);  // Nil without items.
  if (outermost.items > 0) {
    value = std::move(outermost.second);
  }
  return 0;
}

int TreeReader::readMapContents(lvHashMap const& map) {
  int const status = beginMap(map, false);
  return status == 0 ? readLevels() : status;
}

int TreeReader::readVectorContents(lvVector const& vector) {
  int const status = beginVector(vector);
  return status == 0 ? readLevels() : status;
}

int TreeReader::readObjectContents(lvArg& out, lvArg const& className) {
  int status = beginObject(className);
  lastClass = nullptr;  // As in readFrame().
  if (status == 0) {
    status = readLevels();
  }
  if (status == 0) {
    out = std::move(outermost.first);
  }
  return status;
}

// ---- Beginning a frame -------------------------------------------------------------------------

// Begins a frame of any kind but a tuple. Returns 0 or a status.
int TreeReader::begin(lvArg const& kind) {
  if (kind.isNil()) {
    return Failed;
  }
  if (kind.getType() != lvArg::IntType) {
    return beginObject(kind);
  }
  switch (kind.getInt()) {
    case lvArgDest::MapFrame:
      return beginMap(lvHashMap(FrameSizeHint), true);
    case lvArgDest::VectorFrame:
      return beginVector(lvVector(FrameSizeHint));
    default:
      return Failed;
  }
}

int TreeReader::beginMap(lvHashMap map, bool isNew) {
  Level level = Level::ofMap(std::move(map), isNew);
  if (level.map == nullptr) {
    return Failed;
  }
  push(std::move(level));
  return 0;
}

int TreeReader::beginVector(lvVector vector) {
  Level level = Level::ofVector(std::move(vector));
  if (level.list == nullptr) {
    return Failed;
  }
  push(std::move(level));
  return 0;
}

int TreeReader::beginObject(lvArg const& className) {
  Level level;
  level.kind = Level::Object;
  level.described = classNamed(className);
  if (level.described == nullptr) {
    std::puts("CS_ERR_UNKNOWN_CLASS_KEY");
    return lvrCommonSerializer::CS_ERR_UNKNOWN_CLASS_KEY;
  }
  lvReferencable* const made = level.described->instantiateDefaultObject();
  if (made == nullptr) {
    std::puts("CS_ERR_NO_CLASS_CTOR");
    return lvrCommonSerializer::CS_ERR_NO_CLASS_CTOR;
  }
  level.first = lvArg(*made);
  level.second = spareValues.isNil() ? lvVector(FieldSizeHint) : std::move(spareValues);
  level.plainList = ifExactly<lvrVector>(level.second);
  level.list = level.plainList;
  push(std::move(level));
  return 0;
}

// The registered class of this name; null if there is none. Objects of one class come together, and
// what is registered stays: the last answer serves as long as the names are alike. The names are
// the parser's own then, which nobody sets anew; see readFrame() for the others.
lvrClass const* TreeReader::classNamed(lvArg const& name) {
  bool const isOwn = atOnce.has_value() && name.getType() == lvArg::StringType && isPlain(name);
  if (isOwn && lastClass != nullptr && name.equiv(lastName) != 0) {
    return lastClass;
  }
  lvClass const found(lvtClassRegistry::getInstance()->getClass(name));
  if (isOwn) {
    lastName = name;
    lastClass = found.getClass();
  }
  return found.getClass();
}

int TreeReader::beginTuple() {
  push(Level::ofTuple());
  ++keysOpen;
  return 0;
}

void TreeReader::push(Level level) {
  if (levels.capacity() == 0) {
    levels.reserve(FirstLevels);
  }
  levels.push_back(std::move(level));
}

// ---- Reading what has begun --------------------------------------------------------------------

// Reads until every frame has ended. Returns the status of the outermost one.
int TreeReader::readLevels() {
  while (!levels.empty()) {
    readNext();
  }
  return endStatus;
}

// Reads the next item of the innermost frame, or more.
void TreeReader::readNext() {
  if (readAtOnce()) {
    return;
  }
  lvArg item;
  bool const inMap = levels.back().kind == Level::Map;
  switch (source.getArg(item)) {
    case lvArgSource::SOURCE_ITEM:
      take(std::move(item));
      break;
    case lvArgSource::SOURCE_FRAME_BEGIN:
      if (!inMap) {
        begin(item);  // A frame that fails is dropped; its items become this level's.
      } else if (item.getInt() == lvArgDest::TupleFrame) {
        beginTuple();
      } else {
        end(Failed);
      }
      break;
    case lvArgSource::SOURCE_FRAME_END:
      end(0);
      break;
    case lvArgSource::SOURCE_END:
      end(lvArgSource::SOURCE_END);
      break;
    default:
      break;  // Nothing was read.
  }
}

// Reads as much of the innermost frame as can be read at once; false if what comes next is to be
// read item by item. Frames inside of it may have begun then.
bool TreeReader::readAtOnce() {
  if (!atOnce.has_value()) {
    return false;
  }
  if (atOnce->hasClassName()) {
    begin(atOnce->takeClassName());  // As in readNext().
    return true;
  }
  bool const inTuple = levels.back().kind == Level::Tuple;
  lvrVector* const list = levels.back().plainList;
  lvrHashMap* const map = levels.back().plainMap;
  lvArg item;
  if (inTuple && atOnce->readItem(item)) {
    take(std::move(item));
    return true;
  }
  if ((list != nullptr && atOnce->readItems(*list)) ||
      (map != nullptr && atOnce->readEntries(*map))) {
    end(0);
    return true;
  }
  return atOnce->hasClassName();
}

// Gives the innermost frame an item. A map takes none but tuples.
void TreeReader::take(lvArg item) {
  Level& level = levels.back();
  if (level.list != nullptr) {
    if (level.plainList != nullptr) {
      level.plainList->append(std::move(item));
    } else {
      level.list->insert(item, -1);
    }
  } else if (level.kind == Level::Tuple && level.items < TupleSize) {
    keysOpen -= level.items == 0 ? 1 : 0;
    (level.items++ == 0 ? level.first : level.second) = std::move(item);
  }
}

// Ends the innermost frame and gives it to the one around, if it did not fail.
void TreeReader::end(int status) {
  Level level = std::move(levels.back());
  levels.pop_back();
  switch (level.kind) {
    case Level::Tuple:
      keysOpen -= level.items == 0 ? 1 : 0;
      status = 0;
      break;
    case Level::Vector:
      if (keysOpen > 0) {
        level.first.hashCode();  // Now, while all that it holds has a hash: a map will ask for it.
      }
      break;
    case Level::Object:
      if (status != 0) {
        std::printf("Unknown error: %d", status);
        level.first.setNil();
      } else {
        status = setFields(level);
        if (status == 0) {
          level.plainList->clear();
          spareValues = std::move(level.second);
        }
      }
      break;
    default:
      break;
  }
  if (levels.empty()) {
    outermost = std::move(level);
    endStatus = status;
  } else if (level.kind == Level::Tuple) {
    put(levels.back(), level);
  } else if (status >= 0) {
    take(std::move(level.first));
  }
}

// Puts a tuple into the map around it.
void TreeReader::put(Level& around, Level& tuple) {
  if (around.plainMap == nullptr) {
    around.map->put(tuple.first, tuple.second);
    return;
  }
  lvrHashMap& map = *around.plainMap;
  if (!isPlain(tuple.first) || !isPlain(tuple.second)) {
    around.plainMap = nullptr;
  }
  map.putMoved(std::move(tuple.first), std::move(tuple.second));
}

// A field's old value goes when the new one is there, and the object alone holds that.
int TreeReader::setFields(Level const& object) {
  lvrVector& values = *object.plainList;
  for (int i = 0; i < values.lvrVector::getSize(); ++i) {
    lvArg* const field = object.described->borrowField(*object.first.getReferencable(), i);
    if (field == nullptr) {
      std::puts("CS_ERR_REF_SETUP_ERROR");
      return lvrCommonSerializer::CS_ERR_REF_SETUP_ERROR;
    }
    lvArg value = values.handOver(i);
    value.setBookkeeping(field->getBookkeeping());
    field->exchange(value);
    value.setNil();  // What ends the old value may throw.
  }
  return 0;
}

}  // namespace tarselvalues
