#include "tarselvalues/core/lvReferencable.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "support/CellWords.h"
#include "support/Cells.h"
#include "tarselvalues/core/lvString.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using test::bookkeepingOf;
using test::countOf;
using test::Probe;

using Object = lvLayoutAccess<lvReferencable>;

static_assert(!std::is_copy_constructible_v<lvReferencable>);
static_assert(!std::is_copy_assignable_v<lvReferencable>);
static_assert(std::has_virtual_destructor_v<lvReferencable>);

// Whether a thread of its own gets the object's mutex at once.
bool isMutexFree(lvReferencable const& object) {
  bool isFree = false;
  std::thread([&] {
    pthread_mutex_t& mutex = Object::mutex(object);
    isFree = pthread_mutex_trylock(&mutex) == 0;
    if (isFree) {
      pthread_mutex_unlock(&mutex);
    }
  }).join();
  return isFree;
}

class ReferencableTest : public ::testing::Test {
 protected:
  Probe& newProbe() { return *new Probe(log); }

  Probe::Log log;
};

using ReferencableRemoveRef = ReferencableTest;
using ReferencableImmortal = ReferencableTest;

// ---- Making
// --------------------------------------------------------------------------------------

TEST(ReferencableMaking, StartsWithTheBaseKindNoFlagsAndCountZero) {
  lvReferencable const object;
  EXPECT_EQ(Object::typeByte(object), 0x20);
  EXPECT_EQ(object.getKind(), lvReferencable::ObjectKind);
  EXPECT_EQ(countOf(object), 0);
}

TEST(ReferencableMaking, GivesAMutexThatItsOwnerMayTakeAgain) {
  lvReferencable const object;
  pthread_mutex_t& mutex = Object::mutex(object);
  ASSERT_EQ(pthread_mutex_lock(&mutex), 0);
  ASSERT_EQ(pthread_mutex_trylock(&mutex), 0);
  EXPECT_FALSE(isMutexFree(object));
  EXPECT_EQ(pthread_mutex_unlock(&mutex), 0);
  EXPECT_FALSE(isMutexFree(object));
  EXPECT_EQ(pthread_mutex_unlock(&mutex), 0);
  EXPECT_TRUE(isMutexFree(object));
}

TEST(ReferencableMaking, NumbersTheKinds) {
  EXPECT_EQ(lvReferencable::ObjectKind, 2);
  EXPECT_EQ(lvReferencable::StringKind, 3);
  EXPECT_EQ(lvReferencable::MapKind, 8);
  EXPECT_EQ(lvReferencable::ListKind, 9);
  EXPECT_EQ(lvReferencable::ClassKind, 11);
}

// An object of any kind.
class OfKind : public lvReferencable {
 public:
  explicit OfKind(Kind kind) { setKind(kind); }
  using lvReferencable::setKind;
};

TEST(ReferencableSetKind, DecidesTheTagOfTheCells) {
  for (unsigned kind = 0; kind < 16; ++kind) {
    lvArg const cell(*new OfKind(static_cast<lvReferencable::Kind>(kind)));
    EXPECT_EQ(cell.getType(), kind + 16);
    EXPECT_EQ(cell.getReferencable()->getKind(), kind);
  }
}

TEST(ReferencableSetKind, KeepsTheLowBitsOfTheTypeByte) {
  OfKind object(lvReferencable::ListKind);
  Object::setTypeByte(object, 0x9D);
  object.setKind(lvReferencable::MapKind);
  EXPECT_EQ(Object::typeByte(object), 0x8D);
}

// ---- The base's own answers
// ----------------------------------------------------------------------

TEST(ReferencableEquiv, HoldsForTheVeryObjectOnly) {
  lvReferencable const object;
  lvReferencable const other;
  EXPECT_EQ(object.equiv(object), 1);
  EXPECT_EQ(object.equiv(other), 0);
}

TEST(ReferencableHashCode, IsZero) { EXPECT_EQ(lvReferencable().hashCode(), 0U); }

TEST(ReferencableCompareTo, IsTheDifferenceOfTheAddressesInWords) {
  lvReferencable const objects[3];
  int const size = static_cast<int>(sizeof(lvReferencable)) / 4;
  EXPECT_EQ(objects[0].compareTo(objects[0]), 0);
  EXPECT_EQ(objects[1].compareTo(objects[0]), size);
  EXPECT_EQ(objects[0].compareTo(objects[2]), -2 * size);
}

TEST(ReferencableGetValue, IsPlainNil) {
  lvReferencable const object;
  lvArg const value = object.getValue();
  EXPECT_TRUE(value.isNil());
  EXPECT_EQ(bookkeepingOf(value), bookkeepingOf(lvArg::NilValue));
}

