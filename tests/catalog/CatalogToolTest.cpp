// boardtool catalog and show as a user runs them, on the test installation.
#include "BoardtoolRunner.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

using Result = test::ToolResult;

std::string data(const std::string &rel) { return std::string(BOARDLIB_TEST_DATA) + "/" + rel; }

// Runs boardtool on the test installation.
Result boardtool(const std::string &args) {
  return test::runBoardtool(args, "BOARDLIB_DATA_DIRS=" + data("catalog_install"));
}

std::string lineWith(const std::string &text, const std::string &part) {
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    if (line.find(part) != std::string::npos)
      return line;
  return "";
}

} // namespace

TEST(BoardtoolCatalog, ListsTheInstallationAlignedAndSilently) {
  Result r = boardtool("catalog --jobs 2");
  ASSERT_EQ(0, r.status) << r.err;
  EXPECT_EQ("", r.err) << "no progress line without a terminal";
  std::string header = lineWith(r.out, "NAME");
  std::string lark = lineWith(r.out, "kestrel-boards:lark:1.0");
  ASSERT_FALSE(lark.empty()) << r.out;
  EXPECT_EQ(header.find("DISPLAY NAME"), lark.find("Lark Board")) << "columns are aligned";
  EXPECT_EQ(header.find("SOURCE"), lark.find("installed"));
  EXPECT_NE(std::string::npos, lark.find("kv10-tq64-1"));
  EXPECT_NE(std::string::npos, r.out.find("4 boards"));
}

TEST(BoardtoolCatalog, UserRepositoryHidesAnInstalledBoard) {
  Result r = boardtool("catalog --repo " + data("catalog_user"));
  ASSERT_EQ(0, r.status) << r.err;
  std::string kite = lineWith(r.out, "kestrel-boards:kite:1.0 ");
  EXPECT_NE(std::string::npos, kite.find("Kite Board (user copy)")) << r.out;
  EXPECT_NE(std::string::npos, kite.find(" user "));
  EXPECT_NE(std::string::npos, kite.find("catalog_install/boards/board_files/kestrel-boards/kite/1.0"));
  EXPECT_EQ(std::string::npos, lineWith(r.out, "kite:1.2").find(" user "));
}

TEST(BoardtoolCatalog, JsonHasOneObjectPerBoard) {
  Result r = boardtool("catalog --json --repo " + data("catalog_user") + " --param general.maxThreads=1");
  ASSERT_EQ(0, r.status) << r.err;
  ASSERT_EQ('[', r.out.at(0));
  std::string kite = lineWith(r.out, "\"name\": \"kestrel-boards:kite:1.0\"");
  for (const char *field : {"\"board_name\": \"kite\"", "\"display_name\": \"Kite Board (user copy)\"",
                            "\"file_version\": \"1.0\"", "\"vendor_name\": \"kestrel-boards\"",
                            "\"FILE_NAME\": ", "\"REPOSITORY\": ", "\"schema_version\": \"2.1\"",
                            "\"user_defined\": true"})
    EXPECT_NE(std::string::npos, kite.find(field)) << field << " in " << kite;
  EXPECT_NE(std::string::npos,
            lineWith(r.out, "kestrel-boards:lark:1.0").find("\"user_defined\": false"));
}

TEST(BoardtoolCatalog, BadUsageExitsTwo) {
  EXPECT_EQ(2, boardtool("catalog --jobs 0").status);
  EXPECT_EQ(2, boardtool("catalog --jobs").status);
  EXPECT_EQ(2, boardtool("catalog --frobnicate").status);
  EXPECT_EQ(2, boardtool("catalog extra").status);
  Result help = boardtool("catalog --help");
  EXPECT_EQ(0, help.status);
  EXPECT_NE(std::string::npos, help.out.find("--data-dir DIR"));
}

TEST(BoardtoolCatalog, DataDirOptionReplacesTheEnvironment) {
  // The second directory holds no boards; --data-dir must win over the
  // environment that boardtool() sets.
  Result r = boardtool("catalog --data-dir " + data("catalog_user"));
  ASSERT_EQ(0, r.status) << r.err;
  EXPECT_NE(std::string::npos, r.out.find("0 boards")) << r.out;
}

TEST(BoardtoolShow, ResolvesEveryFormOfName) {
  Result wildcard = boardtool("show KESTREL-BOARDS:kite:*");
  ASSERT_EQ(0, wildcard.status) << wildcard.err;
  EXPECT_EQ(0u, wildcard.out.find("Board - Name: kite, Fullname: kestrel-boards:kite:1.2"));
  EXPECT_NE(std::string::npos, wildcard.out.find("Latest version: 1.2 (kestrel-boards:kite:1.2)"));

  Result part = boardtool("show kestrel-boards:kite:part0:1.10");
  ASSERT_EQ(0, part.status) << part.err;
  EXPECT_EQ(0u, part.out.find("Board - Name: kite, Fullname: kestrel-boards:kite:1.10"));
  EXPECT_NE(std::string::npos, part.out.find("Latest version: 1.2 "));
  EXPECT_NE(std::string::npos, part.out.find("Hidden by a user board: no"));

  Result user = boardtool("show --repo " + data("catalog_user") + " kestrel-boards:KITE:1.0");
  ASSERT_EQ(0, user.status) << user.err;
  EXPECT_NE(std::string::npos, user.out.find("Display name: Kite Board (user copy)"));
  EXPECT_NE(std::string::npos, user.out.find("Hidden by a user board: yes"));
}

TEST(BoardtoolShow, NoMatchExitsOneAndBadUsageTwo) {
  Result none = boardtool("show kestrel-boards:nothing:1.0");
  EXPECT_EQ(1, none.status);
  EXPECT_EQ("", none.out);
  EXPECT_NE(std::string::npos, none.err.find("no board matches 'kestrel-boards:nothing:1.0'"));
  EXPECT_EQ(1, boardtool("show kestrel-boards:nothing:*").status);
  EXPECT_EQ(2, boardtool("show").status);
  EXPECT_EQ(2, boardtool("show a b").status);
  EXPECT_EQ(0, boardtool("show --help").status);
}
