// Deep copies: a copy shares no object with its source and holds all that
// the source holds; names follow the prefix rule of each class.
#include "BoardDump.h"
#include "BoardGraph.h"
#include "HBOParser.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>

namespace {

std::unique_ptr<HBOBoard> readBoard(const std::string &dir) {
  auto board = std::make_unique<HBOBoard>();
  test::MessageRecorder quiet;
  EXPECT_TRUE(HBOParser().parseFile(test::dataPath(dir + "/board.xml"), board.get())) << dir;
  return board;
}

std::vector<std::string> lines(const std::string &text) {
  std::vector<std::string> out;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);)
    out.push_back(line);
  return out;
}

// The lines of one dump that the other lacks, in order.
std::vector<std::string> linesNotIn(const std::string &a, const std::string &b) {
  std::vector<std::string> bLines = lines(b), out;
  std::multiset<std::string> pool(bLines.begin(), bLines.end());
  for (const std::string &line : lines(a)) {
    auto it = pool.find(line);
    if (it == pool.end())
      out.push_back(line);
    else
      pool.erase(it);
  }
  return out;
}

const char *const kBoards[] = {"interfaces_basic",
                               "interfaces_enablement",
                               "presets_basic",
                               "presets_assoc",
                               "connections_basic",
                               "components",
                               "full"};

} // namespace

TEST(DeepCopy, ACopyHoldsAllOfItsSourceAndSharesNothing) {
  for (const char *dir : kBoards) {
    SCOPED_TRACE(dir);
    std::unique_ptr<HBOBoard> src = readBoard(dir);
    const std::string before = dumpBoard(*src);
    HBOBoard copy(*src, src->getBoardName());
    test::BoardGraph srcGraph(*src), copyGraph(copy);
    EXPECT_EQ(0u, copyGraph.sharedWith(srcGraph));
    EXPECT_EQ(srcGraph.objects.size(), copyGraph.objects.size());
    EXPECT_TRUE(copy.getBoardFile().empty());
    EXPECT_TRUE(copy.getPowerRails().empty());

    // What a copy leaves behind: the file, power rails, data properties,
    // the connected-board maps, and of components the declared compatible
    // connectors, mux positions, drivers and design constraints. A preset's
    // name is made anew of its identity.
    for (const std::string &line : linesNotIn(dumpBoard(copy), before))
      if (line.rfind("file:", 0) != 0 && line.rfind("connected_", 0) != 0 &&
          line.rfind("  record ", 0) != 0)
        ADD_FAILURE() << "only in the copy: " << line;

    // Pulled in a second time under a prefix, the source is still not shared.
    copy.copyBoardInformation(*src, "J5");
    EXPECT_EQ(0u, test::BoardGraph(copy).sharedWith(srcGraph));
    EXPECT_EQ(before, dumpBoard(*src)) << "the source is left as it was";
  }
}

TEST(DeepCopy, NamesFollowThePrefixRule) {
  std::unique_ptr<HBOBoard> src = readBoard("interfaces_basic");
  HBOBoard copy(*src, "copy");
  copy.copyBoardInformation(*src, "J5");
  EXPECT_EQ((std::vector<std::string>{"J1", "J2", "J5_J1", "J5_J2"}), [&] {
    std::vector<std::string> names;
    for (const HBOJumper *j : copy.getJumpers())
      names.push_back(j->getName());
    return names;
  }());
  EXPECT_EQ(src->getJumpers()[1]->getDefaultValue(), copy.getJumpers()[3]->getDefaultValue());
  EXPECT_NE(nullptr, copy.findBoardComponent("j5_leds"));
  EXPECT_EQ(nullptr, copy.findBoardComponent("j5_part0")) << "no FPGA of a source comes along";

  // A component copied on its own: the component name is lower-cased as a
  // whole, the full name is the owner's, interfaces and ports keep the
  // prefix's case, parameters and pins their names.
  const HBOBoardComponent &part0 = *src->getActivePart();
  HBOBoardComponent fpga(part0, &copy, "J5");
  EXPECT_EQ("j5_part0", fpga.getComponentName());
  EXPECT_EQ("kestrel-boards:copy:j5_part0:1.0", fpga.getName());
  const HBOBusIf &leds = *fpga.getBusIfByName("J5_led_4bits");
  EXPECT_EQ("J5_led_4bits", leds.getName());
  EXPECT_EQ("J5_LEDs", leds.getOfComponent());
  EXPECT_EQ("J5_led_4bits_preset", leds.getPresetProcName());
  EXPECT_EQ((std::map<std::string, bool>{{"J5_J1", true}, {"J5_J2", false}}), leds.getJumpers());
  std::string text;
  EXPECT_TRUE(fpga.getBusIfByName("J5_sys_clock")->getParamValue("frequency", text));
  EXPECT_EQ("100000000", text);
  for (const auto &port : leds.getPortMaps()) {
    EXPECT_EQ(0u, port.first.rfind("J5_", 0)) << port.first;
    HBOModelPort *entered = nullptr;
    EXPECT_TRUE(fpga.getModelPortByName(entered, port.first));
    EXPECT_EQ(port.second, entered) << "the component holds the copied ports";
  }
  EXPECT_EQ(part0.getPins().size(), fpga.getPins().size());
  EXPECT_NE(nullptr, fpga.findPin(std::string(part0.getPins().begin()->first)));
}

