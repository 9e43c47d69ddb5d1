#include "HBOBoardComponent.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardCompMuxPosition.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOComponentMode.h"
#include "HBOImage.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "HUTConvert.h"
#include "HXMLWInterface.h"
#include "NativeCache.h"

#include <boost/filesystem.hpp>
#include <boost/regex.hpp>

#include <algorithm>
#include <cassert>
#include <cstdlib>
#include <exception>
#include <iostream>

using HBOCommon::iEquals;
using HBOCommon::toUpperCopy;

namespace {

std::string dashes(int count) { return std::string(count > 0 ? count : 0, '-'); }

bool inSlotRange(int index) {
  return static_cast<unsigned>(index) < static_cast<unsigned>(HBOBoardComponent::s_pinSlots);
}

} // namespace

HBOBoardComponent::HBOBoardComponent() = default;

const HBOBoardComponent::Rare &HBOBoardComponent::rare_() const {
  static const Rare none;
  return m_rare ? *m_rare : none;
}

HBOBoardComponent::Rare &HBOBoardComponent::rareMut_() {
  if (!m_rare)
    m_rare.reset(new Rare);
  return *m_rare;
}

HBOBoardComponent::~HBOBoardComponent() {
  zeb::forgetScriptHandles(this);

  HBOCommon::deleteDistinct(m_parameters);
  HBOCommon::deleteDistinct(m_images);

  std::vector<HBOBusIf *> interfaces = m_replacedInterfaces;
  interfaces.reserve(interfaces.size() + m_interfaces.size());
  for (const auto &entry : m_interfaces)
    interfaces.push_back(entry.second);
  HBOCommon::deleteDistinct(interfaces);

  HBOCommon::deleteDistinct(m_modes);

  std::vector<HBOBoardCompMuxPosition *> positions;
  for (const auto &entry : m_muxPositions)
    positions.push_back(entry.second);
  HBOCommon::deleteDistinct(positions);

  HBOCommon::deleteDistinct(m_drivers);
  // Last: interfaces and pins may still name these ports, but no destructor
  // above follows those names. The pins go with m_pinStore.
  HBOCommon::deleteDistinct(m_ownedModelPorts);
  m_portBlocks.clear();
}

// ---- identity ----

void HBOBoardComponent::setName(const std::string &vendor, const std::string &boardName,
                                const std::string &partName, const std::string &version) {
  m_vendorName = vendor;
  rareMut_().boardName = boardName;
  m_partName = partName;
  rareMut_().version = version;
  m_name = vendor + ":" + boardName + ":" + partName + ":" + version;
  HBOCommon::toLowerInPlace(m_vendorName);
  HBOCommon::toLowerInPlace(rareMut_().boardName);
  HBOCommon::toLowerInPlace(m_partName);
  HBOCommon::toLowerInPlace(m_name);
}

const std::string &HBOBoardComponent::getConnectorCategory() const {
  static const std::string others("Others");
  return m_majorGroup.empty() ? others : m_majorGroup;
}

bool HBOBoardComponent::setPartString(const std::string &name) {
  m_partName = name;
  return true;
}

void HBOBoardComponent::setImageFile(const std::string &path) {
  if (path.empty()) {
    rareMut_().imageFile = path;
    return;
  }
  namespace fs = boost::filesystem;
  const std::string parent = fs::path(path).parent_path().string();
  if (!parent.empty() && parent != ".") {
    rareMut_().imageFile = path;
    return;
  }
  rareMut_().imageFile =
      fs::path(m_boardFile).parent_path().string() + HBOBoardUtils::getDirSeparator() + path;
}

void HBOBoardComponent::setVLNV(const std::string &vendor, const std::string &library,
                                const std::string &name, const std::string &version) {
  m_vendorName = vendor;
  rareMut_().library = library;
  rareMut_().boardName = name;
  rareMut_().boardRevision = version;
  rareMut_().legacyVlnv = vendor + ":" + library + ":" + name + ":" + version;
  HBOCommon::toLowerInPlace(m_vendorName);
  HBOCommon::toLowerInPlace(rareMut_().library);
  HBOCommon::toLowerInPlace(rareMut_().boardName);
  HBOCommon::toLowerInPlace(rareMut_().boardRevision);
  HBOCommon::toLowerInPlace(rareMut_().legacyVlnv);
}

