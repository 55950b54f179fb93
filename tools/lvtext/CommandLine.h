// The command line.
#pragma once

// Reads the command line and does what it says: declares the classes, then calls the verb. Returns
// the exit status. Explains how the program is used when asked to, and, on standard error, when it
// is used wrongly.
int runCommandLine(int count, char const* const* arguments);
