// What a thread keeps of the small blocks that it frees. The program replaces operator new and
// delete, so that it sees which blocks come and go.

#include "tarselvalues/core/BlockCache.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "tarselvalues/core/lvValue.h"
#include "tarselvalues/core/lvrString.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

std::atomic<int> made{0};
std::atomic<int> freed{0};

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  ++made;
  return block;
}
void operator delete(void* block) noexcept {
  freed += block != nullptr ? 1 : 0;
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace {

using tarselvalues::BlockCache;
using tarselvalues::FromCalloc;
using tarselvalues::FromNew;
using tarselvalues::KeepsBlocks;

constexpr std::size_t Small = 40;
constexpr std::size_t TooLarge = 1000;

// What `work` does to the counts.
struct Counts {
  int made;
  int freed;
};

template <class Work>
Counts countsOf(Work const& work) {
  int const madeBefore = made;
  int const freedBefore = freed;
  work();
  return {made - madeBefore, freed - freedBefore};
}

// Runs `work` in a thread, which has kept nothing yet, and waits for its end.
template <class Work>
void inAThread(Work const& work) {
  std::thread(work).join();
}

std::vector<void*> takeBlocks(std::size_t count, std::size_t bytes) {
  std::vector<void*> blocks(count);
  for (void*& block : blocks) {
    block = BlockCache::take<FromNew>(bytes);
    std::memset(block, 0xA5, bytes);
  }
  return blocks;
}

void giveBlocks(std::vector<void*> const& blocks, std::size_t bytes) {
  for (void* const block : blocks) {
    BlockCache::give<FromNew>(block, bytes);
  }
}

class KeptBlocks : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!KeepsBlocks) {
      GTEST_SKIP() << "the library is built without";
    }
  }
};

TEST_F(KeptBlocks, AreTakenAgainLastFirst) {
  inAThread([] {
    std::vector<void*> const blocks = takeBlocks(3, Small);
    giveBlocks(blocks, Small);
    Counts const counts = countsOf([&blocks] {
      EXPECT_EQ(BlockCache::take<FromNew>(Small), blocks[2]);
      EXPECT_EQ(BlockCache::take<FromNew>(Small), blocks[1]);
      EXPECT_EQ(BlockCache::take<FromNew>(Small), blocks[0]);
    });
    EXPECT_EQ(counts.made, 0);
    giveBlocks(blocks, Small);
  });
}

TEST_F(KeptBlocks, HoldAsManyBytesAsAnyThatAreTakenInTheirPlace) {
  inAThread([] {
    for (std::size_t bytes = 2; bytes <= TooLarge; ++bytes) {
      for (std::size_t const first : {bytes - 1, bytes, bytes + 1}) {
        giveBlocks(takeBlocks(1, first), first);
        std::vector<void*> const blocks = takeBlocks(1, bytes);
        EXPECT_GE(malloc_usable_size(blocks.front()), bytes);
        giveBlocks(blocks, bytes);
      }
    }
  });
}

TEST_F(KeptBlocks, AreNotTakenFromAnotherSource) {
  inAThread([] {
    void* const block = BlockCache::take<FromNew>(Small);
    BlockCache::give<FromNew>(block, Small);
    void* const other = BlockCache::take<FromCalloc>(Small);
    EXPECT_NE(other, block);
    BlockCache::give<FromCalloc>(other, Small);
    EXPECT_EQ(BlockCache::take<FromCalloc>(Small), other);
    BlockCache::give<FromCalloc>(other, Small);
  });
}

TEST_F(KeptBlocks, AreAsManyAsTheBoundAllows) {
  inAThread([] {
    std::size_t const count = BlockCache::MostBytes / Small;
    std::vector<void*> const blocks = takeBlocks(count + 1, Small);
    std::size_t const kept =
        count - static_cast<std::size_t>(countsOf([&] { giveBlocks(blocks, Small); }).freed) + 1;
    EXPECT_LE(kept, count);
    EXPECT_GT(kept, count / 2);
    // What has been taken again leaves room.
    std::vector<void*> const again = takeBlocks(kept, Small);
    EXPECT_EQ(countsOf([&] { giveBlocks(again, Small); }).freed, 0);
  });
}

