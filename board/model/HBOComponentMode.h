// One operating mode of a component: a named set of board interfaces that
// work together, the IPs that fit it, and the jumpers it depends on.
#ifndef BOARDLIB_HBOCOMPONENTMODE_H
#define BOARDLIB_HBOCOMPONENTMODE_H

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

class HBOBoardComponent;
class HBOBusIfPreference;

class HBOComponentMode {
public:
  /// order to (interface name, optional flag).
  using InterfaceMap = std::map<std::int32_t, std::pair<std::string, bool>>;

  HBOComponentMode() = default;
  /// Drops the object from the script caches, then deletes its preferred IPs.
  ~HBOComponentMode();
  /// A copy owned by \p owner: name, display name and the interface names
  /// carry \p prefix; each preferred IP is copied for the owner's board.
  HBOComponentMode(const HBOComponentMode &src, HBOBoardComponent *owner,
                   const std::string &prefix);
  HBOComponentMode(const HBOComponentMode &) = delete;
  HBOComponentMode &operator=(const HBOComponentMode &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getDisplayName() const { return m_displayName; }
  void setDisplayName(std::string displayName) { m_displayName = std::move(displayName); }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }

  /// Enters the interface at \p order; an order already there is overwritten.
  void addInterface(std::int32_t order, const std::pair<std::string, bool> &nameAndOptional);
  /// Replaces \p out by all entries.
  void getInterfaces(InterfaceMap &out) const;
  /// Replaces \p out by the entries that are not optional.
  void getRequiredInterfaces(InterfaceMap &out) const;

  /// The preferred IPs in the order added; they stay owned by the mode.
  void getPreferredIps(std::vector<HBOBusIfPreference *> &out) const;
  /// Appends and takes ownership.
  void addPreferredIp(HBOBusIfPreference *preference);

  const std::string &getEnablementDependency() const { return m_enablementDependency; }
  void setEnablementDependency(std::string expression) {
    m_enablementDependency = std::move(expression);
  }
  /// Renames a jumper in the expression: every occurrence of \p oldName,
  /// ignoring case and token borders, becomes \p newName in lower case.
  void updateEnablementDependencyJumperName(const std::string &oldName, const std::string &newName);
  const std::string &getPresetProcName() const { return m_presetProcName; }
  void setPresetProcName(std::string name) { m_presetProcName = std::move(name); }
  const std::string &getIsEnabled() const { return m_isEnabled; }
  void setIsEnabled(std::string isEnabled) { m_isEnabled = std::move(isEnabled); }
  HBOBoardComponent *getOwnerComponent() const { return m_ownerComponent; }
  void setOwnerComponent(HBOBoardComponent *component) { m_ownerComponent = component; }

  /// Debug dump on standard output.
  void display(int indent) const;

private:
  std::string m_name;
  std::string m_displayName;
  std::string m_description;
  InterfaceMap m_interfaces;
  std::vector<HBOBusIfPreference *> m_preferredIps;
  std::string m_enablementDependency;
  std::string m_presetProcName;
  std::string m_isEnabled = "true";
  HBOBoardComponent *m_ownerComponent = nullptr;
};

#endif
