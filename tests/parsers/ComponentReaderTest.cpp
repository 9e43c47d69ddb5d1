// The components element: names, attributes, children, and the component
// rules that refuse a file.
#include "HBOBoard.h"
#include "HBOBoardCompMuxPosition.h"
#include "HBOBoardComponent.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBoardParser.h"
#include "HBOImage.h"
#include "HBOParameter.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using test::dataPath;

namespace {

class ComponentsBoard : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(HBOParser().parseFile(dataPath("components/board.xml"), &board));
  }
  HBOBoardComponent *component(const std::string &name) {
    HBOBoardComponent *c = board.findBoardComponent(name);
    EXPECT_NE(nullptr, c) << name;
    return c;
  }
  test::MessageRecorder msgs;
  HBOBoard board;
};

} // namespace

TEST_F(ComponentsBoard, NamesAreLowerCasedAndComposed) {
  EXPECT_EQ("kestrel-boards:components:1.0", board.getName());
  HBOBoardComponent *leds = component("user_leds");
  ASSERT_NE(nullptr, leds);
  EXPECT_EQ("user_leds", leds->getComponentName());
  // Vendor and board name come from the board as it stores them.
  EXPECT_EQ("kestrel-boards:components:user_leds:1.0", leds->getName());
  EXPECT_EQ(nullptr, board.findBoardComponent("User_LEDs"));
  EXPECT_EQ(leds, board.getCompByName("USER_LEDS"));
  EXPECT_EQ(&board, leds->getBoard());
}

TEST_F(ComponentsBoard, ConnectedToDefaultsToPLAndKeepsItsCase) {
  EXPECT_EQ("PL", component("user_leds")->getConnectedToLogicStr());
  EXPECT_EQ("PS", component("fmc")->getConnectedToLogicStr());
  EXPECT_TRUE(component("fmc")->isConnectedToPSOnly());
  EXPECT_TRUE(component("ddr3")->isConnectedToPSAndLogic());
}

TEST_F(ComponentsBoard, TheFpgaIsTheActivePartWithItsSupportedParts) {
  HBOBoardComponent *fpga = component("part0");
  EXPECT_EQ(fpga, board.getActivePart());
  EXPECT_EQ("kv20-fg256-1", board.getPartString());
  EXPECT_EQ("The FPGA", fpga->getDescription());
  EXPECT_EQ("Board description", fpga->getLongDesc());
  std::vector<std::string> parts;
  fpga->getAdditionalSupportedPartNames(parts, false);
  // Blanks are trimmed, a blank entry dropped, and the tag of an entry is exact.
  EXPECT_EQ(std::vector<std::string>{"kv20-fg256-2"}, parts);
  std::vector<std::string> none;
  component("ddr3")->getAdditionalSupportedPartNames(none, false);
  EXPECT_TRUE(none.empty()) << "only an fpga keeps additional parts";
  ASSERT_EQ(1u, fpga->getImages().size());
  EXPECT_EQ(dataPath("components/part0.png"), fpga->getImages()[0]->getName());
  EXPECT_EQ("high", fpga->getImages()[0]->getResolution());
}

TEST_F(ComponentsBoard, DriversSplitTheirListsWithoutTrimming) {
  std::vector<HBOBoardComponentDriver *> drivers;
  component("usb_uart")->getDrivers(drivers);
  ASSERT_EQ(1u, drivers.size());
  HBOBoardComponentDriver *d = drivers[0];
  EXPECT_EQ(std::vector<std::string>{""}, d->getOs());
  EXPECT_EQ((std::vector<std::string>{"desktop", "embedded"}), d->getPlatform());
  EXPECT_EQ(dataPath("components"), d->getDriverPath());
  EXPECT_EQ("Virtual COM port driver", d->getDescription());
  EXPECT_EQ(2u, d->getFiles().size());
  EXPECT_EQ("header", d->getFiles().at("vcp.h"));
}

