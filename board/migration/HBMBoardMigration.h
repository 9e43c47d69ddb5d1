// The rewrite of a board directory, for an outside tool: reads board.xml,
// part0_pins.xml and preset.xml from a source directory into one board of
// plain records, lets the caller change them, and writes the three files
// into a destination directory.
//
//   HBMBoard *board = HBMBoardMigration::getInstance().getBoard();
//   board->setSourcePath(src);
//   board->setDestinationPath(dst);
//   if (HBMBoardMigration::getInstance().parse()) { ...; ...write(); }
//
// The one board is shared by every user of the class, which is meant for
// one thread.
#ifndef BOARDLIB_HBMBOARDMIGRATION_H
#define BOARDLIB_HBMBOARDMIGRATION_H

#include "HBMBoard.h"

class HBMBoardMigration {
public:
  static HBMBoardMigration &getInstance();
  HBMBoard *getBoard() { return &s_board; }

  /// Reads board.xml, part0_pins.xml and preset.xml of the source path in
  /// that order, printing "PATH parsed" or "PATH not parsed" for each file
  /// found, and stops after the first that is not parsed. The result is
  /// uneven, and callers rely on it: false when board.xml or part0_pins.xml
  /// is missing; true when one of them is found but not parsed, although
  /// the files after it were not tried, and when preset.xml is missing;
  /// else the result of preset.xml's parse.
  bool parse();
  /// Writes board.xml, part0_pins.xml and preset.xml into the destination
  /// path, each only when the one before it was written; the result of the
  /// last one tried.
  bool write();

  HBMBoardMigration(const HBMBoardMigration &) = delete;
  HBMBoardMigration &operator=(const HBMBoardMigration &) = delete;

private:
  HBMBoardMigration() = default;

  static HBMBoard s_board;
};

#endif
