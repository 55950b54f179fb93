#include <gmock/gmock.h>
#include <lvtext/Input.h>
#include <lvtext/Progress.h>
#include <lvtext/TextTree.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// What is written to a stream.
class Written {
 public:
  Written() : stream_(open_memstream(&text_, &size_)) {}
  Written(Written const&) = delete;
  Written& operator=(Written const&) = delete;
  ~Written() {
    std::fclose(stream_);
    std::free(text_);
  }

  std::FILE* stream() { return stream_; }
  std::string text() {
    std::fflush(stream_);
    return {text_, size_};
  }

 private:
  char* text_ = nullptr;
  std::size_t size_ = 0;
  std::FILE* stream_;
};

TEST(LvtextProgress, IsToldInStepsOfAHundredthAndWipedInTheEnd) {
  Written written;
  {
    Progress progress(written.stream(), 1000, true);
    for (std::size_t i = 0; i < 1000; ++i) {
      progress.reach(i);
    }
  }
  std::string const text = written.text();
  EXPECT_THAT(text, StartsWith("\rlvtext: 0 %\rlvtext: 1 %\rlvtext: 2 %"));
  EXPECT_THAT(text, EndsWith("\rlvtext: 99 %\r               \r"));
  EXPECT_LE(text.size(), 100 * std::string("\rlvtext: 99 %").size() + 17);
}

TEST(LvtextProgress, IsOutOfTheWayOfReports) {
  Written written;
  std::string const text = "0123456789";
  Progress progress(written.stream(), text.size(), true);
  Problems problems("name", text, progress, written.stream(), Problems::Short);
  progress.reach(5);
  problems.report(6, "reason");
  EXPECT_EQ(written.text(), "\rlvtext: 50 %\r               \rname:1:7: reason\n");
}

TEST(LvtextProgress, IsNotToldWhereNobodyLooks) {
  Written written;
  Progress progress(written.stream(), Progress::LongText + 1);
  progress.reach(0);
  progress.hide();
  EXPECT_EQ(written.text(), "");
}

}  // namespace
