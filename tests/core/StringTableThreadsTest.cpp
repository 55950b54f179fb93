// Entries of the string table that several threads find and let go.

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/Cells.h"
#include "support/StringTable.h"
#include "support/Together.h"
#include "tarselvalues/core/lvString.h"

namespace {

using test::chainOf;
using test::countOf;
using test::entriesWith;
using test::Entry;
using test::entryCount;
using test::isTableFree;
using test::lockedCount;
using test::runTogether;
using test::TableLock;
using test::textOf;
using test::textsOfOneChain;
using test::textsOfOneHash;

constexpr int Mode = lvrString::CopyAndOwnEmpty;

// Finds or makes the entry. Requires the table's lock.
Entry& lookUp(std::string const& text) {
  return *lvString::findStringObject(text.c_str(), -1, Mode, 0);
}

// Takes a reference that is the caller's to drop. Requires the table's lock.
Entry& take(std::string const& text) {
  Entry& entry = lookUp(text);
  lvArg taken;
  taken.setReferencableFast(entry, lvArg::NilType);
  return entry;
}

// A thread that drops the last reference to an entry while the table is locked, so that it waits
// there with the entry let go and still in the table.
class Dropper {
 public:
  explicit Dropper(Entry& entry) : thread([this, &entry] { answer = entry.__removeRef(); }) {
    while (lockedCount(entry) > 0) {
      std::this_thread::yield();
    }
  }

  // Waits for its end and tells whether it ended the entry.
  bool endedIt() {
    thread.join();
    return answer == 1;
  }

 private:
  int answer = -1;
  std::thread thread;
};

// An entry that the test's thread has let go another thread of, with the table locked.
class LetGoEntry : public ::testing::Test {
 protected:
  void letGo() { dropper = std::make_unique<Dropper>(entry); }

  // Lets the thread of letGo() have the table, and tells whether it ended the entry.
  bool arriveAndEnd() {
    lock.reset();
    bool const ended = dropper->endedIt();
    EXPECT_TRUE(isTableFree());
    return ended;
  }

  // Requires the table's lock.
  lvString find() const {
    lvString found;
    found.findSetFast(text.c_str(), -1, Mode, 0);
    return found;
  }

