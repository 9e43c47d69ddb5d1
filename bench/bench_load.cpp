// bench_load: how long the installation takes to load, against a bare XML
// parse of the same files, with one and with two workers, and how much
// memory the loaded boards hold against their bytes on disk.
//
//   bench_load [--boards N] [--dir DIR] [--seed S] [--repeat R]
//
// Without --dir a synthetic installation of N boards is generated into a
// temporary directory and removed afterwards. Each measurement runs in a
// child process of its own (this program, re-executed with --child), so
// that the peak memory of one configuration is not that of another.
#include "BenchGenerator.h"

#include "ComMsgMgr.h"
#include "HBOBoardCReposMgr.h"
#include "HPAParamMgr.h"
#include "HUTFileUtils.h"

#include <pugixml.hpp>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// The files of one board, in the order the reader opens them.
const char *const kBoardFiles[] = {"board.xml", "part0_pins.xml", "preset.xml"};

std::vector<std::string> listBoards(const std::string &dataDir) {
  return HUTFileUtils::findFiles(dataDir + "/boards/board_files", "board.xml");
}

std::string siblingOf(const std::string &boardFile, const char *name) {
  std::string::size_type slash = boardFile.rfind('/');
  return (slash == std::string::npos ? std::string() : boardFile.substr(0, slash + 1)) + name;
}

long statusKiB(const char *field) {
  std::ifstream in("/proc/self/status");
  std::string line;
  const std::size_t length = std::strlen(field);
  while (std::getline(in, line))
    if (line.compare(0, length, field) == 0 && line.size() > length && line[length] == ':')
      return std::atol(line.c_str() + length + 1);
  // No /proc: the kernel's own high-water mark is the next best thing.
  struct rusage usage;
  if (getrusage(RUSAGE_SELF, &usage) == 0)
    return usage.ru_maxrss;
  return 0;
}

