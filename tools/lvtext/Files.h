// Reads and writes whole files. Throws std::runtime_error, with the reason, where it cannot.
#pragma once

#include <string>
#include <string_view>

// Returns what is in the file `name`, or comes from standard input for "-".
std::string readFile(std::string const& name);

// What a file is called in reports.
std::string nameInReports(std::string const& name);

// Writes to standard output.
void writeOut(std::string_view text);
// Sees to it that all of it has arrived.
void flushOut();
