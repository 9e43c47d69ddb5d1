#include "HBOBoardCReposMgr.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardCatalogEvents.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOCommon.h"
#include "HBOParser.h"
#include "HBOPartCReposMgr.h"
#include "HPAParamMgr.h"
#include "HUTEnv.h"
#include "HUTFile.h"
#include "HUTFileUtils.h"
#include "HUTGuiEvent.h"
#include "HXMLWInterface.h"

#include <boost/filesystem.hpp>

#include <atomic>
#include <tbb/info.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <algorithm>
#include <cassert>
#include <exception>
#include <memory>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace fs = boost::filesystem;

HBOBoardCReposMgr *HBOBoardCReposMgr::mp_boardmgr = nullptr;
std::mutex HBOBoardCReposMgr::s_mutex;

namespace {

const char *const kSourceName = "HBOBoardCReposMgr.cpp";

std::string lower(const std::string &text) { return HBOCommon::toLowerCopy(text); }

void warnLoadError(const std::string &text) {
  ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-44@%s", text);
}

/// A board.xml that is a pipe, a device or a dangling link is not read, and
/// says why: the platform's read tells what it is without opening it.
void warnNotRegular(const std::string &file) {
  std::string content, why;
  if (!HUTFileUtils::readFile(file, content, &why))
    ComMsgMgr::sendMsg("xml", ComMsg::Error, "@50-2@%s%s", file, why);
}

/// vendor:library:name, in the board's own case: the key of a family of
/// versions.
std::string familyKey(const HBOBoard *board) {
  return board->getVendor() + ":" + board->getLibrary() + ":" + board->getBoardName();
}

/// Whether \p candidate replaces \p current as the latest version; on a tie
/// the board seen first stays.
bool isLaterVersion(const HBOBoard *current, const HBOBoard *candidate) {
  return HBOBoardUtils::version_compare(current->getVersion(), candidate->getVersion()) < 0;
}

// The thread library is not built for the thread checker, so the checker
// cannot see that handing a task to a worker, and the join, order memory.
// These say so, on the two edges the load relies on: the caller's work before
// the load happens before every task, and each task happens before the
// caller's work after the join. Tasks stay unordered among themselves, so a
// race between two of them is still reported.
#if defined(__SANITIZE_THREAD__)
char s_loadStart;
#endif
void releaseForTasks() {
#if defined(__SANITIZE_THREAD__)
  __tsan_release(&s_loadStart);
#endif
}
void acquireInTask() {
#if defined(__SANITIZE_THREAD__)
  __tsan_acquire(&s_loadStart);
#endif
}
void releaseFromTask(void *slot) {
#if defined(__SANITIZE_THREAD__)
  __tsan_release(slot);
#endif
  (void)slot;
}
void acquireAfterJoin(void *slot) {
#if defined(__SANITIZE_THREAD__)
  __tsan_acquire(slot);
#endif
  (void)slot;
}

/// What one loading task leaves for the calling thread: the board, the
/// messages the task sent, and an error that must end the load.
struct LoadSlot {
  std::unique_ptr<HBOBoard> board;
  std::vector<ComMsgMgrInstance> messages;
  std::exception_ptr error;
};

/// Reads one installed board.xml. Runs on a worker: it touches nothing but
/// its own slot, and its messages wait in the slot so that they come out in
/// file order whatever the order in which the workers finish.
void loadStaticFile(const std::string &file, const std::string &dir, LoadSlot &slot) {
  ComMsgCapture capture;
  try {
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    HBOParser parser;
    bool read = true;
    try {
      read = parser.parseFile(file, board.get());
    } catch (const std::string &text) {
      // The board is kept as far as the reader got.
      warnLoadError(text);
    }
    if (read) {
      parser.migrateV1ToV2(board.get());
      board->setRepository(dir);
      slot.board = std::move(board);
    }
  } catch (...) {
    slot.error = std::current_exception();
  }
  slot.messages = capture.take();
  releaseFromTask(&slot);
}

} // namespace

