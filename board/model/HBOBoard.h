// The root of one board definition: its identity, the files it came from,
// its board-level records, its connections, its IP presets and its
// components. Most component-level questions are forwarded to the active
// part, the component that carries the FPGA.
#ifndef BOARDLIB_HBOBOARD_H
#define BOARDLIB_HBOBOARD_H

#include "HBOBoardDataProps.h"
#include "HBOPowerRail.h"
#include "HSTVector.h"

#include <boost/any.hpp>

#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

class HBOBoardBus;
class HBOBoardBusNet;
class HBOBoardComponent;
class HBOBoardDB;
class HBOBusIf;
class HBOImage;
class HBOIpPreset;
class HBOJumper;
class HBOModelPort;
class HBOParameter;
class HBOPinProps;

class HBOBoard {
public:
  using PresetMap = std::map<std::string, std::vector<HBOIpPreset *>>;
  using ConnectorCache = std::map<std::string, HSTVector<HBOBoardComponent *>>;
  /// (connector on the base board, daughter board, connector on it).
  using IntegratedConnection = std::tuple<std::string, const HBOBoard *, std::string>;

  HBOBoard() = default;
  /// Drops the board from the script caches, then deletes what it owns.
  ~HBOBoard();
  /// The shell of an integrated board: a deep copy of \p src named
  /// src vendor:\p newBoardName:src version, with no file, power rails,
  /// data properties, connected-board maps or compatibility caches.
  HBOBoard(const HBOBoard &src, std::string newBoardName);
  HBOBoard(const HBOBoard &) = delete;
  HBOBoard &operator=(const HBOBoard &) = delete;

  // ---- identity ----

  /// Stores the three fields and the full name vendor:boardName:version;
  /// vendor, board name and full name are lower-cased, the version field not.
  void setName(const std::string &vendor, const std::string &boardName, const std::string &version);
  /// The full name.
  const std::string &getName() const { return m_name; }
  bool getName(std::string &out) const;
  const std::string &getVendor() const { return m_vendor; }
  const std::string &getBoardName() const { return m_boardName; }
  const std::string &getVersion() const { return m_version; }
  const std::string &getBoardRevision() const { return m_boardRevision; }
  const std::string &getFileRevision() const { return m_fileRevision; }
  void setFileRevision(std::string revision) { m_fileRevision = std::move(revision); }
  const std::string &getDescription() const { return m_description; }
  void setDescription(std::string description) { m_description = std::move(description); }
  const std::string &getLongDesc() const { return m_longDesc; }
  void setLongDesc(std::string description) { m_longDesc = std::move(description); }
  const std::string &getDisplayName() const { return m_displayName; }
  void setDisplayName(std::string name) { m_displayName = std::move(name); }
  const std::string &getSpecUrl() const { return m_specUrl; }
  void setSpecUrl(std::string url) { m_specUrl = std::move(url); }
  const std::string &getMigratedFromSchema() const { return m_migratedFromSchema; }
  void setMigratedFromSchema(std::string schema) { m_migratedFromSchema = std::move(schema); }
  std::string getBoardSchemaVersion() const { return m_boardSchemaVersion; }
  void setBoardSchemaVersion(std::string schema) { m_boardSchemaVersion = std::move(schema); }
  const std::string &getPresetFile() const { return m_presetFile; }
  bool setPresetFile(std::string file);
  const std::string &getBoardImage() const { return m_boardImage; }
  void setBoardImage(std::string image) { m_boardImage = std::move(image); }
  /// These three also pass the value to the active part, when there is one.
  const std::string &getBoardFile() const { return m_boardFile; }
  void setBoardFile(const std::string &file);
  const std::string &getChangeLogFilename() const { return m_changeLogFile; }
  void setChangeLogFilename(const std::string &file);
  const std::string &getRepository() const { return m_repository; }
  void setRepository(const std::string &repository);
  bool isUserDefined() const { return m_userDefined; }
  /// Also passed to the active part.
  void setUserDefinedFlag(bool flag);

  /// Replaces the revisions and takes the latest as the board revision.
  void setCompatibleBoardRevisions(const std::map<int, std::string> &revisions);
  const std::map<int, std::string> &getCompatibleBoardRevisions() const { return m_revisions; }
  /// The text of the highest id, trimmed; empty without revisions.
  std::string getLatestBoardRevision() const;
  /// Replaces \p out by "{id text}" per revision, in id order, untrimmed.
  void getCompatibleBoardRevisionsAsVec(std::vector<std::string> &out) const;

