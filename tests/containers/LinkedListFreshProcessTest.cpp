// The only test of its program, so that no other one searches a linked list before it.

#include <gtest/gtest.h>

#include "support/Nodes.h"

namespace {

TEST(LinkedListInAFreshProcess, IsSearchedFromTheHeadFirstAndThenFromTheTail) {
  test::LinkedList const list{1, 2, 1};
  EXPECT_EQ(list->getElementPos(test::integer(1)), 0);
  EXPECT_EQ(list->getElementPos(test::integer(1)), 2);
  EXPECT_EQ(list->getElementPos(test::integer(1)), 0);
  EXPECT_EQ(list->remove(test::integer(1)), 0);
  EXPECT_EQ(test::forward(*list), "1 2 ");
}

}  // namespace
