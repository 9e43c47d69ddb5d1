#include "HBOBoardUtils.h"

#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOModelPort.h"
#include "HPAParamMgr.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

using namespace HBOBoardUtils;
using Words = std::vector<std::string>;

namespace {
int sign(int v) { return (v > 0) - (v < 0); }
} // namespace

TEST(VersionCompare, TextNumbersAndDigitSums) {
  struct Case {
    const char *a, *b;
    int sign;
  };
  const Case cases[] = {
      {"", "", 0},
      {"", "a", -1},
      {"a", "", 1},
      {"1.0", "", 1},
      {"1.0", "beta", 1},
      {"beta", "1.0", -1},
      {"v2.0", "0.1", -1},
      {"a", "b", -1},
      {"abc", "ab", 1},
      {"beta", "beta", 0},
      // Each field is the sum of its digits.
      {"1.10", "1.2", -1},
      {"1.12", "1.4", -1},
      {"1.9", "1.17", 1},
      {"1.9", "1.18", 0},
      {"10.0", "2.0", -1},
      {"1.2", "1.11", 0},
      // Only the leading digits of the first two fields are read.
      {"1", "1.0", 0},
      {"1.", "1.0", 0},
      {"1.2.3", "1.2.7", 0},
      {"2a", "2", 0},
      {"1.x", "1", 0},
      {"1.1rc", "1.0", 1},
  };
  for (const Case &c : cases)
    EXPECT_EQ(sign(version_compare(c.a, c.b)), c.sign) << c.a << " vs " << c.b;
  EXPECT_EQ(version_compare("", "a"), -1);
  EXPECT_EQ(version_compare("3", "1.2"), 2); // the difference of the majors
}

TEST(IsEqualOrGreater, PositionalFieldsOfEqualCount) {
  const char *const greaterOrEqual[][2] = {
      {"2.1", "2.0"},  {"3.0", "2.0"},     {"2.0", "2.0"}, {"V2.0", "v2.0"}, {"10.0", "9.0"},
      {"2.10", "2.9"}, {"2.1.0", "2.0.9"}, {"3", "2"},     {"02", "2"},      {"1", "x"}};
  const char *const notGreaterOrEqual[][2] = {
      {"1.0", "2.0"}, {"2.0", "2.1"},     {"2.1", "2.10"},    {"2.0.0", "2.0"}, {"2", "2.0"},
      {"3", "2.0"},   {"2.0.1", "2.0.2"}, {"2.0.9", "2.0.1"}, {"2.00", "2.0"},  {"x", "1"}};
  for (const auto &c : greaterOrEqual)
    EXPECT_TRUE(isEqualOrGreater(c[0], c[1])) << c[0] << " vs " << c[1];
  for (const auto &c : notGreaterOrEqual)
    EXPECT_FALSE(isEqualOrGreater(c[0], c[1])) << c[0] << " vs " << c[1];
}

TEST(NameConversions, FieldCounts) {
  EXPECT_EQ(getBoardPartNameFromVLNV("v:b:part0:1.0"), "part0");
  EXPECT_EQ(getBoardPartNameFromVLNV("v:b:1.0"), "v:b:1.0");
  EXPECT_EQ(getBoardPartNameFromVLNV("v:b::1.0"), "");
  EXPECT_EQ(getBoardNameFromBoardPart("v:b:1.0"), "b");
  EXPECT_EQ(getBoardNameFromBoardPart("v:b:part0:1.0"), "b");
  EXPECT_EQ(getBoardNameFromBoardPart("v:b:c:d:e"), "v:b:c:d:e");
  EXPECT_EQ(getBoardVNVFromBoardPart("v:b:part0:1.0"), "v:b:1.0");
  EXPECT_EQ(getBoardVNVFromBoardPart("v:b:1.0"), "v:b:1.0");
  EXPECT_EQ(getBoardVNVFromBoardPart(":::"), "::");
}

TEST(TclList, ParseAndWrite) {
  EXPECT_EQ(parseTclList("a {b c} d"), (Words{"a", "b c", "d"}));
  EXPECT_EQ(parseTclList("a{b}c"), (Words{"a", "b", "c"}));
  EXPECT_EQ(parseTclList("{}"), Words{});
  EXPECT_EQ(parseTclList("a}b"), (Words{"a", "b"}));
  EXPECT_EQ(parseTclList(" \t a\n\vb  "), (Words{"a", "b"}));
  // No nesting: an inner brace turns into a blank, the first close ends it.
  EXPECT_EQ(parseTclList("{{a}}"), Words{" a"});
  EXPECT_EQ(parseTclList("{a {b} c}"), (Words{"a  b", "c"}));
  EXPECT_EQ(parseTclList("x {a b"), (Words{"x", "a b"}));
  // No escapes or quotes either.
  EXPECT_EQ(parseTclList("\"a b\" c\\ d"), (Words{"\"a", "b\"", "c\\", "d"}));

  EXPECT_EQ(asTclSpaceSeparatedStr({"a", "b c"}), "a {b c}");
  EXPECT_EQ(asTclSpaceSeparatedStr({"", "a\tb", "{x}"}), " {a\tb} {x}");
  Words paths{"/opt/my boards", "/repo"};
  EXPECT_EQ(parseTclList(asTclSpaceSeparatedStr(paths)), paths);
}