  // ---- board kind ----

  bool isIntegratedBoard() const { return m_integrated; }
  void setIntegratedBoard(bool integrated) { m_integrated = integrated; }
  void setBaseBoard(const HBOBoard *board) { m_baseBoard = board; }
  /// The base board, but only while the board is integrated.
  const HBOBoard *getBaseBoard() const;
  const std::string &getBaseBoardName() const;
  const std::string &getBaseBoardFullName() const;
  /// base vendor:base board name:this active part's component name:base
  /// version on an integrated board; else getActivePartName().
  std::string getBaseBoardActivePartName() const;
  bool hasFPGAPart() const;
  /// Not integrated and has an FPGA part.
  bool isReferenceBoard() const;
  /// Not integrated and no FPGA part.
  bool isDaughterBoard() const;
  bool getSupportsCED() const { return m_supportsCED; }
  void setSupportsCED(bool supports) { m_supportsCED = supports; }

  // ---- active part ----

  /// The cached active part; when none is cached the first FPGA by name is
  /// looked up and cached.
  HBOBoardComponent *getActivePart();
  HBOBoardComponent *getActivePart() const;
  void setActivePart(HBOBoardComponent *component) { m_activePart = component; }
  /// The cached active part's full name, or an empty text; no search.
  std::string getActivePartName() const;
  HBOBoardComponent *findFpgaComponent() const;
  HBOBoardComponent *findFpgaComponent(const std::string &name) const;

  // ---- forwarded to the cached active part; harmless without one ----

  void setVLNV(const std::string &vendor, const std::string &library, const std::string &name,
               const std::string &version);
  void setBoardDetails(const std::string &a, const std::string &b, const std::string &c,
                       const std::string &family);
  void setImageFile(const std::string &path);
  void setBusIf(const std::string &name, HBOBusIf *const &busIf);
  void setModelPort(const std::string &name, HBOModelPort *const &port);
  void setJtagPosition(const std::string &position);
  bool setPartString(const std::string &part);
  bool populateConstraintsData(const std::string &file);
  bool getBusIfByName(HBOBusIf *&out, const std::string &name) const;
  HBOBusIf *getBusIfByName(const std::string &name) const;
  bool getBusIfSeq(std::vector<HBOBusIf *> &out, bool unused) const;
  bool getBusIfSeq(std::vector<HBOBusIf *> &out, const std::string &vendor,
                   const std::string &library, const std::string &name,
                   const std::string &version) const;
  bool getBusIfSeq(std::vector<std::string> &names, const std::string &vlnv) const;
  bool getModelPortsByBusIf(std::vector<HBOModelPort *> &out, const std::string &busIfName) const;
  bool getPinPropsByBusIf(std::vector<HBOPinProps *> &out, const std::string &busIfName) const;
  bool getModelPortByName(HBOModelPort *&out, const std::string &name) const;
  bool getModelPortSeq(std::vector<HBOModelPort *> &out) const;
  bool getFamily(std::string &out) const;
  bool hasAdditionalSupportedParts() const;
  bool isPartNameSupportedByBoard(const std::string &name) const;
  bool isPartUpdated() const;
  const std::string &getLibrary() const;
  const std::string &getBoardPartName() const;
  const std::string &getPartString() const;
  const std::string &getFamily() const;
  const std::string &getJtagPosition() const;
  const std::string &getImageFile() const;
  bool isConstraintsDataPopulated() const;
  /// \p out is emptied in every case.
  void getAdditionalSupportedPartNames(std::vector<std::string> &out, bool includeMain) const;
  /// Moves the active part, which must exist, to another supported device;
  /// an unsupported name is reported.
  void updateBoardPart(const std::string &partName);

  // ---- containers ----

