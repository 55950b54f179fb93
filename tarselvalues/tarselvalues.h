// The whole library: values, containers, and their text.
//
//   core        cells, counted objects, strings (start with lvArg.h)
//   containers  maps, lists, stack (start with lviMap.h and lviList.h)
//   reflect     classes described at run time (start with lvClassBuilder.h)
//   serial      values to text and back (start with lvTools.h)
#pragma once

#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvListEnumerator.h"
#include "tarselvalues/containers/lvListIterator.h"
#include "tarselvalues/containers/lvListRWIterator.h"
#include "tarselvalues/containers/lvMapEnumerator.h"
#include "tarselvalues/containers/lvMapIterator.h"
#include "tarselvalues/containers/lvMapRWIterator.h"
#include "tarselvalues/containers/lvSortedList.h"
#include "tarselvalues/containers/lvSortedListEnumerator.h"
#include "tarselvalues/containers/lvSortedListIterator.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lviList.h"
#include "tarselvalues/containers/lviMap.h"
#include "tarselvalues/containers/lviSortedList.h"
#include "tarselvalues/containers/lviStack.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvValue.h"
#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvClassBuilder.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"
#include "tarselvalues/serial/lvArgDest.h"
#include "tarselvalues/serial/lvArgSource.h"
#include "tarselvalues/serial/lvTools.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"
