// The lift of a legacy board in memory: the gate, the FPGA, one component
// per interface with its sub type, the presets of the two known interface
// types, and the fresh pin indexes.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

using test::dataPath;

namespace {

std::unique_ptr<HBOBoard> readLegacy(const std::string &dir) {
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  EXPECT_TRUE(HBOParser().parseFile(dataPath("legacy/" + dir + "/board.xml"), board.get()));
  return board;
}

// The board's components by component name; the FPGA as "part0".
std::map<std::string, HBOBoardComponent *> componentsOf(const HBOBoard &board) {
  std::vector<HBOBoardComponent *> all;
  board.getBoardComponentsVec(all);
  std::map<std::string, HBOBoardComponent *> out;
  for (HBOBoardComponent *c : all)
    out[c->getComponentName()] = c;
  return out;
}

std::string subTypes(const HBOBoard &board) {
  std::string out;
  for (const auto &entry : componentsOf(board))
    out += entry.first + "=" + entry.second->getType() + "/" + entry.second->getSubType() + " ";
  return out;
}

std::string param(const HBOIpPreset &preset, const std::string &name) {
  std::string value;
  return preset.getParamValue(name, value) ? value : "(none)";
}

} // namespace

TEST(Migration, GateLeavesOtherBoardsAsTheyAre) {
  HBOParser parser;
  EXPECT_FALSE(parser.migrateV1ToV2(nullptr));
  {
    test::ParamScope off("board.enableSchemaV2", "false");
    std::unique_ptr<HBOBoard> board = readLegacy("migration");
    parser.migrateV1ToV2(board.get());
    EXPECT_EQ("1.1", board->getBoardSchemaVersion());
    EXPECT_TRUE(board->getJtagChains().empty());
    EXPECT_EQ(1u, componentsOf(*board).size());
  }
  HBOBoard modern;
  ASSERT_TRUE(parser.parseFile(dataPath("minimal/board.xml"), &modern));
  parser.migrateV1ToV2(&modern);
  EXPECT_EQ("2.1", modern.getBoardSchemaVersion());
  EXPECT_TRUE(modern.getJtagChains().empty());
  EXPECT_TRUE(modern.getMigratedFromSchema().empty());

  // Without an active part only the chain is added, once per call.
  HBOBoard empty;
  empty.setBoardSchemaVersion("1.0");
  parser.migrateV1ToV2(&empty);
  parser.migrateV1ToV2(&empty);
  EXPECT_EQ("1.0", empty.getBoardSchemaVersion());
  EXPECT_EQ((std::vector<std::string>{"chain1", "chain1"}), empty.getJtagChains());
}

TEST(Migration, EachInterfaceBecomesAComponent) {
  // Declared first, so that they outlive the board that points to them.
  HBOBusIfPreference byName, byGroup;
  byName.setMajorGroup("GPIO");
  byGroup.setMajorGroup("Custom");
  byGroup.setMinorGroup("foo");

  std::unique_ptr<HBOBoard> board = readLegacy("migration");
  HBOBoardComponent *fpga = board->getActivePart();
  for (const char *name : {"SWS_8BITS", "LED_4BITS", "BUTTON_LED"})
    fpga->getBusIfByName(name)->setPreference(&byName);
  fpga->getBusIfByName("OTHER_PRESET")->setPreference(&byGroup);
  HBOParser().migrateV1ToV2(board.get());

  EXPECT_EQ("2.0", board->getBoardSchemaVersion());
  EXPECT_EQ("1.1", board->getMigratedFromSchema());
  EXPECT_EQ(std::vector<std::string>{"chain1"}, board->getJtagChains());
  EXPECT_EQ("part0", fpga->getComponentName());
  EXPECT_EQ("fpga", fpga->getType());
  EXPECT_EQ("quarnel", fpga->getVendorName());
  EXPECT_EQ("1", fpga->getJtagPosition("chain1"));

  // The name decides only under a preference of an empty minor group, in
  // lower case and "led" first; a minor group decides whatever the name.
  EXPECT_EQ("LED_4BITS=chip/led button_led=chip/led ddr3=chip/chip fixed_io=chip/chip "
            "no_preset=chip/chip other_preset=chip/foo part0=fpga/ sws_8bits=chip/switch ",
            subTypes(*board));
  std::map<std::string, HBOBoardComponent *> components = componentsOf(*board);
  EXPECT_EQ("Custom", components["other_preset"]->getMajorGroup());
  EXPECT_EQ("GPIO", components["sws_8bits"]->getMajorGroup());
  HBOBoardComponent *sws = components["sws_8bits"];
  EXPECT_EQ("kestrel-boards:migrant:sws_8bits:2.3", sws->getName());
  EXPECT_EQ(board->getBoardFile(), sws->getBoardFile());
  EXPECT_EQ(board.get(), sws->getBoard());

  // The interface holds the model ports its maps name, when they exist.
  HBOBusIf *swsIf = fpga->getBusIfByName("sws_8bits");
  EXPECT_EQ("sws_8bits", swsIf->getOfComponent());
  ASSERT_EQ(1u, swsIf->getPortMaps().size());
  EXPECT_EQ("sw", swsIf->getPortMaps().begin()->first);

  // The same board without preferences: every device is a "chip".
  std::unique_ptr<HBOBoard> plain = readLegacy("migration");
  HBOParser().migrateV1ToV2(plain.get());
  EXPECT_EQ("chip", componentsOf(*plain)["sws_8bits"]->getSubType());
  EXPECT_EQ("chip", componentsOf(*plain)["LED_4BITS"]->getSubType());
}

