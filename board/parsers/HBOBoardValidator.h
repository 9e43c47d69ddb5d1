// The rules that decide whether what was read may stand. A rule queues its
// finding and the next rule still runs, so that a file's faults are told
// together.
#ifndef BOARDLIB_HBOBOARDVALIDATOR_H
#define BOARDLIB_HBOBOARDVALIDATOR_H

#include <string>

class HBOBoardComponent;
class HBOBusIf;
class HBOBusIfPreference;
class HBOModelPort;
class HBOParseContext;

class HBOBoardValidator {
public:
  explicit HBOBoardValidator(HBOParseContext &ctx) : m_ctx(ctx) {}

  bool validateComponent(HBOBoardComponent *component);
  bool validateInterface(HBOBusIf *interface);
  /// Also records the port, against which the ports of other components are
  /// then held.
  bool validatePort(HBOModelPort *port, const std::string &ofComponent,
                    const std::string &interfaceName);
  bool validatePreferredIP(HBOBusIfPreference *preference);

  // Rules on the whole board, once all its sections are read.
  bool validateNecessaryParameters();
  bool validateOfComponent();
  bool validatePostParse() const;

private:
  HBOParseContext &m_ctx;
};

#endif
