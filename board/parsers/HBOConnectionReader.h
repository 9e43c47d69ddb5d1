// Reader of the connections element: each connection_map becomes a bus with
// one net per wired pin pair.
#ifndef BOARDLIB_HBOCONNECTIONREADER_H
#define BOARDLIB_HBOCONNECTIONREADER_H

#include <memory>
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
  /// The bus of one connection_map, with its ranges and delays but no nets.
  std::unique_ptr<HBOBoardBus> readConnectionMap_(HXMLWElement &map,
                                                  const std::string &connectionName,
                                                  const std::string &comp1,
                                                  const std::string &comp2);
  /// One net per pin pair of the bus's ranges, making the pins no file
  /// defines; false for a range too wide to be meant.
  bool wireNets_(HBOBoardBus &bus);
  /// The enablement dependencies and per-net delays of a connection_map.
  void readNetDetails_(HXMLWElement &map, HBOBoardBus &bus);

  HBOParseContext &m_ctx;
  HBOPinFileReader &m_pinFiles;
};

#endif
