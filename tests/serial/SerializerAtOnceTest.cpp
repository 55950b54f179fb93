// The text that the library's own writer gets at once, beside that which the same writer gets call
// by call when it is of a class of the program's.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/ActingItems.h"
#include "support/FieldObjects.h"
#include "support/Nested.h"
#include "support/SinkRuns.h"
#include "support/TextWriter.h"
#include "support/TreeModel.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"

namespace {

using test::integer;
using test::mapOf;
using test::string;
using test::vectorOf;

// Whatever its class overrides, it is called through the virtual functions.
class OwnWriter : public lvtStringArgDest {
 public:
  using lvtStringArgDest::lvtStringArgDest;
};

// What is done with a writer before the value comes.
using Opening = std::function<void(lvtStringArgDest&)>;

// All that writing a value leaves, as text.
template <class Writer>
std::string outcomeOf(lvArg const& value, int capacity, Opening const& opening) {
  auto const size = static_cast<std::size_t>(capacity);
  auto const block = std::make_unique<char[]>(size);
  std::string(size, test::Untouched).copy(block.get(), size);
  Writer writer(block.get(), capacity);
  opening(writer);
  int const status = test::HeldSerializer()->serializeAtomInto(writer, value);
  std::string outcome = std::to_string(status) + " length " +
                        std::to_string(writer.getStringLength()) + " flags " +
                        std::to_string(test::flagsOf(writer)) + " levels ";
  for (unsigned depth = test::depthOf(writer); depth > 0; --depth) {
    outcome += writer.popMapStack() ? '(' : '{';
  }
  return outcome + " " + std::string(block.get(), size);
}

int lengthOf(lvArg const& value, Opening const& opening) {
  std::vector<char> buffer(100000);
  OwnWriter writer(buffer.data(), static_cast<int>(buffer.size()));
  opening(writer);
  test::HeldSerializer()->serializeAtomInto(writer, value);
  return writer.getStringLength();
}

void openNothing(lvtStringArgDest& /*writer*/) {}
void openTuple(lvtStringArgDest& writer) {
  writer.enter(test::tupleKind, -1);
  writer.putArg(string("key"));
}
void openMany(lvtStringArgDest& writer) {
  for (int i = 0; i < 28; ++i) {
    writer.enter(test::vectorKind, -1);
  }
}
void askForSizes(lvtStringArgDest& writer) { writer.setTransferSizes(true); }

// Any value there can be.
lvArg randomValue(unsigned seed) {
  test::TreeMaker maker(seed);
  maker.allowsObjects = true;
  maker.allowsUnusualClasses = true;
  maker.allowsRefused = seed % 3 == 0;
  maker.allowsEmptyMaps = true;
  maker.budget = 40;
  return test::valueOf(maker.make(7));
}

class OwnVector : public lvrVector {
 public:
  using lvrVector::lvrVector;
};

// Throws when it is asked for its class.
class ClasslessObject : public lvReferencable {
 public:
  lvString const& getClassDesc() const override { throw std::runtime_error("no class"); }
};

class SerializerAtOnce : public testing::Test {
 protected:
  static void SetUpTestSuite() { test::registerClasses(); }

  static void expectSameIn(int capacity, lvArg const& value, Opening const& opening) {
    ASSERT_EQ(outcomeOf<lvtStringArgDest>(value, capacity, opening),
              outcomeOf<OwnWriter>(value, capacity, opening))
        << "capacity " << capacity;
  }

