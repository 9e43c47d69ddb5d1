// The project's view of the boards: its current board, its repository paths,
// the user boards that hide installed ones, and the look-ups by name.
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOPartCReposMgr.h"
#include "HEXError.h"
#include "RepoTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

const char kKite10[] = "kestrel-boards:kite:1.0";

class CatalogManager : public test::RepoTest {
protected:
  void SetUp() override {
    // Each test builds the repository anew from this installation; a
    // repository left over from another test would hide a wrong setup.
    useDataDirs({"catalog_install"});
    ASSERT_EQ(nullptr, leftover());
  }
  void TearDown() override { EXPECT_EQ(nullptr, leftover()) << "a reference was not given back"; }

  static HBOBoardCReposMgr *leftover() {
    // getGlobal would build one; the count tells whether one was alive.
    HBOBoardCReposMgr *global = HBOBoardCReposMgr::getGlobal();
    bool alive = global->getReferenceCount() > 1;
    HBOBoardCReposMgr::release();
    return alive ? global : nullptr;
  }

  static std::string vlnv(const HBOBoard *b) {
    return b->getVendor() + ":" + b->getLibrary() + ":" + b->getBoardName() + ":" + b->getVersion();
  }
};

TEST_F(CatalogManager, CurrentBoardIsSetOnceAndUnsetByAnEmptyName) {
  test::MessageRecorder messages;
  HBOBoardCDataManager manager;
  EXPECT_FALSE(manager.setBoard("", "", false, false)) << "no board and no name: nothing to do";
  EXPECT_FALSE(manager.isBoardStrategySet());

  ASSERT_TRUE(manager.setBoard(kKite10, "", false, false));
  HBOBoard *kite = manager.getBoardStrategy();
  ASSERT_NE(nullptr, kite);
  EXPECT_EQ(kKite10, kite->getName());
  // The same board in another case is no change.
  EXPECT_FALSE(manager.setBoard("KESTREL-BOARDS:Kite:1.0", "", false, false));
  EXPECT_EQ(kite, manager.getBoardStrategy());

  // A board part name selects the board too, and a wildcard its latest
  // version, which by the digit sums is 1.2 rather than 1.10.
  ASSERT_TRUE(manager.setBoard("kestrel-boards:kite:*", "", false, false));
  EXPECT_EQ("kestrel-boards:kite:1.2", manager.getBoardStrategy()->getName());
  ASSERT_TRUE(manager.setBoard("kestrel-boards:lark:part0:1.0", "", false, false));
  EXPECT_EQ("kestrel-boards:lark:1.0", manager.getBoardStrategy()->getName());

  HBOBusIf *busIf = nullptr;
  EXPECT_FALSE(manager.getBusIfByName(busIf, "no_such_interface"));

  EXPECT_TRUE(manager.setBoard("", "", false, false));
  EXPECT_FALSE(manager.isBoardStrategySet());
  EXPECT_FALSE(manager.getBusIfByName(busIf, "anything")) << "no board, no answer";

  EXPECT_TRUE(manager.setBoard(kite));
  EXPECT_EQ(kite, manager.getBoardStrategy());
  EXPECT_TRUE(manager.setBoard(static_cast<HBOBoard *>(nullptr)));
  EXPECT_FALSE(manager.isBoardStrategySet());
  EXPECT_FALSE(manager.setBoardStrategy(nullptr));
  EXPECT_EQ(0u, messages.count("49-151")) << "no user repository, nothing hidden";
}

TEST_F(CatalogManager, UnknownBoardThrowsOrOnlyWarns) {
  test::MessageRecorder messages;
  HBOBoardCDataManager manager;
  ASSERT_TRUE(manager.setBoard(kKite10, "", false, false));
  HBOBoard *kite = manager.getBoardStrategy();

  try {
    manager.setBoard("kestrel-boards:nothing:1.0", "part0", false, true);
    FAIL() << "an unknown board must throw";
  } catch (const HEXError &e) {
    EXPECT_EQ("49-71", e.getMessage().getId());
    EXPECT_EQ("kestrel-boards:nothing:1.0", e.getMessage().getArgs().at(0));
  }
  EXPECT_FALSE(manager.setBoard("kestrel-boards:nothing:1.0", "part0", true, true));
  ASSERT_NE(nullptr, messages.find("49-71"));
  EXPECT_EQ("CRITICAL WARNING", messages.find("49-71")->severityName);
  EXPECT_EQ(kite, manager.getBoardStrategy()) << "a failed choice keeps the current board";
}

