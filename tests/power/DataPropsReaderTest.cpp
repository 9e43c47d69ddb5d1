// The free-form data of a board nested without end; the test board's data
// are read whole in ReadGoldenTest.
#include "HBOBoard.h"
#include "HBOBoardDataProps.h"
#include "HBOBoardParser.h"
#include "HXMLWInterface.h"

#include <gtest/gtest.h>

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
