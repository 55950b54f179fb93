#include "tarselvalues/containers/lviList.h"

lviList::~lviList() = default;

lviRealListEnumerator::~lviRealListEnumerator() = default;
