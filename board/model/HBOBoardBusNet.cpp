#include "HBOBoardBusNet.h"

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardComponent.h"
#include "HSTIntern.h"
#include "HSTStringUtils.h"
#include "NativeCache.h"

HBOBoardBusNet::HBOBoardBusNet() : m_isEnabled(&HSTIntern::get("true")) {}

HBOBoardBusNet::HBOBoardBusNet(const HBOBoardBusNet &other, HBOBoardBus *owner)
    : m_c1PinIndex(other.m_c1PinIndex), m_c2PinIndex(other.m_c2PinIndex),
      m_minDelay(other.m_minDelay), m_maxDelay(other.m_maxDelay),
      m_typicalDelay(other.m_typicalDelay), m_number(other.m_number),
      m_isEnabled(other.m_isEnabled), m_enablementDependency(other.m_enablementDependency),
      m_names(other.m_names ? std::make_unique<Names>(*other.m_names) : nullptr), m_owner(owner) {
  // A generated name stays the one of the bus that the net was copied from.
  if (m_number >= 0 && other.m_owner != owner) {
    names_().name = other.getName();
    m_number = -1;
  }
  if (!m_names || m_names->boardBus.empty())
    if (other.m_owner != owner && !other.getBoardBus().empty())
      names_().boardBus = other.getBoardBus();
}

HBOBoardBusNet::~HBOBoardBusNet() { zeb::forgetScriptHandles(this); }

HBOBoardBusNet::Names &HBOBoardBusNet::names_() {
  if (!m_names)
    m_names = std::make_unique<Names>();
  return *m_names;
}

void HBOBoardBusNet::setName(std::string name) {
  names_().name = std::move(name);
  m_number = -1;
}

void HBOBoardBusNet::setBoardBus(std::string name) { names_().boardBus = std::move(name); }

void HBOBoardBusNet::setEnablementDependency(std::string expression) {
  if (expression.empty())
    m_enablementDependency.reset();
  else
    m_enablementDependency = std::make_shared<const std::string>(std::move(expression));
}

const std::string &HBOBoardBusNet::getEnablementDependency() const {
  return m_enablementDependency ? *m_enablementDependency : HSTIntern::empty();
}

std::string HBOBoardBusNet::getName() const {
  if (m_number < 0)
    return m_names ? m_names->name : std::string();
  return HSTStringUtils::numberedName(m_owner ? m_owner->getName() : HSTIntern::empty(), m_number);
}

void HBOBoardBusNet::setIsEnabled(std::string_view isEnabled) {
  m_isEnabled = &HSTIntern::get(isEnabled);
}

const std::string &HBOBoardBusNet::getBoardBus() const {
  if (m_names && !m_names->boardBus.empty())
    return m_names->boardBus;
  return m_owner ? m_owner->getName() : HSTIntern::empty();
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
