// What the conversion functions allocate, and what becomes of them when memory runs out.
//
// The program is linked with --wrap for malloc, calloc, realloc and free, and brings its own
// operator new and delete, so that every allocation of the library passes here.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>

#include "support/EveryBlock.h"
#include "support/FieldObjects.h"
#include "support/SourceRuns.h"
#include "support/ValueTrees.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

constexpr std::size_t BufferSize = 4090;

// The allocations since the last start(), and how the next ones fare.
struct Memory {
  bool isWatched = false;
  int made = 0;
  int freed = 0;
  int cut = 0;
  std::size_t first = 0;     // the size of the first one
  std::size_t lastCut = 0;   // the size that realloc() was asked for
  int failAt = -1;           // the allocation that fails, counted from 0; negative: none
  bool refusesCuts = false;  // realloc() fails

  int left() const { return made - freed; }
};

Memory memory;

void start(int failAt = -1) {
  memory = Memory();
  memory.failAt = failAt;
  memory.isWatched = true;
}

// Counts an allocation; true for the one that is to fail.
bool isRefused(std::size_t size) {
  if (!memory.isWatched) {
    return false;
  }
  if (memory.failAt == memory.made) {
    memory.failAt = -1;
    return true;
  }
  memory.first = memory.made == 0 ? size : memory.first;
  ++memory.made;
  return false;
}

Memory stop() {
  Memory const result = memory;
  memory = Memory();
  return result;
}

}  // namespace

extern "C" {
// The names are the linker's.
void* __real_malloc(std::size_t size);                     // NOLINT(bugprone-reserved-identifier)
void* __real_calloc(std::size_t count, std::size_t size);  // NOLINT(bugprone-reserved-identifier)
void* __real_realloc(void* block, std::size_t size);       // NOLINT(bugprone-reserved-identifier)
void __real_free(void* block);                             // NOLINT(bugprone-reserved-identifier)

void* __wrap_malloc(std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  return isRefused(size) ? nullptr : __real_malloc(size);
}

void* __wrap_calloc(std::size_t count, std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  return isRefused(count * size) ? nullptr : __real_calloc(count, size);
}

void* __wrap_realloc(void* block, std::size_t size) {  // NOLINT(bugprone-reserved-identifier)
  if (memory.isWatched) {
    if (memory.refusesCuts) {
      return nullptr;
    }
    ++memory.cut;
    memory.lastCut = size;
  }
  return __real_realloc(block, size);
}

void __wrap_free(void* block) {  // NOLINT(bugprone-reserved-identifier)
  if (memory.isWatched && block != nullptr) {
    ++memory.freed;
  }
  __real_free(block);
}
}

