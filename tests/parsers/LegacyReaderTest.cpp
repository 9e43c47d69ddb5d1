// The legacy board-part reader: identity, ports and their pin positions,
// interfaces, presets, and the files it refuses.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using test::dataPath;

namespace {

std::vector<HBOPinProps *> recordsOf(const HBOBoardComponent &part, const std::string &port) {
  HBOModelPort *found = nullptr;
  std::vector<HBOPinProps *> records;
  if (part.getModelPortByName(found, port) && found)
    found->getPortPropsSeq(records);
  return records;
}

// "name index loc" of each record, or "-" for a record no pin filled.
std::vector<std::string> describe(const std::vector<HBOPinProps *> &records) {
  std::vector<std::string> out;
  for (const HBOPinProps *pin : records)
    out.push_back(pin->hasPinLoc() ? pin->getName() + " " + std::to_string(pin->getPinIndex()) +
                                         " " + pin->getPinLoc()
                                   : "-");
  return out;
}

} // namespace

TEST(LegacyReader, ReadsIdentityPortsPinsInterfacesAndPresets) {
  test::MessageRecorder msgs;
  HBOBoard board;
  ASSERT_TRUE(HBOParser().parseFile(dataPath("legacy/reader/board.xml"), &board));
  // The interface's preset file does not exist: it is not kept, silently.
  EXPECT_TRUE(msgs.records.empty()) << msgs.records[0].line;

  EXPECT_EQ("1.1", board.getBoardSchemaVersion());
  EXPECT_EQ("kestrel-boards:reader:", board.getName());
  EXPECT_EQ("Reader Board", board.getDisplayName());
  EXPECT_EQ("Legacy reader rules", board.getDescription());
  EXPECT_EQ((std::map<int, std::string>{{0, "A"}}), board.getCompatibleBoardRevisions());
  EXPECT_TRUE(board.getMigratedFromSchema().empty());

  HBOBoardComponent *part = board.getActivePart();
  ASSERT_NE(nullptr, part);
  EXPECT_EQ("kestrel-boards:reader:reader_part:", part->getName());
  EXPECT_EQ("kv10-tq64-1", part->getPartString());
  EXPECT_EQ("3", part->getJtagPosition());
  EXPECT_TRUE(part->getComponentName().empty());
  std::vector<HBOBoardComponent *> components;
  board.getBoardComponentsVec(components);
  EXPECT_EQ(std::vector<HBOBoardComponent *>{part}, components);

  // left alone: a vector down to 0, whose records no pin fills.
  EXPECT_EQ(std::vector<std::string>(4, "-"), describe(recordsOf(*part, "down")));
  // Index 5 is the record at position 1 whichever way the range runs;
  // index 1 lies below both ranges and is skipped.
  EXPECT_EQ((std::vector<std::string>{"-", "desc[5] 5 D5", "-", "-"}),
            describe(recordsOf(*part, "desc")));
  EXPECT_EQ((std::vector<std::string>{"-", "asc[5] 5 A5", "-", "-"}),
            describe(recordsOf(*part, "asc")));
  std::vector<HBOPinProps *> clk = recordsOf(*part, "clk");
  ASSERT_EQ(1u, clk.size());
  EXPECT_EQ("clk 0 C1", describe(clk)[0]);
  EXPECT_EQ("LVDS", clk[0]->getPinIOStandard());
  EXPECT_EQ("TRUE", clk[0]->getPinDiffTerm());
  EXPECT_EQ("2.5", clk[0]->getIOBankPropertyValue("vcco"));
  EXPECT_EQ("none", clk[0]->getIOBankPropertyValue("vref"));
  EXPECT_EQ("12", recordsOf(*part, "desc")[1]->getPinDrive());

  HBOBusIf *leds = part->getBusIfByName("LEDS");
  ASSERT_NE(nullptr, leds);
  EXPECT_EQ("master", leds->getInterfaceMode());
  EXPECT_EQ("leds_preset", leds->getPresetProcName());
  EXPECT_TRUE(leds->getPresetFile().empty());
  std::string type;
  leds->getAbstractTypeVLNV(type, ":");
  EXPECT_EQ("quarnel-ip:interface:gpio_rtl:1.0", type);
  std::string width;
  EXPECT_TRUE(leds->getParamValue("C_GPIO_WIDTH", width));
  EXPECT_EQ("4", width);
  std::string owner;
  HBOModelPort *desc = nullptr;
  ASSERT_TRUE(part->getModelPortByName(desc, "desc"));
  EXPECT_TRUE(desc->getOwnerBusIf(owner));
  EXPECT_EQ("leds", owner);

  // Both records of the procedure, each with its parameters, the model
  // parameters after the user ones.
  std::vector<HBOIpPreset *> presets = board.findPresetProc("leds_preset");
  ASSERT_EQ(2u, presets.size());
  EXPECT_EQ("leds_preset:quarnel-ip:ip:gpio_ctl:2.0", presets[0]->getPresetName());
  std::string value;
  EXPECT_TRUE(presets[0]->getParamValue("C_ALL_OUTPUTS", value));
  EXPECT_EQ("1", value);
  EXPECT_TRUE(presets[0]->getParamValue("CONFIG.C_GPIO_WIDTH", value));
  EXPECT_EQ("8", value);
  EXPECT_EQ("leds_preset:quarnel-ip:ip:gpio_lite:1.0", presets[1]->getPresetName());
}