// Asking for more than the machine runs at once gains nothing and makes the
// thread library complain on standard error.
int HBOBoardCReposMgr::getWorkerCount() {
  long long wanted = HPAParamMgr::getParamMgr().getValueAsInt("general.maxThreads");
  if (wanted < 1)
    return 1;
  const int available = std::max(1, tbb::info::default_concurrency());
  if (wanted > available)
    return available;
  return static_cast<int>(wanted);
}

// ---------------------------------------------------------------- life

HBOBoardCReposMgr *HBOBoardCReposMgr::getGlobal() {
  std::lock_guard<std::mutex> lock(s_mutex);
  if (mp_boardmgr) {
    mp_boardmgr->incrementRefCount();
    return mp_boardmgr;
  }
  // Published only once fully built: a failed build leaves no instance.
  HBOBoardCReposMgr *mgr = new HBOBoardCReposMgr();
  mgr->m_refCount = 1;
  mp_boardmgr = mgr;
  return mgr;
}

void HBOBoardCReposMgr::release() {
  if (!mp_boardmgr)
    return;
  mp_boardmgr->decrementRefCount();
  if (mp_boardmgr->getReferenceCount() != 0)
    return;
  delete mp_boardmgr;
  mp_boardmgr = nullptr;
}

void HBOBoardCReposMgr::appendAllBoards(std::vector<HBOBoard *> &out) {
  getGlobal()->getAllBoards(out);
}

HBOBoardCReposMgr::HBOBoardCReposMgr() {
  try {
    m_eventHandler = new HBOBoardCReposMgrBazaarEventHandler();
    m_refCount = 0;
    HBOBoardUtils::getUserRepoPathFromParam(m_user_repo_paths);
    // The preferences come first: the load applies them to each board.
    parseInterfacePreferenceFile();
    populateStaticBoardPartList();
    populateBoardPartList();
    populateFamousNameMap();
    populateLatestVerBoardMap();
    populateBoardToBoardPartMap();
    // The consoles list the fitting daughter connectors from the first load
    // on, not only after a refresh.
    rebuildConnectorsCompatibilityCache();
  } catch (...) {
    // No destructor runs for an object whose constructor throws.
    destroy_();
    throw;
  }
}

HBOBoardCReposMgr::~HBOBoardCReposMgr() { destroy_(); }

void HBOBoardCReposMgr::destroy_() {
  resetBoards_();
  resetStaticBoardParts();
  if (m_eventHandler) {
    m_eventHandler->disconnectAll();
    delete m_eventHandler;
    m_eventHandler = nullptr;
  }
}

void HBOBoardCReposMgr::incrementRefCount() { ++m_refCount; }

void HBOBoardCReposMgr::decrementRefCount() {
  if (m_refCount > 0)
    --m_refCount;
}

uint32_t HBOBoardCReposMgr::getReferenceCount() const { return m_refCount; }

// ---------------------------------------------------------------- loading

void HBOBoardCReposMgr::sync() {
  std::string paths;
  if (!HBOBoardUtils::getUserRepoPathFromParam(paths))
    return;
  if (paths == m_user_repo_paths)
    return;
  m_user_repo_paths = paths;
  refreshBoards();
}

int HBOBoardCReposMgr::refreshBoards() {
  HUTGuiEvent::fire<HBOBoardCatalogModifyPreEvent>(this);
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.event", "%s: REFRESHING BOARDS!\n",
                           kSourceName);
  try {
    resetBoards_();
    populateBoardPartList();
    m_connectors_cache_dirty = true;
    rebuildConnectorsCompatibilityCache();
    populateLatestVerBoardMap();
  } catch (...) {
    // Listeners of the post event must hear about the refresh whatever
    // happened; they find the catalog as far as it got.
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.error",
                             "%s: unexpected exception in HBOBoardCReposMgr::refreshBoards\n",
                             kSourceName);
  }
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.event", "%s: DONE REFRESHING BOARDS!\n",
                           kSourceName);
  return HUTGuiEvent::fire<HBOBoardCatalogModifyPostEvent>(this);
}