void HBOBoardComponent::setBoardDetails(const std::string &a, const std::string &b,
                                        const std::string &c, const std::string &family) {
  rareMut_().boardDetail1 = a;
  rareMut_().boardDetail2 = b;
  rareMut_().boardDetail3 = c;
  rareMut_().family = family;
}

bool HBOBoardComponent::getFamily(std::string &out) const {
  out = rare_().family;
  return true;
}

const std::string &HBOBoardComponent::getDisplayNameORVLNVName() const {
  return m_displayName.empty() ? m_name : m_displayName;
}

bool HBOBoardComponent::equals(const HBOBoardComponent &other) const {
  return this == &other || m_name == other.m_name;
}

// ---- interfaces and model ports ----

bool HBOBoardComponent::getBusIfByName(HBOBusIf *&out, const std::string &name) const {
  if (name.empty())
    return false;
  auto it = m_interfaces.find(toUpperCopy(name));
  if (it == m_interfaces.end())
    return false;
  out = it->second;
  return true;
}

HBOBusIf *HBOBoardComponent::getBusIfByName(const std::string &name) const {
  HBOBusIf *busIf = nullptr;
  getBusIfByName(busIf, name);
  return busIf;
}

bool HBOBoardComponent::getModelPortByName(HBOModelPort *&out, const std::string &name) const {
  if (name.empty())
    return false;
  // The keys are upper-cased and the map compares ignoring case.
  auto it = m_modelPorts.find(name);
  if (it == m_modelPorts.end())
    return false;
  out = it->second;
  return true;
}

void HBOBoardComponent::setBusIf(const std::string &name, HBOBusIf *const &busIf) {
  if (!busIf || name.empty())
    return;
  storeInterface_(toUpperCopy(name), busIf);
  std::vector<HBOPortMap *> portMaps;
  busIf->getPortMapSeq(portMaps);
  for (const HBOPortMap *portMap : portMaps) {
    if (!portMap)
      continue;
    HBOModelPort *port = nullptr;
    if (getModelPortByName(port, portMap->getPhysicalPort()) && port)
      port->setOwnerBusIf(name, portMap->getLogicalPort());
  }
}

void HBOBoardComponent::addBoardInterface_(HBOBusIf *busIf) {
  if (!busIf || busIf->getName().empty())
    return;
  storeInterface_(toUpperCopy(busIf->getName()), busIf);
}

void HBOBoardComponent::storeInterface_(const std::string &key, HBOBusIf *busIf) {
  HBOBusIf *&slot = m_interfaces[key];
  // A replaced interface may still be the owner its model ports name, so it
  // lives on, out of the map, until the component goes.
  if (slot && slot != busIf)
    m_replacedInterfaces.push_back(slot);
  slot = busIf;
  busIf->setOwnerComponent(this);
}

void HBOBoardComponent::setModelPort(const std::string &name, HBOModelPort *const &port) {
  if (!port || name.empty())
    return;
  // One search: where the name is, or where it goes.
  auto it = m_modelPorts.lower_bound(name);
  if (it == m_modelPorts.end() || HSTStringUtils::UpperLess()(name, it->first))
    it = m_modelPorts.emplace_hint(it, toUpperCopy(name));
  HBOModelPort *&slot = it->second;
  if (slot == port)
    return;
  slot = port;
  // Duplicates under other names are weeded out when the ports are freed.
  if (!port->isHeldInBlock())
    m_ownedModelPorts.push_back(port);
}

HBOModelPortRecord *HBOBoardComponent::makeModelPorts(std::size_t count) {
  if (count == 0)
    return nullptr;
  m_portBlocks.emplace_back(new HBOModelPortRecord[count]);
  HBOModelPortRecord *records = m_portBlocks.back().get();
  for (std::size_t i = 0; i < count; ++i)
    records[i].port.setHeldInBlock();
  return records;
}

bool HBOBoardComponent::createModelPortsForInterfaces() {
  for (const auto &entry : m_interfaces) {
    if (!entry.second)
      continue;
    for (const auto &port : entry.second->getPortMaps()) {
      if (port.second)
        setModelPort(port.first, port.second);
    }
  }
  return true;
}

bool HBOBoardComponent::getModelPortSeq(std::vector<HBOModelPort *> &out) const {
  for (const auto &entry : m_modelPorts) {
    if (entry.second)
      out.push_back(entry.second);
  }
  return true;
}