TEST(ReferencableHooks, AnswerZeroAndChangeNothing) {
  lvReferencable object;
  EXPECT_EQ(object.__mark(), 0);
  EXPECT_EQ(object.__hook(), 0);
  EXPECT_EQ(object.finalize(), 0);
  EXPECT_EQ(Object::typeByte(object), 0x20);
  EXPECT_EQ(countOf(object), 0);
}

TEST(ReferencableClassDesc, IsTheInternedNameOfTheBase) {
  lvReferencable const object;
  lvString const& key = object.getClassDesc();
  EXPECT_STREQ(key, "Referencable");
  EXPECT_EQ(key.getReferencable(), lvString("Referencable").getReferencable());
}

TEST(ReferencableClassDesc, IsOneHandleForAllObjects) {
  lvReferencable const object;
  EXPECT_EQ(&object.getClassDesc(), &lvReferencable::getStaticClassDesc());
  EXPECT_EQ(&object.getClassDesc(), &lvReferencable().getClassDesc());
}

TEST(ReferencableClassDesc, HoldsOneReference) {
  EXPECT_EQ(countOf(lvReferencable::getStaticClassDesc()), 1);
}

// ---- Dropping references
// -------------------------------------------------------------------------

TEST_F(ReferencableRemoveRef, OfTheLastReferenceFinalizesAndDeletesOnce) {
  Probe& probe = newProbe();
  lvArg cell;
  cell.setReferencableFast(probe, lvArg::NilType);  // The reference is the test's from here on.
  EXPECT_EQ(probe.__removeRef(), 1);
  EXPECT_EQ(log.finalized, 1);
  EXPECT_EQ(log.destroyed, 1);
}

TEST_F(ReferencableRemoveRef, OfOneOfTwoReferencesDeletesNothing) {
  Probe& probe = newProbe();
  lvArg const cell(probe);
  lvArg other;
  other.setReferencableFast(probe, lvArg::NilType);
  EXPECT_EQ(probe.__removeRef(), 0);
  EXPECT_EQ(countOf(probe), 1);
  EXPECT_EQ(log.finalized + log.destroyed, 0);
}

TEST_F(ReferencableRemoveRef, AtCountZeroLeavesMinusOneAndDeletesNothing) {
  Probe probe(log);
  EXPECT_EQ(probe.__removeRef(), 0);
  EXPECT_EQ(countOf(probe), -1);
  EXPECT_EQ(log.finalized, 0);
  EXPECT_EQ(log.destroyed, 0);
}

TEST_F(ReferencableRemoveRef, BelowZeroCountsOn) {
  Probe probe(log);
  probe.__removeRef();
  EXPECT_EQ(probe.__removeRef(), 0);
  EXPECT_EQ(countOf(probe), -2);
  EXPECT_EQ(log.finalized, 0);
}

// Answers what an interned string answers to stay alive.
class Refusing : public Probe {
 public:
  using Probe::Probe;
  int finalize() override {
    Probe::finalize();
    return FinalizeRefused;
  }
};

TEST_F(ReferencableRemoveRef, DeletesAPlainObjectWhateverItsFinalizeAnswers) {
  { lvArg const cell(*new Refusing(log)); }
  EXPECT_EQ(log.finalized, 1);
  EXPECT_EQ(log.destroyed, 1);
}

// One of a chain of objects, each of which holds the next.
class Link : public lvReferencable {
 public:
  explicit Link(lvArg const& held) : next(held) {}

 private:
  lvArg next;
};

class CountedString : public lvrString {
 public:
  explicit CountedString(int& counter) : ends(counter) {}
  ~CountedString() override { ++ends; }

 private:
  int& ends;
};

TEST_F(ReferencableRemoveRef, EndsAStringOnceAtAnyDepth) {
  for (int depth = 0; depth < 150; ++depth) {
    int ends = 0;
    lvArg chain(*new CountedString(ends));
    for (int i = 0; i < depth; ++i) {
      chain = lvArg(*new Link(chain));
    }
    chain.setNil();
    EXPECT_EQ(ends, 1) << depth;
  }
}

TEST_F(ReferencableRemoveRef, UnlocksTheMutex) {
  Probe& probe = newProbe();
  lvArg const cell(probe);
  { lvArg const copy(cell); }
  EXPECT_TRUE(isMutexFree(probe));
  lvReferencable unheld;
  unheld.__removeRef();
  EXPECT_TRUE(isMutexFree(unheld));
}

TEST_F(ReferencableRemoveRef, WhileTheMutexIsHeldWorksInTheHoldingThread) {
  Probe& probe = newProbe();
  lvArg const cell(probe);
  pthread_mutex_lock(&Object::mutex(probe));
  { lvArg const copy(cell); }
  pthread_mutex_unlock(&Object::mutex(probe));
  EXPECT_EQ(countOf(probe), 1);
}

