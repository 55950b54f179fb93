// lvtext: reads, checks and converts the text format.

#include "CommandLine.h"

int main(int count, char** arguments) { return runCommandLine(count, arguments); }
