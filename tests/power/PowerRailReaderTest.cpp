// The power network of a board: how rails, supplies and phases are read, and
// every rule that a network can break.
#include "ComMsgMgrInstance.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOPowerRail.h"
#include "HXMLWInterface.h"
#include "ReadBoard.h"

#include <gtest/gtest.h>

#include <stdexcept>

using Args = std::vector<std::string>;
using Names = std::vector<std::string>;

TEST(PowerRails, ANetworkWhosePhasesAddUpIsReadAsWritten) {
  test::ReadBoard read("power_network");
  ASSERT_TRUE(read.ok);
  EXPECT_TRUE(read.parser.getMessages().empty());
  const std::vector<HBOPowerRail> &rails = read.board.getPowerRails();
  ASSERT_EQ(4u, rails.size()) << "tags are matched without regard to case";

  EXPECT_EQ(2, rails[0].getNumPhases());
  EXPECT_EQ((Names{"VCCINT", "VCCBRAM"}), rails[0].getSupplyNames());

  EXPECT_TRUE(rails[1].isDirect()) << "TRUE in any case is true";
  EXPECT_FALSE(rails[2].isDirect()) << "only the word true counts";
  EXPECT_EQ((Names{"VCCO_15", "VCC_CORE"}), rails[1].getMemberNames()) << "other tags are skipped";
  EXPECT_EQ(1, rails[1].getMemberPhases("VCC_CORE"));
  EXPECT_EQ(0, rails[1].getNumPhases());

  const HBOPowerRail &top = rails[3];
  EXPECT_EQ((Names{"VCC_IO", "VCCAUX", "VCC_AUX"}), top.getMemberNames());
  EXPECT_EQ((Names{"VCCAUX"}), top.getSupplyNames());
  EXPECT_EQ((Names{"VCC_IO", "VCC_AUX"}), top.getRailNames());
  EXPECT_FALSE(read.board.getBoardDataProps().hasOperatingConditions());
}

TEST(PowerRails, EveryNameRuleIsToldAndAllRailsAreStillRead) {
  test::ReadBoard read("power_names");
  EXPECT_FALSE(read.ok);
  EXPECT_EQ(5u, read.board.getPowerRails().size());
  EXPECT_EQ((std::vector<Args>{{"S1", "R1"}}), read.queued("49-118"));
  EXPECT_EQ((std::vector<Args>{{"R1"}}), read.queued("49-119"));
  EXPECT_EQ((std::vector<Args>{{"R1", "R3"}}), read.queued("49-120"))
      << "R1 is already drawn on by S2";
  EXPECT_EQ((std::vector<Args>{{"R3"}}), read.queued("49-121"));
  EXPECT_EQ((std::vector<Args>{{"S2"}}), read.queued("49-122"));
  EXPECT_EQ((std::vector<Args>{{"R3", "R3"}, {"LATER", "R3"}}), read.queued("49-123"))
      << "a member rail must stand earlier in the file";
  EXPECT_EQ((std::vector<Args>{{"S1", "R1"}, {"S2", "R3"}}), read.queued("49-124"));
  EXPECT_EQ((std::vector<Args>{{"S2", "R3"}}), read.queued("49-125"));
  ASSERT_EQ(10u, read.parser.getMessages().size());
  for (const auto &entry : read.parser.getMessages()) {
    EXPECT_EQ(ComMsg::Error, entry.first.getSeverity());
    EXPECT_FALSE(entry.second) << entry.first.getKey() << " must fail the read";
  }
}

TEST(PowerRails, PhasesThatDoNotAddUpFailTheRead) {
  test::ReadBoard read("power_phases");
  EXPECT_FALSE(read.ok);
  // One of two phases drawn; and 3 + 1 drawn from two, the remainder gone
  // negative after the first.
  EXPECT_EQ((std::vector<Args>{{"2", "P2", "U1:1"}, {"2", "P3", "U2:3, U3:1"}}),
            read.queued("49-142"));
  EXPECT_EQ((std::vector<Args>{{"P3", "U2"}, {"P3", "U3"}, {"P4", "U5"}}), read.queued("49-134"))
      << "above what remains, and below 1";
  EXPECT_EQ((std::vector<Args>{{"P3", "U4"}}), read.queued("49-135"));
  EXPECT_EQ((std::vector<Args>{{"U1", "U5"}}), read.queued("49-136"));
  EXPECT_EQ((std::vector<Args>{{"P4", "1", "0"}}), read.queued("49-141"))
      << "a count of 0 draws nothing";
  EXPECT_EQ(8u, read.parser.getMessages().size());
}

TEST(PowerRails, EmptyOrNonNumericInput) {
  HBOBoard board;
  HBOBoardParser parser;
  parser.setBoard(&board);
  std::string error;

  HXMLWInterface empty;
  ASSERT_TRUE(empty.readFromBuffer("<board><power_rails/></board>"));
  EXPECT_TRUE(parser.readPowerRails(*empty.getRootElement(), error));
  EXPECT_TRUE(board.getPowerRails().empty());
  EXPECT_TRUE(parser.getMessages().empty());

  for (const char *text :
       {"<board><power_rails><power_rail name=\"R\" num_phases=\"two\"/></power_rails></board>",
        "<board><power_rails><power_rail name=\"P\" num_phases=\"1\"/><power_rail name=\"R\">"
        "<rail name=\"P\" phased_power_source=\"\xC2\xBD\"/></power_rail></power_rails></board>"}) {
    HXMLWInterface doc;
    ASSERT_TRUE(doc.readFromBuffer(text));
    EXPECT_THROW(parser.readPowerRails(*doc.getRootElement(), error), std::invalid_argument)
        << text;
  }
}

TEST(PowerRails, StubDataReplacesTheFilesRailsAndData) {
  test::ParamScope stub("board.dataProps.stubData", "true");
  test::ReadBoard read("power_network");
  ASSERT_TRUE(read.ok);
  const std::vector<HBOPowerRail> &rails = read.board.getPowerRails();
  ASSERT_FALSE(rails.empty());
  EXPECT_EQ("BOARD_PARENT_RAIL", rails.back().getName());
  EXPECT_EQ((Names{"BOARD_CHILD_RAIL"}), rails.back().getRailNames());
  // The file has no data properties; the stub brings operating conditions.
  EXPECT_FALSE(read.board.getBoardDataProps().getMapOperatingCondition("VOLTAGE").empty());
}
