#include "Problems.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include "Utf8.h"

namespace {

// How much of a long line is shown: bytes before the place, and in all.
constexpr std::size_t ShownBefore = 60;
constexpr std::size_t ShownInAll = 100;
constexpr char Cut[] = "...";

// What a byte of a line is shown as: nothing that moves a terminal's cursor.
char shownAs(char c) {
  return std::iscntrl(static_cast<unsigned char>(c)) != 0 && c != '\t' ? '?' : c;
}

}  // namespace

Problems::Problems(std::string name, std::string const& text, Progress& progress, std::FILE* out,
                   Style style)
    : name_(std::move(name)),
      text_(text),
      progress_(progress),
      out_(out),
      style_(style),
      lineStarts_{0} {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') {
      lineStarts_.push_back(i + 1);
    }
  }
}

void Problems::report(std::size_t offset, std::string const& reason) {
  reported_ = true;
  progress_.hide();
  std::fprintf(out_, "%s:%s: %s\n", name_.c_str(), place(offset).c_str(), reason.c_str());
  if (style_ == WithSource) {
    showSource(offset);
  }
}

// The number of the line, counted from 0.
std::size_t Problems::lineOf(std::size_t offset) const {
  auto const next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  return static_cast<std::size_t>(next - lineStarts_.begin()) - 1;
}

std::string Problems::place(std::size_t offset) const {
  std::size_t const line = lineOf(offset);
  return std::to_string(line + 1) + ":" + std::to_string(offset - lineStarts_[line] + 1);
}

void Problems::showSource(std::size_t offset) const {
  std::size_t const begin = lineStarts_[lineOf(offset)];
  std::size_t end = std::min(text_.find('\n', begin), text_.size());
  end -= end > begin && text_[end - 1] == '\r' ? 1 : 0;
  std::size_t from = offset - begin > ShownBefore ? offset - ShownBefore : begin;
  while (from < offset && isContinuation(text_[from])) {
    ++from;
  }
  std::size_t to = std::min(end, from + ShownInAll);
  while (to < end && isContinuation(text_[to])) {
    ++to;
  }

  std::string shown = from != begin ? Cut : "";
  std::string pad(shown.size(), ' ');
  for (std::size_t i = from; i < to; ++i) {
    shown += shownAs(text_[i]);
    if (i < offset && !isContinuation(text_[i])) {
      pad += text_[i] == '\t' ? '\t' : ' ';
    }
  }
  std::fprintf(out_, "%s%s\n%s^\n", shown.c_str(), to != end ? Cut : "", pad.c_str());
}
