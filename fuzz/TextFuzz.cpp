// A text to a value, to a text, and to a value again.

#include "fuzz/Fuzz.h"
#include "support/TextRoundTrip.h"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::dieOnFailure();
  test::registerClasses();
  std::string const text = fuzz::textOf(data, size);
  lvArg const value = test::readFrom(text);
  test::expectToComeBack(text, value);
  test::expectTheSameByTheConversionFunctions(text, value);
  test::Watched::log().clear();
  return 0;
}
