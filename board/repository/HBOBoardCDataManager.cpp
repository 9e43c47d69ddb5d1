#include "HBOBoardCDataManager.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOCommon.h"
#include "HBOPartCReposMgr.h"
#include "HEXError.h"
#include "HPAParamMgr.h"
#include "HTCTclInterp.h"
#include "HUTEnv.h"
#include "HUTFile.h"

#include <boost/filesystem.hpp>

namespace {
const char kDebugParam[] = "board.debugBoardRepo";
} // namespace

HBOBoardCDataManager::HBOBoardCDataManager() : m_partRepo(new HBOPartCReposMgr()) {}

HBOBoardCDataManager::~HBOBoardCDataManager() {
  m_board = nullptr;
  delete m_partRepo;
}

void HBOBoardCDataManager::getBoardPartRepoPaths(HSTVector<std::string> &out) const {
  out.clear();
  m_partRepo->getUserRepositoryPaths(out);
}

bool HBOBoardCDataManager::setBoardPartRepoPaths(const HSTVector<std::string> &paths,
                                                 bool &changed) {
  std::vector<std::string> current;
  m_partRepo->getUserRepositoryPaths(current);
  if (current == paths)
    return false;

  std::string partName;
  std::string boardName;
  bool wasUserDefined = false;
  bool wasIntegrated = false;
  ConnectionPairs connections;
  if (m_board) {
    partName = m_board->getBaseBoardActivePartName();
    boardName = m_board->getName();
    wasUserDefined = m_board->isUserDefined();
    wasIntegrated = m_board->isIntegratedBoard();
    // The reload deletes the integrated board and may delete its base and
    // daughters: what it takes to compose it again is kept as names.
    if (wasIntegrated)
      connections = getIntegratedBoardConnectionPairs(*m_board);
  }

  bool taken = m_partRepo->setUserRepositoryPaths(paths);
  if (!taken || !m_board)
    return taken;

  if (wasIntegrated) {
    // Nothing of the old board may be followed from here on.
    m_board = nullptr;
    changed = true;
    if (partName.empty())
      return taken;
    const std::string name = createUniqBoardNameForIntegratedBoard(
        HBOBoardUtils::getBoardNameFromBoardPart(partName), connections);
    HBOBoard *board = createIntegratdBoard(partName, connections, name);
    m_board = registerIntegratedBoard(board);
    return taken;
  }
  // A daughter board has no active part to name it. A project board of that
  // kind is deleted by the reload all the same, so it is looked up again by
  // its board name rather than left dangling.
  if (partName.empty() && wasUserDefined)
    partName = boardName;
  if (partName.empty())
    return taken;

  bool scratch = false;
  HBOBoard *again = getBoard(partName, scratch, true);
  if (wasUserDefined) {
    // The old object was a project board and has been deleted, so the
    // pointer must be replaced even by nothing.
    m_board = again;
    changed = true;
  } else if (again != m_board) {
    m_board = again;
    changed = true;
  }
  return taken;
}

HBOBoard *HBOBoardCDataManager::getBoard(const std::string &name, bool &usedLegacyMap,
                                         bool tryLegacyMap) {
  if (HBOBoard *board = m_partRepo->getInfoForBoardPart(name))
    return board;
  if (!tryLegacyMap)
    return nullptr;
  std::string partName = m_partRepo->getBoardPartNameForBoard(name);
  HBOBoard *board = m_partRepo->getInfoForBoardPart(partName);
  if (board)
    usedLegacyMap = true;
  return board;
}

bool HBOBoardCDataManager::registerUserBoard(HBOBoard *board) {
  return m_partRepo->registerUserBoard(board);
}

bool HBOBoardCDataManager::unregisterUserBoard(const std::string &name) {
  return m_partRepo->unregisterUserBoard(name);
}

int HBOBoardCDataManager::setBoard(HBOBoard *board) {
  if (!board)
    return unsetBoardStrategy();
  setBoardStrategyForced(board);
  return true;
}

bool HBOBoardCDataManager::setBoard(const std::string &name, const std::string &part, bool warnOnly,
                                    bool tryLegacyMap) {
  const std::string currentName = m_board ? m_board->getName() : std::string();
  // Selecting the current board again does not reapply the part.
  if (HBOCommon::iEquals(currentName, name))
    return false;
  if (name.empty())
    return unsetBoardStrategy();

  bool usedLegacyMap = false;
  HBOBoard *board = getBoard(name, usedLegacyMap, tryLegacyMap);
  if (board) {
    if (usedLegacyMap)
      ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-70@");
    WarnIfNotLatestBoard(board);
    setBoardStrategy(board);
    if (board->isPartNameSupportedByBoard(part) && !board->isPartUpdated())
      board->updateBoardPart(part);
    return true;
  }

  HSTVector<std::string> paths;
  getBoardPartRepoPaths(paths);
  if (!warnOnly)
    HEXError::raise("board", ComMsg::Error, "@49-71@%s%s", name, part);
  ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-71@%s%s", name, part);
  return false;
}

