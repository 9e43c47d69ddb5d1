#include "HBOModelPort.h"

#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOPinProps.h"
#include "NativeCache.h"

#include <iostream>

HBOModelPort::~HBOModelPort() {
  zeb::forgetScriptHandles(this);
  HBOCommon::deleteDistinct(m_pinRecords);
}

bool HBOModelPort::getName(std::string &out) const {
  out = m_name;
  return true;
}

bool HBOModelPort::setName(const std::string &name) {
  m_name = name;
  return true;
}

bool HBOModelPort::getPortDir(std::string &out) const {
  out = m_direction;
  return true;
}

bool HBOModelPort::setDirection(const std::string &direction) {
  m_direction = direction;
  return true;
}

bool HBOModelPort::isPortOfTypeVec(bool &out) const {
  out = m_isVector;
  return true;
}

bool HBOModelPort::setIsVector(bool isVector) {
  m_isVector = isVector;
  return true;
}

bool HBOModelPort::setRange(const int &left, const int &right) {
  m_range.setVec(left, right);
  return true;
}

bool HBOModelPort::getPortVecLeft(int &out) const {
  if (!m_isVector) {
    out = -1;
    return false;
  }
  return m_range.getLeft(out);
}

bool HBOModelPort::getPortVecRight(int &out) const {
  if (!m_isVector) {
    out = -1;
    return false;
  }
  return m_range.getRight(out);
}

bool HBOModelPort::getPortWidth(int &out) const {
  if (!m_isVector) {
    out = 1;
    return true;
  }
  m_range.getWidth(out);
  return true;
}

bool HBOModelPort::setOwnerBusIf(const std::string &busIfName, const std::string &logicalPort) {
  m_ownerBusIfName = busIfName;
  m_logicalPortName = logicalPort;
  return true;
}

bool HBOModelPort::getOwnerBusIf(std::string &out) const {
  out = m_ownerBusIfName;
  return true;
}

bool HBOModelPort::getBusIfLogicalPortName(std::string &out) const {
  out = m_logicalPortName;
  return true;
}

void HBOModelPort::addPinPortMap(const std::string &index, const std::string &pin) {
  m_pinMap[index] = pin;
}

bool HBOModelPort::getPinPort(const std::string &index, std::string &out) const {
  auto it = m_pinMap.find(index);
  if (it == m_pinMap.end())
    out.clear();
  else
    out = it->second;
  return true;
}

void HBOModelPort::getPins(std::vector<HBOPinProps *> &out) const {
  if (!m_owner)
    return;
  const HBOBoardComponent *component = m_owner->getOwnerComponent();
  if (!component)
    return;
  for (const auto &entry : m_pinMap) {
    if (HBOPinProps *pin = component->findPin(entry.second))
      out.push_back(pin);
  }
}

bool HBOModelPort::getPortPropsSeq(std::vector<HBOPinProps *> &out) const {
  if (HBOBoardUtils::isV2SchemaBoard(this)) {
    getPins(out);
    return true;
  }
  if (m_pinRecords.empty())
    return false;
  out = m_pinRecords;
  return true;
}

bool HBOModelPort::populatePinProps() {
  int count = 1;
  if (m_isVector) {
    m_range.getWidth(count);
    if (count < 1)
      return true;
  }
  m_pinRecords.reserve(m_pinRecords.size() + static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    auto *pin = new HBOPinProps();
    if (m_isVector) {
      pin->setName(m_name + "[" + std::to_string(i) + "]");
      pin->setPinIndex(i);
    } else {
      pin->setName(m_name);
      pin->setPinIndex(-1);
    }
    pin->setOwnerPort(this);
    m_pinRecords.push_back(pin);
  }
  return true;
}

void HBOModelPort::updatePortPinMap(const std::map<std::string, std::string> &pinRenames) {
  std::map<std::string, std::string> renamed;
  for (const auto &entry : m_pinMap) {
    auto it = pinRenames.find(entry.second);
    renamed.emplace_hint(renamed.end(), entry.first,
                         it == pinRenames.end() ? entry.second : it->second);
  }
  m_pinMap.swap(renamed);
}

void HBOModelPort::display(int indent) const {
  int left = -1;
  int right = -1;
  int width = -1;
  getPortVecLeft(left);
  getPortVecRight(right);
  getPortWidth(width);
  std::cout << std::string(indent > 0 ? indent : 0, '-')
            << "Port - Logical Name: " << m_logicalPortName << ", Physical Name: " << m_name
            << ", Direction: " << m_direction << ", Left: " << left << ", Right: " << right
            << ", Width: " << width << "\n";
  const std::string dashes(indent + 2 > 0 ? indent + 2 : 0, '-');
  for (const auto &entry : m_pinMap)
    std::cout << dashes << "Port Index: " << entry.first << ", FPGA Pin: " << entry.second << "\n";
}
