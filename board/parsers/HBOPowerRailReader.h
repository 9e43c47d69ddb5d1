// Reader of power_rails: the board's power network of rails, supplies and
// phased rails.
#ifndef BOARDLIB_HBOPOWERRAILREADER_H
#define BOARDLIB_HBOPOWERRAILREADER_H

#include <string>
#include <vector>

class HBOParseContext;
class HBOPowerRail;
class HXMLWElement;

class HBOPowerRailReader {
public:
  explicit HBOPowerRailReader(HBOParseContext &ctx) : m_ctx(ctx) {}

  bool readPowerRails(HXMLWElement &root, std::string &error);

private:
  struct Network;
  /// Queues a finding that fails the file.
  template <typename... Args> void fail_(const std::string &key, const Args &...args);
  /// One power_rail, held against the rails before it.
  void readPowerRail_(HXMLWElement &element, Network &net);
  /// Each phased rail must be shared out exactly among the rails that draw on it.
  void checkPhaseSharing_(const Network &net);

  HBOParseContext &m_ctx;
};

#endif
