#include "HSTStringUtils.h"
#include "HUTEnv.h"
#include "HUTFile.h"
#include "HUTFileUtils.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

using Status = HUTFile::Status;
using test::ScratchDir;

// --- HUTFile ---------------------------------------------------------------

TEST(HUTFile, StatusOfEveryKindOfPath) {
  ScratchDir dir;
  dir.write("f.xml", "x");
  ASSERT_EQ(::symlink("f.xml", dir.file("link").c_str()), 0);
  ASSERT_EQ(::symlink("nowhere", dir.file("dangling").c_str()), 0);
  ASSERT_EQ(::symlink("loop2", dir.file("loop1").c_str()), 0);
  ASSERT_EQ(::symlink("loop1", dir.file("loop2").c_str()), 0);

  EXPECT_EQ(HUTFile::status(dir.file("f.xml")), Status::Regular);
  EXPECT_EQ(HUTFile::status(dir.file("link")), Status::Regular);
  EXPECT_EQ(HUTFile::status(dir.path()), Status::Directory);
  EXPECT_EQ(HUTFile::status(dir.file("missing")), Status::NotFound);
  EXPECT_EQ(HUTFile::status(dir.file("dangling")), Status::NotFound);
  EXPECT_EQ(HUTFile::status(dir.file("f.xml/below")), Status::NotFound);
  EXPECT_EQ(HUTFile::status(""), Status::NotFound);
  EXPECT_EQ(HUTFile::status("/dev/null"), Status::Other);
  EXPECT_EQ(HUTFile::status(dir.file("loop1")), Status::Error);
  EXPECT_EQ(HUTFile::status(dir.path() + "/" + std::string(5000, 'n')), Status::Error);

  EXPECT_TRUE(HUTFile::exists(dir.file("f.xml")));
  EXPECT_TRUE(HUTFile::exists("/dev/null"));
  EXPECT_FALSE(HUTFile::exists(dir.file("loop1")));
  EXPECT_FALSE(HUTFile::exists(dir.file("missing")));
  EXPECT_TRUE(HUTFile::isRegularFile(dir.file("link")));
  EXPECT_FALSE(HUTFile::isRegularFile(dir.path()));
  EXPECT_TRUE(HUTFile::isDirectory(dir.path()));
  EXPECT_FALSE(HUTFile::isDirectory(dir.file("f.xml")));
}

TEST(HUTFile, PathPieces) {
  for (auto [path, parent] : {std::pair<const char *, const char *>{"x", ""},
                              {"./x", "."},
                              {"/x", "/"},
                              {"a/b/board.xml", "a/b"},
                              {"", ""}})
    EXPECT_EQ(HUTFile::parentPath(path), parent) << path;
  EXPECT_EQ(HUTFile::fileName("a/b/board.xml"), "board.xml");
  EXPECT_EQ(HUTFile::fileName("board.xml"), "board.xml");
  EXPECT_EQ(HUTFile::join("", "part0_pins.xml"), "part0_pins.xml");
  EXPECT_EQ(HUTFile::join("a/b", "part0_pins.xml"), "a/b/part0_pins.xml");
}

// --- HUTFileUtils ----------------------------------------------------------

