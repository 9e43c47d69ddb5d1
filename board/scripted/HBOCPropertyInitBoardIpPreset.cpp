#include "HBOBoard.h"
#include "HBOBusIf.h"
#include "HBOCPropertyInit.h"
#include "HBOIpPreset.h"
#include "HBOScriptedSupport.h"

#include <string>

namespace {

using tclany = zeb::tcltasks::tclany;
using tcl_collection = zeb::tcltasks::tcl_collection;

const char *const classNameIpConfigurationInfo = "ip_configuration_info";
const char *const PARAM_SCOPE_TAG = "PARAM.";
const char *const BOARD_INTERFACES_PROP = "BOARD_INTERFACES";

bool startsWith(const std::string &text, const std::string &prefix) {
  return text.compare(0, prefix.size(), prefix) == 0;
}

// The board interfaces an associated-interface record names, as objects, in
// the record's name order. The record's keys are looked up as the reader
// checked them: among the FPGA's interfaces, or a daughter board's
// connectors'. A name the board no longer has is left out.
tcl_collection boardInterfaces(const HBOIpPreset &preset) {
  tcl_collection out;
  const HBOBoard *board = preset.getOwner();
  if (!board)
    return out;
  const bool withFpga = board->hasFPGAPart();
  for (const auto &entry : preset.getParamList()) {
    HBOBusIf *busIf = nullptr;
    bool found = withFpga ? board->getBusIfByName(busIf, entry.first)
                          : board->getBusIfByNameUsingConnectors(busIf, entry.first);
    if (found && busIf)
      out.append(tclany::of(busIf));
  }
  return out;
}

// A preset has its parameters under "PARAM."; an associated-interface
// record, whose parameters are only the orders of its interfaces, has the
// interfaces themselves instead.
bool getDynamic(Tcl_Interp *interp, const tclany &handle, const std::string &name,
                HATAttrAny &result) {
  const HBOIpPreset *preset = HCPProperty::Types::any2native<HBOIpPreset *>::get(handle);
  if (!preset)
    return false;
  if (startsWith(name, PARAM_SCOPE_TAG) && preset->isPreset()) {
    std::string value;
    if (!preset->getParamValue(name.substr(std::string(PARAM_SCOPE_TAG).size()), value))
      return false;
    HCPProperty::Utils::saveResult(interp, value, result);
    return true;
  }
  if (name == BOARD_INTERFACES_PROP && preset->isAssocIntf()) {
    HCPProperty::Utils::saveResult(interp, boardInterfaces(*preset), result);
    return true;
  }
  return false;
}

bool listDynamic(Tcl_Interp *, const tclany &handle, HCPProperty::DynamicList &out) {
  const HBOIpPreset *preset = HCPProperty::Types::any2native<HBOIpPreset *>::get(handle);
  if (!preset)
    return false;
  if (preset->isPreset())
    for (const auto &entry : preset->getParamList())
      out.emplace_back(PARAM_SCOPE_TAG + entry.first, HATAttrAny(entry.second));
  if (preset->isAssocIntf()) {
    HATAttrAny interfaces;
    HATAttrUtils::setAny(interfaces, boardInterfaces(*preset));
    out.emplace_back(BOARD_INTERFACES_PROP, interfaces);
  }
  return true;
}

} // namespace

void HBOCPropertyInit::board_ip_preset::init() {
  using HBOScripted::addProperty;
  using T = HBOIpPreset;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  info.setSortProperties(false);
  HBOScripted::addClassProperty<T>(info, classNameIpConfigurationInfo);
  addProperty<T>(info, "name", &T::getPresetName);
  addProperty<T>(info, "ip_name", &T::getName);
  addProperty<T>(info, "ip_vendor", &T::getVendor);
  addProperty<T>(info, "ip_library", &T::getLibrary);
  addProperty<T>(info, "ip_version", &T::getVersion);
  addProperty<T>(info, "ip_interface", &T::getIpInterface);
  HBOScripted::addDynamic(info, getDynamic, listDynamic, false);
}
