#include "tarselvalues/serial/lvrCommonSerializer.h"

#include <cstdio>
#include <utility>

#include "tarselvalues/containers/lvMapEnumerator.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"

namespace {

// Room for this many elements or buckets in what is read.
constexpr int FrameSizeHint = 6;

constexpr int FieldSizeHint = 8;

// Returns the class of that name; nil for an unknown one.
lvClass findClass(lvArg const& name) {
  return lvClass(lvtClassRegistry::getInstance()->getClass(name));
}

lvArg frameKind(lvArgDest::FrameKind kind) {
  lvArg cell;
  cell.setInt(kind);
  return cell;
}

}  // namespace

lvrCommonSerializer::lvrCommonSerializer() = default;

lvrCommonSerializer::~lvrCommonSerializer() = default;

lvString const& lvrCommonSerializer::getStaticClassDesc() {
  return tarselvalues::classKey(tarselvalues::ClassKey::CommonSerializer);
}

lvString const& lvrCommonSerializer::getClassDesc() const { return getStaticClassDesc(); }

int lvrCommonSerializer::finalize() { return 0; }

// ---- Writing -----------------------------------------------------------------------------------

int lvrCommonSerializer::serializeAtomInto(lvArgDest& dest, lvArg const& value) {
  switch (value.getType()) {
    case lvArg::IntType:
    case lvArg::PointerType:
    case lvArg::StringType:
      return dest.putArg(value);
    case lvArg::ObjectType:
      return serializeReferencableInto(dest, value);
    case lvArg::MapType:
      return serializeMapInto(dest, value);
    case lvArg::ListType:
      return serializeVectorInto(dest, value);
    default:
      return dest.putArg(lvArg::NilValue);
  }
}

int lvrCommonSerializer::serializeTupleInto(lvArgDest& dest, lvArg const& key, lvArg const& value) {
  int status = dest.enter(frameKind(lvArgDest::TupleFrame), 2);
  if (status != 0) {
    return status;
  }
  for (lvArg const* item : {&key, &value}) {
    status = serializeAtomInto(dest, *item);
    if (status < 0) {
      dest.abortLevel();
      return status;
    }
  }
  return dest.leave();
}

int lvrCommonSerializer::serializeMapInto(lvArgDest& dest, lvArg const& value) {
  auto const* const map = dynamic_cast<lviMap const*>(value.getReferencable());
  if (map == nullptr) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_NOT_A_MAP);
    return CS_ERR_SOURCE;
  }
  if (dest.enter(frameKind(lvArgDest::MapFrame), map->getSize()) != 0) {
    return CS_ERR_FAILED;
  }
  for (lvMapEnumerator entry(*map); entry->next();) {
    if (serializeTupleInto(dest, entry->getKey(), entry->getValue()) < 0) {
      dest.abortLevel();
      break;
    }
  }
  return dest.leave() < 0 ? CS_ERR_FAILED : 0;  // After abortLevel() too, deliberately.
}

int lvrCommonSerializer::serializeVectorInto(lvArgDest& dest, lvArg const& value) {
  auto const* const vector = dynamic_cast<lvrVector const*>(value.getReferencable());
  if (vector == nullptr) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_NOT_A_VECTOR);
    return CS_ERR_SOURCE;
  }
  int const size = vector->getSize();
  if (dest.enter(frameKind(lvArgDest::VectorFrame), size) != 0) {
    return CS_ERR_FAILED;
  }
  for (int i = 0; i < size; ++i) {
    if (serializeAtomInto(dest, vector->at(i)) < 0) {
      dest.abortLevel();
      break;
    }
  }
  return dest.leave() < 0 ? CS_ERR_FAILED : 0;  // After abortLevel() too, deliberately.
}

int lvrCommonSerializer::serializeReferencableInto(lvArgDest& dest, lvArg const& value) {
  lvReferencable const* const object = value.getReferencable();
  if (object == nullptr) {
    return dest.putArg(lvArg::NilValue);
  }
  lvArg const& key = object->getClassDesc();
  lvClass const described = key.isNil() ? lvClass(key) : findClass(key);
  lvrClass const* const descriptor = described.getClass();
  if (descriptor == nullptr) {
    dest.sourceError(lvArgDest::SOURCE_ERROR_NO_CLASS);
    return CS_ERR_SOURCE;
  }
  if (dest.enter(described, -1) < 0) {
    return CS_ERR_FAILED;
  }
  int const fields = descriptor->getNItems(lvrClass::Fields);
  if (fields == 0) {
    return 0;  // The level stays open, deliberately.
  }
  for (int i = 0; i < fields; ++i) {
    lvArg field;
    if (descriptor->getFieldAt(field, *object, lvrClass::Fields, i) != 0) {
      dest.sourceError(lvArgDest::SOURCE_ERROR_FIELD_ACCESS);
      return CS_ERR_SOURCE;
    }
    if (serializeAtomInto(dest, field) < 0) {
      dest.abortLevel();
      return CS_ERR_FAILED;
    }
  }
  return dest.leave() < 0 ? CS_ERR_FAILED : 0;
}

