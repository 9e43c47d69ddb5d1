// The preset file and the IP associated rules: where the file is looked for,
// what a file that fails does, and the checks that a rule must pass. The
// test boards' presets are read whole in ReadGoldenTest.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOBusIf.h"
#include "HBOIpPreset.h"
#include "HBOParser.h"
#include "HEXError.h"
#include "HXMLWInterface.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

using test::dataPath;

namespace {

using ParamList = std::map<std::string, std::string>;

// The message that an HEXError out of \p call carries; fails the test when
// nothing is raised.
template <typename Call> ComMsgMgrInstance raisedBy(Call call) {
  try {
    call();
  } catch (const HEXError &e) {
    return e.getMessage();
  }
  ADD_FAILURE() << "nothing was raised";
  return ComMsgMgrInstance();
}

} // namespace

TEST(PresetFile, OnlyABareNameIsLookedForBesideTheBoardFile) {
  test::MessageRecorder msgs;
  HBOBoard board;
  board.setBoardFile(dataPath("presets_basic/board.xml"));
  HBOBoardParser parser;
  parser.setBoard(&board);
  std::map<std::string, HBOIpPreset *> scratch;

  EXPECT_TRUE(parser.presetReader().parsePresetFile("./preset.xml", scratch));
  EXPECT_TRUE(scratch.empty()) << "the records go to the board only";
  EXPECT_EQ(2u, board.getIpPresets().size());
  // Read again, the records replace those of the first read.
  EXPECT_TRUE(parser.presetReader().parsePresetFile("preset.xml", scratch));
  EXPECT_EQ(3u, board.getIpPresets().at("DDR3_SDRAM_PRESET").size());
  EXPECT_TRUE(msgs.records.empty());

  // A name with a directory is taken as it stands, relative to the working
  // directory: beside board.xml this one would exist.
  EXPECT_FALSE(parser.presetReader().parsePresetFile("../presets_basic/preset.xml", scratch));
  EXPECT_FALSE(parser.presetReader().parsePresetFile("absent.xml", scratch));
  ASSERT_EQ((std::vector<std::string>{"49-62", "49-62"}), msgs.ids());
  EXPECT_EQ("../presets_basic/preset.xml", msgs.records[0].args.at(0));
  EXPECT_EQ(dataPath("presets_basic/absent.xml"), msgs.records[1].args.at(0));
}

TEST(PresetFile, AFileThatIsNoDocumentEndsTheRead) {
  {
    test::MessageRecorder msgs;
    HBOBoard board;
    EXPECT_FALSE(HBOParser().parseFile(dataPath("presets_malformed/board.xml"), &board));
    EXPECT_EQ(1u, msgs.count("49-56"));
    EXPECT_TRUE(board.getBoardComponents().empty()) << "nothing after the presets is read";
  }
  test::MessageRecorder msgs;
  HBOBoard board;
  board.setBoardFile(dataPath("presets_malformed/board.xml"));
  HBOBoardParser parser;
  parser.setBoard(&board);
  std::map<std::string, HBOIpPreset *> scratch;
  ComMsgMgrInstance raised =
      raisedBy([&] { parser.presetReader().parsePresetFile("preset.xml", scratch); });
  EXPECT_EQ("49-111", raised.getId());
  EXPECT_EQ(std::vector<std::string>{dataPath("presets_malformed/preset.xml")}, raised.getArgs());
}

TEST(PresetFile, AFileThatFailsItsSchemaEndsTheRead) {
  {
    // A validating build refuses a file it cannot open.
    test::MessageRecorder quiet;
    if (HBOBoardParser().isValidXML(dataPath("presets_bad_file/no_such.xml"), "preset"))
      GTEST_SKIP() << "this build does not validate against DTDs";
  }
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  EXPECT_FALSE(parser.parseFile(dataPath("presets_bad_file/board.xml"), &board, true,
                                dataPath("presets_bad_file/schemas"), nullptr));
  const ComMsgRecord *failed = msgs.find("49-63");
  ASSERT_NE(nullptr, failed);
  EXPECT_EQ((std::vector<std::string>{dataPath("presets_bad_file/preset.xml"), ""}), failed->args);
  EXPECT_EQ(1u, msgs.count("49-56"));
  EXPECT_TRUE(board.getIpPresets().empty());
}

namespace {

// A board built by hand, so that the rules meet exactly the interfaces a
// test gives them, and the rules' reader run on it.
class RulesBoard : public ::testing::Test {
protected:
  void addComponent(const std::string &name, const std::string &type, const std::string &subType,
                    std::initializer_list<const char *> interfaces) {
    HBOBoardComponent *component = new HBOBoardComponent();
    component->setComponentName(name);
    component->setType(type);
    component->setSubType(subType);
    component->setBoard(&board);
    for (const char *interfaceName : interfaces) {
      HBOBusIf *busIf = new HBOBusIf();
      busIf->setName(interfaceName);
      component->setBusIf(interfaceName, busIf);
    }
    board.addBoardComponent(component);
    if (type == "fpga")
      board.setActivePart(component);
  }

  bool readRules(const std::string &dir, const std::string &schema = "2.1") {
    board.setBoardFile(dataPath(dir + "/board.xml"));
    board.setBoardSchemaVersion(schema);
    doc.reset(new HXMLWInterface());
    EXPECT_TRUE(doc->readFromFile(board.getBoardFile()));
    parser.setBoard(&board);
    std::string error;
    return parser.presetReader().readIpAssociatedInterfaces(doc->getRootElement(), error);
  }

