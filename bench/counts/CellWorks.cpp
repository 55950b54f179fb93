#include <unistd.h>

#include <thread>

#include "Works.h"

namespace counts {
namespace {

constexpr int Repetitions = 10000;

void copy(lvArg const& original, int repetitions) {
  int alike = 0;
  repeat(repetitions, [&](int) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is the work.
    lvArg const copied(original);
    alike += copied.getType() == original.getType() ? 1 : 0;
  });
  require(alike == repetitions, "a copy is like its original");
}

// From here on the process has two threads; the second one does nothing, up to the end.
void startThread() {
  std::thread([] {
    while (true) {
      pause();
    }
  }).detach();
}

}  // namespace

std::vector<Work> cellWorks() {
  return {
      {"cell-copy-integer", Repetitions, [](int n) { copy(integer(502), n); }},
      {"cell-copy-string", Repetitions, [](int n) { copy(lvString("pump room"), n); }},
      {"cell-copy-string-beside-a-thread", Repetitions,
       [](int n) {
         startThread();
         copy(lvString("pump room"), n);
       }},
  };
}

}  // namespace counts
