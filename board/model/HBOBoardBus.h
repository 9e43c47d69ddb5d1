// A connection map: a range of pins of one component wired to a range of
// pins of another. The bus owns its nets, one per wire; those it makes
// itself sit in one block rather than one allocation each.
#ifndef BOARDLIB_HBOBOARDBUS_H
#define BOARDLIB_HBOBOARDBUS_H

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class HBOBoard;
class HBOBoardBusNet;
class HBOBoardComponent;

class HBOBoardBus {
public:
  HBOBoardBus() = default;
  /// Drops the object from the script caches, then deletes its nets.
  ~HBOBoardBus();
  /// A copy owned by \p owner: its name, both end components and its
  /// connection name carry \p prefix; each net is copied for the copy.
  HBOBoardBus(const HBOBoardBus &src, HBOBoard *owner, const std::string &prefix);
  HBOBoardBus(const HBOBoardBus &) = delete;
  HBOBoardBus &operator=(const HBOBoardBus &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getComp1() const { return m_comp1; }
  void setComp1(std::string comp) { m_comp1 = std::move(comp); }
  const std::string &getComp2() const { return m_comp2; }
  void setComp2(std::string comp) { m_comp2 = std::move(comp); }
  HBOBoard *getOwner() const { return m_owner; }
  void setOwner(HBOBoard *owner) { m_owner = owner; }
  const std::string &getConnectionName() const { return m_connectionName; }
  void setConnectionName(std::string name) { m_connectionName = std::move(name); }
  float getDelay() const { return m_delay; }
  void setDelay(float delay) { m_delay = delay; }
  float getMinDelay() const { return m_minDelay; }
  void setMinDelay(float delay) { m_minDelay = delay; }
  float getMaxDelay() const { return m_maxDelay; }
  void setMaxDelay(float delay) { m_maxDelay = delay; }
  const std::string &getIsEnabled() const { return m_isEnabled; }
  void setIsEnabled(std::string isEnabled) { m_isEnabled = std::move(isEnabled); }
  const std::string &getEnablementDependency() const { return m_enablementDependency; }
  void setEnablementDependency(std::string expression) {
    m_enablementDependency = std::move(expression);
  }
  /// Renames a jumper in the expression, as on a component mode.
  void updateEnablementDependencyJumperName(const std::string &oldName, const std::string &newName);
  int getStartIndexComp1() const { return m_startIndexComp1; }
  void setStartIndexComp1(int index) { m_startIndexComp1 = index; }
  int getStopIndexComp1() const { return m_stopIndexComp1; }
  void setStopIndexComp1(int index) { m_stopIndexComp1 = index; }
  int getStartIndexComp2() const { return m_startIndexComp2; }
  void setStartIndexComp2(int index) { m_startIndexComp2 = index; }
  int getStopIndexComp2() const { return m_stopIndexComp2; }
  void setStopIndexComp2(int index) { m_stopIndexComp2 = index; }

  /// Appends and takes ownership.
  void addBoardBusNet(HBOBoardBusNet *net);
  /// Appends \p count nets owned by the bus, default made but for their
  /// owner, and gives the first; they stay where they are for the bus's life.
  HBOBoardBusNet *makeBoardBusNets(std::size_t count);
  const std::vector<HBOBoardBusNet *> &getBoardBusNets() const { return m_nets; }
  void getBoardBusNets(std::vector<HBOBoardBusNet *> &out) const { out = m_nets; }

  /// Empties \p out, then appends the owner's components of the two ends
  /// that exist; without an owner it stays empty.
  void getBusComponentsVec(std::vector<HBOBoardComponent *> &out) const;

  /// One debug line on standard output.
  void display(int indent) const;

private:
  std::string m_name;
  std::string m_comp1;
  std::string m_comp2;
  HBOBoard *m_owner = nullptr;
  std::string m_connectionName;
  float m_delay = 0;
  float m_minDelay = 0;
  float m_maxDelay = 0;
  std::string m_isEnabled = "true";
  std::string m_enablementDependency;
  int m_startIndexComp1 = 0;
  int m_stopIndexComp1 = 0;
  int m_startIndexComp2 = 0;
  int m_stopIndexComp2 = 0;
  std::vector<HBOBoardBusNet *> m_nets;
  // The nets made by makeBoardBusNets: the reader asks once per bus, so
  // the first block is held here and any later ones behind it.
  struct NetBlock {
    std::unique_ptr<HBOBoardBusNet[]> nets;
    std::size_t count = 0;
  };
  NetBlock m_netBlock;
  std::vector<NetBlock> m_moreNetBlocks;
  bool ownsInBlock_(const HBOBoardBusNet *net) const;
};

#endif