  // A text of the test's own: an immortal entry stays.
  std::string const text = ::testing::UnitTest::GetInstance()->current_test_info()->name();
  std::optional<TableLock> lock{std::in_place};
  Entry& entry = take(text);
  std::unique_ptr<Dropper> dropper;
};

TEST_F(LetGoEntry, EndsWhenNobodyFindsIt) {
  letGo();
  EXPECT_TRUE(arriveAndEnd());
  EXPECT_EQ(entriesWith(text), 0);
}

TEST_F(LetGoEntry, IsStillInTheTable) {
  letGo();
  EXPECT_EQ(chainOf(text).back(), &entry);
  EXPECT_TRUE(arriveAndEnd());
}

TEST_F(LetGoEntry, BelongsToWhoFindsIt) {
  letGo();
  lvString const found = find();
  EXPECT_EQ(found.getReferencable(), &entry);
  EXPECT_FALSE(arriveAndEnd());
  EXPECT_EQ(countOf(found), 1);
  EXPECT_EQ(textOf(found), text);
  EXPECT_EQ(lvString(text.c_str()).getReferencable(), &entry);
  EXPECT_EQ(entriesWith(text), 1);
}

TEST_F(LetGoEntry, CountsAllWhoFoundItAndTheirCopies) {
  letGo();
  lvString const first = find();
  lvString const second = find();
  lvArg const copy(second);
  EXPECT_FALSE(arriveAndEnd());
  EXPECT_EQ(countOf(entry), 3);
}

TEST_F(LetGoEntry, EndsWithItsFinder) {
  letGo();
  lvString found = find();
  EXPECT_FALSE(arriveAndEnd());
  found = lvString();
  EXPECT_EQ(entriesWith(text), 0);
}

TEST_F(LetGoEntry, IsLetGoByItsFindersWithoutWaiting) {
  letGo();
  for (int i = 0; i < 5; ++i) {
    Entry& found = take(text);
    EXPECT_EQ(&found, &entry);
    EXPECT_EQ(found.__removeRef(), 0) << "the other thread is to end it";
  }
  EXPECT_TRUE(arriveAndEnd());
  EXPECT_EQ(entriesWith(text), 0);
}

TEST_F(LetGoEntry, BelongsToTheLastOfManyFinders) {
  letGo();
  for (int i = 0; i < 5; ++i) {
    find();
  }
  lvString const found = find();
  EXPECT_FALSE(arriveAndEnd());
  EXPECT_EQ(countOf(found), 1);
  EXPECT_EQ(entriesWith(text), 1);
}

TEST_F(LetGoEntry, IsFoundAgainWhileNobodyHoldsIt) {
  letGo();
  EXPECT_EQ(&lookUp(text), &entry);
  EXPECT_EQ(&lookUp(text), &entry);
  lvString const found = find();
  EXPECT_EQ(found.getReferencable(), &entry);
  EXPECT_FALSE(arriveAndEnd());
}

TEST_F(LetGoEntry, EndsWhenItIsFoundButNotHeld) {
  letGo();
  lookUp(text);
  EXPECT_TRUE(arriveAndEnd());
  EXPECT_EQ(entriesWith(text), 0);
}

TEST_F(LetGoEntry, MayBeLetGoAndFoundAgainAndAgain) {
  letGo();
  for (int i = 0; i < 20; ++i) {
    lvString found = find();
    EXPECT_FALSE(arriveAndEnd());
    EXPECT_EQ(countOf(entry), 1);
    lock.emplace();
    take(text);
    found = lvString();
    letGo();
  }
  EXPECT_TRUE(arriveAndEnd());
  EXPECT_EQ(entriesWith(text), 0);
}

TEST_F(LetGoEntry, IsFoundByAllOtherWaysToo) {
  letGo();
  lvString const found = find();
  lock.reset();
  lvString const joined = lvString(text.substr(0, 2).c_str()) + text.substr(2).c_str();
  lvString const converted(test::string(text));
  EXPECT_FALSE(dropper->endedIt());
  EXPECT_EQ(joined.getReferencable(), &entry);
  EXPECT_EQ(converted.getReferencable(), &entry);
  EXPECT_EQ(countOf(entry), 3);
}

TEST_F(LetGoEntry, IsNeverEndedOnceItIsImmortal) {
  letGo();
  {
    lvString const found = find();
    found.getReferencable()->__makeImmortal();
  }
  bool const ended = arriveAndEnd();
  ASSERT_FALSE(ended);
  EXPECT_EQ(countOf(entry), 10000);
  EXPECT_EQ(lvString(text.c_str()).getReferencable(), &entry);
}

TEST_F(LetGoEntry, CountsItsFindersThoughItIsImmortal) {
  letGo();
  lvString found = find();
  found.getReferencable()->__makeImmortal();
  ASSERT_FALSE(arriveAndEnd());
  EXPECT_EQ(countOf(entry), 1);
  found = lvString();
  EXPECT_EQ(countOf(entry), 10000);
}

TEST_F(LetGoEntry, OfTwoLastReferencesIsEndedByOneThread) {
  take(text);
  bool firstEnded = false;
  std::thread first([&] { firstEnded = entry.__removeRef() == 1; });
  while (lockedCount(entry) > 1) {
    std::this_thread::yield();
  }
  letGo();
  bool const secondEnded = arriveAndEnd();
  first.join();
  EXPECT_FALSE(firstEnded);
  EXPECT_TRUE(secondEnded);
  EXPECT_EQ(entriesWith(text), 0);
}

// The thread that is to end the entry has the table and waits for the entry's mutex: what others do
// before it gets that counts.
class LetGoEntryAtItsMutex : public LetGoEntry {
 protected:
  void SetUp() override {
    letGo();
    found = find();
    pthread_mutex_lock(&mutex);
    lock.reset();
    while (isTableFree()) {
      std::this_thread::yield();
    }
  }

  bool decide() {
    pthread_mutex_unlock(&mutex);
    return arriveAndEnd();
  }

  lvString found;

