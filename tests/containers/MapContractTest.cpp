#include "support/MapContract.h"

#include <gtest/gtest.h>

#include "tarselvalues/containers/lvrTupleSet.h"

namespace {

lvArg newHashMap() { return *lvrHashMap::defaultCtorMethod(); }
lvArg newHashMapOfOneChain() { return lvHashMap(1); }
lvArg newHashMapOfManyBuckets() { return lvHashMap(100000); }
lvArg newTupleSet() { return *lvrTupleSet::defaultCtorMethod(); }
lvArg newTupleSetThatGrowsByOne() { return *new lvrTupleSet(-1, 0, 0); }

INSTANTIATE_TEST_SUITE_P(
    OfTheLibrary, MapContract,
    ::testing::Values(test::MapMaker{"HashMap", &newHashMap, false},
                      test::MapMaker{"OneChain", &newHashMapOfOneChain, false},
                      test::MapMaker{"ManyBuckets", &newHashMapOfManyBuckets, false},
                      test::MapMaker{"TupleSet", &newTupleSet, true},
                      test::MapMaker{"TupleSetThatGrowsByOne", &newTupleSetThatGrowsByOne, true}),
    test::nameOfMap);

}  // namespace
