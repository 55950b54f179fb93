// Calling the methods of objects, and plain functions, through the tables of a class.

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "support/Slots.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::fill;
using test::integer;
using test::keptClass;
using test::kindOf;
using Kind = lvrClass::OffsetTableType;
using Methods = std::vector<lvrClass::Method>;
using MethodsNArgs = std::vector<lvrClass::MethodNArgs>;
using Functions = std::vector<lvrClass::Function*>;

constexpr auto Methods2 = lvrClass::Methods2;
constexpr auto Methods4 = lvrClass::Methods4;
constexpr auto Functions1 = lvrClass::Functions1;
constexpr int Untouched = -99;

int sumOf(lvArg const* arguments, int count) {
  int sum = 0;
  for (int i = 0; i < count; ++i) {
    sum += arguments[i].getInt();
  }
  return sum;
}

// Every method adds its argument to a mark of its own, read from the part of the object that it
// belongs to; plain ones leave a trace there.
class Base : public lvReferencable {
 public:
  void plain(lvArg& result, lvArg const& argument) {
    ++calls;
    result.setInt(mark + argument.getInt());
  }
  virtual void named(lvArg& result, lvArg const& argument) {
    result.setInt(mark + 100 + argument.getInt());
  }
  int answering(lvArg& result, lvArg const& argument) {
    plain(result, argument);
    return -1;
  }
  void sum(lvArg& result, lvArg const* arguments, int count) {
    ++calls;
    result.setInt(mark + 200 + sumOf(arguments, count));
  }

  int mark = 1000;
  int calls = 0;
};

// Its first method has the first slot of its virtual table.
class Extra {
 public:
  virtual void first(lvArg& result, lvArg const& argument) {
    result.setInt(extraMark + argument.getInt());
  }
  virtual ~Extra() = default;
  virtual void second(lvArg& result, lvArg const& argument) {
    result.setInt(extraMark + 100 + argument.getInt());
  }
  void plainExtra(lvArg& result, lvArg const& argument) {
    ++extraCalls;
    result.setInt(extraMark + 200 + argument.getInt());
  }
  virtual void sumExtra(lvArg& result, lvArg const* arguments, int count) {
    result.setInt(extraMark + 300 + sumOf(arguments, count));
  }

  int extraMark = 2000;
  int extraCalls = 0;
};

class Both : public Base, public Extra {};

// Overrides methods of both bases.
class Most : public Both {
 public:
  void named(lvArg& result, lvArg const& argument) override {
    result.setInt(mostMark + argument.getInt());
  }
  void first(lvArg& result, lvArg const& argument) override {
    result.setInt(mostMark + 100 + argument.getInt());
  }

  int mostMark = 3000;
};

// Its object part lies behind the other base.
class Behind : public Extra, public lvReferencable {};

#pragma GCC diagnostic push
// On ARM GCC shifts the distance to a base in front of the object part by itself, and complains.
#pragma GCC diagnostic ignored "-Wshift-negative-value"

// The method of one of its bases as an entry in the table of `Object`.
template <class Object, class Owner>
lvrClass::Method entry(void (Owner::*method)(lvArg&, lvArg const&)) {
  return static_cast<lvrClass::Method>(static_cast<void (Object::*)(lvArg&, lvArg const&)>(method));
}
template <class Object, class Owner>
lvrClass::MethodNArgs entryNArgs(void (Owner::*method)(lvArg&, lvArg const*, int)) {
  return static_cast<lvrClass::MethodNArgs>(
      static_cast<void (Object::*)(lvArg&, lvArg const*, int)>(method));
}

#pragma GCC diagnostic pop

// What the method at `index` says about the argument 5; Untouched when it is not called.
int callAt(lvrClass& described, lvReferencable& object, int index, Kind kind = Methods2) {
  lvArg result = integer(Untouched);
  int const status = described.invokeMethod(object, result, integer(5), kind, index);
  EXPECT_EQ(status, result.getInt() == Untouched ? -1 : 0);
  return result.getInt();
}

// The same for a method alone in its table.
int call(lvrClass::Method method, lvReferencable& object) {
  lvrClass& described = keptClass();
  fill(described, Methods2, Methods{method});
  return callAt(described, object, 0);
}

