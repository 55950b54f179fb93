// Reading and writing the fields of objects through the tables of their class.

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::countOf;
using test::fill;
using test::integer;
using test::keptClass;
using test::keptSubclass;
using test::kindOf;
using test::offsetOf;
using Offsets = std::vector<std::intptr_t>;

constexpr auto Fields = lvrClass::Fields;
constexpr auto Fields6 = lvrClass::Fields6;
constexpr int Untouched = -99;

class Point : public lvReferencable {
 public:
  lvArg x;
  lvArg y;
};

class Ball : public Point {
 public:
  lvArg radius;
};

// Its object part is not at its start, so one field has a negative offset.
class Front {
 public:
  virtual ~Front() = default;
  lvArg before;
};
class Behind : public Front, public lvReferencable {
 public:
  lvArg after;
};

lvrClass& keptPointClass() {
  lvrClass& described = keptClass();
  Offsets const offsets{offsetOf<Point>(&Point::x), offsetOf<Point>(&Point::y)};
  char const* const names[] = {"x", "y"};
  described.setDirectObjectNamedOffsets(Fields, 2, offsets.data(), names);
  return described;
}

// An object with numbers in its fields, and its class.
class ClassFields : public ::testing::Test {
 protected:
  ClassFields() {
    point.x.setInt(1);
    point.y.setInt(2);
  }

  // What getFieldAt() delivers, or Untouched when it refuses.
  int read(lvrClass::OffsetTableType kind, int index) const {
    lvArg out = integer(Untouched);
    int const status = described.getFieldAt(out, point, kind, index);
    EXPECT_EQ(status, out.getInt() == Untouched ? -1 : 0);
    return out.getInt();
  }

  // That neither reading nor writing finds a field there.
  void expectNoField(lvrClass const& asked, lvrClass::OffsetTableType kind, int index) {
    lvArg out = integer(Untouched);
    EXPECT_EQ(asked.getFieldAt(out, point, kind, index), -1);
    EXPECT_EQ(out.getInt(), Untouched);
    EXPECT_EQ(asked.setFieldAt(point, integer(77), kind, index), -1);
    EXPECT_EQ(point.x.getInt(), 1);
    EXPECT_EQ(point.y.getInt(), 2);
  }

  Point point;
  lvrClass& described = keptPointClass();
};

// ---- By index ----------------------------------------------------------------------------------

TEST_F(ClassFields, AreReadInTheOrderOfTheTable) {
  EXPECT_EQ(read(Fields, 0), 1);
  EXPECT_EQ(read(Fields, 1), 2);
}

TEST_F(ClassFields, AreWrittenOneByOne) {
  EXPECT_EQ(described.setFieldAt(point, integer(10), Fields, 0), 0);
  EXPECT_EQ(point.x.getInt(), 10);
  EXPECT_EQ(point.y.getInt(), 2);
  EXPECT_EQ(described.setFieldAt(point, lvArg(), Fields, 1), 0);
  EXPECT_TRUE(point.y.isNil());
}

TEST_F(ClassFields, MayStandInTheTableOfKindSix) {
  fill(described, Fields6, Offsets{offsetOf<Point>(&Point::y)});
  EXPECT_EQ(read(Fields6, 0), 2);
  EXPECT_EQ(described.setFieldAt(point, integer(20), Fields6, 0), 0);
  EXPECT_EQ(point.y.getInt(), 20);
}

TEST_F(ClassFields, AreNotThereOutsideOfTheTable) {
  for (int const index : {-1, 2, 3, 65536, -2147483647 - 1, 2147483647}) {
    SCOPED_TRACE(index);
    expectNoField(described, Fields, index);
  }
}

TEST_F(ClassFields, AreNotThereWithoutTheTable) {
  expectNoField(keptClass(), Fields, 0);
  expectNoField(described, Fields6, 0);
  expectNoField(described, kindOf(10), 0);
  expectNoField(described, kindOf(0xFFFFFFFEU), 0);
}

TEST_F(ClassFields, AreNotThereInTablesOfFunctions) {
  for (unsigned const kind : {1U, 3U, 5U, 7U, 9U}) {
    SCOPED_TRACE(kind);
    fill(described, kindOf(kind), Offsets{offsetOf<Point>(&Point::x)});
    expectNoField(described, kindOf(kind), 0);
  }
}

TEST_F(ClassFields, AreNotThereInTablesOfMethods) {
  for (unsigned const kind : {2U, 4U, 8U}) {
    SCOPED_TRACE(kind);
    described.setDirectObjectOffsets(kindOf(kind), 1, Offsets{offsetOf<Point>(&Point::x), 0}.data(),
                                     0);
    expectNoField(described, kindOf(kind), 0);
  }
}

TEST_F(ClassFields, AreNotThereWhereTheTableWasNeverFilled) {
  lvrClass& unfilled = keptClass();
  unfilled.needOffsetTable(Fields, 2, nullptr);
  expectNoField(unfilled, Fields, 0);
  expectNoField(unfilled, Fields, 1);
}

TEST_F(ClassFields, HoldReferencesOfTheirOwn) {
  lvArg const text = test::string("text");
  described.setFieldAt(point, text, Fields, 0);
  EXPECT_EQ(countOf(text), 2);
  lvArg out;
  described.getFieldAt(out, point, Fields, 0);
  EXPECT_TRUE(out.eq(text));
  EXPECT_EQ(countOf(text), 3);
  described.setFieldAt(point, lvArg(), Fields, 0);
  EXPECT_EQ(countOf(text), 2);
}

