// Calls of a text writer, beside its model.

#include "fuzz/Fuzz.h"
#include "support/walks/WriterWalk.h"

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  fuzz::dieOnFailure();
  test::ByteChoices choices(data, size);
  int const capacity = choices.below(4 * test::WriterWalk::SmallCapacity);
  int const nesting = choices.below(100);
  test::WriterWalk walk(choices, capacity, nesting);
  while (!choices.areUsedUp()) {
    EXPECT_TRUE(walk.step());
  }
  return 0;
}
