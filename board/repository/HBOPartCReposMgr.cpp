#include "HBOPartCReposMgr.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardUtils.h"
#include "HBOCommon.h"
#include "HBOParser.h"
#include "HUTFile.h"

#include <boost/algorithm/string.hpp>
#include <boost/filesystem.hpp>

#include <algorithm>
#include <memory>

namespace fs = boost::filesystem;

HBOPartCReposMgr *HBOPartCReposMgr::mp_partmgr = nullptr;

namespace {

const char kDebugParam[] = "board.debugBoardRepo";

// Removes the first entry that holds \p board; the maps hold each board once.
void eraseFirst(std::map<std::string, HBOBoard *> &map, const HBOBoard *board) {
  for (auto it = map.begin(); it != map.end(); ++it) {
    if (it->second == board) {
      map.erase(it);
      return;
    }
  }
}

} // namespace

HBOPartCReposMgr::HBOPartCReposMgr() {
  m_globalRepo = HBOBoardCReposMgr::getGlobal();
  populateBoardPartList();
  rebuildConnectorsCompatibilityCache();
  populateFamilyBoardPartMap();
  populateLatestVerBoardPartMap();
  mp_partmgr = this;
}

HBOPartCReposMgr::~HBOPartCReposMgr() {
  const bool hadUserBoards = !m_user_part_map.empty();
  resetBoards_();
  // The installed boards' caches may point into the user boards just
  // deleted: they go back to the installation's own view.
  if (hadUserBoards && m_globalRepo)
    rebuildCachesOfInstallation_();
  // Only the most recent instance is reachable through clearBoard; an older
  // one going away must not unhook it.
  if (mp_partmgr == this)
    mp_partmgr = nullptr;
  if (m_globalRepo)
    HBOBoardCReposMgr::release();
  m_globalRepo = nullptr;
}

// ---- look-ups ----

HBOBoard *HBOPartCReposMgr::getInfoForBoardPart(const std::string &name) {
  std::string key = HBOCommon::toLowerCopy(HBOBoardUtils::getBoardVNVFromBoardPart(name));
  auto it = m_part_map.find(key);
  if (it != m_part_map.end())
    return it->second;

  std::string version;
  if (!getLatestVersionForBoard(key, version))
    return nullptr;
  if (key.find('*') == std::string::npos)
    return nullptr;
  boost::replace_all(key, "*", version);
  // Keys are lower case; a version such as "A" must match its entry too.
  it = m_part_map.find(HBOCommon::toLowerCopy(key));
  return it == m_part_map.end() ? nullptr : it->second;
}

bool HBOPartCReposMgr::getLatestVersionForBoard(const std::string &name, std::string &version) {
  version.clear();
  std::vector<std::string> fields;
  boost::split(fields, name, boost::is_any_of(":"));
  if (fields.size() != 3 || fields[2] != "*")
    return false;
  // The family key has a library field; a wildcard names none, so only
  // boards without a library are found this way.
  auto it = m_latest_part_map.find(fields[0] + "::" + fields[1]);
  if (it != m_latest_part_map.end() && it->second)
    version = it->second->getVersion();
  return !version.empty();
}

std::string HBOPartCReposMgr::getBoardPartNameForBoard(const std::string &name) {
  return m_globalRepo ? m_globalRepo->getBoardPartNameForBoard(name) : std::string();
}

void HBOPartCReposMgr::getAllBoardParts(std::vector<HBOBoard *> &out) const {
  for (const auto &entry : m_part_map)
    out.push_back(entry.second);
}

void HBOPartCReposMgr::getAllLatestBoardParts(std::vector<HBOBoard *> &out) const {
  for (const auto &entry : m_latest_part_map)
    out.push_back(entry.second);
}

bool HBOPartCReposMgr::hasCorrBoardInInstall(const std::string &name) const {
  return m_static_replaced_set.count(name) != 0;
}

// ---- repository paths ----

void HBOPartCReposMgr::getUserRepositoryPaths(std::vector<std::string> &out) const {
  out = m_userRepoPaths;
}

bool HBOPartCReposMgr::setUserRepositoryPaths(const std::vector<std::string> &paths) {
  m_userRepoPaths.clear();
  for (const std::string &path : paths)
    if (!path.empty())
      m_userRepoPaths.push_back(path);
  refreshBoardParts();
  return true;
}

