// Connector families and the computed fit, on components built here, and
// the thinning of a compatible list to the latest versions.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOParameter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using Family = HBOBoardComponent::ConnectorFamily;

std::unique_ptr<HBOBoardComponent> component(const std::string &type, const std::string &subType) {
  auto c = std::make_unique<HBOBoardComponent>();
  c->setType(type);
  c->setSubType(subType);
  return c;
}

TEST(ConnectorFamilies, SubTypesSortIntoFamiliesOnlyOnConnectors) {
  struct Row {
    const char *subType;
    Family family;
  } rows[] = {
      {"fmc_lpc", Family::LPC},      {"fmc_hpc", Family::LPC},  {"fmc_plus", Family::LPC},
      {"fmc_lpc_plus", Family::LPC}, {"dimm", Family::DIMM},    {"pmod", Family::PMOD},
      {"som", Family::SOM},          {"som240", Family::SOM},   {"som480", Family::SOM},
      {"dockline160", Family::None}, {"som_240", Family::None}, {"FMC_LPC", Family::None},
      {"pcie", Family::None},
  };
  for (const Row &row : rows) {
    EXPECT_EQ(row.family, component("connector", row.subType)->getConnectorFamily()) << row.subType;
    // The same sub type on anything but a connector counts for nothing.
    EXPECT_EQ(Family::None, component("chip", row.subType)->getConnectorFamily()) << row.subType;
  }
}

TEST(ConnectorFamilies, PinCountsFollowTheSubType) {
  EXPECT_EQ(160, HBOBoardComponent::getConnectorPinCount("dockline160"));
  EXPECT_EQ(400, HBOBoardComponent::getConnectorPinCount("fmc_lpc"));
  EXPECT_EQ(400, HBOBoardComponent::getConnectorPinCount("fmc_hpc"));
  EXPECT_EQ(560, HBOBoardComponent::getConnectorPinCount("fmc_plus"));
  EXPECT_EQ(560, HBOBoardComponent::getConnectorPinCount("fmc_lpc_plus"));
  EXPECT_EQ(560, HBOBoardComponent::getConnectorPinCount("dimm"));
  EXPECT_EQ(100, HBOBoardComponent::getConnectorPinCount("pmod"));
  EXPECT_EQ(240, HBOBoardComponent::getConnectorPinCount("som"));
  EXPECT_EQ(240, HBOBoardComponent::getConnectorPinCount("som_240"));
  EXPECT_EQ(480, HBOBoardComponent::getConnectorPinCount("som_480"));
  // The words the predicates take for SOM connectors give no pins.
  EXPECT_EQ(0, HBOBoardComponent::getConnectorPinCount("som240"));
  EXPECT_EQ(0, HBOBoardComponent::getConnectorPinCount("som480"));
  EXPECT_EQ(0, HBOBoardComponent::getConnectorPinCount("pcie"));
  EXPECT_EQ(0, HBOBoardComponent::getConnectorPinCount(""));
}

TEST(ConnectorFit, ConnectorsWithoutInterfacesFitInWholeWithinTheirFamily) {
  auto lpc = component("connector", "fmc_lpc");
  auto hpc = component("connector", "fmc_hpc");
  auto pmod = component("connector", "pmod");
  auto dock = component("connector", "dockline160");
  auto dock2 = component("connector", "dockline160");
  auto som = component("connector", "som240");
  auto som480 = component("connector", "som480");
  auto notConnector = component("chip", "fmc_lpc");
  const HBOBoardComponent &any = *lpc;

  EXPECT_TRUE(any.isFullCompatibleWithConnector(nullptr, lpc.get(), hpc.get()));
  EXPECT_TRUE(any.isFullCompatibleWithConnector(nullptr, som480.get(), som.get()));
  EXPECT_FALSE(any.isPartialCompatibleWithConnector(nullptr, lpc.get(), hpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, pmod.get(), hpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, dock.get(), dock2.get()));
  EXPECT_FALSE(any.isPartialCompatibleWithConnector(nullptr, dock.get(), dock2.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, notConnector.get(), lpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, nullptr, lpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, lpc.get(), nullptr));
  EXPECT_FALSE(HBOBoardComponent::isExplicitlyCompatibleWithConnector(nullptr, lpc.get()));
  // A base connector on no board cannot be named by a declaration.
  lpc->addCompatibleConnector("kestrel-boards", "b", "*", "");
  EXPECT_FALSE(HBOBoardComponent::isExplicitlyCompatibleWithConnector(lpc.get(), hpc.get()));
}

