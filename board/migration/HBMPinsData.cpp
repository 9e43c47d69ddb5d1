#include "HBMPinsData.h"

#include <algorithm>

HBMPinsData::~HBMPinsData() { clear(); }

bool HBMPinsData::addPin(HBMPin *pin) {
  // A pin held twice would be freed twice.
  if (!pin || std::find(m_pins.begin(), m_pins.end(), pin) != m_pins.end())
    return false;
  m_pins.push_back(pin);
  return true;
}

HBMPin *HBMPinsData::getPinByIndex(int i) const {
  if (i < 0 || static_cast<std::size_t>(i) >= m_pins.size())
    return nullptr;
  return m_pins[static_cast<std::size_t>(i)];
}

bool HBMPinsData::deletePin(const std::string &name) {
  auto it = std::find_if(m_pins.begin(), m_pins.end(),
                         [&name](const HBMPin *pin) { return pin && pin->getName() == name; });
  if (it == m_pins.end())
    return false;
  delete *it;
  m_pins.erase(it);
  return true;
}

bool HBMPinsData::deletePin(HBMPin *pin) {
  auto it = std::find(m_pins.begin(), m_pins.end(), pin);
  if (!pin || it == m_pins.end())
    return false;
  delete *it;
  m_pins.erase(it);
  return true;
}

void HBMPinsData::clear() {
  for (HBMPin *pin : m_pins)
    delete pin;
  m_pins.clear();
  m_partName.clear();
}
