#include "HBOPinProps.h"

#include "HBOCommon.h"
#include "HSTIntern.h"
#include "NativeCache.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cctype>
#include <deque>
#include <functional>
#include <iostream>
#include <mutex>
#include <unordered_map>
#include <unordered_set>

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

// The port and bank properties of a pin. Ids below 64 are present when
// their bit is set and have an entry in values only when the value is not
// empty; ids from 64 on are present exactly when they have an entry. Texts
// are pooled, so equal sets compare and hash by their pointers.
struct HBOPinProps::IOProfile {
  std::uint64_t mask = 0;
  std::vector<std::pair<PropId, Text>> values; // sorted by id
  std::vector<TextPair> bankProps;             // sorted by name

  bool operator==(const IOProfile &other) const {
    return mask == other.mask && values == other.values && bankProps == other.bankProps;
  }
  std::size_t hash() const {
    std::size_t h = std::hash<std::uint64_t>()(mask);
    auto mix = [&h](std::size_t v) { h ^= v + 0x9e3779b97f4a7c15ull + (h << 6) + (h >> 2); };
    for (const auto &entry : values) {
      mix(entry.first);
      mix(reinterpret_cast<std::size_t>(entry.second));
    }
    for (const TextPair &entry : bankProps) {
      mix(reinterpret_cast<std::size_t>(entry.first));
      mix(reinterpret_cast<std::size_t>(entry.second));
    }
    return h;
  }
  const Text *find(PropId id) const {
    auto it = std::lower_bound(
        values.begin(), values.end(), id,
        [](const std::pair<PropId, Text> &e, PropId key) { return e.first < key; });
    return it != values.end() && it->first == id ? &it->second : nullptr;
  }
};

// Every distinct profile of the process, kept for its life like the pooled
// texts. Readers of several boards meet here at once: the pool is sharded
// under locks, and each thread remembers the profiles it met last, so that
// the run of pins of one bank takes no lock.
struct HBOPinProps::IOProfilePool {
  struct Hash {
    std::size_t operator()(const IOProfile *p) const { return p->hash(); }
  };
  struct Equal {
    bool operator()(const IOProfile *a, const IOProfile *b) const { return *a == *b; }
  };
  struct Shard {
    std::mutex mutex;
    std::deque<IOProfile> profiles; // stable addresses
    std::unordered_set<const IOProfile *, Hash, Equal> index;
  };
  static constexpr std::size_t kShards = 16;
  static constexpr std::size_t kThreadCacheSlots = 256;

  static const IOProfile *empty() {
    static const IOProfile *profile = new IOProfile;
    return profile;
  }

  static const IOProfile *get(const IOProfile &candidate) {
    if (candidate.mask == 0 && candidate.values.empty() && candidate.bankProps.empty())
      return empty();
    const std::size_t hash = candidate.hash();
    thread_local std::array<const IOProfile *, kThreadCacheSlots> recent{};
    const IOProfile *&slot = recent[hash % kThreadCacheSlots];
    if (slot && *slot == candidate)
      return slot;
    static std::array<Shard, kShards> *shards = new std::array<Shard, kShards>;
    Shard &shard = (*shards)[(hash >> 8) % kShards];
    std::lock_guard<std::mutex> lock(shard.mutex);
    auto it = shard.index.find(&candidate);
    if (it == shard.index.end()) {
      IOProfile &stored = shard.profiles.emplace_back(candidate);
      stored.values.shrink_to_fit();
      stored.bankProps.shrink_to_fit();
      it = shard.index.insert(&stored).first;
    }
    slot = *it;
    return slot;
  }
};

