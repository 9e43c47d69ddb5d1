// bench_gen: writes a synthetic installation for the load benchmark.
//
//   bench_gen --boards N [--seed S] DIR
//
// DIR becomes a data directory: point BOARDLIB_DATA_DIRS at it to load it.
#include "BenchGenerator.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

namespace {

int usage(const std::string &problem) {
  if (!problem.empty())
    std::cerr << "bench_gen: " << problem << "\n";
  std::cerr << "usage: bench_gen [--boards N] [--seed S] DIR\n";
  return 2;
}

bool readNumber(const char *text, long &out) {
  char *end = nullptr;
  out = std::strtol(text, &end, 10);
  return end && end != text && *end == '\0' && out >= 0;
}

} // namespace

int main(int argc, char **argv) {
  BenchGenerator generator;
  std::string dir;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    long value = 0;
    if (arg == "--boards" || arg == "--seed") {
      if (i + 1 >= argc || !readNumber(argv[i + 1], value))
        return usage(arg + " needs a non-negative number");
      ++i;
      if (arg == "--boards")
        generator.setBoardCount(static_cast<int>(value));
      else
        generator.setSeed(static_cast<std::uint32_t>(value));
    } else if (arg == "--help" || arg == "-h") {
      return usage(std::string());
    } else if (!arg.empty() && arg[0] == '-') {
      return usage("unknown option " + arg);
    } else if (dir.empty()) {
      dir = arg;
    } else {
      return usage("one directory only");
    }
  }
  if (dir.empty())
    return usage("no directory given");

  std::string error;
  if (!generator.generate(dir, error)) {
    std::cerr << "bench_gen: " << error << "\n";
    return 1;
  }
  // The shape of what was written, so that a figure measured on it can be
  // put against bytes and objects.
  const BenchGenerator::Stats &s = generator.getStats();
  const double n = generator.getBoardCount() > 0 ? generator.getBoardCount() : 1;
  const std::uint64_t total = generator.getBytesWritten();
  std::printf("%d boards, %llu bytes (%.1f MiB) in %s\n", generator.getBoardCount(),
              static_cast<unsigned long long>(total), total / 1048576.0, dir.c_str());
  std::printf("bytes per board: mean %.0f (board.xml %.0f, pin file %.0f, preset %.0f), "
              "min %llu, max %llu\n",
              total / n, s.boardXmlBytes / n, s.pinFileBytes / n, s.presetBytes / n,
              static_cast<unsigned long long>(s.minBoardBytes),
              static_cast<unsigned long long>(s.maxBoardBytes));
  std::printf("per board: FPGA pins mean %.0f (%d to %d), components %.1f (%d to %d), "
              "interfaces %.1f (%d to %d), preset parameters %.0f\n",
              s.pins / n, s.minPins, s.maxPins, s.components / n, s.minComponents, s.maxComponents,
              s.interfaces / n, s.minInterfaces, s.maxInterfaces, s.presetParameters / n);
  return 0;
}
