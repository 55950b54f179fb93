// Texts in a locale with letters, blanks and hexadecimal digits of its own. What the character
// functions answer is set here, because such a locale need not be installed: this program brings
// its own, which the library calls like any others.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "support/SinkRuns.h"
#include "support/TextReading.h"
#include "support/ValueTrees.h"

namespace {

// The members of each class beside those of ASCII; 0 for none.
int extraLetter = 0;
int extraBlank = 0;
bool wasAskedOutOfRange = false;

bool isOneOf(char const* all, int c) { return c > 0 && c < 128 && std::strchr(all, c) != nullptr; }

int isExtra(int c, int extra) {
  wasAskedOutOfRange = wasAskedOutOfRange || c < 0 || c > UCHAR_MAX;
  return extra != 0 && c == extra ? 1 : 0;
}

}  // namespace

extern "C" {
__attribute__((visibility("default"))) int isalpha(int c) noexcept {
  return isExtra(c, extraLetter) != 0 || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ? 1 : 0;
}

__attribute__((visibility("default"))) int isspace(int c) noexcept {
  return isExtra(c, extraBlank) != 0 || isOneOf(" \t\n\v\f\r", c) ? 1 : 0;
}

__attribute__((visibility("default"))) int isxdigit(int c) noexcept {
  return isExtra(c, 0) != 0 || isOneOf("0123456789abcdefABCDEF", c) ? 1 : 0;
}
}

namespace {

using test::tokensOf;

class ParserInALocale : public testing::Test {
 protected:
  ~ParserInALocale() override {
    extraLetter = 0;
    extraBlank = 0;
  }
};

TEST_F(ParserInALocale, ReadsItsLettersAsWords) {
  extraLetter = 0xE9;
  EXPECT_EQ(tokensOf("caf\xE9 \xE9t\xE9 _\xE9\x31"), "'caf\xE9' '\xE9t\xE9' '_\xE9\x31' end");
}

TEST_F(ParserInALocale, ReadsTheSameBytesAsUnknownWhereTheyAreNoLetters) {
  EXPECT_EQ(tokensOf("caf\xE9"), "'caf' unknown end");
}

TEST_F(ParserInALocale, SkipsItsBlanks) {
  extraBlank = 0xA0;
  EXPECT_EQ(tokensOf("\xA0\x61\xA0\x62\xA0"), "'a' 'b' end");
}

TEST_F(ParserInALocale, ReadsAMapBehindOneOfItsBlanks) {
  extraBlank = 0xA0;
  lvtStringArgSource parser("{\xA0(a=b)}", -1);
  lvArg out;
  EXPECT_EQ(test::HeldSerializer()->deserializeItemInto(out, parser), 0);
  EXPECT_EQ(test::described(out), "{'a'='b'}");
  EXPECT_EQ(parser.getParseOffset(), 8);
}

TEST_F(ParserInALocale, LetsItsLettersEndTheWaitForAnExpectedStringNot) {
  extraLetter = 0xFF;
  test::TextReader reader("\xFF -\"");
  reader.parser().expectQuotedString();
  EXPECT_EQ(reader.allTokens(), "'\xFF' '-' end");
}

TEST_F(ParserInALocale, AsksForBytesAsUnsignedNumbersOnly) {
  wasAskedOutOfRange = false;
  for (int byte = 0; byte < 256; ++byte) {
    std::string const itself(1, static_cast<char>(byte));
    tokensOf(itself);
    tokensOf("a" + itself);
    tokensOf("1" + itself);
    tokensOf("\"%" + itself + "\"");
    tokensOf("\"%1" + itself + "\"");
  }
  EXPECT_FALSE(wasAskedOutOfRange);
}

}  // namespace