bool HBOBoardComponent::getModelPortsByBusIf(std::vector<HBOModelPort *> &out,
                                             const std::string &busIfName) const {
  out.clear();
  HBOBusIf *busIf = getBusIfByName(busIfName);
  if (!busIf)
    return false;
  std::vector<std::string> physicalPorts;
  const bool result = busIf->getPhysicalPortSeq(physicalPorts);
  for (const std::string &physical : physicalPorts) {
    HBOModelPort *port = nullptr;
    if (getModelPortByName(port, physical) && port)
      out.push_back(port);
  }
  return result;
}

bool HBOBoardComponent::getPinPropsByBusIf(std::vector<HBOPinProps *> &out,
                                           const std::string &busIfName) const {
  out.clear();
  std::vector<HBOModelPort *> ports;
  const bool result = getModelPortsByBusIf(ports, busIfName);
  for (const HBOModelPort *port : ports)
    port->getPortPropsSeq(out);
  return result;
}

void HBOBoardComponent::getInterfacesVec(std::vector<HBOBusIf *> &out) const {
  for (const auto &entry : m_interfaces)
    out.push_back(entry.second);
}

bool HBOBoardComponent::getBusIfSeq(std::vector<HBOBusIf *> &out, bool) const {
  for (const auto &entry : m_interfaces) {
    if (entry.second)
      out.push_back(entry.second);
  }
  return true;
}

bool HBOBoardComponent::getBusIfSeq(std::vector<HBOBusIf *> &out, const std::string &vendor,
                                    const std::string &library, const std::string &name,
                                    const std::string &version) const {
  // The clock type is published under both libraries, so a request for it
  // accepts either, whatever library it names.
  const bool anyClockLibrary = iEquals(name, "clock_rtl");
  for (const auto &entry : m_interfaces) {
    HBOBusIf *busIf = entry.second;
    if (!busIf)
      continue;
    std::string ifVendor, ifLibrary, ifName, ifVersion;
    busIf->getAbstractType(ifVendor, ifLibrary, ifName, ifVersion);
    if (!iEquals(ifVendor, vendor))
      continue;
    const bool libraryOk =
        iEquals(ifLibrary, library) ||
        (anyClockLibrary && (iEquals(ifLibrary, "interface") || iEquals(ifLibrary, "signal")));
    if (!libraryOk)
      continue;
    if (!iEquals(ifName, name))
      continue;
    if (!version.empty() && !iEquals(ifVersion, version))
      continue;
    out.push_back(busIf);
  }
  return true;
}

bool HBOBoardComponent::getBusIfSeq(std::vector<std::string> &names,
                                    const std::string &vlnv) const {
  // The brackets make the library field a single character of a set, so
  // real clock VLNVs do not match and fall back to the plain comparison.
  // Callers depend on exactly this behaviour; do not "fix" the pattern.
  static const boost::regex clockPattern("quarnel-ip:[interface|signal]:clock_rtl:1.0",
                                         boost::regex::perl | boost::regex::icase);
  for (const auto &entry : m_interfaces) {
    const HBOBusIf *busIf = entry.second;
    if (!busIf)
      continue;
    std::string ifVlnv;
    busIf->getAbstractTypeVLNV(ifVlnv, ":");
    bool match = false;
    if (boost::regex_match(ifVlnv, clockPattern))
      match = boost::regex_match(vlnv, clockPattern);
    else
      match = iEquals(ifVlnv, vlnv);
    if (match)
      names.push_back(busIf->getName());
  }
  return true;
}

void HBOBoardComponent::getOfCompInterfaces(std::vector<HBOBusIf *> &out, bool fromActivePart,
                                            HBOBoardComponent *source) const {
  out.clear();
  const HBOBoardComponent *from = source;
  if (fromActivePart)
    from = m_board ? m_board->getActivePart() : nullptr;
  if (!from)
    return;
  std::vector<HBOBusIf *> interfaces;
  from->getInterfacesVec(interfaces);
  for (HBOBusIf *busIf : interfaces)
    if (busIf && iEquals(busIf->getOfComponent(), m_componentName))
      out.push_back(busIf);
}

// ---- pins ----

HBOPinProps *HBOBoardComponent::createPin() { return m_pinStore.create(); }

