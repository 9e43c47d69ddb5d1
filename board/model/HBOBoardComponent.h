// One thing on a board: the FPGA, a chip or a connector. It owns nearly all
// that lies below the board: interfaces, pins, modes, parameters, images,
// drivers, mux positions, design constraints and compatible-connector rows.
//
// Interfaces and model ports are found by upper-cased names, so look-ups
// ignore case; pin names are case-sensitive.
#ifndef BOARDLIB_HBOBOARDCOMPONENT_H
#define BOARDLIB_HBOBOARDCOMPONENT_H

#include "HBOPinProps.h"
#include "HSTChunkStore.h"
#include "HSTFlatMap.h"
#include "HSTStringUtils.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <variant>
#include <vector>

class HBOBoard;
class HBOBoardCompMuxPosition;
class HBOBoardComponentDriver;
class HBOBusIf;
class HBOComponentMode;
class HBOImage;
class HBOModelPort;
struct HBOModelPortRecord;
class HBOParameter;

class HBOBoardComponent {
public:
  /// A DCI cascade: one master bank and its slave banks.
  struct DciCascadeConstr {
    int masterBank = 0;
    std::vector<int> slaveBanks;
  };
  /// An internal reference voltage of one bank.
  struct InternalVrefConstr {
    int bank = 0;
    float voltage = 0;
  };
  using DesignConstr = std::variant<DciCascadeConstr, InternalVrefConstr>;
  using DesignConstrVec = std::vector<DesignConstr>;
  /// (board vendor, board name, board version, connector name).
  using CompatibleConnector = std::tuple<std::string, std::string, std::string, std::string>;

  /// Pins by name, in name order. The names are the component's own copies,
  /// made when the pins were entered.
  using PinMap = HSTFlatMap<std::string_view, HBOPinProps *>;

  /// Pin indexes below this are found by one array access.
  static constexpr int s_pinSlots = 401;

  HBOBoardComponent();
  /// Drops the object from the script caches, then deletes parameters,
  /// images, interfaces, modes, mux positions, drivers, the model ports that
  /// went through setModelPort and, last, the pins.
  ~HBOBoardComponent();
  /// A deep copy owned by \p owner (see HBOBoardComponentDeepCopy.cpp):
  /// names carry \p prefix, the component name lower-cased, and the full
  /// name is made of the owner's identity. Pins keep their names.
  HBOBoardComponent(const HBOBoardComponent &src, HBOBoard *owner, const std::string &prefix);
  HBOBoardComponent(const HBOBoardComponent &) = delete;
  HBOBoardComponent &operator=(const HBOBoardComponent &) = delete;

  // ---- identity ----

