#include "HBOBoard.h"

#include "ComMsgMgr.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBoardDB.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOComponentMode.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "HTCTaskHelpers.h"
#include "NativeCache.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <iostream>

namespace {

std::string dashes(int count) { return std::string(count > 0 ? count : 0, '-'); }

// Whether an enablement expression holds for the board's jumpers. The
// expression is a conjunction of "{jumper value}" terms; the braces carry no
// structure, so they are dropped and the rest read as name/value pairs.
// Gives false in \p hasTerms when nothing is left of the expression.
bool evaluateExpression(const std::string &expression, const std::vector<HBOJumper *> &jumpers,
                        bool &hasTerms) {
  std::vector<std::pair<std::string, bool>> states;
  states.reserve(jumpers.size());
  for (const HBOJumper *jumper : jumpers)
    if (jumper)
      states.emplace_back(jumper->getName(), jumper->getDefaultValue());
  return HBOBoard::evaluateEnablementDependency(expression, states, hasTerms);
}

const char *boolText(bool value) { return value ? "true" : "false"; }

} // namespace

bool HBOBoard::evaluateEnablementDependency(
    const std::string &expression, const std::vector<std::pair<std::string, bool>> &jumperStates,
    bool &hasTerms) {
  std::string flat;
  flat.reserve(expression.size());
  for (char c : expression)
    if (c != '{' && c != '}')
      flat += c;
  hasTerms = !flat.empty();
  if (!hasTerms)
    return true;
  // Only the blank separates; a leading blank gives an empty first token,
  // which no reader produces.
  std::vector<std::string> tokens;
  boost::algorithm::split(tokens, flat, boost::algorithm::is_any_of(" "),
                          boost::algorithm::token_compress_on);
  bool enabled = true;
  for (const auto &jumper : jumperStates) {
    for (std::size_t i = 0; i < tokens.size(); i += 2) {
      if (!HBOCommon::iEquals(tokens[i], jumper.first))
        continue;
      // Only the first term of a jumper counts; a name with no value after
      // it can match neither state.
      const char *state = boolText(jumper.second);
      if (i + 1 >= tokens.size() || tokens[i + 1] != state)
        enabled = false;
      break;
    }
  }
  return enabled;
}

HBOBoard::~HBOBoard() {
  zeb::forgetScriptHandles(this);

  HBOCommon::deleteDistinct(m_parameters);
  std::vector<HBOBoardComponent *> components;
  components.reserve(m_components.size());
  for (const auto &entry : m_components)
    components.push_back(entry.second);
  components.insert(components.end(), m_replacedComponents.begin(), m_replacedComponents.end());
  HBOCommon::deleteDistinct(components);
  HBOCommon::deleteDistinct(m_buses);

  // The board also owns its jumpers, images and presets: nothing else keeps
  // them, and a board must not leak when the repository drops it. A preset
  // may be listed in both maps and more than once, so each goes once.
  HBOCommon::deleteDistinct(m_jumpers);
  HBOCommon::deleteDistinct(m_images);
  std::vector<HBOIpPreset *> presets;
  for (const PresetMap *map : {&m_ipPresets, &m_ipAssocInterfaces}) {
    for (const auto &entry : *map)
      presets.insert(presets.end(), entry.second.begin(), entry.second.end());
  }
  HBOCommon::deleteDistinct(presets);
}

// ---- identity ----

void HBOBoard::setName(const std::string &vendor, const std::string &boardName,
                       const std::string &version) {
  m_vendor = vendor;
  m_boardName = boardName;
  m_version = version;
  m_name = vendor + ":" + boardName + ":" + version;
  HBOCommon::toLowerInPlace(m_vendor);
  HBOCommon::toLowerInPlace(m_boardName);
  HBOCommon::toLowerInPlace(m_name);
}

bool HBOBoard::getName(std::string &out) const {
  out = m_name;
  return true;
}

bool HBOBoard::setPresetFile(std::string file) {
  m_presetFile = std::move(file);
  return true;
}

void HBOBoard::setBoardFile(const std::string &file) {
  m_boardFile = file;
  if (m_activePart)
    m_activePart->setBoardFile(file);
}

void HBOBoard::setChangeLogFilename(const std::string &file) {
  m_changeLogFile = file;
  if (m_activePart)
    m_activePart->setBoardChangeLogFilename(file);
}

