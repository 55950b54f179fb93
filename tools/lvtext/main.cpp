// lvtext: reads values from text and prints them as text.

#include <tarselvalues/tarselvalues.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "CheckedSource.h"
#include "Problems.h"
#include "ValueText.h"

namespace {

enum ExitStatus : int {
  Success = 0,
  TextProblems = 1,
  Failure = 2,
};

constexpr char Usage[] =
    "Usage: lvtext print [FILE|-]\n"
    "\n"
    "Reads the values in FILE, or in standard input, and prints each as text on a line of\n"
    "its own. What had to be skipped is reported on standard error as FILE:LINE:COLUMN.\n"
    "\n"
    "Exit status: 0 if all of the text was read, 1 if some of it was skipped or it ends\n"
    "inside a value, 2 if FILE cannot be read.\n";

std::string readAll(std::FILE* stream) {
  std::string text;
  char block[65536];
  std::size_t count = 0;
  while ((count = std::fread(block, 1, sizeof(block), stream)) > 0) {
    text.append(block, count);
  }
  if (std::ferror(stream) != 0) {
    throw std::runtime_error(std::strerror(errno));
  }
  if (text.size() > INT_MAX) {
    throw std::runtime_error("the text is longer than 2147483647 bytes");
  }
  return text;
}

std::string readFile(std::string const& name) {
  if (name == "-") {
    return readAll(stdin);
  }
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> const stream(std::fopen(name.c_str(), "rb"),
                                                               std::fclose);
  if (stream == nullptr) {
    throw std::runtime_error(std::strerror(errno));
  }
  return readAll(stream.get());
}

void printLine(std::string const& line) {
  if (std::fwrite(line.data(), 1, line.size(), stdout) != line.size() ||
      std::fputc('\n', stdout) == EOF) {
    throw std::runtime_error(std::string("standard output: ") + std::strerror(errno));
  }
}

int print(std::string const& name) {
  std::string const text = readFile(name);
  Problems problems(name == "-" ? "<standard input>" : name, text);
  CheckedSource source(text, problems);
  auto* const serializer = new lvrCommonSerializer;
  lvArg const holder(*serializer);
  lvArg value;
  while (serializer->deserializeItemInto(value, source) != lvArgSource::SOURCE_END) {
    printLine(valueText(*serializer, value));
  }
  if (std::fflush(stdout) != 0) {
    throw std::runtime_error(std::string("standard output: ") + std::strerror(errno));
  }
  return problems.any() ? TextProblems : Success;
}

int run(int count, char** arguments) {
  std::string const verb = count > 1 ? arguments[1] : "";
  if (verb == "--help") {
    std::fputs(Usage, stdout);
    return Success;
  }
  if (verb != "print" || count > 3) {
    std::fputs(Usage, stderr);
    return Failure;
  }
  std::string const name = count == 3 ? arguments[2] : "-";
  try {
    return print(name);
  } catch (std::exception const& error) {
    std::fprintf(stderr, "lvtext: %s: %s\n", name.c_str(), error.what());
    return Failure;
  }
}

}  // namespace

int main(int count, char** arguments) { return run(count, arguments); }
