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
#include <vector>

#include "CheckedSource.h"
#include "Problems.h"
#include "TextClass.h"
#include "ValueText.h"

namespace {

enum ExitStatus : int {
  Success = 0,
  TextProblems = 1,
  Failure = 2,
};

constexpr int MaxFields = 65535;

constexpr char Usage[] =
    "Usage: lvtext print [--class NAME=FIELDS]... [FILE|-]\n"
    "       lvtext --help\n"
    "\n"
    "Reads the values in FILE, or in standard input, and prints each as text on a line of\n"
    "its own. What had to be skipped is reported on standard error as FILE:LINE:COLUMN.\n"
    "\n"
    "  --class NAME=FIELDS  Read objects *NAME{...} of that many fields, 1 to 65535.\n"
    "  --help               Print this text.\n"
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

// NAME=FIELDS
void addClass(std::string const& declared) {
  std::size_t const equals = declared.rfind('=');
  std::string const digits = equals != std::string::npos ? declared.substr(equals + 1) : "";
  bool const isNumber = !digits.empty() && digits.size() <= 5 &&
                        digits.find_first_not_of("0123456789") == std::string::npos;
  int const fields = isNumber ? std::stoi(digits) : 0;
  if (equals == 0 || fields < 1 || fields > MaxFields) {
    throw std::runtime_error("NAME=FIELDS is expected, with 1 to 65535 fields");
  }
  registerTextClass(declared.substr(0, equals), fields);
}

int wrongUse() {
  std::fputs(Usage, stderr);
  return Failure;
}

int run(std::vector<std::string> const& arguments) {
  if (arguments == std::vector<std::string>{"--help"}) {
    std::fputs(Usage, stdout);
    return Success;
  }
  if (arguments.empty() || arguments[0] != "print") {
    return wrongUse();
  }
  std::string subject;
  std::string name = "-";
  bool named = false;
  try {
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      if (arguments[i] == "--class" && i + 1 < arguments.size()) {
        subject = arguments[++i];
        addClass(subject);
      } else if (named || arguments[i].substr(0, 2) == "--") {
        return wrongUse();
      } else {
        name = arguments[i];
        named = true;
      }
    }
    subject = name;
    return print(name);
  } catch (std::exception const& error) {
    std::fprintf(stderr, "lvtext: %s: %s\n", subject.c_str(), error.what());
    return Failure;
  }
}

}  // namespace

int main(int count, char** arguments) { return run({arguments + 1, arguments + count}); }
