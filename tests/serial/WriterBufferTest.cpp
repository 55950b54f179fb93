// The text writer's buffer: where it comes from, who frees it, what starts a text anew, and the
// operations that move bytes in and out of it.
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "support/Cells.h"
#include "support/TextWriter.h"

namespace {

using test::capacityOf;
using test::depthOf;
using test::flagsOf;
using test::integer;
using test::textOf;
using test::TextWriter;
using test::tupleKind;
using test::vectorKind;

// ---- Making ------------------------------------------------------------------------------------

TEST(WriterConstructor, AdoptsTheCallersBuffer) {
  char buffer[20];
  lvtStringArgDest const writer(buffer, sizeof(buffer));
  EXPECT_EQ(writer.getStringData(), buffer);
  EXPECT_EQ(capacityOf(writer), 20);
  EXPECT_EQ(writer.getStringLength(), 0);
  EXPECT_EQ(depthOf(writer), 0U);
}

TEST(WriterConstructor, AllowsBareWordsAndNothingElse) {
  char buffer[20];
  EXPECT_EQ(flagsOf(lvtStringArgDest(buffer, 20)), test::BareWordsBit);
  EXPECT_EQ(flagsOf(lvtStringArgDest()), test::BareWordsBit);
}

TEST(WriterConstructor, MakesABufferForANullOne) {
  lvtStringArgDest writer(nullptr, 20);
  ASSERT_NE(writer.getStringData(), nullptr);
  EXPECT_EQ(capacityOf(writer), 20);
  EXPECT_EQ(flagsOf(writer), test::OwnsBufferBit | test::BareWordsBit);
  EXPECT_EQ(writer.insertString(std::string(19, 'x').c_str(), -1), 0);
  EXPECT_EQ(writer.insertChar('y'), 0);
  EXPECT_EQ(textOf(writer), std::string(19, 'x') + 'y');
}

TEST(WriterConstructor, WithoutBufferAwaitsOne) {
  lvtStringArgDest writer;
  EXPECT_EQ(depthOf(writer), 0U);
  char buffer[8];
  writer.setStringBuffer(buffer, sizeof(buffer));
  EXPECT_EQ(writer.putArg(integer(1)), 0);
  EXPECT_EQ(textOf(writer), "1");
}

TEST(WriterDestructor, LeavesTheCallersBufferAlone) {
  char buffer[8];
  { lvtStringArgDest(buffer, 8).putArg(test::string("abc")); }
  EXPECT_EQ(std::string(buffer, 3), "abc");
}

// ---- setStringBuffer ---------------------------------------------------------------------------

TEST(WriterSetStringBuffer, StartsANewText) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.enter(tupleKind, -1);
  writer.putArg(integer(2));
  char other[10];
  writer.setStringBuffer(other, sizeof(other));
  EXPECT_EQ(writer.getStringData(), other);
  EXPECT_EQ(writer.getStringLength(), 0);
  EXPECT_EQ(capacityOf(writer), 10);
  EXPECT_EQ(depthOf(writer), 0U);
  EXPECT_EQ(flagsOf(writer), test::BareWordsBit);
}

TEST(WriterSetStringBuffer, KeepsTheSettings) {
  TextWriter writer;
  writer.setTransferSizes(true);
  char other[40];
  writer.setStringBuffer(other, sizeof(other));
  EXPECT_EQ(writer.enter(vectorKind, 2), 0);
  EXPECT_EQ(textOf(writer), "{[2]");
}

TEST(WriterSetStringBuffer, LeavesTheBytesOfTheOldAndTheNewBufferAlone) {
  char first[4] = {'a', 'b', 'c', 'd'};
  char second[4] = {'e', 'f', 'g', 'h'};
  lvtStringArgDest writer(first, 4);
  writer.setStringBuffer(second, 4);
  EXPECT_EQ(std::string(first, 4), "abcd");
  EXPECT_EQ(std::string(second, 4), "efgh");
}

TEST(WriterSetStringBuffer, OfTheBufferInUseRestartsInIt) {
  char buffer[10];
  lvtStringArgDest writer(buffer, 10);
  writer.putArg(integer(12345));
  writer.setStringBuffer(buffer, 5);
  EXPECT_EQ(writer.getStringData(), buffer);
  EXPECT_EQ(capacityOf(writer), 5);
  EXPECT_EQ(writer.getStringLength(), 0);
  EXPECT_EQ(flagsOf(writer), test::BareWordsBit);
}

TEST(WriterSetStringBuffer, OfNullMakesABuffer) {
  TextWriter writer;
  writer.setStringBuffer(nullptr, 6);
  EXPECT_FALSE(writer.holdsItsBlock());
  EXPECT_EQ(capacityOf(writer), 6);
  EXPECT_EQ(flagsOf(writer), test::OwnsBufferBit | test::BareWordsBit);
  EXPECT_EQ(writer.insertString("12345", 5), 0);
  EXPECT_EQ(writer.terminate(), 0);
  EXPECT_STREQ(writer.getStringData(), "12345");
}

