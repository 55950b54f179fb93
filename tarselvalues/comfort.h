// The whole library, and beside it what makes it comfortable in C++17: ranges for loops, builders,
// readers with a default, text as std::string, values in streams and in standard containers.
//
//   core        lvCell.h: lvToCell(); lvRead.h: lvReadInt(), lvReadText(); lvHashing.h
//   containers  lvItems.h, lvEntries.h: for loops; lvBuilders.h: lvListOf(), lvMapBuilder
//   serial      lvText.h: lvToText(), lvFromText(); lvStream.h: operator<<
//
// All of it is inline over the functions of the library: a program that does without it need not
// include it, and pays nothing for it. Unlike the rest it uses std::string.
//
// Threads: one thread at a time for the values that a function is given and all that is in them.
#pragma once

#include "tarselvalues/containers/lvBuilders.h"
#include "tarselvalues/containers/lvEntries.h"
#include "tarselvalues/containers/lvItems.h"
#include "tarselvalues/core/lvCell.h"
#include "tarselvalues/core/lvHashing.h"
#include "tarselvalues/core/lvRead.h"
#include "tarselvalues/serial/lvStream.h"
#include "tarselvalues/serial/lvText.h"
#include "tarselvalues/tarselvalues.h"
