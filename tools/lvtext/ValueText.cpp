#include "ValueText.h"

#include <tarselvalues/serial/lvText.h>

#include <climits>
#include <new>

namespace {

constexpr std::size_t FirstCapacity = 256;
constexpr char EscapedBackslash[] = "%5C";

// Puts an entry into empty maps.
class Writer : public tarselvalues::FitWriter {
 public:
  using FitWriter::FitWriter;

  int enter(lvArg const& kind, int count) override {
    int const status = FitWriter::enter(kind, count);
    if (status != 0 || count != 0 || kind.equiv(kindOf(MapFrame)) == 0) {
      return status;
    }
    return FitWriter::enter(kindOf(TupleFrame), 0) == 0 ? FitWriter::leave() : ROOM_ERROR;
  }

 private:
  static lvArg kindOf(FrameKind frame) {
    lvArg kind;
    kind.setInt(frame);
    return kind;
  }
};

// A backslash that was written always stands for itself.
std::string withoutBackslashes(std::string const& text) {
  std::string result;
  result.reserve(text.size());
  for (char const c : text) {
    c == '\\' ? result.append(EscapedBackslash) : result.append(1, c);
  }
  return result;
}

}  // namespace

std::string valueText(lvArg const& value) {
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  for (std::size_t capacity = FirstCapacity; capacity <= INT_MAX / 2; capacity *= 2) {
    std::string text(capacity, '\0');
    Writer writer(text);
    serializer->serializeAtomInto(writer, value);
    if (writer.fits()) {
      text.resize(static_cast<std::size_t>(writer.getStringLength()));
      return withoutBackslashes(text);
    }
  }
  throw std::bad_alloc();
}