void HBOBoardComponent::reservePins(std::size_t count, std::size_t nameBytes) {
  m_pinStore.reserve(count);
  // Connections ask for a few pins at a time: grow as a vector would.
  const std::size_t wanted = m_pins.size() + count;
  if (m_pins.capacity() < wanted)
    m_pins.reserve(std::max(wanted, 2 * m_pins.capacity()));
  if (nameBytes > m_pinNameRoom)
    reservePinNames_(std::max(nameBytes, std::min<std::size_t>(2 * m_pinNameBlockSize, 16384)));
}

void HBOBoardComponent::reservePinNames_(std::size_t bytes) {
  if (bytes <= m_pinNameRoom)
    return;
  m_pinNameBlocks.emplace_back(new char[bytes]);
  m_pinNameFree = m_pinNameBlocks.back().get();
  m_pinNameRoom = bytes;
  m_pinNameBlockSize = bytes;
}

std::string_view HBOBoardComponent::keepPinName_(const std::string &name) {
  if (name.size() > m_pinNameRoom) {
    // Blocks double from a small one: most components have a few pins, the
    // FPGA hundreds, whose names addPins reserves in one go.
    const std::size_t next =
        std::min<std::size_t>(std::max<std::size_t>(256, 2 * m_pinNameBlockSize), 16384);
    reservePinNames_(std::max(name.size(), next));
  }
  std::copy(name.begin(), name.end(), m_pinNameFree);
  std::string_view kept(m_pinNameFree, name.size());
  m_pinNameFree += name.size();
  m_pinNameRoom -= name.size();
  return kept;
}

void HBOBoardComponent::addPin(HBOPinProps *pin) {
  if (!pin)
    return;
  assert(m_pinStore.owns(pin) && "pins are made by createPin");
  const std::string &name = pin->getName();
  auto at = m_pins.lower_bound(name);
  if (at != m_pins.end() && at->first == name) {
    HBOPinProps *holderOfName = at->second;
    if (holderOfName == pin) {
      indexPin_(pin);
      return;
    }
    // A different holder of the index is a collision that the reader has
    // already reported; here it only loses its slot below.
    unindexPin_(holderOfName);
    m_pinStore.destroy(holderOfName);
    at->second = pin;
  } else {
    m_pins.try_emplace(keepPinName_(name), pin);
  }
  indexPin_(pin);
}

void HBOBoardComponent::addPins(std::vector<HBOPinProps *> &pins) {
  auto byName = [](const HBOPinProps *a, const HBOPinProps *b) {
    return a->getName() < b->getName();
  };
  pins.erase(std::remove(pins.begin(), pins.end(), nullptr), pins.end());
  std::stable_sort(pins.begin(), pins.end(), byName);
  // Of a run of one name the last given stays; a pin given twice is
  // destroyed once, and not when it is the one that stays.
  auto out = pins.begin();
  for (auto it = pins.begin(); it != pins.end();) {
    auto runEnd = it + 1;
    while (runEnd != pins.end() && (*runEnd)->getName() == (*it)->getName())
      ++runEnd;
    HBOPinProps *kept = *(runEnd - 1);
    for (auto dropped = it; dropped != runEnd - 1; ++dropped)
      if (*dropped != kept && std::find(it, dropped, *dropped) == dropped)
        m_pinStore.destroy(*dropped);
    *out++ = kept;
    it = runEnd;
  }
  pins.erase(out, pins.end());
  if (!m_pins.empty()) {
    for (HBOPinProps *pin : pins)
      addPin(pin);
    return;
  }
  // Into an empty map the sorted pins go in one pass, their names into one
  // block.
  std::size_t nameBytes = 0;
  for (const HBOPinProps *pin : pins)
    nameBytes += pin->getName().size();
  reservePinNames_(nameBytes);
  m_pins.reserve(pins.size());
  for (HBOPinProps *pin : pins) {
    m_pins.appendUnsorted(keepPinName_(pin->getName()), pin);
    indexPin_(pin);
  }
}

