// Prints what reading each document and releasing it allocates and frees, as the source that
// defines an array of BlockEvents, whose name is the argument.

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/BlocksOfReading.h"
#include "bench/Document.h"
#include "bench/OurText.h"

namespace {

// What malloc and free are asked for between start() and stop(). Allocates nothing itself.
class Recorder {
 public:
  void start() {
    eventCount = 0;
    blockCount = 0;
    recording = true;
  }
  void stop() { recording = false; }

  void allocated(void const* address, std::size_t size) {
    if (recording && address != nullptr) {
      addresses.at(blockCount) = address;
      events.at(eventCount++) = {blockCount++, size};
    }
  }

  void freed(void const* address) {
    for (std::size_t block = blockCount; recording && address != nullptr && block-- > 0;) {
      if (addresses.at(block) == address) {
        addresses.at(block) = nullptr;
        events.at(eventCount++) = {block, 0};
        return;
      }
    }
  }

  void print(std::size_t document) const {
    std::printf("constexpr BlockEvent events%zu[] = {\n", document);
    for (std::size_t i = 0; i < eventCount; ++i) {
      std::printf("    {%zu, %zu},\n", events.at(i).block, events.at(i).size);
    }
    std::printf("};\nconstexpr std::size_t blocks%zu = %zu;\n\n", document, blockCount);
  }

 private:
  static constexpr std::size_t MostEvents = 20000;

  bool recording = false;
  std::size_t blockCount = 0;
  std::size_t eventCount = 0;
  std::array<void const*, MostEvents> addresses = {};
  std::array<bench::BlockEvent, MostEvents> events = {};
};

Recorder recorder;

}  // namespace

// What the whole program, its libraries included, allocates with: glibc's own, noted down.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
  void* const block = __libc_malloc(size);
  recorder.allocated(block, size);
  return block;
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
  void* const block = __libc_calloc(count, size);
  recorder.allocated(block, count * size);
  return block;
}

__attribute__((visibility("default"))) void* realloc(void* block, std::size_t size) {
  void* const moved = __libc_realloc(block, size);
  recorder.freed(block);
  recorder.allocated(moved, size);
  return moved;
}

__attribute__((visibility("default"))) void free(void* block) {
  recorder.freed(block);
  __libc_free(block);
}
}
// NOLINTEND(bugprone-reserved-identifier,readability-inconsistent-declaration-parameter-name)

// Every block is to be seen, those too that the library would keep.
extern "C" {
[[gnu::visibility("default"), gnu::used]] extern char const tarselvaluesKeepsNoBlocks = 1;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    return 2;
  }
  std::puts("#include \"bench/BlocksOfReading.h\"\n\nnamespace bench {\n\nnamespace {\n");
  std::size_t const count = bench::documents().size();
  for (std::size_t i = 0; i < count; ++i) {
    bench::OurText text;
    std::string const written = text.textOf(bench::ourValueOf(bench::documents()[i].root));
    text.read(written);  // What is made once is made now.
    recorder.start();
    text.read(written);
    recorder.stop();
    recorder.print(i);
  }
  std::printf("}  // namespace\n\nBlockEvents const %s[] = {\n", argv[1]);
  for (std::size_t i = 0; i < count; ++i) {
    std::printf("    {blocks%zu, events%zu, events%zu + sizeof(events%zu) / sizeof(BlockEvent)},\n",
                i, i, i, i);
  }
  std::puts("};\n\n}  // namespace bench");
}
