// Says on a terminal how much of a long text has been read.
#pragma once

#include <cstddef>
#include <cstdio>

class Progress {
 public:
  // Texts up to this many bytes are read before anybody asks.
  static constexpr std::size_t LongText = 10'000'000;

  // For a text of `total` bytes; says nothing unless `out` is a terminal and the text is long.
  Progress(std::FILE* out, std::size_t total);
  // The same, but the caller decides.
  Progress(std::FILE* out, std::size_t total, bool shown);
  ~Progress() { hide(); }
  Progress(Progress const&) = delete;
  Progress& operator=(Progress const&) = delete;

  // Reading has come to the byte at `offset`. Cheap where nothing is to be said.
  void reach(std::size_t offset) {
    if (shown_ && offset >= nextOffset_) {
      show(offset);
    }
  }
  // Wipes the line, so that others can write there.
  void hide();

 private:
  void show(std::size_t offset);

  std::FILE* out_;
  std::size_t total_;
  std::size_t nextOffset_ = 0;
  bool shown_;
  bool visible_ = false;
};
