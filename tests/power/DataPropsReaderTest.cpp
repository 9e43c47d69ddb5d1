// The free-form data of a board: the tree as the file has it, its queries by
// dotted path, the operating conditions, and files nested without end.
#include "HBOBoard.h"
#include "HBOBoardDataProps.h"
#include "HBOBoardParser.h"
#include "HXMLWInterface.h"
#include "ReadBoard.h"

#include <gtest/gtest.h>

using StringMap = HBOBoardDataProps::StringMap;

TEST(DataProps, OperatingConditionsAndDottedPaths) {
  test::ReadBoard read("dataprops_conditions");
  ASSERT_TRUE(read.ok);
  const HBOBoardDataProps &props = read.board.getBoardDataProps();
  EXPECT_TRUE(props.hasOperatingConditions());
  EXPECT_EQ("1.5", props.getStrOperatingCondition("SUPPLY_CURRENT_BUDGET.VCCAUX"));
  EXPECT_EQ("2.1", props.getStrDataProp("OPERATING_CONDITIONS.THETAJA"));
  EXPECT_EQ(nullptr, props.getData_("OPERATING_CONDITIONS.NOPE.VCCAUX"));
  EXPECT_EQ(nullptr, props.getData_("OPERATING_CONDITIONS.THETAJA.X")) << "a value is no group";
  EXPECT_EQ(nullptr, props.getData_("OPERATING_CONDITIONS.IGNORED")) << "unknown tags are skipped";
  EXPECT_EQ((StringMap{{"VCCAUX", "1.5"}, {"VCCINT", "8.0"}}),
            props.getMapOperatingCondition("SUPPLY_CURRENT_BUDGET"));
  StringMap all;
  EXPECT_TRUE(props.getOperatingConditions(all));
  EXPECT_EQ(4u, all.size());
  EXPECT_EQ("40", all["AMBIENT_TEMP"]);
}

TEST(DataProps, TheLaterOfTwoEntriesOfOneNameWins) {
  test::ReadBoard read("dataprops_conditions");
  ASSERT_TRUE(read.ok);
  const HBOBoardDataProps &props = read.board.getBoardDataProps();
  EXPECT_EQ("1", props.getStrDataProp("TO_GROUP.INNER")) << "a group after a value";
  EXPECT_EQ("last", props.getStrDataProp("TO_VALUE")) << "a value after a group";
  EXPECT_EQ("", props.getStrDataProp("NO_VALUE"));
  EXPECT_NE(nullptr, props.getData_("NO_VALUE"));
  EXPECT_EQ("yes", props.getStrDataProp("SECOND")) << "every data_properties element is read";
}

namespace {

// A board whose data_properties nest \p depth groups, with a value at the bottom.
std::string nestedGroups(int depth, std::string &path) {
  std::string text = "<board><data_properties>";
  path.clear();
  for (int i = 0; i < depth; ++i) {
    text += "<data_property_group name=\"g\">";
    path += "g.";
  }
  text += "<data_property name=\"leaf\" value=\"x\"/>";
  path += "leaf";
  for (int i = 0; i < depth; ++i)
    text += "</data_property_group>";
  return text + "</data_properties></board>";
}

} // namespace

TEST(DataProps, DeepTreesAreReadUpToTheBoundAndRefusedBeyondIt) {
  std::string path;
  HXMLWInterface deepDoc, hostileDoc;
  ASSERT_TRUE(deepDoc.readFromBuffer(nestedGroups(200, path)));
  std::string unused;
  ASSERT_TRUE(hostileDoc.readFromBuffer(nestedGroups(100000, unused)));

  HBOBoard board;
  board.setBoardFile("/boards/deep/board.xml");
  HBOBoardParser parser;
  parser.setBoard(&board);
  std::string error;
  ASSERT_TRUE(parser.readDataProperties(deepDoc.getRootElement(), error, nullptr));
  EXPECT_EQ("x", board.getBoardDataProps().getStrDataProp(path));
  EXPECT_TRUE(parser.getMessages().empty());

  EXPECT_FALSE(parser.readDataProperties(hostileDoc.getRootElement(), error, nullptr));
  ASSERT_EQ(1u, parser.getMessages().size());
  const auto &finding = parser.getMessages()[0];
  EXPECT_FALSE(finding.second) << "the file fails";
  EXPECT_EQ("49-69", finding.first.getId());
  EXPECT_EQ("/boards/deep/board.xml", finding.first.getArgs().at(0));
  EXPECT_EQ("x", board.getBoardDataProps().getStrDataProp(path))
      << "nothing of the refused tree reaches the board";
}
