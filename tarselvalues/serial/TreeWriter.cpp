#include "tarselvalues/serial/TreeWriter.h"

#include <utility>

#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

namespace {

constexpr int TupleSize = 2;
constexpr int UnknownSize = -1;

lvArg frameKind(lvArgDest::FrameKind kind) {
  lvArg cell;
  cell.setInt(kind);
  return cell;
}

lvrVector const& vectorIn(lvArg const& cell) {
  return static_cast<lvrVector const&>(*cell.getReferencable());
}

lvrClass const& classIn(lvArg const& cell) {
  return static_cast<lvrClass const&>(*cell.getReferencable());
}

// The registered class of an object; nil if there is none.
lvClass classOf(lvReferencable const& object) {
  lvArg const& key = object.getClassDesc();
  return lvClass(key.isNil() ? key : lvtClassRegistry::getInstance()->getClass(key));
}

}  // namespace

namespace tarselvalues {

// ---- Opening -----------------------------------------------------------------------------------

TreeWriter::Written TreeWriter::openValue(lvArg const& value) {
  switch (value.getType()) {
    case lvArg::IntType:
    case lvArg::PointerType:
    case lvArg::StringType:
      return dest.putArg(value);
    case lvArg::ObjectType:
      return openObject(value);
    case lvArg::MapType:
      return openMap(value);
    case lvArg::ListType:
      return openVector(value);
    default:
      return dest.putArg(lvArg::NilValue);
  }
}

TreeWriter::Written TreeWriter::openTuple(lvArg const& key, lvArg const& value) {
  int const status = dest.enter(frameKind(lvArgDest::TupleFrame), TupleSize);
  if (status != 0) {
    return status;
  }
  push({Level::Tuple, 0, TupleSize, key, value, nullptr});
  return std::nullopt;
}

TreeWriter::Written TreeWriter::openMap(lvArg const& value) {
  auto const* const map = dynamic_cast<lviMap const*>(value.getReferencable());
  if (map == nullptr) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_NOT_A_MAP);
    return lvrCommonSerializer::CS_ERR_SOURCE;
  }
  if (dest.enter(frameKind(lvArgDest::MapFrame), map->getSize()) != 0) {
    return lvrCommonSerializer::CS_ERR_FAILED;
  }
  std::unique_ptr<lviRealMapEnumerator> cursor(map->getEnumerator());
  push({Level::Map, 0, 0, value, lvArg(), std::move(cursor)});
  return std::nullopt;
}

TreeWriter::Written TreeWriter::openVector(lvArg const& value) {
  auto const* const vector = dynamic_cast<lvrVector const*>(value.getReferencable());
  if (vector == nullptr) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_NOT_A_VECTOR);
    return lvrCommonSerializer::CS_ERR_SOURCE;
  }
  int const size = vector->getSize();
  if (dest.enter(frameKind(lvArgDest::VectorFrame), size) != 0) {
    return lvrCommonSerializer::CS_ERR_FAILED;
  }
  push({Level::Vector, 0, size, value, lvArg(), nullptr});
  return std::nullopt;
}

TreeWriter::Written TreeWriter::openObject(lvArg const& value) {
  lvReferencable const* const object = value.getReferencable();
  if (object == nullptr) {
    return dest.putArg(lvArg::NilValue);
  }
  lvClass described = classOf(*object);
  if (described.getClass() == nullptr) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_NO_CLASS);
    return lvrCommonSerializer::CS_ERR_SOURCE;
  }
  if (dest.enter(described, UnknownSize) < 0) {
    return lvrCommonSerializer::CS_ERR_FAILED;
  }
  int const fields = described->getNItems(lvrClass::Fields);
  if (fields == 0) {
    return 0;  // The level stays open, deliberately.
  }
  push({Level::Object, 0, fields, value, std::move(described), nullptr});
  return std::nullopt;
}

void TreeWriter::push(Level level) {
  if (levels.capacity() == 0) {
    levels.reserve(FirstLevels);
  }
  levels.push_back(std::move(level));
}

// ---- Writing what is open ----------------------------------------------------------------------

// Writes until no level is open any more; `written` is how the outermost value began.
int TreeWriter::finish(Written written) {
  while (!levels.empty()) {
    written = written.value_or(0) < 0 ? abandon(*written) : writeNext();
  }
  return *written;
}

// Writes, or opens, the next part of the innermost level, or closes that.
TreeWriter::Written TreeWriter::writeNext() {
  Level& level = levels.back();
  switch (level.kind) {
    case Level::Map:
      if (level.cursor != nullptr && level.cursor->next()) {
        return openTuple(level.cursor->getKey(), level.cursor->getValue());
      }
      return close();
    case Level::Tuple:
      if (level.next < level.size) {
        return openValue(level.next++ == 0 ? level.held : level.second);
      }
      return close();
    case Level::Vector:
      return level.next < level.size ? openValue(vectorIn(level.held).at(level.next++)) : close();
    default:
      return level.next < level.size ? writeNextField(level) : close();
  }
}

TreeWriter::Written TreeWriter::writeNextField(Level& object) {
  lvArg field;
  if (classIn(object.second)
          .getFieldAt(field, *object.held.getReferencable(), lvrClass::Fields, object.next++) !=
      0) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_FIELD_ACCESS);
    levels.pop_back();  // It stays open in the sink.
    return lvrCommonSerializer::CS_ERR_SOURCE;
  }
  return openValue(field);
}

// Gives the innermost level up, because a part of it failed with `status`.
int TreeWriter::abandon(int status) {
  dest.abortLevel();
  switch (levels.back().kind) {
    case Level::Tuple:
      levels.pop_back();
      return status;
    case Level::Object:
      levels.pop_back();
      return lvrCommonSerializer::CS_ERR_FAILED;
    default:
      return close();  // Closed a second time, deliberately.
  }
}

int TreeWriter::close() {
  bool const isTuple = levels.back().kind == Level::Tuple;
  levels.pop_back();
  int const status = dest.leave();
  if (isTuple) {
    return status;
  }
  return status < 0 ? lvrCommonSerializer::CS_ERR_FAILED : 0;
}

}  // namespace tarselvalues
