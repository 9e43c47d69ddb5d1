// Reader of data_properties: a free-form tree of named groups and values.
#ifndef BOARDLIB_HBODATAPROPSREADER_H
#define BOARDLIB_HBODATAPROPSREADER_H

#include <boost/any.hpp>

#include <map>
#include <string>

class HBOBoardComponent;
class HBOParseContext;
class HXMLWElement;

class HBODataPropsReader {
public:
  explicit HBODataPropsReader(HBOParseContext &ctx) : m_ctx(ctx) {}

  bool readDataProperties(HXMLWElement *root, std::string &error, HBOBoardComponent *component);
  bool readDataPropGroupsAndProps(HXMLWElement *element, std::map<std::string, boost::any> &out);
  bool readDataPropGroup(HXMLWElement *element, std::map<std::string, boost::any> &out);
  bool readDataProp(HXMLWElement *element, std::map<std::string, boost::any> &out);

private:
  HBOParseContext &m_ctx;
};

#endif
