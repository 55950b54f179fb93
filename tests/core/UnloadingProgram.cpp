// Loads and unloads a plugin that links the library, again and again; at last keeps it loaded and
// uses it in an exit handler that runs after the library has released its class keys.

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

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
  for (int round = 0; round < 20; ++round) {
    void* const plugin = load(argv[1]);
    LV_CHECK(find(plugin, "tryWhileLoaded")() == 0, "loaded");
    LV_CHECK(dlclose(plugin) == 0, "unloading");
  }
  void* const kept = load(argv[1]);
  LV_CHECK(find(kept, "tryWhileLoaded")() == 0, "kept");
  tryAfterTheRelease = find(kept, "tryAfterTheRelease");
  return 0;
}
