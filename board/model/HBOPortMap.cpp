#include "HBOPortMap.h"

#include "HSTIntern.h"

HBOPortMap::HBOPortMap() : m_logicalPort(&HSTIntern::empty()) {}

void HBOPortMap::setLogicalPort(std::string_view port) { m_logicalPort = &HSTIntern::get(port); }

bool HBOPortMap::getLogicalPort(std::string &out) const {
  out = *m_logicalPort;
  return true;
}

bool HBOPortMap::getPhysicalPort(std::string &out) const {
  out = m_physicalPort;
  return true;
}
