// Reader of power_rails: the board's power network of rails, supplies and
// phased rails.
#ifndef BOARDLIB_HBOPOWERRAILREADER_H
#define BOARDLIB_HBOPOWERRAILREADER_H

#include <string>

class HBOParseContext;
class HXMLWElement;

class HBOPowerRailReader {
public:
  explicit HBOPowerRailReader(HBOParseContext &ctx) : m_ctx(ctx) {}

  bool readPowerRails(HXMLWElement &root, std::string &error);

private:
  HBOParseContext &m_ctx;
};

#endif
