// Validation against the DTDs: where the DOCTYPE goes, the line numbers and
// the limit of the findings, the choice of the schema directory, and our
// own boards against our own DTDs.
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

TEST(DtdDoctype, FindingsCarryTheLinesOfTheFileOnDisk) {
  ScratchDir dir;
  // The root line has leading blanks and still gets the DOCTYPE in front.
  std::string file =
      dir.write("board.xml", "<?xml version=\"1.0\"?>\n"
                             "<!-- a probe -->\n"
                             "  <board schema_version=\"2.0\" vendor=\"v\" name=\"n\">\n"
                             "  <file_version>1.0</file_version>\n"
                             "  <bogus/>\n"
                             "  <components>\n"
                             "    <component name=\"u1\"/>\n"
                             "  </components>\n"
                             "</board>\n");
  MessageRecorder msgs;
  EXPECT_FALSE(HBOBoardParser().isValidXML(file, "board"));
  std::vector<std::string> lines = findingLines(msgs);
  EXPECT_EQ(1u, std::count(lines.begin(), lines.end(), "5"));
  EXPECT_EQ(1u, std::count(lines.begin(), lines.end(), "7"));
  const ComMsgRecord *first = msgs.find("49-105");
  ASSERT_NE(nullptr, first);
  EXPECT_EQ(file, first->args.at(0));
  EXPECT_EQ("WARNING", first->severityName);
}

TEST(DtdDoctype, WhatCountsAsDoctypeAndRootLine) {
  ScratchDir dir;
  MessageRecorder msgs;
  HBOBoardParser parser;

  // A root element over two lines has no root line.
  std::string split = dir.write("split.xml", "<?xml version=\"1.0\"?>\n<board\n"
                                             "  schema_version=\"2.1\" vendor=\"v\" name=\"n\">\n"
                                             "  <file_version>1.0</file_version>\n</board>\n");
  EXPECT_FALSE(parser.isValidXML(split, "board"));
  ASSERT_EQ(1u, msgs.count("49-162"));
  EXPECT_EQ((std::vector<std::string>{"board", split}), msgs.find("49-162")->args);

  // A file that cannot be opened reads as empty.
  msgs.records.clear();
  EXPECT_FALSE(parser.isValidXML(dir.path() + "/absent.xml", "board"));
  EXPECT_EQ(1u, msgs.count("49-162"));
  EXPECT_EQ(0u, findingCount(msgs));

  // A DOCTYPE with leading blanks is no DOCTYPE line: ours is put in front
  // of the root as well, and the parser meets two.
  msgs.records.clear();
  std::string indented =
      dir.write("indented.xml", "<?xml version=\"1.0\"?>\n  <!DOCTYPE board SYSTEM \"" +
                                    kSchemaDir + "/board.dtd\">\n" +
                                    "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\">\n"
                                    "  <file_version>1.0</file_version>\n</board>\n");
  EXPECT_FALSE(parser.isValidXML(indented, "board"));
  EXPECT_EQ(1u, msgs.count("49-106"));
  EXPECT_EQ(0u, msgs.count("49-162"));

  // A file with CR LF line ends keeps its own DOCTYPE.
  msgs.records.clear();
  std::string crlf =
      dir.write("crlf.xml", "<?xml version=\"1.0\"?>\r\n<!DOCTYPE board SYSTEM \"" + kSchemaDir +
                                "/board.dtd\">\r\n" +
                                "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\">\r\n"
                                "  <file_version>1.0</file_version>\r\n</board>\r\n");
  EXPECT_TRUE(parser.isValidXML(crlf, "board"));
  EXPECT_EQ(0u, findingCount(msgs));

  // A root line of several hundred kilobytes, as in a minified file.
  msgs.records.clear();
  std::string longLine = dir.write(
      "long.xml", "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\" display_name=\"" +
                      std::string(400000, 'x') + "\"><file_version>1.0</file_version></board>\n");
  EXPECT_TRUE(parser.isValidXML(longLine, "board"));
  EXPECT_EQ(0u, findingCount(msgs));
}

