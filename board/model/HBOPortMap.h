// One pairing of a bus type's logical port with a physical port of the board.
#ifndef BOARDLIB_HBOPORTMAP_H
#define BOARDLIB_HBOPORTMAP_H

#include <string>

class HBOPortMap {
public:
  HBOPortMap() = default;

  const std::string &getLogicalPort() const { return m_logicalPort; }
  bool getLogicalPort(std::string &out) const;
  void setLogicalPort(std::string port) { m_logicalPort = std::move(port); }
  const std::string &getPhysicalPort() const { return m_physicalPort; }
  bool getPhysicalPort(std::string &out) const;
  void setPhysicalPort(std::string port) { m_physicalPort = std::move(port); }

private:
  std::string m_logicalPort;
  std::string m_physicalPort;
};

#endif
