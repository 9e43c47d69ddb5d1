// A fixture that points the installation at test data directories and
// leaves no repository behind.
#ifndef BOARDLIB_TESTS_REPOTESTSUPPORT_H
#define BOARDLIB_TESTS_REPOTESTSUPPORT_H

#include "HBOBoard.h"
#include "HBOBoardCReposMgr.h"
#include "ReaderTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace test {

class RepoTest : public ::testing::Test {
protected:
  void SetUp() override {
    const char *old = std::getenv("BOARDLIB_DATA_DIRS");
    m_hadDirs = old != nullptr;
    m_oldDirs = old ? old : "";
  }

  void TearDown() override {
    dropRepository();
    if (m_hadDirs)
      setenv("BOARDLIB_DATA_DIRS", m_oldDirs.c_str(), 1);
    else
      unsetenv("BOARDLIB_DATA_DIRS");
  }

  /// The installation: data directories under tests/data, in search order.
  static void useDataDirs(const std::vector<std::string> &dirs) {
    std::string list;
    for (const std::string &dir : dirs)
      list += (list.empty() ? "" : ":") + dataPath(dir);
    setenv("BOARDLIB_DATA_DIRS", list.c_str(), 1);
  }

  HBOBoardCReposMgr *repo() {
    m_built = true;
    return HBOBoardCReposMgr::getGlobal();
  }

  /// Gives back every reference, the ones that queries keep included, so
  /// that the next repo() builds afresh.
  void dropRepository() {
    if (!m_built)
      return;
    m_built = false;
    HBOBoardCReposMgr *mgr = HBOBoardCReposMgr::getGlobal();
    for (uint32_t n = mgr->getReferenceCount(); n > 0; --n)
      HBOBoardCReposMgr::release();
  }

  /// The display name of the catalog board of \p key, or "(none)".
  std::string shown(const std::string &key) {
    const auto &map = repo()->getBoardPartMap();
    auto it = map.find(key);
    return it == map.end() || !it->second ? "(none)" : it->second->getDisplayName();
  }

private:
  std::string m_oldDirs;
  bool m_hadDirs = false;
  bool m_built = false;
};

} // namespace test

#endif
