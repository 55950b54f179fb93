// Levels of the text writer: brackets, separators, object names, size prefixes, and the stack
// behind them, where room is no matter.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/TextWriter.h"
#include "tarselvalues/containers/lvrHashMap.h"
#include "tarselvalues/containers/lvrVector.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::classNamed;
using test::integer;
using test::mapKind;
using test::TextWriter;
using test::tupleKind;
using test::vectorKind;

constexpr int MostLevels = 32;

// The text of one level opened in a fresh writer.
std::string opened(lvArg const& kind, int size = -1) {
  TextWriter writer;
  EXPECT_EQ(writer.enter(kind, size), 0);
  EXPECT_EQ(writer.depth(), 1U);
  return writer.text();
}

std::string openedWithSizes(lvArg const& kind, int size) {
  TextWriter writer;
  writer.setTransferSizes(true);
  EXPECT_EQ(writer.enter(kind, size), 0);
  return writer.text();
}

void enterTimes(lvtStringArgDest& writer, int times, lvArg const& kind) {
  for (int i = 0; i < times; ++i) {
    ASSERT_EQ(writer.enter(kind, -1), 0);
  }
}

// ---- Opening -----------------------------------------------------------------------------------

TEST(WriterEnter, OfATupleOpensAParenthesis) { EXPECT_EQ(opened(tupleKind), "("); }

TEST(WriterEnter, OfAMapOrAVectorOpensACurlyBracket) {
  EXPECT_EQ(opened(mapKind), "{");
  EXPECT_EQ(opened(vectorKind), "{");
}

TEST(WriterEnter, OfAnyOtherKindOpensACurlyBracket) {
  for (int const kind : {0, 31, 33, -32, INT_MIN}) {
    EXPECT_EQ(opened(integer(kind)), "{") << kind;
  }
  EXPECT_EQ(opened(lvArg()), "{");
  EXPECT_EQ(opened(test::string("32")), "{");
  EXPECT_EQ(opened(test::pointer(32)), "{");
}

TEST(WriterEnter, OfAContainerItselfOpensACurlyBracket) {
  test::Probe::Log log;
  EXPECT_EQ(opened(lvArg(*lvrHashMap::defaultCtorMethod())), "{");
  EXPECT_EQ(opened(lvArg(*lvrVector::defaultCtorMethod())), "{");
  EXPECT_EQ(opened(lvArg(*new test::Probe(log))), "{");
}

TEST(WriterEnter, IgnoresTheBitsThatBelongToContainers) {
  lvArg kind = tupleKind;
  test::setBookkeeping(kind, 0xFFFFFFE0U);
  EXPECT_EQ(opened(kind), "(");
}

TEST(WriterEnter, RecordsTheKindsOfLevels) {
  TextWriter writer;
  for (lvArg const& kind : {mapKind, tupleKind, vectorKind, lvArg(classNamed("C")), tupleKind}) {
    EXPECT_EQ(writer.enter(kind, -1), 0);
  }
  EXPECT_EQ(writer.levels(), (std::vector<bool>{false, true, false, false, true}));
}

TEST(WriterEnter, StoresTheKindOfLevelIInBitI) {
  TextWriter writer;
  for (lvArg const& kind : {mapKind, tupleKind, tupleKind, mapKind, tupleKind}) {
    writer.enter(kind, -1);
  }
  EXPECT_EQ(lvLayoutAccess<lvtStringArgDest>::levelKinds(writer) & 0x1FU, 0x16U);
}

TEST(WriterEnter, LeavesNoSeparatorPending) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.enter(vectorKind, -1);
  EXPECT_FALSE(writer.isSeparatorPending());
  writer.enter(classNamed("C"), -1);
  EXPECT_FALSE(writer.isSeparatorPending());
}

// ---- Objects -----------------------------------------------------------------------------------

TEST(WriterEnter, OfAClassWritesItsNameBeforeTheBracket) {
  EXPECT_EQ(opened(classNamed("Point")), "*Point{");
}

TEST(WriterEnter, QuotesAClassNameThatIsNoWord) {
  EXPECT_EQ(opened(classNamed("my class")), "*\"my class\"{");
  EXPECT_EQ(opened(classNamed("a::b")), "*\"a%3A%3Ab\"{");
  EXPECT_EQ(opened(classNamed("")), "*\"\"{");
}

TEST(WriterEnter, OfAClassWithoutNameWritesNilForIt) { EXPECT_EQ(opened(lvClass()), "*#nil{"); }

TEST(WriterEnter, OfAClassWhoseNameIsNoStringWritesItAsAScalar) {
  EXPECT_EQ(opened(lvClass(0, integer(-5), nullptr)), "*-5{");
}

