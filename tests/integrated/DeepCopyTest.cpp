// Deep copies: a copy shares no object with its source and holds all that
// the source holds; names follow the prefix rule of each class.
#include "BoardDump.h"
#include "BoardGraph.h"
#include "HBOBoardComponentDriver.h"
#include "HBOParser.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>

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

const HBOBoardComponent &component(const HBOBoard &board, const std::string &name) {
  const HBOBoardComponent *found = board.findBoardComponent(name);
  if (!found)
    throw std::runtime_error("no component " + name + " on " + board.getName());
  return *found;
}

const char *const kBoards[] = {"interfaces_basic",
                               "interfaces_enablement",
                               "presets_basic",
                               "presets_assoc",
                               "connections_basic",
                               "components",
                               "full"};

} // namespace

TEST(DeepCopy, ACopyOfABoardHoldsAllOfItAndSharesNothing) {
  for (const char *dir : kBoards) {
    SCOPED_TRACE(dir);
    std::unique_ptr<HBOBoard> src = readBoard(dir);
    const std::string before = dumpBoard(*src);
    HBOBoard copy(*src, src->getBoardName());
    test::BoardGraph srcGraph(*src), copyGraph(copy);
    EXPECT_EQ(0u, copyGraph.sharedWith(srcGraph));
    EXPECT_EQ(srcGraph.objects.size(), copyGraph.objects.size());
    EXPECT_EQ(before, dumpBoard(*src)) << "the source is left as it was";

    // What a copy leaves behind: the file, power rails, data properties,
    // the connected-board maps, and of components the declared compatible
    // connectors, mux positions, drivers and design constraints. A preset's
    // name is made anew of its identity.
    for (const std::string &line : linesNotIn(dumpBoard(copy), before))
      if (line.rfind("file:", 0) != 0 && line.rfind("connected_", 0) != 0 &&
          line.rfind("  record ", 0) != 0)
        ADD_FAILURE() << "only in the copy: " << line;
    EXPECT_TRUE(copy.getBoardFile().empty());
    EXPECT_TRUE(copy.getPowerRails().empty());
    if (const HBOBoardComponent *fpga = copy.getActivePart()) {
      EXPECT_EQ(fpga->getComponentName(), src->getActivePart()->getComponentName());
    }
  }
}

TEST(DeepCopy, BoardInformationCopiedUnderAPrefixSharesNothing) {
  for (const char *dir : kBoards) {
    SCOPED_TRACE(dir);
    std::unique_ptr<HBOBoard> src = readBoard(dir);
    HBOBoard target(*src, "target");
    target.copyBoardInformation(*src, "J5");
    test::BoardGraph srcGraph(*src), targetGraph(target);
    EXPECT_EQ(0u, targetGraph.sharedWith(srcGraph));
    // Everything but the FPGA came in a second time, under new names.
    for (const auto &entry : src->getBoardComponents()) {
      const bool fpga = entry.second->getType() == "fpga";
      EXPECT_EQ(!fpga, target.findBoardComponent("j5_" + entry.first) != nullptr) << entry.first;
    }
    EXPECT_EQ(2 * src->getBuses().size(), target.getBuses().size());
    EXPECT_EQ(2 * src->getJumpers().size(), target.getJumpers().size());
  }
}