TEST_F(ComponentsBoard, MuxPositionsTakeTheirPlaceWhenTheyHaveNoId) {
  std::map<int, HBOBoardCompMuxPosition *> positions;
  component("iic_mux")->getIICPositions(positions);
  // Implicit ids 0 and 2 and explicit 5 and 2: the later 2 wins.
  ASSERT_EQ(3u, positions.size());
  EXPECT_EQ("fmc", positions.at(0)->getComponent());
  EXPECT_EQ("pmod", positions.at(2)->getComponent());
  EXPECT_EQ(2u, positions.at(5)->getAddresses().size());
}

TEST_F(ComponentsBoard, ParametersConnectorsAndInlinePins) {
  std::string size;
  EXPECT_TRUE(component("ddr3")->getParamValue("size", size));
  EXPECT_EQ("256MB", size);
  EXPECT_EQ(2u, component("fmc")->getCompatibleConnectors().size());
  EXPECT_TRUE(component("fmc")->isLPCConnector());

  HBOBoardComponent *pmod = component("pmod");
  EXPECT_FALSE(pmod->isPMODConnector()) << "the predicates compare the sub type exactly";
  HBOPinProps *pin = pmod->getPinByIndex(1);
  ASSERT_NE(nullptr, pin);
  EXPECT_EQ("pmod_2", pin->getName());
  EXPECT_EQ("2", pin->getPinLoc());
  EXPECT_EQ("PULLUP", pin->getPortProps().at("pull_type"));
  EXPECT_EQ(nullptr, pin->getOwner()) << "inline pins get no owner";
}

TEST(ComponentRules, AnUnknownTypeEndsTheBoardWithItsRule) {
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  EXPECT_FALSE(parser.parseFile(dataPath("bad_component_type/board.xml"), &board, true, "", nullptr));
  ASSERT_EQ((std::vector<std::string>{"49-69", "49-56"}), msgs.ids());
  EXPECT_EQ("Component Type should be fpga/chip/connector for "
            "'kestrel-boards:bad_component_type:gizmo:1.0'.",
            msgs.records[0].args.at(1));
  // The components before the bad one stay on the board the caller discards.
  EXPECT_NE(nullptr, board.findBoardComponent("part0"));
  EXPECT_EQ(nullptr, board.findBoardComponent("led_4bits"));
}

TEST(ComponentRules, EachRuleOfAComponent) {
  HBOBoard board;
  board.setBoardFile("/b/board.xml");
  HBOBoardParser parser;
  parser.setBoard(&board);
  auto check = [&](const std::string &type, const std::string &subType,
                   const std::string &connectedTo, std::size_t findings) {
    HBOBoardComponent c;
    c.setName("v:b:c:1");
    c.setType(type);
    c.setSubType(subType);
    c.setConnectedToLogicStr(connectedTo);
    std::size_t before = parser.getMessages().size();
    bool ok = parser.validator().validateComponent(&c);
    EXPECT_EQ(findings == 0, ok) << type << "/" << subType << "/" << connectedTo;
    EXPECT_EQ(findings, parser.getMessages().size() - before)
        << type << "/" << subType << "/" << connectedTo;
  };
  check("FPGA", "", "PL", 0);          // fpga in any case, no sub type needed
  check("connector", "Chip", "PS", 0); // sub types ignore case
  check("", "", "pl", 2);              // empty and unknown type
  check("chip", "", "pl", 2);          // empty and unknown sub type
  check("connector", "som240", "pl", 1);
  check("chip", "led", "fabric", 1);
  EXPECT_FALSE(parser.validator().validateComponent(nullptr));
  EXPECT_EQ("Component v:b:c:1 attribute 'connected_to' has invalid value 'fabric', valid values "
            "are 'pl', 'ps', or 'ps_and_pl'",
            parser.getMessages().back().first.getArgs().at(1));
}
