// Releasing what is nested deep.

#include <gtest/gtest.h>

#include <string>

#include "support/Nested.h"
#include "support/Objects.h"
#include "support/SmallStack.h"

namespace {

using test::Wrap;

constexpr int Deep = 1000000;

// More levels than these are released in another order.
constexpr int OrdinaryDepth = 100;

template <int N>
void releaseOnSmallStack(Wrap const (&wraps)[N]) {
  ASSERT_TRUE(test::runOnSmallStack([&wraps] {
    test::Probe::Log log;
    Wrap const aroundProbe[] = {wraps[0]};
    lvArg value = aroundProbe[0](lvArg(*new test::Probe(log)));
    for (int i = 1; i < Deep; ++i) {
      value = wraps[i % N](value);
    }
    EXPECT_EQ(0, log.destroyed);
    value.setNil();
    EXPECT_EQ(1, log.finalized);
    EXPECT_EQ(1, log.destroyed);
  }));
}

TEST(DeepRelease, OfVectorsFitsASmallStack) { releaseOnSmallStack({test::inVector}); }

TEST(DeepRelease, OfMapsFitsASmallStack) { releaseOnSmallStack({test::inMap}); }

TEST(DeepRelease, OfMapsUnderTheKeysOfMapsFitsASmallStack) {
  releaseOnSmallStack({test::inMapAsKey});
}

TEST(DeepRelease, OfTupleSetsFitsASmallStack) { releaseOnSmallStack({test::inTupleSet}); }

TEST(DeepRelease, OfStacksFitsASmallStack) { releaseOnSmallStack({test::inStack}); }

TEST(DeepRelease, OfLinkedListsFitsASmallStack) { releaseOnSmallStack({test::inLinkedList}); }

TEST(DeepRelease, OfSortedListsFitsASmallStack) { releaseOnSmallStack({test::inSortedList}); }

TEST(DeepRelease, OfObjectsInFieldsFitsASmallStack) { releaseOnSmallStack({test::inLink}); }

TEST(DeepRelease, OfAllKindsMixedFitsASmallStack) {
  releaseOnSmallStack({test::inVector, test::inMap, test::inTupleSet, test::inStack,
                       test::inLinkedList, test::inSortedList, test::inLink, test::inMapAsKey});
}

TEST(DeepRelease, OfAWideObjectFarDownFitsASmallStack) {
  ASSERT_TRUE(test::runOnSmallStack([] {
    test::Probe::Log log;
    constexpr int width = 1000;
    auto* const wide = new lvrVector(width);
    lvArg value(*wide);
    for (int i = 0; i < width; ++i) {
      wide->insert(test::inLink(lvArg(*new test::Probe(log))), -1);
    }
    for (int i = 0; i < 2 * OrdinaryDepth; ++i) {
      value = test::inLink(value);
    }
    value.setNil();
    EXPECT_EQ(width, log.destroyed);
  }));
}

// ---- Order -------------------------------------------------------------------------------------

// Writes "[" when it is finalized, "<" when its destructor begins, and ">" when all that it held is
// gone; its inner object's marks fall in between.
class Marking : public lvReferencable {
 public:
  explicit Marking(std::string& target) : atEnd(target), log(target) {}
  ~Marking() override { log += '<'; }
  int finalize() override {
    log += '[';
    return 0;
  }

 private:
  // Destroyed after `inner`.
  struct AtEnd {
    explicit AtEnd(std::string& target) : log(target) {}
    ~AtEnd() { log += '>'; }
    std::string& log;
  };

  AtEnd atEnd;
  std::string& log;

 public:
  lvArg inner;
};

lvArg chainOf(int depth, std::string& log) {
  lvArg value;
  for (int i = 0; i < depth; ++i) {
    auto* const outer = new Marking(log);
    outer->inner = value;
    value = lvArg(*outer);
  }
  return value;
}

TEST(DeepRelease, NestsTheEndOfAChildInThatOfItsHolderDownToAHundredLevels) {
  std::string log;
  lvArg value = chainOf(OrdinaryDepth, log);
  value.setNil();
  std::string expected;
  for (int i = 0; i < OrdinaryDepth; ++i) {
    expected += "[<";
  }
  EXPECT_EQ(expected + std::string(OrdinaryDepth, '>'), log);
}

// What goes after the container that derives from it.
class LogsItsEnd {
 public:
  explicit LogsItsEnd(std::string& target) : log(target) {}
  ~LogsItsEnd() { log += '>'; }

