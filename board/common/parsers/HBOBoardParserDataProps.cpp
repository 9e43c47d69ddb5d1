// Reader of data_properties (being written).
#include "HBOBoardParser.h"

bool HBOBoardParser::readDataProperties(HXMLWElement *root, std::string &error, HBOBoardComponent *) {
  if (!root) {
    error = "HBOBoardParser::readBoardDataProperties: Root XML element is NULL";
    return false;
  }
  return true;
}
bool HBOBoardParser::readDataPropGroupsAndProps(HXMLWElement *, std::map<std::string, boost::any> &) { return true; }
bool HBOBoardParser::readDataPropGroup(HXMLWElement *, std::map<std::string, boost::any> &) { return true; }
bool HBOBoardParser::readDataProp(HXMLWElement *, std::map<std::string, boost::any> &) { return true; }
