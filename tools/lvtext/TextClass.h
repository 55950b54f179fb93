// Classes that exist only on the command line: a name and a number of fields.
#pragma once

#include <string>

// How many of them there can be.
constexpr int MaxTextClasses = 64;

// Registers a class whose objects have `fields` fields. Throws std::runtime_error, with the reason,
// when the name is taken or there are too many classes.
void registerTextClass(std::string const& name, int fields);
