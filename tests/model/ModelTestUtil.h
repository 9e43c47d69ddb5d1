// Builders of the records that the object model tests put together.
#ifndef BOARDLIB_MODELTESTUTIL_H
#define BOARDLIB_MODELTESTUTIL_H

#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOModelPort.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"

#include "TestSupport.h"

#include <string>
#include <vector>

namespace modeltest {

using Strings = std::vector<std::string>;

using test::MessageRecorder;
using test::ScratchDir;

inline HBOBoardComponent *makeComponent(const std::string &name, const std::string &type,
                                        const std::string &subType = std::string()) {
  auto *component = new HBOBoardComponent();
  component->setComponentName(name);
  component->setName("acme:big:" + name + ":1.0");
  component->setType(type);
  component->setSubType(subType);
  return component;
}

inline HBOBusIf *makeBusIf(const std::string &name, const std::string &vendor = "v",
                           const std::string &library = "l", const std::string &type = "n",
                           const std::string &version = "1") {
  auto *busIf = new HBOBusIf();
  busIf->setName(name);
  busIf->setAbstractTypeVendor(vendor);
  busIf->setAbstractTypeLibrary(library);
  busIf->setAbstractTypeName(type);
  busIf->setAbstractTypeVersion(version);
  return busIf;
}

inline HBOModelPort *makePort(const std::string &name) {
  auto *port = new HBOModelPort();
  port->setName(name);
  return port;
}

/// A pin of \p component, not yet entered; index 0 is also what a pin
/// without an index holds.
inline HBOPinProps *makePin(HBOBoardComponent &component, const std::string &name, int index = 0) {
  HBOPinProps *pin = component.createPin();
  pin->setName(name);
  pin->setPinIndex(index);
  return pin;
}

inline void addPortMap(HBOBusIf *busIf, const std::string &logical, const std::string &physical) {
  auto *portMap = new HBOPortMap();
  portMap->setLogicalPort(logical);
  portMap->setPhysicalPort(physical);
  busIf->populatePortMap(portMap);
}

} // namespace modeltest

#endif
