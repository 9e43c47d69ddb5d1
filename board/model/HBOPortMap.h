// One pairing of a bus type's logical port with a physical port of the board.
// Logical port names come from the bus types' small vocabularies and are
// pooled; the physical name is the board's own.
#ifndef BOARDLIB_HBOPORTMAP_H
#define BOARDLIB_HBOPORTMAP_H

#include <string>
#include <string_view>

class HBOPortMap {
public:
  HBOPortMap();
  /// A copy whose physical port carries \p prefix; the logical one stays.
  HBOPortMap(const HBOPortMap &src, const std::string &prefix);

  const std::string &getLogicalPort() const { return *m_logicalPort; }
  bool getLogicalPort(std::string &out) const;
  void setLogicalPort(std::string_view port);
  const std::string &getPhysicalPort() const { return m_physicalPort; }
  bool getPhysicalPort(std::string &out) const;
  void setPhysicalPort(std::string_view port) { m_physicalPort.assign(port); }

private:
  const std::string *m_logicalPort;
  std::string m_physicalPort;
};

#endif
