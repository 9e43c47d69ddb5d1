// The power rail reader on input that is no network: the test boards'
// networks and the rules they break are read whole in ReadGoldenTest.
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HXMLWInterface.h"

#include <gtest/gtest.h>

#include <stdexcept>

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
