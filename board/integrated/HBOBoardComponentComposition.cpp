// Bringing a daughter board's interfaces onto the FPGA of an integrated
// board. `this` is that FPGA; base and daughter are the mated connectors,
// both already part of the integrated board.
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOModelPort.h"
#include "HBOPinProps.h"

bool HBOBoardComponent::copyInterfacesFromComponent(const HBOBoardComponent *base,
                                                    const HBOBoardComponent *daughter) {
  std::vector<HBOBusIf *> interfaces;
  getInterfacesWhichCanBeConnected(base, daughter, interfaces);
  for (HBOBusIf *interface : interfaces) {
    std::map<std::string, std::string> pinMap;
    getInterfaceConnectedPins(interface, base, daughter, pinMap);
    // The name already carries the base connector's prefix.
    auto *copy = new HBOBusIf(*interface, this, std::string());
    copy->updatePortPinMap(pinMap);
    addBoardInterface_(copy);
    copyInterfacePinProperties(interface, copy, pinMap);
  }
  return true;
}

void HBOBoardComponent::getInterfacesWhichCanBeConnected(const HBOBoardComponent *base,
                                                         const HBOBoardComponent *daughter,
                                                         std::vector<HBOBusIf *> &out) const {
  if (!daughter)
    return;
  std::vector<HBOBusIf *> interfaces;
  daughter->getInterfacesVec(interfaces);
  // An interface that is wired only in part stays behind as a whole.
  for (HBOBusIf *interface : interfaces)
    if (interface && canCopyFMCBusInterface(base, daughter, interface))
      out.push_back(interface);
}

void HBOBoardComponent::getInterfaceConnectedPins(HBOBusIf *intf, const HBOBoardComponent *base,
                                                  const HBOBoardComponent *daughter,
                                                  std::map<std::string, std::string> &out) const {
  if (!intf)
    return;
  std::vector<HBOPinProps *> pins;
  intf->getPortMapPinPropsSeq(pins);
  for (const HBOPinProps *pin : pins) {
    std::string fpgaPin;
    if (pin && findConnectedPinConnectedToFMCConnectorPin(base, daughter, pin->getName(), fpgaPin))
      out[pin->getName()] = fpgaPin;
  }
}

void HBOBoardComponent::copyInterfacePinProperties(
    HBOBusIf *from, HBOBusIf *to, const std::map<std::string, std::string> &pinMap) {
  (void)to;
  if (!from || !from->getOwnerComponent())
    return;
  const HBOBoardComponent &daughter = *from->getOwnerComponent();
  for (const auto &entry : from->getPortMaps()) {
    if (!entry.second)
      continue;
    entry.second->forEachPinPortMap([&](std::string_view, std::string_view pinName) {
      const std::string name(pinName);
      const HBOPinProps *pin = daughter.findPin(name);
      auto mapped = pinMap.find(name);
      if (!pin || mapped == pinMap.end())
        return;
      if (HBOPinProps *fpgaPin = findPin(mapped->second))
        fpgaPin->copyIOPropertiesFrom(*pin);
    });
  }
}