TEST(WriterSetStringBuffer, OfACallersBufferEndsTheOwningOfAnother) {
  lvtStringArgDest writer(nullptr, 6);
  char buffer[10];
  writer.setStringBuffer(buffer, sizeof(buffer));
  EXPECT_EQ(flagsOf(writer), test::BareWordsBit);
  EXPECT_EQ(writer.getStringData(), buffer);
}

TEST(WriterSetStringBuffer, OfItsOwnBufferMakesAnotherThatItOwns) {
  lvtStringArgDest writer(nullptr, 10);
  writer.putArg(integer(12345));
  writer.setStringBuffer(const_cast<char*>(writer.getStringData()), 30);
  EXPECT_EQ(flagsOf(writer), test::OwnsBufferBit | test::BareWordsBit);
  EXPECT_EQ(capacityOf(writer), 30);
  EXPECT_EQ(writer.getStringLength(), 0);
  EXPECT_EQ(writer.insertString(std::string(29, 'x').c_str(), 29), 0);
}

// Notes the calls of its set-up operations.
class NotingWriter : public lvtStringArgDest {
 public:
  explicit NotingWriter(std::vector<std::string>& notes) : notes_(notes) {}
  int init() override {
    notes_.push_back("init");
    return lvtStringArgDest::init();
  }
  int initOnce() override {
    notes_.push_back("initOnce");
    return lvtStringArgDest::initOnce();
  }
  int cleanup() override {
    notes_.push_back("cleanup");
    return lvtStringArgDest::cleanup();
  }
  int cleanupOnce() override {
    notes_.push_back("cleanupOnce");
    return lvtStringArgDest::cleanupOnce();
  }

 private:
  std::vector<std::string>& notes_;
};

TEST(WriterSetStringBuffer, CleansUpAndInitsThroughTheVirtualFunctions) {
  std::vector<std::string> notes;
  NotingWriter writer(notes);
  char buffer[10];
  writer.setStringBuffer(buffer, sizeof(buffer));
  EXPECT_EQ(notes, (std::vector<std::string>{"cleanup", "init"}));
}

TEST(WriterConstructor, CallsNoFunctionOfADerivedWriter) {
  std::vector<std::string> notes;
  NotingWriter const writer(notes);
  EXPECT_EQ(notes, std::vector<std::string>{});
}

TEST(WriterDestructor, CallsNoFunctionOfADerivedWriter) {
  std::vector<std::string> notes;
  {
    NotingWriter writer(notes);
    writer.setStringBuffer(nullptr, 10);
    notes.clear();
  }
  EXPECT_EQ(notes, std::vector<std::string>{});
}

// ---- init, initOnce, cleanup, cleanupOnce ------------------------------------------------------

TEST(WriterInit, RestartsLevelsAndSeparatorsButKeepsTheText) {
  TextWriter writer;
  writer.setTransferSizes(true);
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  EXPECT_EQ(writer.init(), 0);
  EXPECT_EQ(writer.depth(), 0U);
  EXPECT_EQ(writer.flags(), test::TransferSizesBit | test::BareWordsBit);
  EXPECT_EQ(writer.text(), "(1");
}

TEST(WriterInit, LetsTheTextGoOnAsATopLevel) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  writer.init();
  writer.putArg(integer(2));
  writer.putArg(integer(3));
  EXPECT_EQ(writer.text(), "(12,3");
}

TEST(WriterInitOnce, TurnsSizesOffAndBareWordsOn) {
  TextWriter writer;
  lvLayoutAccess<lvtStringArgDest>::setFlags(writer,
                                             test::TransferSizesBit | test::SeparatorPendingBit);
  EXPECT_EQ(writer.initOnce(), 0);
  EXPECT_EQ(writer.flags(), test::SeparatorPendingBit | test::BareWordsBit);
}

TEST(WriterInitOnce, KeepsTextAndLevels) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.initOnce();
  EXPECT_EQ(writer.text(), "(");
  EXPECT_EQ(writer.levels(), std::vector<bool>{true});
}

TEST(WriterInitOnce, HandsAnOwnedBufferToTheCaller) {
  lvtStringArgDest writer(nullptr, 10);
  std::unique_ptr<char const[]> const taken(writer.getStringData());
  EXPECT_EQ(writer.initOnce(), 0);
  EXPECT_EQ(flagsOf(writer), test::BareWordsBit);
  EXPECT_EQ(writer.getStringData(), taken.get());
}

