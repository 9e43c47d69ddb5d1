#include "HBOBoardDiagramMgr.h"

#include "HBOBoard.h"

HBOBoardDiagramMgr *HBOBoardDiagramMgr::mp_boardDiagramMgr = nullptr;

HBOBoardDiagramMgr *HBOBoardDiagramMgr::getGlobal() {
  if (!mp_boardDiagramMgr)
    mp_boardDiagramMgr = new HBOBoardDiagramMgr();
  mp_boardDiagramMgr->incrementRefCount();
  return mp_boardDiagramMgr;
}

void HBOBoardDiagramMgr::release() {
  if (!mp_boardDiagramMgr)
    return;
  mp_boardDiagramMgr->decrementRefCount();
  if (mp_boardDiagramMgr->getReferenceCount() != 0)
    return;
  delete mp_boardDiagramMgr;
  mp_boardDiagramMgr = nullptr;
}

void HBOBoardDiagramMgr::incrementRefCount() { ++m_refCount; }

void HBOBoardDiagramMgr::decrementRefCount() {
  if (m_refCount > 0)
    --m_refCount;
}

uint32_t HBOBoardDiagramMgr::getReferenceCount() const { return m_refCount; }

void HBOBoardDiagramMgr::addToOpenedBoardDiagrams(HBOBoard *board) {
  if (!board)
    return;
  // emplace keeps the board already entered under the name.
  m_openedDiagrams.emplace(board->getName(), board);
}

void HBOBoardDiagramMgr::removeFromOpenedBoardDiagrams(std::string name) {
  auto it = m_openedDiagrams.find(name);
  if (it == m_openedDiagrams.end())
    return;
  m_openedDiagrams.erase(it);
  if (m_currentDiagram && m_currentDiagram->getName() == name)
    m_currentDiagram = nullptr;
}

void HBOBoardDiagramMgr::getOpenedBoardDiagrams(std::vector<HBOBoard *> &out) const {
  for (const auto &entry : m_openedDiagrams)
    out.push_back(entry.second);
}

void HBOBoardDiagramMgr::setCurrentBoardDiagram(HBOBoard *board) {
  if (board)
    m_currentDiagram = board;
}

void HBOBoardDiagramMgr::setCurrentBoardDiagram(std::string name) {
  auto it = m_openedDiagrams.find(name);
  if (it != m_openedDiagrams.end() && it->second)
    m_currentDiagram = it->second;
}

HBOBoard *HBOBoardDiagramMgr::getCurrentBoardDiagram() const { return m_currentDiagram; }
