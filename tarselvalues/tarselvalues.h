// The whole library: values, containers, and their text.
//
//   core        cells, counted objects, strings (start with lvArg.h)
//   containers  maps, lists, stack (start with lviMap.h and lviList.h)
//   reflect     classes described at run time (start with lvClassBuilder.h)
//   serial      values to text and back (start with lvTools.h)
//
// Ownership: nothing that cells and handles hold is freed by hand. Headers use fixed words for
//            references: who takes one adds to the count, who drops one takes from it, who hands
//            one over leaves the count alone; what is borrowed is good until the named change.
// Threads:   each function is for any thread (any number of threads may be in it at once, on the
//            same object), for one thread at a time (a thread that is in it has the object to
//            itself, with what the class names), or to be called before threads start that use the
//            object.
// Errors:    answers, never exceptions of the library's own: 0 or a negative number, nil, false.
// Limits:    a vector and a stack hold 65,535 elements and refuse the next; a map that is read from
//            text has six buckets, whatever it had.
// Pages:     README.md of the manual leads to more: docs/ownership-and-threads.md has who frees what
//            and what threads may share, docs/containers.md the limits, docs/oddities.md what looks
//            like a mistake and is meant.
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
#include "tarselvalues/core/lvVersion.h"
#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/reflect/lvClass.h"
#include "tarselvalues/reflect/lvClassBuilder.h"
#include "tarselvalues/reflect/lvWalk.h"
#include "tarselvalues/reflect/lvrClass.h"
#include "tarselvalues/reflect/lvtClassRegistry.h"
#include "tarselvalues/serial/lvArgDest.h"
#include "tarselvalues/serial/lvArgSource.h"
#include "tarselvalues/serial/lvTools.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"
