// Finding and loading boards: the installation's search order, the parallel
// load, the user repositories, refreshes and their events.
#include "RepoTestSupport.h"

#include "HBOBoardCatalogEvents.h"
#include "HBOBoardComponent.h"
#include "HBOCommon.h"
#include "HPAParamMgr.h"
#include "HUTFileUtils.h"
#include "HUTGuiEvent.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <set>

namespace {

using test::dataPath;
using test::MessageRecorder;
using test::ParamScope;

class RepoLoad : public test::RepoTest {};

TEST_F(RepoLoad, BoardPartsOfEveryDataDirectoryComeFirst) {
  useDataDirs({"repo_install_a", "repo_install_b"});
  auto canonical = [](const std::string &dir) { return HUTFileUtils::canonical(dataPath(dir)); };
  // Directories that do not exist are left out.
  EXPECT_EQ((std::vector<std::string>{canonical("repo_install_a/boards/board_parts"),
                                      canonical("repo_install_b/boards/board_parts"),
                                      canonical("repo_install_a/boards/board_files"),
                                      canonical("repo_install_b/bazaar/boards")}),
            HBOBoardCReposMgr::getStaticBoardDirs());

  ParamScope v1Only("board.enableSchemaV2", "false");
  EXPECT_EQ((std::vector<std::string>{canonical("repo_install_a/boards/board_parts"),
                                      canonical("repo_install_b/boards/board_parts")}),
            HBOBoardCReposMgr::getStaticBoardDirs());
}

// The parallel load, the test that the thread checker runs.
class RepoParallelLoad : public test::RepoTest {
protected:
  using Observed = std::pair<std::vector<std::string>, std::vector<std::string>>;