  // In buffers that are too small by any number of bytes, or large enough.
  static void expectSame(lvArg const& value, Opening const& opening) {
    int const length = lengthOf(value, opening);
    for (int capacity = length + 100; capacity >= 0 && !HasFailure(); --capacity) {
      expectSameIn(capacity, value, opening);
      capacity -= capacity > 300 && capacity < length - 100 ? 37 : 0;
    }
  }
};

TEST_F(SerializerAtOnce, WritesWhatItWritesCallByCallInABufferOfAnySize) {
  for (unsigned seed = 1; seed <= 40 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    expectSame(randomValue(seed), openNothing);
  }
}

TEST_F(SerializerAtOnce, WritesTheSameInsideOfWhateverIsOpen) {
  for (unsigned seed = 101; seed <= 110 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    expectSame(randomValue(seed), openTuple);
    expectSame(randomValue(seed), openMany);
  }
}

TEST_F(SerializerAtOnce, WritesTheSameWithoutBareWords) {
  expectSame(mapOf({{string("a"), vectorOf({string("word"), string("many words"), integer(-7)})}}),
             [](lvtStringArgDest& writer) {
               lvLayoutAccess<lvtStringArgDest>::setFlags(
                   writer, test::flagsOf(writer) & ~test::BareWordsBit);
             });
}

TEST_F(SerializerAtOnce, WritesTheSameWithSizes) {
  for (unsigned seed = 201; seed <= 210 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    expectSame(randomValue(seed), askForSizes);
  }
}

TEST_F(SerializerAtOnce, WritesTheSameOfValuesAsDeepAsTheWriterGoesAndDeeper) {
  test::Wrap const wraps[] = {test::inVector, test::inMap};
  for (int depth = 18; depth <= 36; ++depth) {
    lvArg const value = vectorOf({test::nested(wraps, depth), string("behind")});
    expectSameIn(1000, value, openNothing);
  }
}

TEST_F(SerializerAtOnce, WritesTheSameOfEveryShortString) {
  std::string const bytes = "aZ_09 :%\"\x1F\x7F\x80\xFF{";
  for (char const first : bytes) {
    for (char const second : bytes) {
      std::string const pair = {first, second};
      for (std::string const& text : {pair.substr(0, 1), pair, "abcdef" + pair, pair + "abcdef",
                                      "a234567" + pair + "ABCDEFG", "word_8_bytes_and" + pair}) {
        expectSameIn(100, vectorOf({string(text), string(text)}), openNothing);
      }
    }
  }
}

TEST_F(SerializerAtOnce, WritesTheSameOfIntegersOfEveryLength) {
  for (int power = 1, digits = 1; digits <= 10; ++digits, power *= digits <= 10 ? 10 : 1) {
    for (int const value : {power - 1, power, power + 1, 2 * (power / 2) + 7, -power}) {
      lvArg const cell = integer(value);
      expectSameIn(100, cell, openNothing);
      EXPECT_NE(outcomeOf<lvtStringArgDest>(cell, 100, openNothing).find(std::to_string(value)),
                std::string::npos);
    }
  }
  expectSameIn(100, integer(-2147483647 - 1), openNothing);
  expectSameIn(100, integer(2147483647), openNothing);
}

// ---- Strings that are not as the library makes them --------------------------------------------

// A string that borrows more, or less, than its length says.
lvArg borrowing(char const* text, int length) {
  auto* const made = new lvrString;
  lvArg cell(*made);
  made->setStringData(text, length, lvrString::Borrow);
  return cell;
}

TEST_F(SerializerAtOnce, WritesTheSameOfABorrowedTextThatGoesOnBehindItsLength) {
  for (int length = 0; length <= 12; ++length) {
    expectSame(borrowing("words and more", length), openNothing);
    expectSame(borrowing("wordsandmorewords", length), openNothing);
    expectSame(borrowing("1 words and more", length), openNothing);
  }
}

TEST_F(SerializerAtOnce, WritesTheSameOfATextWithANulInIt) {
  static char const bytes[] = "word\0 and a longer text\0behind it";
  for (int length = 1; length < static_cast<int>(sizeof(bytes)); ++length) {
    expectSameIn(200, vectorOf({borrowing(bytes, length), integer(1)}), openNothing);
  }
}

TEST_F(SerializerAtOnce, WritesTheSameOfStringsWithoutTextOrObject) {
  lvArg const textless(*new lvrString);
  lvArg missing = string("a");
  missing.releaseData();
  lvArg noMap = mapOf({});
  noMap.releaseData();
  lvArg noObject = test::point(1, 2);
  noObject.releaseData();
  expectSame(vectorOf({textless, missing, noObject, integer(1)}), openNothing);
  expectSame(vectorOf({textless, noMap, integer(1)}), openNothing);
}

// ---- What the program does meanwhile -----------------------------------------------------------

// A point that acts when it is asked for its class.
class ActingPoint : public test::Point {
 public:
  lvString const& getClassDesc() const override {
    onAsked();
    return Point::getClassDesc();
  }

  test::Act onAsked;
};

// {{(k={1,*Point{5,{6}},3})},4}, where the point empties all that is around it.
struct EmptiedTree {
  EmptiedTree() {
    auto* const acting = new ActingPoint;
    lvArg const point(*acting);
    acting->x = integer(5);
    acting->y = vectorOf({integer(6)});
    auto* const inner = new lvrVector(3);
    lvArg const innerCell(*inner);
    for (lvArg const& element : {integer(1), point, integer(3)}) {
      inner->insert(element, -1);
    }
    auto* const map = new lvrHashMap(7);
    lvArg const mapCell(*map);
    map->put(string("k"), innerCell);
    auto* const outer = new lvrVector(3);
    value = lvArg(*outer);
    outer->insert(mapCell, -1);
    outer->insert(integer(4), -1);
    acting->onAsked = [inner, map, outer] {
      outer->clear();
      map->clear();
      inner->clear();
    };
  }

