// One wire of a connection map: one pin index on each of the two components.
// A connection map has a net per wire, hundreds on a board, so the nets that
// the reader makes live in one block of their bus, and a generated name
// ("<map>_<position>") is composed when asked for instead of being stored.
#ifndef BOARDLIB_HBOBOARDBUSNET_H
#define BOARDLIB_HBOBOARDBUSNET_H

#include <memory>
#include <string>
#include <string_view>
#include <vector>

class HBOBoardBus;
class HBOPinProps;

class HBOBoardBusNet {
public:
  HBOBoardBusNet();
  /// Copies every field but the owner, which becomes \p owner.
  HBOBoardBusNet(const HBOBoardBusNet &other, HBOBoardBus *owner);
  /// Drops the object from the script caches.
  ~HBOBoardBusNet();
  HBOBoardBusNet(const HBOBoardBusNet &) = delete;
  HBOBoardBusNet &operator=(const HBOBoardBusNet &) = delete;

  /// The name that setName gave, else the generated one.
  std::string getName() const;
  void setName(std::string name);
  /// Names the net "<owner bus name>_<number>", as the reader does.
  void setGeneratedName(int number) { m_number = number; }
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
  const std::string &getIsEnabled() const { return *m_isEnabled; }
  /// "true" or "false" in practice; pooled.
  void setIsEnabled(std::string_view isEnabled);
  const std::string &getEnablementDependency() const;
  void setEnablementDependency(std::string expression);
  /// The same text for every net of a connection map, held once.
  void setEnablementDependency(std::shared_ptr<const std::string> expression) {
    m_enablementDependency = std::move(expression);
  }
  /// Name of the owning connection map: the one setBoardBus gave, else the
  /// owner's name.
  const std::string &getBoardBus() const;
  void setBoardBus(std::string name);
  HBOBoardBus *getOwner() const { return m_owner; }
  void setOwner(HBOBoardBus *owner) { m_owner = owner; }

  /// Appends the pin of each end whose component exists, null where that
  /// component lacks the index; needs an owner bus with an owner board.
  void getPinsVec(std::vector<HBOPinProps *> &out) const;

private:
  // What few nets have: a name of their own, a bus name that is not their
  // owner's.
  struct Names {
    std::string name;
    std::string boardBus;
  };
  Names &names_();

  int m_c1PinIndex = 0;
  int m_c2PinIndex = 0;
  float m_minDelay = 0;
  float m_maxDelay = 0;
  float m_typicalDelay = 0;
  // The number of a generated name, or -1 for the name of m_names.
  int m_number = -1;
  const std::string *m_isEnabled;
  std::shared_ptr<const std::string> m_enablementDependency;
  std::unique_ptr<Names> m_names;
  HBOBoardBus *m_owner = nullptr;
};

#endif