TEST(HUTFileUtils, FindFilesWalksTheWholeTreeInOrder) {
  ScratchDir dir;
  dir.write("z/board.xml", "");
  dir.write("a/b/c/d/board.xml", "");
  dir.write("board.xml", "");
  dir.write("a/Board.xml", "");         // other case: not a match
  dir.write("a/board.xml.bak", "");     // other name
  dir.write("dir/board.xml/inner", ""); // a directory of that name
  dir.write("target/board.xml", "");
  ASSERT_EQ(::symlink("../../target/board.xml", dir.file("a/b/board.xml").c_str()), 0);
  ASSERT_EQ(::symlink("..", dir.file("a/up").c_str()), 0); // a loop if followed
  dir.write("pipe/x", "");
  ASSERT_EQ(::mkfifo(dir.file("pipe/board.xml").c_str(), 0600), 0);
  ASSERT_EQ(::symlink("nowhere", dir.file("target/dangling").c_str()), 0);
  dir.write("gone/x", "");
  ASSERT_EQ(::symlink("nowhere", dir.file("gone/board.xml").c_str()), 0);

  std::vector<std::string> unreadable, notRegular;
  std::vector<std::string> found =
      HUTFileUtils::findFiles(dir.path(), "board.xml", &unreadable, &notRegular);
  std::vector<std::string> expected = {dir.file("a/b/board.xml"), dir.file("a/b/c/d/board.xml"),
                                       dir.file("board.xml"), dir.file("target/board.xml"),
                                       dir.file("z/board.xml")};
  EXPECT_EQ(found, expected);
  // Named so, but no file to read: told apart, for a message.
  std::sort(notRegular.begin(), notRegular.end());
  EXPECT_EQ(notRegular,
            (std::vector<std::string>{dir.file("gone/board.xml"), dir.file("pipe/board.xml")}));
  EXPECT_TRUE(unreadable.empty());

  EXPECT_TRUE(HUTFileUtils::findFiles(dir.file("missing"), "board.xml").empty());
  EXPECT_TRUE(HUTFileUtils::findFiles(dir.file("board.xml"), "board.xml").empty());
  EXPECT_TRUE(HUTFileUtils::findFiles("", "board.xml").empty());
}

TEST(HUTFileUtils, UnreadableSubdirectoryIsSkipped) {
  if (::geteuid() == 0)
    GTEST_SKIP() << "permissions do not bind root";
  ScratchDir dir;
  dir.write("open/board.xml", "");
  dir.write("closed/board.xml", "");
  ASSERT_EQ(::chmod(dir.file("closed").c_str(), 0), 0);
  std::vector<std::string> found = HUTFileUtils::findFiles(dir.path(), "board.xml");
  ::chmod(dir.file("closed").c_str(), 0755);
  EXPECT_EQ(found, std::vector<std::string>{dir.file("open/board.xml")});
}

TEST(HUTFileUtils, ReadFileAndCanonical) {
  ScratchDir dir;
  std::string bytes("a\0b\r\n\xff", 6);
  dir.write("sub/data.bin", bytes);
  std::string out, error;
  ASSERT_TRUE(HUTFileUtils::readFile(dir.file("sub/data.bin"), out, &error));
  EXPECT_EQ(out, bytes);

  out = "stale";
  EXPECT_FALSE(HUTFileUtils::readFile(dir.file("missing"), out, &error));
  EXPECT_TRUE(out.empty());
  EXPECT_FALSE(error.empty());
  EXPECT_FALSE(HUTFileUtils::readFile(dir.path(), out, nullptr));

  std::string real = HUTFileUtils::canonical(dir.path());
  EXPECT_EQ(HUTFileUtils::canonical(dir.file("sub/../sub/./data.bin")), real + "/sub/data.bin");
  EXPECT_EQ(HUTFileUtils::canonical(dir.file("nope/../x")), dir.file("nope/../x"));
  EXPECT_EQ(HUTFileUtils::canonical(""), "");
}

TEST(HUTFile, NamesThatStayInsideTheirFolder) {
  for (const char *inside : {"a.xml", "./a.xml", "sub/a.xml", "sub/../a.xml", "a/b/../../c", ""})
    EXPECT_TRUE(HUTFile::staysInside(inside)) << inside;
  for (const char *outside : {"../a.xml", "/etc/passwd", "sub/../../a.xml", "./..", "a/./../.."})
    EXPECT_FALSE(HUTFile::staysInside(outside)) << outside;
  EXPECT_TRUE(HUTFile::isWithin("/repo/a/b", "/repo"));
  EXPECT_TRUE(HUTFile::isWithin("/repo", "/repo"));
  EXPECT_TRUE(HUTFile::isWithin("/anything", "/"));
  EXPECT_FALSE(HUTFile::isWithin("/repository", "/repo"));
  EXPECT_FALSE(HUTFile::isWithin("/", "/repo"));
}

