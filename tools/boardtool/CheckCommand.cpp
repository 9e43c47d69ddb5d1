// boardtool check: holds board files to their DTDs and to every rule of the
// readers, and tells each finding.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kHelp[] =
    "Checks board files: each FILE (a board.xml) is validated against its DTD, together\n"
    "with the pin files and the preset file it names, and read with every rule of the\n"
    "readers, strict checks included for schema 2.2 and above. Every finding is told on\n"
    "standard error, one per line, in the order of the file; findings of the DTD carry\n"
    "the line of the file on disk. Standard output gets one summary line per file.\n"
    "\n"
    "Options:\n"
    "  --param NAME=VALUE  set a parameter first (see 'boardtool params'); repeatable.\n"
    "                      --param board.enable2020Checks=true applies the strict checks\n"
    "                      to older schemas too\n"
    "  --schema-dir DIR    take the DTDs from DIR instead of the data directories'\n"
    "                      boards/board_schemas/current\n"
    "  --messages=json     write the findings to standard error as one JSON array\n"
    "  --debug SCOPE       switch on debug output of a scope\n"
    "\n"
    "Exit status: 0 every file passed, 1 some file failed, 2 bad usage.\n";

const char *plural(unsigned n, const char *word) {
  static thread_local std::string text;
  text = std::to_string(n) + " " + word + (n == 1 ? "" : "s");
  return text.c_str();
}

int run(const std::vector<std::string> &args) {
  std::vector<std::string> rest;
  std::string schemaDir;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--schema-dir") {
      if (i + 1 >= args.size())
        return usageError(checkCommand, "--schema-dir needs a directory");
      schemaDir = args[++i];
    } else if (args[i].compare(0, 13, "--schema-dir=") == 0) {
      schemaDir = args[i].substr(13);
    } else {
      rest.push_back(args[i]);
    }
  }
  CommonOptions options;
  std::string error;
  if (!options.parse(rest, error))
    return usageError(checkCommand, error);
  if (options.positional.empty())
    return usageError(checkCommand, "no board file given");
  if (!schemaDir.empty())
    schemaDir = absolutePath(schemaDir);

  unsigned failed = 0;
  {
    MessageOutput output(options.jsonMessages);
    for (const std::string &file : options.positional) {
      output.resetCounts();
      std::string path = absolutePath(file);
      std::unique_ptr<HBOBoard> board(new HBOBoard());
      HBOBoardParser parser;
      bool ok = parser.parseFile(path, board.get(), true, schemaDir, nullptr);
      if (!ok)
        ++failed;
      std::string summary = path + ": " + (ok ? "passed" : "FAILED") + " (";
      summary += plural(output.errors(), "error");
      summary += ", ";
      summary += plural(output.warnings(), "warning");
      summary += ")";
      std::cerr.flush();
      std::cout << summary << std::endl;
    }
  }
  if (options.positional.size() > 1)
    std::cout << (options.positional.size() - failed) << " of " << options.positional.size()
              << " files passed" << std::endl;
  return failed ? Failure : Success;
}

} // namespace

const Command checkCommand = {
    "check", "check board files against their DTDs and every rule, and tell each finding",
    "boardtool check [--param NAME=VALUE]... [--schema-dir DIR] [--messages=json] FILE...", kHelp, run};

} // namespace boardtool