void HBOBoardComponent::indexPin_(HBOPinProps *pin) {
  const int index = pin->getPinIndex();
  if (inSlotRange(index)) {
    if (m_pinSlots.size() <= static_cast<std::size_t>(index)) {
      // Indexes mostly come in rising order, one at a time.
      if (m_pinSlots.capacity() <= static_cast<std::size_t>(index))
        m_pinSlots.reserve(std::min<std::size_t>(
            s_pinSlots, std::max<std::size_t>({16, index + 1u, 2 * m_pinSlots.capacity()})));
      m_pinSlots.resize(index + 1, nullptr);
    }
    m_pinSlots[index] = pin;
  } else {
    auto at = std::upper_bound(
        m_otherPinIndexes.begin(), m_otherPinIndexes.end(), index,
        [](int key, const std::pair<int, HBOPinProps *> &e) { return key < e.first; });
    for (auto it = at; it != m_otherPinIndexes.begin() && (it - 1)->first == index; --it)
      if ((it - 1)->second == pin)
        return;
    m_otherPinIndexes.emplace(at, index, pin);
  }
}

void HBOBoardComponent::unindexPin_(HBOPinProps *pin) {
  const int index = pin->getPinIndex();
  if (inSlotRange(index)) {
    if (static_cast<std::size_t>(index) < m_pinSlots.size() && m_pinSlots[index] == pin)
      m_pinSlots[index] = nullptr;
    return;
  }
  m_otherPinIndexes.erase(
      std::remove_if(m_otherPinIndexes.begin(), m_otherPinIndexes.end(),
                     [pin](const std::pair<int, HBOPinProps *> &e) { return e.second == pin; }),
      m_otherPinIndexes.end());
}

HBOPinProps *HBOBoardComponent::getPinByIndex(int index) const {
  if (inSlotRange(index))
    return static_cast<std::size_t>(index) < m_pinSlots.size() ? m_pinSlots[index] : nullptr;
  auto range = std::equal_range(
      m_otherPinIndexes.begin(), m_otherPinIndexes.end(), std::make_pair(index, nullptr),
      [](const std::pair<int, HBOPinProps *> &a, const std::pair<int, HBOPinProps *> &b) {
        return a.first < b.first;
      });
  // Several pins with one index are a fault of the file; the first in name
  // order answers. A pin whose index changed after it was entered does not.
  HBOPinProps *found = nullptr;
  for (auto it = range.first; it != range.second; ++it) {
    HBOPinProps *pin = it->second;
    if (pin->getPinIndex() == index && (!found || pin->getName() < found->getName()))
      found = pin;
  }
  return found;
}

HBOPinProps *HBOBoardComponent::findPin(const std::string &name) const {
  auto it = m_pins.find(name);
  return it == m_pins.end() ? nullptr : it->second;
}

int HBOBoardComponent::findPinIndex(const std::string &name) const {
  const HBOPinProps *pin = findPin(name);
  return pin ? pin->getPinIndex() : -1;
}

void HBOBoardComponent::getPinsVec(std::vector<HBOPinProps *> &out) const {
  for (const auto &entry : m_pins)
    out.push_back(entry.second);
}

