// boardtool read: reads one board file the way the library loads boards,
// tells every message, and prints the board.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOParser.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kAbout[] =
    "Reads one board.xml (plain or gzip-compressed) as the board catalog would load it,\n"
    "and prints the board it yields. A legacy board part (schema 1.0 or 1.1) is printed\n"
    "as its file says, without the lift to the current schema that the catalog applies.\n";

const char kNotes[] =
    "Messages go to standard error as 'SEVERITY: [Board 49-NNN] text'. The board goes\n"
    "to standard output. A read reports findings that fail it only by the closing\n"
    "message [Board 49-56]; use --debug board.parse to see them one by one.\n"
    "\n"
    "Exit status: 0 the board was read, 1 the read failed, 2 bad usage.\n";

int run(const Arguments &args) {
  if (args.operands.size() != 1)
    return usageError(readCommand, args.operands.empty() ? "no board file given"
                                                         : "give exactly one board file");

  bool ok = false;
  {
    MessageOutput output(args.jsonMessages());
    // A failed read leaves nothing half-read behind: the board is dropped.
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    HBOParser parser;
    ok = parser.parseFile(absolutePath(args.operands[0]), board.get());
    if (ok)
      board->display(0);
  }
  std::cout.flush();
  return ok ? Success : Failure;
}

} // namespace

const Command readCommand = {
    "read",
    cmd::read,
    "read one board file and print the board",
    "FILE",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
