// What is read from the library's own parser at once, beside what the same parser yields item by
// item when it is of a class of the program's.

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>
#include <string>

#include "support/FieldObjects.h"
#include "support/SinkRuns.h"
#include "support/SourceRuns.h"
#include "support/TextReading.h"
#include "support/TextWriter.h"
#include "support/TreeModel.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using Access = lvLayoutAccess<lvtStringArgSource>;
using test::described;

// Whatever its class overrides, it is called through the virtual functions.
class OwnSource : public lvtStringArgSource {
 public:
  using lvtStringArgSource::lvtStringArgSource;
};

// A cell, with how many hold what is in it.
std::string counted(lvArg const& cell) {
  return described(cell) +
         (cell.getReferencable() != nullptr ? " x" + std::to_string(test::countOf(cell)) : "");
}

// The hashes that vectors have by now, since those stay when they are cleared. In no order: that of
// maps depends on all maps of the process.
void collectHashes(lvArg const& value, std::multiset<unsigned>& hashes) {
  if (auto* const list = dynamic_cast<lvrVector*>(value.getReferencable())) {
    for (int i = 0; i < list->getSize(); ++i) {
      collectHashes(list->at(i), hashes);
    }
    list->clear();
    hashes.insert(list->hashCode());
  } else if (auto* const map = dynamic_cast<lvrHashMap*>(value.getReferencable())) {
    for (lvMapEnumerator entry(*map); entry->next();) {
      collectHashes(entry->getKey(), hashes);
      collectHashes(entry->getValue(), hashes);
    }
  }
}

std::string hashesIn(lvArg const& value) {
  std::multiset<unsigned> hashes;
  collectHashes(value, hashes);
  return testing::PrintToString(hashes);
}

// All that reading a text to its end, item by item, yields and leaves.
template <class Source>
std::string outcomeOf(std::string const& text) {
  test::ExactText const exact(text);
  Source source(exact.data(), exact.size());
  std::string outcome;
  outcome += test::printedBy([&] {
    int status = 0;
    for (int items = 0; status != lvArgSource::SOURCE_END && items < 1000; ++items) {
      lvArg value = test::string("before");
      status = test::HeldSerializer()->deserializeItemInto(value, source);
      outcome += std::to_string(status) + ": " + described(value) + " at " +
                 std::to_string(source.getParseOffset()) + " state " +
                 std::to_string(Access::state(source)) + " flags " +
                 std::to_string(Access::flags(source)) + " errors " +
                 std::to_string(source.getErrorCount()) + " token " +
                 counted(Access::tokenValue(source)) + " class " +
                 counted(Access::pendingClassName(source)) + " hashes " + hashesIn(value) + "\n";
    }
  });
  return outcome;
}

class SerializerReadsAtOnce : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }

  static void expectSame(std::string const& text) {
    EXPECT_EQ(outcomeOf<lvtStringArgSource>(text), outcomeOf<OwnSource>(text)) << text;
  }
};

TEST_F(SerializerReadsAtOnce, ReadsWhatIsReadItemByItem) {
  for (char const* const text : {"",
                                 " ",
                                 "1",
                                 "-1",
                                 "- 1",
                                 "--1",
                                 "-",
                                 "a",
                                 "_",
                                 "#nil",
                                 "# nil",
                                 "#",
                                 "#0",
                                 "#{",
                                 "\"a\"",
                                 "\"a",
                                 "\"a\\\"b\" c",
                                 "\"%41%0a%\" x",
                                 "{}",
                                 "{ }",
                                 "{)",
                                 "{1)",
                                 "{1,}",
                                 "{,}",
                                 "{1,,2}",
                                 "{1 2}",
                                 "{1=2}",
                                 "{a,b,c}",
                                 "{{},{{}},{{1},2}}",
                                 "{(a=1)}",
                                 "{ ( a = 1 ) , ( b = 2 ) }",
                                 "{(a)}",
                                 "{(a=)}",
                                 "{(=a)}",
                                 "{()}",
                                 "{(a,b,c)}",
                                 "{(a=1}",
                                 "{(a=1),}",
                                 "{(a=1),2}",
                                 "{(a=1),(a=2)}",
                                 "{(a=1),(a=#nil),(b=#nil)}",
                                 "{(a=1),(a)}",
                                 "{({1}=2)}",
                                 "{({(a={1})}=x)}",
                                 "{({1,{2}}={3}),({4}=5)}",
                                 "(a=1)",
                                 "{1,(a=1),2}",
                                 "*Point{3,4}",
                                 "* Point {3,4}",
                                 "*\"Point\"{3,4}",
                                 "*Point junk{1,2}",
                                 "*Point",
                                 "*{1}",
                                 "a *{1}",
                                 "{7,*{1}}",
                                 "*Nobody{1,2}",
                                 "{*Point{1,{2,*Point{3,4}}},(a=5)}",
                                 "{(*Point{1,2}=3),(b=4)}",
                                 "{(a=*Point{1,2}),(a=3)}",
                                 "*Point{1,2,3}",
                                 "*Point{1",
                                 "4294967295",
                                 "4294967296",
                                 "{4294967296,1}",
                                 "123456789",
                                 "1234567890",
                                 "-2147483648",
                                 "12ab",
                                 "{12ab}",
                                 "\xE9",
                                 "a\xE9",
                                 "{a\xE9,1}",
                                 "{$,1}",
                                 "}",
                                 ",1",
                                 "1,2,3",
                                 "{1}{2}",
                                 "{a}b,{c}"}) {
    expectSame(text);
  }
}

