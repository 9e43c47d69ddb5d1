// Reader of pin files (such as part0_pins.xml) with their design
// constraints, and maker of the pins that a connection uses but no file
// defines.
#ifndef BOARDLIB_HBOPINFILEREADER_H
#define BOARDLIB_HBOPINFILEREADER_H

#include "HBOParseContext.h"

#include <string>
#include <string_view>
#include <vector>

class HBOBoardComponent;
class HBODtdValidator;
class HBOPinProps;
class HBOViewTable;

class HBOPinFileReader {
public:
  HBOPinFileReader(HBOParseContext &ctx, HBODtdValidator &dtd) : m_ctx(ctx), m_dtd(dtd) {}

  /// Reads the pins of \p fileName into pins that \p component makes, in
  /// file order, without entering them (HBOBoardComponent::addPins does).
  /// \p namedAt is the element that names the file, for the place of a
  /// finding about the file as a whole.
  bool parsePinFile(const std::string &fileName, HBOBoardComponent &component,
                    std::vector<HBOPinProps *> &pins, std::vector<HBODesignConstr> &constrs,
                    const HXMLWElement &namedAt = HXMLWElement());
  bool parsePins(const std::string &path, HBOBoardComponent &component,
                 std::vector<HBOPinProps *> &pins, std::vector<HBODesignConstr> &constrs);
  bool createPinsForComponent(std::string componentName, int from, int to,
                              const std::string &connectionName);

private:
  /// A pin's index and location must be given, and be unique in the file.
  void checkIndexAndLoc_(const HXMLWElement &at, const std::string &path, std::string_view name,
                         const char *index, std::string_view loc, HBOViewTable &nameOfIndex,
                         HBOViewTable &indexOfLoc);
  /// The design_constrs element of the pin file \p path.
  bool parseDesignConstrs_(HXMLWElement &element, const std::string &path,
                           std::vector<HBODesignConstr> &constrs);

  HBOParseContext &m_ctx;
  HBODtdValidator &m_dtd;
  /// The pins createPinsForComponent makes, kept from call to call.
  std::vector<HBOPinProps *> m_newPins;
};

#endif
