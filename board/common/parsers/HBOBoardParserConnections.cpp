// Reader of connections (being written).
#include "HBOBoardParser.h"

bool HBOBoardParser::readConnections(HXMLWElement *, std::string &) { return true; }
bool HBOBoardParser::readConnectionDetails(HXMLWElement *) { return true; }
bool HBOBoardParser::validateConnection(HBOBoardBus *) { return true; }
