// Reading and writing what is nested deep.

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/Nested.h"
#include "support/SmallStack.h"
#include "tarselvalues/reflect/lvClassBuilder.h"
#include "tarselvalues/serial/lvrCommonSerializer.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

// How many brackets a text opens. Emulated and sanitized programs have less time and memory.
#if defined(__arm__) || defined(__SANITIZE_ADDRESS__)
constexpr int MostBrackets = 500000;
constexpr int Deep = 100000;
#else
constexpr int MostBrackets = 5000000;
constexpr int Deep = 1000000;
#endif
constexpr int Brackets = MostBrackets / 5;

class DeepValues : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    lvClassBuilder<test::Link>("Link").field("next", &test::Link::next).registerClass();
  }

  lvrCommonSerializer& serializer() {
    return static_cast<lvrCommonSerializer&>(*holder_.getReferencable());
  }

  // Reads `level` repeated until it has opened so many brackets, closed or not, and releases it.
  void readAndRelease(std::string const& level, std::string const& closing,
                      int brackets = Brackets) {
    std::string text;
    int const opened = static_cast<int>(std::count(level.begin(), level.end(), '{') +
                                        std::count(level.begin(), level.end(), '('));
    for (int i = 0; i < brackets; i += opened) {
      text += level;
    }
    text += '1';
    for (int i = 0; i < brackets && !closing.empty(); i += opened) {
      text += closing;
    }
    ASSERT_TRUE(test::runOnSmallStack([this, &text] {
      lvtStringArgSource source(text.data(), static_cast<int>(text.size()));
      lvArg value;
      EXPECT_EQ(0, serializer().deserializeItemInto(value, source));
      EXPECT_EQ(static_cast<int>(text.size()), source.getParseOffset());
      EXPECT_FALSE(value.isNil());
      value.setNil();
    }));
  }

 private:
  lvArg holder_{*new lvrCommonSerializer};
};

TEST_F(DeepValues, AreReadFromOpeningBracketsAlone) { readAndRelease("{", "", MostBrackets); }

TEST_F(DeepValues, AreReadFromNestedVectors) { readAndRelease("{", "}"); }

TEST_F(DeepValues, AreReadFromNestedMaps) { readAndRelease("{(a=", ")}"); }

TEST_F(DeepValues, AreReadFromMapsThatAreKeys) { readAndRelease("{(", "=1)}"); }

TEST_F(DeepValues, AreReadFromVectorsThatAreKeys) { readAndRelease("{({", "}=1)}"); }

TEST_F(DeepValues, AreReadFromVectorsInsideOneKey) {
  std::string const inside(static_cast<std::size_t>(Brackets), '{');
  std::string const text =
      "{(" + inside + std::string(static_cast<std::size_t>(Brackets), '}') + "=1)}";
  ASSERT_TRUE(test::runOnSmallStack([this, &text] {
    lvtStringArgSource source(text.data(), static_cast<int>(text.size()));
    lvArg value;
    EXPECT_EQ(0, serializer().deserializeItemInto(value, source));
    EXPECT_EQ(1, lvHashMap(value)->getSize());
  }));
}

TEST_F(DeepValues, AreReadFromNestedObjects) { readAndRelease("*Link{", "}"); }

TEST_F(DeepValues, AreReadFromAllKindsMixed) {
  readAndRelease("{{(k=*Link{", "})}}", MostBrackets);
}

TEST_F(DeepValues, AreReadFromTuplesThatNoMapTakes) { readAndRelease("{{(", ""); }

TEST_F(DeepValues, AreReadFromObjectsOfAnUnknownClass) {
  testing::internal::CaptureStdout();
  std::string text;
  for (int i = 0; i < Brackets / 10; ++i) {
    text += "{*Nobody{";
  }
  ASSERT_TRUE(test::runOnSmallStack([this, &text] {
    lvtStringArgSource source(text.data(), static_cast<int>(text.size()));
    lvArg value;
    EXPECT_EQ(0, serializer().deserializeItemInto(value, source));
    EXPECT_EQ(lvArg::ListType, value.getType());
  }));
  std::string const printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(0U, printed.find("CS_ERR_UNKNOWN_CLASS_KEY\nCS_ERR_UNKNOWN_CLASS_KEY\n"));
}

// ---- Writing -----------------------------------------------------------------------------------

// A sink that takes everything at any depth, and counts.
class CountingDest : public lvArgDest {
 public:
  int terminate() override { return 0; }
  int enter(lvArg const& /*kind*/, int /*size*/) override {
    ++entered;
    deepest = std::max(deepest, ++depth);
    return 0;
  }
  int leave() override {
    --depth;
    return 0;
  }
  int abortLevel() override { return 0; }
  int sourceError(sourceError_t /*error*/) override { return 0; }
  int putArg(lvArg const& /*value*/) override {
    ++put;
    return 0;
  }

  int entered = 0;
  int deepest = 0;
  int depth = 0;
  int put = 0;
};

TEST_F(DeepValues, AreWrittenToASinkThatTakesAnyDepth) {
  ASSERT_TRUE(test::runOnSmallStack([this] {
    test::Wrap const wraps[] = {test::inVector, test::inMap, test::inLink, test::inTupleSet};
    lvArg const value = test::nested(wraps, Deep);
    CountingDest sink;
    EXPECT_EQ(0, serializer().serializeAtomInto(sink, value));
    EXPECT_EQ(Deep + Deep / 2, sink.entered);  // Each map has a tuple.
    EXPECT_EQ(sink.entered, sink.deepest);
    EXPECT_EQ(0, sink.depth);
    EXPECT_EQ(1 + Deep / 2, sink.put);  // The keys, too.
  }));
}

TEST_F(DeepValues, AreWrittenByTheTextWriterDownToItsLimit) {
  ASSERT_TRUE(test::runOnSmallStack([this] {
    test::Wrap const wraps[] = {test::inVector};
    lvArg const value = test::nested(wraps, Deep);
    char buffer[256];
    lvtStringArgDest sink(buffer, sizeof(buffer));
    serializer().serializeAtomInto(sink, value);
    std::string const text(buffer, static_cast<std::size_t>(sink.getStringLength()));
    EXPECT_EQ(std::string(lvtStringArgDest::MaxDepth, '{'),
              text.substr(0, text.find_first_not_of('{')));
  }));
}

}  // namespace