void HBOBoard::setRepository(const std::string &repository) {
  m_repository = repository;
  if (m_activePart)
    m_activePart->setRepository(repository);
}

void HBOBoard::setUserDefinedFlag(bool flag) {
  m_userDefined = flag;
  if (m_activePart)
    m_activePart->setUserDefinedFlag(flag);
}

void HBOBoard::setCompatibleBoardRevisions(const std::map<int, std::string> &revisions) {
  m_revisions = revisions;
  m_boardRevision = getLatestBoardRevision();
}

std::string HBOBoard::getLatestBoardRevision() const {
  if (m_revisions.empty())
    return std::string();
  return HBOCommon::trimCopy(m_revisions.rbegin()->second);
}

void HBOBoard::getCompatibleBoardRevisionsAsVec(std::vector<std::string> &out) const {
  out.clear();
  for (const auto &entry : m_revisions)
    out.push_back("{" + std::to_string(entry.first) + " " + entry.second + "}");
}

// ---- board kind ----

const HBOBoard *HBOBoard::getBaseBoard() const { return m_integrated ? m_baseBoard : nullptr; }

const std::string &HBOBoard::getBaseBoardName() const {
  const HBOBoard *base = getBaseBoard();
  return base ? base->getBoardName() : m_boardName;
}

const std::string &HBOBoard::getBaseBoardFullName() const {
  const HBOBoard *base = getBaseBoard();
  return base ? base->getName() : m_name;
}

std::string HBOBoard::getBaseBoardActivePartName() const {
  const HBOBoard *base = getBaseBoard();
  if (!base)
    return getActivePartName();
  const HBOBoardComponent *active = getActivePart();
  const std::string componentName = active ? active->getComponentName() : std::string();
  return base->getVendor() + ":" + base->getBoardName() + ":" + componentName + ":" +
         base->getVersion();
}

bool HBOBoard::hasFPGAPart() const { return findFpgaComponent() != nullptr; }

bool HBOBoard::isReferenceBoard() const { return !m_integrated && hasFPGAPart(); }

bool HBOBoard::isDaughterBoard() const { return !m_integrated && !hasFPGAPart(); }

// ---- active part ----

HBOBoardComponent *HBOBoard::getActivePart() {
  return static_cast<const HBOBoard *>(this)->getActivePart();
}

HBOBoardComponent *HBOBoard::getActivePart() const {
  if (!m_activePart)
    m_activePart = findFpgaComponent();
  return m_activePart;
}

std::string HBOBoard::getActivePartName() const {
  return m_activePart ? m_activePart->getName() : m_fallbackText;
}

HBOBoardComponent *HBOBoard::findFpgaComponent() const {
  for (const auto &entry : m_components) {
    if (entry.second && entry.second->getType() == "fpga")
      return entry.second;
  }
  return nullptr;
}

HBOBoardComponent *HBOBoard::findFpgaComponent(const std::string &name) const {
  for (const auto &entry : m_components) {
    if (entry.second && entry.second->getType() == "fpga" &&
        entry.second->getComponentName() == name)
      return entry.second;
  }
  return nullptr;
}

// ---- forwarded to the cached active part ----

void HBOBoard::setVLNV(const std::string &vendor, const std::string &library,
                       const std::string &name, const std::string &version) {
  if (m_activePart)
    m_activePart->setVLNV(vendor, library, name, version);
}

void HBOBoard::setBoardDetails(const std::string &a, const std::string &b, const std::string &c,
                               const std::string &family) {
  if (m_activePart)
    m_activePart->setBoardDetails(a, b, c, family);
}

void HBOBoard::setImageFile(const std::string &path) {
  if (m_activePart)
    m_activePart->setImageFile(path);
}

void HBOBoard::setBusIf(const std::string &name, HBOBusIf *const &busIf) {
  if (m_activePart)
    m_activePart->setBusIf(name, busIf);
}

void HBOBoard::setModelPort(const std::string &name, HBOModelPort *const &port) {
  if (m_activePart)
    m_activePart->setModelPort(name, port);
}

void HBOBoard::setJtagPosition(const std::string &position) {
  if (m_activePart)
    m_activePart->setJtagPosition(position);
}

