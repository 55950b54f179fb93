// What the sink interface itself promises to those who derive from it.
#include <gtest/gtest.h>

#include <memory>

#include "support/Cells.h"
#include "tarselvalues/serial/lvArgDest.h"

namespace {

// The least that a sink has to bring along.
class Sink : public lvArgDest {
 public:
  explicit Sink(bool& destroyed) : destroyed_(destroyed) {}
  ~Sink() override { destroyed_ = true; }
  int terminate() override { return 0; }
  int enter(lvArg const& /*kind*/, int /*size*/) override { return 0; }
  int leave() override { return 0; }
  int abortLevel() override { return 0; }
  int sourceError(sourceError_t /*error*/) override { return 0; }
  int putArg(lvArg const& /*value*/) override { return 0; }

 private:
  bool& destroyed_;
};

TEST(ArgDestSetUp, SucceedsWhereASinkHasNone) {
  bool destroyed = false;
  Sink sink(destroyed);
  lvArgDest& base = sink;
  EXPECT_EQ(base.initOnce(), 0);
  EXPECT_EQ(base.init(), 0);
  EXPECT_EQ(base.cleanup(), 0);
  EXPECT_EQ(base.cleanupOnce(), 0);
}

TEST(ArgDestSetStringBuffer, LeavesTheBufferAloneWhereASinkHasNone) {
  bool destroyed = false;
  Sink sink(destroyed);
  char byte = 'x';
  static_cast<lvArgDest&>(sink).setStringBuffer(&byte, 1);
  EXPECT_EQ(byte, 'x');
}

TEST(ArgDestDestructor, IsThatOfTheDerivedSink) {
  bool destroyed = false;
  std::unique_ptr<lvArgDest> sink = std::make_unique<Sink>(destroyed);
  sink.reset();
  EXPECT_TRUE(destroyed);
}

TEST(ArgDestSourceError, HasTheNumbersThatProgramsRelyOn) {
  EXPECT_EQ(lvArgDest::SOURCE_ERROR_NOT_A_MAP, 1);
  EXPECT_EQ(lvArgDest::SOURCE_ERROR_NOT_A_VECTOR, 2);
  EXPECT_EQ(lvArgDest::SOURCE_ERROR_NO_CLASS, 4);
  EXPECT_EQ(lvArgDest::SOURCE_ERROR_FIELD_ACCESS, 5);
}

TEST(ArgDestFrameKind, HasTheNumbersThatProgramsRelyOn) {
  EXPECT_EQ(lvArgDest::MapFrame, 24);
  EXPECT_EQ(lvArgDest::VectorFrame, 25);
  EXPECT_EQ(lvArgDest::TupleFrame, 32);
}

}  // namespace