 protected:
  std::string& log;
};

// A container that writes "[" when it is finalized, and ">" when all of it is gone.
template <class Container>
class MarkingContainer : private LogsItsEnd, public Container {
 public:
  template <class... Arguments>
  explicit MarkingContainer(std::string& target, Arguments... arguments)
      : LogsItsEnd(target), Container(arguments...) {}
  int finalize() override {
    log += '[';
    return Container::finalize();
  }
};

template <class Container, class... Arguments>
void expectNestedEnds(void (*put)(Container&, lvArg const&), Arguments... arguments) {
  constexpr int depth = OrdinaryDepth - 10;
  std::string log;
  lvArg value = test::logging(log, "*");
  for (int i = 0; i < depth; ++i) {
    auto* const outer = new MarkingContainer<Container>(log, arguments...);
    lvArg const holder(*outer);
    put(*outer, value);
    value = holder;
  }
  value.setNil();
  EXPECT_EQ(std::string(depth, '[') + '*' + std::string(depth, '>'), log);
}

TEST(DeepRelease, NestsTheEndOfAnElementInThatOfItsHolder) {
  expectNestedEnds<lvrVector>([](lvrVector& outer, lvArg const& held) { outer.insert(held, -1); },
                              1);
  expectNestedEnds<lvrStack>([](lvrStack& outer, lvArg const& held) { outer.push(held); }, 1);
  expectNestedEnds<lvrDLList>([](lvrDLList& outer, lvArg const& held) { outer.insert(held, -1); });
  expectNestedEnds<lvrSortedArrayList>(
      [](lvrSortedArrayList& outer, lvArg const& held) { outer.add(held); }, 1U);
}

TEST(DeepRelease, NestsTheEndOfAValueInThatOfItsMap) {
  expectNestedEnds<lvrHashMap>(
      [](lvrHashMap& outer, lvArg const& held) { outer.put(test::integer(1), held); }, 1U);
  expectNestedEnds<lvrTupleSet>(
      [](lvrTupleSet& outer, lvArg const& held) { outer.put(test::integer(1), held); }, 1, 1U, 0U);
}

TEST(DeepRelease, NestsTheEndOfAKeyInThatOfItsMap) {
  expectNestedEnds<lvrHashMap>(
      [](lvrHashMap& outer, lvArg const& held) { outer.put(held, test::integer(1)); }, 1U);
  expectNestedEnds<lvrTupleSet>(
      [](lvrTupleSet& outer, lvArg const& held) { outer.put(held, test::integer(1)); }, 1, 1U, 0U);
}

TEST(DeepRelease, EndsEveryObjectOnceAtAnyDepth) {
  std::string log;
  lvArg value = chainOf(1000, log);
  value.setNil();
  EXPECT_EQ(3000U, log.size());
  EXPECT_EQ("[<[<", log.substr(0, 4));
}

TEST(DeepRelease, IsOverWhenTheOutermostReleaseReturns) {
  std::string log;
  lvArg const value = chainOf(1000, log);
  lvArg inner;
  inner.exchange(static_cast<Marking*>(value.getReferencable())->inner);
  EXPECT_TRUE(log.empty());
  inner.setNil();
  EXPECT_EQ(3U * 999, log.size());
}

TEST(DeepRelease, FindsAnObjectWholeWhenItsFinalizeComesLate) {
  // Far below the outermost release, a finalize() takes and drops references to its own object, and
  // builds and releases others.
  test::Probe::Log log;
  struct Busy : lvReferencable {
    explicit Busy(test::Probe::Log& target) : log(target) {}
    int finalize() override {
      lvArg const self(*this);
      lvArg const other(self);
      test::inVector(lvArg(*new test::Probe(log)));
      return 0;
    }
    test::Probe::Log& log;
  };
  lvArg value(*new Busy(log));
  for (int i = 0; i < 2 * OrdinaryDepth; ++i) {
    value = test::inLink(value);
  }
  value.setNil();
  EXPECT_EQ(1, log.destroyed);
}

TEST(DeepRelease, LetsInternedStringsFarDownBeFoundAgain) {
  // The last holder of the string stands deeper than releases nest.
  lvArg value = lvString("a text that only the innermost holds");
  for (int i = 0; i < 2 * OrdinaryDepth; ++i) {
    value = test::inLink(value);
  }
  value.setNil();
  lvString const again("a text that only the innermost holds");
  EXPECT_EQ("a text that only the innermost holds", test::textOf(again));
  EXPECT_EQ(1, test::countOf(again));
}

}  // namespace
