// boardtool read: reads one board file the way the library loads boards,
// tells every message, and prints the board.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOParser.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kHelp[] =
    "Reads one board.xml (plain or gzip-compressed) as the board catalog would load it,\n"
    "and prints the board it yields.\n"
    "\n"
    "Options:\n"
    "  --param NAME=VALUE  set a parameter before reading (see 'boardtool params');\n"
    "                      may be repeated\n"
    "  --messages=json     write the messages to standard error as one JSON array of\n"
    "                      objects with \"severity\", \"id\", \"key\", \"args\" and \"text\"\n"
    "  --debug SCOPE       switch on debug output of a scope, such as board.parse;\n"
    "                      with board.parse the findings that a silent read keeps to\n"
    "                      itself are shown too\n"
    "\n"
    "Messages go to standard error as 'SEVERITY: [Board 49-NNN] text'. The board goes\n"
    "to standard output. A read reports findings that fail it only by the closing\n"
    "message [Board 49-56]; use --debug board.parse to see them one by one.\n"
    "\n"
    "Exit status: 0 the board was read, 1 the read failed, 2 bad usage.\n";

int run(const std::vector<std::string> &args) {
  CommonOptions options;
  std::string error;
  if (!options.parse(args, error))
    return usageError(readCommand, error);
  if (options.positional.size() != 1)
    return usageError(readCommand, options.positional.empty() ? "no board file given"
                                                              : "give exactly one board file");

  bool ok = false;
  {
    MessageOutput output(options.jsonMessages);
    // A failed read leaves nothing half-read behind: the board is dropped.
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    HBOParser parser;
    ok = parser.parseFile(absolutePath(options.positional[0]), board.get());
    if (ok)
      board->display(0);
  }
  std::cout.flush();
  return ok ? Success : Failure;
}

} // namespace

const Command readCommand = {
    "read", "read one board file and print the board",
    "boardtool read [--param NAME=VALUE]... [--messages=json] [--debug SCOPE]... FILE", kHelp, run};

} // namespace boardtool