// Writes down in which order its end comes.
class Dying : public lvReferencable {
 public:
  explicit Dying(std::vector<std::string>& target) : events(target) {}
  ~Dying() override { events.emplace_back("destroyed"); }
  int finalize() override {
    events.emplace_back("finalized");
    events.emplace_back(isMutexFree(*this) ? "unlocked" : "locked");
    return 0;
  }

 private:
  std::vector<std::string>& events;
};

TEST(ReferencableEnd, FinalizesBeforeItDestroysWithTheMutexFree) {
  std::vector<std::string> events;
  { lvArg const cell(*new Dying(events)); }
  EXPECT_EQ(events, (std::vector<std::string>{"finalized", "unlocked", "destroyed"}));
}

// Puts itself into a cell while it is finalized.
class Clinging : public lvReferencable {
 public:
  explicit Clinging(int& target) : finalized(target) {}
  int finalize() override {
    ++finalized;
    for (int i = 0; i < 3; ++i) {
      lvArg const cell(*this);
    }
    return 0;
  }

 private:
  int& finalized;
};

TEST(ReferencableEnd, ComesOnceThoughFinalizeTakesAndDropsReferences) {
  int finalized = 0;
  { lvArg const cell(*new Clinging(finalized)); }
  EXPECT_EQ(finalized, 1);
}

// Answers something else than 0 from finalize(), as an object with troubles might.
class Failing : public lvReferencable {
 public:
  explicit Failing(int& target) : destroyed(target) {}
  ~Failing() override { ++destroyed; }
  int finalize() override { return -12; }

 private:
  int& destroyed;
};

TEST(ReferencableEnd, ComesWhateverFinalizeAnswers) {
  int destroyed = 0;
  { lvArg const cell(*new Failing(destroyed)); }
  EXPECT_EQ(destroyed, 1);
}

// ---- Immortality
// ---------------------------------------------------------------------------------

TEST_F(ReferencableImmortal, SurvivesItsLastReferenceWithAHighCount) {
  Probe probe(log);
  probe.__makeImmortal();
  { lvArg const cell(probe); }
  EXPECT_EQ(countOf(probe), 10000);
  EXPECT_EQ(log.finalized, 0);
  EXPECT_EQ(log.destroyed, 0);
}

TEST_F(ReferencableImmortal, AnswersZeroWhenItsLastReferenceGoes) {
  Probe probe(log);
  probe.__makeImmortal();
  lvArg cell;
  cell.setReferencableFast(probe, lvArg::NilType);
  EXPECT_EQ(probe.__removeRef(), 0);
  EXPECT_TRUE(isMutexFree(probe));
}

TEST_F(ReferencableImmortal, CountsOnFromTheHighCount) {
  Probe probe(log);
  probe.__makeImmortal();
  { lvArg const cell(probe); }
  {
    lvArg const cell(probe);
    EXPECT_EQ(countOf(probe), 10001);
  }
  EXPECT_EQ(countOf(probe), 10000);
}

TEST_F(ReferencableImmortal, GetsTheHighCountAgainAtZero) {
  Probe probe(log);
  probe.__makeImmortal();
  { lvArg const cell(probe); }
  for (int i = 0; i < 10000; ++i) {
    EXPECT_EQ(probe.__removeRef(), 0);
  }
  EXPECT_EQ(countOf(probe), 10000);
  EXPECT_EQ(log.finalized, 0);
}

TEST_F(ReferencableImmortal, KeepsTheRestOfTheTypeByte) {
  Probe probe(log);
  Object::setTypeByte(probe, 0x9C);
  probe.__makeImmortal();
  EXPECT_EQ(Object::typeByte(probe), 0x9F);
  EXPECT_EQ(probe.getKind(), lvReferencable::ListKind);
}

TEST_F(ReferencableImmortal, NeedsBothLifetimeBits) {
  for (std::uint8_t const typeByte : std::vector<std::uint8_t>{0x21, 0x22, 0x2C, 0x2D, 0x2E}) {
    log = {};
    Probe& probe = newProbe();
    Object::setTypeByte(probe, typeByte);
    { lvArg const cell(probe); }
    EXPECT_EQ(log.destroyed, 1) << int{typeByte};
  }
}

TEST_F(ReferencableImmortal, IsTellingByTheLifetimeBitsAlone) {
  Probe probe(log);
  Object::setTypeByte(probe, 0x2F);
  { lvArg const cell(probe); }
  EXPECT_EQ(countOf(probe), 10000);
}

}  // namespace
