#include "HBOBoardBus.h"

#include "HBOBoard.h"
#include "HBOBoardBusNet.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <functional>
#include <iostream>

HBOBoardBus::~HBOBoardBus() {
  zeb::forgetScriptHandles(this);
  std::vector<HBOBoardBusNet *> handedOver;
  for (HBOBoardBusNet *net : m_nets)
    if (!ownsInBlock_(net))
      handedOver.push_back(net);
  HBOCommon::deleteDistinct(std::move(handedOver));
}

bool HBOBoardBus::ownsInBlock_(const HBOBoardBusNet *net) const {
  std::less<const HBOBoardBusNet *> before;
  auto holds = [&](const NetBlock &block) {
    const HBOBoardBusNet *first = block.nets.get();
    return first && !before(net, first) && before(net, first + block.count);
  };
  if (holds(m_netBlock))
    return true;
  for (const NetBlock &block : m_moreNetBlocks)
    if (holds(block))
      return true;
  return false;
}

HBOBoardBusNet *HBOBoardBus::makeBoardBusNets(std::size_t count) {
  if (count == 0)
    return nullptr;
  NetBlock block;
  block.nets.reset(new HBOBoardBusNet[count]);
  block.count = count;
  HBOBoardBusNet *first = block.nets.get();
  if (!m_netBlock.nets)
    m_netBlock = std::move(block);
  else
    m_moreNetBlocks.push_back(std::move(block));
  m_nets.reserve(m_nets.size() + count);
  for (std::size_t i = 0; i < count; ++i) {
    first[i].setOwner(this);
    m_nets.push_back(first + i);
  }
  return first;
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
