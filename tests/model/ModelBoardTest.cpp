// The board root: identity, active part and forwarding, look-ups over
// components and connections, and what the board frees.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardDB.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

#include <memory>

using modeltest::makeComponent;
using modeltest::Strings;

namespace {

HBOBoardBus *makeBus(const std::string &name, const std::string &comp1, const std::string &comp2) {
  auto *bus = new HBOBoardBus();
  bus->setName(name);
  bus->setComp1(comp1);
  bus->setComp2(comp2);
  return bus;
}

class CountingDB : public HBOBoardDB {
public:
  int saves = 0;
  HBOBoard *last = nullptr;

protected:
  void save(HBOBoard *board) override {
    ++saves;
    last = board;
  }
};

} // namespace

TEST(ModelBoard, NameFormsAreLowerCasedButVersionFieldKeepsCase) {
  HBOBoard board;
  board.setName("ACME", "Big_Board", "1.2A");
  EXPECT_EQ((Strings{board.getVendor(), board.getBoardName(), board.getVersion(), board.getName()}),
            (Strings{"acme", "big_board", "1.2A", "acme:big_board:1.2a"}));

  // Only the board revision is trimmed; the listed texts keep their blanks.
  board.setCompatibleBoardRevisions({{3, " r3 "}, {1, " r1 "}});
  EXPECT_EQ(board.getBoardRevision(), "r3");
  Strings texts{"stale"};
  board.getCompatibleBoardRevisionsAsVec(texts);
  EXPECT_EQ(texts, (Strings{"{1  r1 }", "{3  r3 }"}));
  board.setCompatibleBoardRevisions({});
  EXPECT_EQ(board.getBoardRevision(), "");
}

TEST(ModelBoard, ActivePartIsFirstFpgaByName) {
  HBOBoard board;
  board.addBoardComponent(makeComponent("fpga_b", "fpga"));
  board.addBoardComponent(makeComponent("chip", "chip"));
  EXPECT_EQ(board.getActivePart()->getComponentName(), "fpga_b");
  board.addBoardComponent(makeComponent("fpga_a", "fpga"));
  // The cache holds until it is overwritten.
  EXPECT_EQ(board.getActivePart()->getComponentName(), "fpga_b");
  board.setActivePart(nullptr);
  EXPECT_EQ(board.getActivePart()->getComponentName(), "fpga_a");
  EXPECT_EQ(board.findFpgaComponent("fpga_b")->getComponentName(), "fpga_b");
  EXPECT_EQ(board.findFpgaComponent("chip"), nullptr);
  EXPECT_TRUE(board.isReferenceBoard());
  EXPECT_FALSE(board.isDaughterBoard());
}

TEST(ModelBoard, ForwardersReadTheActivePartCacheOnly) {
  HBOBoard board;
  board.addBoardComponent(makeComponent("fpga", "fpga"));
  // Nothing has filled the cache yet: every forwarder is harmless.
  EXPECT_EQ(board.getLibrary(), "");
  EXPECT_EQ(board.getPartString(), "");
  EXPECT_FALSE(board.setPartString("xc1"));
  EXPECT_EQ(board.getBusIfByName("anything"), nullptr);
  EXPECT_FALSE(board.isConstraintsDataPopulated());
  EXPECT_EQ(board.getActivePartName(), "");
  Strings parts{"stale"};
  board.getAdditionalSupportedPartNames(parts, true);
  EXPECT_TRUE(parts.empty());
  board.setVLNV("V", "L", "N", "R");
  board.setBoardFile("/x/board.xml");
  EXPECT_EQ(board.findBoardComponent("fpga")->getBoardFile(), "");
}

TEST(ModelBoard, UpdateBoardPartReportsAnUnsupportedPart) {
  HBOBoard board;
  board.setName("acme", "big", "1.0");
  board.addBoardComponent(makeComponent("fpga", "fpga"));
  HBOBoardComponent *active = board.getActivePart();
  active->setPartString("xc1");
  active->addAdditionalSupportedPart("xc2");

  test::MessageRecorder recorder;
  board.updateBoardPart("xc2");
  EXPECT_TRUE(recorder.records.empty());
  EXPECT_EQ(board.getPartString(), "xc2");
  EXPECT_TRUE(board.isPartUpdated());

  board.updateBoardPart("xc9");
  ASSERT_EQ(recorder.records.size(), 1u);
  EXPECT_EQ(recorder.records[0].key, "@49-152@%s%s");
  EXPECT_EQ(recorder.records[0].severity, ComMsg::Error);
  EXPECT_EQ(recorder.records[0].args[0], "xc9");
}

