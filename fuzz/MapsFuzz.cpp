// Operations on a map and its cursors, beside their model. The first byte says which map.

#include "fuzz/Fuzz.h"
#include "support/walks/HashMapWalk.h"
#include "support/walks/TupleSetWalk.h"

namespace {

void walkHashMap(test::ByteChoices& choices) {
  test::HashMapWalk walk(choices);
  bool const hasCursors = choices.oneIn(2);
  while (!choices.areUsedUp()) {
    walk.step();
    hasCursors ? walk.useACursor() : walk.compare();
  }
  walk.dropCursors();
  walk.compare();
}

void walkTupleSet(test::ByteChoices& choices) {
  test::TupleSetWalk walk(choices, choices.oneIn(2));
  while (!choices.areUsedUp()) {
    walk.changeSet();
    walk.moveCursor();
    walk.compare();
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  return fuzz::walkOneOf({walkHashMap, walkTupleSet}, data, size);
}
