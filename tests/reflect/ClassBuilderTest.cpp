#include "tarselvalues/reflect/lvClassBuilder.h"

#include <gtest/gtest.h>

#include <string>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

using test::allKinds;
using test::countOf;
using test::integer;
using test::keep;

constexpr auto Fields = lvrClass::Fields;
constexpr auto Fields6 = lvrClass::Fields6;
constexpr auto Methods2 = lvrClass::Methods2;
constexpr auto Functions1 = lvrClass::Functions1;

class Point : public lvReferencable {
 public:
  Point() { ++made; }
  lvString const& getClassDesc() const override {
    static lvString const key("Point");
    return key;
  }

  void scale(lvArg& result, lvArg const& factor) {
    x.setInt(x.getInt() * factor.getInt());
    result.assign(x);
  }
  int first(lvArg& result, lvArg const& /*argument*/) const { return result.assign(x); }
  bool take(lvArg& result, lvArg const* arguments, int count) {
    return result.assign(arguments[count - 1]) == 0;
  }
  void count(lvArg& result, lvArg const* /*arguments*/, int count) const noexcept {
    result.setInt(x.getInt() + count);
  }
  virtual void name(lvArg& result, lvArg const& /*argument*/) { result = lvString("point"); }

  static inline int made = 0;
  lvArg x;
  lvArg y;
};

// With a second base, and a method overridden.
class Label {
 public:
  virtual void read(lvArg& result, lvArg const& /*argument*/) { result.assign(text); }
  virtual ~Label() = default;
  lvArg text;
};
class Ball : public Point, public Label {
 public:
  void name(lvArg& result, lvArg const& /*argument*/) override { result = lvString("ball"); }
  lvArg radius;
};
class RedBall : public Ball {
 public:
  lvArg red;
};

// Has a field in front of its object part.
class Hidden : public Label, public lvReferencable {};

void answerCount(lvArg& result, lvArg const* /*arguments*/, int count) { result.setInt(count); }
void answerNothing(lvArg& result, lvArg const* /*arguments*/, int /*count*/) { result.setNil(); }

lvClassBuilder<Point> pointBuilder() {
  return lvClassBuilder<Point>("Point").field("x", &Point::x).field("y", &Point::y);
}

// What a field holds: its integer, -99 when there is no such field.
int fieldOf(lvClass const& described, lvReferencable const& object, char const* name) {
  lvArg out;
  return described->getObjectField(out, object, lvString(name)) == 0 ? out.getInt() : -99;
}

// What the method answers to 10; nil when there is none.
lvArg answerOf(lvClass const& described, lvReferencable& object, char const* name,
               lvrClass::OffsetTableType kind = Methods2) {
  lvArg result;
  described->invokeMethod(object, result, integer(10), kind, lvString(name));
  return result;
}

// The same to the array of 4, 5 and 6.
lvArg answerToArrayOf(lvClass const& described, lvReferencable& object, char const* name,
                      lvrClass::OffsetTableType kind = Methods2) {
  lvArg const arguments[] = {integer(4), integer(5), integer(6)};
  lvArg result;
  described->invokeMethodNArgs(object, result, arguments, 3, kind, lvString(name));
  return result;
}

// ---- The class ---------------------------------------------------------------------------------

TEST(ClassBuilder, MakesAClassOfItsNameWithoutSuperclassAndTables) {
  lvClass const described = lvClassBuilder<Point>("Point").build();
  EXPECT_TRUE(described.getClassDesc().eq(lvString("Point")));
  lvArg superClass = integer(1);
  described->getSuperClass(superClass);
  EXPECT_TRUE(superClass.isNil());
  for (auto const kind : allKinds()) {
    EXPECT_EQ(described->getNItems(kind), 0);
    EXPECT_EQ(test::tableOf(*described.getClass(), kind), nullptr);
  }
}

TEST(ClassBuilder, MakesAClassWithDefaultObjects) {
  lvClass const described = lvClassBuilder<Point>("Point").build();
  lvArg const object(*described->instantiateDefaultObject());
  EXPECT_NE(dynamic_cast<Point const*>(object.getReferencable()), nullptr);
  EXPECT_EQ(countOf(object), 1);
}

TEST(ClassBuilder, HoldsTheClassAsLongAsItLives) {
  lvClass described{lvArg()};
  {
    lvClassBuilder<Point> builder("Point");
    described = builder.build();
    EXPECT_EQ(countOf(described), 2);
  }
  EXPECT_EQ(countOf(described), 1);
}

TEST(ClassBuilderBuild, AnswersTheSameClassEachTime) {
  auto builder = pointBuilder();
  lvClass const first = keep(builder.build());
  EXPECT_TRUE(builder.build().eq(first));
  EXPECT_EQ(first->getNItems(Fields), 2);
}

