// Connector families and the computed fit on components built here, and
// the thinning of a compatible list to the latest versions.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

using Family = HBOBoardComponent::ConnectorFamily;

std::unique_ptr<HBOBoardComponent> component(const std::string &type, const std::string &subType,
                                             const std::string &name = "") {
  auto c = std::make_unique<HBOBoardComponent>();
  c->setType(type);
  c->setSubType(subType);
  c->setName(name);
  return c;
}

TEST(ConnectorFamilies, SubTypesSortIntoFamiliesOnlyOnConnectors) {
  const std::pair<const char *, Family> rows[] = {
      {"fmc_lpc", Family::LPC},      {"fmc_hpc", Family::LPC},  {"fmc_plus", Family::LPC},
      {"fmc_lpc_plus", Family::LPC}, {"dimm", Family::DIMM},    {"pmod", Family::PMOD},
      {"som", Family::SOM},          {"som240", Family::SOM},   {"som480", Family::SOM},
      {"dockline160", Family::None}, {"som_240", Family::None}, {"FMC_LPC", Family::None},
  };
  for (const auto &row : rows) {
    EXPECT_EQ(row.second, component("connector", row.first)->getConnectorFamily()) << row.first;
    EXPECT_EQ(Family::None, component("chip", row.first)->getConnectorFamily()) << row.first;
  }
}

TEST(ConnectorFamilies, PinCountsFollowTheSubType) {
  const std::pair<const char *, int> rows[] = {
      {"dockline160", 160},
      {"fmc_lpc", 400},
      {"fmc_hpc", 400},
      {"fmc_plus", 560},
      {"fmc_lpc_plus", 560},
      {"dimm", 560},
      {"pmod", 100},
      {"som", 240},
      {"som_240", 240},
      {"som_480", 480},
      // The words the predicates take for SOM connectors give no pins.
      {"som240", 0},
      {"som480", 0},
      {"pcie", 0},
      {"", 0},
  };
  for (const auto &row : rows)
    EXPECT_EQ(row.second, HBOBoardComponent::getConnectorPinCount(row.first)) << row.first;
}

TEST(ConnectorFit, ConnectorsWithoutInterfacesFitInWholeWithinTheirFamily) {
  auto lpc = component("connector", "fmc_lpc");
  auto hpc = component("connector", "fmc_hpc");
  auto som240 = component("connector", "som240");
  auto som480 = component("connector", "som480");
  auto dock = component("connector", "dockline160");
  auto chip = component("chip", "fmc_lpc");
  const HBOBoardComponent &any = *chip;
  EXPECT_TRUE(any.isFullCompatibleWithConnector(nullptr, lpc.get(), hpc.get()));
  EXPECT_TRUE(any.isFullCompatibleWithConnector(nullptr, som480.get(), som240.get()));
  EXPECT_FALSE(any.isPartialCompatibleWithConnector(nullptr, lpc.get(), hpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, som240.get(), hpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, dock.get(), dock.get()));
  EXPECT_FALSE(any.isPartialCompatibleWithConnector(nullptr, dock.get(), dock.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, chip.get(), lpc.get()));
  EXPECT_FALSE(any.isFullCompatibleWithConnector(nullptr, nullptr, lpc.get()));
  // A base connector on no board cannot be named by a declaration.
  lpc->addCompatibleConnector("", "", "*", "");
  EXPECT_FALSE(HBOBoardComponent::isExplicitlyCompatibleWithConnector(lpc.get(), hpc.get()));
}

TEST(ConnectorFit, TheLatestListKeepsTheNewestNumericVersionOfEachConnector) {
  HBOBoard board;
  auto *base = new HBOBoardComponent();
  base->setName("kestrel-boards:carrier:j1:1.0");
  board.addBoardComponent(base);
  HSTVector<HBOBoardComponent *> out;
  board.getLatestCompatibleConnectorsList(*base, out);
  EXPECT_TRUE(out.empty());

  std::vector<std::unique_ptr<HBOBoardComponent>> cards;
  for (const char *name :
       {"kestrel-boards:card:p1:1.0", "kestrel-boards:card:p2:0.5", "kestrel-boards::card:p2:9.0",
        "Kestrel-Boards:Card:P1:1.2", "kestrel-boards:card:p1:1.10", "kestrel-boards:card:p1:1.20",
        "kestrel-boards:card:p1:beta"})
    cards.push_back(component("connector", "fmc_lpc", name));
  // The full ones are entered first: the compatible list still starts with
  // the partial ones.
  for (std::size_t i = 3; i < cards.size(); ++i)
    board.addToFullyCompatibleConnectorsList(base, cards[i].get());
  for (std::size_t i = 0; i < 3; ++i)
    board.addToPartiallyCompatibleConnectorsList(base, cards[i].get());
  board.addToFullyCompatibleConnectorsList(base, cards.back().get()); // "beta" twice
  board.addToFullyCompatibleConnectorsList(base, nullptr);

  board.getCompatibleConnectorsList(*base, out);
  ASSERT_EQ(8u, out.size());
  EXPECT_EQ(cards[0].get(), out[0]);
  EXPECT_EQ(cards[3].get(), out[3]);

  out.clear();
  board.getLatestCompatibleConnectorsList(*base, out);
  std::vector<std::string> names;
  for (const HBOBoardComponent *c : out)
    names.push_back(c->getName());
  std::sort(names.begin(), names.end());
  // 1.10 reads as a number below 1.2; of 1.2 and 1.20, equal as numbers,
  // the earlier stays; "beta" is no number and stays once; a doubled colon
  // is one separator, so 9.0 joins the family of p2 and outranks 0.5.
  EXPECT_EQ((std::vector<std::string>{"Kestrel-Boards:Card:P1:1.2", "kestrel-boards::card:p2:9.0",
                                      "kestrel-boards:card:p1:beta"}),
            names);
}

} // namespace
