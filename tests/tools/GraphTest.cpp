// Pictures of values that text cannot tell of: with cycles, and with what several refer to.

#include <gmock/gmock.h>
#include <lvtext/Graph.h>
#include <tarselvalues/containers/lvBuilders.h>

#include <string>

namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

int countOf(std::string const& text, std::string const& part) {
  int count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

TEST(LvtextGraph, DrawsWhatIsSharedOnce) {
  lvVector const shared = lvListOf(1, 2);
  std::string const dot = dotGraph({lvListOf(shared, shared), shared});
  EXPECT_EQ(countOf(dot, "<TABLE BORDER=\"0\""), 2);
  EXPECT_EQ(countOf(dot, "<TABLE BORDER=\"3\""), 1);
  EXPECT_THAT(dot, AllOf(HasSubstr("  n1:p0 -> n2;\n"), HasSubstr("  n1:p1 -> n2;\n"),
                         HasSubstr("  n0:p0 -> n1;\n"), HasSubstr("  n0:p1 -> n2;\n")));
  EXPECT_THAT(dot, Not(HasSubstr("red")));
}

TEST(LvtextGraph, DrawsTheArrowsOfACycleInRedAndNoOthers) {
  lvVector const outer(1);
  lvVector const inner = lvListOf(lvListOf(7), outer);
  lvHashMap const map = lvMapBuilder().put("back", inner).put("other", lvListOf(8)).map();
  outer->insert(map, -1);
  std::string const dot = dotGraph({lvListOf(outer)});
  outer->clear();
  EXPECT_EQ(countOf(dot, "color=red"), 3) << dot;
  EXPECT_EQ(countOf(dot, " -> "), 6) << dot;
  EXPECT_THAT(dot, AllOf(HasSubstr("  n0:p0 -> n1;\n"), HasSubstr("  n1:p0 -> n2 [color=red];\n"),
                         HasSubstr(":p1 -> n1 [color=red];\n")));
}

TEST(LvtextGraph, DrawsAListThatIsItsOwnElement) {
  lvVector const list(1);
  list->insert(list, -1);
  std::string const dot = dotGraph({list});
  list->clear();
  EXPECT_THAT(dot, HasSubstr("  n0:p0 -> n0 [color=red];\n"));
}

TEST(LvtextGraph, DrawsAValueWithoutABoxByItself) {
  EXPECT_THAT(dotGraph({lvToCell(5)}), HasSubstr("  atom [label=<5>];\n"));
}

TEST(LvtextGraph, LeavesOutWhatIsMoreThanAPictureCanShow) {
  lvListBuilder fitting;
  for (int i = 0; i < 4999; ++i) {
    fitting.add(i);
  }
  EXPECT_THAT(dotGraph({fitting.list()}), HasSubstr(">4998</TD>"));
  fitting.add(4999).add("beyond");
  std::string const dot = dotGraph({fitting.list()});
  EXPECT_THAT(dot, HasSubstr("No more than 5000 parts are drawn."));
  EXPECT_THAT(dot, Not(HasSubstr("beyond")));
}

TEST(LvtextGraph, CutsALongTextInFrontOfAByteThatIsWrittenWithPercent) {
  std::string const text = std::string(38, 'x') + ":::";
  EXPECT_THAT(dotGraph({lvToCell(text)}), HasSubstr("<\"" + std::string(38, 'x') + "...>"));
}

TEST(LvtextGraph, HasReplacementsForCharactersThatXmlLacks) {
  EXPECT_THAT(dotGraph({lvToCell("a\xEF\xBF\xBE\xEF\xBF\xBF\xEF\xBF\xBC\xFFz")}),
              HasSubstr("<\"a\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBC\xEF\xBF\xBDz\">"));
}

class OddlyNamed : public lvReferencable {
 public:
  lvString const& getClassDesc() const override { return name_; }

 private:
  lvString name_{"a\x01<b"};
};

TEST(LvtextGraph, NamesClassesAsTextDoes) {
  EXPECT_THAT(dotGraph({lvArg(*new OddlyNamed)}), HasSubstr("<B>empty *\"a%01&lt;b\"</B>"));
}

TEST(LvtextGraph, DrawsObjectsWithoutAClassAsEmptyBoxes) {
  lvArg const unknown(*new lvrCommonSerializer);
  EXPECT_THAT(dotGraph({unknown, lvListOf(unknown)}),
              AllOf(HasSubstr("<B>empty *CommonSerializer</B>"), HasSubstr("  n2:p0 -> n1;\n")));
}

}  // namespace