namespace {

// Where a change of a pin's profile is made before it is pooled; kept per
// thread so that its vectors are reused rather than allocated each time.
template <typename Profile> Profile &scratchProfile(const Profile &from) {
  thread_local Profile scratch;
  scratch.mask = from.mask;
  scratch.values.assign(from.values.begin(), from.values.end());
  scratch.bankProps.assign(from.bankProps.begin(), from.bankProps.end());
  return scratch;
}

template <typename Profile>
void setInProfile(Profile &profile, std::uint32_t id, std::string_view value) {
  const bool masked = id < MaskBits;
  if (masked)
    profile.mask |= std::uint64_t(1) << id;
  auto it = std::lower_bound(profile.values.begin(), profile.values.end(), id,
                             [](const std::pair<std::uint32_t, const std::string *> &e,
                                std::uint32_t key) { return e.first < key; });
  const bool found = it != profile.values.end() && it->first == id;
  if (masked && value.empty()) {
    // Present and empty needs only the bit.
    if (found)
      profile.values.erase(it);
    return;
  }
  const std::string *pooled = &HSTIntern::get(value);
  if (found)
    it->second = pooled;
  else
    profile.values.emplace(it, id, pooled);
}

template <typename Profile>
bool setBankInProfile(Profile &profile, std::string_view name, std::string_view value) {
  if (name.empty())
    return false;
  const std::string *pooled = &HSTIntern::get(value);
  auto it = std::lower_bound(profile.bankProps.begin(), profile.bankProps.end(), name,
                             [](const std::pair<const std::string *, const std::string *> &e,
                                std::string_view key) { return std::string_view(*e.first) < key; });
  if (it != profile.bankProps.end() && *it->first == name)
    it->second = pooled;
  else
    profile.bankProps.emplace(it, &HSTIntern::get(name), pooled);
  return true;
}

} // namespace

// What few pins have, or what no pin has at first.
struct HBOPinProps::Extra {
  // Values that getPortProp handed out a reference to: the pin owns a
  // string the caller may change, which stands for the pooled value.
  std::vector<std::pair<PropId, std::unique_ptr<std::string>>> owned;
  std::vector<TextPair> intfPorts; // beyond the first, in no order
  std::vector<StringMap> partOf;
  Text internalVref = &HSTIntern::empty();
  Text gtLoc = &HSTIntern::empty();
  // Only the pins that a port of an older board holds know their port.
  HBOModelPort *ownerPort = nullptr;
};

HBOPinProps::HBOPinProps() : m_loc(&HSTIntern::empty()), m_io(IOProfilePool::empty()) {}

HBOPinProps::~HBOPinProps() { zeb::forgetScriptHandles(this); }

// Pooled values are shared, as between any two pins; what the pin holds of
// its own (handed-out values, further interfaces, groups) is copied.
HBOPinProps::HBOPinProps(const HBOPinProps &src, HBOBoardComponent *owner, HBOModelPort *port)
    : m_pinIndex(src.m_pinIndex), m_owner(owner), m_name(src.m_name), m_loc(src.m_loc),
      m_io(src.m_io), m_intfPort(src.m_intfPort) {
  if (src.m_extra) {
    Extra &extra = extra_();
    for (const auto &entry : src.m_extra->owned)
      extra.owned.emplace_back(entry.first, std::make_unique<std::string>(*entry.second));
    extra.intfPorts = src.m_extra->intfPorts;
    extra.partOf = src.m_extra->partOf;
    extra.internalVref = src.m_extra->internalVref;
    extra.gtLoc = src.m_extra->gtLoc;
  }
  setOwnerPort(port);
}

HBOPinProps::Extra &HBOPinProps::extra_() const {
  if (!m_extra)
    m_extra.reset(new Extra);
  return *m_extra;
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
  if (!m_extra || !m_extra->ownerPort)
    return false;
  out = m_extra->ownerPort;
  return true;
}

void HBOPinProps::setOwnerPort(HBOModelPort *port) {
  if (port || m_extra)
    extra_().ownerPort = port;
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
    return (m_io->mask >> id) & 1u;
  return m_io->find(id) != nullptr;
}

const std::string *HBOPinProps::findValue_(PropId id) const {
  if (m_extra)
    for (const auto &entry : m_extra->owned)
      if (entry.first == id)
        return entry.second.get();
  const Text *value = m_io->find(id);
  return value ? *value : nullptr;
}

std::string &HBOPinProps::materialise_(PropId id) const {
  if (m_extra)
    for (const auto &entry : m_extra->owned)
      if (entry.first == id)
        return *entry.second;
  // Present from now on, with the value it has.
  const Text *value = m_io->find(id);
  const std::string &current = value ? **value : HSTIntern::empty();
  if (!isPresent_(id)) {
    IOProfile &next = scratchProfile(*m_io);
    if (id < MaskBits)
      next.mask |= std::uint64_t(1) << id;
    else
      setInProfile(next, id, std::string_view());
    m_io = IOProfilePool::get(next);
  }
  auto &owned = extra_().owned;
  owned.emplace_back(id, std::unique_ptr<std::string>(new std::string(current)));
  return *owned.back().second;
}

void HBOPinProps::dropOwned_(PropId id) {
  if (!m_extra)
    return;
  auto &owned = m_extra->owned;
  owned.erase(std::remove_if(owned.begin(), owned.end(),
                             [id](const auto &entry) { return entry.first == id; }),
              owned.end());
}

