#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include "HBOModelPort.h"
#include "HBOPinProps.h"
#include "HSTStringUtils.h"

#include <cstring>
#include <string>
#include <vector>

namespace {

using HBOScripted::afterTag;

using HBOScripted::tclany;

const char *const classNameBoardPartPin = "board_part_pin";
const char *const classNameBoardComponentPin = "board_component_pin";
constexpr char IOBANK_PROP_TAG[] = "IOBANK.";
constexpr char PORT_SCOPE_TAG[] = "PORT.";

using PortRead = std::string (*)(const HBOModelPort &);

std::string portText(const HBOModelPort &port, bool (HBOModelPort::*get)(std::string &) const) {
  std::string value;
  (port.*get)(value);
  return value;
}

// A number of the port as text; empty when it has none (the ends of a
// scalar port).
std::string portNumber(const HBOModelPort &port, bool (HBOModelPort::*get)(int &) const) {
  int value = 0;
  return (port.*get)(value) ? std::to_string(value) : std::string();
}

// "IOBANK." reads a property of the pin's IO bank, "PORT." the port that
// an interface uses the pin for.
bool readDynamic(Tcl_Interp *interp, const tclany &handle, const std::string &name,
                 HATAttrAny &result) {
  const HBOPinProps *pin = HCPProperty::Types::any2native<HBOPinProps *>::get(handle);
  if (!pin)
    return false;
  std::string rest;
  std::string value;
  if (afterTag(name, IOBANK_PROP_TAG, rest))
    value = pin->getIOBankPropertyValue(rest);
  else if (afterTag(name, PORT_SCOPE_TAG, rest))
    value = pin->getPortForInterface(rest);
  if (value.empty())
    return false;
  HCPProperty::Utils::saveResult(interp, value, result);
  return true;
}

bool listDynamic(Tcl_Interp *, const tclany &handle, HCPProperty::DynamicList &out) {
  const HBOPinProps *pin = HCPProperty::Types::any2native<HBOPinProps *>::get(handle);
  if (!pin)
    return false;
  HBOPinProps::StringMap bank;
  pin->getIOBankPropertyList(bank);
  for (const auto &entry : bank)
    out.emplace_back(IOBANK_PROP_TAG + entry.first, HATAttrAny(entry.second));
  for (const auto &entry : pin->getIntfPortMap())
    out.emplace_back(PORT_SCOPE_TAG + entry.first, HATAttrAny(entry.second));
  return true;
}

} // namespace

void HBOCPropertyInit::board_part_pin::init() {
  using namespace HBOScripted;
  using P = HBOPinProps;
  using M = HBOModelPort;
  HCPProperty::ObjectInfo &info = registerClass<P>();

  addClassProperty<P>(info, classNameBoardPartPin);
  addProperty<P>(info, "name", [](const P &p) { return p.getName(); });
  addProperty<P>(info, "loc", [](const P &p) { return p.getPinLoc(); });
  // Reading must not add the property to the pin (its listing and the pin
  // file it is written back to would show it), so the non-creating read.
  auto portProp = [](const std::string &name) {
    return [name](const P &p) {
      std::string value;
      p.getPortProp_(name, value);
      return value;
    };
  };
  const std::vector<std::string> &names = P::getPortPropNames();
  for (const std::string &name : names)
    addProperty<P>(info, name, portProp(name));
  // The upper-case names that older scripts use: the same values, hidden.
  for (const std::string &name : names) {
    HCPProperty::Spec &spec = addProperty<P>(info, HSTStringUtils::toUpper(name), portProp(name));
    spec.getAttrSpec().setVisible(false);
    setHint(spec, "Use '" + name + "'");
  }
  addProperty<P>(info, "internal_vref", [](const P &p) {
    std::string vref;
    p.getPinInternalVref(vref);
    return vref;
  });
  addProperty<P>(info, "pin_index", [](const P &p) { return std::to_string(p.getPinIndex()); });

  HBOScripted::addDynamic(info, readDynamic, listDynamic, false);

  // What the pin's port tells of its bus. Only the pins that a port of an
  // older board holds itself know their port; on a schema 2 board the
  // interfaces name the pins, and these read empty.
  const struct {
    const char *name;
    PortRead read;
    const char *hint;
  } ofPort[] = {
      {"bus_direction", [](const M &m) { return portText(m, &M::getPortDir); },
       "Use 'get_property DIRECTION [get_board_interface_ports <port_name>]'"},
      {"bus_name", [](const M &m) { return m.getName(); },
       "Use 'get_property NAME [get_board_interface_ports <port_name>]'"},
      {"interface", [](const M &m) { return portText(m, &M::getOwnerBusIf); }, "Use 'INTERFACES'"},
      {"logical_name", [](const M &m) { return portText(m, &M::getBusIfLogicalPortName); },
       "Use 'get_property LOGICAL_NAME [get_board_interface_ports <port_name>]'"},
      {"bus_start", [](const M &m) { return portNumber(m, &M::getPortVecLeft); },
       "Use 'get_property LEFT [get_board_interface_ports <port_name>]'"},
      {"bus_stop", [](const M &m) { return portNumber(m, &M::getPortVecRight); },
       "Use 'get_property RIGHT [get_board_interface_ports <port_name>]'"},
      {"bus_width", [](const M &m) { return portNumber(m, &M::getPortWidth); },
       "Use 'get_property WIDTH [get_board_interface_ports <port_name>]'"},
  };
  for (const auto &property : ofPort) {
    PortRead read = property.read;
    setHint(addProperty<P>(info, property.name,
                           [read](const P &p) {
                             M *port = nullptr;
                             return p.getOwnerPort(port) && port ? read(*port) : std::string();
                           }),
            property.hint);
  }
}

void HBOCPropertyInit::board_part_pin::initV2Props() {
  using namespace HBOScripted;
  using P = HBOPinProps;
  HCPProperty::ObjectInfo &info = registerClass<P>();

  info.deleteSpec("class");
  addClassProperty<P>(info, classNameBoardComponentPin);
  addProperty<P>(info, "interfaces", [](const P &p) {
    std::vector<std::string> interfaces;
    for (const auto &entry : p.getIntfPortMap())
      interfaces.push_back(entry.first);
    return interfaces;
  });
}