 private:
  pthread_mutex_t& mutex = lvLayoutAccess<lvReferencable>::mutex(entry);
};

TEST_F(LetGoEntryAtItsMutex, BelongsToItsFinder) {
  EXPECT_FALSE(decide());
  EXPECT_EQ(countOf(found), 1);
}

TEST_F(LetGoEntryAtItsMutex, EndsWhenTheFinderHasLetGo) {
  found = lvString();
  EXPECT_TRUE(decide());
  EXPECT_EQ(entriesWith(text), 0);
}

TEST_F(LetGoEntryAtItsMutex, BelongsToACopyOfTheFinders) {
  lvString const copy(found);
  found = lvString();
  EXPECT_FALSE(decide());
  EXPECT_EQ(countOf(copy), 1);
  EXPECT_EQ(textOf(copy), text);
}

// ---- Several entries at once -------------------------------------------------------------------

TEST(LetGoEntries, OfOneChainEndEachByItself) {
  std::vector<std::string> const texts = textsOfOneChain(4);
  lvString const neighbour(texts[1].c_str());
  std::size_t const before = chainOf(texts[0]).size();
  std::vector<std::unique_ptr<Dropper>> droppers;
  lvString found;
  {
    TableLock const lock;
    for (std::size_t const i : std::array<std::size_t, 3>{0, 2, 3}) {
      droppers.push_back(std::make_unique<Dropper>(take(texts[i])));
    }
    found.findSetFast(texts[2].c_str(), -1, Mode, 0);
  }
  EXPECT_TRUE(droppers[0]->endedIt());
  EXPECT_FALSE(droppers[1]->endedIt());
  EXPECT_TRUE(droppers[2]->endedIt());
  EXPECT_EQ(chainOf(texts[0]).size(), before + 1);
  EXPECT_EQ(chainOf(texts[0]).back(), found.getReferencable());
  EXPECT_EQ(countOf(found), 1);
  EXPECT_EQ(countOf(neighbour), 1);
}

// The thread that ends an entry and one that looks its text up wait for the table together; which
// comes first is open, but the handle always holds an entry that stays.
TEST(LetGoEntries, AreNeverHandedOutWhenTheyEnd) {
  for (int round = 0; round < 60; ++round) {
    std::optional<TableLock> lock(std::in_place);
    Dropper dropper(take("raced for"));
    lvString handle;
    std::thread finder([&] { handle = lvString("raced for"); });
    lock.reset();
    finder.join();
    bool const ended = dropper.endedIt();
    ASSERT_EQ(countOf(handle), 1) << round << (ended ? ", ended" : ", kept");
    ASSERT_STREQ(handle, "raced for");
    ASSERT_EQ(entriesWith("raced for"), 1) << round;
  }
}

TEST(UnheldEntry, IsFoundByOtherThreadsAsTheSameEntry) {
  Entry* entry = nullptr;
  {
    TableLock const lock;
    entry = &lookUp("not held yet");
  }
  lvString handle;
  std::thread([&] { handle = lvString("not held yet"); }).join();
  EXPECT_EQ(handle.getReferencable(), entry);
  EXPECT_EQ(countOf(handle), 1);
}

// ---- Many threads, many times ------------------------------------------------------------------

constexpr int Threads = 4;
constexpr int Rounds = 8000;

// Each test runs with one thread, too: what fails there is no matter of threads.
class StringTableThreads : public ::testing::TestWithParam<int> {
 protected:
  void TearDown() override { EXPECT_EQ(entryCount(), before); }

  std::vector<std::string> const texts = textsOfOneChain(3);

