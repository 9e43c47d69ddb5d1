// Validation against the DTDs: files that are no test board, the choice of
// the schema directory, and our own boards against our own DTDs. What the
// DTDs find in the test boards made for it, and on which line, is read whole
// in ReadGoldenTest.
#include "DtdTestSupport.h"
#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HXMLWInterface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

using test::boardText;
using test::findingCount;
using test::kSchemaDir;
using test::MessageRecorder;
using test::ScratchDir;

namespace {

// The lines of the findings, in the order told.
std::vector<std::string> findingLines(const MessageRecorder &msgs) {
  std::vector<std::string> lines;
  for (const ComMsgRecord &r : msgs.records)
    if (r.id == "49-105" || r.id == "49-106")
      lines.push_back(r.args.at(1));
  return lines;
}

// A component without its required type: one finding per line.
std::string untypedComponents(int count) {
  std::string body = "  <components>\n";
  for (int i = 0; i < count; ++i)
    body += "    <component name=\"c" + std::to_string(i) + "\"/>\n";
  return body + "  </components>\n";
}

// A read of \p file as the file entry starts it: the board knows the schema
// version of its file before the reader runs.
bool readBoard(const std::string &file, bool validate, const std::string &schemaDir) {
  HBOBoard board;
  HXMLWInterface doc;
  if (doc.readFromFile(file, false) && doc.getRootElement())
    board.setBoardSchemaVersion(doc.getRootElement()->getAttribute("schema_version"));
  return HBOBoardParser().parseFile(file, &board, validate, schemaDir, nullptr);
}

// Validates through the checking path of a read, with \p schemaDir.
bool validateRead(const std::string &file, const std::string &schemaDir) {
  return readBoard(file, true, schemaDir);
}

} // namespace

// What a file that is no test board shows: one that cannot be opened, a root
// line of several hundred kilobytes, and a limit that someone set on the
// findings. The test boards' findings are read whole in ReadGoldenTest.
TEST(DtdDoctype, FilesThatNoTestBoardHolds) {
  ScratchDir dir;
  HBOBoardParser parser;
  {
    // A file that cannot be opened reads as empty.
    MessageRecorder msgs;
    EXPECT_FALSE(parser.isValidXML(dir.path() + "/absent.xml", "board"));
    EXPECT_EQ(1u, msgs.count("49-162"));
    EXPECT_EQ(0u, findingCount(msgs));
  }
  {
    // A root line of several hundred kilobytes, as in a minified file.
    MessageRecorder msgs;
    std::string longLine = dir.write(
        "long.xml", "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\" display_name=\"" +
                        std::string(400000, 'x') + "\"><file_version>1.0</file_version></board>\n");
    EXPECT_TRUE(parser.isValidXML(longLine, "board"));
    EXPECT_EQ(0u, findingCount(msgs));
  }
  {
    // A limit that someone set on the findings does not cut them short.
    ComMsgMgr::setMsgLimit("49-105", 3);
    MessageRecorder msgs;
    std::string file = dir.write("ten.xml", boardText(untypedComponents(10)));
    EXPECT_FALSE(parser.isValidXML(file, "board"));
    EXPECT_EQ(10u, msgs.count("49-105"));
    ComMsgMgr::setMsgLimit("49-105", -1);
  }
}

TEST(DtdSchemaDir, AnOwnDoctypeWinsOverTheGivenDirectory) {
  ScratchDir dir;
  std::string file =
      dir.write("board.xml", "<?xml version=\"1.0\"?>\n<!DOCTYPE board SYSTEM \"" + kSchemaDir +
                                 "/board.dtd\">\n" +
                                 "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\">\n"
                                 "  <file_version>1.0</file_version>\n  <bogus/>\n</board>\n");
  // The given directory has no DTD at all: it is not looked at.
  MessageRecorder msgs;
  EXPECT_FALSE(validateRead(file, dir.path()));
  ASSERT_EQ(1u, msgs.count("49-155"));
  EXPECT_EQ((std::vector<std::string>{file, dir.path()}), msgs.find("49-155")->args);
  EXPECT_EQ(0u, msgs.count("49-156"));
  // The unknown element; that the root may not hold it follows, and is not
  // told again.
  EXPECT_EQ((std::vector<std::string>{"5"}), findingLines(msgs));
}

