// boardtool: reads, checks and shows board definitions from the command line.
#include "Commands.h"
#include "HSTStringUtils.h"
#include "HUTVersion.h"

#include <cstring>
#include <iostream>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

const boardtool::Command *const kCommands[] = {
    &boardtool::readCommand,    &boardtool::checkCommand,   &boardtool::paramsCommand,
    &boardtool::catalogCommand, &boardtool::showCommand,    &boardtool::dumpCommand,
    &boardtool::shellCommand,   &boardtool::tclCommand,     &boardtool::fitCommand,
    &boardtool::composeCommand, &boardtool::migrateCommand, &boardtool::siteCommand,
    &boardtool::diagramCommand,
};

void printHelp(std::ostream &out) {
  out << "usage: boardtool COMMAND [OPTIONS] [ARGS]\n"
      << "       boardtool --version\n\n"
      << "Reads, checks and shows FPGA board definitions (board.xml with its pin and\n"
      << "preset files).\n\nCommands:\n";
  for (const boardtool::Command *c : kCommands)
    out << "  " << c->name << std::string(10 - std::strlen(c->name), ' ') << c->summary << "\n";
  out << "\nRun 'boardtool COMMAND --help' for a command's options.\n"
      << "Environment: BOARDLIB_DATA_DIRS (data directories, ':'-separated),\n"
      << "BOARDLIB_PARAMS (NAME=VALUE;...), BOARDLIB_DEBUG (debug scopes, ','-separated),\n"
      << "BOARDLIB_TRACE (file for a Chrome/Perfetto JSON trace of the reads).\n";
}

// A load reads thousands of files, each parsed and dropped, and builds the
// boards next to them. By default glibc gives freed memory back to the
// kernel as soon as a few hundred KiB lie free at the top of the heap, and
// serves large blocks by mmap, so every file's memory comes back as fresh
// pages, each one faulted and cleared again: a fifth of the load's time. A
// short-lived tool keeps what it has freed instead.
void keepFreedMemory() {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, 64 << 20);
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  mallopt(M_TOP_PAD, 16 << 20);
#endif
}

} // namespace

int main(int argc, char **argv) {
  keepFreedMemory();
  if (argc < 2) {
    printHelp(std::cerr);
    return boardtool::Usage;
  }
  std::string name = argv[1];
  if (name == "--help" || name == "-h" || name == "help") {
    printHelp(std::cout);
    return boardtool::Success;
  }
  if (name == "--version") {
    std::cout << "boardtool " << HUTVersion::getVersion() << "\n";
    return boardtool::Success;
  }
  for (const boardtool::Command *c : kCommands) {
    if (name != c->name)
      continue;
    std::vector<std::string> args(argv + 2, argv + argc);
    for (const std::string &a : args)
      if (a == "--help" || a == "-h") {
        std::cout << boardtool::helpText(*c);
        return boardtool::Success;
      }
    boardtool::Arguments parsed;
    std::string error;
    if (!boardtool::parseArguments(*c, args, parsed, error))
      return boardtool::usageError(*c, error);
    return c->run(parsed);
  }
  std::vector<std::string> names;
  for (const boardtool::Command *c : kCommands)
    names.push_back(c->name);
  std::cerr << "boardtool: unknown command '" << name << "'"
            << HSTStringUtils::didYouMean(name, names) << "\n";
  printHelp(std::cerr);
  return boardtool::Usage;
}
