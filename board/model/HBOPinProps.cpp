#include "HBOPinProps.h"

#include "HBOCommon.h"
#include "HSTIntern.h"
#include "NativeCache.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <deque>
#include <iostream>
#include <mutex>
#include <unordered_map>

namespace {

using PropId = std::uint32_t;

// Fixed ids of the known port properties: their positions in
// getPortPropNames().
enum KnownProp : PropId {
  DiffTerm = 0,
  DiffTermAdv,
  DqsBias,
  Drive,
  Equalization,
  IbufLowPwr,
  IoStandard,
  LvdsPreEmphasis,
  Odt,
  OutputImpedance,
  PreEmphasis,
  PullType,
  Slew,
  Voh,
  PcbMinDelay,
  PcbMaxDelay,
  KnownCount
};

constexpr PropId MaskBits = 64;

// Names beyond the known ones, shared by all pins of the process. Readers
// of several boards may meet at once, hence the lock; the table only grows.
class PropNameTable {
public:
  static PropNameTable &instance() {
    static PropNameTable table;
    return table;
  }

  bool find(const std::string &name, PropId &id) {
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_ids.find(name);
    if (it == m_ids.end())
      return false;
    id = it->second;
    return true;
  }

  PropId intern(const std::string &name) {
    std::lock_guard<std::mutex> lock(m_mutex);
    auto it = m_ids.find(name);
    if (it != m_ids.end())
      return it->second;
    const PropId id = static_cast<PropId>(KnownCount + m_names.size());
    m_names.push_back(name);
    m_ids.emplace(name, id);
    return id;
  }

  std::string name(PropId id) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const std::size_t slot = id - KnownCount;
    assert(id >= KnownCount && slot < m_names.size() && "property id was never handed out");
    return slot < m_names.size() ? m_names[slot] : std::string();
  }

private:
  std::mutex m_mutex;
  std::deque<std::string> m_names;
  std::unordered_map<std::string, PropId> m_ids;
};

bool hasUpper(const std::string &text) {
  for (char c : text) {
    if (std::isupper(static_cast<unsigned char>(c)))
      return true;
  }
  return false;
}

// The id of a known (lower-case) property name, found by its length and
// first letter rather than by comparing with all sixteen: readers set every
// known property of every pin.
bool knownPropId(const std::string &name, PropId &id) {
  auto is = [&name, &id](PropId candidate, const char *text) {
    if (name.compare(text) != 0)
      return false;
    id = candidate;
    return true;
  };
  switch (name.size()) {
  case 3:
    return name[0] == 'o' ? is(Odt, "odt") : is(Voh, "voh");
  case 4:
    return name[0] == 's' && is(Slew, "slew");
  case 5:
    return name[0] == 'd' && is(Drive, "drive");
  case 8:
    return name[0] == 'd' && is(DqsBias, "dqs_bias");
  case 9:
    return name[0] == 'd' ? is(DiffTerm, "diff_term") : is(PullType, "pull_type");
  case 10:
    return name[0] == 'i' && is(IoStandard, "iostandard");
  case 12:
    if (name[0] == 'e')
      return is(Equalization, "equalization");
    if (name[0] == 'i')
      return is(IbufLowPwr, "ibuf_low_pwr");
    return is(PreEmphasis, "pre_emphasis");
  case 13:
    if (name[0] == 'd')
      return is(DiffTermAdv, "diff_term_adv");
    return name[5] == 'i' ? is(PcbMinDelay, "pcb_min_delay") : is(PcbMaxDelay, "pcb_max_delay");
  case 16:
    return name[0] == 'o' && is(OutputImpedance, "output_impedance");
  case 17:
    return name[0] == 'l' && is(LvdsPreEmphasis, "lvds_pre_emphasis");
  default:
    return false;
  }
}

// The id of \p name, lower-cased first. With \p create an unknown name gets
// a new id; without, an unknown name is simply absent.
bool lookupPropId(const std::string &name, PropId &id, bool create) {
  std::string lowered;
  const std::string *key = &name;
  if (hasUpper(name)) {
    lowered = HBOCommon::toLowerCopy(name);
    key = &lowered;
  }
  if (knownPropId(*key, id))
    return true;
  if (create) {
    id = PropNameTable::instance().intern(*key);
    return true;
  }
  return PropNameTable::instance().find(*key, id);
}

std::string propName(PropId id) {
  if (id < KnownCount)
    return HBOPinProps::getPortPropNames()[id];
  return PropNameTable::instance().name(id);
}

} // namespace

