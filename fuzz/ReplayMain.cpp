// Feeds the files named, and all files in the folders named, to a fuzz target.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "fuzz/Fuzz.h"

namespace {

using Path = std::filesystem::path;

std::vector<Path> filesAt(Path const& path) {
  if (!std::filesystem::is_directory(path)) {
    return {path};
  }
  std::vector<Path> files(std::filesystem::directory_iterator(path), {});
  std::sort(files.begin(), files.end());
  return files;
}

bool replay(Path const& file) {
  std::fprintf(stderr, "%s\n", file.c_str());  // Known even if the input ends the process.
  std::ifstream stream(file, std::ios::binary);
  std::string const bytes(std::istreambuf_iterator<char>(stream), {});
  if (!stream.is_open()) {
    std::fprintf(stderr, "cannot be read\n");
    return false;
  }
  // In a block of exactly its size, for AddressSanitizer.
  std::vector<std::uint8_t> const input(bytes.begin(), bytes.end());
  return LLVMFuzzerTestOneInput(input.data(), input.size()) == 0;
}

}  // namespace

int main(int argc, char** argv) {
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    for (Path const& file : filesAt(argv[i])) {
      if (!replay(file)) {
        return 1;
      }
      ++replayed;
    }
  }
  std::printf("%d inputs replayed\n", replayed);
  return replayed > 0 ? 0 : 1;
}
