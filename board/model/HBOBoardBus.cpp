#include "HBOBoardBus.h"

#include "HBOBoard.h"
#include "HBOBoardBusNet.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <iostream>

HBOBoardBus::~HBOBoardBus() {
  zeb::forgetScriptHandles(this);
  HBOCommon::deleteDistinct(m_nets);
}

void HBOBoardBus::updateEnablementDependencyJumperName(const std::string &oldName,
                                                       const std::string &newName) {
  m_enablementDependency = HBOCommon::renameJumper(m_enablementDependency, oldName, newName);
}

void HBOBoardBus::addBoardBusNet(HBOBoardBusNet *net) {
  if (net)
    m_nets.push_back(net);
}

void HBOBoardBus::getBusComponentsVec(std::vector<HBOBoardComponent *> &out) const {
  out.clear();
  if (!m_owner)
    return;
  if (HBOBoardComponent *comp = m_owner->findBoardComponent(m_comp1))
    out.push_back(comp);
  if (HBOBoardComponent *comp = m_owner->findBoardComponent(m_comp2))
    out.push_back(comp);
}

void HBOBoardBus::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-')
            << "Connection - Name: " << m_connectionName << ", Component 1: " << m_comp1
            << ", Component 2: " << m_comp2 << ", Delay: " << m_delay
            << ", C1StIndex: " << m_startIndexComp1 << ", C1EndIndex: " << m_stopIndexComp1
            << ", C2StIndex: " << m_startIndexComp2 << ", C2EndIndex: " << m_stopIndexComp2 << "\n";
}
