// One output of a multiplexer component: its position number, the component
// behind it and the address ranges reached through it.
#ifndef BOARDLIB_HBOBOARDCOMPMUXPOSITION_H
#define BOARDLIB_HBOBOARDCOMPMUXPOSITION_H

#include <string>
#include <utility>
#include <vector>

class HBOBoardCompMuxPosition {
public:
  HBOBoardCompMuxPosition() = default;

  int getPosition() const { return m_position; }
  bool setPosition(const int &position);
  const std::string &getComponent() const { return m_component; }
  bool setComponent(const std::string &component);
  /// (low, high) pairs in the order added, as read.
  const std::vector<std::pair<std::string, std::string>> &getAddresses() const {
    return m_addresses;
  }
  /// Appends, duplicates included; the texts are not converted to numbers.
  bool addAddress(const std::string &low, const std::string &high);

private:
  int m_position = 0;
  std::string m_component;
  std::vector<std::pair<std::string, std::string>> m_addresses;
};

#endif
