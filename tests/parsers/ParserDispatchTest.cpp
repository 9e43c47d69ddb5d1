// The file entry: schema dispatch, the message queue's rules, and what bad
// files do.
#include "BoardDump.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "HBOXMLFile.h"
#include "HUTTrace.h"
#include "TestSupport.h"

#include <boost/iostreams/copy.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filtering_stream.hpp>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <memory>
#include <sstream>
#include <unistd.h>

using test::dataPath;

namespace {

std::string readFile(const std::string &path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream s;
  s << in.rdbuf();
  return s.str();
}

// The gzip form of \p from, cut to \p keepBytes when that is not 0.
std::string gzipOf(const std::string &from, std::size_t keepBytes = 0) {
  std::ostringstream packed;
  {
    boost::iostreams::filtering_ostream out;
    out.push(boost::iostreams::gzip_compressor());
    out.push(packed);
    out << readFile(from);
  }
  std::string bytes = packed.str();
  if (keepBytes)
    bytes.resize(keepBytes);
  return bytes;
}

} // namespace

TEST(SchemaDispatch, SchemaTwoGoesToTheBoardReader) {
  test::MessageRecorder msgs;
  HBOBoard board;
  EXPECT_TRUE(HBOParser().parseFile(dataPath("schema_dispatch/v20/board.xml"), &board));
  EXPECT_EQ("2.0", board.getBoardSchemaVersion());
  EXPECT_TRUE(msgs.records.empty());
}

TEST(SchemaDispatch, LegacyVersionsAndSwitchedOffSchemaTwoTakeTheLegacyReader) {
  struct Case {
    const char *file;
    const char *expectedSchema;
  } cases[] = {{"schema_dispatch/v11/board.xml", "1.1"},
               {"schema_dispatch/v12/board.xml", "1.0"},
               {"schema_dispatch/noschema/board.xml", "1.0"}};
  for (const Case &c : cases) {
    test::MessageRecorder msgs;
    HBOBoard board;
    EXPECT_TRUE(HBOParser().parseFile(dataPath(c.file), &board)) << c.file;
    EXPECT_EQ(c.expectedSchema, board.getBoardSchemaVersion()) << c.file;
    EXPECT_TRUE(msgs.records.empty()) << c.file;
  }
  // A schema 2 file read as a legacy one lacks the legacy identity.
  test::ParamScope off("board.enableSchemaV2", "false");
  HBOBoard board;
  test::MessageRecorder msgs;
  EXPECT_FALSE(HBOParser().parseFile(dataPath("schema_dispatch/v20/board.xml"), &board));
  EXPECT_EQ("1.0", board.getBoardSchemaVersion());
  EXPECT_EQ((std::vector<std::string>{"49-108", "49-59"}), msgs.ids());
}

TEST(SchemaDispatch, MissingFileIsOneWarningAndLeavesTheBoardAlone) {
  test::MessageRecorder msgs;
  HBOBoard board;
  EXPECT_FALSE(HBOParser().parseFile(dataPath("no/such/board.xml"), &board));
  ASSERT_EQ(1u, msgs.records.size());
  EXPECT_EQ("49-36", msgs.records[0].id);
  EXPECT_EQ("WARNING", msgs.records[0].severityName);
  EXPECT_TRUE(board.getName().empty());
  EXPECT_TRUE(board.getBoardSchemaVersion().empty());
  EXPECT_FALSE(HBOParser().parseFile(dataPath("minimal/board.xml"), nullptr));
}

TEST(MessageQueue, IterateMessagesDecidesByTheFlagNotTheSeverity) {
  test::MessageRecorder msgs;
  HBOBoardParser parser;
  EXPECT_TRUE(parser.iterateMessages(true));
  parser.context().queueMsg(true, ComMsg::Error, "@49-36@%s", "told only");
  EXPECT_TRUE(parser.iterateMessages(false));
  parser.context().queueMsg(false, ComMsg::Info, "@49-36@%s", "fails");
  EXPECT_FALSE(parser.iterateMessages(false));
  EXPECT_TRUE(msgs.records.empty());
  EXPECT_FALSE(parser.iterateMessages(true));
  EXPECT_EQ(2u, msgs.count("49-36"));
}

TEST(BadInput, BinaryAndDeeplyNestedFilesDoNotCrash) {
  test::ScratchDir dir;
  std::string binary;
  for (int i = 0; i < 4096; ++i)
    binary += static_cast<char>((i * 7919) & 0xff);
  dir.write("binary.xml", binary);
  std::string deep = "<board schema_version=\"2.1\" vendor=\"v\" name=\"n\"><file_version>1"
                     "</file_version><components>";
  for (int i = 0; i < 200000; ++i)
    deep += "<c>";
  dir.write("deep.xml", deep);
  std::string deepClosed = deep;
  for (int i = 0; i < 200000; ++i)
    deepClosed += "</c>";
  deepClosed += "</components></board>";
  dir.write("deep_closed.xml", deepClosed);

  test::MessageRecorder msgs;
  for (const char *f : {"binary.xml", "deep.xml", "deep_closed.xml"}) {
    HBOBoard board;
    EXPECT_FALSE(HBOParser().parseFile(dir.file(f), &board)) << f;
  }
}