  // Builds the catalog with a worker count and returns what is observable:
  // every board with its display name and repository, and every message.
  Observed loadWith(const std::string &workers) {
    dropRepository();
    ParamScope threads("general.maxThreads", workers);
    MessageRecorder messages;
    HBOBoardCReposMgr *mgr = repo();
    Observed out;
    for (const auto &entry : mgr->getBoardPartMap())
      out.first.push_back(entry.first + " " + entry.second->getDisplayName() + " " +
                          entry.second->getRepository());
    for (const auto &record : messages.records)
      out.second.push_back(record.line);
    return out;
  }
};

TEST_F(RepoParallelLoad, SameCatalogAndSameMessagesWithOneOrSeveralWorkers) {
  useDataDirs({"repo_failing", "repo_install_a", "repo_install_b"});
  Observed one = loadWith("1");
  Observed two = loadWith("2");
  Observed eight = loadWith("8");
  // A worker count below one still loads.
  Observed none = loadWith("0");

  EXPECT_EQ(14u, one.first.size());
  EXPECT_FALSE(one.second.empty());
  EXPECT_EQ(one, two);
  EXPECT_EQ(one, eight);
  EXPECT_EQ(one, none);
}

// Which board a user board hides is in the golden file of boardtool catalog;
// here, that the hidden one comes back when the path goes away.
TEST_F(RepoLoad, UserBoardHidesTheInstalledOneUntilItsPathGoesAway) {
  useDataDirs({"repo_install_a"});
  ParamScope paths("board.repoPaths", dataPath("repo_user"));
  HBOBoardCReposMgr *mgr = repo();
  std::set<std::string> replaced;
  mgr->getStaticBoardsReplacedByUser(replaced);
  EXPECT_EQ((std::set<std::string>{"kestrel-boards::alpha:1.0"}), replaced);
  // The installed board stays loaded, out of sight.
  EXPECT_EQ(1u, mgr->getStaticBoardPartMap().count("kestrel-boards:alpha:1.0"));

  HPAParamMgr::getParamMgr().setValue("board.repoPaths", "");
  std::vector<HBOBoard *> all;
  mgr->getAllBoards(all); // sees the change and refreshes
  EXPECT_EQ("Alpha installed", shown("kestrel-boards:alpha:1.0"));
  EXPECT_EQ("(none)", shown("kestrel-boards:upper:1.0"));
  mgr->getStaticBoardsReplacedByUser(replaced);
  EXPECT_TRUE(replaced.empty());
}

TEST_F(RepoLoad, ProjectPathsComeBeforeUserPathsAndMissingPathsAreSkipped) {
  useDataDirs({"repo_install_a"});
  const std::string missing = dataPath("repo_does_not_exist");
  ParamScope paths("board.repoPaths", missing + " {" + dataPath("repo_user") + "}");
  MessageRecorder messages;
  HBOBoardCReposMgr *mgr = repo();
  ASSERT_NE(nullptr, messages.find("49-91"));
  EXPECT_EQ(std::vector<std::string>{missing}, messages.find("49-91")->args);
  EXPECT_EQ("Alpha user", shown("kestrel-boards:alpha:1.0"));
  EXPECT_EQ("Epsilon user", shown("kestrel-boards:epsilon:2.0"));

  mgr->setProjectRepo(dataPath("repo_project"));
  EXPECT_EQ("Alpha project", shown("kestrel-boards:alpha:1.0"));
  EXPECT_EQ("Epsilon user", shown("kestrel-boards:epsilon:2.0"));
}

TEST_F(RepoLoad, UserScanSurvivesADirectoryLinkThatLoops) {
  useDataDirs({"repo_empty"});
  test::ScratchDir root;
  test::BoardBuilder()
      .rootAttributes(" display_name=\"Probe user\"")
      .pins("    <pin index=\"0\" name=\"led0\" loc=\"P2\"/>\n")
      .writeTo(root, "kestrel-boards/probe/1.0");
  boost::filesystem::create_directory_symlink(root.path(), root.file("kestrel-boards/loop"));
  ParamScope paths("board.repoPaths", root.path());
  MessageRecorder messages;
  EXPECT_EQ("Probe user", shown("kestrel-boards:probe:1.0"));
  EXPECT_EQ(1u, repo()->getUserBoardPartMap().size());
  EXPECT_TRUE(messages.records.empty());
  dropRepository();
}

// Records the catalog events in order.
class EventLog {
public:
  EventLog() {
    m_connection = HUTGuiEventBroker::instance().addListener(
        HUTGuiEvent::BoardCatalogModify, "", "test", [this](const HUTGuiEvent::Event &e) {
          if (e.isPreEvent()) {
            seen.push_back("pre");
            repos.push_back(static_cast<const HBOBoardCatalogModifyPreEvent &>(e).getData());
            return 100; // what a pre event's listeners return is not passed on
          }
          seen.push_back("post");
          repos.push_back(static_cast<const HBOBoardCatalogModifyPostEvent &>(e).getData());
          return 3;
        });
  }
  ~EventLog() { m_connection.disconnect(); }
  std::vector<std::string> seen;
  std::vector<HBOBoardCReposMgr *> repos;

private:
  HUTGuiEvent::Connection m_connection;
};

TEST_F(RepoLoad, RefreshIsWrappedInCatalogEvents) {
  useDataDirs({"repo_install_a"});
  HBOBoardCReposMgr *mgr = repo();
  EventLog log;
  EXPECT_EQ(3, mgr->refreshBoards());
  EXPECT_EQ((std::vector<std::string>{"pre", "post"}), log.seen);
  EXPECT_EQ((std::vector<HBOBoardCReposMgr *>{mgr, mgr}), log.repos);
}

TEST_F(RepoLoad, SyncRefreshesOnlyWhenTheParameterChanged) {
  useDataDirs({"repo_install_a"});
  ParamScope paths("board.repoPaths", "");
  HBOBoardCReposMgr *mgr = repo();
  EventLog log;
  mgr->sync();
  EXPECT_TRUE(log.seen.empty());

  HPAParamMgr::getParamMgr().setValue("board.repoPaths", dataPath("repo_user"));
  mgr->sync();
  EXPECT_EQ((std::vector<std::string>{"pre", "post"}), log.seen);
  EXPECT_EQ("Epsilon user", shown("kestrel-boards:epsilon:2.0"));
  mgr->sync();
  EXPECT_EQ(2u, log.seen.size());

  // The project list refreshes even when it stays the same.
  mgr->setProjectRepo("");
  EXPECT_EQ(4u, log.seen.size());

  // A project-level parameter is refused, and sync does nothing.
  ParamScope project("project.boardPartRepoPaths", dataPath("repo_project"));
  MessageRecorder messages;
  mgr->sync();
  EXPECT_EQ(4u, log.seen.size());
  EXPECT_EQ(1u, messages.count("49-73"));
}

TEST_F(RepoLoad, ContentStoreChangesRefreshAfterTheyHappen) {
  useDataDirs({"repo_install_a"});
  const std::size_t before = HUTGuiEventBroker::instance().getListenerCount(603);
  repo();
  EXPECT_EQ(before + 1, HUTGuiEventBroker::instance().getListenerCount(603));
  EventLog log;
  HUTGuiEvent::fire<HUTGuiEvent::ContentStoreInstallPreEvent>("some/board");
  EXPECT_TRUE(log.seen.empty());
  EXPECT_EQ(3, HUTGuiEvent::fire<HUTGuiEvent::ContentStoreUninstallPostEvent>("some/board"));
  EXPECT_EQ(3, HUTGuiEvent::fire<HUTGuiEvent::ContentStoreUpdatePostEvent>("some/board"));
  EXPECT_EQ((std::vector<std::string>{"pre", "post", "pre", "post"}), log.seen);

  dropRepository();
  EXPECT_EQ(before, HUTGuiEventBroker::instance().getListenerCount(603));
  EXPECT_EQ(before, HUTGuiEventBroker::instance().getListenerCount(605));
}

TEST_F(RepoLoad, ReferencesAreCounted) {
  useDataDirs({"repo_empty"});
  HBOBoardCReposMgr *mgr = repo();
  EXPECT_EQ(1u, mgr->getReferenceCount());
  EXPECT_EQ(mgr, repo());
  EXPECT_EQ(2u, mgr->getReferenceCount());
  HBOBoardCReposMgr::release();
  EXPECT_EQ(1u, mgr->getReferenceCount());
  std::vector<HBOBoard *> all;
  HBOBoardCReposMgr::appendAllBoards(all); // keeps its reference
  EXPECT_EQ(2u, mgr->getReferenceCount());
}

} // namespace