// User and system time of the whole process, all threads.
double cpuSeconds() {
  struct rusage usage;
  if (getrusage(RUSAGE_SELF, &usage) != 0)
    return 0;
  return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
         (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

// Counts what the readers say and shows only the first few, so a broken
// corpus is noticed without flooding the terminal or the timing.
class CountingSink : public ComMsgSink {
public:
  void receive(const ComMsgRecord &record) override {
    if (record.severity >= ComMsg::CriticalWarning)
      ++m_failures;
    if (m_shown < 5) {
      ++m_shown;
      std::cerr << "bench_load: " << record.line << "\n";
    }
  }
  unsigned getFailures() const { return m_failures; }

private:
  unsigned m_failures = 0;
  unsigned m_shown = 0;
};

// The full load as the suite pays for it: the first getGlobal reads the
// whole installation that BOARDLIB_DATA_DIRS names, with general.maxThreads
// workers. The repository stays alive, so its boards count in the peak.
std::size_t fullLoad(const std::string &dataDir) {
  setenv("BOARDLIB_DATA_DIRS", dataDir.c_str(), 1);
  HBOBoardCReposMgr *mgr = HBOBoardCReposMgr::getGlobal();
  return mgr ? mgr->getStaticBoardPartMap().size() : 0;
}

// The floor: the same files through pugixml and nothing else.
std::size_t bareParse(const std::string &dataDir, int workers) {
  const std::vector<std::string> files = listBoards(dataDir);
  std::atomic<std::size_t> parsed(0);
  tbb::task_arena arena(workers);
  arena.execute([&] {
    tbb::parallel_for(tbb::blocked_range<std::size_t>(0, files.size()),
                      [&](const tbb::blocked_range<std::size_t> &range) {
                        for (std::size_t i = range.begin(); i != range.end(); ++i) {
                          bool ok = true;
                          for (const char *name : kBoardFiles) {
                            pugi::xml_document doc;
                            ok = doc.load_file(siblingOf(files[i], name).c_str()) && ok;
                          }
                          if (ok)
                            parsed.fetch_add(1, std::memory_order_relaxed);
                        }
                      });
  });
  return parsed.load();
}

// One measurement in this process; the parent reads the RESULT line.
int runChild(const std::string &mode, const std::string &dataDir, int workers) {
  CountingSink sink;
  ComMsgMgr::setSink(&sink);
  HPAParamMgr::getParamMgr().setValue("general.maxThreads", std::to_string(workers));
  const long baseline = statusKiB("VmRSS");

  const double cpuBefore = cpuSeconds();
  const auto start = std::chrono::steady_clock::now();
  std::size_t done = 0;
  try {
    done = mode == "load" ? fullLoad(dataDir) : bareParse(dataDir, workers);
  } catch (const std::exception &e) {
    ComMsgMgr::setSink(nullptr);
    std::cerr << "bench_load: the " << mode << " failed: " << e.what() << "\n";
    return 1;
  } catch (...) {
    // The load lets through what a worker threw that is not a message.
    ComMsgMgr::setSink(nullptr);
    std::cerr << "bench_load: the " << mode << " failed with an unknown exception\n";
    return 1;
  }
  const double seconds =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const double cpu = cpuSeconds() - cpuBefore;
  const long peak = statusKiB("VmHWM");

  std::printf("RESULT %.6f %ld %ld %zu %u %.6f\n", seconds, peak, baseline, done,
              sink.getFailures(), cpu);
  std::fflush(stdout);
  ComMsgMgr::setSink(nullptr);
  return 0;
}

struct Result {
  double seconds = 0;
  long peakKiB = 0;
  long baselineKiB = 0;
  std::size_t boards = 0;
  unsigned failures = 0;
  double cpuSeconds = 0;
  bool ok = false;
};

Result runInChild(const std::string &self, const std::string &mode, const std::string &dataDir,
                  int workers) {
  Result result;
  int pipeFds[2];
  if (pipe(pipeFds) != 0)
    return result;
  const pid_t pid = fork();
  if (pid < 0) {
    close(pipeFds[0]);
    close(pipeFds[1]);
    return result;
  }
  if (pid == 0) {
    dup2(pipeFds[1], STDOUT_FILENO);
    close(pipeFds[0]);
    close(pipeFds[1]);
    const std::string workerText = std::to_string(workers);
    execl(self.c_str(), self.c_str(), "--child", mode.c_str(), "--workers", workerText.c_str(),
          "--dir", dataDir.c_str(), static_cast<char *>(nullptr));
    _exit(127);
  }
  close(pipeFds[1]);
  std::string output;
  char buffer[4096];
  ssize_t got;
  while ((got = read(pipeFds[0], buffer, sizeof buffer)) > 0)
    output.append(buffer, static_cast<std::size_t>(got));
  close(pipeFds[0]);
  int status = 0;
  waitpid(pid, &status, 0);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    return result;
  std::istringstream lines(output);
  std::string line;
  while (std::getline(lines, line)) {
    if (line.compare(0, 7, "RESULT ") != 0)
      continue;
    std::istringstream fields(line.substr(7));
    fields >> result.seconds >> result.peakKiB >> result.baselineKiB >> result.boards >>
        result.failures >> result.cpuSeconds;
    result.ok = !fields.fail();
  }
  return result;
}

double median(std::vector<double> values) {
  if (values.empty())
    return 0;
  std::sort(values.begin(), values.end());
  const std::size_t mid = values.size() / 2;
  return values.size() % 2 ? values[mid] : (values[mid - 1] + values[mid]) / 2;
}

std::uint64_t bytesOnDisk(const std::vector<std::string> &boardFiles) {
  std::uint64_t total = 0;
  for (const std::string &file : boardFiles)
    for (const char *name : kBoardFiles) {
      struct stat st;
      if (::stat(siblingOf(file, name).c_str(), &st) == 0)
        total += static_cast<std::uint64_t>(st.st_size);
    }
  return total;
}

int usage(const std::string &problem) {
  if (!problem.empty())
    std::cerr << "bench_load: " << problem << "\n";
  std::cerr << "usage: bench_load [--boards N] [--dir DIR] [--seed S] [--repeat R]\n";
  return 2;
}

bool readNumber(const char *text, long &out) {
  char *end = nullptr;
  out = std::strtol(text, &end, 10);
  return end && end != text && *end == '\0' && out >= 0;
}

const char *verdict(bool met) { return met ? "met" : "NOT met"; }

} // namespace

int main(int argc, char **argv) {
  long boardCount = 1000, seed = 1, repeat = 3, workers = 1;
  std::string dir, childMode;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    if (arg == "--help" || arg == "-h")
      return usage(std::string());
    if (i + 1 >= argc)
      return usage(arg + " needs a value");
    const char *value = argv[++i];
    long number = 0;
    if (arg == "--dir") {
      dir = value;
    } else if (arg == "--child") {
      childMode = value;
    } else if (!readNumber(value, number)) {
      return usage(arg + " needs a non-negative number");
    } else if (arg == "--boards") {
      boardCount = number;
    } else if (arg == "--seed") {
      seed = number;
    } else if (arg == "--repeat") {
      repeat = std::max(1L, number);
    } else if (arg == "--workers") {
      workers = std::max(1L, number);
    } else {
      return usage("unknown option " + arg);
    }
  }
  if (!childMode.empty()) {
    if (dir.empty() || (childMode != "load" && childMode != "parse"))
      return usage("--child needs load or parse, and --dir");
    return runChild(childMode, dir, static_cast<int>(workers));
  }

  const std::string self = "/proc/self/exe";
  std::string tempDir;
  if (dir.empty()) {
    char pattern[] = "/tmp/bench_load.XXXXXX";
    if (!mkdtemp(pattern)) {
      std::cerr << "bench_load: cannot create a temporary directory\n";
      return 1;
    }
    tempDir = dir = pattern;
    BenchGenerator generator;
    generator.setBoardCount(static_cast<int>(boardCount));
    generator.setSeed(static_cast<std::uint32_t>(seed));
    std::string error;
    const auto start = std::chrono::steady_clock::now();
    if (!generator.generate(dir, error)) {
      std::cerr << "bench_load: " << error << "\n";
      std::filesystem::remove_all(tempDir);
      return 1;
    }
    std::printf("generated %ld boards in %s in %.2f s\n", boardCount, dir.c_str(),
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
  }

  const std::vector<std::string> boardFiles = listBoards(dir);
  const std::uint64_t diskBytes = bytesOnDisk(boardFiles);
  const double diskMiB = diskBytes / 1048576.0;
  std::printf("%zu boards, %zu files, %.1f MiB on disk\n", boardFiles.size(),
              boardFiles.size() * 3, diskMiB);
  std::fflush(stdout);

  // One unmeasured pass, so that every run finds the files in the page cache.
  runInChild(self, "parse", dir, 2);

  struct Config {
    Config(const char *m, int w) : mode(m), workers(w) {}
    const char *mode;
    int workers;
    std::vector<double> seconds;
    std::vector<double> cpuSeconds;
    long peakKiB = 0;
    long baselineKiB = 0;
    std::size_t boards = 0;
    unsigned failures = 0;
  };
  std::vector<Config> configs = {{"load", 1}, {"load", 2}, {"parse", 1}, {"parse", 2}};
  // Rounds rather than blocks, so that a noisy neighbour spreads over all.
  for (long round = 0; round < repeat; ++round) {
    for (Config &config : configs) {
      Result r = runInChild(self, config.mode, dir, config.workers);
      if (!r.ok) {
        std::cerr << "bench_load: the " << config.mode << " child with " << config.workers
                  << " worker(s) failed\n";
        if (!tempDir.empty())
          std::filesystem::remove_all(tempDir);
        return 1;
      }
      config.seconds.push_back(r.seconds);
      config.cpuSeconds.push_back(r.cpuSeconds);
      config.peakKiB = std::max(config.peakKiB, r.peakKiB);
      config.baselineKiB = std::max(config.baselineKiB, r.baselineKiB);
      config.boards = r.boards;
      config.failures = r.failures;
    }
  }
  if (!tempDir.empty())
    std::filesystem::remove_all(tempDir);

  const double load1 = median(configs[0].seconds), load2 = median(configs[1].seconds);
  const double parse1 = median(configs[2].seconds), parse2 = median(configs[3].seconds);
  double loadAverage[3] = {0, 0, 0};
  const int loads = getloadavg(loadAverage, 3);
  std::printf("\nmedian of %ld runs, each in a process of its own; load average %.2f at the end "
              "on %ld cores\n",
              repeat, loads > 0 ? loadAverage[0] : 0.0, sysconf(_SC_NPROCESSORS_ONLN));
  std::printf("%-26s %12s %12s %10s\n", "", "1 worker", "2 workers", "speed-up");
  std::printf("%-26s %10.3f s %10.3f s %9.2fx\n", "full load", load1, load2, load1 / load2);
  std::printf("%-26s %10.3f s %10.3f s %9.2fx\n", "bare pugixml parse", parse1, parse2,
              parse1 / parse2);
  std::printf("%-26s %11.2fx %11.2fx\n", "load / parse", load1 / parse1, load2 / parse2);
  const double cpuLoad1 = median(configs[0].cpuSeconds), cpuLoad2 = median(configs[1].cpuSeconds);
  const double cpuParse1 = median(configs[2].cpuSeconds),
               cpuParse2 = median(configs[3].cpuSeconds);
  // CPU time is what the work costs whatever else runs on the machine; a
  // wall-clock speed-up far below its CPU ratio means the cores were busy.
  std::printf("%-26s %10.3f s %10.3f s\n", "full load, CPU time", cpuLoad1, cpuLoad2);
  std::printf("%-26s %10.3f s %10.3f s\n", "bare parse, CPU time", cpuParse1, cpuParse2);
  std::printf("%-26s %11.2fx %11.2fx\n", "load / parse in CPU time", cpuLoad1 / cpuParse1,
              cpuLoad2 / cpuParse2);
  std::printf("%-26s %10.1f/s %10.1f/s\n", "boards loaded per second", configs[0].boards / load1,
              configs[1].boards / load2);
  std::printf("%-26s %10.1f MB/s %8.1f MB/s\n", "load throughput", diskBytes / 1e6 / load1,
              diskBytes / 1e6 / load2);
  std::printf("boards read: load %zu and %zu, parse %zu and %zu of %zu; failures told: %u, %u\n",
              configs[0].boards, configs[1].boards, configs[2].boards, configs[3].boards,
              boardFiles.size(), configs[0].failures, configs[1].failures);
  for (const Config &config : configs) {
    const double peakMiB = config.peakKiB / 1024.0;
    const double grownMiB = (config.peakKiB - config.baselineKiB) / 1024.0;
    std::printf("peak memory, %-5s %d worker%s: %8.1f MiB (%.2fx disk); above the start %8.1f "
                "MiB (%.2fx disk)\n",
                config.mode, config.workers, config.workers == 1 ? " " : "s", peakMiB,
                peakMiB / diskMiB, grownMiB, grownMiB / diskMiB);
  }

  const double worstRatio = std::max(load1 / parse1, load2 / parse2);
  const double speedUp = load1 / load2;
  const double memoryRatio =
      std::max(configs[0].peakKiB, configs[1].peakKiB) / 1024.0 / diskMiB;
  std::printf("\ngoals\n");
  std::printf("  full load within 1.5x the bare parse:     %.2fx  %s\n", worstRatio,
              verdict(worstRatio <= 1.5));
  std::printf("  2 workers at least 1.8x faster than 1:    %.2fx  %s\n", speedUp,
              verdict(speedUp >= 1.8));
  std::printf("  peak memory within 3x the bytes on disk:  %.2fx  %s\n", memoryRatio,
              verdict(memoryRatio <= 3.0));
  if (loads > 0 && loadAverage[0] > sysconf(_SC_NPROCESSORS_ONLN))
    std::printf("\nthe machine was busy (load average %.2f): the wall-clock speed-up says little;\n"
                "the second worker changed the CPU time of the load by %+.1f%%\n",
                loadAverage[0], (cpuLoad2 / cpuLoad1 - 1) * 100);
  return 0;
}
