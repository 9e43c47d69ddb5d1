// boardtool migrate: reads a board directory into the rewrite tool's file
// model and writes its three files into another directory.
#include "Commands.h"
#include "HBMBoardMigration.h"

#include <iostream>

namespace boardtool {
namespace {

const char kAbout[] =
    "Reads board.xml, part0_pins.xml and preset.xml of SRC_DIR into the rewrite model\n"
    "and writes the three files into DST_DIR, which must exist: board.xml empty, the\n"
    "pins and the presets in the rewrite's fixed layouts. Each file replaces the one in\n"
    "DST_DIR only once it is written whole.\n";

const char kNotes[] =
    "Standard output carries the model's lines: 'PATH parsed' or 'PATH not parsed'\n"
    "for each file read, 'Component: NAME' for each component of board.xml, and\n"
    "'Cannot open' lines for files that could not be written. Messages go to\n"
    "standard error.\n"
    "\n"
    "Exit status: 0 when the model's parse and its write both succeeded, 1 otherwise,\n"
    "2 bad usage. The model counts a board or pin file that it found but could not\n"
    "read as parsed, writing what it has.\n";

int run(const Arguments &args) {
  if (args.operands.size() != 2)
    return usageError(migrateCommand, args.operands.size() < 2
                                          ? "give a source and a destination directory"
                                          : "unknown argument '" + args.operands[2] + "'");
  for (const std::string &dir : args.operands)
    if (dir.empty())
      return usageError(migrateCommand, "a directory may not be empty");

  bool ok = false;
  {
    MessageOutput output(args.jsonMessages());
    HBMBoardMigration &migration = HBMBoardMigration::getInstance();
    HBMBoard *board = migration.getBoard();
    board->setSourcePath(args.operands[0]);
    board->setDestinationPath(args.operands[1]);
    ok = migration.parse() && migration.write();
  }
  std::cout.flush();
  return ok ? Success : Failure;
}

} // namespace

const Command migrateCommand = {
    "migrate",
    cmd::migrate,
    "rewrite a board directory's files into another directory",
    "SRC_DIR DST_DIR",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