// What the method or function says about the arguments 1, 20 and 300.
int callNArgsAt(lvrClass& described, lvReferencable& object, int index, Kind kind) {
  lvArg const arguments[] = {integer(1), integer(20), integer(300)};
  lvArg result = integer(Untouched);
  int const status = described.invokeMethodNArgs(object, result, arguments, 3, kind, index);
  EXPECT_EQ(status, result.getInt() == Untouched ? -1 : 0);
  return result.getInt();
}

int callNArgs(lvrClass::MethodNArgs method, lvReferencable& object) {
  lvrClass& described = keptClass();
  fill(described, Methods2, MethodsNArgs{method});
  return callNArgsAt(described, object, 0, Methods2);
}

// ---- One argument ------------------------------------------------------------------------------

TEST(ClassInvokeMethod, CallsAPlainMethod) {
  Base object;
  EXPECT_EQ(call(entry<Base>(&Base::plain), object), 1005);
  EXPECT_EQ(object.calls, 1);
}

TEST(ClassInvokeMethod, CallsTheVirtualMethodOfTheObject) {
  Base base;
  Most most;
  EXPECT_EQ(call(entry<Base>(&Base::named), base), 1105);
  EXPECT_EQ(call(entry<Base>(&Base::named), most), 3005);
  EXPECT_EQ(call(entry<Most>(&Most::named), most), 3005);
}

TEST(ClassInvokeMethod, AdjustsTheObjectForAPlainMethodOfASecondBase) {
  Both object;
  EXPECT_EQ(call(entry<Both>(&Extra::plainExtra), object), 2205);
  EXPECT_EQ(object.extraCalls, 1);
}

TEST(ClassInvokeMethod, AdjustsTheObjectForVirtualMethodsOfASecondBase) {
  Both object;
  EXPECT_EQ(call(entry<Both>(&Extra::first), object), 2005);
  EXPECT_EQ(call(entry<Both>(&Extra::second), object), 2105);
}

TEST(ClassInvokeMethod, CallsTheMethodInTheFirstSlotOfAVirtualTable) {
  ASSERT_EQ(test::slotOf(&Extra::first), 1);
  Most object;
  EXPECT_EQ(call(entry<Both>(&Extra::first), object), 3105);
  EXPECT_EQ(call(entry<Both>(&Extra::second), object), 2105);
}

TEST(ClassInvokeMethod, AdjustsAnObjectThatLiesBehindTheMethodsBase) {
  Behind object;
  EXPECT_EQ(call(entry<Behind>(&Extra::first), object), 2005);
  EXPECT_EQ(call(entry<Behind>(&Extra::plainExtra), object), 2205);
}

TEST(ClassInvokeMethod, IgnoresWhatTheMethodReturns) {
  using Answering = int (lvReferencable::*)(lvArg&, lvArg const&);
  lvrClass& described = keptClass();
  fill(described, Methods2, std::vector<Answering>{static_cast<Answering>(&Base::answering)});
  Base object;
  EXPECT_EQ(callAt(described, object, 0), 1005);
}

TEST(ClassInvokeMethod, PassesTheVeryCellsOn) {
  class Recorder : public lvReferencable {
   public:
    void record(lvArg& result, lvArg const& argument) {
      seenResult = &result;
      seenArgument = &argument;
    }
    lvArg const* seenResult = nullptr;
    lvArg const* seenArgument = nullptr;
  } object;
  lvrClass& described = keptClass();
  fill(described, Methods2, Methods{static_cast<lvrClass::Method>(&Recorder::record)});
  lvArg result = integer(1);
  lvArg const argument;
  EXPECT_EQ(described.invokeMethod(object, result, argument, Methods2, 0), 0);
  EXPECT_EQ(object.seenResult, &result);
  EXPECT_EQ(object.seenArgument, &argument);
  EXPECT_EQ(result.getInt(), 1);
}

// A class with two methods in each table of methods, named in one.
class ClassMethods : public ::testing::Test {
 protected:
  ClassMethods() {
    Methods const methods{entry<Both>(&Base::plain), entry<Both>(&Extra::first)};
    char const* const names[] = {"plain", "first"};
    described.setDirectObjectNamedOffsets(Methods2, 2, methods.data(), names);
    fill(described, Methods4, Methods{methods[1], methods[0]});
    fill(described, lvrClass::Methods8, Methods{entry<Both>(&Extra::second)});
  }

