// Loads and unloads a plugin that links the library, a hundred times, and looks whether anything
// stays behind; at last keeps it loaded and uses it in an exit handler that runs after the library
// has released its class keys.

#include <dlfcn.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "support/HeapInUse.h"
#include "support/ProgramChecks.h"

namespace {

using Try = int();

Try* tryAfterTheRelease = nullptr;

Try* find(void* plugin, char const* name) {
  void* const found = dlsym(plugin, name);
  if (found == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::_Exit(2);
  }
  return reinterpret_cast<Try*>(found);
}

void* load(char const* path) {
  void* const plugin = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (plugin == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    std::_Exit(2);
  }
  return plugin;
}

// How many mappings of this process are of a file with such a name.
int mappingsOf(std::string const& name) {
  std::ifstream maps("/proc/self/maps");
  int mappings = 0;
  for (std::string line; std::getline(maps, line);) {
    mappings += line.find(name) != std::string::npos ? 1 : 0;
  }
  return mappings;
}

// What would grow if something stayed behind.
struct Footprint {
  std::size_t heap = 0;
  int entries = 0;   // in the table of strings, while the plugin is loaded
  int mappings = 0;  // of the library
};

// Loads the plugin, uses it and unloads it.
Footprint useOnce(char const* path) {
  Footprint after;
  void* const plugin = load(path);
  LV_CHECK(mappingsOf("LoadedPlugin") > 0, "loaded");
  LV_CHECK(find(plugin, "tryWhileLoaded")() == 0, "loaded");
  after.entries = find(plugin, "countEntries")();
  LV_CHECK(dlclose(plugin) == 0, "unloading");
  LV_CHECK(mappingsOf("LoadedPlugin") == 0, "unloaded");
  after.mappings = mappingsOf("libtarselvalues-mt");
  after.heap = test::heapInUse();
  return after;
}

void leaveLast() {
  LV_CHECK(tryAfterTheRelease != nullptr && tryAfterTheRelease() == 0, "exit handler");
  test::judge();
}

}  // namespace

int main(int argc, char** argv) {
  std::atexit(leaveLast);
  if (argc != 2) {
    return 2;
  }
  constexpr int firstRounds = 50;
  constexpr int rounds = 400;
  Footprint settled;
  Footprint last;
  for (int round = 0; round < rounds; ++round) {
    last = useOnce(argv[1]);
    settled = round < firstRounds ? last : settled;
  }
  LV_CHECK(settled.mappings > 0, "unloaded, the library stays");
  LV_CHECK(last.mappings == settled.mappings, "unloaded");
  LV_CHECK(last.entries == settled.entries, "loaded again");
  // One block that stays behind each time would make more; caches of malloc() make less.
  constexpr std::size_t smallestBlock = 16;
  LV_CHECK(last.heap < settled.heap + smallestBlock * (rounds - firstRounds), "unloaded");
  void* const kept = load(argv[1]);
  LV_CHECK(find(kept, "tryWhileLoaded")() == 0, "kept");
  tryAfterTheRelease = find(kept, "tryAfterTheRelease");
  return 0;
}
