// Containers of different threads, and cursors that different threads make.

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/Objects.h"
#include "support/Together.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using test::countOf;
using test::Held;
using test::integer;

constexpr int Rounds = 300;
constexpr int Keys = 8;

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

// A map with texts for keys finds them by an index, which goes whenever any such text changes, be
// it a key of another map.
TEST_P(ContainersOfThreads, FindTheirKeysWhileOtherThreadsSetKeysAnew) {
  std::vector<lvArg> keys;
  for (int i = 0; i < Rounds; ++i) {
    keys.push_back(test::string("key " + std::to_string(i)));
  }
  test::runTogether(threads(), [&](int thread) {
    Held<lvrHashMap> const map(3U);
    lvArg const own = test::string("own");
    map->put(own, integer(-1));
    for (int i = 0; i < Rounds; ++i) {
      map->put(keys[static_cast<std::size_t>(i)], integer(i));
    }
    for (int i = 0; i < 40 * Rounds; ++i) {
      ASSERT_EQ(map->get(keys[static_cast<std::size_t>(i % Rounds)]).getInt(), i % Rounds);
      if (i % (4 * Rounds) == thread * Rounds) {
        static_cast<lvrString&>(*own.getReferencable())
            .setStringData(std::to_string(i).c_str(), -1, lvrString::CopyAndOwn);
      }
    }
  });
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

// A string that equals others with the same rank.
class Key : public lvrString {
 public:
  explicit Key(int rank) : rank_(rank) {}

  unsigned int hashCode() const override { return static_cast<unsigned>(rank_); }
  int equiv(lvReferencable const& other) const override { return compareTo(other) == 0 ? 1 : 0; }
  int compareTo(lvReferencable const& other) const override {
    return rank_ - dynamic_cast<Key const&>(other).rank_;
  }

 private:
  int const rank_;
};

std::vector<lvArg> newKeys() {
  std::vector<lvArg> keys;
  for (int rank = 0; rank < Keys; ++rank) {
    keys.emplace_back(*new Key(rank));
  }
  return keys;
}

// Each key under its rank.
template <class Map>
void fill(Map& map, std::vector<lvArg> const& keys) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    map.put(keys[i], integer(static_cast<int>(i)));
  }
}

TEST_P(ContainersOfThreads, HashAndCompareTheSameKeys) {
  std::vector<lvArg> const keys = newKeys();
  std::vector<lvArg> const equalKeys = newKeys();
  test::runTogether(threads(), [&](int /*thread*/) {
    Held<lvrHashMap> const map(3U);
    fill(*map, keys);
    Held<lvrTupleSet> const set(Keys, 1U, 0U);
    fill(*set, keys);
    for (int i = 0; i < Rounds; ++i) {
      int const rank = i % Keys;
      lvArg const& searched = equalKeys[static_cast<std::size_t>(rank)];
      ASSERT_EQ(map->get(searched).getInt(), rank);
      ASSERT_EQ(set->get(searched).getInt(), rank);
    }
  });
  for (int rank = 0; rank < Keys; ++rank) {
    EXPECT_EQ(countOf(keys[static_cast<std::size_t>(rank)]), 1) << rank;
    EXPECT_EQ(countOf(equalKeys[static_cast<std::size_t>(rank)]), 1) << rank;
  }
}

INSTANTIATE_TEST_SUITE_P(Threads, ContainersOfThreads, ::testing::Values(1, 4));

}  // namespace
