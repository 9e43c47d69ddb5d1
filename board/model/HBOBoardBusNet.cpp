#include "HBOBoardBusNet.h"

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardComponent.h"
#include "NativeCache.h"

HBOBoardBusNet::HBOBoardBusNet(const HBOBoardBusNet &other, HBOBoardBus *owner)
    : m_name(other.m_name), m_c1PinIndex(other.m_c1PinIndex), m_c2PinIndex(other.m_c2PinIndex),
      m_minDelay(other.m_minDelay), m_maxDelay(other.m_maxDelay),
      m_typicalDelay(other.m_typicalDelay), m_isEnabled(other.m_isEnabled),
      m_enablementDependency(other.m_enablementDependency), m_boardBus(other.m_boardBus),
      m_owner(owner) {}

HBOBoardBusNet::~HBOBoardBusNet() { zeb::forgetScriptHandles(this); }

void HBOBoardBusNet::getPinsVec(std::vector<HBOPinProps *> &out) const {
  if (!m_owner || !m_owner->getOwner())
    return;
  const HBOBoard *board = m_owner->getOwner();
  if (const HBOBoardComponent *comp = board->findBoardComponent(m_owner->getComp1()))
    out.push_back(comp->getPinByIndex(m_c1PinIndex));
  if (const HBOBoardComponent *comp = board->findBoardComponent(m_owner->getComp2()))
    out.push_back(comp->getPinByIndex(m_c2PinIndex));
}