TEST(DeepCopy, NamesFollowThePrefixRule) {
  std::unique_ptr<HBOBoard> src = readBoard("interfaces_basic");
  HBOBoard copy(*src, "copy");
  copy.copyBoardInformation(*src, "J5");

  // Jumpers: "J5_J1", same state; with no prefix the name stays.
  ASSERT_EQ(2 * src->getJumpers().size(), copy.getJumpers().size());
  const HBOJumper &j1 = *src->getJumpers().front();
  const HBOJumper &copied = *copy.getJumpers()[src->getJumpers().size()];
  EXPECT_EQ("J5_" + j1.getName(), copied.getName());
  EXPECT_EQ(j1.getDefaultValue(), copied.getDefaultValue());
  EXPECT_EQ(j1.getName(), copy.getJumpers().front()->getName());
  HBOJumper unprefixed(j1, &copy, "");
  EXPECT_EQ(j1.getName(), unprefixed.getName());

  // Components: the name is lower-cased as a whole, the interfaces keep the
  // prefix's case, parameters keep their names, pins their names.
  for (const auto &entry : src->getBoardComponents()) {
    if (entry.second->getType() == "fpga")
      continue;
    const HBOBoardComponent &original = *entry.second;
    const HBOBoardComponent &prefixed = component(copy, "j5_" + entry.first);
    EXPECT_EQ("kestrel-boards:copy:j5_" + entry.first + ":" + src->getVersion(),
              prefixed.getName());
    std::vector<HBOBusIf *> before, after;
    original.getInterfacesVec(before);
    prefixed.getInterfacesVec(after);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
      EXPECT_EQ("J5_" + before[i]->getName(), after[i]->getName());
      EXPECT_EQ("J5_" + before[i]->getOfComponent(), after[i]->getOfComponent());
      EXPECT_EQ(after[i], prefixed.getBusIfByName("j5_" + before[i]->getName()));
      for (const auto &port : after[i]->getPortMaps()) {
        EXPECT_EQ(0u, port.first.rfind("J5_", 0)) << port.first;
        std::string owner;
        port.second->getOwnerBusIf(owner);
        EXPECT_TRUE(owner.empty() || owner.rfind("J5_", 0) == 0) << owner;
        HBOModelPort *entered = nullptr;
        EXPECT_TRUE(prefixed.getModelPortByName(entered, port.first));
        EXPECT_EQ(port.second, entered) << "the component holds the copied ports";
      }
      std::string before0, after0;
      EXPECT_EQ(before[i]->getParamValue("frequency", before0),
                after[i]->getParamValue("frequency", after0));
      EXPECT_EQ(before0, after0);
    }
    ASSERT_EQ(original.getPins().size(), prefixed.getPins().size());
    for (const auto &pin : original.getPins())
      EXPECT_NE(nullptr, prefixed.findPin(std::string(pin.first)));
    ASSERT_EQ(original.getParameters().size(), prefixed.getParameters().size());
    for (std::size_t i = 0; i < original.getParameters().size(); ++i)
      EXPECT_EQ(original.getParameters()[i]->getName(), prefixed.getParameters()[i]->getName());
  }
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
  mode.setEnablementDependency("{J1 true}");
  auto *preference = new HBOBusIfPreference();
  preference->setName("gpio_ctl");
  mode.addPreferredIp(preference);

  HBOComponentMode copy(mode, &owner, "J5");
  EXPECT_EQ("J5_m", copy.getName());
  EXPECT_EQ("Mode (J5)", copy.getDisplayName());
  HBOComponentMode::InterfaceMap interfaces;
  copy.getInterfaces(interfaces);
  EXPECT_EQ((HBOComponentMode::InterfaceMap{{2, {"J5_a", true}}}), interfaces);
  EXPECT_EQ("{J1 true}", copy.getEnablementDependency()) << "jumpers are the board's to rename";
  std::vector<HBOBusIfPreference *> preferences;
  copy.getPreferredIps(preferences);
  ASSERT_EQ(1u, preferences.size());
  EXPECT_NE(preference, preferences[0]);
  EXPECT_EQ("gpio_ctl", preferences[0]->getName());
  EXPECT_EQ(&board, preferences[0]->getOwner());

  HBOComponentMode plain(mode, &owner, "");
  EXPECT_EQ("m", plain.getName());
  EXPECT_EQ("Mode", plain.getDisplayName());

  HBOBoardComponentDriver driver;
  driver.setName("uartlite");
  driver.addFile("uart.c", "source");
  HBOBoardComponentDriver copiedDriver(driver, &owner);
  EXPECT_EQ("uartlite", copiedDriver.getName());
  EXPECT_EQ(driver.getFiles(), copiedDriver.getFiles());
  EXPECT_EQ(&owner, copiedDriver.getBoardComponent());
}

