// The composition of integrated boards on the small installation
// compose_install: the carrier hawk_carrier, the card finch_card (its
// buttons are wired to an index the carrier's FMC connector lacks) and the
// PMOD module robin_pmod.
#include "../repo/RepoTestSupport.h"
#include "BoardDump.h"
#include "BoardGraph.h"
#include "HBOBoardCDataManager.h"
#include "HBOIntegratedBoardReport.h"
#include "HBOPartCReposMgr.h"
#include "HEXError.h"

#include <memory>
#include <string>
#include <vector>

namespace {

using Pairs = HBOBoardCDataManager::ConnectionPairs;

const std::string kHawk = "kestrel-boards:hawk_carrier:1.0";
const std::string kFinch = "kestrel-boards:finch_card:plug:1.0";
const std::string kRobin = "kestrel-boards:robin_pmod:jack:1.0";

class Composition : public test::RepoTest {
protected:
  void SetUp() override {
    useDataDirs({"compose_install"});
    manager = std::make_unique<HBOBoardCDataManager>();
  }
  void TearDown() override {
    manager.reset();
    test::RepoTest::TearDown();
  }
  HBOBoard *board(const std::string &name) {
    bool legacy = false;
    return manager->getBoard(name, legacy, false);
  }
  // The boards the project sees, in order.
  std::vector<HBOBoard *> catalog() {
    std::vector<HBOBoard *> boards;
    manager->getBoardPartReposMgr()->getAllBoardParts(boards);
    return boards;
  }
  std::unique_ptr<HBOBoard> compose(const Pairs &pairs, const std::string &name = "made") {
    return std::unique_ptr<HBOBoard>(manager->createIntegratdBoard(kHawk, pairs, name));
  }

