// What class handles leave behind when there is no memory for the class.
#include <gtest/gtest.h>

#include <functional>
#include <new>

#include "support/Allocations.h"
#include "support/Cells.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::Allocations;

// Makes a handle while the first allocation fails.
void expectNothingStaysBehind(std::function<void()> const& makeHandle) {
  Allocations::reset();
  Allocations::instance().failAfter = 0;
  bool thrown = false;
  try {
    makeHandle();
  } catch (std::bad_alloc const&) {
    thrown = true;
  }
  Allocations::instance().failAfter = -1;
  EXPECT_TRUE(thrown);
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

TEST(ClassHandleMemory, ThatIsMissingLeavesNothingBehind) {
  lvArg const name = test::string("Point");
  lvClass const base;
  expectNothingStaysBehind([] { lvClass(); });
  expectNothingStaysBehind([&] { lvClass(0, name, nullptr); });
  expectNothingStaysBehind([&] { lvClass(0, name, base, nullptr); });
  EXPECT_EQ(test::countOf(name), 1);
  EXPECT_EQ(test::countOf(base), 1);
}

TEST(ClassHandleMemory, IsOneClassAndFreedWithTheHandle) {
  lvArg const name = test::string("Point");
  Allocations::reset();
  { lvClass(0, name, nullptr); }
  EXPECT_EQ(Allocations::instance().made, 1);
  EXPECT_EQ(Allocations::instance().lastSize, sizeof(lvrClass));
  EXPECT_EQ(Allocations::instance().alive(), 0);
}

}  // namespace