  // That neither way of calling finds a method there.
  void expectNoMethod(lvrClass& asked, Kind kind, int index) {
    EXPECT_EQ(callAt(asked, object, index, kind), Untouched);
    EXPECT_EQ(callNArgsAt(asked, object, index, kind), Untouched);
  }

  Both object;
  lvrClass& described = keptClass();
};

TEST_F(ClassMethods, AreCalledByKindAndIndex) {
  EXPECT_EQ(callAt(described, object, 0), 1005);
  EXPECT_EQ(callAt(described, object, 1), 2005);
  EXPECT_EQ(callAt(described, object, 0, Methods4), 2005);
  EXPECT_EQ(callAt(described, object, 1, Methods4), 1005);
  EXPECT_EQ(callAt(described, object, 0, lvrClass::Methods8), 2105);
}

TEST_F(ClassMethods, AreNotThereOutsideOfTheTable) {
  for (int const index : {-1, 2, 65536, -2147483647 - 1, 2147483647}) {
    SCOPED_TRACE(index);
    expectNoMethod(described, Methods2, index);
  }
}

TEST_F(ClassMethods, AreNotThereWithoutTheTable) {
  expectNoMethod(keptClass(), Methods2, 0);
  expectNoMethod(keptClass(), Functions1, 0);
  lvrClass& without = keptClass();
  without.needReflection();
  expectNoMethod(without, Methods2, 0);
  expectNoMethod(without, Functions1, 0);
  expectNoMethod(described, kindOf(10), 0);
  expectNoMethod(described, kindOf(11), 0);
  expectNoMethod(described, kindOf(0xFFFFFFFFU), 0);
}

TEST_F(ClassMethods, AreNotThereInTablesOfFields) {
  for (Kind const kind : {lvrClass::Fields, lvrClass::Fields6}) {
    lvrClass& fields = keptClass();
    Methods const methods{entry<Both>(&Base::plain)};
    fields.setDirectObjectOffsets(kind, 2, methods.data(), 0);
    expectNoMethod(fields, kind, 0);
  }
}

TEST_F(ClassMethods, AreNotThereWhereTheTableWasNeverFilled) {
  lvrClass& unfilled = keptClass();
  unfilled.needOffsetTable(Methods2, 1, nullptr);
  unfilled.needOffsetTable(Functions1, 1, nullptr);
  expectNoMethod(unfilled, Methods2, 0);
  expectNoMethod(unfilled, Functions1, 0);
}

TEST_F(ClassMethods, AreCalledByName) {
  lvArg result;
  EXPECT_EQ(described.invokeMethod(object, result, integer(7), Methods2, lvString("first")), 0);
  EXPECT_EQ(result.getInt(), 2007);
  EXPECT_EQ(described.invokeMethod(object, result, integer(7), Methods2, test::string("plain")), 0);
  EXPECT_EQ(result.getInt(), 1007);
}

TEST_F(ClassMethods, AreNotFoundByUnknownNames) {
  lvArg result = integer(Untouched);
  lvArg const argument = integer(7);
  EXPECT_EQ(described.invokeMethod(object, result, argument, Methods2, lvString("none")), -1);
  EXPECT_EQ(described.invokeMethod(object, result, argument, Methods4, lvString("first")), -1);
  EXPECT_EQ(described.invokeMethod(object, result, argument, kindOf(10), lvString("first")), -1);
  EXPECT_EQ(described.invokeMethod(object, result, argument, Methods2, lvArg()), -1);
  EXPECT_EQ(result.getInt(), Untouched);
}

TEST_F(ClassMethods, OfASuperclassComeFirst) {
  lvrClass& sub = test::keptSubclass(described);
  fill(sub, Methods2, Methods{entry<Most>(&Most::named)});
  Most most;
  EXPECT_EQ(callAt(sub, most, 0), 1005);
  EXPECT_EQ(callAt(sub, most, 1), 3105);
  EXPECT_EQ(callAt(sub, most, 2), 3005);
}

// ---- Many arguments ----------------------------------------------------------------------------

void sumArguments(lvArg& result, lvArg const* arguments, int count) {
  result.setInt(sumOf(arguments, count));
}

void countArguments(lvArg& result, lvArg const* /*arguments*/, int count) { result.setInt(count); }

TEST(ClassInvokeMethodNArgs, CallsAPlainMethod) {
  Base object;
  EXPECT_EQ(callNArgs(entryNArgs<Base>(&Base::sum), object), 1521);
  EXPECT_EQ(object.calls, 1);
}

