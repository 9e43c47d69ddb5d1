// Pin files: properties, bank properties, design constraints, the
// uniqueness rules, and pins made for connections.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using test::dataPath;

TEST(PinFile, PinsCarryTheirPropertiesAndBankProperties) {
  test::MessageRecorder msgs;
  HBOBoard board;
  ASSERT_TRUE(HBOParser().parseFile(dataPath("components/board.xml"), &board));
  HBOBoardComponent *fpga = board.getActivePart();
  ASSERT_NE(nullptr, fpga);
  EXPECT_EQ(6u, fpga->getPins().size());
  HBOPinProps *pin = fpga->findPin("ddr3_dqs_p0");
  ASSERT_NE(nullptr, pin);
  EXPECT_EQ(fpga, pin->getOwner());
  EXPECT_EQ(3, pin->getPinIndex());
  EXPECT_EQ("K2", pin->getPinLoc());
  std::string iostd;
  pin->getPinIOStandard(iostd);
  EXPECT_EQ("DIFF_SSTL15", iostd);
  // Every property name is present, read or not.
  EXPECT_EQ(16u, pin->getPortProps().size());
  EXPECT_EQ("", pin->getPortProps().at("pull_type"));
  EXPECT_EQ("bar", pin->getIOBankPropertyValue("FOO"));
  EXPECT_EQ("1.5", pin->getIOBankPropertyValue("vcco"));
  EXPECT_EQ(pin, fpga->getPinByIndex(3));
}

TEST(PinFile, DesignConstraintsAreKeptOnTheComponent) {
  test::MessageRecorder msgs;
  HBOBoard board;
  ASSERT_TRUE(HBOParser().parseFile(dataPath("components/board.xml"), &board));
  const auto &constrs = board.getActivePart()->getDesignConstrs();
  ASSERT_EQ(2u, constrs.size());
  const auto &dci = std::get<HBOBoardComponent::DciCascadeConstr>(constrs[0]);
  EXPECT_EQ(14, dci.masterBank);
  EXPECT_EQ((std::vector<int>{15, 16, 17}), dci.slaveBanks);
  const auto &vref = std::get<HBOBoardComponent::InternalVrefConstr>(constrs[1]);
  EXPECT_EQ(15, vref.bank);
  EXPECT_FLOAT_EQ(0.75f, vref.voltage);
}

TEST(PinFile, FindingsThatFailTheRead) {
  struct Case {
    const char *file;
    std::vector<std::string> ids;
    const char *text;
  } cases[] = {
      {"pin_no_loc/board.xml", {"49-69"}, "Location constraints are not provided for 'led1'."},
      {"pin_no_index/board.xml", {"49-98"}, nullptr},
      {"dup_pin_index_strict/board.xml", {"49-69"}, "Pin index must be unique."},
      {"bad_design_constrs/board.xml", {"49-69", "49-69"}, "Must be a floating point number."},
  };
  for (const Case &c : cases) {
    test::MessageRecorder msgs;
    HBOBoard board;
    HBOBoardParser parser;
    EXPECT_FALSE(parser.parseFile(dataPath(c.file), &board, false, "", nullptr)) << c.file;
    EXPECT_EQ(c.ids, test::queuedIds(parser)) << c.file;
    if (c.text) {
      EXPECT_TRUE(test::queuedMentions(parser, c.text)) << c.file;
    }
  }
  // The part check needs both the strict checks and the sending flag.
  test::MessageRecorder msgs;
  HBOBoard silent, told;
  HBOBoardParser lenient, checking;
  EXPECT_TRUE(lenient.parseFile(dataPath("part_mismatch/board.xml"), &silent, false, "", nullptr));
  EXPECT_FALSE(checking.parseFile(dataPath("part_mismatch/board.xml"), &told, true, "", nullptr));
  EXPECT_EQ((std::vector<std::string>{"49-147", "49-56"}), msgs.ids());
}

TEST(PinFile, LenientChecksLetRepeatsPassAndAMissingFileOnlyWarn) {
  test::MessageRecorder msgs;
  HBOBoard lenient;
  HBOBoardParser parser;
  ASSERT_TRUE(parser.parseFile(dataPath("dup_pin_lenient/board.xml"), &lenient, true, "", nullptr));
  EXPECT_TRUE(msgs.records.empty());
  HBOBoardComponent *fpga = lenient.getActivePart();
  ASSERT_EQ(4u, fpga->getPins().size()) << "a repeated name keeps the last pin";
  EXPECT_EQ(4, fpga->findPin("led0")->getPinIndex());
  EXPECT_EQ("P5", fpga->findPin("led0")->getPinLoc());

  HBOBoard missing;
  EXPECT_TRUE(HBOParser().parseFile(dataPath("missing_pin_file/board.xml"), &missing));
  ASSERT_EQ(std::vector<std::string>{"49-55"}, msgs.ids());
  EXPECT_EQ(dataPath("missing_pin_file/part0_pins.xml"), msgs.records[0].args.at(0));
  EXPECT_TRUE(missing.getActivePart()->getPins().empty());
}

TEST(PinFile, PinsForConnectionsAreMadeOnlyWhereNoneExist) {
  test::MessageRecorder msgs;
  HBOBoard board;
  ASSERT_TRUE(HBOParser().parseFile(dataPath("minimal/board.xml"), &board));
  HBOBoardComponent *fpga = board.getActivePart();
  std::size_t before = fpga->getPins().size();
  HBOBoardParser parser;
  parser.setBoard(&board);
  EXPECT_TRUE(parser.createPinsForComponent("part0", 3, 1, "c"));
  EXPECT_EQ(before, fpga->getPins().size());
  EXPECT_TRUE(parser.createPinsForComponent("nothing", 0, 5, "c"));
  EXPECT_TRUE(parser.createPinsForComponent("part0", 2, 5, "c"));
  // Indexes 2 and 3 exist in the file; 4 and 5 are made.
  EXPECT_EQ(before + 2, fpga->getPins().size());
  ASSERT_NE(nullptr, fpga->findPin("part0_5"));
  EXPECT_EQ(fpga, fpga->findPin("part0_5")->getOwner());
  EXPECT_EQ(nullptr, fpga->findPin("part0_3"));
  EXPECT_TRUE(parser.getMessages().empty()) << "only a validating strict read tells";
}