TEST(DtdSchemaDir, MissingDtdsAreTold) {
  ScratchDir dir;
  std::string file = dir.write("board.xml", boardText(""));
  {
    MessageRecorder msgs;
    EXPECT_FALSE(validateRead(file, dir.path()));
    ASSERT_EQ(1u, msgs.count("49-156"));
    EXPECT_EQ((std::vector<std::string>{"board", dir.path()}), msgs.find("49-156")->args);
    EXPECT_EQ("CRITICAL WARNING", msgs.find("49-156")->severityName);
    ASSERT_EQ(1u, msgs.count("49-159"));
    EXPECT_EQ("ERROR", msgs.find("49-159")->severityName);
    EXPECT_EQ(file, msgs.find("49-159")->args.at(0));
  }
  {
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "pins"));
    ASSERT_EQ(1u, msgs.count("49-158"));
    EXPECT_EQ("pins", msgs.find("49-158")->args.at(0));
    EXPECT_EQ(1u, msgs.count("49-159"));
  }
  {
    // No data directory holds the DTDs.
    const char *old = std::getenv("BOARDLIB_DATA_DIRS");
    std::string saved = old ? old : "";
    ::setenv("BOARDLIB_DATA_DIRS", dir.path().c_str(), 1);
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board"));
    if (old)
      ::setenv("BOARDLIB_DATA_DIRS", saved.c_str(), 1);
    else
      ::unsetenv("BOARDLIB_DATA_DIRS");
    ASSERT_EQ(1u, msgs.count("49-157"));
    EXPECT_EQ("board", msgs.find("49-157")->args.at(0));
    EXPECT_EQ(1u, msgs.count("49-159"));
  }
  {
    // The directory given, with the DTDs in it, is taken.
    dir.write("board.dtd", "<!ELEMENT board ANY>\n<!ATTLIST board schema_version CDATA #IMPLIED"
                           " vendor CDATA #IMPLIED name CDATA #IMPLIED>\n"
                           "<!ELEMENT file_version (#PCDATA)>\n");
    MessageRecorder msgs;
    std::string other = dir.write("sub/board.xml", boardText("  <bogus/>\n"));
    validateRead(other, dir.path());
    EXPECT_EQ(0u, msgs.count("49-156"));
    // Only the element that neither DTD knows is a finding.
    EXPECT_EQ((std::vector<std::string>{"4"}), findingLines(msgs));
  }
}

// A DTD is parsed once for all the files that use it, and again when it
// changes: someone who edits the DTD they check against in a long session
// gets the verdicts of the DTD as it is. One that does not parse fails
// every file held to it, not only the first.
TEST(DtdSchemaDir, AnEditedDtdIsReadAgain) {
  ScratchDir dir;
  const std::string head = "<!ELEMENT board ANY>\n<!ATTLIST board schema_version CDATA #IMPLIED"
                           " vendor CDATA #IMPLIED name CDATA #IMPLIED>\n"
                           "<!ELEMENT file_version (#PCDATA)>\n";
  std::string file = dir.write("sub/board.xml", boardText("  <extra/>\n"));
  dir.write("board.dtd", head + "<!ELEMENT extra EMPTY>\n");
  for (int round = 0; round < 2; ++round) {
    MessageRecorder msgs;
    EXPECT_TRUE(validateRead(file, dir.path()));
    EXPECT_EQ(0u, findingCount(msgs));
  }
  // Another size, so that a coarse clock of the file system cannot hide it.
  dir.write("board.dtd", head + "<!-- the element extra is gone -->\n");
  {
    MessageRecorder msgs;
    EXPECT_FALSE(validateRead(file, dir.path()));
    EXPECT_EQ((std::vector<std::string>{"4"}), findingLines(msgs));
  }
  dir.write("board.dtd", head + "<!ELEMENT extra (\n");
  for (int round = 0; round < 2; ++round) {
    MessageRecorder msgs;
    EXPECT_FALSE(validateRead(file, dir.path())) << "round " << round;
  }
}

TEST(DtdBoards, EveryGoodTestBoardValidates) {
  // Written with tags in other cases, or with tags that the readers pass
  // over, on purpose: the readers take them and the DTD does not; and the
  // boards made to show what the DTDs find, named dtd_*.
  const std::set<std::string> nonCanonical = {
      "components",    "dataprops_conditions", "interfaces_basic", "power_network",
      "presets_basic", "presets_bad_file",     "unknown_element"};
  const std::set<std::string> dtdIds = {"49-105", "49-106", "49-155", "49-156", "49-157",
                                        "49-158", "49-159", "49-162", "49-169"};
  int validated = 0;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(BOARDLIB_TEST_DATA)) {
    if (entry.path().filename() != "board.xml")
      continue;
    std::string file = entry.path().string();
    std::string dirName = entry.path().parent_path().filename().string();
    if (nonCanonical.count(dirName) || dirName.rfind("dtd_", 0) == 0)
      continue;
    // The hostile corpus has tests of its own; its packed boards are no
    // text for the DTD.
    if (file.find("/hostile/") != std::string::npos)
      continue;
    {
      // Only boards that read cleanly are held to the DTD.
      MessageRecorder quiet;
      if (!readBoard(file, false, ""))
        continue;
    }
    MessageRecorder msgs;
    validateRead(file, kSchemaDir);
    for (const ComMsgRecord &r : msgs.records)
      if (dtdIds.count(r.id))
        ADD_FAILURE() << file << ": " << r.line;
    ++validated;
  }
  EXPECT_GE(validated, 3);
}
