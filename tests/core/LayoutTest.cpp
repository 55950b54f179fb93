// What the bytes of cells and objects are, beside the offsets that the library checks as it is
// compiled.

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstring>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvValue.h"

namespace {

using test::integer;
using test::marked;
using test::pointer;
using test::string;

template <class T, class Object>
T valueAt(Object const& object, std::size_t offset) {
  T value;
  std::memcpy(&value, reinterpret_cast<unsigned char const*>(&object) + offset, sizeof(value));
  return value;
}

TEST(ArgLayout, HasTheTagInTheLowFiveBitsOfTheFirstByte) {
  EXPECT_EQ(valueAt<std::uint8_t>(marked(integer(1), test::AllMarks), 0), 0xE0 | 5);
  EXPECT_EQ(valueAt<std::uint32_t>(marked(string("x"), 0xFFFFFF00), 0), 0xFFFFFF00 | 19);
  EXPECT_EQ(valueAt<std::uint32_t>(pointer(4), 0), 12U);
}

TEST(ArgLayout, HasTheValueOnePointerFurther) {
  EXPECT_EQ(valueAt<std::int32_t>(integer(-7), sizeof(void*)), -7);
  EXPECT_EQ(valueAt<std::uintptr_t>(pointer(0x1234), sizeof(void*)), 0x1234U);
  lvArg const text = string("x");
  EXPECT_EQ(valueAt<lvReferencable*>(text, sizeof(void*)), text.getReferencable());
}

TEST(ArgLayout, IsThatOfTheHandles) {
  EXPECT_EQ(sizeof(lvArg), 2 * sizeof(void*));
  EXPECT_EQ(sizeof(lvValue), sizeof(lvArg));
  EXPECT_EQ(sizeof(lvString), sizeof(lvArg));
  lvString const handle("x");
  EXPECT_EQ(valueAt<std::uint32_t>(handle, 0), 19U);
  EXPECT_EQ(valueAt<lvReferencable*>(handle, sizeof(void*)), handle.getReferencable());
}

TEST(ReferencableLayout, HasTypeByteCountAndMutexAfterTheVirtualTable) {
  lvReferencable object;
  object.__makeImmortal();
  object.__removeRef();
  EXPECT_EQ(valueAt<std::uint8_t>(object, sizeof(void*)), 0x23);
  EXPECT_EQ(valueAt<std::int32_t>(object, sizeof(void*) + 4), -1);
  auto const* const start = reinterpret_cast<unsigned char const*>(&object);
  auto const* const mutex =
      reinterpret_cast<unsigned char const*>(&lvLayoutAccess<lvReferencable>::mutex(object));
  EXPECT_EQ(mutex - start, static_cast<std::ptrdiff_t>(sizeof(void*) + 8));
  EXPECT_EQ(sizeof(lvReferencable), sizeof(void*) + 8 + sizeof(pthread_mutex_t));
}

#if UINTPTR_MAX == 0xFFFFFFFF

TEST(ArgLayout, IsEightBytesOn32BitTargets) {
  EXPECT_EQ(sizeof(lvArg), 8U);
  EXPECT_EQ(sizeof(lvReferencable), 36U);
}

#endif

}  // namespace
