// The number conversion that the readers share, on the text that no test
// board holds; what the strict and lenient reads make of the boards' text
// is in the read golden files.
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HEXError.h"

#include <gtest/gtest.h>

TEST(NumberConversion, StrictAndLenientForms) {
  HBOBoard board;
  board.setBoardFile("/boards/b/board.xml");
  HBOBoardParser parser;
  parser.setBoard(&board);

  EXPECT_TRUE(HBOParseContext::isNonNegativeInteger(" 12"));
  EXPECT_FALSE(HBOParseContext::isNonNegativeInteger(""));
  EXPECT_FALSE(HBOParseContext::isNonNegativeInteger("1.5"));

  EXPECT_EQ(12, parser.context().convert2NonNegativeInteger(std::string(" 12"), "pin index"));
  // Blanks only pass the character test; neither they nor a number that an
  // int cannot hold escape as a bare library exception.
  for (const char *bad : {"  ", "99999999999"}) {
    try {
      parser.context().convert2NonNegativeInteger(std::string(bad), "x");
      ADD_FAILURE() << "accepted: " << bad;
    } catch (const HEXError &e) {
      EXPECT_EQ("@49-69@%s%s", e.getMessage().getKey()) << bad;
    }
  }
}