  /// The full name vendor:board:component:version.
  const std::string &getName() const { return m_name; }
  void setName(std::string name) { m_name = std::move(name); }
  /// Legacy form: stores the four fields and composes the full name; vendor,
  /// board name, part name and full name are lower-cased, the version not.
  void setName(const std::string &vendor, const std::string &boardName, const std::string &partName,
               const std::string &version);
  /// The lower-cased `name` attribute: the handle of look-ups.
  const std::string &getComponentName() const { return m_componentName; }
  void setComponentName(std::string name) { m_componentName = std::move(name); }
  const std::string &getType() const { return m_type; }
  void setType(std::string type) { m_type = std::move(type); }
  const std::string &getSubType() const { return m_subType; }
  void setSubType(std::string subType) { m_subType = std::move(subType); }
  const std::string &getMajorGroup() const { return m_majorGroup; }
  void setMajorGroup(std::string group) { m_majorGroup = std::move(group); }
  /// The major group, or "Others" when it is empty.
  const std::string &getConnectorCategory() const;
  const std::string &getPinMapFile() const { return m_pinMapFile; }
  void setPinMapFile(std::string file) { m_pinMapFile = std::move(file); }
  /// One field behind three getters: the device or chip ordering code.
  const std::string &getPartName() const { return m_partName; }
  const std::string &getBoardPartName() const { return m_partName; }
  const std::string &getPartString() const { return m_partName; }
  void setPartName(std::string name) { m_partName = std::move(name); }
  bool setPartString(const std::string &name);
  /// The maker of the chip or connector (not the board's vendor).
  const std::string &getVendorName() const { return m_vendorName; }
  const std::string &getVendor() const { return m_vendorName; }
  void setVendorName(std::string vendor) { m_vendorName = std::move(vendor); }
  const std::string &getConnectedToLogicStr() const { return m_connectedTo; }
  void setConnectedToLogicStr(std::string text) { m_connectedTo = std::move(text); }
  const std::string &getRepository() const { return m_repository; }
  void setRepository(std::string repository) { m_repository = std::move(repository); }
  const std::string &getIsEnabled() const { return m_isEnabled; }
  void setIsEnabled(std::string isEnabled) { m_isEnabled = std::move(isEnabled); }
  bool isUserDefined() const { return m_userDefined; }
  void setUserDefinedFlag(bool flag) { m_userDefined = flag; }
  void setRtlFileParseStatus(bool status) { m_fileParseStatus = status; }
  bool isConstraintsDataPopulated() const { return m_constraintsPopulated; }
  const std::string &getBoardChangeLogFilename() const { return rare_().changeLogFile; }
  void setBoardChangeLogFilename(std::string file) { rareMut_().changeLogFile = std::move(file); }
  const std::string &getBoardFile() const { return m_boardFile; }
  void setBoardFile(std::string file) { m_boardFile = std::move(file); }
  /// The old pin constraint file read by populateConstraintsData. No reader
  /// sets it; the setter is for whoever brings such files back.
  const std::string &getConstraintsFile() const { return rare_().constraintsFile; }
  void setConstraintsFile(std::string file) { rareMut_().constraintsFile = std::move(file); }
  const std::string &getImageFile() const { return rare_().imageFile; }
  /// A bare file name is placed in the board file's directory.
  void setImageFile(const std::string &path);
  const std::string &getLibrary() const { return rare_().library; }
  const std::string &getBoardName() const { return rare_().boardName; }
  const std::string &getVersion() const { return rare_().version; }
  const std::string &getBoardRevision() const { return rare_().boardRevision; }
  /// Legacy identity: vendor, library, board name and board revision,
  /// lower-cased, and their joined form.
  void setVLNV(const std::string &vendor, const std::string &library, const std::string &name,
               const std::string &version);
  /// \p family is the fourth text.
  void setBoardDetails(const std::string &a, const std::string &b, const std::string &c,
                       const std::string &family);
  const std::string &getFamily() const { return rare_().family; }
  bool getFamily(std::string &out) const;
  /// The legacy single JTAG position.
  const std::string &getJtagPosition() const { return rare_().jtagPosition; }
  void setJtagPosition(const std::string &position) { rareMut_().jtagPosition = position; }
  const std::string &getSpecUrl() const { return m_specUrl; }
  void setSpecUrl(std::string url) { m_specUrl = std::move(url); }
  const std::string &getDisplayName() const { return m_displayName; }
  void setDisplayName(std::string name) { m_displayName = std::move(name); }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }
  const std::string &getLongDesc() const { return m_longDesc; }
  void setLongDesc(std::string description) { m_longDesc = std::move(description); }
  /// The display name, or the full name when it is empty.
  const std::string &getDisplayNameORVLNVName() const;
  /// The same object, or the same full name.
  bool equals(const HBOBoardComponent &other) const;

  HBOBoard *getBoard() const { return m_board; }
  void setBoard(HBOBoard *board) { m_board = board; }

  // ---- interfaces and model ports ----

  bool getBusIfByName(HBOBusIf *&out, const std::string &name) const;
  HBOBusIf *getBusIfByName(const std::string &name) const;
  bool getModelPortByName(HBOModelPort *&out, const std::string &name) const;
  /// Stores \p busIf under its upper-cased name and tells each model port
  /// of its port maps which interface it serves. The model ports must be
  /// entered first. An interface replaced here leaves the map but is kept,
  /// and freed with the component, as the ports may still name it.
  void setBusIf(const std::string &name, HBOBusIf *const &busIf);
  /// Stores under the interface's own upper-cased name, with no port work.
  void addBoardInterface_(HBOBusIf *busIf);
  /// Stores under the upper-cased name, replacing without deleting; the
  /// component keeps every port given here and frees it with itself.
  void setModelPort(const std::string &name, HBOModelPort *const &port);
  /// \p count port records held in one block that the component frees with
  /// itself, after its interfaces; their ports are never owned through
  /// setModelPort, and their maps are lent to the interfaces.
  HBOModelPortRecord *makeModelPorts(std::size_t count);
  /// Enters every port of every interface as a model port.
  bool createModelPortsForInterfaces();
  /// Keyed by the upper-cased port name, in the order of those keys.
  using ModelPortMap = HSTFlatMap<std::string, HBOModelPort *, HSTStringUtils::UpperLess>;
  const ModelPortMap &getModelPorts() const { return m_modelPorts; }
  /// Appends the non-null ports in name order.
  bool getModelPortSeq(std::vector<HBOModelPort *> &out) const;
  /// Replaces \p out by the model ports of the interface's port maps.
  bool getModelPortsByBusIf(std::vector<HBOModelPort *> &out, const std::string &busIfName) const;
  /// Replaces \p out by the pins of those ports.
  bool getPinPropsByBusIf(std::vector<HBOPinProps *> &out, const std::string &busIfName) const;
  /// Appends all interfaces in name order, null ones included.
  void getInterfacesVec(std::vector<HBOBusIf *> &out) const;
  /// Appends the non-null interfaces in name order; the flag has no effect.
  bool getBusIfSeq(std::vector<HBOBusIf *> &out, bool unused) const;
  /// Appends the interfaces of the abstract type; comparisons ignore case,
  /// an empty version matches any, and "clock_rtl" accepts either library.
  bool getBusIfSeq(std::vector<HBOBusIf *> &out, const std::string &vendor,
                   const std::string &library, const std::string &name,
                   const std::string &version) const;
  /// Appends the names of the interfaces whose abstract type is \p vlnv.
  bool getBusIfSeq(std::vector<std::string> &names, const std::string &vlnv) const;
  /// Replaces \p out by the interfaces that lead to this component: those
  /// of the board's active part (with \p fromActivePart) or of \p source
  /// whose of_component names it, ignoring case, in name order.
  void getOfCompInterfaces(std::vector<HBOBusIf *> &out, bool fromActivePart,
                           HBOBoardComponent *source) const;

  // ---- pins ----

  /// A new pin kept by the component and freed with it, not yet entered.
  /// Its owner (getOwner) is left to the caller: pins listed in the board
  /// file have none. Pins live in a few blocks of the component's, not one
  /// allocation each.
  HBOPinProps *createPin();
  /// A copy of \p src kept by the component, as createPin makes them, with
  /// the component as owner if \p src has one; not yet entered.
  HBOPinProps *createPin(const HBOPinProps &src, HBOModelPort *port);
  /// Makes room for \p count more pins in one block, and for \p nameBytes
  /// more bytes of their names.
  void reservePins(std::size_t count, std::size_t nameBytes = 0);
  /// Enters \p pin, made by createPin, under its name and, below 401, in
  /// its index slot. A former pin of that name is destroyed; a former holder
  /// of the index only loses the slot. Collisions are the reader's to report.
  void addPin(HBOPinProps *pin);
  /// Enters the pins, made by createPin, as addPin would in name order; of
  /// pins with the same name only the last given is entered, and the others
  /// are destroyed. \p pins is left in that order, with the pins entered.
  void addPins(std::vector<HBOPinProps *> &pins);
  /// Below 401, the pin last entered with that index, unless it lost the
  /// slot; any other index gives the first pin in name order that was
  /// entered with it.
  HBOPinProps *getPinByIndex(int index) const;
  HBOPinProps *findPin(const std::string &name) const;
  int findPinIndex(const std::string &name) const;
  const PinMap &getPins() const { return m_pins; }
  /// Appends the pins in name order.
  void getPinsVec(std::vector<HBOPinProps *> &out) const;
  /// Fills the pins of an older board's ports from the constraints file,
  /// once. Always false: isConstraintsDataPopulated tells the outcome.
  bool populateConstraintsData(std::string file);

  // ---- integrated boards; `this` is the FPGA of the integrated board ----

  /// Brings onto this FPGA every interface of \p daughter whose pins all
  /// trace through \p base to this FPGA, with its pins renamed to the
  /// FPGA's and their IO properties passed on. Always true.
  bool copyInterfacesFromComponent(const HBOBoardComponent *base,
                                   const HBOBoardComponent *daughter);
  /// Appends the interfaces of \p daughter that can be brought over whole.
  void getInterfacesWhichCanBeConnected(const HBOBoardComponent *base,
                                        const HBOBoardComponent *daughter,
                                        std::vector<HBOBusIf *> &out) const;
  /// Daughter pin name to FPGA pin name for each pin of \p intf that traces.
  void getInterfaceConnectedPins(HBOBusIf *intf, const HBOBoardComponent *base,
                                 const HBOBoardComponent *daughter,
                                 std::map<std::string, std::string> &out) const;
  /// Gives each FPGA pin of \p pinMap the IO properties of the daughter
  /// pin of \p from that maps to it.
  void copyInterfacePinProperties(HBOBusIf *from, HBOBusIf *to,
                                  const std::map<std::string, std::string> &pinMap);
  /// Renames every interface to "prefix_name", entered under its new name.
  void prefixInterfaceNames(const std::string &prefix);

  // ---- owned records ----

  const std::vector<HBOParameter *> &getParameters() const { return m_parameters; }
  void getParameters(std::vector<HBOParameter *> &out) const { out = m_parameters; }
  void addParameter(HBOParameter *parameter);
  /// The value of the first parameter of exactly this name.
  bool getParamValue(const std::string &name, std::string &out) const;
  const std::vector<HBOImage *> &getImages() const { return m_images; }
  void getImages(std::vector<HBOImage *> &out) const { out = m_images; }
  void addImage(HBOImage *image);
  void getComponentModes(std::vector<HBOComponentMode *> &out) const { out = m_modes; }
  std::size_t getComponentModeCount() const { return m_modes.size(); }
  void addComponentMode(HBOComponentMode *mode);
  /// Renames a jumper in the expression of each mode, in mode order.
  void updateEnablementDependencyJumperName(const std::string &oldName, const std::string &newName);
  void getIICPositions(std::map<int, HBOBoardCompMuxPosition *> &out) const {
    out = m_muxPositions;
  }
  /// Enters the position under its number; one entered before under that
  /// number is deleted.
  void addIICPosition(HBOBoardCompMuxPosition *position);
  void getDrivers(std::vector<HBOBoardComponentDriver *> &out) const { out = m_drivers; }
  void addDriver(HBOBoardComponentDriver *driver);
  const DesignConstrVec &getDesignConstrs() const { return m_designConstrs; }
  void setDesignConstrs(const DesignConstrVec &constrs) { m_designConstrs = constrs; }

  // ---- JTAG ----

  /// Chain name to position.
  void getJtagPositions(std::map<std::string, std::string> &out) const { out = m_jtagPositions; }
  void addJtagPosition(const std::string &chain, const std::string &position);
  /// The position on \p chain, or an empty string.
  std::string getJtagPosition(const std::string &chain) const;
  /// The number of positions; with exactly one, \p out gets it, else empty.
  int getJtagPositionForSingleChain(std::string &out) const;

  // ---- supported parts ----

  bool hasAdditionalSupportedParts() const { return !m_additionalParts.empty(); }
  void addAdditionalSupportedPart(const std::string &part) { m_additionalParts.push_back(part); }
  /// Replaces \p out by the part name (with \p includeMain) and the others.
  void getAdditionalSupportedPartNames(std::vector<std::string> &out, bool includeMain) const;
  bool isPartNameSupported(const std::string &name) const;
  /// Swaps \p newName with the current part; false when it is not supported.
  bool updatePartName(const std::string &newName);
  bool isPartUpdated() const { return m_partUpdated; }

  // ---- connection sides and kinds ----

  bool isConnectedToLogicOnly() const;
  bool isConnectedToPSOnly() const;
  bool isConnectedToPSAndLogic() const;
  /// True without a "compatible_som_vln" parameter, else when it matches.
  bool isCompatibleWithSomVLN(const std::string &vln) const;

  /// Connector predicates: the type must be "connector" and the sub type
  /// one of the listed words, both compared exactly.
  bool isLPCConnector() const;
  bool isLPCPlusConnector() const;
  bool isHPCConnector() const;
  bool isLPCCategoryConnector() const;
  bool isDIMMConnector() const;
  bool isPMODConnector() const;
  bool isSOM240Connector() const;
  bool isSOM480Connector() const;
  bool isSOMCategoryConnector() const;
  bool isDockline160Connector() const;
  bool isConnector() const;

  /// Rows naming the daughter connectors this connector is declared to fit.
  std::vector<CompatibleConnector> getCompatibleConnectors() const {
    return m_compatibleConnectors;
  }
  void addCompatibleConnector(const std::string &vendor, const std::string &boardName,
                              const std::string &boardVersion, const std::string &connectorName);

  // ---- connector compatibility ----
  // Defined with the integrated boards, which are what these answers serve.

  /// The families within which connectors can mate. Any mix of sub types
  /// inside one family fits; a connector of no family fits only by
  /// declaration.
  enum class ConnectorFamily { None, DIMM, PMOD, LPC, SOM };
  /// The first family that holds, in the order DIMM, PMOD, LPC, SOM.
  ConnectorFamily getConnectorFamily() const;
  /// The number of pins a mated pair of this sub type wires, index for
  /// index; 0 for a sub type that has no such count.
  static int getConnectorPinCount(const std::string &subType);

  /// \p this is the daughter connector; the answer is the cache of the
  /// board of \p base.
  bool isFullCompatibleWithConnector(const HBOBoardComponent &base) const;
  bool isPartialCompatibleWithConnector(const HBOBoardComponent &base) const;
  /// Computed: both are connectors of one family and every interface of
  /// \p daughter traces to \p fpga (full), or some interface does not
  /// (partial). No state of \p this is used.
  bool isFullCompatibleWithConnector(const HBOBoardComponent *fpga,
                                     const HBOBoardComponent *daughter,
                                     const HBOBoardComponent *base) const;
  bool isPartialCompatibleWithConnector(const HBOBoardComponent *fpga,
                                        const HBOBoardComponent *daughter,
                                        const HBOBoardComponent *base) const;
  /// Whether a row of \p daughter names \p base on its board; a row's
  /// version "*" matches every version.
  static bool isExplicitlyCompatibleWithConnector(const HBOBoardComponent *daughter,
                                                  const HBOBoardComponent *base);

  /// Pin trace, \p this being the FPGA: the daughter pin \p pinName meets
  /// the base connector's pin of the same index, whose name is that of the
  /// FPGA pin wired to it. False when any step finds nothing.
  bool findConnectedPinConnectedToFMCConnectorPin(const HBOBoardComponent *base,
                                                  const HBOBoardComponent *daughter,
                                                  const std::string &pinName,
                                                  std::string &fpgaPinName) const;
  bool isFMCConnectorPinConnected(const HBOBoardComponent *base, const HBOBoardComponent *daughter,
                                  const std::string &pinName) const;
  bool isFMCConnectorPinConnected1(const HBOBoardComponent *base, const HBOBoardComponent *daughter,
                                   HBOPinProps *pin) const;
  /// True when every pin of the interface's port maps traces, or it has
  /// none.
  bool isFMCBusInterfaceFullyConnected(const HBOBoardComponent *base,
                                       const HBOBoardComponent *daughter, HBOBusIf *intf) const;
  bool canCopyFMCBusInterface(const HBOBoardComponent *base, const HBOBoardComponent *daughter,
                              HBOBusIf *intf) const;

  /// Debug dump on standard output.
  void display(int indent) const;