TEST(ClassBuilderBuild, LeavesAFilledTableAsItIs) {
  auto builder = pointBuilder();
  lvClass const described = keep(builder.build());
  builder.field("again", &Point::x).field<Fields6>("other", &Point::y).build();
  EXPECT_EQ(described->getNItems(Fields), 2);
  EXPECT_EQ(described->localLookupIndex(Fields, lvString("again")), -1);
  EXPECT_EQ(described->getNItems(Fields6), 1);
}

// ---- Fields ------------------------------------------------------------------------------------

TEST(ClassBuilderField, AppendsInTheOrderOfTheCalls) {
  lvClass const described = keep(pointBuilder().build());
  Point point;
  ASSERT_EQ(described->getNItems(Fields), 2);
  described->setFieldAt(point, integer(1), Fields, 0);
  described->setFieldAt(point, integer(2), Fields, 1);
  EXPECT_EQ(point.x.getInt(), 1);
  EXPECT_EQ(point.y.getInt(), 2);
}

TEST(ClassBuilderField, NamesTheFields) {
  lvClass const described = keep(pointBuilder().build());
  Point point;
  point.x = integer(1);
  point.y = integer(2);
  EXPECT_EQ(fieldOf(described, point, "x"), 1);
  EXPECT_EQ(fieldOf(described, point, "y"), 2);
  EXPECT_EQ(fieldOf(described, point, "z"), -99);
}

TEST(ClassBuilderField, FillsTheSecondTableOfFieldsToo) {
  lvClass const described =
      keep(lvClassBuilder<Point>("Point").field<Fields6>("y", &Point::y).build());
  Point point;
  EXPECT_EQ(described->getNItems(Fields), 0);
  EXPECT_EQ(described->localLookupIndex(Fields6, lvString("y")), 0);
  EXPECT_EQ(described->setFieldAt(point, integer(2), Fields6, 0), 0);
  EXPECT_EQ(point.y.getInt(), 2);
}

TEST(ClassBuilderField, FindsFieldsOfAllBases) {
  lvClass const described = keep(lvClassBuilder<Ball>("Ball")
                                     .field("radius", &Ball::radius)
                                     .field("text", &Label::text)
                                     .field("y", &Point::y)
                                     .build());
  Ball ball;
  ball.radius = integer(1);
  ball.text = integer(2);
  ball.y = integer(3);
  EXPECT_EQ(fieldOf(described, ball, "radius"), 1);
  EXPECT_EQ(fieldOf(described, ball, "text"), 2);
  EXPECT_EQ(fieldOf(described, ball, "y"), 3);
}

TEST(ClassBuilderField, FindsAFieldInFrontOfTheObjectPart) {
  lvClass const described =
      keep(lvClassBuilder<Hidden>("Hidden").field("text", &Hidden::text).build());
  Hidden hidden;
  hidden.text = integer(1);
  EXPECT_EQ(fieldOf(described, hidden, "text"), 1);
}

TEST(ClassBuilderField, MakesOneObjectForEachField) {
  int const before = Point::made;
  lvClassBuilder<Point> builder("Point");
  EXPECT_EQ(Point::made, before);
  builder.field("x", &Point::x);
  EXPECT_EQ(Point::made, before + 1);
  builder.field("y", &Point::y);
  EXPECT_EQ(Point::made, before + 2);
  keep(builder.build());
  EXPECT_EQ(Point::made, before + 2);
}

// ---- Methods and functions ---------------------------------------------------------------------

TEST(ClassBuilderMethod, TakesMethodsWithOneArgument) {
  lvClass const described = keep(lvClassBuilder<Point>("Point")
                                     .method<Methods2>("scale", &Point::scale)
                                     .method<Methods2>("first", &Point::first)
                                     .build());
  Point point;
  point.x = integer(1);
  point.y = integer(2);
  EXPECT_EQ(answerOf(described, point, "first").getInt(), 1);
  EXPECT_EQ(answerOf(described, point, "scale").getInt(), 10);
}

TEST(ClassBuilderMethod, TakesMethodsWithManyArguments) {
  lvClass const described = keep(lvClassBuilder<Point>("Point")
                                     .method<Methods2>("take", &Point::take)
                                     .method<Methods2>("count", &Point::count)
                                     .build());
  Point point;
  point.x = integer(100);
  EXPECT_EQ(answerToArrayOf(described, point, "take").getInt(), 6);
  EXPECT_EQ(answerToArrayOf(described, point, "count").getInt(), 103);
}