  void addJtagChain(const std::string &chain) { m_jtagChains.push_back(chain); }
  const std::vector<std::string> &getJtagChains() const { return m_jtagChains; }
  void addParameter(HBOParameter *parameter);
  const std::vector<HBOParameter *> &getParameters() const { return m_parameters; }
  void getParameters(std::vector<HBOParameter *> &out) const { out = m_parameters; }
  void addJumper(HBOJumper *jumper);
  const std::vector<HBOJumper *> &getJumpers() const { return m_jumpers; }
  void getJumpers(std::vector<HBOJumper *> &out) const { out = m_jumpers; }
  void addImage(HBOImage *image);
  const std::vector<HBOImage *> &getImages() const { return m_images; }
  void getImages(std::vector<HBOImage *> &out) const { out = m_images; }
  void addBus(HBOBoardBus *bus);
  const std::vector<HBOBoardBus *> &getBuses() const { return m_buses; }
  void getBuses(std::vector<HBOBoardBus *> &out) const { out = m_buses; }
  void setPowerRails(const std::vector<HBOPowerRail> &rails) { m_powerRails = rails; }
  const std::vector<HBOPowerRail> &getPowerRails() const { return m_powerRails; }
  void setBoardDataProps(const std::map<std::string, boost::any> &data);
  const HBOBoardDataProps &getBoardDataProps() const { return m_dataProps; }

  /// Under the upper-cased name; an empty name is ignored.
  void setIpPreset(const std::string &name, std::vector<HBOIpPreset *> presets);
  void setIpAssociatedInterface(const std::string &name, std::vector<HBOIpPreset *> presets);
  const PresetMap &getIpPresets() const { return m_ipPresets; }
  const PresetMap &getIpAssociatedInterfaces() const { return m_ipAssocInterfaces; }

  /// Enters the component under its component name. A component entered
  /// before under that name leaves the map but stays alive, owned by the
  /// board, since the board (its active part) or its objects may still point
  /// to it.
  void addBoardComponent(HBOBoardComponent *component);
  const std::map<std::string, HBOBoardComponent *> &getBoardComponents() const {
    return m_components;
  }
  /// Appends all components in name order.
  void getBoardComponentsVec(std::vector<HBOBoardComponent *> &out) const;
  /// Appends the components that are connectors.
  void getConnectorsList(HSTVector<HBOBoardComponent *> &out) const;

  void addConnectedBoard(const std::string &alias, const std::string &id);
  const std::map<std::string, std::string> &getConnectedBoards() const { return m_connectedBoards; }
  /// "board1#connector1" to "board2#connector2".
  void addConnectedComponents(const std::string &board1, const std::string &connector1,
                              const std::string &board2, const std::string &connector2);
  const std::map<std::string, std::string> &getConnectedComponents() const {
    return m_connectedComponents;
  }

  /// The connections an integrated board is composed of.
  void addIntegratedBoardConnection(const std::string &baseConnector, const HBOBoard *daughter,
                                    const std::string &daughterConnector);
  std::vector<IntegratedConnection> getIntegratedBoardConnections() const {
    return m_integratedConnections;
  }
  /// "{base connector} {daughter component}" per connection, joined by blanks.
  std::string getIntegratedBoardConnectionsAsString() const;
  /// The same between braces; "{}" without connections.
  std::string getIntegratedBoardConnectionsAsStringProperty() const;

  // ---- look-ups ----

  /// Exact look-up by component name.
  HBOBoardComponent *findBoardComponent(const std::string &name) const;
  /// Look-up by component name ignoring case, first in name order.
  HBOBoardComponent *getCompByName(const std::string &name) const;
  /// Asks each connector in name order; the active part is not asked.
  bool getBusIfByNameUsingConnectors(HBOBusIf *&out, const std::string &name) const;
  /// The value of the first parameter of exactly this name.
  bool getParamValue(const std::string &name, std::string &value) const;
  /// Appends each bus with an end at \p name, once.
  void getBusesOfComponent(const std::string &name, std::vector<HBOBoardBus *> &out) const;
  /// Appends the nets of those buses.
  void getNetsOfComponent(const std::string &name, std::vector<HBOBoardBusNet *> &out) const;
  /// Appends the buses from \p c1 to \p c2; the direction counts.
  void getBoardBusesConnectingComponents(const HBOBoardComponent *c1, const HBOBoardComponent *c2,
                                         HSTVector<HBOBoardBus *> &out) const;
  /// Appends the connectors wired to \p component by a bus; false for null.
  bool getConnectedConnectors(const HBOBoardComponent *component,
                              std::vector<HBOBoardComponent *> &out) const;
  /// Appends (base connector, daughter connector) per integrated connection.
  void
  getConnectedConnectors(HSTVector<std::pair<HBOBoardComponent *, HBOBoardComponent *>> &out) const;
  /// The daughter connector plugged onto the base connector \p component.
  HBOBoardComponent *getConnectorConnected(const HBOBoardComponent *component) const;
  bool isConnectorConnected(const HBOBoardComponent *component) const;

