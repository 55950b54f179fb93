// Threads that ask one class.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "support/StringTable.h"
#include "support/Together.h"
#include "tarselvalues/core/lvString.h"

namespace {

constexpr int Threads = 4;
constexpr int Rounds = 100;
constexpr int Names = 60;

// Of one hash, since the last byte of a long text does not count for it.
std::vector<std::string> namesOfOneHash() {
  std::vector<std::string> names;
  for (int i = 0; i < Names; ++i) {
    names.push_back(std::string("measurementOfChannel") + static_cast<char>('A' + i));
  }
  return names;
}

lvrClass& classWithFields(std::vector<std::string> const& names) {
  std::vector<char const*> pointers;
  for (std::string const& name : names) {
    pointers.push_back(name.c_str());
  }
  test::Words const entries(names.size());
  lvrClass& described = test::keptClass();
  described.setDirectObjectNamedOffsets(lvrClass::Fields, Names, entries.data(), pointers.data());
  return described;
}

TEST(ClassThreads, FindNamesOfOneHashWhileOtherStringsAreSetAnew) {
  std::vector<std::string> const names = namesOfOneHash();
  lvrClass const& described = classWithFields(names);
  test::runTogether(Threads, [&](int thread) {
    lvString const own(("own " + std::to_string(thread)).c_str());
    for (int round = 0; round < Rounds; ++round) {
      for (int i = 0; i < Names; ++i) {
        lvArg const name = test::string(names[static_cast<std::size_t>(i)]);
        ASSERT_EQ(described.localLookupIndex(lvrClass::Fields, name), i);
      }
      if (round % 10 == thread) {
        test::setAnew(own);
      }
    }
  });
}

}  // namespace
