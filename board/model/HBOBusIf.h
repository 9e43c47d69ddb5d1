// A board interface: a bus, clock or reset of some abstract type that a
// component offers to a design. Its physical side is a list of port maps,
// each naming a model port of the owning component.
#ifndef BOARDLIB_HBOBUSIF_H
#define BOARDLIB_HBOBUSIF_H

#include "HSTFlatMap.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

class HBOBoard;
class HBOBoardComponent;
class HBOBusIfPreference;
class HBOModelPort;
class HBOParameter;
class HBOPinProps;
class HBOPortMap;

class HBOBusIf {
public:
  HBOBusIf() = default;
  /// Drops the object from the script caches, then deletes its parameters,
  /// port maps and preferences. Model ports are not the interface's.
  ~HBOBusIf();
  /// A copy held by \p owner (and its board): name, display name, the
  /// jumper and parameter keys, of_component and a non-empty preset
  /// procedure name carry \p prefix; port maps, model ports, parameters
  /// and preferred IPs are copied. The new model ports are entered in
  /// \p owner, which frees them; without an owner none are made.
  HBOBusIf(const HBOBusIf &src, HBOBoardComponent *owner, const std::string &prefix);
  HBOBusIf(const HBOBusIf &) = delete;
  HBOBusIf &operator=(const HBOBusIf &) = delete;

  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  const std::string &getPresetFile() const { return m_presetFile; }
  void setPresetFile(std::string presetFile) { m_presetFile = std::move(presetFile); }
  bool getDisplayName(std::string &out) const;
  void setDisplayName(std::string displayName) { m_displayName = std::move(displayName); }

  /// The four fields of the abstract type's VLNV.
  bool getAbstractTypeName(std::string &out) const;
  void setAbstractTypeName(std::string name) { m_abstractTypeName = std::move(name); }
  bool getAbstractTypeVersion(std::string &out) const;
  void setAbstractTypeVersion(std::string version) { m_abstractTypeVersion = std::move(version); }
  bool getAbstractTypeVendorName(std::string &out) const;
  void setAbstractTypeVendor(std::string vendor) { m_abstractTypeVendor = std::move(vendor); }
  bool getAbstractTypeLibraryName(std::string &out) const;
  void setAbstractTypeLibrary(std::string library) { m_abstractTypeLibrary = std::move(library); }
  bool getAbstractType(std::string &vendor, std::string &library, std::string &name,
                       std::string &version) const;
  /// vendor, library, name and version with \p separator between them.
  bool getAbstractTypeVLNV(std::string &out, const std::string &separator) const;

  /// "master" or "slave".
  std::string getInterfaceMode() const { return m_interfaceMode; }
  bool getInterfaceMode(std::string &out) const;
  void setInterfaceMode(std::string mode) { m_interfaceMode = std::move(mode); }
  const std::string &getPresetProcName() const { return m_presetProcName; }
  void setPresetProcName(std::string name) { m_presetProcName = std::move(name); }

  /// Port maps, in file order.
  bool getPortMapSeq(std::vector<HBOPortMap *> &out) const;
  std::size_t getPortMapSize() const { return m_portMaps.size(); }
  /// Appends and takes ownership.
  void populatePortMap(HBOPortMap *&portMap);
  /// Appends a map that outlives the interface (one of a port record of
  /// the owning component) without taking ownership.
  void addLentPortMap(HBOPortMap *portMap);
  /// The physical port of each non-null port map, appended in order.
  bool getPhysicalPortSeq(std::vector<std::string> &out) const;
  /// The physical port of the first map whose logical port equals
  /// \p logical ignoring case; an empty \p logical finds nothing.
  bool getPPortByLPort(const std::string &logical, std::string &physical) const;

  /// Parameter texts, name to value.
  bool getParamList(std::map<std::string, std::string> &out) const;
  /// The first entry whose name equals \p name ignoring case.
  bool getParamValue(const std::string &name, std::string &out) const;
  /// Writes the text map only, under the exact name; false for an empty name.
  bool setParam(std::string name, std::string value);
  /// Takes ownership and copies name and value into the text map.
  void addParameter(HBOParameter *parameter);
  bool getParameters(std::vector<HBOParameter *> &out) const;

  /// The preferred IP of order 0; not owned through this pointer.
  HBOBusIfPreference *getPreference() const { return m_preference; }
  void setPreference(HBOBusIfPreference *preference) { m_preference = preference; }
  /// All preferred IPs, owned.
  bool getPreferences(std::vector<HBOBusIfPreference *> &out) const;
  /// Appends one preference and takes ownership.
  bool setPreferences(HBOBusIfPreference *preference);

  HBOBoard *getParentBoard() const { return m_parentBoard; }
  void setParentBoard(HBOBoard *board) { m_parentBoard = board; }
  /// The component that the interface belongs to logically.
  const std::string &getOfComponent() const { return m_ofComponent; }
  void setOfComponent(std::string component) { m_ofComponent = std::move(component); }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }
  /// The component that holds the interface.
  HBOBoardComponent *getOwnerComponent() const { return m_ownerComponent; }
  void setOwnerComponent(HBOBoardComponent *component) { m_ownerComponent = component; }
  const std::string &getIsEnabled() const { return m_isEnabled; }
  void setIsEnabled(std::string isEnabled) { m_isEnabled = std::move(isEnabled); }

  /// The model ports by physical port name (the name is historical: these
  /// are ports, not port maps). Not owned.
  using PortMap = HSTFlatMap<std::string, HBOModelPort *>;
  const PortMap &getPortMaps() const { return m_ports; }
  /// Stores under the port's name, replacing without deleting.
  void addPort(HBOModelPort *port);
  /// Room for \p count more ports and port maps, for a reader that knows
  /// how many come.
  void reservePorts(std::size_t count);
  /// The pins of every port, in port-name order.
  void getPortMapPinPropsSeq(std::vector<HBOPinProps *> &out) const;
  void updatePortPinMap(const std::map<std::string, std::string> &pinRenames);

  /// Enablement dependencies by jumper and by parameter.
  const std::map<std::string, bool> &getJumpers() const { return m_jumpers; }
  void addJumper(const std::string &name, bool value) { m_jumpers[name] = value; }
  const std::map<std::string, bool> &getParams() const { return m_params; }
  void addParam(const std::string &name, bool value) { m_params[name] = value; }

  /// Debug dump on standard output.
  void display(int indent) const;

private:
  std::string m_name;
  std::string m_presetFile;
  std::string m_displayName;
  std::string m_abstractTypeName;
  std::string m_abstractTypeVersion;
  std::string m_abstractTypeVendor;
  std::string m_abstractTypeLibrary;
  std::string m_interfaceMode;
  std::string m_presetProcName;
  std::vector<HBOPortMap *> m_portMaps;
  // Those of m_portMaps that the interface frees.
  std::vector<HBOPortMap *> m_ownedPortMaps;
  std::map<std::string, std::string> m_paramTexts;
  HBOBusIfPreference *m_preference = nullptr;
  HBOBoard *m_parentBoard = nullptr;
  std::string m_ofComponent;
  std::string m_description;
  std::vector<HBOBusIfPreference *> m_preferences;
  HBOBoardComponent *m_ownerComponent = nullptr;
  std::string m_isEnabled = "true";
  PortMap m_ports;
  std::map<std::string, bool> m_jumpers;
  std::map<std::string, bool> m_params;
  std::vector<HBOParameter *> m_parameters;
};

#endif