TEST(WriterEnter, OfAClassCellWithoutClassWritesNilForTheName) {
  lvArg empty = classNamed("Gone");
  empty.releaseData();
  EXPECT_EQ(opened(empty), "*#nil{");
  test::Probe::Log log;
  lvArg other;
  other.setReferencableFast(*new test::Probe(log), lvArg::ClassType);
  EXPECT_EQ(opened(other), "*#nil{");
}

TEST(WriterEnter, PutsOneSeparatorBeforeAnObject) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.enter(classNamed("Point"), -1);
  EXPECT_EQ(writer.text(), "1,*Point{");
}

TEST(WriterEnter, LeavesTheCountOfAClassAlone) {
  lvClass const described = classNamed("Point");
  opened(described);
  EXPECT_EQ(test::countOf(described), 1);
}

// Answers every value with a failure and writes a mark for it.
class MarkingWriter : public TextWriter {
 public:
  int putArg(lvArg const& value) override {
    seen = test::textOf(value);
    wasSeparatorPending = isSeparatorPending();
    insertString("<>", 2);
    return -7;
  }

  std::string seen;
  bool wasSeparatorPending = true;
};

TEST(WriterEnter, WritesTheClassNameThroughTheVirtualPutArg) {
  MarkingWriter writer;
  EXPECT_EQ(writer.enter(classNamed("Point"), -1), 0);
  EXPECT_EQ(writer.seen, "Point");
  EXPECT_EQ(writer.text(), "*<>{");
}

TEST(WriterEnter, OmitsTheSeparatorBetweenTheStarAndTheName) {
  MarkingWriter writer;
  writer.insertChar('1');
  writer.enter(vectorKind, -1);
  writer.leave();
  writer.enter(classNamed("Point"), -1);
  EXPECT_FALSE(writer.wasSeparatorPending);
  EXPECT_EQ(writer.text(), "1{},*<>{");
}

// ---- Separators --------------------------------------------------------------------------------

TEST(WriterSeparator, IsMissingBeforeTheFirstElement) {
  TextWriter writer;
  writer.enter(vectorKind, -1);
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  EXPECT_EQ(writer.text(), "{(1");
}

TEST(WriterSeparator, IsACommaInCurlyLevels) {
  TextWriter writer;
  for (lvArg const& kind : {mapKind, vectorKind, lvArg(classNamed("C"))}) {
    writer.enter(kind, -1);
    writer.putArg(integer(1));
    writer.putArg(integer(2));
  }
  EXPECT_EQ(writer.text(), "{1,2,{1,2,*C{1,2");
}

TEST(WriterSeparator, IsAnEqualsSignInTuples) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  writer.putArg(integer(2));
  writer.putArg(integer(3));
  EXPECT_EQ(writer.text(), "(1=2=3");
}

TEST(WriterSeparator, BeforeALevelIsThatOfTheLevelAround) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  writer.enter(vectorKind, -1);
  writer.putArg(integer(2));
  writer.enter(tupleKind, -1);
  EXPECT_EQ(writer.text(), "(1={2,(");
}

TEST(WriterSeparator, BeforeAnObjectInATupleIsAnEqualsSign) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.putArg(test::string("k"));
  writer.enter(classNamed("Point"), -1);
  EXPECT_EQ(writer.text(), "(k=*Point{");
}

TEST(WriterSeparator, AfterALevelIsThatOfTheLevelAround) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.enter(vectorKind, -1);
  writer.leave();
  writer.putArg(integer(1));
  writer.leave();
  writer.putArg(integer(2));
  EXPECT_EQ(writer.text(), "({}=1),2");
}

TEST(WriterOmitSeparator, LeavesOutTheNextSeparatorOnly) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.omitSeparator();
  writer.putArg(integer(2));
  writer.putArg(integer(3));
  EXPECT_EQ(writer.text(), "12,3");
}

TEST(WriterOmitSeparator, LeavesItOutBeforeALevelToo) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.omitSeparator();
  writer.enter(tupleKind, -1);
  EXPECT_EQ(writer.text(), "1(");
}

TEST(WriterOmitSeparator, KeepsTheLevels) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  writer.omitSeparator();
  writer.putArg(integer(2));
  writer.putArg(integer(3));
  EXPECT_EQ(writer.text(), "(12=3");
}

TEST(WriterOmitSeparator, ChangesNoOtherSetting) {
  TextWriter writer;
  writer.setTransferSizes(true);
  writer.putArg(integer(1));
  writer.omitSeparator();
  EXPECT_EQ(writer.flags(), test::TransferSizesBit | test::BareWordsBit);
}

// ---- Sizes -------------------------------------------------------------------------------------

