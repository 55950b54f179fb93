#include "tarselvalues/serial/TreeWriter.h"

#include <utility>

#include "tarselvalues/core/ClassCast.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"
#include "tarselvalues/serial/AnySink.h"
#include "tarselvalues/serial/TextSink.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"

namespace tarselvalues {

namespace {

constexpr int Failed = lvrCommonSerializer::CS_ERR_FAILED;
constexpr int SourceError = lvrCommonSerializer::CS_ERR_SOURCE;

// The object in a cell, if it is of that very class.
template <class Class>
Class const* exactly(lvArg const& cell) {
  lvReferencable const* const object = cell.getReferencable();
  return object != nullptr && isExactly<Class>(*object) ? static_cast<Class const*>(object)
                                                        : nullptr;
}

bool isInterned(lvArg const& cell) {
  return cell.getType() == lvArg::StringType && cell.getReferencable() != nullptr &&
         static_cast<lvrString const&>(*cell.getReferencable()).isInterned();
}

}  // namespace

// ---- Opening -----------------------------------------------------------------------------------

template <class Sink>
auto TreeWriter<Sink>::openValue(lvArg const& value) -> Written {
  if (value.getType() == lvArg::ObjectType) {
    return openObject(value);
  }
  auto const before = levels.size();
  if (sink.writeAtOnce(value)) {
    return 0;
  }
  if (levels.size() != before) {
    return std::nullopt;
  }
  switch (value.getType()) {
    case lvArg::IntType:
    case lvArg::PointerType:
    case lvArg::StringType:
      return sink.putScalar(value);
    case lvArg::MapType:
      return openMap(value);
    case lvArg::ListType:
      return openVector(value);
    default:
      return sink.putScalar(lvArg::NilValue);
  }
}

template <class Sink>
auto TreeWriter<Sink>::openTuple(lvArg const& key, lvArg const& value) -> Written {
  int const status = sink.enterTuple();
  if (status != 0) {
    return status;
  }
  push(TreeLevel::ofTuple(key, value, 0));
  return std::nullopt;
}

template <class Sink>
auto TreeWriter<Sink>::openMap(lvArg const& value) -> Written {
  lvrHashMap const* const map = exactly<lvrHashMap>(value);
  if (map == nullptr) {
    return openOtherMap(value);
  }
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the sink may empty the original.
  [[maybe_unused]] Element kept = value;
  if (sink.enterMap(map->lvrHashMap::getSize()) != 0) {
    return Failed;
  }
  push(TreeLevel::ofMap(*map, lvrHashMap::Walk(*map)));
  return std::nullopt;
}

template <class Sink>
auto TreeWriter<Sink>::openOtherMap(lvArg const& value) -> Written {
  auto const* const map = dynamic_cast<lviMap const*>(value.getReferencable());
  if (map == nullptr) {
    sink.sourceError(lvArgDest::SOURCE_ERROR_NOT_A_MAP);
    return SourceError;
  }
  Holding holding;
  holding.first = value;
  holdAll();
  if (sink.enterMap(map->getSize()) != 0) {
    return Failed;
  }
  holding.cursor.reset(map->getEnumerator());
  pushHeld(TreeLevel(TreeLevel::OtherMap, nullptr, 0), std::move(holding));
  return std::nullopt;
}

template <class Sink>
auto TreeWriter<Sink>::openVector(lvArg const& value) -> Written {
  lvrVector const* const vector = exactly<lvrVector>(value);
  if (vector == nullptr) {
    return openOtherVector(value);
  }
  // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the sink may empty the original.
  [[maybe_unused]] Element kept = value;
  int const size = vector->lvrVector::getSize();
  if (sink.enterVector(size) != 0) {
    return Failed;
  }
  push(TreeLevel::ofVector(*vector, size, 0));
  return std::nullopt;
}

template <class Sink>
auto TreeWriter<Sink>::openOtherVector(lvArg const& value) -> Written {
  auto const* const vector = dynamic_cast<lvrVector const*>(value.getReferencable());
  if (vector == nullptr) {
    sink.sourceError(lvArgDest::SOURCE_ERROR_NOT_A_VECTOR);
    return SourceError;
  }
  Holding holding;
  holding.first = value;
  holdAll();
  int const size = vector->getSize();
  if (sink.enterVector(size) != 0) {
    return Failed;
  }
  pushHeld(TreeLevel(TreeLevel::OtherVector, vector, size), std::move(holding));
  return std::nullopt;
}

template <class Sink>
auto TreeWriter<Sink>::openObject(lvArg const& value) -> Written {
  lvReferencable const* const object = value.getReferencable();
  if (object == nullptr) {
    return sink.putScalar(lvArg::NilValue);
  }
  Holding holding;
  holding.first = value;
  holdAll();
  lvrClass const* const described = classOf(*object);
  if (described == nullptr) {
    sink.sourceError(lvArgDest::SOURCE_ERROR_NO_CLASS);
    return SourceError;
  }
  auto const before = levels.size();
  if (sink.writeAtOnce(*object, *described)) {
    return 0;
  }
  if (levels.size() != before) {
    holdings.push_back(std::move(holding));
    return std::nullopt;
  }
  if (sink.enterObject(*described) < 0) {
    return Failed;
  }
  int const fields = described->getNItems(lvrClass::Fields);
  if (fields == 0) {
    return 0;  // The level stays open, deliberately.
  }
  pushHeld(TreeLevel::ofObject(*object, *described, fields), std::move(holding));
  return std::nullopt;
}

// The registered class of an object; null if there is none. Objects of one class come together, and
// what is registered stays: the last answer serves as long as the key is the same interned string.
template <class Sink>
lvrClass const* TreeWriter<Sink>::classOf(lvReferencable const& object) {
  lvArg const& key = object.getClassDesc();
  if (lastClass != nullptr && key.eq(lastKey)) {
    return lastClass;
  }
  if (key.isNil()) {
    return nullptr;
  }
  lvArg const kept(key);
  lvClass const found(lvtClassRegistry::getInstance()->getClass(kept));
  if (isInterned(kept)) {
    lastKey = kept;
    lastClass = found.getClass();
  }
  return found.getClass();
}

// ---- What is open ------------------------------------------------------------------------------

template <class Sink>
void TreeWriter<Sink>::push(TreeLevel const& level) {
  if (Sink::RunsProgram) {
    pushHeld(level, holdingOf(level));
  } else {
    levels.push_back(level);
  }
}

template <class Sink>
void TreeWriter<Sink>::pushHeld(TreeLevel const& level, Holding holding) {
  holdAll();
  levels.push_back(level);
  holdings.push_back(std::move(holding));
}

template <class Sink>
void TreeWriter<Sink>::pop() {
  levels.pop_back();
  if (holdings.size() > levels.size()) {
    holdings.pop_back();
  }
}

// Holds what is borrowed.
template <class Sink>
void TreeWriter<Sink>::holdAll() {
  while (holdings.size() < levels.size()) {
    holdings.push_back(holdingOf(levels[holdings.size()]));
  }
}

template <class Sink>
auto TreeWriter<Sink>::holdingOf(TreeLevel const& level) -> Holding {
  if (level.kind == TreeLevel::Tuple) {
    return {*level.key, *level.value, nullptr};
  }
  return {lvArg(*level.container), lvArg(), nullptr};
}

// ---- Writing what is open ----------------------------------------------------------------------

// Writes until no level is open any more; `written` is how the outermost value began.
template <class Sink>
int TreeWriter<Sink>::finish(Written written) {
  while (!levels.empty()) {
    written = written.value_or(0) < 0 ? abandon(*written) : writeNext();
  }
  return *written;
}

// Writes, or opens, the next part of the innermost level, or closes that.
template <class Sink>
auto TreeWriter<Sink>::writeNext() -> Written {
  switch (levels.back().kind) {
    case TreeLevel::Tuple:
      return writePart();
    case TreeLevel::HashMap:
      return writeEntry();
    case TreeLevel::Vector:
      return writeElement();
    case TreeLevel::Object:
      return writeField();
    case TreeLevel::OtherMap:
      return writeOtherEntry();
    default:
      return writeOtherElement();
  }
}

template <class Sink>
auto TreeWriter<Sink>::writePart() -> Written {
  TreeLevel& level = levels.back();
  bool const held = holdings.size() == levels.size();
  switch (level.next++) {
    case 0:
      return openValue(held ? holdings.back().first : *level.key);
    case 1:
      return openValue(held ? holdings.back().second : *level.value);
    default:
      return close();
  }
}

template <class Sink>
auto TreeWriter<Sink>::writeEntry() -> Written {
  lvrHashMap::HashEntry const* const entry = levels.back().entries.next();
  if (entry == nullptr) {
    return close();
  }
  Element key = entry->key;
  Element value = entry->value;
  return openTuple(key, value);
}

template <class Sink>
auto TreeWriter<Sink>::writeElement() -> Written {
  TreeLevel& level = levels.back();
  if (level.next == level.size) {
    return close();
  }
  Element element = static_cast<lvrVector const*>(level.container)->borrow(level.next++);
  return openValue(element);
}

template <class Sink>
auto TreeWriter<Sink>::writeField() -> Written {
  TreeLevel& level = levels.back();
  if (level.next == level.size) {
    return close();
  }
  lvArg const* const field = level.described->borrowField(*level.container, level.next++);
  if (field == nullptr) {
    sink.sourceError(lvArgDest::SOURCE_ERROR_FIELD_ACCESS);
    pop();  // It stays open in the sink.
    return SourceError;
  }
  if constexpr (!Sink::RunsProgram) {
    return openValue(*field);
  }
  lvArg element;
  element.assign(*field);  // Without the bits that the object keeps in the field.
  return openValue(element);
}

template <class Sink>
auto TreeWriter<Sink>::writeOtherEntry() -> Written {
  lviRealMapEnumerator* const cursor = holdings.back().cursor.get();
  if (cursor == nullptr || !cursor->next()) {
    return close();
  }
  lvArg const key = cursor->getKey();
  lvArg const value = cursor->getValue();
  Written const written = openTuple(key, value);
  holdAll();  // What has been opened must not borrow from these copies.
  return written;
}

template <class Sink>
auto TreeWriter<Sink>::writeOtherElement() -> Written {
  TreeLevel& level = levels.back();
  if (level.next == level.size) {
    return close();
  }
  lvArg const element = static_cast<lvrVector const*>(level.container)->at(level.next++);
  Written const written = openValue(element);
  holdAll();  // As above.
  return written;
}

// Gives the innermost level up, because a part of it failed with `status`.
template <class Sink>
auto TreeWriter<Sink>::abandon(int status) -> Written {
  sink.abortLevel();
  switch (levels.back().kind) {
    case TreeLevel::Tuple:
      pop();
      return status;
    case TreeLevel::Object:
      pop();
      return Failed;
    default:
      return close();  // Closed a second time, deliberately.
  }
}

template <class Sink>
auto TreeWriter<Sink>::close() -> Written {
  bool const isTuple = levels.back().kind == TreeLevel::Tuple;
  pop();
  int const status = sink.leave();
  return isTuple ? status : status < 0 ? Failed : 0;
}

template class TreeWriter<AnySink>;
template class TreeWriter<TextSink>;

}  // namespace tarselvalues