TEST(WriterCleanup, DropsAnOwnedBuffer) {
  lvtStringArgDest writer(nullptr, 10);
  writer.putArg(integer(1));
  EXPECT_EQ(writer.cleanup(), 0);
  EXPECT_EQ(writer.getStringData(), nullptr);
  EXPECT_EQ(writer.getStringLength(), 0);
  EXPECT_EQ(flagsOf(writer), test::SeparatorPendingBit | test::BareWordsBit);
}

TEST(WriterCleanup, LeavesNoRoomWhereTheOwnedBufferWas) {
  lvtStringArgDest writer(nullptr, 10);
  writer.cleanup();
  EXPECT_EQ(writer.putArg(integer(1)), lvtStringArgDest::ROOM_ERROR);
  EXPECT_EQ(writer.insertChar('x'), -1);
  EXPECT_EQ(writer.setStringOffset(0), -1);
  EXPECT_EQ(writer.terminate(), 0);
}

TEST(WriterCleanup, OfACallersBufferChangesNothing) {
  TextWriter writer;
  writer.putArg(integer(1));
  EXPECT_EQ(writer.cleanup(), 0);
  EXPECT_TRUE(writer.holdsItsBlock());
  EXPECT_EQ(writer.text(), "1");
}

TEST(WriterCleanup, MayBeRepeated) {
  lvtStringArgDest writer(nullptr, 10);
  EXPECT_EQ(writer.cleanup(), 0);
  EXPECT_EQ(writer.cleanup(), 0);
  writer.setStringBuffer(nullptr, 10);
  EXPECT_EQ(writer.putArg(integer(1)), 0);
}

TEST(WriterCleanupOnce, ChangesNothing) {
  lvtStringArgDest writer(nullptr, 10);
  writer.enter(tupleKind, -1);
  EXPECT_EQ(writer.cleanupOnce(), 0);
  EXPECT_EQ(textOf(writer), "(");
  EXPECT_EQ(depthOf(writer), 1U);
  EXPECT_EQ(flagsOf(writer), test::OwnsBufferBit | test::BareWordsBit);
}

// ---- terminate and setStringOffset -------------------------------------------------------------

TEST(WriterTerminate, StoresANulBehindTheText) {
  TextWriter writer(5);
  writer.insertString("ab", 2);
  EXPECT_EQ(writer.terminate(), 0);
  EXPECT_EQ(writer.rest(), std::string({'\0', test::Untouched, test::Untouched}));
  EXPECT_EQ(writer.getStringLength(), 2);
}

TEST(WriterTerminate, LetsTheTextGoOn) {
  TextWriter writer;
  writer.putArg(integer(1));
  writer.terminate();
  writer.putArg(integer(2));
  EXPECT_EQ(writer.text(), "1,2");
}

TEST(WriterTerminate, FindsTheLastByteKeptFree) {
  TextWriter writer(4);
  writer.putArg(integer(123));
  EXPECT_EQ(writer.terminate(), 0);
  EXPECT_EQ(writer.block(), std::string("123\0", 4));
}

TEST(WriterTerminate, OfAnEmptyTextMakesTheEmptyString) {
  TextWriter writer(1);
  EXPECT_EQ(writer.terminate(), 0);
  EXPECT_EQ(writer.block(), std::string("\0", 1));
}

TEST(WriterSetStringOffset, Rewinds) {
  TextWriter writer;
  writer.insertString("abcdef", -1);
  EXPECT_EQ(writer.setStringOffset(2), 0);
  EXPECT_EQ(writer.text(), "ab");
  writer.insertChar('X');
  EXPECT_EQ(writer.block().substr(0, 6), "abXdef");
}

TEST(WriterSetStringOffset, SkipsBytesAndLeavesThemAlone) {
  TextWriter writer(8);
  EXPECT_EQ(writer.setStringOffset(3), 0);
  writer.insertChar('X');
  EXPECT_EQ(writer.text(), std::string(3, test::Untouched) + 'X');
}

TEST(WriterSetStringOffset, AcceptsOffsetsBelowTheCapacityOnly) {
  TextWriter writer(8);
  EXPECT_EQ(writer.setStringOffset(7), 0);
  EXPECT_EQ(writer.getStringLength(), 7);
  for (int const offset : {8, 9, INT_MAX}) {
    EXPECT_EQ(writer.setStringOffset(offset), -1);
    EXPECT_EQ(writer.getStringLength(), 7);
  }
}

TEST(WriterSetStringOffset, RefusesNegativeOffsets) {
  TextWriter writer(8);
  writer.insertString("ab", 2);
  EXPECT_EQ(writer.setStringOffset(-1), -1);
  EXPECT_EQ(writer.setStringOffset(INT_MIN), -1);
  EXPECT_EQ(writer.getStringLength(), 2);
}

