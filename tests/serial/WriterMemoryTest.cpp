// What the text writer allocates and frees.
#include <gtest/gtest.h>

#include <new>
#include <string>

#include "support/Allocations.h"
#include "support/Cells.h"
#include "support/TextWriter.h"
#include "tarselvalues/reflect/lvClass.h"

namespace {

using test::Allocations;
using test::integer;
using test::textOf;

Allocations& allocations() { return Allocations::instance(); }

TEST(WriterMemory, IsNotAllocatedForACallersBuffer) {
  char buffer[50];
  Allocations::reset();
  {
    lvtStringArgDest writer(buffer, sizeof(buffer));
    writer.setStringBuffer(buffer, 20);
  }
  EXPECT_EQ(allocations().made, 0);
  EXPECT_EQ(allocations().freed, 0);
}

TEST(WriterMemory, OfAnOwnedBufferIsItsSize) {
  Allocations::reset();
  lvtStringArgDest const writer(nullptr, 4090);
  EXPECT_EQ(allocations().made, 1);
  EXPECT_EQ(allocations().lastSize, 4090U);
}

TEST(WriterMemory, OfAnOwnedBufferIsFreedByTheDestructor) {
  Allocations::reset();
  { lvtStringArgDest const writer(nullptr, 100); }
  EXPECT_EQ(allocations().made, 1);
  EXPECT_EQ(allocations().alive(), 0);
}

TEST(WriterMemory, OfAnOwnedBufferIsFreedByCleanup) {
  lvtStringArgDest writer(nullptr, 100);
  Allocations::reset();
  writer.cleanup();
  EXPECT_EQ(allocations().freed, 1);
  writer.cleanup();
  EXPECT_EQ(allocations().freed, 1);
}

TEST(WriterMemory, OfAnOwnedBufferIsFreedWhenAnotherComes) {
  char buffer[50];
  Allocations::reset();
  lvtStringArgDest writer(nullptr, 100);
  writer.setStringBuffer(nullptr, 200);
  EXPECT_EQ(allocations().made, 2);
  EXPECT_EQ(allocations().alive(), 1);
  writer.setStringBuffer(buffer, sizeof(buffer));
  EXPECT_EQ(allocations().alive(), 0);
}

TEST(WriterMemory, OfAnOwnedBufferThatIsGivenBackIsFreedOnce) {
  Allocations::reset();
  {
    lvtStringArgDest writer(nullptr, 100);
    writer.setStringBuffer(const_cast<char*>(writer.getStringData()), 100);
    EXPECT_EQ(allocations().alive(), 1);
  }
  EXPECT_EQ(allocations().alive(), 0);
}

// Frees nothing in its own cleanup().
class KeepingWriter : public lvtStringArgDest {
 public:
  int cleanup() override { return 0; }
};

TEST(WriterMemory, OfAnOwnedBufferIsFreedByTheDestructorWhateverADerivedCleanupDoes) {
  Allocations::reset();
  {
    KeepingWriter writer;
    writer.setStringBuffer(nullptr, 100);
  }
  EXPECT_EQ(allocations().made, 1);
  EXPECT_EQ(allocations().alive(), 0);
}

TEST(WriterMemory, IsNotAllocatedWhileWriting) {
  test::TextWriter writer;
  lvArg const values[] = {integer(-12), lvArg(), test::string("word"),
                          test::string(std::string(200, ':'))};
  lvClass const described = test::classNamed("my class");
  writer.setTransferSizes(true);
  Allocations::reset();
  writer.enter(described, 3);
  for (lvArg const& value : values) {
    writer.putArg(value);
  }
  writer.insertString("text", -1);
  writer.abortLevel();
  writer.terminate();
  int const made = allocations().made;
  EXPECT_EQ(made, 0);
  EXPECT_GT(writer.getStringLength(), 600);
}

TEST(WriterMemory, ThatIsMissingLeavesTheOldTextAsItWas) {
  lvtStringArgDest writer(nullptr, 100);
  writer.enter(test::tupleKind, -1);
  writer.putArg(integer(1));
  Allocations::reset();
  allocations().failAfter = 0;
  bool thrown = false;
  try {
    writer.setStringBuffer(nullptr, 200);
  } catch (std::bad_alloc const&) {
    thrown = true;
  }
  allocations().failAfter = -1;
  EXPECT_TRUE(thrown);
  EXPECT_EQ(textOf(writer), "(1");
  EXPECT_EQ(test::capacityOf(writer), 100);
  EXPECT_EQ(test::depthOf(writer), 1U);
  EXPECT_EQ(writer.putArg(integer(2)), 0);
  EXPECT_EQ(textOf(writer), "(1=2");
}

TEST(WriterMemory, ThatIsMissingForANewWriterIsReportedAndNothingStaysBehind) {
  Allocations::reset();
  allocations().failAfter = 0;
  bool thrown = false;
  try {
    lvtStringArgDest const writer(nullptr, 200);
  } catch (std::bad_alloc const&) {
    thrown = true;
  }
  allocations().failAfter = -1;
  EXPECT_TRUE(thrown);
  EXPECT_EQ(allocations().alive(), 0);
}

}  // namespace