TEST(ClassBuilderMethod, FillsEveryTableOfMethods) {
  lvClass const described = keep(lvClassBuilder<Point>("Point")
                                     .method<Methods2>("a", &Point::scale)
                                     .method<lvrClass::Methods4>("b", &Point::first)
                                     .method<lvrClass::Methods8>("c", &Point::name)
                                     .build());
  Point point;
  point.x = integer(1);
  point.y = integer(2);
  EXPECT_EQ(answerOf(described, point, "b", lvrClass::Methods4).getInt(), 1);
  EXPECT_EQ(answerOf(described, point, "a").getInt(), 10);
  EXPECT_EQ(test::textOf(answerOf(described, point, "c", lvrClass::Methods8)), "point");
}

TEST(ClassBuilderMethod, CallsTheVirtualMethodOfTheObject) {
  lvClass const described =
      keep(lvClassBuilder<Point>("Point").method<Methods2>("name", &Point::name).build());
  Point point;
  Ball ball;
  EXPECT_EQ(test::textOf(answerOf(described, point, "name")), "point");
  EXPECT_EQ(test::textOf(answerOf(described, ball, "name")), "ball");
}

TEST(ClassBuilderMethod, FindsMethodsOfAllBases) {
  lvClass const described = keep(lvClassBuilder<Ball>("Ball")
                                     .method<Methods2>("read", &Label::read)
                                     .method<Methods2>("scale", &Point::scale)
                                     .build());
  lvClass const hidden =
      keep(lvClassBuilder<Hidden>("Hidden").method<Methods2>("read", &Label::read).build());
  Ball ball;
  ball.text = integer(1);
  ball.x = integer(2);
  EXPECT_EQ(answerOf(described, ball, "read").getInt(), 1);
  EXPECT_EQ(answerOf(described, ball, "scale").getInt(), 20);
  Hidden object;
  object.text = integer(3);
  EXPECT_EQ(answerOf(hidden, object, "read").getInt(), 3);
}

TEST(ClassBuilderFunction, FillsEveryTableOfFunctions) {
  lvClass const described = keep(lvClassBuilder<Point>("Point")
                                     .function<Functions1>("nothing", answerNothing)
                                     .function<Functions1>("count", answerCount)
                                     .function<lvrClass::Functions3>("count", answerCount)
                                     .function<lvrClass::Functions5>("count", answerCount)
                                     .function<lvrClass::Functions7>("count", answerCount)
                                     .function<lvrClass::Functions9>("count", answerCount)
                                     .build());
  Point point;
  for (unsigned const kind : {1U, 3U, 5U, 7U, 9U}) {
    EXPECT_EQ(answerToArrayOf(described, point, "count", test::kindOf(kind)).getInt(), 3) << kind;
  }
  EXPECT_TRUE(answerToArrayOf(described, point, "nothing", Functions1).isNil());
}

// ---- Derived classes ---------------------------------------------------------------------------

lvClassBuilder<Ball> ballBuilder() {
  auto base = pointBuilder();
  base.method<Methods2>("scale", &Point::scale);
  base.method<Methods2>("name", &Point::name);
  return lvClassBuilder<Ball>("Ball", base).field("radius", &Ball::radius);
}

TEST(ClassBuilderOfADerivedClass, HasTheFieldsOfTheBaseInFront) {
  lvClass const described = keep(ballBuilder().build());
  Ball ball;
  ASSERT_EQ(described->getNItems(Fields), 3);
  for (int i = 0; i < 3; ++i) {
    described->setFieldAt(ball, integer(i + 1), Fields, i);
  }
  EXPECT_EQ(ball.x.getInt(), 1);
  EXPECT_EQ(ball.y.getInt(), 2);
  EXPECT_EQ(ball.radius.getInt(), 3);
}

TEST(ClassBuilderOfADerivedClass, FindsInheritedAndOwnMembersByName) {
  lvClass const described = keep(ballBuilder().method<Methods2>("read", &Label::read).build());
  Ball ball;
  ball.x = integer(1);
  ball.y = integer(2);
  ball.radius = integer(3);
  ball.text = integer(4);
  EXPECT_EQ(fieldOf(described, ball, "x"), 1);
  EXPECT_EQ(fieldOf(described, ball, "radius"), 3);
  EXPECT_EQ(answerOf(described, ball, "scale").getInt(), 10);
  EXPECT_EQ(answerOf(described, ball, "read").getInt(), 4);
  EXPECT_EQ(test::textOf(answerOf(described, ball, "name")), "ball");
}

TEST(ClassBuilderOfADerivedClass, SetsTheSuperclass) {
  auto base = pointBuilder();
  lvClass const point = keep(base.build());
  lvClass const ball = keep(lvClassBuilder<Ball>("Ball", base).field("r", &Ball::radius).build());
  lvArg superClass;
  ball->getSuperClass(superClass);
  EXPECT_TRUE(superClass.eq(point));
  EXPECT_EQ(point->getNItems(Fields), 2);
  EXPECT_EQ(ball->getNItems(Fields), 3);
}