TEST(Migration, PresetsOfTheMemoryAndFixedIoTypes) {
  std::unique_ptr<HBOBoard> board = readLegacy("migration");
  HBOParser().migrateV1ToV2(board.get());
  HBOBoardComponent *fpga = board->getActivePart();

  // The memory preset replaces the procedure of the same name that the
  // board's preset file had; the type is compared ignoring case.
  std::vector<HBOIpPreset *> ddr = board->findPresetProc("ddr3_preset");
  ASSERT_EQ(1u, ddr.size());
  EXPECT_EQ("ddr3_preset:quarnel-ip:ip:memctl_gen:*", ddr[0]->getPresetName());
  EXPECT_EQ("memctl_gen", ddr[0]->getName());
  EXPECT_EQ(dataPath("legacy/migration/ddr3_settings.xml"),
            param(*ddr[0], "CONFIG.XML_INPUT_FILE"));
  EXPECT_EQ("file", ddr[0]->getValueType());
  EXPECT_EQ(board.get(), ddr[0]->getOwner());
  EXPECT_EQ("ddr3_preset", fpga->getBusIfByName("ddr3")->getPresetProcName());

  std::vector<HBOIpPreset *> fixedIo = board->findPresetProc("fixed_io_preset");
  ASSERT_EQ(1u, fixedIo.size());
  EXPECT_EQ("fixed_io_preset:quarnel-ip:ip:cpu_block:*", fixedIo[0]->getPresetName());
  EXPECT_EQ("migrant", param(*fixedIo[0], "CONFIG.preset"));

  // Another type: a record with its procedure name only.
  std::vector<HBOIpPreset *> other = board->findPresetProc("other_preset_preset");
  ASSERT_EQ(1u, other.size());
  EXPECT_TRUE(other[0]->getVendor().empty());
  EXPECT_TRUE(other[0]->getParamList().empty());
  // A preset file that does not exist makes no preset.
  EXPECT_TRUE(fpga->getBusIfByName("no_preset")->getPresetProcName().empty());
  EXPECT_TRUE(board->findPresetProc("no_preset_preset").empty());

  // The one board whose processor preset has a name of its own.
  std::unique_ptr<HBOBoard> jaro = readLegacy("jaro");
  HBOParser().migrateV1ToV2(jaro.get());
  std::vector<HBOIpPreset *> jaroIo = jaro->findPresetProc("fixed_io_preset");
  ASSERT_EQ(1u, jaroIo.size());
  EXPECT_EQ("Jaroboard", param(*jaroIo[0], "CONFIG.preset"));
}

TEST(Migration, PinsAreNumberedAfreshInPortOrder) {
  std::unique_ptr<HBOBoard> board = readLegacy("migration");
  HBOParser().migrateV1ToV2(board.get());
  HBOBoardComponent *fpga = board->getActivePart();

  // Ports in name order (btn, ddr_dq, led, mio, sw), and each port's
  // records in position order.
  std::vector<std::string> byIndex;
  for (int i = 0; i < 16; ++i) {
    HBOPinProps *pin = fpga->getPinByIndex(i);
    byIndex.push_back(pin ? pin->getName() + "@" + pin->getPinLoc() : "(none)");
  }
  EXPECT_EQ((std::vector<std::string>{"btn@B0", "ddr_dq[0]@D0", "ddr_dq[1]@D1", "led[10]@L0",
                                      "led[11]@L1", "led[12]@L2", "led[13]@L3", "mio@M0",
                                      "sw[0]@S0", "sw[1]@S1", "sw[2]@S2", "sw[3]@S3", "sw[4]@S4",
                                      "sw[5]@S5", "sw[6]@S6", "sw[7]@S7"}),
            byIndex);
  EXPECT_EQ(16u, fpga->getPins().size());
  EXPECT_EQ(fpga, fpga->getPinByIndex(3)->getOwner());

  // The port keeps the index of the legacy file as its key.
  HBOModelPort *led = nullptr;
  ASSERT_TRUE(fpga->getModelPortByName(led, "led"));
  std::string pin;
  EXPECT_TRUE(led->getPinPort("12", pin));
  EXPECT_EQ("led[12]", pin);
  HBOModelPort *btn = nullptr;
  ASSERT_TRUE(fpga->getModelPortByName(btn, "btn"));
  EXPECT_TRUE(btn->getPinPort("0", pin));
  EXPECT_EQ("btn", pin);
}