TEST(ClassInvokeMethodNArgs, AdjustsTheObjectForMethodsOfASecondBase) {
  Both object;
  Behind behind;
  EXPECT_EQ(callNArgs(entryNArgs<Both>(&Extra::sumExtra), object), 2621);
  EXPECT_EQ(callNArgs(entryNArgs<Behind>(&Extra::sumExtra), behind), 2621);
}

TEST(ClassInvokeMethodNArgs, CallsThePlainFunctionsOfEveryOddKind) {
  Base object;
  lvrClass& described = keptClass();
  for (unsigned const kind : {1U, 3U, 5U, 7U, 9U}) {
    SCOPED_TRACE(kind);
    fill(described, kindOf(kind), Functions{sumArguments, countArguments});
    EXPECT_EQ(callNArgsAt(described, object, 0, kindOf(kind)), 321);
    EXPECT_EQ(callNArgsAt(described, object, 1, kindOf(kind)), 3);
    EXPECT_EQ(callNArgsAt(described, object, 2, kindOf(kind)), Untouched);
    EXPECT_EQ(callNArgsAt(described, object, -1, kindOf(kind)), Untouched);
  }
}

TEST(ClassInvokeMethodNArgs, PassesNoArgumentsOn) {
  Base object;
  lvrClass& described = keptClass();
  fill(described, Functions1, Functions{countArguments});
  fill(described, Methods2, MethodsNArgs{entryNArgs<Base>(&Base::sum)});
  lvArg result;
  EXPECT_EQ(described.invokeMethodNArgs(object, result, nullptr, 0, Functions1, 0), 0);
  EXPECT_EQ(result.getInt(), 0);
  EXPECT_EQ(described.invokeMethodNArgs(object, result, nullptr, 0, Methods2, 0), 0);
  EXPECT_EQ(result.getInt(), 1200);
}

TEST(ClassInvokeMethodNArgs, FindsMethodsAndFunctionsByName) {
  Base object;
  lvrClass& described = keptClass();
  char const* const names[] = {"sum", "count"};
  described.setDirectObjectNamedOffsets(Functions1, 2,
                                        Functions{sumArguments, countArguments}.data(), names);
  described.setDirectObjectNamedOffsets(Methods2, 1,
                                        MethodsNArgs{entryNArgs<Base>(&Base::sum)}.data(), names);
  lvArg const arguments[] = {integer(1), integer(20)};
  lvArg result;
  auto const callNamed = [&](Kind kind, char const* name) {
    return described.invokeMethodNArgs(object, result, arguments, 2, kind, lvString(name));
  };
  EXPECT_EQ(callNamed(Functions1, "count"), 0);
  EXPECT_EQ(result.getInt(), 2);
  EXPECT_EQ(callNamed(Methods2, "sum"), 0);
  EXPECT_EQ(result.getInt(), 1221);
  EXPECT_EQ(callNamed(Methods2, "count"), -1);
  EXPECT_EQ(callNamed(lvrClass::Functions3, "count"), -1);
  EXPECT_EQ(result.getInt(), 1221);
}

TEST(ClassInvokeMethod, DoesNotCallPlainFunctions) {
  Base object;
  lvrClass& described = keptClass();
  char const* const names[] = {"sum"};
  for (unsigned const kind : {1U, 3U, 5U, 7U, 9U}) {
    SCOPED_TRACE(kind);
    described.setDirectObjectNamedOffsets(kindOf(kind), 1, Functions{sumArguments}.data(), names);
    EXPECT_EQ(callAt(described, object, 0, kindOf(kind)), Untouched);
    lvArg result = integer(Untouched);
    EXPECT_EQ(described.invokeMethod(object, result, integer(5), kindOf(kind), lvString("sum")),
              -1);
    EXPECT_EQ(result.getInt(), Untouched);
  }
}

TEST(ClassInvokeMethodNArgs, IgnoresWhatAFunctionReturns) {
  using Answering = int(lvArg&, lvArg const*, int);
  Answering* const answering = [](lvArg& result, lvArg const*, int count) {
    result.setInt(count);
    return -1;
  };
  Base object;
  lvrClass& described = keptClass();
  fill(described, Functions1, std::vector<Answering*>{answering});
  EXPECT_EQ(callNArgsAt(described, object, 0, Functions1), 3);
}

}  // namespace