bool HBOBoardCDataManager::setBoardStrategy(HBOBoard *board) {
  if (!board)
    return false;
  if (m_board && HBOCommon::iEquals(m_board->getName(), board->getName()))
    return true;
  return setBoardStrategyForced(board);
}

bool HBOBoardCDataManager::setBoardStrategyForced(HBOBoard *board) {
  if (!board)
    return false;
  if (!board->isConstraintsDataPopulated()) {
    std::string scratch;
    // A true result means the constraint data could not be read.
    if (board->populateConstraintsData(scratch)) {
      m_board = nullptr;
      return false;
    }
  }
  m_board = board;
  return true;
}

bool HBOBoardCDataManager::unsetBoardStrategy() {
  m_board = nullptr;
  return true;
}

bool HBOBoardCDataManager::getBusIfByName(HBOBusIf *&out, const std::string &name) const {
  return m_board ? m_board->getBusIfByName(out, name) : false;
}

bool HBOBoardCDataManager::getModelPortByName(HBOModelPort *&out, const std::string &name) const {
  return m_board ? m_board->getModelPortByName(out, name) : false;
}

bool HBOBoardCDataManager::getModelPortSeq(std::vector<HBOModelPort *> &out) const {
  return m_board ? m_board->getModelPortSeq(out) : false;
}

void HBOBoardCDataManager::WarnIfNotLatestBoard(HBOBoard *board) {
  if (!board)
    return;
  std::string repoPaths;
  HBOBoardUtils::getUserRepoPathFromParam(repoPaths);
  HBOBoardUtils::DumpDebugStr(
      kDebugParam, "HBOBoardCDataManager::WarnIfNotLatestBoard, userRepoPath: " + repoPaths, board);
  if (HBOBoardUtils::parseTclList(repoPaths).empty())
    return;
  const std::string &file = board->getBoardFile();
  HBOBoardUtils::DumpDebugStr(
      kDebugParam, "  >> current boardFile " + file + " , version " + board->getVersion(), board);
  // Boards of the content store count as installed ones.
  for (const std::string &dir : HUTEnv::getZRTDataDirList())
    if (file.find(dir + "/bazaar/boards") != std::string::npos)
      return;
  std::string vlnv = board->getVendor() + ":" + board->getLibrary() + ":" + board->getBoardName() +
                     ":" + board->getVersion();
  if (m_partRepo->hasCorrBoardInInstall(vlnv))
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-151@%s", vlnv);
}

bool HBOBoardCDataManager::loadBoardTcl() {
  if (m_tclLoaded)
    return true;
  HPAParamMgr &params = HPAParamMgr::getParamMgr();
  if (!params.paramExists("project.enableBITabFlow") ||
      !params.getValueAsBool("project.enableBITabFlow"))
    return false;

  const std::string sep = HBOBoardUtils::getDirSeparator();
  const std::string relative = "scripts" + sep + "board" + sep + "init.tcl";
  const std::string file = HUTEnv::getZRTAppRoot() + sep + relative;
  if (!HUTFile::isRegularFile(file)) {
    m_tclLoaded = true;
    return false;
  }
  if (boost::filesystem::path(file).extension().string() != ".tcl") {
    m_tclLoaded = true;
    return true;
  }
  // The script runs in the interpreter of the board commands. Before the
  // Tcl package has registered one, nothing is tried, so that a later call
  // runs the script.
  if (!HTCTclInterp::getDefaultInterp())
    return false;
  bool result = false;
  try {
    // The script sources its neighbours by relative names.
    boost::system::error_code ec;
    const boost::filesystem::path saved = boost::filesystem::current_path(ec);
    const boost::filesystem::path parent = boost::filesystem::path(file).parent_path();
    if (!ec && boost::filesystem::is_directory(parent))
      boost::filesystem::current_path(parent, ec);
    std::string errorInfo;
    const int code = HTCTclInterp::evalFile(file, errorInfo);
    if (!saved.empty())
      boost::filesystem::current_path(saved, ec);
    if (code == 1) // TCL_ERROR
      ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-46@%s%s", file, errorInfo);
    else
      result = true;
  } catch (const std::string &text) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-44@%s", text);
  }
  m_tclLoaded = true;
  return result;
}
