// A fixture that points the installation at test data directories and
// leaves no repository behind.
#ifndef BOARDLIB_TESTS_REPO_REPOTESTSUPPORT_H
#define BOARDLIB_TESTS_REPO_REPOTESTSUPPORT_H

#include "HBOBoard.h"
#include "HBOBoardCReposMgr.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace test {

class RepoTest : public ::testing::Test {
protected:
  void TearDown() override { dropRepository(); }

  /// The installation: data directories under tests/data, in search order.
  void useDataDirs(const std::vector<std::string> &dirs) {
    std::string list;
    for (const std::string &dir : dirs)
      list += (list.empty() ? "" : ":") + dataPath(dir);
    m_dirs.reset(); // the first value is the one to put back
    m_dirs = std::make_unique<EnvScope>("BOARDLIB_DATA_DIRS", list.c_str());
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
    for (uint32_t n = HBOBoardCReposMgr::getGlobal()->getReferenceCount(); n > 0; --n)
      HBOBoardCReposMgr::release();
  }

  /// The display name of the catalog board of \p key, or "(none)".
  std::string shown(const std::string &key) {
    const auto &map = repo()->getBoardPartMap();
    auto it = map.find(key);
    return it == map.end() || !it->second ? "(none)" : it->second->getDisplayName();
  }

private:
  std::unique_ptr<EnvScope> m_dirs;
  bool m_built = false;
};

} // namespace test

#endif
