// What the parser allocates, and what becomes of it when memory runs out.
//
// The program is linked with --wrap for malloc and free, and brings its own operator new and
// delete, so that every allocation of the library passes here.

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <ostream>
#include <string>

#include "support/EveryBlock.h"
#include "support/SinkRuns.h"
#include "support/TextReading.h"
#include "support/ValueTrees.h"

namespace {

// The allocations since the last start(), and how the next ones fare.
struct Memory {
  bool isWatched = false;
  int made = 0;
  int freed = 0;
  std::size_t bytes = 0;
  int failAt = -1;  // the allocation that fails, counted from 0; negative: none
};

Memory memory;

void start(int failAt = -1) {
  memory = Memory();
  memory.failAt = failAt;
  memory.isWatched = true;
}

Memory stop() {
  Memory const result = memory;
  memory = Memory();
  return result;
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming): the names are the
// linker's.
extern "C" {
void* __real_malloc(std::size_t size);
void __real_free(void* block);

void* __wrap_malloc(std::size_t size) {
  if (memory.isWatched) {
    if (memory.failAt == memory.made) {
      memory.failAt = -1;
      return nullptr;
    }
    ++memory.made;
    memory.bytes += size;
  }
  return __real_malloc(size);
}

void __wrap_free(void* block) {
  if (memory.isWatched && block != nullptr) {
    ++memory.freed;
  }
  __real_free(block);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

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

using test::ExactText;
using Access = lvLayoutAccess<lvtStringArgSource>;

std::string inQuotes(std::size_t length) { return '"' + std::string(length, 'a') + '"'; }

// What one token takes.
Memory costOf(std::string const& text) {
  ExactText const exact(text);
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg out;
  start();
  parser.getNextToken(out);
  return stop();
}

// Whether it is no more than what malloc() would make of it.
bool isJustAbove(std::size_t bytes, std::size_t needed) {
  return bytes >= needed && bytes < needed + 2 * sizeof(void*);
}

TEST(ParserMemory, OfAShortStringIsOneBlockWithItsText) {
  for (std::size_t const length : {1U, 2U, 127U, 128U}) {
    Memory const cost = costOf(inQuotes(length));
    EXPECT_EQ(cost.made, 1) << length;
    EXPECT_EQ(cost.freed, 0) << length;
    EXPECT_TRUE(isJustAbove(cost.bytes, sizeof(lvrString) + length + 1)) << length;
  }
}

TEST(ParserMemory, OfALongerStringIsItsObjectAndOneBuffer) {
  for (std::size_t const length : {129U, 499U, 500U, 501U, 600U, 100000U}) {
    Memory const cost = costOf(inQuotes(length));
    EXPECT_EQ(cost.made, 2) << length;
    EXPECT_EQ(cost.freed, 0) << length;
    EXPECT_LE(cost.bytes, sizeof(lvrString) + length + 1) << length;
  }
}

TEST(ParserMemory, OfAShortWordIsOneBlockWithItsText) {
  Memory const cost = costOf("word");
  EXPECT_EQ(cost.made, 1);
  EXPECT_TRUE(isJustAbove(cost.bytes, sizeof(lvrString) + 5));
}

TEST(ParserMemory, OfAnEmptyStringIsItsObjectOnly) { EXPECT_EQ(costOf("\"\"").made, 1); }

TEST(ParserMemory, IsNotAllocatedForOtherTokens) {
  for (char const* const text : {"12", "4294967296", "{", "$", ""}) {
    EXPECT_EQ(costOf(text).made, 0) << text;
  }
}

TEST(ParserMemory, OfALongStringHasRoomForItsUnescapedBytes) {
  std::string raw(500, 'a');
  for (int i = 0; i < 1000; ++i) {
    raw += "%\"";
  }
  EXPECT_GE(costOf('"' + raw + '"').bytes, sizeof(lvrString) + 1501);
}

TEST(ParserMemory, IsFreedWithTheString) {
  std::string const text = inQuotes(600) + " word " + inQuotes(10);
  ExactText const exact(text);
  start();
  {
    lvtStringArgSource parser(exact.data(), exact.size());
    lvArg out;
    while (parser.getNextToken(out) != lvtStringArgSource::TOKEN_END) {
    }
  }
  Memory const cost = stop();
  EXPECT_EQ(cost.made, 4);
  EXPECT_EQ(cost.freed, cost.made);
}

// The state of a parser, for comparing.
struct Standing {
  int offset;
  int state;
  unsigned flags;
  int errors;
  std::string value;
};

bool operator==(Standing const& a, Standing const& b) {
  return a.offset == b.offset && a.state == b.state && a.flags == b.flags && a.errors == b.errors &&
         a.value == b.value;
}

Standing standingOf(lvtStringArgSource const& parser) {
  return {parser.getParseOffset(), Access::state(parser), Access::flags(parser),
          parser.getErrorCount(), test::shown(Access::tokenValue(parser))};
}

struct TokenCase {
  char const* name;
  std::string text;
  int blocks;
};

std::ostream& operator<<(std::ostream& stream, TokenCase const& each) {
  return stream << each.name;
}

// Every allocation fails in turn, until the read succeeds.
class ParserOutOfMemory : public testing::TestWithParam<TokenCase> {
 protected:
  // Calls `read` until it succeeds, and `check` after each failure. Returns how many there were.
  template <class Read, class Check>
  static int readUntilItSucceeds(Read read, Check check) {
    int failures = 0;
    while (fails(failures, read) && failures < 10) {
      check();
      ++failures;
    }
    return failures;
  }

 private:
  template <class Read>
  static bool fails(int failAt, Read read) {
    start(failAt);
    try {
      read();
    } catch (std::bad_alloc const&) {
      // The exception itself is not made by operator new.
      Memory const cost = stop();
      EXPECT_EQ(cost.made, cost.freed) << "something stayed behind";
      return true;
    }
    stop();
    return false;
  }
};

TEST_P(ParserOutOfMemory, LeavesTheParserBeforeTheToken) {
  ExactText const exact(GetParam().text);
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg out = test::integer(42);
  Standing const before = standingOf(parser);
  int const failures = readUntilItSucceeds([&] { parser.getNextToken(out); },
                                           [&] {
                                             EXPECT_TRUE(standingOf(parser) == before);
                                             EXPECT_EQ(out.getInt(), 42);
                                           });
  EXPECT_EQ(failures, GetParam().blocks);
  EXPECT_EQ(parser.getParseOffset(), exact.size());
  EXPECT_EQ(out.getType(), lvArg::StringType);
}

TEST_P(ParserOutOfMemory, LetsTheReadOfAnItemBeTriedAgain) {
  ExactText const exact("{old," + GetParam().text);
  lvtStringArgSource parser(exact.data(), exact.size());
  lvArg out;
  parser.getArg(out);
  parser.getArg(out);
  lvArg const held = test::string("held");
  out = held;
  // The separator is read by then, and the token behind it is not.
  Standing const expected = {5, 0, 0, 0, "'old'"};
  int const failures = readUntilItSucceeds([&] { parser.getArg(out); },
                                           [&] {
                                             EXPECT_TRUE(standingOf(parser) == expected);
                                             EXPECT_TRUE(out.eq(held));
                                           });
  EXPECT_EQ(failures, GetParam().blocks);
  EXPECT_EQ(out.getType(), lvArg::StringType);
  EXPECT_EQ(parser.getArg(out), lvArgSource::SOURCE_END);
}

INSTANTIATE_TEST_SUITE_P(
    Tokens, ParserOutOfMemory,
    testing::Values(TokenCase{"Word", "word", 1}, TokenCase{"LongWord", std::string(600, 'a'), 2},
                    TokenCase{"String", inQuotes(500), 2},
                    TokenCase{"LongString", inQuotes(501), 2},
                    TokenCase{"OpenLongString", '"' + std::string(900, 'a'), 2}),
    [](auto const& each) { return std::string(each.param.name); });

// A nil that is read at once leaves its word, which nobody asks for, as the last token.
TEST(ParserMemory, IsNotNeededForANil) {
  lvtStringArgSource parser("#nil", -1);
  test::HeldSerializer const serializer;
  lvArg out = test::integer(1);
  for (int failAt = 0; !out.isNil() && failAt < 10; ++failAt) {
    start(failAt);
    try {
      serializer->deserializeItemInto(out, parser);
    } catch (std::bad_alloc const&) {
      ASSERT_EQ(parser.getParseOffset(), 0);
    }
    stop();
  }
  EXPECT_TRUE(out.isNil());
  EXPECT_EQ(parser.getParseOffset(), 4);
}

TEST(ParserMemory, ThatIsMissingWithinAListLosesNothingBehindTheItem) {
  test::HeldSerializer const serializer;
  int failures = 0;
  bool isMissing = true;
  for (int failAt = 0; isMissing && failAt < 20; ++failAt) {
    lvtStringArgSource parser("{abc,#nil}", -1);
    lvArg out;
    start(failAt);
    try {
      serializer->deserializeItemInto(out, parser);
      isMissing = false;
    } catch (std::bad_alloc const&) {
      ++failures;
    }
    stop();
    if (isMissing) {
      EXPECT_LE(parser.getParseOffset(), 4) << failAt;
    } else {
      EXPECT_EQ(test::described(out), "['abc',nil]");
    }
  }
  EXPECT_FALSE(isMissing);
  EXPECT_GE(failures, 2);
}

TEST(ParserMemory, ThatIsMissingForAnExpectedStringLeavesItExpected) {
  std::string const bytes = "-" + std::string(600, 'a');
  test::QuoteParser parser(bytes.data(), -1);
  parser.expectQuotedString();
  lvArg out;
  start(0);
  EXPECT_THROW(parser.getNextToken(out), std::bad_alloc);
  stop();
  EXPECT_EQ(Access::flags(parser), 2U);
  EXPECT_EQ(parser.getNextToken(out), lvtStringArgSource::TOKEN_STRING);
  EXPECT_EQ(test::textOf(out), bytes);
}

TEST(ParserMemory, ThatIsMissingForAClassNameLeavesTheStarRead) {
  lvtStringArgSource parser("*Point{1}", -1);
  lvArg out;
  start(0);
  EXPECT_THROW(parser.getArg(out), std::bad_alloc);
  stop();
  EXPECT_EQ(Access::state(parser), 6);
  EXPECT_EQ(parser.getParseOffset(), 1);
  EXPECT_EQ(parser.getArg(out), lvArgSource::SOURCE_FRAME_BEGIN);
  EXPECT_EQ(test::textOf(out), "Point");
}

}  // namespace
