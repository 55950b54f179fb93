#include "support/ListContract.h"

#include <gtest/gtest.h>

#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

lvArg newVector() { return *lvrVector::defaultCtorMethod(); }
lvArg newVectorOfNoRoom() { return lvVector(0); }
lvArg newVectorOfNoArray() { return lvVector(-1); }
lvArg newLinkedList() { return *lvrDLList::defaultCtorMethod(); }

INSTANTIATE_TEST_SUITE_P(OfTheLibrary, ListContract,
                         ::testing::Values(test::ListMaker{"Vector", &newVector, false},
                                           test::ListMaker{"NoRoom", &newVectorOfNoRoom, false},
                                           test::ListMaker{"NoArray", &newVectorOfNoArray, false},
                                           test::ListMaker{"LinkedList", &newLinkedList, true}),
                         test::nameOfList);

}  // namespace