HBOPinProps::HBOPinProps() : m_internalVref(&HSTIntern::empty()), m_gtLoc(&HSTIntern::empty()) {}

HBOPinProps::~HBOPinProps() {
  zeb::forgetScriptHandles(this);
  for (const PropValue &entry : m_propValues)
    if (entry.owned)
      delete entry.value;
}

const std::vector<std::string> &HBOPinProps::getPortPropNames() {
  static const std::vector<std::string> names{"diff_term",     "diff_term_adv",
                                              "dqs_bias",      "drive",
                                              "equalization",  "ibuf_low_pwr",
                                              "iostandard",    "lvds_pre_emphasis",
                                              "odt",           "output_impedance",
                                              "pre_emphasis",  "pull_type",
                                              "slew",          "voh",
                                              "pcb_min_delay", "pcb_max_delay"};
  return names;
}

bool HBOPinProps::getPinIndex(int &out) const {
  out = m_pinIndex;
  return true;
}

bool HBOPinProps::getOwnerPort(HBOModelPort *&out) const {
  if (!m_ownerPort)
    return false;
  out = m_ownerPort;
  return true;
}

bool HBOPinProps::getName(std::string &out) const {
  out = m_name;
  return true;
}

bool HBOPinProps::getPinLoc(std::string &out) const {
  out = m_loc;
  return true;
}

bool HBOPinProps::getPinInternalVref(std::string &out) const {
  out = *m_internalVref;
  return true;
}

void HBOPinProps::setPinInternalVref(const std::string &vref) {
  m_internalVref = &HSTIntern::get(vref);
}

void HBOPinProps::setGtLoc(const std::string &gtLoc) { m_gtLoc = &HSTIntern::get(gtLoc); }

// ---- port properties, by id ----

bool HBOPinProps::isPresent_(PropId id) const {
  if (id < MaskBits)
    return (m_propMask >> id) & 1u;
  return findValue_(id) != nullptr;
}

const std::string *HBOPinProps::findValue_(PropId id) const {
  auto it = std::lower_bound(m_propValues.begin(), m_propValues.end(), id,
                             [](const PropValue &v, PropId key) { return v.id < key; });
  if (it == m_propValues.end() || it->id != id)
    return nullptr;
  return it->value;
}

std::string &HBOPinProps::materialise_(PropId id) const {
  if (id < MaskBits)
    m_propMask |= std::uint64_t(1) << id;
  auto it = std::lower_bound(m_propValues.begin(), m_propValues.end(), id,
                             [](const PropValue &v, PropId key) { return v.id < key; });
  if (it == m_propValues.end() || it->id != id)
    it = m_propValues.insert(it, PropValue{id, false, &HSTIntern::empty()});
  if (!it->owned) {
    it->value = new std::string(*it->value);
    it->owned = true;
  }
  return *const_cast<std::string *>(it->value);
}

void HBOPinProps::setById_(PropId id, const std::string &value) {
  if (id < MaskBits && value.empty()) {
    // Present and empty needs only the bit; drop a stored value.
    m_propMask |= std::uint64_t(1) << id;
    auto it = std::lower_bound(m_propValues.begin(), m_propValues.end(), id,
                               [](const PropValue &v, PropId key) { return v.id < key; });
    if (it != m_propValues.end() && it->id == id) {
      if (it->owned)
        delete it->value;
      m_propValues.erase(it);
    }
    return;
  }
  auto it = std::lower_bound(m_propValues.begin(), m_propValues.end(), id,
                             [](const PropValue &v, PropId key) { return v.id < key; });
  if (id < MaskBits)
    m_propMask |= std::uint64_t(1) << id;
  const std::string *pooled = &HSTIntern::get(value);
  if (it != m_propValues.end() && it->id == id) {
    if (it->owned)
      delete it->value;
    it->owned = false;
    it->value = pooled;
    return;
  }
  if (m_propValues.capacity() == m_propValues.size()) {
    // Pins of a board carry a handful of values each; one allocation.
    const std::size_t at = it - m_propValues.begin();
    m_propValues.reserve(m_propValues.empty() ? 6 : 2 * m_propValues.size());
    it = m_propValues.begin() + at;
  }
  m_propValues.insert(it, PropValue{id, false, pooled});
}

void HBOPinProps::getById_(PropId id, std::string &out) const {
  if (!isPresent_(id))
    return;
  const std::string *value = findValue_(id);
  if (value)
    out = *value;
  else
    out.clear();
}

