#include "HBOIntegratedBoardReport.h"

#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOPinProps.h"

namespace {

// The first pin of \p intf that does not trace, or an empty text.
std::string firstUntracedPin(const HBOBoardComponent &fpga, const HBOBoardComponent *base,
                             const HBOBoardComponent *daughter, const HBOBusIf &intf) {
  std::vector<HBOPinProps *> pins;
  intf.getPortMapPinPropsSeq(pins);
  for (const HBOPinProps *pin : pins)
    if (pin && !fpga.isFMCConnectorPinConnected(base, daughter, pin->getName()))
      return pin->getName();
  return std::string();
}

} // namespace

std::vector<HBOIntegratedConnectionReport> HBOIntegratedBoardReport::make(const HBOBoard &board) {
  std::vector<HBOIntegratedConnectionReport> report;
  if (!board.isIntegratedBoard())
    return report;
  const HBOBoardComponent *fpga = board.getActivePart();
  for (const HBOBoard::IntegratedConnection &connection : board.getIntegratedBoardConnections()) {
    HBOIntegratedConnectionReport entry;
    entry.baseConnector = std::get<0>(connection);
    entry.daughterBoard = std::get<1>(connection) ? std::get<1>(connection)->getName() : "";
    entry.daughterConnector = std::get<2>(connection);
    // The mated connectors as the integrated board holds them.
    const HBOBoardComponent *base =
        board.findBoardComponent(HBOCommon::toLowerCopy(entry.baseConnector));
    const HBOBoardComponent *daughter = board.findBoardComponent(
        HBOCommon::toLowerCopy(entry.baseConnector + "_" + entry.daughterConnector));
    std::vector<HBOBusIf *> interfaces;
    if (daughter)
      daughter->getInterfacesVec(interfaces);
    for (HBOBusIf *intf : interfaces) {
      if (!intf)
        continue;
      if (fpga && fpga->canCopyFMCBusInterface(base, daughter, intf))
        entry.reached.push_back(intf->getName());
      else
        entry.missed.emplace_back(intf->getName(),
                                  fpga ? firstUntracedPin(*fpga, base, daughter, *intf) : "");
    }
    report.push_back(std::move(entry));
  }
  return report;
}

std::string
HBOIntegratedBoardReport::format(const std::vector<HBOIntegratedConnectionReport> &report) {
  std::string out;
  for (const HBOIntegratedConnectionReport &entry : report) {
    out += "Connection " + entry.baseConnector + " = " + entry.daughterBoard + " connector " +
           entry.daughterConnector + "\n";
    out += "  reached the FPGA:";
    for (const std::string &name : entry.reached)
      out += " " + name;
    out += entry.reached.empty() ? " none\n" : "\n";
    out += "  did not reach it:";
    if (entry.missed.empty())
      out += " none";
    out += "\n";
    for (const auto &missed : entry.missed)
      out += "    " + missed.first +
             (missed.second.empty() ? std::string(" (the connectors are missing)")
                                    : " (pin " + missed.second + " does not trace to the FPGA)") +
             "\n";
  }
  return out;
}