TEST(WriterTransferSizes, AreOffInANewWriter) {
  EXPECT_EQ(opened(vectorKind, 3), "{");
  EXPECT_EQ(opened(tupleKind, 2), "(");
}

TEST(WriterTransferSizes, AreWrittenBehindTheBracket) {
  EXPECT_EQ(openedWithSizes(vectorKind, 3), "{[3]");
  EXPECT_EQ(openedWithSizes(tupleKind, 2), "([2]");
  EXPECT_EQ(openedWithSizes(mapKind, 0), "{[0]");
  EXPECT_EQ(openedWithSizes(vectorKind, INT_MAX), "{[2147483647]");
}

TEST(WriterTransferSizes, AreLeftOutWhereTheSizeIsUnknown) {
  EXPECT_EQ(openedWithSizes(vectorKind, -1), "{");
  EXPECT_EQ(openedWithSizes(vectorKind, INT_MIN), "{");
}

TEST(WriterTransferSizes, AreFollowedByTheFirstElementDirectly) {
  TextWriter writer;
  writer.setTransferSizes(true);
  writer.enter(vectorKind, 2);
  writer.putArg(integer(5));
  writer.putArg(integer(6));
  EXPECT_EQ(writer.text(), "{[2]5,6");
}

TEST(WriterTransferSizes, OfAnObjectWithAKnownSizeFollowItsBracket) {
  EXPECT_EQ(openedWithSizes(classNamed("Point"), 2), "*Point{[2]");
  EXPECT_EQ(openedWithSizes(classNamed("Point"), -1), "*Point{");
}

TEST(WriterTransferSizes, CanBeTurnedOffAgain) {
  TextWriter writer;
  writer.setTransferSizes(true);
  writer.setTransferSizes(false);
  writer.enter(vectorKind, 3);
  EXPECT_EQ(writer.text(), "{");
}

TEST(WriterTransferSizes, ChangeNoOtherSetting) {
  TextWriter writer;
  writer.putArg(integer(1));
  unsigned const before = writer.flags();
  writer.setTransferSizes(true);
  EXPECT_EQ(writer.flags(), before | test::TransferSizesBit);
  writer.setTransferSizes(false);
  EXPECT_EQ(writer.flags(), before);
}

// ---- Closing -----------------------------------------------------------------------------------

TEST(WriterLeave, WritesTheBracketThatClosesTheInnermostLevel) {
  TextWriter writer;
  for (lvArg const& kind : {mapKind, tupleKind, vectorKind, tupleKind, lvArg(classNamed("C"))}) {
    writer.enter(kind, -1);
  }
  for (unsigned depth = 5; depth > 0; --depth) {
    EXPECT_EQ(writer.depth(), depth);
    EXPECT_EQ(writer.leave(), 0);
  }
  EXPECT_EQ(writer.text(), "{({(*C{})})}");
}

