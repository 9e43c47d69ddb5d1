#include "HBOScriptedClasses.h"

#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOCPropertyInit.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HCPProperty.h"

#include <cstring>
#include <mutex>

const std::vector<HBOScriptedClass> &HBOScriptedClasses::all() {
  static const std::vector<HBOScriptedClass> classes = {
      {"board", &typeid(HBOBoard *)},
      {"board_component", &typeid(HBOBoardComponent *)},
      {"board_part_interface", &typeid(HBOBusIf *)},
      {"board_interface_port", &typeid(HBOModelPort *)},
      {"board_part_pin", &typeid(HBOPinProps *)},
      {"board_bus", &typeid(HBOBoardBus *)},
      {"board_bus_net", &typeid(HBOBoardBusNet *)},
      {"board_component_mode", &typeid(HBOComponentMode *)},
      {"board_parameter", &typeid(HBOParameter *)},
      {"board_jumper", &typeid(HBOJumper *)},
      {"board_ip_preset", &typeid(HBOIpPreset *)},
      {"board_user_preference", &typeid(HBOBusIfPreference *)},
  };
  return classes;
}

const HBOScriptedClass *HBOScriptedClasses::find(const std::type_info &type) {
  for (const HBOScriptedClass &c : all())
    if (*c.type == type)
      return &c;
  return nullptr;
}

namespace {

bool registerEverything() {
  HBOCPropertyInit::board::init();
  HBOCPropertyInit::board_component::init();
  HBOCPropertyInit::board_part_interface::init();
  HBOCPropertyInit::board_interface_port::init();
  HBOCPropertyInit::board_part_pin::init();
  HBOCPropertyInit::board_bus::init();
  HBOCPropertyInit::board_bus_net::init();
  HBOCPropertyInit::board_component_mode::init();
  HBOCPropertyInit::board_parameter::init();
  HBOCPropertyInit::board_jumper::init();
  HBOCPropertyInit::board_ip_preset::init();
  HBOCPropertyInit::board_user_preference::init();
  if (!HBOBoardUtils::isV2SchemaEnabled())
    return false;
  HBOCPropertyInit::board_component::initV2Props();
  HBOCPropertyInit::board_part_interface::initV2Props();
  HBOCPropertyInit::board_part_pin::initV2Props();
  return true;
}

std::mutex g_mutex;
bool g_registered = false;
bool g_v2 = false;

} // namespace

bool HBOScriptedClasses::registerAll() {
  std::lock_guard<std::mutex> lock(g_mutex);
  if (!g_registered) {
    g_v2 = registerEverything();
    g_registered = true;
  }
  return g_v2;
}

bool HBOScriptedClasses::reregisterAll() {
  std::lock_guard<std::mutex> lock(g_mutex);
  for (const HBOScriptedClass &c : all())
    if (HCPProperty::ObjectInfo *info = HCPProperty::getObjectInfo(*c.type))
      for (const HCPProperty::Spec *spec : info->getSpecs())
        info->deleteSpec(spec->getName());
  g_v2 = registerEverything();
  g_registered = true;
  return g_v2;
}
