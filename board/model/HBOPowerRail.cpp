#include "HBOPowerRail.h"

#include <algorithm>

HBOPowerRail::HBOPowerRail(const std::string &name, const std::vector<std::string> &members,
                           const std::vector<std::string> &supplies,
                           const std::map<std::string, int> &memberPhases, bool isDirect,
                           int numPhases)
    : m_name(name), m_memberNames(members), m_supplyNames(supplies), m_memberPhases(memberPhases),
      m_isDirect(isDirect), m_numPhases(numPhases) {
  for (const std::string &member : m_memberNames) {
    if (std::find(m_supplyNames.begin(), m_supplyNames.end(), member) == m_supplyNames.end())
      m_railNames.push_back(member);
  }
}

int HBOPowerRail::getMemberPhases(const std::string &member) const {
  auto it = m_memberPhases.find(member);
  return it == m_memberPhases.end() ? 0 : it->second;
}

namespace {
void writeNames(std::ostream &os, const char *label, const std::vector<std::string> &names) {
  os << label;
  const char *separator = "";
  for (const std::string &name : names) {
    os << separator << name;
    separator = " ";
  }
  os << "\n";
}
} // namespace

std::ostream &operator<<(std::ostream &os, const HBOPowerRail &rail) {
  os << "HBOPowerRail " << rail.getName() << "\n";
  writeNames(os, "  memberNames: ", rail.getMemberNames());
  writeNames(os, "  supplyNames: ", rail.getSupplyNames());
  writeNames(os, "  railNames: ", rail.getRailNames());
  return os;
}