 private:
  std::size_t const before = entryCount();
};

std::string nameOf(::testing::TestParamInfo<int> const& run) {
  return run.param == 1 ? "InOneThread" : "InSeveralThreads";
}

INSTANTIATE_TEST_SUITE_P(Together, StringTableThreads, ::testing::Values(1, Threads), nameOf);

TEST_P(StringTableThreads, InternAndReleaseOneText) {
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int) {
    for (int i = 0; i < Rounds; ++i) {
      lvString const handle("one text");
      wrong += textOf(handle) == "one text" ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

TEST_P(StringTableThreads, ShareTheEntryThatOneHandleKeepsAlive) {
  lvString const kept("kept");
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int) {
    for (int i = 0; i < Rounds; ++i) {
      lvString const handle("kept");
      wrong += handle.getReferencable() == kept.getReferencable() ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(countOf(kept), 1);
}

TEST_P(StringTableThreads, EndEveryEntryOnceAndOnlyOnce) {
  std::atomic<int> made{0};
  std::atomic<int> ended{0};
  runTogether(GetParam(), [&](int) {
    for (int i = 0; i < Rounds; ++i) {
      Entry* entry = nullptr;
      {
        TableLock const lock;
        std::size_t const size = chainOf("counted").size();
        entry = &take("counted");
        made += chainOf("counted").size() > size ? 1 : 0;
      }
      ended += entry->__removeRef();
    }
  });
  EXPECT_GT(made, 0);
  EXPECT_EQ(ended, made);
}

TEST_P(StringTableThreads, WalkAtRandomOverTheTextsOfOneChain) {
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int thread) {
    std::mt19937 random(static_cast<unsigned>(thread) + 31);
    std::array<lvString, 4> handles;
    for (int i = 0; i < Rounds; ++i) {
      lvString& handle = handles[random() % handles.size()];
      std::string const& text = texts[random() % texts.size()];
      switch (random() % 6) {
        case 0:
          handle = lvString();
          break;
        case 1:
          handle = handles[random() % handles.size()];
          break;
        case 2:
          handle = lvString(text.substr(0, 4).c_str()) + text.substr(4).c_str();
          wrong += textOf(handle) == text ? 0 : 1;
          break;
        case 3:
          handle = lvString(test::string(text));
          wrong += textOf(handle) == text ? 0 : 1;
          break;
        default:
          handle = lvString(text.c_str());
          wrong += textOf(handle) == text ? 0 : 1;
          break;
      }
      // Whoever holds an entry finds it and no other.
      lvString const again(handle.isNil() ? text.c_str() : static_cast<char const*>(handle));
      wrong += handle.isNil() || again.getReferencable() == handle.getReferencable() ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0) << "seeds from 31 on";
}

// So many that the table finds them by its index, which grows meanwhile; it goes whenever an entry
// is set anew, and comes back.
TEST_P(StringTableThreads, FindAndLetGoManyTextsOfOneChainWhileEntriesAreSetAnew) {
  std::vector<std::string> const many = textsOfOneChain(400);
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int thread) {
    std::mt19937 random(static_cast<unsigned>(thread) + 77);
    std::vector<lvString> handles(many.size());
    for (int i = 0; i < Rounds / 2; ++i) {
      std::size_t const number = random() % many.size();
      lvString const handle(many[number].c_str());
      wrong += textOf(handle) == many[number] ? 0 : 1;
      wrong +=
          handles[number].isNil() || handles[number].getReferencable() == handle.getReferencable()
              ? 0
              : 1;
      handles[number] = random() % 3 == 0 ? lvString() : handle;
      if (i % 1000 == 500) {
        lvString const own(("of thread " + std::to_string(thread)).c_str());
        test::setAnew(own);
      }
    }
  });
  EXPECT_EQ(wrong, 0) << "seeds from 77 on";
  EXPECT_TRUE(chainOf(many[0]).empty());
}

// Each thread starts with another text, makes what is not there yet and finds the rest; then all
// let go together. The index is built and grows meanwhile, goes in mid-course and comes back.
TEST_P(StringTableThreads, MakeEachOfManyTextsOfOneHashOnceWhileTheIndexGrowsAndGoes) {
  std::vector<std::string> const many = textsOfOneHash(400);
  std::vector<std::atomic<lvReferencable const*>> entries(many.size());
  std::atomic<int> wrong{0};
  test::Gate gate(GetParam());
  runTogether(GetParam(), [&](int thread) {
    lvString const own(("own " + std::to_string(thread)).c_str());
    std::size_t const start = many.size() / Threads * static_cast<std::size_t>(thread);
    for (int round = 0; round < 6; ++round) {
      std::vector<lvString> handles(many.size());
      for (std::size_t i = 0; i < many.size(); ++i) {
        std::size_t const number = (start + i) % many.size();
        handles[number] = lvString(many[number].c_str());
        lvReferencable const* const mine = handles[number].getReferencable();
        lvReferencable const* first = nullptr;
        wrong += entries[number].compare_exchange_strong(first, mine) || first == mine ? 0 : 1;
        if (i == many.size() / 2 && round % GetParam() == thread) {
          test::setAnew(own);
        }
      }
      gate.pass();
      for (std::size_t i = 0; i < many.size(); ++i) {
        handles[(start + i) % many.size()] = lvString();
        entries[i] = nullptr;
      }
      gate.pass();
    }
  });
  EXPECT_EQ(wrong, 0);
  EXPECT_TRUE(chainOf(many[0]).empty());
}

TEST_P(StringTableThreads, HandEntriesOnToOneAnother) {
  std::array<lvString, Threads> handles;
  test::Gate gate(GetParam());
  std::atomic<int> wrong{0};
  runTogether(GetParam(), [&](int thread) {
    for (int i = 0; i < 200; ++i) {
      std::string const text = "handed on " + std::to_string(i);
      handles[static_cast<std::size_t>(thread)] = lvString(text.c_str());
      gate.pass();
      lvString const next = handles[static_cast<std::size_t>((thread + 1) % GetParam())];
      gate.pass();
      wrong += textOf(next) == text ? 0 : 1;
      wrong += next.getReferencable() == lvString(text.c_str()).getReferencable() ? 0 : 1;
    }
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
