// The layout and the numbers that compiled programs and debugger scripts rely on.

#include <climits>

#include "tarselvalues/containers/LayoutAccess.h"
#include "tarselvalues/containers/lvHashMap.h"
#include "tarselvalues/containers/lvListRWIterator.h"
#include "tarselvalues/containers/lvMapRWIterator.h"
#include "tarselvalues/containers/lvSortedList.h"
#include "tarselvalues/containers/lvVector.h"

namespace {

using Map = lvLayoutAccess<lvrHashMap>;
using Entry = lvLayoutAccess<lvrHashMap::HashEntry>;
using MapLogic = lvLayoutAccess<lvrHashMap::IteratorLogic>;
using MapCursor = lvLayoutAccess<lvrHashMap::RealEnumerator>;
using Vector = lvLayoutAccess<lvrVector>;
using Set = lvLayoutAccess<lvrTupleSet>;
using SetLogic = lvLayoutAccess<lvrTupleSet::IteratorLogic>;
using Stack = lvLayoutAccess<lvrStack>;
using List = lvLayoutAccess<lvrDLList>;
using ListLogic = lvLayoutAccess<lvrDLList::IteratorLogic>;
using Sorted = lvLayoutAccess<lvrSortedArrayList>;
using SortedLogic = lvLayoutAccess<lvrSortedArrayList::BaseEnumerator>;
using VectorCursor = lvLayoutAccess<lvrVector::RealEnumerator>;

constexpr std::size_t pointerSize = sizeof(void*);
constexpr bool isIlp32 = pointerSize == 4;

static_assert(sizeof(lvHashMap) == sizeof(lvArg) && sizeof(lvVector) == sizeof(lvArg) &&
                  sizeof(lvSortedList) == sizeof(lvArg),
              "handles are passed where cells are taken");
static_assert(sizeof(lvMapRWIterator) == pointerSize && sizeof(lvListRWIterator) == pointerSize,
              "a cursor handle is one pointer");

// On every target: the fields in their order, behind both bases.
static_assert(Map::countOffset == sizeof(lvReferencable) + pointerSize);
static_assert(Map::hashSizeOffset == Map::countOffset + 4);
static_assert(Map::bucketsOffset == Map::countOffset + 8);
static_assert(Map::spareEntryOffset == Map::bucketsOffset + pointerSize);
static_assert(Map::hashSumOffset == Map::bucketsOffset + 2 * pointerSize);
static_assert(Entry::keyOffset == 0 && Entry::valueOffset == sizeof(lvArg) &&
              Entry::nextOffset == 2 * sizeof(lvArg));
static_assert(MapLogic::currentOffset == 0 && MapLogic::bucketOffset == pointerSize &&
              MapLogic::visitedOffset == pointerSize + 4 && MapLogic::mapOffset == pointerSize + 8);
static_assert(MapCursor::logicOffset == pointerSize);
static_assert(Vector::elementsOffset == sizeof(lvReferencable) + pointerSize);
static_assert(Vector::allocedOffset == Vector::elementsOffset + pointerSize);
static_assert(Vector::startOffset == Vector::allocedOffset + 2);
static_assert(Vector::countOffset == Vector::allocedOffset + 4);
static_assert(Vector::flagsOffset == Vector::allocedOffset + 6);
static_assert(Vector::hashCacheOffset == Vector::allocedOffset + 8);
static_assert(VectorCursor::positionOffset == pointerSize &&
              VectorCursor::vectorOffset == 2 * pointerSize);

static_assert(Set::entriesOffset == sizeof(lvReferencable) + pointerSize);
static_assert(Set::countOffset == Set::entriesOffset + pointerSize);
static_assert(Set::allocatedOffset == Set::countOffset + 4);
static_assert(sizeof(lvrTupleSet::Pair) == 2 * sizeof(lvArg));
static_assert(SetLogic::setOffset == 0 && SetLogic::currentOffset == pointerSize &&
              SetLogic::indexOffset == 2 * pointerSize);
static_assert(Stack::elementsOffset == sizeof(lvReferencable) + pointerSize);
static_assert(Stack::allocedOffset == Stack::elementsOffset + pointerSize);
static_assert(Stack::countOffset == Stack::allocedOffset + 2);
static_assert(Stack::flagsOffset == Stack::allocedOffset + 4);
static_assert(Stack::hashCacheOffset == Stack::allocedOffset + 8);
static_assert(List::headOffset > List::countOffset &&
              List::tailOffset == List::headOffset + pointerSize);
static_assert(offsetof(lvrDLList::lvrDLListNode, value) == 0 &&
              offsetof(lvrDLList::lvrDLListNode, next) == sizeof(lvArg) &&
              offsetof(lvrDLList::lvrDLListNode, prev) == sizeof(lvArg) + pointerSize);
static_assert(ListLogic::listOffset == 0 && ListLogic::nodeOffset == pointerSize &&
              ListLogic::invalidOffset == 2 * pointerSize &&
              ListLogic::indexOffset == 2 * pointerSize + 4);
static_assert(Sorted::arrayOffset == sizeof(lvReferencable) &&
              Sorted::countOffset == Sorted::arrayOffset + pointerSize &&
              Sorted::capacityOffset == Sorted::countOffset + 4);
static_assert(SortedLogic::arrayOffset == 0 && SortedLogic::currentOffset == pointerSize &&
              SortedLogic::indexOffset == 2 * pointerSize &&
              SortedLogic::countOffset == 2 * pointerSize + 4);

// On 32-bit targets: the numbers themselves.
static_assert(!isIlp32 || (Set::entriesOffset == 40 && Set::countOffset == 44 &&
                           Set::allocatedOffset == 48 && sizeof(lvrTupleSet) == 56));
static_assert(!isIlp32 || (sizeof(lvrTupleSet::RealEnumerator) == 16 &&
                           sizeof(lvrTupleSet::RealIterator) == 16));
static_assert(!isIlp32 || (Stack::elementsOffset == 40 && Stack::allocedOffset == 44 &&
                           Stack::countOffset == 46 && Stack::flagsOffset == 48 &&
                           Stack::hashCacheOffset == 52 && sizeof(lvrStack) == 56));
static_assert(!isIlp32 || (List::countOffset == 40 && List::headOffset == 44 &&
                           List::tailOffset == 48 && sizeof(lvrDLList) == 52));
static_assert(!isIlp32 ||
              (sizeof(lvrDLList::lvrDLListNode) == 16 && sizeof(lvrDLList::IteratorLogic) == 16 &&
               sizeof(lvrDLList::RealEnumerator) == 20 && sizeof(lvrDLList::RealIterator) == 20 &&
               sizeof(lvrDLList::RealRWIterator) == 20));
static_assert(!isIlp32 || (Sorted::arrayOffset == 36 && Sorted::countOffset == 40 &&
                           Sorted::capacityOffset == 44 && sizeof(lvrSortedArrayList) == 52 &&
                           sizeof(lvrSortedArrayList::BaseEnumerator) == 16));
static_assert(!isIlp32 || (Map::countOffset == 40 && Map::hashSizeOffset == 44 &&
                           Map::bucketsOffset == 48 && Map::spareEntryOffset == 52 &&
                           Map::hashSumOffset == 56 && sizeof(lvrHashMap) == 60));
static_assert(!isIlp32 || (Entry::nextOffset == 16 && sizeof(lvrHashMap::HashEntry) == 20));
static_assert(!isIlp32 || (MapLogic::mapOffset == 12 && sizeof(lvrHashMap::IteratorLogic) == 16));
static_assert(!isIlp32 || (Vector::elementsOffset == 40 && Vector::allocedOffset == 44 &&
                           Vector::startOffset == 46 && Vector::countOffset == 48 &&
                           Vector::flagsOffset == 50 && Vector::hashCacheOffset == 52 &&
                           sizeof(lvrVector) == 56));
static_assert(!isIlp32 || (VectorCursor::positionOffset == 4 && VectorCursor::vectorOffset == 8 &&
                           sizeof(lvrVector::RealEnumerator) == 12));

// The numbers that programs are compiled with.
static_assert(lvrVector::InsertAction == 0 && lvrVector::RemoveAction == 1 &&
              lvrVector::ClearAction == 2 && lvrVector::MaxSize == 65535);
static_assert(lvrStack::PushAction == 0 && lvrStack::PopAction == 1 && lvrStack::PokeAction == 2 &&
              lvrStack::MaxSize == 65535);
static_assert(lvrTupleSet::InsertEqualKeys == 1);
static_assert(lvrHashMap::DefaultHashSize == 7);
static_assert(lvrSortedArrayList::WholeList == INT_MAX);

}  // namespace
