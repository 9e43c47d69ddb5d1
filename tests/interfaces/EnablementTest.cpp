// What the jumpers enable: connections, nets, components, interfaces and
// modes for several jumper settings, and the renaming of jumpers in the
// expressions.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOBusIf.h"
#include "HBOComponentMode.h"
#include "HBOJumper.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <map>

using test::dataPath;

namespace {

using States = std::map<std::string, std::string>;

HBOBoardBus *addBus(HBOBoard &board, const std::string &name, const std::string &comp1,
                    const std::string &comp2, const std::string &expression, int nets = 2) {
  HBOBoardBus *bus = new HBOBoardBus();
  bus->setName(name);
  bus->setComp1(comp1);
  bus->setComp2(comp2);
  bus->setOwner(&board);
  bus->setEnablementDependency(expression);
  for (int i = 0; i < nets; ++i) {
    HBOBoardBusNet *net = new HBOBoardBusNet();
    net->setName(name + "_" + std::to_string(i));
    net->setOwner(bus);
    net->setEnablementDependency(expression);
    bus->addBoardBusNet(net);
  }
  board.addBus(bus);
  return bus;
}

/// The board read from the file, with connections made here: the jumpers,
/// interfaces and modes come from the file.
class JumperBoard : public ::testing::Test {
protected:
  void SetUp() override {
    HBOBoardParser parser;
    ASSERT_TRUE(
        parser.parseFile(dataPath("interfaces_enablement/board.xml"), &board, false, "", nullptr));
    ASSERT_EQ(3u, board.getJumpers().size());
    leds = board.findBoardComponent("leds");
    part0 = board.findBoardComponent("part0");
    dac = board.findBoardComponent("zz_dac");
    ASSERT_TRUE(leds && part0 && dac);
  }
  void set(const std::string &jumper, bool value) {
    for (HBOJumper *j : board.getJumpers())
      if (j->getName() == jumper)
        j->setDefaultValue(value);
  }
  States modes() const {
    std::vector<HBOComponentMode *> all;
    leds->getComponentModes(all);
    States out;
    for (const HBOComponentMode *m : all)
      out[m->getName()] = m->getIsEnabled();
    return out;
  }
  States components() const {
    return {{"leds", leds->getIsEnabled()},
            {"part0", part0->getIsEnabled()},
            {"zz_dac", dac->getIsEnabled()}};
  }
  States interfaces() const {
    return {{"leds_if", part0->getBusIfByName("leds_if")->getIsEnabled()},
            {"dac_if", part0->getBusIfByName("dac_if")->getIsEnabled()}};
  }

  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardComponent *leds = nullptr, *part0 = nullptr, *dac = nullptr;
};

} // namespace

TEST_F(JumperBoard, ModesFollowTheirExpressionsOnly) {
  // The states after the read are in its golden file. A mode without terms
  // keeps whatever it holds.
  std::vector<HBOComponentMode *> all;
  leds->getComponentModes(all);
  all.back()->setIsEnabled("stale");
  set("J1", false);
  set("J2", true);
  board.updateEnablement();
  EXPECT_EQ((States{{"always", "true"},
                    {"needs_j1", "false"},
                    {"needs_j2_off", "false"},
                    {"both", "false"},
                    {"lower_name", "false"},
                    {"upper_value", "false"},
                    {"first_term_counts", "false"},
                    {"needs_j10", "true"},
                    {"unknown_jumper", "true"},
                    {"no_terms", "stale"}}),
            modes());

  set("J1", true);
  board.updateEnablement();
  EXPECT_EQ("true", modes().at("both"));
}

TEST_F(JumperBoard, InterfacesFollowTheirComponentOneRunLate) {
  // zz_dac comes after part0 by name: during the read's run dac_if copied
  // the text zz_dac had before that run, as the golden file shows; the
  // next run catches up.
  board.updateEnablement();
  EXPECT_EQ((States{{"leds_if", "false"}, {"dac_if", "false"}}), interfaces());

  HBOBusIf *orphan = new HBOBusIf();
  orphan->setName("orphan");
  orphan->setOfComponent("nowhere");
  orphan->setIsEnabled("kept");
  part0->setBusIf("orphan", orphan);
  board.updateEnablement();
  EXPECT_EQ("kept", orphan->getIsEnabled());
}

