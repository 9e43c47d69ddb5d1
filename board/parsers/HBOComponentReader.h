// Reader of the components element: each component with its parameters,
// images, drivers, mux positions, pins, modes and interfaces.
#ifndef BOARDLIB_HBOCOMPONENTREADER_H
#define BOARDLIB_HBOCOMPONENTREADER_H

#include <string>

class HBOBoardComponent;
class HBOBoardValidator;
class HBOInterfaceReader;
class HBOParseContext;
class HBOPinFileReader;
class HXMLWElement;

class HBOComponentReader {
public:
  HBOComponentReader(HBOParseContext &ctx, HBOPinFileReader &pinFiles,
                     HBOInterfaceReader &interfaces, HBOBoardValidator &validator)
      : m_ctx(ctx), m_pinFiles(pinFiles), m_interfaces(interfaces), m_validator(validator) {}

  bool readComponents(HXMLWElement *root, std::string &errorText);
  bool readComponentDetails(HXMLWElement *element, HBOBoardComponent *component);

private:
  /// The component's own attributes; gives the name of its pin file.
  std::string readAttributes_(HXMLWElement &element, HBOBoardComponent *component);
  void readPinMapFile_(const std::string &pinMapFile, const HXMLWElement &namedAt,
                       HBOBoardComponent *component);
  void readDrivers_(HXMLWElement &drivers, HBOBoardComponent *component);
  void readImages_(HXMLWElement &images, const std::string &boardDir, HBOBoardComponent *component);
  void readMuxPositions_(HXMLWElement &positions, HBOBoardComponent *component);
  /// Pins given in board.xml itself; an index given twice keeps the first.
  void readPins_(HXMLWElement &pins, HBOBoardComponent *component);
  void readComponentModes_(HXMLWElement &modes, HBOBoardComponent *component);
  /// One interfaces element of a component, with its uniqueness checks.
  bool readInterfaces_(HXMLWElement &element, HBOBoardComponent *component);

  HBOParseContext &m_ctx;
  HBOPinFileReader &m_pinFiles;
  HBOInterfaceReader &m_interfaces;
  HBOBoardValidator &m_validator;
};

#endif