TEST(ClassBuilderOfADerivedClass, MakesItsOwnDefaultObjects) {
  lvClass const described = keep(ballBuilder().build());
  EXPECT_TRUE(described.getClassDesc().eq(lvString("Ball")));
  lvArg const object(*described->instantiateDefaultObject());
  EXPECT_NE(dynamic_cast<Ball const*>(object.getReferencable()), nullptr);
}

TEST(ClassBuilderOfADerivedClass, GoesOverSeveralLevels) {
  lvClass const described =
      keep(lvClassBuilder<RedBall>("RedBall", ballBuilder()).field("red", &RedBall::red).build());
  RedBall object;
  object.x = integer(1);
  object.radius = integer(2);
  object.red = integer(3);
  EXPECT_EQ(described->getNItems(Fields), 4);
  EXPECT_EQ(fieldOf(described, object, "x"), 1);
  EXPECT_EQ(fieldOf(described, object, "radius"), 2);
  EXPECT_EQ(fieldOf(described, object, "red"), 3);
}

TEST(ClassBuilderOfADerivedClass, GivesANameThatComesTwiceToItsOwnMember) {
  lvClass const described = keep(ballBuilder().field("x", &Ball::radius).build());
  Ball ball;
  ball.x = integer(1);
  ball.radius = integer(2);
  EXPECT_EQ(fieldOf(described, ball, "x"), 2);
}

TEST(ClassBuilderOfADerivedClass, DoesNotSeeWhatTheBaseIsGivenLater) {
  auto base = pointBuilder();
  auto derived = lvClassBuilder<Ball>("Ball", base);
  base.field("again", &Point::x);
  EXPECT_EQ(keep(derived.build())->getNItems(Fields), 2);
  EXPECT_EQ(keep(base.build())->getNItems(Fields), 3);
}

// ---- Registering -------------------------------------------------------------------------------

TEST(ClassBuilderRegisterClass, LetsTheSerializerWriteAndReadTheObjects) {
  ASSERT_EQ(pointBuilder().registerClass(), 0);
  lvArg const object(*new Point);
  static_cast<Point&>(*object.getReferencable()).x = integer(3);
  static_cast<Point&>(*object.getReferencable()).y = lvString("high");
  std::string const text = static_cast<char const*>(lvToolsToString(object));
  EXPECT_EQ(text, "*Point{3,high}");
  int consumed = 0;
  lvArg const read = lvToolsFromString(text.c_str(), consumed);
  auto const* const point = dynamic_cast<Point const*>(read.getReferencable());
  ASSERT_NE(point, nullptr);
  EXPECT_EQ(point->x.getInt(), 3);
  EXPECT_EQ(test::textOf(point->y), "high");
}

TEST(ClassBuilderRegisterClass, PutsTheBuiltClassIntoTheRegistry) {
  auto builder = lvClassBuilder<Point>("RegisteredPoint").field("x", &Point::x);
  EXPECT_EQ(builder.registerClass(), 0);
  lvArg const registered = lvtClassRegistry::getInstance()->getClass(lvString("RegisteredPoint"));
  EXPECT_TRUE(registered.eq(builder.build()));
  EXPECT_EQ(lvClass(registered)->getNItems(Fields), 1);
}

TEST(ClassBuilderRegisterClass, IsRefusedForATakenName) {
  lvClass const builtin(lvtClassRegistry::getInstance()->getClass(lvString("Stack")));
  auto builder = lvClassBuilder<Point>("Stack").field("x", &Point::x);
  keep(builder.build());
  EXPECT_EQ(builder.registerClass(), -1);
  EXPECT_TRUE(lvtClassRegistry::getInstance()->getClass(lvString("Stack")).eq(builtin));
}

TEST(ClassBuilderRegisterClass, IsRefusedTheSecondTime) {
  auto builder = lvClassBuilder<Point>("PointOnce").field("x", &Point::x);
  EXPECT_EQ(builder.registerClass(), 0);
  EXPECT_EQ(builder.registerClass(), -1);
}

TEST(ClassBuilder, TakesAsManyEntriesOfAKindAsATableHolds) {
  lvClassBuilder<Point> builder("CrowdedPoint");
  for (int i = 0; i < 65535; ++i) {
    builder.function<Functions1>(nullptr, answerCount);
  }
  auto tooMany = builder;
  tooMany.function<Functions1>(nullptr, answerCount);
  EXPECT_TRUE(tooMany.build().isNil());
  EXPECT_EQ(tooMany.registerClass(), -1);
  EXPECT_TRUE(lvtClassRegistry::getInstance()->getClass(lvString("CrowdedPoint")).isNil());
  EXPECT_EQ(keep(builder.build())->getNItems(Functions1), 65535);
}

}  // namespace
