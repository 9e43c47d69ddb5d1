// The rules that refuse a component. Whole boards are read in
// ReadGoldenTest.
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
