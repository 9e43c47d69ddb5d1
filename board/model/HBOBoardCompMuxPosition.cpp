#include "HBOBoardCompMuxPosition.h"

bool HBOBoardCompMuxPosition::setPosition(const int &position) {
  m_position = position;
  return true;
}

bool HBOBoardCompMuxPosition::setComponent(const std::string &component) {
  m_component = component;
  return true;
}

bool HBOBoardCompMuxPosition::addAddress(const std::string &low, const std::string &high) {
  m_addresses.emplace_back(low, high);
  return true;
}
