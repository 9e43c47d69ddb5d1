// A preset file for the rewrite tool: read into plain value records and
// written out in the tool's fixed layout, under the schema attribute the
// file came with.
//
// The layout differs from the input on purpose: user_parameter elements
// stand directly under ip, without the user_parameters wrapper, value types
// and hierarchical parameters are left out, and no text is escaped.
#ifndef BOARDLIB_HBMPRESETFILE_H
#define BOARDLIB_HBMPRESETFILE_H

#include "HBMPresetProc.h"

#include <fstream>
#include <ostream>

class HXMLWElement;

class HBMPresetFile : public HBMPresetProc {
public:
  /// Reads the schema and the preset procedures of \p root, after dropping
  /// what the record held. False only for a null root.
  bool parse(HXMLWElement *root);
  /// The IP's identity and its parameters from one child of a preset
  /// procedure. Its result is always true and nobody looks at it.
  bool readPresetDetails(const HXMLWElement &element, IPPresets &record) const;
  /// Notes a hierarchical parameter without reading it: false for a null
  /// element, else true with \p param left empty.
  bool readHierParam(const HXMLWElement *element, UserHierParam &param) const;
  /// The whole file.
  void write(std::ofstream &out) const;
  /// Writes nothing: hierarchical parameters are not rewritten.
  void writePreset(std::ostream &out) const;
};

#endif