void HBOPartCReposMgr::addUserRepoFromParam() {
  std::string value;
  if (!HBOBoardUtils::getUserRepoPathFromParam(value))
    return;
  std::vector<std::string> paths;
  for (std::string entry : HBOBoardUtils::parseTclList(value)) {
    boost::trim(entry);
    if (!entry.empty()) {
      boost::system::error_code ec;
      fs::path absolute = fs::absolute(entry);
      fs::path canonical = fs::canonical(absolute, ec);
      entry = ec ? absolute.lexically_normal().string() : canonical.string();
    }
    paths.push_back(entry);
  }
  setUserRepositoryPaths(paths);
}

void HBOPartCReposMgr::refreshBoardParts() {
  resetBoards_();
  parseUserBoardPartRepos();
  populateBoardPartList();
  m_connectorsCacheDirty = true;
  rebuildConnectorsCompatibilityCache();
  populateFamilyBoardPartMap();
  populateLatestVerBoardPartMap();
}

// ---- boards registered at run time ----

bool HBOPartCReposMgr::registerUserBoard(HBOBoard *board) {
  if (!board)
    return true;
  // Exact name, as the caller made it: registered boards are not lowered.
  if (m_user_part_map.count(board->getName()))
    return true;
  m_user_part_map[board->getName()] = board;
  populateBoardPartList();
  populateFamilyBoardPartMap();
  populateLatestVerBoardPartMap();
  return true;
}

bool HBOPartCReposMgr::unregisterUserBoard(const std::string &name) {
  auto it = m_user_part_map.find(name);
  if (it == m_user_part_map.end())
    return true;
  HBOBoard *board = it->second;
  m_user_part_map.erase(it);
  // The other maps point to it until they are rebuilt below.
  clearBoardFromMaps(board);
  // So do the connector caches of the reference boards, when it is a
  // daughter board.
  const bool daughter = board->isDaughterBoard();
  delete board;
  populateBoardPartList();
  if (daughter) {
    m_connectorsCacheDirty = true;
    rebuildConnectorsCompatibilityCache();
  }
  populateFamilyBoardPartMap();
  populateLatestVerBoardPartMap();
  return true;
}

void HBOPartCReposMgr::clearBoard(HBOBoard *board) {
  if (mp_partmgr)
    mp_partmgr->clearBoardFromMaps(board);
}

void HBOPartCReposMgr::clearBoardFromMaps(HBOBoard *board) {
  if (!board)
    return;
  eraseFirst(m_part_map, board);
  eraseFirst(m_user_part_map, board);
  eraseFirst(m_latest_part_map, board);
  // The family lists are rebuilt from m_part_map, but until then they must
  // not hand out a board that is about to be deleted.
  for (auto &entry : m_family_part_map) {
    std::vector<HBOBoard *> &list = entry.second;
    list.erase(std::remove(list.begin(), list.end(), board), list.end());
  }
}

void HBOPartCReposMgr::rebuildConnectorsCompatibilityCache() {
  if (!m_connectorsCacheDirty)
    return;
  m_connectorsCacheDirty = false;
  std::vector<HBOBoard *> boards;
  getAllBoardParts(boards);
  HBOBoard::rebuildConnectorsCompatibilityCaches(boards);
}

void HBOPartCReposMgr::rebuildCachesOfInstallation_() {
  std::vector<HBOBoard *> boards;
  m_globalRepo->getAllBoards(boards);
  HBOBoard::rebuildConnectorsCompatibilityCaches(boards);
}

// ---- loading ----

void HBOPartCReposMgr::resetBoards_() {
  for (auto &entry : m_user_part_map)
    delete entry.second;
  m_user_part_map.clear();
  m_part_map.clear();
  m_latest_part_map.clear();
  m_family_part_map.clear();
  m_static_replaced_set.clear();
}

void HBOPartCReposMgr::parseUserBoardPartRepos() {
  for (const std::string &path : m_userRepoPaths) {
    std::string canonical;
    try {
      boost::system::error_code ec;
      fs::file_status st = fs::status(path, ec);
      if (!fs::exists(st))
        continue;
      canonical = fs::canonical(path, ec).string();
      if (ec)
        continue;
    } catch (const std::string &text) {
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-44@%s", text);
      continue;
    }
    m_currentRepository = canonical;
    findBoardPartFiles(canonical);
    m_currentRepository.clear();
  }
}

