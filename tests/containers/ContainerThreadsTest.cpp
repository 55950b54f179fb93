// Containers of different threads, and cursors that different threads make.

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Together.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using test::countOf;
using test::Held;
using test::integer;

constexpr int Rounds = 300;

// The number of threads; with 1 the same work runs without any.
class ContainersOfThreads : public ::testing::TestWithParam<int> {
 protected:
  int threads() const { return GetParam(); }

  lvArg shared = test::string("shared");
};

TEST_P(ContainersOfThreads, AreIndependentThoughMapsTakeTurnsTogether) {
  std::vector<Held<lvrHashMap>> maps;
  for (int i = 0; i < threads(); ++i) {
    maps.emplace_back(3U);
  }
  test::runTogether(threads(), [&](int thread) {
    Held<lvrHashMap> const& map = maps[static_cast<std::size_t>(thread)];
    for (int i = 0; i < Rounds; ++i) {
      map->put(integer(i), shared);
    }
  });
  for (Held<lvrHashMap> const& map : maps) {
    EXPECT_EQ(map->getSize(), Rounds);
    for (int i = 0; i < Rounds; ++i) {
      ASSERT_TRUE(map->get(integer(i)).eq(shared)) << i;
    }
  }
  EXPECT_EQ(countOf(shared), 1 + threads() * Rounds);
}

TEST_P(ContainersOfThreads, ShareTheirElements) {
  test::runTogether(threads(), [&](int /*thread*/) {
    Held<lvrVector> const vector(0);
    for (int i = 0; i < Rounds; ++i) {
      vector->insert(shared, i / 2);
    }
    vector->remove(shared);
    EXPECT_EQ(vector->getSize(), Rounds - 1);
  });
  EXPECT_EQ(countOf(shared), 1);
}

TEST_P(ContainersOfThreads, FindTheFirstOrTheLastElementThoughLinkedListsTakeTurnsTogether) {
  test::runTogether(threads(), [&](int /*thread*/) {
    Held<lvrDLList> const list;
    for (int const value : {1, 2, 3, 1}) {
      list->insert(integer(value), -1);
    }
    for (int i = 0; i < Rounds; ++i) {
      int const position = list->getElementPos(integer(1));
      ASSERT_TRUE(position == 0 || position == 3) << position;
      ASSERT_EQ(list->getElementPos(integer(2)), 1);
      ASSERT_EQ(list->getElementPos(integer(4)), -1);
    }
  });
}

TEST_P(ContainersOfThreads, CountTheCursorsOfAllThreads) {
  Held<lvrHashMap> const map(3U);
  Held<lvrVector> const vector(3);
  Held<lvrDLList> const list;
  test::runTogether(threads(), [&](int /*thread*/) {
    for (int i = 0; i < Rounds; ++i) {
      std::unique_ptr<lviRealMapEnumerator> const mapCursor(map->getEnumerator());
      std::unique_ptr<lviRealListEnumerator> const vectorCursor(vector->getListEnumerator());
      std::unique_ptr<lviRealListEnumerator> const listCursor(list->getListEnumerator());
    }
  });
  EXPECT_EQ(countOf(*map), 1);
  EXPECT_EQ(countOf(*vector), 1);
  EXPECT_EQ(countOf(*list), 1);
}

INSTANTIATE_TEST_SUITE_P(Threads, ContainersOfThreads, ::testing::Values(1, 4));

}  // namespace
