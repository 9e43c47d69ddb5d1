// A pin file for the rewrite tool: read into plain pin records that keep the
// file's order and its known port properties, changed by the caller, and
// written out in the tool's fixed layout.
//
// The layout is not the one the reader takes: the pins stand directly under
// part_info, without the pins element, and a property is written as
// name"value" without an equals sign. Tools downstream of the rewrite expect
// exactly these bytes, so the writer keeps them.
#ifndef BOARDLIB_HBMPINSFILE_H
#define BOARDLIB_HBMPINSFILE_H

#include "HBMPinsData.h"

#include <fstream>
#include <ostream>
#include <string>
#include <vector>

class HXMLWElement;

class HBMPinsFile : public HBMPinsData {
public:
  /// Reads the part name and the pins of \p root, after dropping what the
  /// record held. False at the first pin without index, or with an index
  /// or a LOC (an absent LOC counting as the empty one) that an earlier pin
  /// has; the pins before it stay. Attributes that are no known port
  /// property are not kept.
  bool parse(HXMLWElement *root);
  /// The whole file, pins in sequence order.
  void write(std::ofstream &out) const;
  /// The pin at position \p i as one line; nothing when there is none.
  void writePin(std::ostream &out, int i) const;

  std::vector<HBMPin *> getAllPins() const { return getPins(); }
  /// The first pin called \p name, or null.
  HBMPin *getPin(const std::string &name) const;
  using HBMPinsData::deletePin;
  /// A new pin that is not yet in the record: the caller adds it with
  /// addPin, or frees it.
  HBMPin *createPin(const std::string &name, const std::string &index,
                    const std::string &loc) const;
};

#endif