// --- HSTStringUtils --------------------------------------------------------

TEST(HSTStringUtils, CaseAndWhiteSpaceAreAscii) {
  using namespace HSTStringUtils;
  EXPECT_TRUE(iequals("Part0_Pins.XML", "part0_pins.xml"));
  EXPECT_FALSE(iequals("abc", "abcd"));
  EXPECT_FALSE(iequals("a", "b"));
  EXPECT_TRUE(iequals("", ""));
  // Bytes outside ASCII are left alone, whatever the locale would say.
  EXPECT_EQ(toLower("Ä-BoArD\xC9"), "Ä-board\xC9");
  EXPECT_EQ(toUpper("ä-bOaRd\xE9"), "ä-BOARD\xE9");
  EXPECT_FALSE(iequals("\xC9", "\xE9"));

  EXPECT_EQ(trim(" \t\r\n\v\f value  x \n"), "value  x");
  EXPECT_EQ(trim(" \t "), "");
  EXPECT_EQ(trim(""), "");
  EXPECT_EQ(trim("\xA0x\xA0"), "\xA0x\xA0");
}

TEST(HSTStringUtils, SplitWithAndWithoutEmptyFields) {
  using V = std::vector<std::string>;
  using HSTStringUtils::split;
  EXPECT_EQ(split("a,,b,", ",", true), (V{"a", "", "b", ""}));
  EXPECT_EQ(split("a,,b,", ",", false), (V{"a", "b"}));
  EXPECT_EQ(split("a, b;c", ", ;", false), (V{"a", "b", "c"}));
  EXPECT_EQ(split("", ",", true), (V{""}));
  EXPECT_EQ(split("", ",", false), V{});
  EXPECT_EQ(split(",", ",", true), (V{"", ""}));
  EXPECT_EQ(split("abc", "", true), (V{"abc"}));
  EXPECT_EQ(split("kestrel-boards:falcon_eval:part0:1.1", ":", false).size(), 4u);
}

TEST(HSTStringUtils, ReplaceAllDoesNotRescanWhatItPutIn) {
  using HSTStringUtils::replaceAll;
  EXPECT_EQ(replaceAll("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replaceAll("aXa", "a", "aa"), "aaXaa");
  EXPECT_EQ(replaceAll("abc", "", "x"), "abc");
  EXPECT_EQ(replaceAll("abc", "b", ""), "ac");
  EXPECT_TRUE(HSTStringUtils::endsWith("", ""));
  EXPECT_FALSE(HSTStringUtils::endsWith("xml", "board.xml"));
}

// --- HUTEnv ----------------------------------------------------------------

TEST(HUTEnv, DirectoriesFromTheEnvironmentOrBuiltIn) {
  using V = std::vector<std::string>;
  for (auto [value, dirs] : {std::pair<const char *, V>{"/one::/two/:", {"/one", "/two/"}},
                             {"/only", {"/only"}},
                             {nullptr, {BOARDLIB_DATA_DIR}},
                             {"", {BOARDLIB_DATA_DIR}},
                             {":::", {BOARDLIB_DATA_DIR}}}) {
    test::EnvScope env("BOARDLIB_DATA_DIRS", value);
    EXPECT_EQ(HUTEnv::getZRTDataDirList(), dirs) << (value ? value : "(unset)");
  }
  {
    test::EnvScope env("BOARDLIB_APP_ROOT", "/opt/suite");
    EXPECT_EQ(HUTEnv::getZRTAppRoot(), "/opt/suite");
  }
  test::EnvScope env("BOARDLIB_APP_ROOT", nullptr);
  EXPECT_EQ(HUTEnv::getZRTAppRoot(), BOARDLIB_APP_ROOT);
}