TEST(DeepCopy, AConnectsWithParameterKeepsAComponentToItsConnector) {
  std::unique_ptr<HBOBoard> daughter =
      readBoard("compose_install/boards/board_files/kestrel-boards/finch_card/1.0");
  HBOBoard onFmc(*daughter, "on_fmc"), onPmod(*daughter, "on_pmod");
  onFmc.copyComponents(*daughter, "fmc");
  onPmod.copyComponents(*daughter, "pmod");
  EXPECT_EQ(nullptr, onFmc.findBoardComponent("fmc_beeper"));
  EXPECT_NE(nullptr, onFmc.findBoardComponent("fmc_plug"));
  EXPECT_NE(nullptr, onPmod.findBoardComponent("pmod_beeper"));

  // The modes of a copied component speak of the copied jumpers.
  std::vector<HBOComponentMode *> modes;
  onFmc.findBoardComponent("fmc_plug")->getComponentModes(modes);
  ASSERT_EQ(1u, modes.size());
  EXPECT_EQ("{fmc_jp1 true}", modes[0]->getEnablementDependency());
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

  std::unique_ptr<HBOBoard> src = readBoard("connections_basic");
  ASSERT_EQ("J1", src->getJumpers().front()->getName());
  HBOBoard copy(*src, "copy");
  copy.copyBoardBuses(*src, "J5");
  bool sawExpression = false;
  ASSERT_EQ(2 * src->getBuses().size(), copy.getBuses().size());
  for (std::size_t i = 0; i < src->getBuses().size(); ++i) {
    const HBOBoardBus &before = *src->getBuses()[i];
    const HBOBoardBus &after = *copy.getBuses()[src->getBuses().size() + i];
    if (before.getName() == "dq") {
      EXPECT_EQ("{j5_j1 0} {j5_j2 1}", after.getEnablementDependency());
      sawExpression = true;
    }
    EXPECT_EQ("J5_" + before.getName(), after.getName());
    EXPECT_EQ("J5_" + before.getComp1(), after.getComp1());
    EXPECT_EQ("J5_" + before.getComp2(), after.getComp2());
    EXPECT_EQ("J5_" + before.getConnectionName(), after.getConnectionName());
    ASSERT_EQ(before.getBoardBusNets().size(), after.getBoardBusNets().size());
    for (std::size_t n = 0; n < before.getBoardBusNets().size(); ++n)
      EXPECT_EQ(before.getBoardBusNets()[n]->getName(), after.getBoardBusNets()[n]->getName());
  }
  EXPECT_TRUE(sawExpression);
}

TEST(DeepCopy, PresetsComeUnderPrefixedKeysAndProcedures) {
  std::unique_ptr<HBOBoard> src = readBoard("presets_basic");
  HBOBoard copy(*src, "copy");
  const std::size_t before = copy.getIpPresets().size();
  copy.copyPresets(*src, "J5");
  EXPECT_EQ(2 * before, copy.getIpPresets().size());
  for (const auto &entry : src->getIpPresets()) {
    auto copied = copy.getIpPresets().find("J5_" + entry.first);
    ASSERT_NE(copy.getIpPresets().end(), copied) << entry.first;
    ASSERT_EQ(entry.second.size(), copied->second.size());
    for (std::size_t i = 0; i < entry.second.size(); ++i) {
      const HBOIpPreset &a = *entry.second[i], &b = *copied->second[i];
      EXPECT_EQ("J5_" + a.getPresetProcName(), b.getPresetProcName());
      EXPECT_EQ(b.getPresetProcName() + ":" + a.getVendor() + ":" + a.getLibrary() + ":" +
                    a.getName() + ":" + a.getVersion() + ":" + a.getIpInterface(),
                b.getPresetName());
      ASSERT_EQ(a.getParamList().size(), b.getParamList().size());
      auto x = a.getParamList().begin();
      for (auto y = b.getParamList().begin(); y != b.getParamList().end(); ++x, ++y) {
        EXPECT_EQ((*x).first, (*y).first) << "preset parameters keep their names";
        EXPECT_EQ((*x).second, (*y).second);
      }
    }
  }
  // Copied again under the same prefix, the records of the key are replaced.
  copy.copyPresets(*src, "J5");
  EXPECT_EQ(2 * before, copy.getIpPresets().size());

  // Associated-interface records name board interfaces: their keys follow.
  std::unique_ptr<HBOBoard> assoc = readBoard("presets_assoc");
  HBOBoard target(*assoc, "target");
  target.copyAssociatedInterfaces(*assoc, "J5");
  for (const auto &entry : assoc->getIpAssociatedInterfaces()) {
    const std::vector<HBOIpPreset *> &copied =
        target.getIpAssociatedInterfaces().at("J5_" + entry.first);
    ASSERT_EQ(entry.second.size(), copied.size());
    for (std::size_t i = 0; i < copied.size(); ++i) {
      std::vector<std::string> names;
      for (auto p = copied[i]->getParamList().begin(); p != copied[i]->getParamList().end(); ++p)
        names.push_back((*p).first);
      for (auto p = entry.second[i]->getParamList().begin();
           p != entry.second[i]->getParamList().end(); ++p)
        EXPECT_NE(names.end(), std::find(names.begin(), names.end(), "J5_" + (*p).first));
    }
  }
}