bool HBOBoard::setPartString(const std::string &part) {
  return m_activePart ? m_activePart->setPartString(part) : false;
}

bool HBOBoard::populateConstraintsData(const std::string &file) {
  return m_activePart ? m_activePart->populateConstraintsData(file) : false;
}

bool HBOBoard::getBusIfByName(HBOBusIf *&out, const std::string &name) const {
  return m_activePart ? m_activePart->getBusIfByName(out, name) : false;
}

HBOBusIf *HBOBoard::getBusIfByName(const std::string &name) const {
  return m_activePart ? m_activePart->getBusIfByName(name) : nullptr;
}

bool HBOBoard::getBusIfSeq(std::vector<HBOBusIf *> &out, bool unused) const {
  return m_activePart ? m_activePart->getBusIfSeq(out, unused) : false;
}

bool HBOBoard::getBusIfSeq(std::vector<HBOBusIf *> &out, const std::string &vendor,
                           const std::string &library, const std::string &name,
                           const std::string &version) const {
  return m_activePart ? m_activePart->getBusIfSeq(out, vendor, library, name, version) : false;
}

bool HBOBoard::getBusIfSeq(std::vector<std::string> &names, const std::string &vlnv) const {
  return m_activePart ? m_activePart->getBusIfSeq(names, vlnv) : false;
}

bool HBOBoard::getModelPortsByBusIf(std::vector<HBOModelPort *> &out,
                                    const std::string &busIfName) const {
  return m_activePart ? m_activePart->getModelPortsByBusIf(out, busIfName) : false;
}

bool HBOBoard::getPinPropsByBusIf(std::vector<HBOPinProps *> &out,
                                  const std::string &busIfName) const {
  return m_activePart ? m_activePart->getPinPropsByBusIf(out, busIfName) : false;
}

bool HBOBoard::getModelPortByName(HBOModelPort *&out, const std::string &name) const {
  return m_activePart ? m_activePart->getModelPortByName(out, name) : false;
}

bool HBOBoard::getModelPortSeq(std::vector<HBOModelPort *> &out) const {
  return m_activePart ? m_activePart->getModelPortSeq(out) : false;
}

bool HBOBoard::getFamily(std::string &out) const {
  return m_activePart ? m_activePart->getFamily(out) : false;
}

bool HBOBoard::hasAdditionalSupportedParts() const {
  return m_activePart ? m_activePart->hasAdditionalSupportedParts() : false;
}

bool HBOBoard::isPartNameSupportedByBoard(const std::string &name) const {
  return m_activePart ? m_activePart->isPartNameSupported(name) : false;
}

bool HBOBoard::isPartUpdated() const {
  return m_activePart ? m_activePart->isPartUpdated() : false;
}

const std::string &HBOBoard::getLibrary() const {
  return m_activePart ? m_activePart->getLibrary() : m_fallbackText;
}

const std::string &HBOBoard::getBoardPartName() const {
  return m_activePart ? m_activePart->getBoardPartName() : m_fallbackText;
}

const std::string &HBOBoard::getPartString() const {
  return m_activePart ? m_activePart->getPartString() : m_fallbackText;
}

const std::string &HBOBoard::getFamily() const {
  return m_activePart ? m_activePart->getFamily() : m_fallbackText;
}

const std::string &HBOBoard::getJtagPosition() const {
  return m_activePart ? m_activePart->getJtagPosition() : m_fallbackText;
}

const std::string &HBOBoard::getImageFile() const {
  return m_activePart ? m_activePart->getImageFile() : m_fallbackText;
}

bool HBOBoard::isConstraintsDataPopulated() const {
  return m_activePart ? m_activePart->isConstraintsDataPopulated() : m_fallbackFlag;
}

void HBOBoard::getAdditionalSupportedPartNames(std::vector<std::string> &out,
                                               bool includeMain) const {
  out.clear();
  if (m_activePart)
    m_activePart->getAdditionalSupportedPartNames(out, includeMain);
}

void HBOBoard::updateBoardPart(const std::string &partName) {
  if (m_activePart && m_activePart->updatePartName(partName))
    return;
  ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-152@%s%s", partName,
                     m_vendor + ":" + getLibrary() + ":" + m_boardName + ":" + m_version);
}

