// What became of each connection of an integrated board: which daughter
// interfaces reached the FPGA, and for those that did not, the first of
// their pins that does not trace through the mated connectors.
#ifndef BOARDLIB_HBOINTEGRATEDBOARDREPORT_H
#define BOARDLIB_HBOINTEGRATEDBOARDREPORT_H

#include <string>
#include <utility>
#include <vector>

class HBOBoard;

struct HBOIntegratedConnectionReport {
  std::string baseConnector;
  /// The daughter board's full name, and its connector.
  std::string daughterBoard;
  std::string daughterConnector;
  /// The names the interfaces have in the integrated board, in name order.
  std::vector<std::string> reached;
  /// (interface, first daughter pin that does not trace); the pin is empty
  /// when the mated connectors are missing altogether.
  std::vector<std::pair<std::string, std::string>> missed;
};

namespace HBOIntegratedBoardReport {
/// One entry per connection of \p board, in order; none for a board that
/// is not integrated.
std::vector<HBOIntegratedConnectionReport> make(const HBOBoard &board);
/// The entries as text lines for a person.
std::string format(const std::vector<HBOIntegratedConnectionReport> &report);
} // namespace HBOIntegratedBoardReport

#endif
