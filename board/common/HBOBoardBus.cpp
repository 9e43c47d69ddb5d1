#include "HBOBoardBus.h"

#include "HBOBoard.h"
#include "HBOBoardBusNet.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <iostream>

namespace {

// Replaces every occurrence of \p oldName, compared ignoring case, by the
// lower-cased \p newName, left to right without rescanning what was put in.
// It knows no token borders: evaluation compares names ignoring case, and
// the readers never put one jumper name inside another.
std::string renameJumper(const std::string &expression, const std::string &oldName,
                         const std::string &newName) {
  if (oldName.empty())
    return expression;
  const std::string replacement = HBOCommon::toLowerCopy(newName);
  // Byte-wise case conversion keeps every offset of the original.
  const std::string upperExpression = HBOCommon::toUpperCopy(expression);
  const std::string upperOld = HBOCommon::toUpperCopy(oldName);
  std::string out;
  std::string::size_type pos = 0;
  for (std::string::size_type hit; (hit = upperExpression.find(upperOld, pos)) != std::string::npos;
       pos = hit + oldName.size()) {
    out.append(expression, pos, hit - pos);
    out += replacement;
  }
  out.append(expression, pos, std::string::npos);
  return out;
}

} // namespace

HBOBoardBus::~HBOBoardBus() {
  zeb::tcltasks::native_cache<HBOBoardBus *>::remove(this);
  zeb::pyinfra::py_native_cache<HBOBoardBus *>::remove(this);
  HBOCommon::deleteDistinct(m_nets);
}

void HBOBoardBus::updateEnablementDependencyJumperName(const std::string &oldName,
                                                      const std::string &newName) {
  m_enablementDependency = renameJumper(m_enablementDependency, oldName, newName);
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
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Connection - Name: "
            << m_connectionName << ", Component 1: " << m_comp1 << ", Component 2: " << m_comp2
            << ", Delay: " << m_delay << ", C1StIndex: " << m_startIndexComp1
            << ", C1EndIndex: " << m_stopIndexComp1 << ", C2StIndex: " << m_startIndexComp2
            << ", C2EndIndex: " << m_stopIndexComp2 << "\n";
}
