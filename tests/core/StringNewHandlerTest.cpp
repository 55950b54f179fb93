// A new-handler that gives up strings, called while a string is being interned.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/StringTable.h"
#include "tarselvalues/core/lvString.h"

namespace {

// The next allocation by operator new finds no memory, and asks the handler for it.
bool failsNext = false;

std::function<void()> handled;

void handle() {
  std::set_new_handler(nullptr);
  handled();
}

}  // namespace

void* operator new(std::size_t size) {
  if (failsNext) {
    failsNext = false;
    if (std::new_handler const handler = std::get_new_handler()) {
      handler();
    }
  }
  if (void* const memory = std::malloc(size)) {
    return memory;
  }
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace {

class StringNewHandler : public ::testing::Test {
 protected:
  void TearDown() override {
    EXPECT_FALSE(failsNext) << "nothing was allocated";
    EXPECT_TRUE(test::isTableFree());
    cached = lvString();
    EXPECT_EQ(test::entryCount(), before);
  }

  // Interns the text; `act` runs in the middle.
  lvString intern(std::string const& text, std::function<void()> act) {
    handled = std::move(act);
    std::set_new_handler(handle);
    failsNext = true;
    return lvString(text.c_str());
  }

  std::size_t const before = test::entryCount();
  std::vector<std::string> const texts = test::textsOfOneChain(3);
  lvString cached{texts[0].c_str()};
};

TEST_F(StringNewHandler, MayReleaseTheLastEntryOfTheSameChain) {
  lvString const made = intern(texts[1], [&] { cached = lvString(); });
  EXPECT_EQ(test::textOf(made), texts[1]);
  EXPECT_EQ(test::entriesWith(texts[0]), 0);
  EXPECT_EQ(test::entriesWith(texts[1]), 1);
  EXPECT_TRUE(lvString(texts[1].c_str()).eq(made));
}

TEST_F(StringNewHandler, FindsTheTableLocked) {
  bool isFree = true;
  lvString const made = intern(texts[1], [&] {
    cached = lvString();
    isFree = test::isTableFree();
  });
  EXPECT_FALSE(isFree);
}

TEST_F(StringNewHandler, MayInternAnotherTextOfTheSameChain) {
  lvString other;
  lvString const made = intern(texts[1], [&] { other = lvString(texts[2].c_str()); });
  EXPECT_TRUE(lvString(texts[1].c_str()).eq(made));
  EXPECT_TRUE(lvString(texts[2].c_str()).eq(other));
  EXPECT_EQ(test::entriesWith(texts[1]) + test::entriesWith(texts[2]), 2);
}

TEST_F(StringNewHandler, MayInternTheVerySameText) {
  lvString other;
  lvString const made = intern(texts[1], [&] { other = lvString(texts[1].c_str()); });
  EXPECT_TRUE(other.eq(made));
  EXPECT_EQ(test::entriesWith(texts[1]), 1);
  EXPECT_EQ(test::countOf(made), 2);
}

TEST_F(StringNewHandler, MayReleaseAnEntryWhileTwoTextsAreJoined) {
  lvString const head(texts[1].substr(0, 3).c_str());
  handled = [&] { cached = lvString(); };
  std::set_new_handler(handle);
  failsNext = true;
  lvString const made = head + texts[1].substr(3).c_str();
  EXPECT_TRUE(lvString(texts[1].c_str()).eq(made));
  EXPECT_EQ(test::entriesWith(texts[1]), 1);
}

TEST_F(StringNewHandler, MayInternTheVeryTextThatIsBeingJoined) {
  lvString const head(texts[1].substr(0, 3).c_str());
  lvString other;
  handled = [&] { other = lvString(texts[1].c_str()); };
  std::set_new_handler(handle);
  failsNext = true;
  lvString const made = head + texts[1].substr(3).c_str();
  EXPECT_TRUE(other.eq(made));
  EXPECT_EQ(test::entriesWith(texts[1]), 1);
  EXPECT_EQ(test::countOf(made), 2);
}

}  // namespace
