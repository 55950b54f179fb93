// Where the fields of the containers lie, for layout checks and tests. Not for users.
#pragma once

#include <cstddef>

#include "tarselvalues/containers/lvrHashMap.h"
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

#pragma GCC diagnostic pop