// Legacy board parts load beside the others, lifted to the current schema
// when it is on; one that fails is told, and the load goes on.
class RepoLegacy : public test::RepoTest {
protected:
  HBOBoardComponent *component(const HBOBoard *board, const std::string &name) {
    std::vector<HBOBoardComponent *> all;
    board->getBoardComponentsVec(all);
    for (HBOBoardComponent *c : all)
      if (c->getComponentName() == name)
        return c;
    return nullptr;
  }
};

TEST_F(RepoLegacy, InstalledLegacyBoardsAreMigratedAndFailuresSkipped) {
  useDataDirs({"legacy_install"});
  ParamScope paths("board.repoPaths", dataPath("legacy_user"));
  MessageRecorder messages;
  HBOBoardCReposMgr *mgr = repo();
  std::vector<std::string> keys;
  for (const auto &entry : mgr->getBoardPartMap())
    keys.push_back(entry.first);
  EXPECT_EQ((std::vector<std::string>{"kestrel-boards:finch:1.0", "kestrel-boards:finch_user:1.0",
                                      "kestrel-boards:minimal:1.0"}),
            keys);
  EXPECT_EQ((std::vector<std::string>{"49-37", "49-4", "49-109", "49-59"}), messages.ids());

  const HBOBoard *installed = mgr->getBoardPartMap().at("kestrel-boards:finch:1.0");
  EXPECT_EQ("2.0", installed->getBoardSchemaVersion());
  EXPECT_EQ("1.0", installed->getMigratedFromSchema());
  EXPECT_EQ("2.1",
            mgr->getBoardPartMap().at("kestrel-boards:minimal:1.0")->getBoardSchemaVersion());
  // An installed board is lifted before the preferences apply, a user board
  // after: only the user board's devices get their sub type from them.
  EXPECT_EQ("chip", component(installed, "sensor")->getSubType());
  EXPECT_EQ("chip", component(installed, "sws_2bits")->getSubType());
  const HBOBoard *user = mgr->getBoardPartMap().at("kestrel-boards:finch_user:1.0");
  EXPECT_EQ("temperature_sensor", component(user, "sensor")->getSubType());
  EXPECT_EQ("Sensors", component(user, "sensor")->getMajorGroup());
  EXPECT_EQ("switch", component(user, "sws_2bits")->getSubType());
}

TEST_F(RepoLegacy, WithSchemaTwoOffOnlyBoardPartsLoadAndStayAsRead) {
  useDataDirs({"legacy_install"});
  ParamScope v1Only("board.enableSchemaV2", "false");
  EXPECT_EQ(std::vector<std::string>{HUTFileUtils::canonical(
                dataPath("legacy_install/boards/board_parts"))},
            HBOBoardCReposMgr::getStaticBoardDirs());
  HBOBoardCReposMgr *mgr = repo();
  ASSERT_EQ(1u, mgr->getBoardPartMap().size());
  const HBOBoard *finch = mgr->getBoardPartMap().begin()->second;
  EXPECT_EQ("1.0", finch->getBoardSchemaVersion());
  EXPECT_TRUE(finch->getMigratedFromSchema().empty());
  EXPECT_TRUE(finch->getJtagChains().empty());
}