TEST(DeepCopy, AModeTakesThePrefixInItsNamesAndKeepsItsOrders) {
  HBOBoard board;
  board.setName("v", "b", "1.0");
  HBOBoardComponent owner;
  owner.setBoard(&board);
  HBOComponentMode mode;
  mode.setName("m");
  mode.setDisplayName("Mode");
  mode.addInterface(2, {"a", true});
  auto *preference = new HBOBusIfPreference();
  preference->setName("gpio_ctl");
  mode.addPreferredIp(preference);

  HBOComponentMode copy(mode, &owner, "J5");
  EXPECT_EQ("J5_m", copy.getName());
  EXPECT_EQ("Mode (J5)", copy.getDisplayName());
  HBOComponentMode::InterfaceMap interfaces;
  copy.getInterfaces(interfaces);
  EXPECT_EQ((HBOComponentMode::InterfaceMap{{2, {"J5_a", true}}}), interfaces);
  std::vector<HBOBusIfPreference *> preferences;
  copy.getPreferredIps(preferences);
  ASSERT_EQ(1u, preferences.size());
  EXPECT_NE(preference, preferences[0]);
  EXPECT_EQ(&board, preferences[0]->getOwner());

  HBOComponentMode plain(mode, &owner, "");
  EXPECT_EQ("m", plain.getName());
  EXPECT_EQ("Mode", plain.getDisplayName());
}

TEST(DeepCopy, ConnectionsSpeakOfTheCopiedJumpers) {
  HBOBoard bare;
  bare.setName("v", "bare", "1.0");
  auto *bus = new HBOBoardBus();
  bus->setName("c");
  bus->setEnablementDependency("{J1 true}");
  bare.addBus(bus);
  HBOBoard target(bare, "target");
  target.copyBoardBuses(bare, "J5");
  EXPECT_EQ("{J1 true}", target.getBuses().back()->getEnablementDependency())
      << "without jumpers on the source the expression stays";

  // With jumpers, the copies speak of the copied ones; every name of a
  // connection takes the prefix, and a net keeps its own.
  std::unique_ptr<HBOBoard> src = readBoard("connections_basic");
  HBOBoard copy(*src, "copy");
  copy.copyBoardBuses(*src, "J5");
  const std::size_t count = src->getBuses().size();
  ASSERT_EQ(2 * count, copy.getBuses().size());
  for (std::size_t i = 0; i < count; ++i) {
    const HBOBoardBus &before = *src->getBuses()[i], &after = *copy.getBuses()[count + i];
    if (before.getName() == "dq") {
      EXPECT_EQ("{j5_j1 0} {j5_j2 1}", after.getEnablementDependency());
    }
    EXPECT_EQ("J5_" + before.getName() + " J5_" + before.getComp1() + " J5_" + before.getComp2() +
                  " J5_" + before.getConnectionName(),
              after.getName() + " " + after.getComp1() + " " + after.getComp2() + " " +
                  after.getConnectionName());
    ASSERT_EQ(before.getBoardBusNets().size(), after.getBoardBusNets().size());
    if (!before.getBoardBusNets().empty()) {
      EXPECT_EQ(before.getBoardBusNets()[0]->getName(), after.getBoardBusNets()[0]->getName());
    }
  }
}

TEST(DeepCopy, PresetsComeUnderPrefixedKeysAndProcedures) {
  std::unique_ptr<HBOBoard> src = readBoard("presets_basic");
  HBOBoard copy(*src, "copy");
  copy.copyPresets(*src, "J5");
  const HBOIpPreset &a = *src->getIpPresets().at("DDR3_SDRAM_PRESET").front();
  const HBOIpPreset &b = *copy.getIpPresets().at("J5_DDR3_SDRAM_PRESET").front();
  EXPECT_EQ("J5_" + a.getPresetProcName(), b.getPresetProcName());
  EXPECT_EQ(b.getPresetProcName() + ":" + a.getVendor() + ":" + a.getLibrary() + ":" + a.getName() +
                ":" + a.getVersion() + ":" + a.getIpInterface(),
            b.getPresetName());
  std::string value;
  ASSERT_FALSE(a.getParamList().empty());
  const std::string first = (*a.getParamList().begin()).first;
  EXPECT_TRUE(b.getParamValue(first, value)) << "preset parameters keep their names";
  // Copied again under the same prefix, the records of a key are replaced.
  const std::size_t count = copy.getIpPresets().size();
  copy.copyPresets(*src, "J5");
  EXPECT_EQ(count, copy.getIpPresets().size());

  // An associated-interface record's parameters name board interfaces,
  // which the copy renamed.
  std::unique_ptr<HBOBoard> assoc = readBoard("presets_assoc");
  HBOBoard target(*assoc, "target");
  target.copyAssociatedInterfaces(*assoc, "J5");
  const auto &entry = *assoc->getIpAssociatedInterfaces().begin();
  const HBOIpPreset &rule = *target.getIpAssociatedInterfaces().at("J5_" + entry.first).front();
  const std::string name = (*entry.second.front()->getParamList().begin()).first;
  EXPECT_TRUE(rule.getParamValue("J5_" + name, value)) << name;
}
