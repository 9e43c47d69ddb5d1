// One wire of a connection map: one pin index on each of the two components.
#ifndef BOARDLIB_HBOBOARDBUSNET_H
#define BOARDLIB_HBOBOARDBUSNET_H

#include <string>
#include <vector>

class HBOBoardBus;
class HBOPinProps;

class HBOBoardBusNet {
public:
  HBOBoardBusNet() = default;
  /// Copies every field but the owner, which becomes \p owner.
  HBOBoardBusNet(const HBOBoardBusNet &other, HBOBoardBus *owner);
  /// Drops the object from the script caches.
  ~HBOBoardBusNet();
  HBOBoardBusNet(const HBOBoardBusNet &) = delete;
  HBOBoardBusNet &operator=(const HBOBoardBusNet &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  int getC1PinIndex() const { return m_c1PinIndex; }
  void setC1PinIndex(int index) { m_c1PinIndex = index; }
  int getC2PinIndex() const { return m_c2PinIndex; }
  void setC2PinIndex(int index) { m_c2PinIndex = index; }
  float getMinDelay() const { return m_minDelay; }
  void setMinDelay(float delay) { m_minDelay = delay; }
  float getMaxDelay() const { return m_maxDelay; }
  void setMaxDelay(float delay) { m_maxDelay = delay; }
  float getTypicalDelay() const { return m_typicalDelay; }
  void setTypicalDelay(float delay) { m_typicalDelay = delay; }
  const std::string &getIsEnabled() const { return m_isEnabled; }
  void setIsEnabled(std::string isEnabled) { m_isEnabled = std::move(isEnabled); }
  const std::string &getEnablementDependency() const { return m_enablementDependency; }
  void setEnablementDependency(std::string expression) {
    m_enablementDependency = std::move(expression);
  }
  /// Name of the owning connection map.
  const std::string &getBoardBus() const { return m_boardBus; }
  void setBoardBus(std::string name) { m_boardBus = std::move(name); }
  HBOBoardBus *getOwner() const { return m_owner; }
  void setOwner(HBOBoardBus *owner) { m_owner = owner; }

  /// Appends the pin of each end whose component exists, null where that
  /// component lacks the index; needs an owner bus with an owner board.
  void getPinsVec(std::vector<HBOPinProps *> &out) const;

private:
  std::string m_name;
  int m_c1PinIndex = 0;
  int m_c2PinIndex = 0;
  float m_minDelay = 0;
  float m_maxDelay = 0;
  float m_typicalDelay = 0;
  std::string m_isEnabled = "true";
  std::string m_enablementDependency;
  std::string m_boardBus;
  HBOBoardBus *m_owner = nullptr;
};

#endif
