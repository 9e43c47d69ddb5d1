// Readers of the preset file and the IP associated rules (being written).
#include "HBOBoardParser.h"

bool HBOBoardParser::parsePresetFile(const std::string &, std::map<std::string, HBOIpPreset *> &) { return true; }
bool HBOBoardParser::parsePresets(const std::string &, std::map<std::string, HBOIpPreset *> &) { return true; }
bool HBOBoardParser::readIpPresets(HXMLWElement *, std::map<std::string, HBOIpPreset *> &, std::string &) { return true; }
bool HBOBoardParser::readPresetDetails(HXMLWElement *, HBOIpPreset *) { return true; }
bool HBOBoardParser::readIpAssociatedInterfaces(HXMLWElement *, std::string &) { return true; }
bool HBOBoardParser::readAssociatedInterfacesDetails(HXMLWElement *, HBOIpPreset *) { return true; }
bool HBOBoardParser::validateAssocIntf(HBOIpPreset *) { return true; }
