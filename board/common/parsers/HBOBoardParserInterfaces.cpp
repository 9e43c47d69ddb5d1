// Readers of interfaces, port maps and component modes (being written).
#include "HBOBoardParser.h"

bool HBOBoardParser::readInterfacesDetails(HXMLWElement *, HBOBusIf *) { return true; }
bool HBOBoardParser::readPortMapDetails(HXMLWElement *, HBOModelPort *, HBOPortMap *) { return true; }
bool HBOBoardParser::readComponentModeDetails(HXMLWElement *, HBOComponentMode *) { return true; }
bool HBOBoardParser::validateInterface(HBOBusIf *) { return true; }
bool HBOBoardParser::validatePort(HBOModelPort *, std::string, std::string) { return true; }
bool HBOBoardParser::validatePreferredIP(HBOBusIfPreference *) { return true; }
