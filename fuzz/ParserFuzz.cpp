// A text read by the parser, and by its model: items, tokens, and both in turn with what else an
// owner may do, as the bytes of the text decide.

#include "fuzz/Fuzz.h"
#include "support/walks/ParserWalk.h"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::dieOnFailure();
  std::string const text = fuzz::textOf(data, size);
  test::ParserWalk(text).readAllArgs();
  test::ParserWalk(text).readAllTokens();
  test::ParserWalk walk(text);
  for (test::ByteChoices choices(data, size); !choices.areUsedUp();) {
    walk.takeStep(choices);
  }
  return 0;
}
