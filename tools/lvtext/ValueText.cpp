#include "ValueText.h"

#include <climits>
#include <new>
#include <string_view>

namespace {

constexpr int FirstCapacity = 256;
constexpr char EscapedBackslash[] = "%5C";

// Puts an entry into empty maps.
class Writer : public lvtStringArgDest {
 public:
  using lvtStringArgDest::lvtStringArgDest;

  int enter(lvArg const& kind, int count) override {
    int const status = lvtStringArgDest::enter(kind, count);
    if (status != 0 || count != 0 || kind.equiv(kindOf(MapFrame)) == 0) {
      return status;
    }
    return lvtStringArgDest::enter(kindOf(TupleFrame), 0) == 0 ? leave() : ROOM_ERROR;
  }

 private:
  static lvArg kindOf(FrameKind frame) {
    lvArg kind;
    kind.setInt(frame);
    return kind;
  }
};

// A backslash that was written always stands for itself.
std::string withoutBackslashes(std::string_view text) {
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
  for (int capacity = FirstCapacity; capacity <= INT_MAX / 2; capacity *= 2) {
    Writer writer(nullptr, capacity);
    serializer->serializeAtomInto(writer, value);
    if (writer.hasFitted()) {
      return withoutBackslashes(
          {writer.getStringData(), static_cast<std::size_t>(writer.getStringLength())});
    }
  }
  throw std::bad_alloc();
}
