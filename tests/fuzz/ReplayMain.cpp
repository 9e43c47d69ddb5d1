// The driver of a fuzz target in a normal build: runs the target once on
// each file named, or on each file in a folder named, and fails when the
// target does (a crash, or an abort of a property it checks). The inputs
// that once found a fault are replayed this way by the tests.
#include "FuzzSupport.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace fs = std::filesystem;

static int replay(const fs::path &file) {
  std::ifstream in(file, std::ios::binary);
  std::vector<uint8_t> bytes((std::istreambuf_iterator<char>(in)),
                             std::istreambuf_iterator<char>());
  std::fprintf(stderr, "replaying %s (%zu bytes)\n", file.c_str(), bytes.size());
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
  return 1;
}

int main(int argc, char **argv) {
  unsigned count = 0;
  for (int i = 1; i < argc; ++i) {
    fs::path arg(argv[i]);
    if (!fs::exists(arg)) {
      std::fprintf(stderr, "no such input: %s\n", argv[i]);
      return 1;
    }
    if (fs::is_directory(arg)) {
      std::vector<fs::path> files;
      for (const auto &entry : fs::directory_iterator(arg))
        if (entry.is_regular_file() && entry.path().filename().string()[0] != '.')
          files.push_back(entry.path());
      std::sort(files.begin(), files.end());
      for (const auto &file : files)
        count += replay(file);
    } else {
      count += replay(arg);
    }
  }
  std::fprintf(stderr, "%u inputs replayed\n", count);
  return 0;
}
