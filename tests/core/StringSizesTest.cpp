// Strings of many bytes, with and without NULs inside.

#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "support/Cells.h"
#include "support/StringModel.h"
#include "support/StringObjects.h"

namespace {

using test::bytesOf;
using test::HeldString;
using test::string;
using test::textOf;

constexpr std::size_t Long = 10000000;
constexpr int LongLength = static_cast<int>(Long);

// Ten million bytes that do not repeat soon.
std::string const& longText() {
  static std::string const text = [] {
    std::string made(Long, 'a');
    for (std::size_t i = 0; i < Long; i += 37) {
      made[i] = static_cast<char>('a' + i / 37 % 26);
    }
    return made;
  }();
  return text;
}

lvString interned(std::string const& text) {
  return {static_cast<int>(text.size()), text.data(), lvrString::CopyAndOwnEmpty};
}

// ---- String objects ----------------------------------------------------------------------------

TEST(LongString, IsCopiedWhole) {
  HeldString const held(longText());
  EXPECT_EQ(held->getLength(), LongLength);
  EXPECT_EQ(held->getKnownLength(), -1);
  EXPECT_EQ(bytesOf(*held), longText());
}

TEST(LongString, IsComparedToItsLastByte) {
  std::string other = longText();
  other.back() = '!';
  HeldString const held(longText());
  HeldString const same(longText());
  HeldString const different(other);
  EXPECT_EQ(held->equiv(*same), 1);
  EXPECT_EQ(held->equiv(*different), 0);
  EXPECT_EQ(held->hashCode(), different->hashCode());
  EXPECT_EQ(held->compareTo(*same), 0);
  EXPECT_GT(held->compareTo(*different), 0);
}

TEST(LongString, IsJoinedFromPieces) {
  std::string const half = longText().substr(0, Long / 2);
  std::string const rest = longText().substr(Long / 2);
  char const* pieces[] = {half.data(), rest.data()};
  int lengths[] = {static_cast<int>(half.size()), -1};
  HeldString const held;
  ASSERT_EQ(held->setStringDataFast(2, pieces, lengths, lvrString::CopyAndOwn), 0);
  EXPECT_EQ(lengths[1], static_cast<int>(rest.size()));
  EXPECT_EQ(bytesOf(*held), longText());
}

TEST(LongString, IsCopiedFromAnother) {
  HeldString const source(longText());
  HeldString const held("short");
  EXPECT_EQ(held->setFrom(source.cell), 0);
  EXPECT_EQ(bytesOf(*held), longText());
  EXPECT_EQ(held->setFrom(string("short again")), 0);
  EXPECT_EQ(held->getLength(), 11);
}

TEST(LongString, EndsAtItsFirstNulForWhoeverAsks) {
  std::string text = longText();
  text[70000] = '\0';
  text[100000] = '\0';
  HeldString const held(text);
  EXPECT_EQ(held->getLength(), 70000);
  HeldString const cut(text.substr(0, 70000));
  EXPECT_EQ(held->compareTo(*cut), 0);
  EXPECT_EQ(held->hashCode(), cut->hashCode());
  EXPECT_EQ(held->equiv(*cut), 1);
}

TEST(LongString, HasAnEmptyCopyWhenItBeginsWithANul) {
  std::string text(65535, 'x');
  text[0] = '\0';
  HeldString const held(text);
  EXPECT_EQ(held->getLength(), 0);
  HeldString const copy;
  EXPECT_EQ(copy->setFrom(held.cell), 0);
  EXPECT_EQ(copy->getLength(), 0);
  EXPECT_EQ(held->getInteger(), 0);
}

TEST(StringAtTheLimit, KnowsItsLengthBelowItOnly) {
  for (std::size_t const size : {std::size_t{65534}, std::size_t{65535}, std::size_t{65536}}) {
    std::string text(size, 'x');
    text[100] = '\0';
    HeldString const held(text);
    bool const isKnown = size < 65535;
    EXPECT_EQ(held->getKnownLength(), isKnown ? 65534 : -1);
    EXPECT_EQ(held->getLength(), isKnown ? 65534 : 100);
    EXPECT_EQ(held->hashCode(),
              isKnown ? test::modelHash(text) : test::modelHash(text.substr(0, 100)));
  }
}

TEST(StringAtTheLimit, IsEqualUpToItsFirstNulWhetherOrNotItsLengthIsKnown) {
  for (std::size_t const size : {std::size_t{65534}, std::size_t{65535}, std::size_t{65536}}) {
    std::string text(size, 'x');
    text[100] = '\0';
    std::string other = text;
    other[101] = 'y';
    EXPECT_EQ(HeldString(text)->equiv(*HeldString(other)), 1) << size;
  }
}

// ---- Interned strings --------------------------------------------------------------------------

TEST(LongInternedString, SharesItsEntry) {
  lvString const first = interned(longText());
  lvString const second(longText().c_str());
  EXPECT_EQ(first.getReferencable(), second.getReferencable());
  EXPECT_EQ(first.length(), LongLength);
  std::string other = longText();
  other.back() = '!';
  EXPECT_NE(first.getReferencable(), interned(other).getReferencable());
}

TEST(LongInternedString, IsCutAndJoined) {
  lvString const whole = interned(longText());
  lvString const left = whole.getLeft(LongLength / 2);
  lvString const right = whole.getRight(LongLength - LongLength / 2);
  EXPECT_EQ((left + right).getReferencable(), whole.getReferencable());
  EXPECT_EQ(whole.getMid(LongLength - 3, 100).length(), 3);
  EXPECT_EQ(whole[LongLength - 1], static_cast<unsigned char>(longText().back()));
  EXPECT_EQ(whole[LongLength], -1);
}

TEST(LongInternedString, OfAStringObjectIsThatOfItsBytes) {
  EXPECT_EQ(lvString(string(longText())).getReferencable(), interned(longText()).getReferencable());
}

TEST(LongInternedString, MadeOfAStringObjectEndsAtItsFirstNul) {
  std::string text(100000, 'x');
  text[70000] = '\0';
  lvString const handle(string(text));
  EXPECT_EQ(handle.length(), 70000);
  EXPECT_EQ(handle.getReferencable(), interned(text.substr(0, 70000)).getReferencable());
}

TEST(LongValue, ReadsAndWritesAllBytes) {
  lvValue value;
  value.setString(longText().data(), LongLength, lvrString::CopyAndOwn);
  int length = 0;
  EXPECT_NE(value.getString(&length), nullptr);
  EXPECT_EQ(length, LongLength);
  EXPECT_EQ(textOf(value), longText());
}

}  // namespace