  // ---- connector compatibility caches ----
  // Defined with the integrated boards. Only a reference board keeps them;
  // they point into other boards of the repository, which rebuilds them
  // after each load and refresh.

  /// On a reference board, rebuilds the caches from the connectors of the
  /// daughter boards among \p boards, in that order; else does nothing.
  void rebuildConnectorsCompatibilityCache(const std::vector<HBOBoard *> &boards);
  /// Sorts each pair of (own connector, daughter connector) into the
  /// explicit, else the full, else the partial list, or none.
  void
  rebuildConnectorsCompatibilityCache(const HSTVector<HBOBoardComponent *> &daughterConnectors);
  /// Rebuilds the caches of every reference board among \p boards, as the
  /// first form would on each, but gathers the daughter connectors once:
  /// the repositories' rebuild stays linear in the number of boards.
  static void rebuildConnectorsCompatibilityCaches(const std::vector<HBOBoard *> &boards);
  /// Append \p daughter under the full name of \p base; nulls are ignored.
  void addToPartiallyCompatibleConnectorsList(const HBOBoardComponent *base,
                                              HBOBoardComponent *daughter);
  void addToFullyCompatibleConnectorsList(const HBOBoardComponent *base,
                                          HBOBoardComponent *daughter);
  void addToExplicitlyCompatibleConnectorsList(const HBOBoardComponent *base,
                                               HBOBoardComponent *daughter);
  const ConnectorCache &getPartiallyCompatibleConnectors() const {
    return m_partiallyCompatibleConnectors;
  }
  const ConnectorCache &getFullyCompatibleConnectors() const { return m_fullyCompatibleConnectors; }
  const ConnectorCache &getExplicitlyCompatibleConnectors() const {
    return m_explicitlyCompatibleConnectors;
  }
  /// The explicit list of \p base when it has one, which hides the others;
  /// else the partial list followed by the full list.
  void getCompatibleConnectorsList(const HBOBoardComponent &base,
                                   HSTVector<HBOBoardComponent *> &out) const;
  /// That list with only the newest version of each connector, compared as
  /// numbers; names without a numeric version stay. In pointer order.
  void getLatestCompatibleConnectorsList(const HBOBoardComponent &base,
                                         HSTVector<HBOBoardComponent *> &out) const;
  /// Appends to \p out the components of \p in that the latest list keeps,
  /// in pointer order, each once.
  static void filterLatestConnectors(const HSTVector<HBOBoardComponent *> &in,
                                     HSTVector<HBOBoardComponent *> &out);
  /// Whether \p daughter stands in the full (partial) list of \p base.
  bool isConnectorFullCompatibleWithConnector(const HBOBoardComponent &base,
                                              const HBOBoardComponent &daughter) const;
  bool isConnectorPartialCompatibleWithConnector(const HBOBoardComponent &base,
                                                 const HBOBoardComponent &daughter) const;

  // ---- persistence and debugging ----

  void attach(HBOBoardDB *db) { m_db = db; }
  /// Saves through the attached hook; nothing without one.
  void saveBoard();
  void print_dbg_msg(const std::string &) const {}
  /// Debug dump on standard output.
  void display(int indent) const;

  // ---- deep copy (board/integrated/HBOBoardDeepCopy.cpp) ----

  /// Pulls all of \p src into this board, names carrying \p prefix: its
  /// parameters, JTAG chains, jumpers, images, components (no FPGA),
  /// connections, presets and associated interfaces.
  void copyBoardInformation(const HBOBoard &src, const std::string &prefix);
  void copyParameters(const HBOBoard &src, const std::string &prefix);
  void copyJtagChains(const HBOBoard &src, const std::string &prefix);
  void copyJumpers(const HBOBoard &src, const std::string &prefix);
  void copyImages(const HBOBoard &src, const std::string &prefix);
  /// Leaves out an FPGA, and a component whose "connects_with" parameter
  /// names another connector than \p prefix.
  void copyComponents(const HBOBoard &src, const std::string &prefix);
  void copyBoardBuses(const HBOBoard &src, const std::string &prefix);
  void copyPresets(const HBOBoard &src, const std::string &prefix);
  void copyAssociatedInterfaces(const HBOBoard &src, const std::string &prefix);

