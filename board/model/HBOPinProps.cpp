#include "HBOPinProps.h"

#include "HBOCommon.h"
#include "HSTIntern.h"
#include "NativeCache.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <deque>
#include <functional>
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

// What few pins have, or what no pin has at first.
struct HBOPinProps::Extra {
  struct Value {
    PropId id;
    Text pooled;
    // Once getPortProp handed out a reference, the pin owns a string of its
    // own that the caller may change.
    std::unique_ptr<std::string> owned;
    const std::string *get() const { return owned ? owned.get() : pooled; }
  };
  std::vector<Value> props;        // in no order
  std::vector<TextPair> bankProps; // beyond the inline ones, in no order
  std::vector<TextPair> intfPorts; // beyond the first, in no order
  std::vector<StringMap> partOf;
  Text internalVref = &HSTIntern::empty();
  Text gtLoc = &HSTIntern::empty();
};

HBOPinProps::HBOPinProps() : m_loc(&HSTIntern::empty()) {}

HBOPinProps::~HBOPinProps() { zeb::forgetScriptHandles(this); }

HBOPinProps::Extra &HBOPinProps::extra_() const {
  if (!m_extra)
    m_extra.reset(new Extra);
  return *m_extra;
}

template <typename F> void HBOPinProps::forEachValue_(F f) const {
  for (int i = 0; i < m_propCount; ++i)
    f(PropId(m_propIds[i]), *m_propValues[i]);
  if (m_extra)
    for (const Extra::Value &value : m_extra->props)
      f(value.id, *value.get());
}

template <typename F> void HBOPinProps::forEachBankProp_(F f) const {
  for (int i = 0; i < m_bankCount; ++i)
    f(*m_bankProps[i].first, *m_bankProps[i].second);
  if (m_extra)
    for (const TextPair &entry : m_extra->bankProps)
      f(*entry.first, *entry.second);
}

template <typename F> void HBOPinProps::forEachIntfPort_(F f) const {
  if (m_intfPort.first)
    f(*m_intfPort.first, *m_intfPort.second);
  if (m_extra)
    for (const TextPair &entry : m_extra->intfPorts)
      f(*entry.first, *entry.second);
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
  out = *m_loc;
  return true;
}

void HBOPinProps::setPinLoc(std::string_view loc) { m_loc = &HSTIntern::get(loc); }

bool HBOPinProps::getPinInternalVref(std::string &out) const {
  out = m_extra ? *m_extra->internalVref : std::string();
  return true;
}

void HBOPinProps::setPinInternalVref(const std::string &vref) {
  extra_().internalVref = &HSTIntern::get(vref);
}

const std::string &HBOPinProps::getGtLoc() const {
  return m_extra ? *m_extra->gtLoc : HSTIntern::empty();
}

void HBOPinProps::setGtLoc(const std::string &gtLoc) { extra_().gtLoc = &HSTIntern::get(gtLoc); }

// ---- port properties, by id ----

bool HBOPinProps::isPresent_(PropId id) const {
  if (id < MaskBits)
    return (m_propMask >> id) & 1u;
  return findValue_(id) != nullptr;
}

const std::string *HBOPinProps::findValue_(PropId id) const {
  if (id < MaskBits)
    for (int i = 0; i < m_propCount; ++i)
      if (m_propIds[i] == id)
        return m_propValues[i];
  if (m_extra)
    for (const Extra::Value &value : m_extra->props)
      if (value.id == id)
        return value.get();
  return nullptr;
}

void HBOPinProps::dropInline_(int at) const {
  --m_propCount;
  m_propIds[at] = m_propIds[m_propCount];
  m_propValues[at] = m_propValues[m_propCount];
}

std::string &HBOPinProps::materialise_(PropId id) const {
  if (id < MaskBits)
    m_propMask |= std::uint64_t(1) << id;
  std::vector<Extra::Value> &props = extra_().props;
  for (Extra::Value &value : props) {
    if (value.id != id)
      continue;
    if (!value.owned)
      value.owned.reset(new std::string(*value.pooled));
    return *value.owned;
  }
  Text pooled = &HSTIntern::empty();
  for (int i = 0; i < m_propCount; ++i) {
    if (m_propIds[i] == id) {
      pooled = m_propValues[i];
      // The value moves to the extra part, where it can be owned.
      dropInline_(i);
      break;
    }
  }
  props.push_back(Extra::Value{id, pooled, std::unique_ptr<std::string>(new std::string(*pooled))});
  return *props.back().owned;
}

