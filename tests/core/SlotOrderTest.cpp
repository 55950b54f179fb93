#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

#include "support/Cells.h"
#include "support/Slots.h"
#include "tarselvalues/core/lvReferencable.h"
#include "tarselvalues/core/lvrString.h"

namespace {

using test::NotVirtual;
using test::slotOf;

TEST(ReferencableSlots, StandInTheOrderThatProgramsAreCompiledFor) {
  EXPECT_EQ(slotOf(&lvReferencable::equiv), 1);
  EXPECT_EQ(slotOf(&lvReferencable::hashCode), 2);
  EXPECT_EQ(slotOf(&lvReferencable::compareTo), 3);
  EXPECT_EQ(slotOf(&lvReferencable::getValue), 4);
  EXPECT_EQ(slotOf(&lvReferencable::__mark), 5);
  EXPECT_EQ(slotOf(&lvReferencable::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvReferencable::finalize), 7);
  EXPECT_EQ(slotOf(&lvReferencable::__hook), 10);
}

TEST(ReferencableSlots, AreNotTakenByThePlainOperations) {
  EXPECT_EQ(slotOf(&lvReferencable::__removeRef), NotVirtual);
  EXPECT_EQ(slotOf(&lvReferencable::__makeImmortal), NotVirtual);
  EXPECT_EQ(slotOf(&lvReferencable::getKind), NotVirtual);
}

// The first operation that a derived class adds comes right after the ten of the base.
class Derived : public lvReferencable {
 public:
  explicit Derived(int& target) : destroyed(target) {}
  ~Derived() override { ++destroyed; }
  virtual int added() { return 0; }

  static void operator delete(void* storage) {
    ++freed;
    std::free(storage);
  }
  static void* operator new(std::size_t size) {
    void* const storage = std::malloc(size);
    return storage != nullptr ? storage : throw std::bad_alloc();
  }
  static void* operator new(std::size_t, void* storage) { return storage; }

  static int freed;

 private:
  int& destroyed;
};

int Derived::freed = 0;

TEST(ReferencableSlots, OfDerivedClassesFollowThoseOfTheBase) {
  EXPECT_EQ(slotOf(&Derived::added), 11);
}

// Calls the function in a slot that no pointer to member reaches.
void callSlot(lvReferencable& object, int slot) {
  using Function = void(lvReferencable*);
  Function** table = nullptr;
  std::memcpy(&table, static_cast<void const*>(&object), sizeof(table));
  table[slot - 1](&object);
}

TEST(ReferencableSlots, HoldTheDestructorInTheEighth) {
  int destroyed = 0;
  alignas(Derived) unsigned char storage[sizeof(Derived)];
  auto* const object = new (storage) Derived(destroyed);
  Derived::freed = 0;
  callSlot(*object, 8);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(Derived::freed, 0);
}

TEST(ReferencableSlots, HoldTheDeletingDestructorInTheNinth) {
  int destroyed = 0;
  auto* const object = new Derived(destroyed);
  Derived::freed = 0;
  callSlot(*object, 9);
  EXPECT_EQ(destroyed, 1);
  EXPECT_EQ(Derived::freed, 1);
}

TEST(StringSlots, TakeThoseOfTheBase) {
  EXPECT_EQ(slotOf(&lvrString::equiv), 1);
  EXPECT_EQ(slotOf(&lvrString::hashCode), 2);
  EXPECT_EQ(slotOf(&lvrString::compareTo), 3);
  EXPECT_EQ(slotOf(&lvrString::getClassDesc), 6);
  EXPECT_EQ(slotOf(&lvrString::finalize), 7);
}

TEST(StringSlots, AddSetFromAndToString) {
  EXPECT_EQ(slotOf(&lvrString::setFrom), 11);
  EXPECT_EQ(slotOf(&lvrString::toString), 12);
  EXPECT_EQ(slotOf(&lvrString::getInteger), NotVirtual);
  EXPECT_EQ(slotOf(&lvrString::releaseData), NotVirtual);
}

}  // namespace
