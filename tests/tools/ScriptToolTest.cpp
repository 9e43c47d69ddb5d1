// boardtool dump and tcl end to end: the object graph as JSON, and scripts
// run against the board commands.
#include "BoardtoolRunner.h"

#include <gtest/gtest.h>

#include <fstream>

namespace {

using Result = test::ToolResult;

std::size_t count(const std::string &text, const std::string &part) {
  std::size_t n = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
    ++n;
  return n;
}

TEST(BoardtoolDump, CatalogBoardIsWrittenWithItsWholeGraph) {
  Result r = test::runBoardtool("dump --json kestrel-boards:sample_kit:1.0");
  ASSERT_EQ(0, r.status) << r.err;
  EXPECT_EQ(0u, r.out.find("{\n  \"BOARD_NAME\": \"sample_kit\","));
  EXPECT_NE(std::string::npos, r.out.find("\"CURRENT_VALUE\": true")) << "booleans stay booleans";
  EXPECT_NE(std::string::npos, r.out.find("\"JTAG_CHAINS\": [\"chain1\"]"));
  EXPECT_NE(std::string::npos, r.out.find("\"ORDER\": 0")) << "integers stay integers";
  EXPECT_EQ(5u, count(r.out, "\"CLASS\": \"board_component\""));
  EXPECT_EQ(4u, count(r.out, "\"CLASS\": \"board_component_interface\""));
  EXPECT_EQ(4u, count(r.out, "\"CLASS\": \"board_bus\""));
  EXPECT_EQ(2u, count(r.out, "\"CLASS\": \"board_jumper\""));
  EXPECT_NE(std::string::npos, r.out.find("\"pins\": [\n")) << "ports list their pins";
  // Hidden properties only with --all.
  EXPECT_EQ(std::string::npos, r.out.find("\"IS_ENABLED\": \"true\",\n      \"JTAG_POSITION\""));
  Result all = test::runBoardtool("dump --all kestrel-boards:sample_kit:1.0");
  ASSERT_EQ(0, all.status) << all.err;
  EXPECT_GT(all.out.size(), r.out.size());
}

TEST(BoardtoolDump, FilesReadDirectlyAndUnknownNamesFail) {
  Result file = test::runBoardtool(std::string("dump ") + BOARDLIB_SAMPLE_BOARD);
  ASSERT_EQ(0, file.status) << file.err;
  EXPECT_NE(std::string::npos, file.out.find("\"NAME\": \"kestrel-boards:falcon_eval:1.0\""));
  Result missing = test::runBoardtool("dump no:such:board:1.0");
  EXPECT_EQ(1, missing.status);
  EXPECT_NE(std::string::npos, missing.err.find("no board matches"));
  EXPECT_EQ(2, test::runBoardtool("dump").status);
}

TEST(BoardtoolTcl, JumperChangesAndUndoFromAScript) {
  Result r = test::runBoardtool(
      "tcl -e 'package require boardlib; "
      "set c [lindex [get_board_components -of_objects [get_boards *sample*]] 0]; "
      "puts [get_property IS_ENABLED $c]; "
      "set_property CURRENT_VALUE false [get_board_jumpers -of_objects [get_boards *sample*] J1]; "
      "puts [get_property IS_ENABLED $c]; undo; puts [get_property IS_ENABLED $c]; puts $argv' a b");
  ASSERT_EQ(0, r.status) << r.err;
  EXPECT_EQ("true\nfalse\ntrue\na b\n", r.out);
}

TEST(BoardtoolTcl, ScriptFilesRunAndErrorsFailWithTheirStack) {
  std::string script = "/tmp/boardtool-script-test.tcl";
  {
    std::ofstream out(script);
    out << "puts [llength [get_boards]]\nget_property NO_SUCH [lindex [get_boards] 0]\n";
  }
  Result r = test::runBoardtool("tcl " + script);
  EXPECT_EQ(1, r.status);
  EXPECT_EQ("5\n", r.out);
  EXPECT_NE(std::string::npos, r.err.find("NO_SUCH")) << r.err;
  EXPECT_NE(std::string::npos, r.err.find("while executing")) << r.err;
  std::remove(script.c_str());
  EXPECT_EQ(2, test::runBoardtool("tcl").status);
}

TEST(BoardtoolShell, ReadsCommandsFromItsInput) {
  Result r = test::runBoardtool("shell < /dev/null");
  EXPECT_EQ(0, r.status) << r.err;
  std::string script = "/tmp/boardtool-shell-test.tcl";
  {
    std::ofstream out(script);
    out << "puts [get_param board.enableSchemaV2]\nexit 3\n";
  }
  Result s = test::runBoardtool("shell < " + script);
  EXPECT_EQ(3, s.status);
  EXPECT_NE(std::string::npos, s.out.find("true"));
  std::remove(script.c_str());
}

} // namespace