// ---- Reading -----------------------------------------------------------------------------------

int lvrCommonSerializer::deserializeInto(lvArg& out, lvArgSource& src) {
  lvVector items(FrameSizeHint);
  int const status = deserializeVectorContentsInto(items, src);
  if (status < 0) {
    return status;
  }
  out = std::move(items);
  return 0;
}

int lvrCommonSerializer::deserializeItemInto(lvArg& out, lvArgSource& src) {
  for (;;) {
    lvArg item;
    int const result = src.getArg(item);
    switch (result) {
      case lvArgSource::SOURCE_ITEM:
        out = std::move(item);
        return 0;
      case lvArgSource::SOURCE_FRAME_BEGIN: {
        lvArg frame;
        int const status = deserializeFrameInto(frame, src, item);
        if (status < 0) {
          return status;
        }
        out = std::move(frame);
        return 0;
      }
      case lvArgSource::SOURCE_FRAME_END:
      case lvArgSource::SOURCE_END:
        return result;
      default:
        break;  // Nothing was read.
    }
  }
}

int lvrCommonSerializer::deserializeFrameInto(lvArg& out, lvArgSource& src, lvArg const& kind) {
  if (kind.isNil()) {
    return CS_ERR_FAILED;
  }
  int status = CS_ERR_FAILED;
  lvArg frame;
  if (kind.getType() != lvArg::IntType) {
    status = deserializeReferencableContentsInto(frame, kind, src);
  } else if (kind.getInt() == lvArgDest::MapFrame) {
    lvHashMap map(FrameSizeHint);
    status = deserializeMapContentsInto(map, src);
    frame = std::move(map);
  } else if (kind.getInt() == lvArgDest::VectorFrame) {
    lvVector vector(FrameSizeHint);
    status = deserializeVectorContentsInto(vector, src);
    frame = std::move(vector);
  }
  if (status < 0) {
    return status;
  }
  out = std::move(frame);
  return 0;
}

int lvrCommonSerializer::deserializeTupleInto(lvArg& key, lvArg& value, lvArgSource& src) {
  key.setNil();
  int items = 0;
  for (;;) {
    lvArg item;
    int const status = deserializeItemInto(item, src);
    if (status == lvArgSource::SOURCE_FRAME_END || status == lvArgSource::SOURCE_END) {
      return 0;
    }
    if (status != 0) {
      continue;
    }
    if (items == 0) {
      key = std::move(item);
      value.setNil();
    } else if (items == 1) {
      value = std::move(item);
    }
    items = items < 2 ? items + 1 : items;
  }
}

int lvrCommonSerializer::deserializeMapContentsInto(lvHashMap& map, lvArgSource& src) {
  lviMap* const target = map.getMap();
  if (target == nullptr) {
    return CS_ERR_FAILED;
  }
  for (;;) {
    lvArg item;
    int const result = src.getArg(item);
    if (result == lvArgSource::SOURCE_FRAME_END) {
      return 0;
    }
    if (result == lvArgSource::SOURCE_END) {
      return result;
    }
    if (result != lvArgSource::SOURCE_FRAME_BEGIN) {
      continue;
    }
    if (item.getInt() != lvArgDest::TupleFrame) {
      return CS_ERR_FAILED;
    }
    lvArg key;
    lvArg value;
    deserializeTupleInto(key, value, src);
    target->put(key, value);
  }
}

int lvrCommonSerializer::deserializeVectorContentsInto(lvVector& vector, lvArgSource& src) {
  lviList* const target = vector.getList();
  if (target == nullptr) {
    return CS_ERR_FAILED;
  }
  for (;;) {
    lvArg item;
    int const status = deserializeItemInto(item, src);
    if (status == lvArgSource::SOURCE_FRAME_END) {
      return 0;
    }
    if (status == lvArgSource::SOURCE_END) {
      return status;
    }
    if (status == 0) {
      target->insert(item, -1);
    }
  }
}

int lvrCommonSerializer::deserializeReferencableContentsInto(lvArg& out, lvArg const& className,
                                                             lvArgSource& src) {
  lvClass const described = findClass(className);
  lvrClass const* const descriptor = described.getClass();
  if (descriptor == nullptr) {
    std::puts("CS_ERR_UNKNOWN_CLASS_KEY");
    return CS_ERR_UNKNOWN_CLASS_KEY;
  }
  lvReferencable* const made = descriptor->instantiateDefaultObject();
  if (made == nullptr) {
    std::puts("CS_ERR_NO_CLASS_CTOR");
    return CS_ERR_NO_CLASS_CTOR;
  }
  lvArg object(*made);
  lvVector values(FieldSizeHint);
  int const status = deserializeVectorContentsInto(values, src);
  if (status != 0) {
    std::printf("Unknown error: %d", status);
    return status;
  }
  for (int i = 0; i < values->getSize(); ++i) {
    if (descriptor->setFieldAt(*made, values->at(i), lvrClass::Fields, i) != 0) {
      std::puts("CS_ERR_REF_SETUP_ERROR");
      return CS_ERR_REF_SETUP_ERROR;
    }
  }
  out = std::move(object);
  return 0;
}
