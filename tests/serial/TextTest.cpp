// lvToText(), lvFromText() and values in streams.

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <iomanip>
#include <new>
#include <sstream>
#include <string>
#include <string_view>

#include "support/FieldObjects.h"
#include "support/Nested.h"
#include "support/UnusualObjects.h"
#include "support/ValueTrees.h"
#include "tarselvalues/containers/lvVector.h"
#include "tarselvalues/containers/lvrDLList.h"
#include "tarselvalues/containers/lvrSortedArrayList.h"
#include "tarselvalues/containers/lvrStack.h"
#include "tarselvalues/serial/lvStream.h"
#include "tarselvalues/serial/lvText.h"
#include "tarselvalues/serial/lvTools.h"

namespace {

using test::described;
using test::integer;
using test::mapOf;
using test::string;
using test::vectorOf;

// ---- To text -----------------------------------------------------------------------------------

TEST(ToText, WritesWhatTheLibraryReads) {
  EXPECT_EQ(lvToText(lvArg()), "#nil");
  EXPECT_EQ(lvToText(vectorOf({integer(-5), string("a b"), string("word"), string("")})),
            "{-5,\"a b\",word,\"\"}");
  EXPECT_EQ(lvToText(mapOf({{string("k"), vectorOf({})}})), "{(k={})}");
}

TEST(ToText, WritesObjectsOfRegisteredClasses) {
  test::registerClasses();
  EXPECT_EQ(lvToText(test::point(3, 4)), "*Point{3,4}");
}

TEST(ToText, IsAsTheOneCallConversionForEveryLengthThatItTakes) {
  for (std::size_t length = 1; length < 2000; length += 37) {
    for (std::string_view const fill : {"x", "\"", " "}) {
      std::string text;
      while (text.size() < length) {
        text += fill;
      }
      lvArg const value = vectorOf({string(text.substr(0, 1300)), integer(1)});
      EXPECT_EQ(lvToText(value), std::string(lvToolsToString(value))) << length << fill;
    }
  }
}

TEST(ToText, WritesTextsOfAnyLengthWhole) {
  std::string const quotes(100000, '"');
  std::string const text = lvToText(vectorOf({string(quotes), integer(7)}));
  EXPECT_EQ(text.size(), 3 * quotes.size() + 6);
  EXPECT_EQ(text.substr(text.size() - 4), "\",7}");
  lvVector many(0);
  for (int i = 0; i < 60000; ++i) {
    many->insert(integer(i), -1);
  }
  EXPECT_EQ(described(lvFromText(lvToText(many))), described(many));
}

TEST(ToText, WritesALongClassNameWhole) {
  std::string const name(3000, 'n');
  lvString const key(name.c_str());
  class Named : public test::Point {
   public:
    explicit Named(lvString const& key) : key_(key) {}
    lvString const& getClassDesc() const override { return key_; }

   private:
    lvString key_;
  };
  test::registerClasses();
  lvClass described(1, key, nullptr);
  EXPECT_EQ(described->setSuperClass(lvtClassRegistry::getInstance()->getClass(lvString("Point"))),
            0);
  EXPECT_EQ(described->needReflection(), 0);
  lvtClassRegistry::getInstance()->putClass(key, described);
  std::string const text = lvToText(*new Named(key));
  EXPECT_EQ(text.substr(0, name.size() + 2), "*" + name + "{");
}

TEST(ToText, IsCutByNoBufferThatTheWriterSaysItHasFitted) {
  test::registerClasses();
  lvArg const value = vectorOf(
      {mapOf({{string("key"), string("\"quoted\"")}}), test::point(-100, 5),
       vectorOf({string("a long string, longer than what comes after it"), lvArg()}),
       test::objectOf("my class", {string("%%"), vectorOf({})}), string(""), integer(INT_MIN)});
  std::string const whole = lvToText(value);
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  int fitted = 0;
  for (std::size_t capacity = 0; capacity < whole.size() + 100; ++capacity) {
    std::string buffer(capacity, '.');
    lvtStringArgDest writer(buffer.data(), static_cast<int>(capacity));
    serializer->serializeAtomInto(writer, value);
    if (writer.hasFitted()) {
      ASSERT_EQ(buffer.substr(0, static_cast<std::size_t>(writer.getStringLength())), whole);
      ++fitted;
    }
  }
  EXPECT_GE(fitted, 80);
}

TEST(ToText, EndsAtThe32ndLevel) {
  lvArg value;
  for (int i = 0; i < 31; ++i) {
    value = test::inVector(value);
  }
  std::string const whole = lvToText(test::inVector(value));
  EXPECT_EQ(whole, std::string(32, '{') + "#nil" + std::string(32, '}'));
  lvArg const deeper = test::inVector(test::inVector(value));
  EXPECT_EQ(lvToText(deeper), std::string(lvToolsToString(deeper)));
}

TEST(ToText, EndsALevelAtWhatHasNoTextAndClosesItTwice) {
  for (lvArg const& unwritable :
       {test::newListLike(), lvArg(*new lvrDLList), lvArg(*new lvrStack(1)),
        lvArg(*new lvrSortedArrayList(1)), test::newPlainObject()}) {
    EXPECT_EQ(lvToText(unwritable), "");
    EXPECT_EQ(lvToText(vectorOf({integer(1), unwritable, integer(2)})), "{1}}");
  }
}

TEST(ToText, EndsForAListThatContainsItself) {
  lvVector list(1);
  list->insert(list, -1);
  EXPECT_EQ(lvToText(list), std::string(lvToolsToString(list)));
  list->clear();
}

// ---- From text ---------------------------------------------------------------------------------

TEST(FromText, ReadsTheFirstValueAndTellsWhereItEnds) {
  std::size_t consumed = 0;
  EXPECT_EQ(described(lvFromText("{1,a} {2}", &consumed)), "[1,'a']");
  EXPECT_EQ(consumed, 5U);
  EXPECT_EQ(described(lvFromText("  word")), "'word'");
}

TEST(FromText, IsNilWhereThereIsNoValue) {
  std::size_t consumed = 9;
  EXPECT_TRUE(lvFromText("", &consumed).isNil());
  EXPECT_EQ(consumed, 0U);
  EXPECT_TRUE(lvFromText(std::string_view()).isNil());
  EXPECT_TRUE(lvFromText("  ").isNil());
}

TEST(FromText, RefusesATextThatIsLongerThanAnIntCanTell) {
  EXPECT_THROW(lvFromText(std::string_view("", std::size_t{INT_MAX} + 1)), std::bad_alloc);
}

TEST(FromText, ReadsNoFurtherThanTheTextThatItIsGiven) {
  EXPECT_EQ(described(lvFromText(std::string_view("12345").substr(0, 2))), "12");
}

// ---- Streams -----------------------------------------------------------------------------------

template <class Value>
std::string streamed(Value const& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

TEST(Stream, WritesCellsAndHandlesAsTheirText) {
  EXPECT_EQ(streamed(integer(5)), "5");
  EXPECT_EQ(streamed(lvArg()), "#nil");
  EXPECT_EQ(streamed(lvVector(vectorOf({integer(1)}))), "{1}");
  EXPECT_EQ(streamed(lvHashMap(mapOf({{string("k"), integer(1)}}))), "{(k=1)}");
}

TEST(Stream, WritesStringsWithQuotesWhereTheyNeedThem) {
  EXPECT_EQ(streamed(lvString("a b")), "\"a b\"");
  EXPECT_EQ(streamed(lvString("word")), "word");
  EXPECT_EQ(streamed(lvString()), "#nil");
}

TEST(Stream, HeedsTheWidthOfTheStream) {
  std::ostringstream out;
  out << std::setw(4) << std::left << integer(5) << "|";
  EXPECT_EQ(out.str(), "5   |");
}

TEST(Stream, GoogleTestPrintsValues) {
  EXPECT_EQ(testing::PrintToString(vectorOf({integer(1), string("a b")})), "{1,\"a b\"}");
  EXPECT_EQ(testing::PrintToString(lvString("word")), "word");
}

}  // namespace
