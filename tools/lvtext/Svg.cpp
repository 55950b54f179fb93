#include "Svg.h"

#include <sys/wait.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#include "Files.h"

namespace {

// What the shell answers for a program that it does not find.
constexpr int NotFound = 127;
constexpr char Command[] = "command -v dot >/dev/null || exit 127; exec dot -Tsvg";

}  // namespace

void writeSvg(std::string const& graph) {
  flushOut();
  std::signal(SIGPIPE, SIG_IGN);  // dot may end before it has read all.
  std::FILE* const pipe = popen(Command, "w");
  if (pipe == nullptr) {
    throw std::runtime_error(std::string("dot: ") + std::strerror(errno));
  }
  std::fwrite(graph.data(), 1, graph.size(), pipe);
  int const status = pclose(pipe);
  if (WIFEXITED(status) && WEXITSTATUS(status) == NotFound) {
    throw std::runtime_error("dot: not found; the package graphviz has it");
  }
  if (status != 0) {
    throw std::runtime_error("dot: it failed");
  }
}