TEST_F(ClassFields, KeepTheirBookkeepingBits) {
  test::setBookkeeping(point.x, 0x60);
  lvArg value = integer(5);
  test::setBookkeeping(value, 0xFFE0);
  described.setFieldAt(point, value, Fields, 0);
  EXPECT_EQ(test::bookkeepingOf(point.x), 0x60U);
  lvArg out;
  test::setBookkeeping(out, 0x20);
  described.getFieldAt(out, point, Fields, 0);
  EXPECT_EQ(test::bookkeepingOf(out), 0x20U);
}

TEST_F(ClassFields, MayBeWrittenFromEachOther) {
  EXPECT_EQ(described.setFieldAt(point, point.y, Fields, 0), 0);
  EXPECT_EQ(described.setFieldAt(point, point.y, Fields, 1), 0);
  EXPECT_EQ(described.getFieldAt(point.y, point, Fields, 0), 0);
  EXPECT_EQ(point.x.getInt(), 2);
  EXPECT_EQ(point.y.getInt(), 2);
}

TEST(ClassInheritedFields, ComeFirst) {
  lvrClass& described = keptSubclass(keptPointClass());
  fill(described, Fields, Offsets{offsetOf<Ball>(&Ball::radius)});
  Ball ball;
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(described.setFieldAt(ball, integer(i + 1), Fields, i), 0);
  }
  EXPECT_EQ(ball.x.getInt(), 1);
  EXPECT_EQ(ball.y.getInt(), 2);
  EXPECT_EQ(ball.radius.getInt(), 3);
}

TEST(ClassFieldsOfAnObjectBehindAnotherBase, LieInFrontOfItToo) {
  Offsets const offsets{offsetOf<Behind>(&Behind::before), offsetOf<Behind>(&Behind::after)};
  ASSERT_LT(offsets[0], 0);
  lvrClass& described = keptClass();
  fill(described, Fields, offsets);
  Behind object;
  EXPECT_EQ(described.setFieldAt(object, integer(1), Fields, 0), 0);
  EXPECT_EQ(described.setFieldAt(object, integer(2), Fields, 1), 0);
  EXPECT_EQ(object.before.getInt(), 1);
  EXPECT_EQ(object.after.getInt(), 2);
  lvArg out;
  EXPECT_EQ(described.getFieldAt(out, object, Fields, 0), 0);
  EXPECT_EQ(out.getInt(), 1);
}

// ---- By name -----------------------------------------------------------------------------------

TEST_F(ClassFields, AreFoundByName) {
  EXPECT_EQ(described.setObjectField(point, lvString("y"), integer(20)), 0);
  EXPECT_EQ(point.x.getInt(), 1);
  EXPECT_EQ(point.y.getInt(), 20);
  lvArg out;
  EXPECT_EQ(described.getObjectField(out, point, lvString("x")), 0);
  EXPECT_EQ(out.getInt(), 1);
  EXPECT_EQ(described.getObjectField(out, point, test::string("y")), 0);
  EXPECT_EQ(out.getInt(), 20);
}

TEST_F(ClassFields, AreNotFoundByUnknownNames) {
  for (lvArg const& name : {lvArg(lvString("z")), lvArg(), integer(0)}) {
    lvArg out = integer(Untouched);
    EXPECT_EQ(described.getObjectField(out, point, name), -1);
    EXPECT_EQ(out.getInt(), Untouched);
    EXPECT_EQ(described.setObjectField(point, name, integer(77)), -1);
  }
  EXPECT_EQ(read(Fields, 0), 1);
  EXPECT_EQ(read(Fields, 1), 2);
}

TEST_F(ClassFields, AreNotFoundByNamesOfOtherTables) {
  Offsets const offsets{offsetOf<Point>(&Point::x)};
  char const* const names[] = {"alias"};
  described.setDirectObjectNamedOffsets(Fields6, 1, offsets.data(), names);
  lvArg out = integer(Untouched);
  EXPECT_EQ(described.getObjectField(out, point, lvString("alias")), -1);
  EXPECT_EQ(described.setObjectField(point, lvString("alias"), integer(77)), -1);
  EXPECT_EQ(out.getInt(), Untouched);
  EXPECT_EQ(point.x.getInt(), 1);
}

TEST_F(ClassFields, AreNotFoundByNamesOfTheSuperclass) {
  lvrClass& sub = keptSubclass(described);
  fill(sub, Fields, Offsets{});
  lvArg out = integer(Untouched);
  EXPECT_EQ(sub.getObjectField(out, point, lvString("x")), -1);
  EXPECT_EQ(out.getInt(), Untouched);
}

TEST(ClassOddities, ANameInASubclassReachesTheInheritedFieldAtItsPosition) {
  lvrClass& described = keptSubclass(keptPointClass());
  Offsets const offsets{offsetOf<Ball>(&Ball::radius)};
  char const* const names[] = {"radius"};
  described.setDirectObjectNamedOffsets(Fields, 1, offsets.data(), names);
  Ball ball;
  EXPECT_EQ(described.setObjectField(ball, lvString("radius"), integer(5)), 0);
  EXPECT_EQ(ball.x.getInt(), 5);
  EXPECT_TRUE(ball.radius.isNil());
}

}  // namespace