void HBOPinProps::setById_(PropId id, std::string_view value) {
  const bool masked = id < MaskBits;
  if (masked)
    m_propMask |= std::uint64_t(1) << id;
  if (masked && value.empty()) {
    // Present and empty needs only the bit; drop a stored value.
    for (int i = 0; i < m_propCount; ++i) {
      if (m_propIds[i] == id) {
        dropInline_(i);
        return;
      }
    }
    if (m_extra) {
      std::vector<Extra::Value> &props = m_extra->props;
      props.erase(std::remove_if(props.begin(), props.end(),
                                 [id](const Extra::Value &v) { return v.id == id; }),
                  props.end());
    }
    return;
  }
  Text pooled = &HSTIntern::get(value);
  if (masked) {
    for (int i = 0; i < m_propCount; ++i) {
      if (m_propIds[i] == id) {
        m_propValues[i] = pooled;
        return;
      }
    }
  }
  if (m_extra) {
    for (Extra::Value &entry : m_extra->props) {
      if (entry.id == id) {
        entry.owned.reset();
        entry.pooled = pooled;
        return;
      }
    }
  }
  if (masked && m_propCount < s_inlineProps) {
    m_propIds[m_propCount] = static_cast<std::uint8_t>(id);
    m_propValues[m_propCount] = pooled;
    ++m_propCount;
    return;
  }
  extra_().props.push_back(Extra::Value{id, pooled, nullptr});
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

void HBOPinProps::setPortPropAt(std::size_t slot, std::string_view value) {
  if (slot < KnownCount)
    setById_(static_cast<PropId>(slot), value);
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
  forEachValue_([&result](PropId id, const std::string &value) {
    if (id >= MaskBits)
      result.emplace(propName(id), value);
  });
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
  return setIOBankPropertyView(name, value);
}

bool HBOPinProps::setIOBankPropertyView(std::string_view name, std::string_view value) {
  if (name.empty())
    return false;
  Text pooled = &HSTIntern::get(value);
  for (int i = 0; i < m_bankCount; ++i) {
    if (*m_bankProps[i].first == name) {
      m_bankProps[i].second = pooled;
      return true;
    }
  }
  if (m_extra) {
    for (TextPair &entry : m_extra->bankProps) {
      if (*entry.first == name) {
        entry.second = pooled;
        return true;
      }
    }
  }
  const TextPair entry(&HSTIntern::get(name), pooled);
  if (m_bankCount < s_inlineBankProps)
    m_bankProps[m_bankCount++] = entry;
  else
    extra_().bankProps.push_back(entry);
  return true;
}

std::string HBOPinProps::getIOBankPropertyValue(const std::string &name) const {
  if (m_bankCount == 0 || name.empty())
    return std::string();
  // Of several names equal ignoring case, the first in name order answers.
  const std::string *bestName = nullptr;
  const std::string *bestValue = nullptr;
  forEachBankProp_([&](const std::string &entryName, const std::string &value) {
    if (HBOCommon::iEquals(entryName, name) && (!bestName || entryName < *bestName)) {
      bestName = &entryName;
      bestValue = &value;
    }
  });
  return bestValue ? *bestValue : std::string();
}

bool HBOPinProps::getIOBankPropertyList(StringMap &out) const {
  out = getIOBankProperties();
  return true;
}

HBOPinProps::StringMap HBOPinProps::getIOBankProperties() const {
  StringMap result;
  forEachBankProp_([&result](const std::string &name, const std::string &value) {
    result.emplace(name, value);
  });
  return result;
}

// ---- groups and interfaces using the pin ----

const std::vector<HBOPinProps::StringMap> &HBOPinProps::getPartOf() const {
  static const std::vector<StringMap> none;
  return m_extra ? m_extra->partOf : none;
}

void HBOPinProps::addPartOf(const StringMap &group) { extra_().partOf.push_back(group); }

HBOPinProps::StringMap HBOPinProps::getIntfPortMap() const {
  StringMap result;
  forEachIntfPort_(
      [&result](const std::string &intf, const std::string &port) { result.emplace(intf, port); });
  return result;
}

void HBOPinProps::addIntfPortMap(const std::string &interfaceName, const std::string &port) {
  // Pooled texts are equal exactly when they are the same object.
  const TextPair entry(&HSTIntern::get(interfaceName), &HSTIntern::get(port));
  if (!m_intfPort.first || m_intfPort.first == entry.first) {
    m_intfPort = entry;
    return;
  }
  if (m_extra) {
    for (TextPair &other : m_extra->intfPorts) {
      if (other.first == entry.first) {
        other.second = entry.second;
        return;
      }
    }
  }
  extra_().intfPorts.push_back(entry);
}

std::string HBOPinProps::getPortForInterface(const std::string &interfaceName) const {
  std::string port;
  forEachIntfPort_([&](const std::string &intf, const std::string &value) {
    if (intf == interfaceName)
      port = value;
  });
  return port;
}

// ---- whole-pin operations ----

void HBOPinProps::copyIOPropertiesFrom(const HBOPinProps &other) {
  if (&other == this)
    return;
  if (!other.m_loc->empty())
    m_loc = other.m_loc;
  other.forEachValue_([this](PropId id, const std::string &value) {
    if (!value.empty())
      setById_(id, value);
  });
  if (other.m_extra) {
    if (!other.m_extra->internalVref->empty())
      extra_().internalVref = other.m_extra->internalVref;
    if (!other.m_extra->gtLoc->empty())
      extra_().gtLoc = other.m_extra->gtLoc;
  }
  other.forEachBankProp_([this](const std::string &name, const std::string &value) {
    if (!value.empty())
      setIOBankPropertyView(name, value);
  });
}

bool HBOPinProps::setProp(int index, HBOModelPort *port, std::string name, std::string loc,
                          std::string diffTerm, std::string drive, std::string ioStandard,
                          std::string slew, std::string outputImpedance, std::string ibufLowPwr,
                          std::string odt, std::string equalization, std::string preEmphasis,
                          std::string dqsBias) {
  HBOCommon::toUpperInPlace(loc);
  m_loc = &HSTIntern::get(loc);
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
            << ", name:" << m_name << ", iostd:" << getByIdOrEmpty_(IoStandard)
            << ", loc:" << *m_loc << ", drive:" << getByIdOrEmpty_(Drive)
            << ", slew:" << getByIdOrEmpty_(Slew) << ", diff_term:" << getByIdOrEmpty_(DiffTerm);
  for (const auto &entry : getPortProps()) {
    if (entry.first == "iostandard" || entry.first == "drive" || entry.first == "slew" ||
        entry.first == "diff_term")
      continue;
    std::cout << ", " << entry.first << ":" << entry.second;
  }
  for (const auto &entry : getIOBankProperties())
    std::cout << ", iobank." << entry.first << ":" << entry.second;
  std::cout << "\n";
}
