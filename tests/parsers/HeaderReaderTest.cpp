// The conversions that the readers share: numbers, and hierarchical
// parameters as Tcl list text. Whole boards are read in ReadGoldenTest.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOImage.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "HBOParser.h"
#include "HEXError.h"
#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

TEST(NumberConversion, StrictAndLenientForms) {
  HBOBoard board;
  board.setBoardFile("/boards/b/board.xml");
  HBOBoardParser parser;
  parser.setBoard(&board);

  EXPECT_TRUE(HBOParseContext::isNonNegativeInteger(" 12"));
  EXPECT_FALSE(HBOParseContext::isNonNegativeInteger(""));
  EXPECT_FALSE(HBOParseContext::isNonNegativeInteger("-1"));
  EXPECT_FALSE(HBOParseContext::isNonNegativeInteger("1.5"));

  EXPECT_EQ(12, parser.context().convert2NonNegativeInteger(std::string(" 12"), "pin index"));
  try {
    parser.context().convert2NonNegativeInteger(std::string("-1"), "revision id");
    FAIL() << "a negative number must raise";
  } catch (const HEXError &e) {
    EXPECT_EQ("49-69", e.getMessage().getId());
    EXPECT_EQ("/boards/b/board.xml", e.getMessage().getArgs().at(0));
    EXPECT_EQ("revision id value \"-1\" is not valid, must be a non-negative integer.",
              e.getMessage().getArgs().at(1));
  }
  // Blanks only pass the character test and fail in the conversion itself.
  EXPECT_THROW(parser.context().convert2NonNegativeInteger(std::string("  "), "x"),
               std::invalid_argument);
  EXPECT_THROW(parser.context().convert2NonNegativeInteger(std::string("99999999999"), "x"),
               std::out_of_range);

  // The pointer form keeps the old leniency unless the checks are strict.
  EXPECT_EQ(0,
            parser.context().convert2NonNegativeInteger(static_cast<const char *>(nullptr), "x"));
  EXPECT_EQ(-3, parser.context().convert2NonNegativeInteger("-3", "x"));
  EXPECT_EQ(7, parser.context().convert2NonNegativeInteger("7abc", "x"));
  parser.setStrictChecks(true);
  EXPECT_THROW(parser.context().convert2NonNegativeInteger("-3", "x"), HEXError);
}

TEST(HierarchicalParameters, FlattenIntoTclListText) {
  HXMLWInterface doc;
  ASSERT_TRUE(doc.readFromBuffer(
      "<user_hier_parameter name=\"top\">"
      "  <user_hier_parameter name=\"a\">"
      "    <user_parameter name=\"x\" value=\"1\"/><user_parameter name=\"y\" value=\"2\"/>"
      "  </user_hier_parameter>"
      "  <user_hier_parameter name=\"b\"><user_parameter name=\"z\" value=\"3\"/>"
      "  </user_hier_parameter>"
      "  <user_parameter name=\"c\" value=\"4\"/>"
      "</user_hier_parameter>"));
  HBOBoardParser parser;
  std::string out;
  EXPECT_TRUE(parser.presetReader().readHierParam(doc.getRootElement(), out));
  EXPECT_EQ("a {{x 1} {y 2}} b {z 3} c 4", out);

  HXMLWInterface old;
  ASSERT_TRUE(old.readFromBuffer("<parameter name=\"top\">"
                                 "<parameter name=\"a\" value_type=\"hier\">"
                                 "<parameter name=\"x\" value=\"1\"/></parameter>"
                                 "<parameter name=\"b\" value=\"5\"/></parameter>"));
  out.clear();
  EXPECT_TRUE(parser.presetReader().readHierParam(old.getRootElement(), out));
  EXPECT_EQ("a {x 1} b 5", out);

  HXMLWInterface empty;
  ASSERT_TRUE(empty.readFromBuffer("<user_hier_parameter name=\"e\"/>"));
  out.clear();
  EXPECT_TRUE(parser.presetReader().readHierParam(empty.getRootElement(), out));
  EXPECT_EQ("", out);
  EXPECT_FALSE(parser.presetReader().readHierParam(nullptr, out));
}