TEST(LegacyReader, AMissingPresetFileIsToldAndTheReadGoesOn) {
  test::MessageRecorder msgs;
  HBOBoard board;
  EXPECT_TRUE(HBOParser().parseFile(dataPath("legacy/missing_preset/board.xml"), &board));
  EXPECT_EQ(std::vector<std::string>{"49-62"}, msgs.ids());
  EXPECT_EQ(dataPath("legacy/missing_preset/preset.xml"), msgs.records[0].args.at(0));
}

TEST(LegacyReader, RefusedFilesAreTheirMessageAndAFailedRead) {
  struct Case {
    const char *dir;
    std::vector<std::string> ids;
  } cases[] = {
      {"no_revision", {"49-108", "49-59"}},     {"no_part_info", {"49-109", "49-59"}},
      {"empty_part_name", {"49-109", "49-59"}}, {"bad_type", {"49-37", "49-4"}},
      {"bad_parameter", {"49-38", "49-4"}},     {"bad_port_map", {"49-39", "49-4"}},
  };
  for (const Case &c : cases) {
    test::MessageRecorder msgs;
    HBOBoard board;
    std::string file = dataPath(std::string("legacy/") + c.dir + "/board.xml");
    EXPECT_FALSE(HBOParser().parseFile(file, &board)) << c.dir;
    EXPECT_EQ(c.ids, msgs.ids()) << c.dir;
    // The component stays with the board, which frees it.
    EXPECT_NE(nullptr, board.getActivePart()) << c.dir;
  }
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOParser().parseFile(dataPath("legacy/bad_parameter/board.xml"), &board);
  ASSERT_EQ(2u, msgs.records.size());
  EXPECT_EQ((std::vector<std::string>{"param", "leds"}), msgs.records[0].args);
  EXPECT_EQ("WARNING", msgs.records[0].severityName);
  EXPECT_EQ("CRITICAL WARNING", msgs.records[1].severityName);
}

TEST(LegacyReader, WhatTheValidatingParseRefusesFailsWithItsText) {
  // An entity that nothing declares: the document reader keeps it as text,
  // the validating parse refuses the file.
  test::ScratchDir dir;
  std::string file =
      dir.write("board.xml", "<board schema_version=\"1.0\" vendor=\"v\" "
                             "board_name=\"b\" board_revision=\"A\">\n"
                             "<part_info part_name=\"kv10\">&undeclared;</part_info>\n"
                             "</board>\n");
  test::MessageRecorder msgs;
  HBOBoard board;
  EXPECT_FALSE(HBOParser().parseFile(file, &board));
  EXPECT_EQ((std::vector<std::string>{"49-115", "49-59"}), msgs.ids());
  EXPECT_EQ(file, msgs.records[0].args.at(1));
}

TEST(LegacyReader, ADoctypeOfTheFileReadsNothingElse) {
  test::ScratchDir dir;
  dir.write("secret.txt", "<oops>");
  std::string file = dir.write(
      "board.xml",
      "<?xml version=\"1.0\"?>\n"
      "<!DOCTYPE board SYSTEM \"http://example.invalid/dtds/other.dtd\" [\n"
      "  <!ENTITY secret SYSTEM \"secret.txt\">\n"
      "]>\n"
      "<board schema_version=\"1.0\" vendor=\"v\" board_name=\"b\" board_revision=\"A\">\n"
      "  <part_info part_name=\"kv10\">&secret;</part_info>\n"
      "</board>\n");
  test::MessageRecorder msgs;
  HBOBoard board;
  // Neither the DTD on the network nor the file of the entity is read: had
  // either been, the parse would have failed on it.
  EXPECT_TRUE(HBOParser().parseFile(file, &board));
  EXPECT_TRUE(msgs.records.empty());
}