void HBOBoardCReposMgr::setProjectRepo(const std::string &paths) {
  m_project_repo = paths;
  refreshBoards();
}

std::vector<std::string> HBOBoardCReposMgr::getStaticBoardDirs() {
  const std::vector<std::string> dataDirs = HUTEnv::getZRTDataDirList();
  std::vector<std::string> candidates;
  for (const std::string &dir : dataDirs)
    candidates.push_back(dir + "/boards/board_parts");
  if (HBOBoardUtils::isV2SchemaEnabled()) {
    for (const std::string &dir : dataDirs) {
      candidates.push_back(dir + "/boards/board_files");
      candidates.push_back(dir + "/bazaar/boards");
    }
  }

  std::vector<std::string> dirs;
  for (const std::string &candidate : candidates) {
    boost::system::error_code ec;
    fs::file_status status = fs::status(candidate, ec);
    if (status.type() == fs::file_not_found || status.type() == fs::status_error)
      continue;
    fs::path canonical = fs::canonical(candidate, ec);
    if (ec) {
      warnLoadError(ec.message());
      continue;
    }
    dirs.push_back(canonical.string());
  }
  return dirs;
}

bool HBOBoardCReposMgr::populateStaticBoardPartList() {
  for (const std::string &dir : getStaticBoardDirs())
    loadStaticDir_(dir);
  return true;
}

HBOBoardCReposMgr::LoadProgress HBOBoardCReposMgr::s_loadProgress;

void HBOBoardCReposMgr::setLoadProgress(LoadProgress progress) {
  s_loadProgress = std::move(progress);
}

void HBOBoardCReposMgr::loadStaticDir_(const std::string &dir) {
  // A folder that cannot be read costs its own boards only: the walk goes on
  // past it, and says which one it was. Links to board.xml count; links to
  // folders are not followed. Directory order differs between file systems;
  // sorted, the same tree gives the same winner of a duplicate key
  // everywhere.
  std::vector<std::string> unreadable, notRegular;
  std::vector<std::string> files =
      HUTFileUtils::findFiles(dir, "board.xml", &unreadable, &notRegular);
  for (const std::string &folder : unreadable)
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-182@%s%s", dir, folder);
  for (const std::string &file : notRegular)
    warnNotRegular(file);
  if (files.empty())
    return;

  std::vector<LoadSlot> slots(files.size());
  std::atomic<std::size_t> done(0);
  auto loadOne = [&files, &dir, &slots, &done](std::size_t i) {
    acquireInTask(); // before anything of the caller's is read
    loadStaticFile(files[i], dir, slots[i]);
    std::size_t count = ++done;
    if (s_loadProgress)
      s_loadProgress(count, files.size());
  };
  releaseForTasks();
  {
    tbb::task_arena arena(getWorkerCount());
    arena.execute([&] { tbb::parallel_for(std::size_t(0), files.size(), loadOne); });
  }

  // From here on the calling thread alone: messages and maps in file order.
  std::exception_ptr firstError;
  for (LoadSlot &slot : slots) {
    acquireAfterJoin(&slot);
    for (const ComMsgMgrInstance &msg : slot.messages)
      ComMsgMgr::sendMessage(msg);
    if (slot.error && !firstError)
      firstError = slot.error;
  }
  if (firstError)
    std::rethrow_exception(firstError);

  for (LoadSlot &slot : slots) {
    if (!slot.board)
      continue;
    HBOBoard *board = slot.board.get();
    board->setUserDefinedFlag(false);
    populatePreferenceData(board);
    std::string key = lower(board->getName());
    // The first board of a key wins; later ones go without a word.
    if (m_static_boardpart_map.count(key))
      continue;
    m_static_boardpart_map[key] = slot.board.release();
  }
}

