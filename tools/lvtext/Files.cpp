#include "Files.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace {

[[noreturn]] void fail(std::string const& subject) {
  throw std::runtime_error(subject + ": " + std::strerror(errno));
}

std::string readAll(std::FILE* stream, std::string const& name) {
  std::string text;
  char block[65536];
  std::size_t count = 0;
  while ((count = std::fread(block, 1, sizeof(block), stream)) > 0) {
    text.append(block, count);
  }
  if (std::ferror(stream) != 0) {
    fail(name);
  }
  if (text.size() > INT_MAX) {
    throw std::runtime_error(name + ": the text is longer than 2147483647 bytes");
  }
  return text;
}

}  // namespace

std::string readFile(std::string const& name) {
  if (name == "-") {
    return readAll(stdin, nameInReports(name));
  }
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> const stream(std::fopen(name.c_str(), "rb"),
                                                               std::fclose);
  if (stream == nullptr) {
    fail(name);
  }
  return readAll(stream.get(), name);
}

std::string nameInReports(std::string const& name) {
  return name == "-" ? "<standard input>" : name;
}

void writeOut(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
    fail("standard output");
  }
}

void flushOut() {
  if (std::fflush(stdout) != 0) {
    fail("standard output");
  }
}
