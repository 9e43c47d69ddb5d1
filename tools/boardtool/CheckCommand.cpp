// boardtool check: holds board files to their DTDs and to every rule of the
// readers, and tells each finding.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kAbout[] =
    "Checks board files: each FILE (a board.xml) is validated against its DTD, together\n"
    "with the pin files and the preset file it names, and read with every rule of the\n"
    "readers, strict checks included for schema 2.2 and above (--param\n"
    "board.enable2020Checks=true applies them to older schemas too). Every finding is\n"
    "told on standard error, one per line, in the order of the file; findings of the\n"
    "DTD carry the line of the file on disk. Standard output gets one summary line\n"
    "per file.\n";

const char kNotes[] = "Exit status: 0 every file passed, 1 some file failed, 2 bad usage.\n";

const char *plural(unsigned n, const char *word) {
  static thread_local std::string text;
  text = std::to_string(n) + " " + word + (n == 1 ? "" : "s");
  return text.c_str();
}

int run(const Arguments &args) {
  if (args.operands.empty())
    return usageError(checkCommand, "no board file given");
  std::string schemaDir = args.value("--schema-dir");
  if (!schemaDir.empty())
    schemaDir = absolutePath(schemaDir);

  unsigned failed = 0;
  {
    MessageOutput output(args.jsonMessages());
    for (const std::string &file : args.operands) {
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
  if (args.operands.size() > 1)
    std::cout << (args.operands.size() - failed) << " of " << args.operands.size()
              << " files passed" << std::endl;
  return failed ? Failure : Success;
}

} // namespace

const Command checkCommand = {
    "check",
    cmd::check,
    "check board files against their DTDs and every rule, and tell each finding",
    "FILE...",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
