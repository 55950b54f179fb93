#include "support/MapContract.h"

#include <gtest/gtest.h>

namespace {

lvArg newHashMap() { return *lvrHashMap::defaultCtorMethod(); }
lvArg newHashMapOfOneChain() { return lvHashMap(1); }
lvArg newHashMapOfManyBuckets() { return lvHashMap(100000); }

INSTANTIATE_TEST_SUITE_P(OfTheLibrary, MapContract,
                         ::testing::Values(test::MapMaker{"HashMap", &newHashMap, false},
                                           test::MapMaker{"OneChain", &newHashMapOfOneChain, false},
                                           test::MapMaker{"ManyBuckets", &newHashMapOfManyBuckets,
                                                          false}),
                         test::nameOfMap);

}  // namespace