TEST(Strings, JoinIndentAndWorkingDirectory) {
  EXPECT_EQ(join({}, ","), "");
  EXPECT_EQ(join({"a", "", "b"}, ", "), "a, , b");

  EXPECT_EQ(indent("x", 2), "  x\n");
  EXPECT_EQ(indent("x", 0), "x");
  EXPECT_EQ(indent("", 3), "");
  EXPECT_EQ(indent("a\n\nb\n", 1), " a\n \n b\n");
  EXPECT_EQ(indent(std::string("a\nb\0c\n", 6), 1), " a\n b\n");

  std::string before, now;
  ASSERT_EQ(getCurrDir(before), 0);
  ASSERT_EQ(changeDir("/"), 0);
  EXPECT_EQ(getCurrDir(now), 0);
  EXPECT_EQ(now, "/");
  EXPECT_NE(changeDir("/no/such/directory/here"), 0);
  EXPECT_EQ(changeDir(before), 0);
}

TEST(SchemaOfObjects, AskTheOwningBoard) {
  HBOBoard board;
  HBOBoardComponent component;
  HBOBusIf busIf;
  HBOModelPort port;
  component.setBoard(&board);
  busIf.setOwnerComponent(&component);
  port.setOwner(&busIf);

  board.setBoardSchemaVersion("2.1");
  EXPECT_TRUE(isV2SchemaBoard(&port));
  board.setBoardSchemaVersion("1.1");
  EXPECT_FALSE(isV2SchemaBoard(&port));
  board.setBoardSchemaVersion("2.0.1"); // three fields never reach "2.0"
  EXPECT_FALSE(isSchema20OrGreater(&board));

  board.setBoardSchemaVersion("2.0");
  busIf.setOwnerComponent(nullptr);
  EXPECT_FALSE(isV2SchemaBoard(&port));
  EXPECT_TRUE(isV2SchemaBoard(&component));
  EXPECT_FALSE(isSchema20OrGreater(nullptr));
}

TEST(DumpDebug, TracesOnlyTheWatchedBoardsWhenSwitchedOn) {
  HPAParamMgr &params = HPAParamMgr::getParamMgr();
  HBOBoard watched, other;
  watched.setName("v", "RB60", "1.0");
  watched.setDescription("first");
  other.setName("v", "rb6", "1.0");

  ASSERT_TRUE(params.setValue("board.debugBoardRepo", "true"));
  testing::internal::CaptureStdout();
  DumpDebugStr("board.debugBoardRepo", "Adding", &watched);
  DumpDebugStr("board.debugBoardRepo", "Adding", &other);
  DumpDebugStr("board.debugBoardRepo", "Adding", nullptr);
  DumpDebugStr("HBOBoardCReposMgr::addBoardPart", "m", &watched); // no such parameter
  std::string out = testing::internal::GetCapturedStdout();
  params.resetValue("board.debugBoardRepo");

  std::ostringstream expected;
  expected << "board.debugBoardRepo : Adding for board address "
           << static_cast<const void *>(&watched) << " first\n";
  EXPECT_EQ(out, expected.str());

  testing::internal::CaptureStdout();
  DumpDebugStr("board.debugBoardRepo", "Adding", &watched);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

// The library's load has registered the parameters that these switches read,
// without a call; their kinds, defaults and texts are in the golden file of
// "boardtool params --all".
TEST(BoardParams, SwitchesAndRepoPaths) {
  // Set here, put back at the end.
  test::ParamScope schema("board.enableSchemaV2", "true");
  test::ParamScope integrator("board.enableBoardIntegratorSupport", "false");
  test::ParamScope paths("board.repoPaths", "");
  test::ParamScope projectPaths("project.boardPartRepoPaths", "");
  EXPECT_TRUE(HBOBoardUtils::isV2SchemaEnabled());
  HPAParamMgr &params = HPAParamMgr::getParamMgr();
  params.setValue("board.enableSchemaV2", "false");
  params.setValue("board.enableBoardIntegratorSupport", "true");
  EXPECT_FALSE(HBOBoardUtils::isV2SchemaEnabled());
  // Nothing ties the integrator switch to the schema switch.
  EXPECT_TRUE(HBOBoardUtils::isBoardIntegraterSupportEnabled());

  std::string out = "old";
  EXPECT_TRUE(HBOBoardUtils::getUserRepoPathFromParam(out));
  EXPECT_EQ(out, "");

  params.setValue("board.repoPaths", "/a {/b c}");
  EXPECT_TRUE(HBOBoardUtils::getUserRepoPathFromParam(out));
  EXPECT_EQ(out, "/a {/b c}");

  // The project-level setting is refused with an error, and wins over the other.
  test::MessageRecorder recorder;
  params.setValue("project.boardPartRepoPaths", "/p");
  out = "kept";
  EXPECT_FALSE(HBOBoardUtils::getUserRepoPathFromParam(out));
  EXPECT_EQ(out, "kept");
  ASSERT_EQ(recorder.records.size(), 1u);
  EXPECT_EQ(recorder.records[0].key, "@49-73@");
  EXPECT_EQ(recorder.records[0].severity, ComMsg::Error);
}