TEST(WriterLeave, LeavesASeparatorPending) {
  TextWriter writer;
  writer.enter(vectorKind, -1);
  writer.leave();
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST(WriterAbortLevel, ClosesTheLevelAsLeaveDoes) {
  TextWriter writer;
  writer.enter(vectorKind, -1);
  writer.enter(tupleKind, -1);
  EXPECT_EQ(writer.abortLevel(), 0);
  EXPECT_EQ(writer.abortLevel(), 0);
  EXPECT_EQ(writer.text(), "{()}");
  EXPECT_EQ(writer.depth(), 0U);
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST(WriterAbortLevel, KeepsTheElementsWrittenSoFar) {
  TextWriter writer;
  writer.enter(vectorKind, -1);
  writer.putArg(integer(1));
  writer.putArg(integer(2));
  writer.abortLevel();
  EXPECT_EQ(writer.text(), "{1,2}");
}

// Counts its leaves and writes nothing.
class RefusingWriter : public TextWriter {
 public:
  int leave() override {
    ++leaves;
    return -5;
  }

  int leaves = 0;
};

TEST(WriterAbortLevel, CallsALeaveThatADerivedWriterReplaced) {
  RefusingWriter writer;
  writer.enter(vectorKind, -1);
  EXPECT_EQ(writer.abortLevel(), 0);
  EXPECT_EQ(writer.leaves, 1);
  EXPECT_EQ(writer.text(), "{");
  EXPECT_EQ(writer.depth(), 1U);
}

// ---- The stack ---------------------------------------------------------------------------------

TEST(WriterMapStack, AnswersTheKindOfTheInnermostLevel) {
  TextWriter writer;
  EXPECT_EQ(writer.pushMapStack(true), 0);
  EXPECT_TRUE(writer.peekMapStack());
  EXPECT_EQ(writer.pushMapStack(false), 0);
  EXPECT_FALSE(writer.peekMapStack());
  EXPECT_FALSE(writer.popMapStack());
  EXPECT_TRUE(writer.peekMapStack());
  EXPECT_TRUE(writer.popMapStack());
  EXPECT_EQ(writer.depth(), 0U);
}

TEST(WriterMapStack, PeekChangesNothing) {
  TextWriter writer;
  writer.pushMapStack(true);
  EXPECT_TRUE(writer.peekMapStack());
  EXPECT_TRUE(writer.peekMapStack());
  EXPECT_EQ(writer.depth(), 1U);
}

TEST(WriterMapStack, AnswersFalseWhenNoLevelIsOpen) {
  TextWriter writer;
  writer.pushMapStack(true);
  writer.popMapStack();
  EXPECT_FALSE(writer.peekMapStack());
  EXPECT_FALSE(writer.popMapStack());
}

TEST(WriterMapStack, StaysEmptyWhenPoppedEmpty) {
  TextWriter writer;
  writer.popMapStack();
  EXPECT_EQ(writer.depth(), 0U);
  writer.pushMapStack(true);
  EXPECT_EQ(writer.levels(), std::vector<bool>{true});
}

TEST(WriterMapStack, ForgetsTheKindOfALevelThatWasThereBefore) {
  TextWriter writer;
  writer.pushMapStack(true);
  writer.popMapStack();
  writer.pushMapStack(false);
  EXPECT_FALSE(writer.peekMapStack());
}

TEST(WriterMapStack, HoldsThirtyTwoLevels) {
  TextWriter writer;
  for (int i = 0; i < MostLevels; ++i) {
    EXPECT_EQ(writer.pushMapStack(i % 3 == 0), 0);
  }
  EXPECT_EQ(writer.pushMapStack(true), -1);
  EXPECT_EQ(writer.depth(), 32U);
  for (int i = MostLevels - 1; i >= 0; --i) {
    EXPECT_EQ(writer.popMapStack(), i % 3 == 0) << i;
  }
}

TEST(WriterMapStack, AnswersFalseWhenEmptyAfterAsManyTuplesAsItHolds) {
  TextWriter writer;
  for (int i = 0; i < MostLevels; ++i) {
    writer.pushMapStack(true);
  }
  for (int i = 0; i < MostLevels; ++i) {
    writer.popMapStack();
  }
  EXPECT_FALSE(writer.peekMapStack());
}

TEST(WriterMapStack, WritesNothing) {
  TextWriter writer;
  writer.pushMapStack(true);
  writer.popMapStack();
  EXPECT_EQ(writer.text(), "");
  EXPECT_TRUE(writer.isRestUntouched());
}

TEST(WriterEnter, NestsThirtyTwoLevels) {
  TextWriter writer;
  enterTimes(writer, MostLevels, tupleKind);
  EXPECT_EQ(writer.text(), std::string(MostLevels, '('));
  EXPECT_EQ(writer.levels(), std::vector<bool>(MostLevels, true));
  for (int i = 0; i < MostLevels; ++i) {
    EXPECT_EQ(writer.leave(), 0);
  }
  EXPECT_EQ(writer.text(), std::string(MostLevels, '(') + std::string(MostLevels, ')'));
}

class WriterThirtyThirdLevel : public testing::Test {
 protected:
  void SetUp() override { enterTimes(writer, MostLevels, tupleKind); }

  std::string textBehindTheBrackets() const { return writer.text().substr(MostLevels); }

  TextWriter writer;
};

TEST_F(WriterThirtyThirdLevel, IsRefused) {
  EXPECT_EQ(writer.enter(vectorKind, -1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.enter(vectorKind, 3), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.depth(), 32U);
}

TEST_F(WriterThirtyThirdLevel, LeavesNothingBehindAsAFirstElementButAPendingSeparator) {
  EXPECT_EQ(writer.enter(vectorKind, -1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(textBehindTheBrackets(), "");
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST_F(WriterThirtyThirdLevel, LeavesItsSeparatorBehind) {
  writer.putArg(integer(1));
  EXPECT_EQ(writer.enter(vectorKind, -1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(textBehindTheBrackets(), "1=");
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST_F(WriterThirtyThirdLevel, LeavesTheNameOfItsObjectBehind) {
  writer.putArg(integer(1));
  EXPECT_EQ(writer.enter(classNamed("Point"), -1), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(textBehindTheBrackets(), "1=*Point");
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST_F(WriterThirtyThirdLevel, FitsOnceAnotherOneIsClosed) {
  EXPECT_EQ(writer.leave(), 0);
  EXPECT_EQ(writer.enter(vectorKind, -1), 0);
  EXPECT_EQ(textBehindTheBrackets(), ")={");
}

}  // namespace
