#include "ValueText.h"

#include <climits>
#include <new>

namespace {

constexpr int FirstCapacity = 4096;

// The most bytes that one byte of a string takes, and what stands around it: separator, star,
// quotes, bracket, NUL.
constexpr long long EscapedLength = 3;
constexpr long long AroundString = 6;

// A writer that remembers whether anything did not fit. The plain one does not tell when it cuts a
// string or leaves a class name out, and the serializer does not tell when a level failed but could
// be closed.
class FitWriter : public lvtStringArgDest {
 public:
  explicit FitWriter(std::string& buffer)
      : lvtStringArgDest(buffer.data(), static_cast<int>(buffer.size())), size(buffer.size()) {}

  bool fits() const { return allFits; }

  int enter(lvArg const& kind, int count) override {
    lvArg const className = lvClass(kind).getClassDesc();
    return check(fitsString(className) ? lvtStringArgDest::enter(kind, count) : ROOM_ERROR);
  }
  int leave() override { return check(lvtStringArgDest::leave()); }
  int putArg(lvArg const& value) override {
    return check(fitsString(value) ? lvtStringArgDest::putArg(value) : ROOM_ERROR);
  }

 private:
  // Whether there is room for the longest text of a string; what is no string is not its matter.
  bool fitsString(lvArg const& value) const {
    int length = 0;
    lvValue(value).getString(&length);
    auto const room = static_cast<long long>(size) - getStringLength();
    return room >= EscapedLength * length + AroundString;
  }

  int check(int status) {
    allFits = allFits && status == 0;
    return status;
  }

  std::size_t size;
  bool allFits = true;
};

}  // namespace

std::string valueText(lvrCommonSerializer& serializer, lvArg const& value) {
  for (int capacity = FirstCapacity; capacity <= INT_MAX / 2; capacity *= 2) {
    std::string buffer(static_cast<std::size_t>(capacity), '\0');
    FitWriter writer(buffer);
    serializer.serializeAtomInto(writer, value);
    if (writer.fits()) {
      buffer.resize(static_cast<std::size_t>(writer.getStringLength()));
      return buffer;
    }
  }
  throw std::bad_alloc();
}
