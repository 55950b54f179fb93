// Uses of lvClassBuilder that must not compile, one for each number of MISUSE, and next to each the
// use that must: with MISUSE 0 the whole file compiles.
//
// Each #if is followed by the misuse, each #else by its legal twin.

#include "tarselvalues/reflect/lvClassBuilder.h"

namespace {

class Point : public lvReferencable {
 public:
  void scale(lvArg& result, lvArg const& factor) { result.assign(factor); }
  void halve(lvArg& result) { result.assign(x); }
  lvArg half(lvArg& /*result*/, lvArg const& /*argument*/) { return x; }

  lvArg x;
  lvString label;
  lvArg const fixed;
};

class Ball : public Point {
 public:
  lvArg radius;
};

class Uncounted {};

class Sized : public lvReferencable {
 public:
  explicit Sized(int /*size*/) {}
};

void count(lvArg& result, lvArg const* /*arguments*/, int count) { result.setInt(count); }
void twice(lvArg& result, lvArg const& argument) { result.assign(argument); }

}  // namespace

void describeClasses() {
  lvClassBuilder<Point> point("Point");

#if MISUSE == 1
  point.field("label", &Point::label);
#elif MISUSE == 2
  point.field("fixed", &Point::fixed);
#elif MISUSE == 3
  point.field("radius", &Ball::radius);
#elif MISUSE == 4
  point.field<lvrClass::Methods2>("x", &Point::x);
#else
  point.field<lvrClass::Fields6>("x", &Point::x);
#endif

#if MISUSE == 5
  point.method<lvrClass::Methods2>("halve", &Point::halve);
#elif MISUSE == 6
  point.method<lvrClass::Methods2>("half", &Point::half);
#elif MISUSE == 7
  point.method<lvrClass::Functions1>("scale", &Point::scale);
#elif MISUSE == 8
  point.method<lvrClass::Fields>("scale", &Point::scale);
#else
  point.method<lvrClass::Methods2>("scale", &Point::scale);
#endif

#if MISUSE == 9
  point.function<lvrClass::Methods2>("count", count);
#elif MISUSE == 10
  point.function<static_cast<lvrClass::OffsetTableType>(11)>("count", count);
#elif MISUSE == 11
  point.function<lvrClass::Functions1>("twice", twice);
#else
  point.function<lvrClass::Functions1>("count", count);
#endif

#if MISUSE == 12
  lvClassBuilder<Uncounted> made("Uncounted");
#elif MISUSE == 13
  lvClassBuilder<Sized> made("Sized");
#elif MISUSE == 14
  lvClassBuilder<Point> made("Point", lvClassBuilder<Ball>("Ball"));
#else
  lvClassBuilder<Ball> made("Ball", point);
#endif
  made.build();
}