TEST(BadInput, ReaderExceptionsNeverLeaveTheParser) {
  // A strict file whose pin index is no number raises inside the reader.
  test::ScratchDir dir;
  dir.write("board.xml",
            "<board schema_version=\"2.2\" vendor=\"v\" name=\"n\"><file_version>1</file_version>"
            "<compatible_board_revisions><revision id=\"x\">r</revision>"
            "</compatible_board_revisions></board>");
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  EXPECT_FALSE(parser.parseFile(dir.file("board.xml"), &board, true, "", nullptr));
  // Told with the sending flag: the conversion's own message, then the closing one.
  EXPECT_EQ((std::vector<std::string>{"49-69", "49-56"}), msgs.ids());
  EXPECT_TRUE(msgs.mentions("revision id value \"x\" is not valid"));
}

TEST(PackedFiles, GzipBoardPinAndPresetFilesReadLikePlainOnes) {
  test::ScratchDir dir;
  const std::string plain =
      test::BoardBuilder()
          .pins("    <pin index=\"0\" name=\"led0\" loc=\"P2\" iostandard=\"LVCMOS33\"/>\n")
          .presets(
              "  <ip_preset preset_proc_name=\"led_preset\">\n"
              "    <ip vendor=\"quarnel-ip\" library=\"ip\" name=\"gpio_ctl\" version=\"2.0\">\n"
              "      <user_parameters><user_parameter name=\"CONFIG.WIDTH\" value=\"1\"/>"
              "</user_parameters>\n    </ip>\n  </ip_preset>\n")
          .writeTo(dir, "plain");
  for (const char *name : {"board.xml", "part0_pins.xml", "preset.xml"})
    dir.write(std::string("packed/") + name, gzipOf(dir.file(std::string("plain/") + name)));
  test::MessageRecorder msgs;
  HBOBoard packed, unpacked;
  ASSERT_TRUE(HBOParser().parseFile(dir.file("packed/board.xml"), &packed));
  ASSERT_TRUE(HBOParser().parseFile(plain, &unpacked));
  ASSERT_EQ(1u, unpacked.getIpPresets().size());
  std::string expected = dumpBoard(unpacked);
  for (std::size_t at; (at = expected.find("/plain/")) != std::string::npos;)
    expected.replace(at, 7, "/packed/");
  EXPECT_EQ(expected, dumpBoard(packed));
  EXPECT_TRUE(msgs.records.empty());
}

TEST(PackedFiles, TruncatedGzipFailsWithoutCrashing) {
  test::ScratchDir dir;
  dir.write("board.xml", gzipOf(dataPath("full/board.xml"), 40));
  test::MessageRecorder msgs;
  HBOBoard board;
  EXPECT_FALSE(HBOParser().parseFile(dir.file("board.xml"), &board));
  EXPECT_FALSE(msgs.records.empty());
}

TEST(Trace, EachBoardReadIsOneTraceEvent) {
  test::ScratchDir dir;
  HUTTrace::setOutput(dir.file("trace.json"));
  HBOBoard b1, b2;
  HBOParser().parseFile(dataPath("minimal/board.xml"), &b1);
  HBOParser().parseFile(dataPath("full/board.xml"), &b2);
  HUTTrace::flush();
  HUTTrace::setOutput("");
  std::string trace = readFile(dir.file("trace.json"));
  std::size_t events = 0;
  for (std::size_t pos = 0;
       (pos = trace.find("\"HBOBoardParser::parseFile\"", pos)) != std::string::npos; ++pos)
    ++events;
  EXPECT_EQ(2u, events);
  EXPECT_NE(std::string::npos, trace.find("minimal/board.xml"));
}

TEST(SchemaDispatch, TheDocumentReadForTheSchemaIsTheOneTheReaderGets) {
  const std::string file = dataPath("minimal/board.xml");
  std::unique_ptr<HXMLWInterface> first = HBOXMLFile::open(file);
  HXMLWInterface *raw = first.get();
  {
    HBOXMLFile::ReuseScope reuse(file, std::move(first));
    EXPECT_NE(raw, HBOXMLFile::open(dataPath("full/board.xml")).get()) << "another path reads anew";
    EXPECT_EQ(raw, HBOXMLFile::open(file).get()) << "the same path takes the kept document";
    EXPECT_NE(nullptr, HBOXMLFile::open(file)) << "once taken, the next open reads the file";
  }
  // The board reads the same whether or not its document was handed on.
  test::MessageRecorder msgs;
  HBOBoard viaEntry, direct;
  ASSERT_TRUE(HBOParser().parseFile(file, &viaEntry));
  ASSERT_TRUE(HBOBoardParser().parseFile(file, &direct, false, "", nullptr));
  EXPECT_EQ(direct.getName(), viaEntry.getName());
  EXPECT_EQ(direct.getActivePart()->getPins().size(), viaEntry.getActivePart()->getPins().size());
}

