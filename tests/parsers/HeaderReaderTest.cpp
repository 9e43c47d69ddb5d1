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
  // Blanks only pass the character test and fail in the conversion itself.
  EXPECT_THROW(parser.context().convert2NonNegativeInteger(std::string("  "), "x"),
               std::invalid_argument);
  EXPECT_THROW(parser.context().convert2NonNegativeInteger(std::string("99999999999"), "x"),
               std::out_of_range);
}
