// Says what is wrong with a text, as FILE:LINE:COLUMN: reason.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

#include "Progress.h"

class Problems {
 public:
  // What a report looks like.
  enum Style {
    Short,      // a line
    WithSource  // and the line of the text, with a caret below the place
  };

  // `name` is what the text is called in the reports, which go to `out` as they are made. `progress`
  // is out of their way.
  Problems(std::string name, std::string const& text, Progress& progress, std::FILE* out,
           Style style);

  // Reports a problem with the byte at `offset`, which may be the end of the text.
  void report(std::size_t offset, std::string const& reason);

  // "LINE:COLUMN" of the byte at `offset`, both counted from 1, the column in bytes.
  std::string place(std::size_t offset) const;

  bool any() const { return reported_; }

 private:
  std::size_t lineOf(std::size_t offset) const;
  void showSource(std::size_t offset) const;

  std::string name_;
  std::string const& text_;
  Progress& progress_;
  std::FILE* out_;
  Style style_;
  std::vector<std::size_t> lineStarts_;
  bool reported_ = false;
};