void HBOBoardCReposMgr::findBoardFiles(const std::string &dir, bool isStatic) {
  // One frame per directory being scanned, instead of a recursive call: the
  // depth of a user's tree is not ours to bound.
  struct Frame {
    std::string dir;
    std::string canonical;
    std::vector<std::string> entries;
    std::size_t next = 0;
  };
  std::vector<Frame> stack;
  std::set<std::string> onPath; // against directory links that loop
  std::string root;             // where links may lead: the repository itself

  auto enter = [&](const std::string &path) {
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug5, "board.findBoards",
                             "HBOBoardCReposMgr::findBoardFiles searching '%s'\n", path.c_str());
    if (path.empty())
      return;
    if (!HUTFile::exists(path)) {
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-91@%s", path);
      return;
    }
    Frame frame;
    frame.dir = path;
    frame.canonical = HUTFileUtils::canonical(path);
    if (onPath.count(frame.canonical))
      return;
    if (root.empty()) {
      root = frame.canonical;
    } else if (!HUTFile::isWithin(frame.canonical, root)) {
      // A link to "/" would have the scan read the whole file system.
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-183@%s%s%s", m_current_repository, path,
                         frame.canonical);
      return;
    }
    boost::system::error_code ec;
    for (fs::directory_iterator it(path, ec), end; !ec && it != end; it.increment(ec))
      frame.entries.push_back(it->path().filename().string());
    if (ec) {
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-166@%s%s", m_current_repository, path);
      return;
    }
    std::sort(frame.entries.begin(), frame.entries.end());
    onPath.insert(frame.canonical);
    stack.push_back(std::move(frame));
  };

  enter(dir);
  while (!stack.empty()) {
    Frame &top = stack.back();
    if (top.next >= top.entries.size()) {
      onPath.erase(top.canonical);
      stack.pop_back();
      continue;
    }
    const std::string path = HUTFile::join(top.dir, top.entries[top.next++]);
    try {
      HUTFile::Status status = HUTFile::status(path);
      if (status == HUTFile::Status::Directory) {
        enter(path); // may grow the stack: top is not used after this
      } else if (lower(HUTFile::fileName(path)) == "board.xml") {
        if (status == HUTFile::Status::Regular)
          addBoardPart(HUTFileUtils::canonical(path), isStatic);
        else
          warnNotRegular(path);
      }
    } catch (...) {
      // The directory's scan ends here; the one above it goes on.
      Frame &failed = stack.back();
      ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-166@%s%s", m_current_repository,
                         failed.dir);
      onPath.erase(failed.canonical);
      stack.pop_back();
    }
  }
}

HBOBoard *HBOBoardCReposMgr::addBoardPart(const std::string &file, bool isStatic) {
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  HBOParser parser;
  try {
    if (!parser.parseFile(HUTFileUtils::canonical(file), board.get()))
      return nullptr;
  } catch (const std::string &text) {
    warnLoadError(text);
  }
  // Preferences before the upgrade here, unlike the installed boards: what
  // the preferences see is the board as read.
  populatePreferenceData(board.get());
  parser.migrateV1ToV2(board.get());

  const std::string key = lower(board->getName());
  BoardMap &map = isStatic ? m_static_boardpart_map : m_user_boardpart_map;
  if (map.count(key))
    return nullptr;
  board->setRepository(m_current_repository);
  board->setUserDefinedFlag(!isStatic);
  HBOBoard *entered = board.release();
  map[key] = entered;
  HBOBoardUtils::DumpDebugStr(
      "HBOBoardCReposMgr::addBoardPart",
      std::string(isStatic ? "m_static_boardpart_map  " : "m_user_boardpart_map  ") + key, entered);
  return entered;
}

