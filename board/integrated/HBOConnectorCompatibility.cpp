// Which daughter connector fits which connector of a reference board, and
// the pin trace behind it: a daughter pin meets the base connector's pin in
// the same physical position, and that pin is named after the FPGA pin
// wired to it. The same trace brings daughter interfaces onto the FPGA of
// an integrated board.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOPinProps.h"

#include <vector>

HBOBoardComponent::ConnectorFamily HBOBoardComponent::getConnectorFamily() const {
  if (isDIMMConnector())
    return ConnectorFamily::DIMM;
  if (isPMODConnector())
    return ConnectorFamily::PMOD;
  if (isLPCCategoryConnector())
    return ConnectorFamily::LPC;
  if (isSOMCategoryConnector())
    return ConnectorFamily::SOM;
  return ConnectorFamily::None;
}

int HBOBoardComponent::getConnectorPinCount(const std::string &subType) {
  // The SOM counts are keyed "som_240" and "som_480", not the words the
  // connector predicates accept: a "som240" pair is mated without pins.
  if (subType == "dockline160")
    return 160;
  if (subType == "fmc_lpc" || subType == "fmc_hpc")
    return 400;
  if (subType == "fmc_lpc_plus" || subType == "fmc_plus" || subType == "dimm")
    return 560;
  if (subType == "pmod")
    return 100;
  if (subType == "som_240" || subType == "som")
    return 240;
  if (subType == "som_480")
    return 480;
  return 0;
}

bool HBOBoardComponent::isFullCompatibleWithConnector(const HBOBoardComponent &base) const {
  const HBOBoard *board = base.getBoard();
  return board && board->isConnectorFullCompatibleWithConnector(base, *this);
}

bool HBOBoardComponent::isPartialCompatibleWithConnector(const HBOBoardComponent &base) const {
  const HBOBoard *board = base.getBoard();
  return board && board->isConnectorPartialCompatibleWithConnector(base, *this);
}

namespace {

// The outcome of the computed test for one pair: not of one family, every
// interface traced, or some interface not.
enum class Fit { None, Full, Partial };

// Without an FPGA no pin traces: only an interface without pins reaches it.
bool reachesFpga(const HBOBoardComponent *fpga, const HBOBoardComponent *base,
                 const HBOBoardComponent *daughter, HBOBusIf *intf) {
  if (fpga)
    return fpga->canCopyFMCBusInterface(base, daughter, intf);
  std::vector<HBOPinProps *> pins;
  if (intf)
    intf->getPortMapPinPropsSeq(pins);
  return pins.empty();
}

Fit computeFit(const HBOBoardComponent *fpga, const HBOBoardComponent *daughter,
               const HBOBoardComponent *base) {
  if (!daughter || !base || !daughter->isConnector() || !base->isConnector())
    return Fit::None;
  const HBOBoardComponent::ConnectorFamily family = base->getConnectorFamily();
  if (family == HBOBoardComponent::ConnectorFamily::None ||
      daughter->getConnectorFamily() != family)
    return Fit::None;
  std::vector<HBOBusIf *> interfaces;
  daughter->getBusIfSeq(interfaces, true);
  for (HBOBusIf *intf : interfaces) {
    if (!reachesFpga(fpga, base, daughter, intf))
      return Fit::Partial;
  }
  return Fit::Full;
}

} // namespace

bool HBOBoardComponent::isFullCompatibleWithConnector(const HBOBoardComponent *fpga,
                                                      const HBOBoardComponent *daughter,
                                                      const HBOBoardComponent *base) const {
  return computeFit(fpga, daughter, base) == Fit::Full;
}

bool HBOBoardComponent::isPartialCompatibleWithConnector(const HBOBoardComponent *fpga,
                                                         const HBOBoardComponent *daughter,
                                                         const HBOBoardComponent *base) const {
  return computeFit(fpga, daughter, base) == Fit::Partial;
}

bool HBOBoardComponent::isExplicitlyCompatibleWithConnector(const HBOBoardComponent *daughter,
                                                            const HBOBoardComponent *base) {
  if (!daughter || !base || !daughter->isConnector() || !base->isConnector())
    return false;
  const HBOBoard *board = base->getBoard();
  if (!board)
    return false;
  for (const CompatibleConnector &row : daughter->m_compatibleConnectors) {
    const std::string &version = std::get<2>(row);
    if (std::get<0>(row) == board->getVendor() && std::get<1>(row) == board->getBoardName() &&
        (version == "*" || version == board->getVersion()) &&
        std::get<3>(row) == base->getComponentName())
      return true;
  }
  return false;
}

bool HBOBoardComponent::findConnectedPinConnectedToFMCConnectorPin(
    const HBOBoardComponent *base, const HBOBoardComponent *daughter, const std::string &pinName,
    std::string &fpgaPinName) const {
  if (!base || !daughter)
    return false;
  const HBOPinProps *daughterPin = daughter->findPin(pinName);
  if (!daughterPin)
    return false;
  // Mated connectors meet by position, never by name.
  const HBOPinProps *basePin = base->getPinByIndex(daughterPin->getPinIndex());
  if (!basePin || basePin->getName().empty())
    return false;
  const HBOPinProps *fpgaPin = findPin(basePin->getName());
  if (!fpgaPin)
    return false;
  fpgaPinName = fpgaPin->getName();
  return true;
}

bool HBOBoardComponent::isFMCConnectorPinConnected(const HBOBoardComponent *base,
                                                   const HBOBoardComponent *daughter,
                                                   const std::string &pinName) const {
  std::string unused;
  return findConnectedPinConnectedToFMCConnectorPin(base, daughter, pinName, unused);
}

bool HBOBoardComponent::isFMCConnectorPinConnected1(const HBOBoardComponent *base,
                                                    const HBOBoardComponent *daughter,
                                                    HBOPinProps *pin) const {
  return pin && isFMCConnectorPinConnected(base, daughter, pin->getName());
}

bool HBOBoardComponent::isFMCBusInterfaceFullyConnected(const HBOBoardComponent *base,
                                                        const HBOBoardComponent *daughter,
                                                        HBOBusIf *intf) const {
  if (!intf)
    return true;
  std::vector<HBOPinProps *> pins;
  intf->getPortMapPinPropsSeq(pins);
  for (HBOPinProps *pin : pins) {
    if (!isFMCConnectorPinConnected1(base, daughter, pin))
      return false;
  }
  return true;
}

bool HBOBoardComponent::canCopyFMCBusInterface(const HBOBoardComponent *base,
                                               const HBOBoardComponent *daughter,
                                               HBOBusIf *intf) const {
  return isFMCBusInterfaceFullyConnected(base, daughter, intf);
}
