// Where the fields of the core classes lie, for layout checks and tests. Not for users.
//
// Every class of a fixed layout befriends the template; the specialisations are the one place that
// names its private fields from outside.
#pragma once

#include <cstddef>

#include "tarselvalues/core/lvArg.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"  // All classes here have a fixed layout.

template <>
struct lvLayoutAccess<lvArg> {
  static constexpr std::size_t tagWordOffset = offsetof(lvArg, tagWord_);
  static constexpr std::size_t payloadOffset = offsetof(lvArg, payload_);
  static std::uint32_t& tagWord(lvArg& cell) { return cell.tagWord_; }
  static std::uint32_t tagWord(lvArg const& cell) { return cell.tagWord_; }
  static std::uintptr_t& payload(lvArg& cell) { return cell.payload_; }
};

template <>
struct lvLayoutAccess<lvReferencable> {
  static constexpr std::size_t typeByteOffset = offsetof(lvReferencable, typeByte_);
  static constexpr std::size_t countOffset = offsetof(lvReferencable, count_);
  static constexpr std::size_t mutexOffset = offsetof(lvReferencable, mutex_);
  static std::uint8_t typeByte(lvReferencable const& object) { return object.typeByte_; }
  static void setTypeByte(lvReferencable& object, std::uint8_t byte) { object.typeByte_ = byte; }
  static int count(lvReferencable const& object) { return object.count_; }
  static pthread_mutex_t& mutex(lvReferencable const& object) { return object.mutex_; }
};

template <>
struct lvLayoutAccess<lvrString> {
  static constexpr std::size_t textOffset = offsetof(lvrString, text_);
  static constexpr std::size_t lengthOffset = offsetof(lvrString, length_);
  static constexpr std::size_t flagsOffset = offsetof(lvrString, flags_);
  static constexpr std::size_t cachedHashOffset = offsetof(lvrString, cachedHash_);
  static constexpr unsigned integerFlag = lvrString::IntegerFlag;
  static constexpr unsigned hashFlag = lvrString::HashFlag;
  static constexpr unsigned internedFlag = lvrString::InternedFlag;
  static constexpr unsigned borrowedFlag = lvrString::BorrowedFlag;
  static constexpr unsigned integerShift = lvrString::IntegerShift;
  static unsigned length(lvrString const& string) { return string.length_; }
  static unsigned flags(lvrString const& string) { return string.flags_; }
  static unsigned cachedHash(lvrString const& string) { return string.cachedHash_; }
};

template <>
struct lvLayoutAccess<lvString::StringEntry> {
  static constexpr std::size_t nextOffset = offsetof(lvString::StringEntry, next_);
  static lvString::StringEntry const* next(lvString::StringEntry const& entry) {
    return entry.next_;
  }
};

template <>
struct lvLayoutAccess<lvString::HashTable> {
  static constexpr std::size_t bucketCountOffset = offsetof(lvString::HashTable, bucketCount_);
  static constexpr std::size_t bucketsOffset = offsetof(lvString::HashTable, buckets_);
  static std::uint32_t bucketCount(lvString::HashTable const& table) { return table.bucketCount_; }
  static lvString::StringEntry const* bucket(lvString::HashTable const& table, std::size_t i) {
    return table.buckets_[i];
  }
  static pthread_rwlock_t& lock(lvString::HashTable& table) { return table.lock_; }
};

#pragma GCC diagnostic pop
