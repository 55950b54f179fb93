// The only test of its program, so that no other one asks for the registry before it.

#include <gtest/gtest.h>

#include "support/Registries.h"

namespace {

TEST(ClassRegistryInAFreshProcess, IsFilledOnceByTheFirstCall) {
  lvtClassRegistry* const registry = lvtClassRegistry::getInstance();
  EXPECT_EQ(test::namesIn(*registry), "Class DLList HashMap Stack String TupleSet Vector ");
  lvArg const described = registry->getClass(lvString("Vector"));
  EXPECT_EQ(lvtClassRegistry::getInstance(), registry);
  EXPECT_EQ(test::namesIn(*registry), "Class DLList HashMap Stack String TupleSet Vector ");
  EXPECT_TRUE(registry->getClass(lvString("Vector")).eq(described));
  EXPECT_EQ(test::countOf(described), 2);
}

}  // namespace