bool HBOBoardCReposMgr::populateBoardPartList() {
  // The user boards themselves are deleted by resetBoards_, not here.
  m_boardpart_map.clear();
  m_user_boardpart_map.clear();
  m_static_replaced_by_user.clear();

  // Project paths before user paths, and an earlier path before a later
  // one: the first board of a key is the one kept.
  for (const std::string *list : {&m_project_repo, &m_user_repo_paths}) {
    if (list->empty())
      continue;
    for (const std::string &path : HBOBoardUtils::parseTclList(*list)) {
      m_current_repository = path;
      findBoardFiles(path, false);
      m_current_repository.clear();
    }
  }

  for (const auto &entry : m_user_boardpart_map) {
    if (m_boardpart_map.count(entry.first))
      continue;
    HBOBoardUtils::DumpDebugStr("board.debugBoardRepo", "Adding user nboard ", entry.second);
    m_boardpart_map[entry.first] = entry.second;
  }

  for (const auto &entry : m_static_boardpart_map) {
    HBOBoard *board = entry.second;
    if (!board || board->getName().empty())
      continue;
    const std::string key = lower(board->getName());
    if (!m_boardpart_map.count(key)) {
      HBOBoardUtils::DumpDebugStr("board.debugBoardRepo", "Adding static nboard ", board);
      m_boardpart_map[key] = board;
      continue;
    }
    if (!m_user_boardpart_map.count(key))
      continue;
    // Hidden by a user board, but still owned by the static map.
    m_static_replaced_by_user.insert(board->getVendor() + ":" + board->getLibrary() + ":" +
                                     board->getBoardName() + ":" + board->getVersion());
    HBOBoardUtils::DumpDebugStr("board.debugBoardRepo",
                                "Adding user to static nboard " + board->getName(), board);
  }
  return true;
}

void HBOBoardCReposMgr::resetBoards_() {
  for (auto &entry : m_user_boardpart_map) {
    // The project views must not keep the pointer past this point.
    HBOPartCReposMgr::clearBoard(entry.second);
    delete entry.second;
  }
  m_boardpart_map.clear();
  m_user_boardpart_map.clear();
  m_latest_board_map.clear();
  m_static_replaced_by_user.clear();
}

void HBOBoardCReposMgr::resetStaticBoardParts() {
  for (auto &entry : m_static_boardpart_map) {
    HBOPartCReposMgr::clearBoard(entry.second);
    delete entry.second;
  }
  m_static_boardpart_map.clear();
  for (auto &entry : m_interface_preference_map)
    delete entry.second;
  m_interface_preference_map.clear();
}

void HBOBoardCReposMgr::rebuildConnectorsCompatibilityCache() {
  if (!m_connectors_cache_dirty)
    return;
  // The flag goes first: the list is taken through sync, which may refresh
  // and so come back here.
  m_connectors_cache_dirty = false;
  // This manager's own list: it runs from the constructor too, before the
  // manager is published, so it must not go through getGlobal.
  std::vector<HBOBoard *> boards;
  getAllBoards(boards);
  HBOBoard::rebuildConnectorsCompatibilityCaches(boards);
}

// ---------------------------------------------------------------- indexes

bool HBOBoardCReposMgr::parseInterfacePreferenceFile() {
  for (const std::string &dir : HUTEnv::getZRTDataDirList()) {
    try {
      const std::string path = dir + "/boards/board_interface_preferences.xml";
      if (!HUTFile::exists(path))
        continue;
      // The first file found serves the whole installation.
      HXMLWInterface doc;
      if (!doc.readFromFile(path))
        return false;
      HXMLWElement *root = doc.getRootElement();
      if (!root)
        return false;
      for (const HXMLWElement &child : root->getChildren()) {
        if (!HBOCommon::iEquals(child.getTag(), "INTF_VLNV"))
          continue;
        auto preference = std::make_unique<HBOBusIfPreference>();
        preference->setMajorGroup(child.getAttribute("major_group"));
        preference->setMinorGroup(child.getAttribute("minor_group"));
        preference->setDefaultIpVlnv(child.getAttribute("default_ip_vlnv"));
        const std::string key =
            lower(child.getAttribute("value") + "#" + child.getAttribute("mode"));
        // A later entry of the same key takes its place. No board holds a
        // preference yet, so the earlier one can go.
        HBOBusIfPreference *&slot = m_interface_preference_map[key];
        delete slot;
        slot = preference.release();
      }
      return true;
    } catch (const std::string &text) {
      warnLoadError(text);
    }
  }
  return false;
}

