// Bare words in a locale with letters above 127. What isalpha() answers is set here, because such a
// locale need not be installed: this program brings an isalpha() of its own, which the library
// calls like any other.
#include <gtest/gtest.h>

#include <cctype>
#include <climits>
#include <string>

#include "support/Cells.h"
#include "support/SinkRuns.h"
#include "support/TextWriter.h"

namespace {

// The letter of the locale beside those of ASCII, and whether anything else than a byte was asked.
int extraLetter = 0;
bool wasAskedOutOfRange = false;

bool isAsciiLetter(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

extern "C" __attribute__((visibility("default"))) int isalpha(int c) noexcept {
  wasAskedOutOfRange = wasAskedOutOfRange || c < 0 || c > UCHAR_MAX;
  return isAsciiLetter(c) || (extraLetter != 0 && c == extraLetter) ? 1 : 0;
}

namespace {

class WriterInALocale : public testing::Test {
 protected:
  ~WriterInALocale() override { extraLetter = 0; }

  static std::string written(std::string const& text) {
    test::TextWriter writer;
    EXPECT_EQ(writer.putArg(test::string(text)), 0);
    return writer.text();
  }
};

TEST_F(WriterInALocale, WritesItsLettersBare) {
  extraLetter = 0xE9;
  EXPECT_EQ(written("\xE9"), "\xE9");
  EXPECT_EQ(written("caf\xE9"), "caf\xE9");
  EXPECT_EQ(written("_\xE9_9"), "_\xE9_9");
}

TEST_F(WriterInALocale, QuotesOtherBytesAbove127) {
  extraLetter = 0xE9;
  EXPECT_EQ(written("\xE8"), "\"\xE8\"");
  EXPECT_EQ(written("a\xC3\xA9"), "\"a\xC3\xA9\"");
}

TEST_F(WriterInALocale, QuotesTheSameBytesWhereTheyAreNoLetters) {
  EXPECT_EQ(written("caf\xE9"), "\"caf\xE9\"");
}

// By the serializer, which writes most strings at once.
std::string serialized(std::string const& text) {
  char buffer[100];
  lvtStringArgDest writer(buffer, sizeof(buffer));
  EXPECT_EQ(test::HeldSerializer()->serializeAtomInto(writer, test::string(text)), 0);
  return test::textOf(writer);
}

TEST_F(WriterInALocale, GetsTheSameFromTheSerializer) {
  for (int const letter : {0, 0xE9}) {
    extraLetter = letter;
    for (char const* const text :
         {"\xE9", "caf\xE9", "_\xE9_9", "\xE8", "a\xC3\xA9", "abcdefg\xE9", "\xE9tudiants_9",
          "abcdefghij\xE9klmnop", "abcdefghijklmno\xE9", "9bcdefghij\xE9", "a b\xE9 cdefghij"}) {
      EXPECT_EQ(serialized(text), written(text));
    }
  }
}

TEST_F(WriterInALocale, AsksForBytesAsUnsignedNumbersOnly) {
  wasAskedOutOfRange = false;
  extraLetter = 0xFF;
  for (int byte = 1; byte < 256; ++byte) {
    written(std::string("a") + static_cast<char>(byte));
  }
  EXPECT_EQ(written("\xFF"), "\xFF");
  EXPECT_FALSE(wasAskedOutOfRange);
}

}  // namespace
