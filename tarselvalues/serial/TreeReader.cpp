#include "tarselvalues/serial/TreeReader.h"

#include <cstdio>
#include <utility>

#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"
#include "tarselvalues/serial/lvArgDest.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

namespace tarselvalues {

namespace {

// Room for this many elements or buckets in what is read.
constexpr int FrameSizeHint = 6;
constexpr int FieldSizeHint = 8;

// What a tuple keeps of its items.
constexpr int TupleSize = 2;

constexpr int Failed = lvrCommonSerializer::CS_ERR_FAILED;

}  // namespace

// ---- Entries -----------------------------------------------------------------------------------

int TreeReader::readItem(lvArg& out) {
  for (;;) {
    lvArg item;
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
  int status = begin(kind);
  if (status == 0) {
    status = readLevels();
  }
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
  int const status = beginMap(map);
  return status == 0 ? readLevels() : status;
}

int TreeReader::readVectorContents(lvVector const& vector) {
  int const status = beginVector(vector);
  return status == 0 ? readLevels() : status;
}

int TreeReader::readObjectContents(lvArg& out, lvArg const& className) {
  int status = beginObject(className);
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
      return beginMap(lvHashMap(FrameSizeHint));
    case lvArgDest::VectorFrame:
      return beginVector(lvVector(FrameSizeHint));
    default:
      return Failed;
  }
}

int TreeReader::beginMap(lvHashMap map) {
  Level level;
  level.kind = Level::Map;
  level.map = map.getMap();
  level.first = std::move(map);
  if (level.map == nullptr) {
    return Failed;
  }
  push(std::move(level));
  return 0;
}

int TreeReader::beginVector(lvVector vector) {
  Level level;
  level.kind = Level::Vector;
  level.list = vector.getList();
  level.first = std::move(vector);
  if (level.list == nullptr) {
    return Failed;
  }
  push(std::move(level));
  return 0;
}

int TreeReader::beginObject(lvArg const& className) {
  lvClass const described(lvtClassRegistry::getInstance()->getClass(className));
  Level level;
  level.kind = Level::Object;
  level.described = described.getClass();
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
  lvVector values(FieldSizeHint);
  level.list = values.getList();
  level.second = std::move(values);
  push(std::move(level));
  return 0;
}

int TreeReader::beginTuple() {
  Level level;
  level.kind = Level::Tuple;
  push(std::move(level));
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

// Reads the next item of the innermost frame.
void TreeReader::readNext() {
  bool const inMap = levels.back().kind == Level::Map;
  lvArg item;
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

// Gives the innermost frame an item. A map takes none but tuples.
void TreeReader::take(lvArg item) {
  Level& level = levels.back();
  if (level.list != nullptr) {
    level.list->insert(item, -1);
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
      }
      break;
    default:
      break;
  }
  if (levels.empty()) {
    outermost = std::move(level);
    endStatus = status;
  } else if (level.kind == Level::Tuple) {
    levels.back().map->put(level.first, level.second);
  } else if (status >= 0) {
    take(std::move(level.first));
  }
}

int TreeReader::setFields(Level const& object) {
  for (int i = 0; i < object.list->getSize(); ++i) {
    if (object.described->setFieldAt(*object.first.getReferencable(), object.list->at(i),
                                     lvrClass::Fields, i) != 0) {
      std::puts("CS_ERR_REF_SETUP_ERROR");
      return lvrCommonSerializer::CS_ERR_REF_SETUP_ERROR;
    }
  }
  return 0;
}

}  // namespace tarselvalues