  // ---- composition (board/integrated/HBOBoardComposition.cpp) ----

  /// A new integrated board on \p base with each daughter board plugged
  /// into its base connector; the caller owns it. Every error (HEXError)
  /// comes before anything is built.
  static HBOBoard *createBoard(const HBOBoard *base,
                               const std::vector<IntegratedConnection> &connections,
                               const std::string &boardName);
  /// An older way of merging \p src into this board under \p prefix.
  void appendBoard(const HBOBoard &src, std::string prefix);
  /// Wires the same pin index of the two connectors; nothing when either
  /// is missing.
  void createConnection(std::string baseConnector, std::string daughterConnector);
  /// Makes the pins from..to of the component that it lacks, named
  /// "component_index".
  bool createPinsForComponent(std::string componentName, int from, int to);

  /// Recomputes what the jumpers enable: the is-enabled texts of every
  /// connection, net, component, interface and component mode.
  void updateEnablement();
  /// Whether an enablement expression holds with the jumpers in the given
  /// states, in that order, as updateEnablement judges it; \p hasTerms is
  /// false when the expression names nothing. For those who ask about a
  /// setting without making it, such as a diagram drawn for one.
  static bool
  evaluateEnablementDependency(const std::string &expression,
                               const std::vector<std::pair<std::string, bool>> &jumperStates,
                               bool &hasTerms);

  // ---- IP association ----

  /// A copy of the presets of a procedure, found ignoring case; empty for an
  /// empty or unknown name. The records stay the board's.
  std::vector<HBOIpPreset *> findPresetProc(const std::string &name) const;
  /// Appends the board interfaces that the IP of \p vlnv may wire its
  /// interface \p ipInterface to, from every matching associated-interface
  /// record; the version is not compared. \p out is not emptied first.
  bool getIpAssocInterfaces(std::string ipInterface, std::string vlnv,
                            std::vector<std::string> &out) const;

private:
  /// Stores \p presets under \p key of the preset or the associated
  /// interface map, freeing the records the key held unless still listed.
  void storePresets_(bool associated, const std::string &key, std::vector<HBOIpPreset *> presets);

  bool m_userDefined = false;
  std::string m_changeLogFile;
  std::string m_boardFile;
  std::string m_vendor;
  std::string m_boardName;
  std::string m_name;
  std::string m_version;
  std::string m_boardRevision;
  std::string m_specUrl;
  std::string m_displayName;
  std::string m_longDesc;
  std::string m_repository;
  std::string m_migratedFromSchema;
  std::string m_boardSchemaVersion;
  std::string m_fileRevision;
  std::string m_description;
  std::map<int, std::string> m_revisions;
  std::vector<std::string> m_jtagChains;
  std::vector<HBOParameter *> m_parameters;
  std::vector<HBOJumper *> m_jumpers;
  std::vector<HBOImage *> m_images;
  std::vector<HBOBoardBus *> m_buses;
  std::vector<HBOPowerRail> m_powerRails;
  HBOBoardDataProps m_dataProps;
  PresetMap m_ipPresets;
  PresetMap m_ipAssocInterfaces;
  std::string m_presetFile;
  std::string m_boardImage;
  std::map<std::string, HBOBoardComponent *> m_components;
  /// Components that a later one of the same name replaced.
  std::vector<HBOBoardComponent *> m_replacedComponents;
  // Written from const look-ups too; caching is idempotent.
  mutable HBOBoardComponent *m_activePart = nullptr;
  HBOBoardDB *m_db = nullptr;
  std::map<std::string, std::string> m_connectedComponents;
  std::map<std::string, std::string> m_connectedBoards;
  ConnectorCache m_partiallyCompatibleConnectors;
  ConnectorCache m_fullyCompatibleConnectors;
  ConnectorCache m_explicitlyCompatibleConnectors;
  bool m_integrated = false;
  bool m_supportsCED = true;
  const HBOBoard *m_baseBoard = nullptr;
  std::vector<IntegratedConnection> m_integratedConnections;
  std::string m_fallbackText;
  bool m_fallbackFlag = false;
};

#endif