TEST_F(JumperBoard, ConnectionsDecideComponents) {
  HBOBoardBus *toLeds = addBus(board, "to_leds", "part0", "leds", "{J1 true}");
  HBOBoardBus *toDac = addBus(board, "to_dac", "zz_dac", "part0", "{J2 true}");
  // No terms: the connection keeps its own text, its nets come back on.
  HBOBoardBus *fixed = addBus(board, "fixed", "zz_dac", "part0", "{}");
  fixed->setIsEnabled("false");
  for (HBOBoardBusNet *net : fixed->getBoardBusNets())
    net->setIsEnabled("false");

  auto state = [](const HBOBoardBus *bus) {
    std::string out = bus->getIsEnabled() + "|";
    for (const HBOBoardBusNet *net : bus->getBoardBusNets())
      out += net->getIsEnabled() + ",";
    return out;
  };

  board.updateEnablement();
  // Each line: the connection, then its nets.
  EXPECT_EQ("true|true,true,", state(toLeds));
  EXPECT_EQ("false|false,false,", state(toDac));
  EXPECT_EQ("false|true,true,", state(fixed));
  // One live connection is enough.
  EXPECT_EQ((States{{"leds", "true"}, {"part0", "true"}, {"zz_dac", "false"}}), components());
  EXPECT_EQ((States{{"leds_if", "true"}, {"dac_if", "false"}}), interfaces());

  set("J1", false);
  set("J2", true);
  board.updateEnablement();
  EXPECT_EQ((States{{"leds", "false"}, {"part0", "true"}, {"zz_dac", "true"}}), components());
  // dac_if still shows zz_dac before this run.
  EXPECT_EQ((States{{"leds_if", "false"}, {"dac_if", "false"}}), interfaces());
  board.updateEnablement();
  EXPECT_EQ("true", interfaces().at("dac_if"));

  // A text set by hand counts in any case.
  set("J2", false);
  fixed->setIsEnabled("TRUE");
  board.updateEnablement();
  EXPECT_EQ("TRUE", fixed->getIsEnabled());
  EXPECT_EQ("true", dac->getIsEnabled());
}

namespace {

/// Evaluates one expression on a lone connection of a board with \p jumpers.
std::string evaluate(const std::string &expression,
                     const std::vector<std::pair<std::string, bool>> &jumpers) {
  HBOBoard board;
  for (const auto &j : jumpers) {
    HBOJumper *jumper = new HBOJumper();
    jumper->setName(j.first);
    jumper->setDefaultValue(j.second);
    board.addJumper(jumper);
  }
  HBOBoardBus *bus = addBus(board, "b", "x", "y", expression, 0);
  bus->setIsEnabled("unset");
  board.updateEnablement();
  return bus->getIsEnabled();
}

} // namespace

TEST(Expressions, TokensArePairsOfNameAndValue) {
  EXPECT_EQ("true", evaluate("{J1 true}", {}));
  EXPECT_EQ("true", evaluate("{NOSUCH true}", {{"J1", false}}));
  EXPECT_EQ("false", evaluate("{J1 true} {J2 true}", {{"J1", true}, {"J2", false}}));
  EXPECT_EQ("true", evaluate("{J1   false}", {{"J1", false}}));
  // A name with no value, or an empty value, can match neither state.
  EXPECT_EQ("false", evaluate("{J1}", {{"J1", true}}));
  EXPECT_EQ("false", evaluate("{J1 }", {{"J1", false}}));
  EXPECT_EQ("false", evaluate("{J1 1}", {{"J1", true}}));
  // Values are never taken for names, even a value that is a jumper's name.
  EXPECT_EQ("true", evaluate("{J1 true}", {{"J1", true}, {"true", false}}));
  // Only the blank separates.
  EXPECT_EQ("true", evaluate("{J1\ttrue}", {{"J1", false}}));
  EXPECT_EQ("unset", evaluate("{}", {{"J1", false}}));
  EXPECT_EQ("unset", evaluate("", {{"J1", false}}));
}

TEST(Renaming, AJumperIsRenamedWhereverItsNameStands) {
  HBOComponentMode mode;
  mode.setEnablementDependency("{J1 true} {j10 false} {J2 true}");
  mode.updateEnablementDependencyJumperName("j1", "FMC1_J1");
  // No token borders: J10 is touched as well.
  EXPECT_EQ("{fmc1_j1 true} {fmc1_j10 false} {J2 true}", mode.getEnablementDependency());
  mode.updateEnablementDependencyJumperName("", "X");
  EXPECT_EQ("{fmc1_j1 true} {fmc1_j10 false} {J2 true}", mode.getEnablementDependency());

  HBOBoardBus bus;
  bus.setEnablementDependency("{J1 true} {J10 true}");
  bus.updateEnablementDependencyJumperName("J1", "A_J1");
  bus.updateEnablementDependencyJumperName("J10", "A_J10");
  // Each call works on what the calls before it left.
  EXPECT_EQ("{a_j1 true} {a_a_j10 true}", bus.getEnablementDependency());
}

TEST(Renaming, TheComponentRenamesInEveryModeAndTheNewNameStillMatches) {
  HBOBoard board;
  HBOJumper *jumper = new HBOJumper();
  jumper->setName("FMC1_J1");
  jumper->setDefaultValue(false);
  board.addJumper(jumper);
  HBOBoardComponent *component = new HBOBoardComponent();
  component->setComponentName("c");
  board.addBoardComponent(component);
  for (const char *expression : {"{J1 true}", "{J1 false}", ""}) {
    HBOComponentMode *mode = new HBOComponentMode();
    mode->setEnablementDependency(expression);
    component->addComponentMode(mode);
  }
  component->updateEnablementDependencyJumperName("J1", "FMC1_J1");
  board.updateEnablement();
  std::vector<HBOComponentMode *> modes;
  component->getComponentModes(modes);
  EXPECT_EQ("{fmc1_j1 true}", modes[0]->getEnablementDependency());
  EXPECT_EQ("false", modes[0]->getIsEnabled());
  EXPECT_EQ("{fmc1_j1 false}", modes[1]->getEnablementDependency());
  EXPECT_EQ("true", modes[1]->getIsEnabled());
  EXPECT_EQ("", modes[2]->getEnablementDependency());
}
