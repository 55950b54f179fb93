#include "Progress.h"

#include <unistd.h>

Progress::Progress(std::FILE* out, std::size_t total)
    : Progress(out, total, total > LongText && isatty(fileno(out)) != 0) {}

Progress::Progress(std::FILE* out, std::size_t total, bool shown)
    : out_(out), total_(total), shown_(shown && total > 0) {}

void Progress::show(std::size_t offset) {
  std::size_t const step = total_ / 100 + 1;
  nextOffset_ = offset + step;
  visible_ = true;
  std::fprintf(out_, "\rlvtext: %d %%",
               static_cast<int>(100.0 * static_cast<double>(offset) / static_cast<double>(total_)));
  std::fflush(out_);
}

void Progress::hide() {
  if (visible_) {
    visible_ = false;
    std::fputs("\r               \r", out_);
    std::fflush(out_);
  }
}
