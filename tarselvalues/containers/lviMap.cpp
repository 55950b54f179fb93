#include "tarselvalues/containers/lviMap.h"

lviMap::~lviMap() = default;

lviRealMapEnumerator::~lviRealMapEnumerator() = default;