std::string HBOPinProps::getByIdOrEmpty_(PropId id) const {
  std::string value;
  getById_(id, value);
  return value;
}

// ---- port properties, by name ----

std::string &HBOPinProps::getPortProp(const std::string &name) const {
  PropId id = 0;
  lookupPropId(name, id, true);
  return materialise_(id);
}

void HBOPinProps::setPortProp(const std::string &name, const std::string &value) {
  PropId id = 0;
  lookupPropId(name, id, true);
  setById_(id, value);
}

void HBOPinProps::getPortProp_(const std::string &name, std::string &out) const {
  PropId id = 0;
  if (!lookupPropId(name, id, false))
    return;
  getById_(id, out);
}

HBOPinProps::StringMap HBOPinProps::getPortProps() const {
  StringMap result;
  for (PropId id = 0; id < MaskBits; ++id) {
    if (!((m_propMask >> id) & 1u))
      continue;
    const std::string *value = findValue_(id);
    result.emplace(propName(id), value ? *value : std::string());
  }
  for (const PropValue &entry : m_propValues) {
    if (entry.id >= MaskBits)
      result.emplace(propName(entry.id), *entry.value);
  }
  return result;
}

void HBOPinProps::getPinIOStandard(std::string &out) const { getById_(IoStandard, out); }
std::string HBOPinProps::getPinIOStandard() const { return getByIdOrEmpty_(IoStandard); }
void HBOPinProps::setPinIOStandard(const std::string &value) { setById_(IoStandard, value); }
void HBOPinProps::getPinDiffTerm(std::string &out) const { getById_(DiffTerm, out); }
std::string HBOPinProps::getPinDiffTerm() const { return getByIdOrEmpty_(DiffTerm); }
void HBOPinProps::setPinDiffTerm(const std::string &value) { setById_(DiffTerm, value); }
void HBOPinProps::getPinDqsBias(std::string &out) const { getById_(DqsBias, out); }
std::string HBOPinProps::getPinDqsBias() const { return getByIdOrEmpty_(DqsBias); }
void HBOPinProps::setPinDqsBias(const std::string &value) { setById_(DqsBias, value); }
void HBOPinProps::getPinDrive(std::string &out) const { getById_(Drive, out); }
std::string HBOPinProps::getPinDrive() const { return getByIdOrEmpty_(Drive); }
void HBOPinProps::setPinDrive(const std::string &value) { setById_(Drive, value); }
void HBOPinProps::getPinEqualization(std::string &out) const { getById_(Equalization, out); }
void HBOPinProps::setPinEqualization(const std::string &value) { setById_(Equalization, value); }
void HBOPinProps::getPinIbufLowPwr(std::string &out) const { getById_(IbufLowPwr, out); }
void HBOPinProps::setPinIbufLowPwr(const std::string &value) { setById_(IbufLowPwr, value); }
void HBOPinProps::getPinOdt(std::string &out) const { getById_(Odt, out); }
void HBOPinProps::setPinOdt(const std::string &value) { setById_(Odt, value); }
void HBOPinProps::getPinOutputImpedance(std::string &out) const { getById_(OutputImpedance, out); }
void HBOPinProps::setPinOutputImpedance(const std::string &value) {
  setById_(OutputImpedance, value);
}
void HBOPinProps::getPinPreEmphasis(std::string &out) const { getById_(PreEmphasis, out); }
void HBOPinProps::setPinPreEmphasis(const std::string &value) { setById_(PreEmphasis, value); }
void HBOPinProps::getPinSlew(std::string &out) const { getById_(Slew, out); }
std::string HBOPinProps::getPinSlew() const { return getByIdOrEmpty_(Slew); }
void HBOPinProps::setPinSlew(const std::string &value) { setById_(Slew, value); }

// ---- IO bank properties ----

bool HBOPinProps::setIOBankProperty(const std::string &name, const std::string &value) {
  if (name.empty())
    return false;
  auto it =
      std::lower_bound(m_ioBankProps.begin(), m_ioBankProps.end(), name,
                       [](const BankProp &e, const std::string &key) { return *e.first < key; });
  const std::string *pooled = &HSTIntern::get(value);
  if (it != m_ioBankProps.end() && *it->first == name) {
    it->second = pooled;
    return true;
  }
  if (m_ioBankProps.empty()) {
    // Bank, VCCO and VREF on most pins: one allocation.
    m_ioBankProps.reserve(3);
    it = m_ioBankProps.begin();
  }
  m_ioBankProps.emplace(it, &HSTIntern::get(name), pooled);
  return true;
}

