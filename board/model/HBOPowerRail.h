// One rail of a board's power network, fed by supplies (named power pins of
// the FPGA) and by other rails. A value type.
#ifndef BOARDLIB_HBOPOWERRAIL_H
#define BOARDLIB_HBOPOWERRAIL_H

#include <map>
#include <ostream>
#include <string>
#include <vector>

class HBOPowerRail {
public:
  HBOPowerRail() = default;
  /// \p members holds all feeds in file order; those not in \p supplies are
  /// the rails.
  HBOPowerRail(const std::string &name, const std::vector<std::string> &members,
               const std::vector<std::string> &supplies,
               const std::map<std::string, int> &memberPhases, bool isDirect, int numPhases);

  const std::string &getName() const { return m_name; }
  const std::vector<std::string> &getMemberNames() const { return m_memberNames; }
  const std::vector<std::string> &getSupplyNames() const { return m_supplyNames; }
  const std::vector<std::string> &getRailNames() const { return m_railNames; }
  const std::map<std::string, int> &getMemberPhasesMap() const { return m_memberPhases; }
  /// How many phases \p member draws; 0 for a member without a count.
  int getMemberPhases(const std::string &member) const;
  bool isDirect() const { return m_isDirect; }
  /// 0 for a rail that is not phased.
  int getNumPhases() const { return m_numPhases; }

private:
  std::string m_name;
  std::vector<std::string> m_memberNames;
  std::vector<std::string> m_supplyNames;
  std::vector<std::string> m_railNames;
  std::map<std::string, int> m_memberPhases;
  bool m_isDirect = false;
  int m_numPhases = 0;
};

/// A debug dump: the name, then the members, supplies and rails.
std::ostream &operator<<(std::ostream &os, const HBOPowerRail &rail);

#endif
