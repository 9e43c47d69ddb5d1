// The project's side of integrated boards: the names of base and daughter
// boards resolved in the project's view of the catalog, the name of the
// composed board, and its registration as a user board of the project.
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardUtils.h"
#include "HBOPartCReposMgr.h"
#include "HEXError.h"

namespace {
const char kScope[] = "board.BoardCreation";
} // namespace

HBOBoard *HBOBoardCDataManager::createIntegratdBoard(const std::string &basePartName,
                                                     const ConnectionPairs &connections,
                                                     const std::string &boardName) {
  bool scratch = false;
  const HBOBoard *base = getBoard(basePartName, scratch, true);
  if (!base)
    HEXError::raise("board", ComMsg::Error, "@49-82@%s", basePartName);
  return createIntegratdBoard(base, connections, boardName);
}

HBOBoard *HBOBoardCDataManager::createIntegratdBoard(const HBOBoard *base,
                                                     const ConnectionPairs &connections,
                                                     const std::string &boardName) {
  if (!base)
    HEXError::raise("board", ComMsg::Error, "@49-86@");
  if (base->isIntegratedBoard())
    HEXError::raise("board", ComMsg::Error, "@49-78@%s", base->getName());
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, kScope,
                           "Creating Integrated Board %s : Base Board=%s, Connections Size=%d\n",
                           boardName.c_str(), base->getName().c_str(),
                           static_cast<int>(connections.size()));
  int counter = 0;
  for (const auto &connection : connections)
    ComMsgMgr::sendScopedMsg(
        ComMsgMgr::Debug1, kScope,
        "  Connection(%d): Base Board Connector=%s, Daughter Board Connector=%s\n", counter++,
        connection.first.c_str(), connection.second.c_str());

  std::vector<HBOBoard::IntegratedConnection> triples;
  for (const auto &connection : connections) {
    const std::string vnv = HBOBoardUtils::getBoardVNVFromBoardPart(connection.second);
    const std::string connector = HBOBoardUtils::getBoardPartNameFromVLNV(connection.second);
    bool scratch = false;
    const HBOBoard *daughter = getBoard(vnv, scratch, true);
    if (!daughter)
      HEXError::raise("board", ComMsg::Error, "@49-81@%s%s", vnv, boardName);
    if (daughter->isIntegratedBoard())
      HEXError::raise("board", ComMsg::Error, "@49-79@%s", daughter->getName());
    triples.emplace_back(connection.first, daughter, connector);
  }
  return HBOBoard::createBoard(base, triples, boardName);
}

std::string
HBOBoardCDataManager::createUniqBoardNameForIntegratedBoard(const std::string &baseBoardName,
                                                            const ConnectionPairs &connections) {
  std::string name = baseBoardName;
  for (const auto &connection : connections)
    name += "_" + connection.first + "_" +
            HBOBoardUtils::getBoardNameFromBoardPart(
                HBOBoardUtils::getBoardVNVFromBoardPart(connection.second)) +
            "_" + HBOBoardUtils::getBoardPartNameFromVLNV(connection.second);
  return name;
}

HBOBoardCDataManager::ConnectionPairs
HBOBoardCDataManager::getIntegratedBoardConnectionPairs(const HBOBoard &board) {
  ConnectionPairs pairs;
  for (const HBOBoard::IntegratedConnection &connection : board.getIntegratedBoardConnections()) {
    const HBOBoard *daughter = std::get<1>(connection);
    if (!daughter)
      continue;
    // The daughter part text names the connector before the version, as
    // createIntegratdBoard reads it.
    pairs.emplace_back(std::get<0>(connection),
                       daughter->getVendor() + ":" + daughter->getBoardName() + ":" +
                           std::get<2>(connection) + ":" + daughter->getVersion());
  }
  return pairs;
}

HBOBoard *HBOBoardCDataManager::registerIntegratedBoard(HBOBoard *board) {
  if (!board)
    return nullptr;
  const std::string name = board->getName();
  bool wasCurrent = false;
  HBOBoard *earlier = m_partRepo->getInfoForBoardPart(name);
  if (earlier && earlier != board && earlier->isIntegratedBoard()) {
    wasCurrent = earlier == m_board;
    if (wasCurrent)
      m_board = nullptr;
    m_partRepo->unregisterUserBoard(earlier->getName());
  }
  m_partRepo->registerUserBoard(board);
  if (m_partRepo->getInfoForBoardPart(name) != board) {
    // A user board of another kind keeps the name; the repository did not
    // take this one.
    delete board;
    return nullptr;
  }
  if (wasCurrent)
    m_board = board;
  return board;
}
