// What board.xml says of the board as a whole, and the shared conversions.
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

using test::dataPath;

namespace {

class FullBoard : public ::testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(HBOParser().parseFile(dataPath("full/board.xml"), &board)); }
  test::MessageRecorder msgs;
  HBOBoard board;
};

} // namespace

TEST_F(FullBoard, IdentityAndFiles) {
  EXPECT_EQ("kestrel-boards:full:1.2", board.getName());
  EXPECT_EQ("Full Header Board", board.getDisplayName());
  EXPECT_EQ("https://www.example.com/kestrel-boards/full", board.getSpecUrl());
  EXPECT_EQ("Board that carries every header element", board.getDescription());
  EXPECT_EQ(board.getDescription(), board.getLongDesc());
  EXPECT_EQ(dataPath("full/board.xml"), board.getBoardFile());
  EXPECT_EQ(dataPath("full/changelog.txt"), board.getChangeLogFilename());
  EXPECT_EQ("2.1", board.getBoardSchemaVersion());
}

TEST_F(FullBoard, OddAttributeValuesAreReadAsTheRulesSay) {
  EXPECT_FALSE(board.getSupportsCED()) << "supports_ced=\"maybe\" is no boolean";
  EXPECT_FALSE(board.isIntegratedBoard()) << "only the exact text \"true\" integrates";
}

TEST_F(FullBoard, RevisionsKeepTheLastTextOfARepeatedId) {
  ASSERT_EQ(2u, board.getCompatibleBoardRevisions().size());
  EXPECT_EQ("Rev C", board.getCompatibleBoardRevisions().at(1));
  EXPECT_EQ("Rev C", board.getBoardRevision());
}

TEST_F(FullBoard, ImagesLiveBesideTheBoardFile) {
  ASSERT_EQ(2u, board.getImages().size());
  HBOImage *top = board.getImages()[0];
  EXPECT_EQ(dataPath("full/full_top.png"), top->getName());
  EXPECT_EQ("high", top->getResolution()) << "an absent resolution is high";
  EXPECT_EQ("Top view", top->getDescription()) << "the last description wins";
  EXPECT_EQ(top->getName(), board.getBoardImage());
  EXPECT_EQ("low", board.getImages()[1]->getResolution());
}

TEST_F(FullBoard, JumpersComeIntoBeingAtTheirDescriptions) {
  const auto &jumpers = board.getJumpers();
  ASSERT_EQ(3u, jumpers.size()) << "J2 has no description, J3 has two";
  EXPECT_EQ("J1", jumpers[0]->getName());
  EXPECT_TRUE(jumpers[0]->getDefaultValue()) << "TRUE in any case counts";
  EXPECT_EQ(&board, jumpers[0]->getOwner());
  EXPECT_EQ("J3", jumpers[1]->getName());
  EXPECT_EQ("J3", jumpers[2]->getName());
  EXPECT_FALSE(jumpers[2]->getDefaultValue());
  EXPECT_EQ("Boot from JTAG, second entry", jumpers[2]->getDescription());
}

TEST_F(FullBoard, ParametersJtagAndConnectedBoards) {
  ASSERT_EQ(3u, board.getParameters().size());
  HBOParameter *p = board.getParameters()[1];
  EXPECT_EQ("ambient_temperature", p->getName());
  EXPECT_EQ("0", p->getValueMin());
  EXPECT_EQ("70", p->getValueMax());
  EXPECT_EQ("false", p->getReadOnly());

  EXPECT_EQ((std::vector<std::string>{"chain1", "chain2"}), board.getJtagChains());
  HBOBoardComponent *part0 = board.findBoardComponent("part0");
  ASSERT_NE(nullptr, part0);
  EXPECT_EQ("0", part0->getJtagPosition("chain1"));
  EXPECT_EQ("", part0->getJtagPosition("chain2"));

  EXPECT_EQ("kestrel-boards:falcon_eval:1.0", board.getConnectedBoards().at("base"));
  EXPECT_EQ("full#fmc", board.getConnectedComponents().at("base#fmc_lpc_connector"));
}

TEST(HeaderFailures, MissingIdentityOrEmptyRevisionListFailTheRead) {
  struct Case {
    const char *file;
    const char *id;
  } cases[] = {{"missing_vlnv/board.xml", "49-108"}, {"no_revisions_child/board.xml", "49-97"}};
  for (const Case &c : cases) {
    test::MessageRecorder msgs;
    HBOBoard board;
    HBOBoardParser reader;
    // Read without the DTD, which refuses both files before any reader runs.
    EXPECT_FALSE(reader.parseFile(dataPath(c.file), &board, false, "", nullptr)) << c.file;
    EXPECT_EQ(std::vector<std::string>{c.id}, test::queuedIds(reader)) << c.file;
    EXPECT_EQ(std::vector<std::string>{"49-56"}, msgs.ids()) << c.file;

    HBOBoard checked;
    HBOBoardParser checker;
    msgs.records.clear();
    EXPECT_FALSE(checker.parseFile(dataPath(c.file), &checked, true, "", nullptr)) << c.file;
    EXPECT_EQ(1u, msgs.count("49-105")) << c.file;
  }
}

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
