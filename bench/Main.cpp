// Runs the benchmarks that are linked with it.
//
//   PROGRAM [--second-thread] [options of Google Benchmark]
//
// With --second-thread the process has a second thread from the start, which waits until the end.
// Without it never has one, which glibc must confirm.

#include <benchmark/benchmark.h>
#include <sys/single_threaded.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <future>
#include <thread>

namespace {

// Takes the option out of the arguments, and says whether it was there.
bool takeOption(int& argc, char** argv, char const* option) {
  char** const end = std::remove_if(
      argv + 1, argv + argc, [&](char const* given) { return std::strcmp(given, option) == 0; });
  bool const found = end != argv + argc;
  argc = static_cast<int>(end - argv);
  return found;
}

// A thread that waits for as long as this object lives.
class ParkedThread {
 public:
  ParkedThread() : thread([this] { leave.get_future().wait(); }) {}
  ~ParkedThread() {
    leave.set_value();
    thread.join();
  }
  ParkedThread(ParkedThread const&) = delete;
  ParkedThread& operator=(ParkedThread const&) = delete;

 private:
  std::promise<void> leave;
  std::thread thread;
};

int run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (takeOption(argc, argv, "--second-thread")) {
    ParkedThread const second;
    return run(argc, argv);
  }
  int const status = run(argc, argv);
  if (__libc_single_threaded == 0) {
    std::fputs("The process had a second thread, and was to be measured without one.\n", stderr);
    return 1;
  }
  return status;
}
