// What becomes of the class registry when memory runs out.
//
// The program is linked with --wrap for malloc, calloc, realloc and free. The registry of the
// process is only asked for in child processes, each of which makes it for the first time.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <new>

#include "support/Callocs.h"
#include "support/Registries.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::Mallocs;
using test::namesIn;
using test::OutOfMemory;
using Registry = std::unique_ptr<lvtClassRegistry>;

constexpr char const* AllNames = "Class DLList HashMap Stack String TupleSet Vector ";
constexpr int GrowthExitStatus = 13;

// Whether `action` ends with std::bad_alloc when no more than so many allocations succeed.
template <class Action>
bool failsAfter(int allocations, Action const& action) {
  OutOfMemory const without(allocations);
  try {
    action();
  } catch (std::bad_alloc const&) {
    return true;
  }
  return false;
}

TEST(ClassRegistryMemory, MissingForANewRegistryLeavesNothingBehind) {
  int failures = 0;
  int const before = Mallocs::alive;
  Registry registry;
  while (failsAfter(failures, [&] { registry = std::make_unique<lvtClassRegistry>(); })) {
    int const after = Mallocs::alive;
    EXPECT_EQ(after, before);
    ++failures;
  }
  EXPECT_EQ(failures, 3);  // The registry, its set, the room in it.
  registry.reset();
  int const after = Mallocs::alive;
  EXPECT_EQ(after, before);
}

TEST(ClassRegistryMemory, MissingForABuiltinClassKeepsThoseBeforeIt) {
  int const before = Mallocs::alive;
  for (int built = 0; built < 7; ++built) {
    Registry registry = std::make_unique<lvtClassRegistry>();
    EXPECT_TRUE(failsAfter(built, [&] { registry->addBuiltinClasses(); }));
    EXPECT_EQ(test::setOf(*registry).getSize(), built);
    registry->addBuiltinClasses();
    EXPECT_EQ(namesIn(*registry), AllNames);
    registry.reset();
    int const after = Mallocs::alive;
    EXPECT_EQ(after, before);
  }
}

// The first calls of a process: one fails, the next one completes the registry.
void getInstanceTwice(int allocations) {
  bool const failed = failsAfter(allocations, [] { lvtClassRegistry::getInstance(); });
  lvtClassRegistry* const registry = lvtClassRegistry::getInstance();
  bool const isWhole = namesIn(*registry) == AllNames;
  bool const isTheOne = lvtClassRegistry::getInstance() == registry;
  std::exit(failed && isWhole && isTheOne ? EXIT_SUCCESS : EXIT_FAILURE);
}

TEST(ClassRegistryMemory, MissingInTheFirstCallIsMadeUpForByTheNext) {
  for (int allocations = 0; allocations < 3 + 7; ++allocations) {
    EXPECT_EXIT(getInstanceTwice(allocations), testing::ExitedWithCode(EXIT_SUCCESS), "")
        << allocations;
  }
  EXPECT_EXIT(getInstanceTwice(3 + 7), testing::ExitedWithCode(EXIT_FAILURE), "");
}

lvtClassRegistry* askedFor = nullptr;

// A std::new_handler that finds memory, and asks for the registry that is being made just then.
void askForTheRegistry() {
  std::set_new_handler(nullptr);
  Mallocs::failAfter = Mallocs::Never;
  askedFor = lvtClassRegistry::getInstance();
}

void getInstanceWhileItIsMade(int allocations) {
  std::set_new_handler(askForTheRegistry);
  OutOfMemory const without(allocations);
  lvtClassRegistry* const registry = lvtClassRegistry::getInstance();
  bool const isWhole = namesIn(*registry) == AllNames;
  std::exit(isWhole && askedFor == registry ? EXIT_SUCCESS : EXIT_FAILURE);
}

TEST(ClassRegistryMemory, MissingMayBeFoundByAHandlerThatAsksForTheRegistry) {
  // The third allocation, of the room in the set, has no handler.
  for (int const allocations : {0, 1, 3, 4, 5, 6, 7, 8, 9}) {
    EXPECT_EXIT(getInstanceWhileItIsMade(allocations), testing::ExitedWithCode(EXIT_SUCCESS), "")
        << allocations;
  }
}

// Asks once more when all that the first call could have left to the exit handlers has run.
void getInstanceLate() {
  std::atexit([] {
    std::_Exit(namesIn(*lvtClassRegistry::getInstance()) == AllNames ? EXIT_SUCCESS : EXIT_FAILURE);
  });
  lvtClassRegistry::getInstance();
  std::exit(EXIT_FAILURE);
}

TEST(ClassRegistryMemory, OfTheOneRegistryIsStillThereInExitHandlers) {
  EXPECT_EXIT(getInstanceLate(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST(ClassRegistryMemory, MissingForTheNinthClassEndsTheProcess) {
  lvtClassRegistry registry;
  registry.addBuiltinClasses();
  lvClass const described;
  lvString const eighth("Point");
  lvString const ninth("Ball");
  {
    OutOfMemory const without;
    EXPECT_EQ(registry.putClass(eighth, described), 0);
    EXPECT_EQ(registry.putClass(eighth, described), -1);
  }
  EXPECT_EXIT(
      {
        OutOfMemory const without;
        registry.putClass(ninth, described);
      },
      testing::ExitedWithCode(GrowthExitStatus), "");
}

}  // namespace
