#include "tarselvalues/serial/lvrCommonSerializer.h"

#include <typeinfo>
#include <utility>

#include "tarselvalues/core/ClassKeys.h"
#include "tarselvalues/core/Tuning.h"
#include "tarselvalues/serial/AnySink.h"
#include "tarselvalues/serial/TextSink.h"
#include "tarselvalues/serial/TreeReader.h"
#include "tarselvalues/serial/TreeWriter.h"

using tarselvalues::AnySink;
using tarselvalues::TextSink;
using tarselvalues::TreeReader;
using tarselvalues::TreeWriter;

namespace {

// Calls `write` with a writer to the sink. A text writer of that very class is written to without
// virtual calls, which makes no difference to the text.
template <class Write>
int writeTo(lvArgDest& dest, Write write) {
  if (tarselvalues::Tuned && typeid(dest) == typeid(lvtStringArgDest)) {
    TreeWriter<TextSink> writer(static_cast<lvtStringArgDest&>(dest));
    return write(writer);
  }
  TreeWriter<AnySink> writer(dest);
  return write(writer);
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
  return writeTo(dest, [&](auto& writer) { return writer.writeValue(value); });
}

int lvrCommonSerializer::serializeTupleInto(lvArgDest& dest, lvArg const& key, lvArg const& value) {
  return writeTo(dest, [&](auto& writer) { return writer.writeTuple(key, value); });
}

int lvrCommonSerializer::serializeMapInto(lvArgDest& dest, lvArg const& value) {
  return writeTo(dest, [&](auto& writer) { return writer.writeMap(value); });
}

int lvrCommonSerializer::serializeVectorInto(lvArgDest& dest, lvArg const& value) {
  return writeTo(dest, [&](auto& writer) { return writer.writeVector(value); });
}

int lvrCommonSerializer::serializeReferencableInto(lvArgDest& dest, lvArg const& value) {
  return writeTo(dest, [&](auto& writer) { return writer.writeObject(value); });
}

// ---- Reading -----------------------------------------------------------------------------------

int lvrCommonSerializer::deserializeInto(lvArg& out, lvArgSource& src) {
  lvVector items(tarselvalues::FrameSizeHint);
  TreeReader(src).readVectorContents(items);  // Into a vector of its own that never fails.
  out = std::move(items);
  return 0;
}

int lvrCommonSerializer::deserializeItemInto(lvArg& out, lvArgSource& src) {
  return TreeReader(src).readItem(out);
}

int lvrCommonSerializer::deserializeFrameInto(lvArg& out, lvArgSource& src, lvArg const& kind) {
  return TreeReader(src).readFrame(out, kind);
}

int lvrCommonSerializer::deserializeTupleInto(lvArg& key, lvArg& value, lvArgSource& src) {
  return TreeReader(src).readTuple(key, value);
}

int lvrCommonSerializer::deserializeMapContentsInto(lvHashMap& map, lvArgSource& src) {
  return TreeReader(src).readMapContents(map);
}

int lvrCommonSerializer::deserializeVectorContentsInto(lvVector& vector, lvArgSource& src) {
  return TreeReader(src).readVectorContents(vector);
}

int lvrCommonSerializer::deserializeReferencableContentsInto(lvArg& out, lvArg const& className,
                                                             lvArgSource& src) {
  return TreeReader(src).readObjectContents(out, className);
}