TEST_F(CatalogManager, RepositoryPathChangesReloadTheProjectBoards) {
  HBOBoardCDataManager manager;
  HBOPartCReposMgr *repo = manager.getBoardPartReposMgr();
  bool changed = false;
  EXPECT_FALSE(manager.setBoardPartRepoPaths({}, changed)) << "the same list is no change";

  bool used = false;
  EXPECT_EQ(nullptr, manager.getBoard("kestrel-boards:swift:1.0", used, false));
  const std::string project = test::dataPath("catalog_project");
  ASSERT_TRUE(manager.setBoardPartRepoPaths({"", project}, changed));
  HSTVector<std::string> paths;
  manager.getBoardPartRepoPaths(paths);
  EXPECT_EQ(HSTVector<std::string>{project}, paths) << "empty entries are dropped";
  EXPECT_FALSE(changed) << "no current board, nothing replaced";

  // The project's copy wins over the installed board of the same key.
  HBOBoard *lark = manager.getBoard("kestrel-boards:lark:1.0", used, false);
  ASSERT_NE(nullptr, lark);
  EXPECT_TRUE(lark->isUserDefined());
  EXPECT_EQ("Lark Board (project copy)", lark->getDisplayName());

  HBOBoard *swift = manager.getBoard("kestrel-boards:swift:1.0", used, false);
  ASSERT_NE(nullptr, swift);
  ASSERT_TRUE(manager.setBoard(swift));
  EXPECT_FALSE(manager.setBoardPartRepoPaths({project}, changed));

  // The path goes away with the project board, which was current: the
  // project is left with no board rather than a dangling one.
  ASSERT_TRUE(manager.setBoardPartRepoPaths({project, test::dataPath("no_such_repo")}, changed));
  EXPECT_TRUE(changed) << "the project board was read again, a new object";
  EXPECT_NE(nullptr, manager.getBoardStrategy());
  changed = false;
  ASSERT_TRUE(manager.setBoardPartRepoPaths({}, changed));
  EXPECT_TRUE(changed);
  EXPECT_EQ(nullptr, manager.getBoardStrategy());
  EXPECT_FALSE(manager.getBoard("kestrel-boards:lark:1.0", used, false)->isUserDefined());

  // A project daughter board has no part to be found by; it must not be
  // left dangling either.
  ASSERT_TRUE(manager.setBoardPartRepoPaths({project}, changed));
  HBOBoard *perch = manager.getBoard("kestrel-boards:perch:1.0", used, false);
  ASSERT_NE(nullptr, perch);
  ASSERT_TRUE(manager.setBoard(perch));
  changed = false;
  // A different list, though the same paths: the board is read again.
  ASSERT_TRUE(manager.setBoardPartRepoPaths({project, ""}, changed));
  EXPECT_TRUE(changed);
  ASSERT_NE(nullptr, manager.getBoardStrategy());
  EXPECT_EQ("kestrel-boards:perch:1.0", manager.getBoardStrategy()->getName());
  changed = false;
  ASSERT_TRUE(manager.setBoardPartRepoPaths({}, changed));
  EXPECT_TRUE(changed);
  EXPECT_EQ(nullptr, manager.getBoardStrategy());

  // An installed board stays the same object across a reload.
  ASSERT_TRUE(manager.setBoard(kKite10, "", false, false));
  HBOBoard *kite = manager.getBoardStrategy();
  changed = false;
  ASSERT_TRUE(manager.setBoardPartRepoPaths({project}, changed));
  EXPECT_FALSE(changed);
  EXPECT_EQ(kite, manager.getBoardStrategy());
  std::vector<HBOBoard *> all;
  repo->getAllBoardParts(all);
  EXPECT_EQ(6u, all.size()) << "kite 1.0, 1.10, 1.2, lark, perch and swift";
}