TEST_F(SerializerReadsAtOnce, ReadsTheSameFromTextsOfAnyValues) {
  for (unsigned seed = 1; seed <= 100 && !HasFailure(); ++seed) {
    test::TreeMaker maker(seed);
    maker.allowsObjects = seed % 2 == 0;
    maker.allowsUnusualClasses = seed % 4 == 0;
    maker.allowsEmptyMaps = true;
    maker.budget = 40;
    expectSame(test::textOf(maker.make(7)));
  }
}

TEST_F(SerializerReadsAtOnce, ReadsTheSameFromTextsWithAnythingInThem) {
  static std::string const pieces[] = {
      "{",  "}", "(", ")", ",",  "=",   "*",  "#",       "-",  "[",    " ",          "\"",
      "\\", "%", "1", "a", "_9", "nil", "\n", "*Point{", "{(", "\xE9", "99999999999"};
  std::mt19937 random(1);
  auto const upTo = [&random](std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
  };
  for (unsigned seed = 1; seed <= 300 && !HasFailure(); ++seed) {
    test::TreeMaker maker(seed);
    maker.allowsObjects = true;
    maker.budget = 15;
    std::string text = test::textOf(maker.make(5));
    for (std::size_t changes = upTo(4); changes > 0; --changes) {
      std::string const& piece = pieces[upTo(std::size(pieces) - 1)];
      text.replace(upTo(text.size()), upTo(2), piece);
    }
    expectSame(text);
  }
}

TEST_F(SerializerReadsAtOnce, ReadsTheSameWhereverTheTextEnds) {
  std::string const text = "{1,{(k={a,\"b c\",#nil}),({-2}=*Point{x,{3}})},\"%41\\n\"}";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    expectSame(text.substr(0, length));
  }
}

TEST_F(SerializerReadsAtOnce, ReadsTheSameOfFramesDeeperThanItGoes) {
  for (int depth = 60; depth <= 70; ++depth) {
    std::string open;
    std::string close;
    for (int i = 0; i < depth; ++i) {
      open += i % 3 == 0 ? "{(k=" : "{1,";
      close.insert(0, i % 3 == 0 ? ")}" : ",2}");
    }
    expectSame(open + "x" + close);
    expectSame(open);
  }
}

// An object that tells when it goes.
class Leaver : public lvReferencable {
 public:
  static inline std::function<void()> onGone;

  lvString const& getClassDesc() const override { return test::keyOf<Leaver>(); }
  int finalize() override {
    if (onGone) {
      onGone();
    }
    return 0;
  }

  static constexpr char Name[] = "Leaver";
  lvArg field;
};

// Where the parser stands when the objects of this text go, one after the other.
template <class Source>
std::string placesOfLeaving(char const* text) {
  Source source(text, -1);
  std::string places;
  Leaver::onGone = [&] {
    places += std::to_string(source.getParseOffset()) + ":" + counted(Access::tokenValue(source));
    places += " ";
  };
  lvArg value;
  test::HeldSerializer()->deserializeItemInto(value, source);
  places += "| ";
  value.setNil();
  Leaver::onGone = nullptr;
  return places;
}

TEST_F(SerializerReadsAtOnce, LetsObjectsThatAreReplacedSeeTheParserWhereItStands) {
  lvClassBuilder<Leaver>(Leaver::Name).field("field", &Leaver::field).registerClass();
  for (char const* const text : {"{(a=*Leaver{1}),(b=2),(a=3),(c=4)}", "{(a={*Leaver{1}}),(a=2)}",
                                 "{(a={(b=*Leaver{1}),(b=2)}),(a=x),(a=y)}",
                                 "*Leaver{*Leaver{1},2,3}", "{*Leaver{1,2},3}"}) {
    std::string atOnce;
    std::string itemByItem;
    test::printedBy([&] {
      atOnce = placesOfLeaving<lvtStringArgSource>(text);
      itemByItem = placesOfLeaving<OwnSource>(text);
    });
    EXPECT_EQ(atOnce, itemByItem) << text;
  }
  EXPECT_EQ(placesOfLeaving<lvtStringArgSource>("{(a=*Leaver{1}),(b=2),(a=3),(c=4)}"), "27:3 | ");
}

TEST_F(SerializerReadsAtOnce, LeavesTheLastTokenSharedWithTheValue) {
  lvtStringArgSource source("{a,{b}} c", -1);
  lvArg value;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(value, source), 0);
  lvArg const inner = lvVector(lvVector(value)->at(1))->at(0);
  EXPECT_TRUE(Access::tokenValue(source).eq(inner));
  EXPECT_EQ(test::countOf(inner), 3);
}

TEST_F(SerializerReadsAtOnce, DropsWhatAVectorCannotHoldAndKeepsItAsTheLastToken) {
  constexpr int limit = 65535;
  std::string text = "{";
  for (int i = 0; i < limit; ++i) {
    text += "1,";
  }
  text += "last}";
  lvtStringArgSource source(text.data(), static_cast<int>(text.size()));
  lvArg value;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(value, source), 0);
  EXPECT_EQ(lvVector(value)->getSize(), limit);
  EXPECT_EQ(test::textOf(Access::tokenValue(source)), "last");
}

}  // namespace
