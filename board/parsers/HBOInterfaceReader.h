// Reader of what a component offers to a design: its interfaces with their
// port maps and preferred IPs, and its component modes.
#ifndef BOARDLIB_HBOINTERFACEREADER_H
#define BOARDLIB_HBOINTERFACEREADER_H

#include "HBOViewTable.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

class HBOBoardValidator;
class HBOBusIf;
class HBOComponentMode;
class HBOModelPort;
class HBOParseContext;
struct HBOParsedInterface;
class HBOPortMap;
class HXMLWElement;

class HBOInterfaceReader {
public:
  HBOInterfaceReader(HBOParseContext &ctx, HBOBoardValidator &validator)
      : m_ctx(ctx), m_validator(validator) {}

  bool readInterfacesDetails(HXMLWElement *element, HBOBusIf *interface);
  bool readPortMapDetails(HXMLWElement *element, HBOModelPort *port, HBOPortMap *map);
  bool readComponentModeDetails(HXMLWElement *element, HBOComponentMode *mode);

private:
  /// Takes the file of the interface's preset procedure.
  void readPresetProc_(const HXMLWElement &at, HBOBusIf *interface, const std::string &name,
                       const std::string &presetProc);
  bool readPreferredIps_(HXMLWElement &list, HBOBusIf *interface, const std::string &type,
                         const std::string &presetProc);
  bool readPortMaps_(HXMLWElement &list, HBOBusIf *interface, const std::string &name,
                     const std::string &ofComponent, HBOParsedInterface &parsed);

  HBOParseContext &m_ctx;
  HBOBoardValidator &m_validator;
  /// Port index to pin of the pin_maps being read, kept from port to port.
  HBOViewTable m_pinOfIndex;
  /// Port index and component pin of each pin map being read, in order.
  std::vector<std::pair<std::string_view, std::string_view>> m_pinMapTexts;
  /// Texts composed or copied for a moment (a VLNV, a pin name to look up),
  /// kept from one use to the next so that they are allocated once.
  std::string m_scratch;
};

#endif