bool HBOBoardCReposMgr::populatePreferenceData(HBOBoard *board) {
  if (!board)
    return false;
  std::vector<HBOBusIf *> busIfs;
  board->getBusIfSeq(busIfs, false);
  for (HBOBusIf *busIf : busIfs) {
    if (!busIf)
      continue;
    std::string vendor, library, name, version, mode;
    if (!busIf->getAbstractType(vendor, library, name, version))
      continue;
    if (!busIf->getInterfaceMode(mode))
      continue;
    auto it =
        m_interface_preference_map.find(lower(vendor + ":" + library + ":" + name + "#" + mode));
    if (it == m_interface_preference_map.end() || !it->second)
      continue;
    // A preference from the board file itself wins over the installation's.
    std::vector<HBOBusIfPreference *> own;
    busIf->getPreferences(own);
    if (!own.empty())
      continue;
    // Shared, not copied: the map keeps ownership.
    busIf->setPreference(it->second);
  }
  return true;
}

bool HBOBoardCReposMgr::populateFamousNameMap() {
  // Short names of retired boards, still accepted from old scripts.
  m_famous_name_map = {
      {"jaro", "borrel-ip:fenla:jaro:c"},
      {"rb21", "quarnel-ip:fenla:rb21:c"},
      {"rb26", "quarnel-ip:fenla:rb26:b"},
      {"rb31", "quarnel-ip:perol:rb31:1.0"},
      {"rb35", "quarnel-ip:moret:rb35:1.0"},
      {"rb47", "quarnel-ip:dunal:rb47:a"},
      {"quarnel:dunal:rb47:a", "quarnel-ip:dunal:rb47:a"},
  };
  return true;
}

bool HBOBoardCReposMgr::populateBoardToBoardPartMap() {
  // Old four-field board names and the board parts that took their place.
  m_board_to_boardpart_map = {
      {"borrel-ip:fenla:tilka:e", "borrel-ip:tilka:part0:1.0"},
      {"borrel-ip:fenla:jaro:c", "borrel-ip:jaro:part0:0.9"},
      {"borrel-ip:fenla:jaro:d", "borrel-ip:jaro:part0:1.1"},
      {"quarnel-ip:perol:rb31:1.0", "quarnel-ip:rb31:part0:1.0"},
      {"quarnel-ip:moret:rb35:1.0", "quarnel-ip:rb35:part0:0.9"},
      {"quarnel-ip:moret:rb35:1.1", "quarnel-ip:rb35:part0:1.0"},
      {"quarnel-ip:dunal:rb47:1.1", "quarnel-ip:rb47:part0:1.0"},
      {"quarnel-ip:dunal:rb47:a", "quarnel-ip:rb47:part0:0.9"},
      {"quarnel-ip:dunal:rb49:1.0", "quarnel-ip:rb49:part0:1.0"},
      {"quarnel-ip:fenla:rb21:1.0", "quarnel-ip:rb21:part0:1.0"},
      {"quarnel-ip:fenla:rb21:c", "quarnel-ip:rb21:part0:0.9"},
      {"quarnel-ip:fenla:rb26:1.1", "quarnel-ip:rb26:part0:1.0"},
      {"quarnel-ip:fenla:rb26:b", "quarnel-ip:rb26:part0:0.9"},
  };
  return true;
}

