#include "HBOBoardDiagramMgr.h"

#include "HBOBoard.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Holds one reference for the test and gives the instance back at the end.
class DiagramMgr : public ::testing::Test {
protected:
  void SetUp() override {
    mgr = HBOBoardDiagramMgr::getGlobal();
    a.setName("v", "alpha", "1.0");
    b.setName("v", "beta", "1.0");
    aTwin.setName("v", "alpha", "1.0");
  }
  void TearDown() override { HBOBoardDiagramMgr::release(); }

  HBOBoardDiagramMgr *mgr = nullptr;
  HBOBoard a, b, aTwin;
};

} // namespace

TEST_F(DiagramMgr, ReferenceCountingRebuildsAfterZero) {
  EXPECT_EQ(mgr->getReferenceCount(), 1u);
  EXPECT_EQ(HBOBoardDiagramMgr::getGlobal(), mgr);
  EXPECT_EQ(mgr->getReferenceCount(), 2u);
  HBOBoardDiagramMgr::release();
  EXPECT_EQ(mgr->getReferenceCount(), 1u);
  mgr->addToOpenedBoardDiagrams(&a);

  HBOBoardDiagramMgr::release(); // deletes it
  mgr = HBOBoardDiagramMgr::getGlobal();
  EXPECT_EQ(mgr->getReferenceCount(), 1u);
  std::vector<HBOBoard *> opened;
  mgr->getOpenedBoardDiagrams(opened);
  EXPECT_TRUE(opened.empty());
  EXPECT_EQ(mgr->getCurrentBoardDiagram(), nullptr);
}

TEST_F(DiagramMgr, OpenedDiagramsAreKeyedByName) {
  mgr->addToOpenedBoardDiagrams(&b);
  mgr->addToOpenedBoardDiagrams(&a);
  mgr->addToOpenedBoardDiagrams(&aTwin); // same name: the first stays
  mgr->addToOpenedBoardDiagrams(nullptr);
  HBOBoard *marker = &b;
  std::vector<HBOBoard *> opened{marker};
  mgr->getOpenedBoardDiagrams(opened);
  EXPECT_EQ(opened, (std::vector<HBOBoard *>{marker, &a, &b}));
}

TEST_F(DiagramMgr, CurrentDiagram) {
  mgr->addToOpenedBoardDiagrams(&a);
  mgr->addToOpenedBoardDiagrams(&b);
  mgr->setCurrentBoardDiagram(a.getName());
  EXPECT_EQ(mgr->getCurrentBoardDiagram(), &a);
  mgr->setCurrentBoardDiagram(static_cast<HBOBoard *>(nullptr));
  mgr->setCurrentBoardDiagram(std::string("v:unknown:1.0"));
  EXPECT_EQ(mgr->getCurrentBoardDiagram(), &a);

  mgr->removeFromOpenedBoardDiagrams(b.getName());
  EXPECT_EQ(mgr->getCurrentBoardDiagram(), &a);
  mgr->removeFromOpenedBoardDiagrams(a.getName());
  EXPECT_EQ(mgr->getCurrentBoardDiagram(), nullptr);

  // A board need not be opened to become current; removing an unknown name
  // doesn't touch it.
  mgr->setCurrentBoardDiagram(&b);
  mgr->removeFromOpenedBoardDiagrams(b.getName());
  EXPECT_EQ(mgr->getCurrentBoardDiagram(), &b);
}