void HBOPartCReposMgr::findBoardPartFiles(const std::string &dir) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug5, "board.findBoards",
                           "HBOPartCReposMgr::findBoardPartFiles searching '%s'\n", dir.c_str());
  if (dir.empty())
    return;
  boost::system::error_code ec;
  if (!fs::exists(dir, ec)) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-91@%s", dir);
    return;
  }

  // A stack instead of recursion: a repository can be arbitrarily deep, and
  // the canonical names seen keep a link loop from trapping the walk.
  std::vector<std::string> pending{dir};
  std::set<std::string> seen;
  const std::string root = fs::canonical(dir, ec).string();
  while (!pending.empty()) {
    std::string current = pending.back();
    pending.pop_back();
    std::vector<fs::path> entries;
    try {
      std::string canonical = fs::canonical(current).string();
      if (!seen.insert(canonical).second)
        continue;
      // Links are followed within the repository only: a link to "/" would
      // have the scan read the whole file system.
      if (!ec && !HUTFile::isWithin(canonical, root)) {
        ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-183@%s%s%s", m_currentRepository, current,
                           canonical);
        continue;
      }
      for (fs::directory_iterator it(current), end; it != end; ++it)
        entries.push_back(it->path());
    } catch (...) {
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-166@%s%s", m_currentRepository, current);
      continue;
    }
    // Sorted, so that a tie between two files with one key is decided the
    // same way on every machine.
    std::sort(entries.begin(), entries.end());
    std::vector<std::string> subdirs;
    for (const fs::path &entry : entries) {
      boost::system::error_code st;
      if (fs::is_directory(entry, st)) {
        subdirs.push_back(entry.string());
        continue;
      }
      if (HBOCommon::toLowerCopy(entry.filename().string()) != "board.xml")
        continue;
      boost::system::error_code cec;
      fs::path file = fs::canonical(entry, cec);
      addBoardPart(cec ? entry.string() : file.string());
    }
    // Pushed in reverse, so that directories are visited in name order.
    pending.insert(pending.end(), subdirs.rbegin(), subdirs.rend());
  }
}

HBOBoard *HBOPartCReposMgr::addBoardPart(const std::string &file) {
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  try {
    boost::system::error_code ec;
    fs::path path = fs::canonical(fs::absolute(file), ec);
    HBOParser parser;
    if (!parser.parseFile(ec ? file : path.string(), board.get()))
      return nullptr;
  } catch (const std::string &text) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-44@%s", text);
  }

  std::string key = HBOCommon::toLowerCopy(board->getName());
  if (m_user_part_map.count(key))
    return nullptr;
  board->setUserDefinedFlag(true);
  board->setRepository(m_currentRepository);
  if (m_globalRepo)
    m_globalRepo->populatePreferenceData(board.get());
  HBOBoard *result = board.release();
  m_user_part_map[key] = result;
  return result;
}

// ---- maps ----

void HBOPartCReposMgr::populateBoardPartList() {
  m_part_map.clear();
  m_static_replaced_set.clear();
  for (const auto &entry : m_user_part_map) {
    std::string key = HBOCommon::toLowerCopy(entry.first);
    if (m_part_map.count(key))
      continue;
    HBOBoardUtils::DumpDebugStr(kDebugParam, "Add user board to map : " + key, entry.second);
    m_part_map[key] = entry.second;
  }
  if (!m_globalRepo)
    return;

  std::vector<HBOBoard *> global;
  m_globalRepo->getAllBoards(global);
  for (HBOBoard *board : global) {
    if (!board)
      continue;
    HBOBoardUtils::DumpDebugStr(kDebugParam, "Add static board to map : " + board->getName(),
                                board);
    if (board->getName().empty())
      continue;
    std::string key = HBOCommon::toLowerCopy(board->getName());
    if (!m_part_map.count(key))
      m_part_map[key] = board;
  }
  m_globalRepo->getStaticBoardsReplacedByUser(m_static_replaced_set);
}

void HBOPartCReposMgr::populateFamilyBoardPartMap() {
  m_family_part_map.clear();
  for (const auto &entry : m_part_map)
    if (entry.second)
      m_family_part_map[entry.second->getFamily()].push_back(entry.second);
}

void HBOPartCReposMgr::populateLatestVerBoardPartMap() {
  m_latest_part_map.clear();
  for (const auto &entry : m_part_map) {
    HBOBoard *board = entry.second;
    if (!board)
      continue;
    std::string family =
        board->getVendor() + ":" + board->getLibrary() + ":" + board->getBoardName();
    HBOBoard *&slot = m_latest_part_map[family];
    if (!slot || HBOBoardUtils::version_compare(slot->getVersion(), board->getVersion()) < 0)
      slot = board;
  }
}
