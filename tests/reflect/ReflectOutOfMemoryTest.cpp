// Every operation of classes, their builder and their registry, at each of its allocations out of
// memory.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "support/Cells.h"
#include "support/ClassTables.h"
#include "support/FailLoop.h"
#include "support/Objects.h"
#include "support/Registries.h"
#include "support/ValueTrees.h"
#include "tarselvalues/reflect/lvClassBuilder.h"
#include "tarselvalues/reflect/lvWalk.h"

namespace {

using test::countOf;
using test::exhaust;
using test::Exits;
using test::integer;
using test::NeedsNone;
using test::Nothing;
using test::string;
using test::Throws;
using test::Words;

constexpr auto Fields = lvrClass::Fields;
constexpr auto Methods = lvrClass::Methods2;
constexpr auto ManyMethods = lvrClass::Methods4;
constexpr auto Functions = lvrClass::Functions1;

// Some steps answer -1, others throw.
constexpr char ThrowsOrRefuses[] = "throws, -1";
constexpr char ThrowsRefusesOrThrows[] = "throws, -1, throws";

class Point : public lvReferencable {
 public:
  void take(lvArg& result, lvArg const& argument) { result = argument; }
  void takeMany(lvArg& result, lvArg const* /*arguments*/, int count) { result.setInt(count); }

  lvArg x = integer(1);
  lvArg y = integer(2);
};

void count(lvArg& result, lvArg const* /*arguments*/, int n) { result.setInt(n); }

// ---- Classes -----------------------------------------------------------------------------------

// Frees what a class leaves behind deliberately, so that all that is left behind is a mistake.
void freeTables(lvrClass& described) {
  test::ClassTable* const* const tables = test::tablesOf(described);
  for (unsigned i = 0; tables != nullptr && i < lvrClass::TableCount; ++i) {
    if (tables[i] != nullptr) {
      std::free(tables[i]->entries);
      delete tables[i];
    }
  }
  delete[] tables;
}

// A class without tables, and what to fill them from.
struct NewClass {
  NewClass() : described(0, name, nullptr) {}
  ~NewClass() { freeTables(*described.getClass()); }
  NewClass(NewClass const&) = delete;
  NewClass& operator=(NewClass const&) = delete;

  // The array of tables may be there without any.
  std::string shown() const {
    std::string tables;
    for (test::TableKind const kind : test::allKinds()) {
      test::ClassTable const* const table = test::tableOf(*described.getClass(), kind);
      tables += table == nullptr ? "." : std::to_string(table->count) + test::brief(table->names);
    }
    return tables + " held " + std::to_string(countOf(described)) + " " +
           std::to_string(countOf(name)) + " indices " +
           std::to_string(described->localLookupIndex(Fields, lvString("second")));
  }

  static constexpr std::uintptr_t Entries[] = {1, 2, 3};
  static constexpr char const* Names[] = {"first", "second", "third"};

