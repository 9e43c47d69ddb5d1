#include "HBOModelPort.h"

#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOPinProps.h"
#include "HSTIntern.h"
#include "NativeCache.h"

#include <algorithm>
#include <cstring>
#include <iostream>

namespace {

// The same order as std::map<std::string, ...> on the index texts.
bool textLess(std::string_view a, std::string_view b) { return a.compare(b) < 0; }

} // namespace

HBOModelPort::HBOModelPort()
    : m_direction(&HSTIntern::empty()), m_logicalPortName(&HSTIntern::empty()) {}

HBOModelPort::~HBOModelPort() {
  zeb::forgetScriptHandles(this);
  HBOCommon::deleteDistinct(m_pinRecords);
}

bool HBOModelPort::getName(std::string &out) const {
  out = m_name;
  return true;
}

bool HBOModelPort::setName(std::string_view name) {
  m_name.assign(name);
  return true;
}

bool HBOModelPort::getPortDir(std::string &out) const {
  out = *m_direction;
  return true;
}

bool HBOModelPort::setDirection(std::string_view direction) {
  m_direction = &HSTIntern::get(direction);
  return true;
}

bool HBOModelPort::isPortOfTypeVec(bool &out) const {
  out = m_isVector;
  return true;
}

bool HBOModelPort::setIsVector(bool isVector) {
  m_isVector = isVector;
  return true;
}

bool HBOModelPort::setRange(const int &left, const int &right) {
  m_range.setVec(left, right);
  return true;
}

bool HBOModelPort::getPortVecLeft(int &out) const {
  if (!m_isVector) {
    out = -1;
    return false;
  }
  return m_range.getLeft(out);
}

bool HBOModelPort::getPortVecRight(int &out) const {
  if (!m_isVector) {
    out = -1;
    return false;
  }
  return m_range.getRight(out);
}

bool HBOModelPort::getPortWidth(int &out) const {
  if (!m_isVector) {
    out = 1;
    return true;
  }
  m_range.getWidth(out);
  return true;
}

bool HBOModelPort::setOwnerBusIf(std::string_view busIfName, std::string_view logicalPort) {
  m_ownerBusIfName.assign(busIfName);
  m_logicalPortName = &HSTIntern::get(logicalPort);
  return true;
}

bool HBOModelPort::getOwnerBusIf(std::string &out) const {
  out = m_ownerBusIfName;
  return true;
}

bool HBOModelPort::getBusIfLogicalPortName(std::string &out) const {
  out = *m_logicalPortName;
  return true;
}

std::map<std::string, std::string> HBOModelPort::getPinPortMap() const {
  std::map<std::string, std::string> result;
  for (const PinSlot &slot : pinSlots_())
    result.emplace_hint(result.end(), indexOf_(slot), pinOf_(slot));
  return result;
}

namespace {

// The units of an entry's size that \p bytes of text take.
std::size_t textUnits(std::size_t bytes, std::size_t unit) { return (bytes + unit - 1) / unit; }

} // namespace

void HBOModelPort::reservePinPortMap(std::size_t count, std::size_t textBytes) {
  m_pinData.reserve(m_pinCount + count + textUnits(m_pinTextSize + textBytes, sizeof(PinSlot)));
}

std::uint32_t HBOModelPort::storeText_(std::string_view text) {
  const std::uint32_t at = m_pinTextSize;
  m_pinData.resize(m_pinCount + textUnits(at + text.size(), sizeof(PinSlot)));
  char *textStart = reinterpret_cast<char *>(m_pinData.data() + m_pinCount);
  if (!text.empty())
    std::memcpy(textStart + at, text.data(), text.size());
  m_pinTextSize = static_cast<std::uint32_t>(at + text.size());
  return at;
}

const HBOModelPort::PinSlot *HBOModelPort::findPinSlot_(std::string_view index) const {
  const PinSlots slots = pinSlots_();
  const PinSlot *it = std::lower_bound(
      slots.begin(), slots.end(), index,
      [this](const PinSlot &slot, std::string_view key) { return textLess(indexOf_(slot), key); });
  if (it == slots.end() || indexOf_(*it) != index)
    return nullptr;
  return it;
}

