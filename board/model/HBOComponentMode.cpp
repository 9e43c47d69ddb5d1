#include "HBOComponentMode.h"

#include "HBOBusIfPreference.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <iostream>

HBOComponentMode::~HBOComponentMode() {
  zeb::forgetScriptHandles(this);
  HBOCommon::deleteDistinct(m_preferredIps);
}

void HBOComponentMode::addInterface(std::int32_t order,
                                    const std::pair<std::string, bool> &nameAndOptional) {
  m_interfaces[order] = nameAndOptional;
}

void HBOComponentMode::getInterfaces(InterfaceMap &out) const { out = m_interfaces; }

void HBOComponentMode::getRequiredInterfaces(InterfaceMap &out) const {
  out.clear();
  for (const auto &entry : m_interfaces) {
    if (!entry.second.second)
      out.emplace_hint(out.end(), entry);
  }
}

void HBOComponentMode::getPreferredIps(std::vector<HBOBusIfPreference *> &out) const {
  out = m_preferredIps;
}

void HBOComponentMode::addPreferredIp(HBOBusIfPreference *preference) {
  if (preference)
    m_preferredIps.push_back(preference);
}

void HBOComponentMode::updateEnablementDependencyJumperName(const std::string &oldName,
                                                            const std::string &newName) {
  m_enablementDependency = HBOCommon::renameJumper(m_enablementDependency, oldName, newName);
}

void HBOComponentMode::display(int indent) const {
  const std::string dashes(indent > 0 ? indent : 0, '-');
  const std::string dashes2(indent + 2 > 0 ? indent + 2 : 0, '-');
  const std::string dashes4(indent + 4 > 0 ? indent + 4 : 0, '-');
  std::cout << dashes << "ComponentMode - Name: " << m_name << ", Description: " << m_description
            << "\n";
  std::cout << dashes2 << "Interfaces:\n";
  for (const auto &entry : m_interfaces)
    std::cout << dashes4 << "Interface - Name: " << entry.second.first << " Index: " << entry.first
              << ", Optional: " << (entry.second.second ? "true" : "false") << "\n";
  std::cout << dashes2 << "Preferred IPs:\n";
  for (const HBOBusIfPreference *preference : m_preferredIps)
    preference->display(indent + 4);
  std::cout << dashes2 << "Enablement Dependencies: " << m_enablementDependency << "\n";
}
