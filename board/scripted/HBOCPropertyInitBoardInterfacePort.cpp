#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include "HBOBusIf.h"
#include "HBOModelPort.h"

#include <cstring>
#include <string>

namespace {

using HBOScripted::tclany;

const char *const classNameBoardInterfacePort = "board_interface_port";
constexpr char PIN_SCOPE_TAG[] = "PIN.";

// A number of the port as text; empty when the port has none (the ends of
// a scalar port).
std::string numberText(const HBOModelPort &port, bool (HBOModelPort::*get)(int &) const) {
  int value = 0;
  return (port.*get)(value) ? std::to_string(value) : std::string();
}

// "PIN.<index>" names the pin behind one bit of the port.
bool readDynamic(Tcl_Interp *interp, const tclany &handle, const std::string &name,
                 HATAttrAny &result) {
  const HBOModelPort *port = HCPProperty::Types::any2native<HBOModelPort *>::get(handle);
  const std::size_t length = std::strlen(PIN_SCOPE_TAG);
  if (!port || name.compare(0, length, PIN_SCOPE_TAG) != 0)
    return false;
  std::string pin;
  port->getPinPort(name.substr(length), pin);
  if (pin.empty())
    return false;
  HCPProperty::Utils::saveResult(interp, pin, result);
  return true;
}

bool listDynamic(Tcl_Interp *, const tclany &handle, HCPProperty::DynamicList &out) {
  const HBOModelPort *port = HCPProperty::Types::any2native<HBOModelPort *>::get(handle);
  if (!port)
    return false;
  for (const auto &entry : port->getPinPortMap())
    out.emplace_back(PIN_SCOPE_TAG + entry.first, HATAttrAny(entry.second));
  return true;
}

} // namespace

void HBOCPropertyInit::board_interface_port::init() {
  using namespace HBOScripted;
  using P = HBOModelPort;
  HCPProperty::ObjectInfo &info = registerClass<P>();

  addClassProperty<P>(info, classNameBoardInterfacePort);
  addProperty<P>(info, "name", [](const P &p) { return p.getName(); });
  addProperty<P>(info, "direction", [](const P &p) {
    std::string direction;
    p.getPortDir(direction);
    return direction;
  });
  addProperty<P>(info, "width", [](const P &p) { return numberText(p, &P::getPortWidth); });
  addProperty<P>(info, "left", [](const P &p) { return numberText(p, &P::getPortVecLeft); });
  addProperty<P>(info, "right", [](const P &p) { return numberText(p, &P::getPortVecRight); });
  addProperty<P>(info, "interface",
                 [](const P &p) { return p.getOwner() ? p.getOwner()->getName() : std::string(); });
  addProperty<P>(info, "logical_name", [](const P &p) {
    std::string logical;
    p.getBusIfLogicalPortName(logical);
    return logical;
  });

  HBOScripted::addDynamic(info, readDynamic, listDynamic, false);
}
