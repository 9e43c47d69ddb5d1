#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOIpPreset.h"
#include "HBOPortMap.h"
#include "HSTStringUtils.h"

#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

using HBOScripted::afterTag;

using HBOScripted::tclany;

const char *const classNameBoardPartInterface = "board_part_interface";
const char *const classNameBoardComponentInterface = "board_component_interface";
constexpr char PARAM_SCOPE_TAG[] = "PARAM.";
constexpr char PORT_SCOPE_TAG[] = "PORT.";

// An accessor of the form bool get(std::string&) as a plain text.
template <typename F> std::string textOf(const HBOBusIf &busIf, F get) {
  std::string out;
  (busIf.*get)(out);
  return out;
}

// The IP configurations that fit the interface: one entry per version of
// each preset record of its procedure, "proc:vendor:library:name:version",
// with ":interface" when the record names the IP's interface.
std::vector<std::string> presetsOf(const HBOBusIf &busIf) {
  std::vector<std::string> out;
  const HBOBoardComponent *component = busIf.getOwnerComponent();
  const HBOBoard *board = component ? component->getBoard() : nullptr;
  const std::string &proc = busIf.getPresetProcName();
  if (!board || proc.empty())
    return out;
  // The records are filed under the upper-cased procedure name, so the
  // procedure of the interface finds them whatever its case.
  for (const auto &entry : board->getIpPresets()) {
    for (const HBOIpPreset *preset : entry.second) {
      // A record that names no IP (a note in the file) is nothing to apply.
      if (!preset || preset->getName().empty() ||
          !HSTStringUtils::iequals(preset->getPresetProcName(), proc))
        continue;
      for (const std::string &version : HSTStringUtils::split(preset->getVersion(), ",", true)) {
        std::string item = preset->getPresetProcName() + ":" + preset->getVendor() + ":" +
                           preset->getLibrary() + ":" + preset->getName() + ":" +
                           HSTStringUtils::trim(version);
        if (!preset->getIpInterface().empty())
          item += ":" + preset->getIpInterface();
        out.push_back(item);
      }
    }
  }
  return out;
}

// What every dynamic property of an interface holds: a parameter's value or
// a port's name, as text.
using DynamicValue = std::string;

// "PARAM." reads a parameter of the interface, "PORT." the physical port
// behind a logical one.
bool readDynamic(Tcl_Interp *interp, const tclany &handle, const std::string &name,
                 HATAttrAny &result) {
  const HBOBusIf *busIf = HCPProperty::Types::any2native<HBOBusIf *>::get(handle);
  if (!busIf)
    return false;
  std::string rest;
  DynamicValue value;
  bool found = false;
  if (afterTag(name, PARAM_SCOPE_TAG, rest))
    found = busIf->getParamValue(rest, value);
  else if (afterTag(name, PORT_SCOPE_TAG, rest))
    found = busIf->getPPortByLPort(rest, value);
  if (found)
    HCPProperty::Utils::saveResult(interp, value, result);
  return found;
}

bool listDynamic(Tcl_Interp *, const tclany &handle, HCPProperty::DynamicList &out) {
  const HBOBusIf *busIf = HCPProperty::Types::any2native<HBOBusIf *>::get(handle);
  if (!busIf)
    return false;
  std::map<std::string, std::string> parameters;
  busIf->getParamList(parameters);
  for (const auto &parameter : parameters)
    out.emplace_back(PARAM_SCOPE_TAG + parameter.first, HATAttrAny(parameter.second));
  std::vector<HBOPortMap *> portMaps;
  busIf->getPortMapSeq(portMaps);
  for (const HBOPortMap *portMap : portMaps)
    if (portMap)
      out.emplace_back(PORT_SCOPE_TAG + portMap->getLogicalPort(),
                       HATAttrAny(portMap->getPhysicalPort()));
  return true;
}

// Every dynamic property of an interface is read-only, of the type of what
// readDynamic delivers.
bool dynamicSpec(const tclany &, const std::string &name, HATAttrSpec &spec) {
  std::string rest;
  if (!afterTag(name, PARAM_SCOPE_TAG, rest) && !afterTag(name, PORT_SCOPE_TAG, rest))
    return false;
  spec.setAttrTypeOf<DynamicValue>();
  spec.setReadOnly(true);
  return true;
}

} // namespace

void HBOCPropertyInit::board_part_interface::init() {
  using namespace HBOScripted;
  using I = HBOBusIf;
  HCPProperty::ObjectInfo &info = registerClass<I>();
  info.setSortProperties(false);

  addClassProperty<I>(info, classNameBoardPartInterface);
  addProperty<I>(info, "name", &I::getName);
  addProperty<I>(info, "VLNV", [](const I &i) {
    std::string vlnv;
    i.getAbstractTypeVLNV(vlnv, ":");
    return vlnv;
  });
  addProperty<I>(info, "PRESET_FILE", &I::getPresetFile);
  addProperty<I>(info, "MODE", [](const I &i) { return i.getInterfaceMode(); });
  addProperty<I>(info, "vendor",
                 [](const I &i) { return textOf(i, &I::getAbstractTypeVendorName); });
  addProperty<I>(info, "library",
                 [](const I &i) { return textOf(i, &I::getAbstractTypeLibraryName); });
  addProperty<I>(info, "busdef_name",
                 [](const I &i) { return textOf(i, &I::getAbstractTypeName); });
  addProperty<I>(info, "version", [](const I &i) { return textOf(i, &I::getAbstractTypeVersion); });
  addProperty<I>(info, "presets", [](const I &i) { return presetsOf(i); });

  HBOScripted::addDynamic(info, readDynamic, listDynamic, true)
      .setGetDefaultAttrSpecFcn(dynamicSpec);
}

void HBOCPropertyInit::board_part_interface::initV2Props() {
  using namespace HBOScripted;
  using I = HBOBusIf;
  HCPProperty::ObjectInfo &info = registerClass<I>();

  info.deleteSpec("class");
  addClassProperty<I>(info, classNameBoardComponentInterface);
  addProperty<I>(info, "of_component", &I::getOfComponent);
  addProperty<I>(info, "description", &I::getDescription);
  addProperty<I>(info, "preferences", [](const I &i) {
    std::vector<HBOBusIfPreference *> preferences;
    i.getPreferences(preferences);
    return namesOf(preferences, &HBOBusIfPreference::getPrefName);
  });
  addProperty<I>(info, "is_enabled", &I::getIsEnabled).getAttrSpec().setVisible(false);
}