TEST(ModelBoard, NameCaseRulesOfComponentAndPresetMaps) {
  HBOBoard board;
  board.addBoardComponent(makeComponent("fpga_a", "fpga"));
  EXPECT_NE(board.getCompByName("FPGA_A"), nullptr);
  EXPECT_EQ(board.findBoardComponent("FPGA_A"), nullptr);
  EXPECT_EQ(board.getCompByName(""), nullptr);
  EXPECT_EQ(board.findBoardComponent(""), nullptr);

  // Preset maps file under the upper-cased name and ignore an empty one.
  auto *preset = new HBOIpPreset();
  board.setIpPreset("axi", {preset});
  board.setIpPreset("", {preset});
  ASSERT_EQ(board.getIpPresets().size(), 1u);
  EXPECT_EQ(board.getIpPresets().count("AXI"), 1u);
  // The same record in the other map, twice: the board frees it once.
  board.setIpAssociatedInterface("Axi", {preset, preset});
  EXPECT_EQ(board.getIpAssociatedInterfaces().count("AXI"), 1u);
}

TEST(ModelBoard, BusLookupsAreDirectionalWhereSaid) {
  HBOBoard board;
  HBOBoardComponent *a = makeComponent("a", "chip");
  HBOBoardComponent *b = makeComponent("b", "connector", "pmod");
  HBOBoardComponent *c = makeComponent("c", "connector", "unknown_kind");
  for (HBOBoardComponent *component : {a, b, c})
    board.addBoardComponent(component);
  HBOBoardBus *ba = makeBus("ba", "b", "a");
  HBOBoardBus *ac = makeBus("ac", "a", "c");
  auto *net = new HBOBoardBusNet();
  ba->addBoardBusNet(net);
  board.addBus(ba);
  board.addBus(ac);

  HSTVector<HBOBoardBus *> connecting;
  board.getBoardBusesConnectingComponents(a, b, connecting);
  EXPECT_TRUE(connecting.empty());
  board.getBoardBusesConnectingComponents(b, a, connecting);
  EXPECT_EQ(connecting, HSTVector<HBOBoardBus *>{ba});

  std::vector<HBOBoardBus *> buses;
  board.getBusesOfComponent("a", buses);
  EXPECT_EQ(buses, (std::vector<HBOBoardBus *>{ba, ac}));
  std::vector<HBOBoardBusNet *> nets;
  board.getNetsOfComponent("a", nets);
  EXPECT_EQ(nets, std::vector<HBOBoardBusNet *>{net});

  // The other end counts by its type alone, not by the connector predicates.
  std::vector<HBOBoardComponent *> connectors;
  EXPECT_TRUE(board.getConnectedConnectors(a, connectors));
  EXPECT_EQ(connectors, (std::vector<HBOBoardComponent *>{b, c}));
  EXPECT_FALSE(board.getConnectedConnectors(nullptr, connectors));
  HSTVector<HBOBoardComponent *> list;
  board.getConnectorsList(list);
  EXPECT_EQ(list, HSTVector<HBOBoardComponent *>{b});
}

TEST(ModelBoard, InterfacesThroughConnectorsSkipTheActivePart) {
  HBOBoard board;
  HBOBoardComponent *fpga = makeComponent("fpga", "fpga");
  HBOBoardComponent *pmod = makeComponent("pmod", "connector", "pmod");
  board.addBoardComponent(fpga);
  board.addBoardComponent(pmod);
  fpga->addBoardInterface_(modeltest::makeBusIf("led"));
  HBOBusIf *onPmod = modeltest::makeBusIf("gpio");
  pmod->addBoardInterface_(onPmod);

  HBOBusIf *found = nullptr;
  EXPECT_FALSE(board.getBusIfByNameUsingConnectors(found, "led"));
  EXPECT_TRUE(board.getBusIfByNameUsingConnectors(found, "GPIO"));
  EXPECT_EQ(found, onPmod);
}

TEST(ModelBoard, BaseBoardOnlyCountsWhenIntegrated) {
  HBOBoard base;
  base.setName("acme", "base", "1.0");
  HBOBoardComponent *baseConnector = makeComponent("fmc", "connector", "fmc_hpc");
  base.addBoardComponent(baseConnector);
  HBOBoard daughter;
  daughter.setName("acme", "card", "2.0");
  HBOBoardComponent *card = makeComponent("fmc_card", "connector", "fmc_lpc");
  daughter.addBoardComponent(card);

  HBOBoard integrated;
  integrated.setName("acme", "combo", "1.0");
  integrated.addBoardComponent(makeComponent("fpga", "fpga"));
  integrated.setBaseBoard(&base);
  integrated.addIntegratedBoardConnection("fmc", &daughter, "fmc_card");
  EXPECT_EQ(integrated.getBaseBoard(), nullptr);
  EXPECT_EQ(integrated.getBaseBoardName(), "combo");
  EXPECT_EQ(integrated.getConnectorConnected(baseConnector), nullptr);

  integrated.setIntegratedBoard(true);
  EXPECT_EQ(integrated.getBaseBoard(), &base);
  EXPECT_EQ(integrated.getBaseBoardFullName(), "acme:base:1.0");
  EXPECT_EQ(integrated.getBaseBoardActivePartName(), "acme:base:fpga:1.0");
  EXPECT_FALSE(integrated.isReferenceBoard());
  EXPECT_EQ(integrated.getConnectorConnected(baseConnector), card);
  EXPECT_TRUE(integrated.isConnectorConnected(baseConnector));
  HSTVector<std::pair<HBOBoardComponent *, HBOBoardComponent *>> pairs;
  integrated.getConnectedConnectors(pairs);
  ASSERT_EQ(pairs.size(), 1u);
  EXPECT_EQ(pairs[0], std::make_pair(baseConnector, card));
  EXPECT_EQ(integrated.getIntegratedBoardConnectionsAsString(), "fmc acme:big:fmc_card:1.0");
  EXPECT_EQ(integrated.getIntegratedBoardConnectionsAsStringProperty(),
            "{fmc acme:big:fmc_card:1.0}");

  HBOBoard plain;
  EXPECT_EQ(plain.getIntegratedBoardConnectionsAsStringProperty(), "{}");
  EXPECT_TRUE(plain.isDaughterBoard());
  // The connection text quotes its elements like Tcl lists.
  card->setName("has blank");
  plain.addIntegratedBoardConnection("j1", &daughter, "fmc_card");
  plain.addIntegratedBoardConnection("j2", &daughter, "missing");
  EXPECT_EQ(plain.getIntegratedBoardConnectionsAsString(), "j1 {has blank} j2 {}");
}

