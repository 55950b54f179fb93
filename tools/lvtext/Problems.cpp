#include "Problems.h"

#include <algorithm>
#include <cstdio>
#include <utility>

Problems::Problems(std::string name, std::string const& text)
    : fileName(std::move(name)), lineStarts{0} {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\n') {
      lineStarts.push_back(i + 1);
    }
  }
}

void Problems::report(int offset, std::string const& reason) {
  reported = true;
  std::fprintf(stderr, "%s:%s: %s\n", fileName.c_str(), place(offset).c_str(), reason.c_str());
}

std::string Problems::place(int offset) const {
  auto const position = static_cast<std::size_t>(offset);
  auto const next = std::upper_bound(lineStarts.begin(), lineStarts.end(), position);
  auto const line = next - lineStarts.begin();
  return std::to_string(line) + ":" + std::to_string(position - *(next - 1) + 1);
}