  lvArg name = string("Point");
  lvClass described;
  lvArg other = string("other");
};

TEST(ClassOutOfMemory, LeavesTheClassWithoutTheTableThatWasToBeFilled) {
  exhaust<NewClass>("lvrClass", "needReflection", Throws,
                    [](NewClass& with) { return with.described->needReflection(); });
  exhaust<NewClass>("lvrClass", "needOffsetTable", ThrowsOrRefuses, [](NewClass& with) {
    return with.described->needOffsetTable(Fields, 3, nullptr);
  });
  exhaust<NewClass>("lvrClass", "setDirectObjectOffsets", ThrowsOrRefuses, [](NewClass& with) {
    return with.described->setDirectObjectOffsets(Fields, 3, NewClass::Entries, 0);
  });
  exhaust<NewClass>("lvrClass", "setDirectObjectNamedOffsets", ThrowsRefusesOrThrows,
                    [](NewClass& with) {
                      return with.described->setDirectObjectNamedOffsets(
                          Fields, 3, NewClass::Entries, NewClass::Names);
                    });
  exhaust<NewClass>(
      "lvrClass", "setDirectObjectInterleavedNamedOffsets", ThrowsRefusesOrThrows,
      [](NewClass& with) {
        std::uintptr_t const pairs[] = {1, reinterpret_cast<std::uintptr_t>(NewClass::Names[0]), 2,
                                        reinterpret_cast<std::uintptr_t>(NewClass::Names[1])};
        return with.described->setDirectObjectInterleavedNamedOffsets(Fields, 2, pairs);
      });
}

struct ClassWithTable : NewClass {
  ClassWithTable() { described->needOffsetTable(Fields, 3, nullptr); }
};

TEST(ClassOutOfMemory, LeavesTheTableWithoutNames) {
  exhaust<ClassWithTable>("lvrClass", "needNames", Throws, [](ClassWithTable& with) {
    return with.described->needNames(Fields, 3);
  });
}

TEST(ClassOutOfMemory, IsToldWhereThereIsNoneForAClassOrADefaultObject) {
  exhaust<NewClass>("lvrClass", "lvrClass, defaultCtorMethod", Throws,
                    [](NewClass&) { return lvArg(*lvrClass::defaultCtorMethod()); });
  exhaust<NewClass>("lvrClass", "lvrClass", Throws, [](NewClass& with) {
    return lvArg(*new lvrClass(0, with.name, with.described, nullptr));
  });
  exhaust<NewClass>("lvrClass", "instantiateDefaultObject", Throws, [](NewClass& with) {
    lvrClass const described(0, with.name, lvrClass::defaultCtorMethod);
    return lvArg(*described.instantiateDefaultObject());
  });
  exhaust<NewClass>("lvClass", "lvClass", Throws, [](NewClass&) { return lvClass(); });
  exhaust<NewClass>("lvClass", "lvClass", Throws,
                    [](NewClass& with) { return lvClass(0, with.name, nullptr); });
  exhaust<NewClass>("lvClass", "lvClass", Throws,
                    [](NewClass& with) { return lvClass(0, with.name, with.described, nullptr); });
}

TEST(ClassOutOfMemory, NeedsNoMemoryForNamesAndSuperclasses) {
  exhaust<NewClass>("lvrClass", "setClassName, getClassName, setSuperClass, getSuperClass",
                    NeedsNone, [](NewClass& with) {
                      lvArg out;
                      lvrClass described;
                      return described.setClassName(with.name) + described.getClassName(out) +
                             described.setSuperClass(with.described) + described.getSuperClass(out);
                    });
  exhaust<NewClass>("lvrClass", "getNItems, localLookupIndex, finalize", NeedsNone,
                    [](NewClass& with) {
                      return with.described->getNItems(Fields) + with.described->finalize() +
                             with.described->localLookupIndex(Fields, with.name);
                    });
  exhaust<NewClass>("lvrClass", "getClassDesc, getStaticClassDesc", NeedsNone, [](NewClass& with) {
    return with.described->getClassDesc().eq(lvrClass::getStaticClassDesc());
  });
  exhaust<NewClass>("lvClass", "lvClass, getClass, getClassDesc", NeedsNone, [](NewClass& with) {
    lvClass const shared(with.described);
    return shared.getClass() != nullptr && shared.getClassDesc().eq(with.name);
  });
}

// ---- The builder -------------------------------------------------------------------------------

using Builder = lvClassBuilder<Point>;

Builder& describe(Builder& builder) {
  return builder.field("x", &Point::x)
      .method<Methods>("take", &Point::take)
      .method<ManyMethods>("takeMany", &Point::takeMany)
      .function<Functions>("count", &count);
}

// A point, and a builder of its class, described so far.
struct Described {
  Described() { describe(builder); }
  ~Described() {
    if (lvrClass* const described = built.getClass()) {
      freeTables(*described);
    }
  }
  Described(Described const&) = delete;
  Described& operator=(Described const&) = delete;

  std::string shown() const {
    return test::brief(built) + test::brief(point->x) + test::brief(point->y) + test::brief(result);
  }
  int build() {
    built = builder.build();
    return static_cast<int>(built.isNil());
  }