// ---- containers ----

void HBOBoard::addParameter(HBOParameter *parameter) { m_parameters.push_back(parameter); }

void HBOBoard::addJumper(HBOJumper *jumper) { m_jumpers.push_back(jumper); }

void HBOBoard::addImage(HBOImage *image) { m_images.push_back(image); }

void HBOBoard::addBus(HBOBoardBus *bus) { m_buses.push_back(bus); }

void HBOBoard::setBoardDataProps(const std::map<std::string, boost::any> &data) {
  m_dataProps.setData(data);
}

void HBOBoard::setIpPreset(const std::string &name, std::vector<HBOIpPreset *> presets) {
  if (name.empty())
    return;
  m_ipPresets[HBOCommon::toUpperCopy(name)] = std::move(presets);
}

void HBOBoard::setIpAssociatedInterface(const std::string &name,
                                        std::vector<HBOIpPreset *> presets) {
  if (name.empty())
    return;
  m_ipAssocInterfaces[HBOCommon::toUpperCopy(name)] = std::move(presets);
}

void HBOBoard::addBoardComponent(HBOBoardComponent *component) {
  if (!component)
    return;
  HBOBoardComponent *&entry = m_components[component->getComponentName()];
  if (entry && entry != component)
    m_replacedComponents.push_back(entry);
  entry = component;
}

void HBOBoard::getBoardComponentsVec(std::vector<HBOBoardComponent *> &out) const {
  for (const auto &entry : m_components)
    out.push_back(entry.second);
}

void HBOBoard::getConnectorsList(HSTVector<HBOBoardComponent *> &out) const {
  for (const auto &entry : m_components) {
    if (entry.second && entry.second->isConnector())
      out.push_back(entry.second);
  }
}

void HBOBoard::addConnectedBoard(const std::string &alias, const std::string &id) {
  m_connectedBoards[alias] = id;
}

void HBOBoard::addConnectedComponents(const std::string &board1, const std::string &connector1,
                                      const std::string &board2, const std::string &connector2) {
  m_connectedComponents[board1 + "#" + connector1] = board2 + "#" + connector2;
}

void HBOBoard::addIntegratedBoardConnection(const std::string &baseConnector,
                                            const HBOBoard *daughter,
                                            const std::string &daughterConnector) {
  m_integratedConnections.emplace_back(baseConnector, daughter, daughterConnector);
}

std::string HBOBoard::getIntegratedBoardConnectionsAsString() const {
  std::string text;
  for (const IntegratedConnection &connection : m_integratedConnections) {
    const HBOBoard *daughter = std::get<1>(connection);
    const HBOBoardComponent *component =
        daughter ? daughter->findBoardComponent(std::get<2>(connection)) : nullptr;
    if (!text.empty())
      text += " ";
    text += HTCTaskHelpers::brace(std::get<0>(connection)) + " " +
            HTCTaskHelpers::brace(component ? component->getName() : std::string());
  }
  return text;
}

std::string HBOBoard::getIntegratedBoardConnectionsAsStringProperty() const {
  return "{" + getIntegratedBoardConnectionsAsString() + "}";
}

// ---- look-ups ----

HBOBoardComponent *HBOBoard::findBoardComponent(const std::string &name) const {
  if (name.empty())
    return nullptr;
  auto it = m_components.find(name);
  return it == m_components.end() ? nullptr : it->second;
}

HBOBoardComponent *HBOBoard::getCompByName(const std::string &name) const {
  if (name.empty())
    return nullptr;
  for (const auto &entry : m_components) {
    if (HBOCommon::iEquals(entry.first, name))
      return entry.second;
  }
  return nullptr;
}

bool HBOBoard::getBusIfByNameUsingConnectors(HBOBusIf *&out, const std::string &name) const {
  for (const auto &entry : m_components) {
    if (entry.second && entry.second->isConnector() && entry.second->getBusIfByName(out, name))
      return true;
  }
  return false;
}

bool HBOBoard::getParamValue(const std::string &name, std::string &value) const {
  for (const HBOParameter *parameter : m_parameters) {
    if (parameter && parameter->getName() == name) {
      value = parameter->getValue();
      return true;
    }
  }
  return false;
}