void HBOPinProps::setById_(PropId id, std::string_view value) {
  // The value may be the owned string about to go.
  IOProfile &next = scratchProfile(*m_io);
  setInProfile(next, id, value);
  dropOwned_(id);
  m_io = IOProfilePool::get(next);
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
    if (!((m_io->mask >> id) & 1u))
      continue;
    const std::string *value = findValue_(id);
    result.emplace(propName(id), value ? *value : std::string());
  }
  for (const auto &entry : m_io->values)
    if (entry.first >= MaskBits)
      result.emplace(propName(entry.first), *findValue_(entry.first));
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
  IOProfile &next = scratchProfile(*m_io);
  setBankInProfile(next, name, value);
  m_io = IOProfilePool::get(next);
  return true;
}

void HBOPinProps::setFileProperties(
    const std::vector<bool> &read, const std::vector<const char *> &values,
    const std::vector<std::pair<const char *, const char *>> &bankProps) {
  IOProfile &next = scratchProfile(*m_io);
  const std::size_t slots = std::min({read.size(), values.size(), std::size_t(KnownCount)});
  if (next.mask == 0 && next.values.empty() && !m_extra) {
    // A fresh pin, as a reader makes it: the values go in in id order.
    for (std::size_t slot = 0; slot < slots; ++slot) {
      if (!read[slot])
        continue;
      next.mask |= std::uint64_t(1) << slot;
      if (values[slot] && *values[slot])
        next.values.emplace_back(static_cast<PropId>(slot), &HSTIntern::get(values[slot]));
    }
  } else {
    for (std::size_t slot = 0; slot < slots; ++slot) {
      if (!read[slot])
        continue;
      setInProfile(next, static_cast<PropId>(slot), values[slot] ? values[slot] : "");
      dropOwned_(static_cast<PropId>(slot));
    }
  }
  for (const auto &bank : bankProps)
    setBankInProfile(next, bank.first, bank.second);
  m_io = IOProfilePool::get(next);
}

void HBOPinProps::setFilePropertiesOf(const HBOPinProps &other) {
  assert(m_io == IOProfilePool::empty() && !m_extra && "a pin fresh from createPin");
  m_io = other.m_io;
}

std::string HBOPinProps::getIOBankPropertyValue(const std::string &name) const {
  if (name.empty())
    return std::string();
  // In name order, so the first of several equal ignoring case answers.
  for (const TextPair &entry : m_io->bankProps)
    if (HBOCommon::iEquals(*entry.first, name))
      return *entry.second;
  return std::string();
}

bool HBOPinProps::getIOBankPropertyList(StringMap &out) const {
  out = getIOBankProperties();
  return true;
}

HBOPinProps::StringMap HBOPinProps::getIOBankProperties() const {
  StringMap result;
  for (const TextPair &entry : m_io->bankProps)
    result.emplace_hint(result.end(), *entry.first, *entry.second);
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
  // Every value the other pin stores, its handed-out ones included.
  for (PropId id = 0; id < MaskBits; ++id) {
    if ((other.m_io->mask >> id) & 1u) {
      const std::string *value = other.findValue_(id);
      if (value && !value->empty())
        setById_(id, *value);
    }
  }
  for (const auto &entry : other.m_io->values) {
    const std::string *value = other.findValue_(entry.first);
    if (entry.first >= MaskBits && !value->empty())
      setById_(entry.first, *value);
  }
  if (other.m_extra) {
    if (!other.m_extra->internalVref->empty())
      extra_().internalVref = other.m_extra->internalVref;
    if (!other.m_extra->gtLoc->empty())
      extra_().gtLoc = other.m_extra->gtLoc;
  }
  for (const TextPair &entry : other.m_io->bankProps)
    if (!entry.second->empty())
      setIOBankPropertyView(*entry.first, *entry.second);
}

bool HBOPinProps::setProp(int index, HBOModelPort *port, std::string name, std::string loc,
                          std::string diffTerm, std::string drive, std::string ioStandard,
                          std::string slew, std::string outputImpedance, std::string ibufLowPwr,
                          std::string odt, std::string equalization, std::string preEmphasis,
                          std::string dqsBias) {
  HBOCommon::toUpperInPlace(loc);
  m_loc = &HSTIntern::get(loc);
  m_name = std::move(name);
  setOwnerPort(port);
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