TEST(WriterSetStringOffset, KeepsLevelsAndSeparator) {
  TextWriter writer;
  writer.enter(tupleKind, -1);
  writer.putArg(integer(1));
  writer.setStringOffset(0);
  writer.putArg(integer(2));
  EXPECT_EQ(writer.text(), "=2");
  EXPECT_EQ(writer.depth(), 1U);
}

// ---- insertChar and insertString ---------------------------------------------------------------

TEST(WriterInsertChar, AppendsTheByteAsItStands) {
  TextWriter writer;
  for (int const c : {int{'a'}, 0, 255, int{'"'}, int{':'}}) {
    EXPECT_EQ(writer.insertChar(c), 0);
  }
  EXPECT_EQ(writer.text(), std::string("a\0\xFF\":", 5));
}

TEST(WriterInsertChar, TakesTheLowEightBits) {
  TextWriter writer;
  EXPECT_EQ(writer.insertChar(0x141), 0);
  EXPECT_EQ(writer.insertChar(-1), 0);
  EXPECT_EQ(writer.text(), "A\xFF");
}

TEST(WriterInsertChar, NeitherWritesNorChangesTheSeparator) {
  TextWriter writer;
  writer.insertChar('x');
  EXPECT_FALSE(writer.isSeparatorPending());
  writer.putArg(integer(1));
  writer.insertChar('y');
  EXPECT_TRUE(writer.isSeparatorPending());
  EXPECT_EQ(writer.text(), "x1y");
}

TEST(WriterInsertChar, MayFillTheLastByteAndNoMore) {
  TextWriter writer(2);
  EXPECT_EQ(writer.insertChar('a'), 0);
  EXPECT_EQ(writer.insertChar('b'), 0);
  EXPECT_EQ(writer.insertChar('c'), -1);
  EXPECT_EQ(writer.block(), "ab");
  EXPECT_EQ(writer.getStringLength(), 2);
}

TEST(WriterInsertString, AppendsTheBytesAsTheyStand) {
  TextWriter writer;
  writer.putArg(integer(1));
  EXPECT_EQ(writer.insertString("a b:\"%\n\xFF", -1), 0);
  EXPECT_EQ(writer.text(), "1a b:\"%\n\xFF");
  EXPECT_TRUE(writer.isSeparatorPending());
}

TEST(WriterInsertString, NeitherWritesNorLeavesASeparator) {
  TextWriter writer;
  writer.insertString("x", -1);
  writer.putArg(integer(1));
  EXPECT_EQ(writer.text(), "x1");
}

TEST(WriterInsertString, OfACountTakesSoManyBytesNulsIncluded) {
  TextWriter writer;
  EXPECT_EQ(writer.insertString("abc", 2), 0);
  EXPECT_EQ(writer.insertString("\0x\0", 3), 0);
  EXPECT_EQ(writer.text(), std::string("ab\0x\0", 5));
}

TEST(WriterInsertString, OfAnyNegativeCountMeasures) {
  TextWriter writer;
  EXPECT_EQ(writer.insertString("abc", -1), 0);
  EXPECT_EQ(writer.insertString("def", INT_MIN), 0);
  EXPECT_EQ(writer.text(), "abcdef");
}

TEST(WriterInsertString, LeavesTheLastByteFree) {
  TextWriter writer(4);
  EXPECT_EQ(writer.insertString("abcd", -1), -1);
  EXPECT_EQ(writer.text(), "");
  EXPECT_TRUE(writer.isRestUntouched());
  EXPECT_EQ(writer.insertString("abc", -1), 0);
  EXPECT_EQ(writer.insertString("d", 1), -1);
  EXPECT_EQ(writer.text(), "abc");
}

TEST(WriterInsertString, OfNoBytesNeedsAFreeByteAllTheSame) {
  TextWriter writer(2);
  writer.insertChar('a');
  EXPECT_EQ(writer.insertString("", -1), 0);
  EXPECT_EQ(writer.insertString("x", 0), 0);
  writer.insertChar('b');
  EXPECT_EQ(writer.insertString("", -1), -1);
  EXPECT_EQ(writer.insertString("x", 0), -1);
}

TEST(WriterInsertString, OfAHugeCountIsRefused) {
  TextWriter writer(8);
  writer.insertString("abc", 3);
  EXPECT_EQ(writer.insertString("x", INT_MAX), -1);
  EXPECT_EQ(writer.text(), "abc");
}

TEST(WriterInsertString, OfNullCountsAsEmpty) {
  TextWriter writer(2);
  EXPECT_EQ(writer.insertString(nullptr, -1), 0);
  EXPECT_EQ(writer.insertString(nullptr, 5), 0);
  EXPECT_EQ(writer.text(), "");
  writer.setStringOffset(1);
  writer.insertChar('x');
  EXPECT_EQ(writer.insertString(nullptr, -1), -1);
}

}  // namespace
