// The order of the virtual functions of sinks and sources, which compiled programs rely on.
#include <gtest/gtest.h>

#include "support/Slots.h"
#include "tarselvalues/serial/lvtStringArgDest.h"
#include "tarselvalues/serial/lvtStringArgSource.h"

namespace {

using test::slotOf;

// The first two are the destructors.
template <class Sink>
void expectSlotsOfASink() {
  EXPECT_EQ(slotOf(&Sink::terminate), 3);
  EXPECT_EQ(slotOf(&Sink::enter), 4);
  EXPECT_EQ(slotOf(&Sink::leave), 5);
  EXPECT_EQ(slotOf(&Sink::abortLevel), 6);
  EXPECT_EQ(slotOf(&Sink::sourceError), 7);
  EXPECT_EQ(slotOf(&Sink::putArg), 8);
  EXPECT_EQ(slotOf(&Sink::setStringBuffer), 9);
  EXPECT_EQ(slotOf(&Sink::init), 10);
  EXPECT_EQ(slotOf(&Sink::initOnce), 11);
  EXPECT_EQ(slotOf(&Sink::cleanup), 12);
  EXPECT_EQ(slotOf(&Sink::cleanupOnce), 13);
}

template <class Source>
void expectSlotsOfASource() {
  EXPECT_EQ(slotOf(&Source::getArg), 3);
  EXPECT_EQ(slotOf(&Source::getNextToken), 4);
}

// A first function of a derived class takes the slot behind the last one.
class ExtendedWriter : public lvtStringArgDest {
 public:
  virtual void extra() {}
};

class ExtendedParser : public lvtStringArgSource {
 public:
  virtual void extra() {}
};

TEST(ArgDestSlots, StandInTheirOrder) { expectSlotsOfASink<lvArgDest>(); }

TEST(WriterSlots, AreThoseOfTheSink) { expectSlotsOfASink<lvtStringArgDest>(); }

TEST(WriterSlots, EndWithTheSinks) { EXPECT_EQ(slotOf(&ExtendedWriter::extra), 14); }

TEST(WriterSlots, LeaveOutTheOperationsOfTheBuffer) {
  EXPECT_EQ(slotOf(&lvtStringArgDest::outputInteger), test::NotVirtual);
  EXPECT_EQ(slotOf(&lvtStringArgDest::outputQuotedString), test::NotVirtual);
  EXPECT_EQ(slotOf(&lvtStringArgDest::pushMapStack), test::NotVirtual);
  EXPECT_EQ(slotOf(&lvtStringArgDest::peekMapStack), test::NotVirtual);
  EXPECT_EQ(slotOf(&lvtStringArgDest::popMapStack), test::NotVirtual);
  EXPECT_EQ(slotOf(&lvtStringArgDest::insertChar), test::NotVirtual);
  EXPECT_EQ(slotOf(&lvtStringArgDest::insertString), test::NotVirtual);
}

TEST(ArgSourceSlots, StandInTheirOrder) { expectSlotsOfASource<lvArgSource>(); }

TEST(ParserSlots, AreThoseOfTheSource) { expectSlotsOfASource<lvtStringArgSource>(); }

TEST(ParserSlots, EndWithTheSources) { EXPECT_EQ(slotOf(&ExtendedParser::extra), 5); }

}  // namespace
