// The caches of a reference board, filled by the repositories from a small
// installation: a carrier (base_kit) with an FMC HPC, a PMOD and a
// dockline160 connector, and daughter cards that fit it in whole, in part,
// by declaration, or not at all.
#include "../repo/RepoTestSupport.h"

#include "HBOBoardComponent.h"
#include "HBOPartCReposMgr.h"

#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

class ConnectorCache : public test::RepoTest {
protected:
  void SetUp() override {
    useDataDirs({"compat_install"});
    kit = repo()->getBoardPartMap().at("kestrel-boards:base_kit:1.0");
  }
  HBOBoardComponent *connector(const std::string &boardKey, const std::string &name) {
    return repo()->getBoardPartMap().at(boardKey)->findBoardComponent(name);
  }
  // The full names listed under the base connector \p name.
  Names listed(const HBOBoard::ConnectorCache &cache, const std::string &name) {
    Names out;
    auto it = cache.find("kestrel-boards:base_kit:" + name + ":1.0");
    if (it != cache.end())
      for (const HBOBoardComponent *c : it->second)
        out.push_back(c->getName());
    return out;
  }

  HBOBoard *kit = nullptr;
  const std::string bare = "kestrel-boards:card_bare:pmod_p1:1.0";
  const std::string declared = "kestrel-boards:card_decl:fmc_p1:1.0";
};

TEST_F(ConnectorCache, TheLoadSortsEachPairIntoOneList) {
  // Full: an LPC card on an HPC connector whose pins all reach the FPGA.
  // Partial: one interface's pin has no counterpart on the carrier. The
  // declared card would fit in whole too, but stands only in the explicit
  // list, which hides the others.
  EXPECT_EQ((Names{"kestrel-boards:card_full:fmc_p1:1.0", "kestrel-boards:card_full:fmc_p1:1.2"}),
            listed(kit->getFullyCompatibleConnectors(), "fmc_j1"));
  EXPECT_EQ((Names{"kestrel-boards:card_part:fmc_p1:1.0"}),
            listed(kit->getPartiallyCompatibleConnectors(), "fmc_j1"));
  EXPECT_EQ((Names{declared}), listed(kit->getExplicitlyCompatibleConnectors(), "fmc_j1"));
  HBOBoardComponent *fmc = connector("kestrel-boards:base_kit:1.0", "fmc_j1");
  HBOBoardComponent *decl = connector("kestrel-boards:card_decl:1.0", "fmc_p1");
  HBOBoardComponent *partial = connector("kestrel-boards:card_part:1.0", "fmc_p1");
  HSTVector<HBOBoardComponent *> list, latest;
  kit->getCompatibleConnectorsList(*fmc, list);
  kit->getLatestCompatibleConnectorsList(*fmc, latest);
  EXPECT_EQ((HSTVector<HBOBoardComponent *>{decl}), list);
  EXPECT_EQ(list, latest);
  EXPECT_FALSE(kit->isConnectorFullCompatibleWithConnector(*fmc, *decl));
  EXPECT_TRUE(partial->isPartialCompatibleWithConnector(*fmc));
  EXPECT_FALSE(partial->isFullCompatibleWithConnector(*fmc));

  // A PMOD without interfaces fits in whole. dockline160 belongs to no
  // family: only a declaration counts, even from a card of another family,
  // and one whose vendor differs in case does not.
  EXPECT_EQ((Names{bare}), listed(kit->getFullyCompatibleConnectors(), "pmod_j2"));
  EXPECT_EQ((Names{declared}), listed(kit->getExplicitlyCompatibleConnectors(), "dock_j3"));
  EXPECT_EQ(Names{}, listed(kit->getFullyCompatibleConnectors(), "dock_j3"));
  EXPECT_EQ(Names{}, listed(kit->getPartiallyCompatibleConnectors(), "dock_j3"));
}

TEST_F(ConnectorCache, PinTraceRunsByIndexThroughTheCarrierToTheFpga) {
  const HBOBoardComponent *fpga = kit->getActivePart();
  const HBOBoardComponent *fmc = connector("kestrel-boards:base_kit:1.0", "fmc_j1");
  HBOBoardComponent *partial = connector("kestrel-boards:card_part:1.0", "fmc_p1");
  ASSERT_NE(nullptr, fpga);
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

  EXPECT_TRUE(fpga->canCopyFMCBusInterface(fmc, partial, partial->getBusIfByName("led")));
  EXPECT_FALSE(fpga->canCopyFMCBusInterface(fmc, partial, partial->getBusIfByName("relay")));
  // The trace ends on the pins of the component asked: one without the
  // FPGA's pin names reaches nothing.
  const HBOBoardComponent *pmod = connector("kestrel-boards:base_kit:1.0", "pmod_j2");
  EXPECT_FALSE(pmod->canCopyFMCBusInterface(fmc, partial, partial->getBusIfByName("led")));
}

TEST_F(ConnectorCache, OnlyAReferenceBoardRebuilds) {
  HBOBoard *card = repo()->getBoardPartMap().at("kestrel-boards:card_full:1.0");
  HBOBoardComponent *plug = card->findBoardComponent("fmc_p1");
  card->addToFullyCompatibleConnectorsList(plug, plug);
  std::vector<HBOBoard *> all;
  repo()->getAllBoards(all);
  card->rebuildConnectorsCompatibilityCache(all);
  EXPECT_EQ(1u, card->getFullyCompatibleConnectors().size());

  kit->setIntegratedBoard(true);
  kit->rebuildConnectorsCompatibilityCache(HSTVector<HBOBoardComponent *>{});
  EXPECT_EQ((Names{bare}), listed(kit->getFullyCompatibleConnectors(), "pmod_j2"));
  kit->setIntegratedBoard(false);
  kit->rebuildConnectorsCompatibilityCache(HSTVector<HBOBoardComponent *>{});
  EXPECT_TRUE(kit->getFullyCompatibleConnectors().empty());
  EXPECT_TRUE(kit->getExplicitlyCompatibleConnectors().empty());
}

TEST_F(ConnectorCache, RefreshesRebuildTheCachesWithTheRepositoriesBoards) {
  // One more card in a user repository; its only pin, at index 1, traces.
  const Names withLate = {bare, "kestrel-boards:card_late:pmod_p1:1.0"};
  {
    HBOPartCReposMgr project;
    ASSERT_TRUE(project.setUserRepositoryPaths({test::dataPath("compat_user")}));
    EXPECT_EQ(withLate, listed(kit->getFullyCompatibleConnectors(), "pmod_j2"));
  }
  // The project's card went with the project, and so did its entry.
  EXPECT_EQ((Names{bare}), listed(kit->getFullyCompatibleConnectors(), "pmod_j2"));
  {
    // The installation's refresh, which a change of board.repoPaths starts.
    test::ParamScope paths("board.repoPaths", test::dataPath("compat_user"));
    repo()->sync();
    EXPECT_EQ(withLate, listed(kit->getFullyCompatibleConnectors(), "pmod_j2"));
  }
  repo()->sync();
  EXPECT_EQ((Names{bare}), listed(kit->getFullyCompatibleConnectors(), "pmod_j2"));
}

} // namespace
