// Reader of the connections element: each connection_map becomes a bus with
// one net per wired pin pair.
#ifndef BOARDLIB_HBOCONNECTIONREADER_H
#define BOARDLIB_HBOCONNECTIONREADER_H

#include <string>

class HBOBoardBus;
class HBOParseContext;
class HBOPinFileReader;
class HXMLWElement;

class HBOConnectionReader {
public:
  HBOConnectionReader(HBOParseContext &ctx, HBOPinFileReader &pinFiles)
      : m_ctx(ctx), m_pinFiles(pinFiles) {}

  bool readConnections(HXMLWElement *root, std::string &error);
  bool readConnectionDetails(HXMLWElement *connection);
  bool validateConnection(HBOBoardBus *bus);

private:
  HBOParseContext &m_ctx;
  HBOPinFileReader &m_pinFiles;
};

#endif