  Builder builder{"Point of the builder"};
  lvClass built{lvArg::NilValue};
  test::Held<Point> point;
  lvArg result;
};

// Describes and builds a class while each allocation of `describeOn` in turn fails and is tried
// again, and returns the values that its fields have in a new point.
template <class DescribeOn>
std::string fieldsAfterFailures(DescribeOn const& describeOn) {
  for (int allocations = 0;; ++allocations) {
    Described with;
    bool const failed = test::failsAfter(allocations, [&] { describeOn(with.builder); });
    if (failed) {
      describeOn(with.builder);
    }
    with.builder.field("y", &Point::y);
    EXPECT_EQ(with.build(), 0);
    lvArg x;
    lvArg y;
    EXPECT_EQ(with.built->getObjectField(x, *with.point, lvString("x")), 0);
    EXPECT_EQ(with.built->getObjectField(y, *with.point, lvString("y")), 0);
    std::string const fields = test::brief(x) + " " + test::brief(y) + " of " +
                               std::to_string(with.built->getNItems(Fields));
    if (!failed) {
      return fields;
    }
    EXPECT_EQ(fields, "1 2 of 3") << "after " << allocations << " allocations";
  }
}

TEST(ClassBuilderOutOfMemory, KeepsNamesAndFieldsTogether) {
  auto const describeOn = [](Builder& builder) { builder.field("again", &Point::x); };
  EXPECT_EQ(fieldsAfterFailures(describeOn), "1 2 of 3");
}

TEST(ClassBuilderOutOfMemory, IsToldForWhatIsAppended) {
  exhaust<Described>("lvClassBuilder", "field", Throws,
                     [](Described& with) { with.builder.field("y", &Point::y); });
  exhaust<Described>("lvClassBuilder", "method", Throws, [](Described& with) {
    with.builder.method<lvrClass::Methods8>("take", &Point::take);
  });
  exhaust<Described>("lvClassBuilder", "function", Throws, [](Described& with) {
    with.builder.function<lvrClass::Functions3>("n", &count);
  });
}

TEST(ClassBuilderOutOfMemory, IsToldForABuilder) {
  class Place : public Point {};
  exhaust<Nothing>("lvClassBuilder", "lvClassBuilder", Throws,
                   [](Nothing&) { Builder const builder("A class that goes"); });
  exhaust<Described>("lvClassBuilder", "lvClassBuilder", Throws, [](Described& with) {
    lvClassBuilder<Place> const builder("A class that goes", with.builder);
  });
}

// The tables that were filled before the memory ran out stay, and are not filled again.
TEST(ClassBuilderOutOfMemory, GoesOnWhereBuildingFailed) {
  for (int allocations = 0;; ++allocations) {
    Described with;
    int status = 0;
    bool const thrown = test::failsAfter(allocations, [&] { status = with.build(); });
    if (!thrown && status == 0) {
      EXPECT_GT(allocations, 4 * 3);
      break;
    }
    EXPECT_TRUE(with.built.isNil());
    EXPECT_EQ(with.build(), 0);
    for (test::TableKind const kind : {Fields, Functions, Methods, ManyMethods}) {
      EXPECT_EQ(with.built->getNItems(kind), 1) << allocations << " " << kind;
    }
    EXPECT_EQ(with.built->localLookupIndex(Methods, lvString("take")), 0) << allocations;
  }
}

// Returns how many times registering a class failed, each time at another allocation.
int registeringFailures(Builder& builder) {
  int failures = 0;
  int status = -1;
  while (test::failsAfter(failures, [&] { status = builder.registerClass(); }) || status != 0) {
    ++failures;
  }
  return failures;
}

TEST(ClassBuilderOutOfMemory, RegistersAClassWhenThereIsMemoryAgain) {
  lvtClassRegistry& registry = *lvtClassRegistry::getInstance();
  lvString const name("A point that is registered");
  Builder builder("A point that is registered");
  describe(builder);
  EXPECT_GT(registeringFailures(builder), 0);
  EXPECT_EQ(lvClass(registry.getClass(name))->getNItems(Methods), 1);
  exhaust<Nothing>("lvClassBuilder", "registerClass, build", NeedsNone,
                   [&](Nothing&) { return builder.registerClass(); });
}

// ---- Filled classes ----------------------------------------------------------------------------

struct Built : Described {
  Built() {
    build();
    name = lvString("x");
    methods[0] = lvString("take");
    methods[1] = lvString("takeMany");
    methods[2] = lvString("count");
  }