TEST(DtdFindings, AtMostAHundredAreTold) {
  ScratchDir dir;
  HBOBoardParser parser;
  {
    MessageRecorder msgs;
    std::string file = dir.write("many.xml", boardText(untypedComponents(150)));
    EXPECT_FALSE(parser.isValidXML(file, "board"));
    EXPECT_EQ(100u, msgs.count("49-105"));
    ASSERT_EQ(1u, msgs.count("49-169"));
    EXPECT_EQ((std::vector<std::string>{"100", "150"}), msgs.find("49-169")->args);
    EXPECT_EQ("INFO", msgs.find("49-169")->severityName);
    // The count comes after the findings, and they are told in file order.
    EXPECT_EQ("49-169", msgs.records.back().id);
    EXPECT_EQ("5", findingLines(msgs).front());
    EXPECT_EQ("104", findingLines(msgs).back());
  }
  {
    MessageRecorder msgs;
    std::string file = dir.write("hundred.xml", boardText(untypedComponents(100)));
    EXPECT_FALSE(parser.isValidXML(file, "board"));
    EXPECT_EQ(100u, msgs.count("49-105"));
    EXPECT_EQ(0u, msgs.count("49-169"));
  }
  {
    // A limit that someone set on the findings does not cut them short.
    ComMsgMgr::setMsgLimit("49-105", 3);
    MessageRecorder msgs;
    std::string file = dir.write("ten.xml", boardText(untypedComponents(10)));
    EXPECT_FALSE(parser.isValidXML(file, "board"));
    EXPECT_EQ(10u, msgs.count("49-105"));
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
  // The unknown element, and the root's content, judged at its end tag.
  EXPECT_EQ((std::vector<std::string>{"5", "6"}), findingLines(msgs));
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

TEST(DtdContent, NamesOfTwoMeaningsAreAcceptedInBoth) {
  // Each of these names stands for two things; both forms must pass.
  ScratchDir dir;
  std::string file = dir.write(
      "board.xml",
      boardText(
          "  <jumpers><jumper name=\"J1\" default_value=\"true\">"
          "<description>d</description></jumper></jumpers>\n"
          "  <parameters><parameter name=\"p\" value=\"1\"/></parameters>\n"
          "  <jtag_chains><jtag_chain name=\"c\"><position name=\"0\" component=\"part0\"/>"
          "</jtag_chain></jtag_chains>\n"
          "  <param_table name=\"t\"><param_list name=\"l\"><param name=\"f\" component=\"part0\"/>"
          "</param_list></param_table>\n"
          "  <components>\n"
          "    <component name=\"part0\" type=\"fpga\">\n"
          "      <positions><position component=\"u1\" id=\"1\"><address low=\"0\" high=\"1\"/>"
          "</position></positions>\n"
          "      <param_table name=\"t\"><param_list name=\"l\"><param name=\"f\" value=\"1\"/>"
          "</param_list></param_table>\n"
          "      <pins><pin index=\"0\" name=\"p0\" loc=\"A1\" iostandard=\"LVCMOS33\"/></pins>\n"
          "      <interfaces>\n"
          "        <interface name=\"leds\" type=\"a:b:c:1.0\" mode=\"master\" "
          "of_component=\"u1\">\n"
          "          <enablement_dependencies><jumpers><jumper name=\"J1\">true</jumper></jumpers>"
          "<parameters><parameter name=\"p\">true</parameter></parameters>"
          "</enablement_dependencies>\n"
          "        </interface>\n"
          "      </interfaces>\n"
          "      <component_modes><component_mode name=\"m\"><interfaces>"
          "<interface name=\"leds\" order=\"0\" optional=\"false\"/></interfaces>"
          "</component_mode></component_modes>\n"
          "    </component>\n"
          "  </components>\n"
          "  <connections><connection name=\"c\" component1=\"part0\" component2=\"u1\">"
          "<pin index=\"0\" delay=\"1\" iostandard=\"LVCMOS33\"/></connection></connections>\n"));
  MessageRecorder msgs;
  EXPECT_TRUE(HBOBoardParser().isValidXML(file, "board"));
  for (const ComMsgRecord &r : msgs.records)
    ADD_FAILURE() << r.line;
}

TEST(DtdContent, WhatFailsTheReadFailsTheDtd) {
  struct Case {
    const char *type;
    std::string text;
    const char *line;
  } cases[] = {
      {"board", "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\">\n</board>\n", "2"},
      {"board", boardText("  <compatible_board_revisions/>\n"), "4"},
      {"board",
       boardText("  <connections><connection name=\"c\" component1=\"a\" component2=\"b\">\n"
                 "    <connection_map c1_st_index=\"0\" c1_end_index=\"0\" c2_st_index=\"0\"/>\n"
                 "  </connection></connections>\n"),
       "5"},
      {"board",
       boardText("  <components><component name=\"u\" type=\"chip\"><interfaces>\n"
                 "    <interface name=\"i\"><port_maps><port_map physical_port=\"x\"/></port_maps>"
                 "</interface>\n  </interfaces></component></components>\n"),
       "5"},
      {"part0_pins",
       "<part_info part_name=\"p\">\n  <pins>\n    <pin index=\"0\" name=\"a\"/>\n"
       "  </pins>\n</part_info>\n",
       "3"},
      {"part0_pins",
       "<part_info part_name=\"p\">\n  <pins>\n    <pin name=\"a\" loc=\"A1\"/>\n"
       "  </pins>\n</part_info>\n",
       "3"},
      {"preset",
       "<ip_presets schema=\"1.0\">\n  <ip_preset preset_proc_name=\"p\">\n"
       "    <ip vendor=\"v\"><model_parameters><user_parameter "
       "name=\"x\"/></model_parameters></ip>\n"
       "  </ip_preset>\n</ip_presets>\n",
       "3"},
  };
  ScratchDir dir;
  for (const Case &c : cases) {
    std::string file = dir.write("file.xml", c.text);
    MessageRecorder msgs;
    EXPECT_FALSE(HBOBoardParser().isValidXML(file, c.type)) << c.text;
    std::vector<std::string> lines = findingLines(msgs);
    EXPECT_NE(lines.end(), std::find(lines.begin(), lines.end(), c.line)) << c.text;
  }
}

TEST(DtdBoards, EveryGoodTestBoardValidates) {
  // Written with tags in other cases, or with tags that the readers pass
  // over, on purpose: the readers take them and the DTD does not.
  const std::set<std::string> nonCanonical = {"components",       "dataprops_conditions",
                                              "interfaces_basic", "power_network",
                                              "presets_basic",    "presets_bad_file",
                                              "unknown_element"};
  const std::set<std::string> dtdIds = {"49-105", "49-106", "49-155", "49-156", "49-157",
                                        "49-158", "49-159", "49-162", "49-169"};
  int validated = 0;
  for (const auto &entry : std::filesystem::recursive_directory_iterator(BOARDLIB_TEST_DATA)) {
    if (entry.path().filename() != "board.xml")
      continue;
    std::string file = entry.path().string();
    std::string dirName = entry.path().parent_path().filename().string();
    if (nonCanonical.count(dirName))
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