void HBOBoard::getBusesOfComponent(const std::string &name, std::vector<HBOBoardBus *> &out) const {
  for (HBOBoardBus *bus : m_buses) {
    if (bus && (bus->getComp1() == name || bus->getComp2() == name))
      out.push_back(bus);
  }
}

void HBOBoard::getNetsOfComponent(const std::string &name,
                                  std::vector<HBOBoardBusNet *> &out) const {
  std::vector<HBOBoardBus *> buses;
  getBusesOfComponent(name, buses);
  for (const HBOBoardBus *bus : buses) {
    const std::vector<HBOBoardBusNet *> &nets = bus->getBoardBusNets();
    out.insert(out.end(), nets.begin(), nets.end());
  }
}

void HBOBoard::getBoardBusesConnectingComponents(const HBOBoardComponent *c1,
                                                 const HBOBoardComponent *c2,
                                                 HSTVector<HBOBoardBus *> &out) const {
  if (!c1 || !c2)
    return;
  for (HBOBoardBus *bus : m_buses) {
    if (bus && bus->getComp1() == c1->getComponentName() &&
        bus->getComp2() == c2->getComponentName())
      out.push_back(bus);
  }
}

bool HBOBoard::getConnectedConnectors(const HBOBoardComponent *component,
                                      std::vector<HBOBoardComponent *> &out) const {
  if (!component)
    return false;
  const std::string &name = component->getComponentName();
  for (const HBOBoardBus *bus : m_buses) {
    if (!bus)
      continue;
    const std::string *other = nullptr;
    if (bus->getComp1() == name)
      other = &bus->getComp2();
    else if (bus->getComp2() == name)
      other = &bus->getComp1();
    if (!other)
      continue;
    HBOBoardComponent *connected = findBoardComponent(*other);
    if (connected && connected->getType() == "connector")
      out.push_back(connected);
  }
  return true;
}

void HBOBoard::getConnectedConnectors(
    HSTVector<std::pair<HBOBoardComponent *, HBOBoardComponent *>> &out) const {
  const HBOBoard *base = getBaseBoard();
  for (const IntegratedConnection &connection : m_integratedConnections) {
    const HBOBoard *daughter = std::get<1>(connection);
    out.emplace_back(base ? base->findBoardComponent(std::get<0>(connection)) : nullptr,
                     daughter ? daughter->findBoardComponent(std::get<2>(connection)) : nullptr);
  }
}

HBOBoardComponent *HBOBoard::getConnectorConnected(const HBOBoardComponent *component) const {
  const HBOBoard *base = getBaseBoard();
  if (!base || !component)
    return nullptr;
  for (const IntegratedConnection &connection : m_integratedConnections) {
    if (base->findBoardComponent(std::get<0>(connection)) != component)
      continue;
    const HBOBoard *daughter = std::get<1>(connection);
    return daughter ? daughter->findBoardComponent(std::get<2>(connection)) : nullptr;
  }
  return nullptr;
}

bool HBOBoard::isConnectorConnected(const HBOBoardComponent *component) const {
  return getConnectorConnected(component) != nullptr;
}

// ---- persistence and debugging ----

void HBOBoard::saveBoard() {
  if (m_db)
    m_db->saveBoard(this);
}

void HBOBoard::display(int indent) const {
  std::cout << dashes(indent) << "Board - Name: " << m_boardName << ", Fullname: " << m_name
            << ", Description: " << m_description << ", Boardfile: " << m_boardFile << "\n";
  const std::string heading = dashes(indent + 2);
  std::cout << heading << "Parameters:\n";
  for (const HBOParameter *parameter : m_parameters) {
    if (parameter)
      parameter->display(indent + 4);
  }
  std::cout << "\n";
  std::cout << heading << "Jumpers:\n";
  for (const HBOJumper *jumper : m_jumpers) {
    if (jumper)
      jumper->display(indent + 4);
  }
  std::cout << "\n";
  std::cout << heading << "Components:\n";
  for (const auto &entry : m_components) {
    if (!entry.second)
      continue;
    entry.second->display(indent + 4);
    std::cout << "\n";
  }
  std::cout << "\n";
  std::cout << heading << "Connections:\n";
  for (const HBOBoardBus *bus : m_buses) {
    if (bus)
      bus->display(indent + 4);
  }
  std::cout << "\n";
  std::cout << heading << "Presets:\n";
  for (const auto &entry : m_ipPresets) {
    for (const HBOIpPreset *preset : entry.second) {
      if (preset)
        preset->display(indent + 4);
    }
  }
  std::cout << "\n";
  std::cout << "IP Associated Presets:\n";
  for (const auto &entry : m_ipAssocInterfaces) {
    for (const HBOIpPreset *preset : entry.second) {
      if (preset)
        preset->display(indent + 4);
    }
  }
}

