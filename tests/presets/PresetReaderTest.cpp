// Where the preset file is looked for, and a preset file that fails its own
// DTD. The test boards' presets and IP associated rules are read whole in
// ReadGoldenTest.
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOIpPreset.h"
#include "HEXError.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

using test::dataPath;

TEST(PresetFile, NamesAreTakenInTheBoardsFolderAndMayNotLeaveIt) {
  test::MessageRecorder msgs;
  HBOBoard board;
  board.setBoardFile(dataPath("presets_basic/board.xml"));
  HBOBoardParser parser;
  parser.setBoard(&board);
  std::map<std::string, HBOIpPreset *> scratch;

  EXPECT_TRUE(parser.presetReader().parsePresetFile("./preset.xml", scratch));
  EXPECT_TRUE(scratch.empty()) << "the records go to the board only";
  EXPECT_EQ(2u, board.getIpPresets().size());
  // Read again, the records replace those of the first read.
  EXPECT_TRUE(parser.presetReader().parsePresetFile("preset.xml", scratch));
  EXPECT_EQ(3u, board.getIpPresets().at("DDR3_SDRAM_PRESET").size());
  EXPECT_TRUE(msgs.records.empty());

  // A name that leads out of the board's folder is refused, though this one
  // comes back to the very file: a board must not have the system's files
  // read.
  EXPECT_FALSE(parser.presetReader().parsePresetFile("../presets_basic/preset.xml", scratch));
  EXPECT_FALSE(parser.presetReader().parsePresetFile("absent.xml", scratch));
  ASSERT_EQ((std::vector<std::string>{"49-181", "49-62"}), msgs.ids());
  EXPECT_EQ((std::vector<std::string>{"preset_file", "../presets_basic/preset.xml",
                                      dataPath("presets_basic/board.xml")}),
            msgs.records[0].args);
  EXPECT_EQ(dataPath("presets_basic/absent.xml"), msgs.records[1].args.at(0));
}

TEST(PresetFile, AFileThatIsNoDocumentRaises) {
  HBOBoard board;
  board.setBoardFile(dataPath("presets_malformed/board.xml"));
  HBOBoardParser parser;
  parser.setBoard(&board);
  std::map<std::string, HBOIpPreset *> scratch;
  try {
    parser.presetReader().parsePresetFile("preset.xml", scratch);
    ADD_FAILURE() << "nothing was raised";
  } catch (const HEXError &e) {
    EXPECT_EQ("49-111", e.getMessage().getId());
    EXPECT_EQ(std::vector<std::string>{dataPath("presets_malformed/preset.xml")},
              e.getMessage().getArgs());
  }
}

// A check reads on past the DTD's findings, so that one run tells what the
// reader finds too; the read still fails.
TEST(PresetFile, AFileThatFailsItsSchemaFailsTheReadButIsStillRead) {
  {
    // A validating build refuses a file it cannot open.
    test::MessageRecorder quiet;
    if (HBOBoardParser().isValidXML(dataPath("presets_bad_file/no_such.xml"), "preset"))
      GTEST_SKIP() << "this build does not validate against DTDs";
  }
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  EXPECT_FALSE(parser.parseFile(dataPath("presets_bad_file/board.xml"), &board, true,
                                dataPath("presets_bad_file/schemas"), nullptr));
  EXPECT_LE(1u, msgs.count("49-105"));
  EXPECT_EQ(0u, msgs.count("49-63"));
  EXPECT_EQ(1u, msgs.count("49-56"));
}
