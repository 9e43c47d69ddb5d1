#include "HBOBoardBusNet.h"

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardComponent.h"
#include "HSTIntern.h"
#include "NativeCache.h"

#include <charconv>

HBOBoardBusNet::HBOBoardBusNet() : m_isEnabled(&HSTIntern::get("true")) {}

HBOBoardBusNet::HBOBoardBusNet(const HBOBoardBusNet &other, HBOBoardBus *owner)
    : m_name(other.m_name), m_c1PinIndex(other.m_c1PinIndex), m_c2PinIndex(other.m_c2PinIndex),
      m_minDelay(other.m_minDelay), m_maxDelay(other.m_maxDelay),
      m_typicalDelay(other.m_typicalDelay), m_number(other.m_number),
      m_isEnabled(other.m_isEnabled), m_enablementDependency(other.m_enablementDependency),
      m_boardBus(other.m_boardBus), m_owner(owner) {}

HBOBoardBusNet::~HBOBoardBusNet() { zeb::forgetScriptHandles(this); }

std::string HBOBoardBusNet::getName() const {
  if (m_number < 0)
    return m_name;
  const std::string &base = m_owner ? m_owner->getName() : HSTIntern::empty();
  char digits[16];
  const auto written = std::to_chars(digits, digits + sizeof(digits), m_number);
  std::string name;
  name.reserve(base.size() + 1 + static_cast<std::size_t>(written.ptr - digits));
  name += base;
  name += '_';
  name.append(digits, written.ptr);
  return name;
}

void HBOBoardBusNet::setIsEnabled(std::string_view isEnabled) {
  m_isEnabled = &HSTIntern::get(isEnabled);
}

const std::string &HBOBoardBusNet::getBoardBus() const {
  if (m_boardBus.empty() && m_owner)
    return m_owner->getName();
  return m_boardBus;
}

void HBOBoardBusNet::getPinsVec(std::vector<HBOPinProps *> &out) const {
  if (!m_owner || !m_owner->getOwner())
    return;
  const HBOBoard *board = m_owner->getOwner();
  if (const HBOBoardComponent *comp = board->findBoardComponent(m_owner->getComp1()))
    out.push_back(comp->getPinByIndex(m_c1PinIndex));
  if (const HBOBoardComponent *comp = board->findBoardComponent(m_owner->getComp2()))
    out.push_back(comp->getPinByIndex(m_c2PinIndex));
}
