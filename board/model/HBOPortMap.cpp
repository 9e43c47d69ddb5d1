#include "HBOPortMap.h"

bool HBOPortMap::getLogicalPort(std::string &out) const {
  out = m_logicalPort;
  return true;
}

bool HBOPortMap::getPhysicalPort(std::string &out) const {
  out = m_physicalPort;
  return true;
}