  /// The texts of the queued findings, in queue order.
  std::vector<std::string> findings() const {
    std::vector<std::string> out;
    for (const auto &entry : parser.getMessages()) {
      EXPECT_EQ("49-69", entry.first.getId());
      EXPECT_FALSE(entry.second) << "every finding of a rule fails the read";
      out.push_back(entry.first.getArgs().at(1));
    }
    return out;
  }

  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  std::unique_ptr<HXMLWInterface> doc;
};

} // namespace

TEST_F(RulesBoard, RulesMapAnIpToBoardInterfacesInOrder) {
  addComponent("part0", "fpga", "", {"ddr3_sdram", "sys_clock", "reset", "uart"});
  ASSERT_TRUE(readRules("presets_assoc"));
  EXPECT_TRUE(findings().empty());
  EXPECT_TRUE(board.getIpPresets().empty());

  const auto &rules = board.getIpAssociatedInterfaces();
  ASSERT_EQ(2u, rules.size());
  const auto &ddr = rules.at("DDR3_RULE");
  ASSERT_EQ(2u, ddr.size());
  EXPECT_TRUE(ddr[0]->isAssocIntf());
  EXPECT_FALSE(ddr[0]->isPreset());
  EXPECT_EQ("ddr3_rule:quarnel-ip:ip:mem_ctrl:2.3:S_AXI", ddr[0]->getPresetName());
  EXPECT_EQ((ParamList{{"ddr3_sdram", "1"}, {"reset", "2"}, {"sys_clock", "0"}}),
            ddr[0]->getParamList())
      << "without an order an interface ranks by its position";
  EXPECT_EQ("ddr3_rule:quarnel-ip:ip:clk_gen:*:*", ddr[1]->getPresetName());
  EXPECT_EQ((ParamList{{"sys_clock", "0"}}), ddr[1]->getParamList());

  const auto &uart = rules.at("UART_RULE");
  ASSERT_EQ(1u, uart.size()) << "rule names that differ in case share one entry";
  EXPECT_EQ("uart_16550", uart[0]->getName());
}

TEST_F(RulesBoard, FindingsAreQueuedAndTheRecordsKept) {
  addComponent("part0", "fpga", "", {"ddr3_sdram"});
  ASSERT_TRUE(readRules("presets_assoc_findings"));
  EXPECT_EQ((std::vector<std::string>{
                "Vendor cannot be empty in ip 'mem_ctrl'.",
                "In ip 'mem_ctrl' order cannot be less than zero for interface 'ddr3_sdram'.",
                "Library cannot be empty in ip ''.",
                "IP Name cannot be empty.",
                // The child that is no ip is checked as an empty record.
                "Vendor cannot be empty in ip ''.",
                "Library cannot be empty in ip ''.",
                "IP Name cannot be empty.",
            }),
            findings());
  const auto &checks = board.getIpAssociatedInterfaces().at("CHECKS");
  ASSERT_EQ(3u, checks.size());
  EXPECT_TRUE(checks[0]->isAssocIntf());
  EXPECT_FALSE(checks[2]->isAssocIntf()) << "the empty record keeps the kind it was made with";
  EXPECT_FALSE(parser.iterateMessages(false));
}

TEST_F(RulesBoard, AnInterfaceTheBoardDoesNotOfferEndsTheRead) {
  addComponent("part0", "fpga", "", {"ddr3_sdram"});
  addComponent("fmc", "connector", "fmc_lpc", {"fmc_iic"});
  // A board with an FPGA offers only the FPGA's interfaces, and the rule
  // must spell the name exactly.
  const std::pair<const char *, const char *> cases[] = {{"presets_assoc_unknown", "fmc_iic"},
                                                          {"presets_assoc_case", "DDR3_SDRAM"}};
  for (const auto &c : cases) {
    ComMsgMgrInstance raised = raisedBy([&] { readRules(c.first); });
    EXPECT_EQ("49-69", raised.getId());
    EXPECT_EQ((std::vector<std::string>{dataPath(std::string(c.first) + "/board.xml"),
                                        "Provided Bus interface does not exist on the board '" +
                                            std::string(c.second) + "'."}),
              raised.getArgs());
  }
  EXPECT_TRUE(board.getIpAssociatedInterfaces().empty());
}

TEST_F(RulesBoard, ADaughterBoardOffersItsConnectorsInterfaces) {
  addComponent("fmc", "connector", "fmc_lpc", {"fmc_iic"});
  ASSERT_TRUE(readRules("presets_assoc_unknown"));
  EXPECT_TRUE(findings().empty());
  EXPECT_EQ(1u, board.getIpAssociatedInterfaces().at("FMC_RULE").size());
}

TEST_F(RulesBoard, RulesNeedSchemaTwoPointOne) {
  addComponent("part0", "fpga", "", {"ddr3_sdram", "sys_clock", "reset", "uart"});
  ComMsgMgrInstance raised = raisedBy([&] { readRules("presets_assoc", "2.0"); });
  EXPECT_EQ("49-77", raised.getId());
  EXPECT_EQ(std::vector<std::string>{"2.0"}, raised.getArgs());
  EXPECT_TRUE(readRules("presets_assoc", "2.2"));

  // Even an empty element ends the read of an older file.
  test::MessageRecorder msgs;
  HBOBoard old;
  EXPECT_FALSE(HBOParser().parseFile(dataPath("presets_assoc_old_schema/board.xml"), &old));
  EXPECT_EQ(std::vector<std::string>{"49-56"}, msgs.ids());
}
