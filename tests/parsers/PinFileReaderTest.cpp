// Pins made for connections. The pin files of the test boards are read
// whole in ReadGoldenTest.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using test::dataPath;

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