TEST_F(CatalogManager, UserBoardHidesTheInstalledOneAndIsReported) {
  test::MessageRecorder messages;
  std::unique_ptr<test::ParamScope> repoPaths(
      new test::ParamScope("board.repoPaths", test::dataPath("catalog_user")));
  std::string hidden;
  {
    HBOBoardCDataManager manager;
    HBOPartCReposMgr *repo = manager.getBoardPartReposMgr();
    // What the user board shows is in the golden file of boardtool show.
    HBOBoard *kite = repo->getInfoForBoardPart(kKite10);
    ASSERT_NE(nullptr, kite);
    hidden = vlnv(kite);
    EXPECT_TRUE(repo->hasCorrBoardInInstall(hidden));

    ASSERT_TRUE(manager.setBoard(kKite10, "", false, false));
    ASSERT_EQ(1u, messages.count("49-151"));
    EXPECT_EQ(hidden, messages.find("49-151")->args.at(0));
    // Another board of the installation, not hidden, is not reported.
    ASSERT_TRUE(manager.setBoard("kestrel-boards:lark:1.0", "", false, false));
    EXPECT_EQ(1u, messages.count("49-151"));
  }
  repoPaths.reset();
  HBOBoardCDataManager manager;
  HBOBoard *kite = manager.getBoardPartReposMgr()->getInfoForBoardPart(kKite10);
  ASSERT_NE(nullptr, kite);
  EXPECT_FALSE(kite->isUserDefined()) << "without the user path the installed board is back";
  EXPECT_FALSE(manager.getBoardPartReposMgr()->hasCorrBoardInInstall(hidden));
}

// The name forms, case and wildcards of the look-ups are in the golden files
// of boardtool show.
TEST_F(CatalogManager, LatestVersionsOfFamilies) {
  HBOPartCReposMgr repo;
  std::string version = "stale";
  EXPECT_TRUE(repo.getLatestVersionForBoard("kestrel-boards:lark:*", version));
  EXPECT_EQ("1.0", version);
  EXPECT_FALSE(repo.getLatestVersionForBoard("kestrel-boards:lark:1.0", version));
  EXPECT_EQ("", version) << "cleared also when nothing is found";
  EXPECT_FALSE(repo.getLatestVersionForBoard("kestrel-boards:*", version));

  std::vector<HBOBoard *> latestAll;
  repo.getAllLatestBoardParts(latestAll);
  ASSERT_EQ(2u, latestAll.size());
  EXPECT_EQ("kestrel-boards:kite:1.2", latestAll[0]->getName());
  EXPECT_EQ("kestrel-boards:lark:1.0", latestAll[1]->getName());
}

TEST_F(CatalogManager, RegisteredBoardsKeepTheFirstAndAreDeletedOnUnregister) {
  HBOPartCReposMgr repo;
  HBOBoard *first = new HBOBoard();
  first->setName("kestrel-boards", "made", "1.0");
  HBOBoard *second = new HBOBoard();
  second->setName("kestrel-boards", "made", "1.0");

  EXPECT_TRUE(repo.registerUserBoard(first));
  EXPECT_TRUE(repo.registerUserBoard(second));
  EXPECT_EQ(first, repo.getInfoForBoardPart("kestrel-boards:made:1.0"));
  delete second; // not taken, so still ours

  // A made board also takes part in the latest-version rule.
  EXPECT_EQ(first, repo.getInfoForBoardPart("kestrel-boards:made:*"));

  EXPECT_TRUE(repo.unregisterUserBoard("kestrel-boards:made:1.0"));
  EXPECT_EQ(nullptr, repo.getInfoForBoardPart("kestrel-boards:made:1.0"));
  EXPECT_TRUE(repo.unregisterUserBoard("kestrel-boards:made:1.0")) << "unknown names are fine";

  // clearBoard forgets a board that its owner is about to delete.
  HBOBoard *third = new HBOBoard();
  third->setName("kestrel-boards", "made", "2.0");
  repo.registerUserBoard(third);
  HBOPartCReposMgr::clearBoard(third);
  EXPECT_EQ(nullptr, repo.getInfoForBoardPart("kestrel-boards:made:2.0"));
  EXPECT_EQ(nullptr, repo.getInfoForBoardPart("kestrel-boards:made:*"));
  delete third;
}

TEST_F(CatalogManager, BoardScriptIsLookedForOnce) {
  HBOBoardCDataManager manager;
  {
    test::ParamScope off("project.enableBITabFlow", "false");
    EXPECT_FALSE(manager.loadBoardTcl());
  }
  test::ParamScope on("project.enableBITabFlow", "true");
  test::EnvScope root("BOARDLIB_APP_ROOT", test::dataPath("no_such_root").c_str());
  EXPECT_FALSE(manager.loadBoardTcl()) << "no script";
  EXPECT_TRUE(manager.loadBoardTcl()) << "tried once, not again";
}

} // namespace