bool HBOBoardComponent::populateConstraintsData(std::string file) {
  if (m_constraintsPopulated)
    return false;
  // The argument is historical: the file is the component's own field.
  file = rare_().constraintsFile;
  boost::system::error_code ec;
  if (file.empty() || !boost::filesystem::exists(file, ec))
    return false;

  HXMLWInterface doc;
  HXMLWElement *root = nullptr;
  try {
    if (doc.readFromFile(file))
      root = doc.getRootElement();
  } catch (const std::exception &e) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-44@%s", std::string(e.what()));
  }
  if (!root)
    return false;

  using namespace HBOCommon;
  for (const HXMLWElement &child : root->getChildren()) {
    const std::string tag = child.getTag();
    if (tag != "PIN") {
      ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-43@%s", tag);
      continue;
    }
    // Only these seven columns are read; the others stay empty.
    std::map<std::string, std::string> columns{{PIN_NAME, ""},     {PIN_INDEX, ""}, {PIN_LOC, ""},
                                               {PIN_DIFFTERM, ""}, {PIN_DRIVE, ""}, {PIN_IOSTD, ""},
                                               {PIN_SLEW, ""}};
    for (const HXMLWElement &column : child.getChildren()) {
      auto it = columns.find(column.getTag());
      if (it != columns.end())
        it->second = column.getText();
    }
    auto value = [&columns](const char *key) {
      auto it = columns.find(key);
      return it == columns.end() ? std::string() : it->second;
    };

    HBOModelPort *port = nullptr;
    if (!getModelPortByName(port, value(PIN_NAME)) || !port)
      continue;
    std::vector<HBOPinProps *> records;
    if (!port->getPortPropsSeq(records) || records.empty())
      continue;

    std::string name = port->getName();
    long position = 0;
    int index = -1;
    bool isVector = false;
    port->isPortOfTypeVec(isVector);
    if (isVector) {
      const std::string indexText = value(PIN_INDEX);
      // Read as strtol reads; a pin whose index holds no number, or one
      // that an int cannot hold, would land on a wrong pin: it is told and
      // left out.
      if (HUTConvert::parseInteger(indexText, index, HUTConvert::IntegerForm::Prefix) !=
          HUTConvert::IntegerResult::Ok) {
        ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-69@%s%s", file,
                           "PIN_INDEX value \"" + HUTConvert::quoteValue(indexText) +
                               "\" of pin '" + name + "' is not valid, must be an integer.");
        continue;
      }
      name += "[" + indexText + "]";
      int left = -1;
      int right = -1;
      port->getPortVecLeft(left);
      port->getPortVecRight(right);
      position = static_cast<long>(index) - (left > right ? right : left);
    }
    if (position < 0 || static_cast<unsigned long>(position) >= records.size())
      continue;
    HBOPinProps *record = records[static_cast<std::size_t>(position)];
    if (!record)
      continue;
    record->setProp(index, port, name, value(PIN_LOC), value(PIN_DIFFTERM), value(PIN_DRIVE),
                    value(PIN_IOSTD), value(PIN_SLEW), value(PIN_OUTPUT_IMPEDANCE),
                    value(PIN_IBUF_LOW_PWR), value(PIN_ODT), value(PIN_EQUALIZATION),
                    value(PIN_PRE_EMPHASIS), value(PIN_DQS_BIAS));
  }
  m_constraintsPopulated = true;
  return false;
}

// ---- owned records ----

void HBOBoardComponent::addParameter(HBOParameter *parameter) {
  if (parameter)
    m_parameters.push_back(parameter);
}

bool HBOBoardComponent::getParamValue(const std::string &name, std::string &out) const {
  for (const HBOParameter *parameter : m_parameters) {
    if (parameter && parameter->getName() == name) {
      out = parameter->getValue();
      return true;
    }
  }
  return false;
}

void HBOBoardComponent::addImage(HBOImage *image) {
  if (image)
    m_images.push_back(image);
}

void HBOBoardComponent::addComponentMode(HBOComponentMode *mode) {
  if (mode)
    m_modes.push_back(mode);
}

void HBOBoardComponent::updateEnablementDependencyJumperName(const std::string &oldName,
                                                             const std::string &newName) {
  for (HBOComponentMode *mode : m_modes)
    if (mode)
      mode->updateEnablementDependencyJumperName(oldName, newName);
}

void HBOBoardComponent::addIICPosition(HBOBoardCompMuxPosition *position) {
  if (!position)
    return;
  HBOBoardCompMuxPosition *&slot = m_muxPositions[position->getPosition()];
  if (slot && slot != position)
    delete slot;
  slot = position;
}

void HBOBoardComponent::addDriver(HBOBoardComponentDriver *driver) {
  if (driver)
    m_drivers.push_back(driver);
}

// ---- JTAG ----

void HBOBoardComponent::addJtagPosition(const std::string &chain, const std::string &position) {
  m_jtagPositions[chain] = position;
}

std::string HBOBoardComponent::getJtagPosition(const std::string &chain) const {
  auto it = m_jtagPositions.find(chain);
  return it == m_jtagPositions.end() ? std::string() : it->second;
}

int HBOBoardComponent::getJtagPositionForSingleChain(std::string &out) const {
  out.clear();
  if (m_jtagPositions.size() == 1)
    out = m_jtagPositions.begin()->second;
  return static_cast<int>(m_jtagPositions.size());
}

// ---- supported parts ----

void HBOBoardComponent::getAdditionalSupportedPartNames(std::vector<std::string> &out,
                                                        bool includeMain) const {
  out.clear();
  if (includeMain)
    out.push_back(m_partName);
  out.insert(out.end(), m_additionalParts.begin(), m_additionalParts.end());
}

bool HBOBoardComponent::isPartNameSupported(const std::string &name) const {
  if (name == m_partName)
    return true;
  for (const std::string &part : m_additionalParts) {
    if (part == name)
      return true;
  }
  return false;
}