TEST(ModelBoard, RepeatedNamesFirstParameterButLastMapEntryWins) {
  HBOBoard board;
  board.addParameter(new HBOParameter("speed", "fast", "", "", "", ""));
  board.addParameter(new HBOParameter("speed", "slow", "", "", "", ""));
  std::string value = "untouched";
  EXPECT_FALSE(board.getParamValue("SPEED", value));
  EXPECT_EQ(value, "untouched");
  EXPECT_TRUE(board.getParamValue("speed", value));
  EXPECT_EQ(value, "fast");

  board.addConnectedComponents("b1", "j1", "b2", "j2");
  board.addConnectedComponents("b1", "j1", "b3", "j3");
  EXPECT_EQ(board.getConnectedComponents().at("b1#j1"), "b3#j3");
  board.addConnectedBoard("alias", "id1");
  board.addConnectedBoard("alias", "id2");
  EXPECT_EQ(board.getConnectedBoards().at("alias"), "id2");
}

TEST(ModelBoard, JumperSavesThroughTheAttachedHook) {
  HBOBoard board;
  auto *jumper = new HBOJumper();
  jumper->setOwner(&board);
  board.addJumper(jumper);
  board.saveBoard(); // no hook: nothing happens

  CountingDB db;
  board.attach(&db);
  jumper->setValue(false, false);
  EXPECT_EQ(db.saves, 0);
  EXPECT_FALSE(jumper->getDefaultValue());
  jumper->setValue(true, true);
  EXPECT_EQ(db.saves, 1);
  EXPECT_EQ(db.last, &board);
  EXPECT_TRUE(jumper->getDefaultValue());

  HBOJumper orphan;
  orphan.setValue(false, true); // no owner: nothing to save, no crash
  EXPECT_FALSE(orphan.getDefaultValue());
}

TEST(ModelBoard, BlockNetsNameThemselvesAfterTheirBus) {
  HBOBoard board;
  HBOBoardBus *bus = makeBus("map", "a", "b");
  board.addBus(bus);
  // Handed over without an owner, so with no bus name either.
  auto *handed = new HBOBoardBusNet();
  handed->setName("own");
  bus->addBoardBusNet(handed);
  HBOBoardBusNet *nets = bus->makeBoardBusNets(3);
  ASSERT_NE(nets, nullptr);
  EXPECT_EQ(bus->makeBoardBusNets(0), nullptr);
  for (int i = 0; i < 3; ++i)
    nets[i].setGeneratedName(i);
  auto text = std::make_shared<const std::string>("{J1 1}");
  nets[0].setEnablementDependency(text);
  nets[1].setEnablementDependency(std::string("{J2 0}"));
  nets[2].setBoardBus("other");
  nets[2].setName("renamed");
  // A second block, as a caller other than the reader may ask for.
  bus->makeBoardBusNets(1)->setGeneratedName(7);

  std::vector<std::string> names;
  for (const HBOBoardBusNet *net : bus->getBoardBusNets())
    names.push_back(net->getName() + "@" + net->getBoardBus());
  EXPECT_EQ(names, (std::vector<std::string>{"own@", "map_0@map", "map_1@map", "renamed@other",
                                             "map_7@map"}));
  EXPECT_EQ(nets[0].getEnablementDependency(), "{J1 1}");
  EXPECT_EQ(nets[1].getEnablementDependency(), "{J2 0}");
  EXPECT_EQ(nets[2].getEnablementDependency(), "");
  EXPECT_EQ(nets[0].getIsEnabled(), "true");

  // A copy keeps the name and bus it had, whatever its new owner is called.
  HBOBoardBus other;
  other.setName("copy");
  HBOBoardBusNet copy(nets[1], &other);
  EXPECT_EQ(copy.getName(), "map_1");
  EXPECT_EQ(copy.getBoardBus(), "map");
  EXPECT_EQ(copy.getEnablementDependency(), "{J2 0}");
}