// Not inlined, because the compiler would then take free() for the wrong counterpart of new.
[[gnu::noinline]] void* operator new(std::size_t size) {
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete[](void* block) noexcept { operator delete(block); }
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
void operator delete[](void* block, std::size_t) noexcept { operator delete(block); }

namespace {

using test::integer;
using test::mapOf;
using test::string;
using test::vectorOf;

// What one conversion takes, and what it leaves behind while its result lives.
Memory costOfText(lvArg const& value) {
  start();
  lvString const text = lvToolsToString(value);
  return stop();
}

TEST(ToolsToStringMemory, StartsWithItsBuffer) {
  EXPECT_EQ(costOfText(integer(77007)).first, BufferSize);
}

TEST(ToolsToStringMemory, IsTheEntryAndItsTextForANewText) {
  Memory const cost = costOfText(vectorOf({integer(77007), string("a b")}));
  EXPECT_EQ(cost.left(), 2);
  EXPECT_EQ(cost.cut, 1);
  EXPECT_EQ(cost.lastCut, std::string("{77007,\"a b\"}").size() + 1);
}

TEST(ToolsToStringMemory, IsNothingForATextThatIsInterned) {
  lvString const interned("{77008}");
  Memory const cost = costOfText(vectorOf({integer(77008)}));
  EXPECT_GE(cost.made, 2);
  EXPECT_EQ(cost.left(), 0);
}

TEST(ToolsToStringMemory, IsTheEntryForTheEmptyText) {
  EXPECT_EQ(costOfText(string(std::string(5000, 'a'))).left(), 1);
  lvString const interned("");
  EXPECT_EQ(costOfText(string(std::string(5000, 'a'))).left(), 0);
}

TEST(ToolsToStringMemory, IsAllFreedWithTheString) {
  for (lvArg const& value : {integer(77009), vectorOf({string("x y")}), string(""),
                             string(std::string(4087, ' ')), string(std::string(5000, 'a'))}) {
    start();
    lvToolsToString(value);
    Memory const cost = stop();
    EXPECT_GE(cost.made, 2);
    EXPECT_EQ(cost.left(), 0) << cost.made;
  }
}

TEST(ToolsToStringMemory, MissingForTheBufferGivesANilHandle) {
  testing::internal::CaptureStderr();
  start(0);
  lvString const text = lvToolsToString(integer(77010));
  Memory const cost = stop();
  EXPECT_TRUE(text.isNil());
  EXPECT_EQ(cost.made, 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(ToolsToStringMemory, MissingToCutTheBufferKeepsItWhole) {
  start();
  memory.refusesCuts = true;
  {
    lvString const text = lvToolsToString(integer(77011));
    EXPECT_STREQ(text, "77011");
  }
  EXPECT_EQ(stop().left(), 0);
}

// Lets every allocation of `call` fail in turn until it succeeds, and returns how many there were.
template <class Call>
int failuresOf(Call call) {
  for (int failAt = 0; failAt < 1000; ++failAt) {
    start(failAt);
    try {
      call();
    } catch (std::bad_alloc const&) {
      // The exception itself is not made by operator new.
    }
    bool const failed = memory.failAt < 0;
    Memory const cost = stop();
    EXPECT_EQ(cost.left(), 0) << "something stayed behind after failure " << failAt;
    if (!failed) {
      return failAt;
    }
  }
  return -1;
}

TEST(ToolsToStringMemory, MissingAnywhereLeavesNothingBehind) {
  lvArg const value = vectorOf({integer(77012), mapOf({{string("k"), string("v w")}})});
  // The buffer, the serializer, and the entry of the text: writing takes no memory of its own.
  EXPECT_EQ(failuresOf([&] { lvToolsToString(value); }), 3);
  EXPECT_EQ(test::textOf(lvToolsToString(value)), "{77012,{(k=\"v w\")}}");
}

TEST(ToolsToStringMemory, MissingForTheEmptyTextLeavesNothingBehind) {
  lvArg const value = string(std::string(5000, 'a'));
  EXPECT_EQ(failuresOf([&] { lvToolsToString(value); }), 3);
}

TEST(ToolsToStringMemory, MissingAnywhereButForTheBufferIsTold) {
  lvArg const value = integer(77013);
  for (int failAt = 1; failAt < 3; ++failAt) {
    start(failAt);
    EXPECT_THROW(lvToolsToString(value), std::bad_alloc) << failAt;
    stop();
  }
}

TEST(ToolsFromStringMemory, MissingAnywhereIsToldAndLeavesNothingBehind) {
  lvString const text("{1,word,{(k=\"v w\"),(l={2,3,4,5,6,7,8,9})},{}}");
  int consumed = -1;
  int const failures = failuresOf([&] { lvToolsFromString(text, consumed); });
  EXPECT_GE(failures, 15);
  for (int failAt = 0; failAt < failures; ++failAt) {
    start(failAt);
    EXPECT_THROW(lvToolsFromString(text, consumed), std::bad_alloc) << failAt;
    stop();
  }
  EXPECT_EQ(test::countOf(text), 1);
  EXPECT_EQ(test::described(lvToolsFromString(text, consumed)),
            "[1,'word',{'k'='v w','l'=[2,3,4,5,6,7,8,9]},[]]");
}

TEST(ToolsFromStringMemory, MissingLeavesTheConsumedOffsetAlone) {
  lvString const text("{1}");
  int consumed = -77;
  start(0);
  EXPECT_THROW(lvToolsFromString(text, consumed), std::bad_alloc);
  stop();
  EXPECT_EQ(consumed, -77);
}

TEST(ToolsFromStringMemory, IsAllFreedWithTheValue) {
  lvString const text("{1,word,{(k=\"v w\")},{2}} tail");
  int consumed = 0;
  start();
  lvToolsFromString(text, consumed);
  Memory const cost = stop();
  EXPECT_GT(cost.made, 5);
  EXPECT_EQ(cost.left(), 0);
}

// ---- Objects -----------------------------------------------------------------------------------

// What a text reads as, when every allocation in turn failed before it was read whole.
std::string readAfterFailures(char const* bytes, int leastFailures) {
  lvString const text(bytes);
  int consumed = 0;
  EXPECT_GE(failuresOf([&] { lvToolsFromString(text, consumed); }), leastFailures);
  return test::described(lvToolsFromString(text, consumed));
}

TEST(ToolsToStringMemory, MissingAnywhereInObjectsLeavesNothingBehind) {
  test::registerClasses();
  lvArg const map = mapOf({{string("k"), test::point(1, 2)}});
  lvArg const value =
      test::objectOf("Segment", {map, vectorOf({test::point(3, 4)}), integer(77014)});
  // As for other values.
  EXPECT_EQ(failuresOf([&] { lvToolsToString(value); }), 3);
  EXPECT_EQ(test::textOf(lvToolsToString(value)),
            "*Segment{{(k=*Point{1,2})},{*Point{3,4}},77014}");
}

TEST(ToolsToStringMemory, MissingForObjectsThatCannotBeWrittenLeavesNothingBehind) {
  test::registerClasses();
  for (char const* const name : {"Blank", "Half", "Stranger", "Bogus"}) {
    lvArg const value = test::point(integer(77015), test::objectOf(name));
    EXPECT_EQ(failuresOf([&] { lvToolsToString(value); }), 3) << name;
  }
}

TEST(ToolsFromStringMemory, MissingAnywhereInObjectsLeavesNothingBehind) {
  test::registerClasses();
  EXPECT_EQ(
      readAfterFailures("*Segment{*Point{1,word},{(k=*\"my class\"{\"v w\"}),(l={2,3})},2}", 15),
      "*Segment{*Point{1,'word'},{'k'=*my class{'v w',nil},'l'=[2,3]},2}");
  EXPECT_EQ(readAfterFailures("{*Vector{},*DLList{},*TupleSet{}}", 8), "[[],[],{}]");
}

TEST(ToolsFromStringMemory, MissingAnywhereInObjectsIsTold) {
  test::registerClasses();
  lvString const text("*Point{*Point{a,1},{2}}");
  int consumed = 0;
  int const failures = failuresOf([&] { lvToolsFromString(text, consumed); });
  for (int failAt = 0; failAt < failures; ++failAt) {
    start(failAt);
    EXPECT_THROW(lvToolsFromString(text, consumed), std::bad_alloc) << failAt;
    stop();
  }
}

TEST(ToolsFromStringMemory, MissingInObjectsThatFailLeavesNothingBehind) {
  test::registerClasses();
  std::string outcome;
  test::printedBy([&] {
    outcome = readAfterFailures("{*Blank{a},*Segment{*Half{d,e},*Nope{b},*Abstract{c,*Point{f", 15);
  });
  EXPECT_EQ(outcome, "[*Segment{'b',nil,7},'c',nil]");
}

}  // namespace