bool HBOBoardComponent::updatePartName(const std::string &newName) {
  if (newName == m_partName)
    return true;
  for (std::string &part : m_additionalParts) {
    if (part != newName)
      continue;
    // Swap, so that the old part stays selectable.
    part = m_partName;
    m_partName = newName;
    m_partUpdated = true;
    return true;
  }
  return false;
}

// ---- connection sides and kinds ----

bool HBOBoardComponent::isConnectedToLogicOnly() const { return iEquals(m_connectedTo, "pl"); }

bool HBOBoardComponent::isConnectedToPSOnly() const { return iEquals(m_connectedTo, "ps"); }

bool HBOBoardComponent::isConnectedToPSAndLogic() const {
  return iEquals(m_connectedTo, "ps_and_pl");
}

bool HBOBoardComponent::isCompatibleWithSomVLN(const std::string &vln) const {
  for (const HBOParameter *parameter : m_parameters) {
    if (parameter && parameter->getName() == "compatible_som_vln")
      return HBOCommon::toLowerCopy(parameter->getValue()) == HBOCommon::toLowerCopy(vln);
  }
  return true;
}

bool HBOBoardComponent::isConnectorOfSubType_(const char *subType) const {
  return m_type == "connector" && m_subType == subType;
}

bool HBOBoardComponent::isLPCConnector() const { return isConnectorOfSubType_("fmc_lpc"); }

bool HBOBoardComponent::isLPCPlusConnector() const {
  return isConnectorOfSubType_("fmc_plus") || isConnectorOfSubType_("fmc_lpc_plus");
}

bool HBOBoardComponent::isHPCConnector() const { return isConnectorOfSubType_("fmc_hpc"); }

bool HBOBoardComponent::isLPCCategoryConnector() const {
  return isLPCConnector() || isHPCConnector() || isLPCPlusConnector();
}

bool HBOBoardComponent::isDIMMConnector() const { return isConnectorOfSubType_("dimm"); }

bool HBOBoardComponent::isPMODConnector() const { return isConnectorOfSubType_("pmod"); }

bool HBOBoardComponent::isSOM240Connector() const {
  return isConnectorOfSubType_("som240") || isConnectorOfSubType_("som");
}

bool HBOBoardComponent::isSOM480Connector() const { return isConnectorOfSubType_("som480"); }

bool HBOBoardComponent::isSOMCategoryConnector() const {
  return isSOM240Connector() || isSOM480Connector();
}

bool HBOBoardComponent::isDockline160Connector() const {
  return isConnectorOfSubType_("dockline160");
}

bool HBOBoardComponent::isConnector() const {
  return isDockline160Connector() || isLPCConnector() || isHPCConnector() || isLPCPlusConnector() ||
         isDIMMConnector() || isPMODConnector() || isSOM240Connector() || isSOM480Connector();
}

void HBOBoardComponent::addCompatibleConnector(const std::string &vendor,
                                               const std::string &boardName,
                                               const std::string &boardVersion,
                                               const std::string &connectorName) {
  m_compatibleConnectors.emplace_back(vendor, boardName, boardVersion, connectorName);
}

// ---- debugging ----

void HBOBoardComponent::display(int indent) const {
  std::cout << dashes(indent) << "Component - Display Name: " << m_displayName
            << ", Name: " << m_name << ", Type: " << m_type << ", Sub-Type: " << m_subType
            << ", Part Name: " << m_partName << ", Pin Map File: " << m_pinMapFile << "\n";
  std::cout << dashes(indent + 2) << "Parameters:\n";
  for (const HBOParameter *parameter : m_parameters)
    parameter->display(indent + 4);
  std::cout << dashes(indent + 2) << "Component Modes:\n";
  for (const HBOComponentMode *mode : m_modes)
    mode->display(indent + 4);
  std::cout << dashes(indent + 2) << "Interfaces:\n";
  for (const auto &entry : m_interfaces) {
    if (entry.second)
      entry.second->display(indent + 4);
  }
  std::cout << dashes(indent + 2) << "Model Ports:\n";
  for (const auto &entry : m_modelPorts) {
    if (entry.second)
      entry.second->display(indent + 4);
  }
  std::cout << dashes(indent + 2) << "Pins:\n";
  for (const auto &entry : m_pins) {
    if (entry.second)
      entry.second->display(indent + 4);
  }
}