  lvString name;
  lvString methods[3];
};

TEST(ClassOutOfMemory, NeedsNoMemoryForFields) {
  exhaust<Built>("lvrClass", "setFieldAt, getFieldAt, setObjectField, getObjectField", NeedsNone,
                 [](Built& with) {
                   lvrClass const& built = *with.built.getClass();
                   return built.setFieldAt(*with.point, integer(8), Fields, 0) +
                          built.getFieldAt(with.result, *with.point, Fields, 0) +
                          built.setObjectField(*with.point, with.name, integer(9)) +
                          built.getObjectField(with.result, *with.point, with.name);
                 });
}

TEST(ClassOutOfMemory, NeedsNoMemoryToCallMethods) {
  exhaust<Built>("lvrClass", "invokeMethod, invokeMethodNArgs", NeedsNone, [](Built& with) {
    lvrClass& built = *with.built.getClass();
    lvArg const two[2];
    return built.invokeMethod(*with.point, with.result, with.name, Methods, 0) +
           built.invokeMethod(*with.point, with.result, with.name, Methods, with.methods[0]) +
           built.invokeMethodNArgs(*with.point, with.result, two, 2, ManyMethods, with.methods[1]) +
           built.invokeMethodNArgs(*with.point, with.result, two, 2, Functions, 0);
  });
}

// ---- The registry ------------------------------------------------------------------------------

// One of its own, whose set has room for `Classes` more.
template <int Classes>
struct Registry {
  Registry() {
    for (int i = Classes; i < 8; ++i) {
      registry.putClass(integer(i), described);
    }
  }
  std::string shown() const {
    return std::to_string(test::setOf(registry).getSize()) + " held " +
           std::to_string(countOf(described)) + " " + std::to_string(countOf(name));
  }

  lvtClassRegistry registry;
  lvArg name = string("Point");
  lvClass described;
};

TEST(ClassRegistryOutOfMemory, IsToldAndLeavesItAsItWas) {
  exhaust<Nothing>("lvtClassRegistry", "lvtClassRegistry", Throws,
                   [](Nothing&) { lvtClassRegistry const registry; });
  exhaust<Nothing>("lvtClassRegistry", "addBuiltinClasses", Throws, [](Nothing&) {
    lvtClassRegistry registry;
    registry.addBuiltinClasses();
    return registry.getClass(lvArg::NilValue);
  });
}

TEST(ClassRegistryOutOfMemory, EndsTheProcessWhereItCannotGrow) {
  exhaust<Registry<0>>("lvtClassRegistry", "putClass", Exits, [](Registry<0>& with) {
    return with.registry.putClass(with.name, with.described);
  });
}

TEST(ClassRegistryOutOfMemory, NeedsNoMemoryWhileThereIsRoom) {
  exhaust<Registry<1>>("lvtClassRegistry", "putClass, getClass", NeedsNone, [](Registry<1>& with) {
    int const status = with.registry.putClass(with.name, with.described) +
                       with.registry.putClass(with.name, with.described);
    return status + static_cast<int>(with.registry.getClass(with.name).eq(with.described));
  });
  lvtClassRegistry::getInstance();
  exhaust<Nothing>("lvtClassRegistry", "getInstance", NeedsNone,
                   [](Nothing&) { lvtClassRegistry::getInstance(); });
}

// ---- Walking -----------------------------------------------------------------------------------

// A value with a level of each kind, and what a walk has visited of it.
struct Walked {
  std::string shown() const {
    return "held " + std::to_string(countOf(map)) + " " + std::to_string(countOf(vector));
  }

  lvArg vector = test::vectorOf({test::string("a")});
  lvArg map = test::mapOf({{integer(1), vector}});
};

TEST(WalkOutOfMemory, IsToldAndHoldsNothingAfterwards) {
  exhaust<Walked>("lvWalk", "lvWalk", Throws, [](Walked& with) {
    int visited = 0;
    lvWalk(with.map, [&](lvArg const&, lvWalkPlace const&) {
      ++visited;
      return lvWalkVisitor::GoOn;
    });
    return visited;
  });
}

TEST(WalkOutOfMemory, NeedsNoMemoryToLeaveAValue) {
  class Idle : public lvWalkVisitor {
   public:
    Answer visit(lvArg const&, lvWalkPlace const&) override { return GoOn; }
  };
  exhaust<Walked>("lvWalkVisitor", "leave", NeedsNone, [](Walked& with) {
    lvWalkPlace const place{};
    return int{Idle().leave(with.map, place)};
  });
}

}  // namespace
