#include "HBMPin.h"

HBMPin::HBMPin(std::string name, std::string index, std::string loc, Props props)
    : m_index(std::move(index)), m_name(std::move(name)), m_loc(std::move(loc)),
      m_props(std::move(props)) {}

std::string HBMPin::getProp(const std::string &name) const {
  for (const auto &prop : m_props)
    if (prop.first == name)
      return prop.second;
  return std::string();
}

void HBMPin::setProp(const std::string &name, const std::string &value) {
  for (auto &prop : m_props)
    if (prop.first == name) {
      prop.second = value;
      return;
    }
  m_props.emplace_back(name, value);
}