  std::unique_ptr<HBOBoardCDataManager> manager;
};

const HBOBoardComponent &component(const HBOBoard &board, const std::string &name) {
  const HBOBoardComponent *found = board.findBoardComponent(name);
  if (!found)
    throw std::runtime_error("no component " + name);
  return *found;
}

std::string ioStandard(const HBOBoardComponent &component, const std::string &pin) {
  const HBOPinProps *found = component.findPin(pin);
  return found ? found->getPinIOStandard() : "(no pin)";
}

TEST_F(Composition, DaughterInterfacesThatReachTheFpgaBecomeItsOwn) {
  const std::string hawkBefore = dumpBoard(*board(kHawk));
  std::unique_ptr<HBOBoard> made = compose({{"fmc", kFinch}, {"pmod", kRobin}});

  EXPECT_TRUE(made->isIntegratedBoard());
  EXPECT_EQ(board(kHawk), made->getBaseBoard());
  EXPECT_EQ("kestrel-boards:made:1.0", made->getName());
  EXPECT_TRUE(made->getBoardFile().empty());

  // The FPGA has its own interface and those of the daughters that reach
  // it whole; the buttons, wired in part, stay on the card.
  const HBOBoardComponent &fpga = *made->getActivePart();
  EXPECT_EQ("part0", fpga.getComponentName());
  std::vector<HBOBusIf *> interfaces;
  fpga.getInterfacesVec(interfaces);
  std::vector<std::string> names;
  for (const HBOBusIf *intf : interfaces)
    names.push_back(intf->getName());
  EXPECT_EQ((std::vector<std::string>{"fmc_card_leds", "leds_if", "pmod_robin_gpio"}), names);
  EXPECT_NE(nullptr, component(*made, "fmc_plug").getBusIfByName("fmc_card_buttons"));

  // Their ports speak of FPGA pins, and the FPGA holds the ports.
  const HBOBusIf &leds = *fpga.getBusIfByName("fmc_card_leds");
  ASSERT_EQ(1u, leds.getPortMaps().size());
  const HBOModelPort &port = *leds.getPortMaps().begin()->second;
  EXPECT_EQ("fmc_card_led_o", port.getName());
  EXPECT_EQ((std::map<std::string, std::string>{{"0", "fa0"}, {"1", "fa1"}}), port.getPinPortMap());
  HBOModelPort *entered = nullptr;
  EXPECT_TRUE(fpga.getModelPortByName(entered, "fmc_card_led_o"));
  EXPECT_EQ(&port, entered);

  // The daughter pins' IO properties reach the FPGA pins they are wired to;
  // the pins of the buttons, which did not come, keep their own.
  EXPECT_EQ("LVCMOS18", ioStandard(fpga, "fa0"));
  EXPECT_EQ("8", fpga.findPin("fa1")->getPinDrive());
  EXPECT_EQ("LVCMOS33", ioStandard(fpga, "fa2"));
  EXPECT_EQ("LVCMOS33", ioStandard(fpga, "pb0"));
  EXPECT_EQ("", ioStandard(*board(kHawk)->getActivePart(), "fa0")) << "the base stays as it was";

  // The report says the same, with the pin that did not trace.
  const auto report = HBOIntegratedBoardReport::make(*made);
  EXPECT_EQ((std::vector<std::pair<std::string, std::string>>{{"fmc_card_buttons", "p_btn1"}}),
            report.at(0).missed);

  // Everything of a daughter comes under its base connector's name: the
  // beeper belongs to a PMOD connector and stays behind on the FMC one.
  EXPECT_EQ("kestrel-boards:made:fmc_plug:1.0", component(*made, "fmc_plug").getName());
  EXPECT_EQ(nullptr, made->findBoardComponent("fmc_beeper"));
  EXPECT_EQ("fmc_JP1", made->getJumpers().at(1)->getName());
  std::vector<HBOComponentMode *> modes;
  component(*made, "fmc_plug").getComponentModes(modes);
  EXPECT_EQ("{fmc_jp1 true}", modes.at(0)->getEnablementDependency());

  // Each pair of mated connectors is wired index for index.
  ASSERT_EQ(2u, made->getBuses().size());
  const HBOBoardBus &fmc = *made->getBuses()[0];
  EXPECT_EQ("fmc_fmc_plug fmc fmc_plug",
            fmc.getName() + " " + fmc.getComp1() + " " + fmc.getComp2());
  ASSERT_EQ(400u, fmc.getBoardBusNets().size());
  EXPECT_EQ("fmc_fmc_plug_399", fmc.getBoardBusNets()[399]->getName());
  EXPECT_EQ(400, fmc.getBoardBusNets()[399]->getC1PinIndex());
  EXPECT_EQ(400, fmc.getBoardBusNets()[399]->getC2PinIndex());
  EXPECT_EQ(100u, made->getBuses()[1]->getBoardBusNets().size());
  EXPECT_EQ("fmc_4", component(*made, "fmc").getPinByIndex(4)->getName());

  // The integrated board shares nothing with the boards it is made of.
  test::BoardGraph graph(*made);
  for (const std::string &name : {kHawk, std::string("kestrel-boards:finch_card:1.0"),
                                  std::string("kestrel-boards:robin_pmod:1.0")})
    EXPECT_EQ(0u, graph.sharedWith(test::BoardGraph(*board(name)))) << name;
  EXPECT_EQ(hawkBefore, dumpBoard(*board(kHawk)));
}

TEST_F(Composition, TheSubTypeOfTheBaseConnectorCountsThePins) {
  // An empty list: a copy of the base, integrated, with nothing new.
  std::unique_ptr<HBOBoard> bare = compose({});
  EXPECT_TRUE(bare->isIntegratedBoard());
  EXPECT_EQ(board(kHawk)->getBoardComponents().size(), bare->getBoardComponents().size());
  EXPECT_TRUE(bare->getBuses().empty());

  // A base of other sub types, made in memory from the carrier.
  HBOBoard base(*board(kHawk), "other");
  base.findBoardComponent("fmc")->setSubType("fmc_plus");
  base.findBoardComponent("pmod")->setSubType("som240");
  bool legacy = false;
  const HBOBoard *finch = manager->getBoard("kestrel-boards:finch_card:1.0", legacy, false);
  const HBOBoard *robin = manager->getBoard("kestrel-boards:robin_pmod:1.0", legacy, false);
  std::unique_ptr<HBOBoard> made(
      HBOBoard::createBoard(&base, {{"fmc", finch, "plug"}, {"pmod", robin, "jack"}}, "made"));
  const HBOBoardBus &plus = *made->getBuses()[0];
  ASSERT_EQ(560u, plus.getBoardBusNets().size());
  EXPECT_EQ("fmc_fmc_plug_0", plus.getBoardBusNets()[0]->getName());
  EXPECT_EQ(1, plus.getBoardBusNets()[0]->getC1PinIndex());
  EXPECT_EQ(560, plus.getStopIndexComp2());
  // "som240" is a connector, but the table of pin counts spells it
  // "som_240": the connection has no nets. The pins trace by index all the
  // same, through the pins the connectors have.
  const HBOBoardBus &som = *made->getBuses()[1];
  EXPECT_TRUE(som.getBoardBusNets().empty());
  EXPECT_EQ(0, som.getStopIndexComp1());
  EXPECT_NE(nullptr, made->getActivePart()->getBusIfByName("pmod_robin_gpio"));

  // Two connectors with one daughter board: two copies of it.
  std::unique_ptr<HBOBoard> twice(
      HBOBoard::createBoard(&base, {{"fmc", finch, "plug"}, {"pmod", finch, "plug"}}, "twice"));
  EXPECT_NE(nullptr, twice->findBoardComponent("fmc_plug"));
  EXPECT_NE(nullptr, twice->findBoardComponent("pmod_plug"));
  EXPECT_NE(nullptr, twice->findBoardComponent("pmod_beeper"));
}

TEST_F(Composition, EveryErrorComesBeforeAnythingIsBuilt) {
  std::unique_ptr<HBOBoard> first = compose({{"pmod", kRobin}});
  HBOBoard *integrated = manager->registerIntegratedBoard(first.release());
  ASSERT_NE(nullptr, integrated);
  const std::vector<HBOBoard *> before = catalog();
  const std::string integratedPart = "kestrel-boards:made:part0:1.0";
  const std::string integratedDaughter = "kestrel-boards:made:pmod_jack:1.0";

  struct Case {
    const char *what;
    std::string base;
    Pairs pairs;
    const char *id;
  } cases[] = {
      {"unknown base", "kestrel-boards:nothing:1.0", {}, "49-82"},
      {"integrated base", integratedPart, {}, "49-78"},
      {"unknown daughter", kHawk, {{"fmc", "kestrel-boards:nothing:plug:1.0"}}, "49-81"},
      {"integrated daughter", kHawk, {{"pmod", integratedDaughter}}, "49-79"},
      {"no such base connector", kHawk, {{"fmc0", kFinch}}, "49-165"},
      {"base connector in capitals", kHawk, {{"FMC", kFinch}}, "49-165"},
      {"no such daughter connector",
       kHawk,
       {{"fmc", "kestrel-boards:finch_card:jack:1.0"}},
       "49-165"},
      {"chip, not connector", kHawk, {{"leds", kFinch}}, "49-127"},
      {"daughter chip", kHawk, {{"pmod", "kestrel-boards:finch_card:beeper:1.0"}}, "49-127"},
      {"connector twice", kHawk, {{"pmod", kRobin}, {"fmc", kFinch}, {"pmod", kRobin}}, "49-171"},
  };
  for (const Case &c : cases) {
    SCOPED_TRACE(c.what);
    try {
      delete manager->createIntegratdBoard(c.base, c.pairs, "failed");
      ADD_FAILURE() << "nothing was raised";
    } catch (const HEXError &e) {
      EXPECT_EQ(c.id, e.getMessage().getId());
    }
    EXPECT_EQ(before, catalog());
  }
  EXPECT_EQ(integrated, board("kestrel-boards:made:1.0"));

  // The checks of the composition itself, for callers that come without
  // the data manager.
  for (const auto &c : {std::make_pair(static_cast<const HBOBoard *>(nullptr), "49-85"),
                        std::make_pair(static_cast<const HBOBoard *>(integrated), "49-84")}) {
    try {
      delete HBOBoard::createBoard(c.first, {}, "failed");
      ADD_FAILURE() << "nothing was raised for " << c.second;
    } catch (const HEXError &e) {
      EXPECT_EQ(c.second, e.getMessage().getId());
    }
  }
  try {
    delete manager->createIntegratdBoard(static_cast<const HBOBoard *>(nullptr), {}, "failed");
    ADD_FAILURE() << "nothing was raised for a null base";
  } catch (const HEXError &e) {
    EXPECT_EQ("49-86", e.getMessage().getId());
  }
}

TEST_F(Composition, ANewRepositoryPathComposesTheCurrentBoardAgain) {
  const Pairs pairs = {{"fmc", kFinch}, {"pmod", kRobin}};
  const std::string name =
      HBOBoardCDataManager::createUniqBoardNameForIntegratedBoard("hawk_carrier", pairs);
  EXPECT_EQ("hawk_carrier_fmc_finch_card_plug_pmod_robin_pmod_jack", name);
  HBOBoard *made = manager->registerIntegratedBoard(compose(pairs, name).release());
  ASSERT_NE(nullptr, made);
  manager->setBoard(made);
  EXPECT_EQ(made, board("kestrel-boards:" + name + ":1.0")) << "the catalog sees it";

  // The same composition again replaces the registered board, and the
  // current board follows.
  HBOBoard *again = manager->registerIntegratedBoard(compose(pairs, name).release());
  EXPECT_EQ(again, manager->getBoardStrategy());

  bool changed = false;
  test::ScratchDir emptyRepo;
  EXPECT_TRUE(manager->setBoardPartRepoPaths({emptyRepo.path()}, changed));
  EXPECT_TRUE(changed);
  HBOBoard *rebuilt = manager->getBoardStrategy();
  ASSERT_NE(nullptr, rebuilt);
  EXPECT_TRUE(rebuilt->isIntegratedBoard());
  EXPECT_EQ("kestrel-boards:" + name + ":1.0", rebuilt->getName());
  EXPECT_EQ(rebuilt, board(rebuilt->getName()));
  EXPECT_EQ(board(kHawk), rebuilt->getBaseBoard());
  EXPECT_EQ(board("kestrel-boards:robin_pmod:1.0"),
            std::get<1>(rebuilt->getIntegratedBoardConnections()[1]));
  EXPECT_NE(nullptr, rebuilt->getActivePart()->getBusIfByName("pmod_robin_gpio"));
}

TEST_F(Composition, AppendBoardNamesComponentsAndInterfacesOnly) {
  HBOBoard target(*board(kHawk), "target");
  const HBOBoard &finch = *board("kestrel-boards:finch_card:1.0");
  target.appendBoard(finch, "X");
  const HBOBoardComponent &plug = component(target, "x_plug");
  EXPECT_EQ("kestrel-boards:target:x_plug:1.0", plug.getName());
  EXPECT_NE(nullptr, plug.getBusIfByName("X_card_leds"));
  EXPECT_EQ("Card Plug", plug.getDisplayName());
  EXPECT_EQ("JP1", target.getJumpers().back()->getName()) << "jumpers keep their names";
  EXPECT_NE(nullptr, target.findBoardComponent("x_beeper"));
  EXPECT_EQ(0u, test::BoardGraph(target).sharedWith(test::BoardGraph(finch)));
}

} // namespace
