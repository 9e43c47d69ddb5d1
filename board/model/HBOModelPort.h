// A physical port of a board interface: its name, direction and range, and
// the pins behind it. On a schema 2 board the pins are named by the pin map
// and live in the component; an older board's port holds its own records.
//
// A board has ports by the hundred and a pin map entry per bit, so the pin
// map is kept in one array: entries of offsets sorted by index text, then
// the texts they point at, rather than a map node and two strings per entry; the direction and
// the logical port name come from small vocabularies and are pooled.
#ifndef BOARDLIB_HBOMODELPORT_H
#define BOARDLIB_HBOMODELPORT_H

#include "HBOPortMap.h"
#include "HBOPortVector.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

class HBOBusIf;
class HBOPinProps;

class HBOModelPort {
public:
  HBOModelPort();
  /// Drops the object from the script caches, then deletes the pin records.
  ~HBOModelPort();
  /// A copy served by \p owner: its name and the name of the interface it
  /// serves carry \p prefix; direction, range and pin map are copied.
  HBOModelPort(const HBOModelPort &src, HBOBusIf *owner, const std::string &prefix);
  HBOModelPort(const HBOModelPort &) = delete;
  HBOModelPort &operator=(const HBOModelPort &) = delete;

  const std::string &getName() const { return m_name; }
  bool getName(std::string &out) const;
  bool setName(std::string_view name);
  bool getPortDir(std::string &out) const;
  const std::string &getDirection() const { return *m_direction; }
  bool setDirection(std::string_view direction);
  bool isPortOfTypeVec(bool &out) const;
  bool setIsVector(bool isVector);
  /// Always true; a negative end leaves the range as it was.
  bool setRange(const int &left, const int &right);
  /// For a scalar -1 and false.
  bool getPortVecLeft(int &out) const;
  bool getPortVecRight(int &out) const;
  /// The range's width for a vector, 1 for a scalar; always true.
  bool getPortWidth(int &out) const;

  /// The interface that the port serves and its logical port there.
  bool setOwnerBusIf(std::string_view busIfName, std::string_view logicalPort);
  bool getOwnerBusIf(std::string &out) const;
  bool getBusIfLogicalPortName(std::string &out) const;

  /// Port index text to pin name; ordered by text, so "10" precedes "2".
  std::map<std::string, std::string> getPinPortMap() const;
  std::size_t getPinPortMapSize() const { return m_pinCount; }
  /// Calls \p visit(index, pin) for each entry, in the order of getPinPortMap.
  template <typename Visit> void forEachPinPortMap(Visit &&visit) const {
    for (const PinSlot &slot : pinSlots_())
      visit(indexOf_(slot), pinOf_(slot));
  }
  /// Room for \p count entries of \p textBytes bytes of index and pin text
  /// in all, so that a pin map read in one go takes two allocations.
  void reservePinPortMap(std::size_t count, std::size_t textBytes);
  /// Creates or overwrites the entry of \p index.
  void addPinPortMap(std::string_view index, std::string_view pin);
  /// The pin of \p index, or an empty \p out; always true.
  bool getPinPort(std::string_view index, std::string &out) const;

  HBOBusIf *getOwner() const { return m_owner; }
  void setOwner(HBOBusIf *owner) { m_owner = owner; }
  /// True for a port that lives in a block of its component (see
  /// HBOBoardComponent::makeModelPorts): nothing else may delete it.
  bool isHeldInBlock() const { return m_heldInBlock; }
  void setHeldInBlock() { m_heldInBlock = true; }

  /// The component's pins named by the pin map, in key order; names that
  /// the component lacks are passed over.
  void getPins(std::vector<HBOPinProps *> &out) const;
  /// Schema 2: appends getPins and gives true. Older: replaces \p out by the
  /// port's own records, or gives false without any.
  bool getPortPropsSeq(std::vector<HBOPinProps *> &out) const;
  /// Creates the records of an older board's port: one per bit of a vector,
  /// indexes from 0, or one of index -1 for a scalar.
  bool populatePinProps();
  /// Renames the pins of the pin map; names not in \p pinRenames stay.
  void updatePortPinMap(const std::map<std::string, std::string> &pinRenames);

  /// Debug dump on standard output.
  void display(int indent) const;

private:
  // One pin map entry: where its index text and its pin name lie in the
  // text that follows the entries.
  struct PinSlot {
    std::uint32_t indexAt;
    std::uint32_t pinAt;
    std::uint32_t indexLength;
    std::uint32_t pinLength;
  };
  // The entries, then the text in whole units of the entries' size.
  struct PinSlots {
    const PinSlot *first;
    const PinSlot *last;
    const PinSlot *begin() const { return first; }
    const PinSlot *end() const { return last; }
  };
  PinSlots pinSlots_() const { return {m_pinData.data(), m_pinData.data() + m_pinCount}; }
  const char *pinText_() const {
    return reinterpret_cast<const char *>(m_pinData.data() + m_pinCount);
  }
  std::string_view indexOf_(const PinSlot &slot) const {
    return std::string_view(pinText_() + slot.indexAt, slot.indexLength);
  }
  std::string_view pinOf_(const PinSlot &slot) const {
    return std::string_view(pinText_() + slot.pinAt, slot.pinLength);
  }
  /// The slot of \p index, or null.
  const PinSlot *findPinSlot_(std::string_view index) const;
  /// Appends \p text to the text; its offset there.
  std::uint32_t storeText_(std::string_view text);

  std::string m_name;
  const std::string *m_direction;
  const std::string *m_logicalPortName;
  std::string m_ownerBusIfName;
  HBOPortVector m_range;
  bool m_isVector = false;
  bool m_heldInBlock = false;
  std::vector<HBOPinProps *> m_pinRecords;
  std::vector<PinSlot> m_pinData;
  std::uint32_t m_pinCount = 0;
  std::uint32_t m_pinTextSize = 0;
  HBOBusIf *m_owner = nullptr;
};

// A port with the port map that names it, as the reader makes them: one
// record instead of two objects, held by the component in a block.
struct HBOModelPortRecord {
  HBOModelPort port;
  HBOPortMap map;
};

#endif