std::string HBOPinProps::getIOBankPropertyValue(const std::string &name) const {
  if (m_ioBankProps.empty() || name.empty())
    return std::string();
  for (const BankProp &entry : m_ioBankProps) {
    if (HBOCommon::iEquals(*entry.first, name))
      return *entry.second;
  }
  return std::string();
}

bool HBOPinProps::getIOBankPropertyList(StringMap &out) const {
  out = getIOBankProperties();
  return true;
}

HBOPinProps::StringMap HBOPinProps::getIOBankProperties() const {
  StringMap result;
  for (const BankProp &entry : m_ioBankProps)
    result.emplace_hint(result.end(), *entry.first, *entry.second);
  return result;
}

// ---- interfaces using the pin ----

HBOPinProps::StringMap HBOPinProps::getIntfPortMap() const {
  return StringMap(m_intfPortMap.begin(), m_intfPortMap.end());
}

void HBOPinProps::addIntfPortMap(const std::string &interfaceName, const std::string &port) {
  auto it = std::lower_bound(m_intfPortMap.begin(), m_intfPortMap.end(), interfaceName,
                             [](const std::pair<std::string, std::string> &e,
                                const std::string &key) { return e.first < key; });
  if (it != m_intfPortMap.end() && it->first == interfaceName)
    it->second = port;
  else
    m_intfPortMap.emplace(it, interfaceName, port);
}

std::string HBOPinProps::getPortForInterface(const std::string &interfaceName) const {
  auto it = std::lower_bound(m_intfPortMap.begin(), m_intfPortMap.end(), interfaceName,
                             [](const std::pair<std::string, std::string> &e,
                                const std::string &key) { return e.first < key; });
  if (it != m_intfPortMap.end() && it->first == interfaceName)
    return it->second;
  return std::string();
}

// ---- whole-pin operations ----

void HBOPinProps::copyIOPropertiesFrom(const HBOPinProps &other) {
  if (&other == this)
    return;
  if (!other.m_loc.empty())
    m_loc = other.m_loc;
  for (const PropValue &entry : other.m_propValues) {
    if (!entry.value->empty())
      setById_(entry.id, *entry.value);
  }
  if (!other.m_internalVref->empty())
    m_internalVref = other.m_internalVref;
  if (!other.m_gtLoc->empty())
    m_gtLoc = other.m_gtLoc;
  for (const BankProp &entry : other.m_ioBankProps) {
    if (!entry.second->empty())
      setIOBankProperty(*entry.first, *entry.second);
  }
}

bool HBOPinProps::setProp(int index, HBOModelPort *port, std::string name, std::string loc,
                          std::string diffTerm, std::string drive, std::string ioStandard,
                          std::string slew, std::string outputImpedance, std::string ibufLowPwr,
                          std::string odt, std::string equalization, std::string preEmphasis,
                          std::string dqsBias) {
  HBOCommon::toUpperInPlace(loc);
  m_loc = std::move(loc);
  m_name = std::move(name);
  m_ownerPort = port;
  m_pinIndex = index;
  setById_(DiffTerm, diffTerm);
  setById_(Drive, drive);
  setById_(IoStandard, ioStandard);
  setById_(Slew, slew);
  setById_(OutputImpedance, outputImpedance);
  setById_(IbufLowPwr, ibufLowPwr);
  setById_(Odt, odt);
  setById_(Equalization, equalization);
  setById_(PreEmphasis, preEmphasis);
  setById_(DqsBias, dqsBias);
  return true;
}

void HBOPinProps::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Pin - index:" << m_pinIndex
            << ", name:" << m_name << ", iostd:" << getByIdOrEmpty_(IoStandard) << ", loc:" << m_loc
            << ", drive:" << getByIdOrEmpty_(Drive) << ", slew:" << getByIdOrEmpty_(Slew)
            << ", diff_term:" << getByIdOrEmpty_(DiffTerm);
  for (const auto &entry : getPortProps()) {
    if (entry.first == "iostandard" || entry.first == "drive" || entry.first == "slew" ||
        entry.first == "diff_term")
      continue;
    std::cout << ", " << entry.first << ":" << entry.second;
  }
  for (const BankProp &entry : m_ioBankProps)
    std::cout << ", iobank." << *entry.first << ":" << *entry.second;
  std::cout << "\n";
}
