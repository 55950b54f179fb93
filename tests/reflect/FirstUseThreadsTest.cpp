// The first use of the string table, the class keys and the registry, by several threads at once,
// in many processes: before the library's own initialisers have run.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "support/ProgramChecks.h"
#include "support/Registries.h"
#include "support/StringTable.h"
#include "support/Together.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

constexpr int Threads = 5;
constexpr int Processes = 40;

// What a process ends with.
enum ExitStatus { Sound = 0, Unsound = 1, TooLate = 2 };

// How many processes ended with which status. Filled before any initialiser of the program runs.
std::array<int, 3> endedWith;
int brokenOff = 0;

// What one thread gets.
struct Got {
  lvString::HashTable* table = nullptr;
  lvtClassRegistry* registry = nullptr;
  lvString const* baseKey = nullptr;
  lvString const* listKey = nullptr;
  lvReferencable* vectorKey = nullptr;
  lvArg vectorClass;
  lvString text;
  lvString number;
};

// Uses one of the things that there are to be used first.
void use(int which, Got& got) {
  switch (which) {
    case 0:
      got.table = lvString::getHashTable();
      break;
    case 1:
      got.text = lvString("a text");
      break;
    case 2:
      got.baseKey = &lvReferencable::getStaticClassDesc();
      break;
    case 3:
      got.listKey = &lvrSortedArrayList::getStaticClassDesc();
      got.vectorKey = lvrVector::getStaticClassDesc().getReferencable();
      break;
    default:
      got.registry = lvtClassRegistry::getInstance();
      got.vectorClass = got.registry->getClass(lvString("Vector"));
      got.number = lvToolsToString(test::integer(17));
      break;
  }
}

void checkAlike(Got const& got, Got const& other) {
  LV_CHECK(got.table == other.table, "table");
  LV_CHECK(got.registry == other.registry, "registry");
  LV_CHECK(got.baseKey == other.baseKey, "key of the base");
  LV_CHECK(got.listKey == other.listKey, "key of the list");
  LV_CHECK(got.vectorKey == other.vectorKey, "key of the vector");
  LV_CHECK(got.vectorClass.eq(other.vectorClass), "class of the vector");
  LV_CHECK(got.text.eq(other.text), "text");
  LV_CHECK(got.number.eq(other.number), "number");
}

// Every thread uses everything, beginning with something of its own.
void useTogether(int offset) {
  std::array<Got, Threads> got;
  test::runTogether(Threads, [&](int thread) {
    for (int i = 0; i < 5; ++i) {
      use((thread + i + offset) % 5, got.at(static_cast<std::size_t>(thread)));
    }
  });
  for (Got const& each : got) {
    checkAlike(each, got[0]);
  }
  LV_CHECK(got[0].vectorClass.getType() == lvArg::ClassType, "class of the vector");
  LV_CHECK(test::namesIn(*got[0].registry) == "Class DLList HashMap Stack String TupleSet Vector ",
           "registry");
  LV_CHECK(test::countOf(*got[0].baseKey) == 1, "key of the base");
  LV_CHECK(test::countOf(*got[0].listKey) == 1, "key of the list");
  LV_CHECK(test::countOf(got[0].text) == Threads, "text");
  // The keys, which are also the names of the registered classes, that of the base, and two more.
  LV_CHECK(test::entryCount() == 9 + 1 + 2, "entries");
}

// What a process does. Its result is its exit status; nothing of it is released.
[[noreturn]] void runProcess(int number) {
  if (number == 0) {
    _exit(test::entryCount() == 0 ? Sound : TooLate);
  }
  useTogether(number);
  _exit(test::failedChecks == 0 ? Sound : Unsound);
}

// Ahead of all initialisers of the program, those of the library that is linked into it included.
__attribute__((constructor(101))) void runProcesses() {
  for (int number = 0; number < Processes; ++number) {
    pid_t const process = fork();
    if (process == 0) {
      runProcess(number);
    }
    int status = -1;
    bool const ended = process > 0 && waitpid(process, &status, 0) == process && WIFEXITED(status);
    if (ended && WEXITSTATUS(status) <= TooLate) {
      ++endedWith.at(static_cast<std::size_t>(WEXITSTATUS(status)));
    } else {
      ++brokenOff;
    }
  }
}

TEST(FirstUse, ByManyThreadsMakesEverythingOnce) {
  EXPECT_EQ(endedWith[TooLate], 0) << "the library was initialised before";
  EXPECT_EQ(endedWith[Unsound], 0);
  EXPECT_EQ(brokenOff, 0);
  EXPECT_EQ(endedWith[Sound], Processes);
}

}  // namespace
