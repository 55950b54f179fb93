// Texts of any length: writing into a buffer of your own, and reading one value after the other.

#include <tarselvalues/tarselvalues.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int Capacity = 1 << 20;

// The text of a value, if the buffer has room for it.
std::string textOf(lvrCommonSerializer& serializer, lvArg const& value) {
  std::vector<char> buffer(Capacity);
  lvtStringArgDest writer(buffer.data(), Capacity);
  serializer.serializeAtomInto(writer, value);
  writer.terminate();
  return buffer.data();
}

}  // namespace

int main() {
  // A cell holds the serializer, which goes with it.
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);

  // Several values in one text.
  lvtStringArgSource source("{1,2}, \"pump room\", {(port=502)}", -1);
  lvArg value;
  while (serializer->deserializeItemInto(value, source) == 0) {
    std::puts(textOf(*serializer, value).c_str());
  }
  std::printf("%d tokens skipped\n", source.getErrorCount());

  // A text of more than the 4089 characters that lvToolsToString() has room for.
  lvVector measured(10000);
  for (int i = 0; i < 10000; ++i) {
    measured->insert(lvString("measured"), -1);
  }
  std::printf("%d characters\n", static_cast<int>(textOf(*serializer, measured).size()));
  std::printf("%d characters\n", lvToolsToString(measured).length());
}