  lvArg value;
};

template <class Writer>
std::string textOfAnEmptiedTree() {
  EmptiedTree const tree;
  char buffer[300];
  Writer writer(buffer, sizeof(buffer));
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, tree.value), 0);
  return test::textOf(writer);
}

TEST_F(SerializerAtOnce, HoldsAllThatIsOpenWhenAnObjectEmptiesIt) {
  std::string const expected = "{{(k={1,*Point{5,{6}},#nil})},#nil}";
  EXPECT_EQ(textOfAnEmptiedTree<lvtStringArgDest>(), expected);
  EXPECT_EQ(textOfAnEmptiedTree<OwnWriter>(), expected);
}

TEST_F(SerializerAtOnce, HoldsAnObjectThatIsAKeyAndTheValueBesideIt) {
  auto* const acting = new ActingPoint;
  lvArg const point(*acting);
  auto* const map = new lvrHashMap(7);
  lvArg const value(*map);
  map->put(point, vectorOf({integer(1), vectorOf({integer(2)})}));
  acting->onAsked = [map] { map->clear(); };
  char buffer[300];
  lvtStringArgDest writer(buffer, sizeof(buffer));
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, value), 0);
  EXPECT_EQ(test::textOf(writer), "{(*Point{#nil,#nil}={1,{2}})}");
}

TEST_F(SerializerAtOnce, TakesUpWhatAnObjectItselfWritesMeanwhile) {
  char buffer[300];
  lvtStringArgDest writer(buffer, sizeof(buffer));
  auto* const acting = new ActingPoint;
  lvArg const value = vectorOf({integer(1), lvArg(*acting), integer(2)});
  acting->onAsked = [&writer] { writer.putArg(string("aside")); };
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, value), 0);
  EXPECT_EQ(test::textOf(writer), "{1,aside,*Point{#nil,#nil},2}");
}

TEST_F(SerializerAtOnce, LeavesNoReferencesBehind) {
  for (unsigned seed = 301; seed <= 310; ++seed) {
    lvArg const value = randomValue(seed);
    int const before = value.getReferencable() != nullptr ? test::countOf(value) : 0;
    std::string const shown = test::described(value);
    outcomeOf<lvtStringArgDest>(value, 5000, openNothing);
    EXPECT_EQ(value.getReferencable() != nullptr ? test::countOf(value) : 0, before);
    EXPECT_EQ(test::described(value), shown);
  }
}

TEST_F(SerializerAtOnce, RefusesAVectorOfTheProgramsClassThatHasNoRoom) {
  lvArg const vector(*new OwnVector(1));
  char buffer[15];
  lvtStringArgDest writer(buffer, sizeof(buffer));
  EXPECT_EQ(test::HeldSerializer()->serializeVectorInto(writer, vector),
            lvrCommonSerializer::CS_ERR_FAILED);
  EXPECT_EQ(writer.getStringLength(), 0);
}

TEST_F(SerializerAtOnce, LetsGoOfWhatIsOpenWhenAnObjectThrows) {
  lvArg const inner = vectorOf({integer(1), lvArg(*new ClasslessObject)});
  lvArg const value = mapOf({{string("key"), inner}});
  char buffer[100];
  lvtStringArgDest writer(buffer, sizeof(buffer));
  EXPECT_THROW(test::HeldSerializer()->serializeAtomInto(writer, value), std::runtime_error);
  EXPECT_EQ(test::countOf(value), 1);
  EXPECT_EQ(test::countOf(inner), 2);
}

TEST_F(SerializerAtOnce, WritesTheSameOfValuesThatFailAtTheLastLevelAgainAndAgain) {
  lvArg value = integer(1);
  for (int i = 0; i < 36; ++i) {
    value = vectorOf({value, value});
  }
  expectSameIn(4090, value, openNothing);
  lvArg refused = integer(1);
  for (int i = 0; i < 60; ++i) {
    refused = vectorOf({vectorOf({lvArg(*new lvrDLList)}), refused});
  }
  expectSameIn(4090, refused, openNothing);
}

}  // namespace