bool HBOBoardCReposMgr::populateLatestVerBoardMap() {
  // Not cleared here: resetBoards_ empties it before each rebuild.
  for (const auto &entry : m_boardpart_map) {
    HBOBoard *board = entry.second;
    if (!board)
      continue;
    HBOBoard *&latest = m_latest_board_map[familyKey(board)];
    if (!latest || isLaterVersion(latest, board))
      latest = board;
  }
  return true;
}

bool HBOBoardCReposMgr::filterLatestVersionBoardParts(std::vector<HBOBoardComponent *> &parts) {
  BoardMap latestByFamily;
  for (HBOBoardComponent *part : parts) {
    if (!part || !part->getBoard())
      continue;
    HBOBoard *board = part->getBoard();
    HBOBoard *&latest = latestByFamily[familyKey(board)];
    if (!latest || isLaterVersion(latest, board))
      latest = board;
  }
  parts.clear();
  for (const auto &entry : latestByFamily)
    if (HBOBoardComponent *active = entry.second->getActivePart())
      parts.push_back(active);
  return true;
}

bool HBOBoardCReposMgr::filterLatestRevisionBoardParts(std::vector<HBOBoardComponent *> &parts) {
  std::map<std::string, std::vector<HBOBoard *>> latestByFamily;
  for (HBOBoardComponent *part : parts) {
    if (!part || !part->getBoard())
      continue;
    HBOBoard *board = part->getBoard();
    std::vector<HBOBoard *> &family = latestByFamily[familyKey(board)];
    if (family.empty()) {
      family.push_back(board);
      continue;
    }
    int order = HBOBoardUtils::version_compare(family.front()->getBoardRevision(),
                                               board->getBoardRevision());
    if (order < 0) {
      family.clear();
      family.push_back(board);
    } else if (order == 0) {
      family.push_back(board);
    }
  }
  parts.clear();
  for (const auto &entry : latestByFamily)
    for (HBOBoard *board : entry.second)
      if (HBOBoardComponent *active = board ? board->getActivePart() : nullptr)
        parts.push_back(active);
  return true;
}

// ---------------------------------------------------------------- queries

void HBOBoardCReposMgr::getAllBoards(std::vector<HBOBoard *> &out) {
  sync();
  for (const auto &entry : m_boardpart_map)
    out.push_back(entry.second);
}

void HBOBoardCReposMgr::getAllLatestBoards(std::vector<HBOBoard *> &out) {
  sync();
  for (const auto &entry : m_latest_board_map)
    out.push_back(entry.second);
}

HBOBoard *HBOBoardCReposMgr::getInfoForBoard(const std::string &name) {
  sync();
  const std::string vnv = HBOBoardUtils::getBoardVNVFromBoardPart(name);
  if (vnv.empty())
    return nullptr;
  auto it = m_boardpart_map.find(lower(vnv));
  if (it != m_boardpart_map.end())
    return it->second;
  return getInfoForBoardByFamousName(name);
}

HBOBoard *HBOBoardCReposMgr::getInfoForBoardByFamousName(const std::string &name) {
  if (name.empty())
    return nullptr;
  const std::string lowered = lower(name);
  auto it = m_famous_name_map.find(lowered);
  // An unknown name asks for the empty name, which ends the search; the
  // legacy targets are no keys themselves, so this goes one level at most.
  const std::string resolved = it == m_famous_name_map.end() ? std::string() : it->second;
  HBOBoard *board = getInfoForBoard(resolved);
  if (board && lowered.find(':') == std::string::npos)
    ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-35@%s%s", resolved, lowered);
  return board;
}

std::string HBOBoardCReposMgr::getBoardPartNameForBoard(const std::string &name) {
  if (name.empty())
    return std::string();
  auto it = m_board_to_boardpart_map.find(lower(name));
  return it == m_board_to_boardpart_map.end() ? std::string() : it->second;
}

void HBOBoardCReposMgr::getStaticBoardsReplacedByUser(std::set<std::string> &out) const {
  out = m_static_replaced_by_user;
}