private:
  bool isConnectorOfSubType_(const char *subType) const;
  /// Enters \p busIf under \p key, keeping the one it replaces for deletion.
  void storeInterface_(const std::string &key, HBOBusIf *busIf);
  /// Drops \p pin from the index look-ups.
  void unindexPin_(HBOPinProps *pin);
  /// Enters \p pin in the index look-ups.
  void indexPin_(HBOPinProps *pin);
  /// The component's copy of a pin name, for the key of the pin map.
  std::string_view keepPinName_(const std::string &name);
  /// Makes sure that \p bytes of pin names fit without a new block.
  void reservePinNames_(std::size_t bytes);

  // Legacy identity and files: set on few components, so kept apart and
  // made only when one of them is set.
  struct Rare {
    std::string changeLogFile;
    std::string constraintsFile;
    std::string imageFile;
    std::string library;
    std::string boardName;
    std::string version;
    std::string boardRevision;
    std::string legacyVlnv;
    std::string boardDetail1;
    std::string boardDetail2;
    std::string family;
    std::string boardDetail3;
    std::string jtagPosition;
  };
  const Rare &rare_() const;
  Rare &rareMut_();

  std::string m_name;
  std::string m_componentName;
  std::string m_type;
  std::string m_subType;
  std::string m_majorGroup;
  std::string m_pinMapFile;
  std::string m_partName;
  std::string m_vendorName;
  std::string m_connectedTo;
  std::string m_repository;
  std::string m_isEnabled = "true";
  std::unique_ptr<Rare> m_rare;
  bool m_userDefined = false;
  bool m_fileParseStatus = false;
  bool m_constraintsPopulated = false;
  std::string m_boardFile;
  std::string m_specUrl;
  std::string m_displayName;
  std::string m_description;
  std::string m_longDesc;
  ModelPortMap m_modelPorts;
  std::vector<HBOParameter *> m_parameters;
  std::vector<HBOImage *> m_images;
  std::vector<HBOComponentMode *> m_modes;
  std::map<std::string, HBOBusIf *> m_interfaces;
  // Every pin createPin made; they go with the component.
  HSTChunkStore<HBOPinProps> m_pinStore;
  // The texts of the pin map's keys, in blocks that never move.
  std::vector<std::unique_ptr<char[]>> m_pinNameBlocks;
  std::size_t m_pinNameRoom = 0;
  std::size_t m_pinNameBlockSize = 0;
  char *m_pinNameFree = nullptr;
  PinMap m_pins;
  // Index look-ups: a slot per index below s_pinSlots, grown as far as the
  // indexes entered need, and the other indexes sorted, each with the pin
  // entered under it.
  std::vector<HBOPinProps *> m_pinSlots;
  std::vector<std::pair<int, HBOPinProps *>> m_otherPinIndexes;
  std::map<std::string, std::string> m_jtagPositions;
  std::map<int, HBOBoardCompMuxPosition *> m_muxPositions;
  std::vector<HBOBoardComponentDriver *> m_drivers;
  DesignConstrVec m_designConstrs;
  std::vector<std::string> m_additionalParts;
  bool m_partUpdated = false;
  std::vector<CompatibleConnector> m_compatibleConnectors;
  HBOBoard *m_board = nullptr;
  // Every model port that went through setModelPort, possibly more than
  // once; freed with the component.
  std::vector<HBOModelPort *> m_ownedModelPorts;
  std::vector<std::unique_ptr<HBOModelPortRecord[]>> m_portBlocks;
  // Interfaces displaced from the map by a later one of the same name;
  // freed with the component.
  std::vector<HBOBusIf *> m_replacedInterfaces;
};

#endif