void HBOModelPort::addPinPortMap(std::string_view index, std::string_view pin) {
  // Indexes mostly come in order, but "10" sorts before "9".
  std::size_t position = m_pinCount;
  if (m_pinCount > 0 && !textLess(indexOf_(m_pinData[m_pinCount - 1]), index)) {
    const PinSlots slots = pinSlots_();
    position = static_cast<std::size_t>(
        std::lower_bound(slots.begin(), slots.end(), index,
                         [this](const PinSlot &slot, std::string_view key) {
                           return textLess(indexOf_(slot), key);
                         }) -
        slots.begin());
    if (indexOf_(m_pinData[position]) == index) {
      // The overwritten pin's text stays behind unused: repeats are rare.
      const std::uint32_t pinAt = storeText_(pin);
      m_pinData[position].pinAt = pinAt;
      m_pinData[position].pinLength = static_cast<std::uint32_t>(pin.size());
      return;
    }
  }
  PinSlot slot{};
  slot.indexLength = static_cast<std::uint32_t>(index.size());
  slot.pinLength = static_cast<std::uint32_t>(pin.size());
  slot.indexAt = storeText_(index);
  slot.pinAt = storeText_(pin);
  // The text moves up by one entry with the entries after the new one, and
  // its offsets, counted from the end of the entries, stay right.
  m_pinData.insert(m_pinData.begin() + static_cast<std::ptrdiff_t>(position), slot);
  ++m_pinCount;
}

bool HBOModelPort::getPinPort(std::string_view index, std::string &out) const {
  if (const PinSlot *slot = findPinSlot_(index))
    out.assign(pinOf_(*slot));
  else
    out.clear();
  return true;
}

void HBOModelPort::getPins(std::vector<HBOPinProps *> &out) const {
  if (!m_owner)
    return;
  const HBOBoardComponent *component = m_owner->getOwnerComponent();
  if (!component)
    return;
  std::string name;
  for (const PinSlot &slot : pinSlots_()) {
    name.assign(pinOf_(slot));
    if (HBOPinProps *pin = component->findPin(name))
      out.push_back(pin);
  }
}

bool HBOModelPort::getPortPropsSeq(std::vector<HBOPinProps *> &out) const {
  if (HBOBoardUtils::isV2SchemaBoard(this)) {
    getPins(out);
    return true;
  }
  if (m_pinRecords.empty())
    return false;
  out = m_pinRecords;
  return true;
}

bool HBOModelPort::populatePinProps() {
  int count = 1;
  if (m_isVector) {
    m_range.getWidth(count);
    if (count < 1)
      return true;
  }
  m_pinRecords.reserve(m_pinRecords.size() + static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    auto *pin = new HBOPinProps();
    if (m_isVector) {
      pin->setName(m_name + "[" + std::to_string(i) + "]");
      pin->setPinIndex(i);
    } else {
      pin->setName(m_name);
      pin->setPinIndex(-1);
    }
    pin->setOwnerPort(this);
    m_pinRecords.push_back(pin);
  }
  return true;
}

void HBOModelPort::updatePortPinMap(const std::map<std::string, std::string> &pinRenames) {
  std::vector<std::pair<std::string, std::string>> entries;
  entries.reserve(m_pinCount);
  for (const PinSlot &slot : pinSlots_()) {
    std::string pin(pinOf_(slot));
    auto it = pinRenames.find(pin);
    entries.emplace_back(std::string(indexOf_(slot)), it == pinRenames.end() ? pin : it->second);
  }
  m_pinData.clear();
  m_pinCount = 0;
  m_pinTextSize = 0;
  // Already in index order: each entry is appended at the end.
  for (const auto &entry : entries)
    addPinPortMap(entry.first, entry.second);
}

void HBOModelPort::display(int indent) const {
  int left = -1;
  int right = -1;
  int width = -1;
  getPortVecLeft(left);
  getPortVecRight(right);
  getPortWidth(width);
  std::cout << std::string(indent > 0 ? indent : 0, '-')
            << "Port - Logical Name: " << *m_logicalPortName << ", Physical Name: " << m_name
            << ", Direction: " << *m_direction << ", Left: " << left << ", Right: " << right
            << ", Width: " << width << "\n";
  const std::string dashes(indent + 2 > 0 ? indent + 2 : 0, '-');
  for (const PinSlot &slot : pinSlots_())
    std::cout << dashes << "Port Index: " << indexOf_(slot) << ", FPGA Pin: " << pinOf_(slot)
              << "\n";
}
