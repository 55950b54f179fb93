// Classes that exist only on the command line: a name, and fields that may have names.
#pragma once

#include <tarselvalues/tarselvalues.h>

#include <string>
#include <vector>

// How many of them there can be.
constexpr int MaxTextClasses = 64;

struct TextClass {
  lvString key;
  int fields;
  std::vector<std::string> names;  // as many as fields, or none
};

// Registers the class that `declaration` tells of, NAME=COUNT or NAME=FIELD,FIELD... Throws
// std::runtime_error, with the reason, when it cannot be understood, the name is taken, or there are
// too many classes.
void declareClass(std::string const& declaration);

// Returns the class of that name; null if it was not declared.
TextClass const* findTextClass(lvArg const& key);
