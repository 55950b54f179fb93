// A class of your own: fields and methods by name, and its text.

#include <tarselvalues/tarselvalues.h>

#include <cstdio>

namespace {

class Point : public lvReferencable {
 public:
  // The key under which the class is registered.
  lvString const& getClassDesc() const override {
    static lvString const key("Point");
    return key;
  }

  // Called by name: `result` is this point's sum of coordinates times `factor`.
  void weigh(lvArg& result, lvArg const& factor) {
    result.setInt((x.getInt() + y.getInt()) * factor.getInt());
  }

 private:
  friend int describePoint();

  lvArg x;
  lvArg y;
};

int describePoint() {
  return lvClassBuilder<Point>("Point")
      .field("x", &Point::x)
      .field("y", &Point::y)
      .method<lvrClass::Methods2>("weigh", &Point::weigh)
      .registerClass();
}

}  // namespace

int main() {
  describePoint();

  // The serializer builds the object by the name of its class and sets its fields.
  int consumed = 0;
  lvArg const value = lvToolsFromString("*Point{3,4}", consumed);
  lvReferencable& point = *value.getReferencable();

  lvClass const described(lvtClassRegistry::getInstance()->getClass(lvString("Point")));
  lvArg five;
  five.setInt(5);
  described->setObjectField(point, lvString("y"), five);

  lvArg result;
  described->invokeMethod(point, result, five, lvrClass::Methods2, lvString("weigh"));
  std::printf("weighs %d\n", result.getInt());

  lvVector path(2);
  path->insert(value, -1);
  path->insert(lvString("home"), -1);
  std::puts(lvToolsToString(path));
}