std::vector<HBOIpPreset *> HBOBoard::findPresetProc(const std::string &name) const {
  if (name.empty())
    return {};
  auto it = m_ipPresets.find(HBOCommon::toUpperCopy(name));
  return it == m_ipPresets.end() ? std::vector<HBOIpPreset *>() : it->second;
}

bool HBOBoard::getIpAssocInterfaces(std::string ipInterface, std::string vlnv,
                                    std::vector<std::string> &out) const {
  const bool debug = ComMsgMgr::hasScope("board_intf");
  if (debug)
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board_intf",
                             "[DBG] board: In HBOBoard::getIpAssocInterfaces for IP interface %s "
                             "vlnv %s\n",
                             ipInterface.c_str(), vlnv.c_str());
  std::vector<std::string> fields;
  boost::algorithm::split(fields, vlnv, boost::algorithm::is_any_of(":"),
                          boost::algorithm::token_compress_on);
  // The version is not looked at, so three fields are enough.
  if (fields.size() < 3)
    return false;
  bool found = false;
  for (const auto &entry : m_ipAssocInterfaces) {
    for (const HBOIpPreset *record : entry.second) {
      if (!record || !HBOCommon::iEquals(record->getName(), fields[2]) ||
          !HBOCommon::iEquals(record->getVendor(), fields[0]) ||
          !HBOCommon::iEquals(record->getLibrary(), fields[1]) ||
          !HBOCommon::iEquals(record->getIpInterface(), ipInterface))
        continue;
      found = true;
      // The keys of an associated-interface record are board interface names.
      for (const auto &param : record->getParamList()) {
        out.push_back(param.first);
        if (debug)
          ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board_intf",
                                   "[DBG]   + associated board interface: %s\n",
                                   param.first.c_str());
      }
    }
  }
  return found;
}

void HBOBoard::updateEnablement() {
  // Connections first: the components below are judged by them.
  for (HBOBoardBus *bus : m_buses) {
    if (!bus)
      continue;
    bool hasTerms = false;
    bool enabled = evaluateExpression(bus->getEnablementDependency(), m_jumpers, hasTerms);
    // Without terms the connection keeps its text, but its nets are live.
    if (hasTerms)
      bus->setIsEnabled(boolText(enabled));
    for (HBOBoardBusNet *net : bus->getBoardBusNets())
      if (net)
        net->setIsEnabled(boolText(enabled));
  }

  for (const auto &entry : m_components) {
    HBOBoardComponent *component = entry.second;
    if (!component)
      continue;
    std::vector<HBOBoardBus *> buses;
    getBusesOfComponent(component->getComponentName(), buses);
    bool live = false;
    for (const HBOBoardBus *bus : buses)
      if (HBOCommon::iEquals(bus->getIsEnabled(), "true"))
        live = true;
    component->setIsEnabled(boolText(live));

    // An interface follows the component it leads to, as that component
    // stands now: one later in the name order still shows its previous
    // result, a lag the callers accept.
    std::vector<HBOBusIf *> interfaces;
    component->getBusIfSeq(interfaces, true);
    for (HBOBusIf *intf : interfaces)
      if (const HBOBoardComponent *target = getCompByName(intf->getOfComponent()))
        intf->setIsEnabled(target->getIsEnabled());

    // A mode depends on its jumpers alone, not on its component.
    std::vector<HBOComponentMode *> modes;
    component->getComponentModes(modes);
    for (HBOComponentMode *mode : modes) {
      if (!mode)
        continue;
      bool hasTerms = false;
      bool enabled = evaluateExpression(mode->getEnablementDependency(), m_jumpers, hasTerms);
      if (hasTerms)
        mode->setIsEnabled(boolText(enabled));
    }
  }
}
