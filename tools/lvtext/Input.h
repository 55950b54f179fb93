// A text that is read, with all that accompanies its reading.
#pragma once

#include <cstdio>
#include <string>

#include "Files.h"
#include "Problems.h"
#include "Progress.h"

struct Input {
  // Reads the file `name`. Problems with it are reported to `out`.
  explicit Input(std::string const& name, std::FILE* out = stderr,
                 Problems::Style style = Problems::Short)
      : text(readFile(name)),
        progress(stderr, text.size()),
        problems(nameInReports(name), text, progress, out, style) {}

  std::string const text;
  Progress progress;
  Problems problems;
};
