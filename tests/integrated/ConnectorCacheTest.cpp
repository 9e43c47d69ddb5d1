// The caches of a reference board, filled by the repositories from a small
// installation: a carrier (base_kit) with an FMC HPC, a PMOD and a
// dockline160 connector, and daughter cards that fit it in whole, in part,
// by declaration, or not at all.
#include "../repo/RepoTestSupport.h"

#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOPartCReposMgr.h"
#include "HBOPinProps.h"

#include <memory>
#include <string>
#include <vector>

namespace {

using test::dataPath;
using test::ParamScope;

class ConnectorCache : public test::RepoTest {
protected:
  void SetUp() override { useDataDirs({"compat_install"}); }

  HBOBoard *board(const std::string &key) {
    const auto &map = repo()->getBoardPartMap();
    auto it = map.find(key);
    return it == map.end() ? nullptr : it->second;
  }
  HBOBoardComponent *connector(const std::string &boardKey, const std::string &name) {
    HBOBoard *b = board(boardKey);
    return b ? b->findBoardComponent(name) : nullptr;
  }
  HBOBoardComponent *base(const std::string &name) {
    return connector("kestrel-boards:base_kit:1.0", name);
  }
  // The full names under one map of the base connector \p name.
  static std::vector<std::string> names(const HBOBoard::ConnectorCache &cache,
                                        const std::string &key) {
    std::vector<std::string> out;
    auto it = cache.find(key);
    if (it != cache.end())
      for (const HBOBoardComponent *c : it->second)
        out.push_back(c->getName());
    return out;
  }
  using Names = std::vector<std::string>;
};

TEST_F(ConnectorCache, TheLoadSortsEachPairIntoOneList) {
  HBOBoard *kit = board("kestrel-boards:base_kit:1.0");
  ASSERT_NE(nullptr, kit);
  const std::string fmc = "kestrel-boards:base_kit:fmc_j1:1.0";
  const std::string pmod = "kestrel-boards:base_kit:pmod_j2:1.0";
  const std::string dock = "kestrel-boards:base_kit:dock_j3:1.0";
  // Full: an LPC card on an HPC connector whose pins all reach the FPGA.
  // Partial: one interface's pin has no counterpart on the carrier. The
  // declared card would fit in whole too, but stands only in the explicit
  // list.
  EXPECT_EQ((Names{"kestrel-boards:card_full:fmc_p1:1.0", "kestrel-boards:card_full:fmc_p1:1.2"}),
            names(kit->getFullyCompatibleConnectors(), fmc));
  EXPECT_EQ((Names{"kestrel-boards:card_part:fmc_p1:1.0"}),
            names(kit->getPartiallyCompatibleConnectors(), fmc));
  EXPECT_EQ((Names{"kestrel-boards:card_decl:fmc_p1:1.0"}),
            names(kit->getExplicitlyCompatibleConnectors(), fmc));
  // A PMOD without interfaces fits in whole.
  EXPECT_EQ((Names{"kestrel-boards:card_bare:pmod_p1:1.0"}),
            names(kit->getFullyCompatibleConnectors(), pmod));
  // dockline160 belongs to no family: only a declaration counts, and one
  // whose vendor differs in case does not. A declaration ignores families.
  EXPECT_EQ((Names{"kestrel-boards:card_decl:fmc_p1:1.0"}),
            names(kit->getExplicitlyCompatibleConnectors(), dock));
  EXPECT_TRUE(names(kit->getFullyCompatibleConnectors(), dock).empty());
  EXPECT_TRUE(names(kit->getPartiallyCompatibleConnectors(), dock).empty());

  HBOBoardComponent *declared = connector("kestrel-boards:card_decl:1.0", "fmc_p1");
  HBOBoardComponent *partial = connector("kestrel-boards:card_part:1.0", "fmc_p1");
  ASSERT_NE(nullptr, declared);
  ASSERT_NE(nullptr, partial);
  EXPECT_FALSE(kit->isConnectorFullCompatibleWithConnector(*base("fmc_j1"), *declared));
  EXPECT_TRUE(partial->isPartialCompatibleWithConnector(*base("fmc_j1")));
  EXPECT_FALSE(partial->isFullCompatibleWithConnector(*base("fmc_j1")));

  // The declaration hides the computed lists, also in the latest form.
  HSTVector<HBOBoardComponent *> list, latest;
  kit->getCompatibleConnectorsList(*base("fmc_j1"), list);
  kit->getLatestCompatibleConnectorsList(*base("fmc_j1"), latest);
  EXPECT_EQ((HSTVector<HBOBoardComponent *>{declared}), list);
  EXPECT_EQ(list, latest);

  // Daughter boards keep no caches.
  EXPECT_TRUE(board("kestrel-boards:card_full:1.0")->getFullyCompatibleConnectors().empty());
}

TEST_F(ConnectorCache, PinTraceRunsByIndexThroughTheCarrierToTheFpga) {
  HBOBoard *kit = board("kestrel-boards:base_kit:1.0");
  ASSERT_NE(nullptr, kit);
  const HBOBoardComponent *fpga = kit->getActivePart();
  HBOBoardComponent *partial = connector("kestrel-boards:card_part:1.0", "fmc_p1");
  ASSERT_NE(nullptr, fpga);
  ASSERT_NE(nullptr, partial);
  const HBOBoardComponent *fmc = base("fmc_j1");

  std::string fpgaPin = "untouched";
  EXPECT_TRUE(fpga->findConnectedPinConnectedToFMCConnectorPin(fmc, partial, "d0", fpgaPin));
  EXPECT_EQ("io_a0", fpgaPin);
  // d3 sits at index 3, which the carrier's connector does not have.
  fpgaPin = "untouched";
  EXPECT_FALSE(fpga->findConnectedPinConnectedToFMCConnectorPin(fmc, partial, "d3", fpgaPin));
  EXPECT_FALSE(fpga->isFMCConnectorPinConnected(fmc, partial, "no_such_pin"));
  EXPECT_EQ("untouched", fpgaPin);
  EXPECT_FALSE(fpga->isFMCConnectorPinConnected1(fmc, partial, nullptr));
  EXPECT_TRUE(fpga->isFMCConnectorPinConnected1(fmc, partial, partial->findPin("d0")));
  // The dockline connector's pin 0 is io_b0, an FPGA pin as well: the trace
  // does not care about families.
  EXPECT_TRUE(
      fpga->findConnectedPinConnectedToFMCConnectorPin(base("dock_j3"), partial, "d0", fpgaPin));
  EXPECT_EQ("io_b0", fpgaPin);

  HBOBusIf *led = partial->getBusIfByName("led");
  HBOBusIf *relay = partial->getBusIfByName("relay");
  ASSERT_NE(nullptr, led);
  ASSERT_NE(nullptr, relay);
  EXPECT_TRUE(fpga->isFMCBusInterfaceFullyConnected(fmc, partial, led));
  EXPECT_TRUE(fpga->canCopyFMCBusInterface(fmc, partial, led));
  EXPECT_FALSE(fpga->canCopyFMCBusInterface(fmc, partial, relay));
  // The trace ends on the pins of the component asked: one without the
  // FPGA's pin names reaches nothing.
  EXPECT_FALSE(base("pmod_j2")->canCopyFMCBusInterface(fmc, partial, led));
}

TEST_F(ConnectorCache, RebuildOnADaughterOrIntegratedBoardLeavesItsCachesAlone) {
  HBOBoard *card = board("kestrel-boards:card_full:1.0");
  HBOBoard *kit = board("kestrel-boards:base_kit:1.0");
  ASSERT_NE(nullptr, card);
  ASSERT_NE(nullptr, kit);
  HBOBoardComponent *plug = card->findBoardComponent("fmc_p1");
  HBOBoardComponent *fmc = kit->findBoardComponent("fmc_j1");
  card->addToFullyCompatibleConnectorsList(plug, fmc);
  std::vector<HBOBoard *> all;
  repo()->getAllBoards(all);
  card->rebuildConnectorsCompatibilityCache(all);
  card->rebuildConnectorsCompatibilityCache(HSTVector<HBOBoardComponent *>{fmc});
  EXPECT_EQ(1u, card->getFullyCompatibleConnectors().size());

  // Marked integrated, the carrier keeps what it had as well.
  const std::size_t before = kit->getFullyCompatibleConnectors().size();
  kit->setIntegratedBoard(true);
  kit->rebuildConnectorsCompatibilityCache(HSTVector<HBOBoardComponent *>{});
  EXPECT_EQ(before, kit->getFullyCompatibleConnectors().size());
  kit->setIntegratedBoard(false);
  // And as a reference board an empty list empties them.
  kit->rebuildConnectorsCompatibilityCache(HSTVector<HBOBoardComponent *>{});
  EXPECT_TRUE(kit->getFullyCompatibleConnectors().empty());
  EXPECT_TRUE(kit->getExplicitlyCompatibleConnectors().empty());
}

TEST_F(ConnectorCache, RefreshesRebuildTheCachesWithTheRepositoriesBoards) {
  const std::string pmod = "kestrel-boards:base_kit:pmod_j2:1.0";
  const std::string late = "kestrel-boards:card_late:pmod_p1:1.0";
  HBOBoard *kit = board("kestrel-boards:base_kit:1.0");
  ASSERT_NE(nullptr, kit);
  EXPECT_EQ((Names{"kestrel-boards:card_bare:pmod_p1:1.0"}),
            names(kit->getFullyCompatibleConnectors(), pmod));

  {
    // A project whose repository holds one more card: its refresh sorts it
    // into the carrier's lists (its only pin, at index 1, traces to io_b1).
    HBOPartCReposMgr project;
    ASSERT_TRUE(project.setUserRepositoryPaths({dataPath("compat_user")}));
    EXPECT_EQ((Names{"kestrel-boards:card_bare:pmod_p1:1.0", late}),
              names(kit->getFullyCompatibleConnectors(), pmod));
  }
  // The project's card is gone with the project, and so is its entry.
  EXPECT_EQ((Names{"kestrel-boards:card_bare:pmod_p1:1.0"}),
            names(kit->getFullyCompatibleConnectors(), pmod));

  // The installation's own refresh, which a change of the user
  // repositories starts, does the same.
  {
    ParamScope paths("board.repoPaths", dataPath("compat_user"));
    repo()->sync();
    EXPECT_EQ((Names{"kestrel-boards:card_bare:pmod_p1:1.0", late}),
              names(kit->getFullyCompatibleConnectors(), pmod));
  }
  repo()->sync();
  EXPECT_EQ((Names{"kestrel-boards:card_bare:pmod_p1:1.0"}),
            names(kit->getFullyCompatibleConnectors(), pmod));
}

} // namespace
