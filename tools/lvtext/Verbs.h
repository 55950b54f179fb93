// What lvtext can do. Each returns the exit status, and throws std::exception, with the reason, when
// it cannot be done.
#pragma once

#include <cstddef>
#include <string>

enum ExitStatus : int {
  Success = 0,
  Problem = 1,  // something was reported; two texts differ
  Failure = 2,  // it could not be done
};

// `name` is a file, or "-" for standard input.
int checkText(std::string const& name);
int printText(std::string const& name);
int formatText(std::string const& name, bool sorted, std::size_t width);
int convertToJson(std::string const& name, bool strict);
int convertFromJson(std::string const& name, bool strict);
int graphText(std::string const& name, bool svg);
int diffTexts(std::string const& left, std::string const& right);
int printStats(std::string const& name);
