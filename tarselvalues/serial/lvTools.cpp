#include "tarselvalues/serial/lvTools.h"

#include <algorithm>
#include <cstdlib>
#include <memory>

#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

constexpr int BufferSize = 4090;

// A serializer for one call, held by a cell.
class OwnSerializer {
 public:
  OwnSerializer() : serializer(new lvrCommonSerializer), cell(*serializer) {}
  lvrCommonSerializer* operator->() const { return serializer; }

 private:
  lvrCommonSerializer* serializer;
  lvArg cell;
};

}  // namespace

lvString lvToolsToString(lvArg const& value) {
  std::unique_ptr<char, void (*)(void*)> buffer(static_cast<char*>(std::malloc(BufferSize)),
                                                std::free);
  if (buffer == nullptr) {
    return {lvArg::NilValue};
  }
  lvtStringArgDest writer(buffer.get(), BufferSize);
  OwnSerializer const serializer;
  serializer->serializeAtomInto(writer, value);
  int const length = std::min(writer.getStringLength(), BufferSize - 1);
  return lvString::internBuffer(buffer.release(), length);
}

lvArg lvToolsFromString(lvString const& text, int& consumed) {
  lvArg result;
  lvtStringArgSource parser(text, text.length());
  OwnSerializer const serializer;
  serializer->deserializeItemInto(result, parser);
  consumed = parser.getParseOffset();
  return result;
}