TEST(ConnectorFit, SomVlnParameterRestrictsTheSoms) {
  auto som = component("connector", "som");
  EXPECT_TRUE(som->isCompatibleWithSomVLN("anything"));
  auto *param = new HBOParameter();
  param->setName("compatible_som_vln");
  param->setValue("Kestrel:SOM:k1:1.0");
  som->addParameter(param);
  EXPECT_TRUE(som->isCompatibleWithSomVLN("kestrel:som:K1:1.0"));
  EXPECT_FALSE(som->isCompatibleWithSomVLN("kestrel:som:k2:1.0"));
}

// A reference board with one base connector, and daughter connectors named
// vendor:board:connector:version, held apart from any board.
class LatestList : public ::testing::Test {
protected:
  void SetUp() override {
    board.setName("kestrel-boards", "carrier", "1.0");
    base = new HBOBoardComponent();
    base->setName("kestrel-boards:carrier:j1:1.0");
    base->setComponentName("j1");
    base->setBoard(&board);
    board.addBoardComponent(base);
  }
  HBOBoardComponent *daughter(const std::string &name) {
    daughters.push_back(std::make_unique<HBOBoardComponent>());
    daughters.back()->setName(name);
    return daughters.back().get();
  }
  std::vector<std::string> latest() {
    HSTVector<HBOBoardComponent *> out;
    board.getLatestCompatibleConnectorsList(*base, out);
    std::vector<std::string> names;
    for (const HBOBoardComponent *c : out)
      names.push_back(c->getName());
    std::sort(names.begin(), names.end());
    return names;
  }

  HBOBoard board;
  HBOBoardComponent *base = nullptr;
  std::vector<std::unique_ptr<HBOBoardComponent>> daughters;
};

TEST_F(LatestList, KeepsTheNewestNumericVersionOfEachConnector) {
  EXPECT_TRUE(latest().empty());
  HBOBoardComponent *v10 = daughter("kestrel-boards:card:p1:1.0");
  HBOBoardComponent *v12 = daughter("Kestrel-Boards:Card:P1:1.2");
  HBOBoardComponent *v110 = daughter("kestrel-boards:card:p1:1.10");
  HBOBoardComponent *v12twin = daughter("kestrel-boards:card:p1:1.20");
  HBOBoardComponent *beta = daughter("kestrel-boards:card:p1:beta");
  HBOBoardComponent *other = daughter("kestrel-boards:card:p2:0.5");
  HBOBoardComponent *colons = daughter("kestrel-boards::card:p2:9.0");
  board.addToPartiallyCompatibleConnectorsList(base, v10);
  board.addToFullyCompatibleConnectorsList(base, v12);
  board.addToFullyCompatibleConnectorsList(base, v110);
  board.addToFullyCompatibleConnectorsList(base, v12twin);
  board.addToFullyCompatibleConnectorsList(base, beta);
  board.addToFullyCompatibleConnectorsList(base, beta);
  board.addToPartiallyCompatibleConnectorsList(base, other);
  board.addToPartiallyCompatibleConnectorsList(base, colons);
  board.addToPartiallyCompatibleConnectorsList(base, nullptr);

  // 1.10 is read as a number below 1.2; of 1.2 and 1.20, equal as numbers,
  // the earlier stays; "beta" is no number and stays once; a doubled colon
  // is one separator, so 9.0 joins the family of p2 and outranks 0.5.
  EXPECT_EQ((std::vector<std::string>{"Kestrel-Boards:Card:P1:1.2", "kestrel-boards::card:p2:9.0",
                                      "kestrel-boards:card:p1:beta"}),
            latest());

  // The full compatible list has the partial entries first.
  HSTVector<HBOBoardComponent *> all;
  board.getCompatibleConnectorsList(*base, all);
  ASSERT_EQ(8u, all.size());
  EXPECT_EQ(v10, all[0]);
  EXPECT_EQ(v12, all[3]);
}

TEST_F(LatestList, AnExplicitListHidesTheComputedOnes) {
  HBOBoardComponent *full = daughter("kestrel-boards:card:p1:1.0");
  HBOBoardComponent *declared = daughter("kestrel-boards:other:p1:1.0");
  board.addToFullyCompatibleConnectorsList(base, full);
  board.addToExplicitlyCompatibleConnectorsList(base, declared);
  HSTVector<HBOBoardComponent *> all;
  board.getCompatibleConnectorsList(*base, all);
  EXPECT_EQ((HSTVector<HBOBoardComponent *>{declared}), all);
  EXPECT_TRUE(board.isConnectorFullCompatibleWithConnector(*base, *full));
  EXPECT_FALSE(board.isConnectorFullCompatibleWithConnector(*base, *declared));
  EXPECT_TRUE(full->isFullCompatibleWithConnector(*base));
  EXPECT_FALSE(full->isPartialCompatibleWithConnector(*base));
}

} // namespace
