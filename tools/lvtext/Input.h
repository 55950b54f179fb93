// A text that is read, with all that accompanies its reading.
#pragma once

#include <cstdio>
#include <string>
#include <utility>

#include "Files.h"
#include "Problems.h"
#include "Progress.h"

struct Input {
  // A text that is called `name` in reports, which go to `out`.
  Input(std::string const& name, std::string content, std::FILE* out = stderr,
        Problems::Style style = Problems::Short)
      : text(std::move(content)),
        progress(stderr, text.size()),
        problems(name, text, progress, out, style) {}

  std::string const text;
  Progress progress;
  Problems problems;
};

// Reads the file `name`, or standard input for "-".
inline Input openInput(std::string const& name, std::FILE* out = stderr,
                       Problems::Style style = Problems::Short) {
  return Input(nameInReports(name), readFile(name), out, style);
}
