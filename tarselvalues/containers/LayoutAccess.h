// Where the fields of the containers lie, for layout checks and tests. Not for users.
#pragma once

#include <cstddef>

#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/containers/lvrTupleSet.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/core/LayoutAccess.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"  // All classes here have a fixed layout.

template <>
struct lvLayoutAccess<lvrHashMap> {
  static constexpr std::size_t countOffset = offsetof(lvrHashMap, count);
  static constexpr std::size_t hashSizeOffset = offsetof(lvrHashMap, hashSize);
  static constexpr std::size_t bucketsOffset = offsetof(lvrHashMap, buckets);
  static constexpr std::size_t spareEntryOffset = offsetof(lvrHashMap, spareEntry);
  static constexpr std::size_t hashSumOffset = offsetof(lvrHashMap, hashSum);
  static std::uint32_t hashSize(lvrHashMap const& map) { return map.hashSize; }
  static lvrHashMap::HashEntry* const* buckets(lvrHashMap const& map) { return map.buckets; }
  static lvrHashMap::HashEntry const* spareEntry(lvrHashMap const& map) { return map.spareEntry; }
};

template <>
struct lvLayoutAccess<lvrHashMap::HashEntry> {
  static constexpr std::size_t keyOffset = offsetof(lvrHashMap::HashEntry, key);
  static constexpr std::size_t valueOffset = offsetof(lvrHashMap::HashEntry, value);
  static constexpr std::size_t nextOffset = offsetof(lvrHashMap::HashEntry, next);
};

template <>
struct lvLayoutAccess<lvrHashMap::IteratorLogic> {
  using T = lvrHashMap::IteratorLogic;
  static constexpr std::size_t currentOffset = offsetof(T, current);
  static constexpr std::size_t bucketOffset = offsetof(T, bucket);
  static constexpr std::size_t visitedOffset = offsetof(T, visited);
  static constexpr std::size_t mapOffset = offsetof(T, map);
  static int bucket(T const& logic) { return logic.bucket; }
  static unsigned visited(T const& logic) { return logic.visited; }
};

template <>
struct lvLayoutAccess<lvrHashMap::RealEnumerator> {
  static constexpr std::size_t logicOffset = offsetof(lvrHashMap::RealEnumerator, logic);
};

template <>
struct lvLayoutAccess<lvrVector> {
  static constexpr std::size_t elementsOffset = offsetof(lvrVector, elements);
  static constexpr std::size_t allocedOffset = offsetof(lvrVector, alloced);
  static constexpr std::size_t startOffset = offsetof(lvrVector, start);
  static constexpr std::size_t countOffset = offsetof(lvrVector, count);
  static constexpr std::size_t flagsOffset = offsetof(lvrVector, flags);
  static constexpr std::size_t hashCacheOffset = offsetof(lvrVector, hashCache);
  static lvArg* elements(lvrVector const& vector) { return vector.elements; }
  static int alloced(lvrVector const& vector) { return vector.alloced; }
  static int start(lvrVector const& vector) { return vector.start; }
  static unsigned flags(lvrVector const& vector) { return vector.flags; }
  static unsigned hashCache(lvrVector const& vector) { return vector.hashCache; }
};

template <>
struct lvLayoutAccess<lvrVector::RealEnumerator> {
  using T = lvrVector::RealEnumerator;
  static constexpr std::size_t positionOffset = offsetof(T, position);
  static constexpr std::size_t vectorOffset = offsetof(T, vector);
};

template <>
struct lvLayoutAccess<lvrTupleSet> {
  static constexpr std::size_t entriesOffset = offsetof(lvrTupleSet, entries);
  static constexpr std::size_t countOffset = offsetof(lvrTupleSet, count);
  static constexpr std::size_t allocatedOffset = offsetof(lvrTupleSet, allocated);
  static int allocated(lvrTupleSet const& set) { return set.allocated; }
  static unsigned increment(lvrTupleSet const& set) { return set.increment; }
  static unsigned setFlags(lvrTupleSet const& set) { return set.setFlags; }
  static lvrTupleSet::Pair const* entries(lvrTupleSet const& set) { return set.entries; }
};

template <>
struct lvLayoutAccess<lvrTupleSet::IteratorLogic> {
  using T = lvrTupleSet::IteratorLogic;
  static constexpr std::size_t setOffset = offsetof(T, set);
  static constexpr std::size_t currentOffset = offsetof(T, current);
  static constexpr std::size_t indexOffset = offsetof(T, index);
};

template <>
struct lvLayoutAccess<lvrStack> {
  static constexpr std::size_t elementsOffset = offsetof(lvrStack, elements);
  static constexpr std::size_t allocedOffset = offsetof(lvrStack, alloced);
  static constexpr std::size_t countOffset = offsetof(lvrStack, count);
  static constexpr std::size_t flagsOffset = offsetof(lvrStack, flags);
  static constexpr std::size_t hashCacheOffset = offsetof(lvrStack, hashCache);
  static int alloced(lvrStack const& stack) { return stack.alloced; }
  static unsigned flags(lvrStack const& stack) { return stack.flags; }
  static lvArg const* elements(lvrStack const& stack) { return stack.elements; }
};

template <>
struct lvLayoutAccess<lvrDLList> {
  static constexpr std::size_t countOffset = offsetof(lvrDLList, count);
  static constexpr std::size_t headOffset = offsetof(lvrDLList, head);
  static constexpr std::size_t tailOffset = offsetof(lvrDLList, tail);
  static lvrDLList::lvrDLListNode const* head(lvrDLList const& list) { return list.head; }
  static lvrDLList::lvrDLListNode const* tail(lvrDLList const& list) { return list.tail; }
};

template <>
struct lvLayoutAccess<lvrDLList::IteratorLogic> {
  using T = lvrDLList::IteratorLogic;
  static constexpr std::size_t listOffset = offsetof(T, list);
  static constexpr std::size_t nodeOffset = offsetof(T, node);
  static constexpr std::size_t invalidOffset = offsetof(T, invalid);
  static constexpr std::size_t indexOffset = offsetof(T, index);
};

template <>
struct lvLayoutAccess<lvrSortedArrayList> {
  static constexpr std::size_t arrayOffset = offsetof(lvrSortedArrayList, array);
  static constexpr std::size_t countOffset = offsetof(lvrSortedArrayList, count);
  static constexpr std::size_t capacityOffset = offsetof(lvrSortedArrayList, capacity);
  static int capacity(lvrSortedArrayList const& list) { return list.capacity; }
  static unsigned growStep(lvrSortedArrayList const& list) { return list.growStep; }
  static unsigned allowDuplicates(lvrSortedArrayList const& list) { return list.allowDuplicates; }
  static lvArg const* array(lvrSortedArrayList const& list) { return list.array; }
};

template <>
struct lvLayoutAccess<lvrSortedArrayList::BaseEnumerator> {
  using T = lvrSortedArrayList::BaseEnumerator;
  static constexpr std::size_t arrayOffset = offsetof(T, array);
  static constexpr std::size_t currentOffset = offsetof(T, current);
  static constexpr std::size_t indexOffset = offsetof(T, index);
  static constexpr std::size_t countOffset = offsetof(T, count);
};

#pragma GCC diagnostic pop
