// The catalog's indexes and queries: names, latest versions, legacy names
// and the installation's interface preferences.
#include "RepoTestSupport.h"

#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"

#include <memory>

namespace {

using test::dataPath;
using test::MessageRecorder;
using test::ParamScope;

class RepoCatalog : public test::RepoTest {};

TEST_F(RepoCatalog, LatestVersionFollowsVersionCompare) {
  useDataDirs({"repo_install_a"});
  HBOBoardCReposMgr *mgr = repo();
  const auto &latest = mgr->getLatestBoardMap();
  // Only the first two fields count, each as the sum of its digits: 1.10
  // reads as 1.1, below 1.9.
  auto beta = latest.find("kestrel-boards::beta");
  ASSERT_NE(latest.end(), beta);
  EXPECT_EQ("1.9", beta->second->getVersion());

  std::vector<HBOBoard *> all, newest;
  mgr->getAllBoards(all);
  mgr->getAllLatestBoards(newest);
  EXPECT_EQ(all.size() - 1, newest.size()); // beta 1.10 is the one left out
}

// A board of one component, for the filters.
std::unique_ptr<HBOBoard> makeBoard(const std::string &name, const std::string &version,
                                    const std::string &revision) {
  auto board = std::make_unique<HBOBoard>();
  board->setName("kestrel-boards", name, version);
  board->setCompatibleBoardRevisions({{0, revision}});
  auto *part = new HBOBoardComponent();
  part->setComponentName("part0");
  part->setType("fpga");
  part->setBoard(board.get());
  board->addBoardComponent(part);
  board->setActivePart(part);
  return board;
}

TEST_F(RepoCatalog, FiltersKeepTheLatestVersionOrEveryBoardOfTheLatestRevision) {
  auto first = makeBoard("delta", "1.0", "Rev 2");
  auto second = makeBoard("delta", "1.0", "Rev 2");
  auto older = makeBoard("delta", "0.9", "Rev 1");
  auto other = makeBoard("omega", "2.0", "Rev 1");
  const std::vector<HBOBoardComponent *> in = {older->getActivePart(), nullptr,
                                               first->getActivePart(), second->getActivePart(),
                                               other->getActivePart()};

  std::vector<HBOBoardComponent *> parts = in;
  HBOBoardCReposMgr::filterLatestVersionBoardParts(parts);
  // Of two equal versions the first met stays.
  EXPECT_EQ((std::vector<HBOBoardComponent *>{first->getActivePart(), other->getActivePart()}),
            parts);

  parts = in;
  HBOBoardCReposMgr::filterLatestRevisionBoardParts(parts);
  EXPECT_EQ((std::vector<HBOBoardComponent *>{first->getActivePart(), second->getActivePart(),
                                              other->getActivePart()}),
            parts);
}

// Which legacy names resolve, and which are warned about, is in the golden
// files of boardtool show.
TEST_F(RepoCatalog, LegacyNamesGiveTheBoardPartName) {
  useDataDirs({"repo_empty"});
  ParamScope paths("board.repoPaths", dataPath("repo_legacy"));
  HBOBoardCReposMgr *mgr = repo();
  EXPECT_EQ(nullptr, mgr->getInfoForBoardByFamousName(""));
  EXPECT_EQ("quarnel-ip:rb47:part0:0.9", mgr->getBoardPartNameForBoard("Quarnel-IP:Dunal:RB47:A"));
  EXPECT_EQ("", mgr->getBoardPartNameForBoard("quarnel-ip:dunal:rb47"));
  EXPECT_EQ("", mgr->getBoardPartNameForBoard(""));
}

TEST_F(RepoCatalog, InstallationPreferencesFillOnlyInterfacesWithoutTheirOwn) {
  useDataDirs({"repo_install_a", "repo_install_b"});
  HBOBoardCReposMgr *mgr = repo();
  const auto &prefs = mgr->getInterfacePreferenceMap();
  // The first data directory's file alone; tags in any case, others skipped.
  ASSERT_EQ(2u, prefs.size());
  auto gpio = prefs.find("quarnel-ip:interface:gpio_rtl#master");
  ASSERT_NE(prefs.end(), gpio);
  EXPECT_EQ("GPIO", gpio->second->getMajorGroup());
  EXPECT_EQ("quarnel-ip:ip:gpio_ctl:2.0", gpio->second->getDefaultIpVlnv());
  EXPECT_EQ(1u, prefs.count("quarnel-ip:interface:uart_rtl#master"));

  HBOBoard *board = mgr->getInfoForBoard("kestrel-boards:prefs:1.0");
  ASSERT_NE(nullptr, board);
  HBOBusIf *leds = board->getBusIfByName("leds");
  HBOBusIf *buttons = board->getBusIfByName("buttons");
  ASSERT_NE(nullptr, leds);
  ASSERT_NE(nullptr, buttons);
  EXPECT_EQ(gpio->second, leds->getPreference()); // shared, not copied
  ASSERT_NE(nullptr, buttons->getPreference());
  EXPECT_NE(gpio->second, buttons->getPreference());
  EXPECT_EQ("button_ctl", buttons->getPreference()->getName());
}

TEST_F(RepoCatalog, WithoutAPreferenceFileBoardsLoadAsRead) {
  useDataDirs({"repo_failing"});
  MessageRecorder messages;
  HBOBoardCReposMgr *mgr = repo();
  EXPECT_TRUE(mgr->getInterfacePreferenceMap().empty());
  EXPECT_NE(nullptr, mgr->getInfoForBoard("kestrel-boards:one:1.0"));
  EXPECT_FALSE(mgr->populatePreferenceData(nullptr));
}

} // namespace
