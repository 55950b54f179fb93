// Operations on a list and its cursors, beside their model. The first byte says which list.

#include "fuzz/Fuzz.h"
#include "support/walks/LinkedListWalk.h"
#include "support/walks/SortedListWalk.h"
#include "support/walks/StackWalk.h"
#include "support/walks/VectorWalk.h"

namespace {

void walkVector(test::ByteChoices& choices) {
  test::VectorWalk walk(choices);
  while (!choices.areUsedUp()) {
    walk.step();
    walk.compare();
    walk.moveCursor();
  }
}

void walkStack(test::ByteChoices& choices) {
  test::StackWalk walk(choices);
  while (!choices.areUsedUp()) {
    walk.step();
    walk.compare();
  }
}

void walkLinkedList(test::ByteChoices& choices) {
  test::LinkedListWalk walk(choices);
  while (!choices.areUsedUp()) {
    walk.step();
    walk.compare();
    walk.compareCursors();
  }
}

void walkSortedList(test::ByteChoices& choices) {
  test::SortedListWalk walk(choices,
                            choices.oneIn(2) ? test::WithDuplicates : test::WithoutDuplicates);
  while (!choices.areUsedUp()) {
    walk.step();
    walk.compare();
    walk.moveCursors();
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  return fuzz::walkOneOf({walkVector, walkStack, walkLinkedList, walkSortedList}, data, size);
}