TEST_F(KeptBlocks, MakeRoomForTheFirstOfAnotherSize) {
  inAThread([] {
    constexpr std::size_t other = 2 * Small;
    std::size_t const count = BlockCache::MostBytes / Small;
    giveBlocks(takeBlocks(count, Small), Small);  // No room is left.
    std::vector<void*> const blocks = takeBlocks(2, other);
    EXPECT_GT(countsOf([&blocks] { giveBlocks(blocks, other); }).freed,
              static_cast<int>(count / 2));
    EXPECT_EQ(BlockCache::take<FromNew>(other), blocks[1]);
    EXPECT_EQ(BlockCache::take<FromNew>(other), blocks[0]);
    giveBlocks(blocks, other);
  });
}

TEST_F(KeptBlocks, AreNotThoseThatAreLarge) {
  inAThread([] {
    std::vector<void*> const blocks = takeBlocks(1, TooLarge);
    EXPECT_EQ(countsOf([&blocks] { giveBlocks(blocks, TooLarge); }).freed, 1);
  });
}

TEST_F(KeptBlocks, AreFreedWhenTheThreadEnds) {
  constexpr int count = 100;
  std::vector<void*> const blocks = takeBlocks(count, Small);
  Counts const counts = countsOf([&blocks] {
    inAThread(
        [&blocks] { EXPECT_EQ(countsOf([&blocks] { giveBlocks(blocks, Small); }).freed, 0); });
  });
  EXPECT_EQ(counts.freed - counts.made, count);
}

TEST_F(KeptBlocks, AreNoneOnceTheThreadHasFreedThem) {
  inAThread([] { giveBlocks(takeBlocks(1, Small), Small); });  // Its key is there before the next.
  static int freedLate = 0;
  pthread_key_t late = 0;
  ASSERT_EQ(pthread_key_create(&late,
                               [](void* block) {
                                 freedLate = countsOf([block] {
                                               BlockCache::give<FromNew>(block, Small);
                                             }).freed;
                               }),
            0);
  inAThread([late] {
    giveBlocks(takeBlocks(1, Small), Small);
    pthread_setspecific(late, BlockCache::take<FromNew>(Small));
  });
  pthread_key_delete(late);
  EXPECT_EQ(freedLate, 1);
}

TEST_F(KeptBlocks, MayComeFromAThreadThatHasEnded) {
  void* block = nullptr;
  inAThread([&block] { block = takeBlocks(1, Small).front(); });
  inAThread([block] {
    giveBlocks({block}, Small);
    EXPECT_EQ(BlockCache::take<FromNew>(Small), block);
    giveBlocks({block}, Small);
  });
}

TEST_F(KeptBlocks, ServeTheStringsAndEntriesOfTheNextText) {
  std::string text = "{";
  for (int i = 0; i < 100; ++i) {
    text += (i == 0 ? "{(key, \"value\"), (other, " : ", {(key, \"value\"), (other, ") +
            std::to_string(i) + ")}";
  }
  text += "}";
  inAThread([&text] {
    auto const read = [&text] {
      int consumed = 0;
      EXPECT_EQ(lvToolsFromString(text.c_str(), consumed).getType(), lvArg::ListType);
    };
    int const first = countsOf(read).made;
    int const second = countsOf(read).made;
    EXPECT_EQ(first - second, 100 * 5);  // Of each map three strings and two entries.
  });
}

TEST_F(KeptBlocks, AreNotThoseOfStringsThatWereSetAnew) {
  inAThread([] {
    lvValue value;
    value.setString("text", 4, lvrString::CopyAndOwn);
    auto* const string = static_cast<lvrString*>(value.getReferencable());
    EXPECT_EQ(string->setStringData("another", 7, lvrString::CopyAndOwn), 0);
    EXPECT_EQ(countsOf([&value] { value.setNil(); }).freed, 1);
  });
}

}  // namespace
