#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOComponentMode.h"
#include "HBOParameter.h"
#include "HSTStringUtils.h"

#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace {

using HBOScripted::afterTag;

using HBOScripted::tclany;

const char *const classNameBoardPart = "board_part";
const char *const classNameBoardComponent = "board_component";
constexpr char PARAM_SCOPE_TAG[] = "PARAM.";
constexpr char JTAG_PROP_TAG[] = "JTAG_POSITION.";
// Reserved for addressed positions of components; nothing answers them yet.
[[maybe_unused]] constexpr char ADD_SCOPE_TAG[] = "ADDRESS.POSITION[";
[[maybe_unused]] constexpr char COMP_SCOPE_TAG[] = "COMPONENT.POSITION[";
[[maybe_unused]] constexpr char POS_SCOPE_TAG[] = "POSITION.";

const char *const boardVendorHint =
    "Use 'get_property VENDOR_NAME [get_boards -of_objects <board_part object>]'";

// A text property of the owning board, shown on the component; empty for
// a component without one.
template <typename F>
HCPProperty::Spec &addBoardProperty(HCPProperty::ObjectInfo &info, const std::string &name,
                                    F read) {
  return HBOScripted::addProperty<HBOBoardComponent>(
      info, name, [read](const HBOBoardComponent &component) {
        const HBOBoard *board = component.getBoard();
        return board ? std::string(std::invoke(read, *board)) : std::string();
      });
}

// With schema 2 a component shows its parameters under "PARAM." and its
// place in each JTAG chain under "JTAG_POSITION."; any component tells the
// schema of its board.
bool readDynamic(Tcl_Interp *interp, const tclany &handle, const std::string &name,
                 HATAttrAny &result) {
  const HBOBoardComponent *component =
      HCPProperty::Types::any2native<HBOBoardComponent *>::get(handle);
  if (!component)
    return false;
  std::string value;
  std::string rest;
  const bool v2 = HBOBoardUtils::isV2SchemaEnabled();
  if (v2 && afterTag(name, PARAM_SCOPE_TAG, rest) && component->getParamValue(rest, value)) {
    HCPProperty::Utils::saveResult(interp, value, result);
    return true;
  }
  if (v2 && afterTag(name, JTAG_PROP_TAG, rest)) {
    value = component->getJtagPosition(rest);
    if (!value.empty()) {
      HCPProperty::Utils::saveResult(interp, value, result);
      return true;
    }
  }
  const HBOBoard *board = component->getBoard();
  if (!board)
    return false;
  if (HSTStringUtils::iequals(name, "SCHEMA_VERSION")) {
    HCPProperty::Utils::saveResult(interp, board->getBoardSchemaVersion(), result);
    return true;
  }
  if (HSTStringUtils::iequals(name, "MIGRATED_FROM_SCHEMA")) {
    HCPProperty::Utils::saveResult(interp, board->getMigratedFromSchema(), result);
    return true;
  }
  return false;
}

bool listDynamic(Tcl_Interp *, const tclany &handle, HCPProperty::DynamicList &out) {
  const HBOBoardComponent *component =
      HCPProperty::Types::any2native<HBOBoardComponent *>::get(handle);
  if (!component || !HBOBoardUtils::isV2SchemaEnabled())
    return false;
  for (const HBOParameter *parameter : component->getParameters())
    if (parameter)
      out.emplace_back(PARAM_SCOPE_TAG + parameter->getName(), HATAttrAny(parameter->getValue()));
  if (const HBOBoard *board = component->getBoard()) {
    std::map<std::string, std::string> positions;
    component->getJtagPositions(positions);
    for (const std::string &chain : board->getJtagChains()) {
      auto found = positions.find(chain);
      if (found != positions.end())
        out.emplace_back(JTAG_PROP_TAG + chain, HATAttrAny(found->second));
    }
  }
  return true;
}

} // namespace

void HBOCPropertyInit::board_component::init() {
  using namespace HBOScripted;
  using C = HBOBoardComponent;
  using B = HBOBoard;
  HCPProperty::ObjectInfo &info = registerClass<C>();

  addClassProperty<C>(info, classNameBoardPart);
  addProperty<C>(info, "name", &C::getName);
  addProperty<C>(info, "part_name", &C::getPartName);
  addProperty<C>(info, "SPEC_URL", &C::getSpecUrl);
  setHint(addProperty<C>(info, "jtag_position", [](const C &c) { return c.getJtagPosition(); }),
          "Use 'JTAG_POSITION.chain1'");

  HBOScripted::addDynamic(info, readDynamic, listDynamic, false);

  setHint(addBoardProperty(info, "BOARD_NAME", &B::getBoardName),
          "Use 'get_property BOARD_NAME [get_boards -of_objects <board_part object>]'");
  setHint(addBoardProperty(info, "vendor_name", &B::getVendor), boardVendorHint);
  setHint(addBoardProperty(info, "BOARD_PART_FILE_VERSION", &B::getVersion),
          "Use 'get_property FILE_VERSION [get_boards -of_objects <board_part object>]'");
  setHint(addBoardProperty(info, "BOARD_REVISION", &B::getBoardRevision),
          "Use 'get_property COMPATIBLE_BOARD_REVISIONS [get_boards -of_objects <board_part "
          "object>]'");
  addProperty<C>(info, "DISPLAY_NAME", &C::getDisplayName);
  addBoardProperty(info, "FILE_NAME", &B::getBoardFile);
  setHint(addBoardProperty(info, "REPOSITORY", &B::getRepository),
          "Use 'get_property REPOSITORY [get_boards -of_objects <board_part object>]'");
  addProperty<C>(info, "additionally_supported_part_names", [](const C &c) {
    std::vector<std::string> parts;
    if (const B *board = c.getBoard())
      board->getAdditionalSupportedPartNames(parts, false);
    return parts;
  });
}

void HBOCPropertyInit::board_component::initV2Props() {
  using namespace HBOScripted;
  using C = HBOBoardComponent;
  HCPProperty::ObjectInfo &info = registerClass<C>();

  info.deleteSpec("class");
  addClassProperty<C>(info, classNameBoardComponent);
  addProperty<C>(info, "component_name", &C::getComponentName);
  // The hint points at the board's vendor although the value is the
  // component's own; scripts and users know it in this form.
  setHint(addProperty<C>(info, "component_vendor", &C::getVendorName), boardVendorHint);
  addProperty<C>(info, "type", &C::getType);
  addProperty<C>(info, "sub_type", &C::getSubType);
  addProperty<C>(info, "description", &C::getDescription);
  addProperty<C>(info, "configuration_modes", [](const C &c) {
    std::vector<HBOComponentMode *> modes;
    c.getComponentModes(modes);
    return namesOf(modes, &HBOComponentMode::getName);
  });
  addProperty<C>(info, "is_enabled", &C::getIsEnabled).getAttrSpec().setVisible(false);
  addBoardProperty(info, "supports_ced",
                   [](const HBOBoard &b) { return b.getSupportsCED() ? "true" : "false"; });
}
