// The pins of one pin file in file order, and the part they belong to. The
// record owns its pins: a pin handed to addPin is freed by deletePin or by
// the record's end.
#ifndef BOARDLIB_HBMPINSDATA_H
#define BOARDLIB_HBMPINSDATA_H

#include "HBMPin.h"

#include <string>
#include <vector>

class HBMPinsData {
public:
  HBMPinsData() = default;
  ~HBMPinsData();
  HBMPinsData(const HBMPinsData &) = delete;
  HBMPinsData &operator=(const HBMPinsData &) = delete;

  const std::string &getPartName() const { return m_partName; }
  void setPartName(const std::string &partName) { m_partName = partName; }

  /// A copy of the sequence; the pins stay the record's.
  std::vector<HBMPin *> getPins() const { return m_pins; }
  /// Appends \p pin and takes it over; true. False, taking nothing, for a
  /// null pin or one the record holds already.
  bool addPin(HBMPin *pin);
  /// The pin at position \p i of the sequence (not the pin whose index
  /// attribute is \p i), or null when there is none.
  HBMPin *getPinByIndex(int i) const;
  /// Frees the first pin called \p name; false when there is none.
  bool deletePin(const std::string &name);
  /// Frees \p pin if it is one of the record's; false, leaving it alone,
  /// when it is not.
  bool deletePin(HBMPin *pin);
  /// Frees every pin and forgets the part name.
  void clear();

private:
  std::string m_partName;
  std::vector<HBMPin *> m_pins;
};

#endif