// A run of pins with the same properties shares what the first was given;
// any difference, in a value, a bank property or one more or fewer
// attribute, gives a pin its own.
TEST(PinFile, RunsOfPinsWithTheSameTextsGetTheSameProperties) {
  test::ScratchDir dir;
  const std::string board =
      test::BoardBuilder()
          .pins("    <pin index=\"0\" name=\"p0\" loc=\"A1\" iostandard=\"SSTL15\" "
                "iobank.bank=\"14\" iobank.vref=\"0.75\"/>\n"
                "    <pin index=\"1\" name=\"p1\" loc=\"A2\" iostandard=\"SSTL15\" "
                "iobank.bank=\"14\" iobank.vref=\"0.75\"/>\n"
                "    <pin index=\"2\" name=\"p2\" loc=\"A3\" iostandard=\"SSTL15\" "
                "iobank.bank=\"15\" iobank.vref=\"0.75\"/>\n"
                "    <pin index=\"3\" name=\"p3\" loc=\"A4\" iostandard=\"SSTL15\" drive=\"8\" "
                "iobank.bank=\"15\" iobank.vref=\"0.75\"/>\n"
                "    <pin index=\"4\" name=\"p4\" loc=\"A5\" iostandard=\"SSTL15\" "
                "iobank.bank=\"15\" iobank.vref=\"0.75\"/>\n"
                "    <pin index=\"5\" name=\"p5\" loc=\"A6\" iostandard=\"SSTL15\" "
                "iobank.bank=\"15\"/>\n"
                "    <pin index=\"6\" name=\"p6\" loc=\"A7\" iostandard=\"SSTL15\" "
                "iobank.bank=\"15\"/>\n")
          .writeTo(dir, "b");
  HBOBoard read;
  ASSERT_TRUE(HBOParser().parseFile(board, &read));
  HBOBoardComponent *part = read.findBoardComponent("part0");
  ASSERT_NE(part, nullptr);
  struct Expected {
    const char *pin, *bank, *vref, *drive;
  };
  const Expected expected[] = {{"p0", "14", "0.75", ""}, {"p1", "14", "0.75", ""},
                               {"p2", "15", "0.75", ""}, {"p3", "15", "0.75", "8"},
                               {"p4", "15", "0.75", ""}, {"p5", "15", "", ""},
                               {"p6", "15", "", ""}};
  for (const Expected &e : expected) {
    HBOPinProps *pin = part->findPin(e.pin);
    ASSERT_NE(pin, nullptr) << e.pin;
    EXPECT_EQ(pin->getPinIOStandard(), "SSTL15") << e.pin;
    EXPECT_EQ(pin->getIOBankPropertyValue("bank"), e.bank) << e.pin;
    EXPECT_EQ(pin->getIOBankPropertyValue("vref"), e.vref) << e.pin;
    EXPECT_EQ(pin->getPinDrive(), e.drive) << e.pin;
    EXPECT_EQ(pin->getIOBankProperties().size(), *e.vref ? 2u : 1u) << e.pin;
  }
}

// A component's own pins take the port properties the board's mode reads:
// in the old mode only five of them, present even where the file gives
// none, and never the others.
TEST(PinFile, BoardFilePinsTakeOnlyThePropertiesTheModeReads) {
  for (const char *oldMode : {"false", "true"}) {
    test::ParamScope mode("board.usePre2019Dot2Mode", oldMode);
    HBOBoard read;
    ASSERT_TRUE(HBOParser().parseFile(dataPath("components/board.xml"), &read));
    HBOBoardComponent *pmod = read.findBoardComponent("pmod");
    ASSERT_NE(pmod, nullptr);
    HBOPinProps *second = pmod->findPin("pmod_2");
    HBOPinProps *third = pmod->findPin("pmod_3");
    ASSERT_TRUE(second && third);
    const HBOPinProps::StringMap props = second->getPortProps();
    EXPECT_EQ(props.at("iostandard"), "LVCMOS33") << oldMode;
    EXPECT_EQ(props.count("pull_type"), std::string(oldMode) == "true" ? 0u : 1u) << oldMode;
    EXPECT_EQ(third->getPortProps().size(), std::string(oldMode) == "true" ? 5u : 16u) << oldMode;
    EXPECT_EQ(third->getPortProps().at("slew"), "") << oldMode;
  }
}
