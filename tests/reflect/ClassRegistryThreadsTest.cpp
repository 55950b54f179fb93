// The only test of its program, so that the threads make the first call.

#include <gtest/gtest.h>

#include <array>

#include "support/Registries.h"
#include "support/Together.h"

namespace {

constexpr int Threads = 8;

// What one thread sees of the registry.
struct Seen {
  lvtClassRegistry* registry = nullptr;
  lvArg vectorClass;
  int classes = 0;
};

TEST(ClassRegistryThreads, GetOneFilledRegistryFromTheFirstCallOn) {
  std::array<Seen, Threads> seen;
  test::runTogether(Threads, [&seen](int i) {
    Seen& mine = seen.at(static_cast<std::size_t>(i));
    mine.registry = lvtClassRegistry::getInstance();
    mine.vectorClass = mine.registry->getClass(lvString("Vector"));
    mine.classes = test::setOf(*mine.registry).getSize();
  });
  for (Seen const& mine : seen) {
    EXPECT_EQ(mine.registry, seen[0].registry);
    EXPECT_EQ(mine.classes, 7);
    EXPECT_EQ(mine.vectorClass.getType(), lvArg::ClassType);
    EXPECT_TRUE(mine.vectorClass.eq(seen[0].vectorClass));
  }
  EXPECT_EQ(lvtClassRegistry::getInstance(), seen[0].registry);
  EXPECT_EQ(test::namesIn(*seen[0].registry), "Class DLList HashMap Stack String TupleSet Vector ");
}

}  // namespace
