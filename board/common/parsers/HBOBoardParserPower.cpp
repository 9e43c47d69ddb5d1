// Reader of power_rails (being written).
#include "HBOBoardParser.h"

bool HBOBoardParser::readPowerRails(HXMLWElement &, std::string &) { return true; }
