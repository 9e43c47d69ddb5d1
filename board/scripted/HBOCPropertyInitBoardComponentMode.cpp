#include "HBOBusIfPreference.h"
#include "HBOCPropertyInit.h"
#include "HBOComponentMode.h"
#include "HBOScriptedSupport.h"

#include <string>
#include <vector>

namespace {

const char *const classNameBoardComponentMode = "board_component_mode";

std::vector<std::string> interfaceNames(const HBOComponentMode &mode) {
  HBOComponentMode::InterfaceMap interfaces;
  mode.getInterfaces(interfaces);
  std::vector<std::string> names;
  for (const auto &entry : interfaces)
    names.push_back(entry.second.first);
  return names;
}

std::vector<std::string> preferenceNames(const HBOComponentMode &mode) {
  std::vector<HBOBusIfPreference *> preferences;
  mode.getPreferredIps(preferences);
  return HBOScripted::namesOf(preferences, &HBOBusIfPreference::getPrefName);
}

} // namespace

void HBOCPropertyInit::board_component_mode::init() {
  using HBOScripted::addProperty;
  using HBOScripted::expressionTerms;
  using T = HBOComponentMode;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardComponentMode);
  addProperty<T>(info, "name", &T::getName);
  addProperty<T>(info, "description", &T::getDescription);
  addProperty<T>(info, "interfaces", interfaceNames);
  addProperty<T>(info, "enablement_dependency",
                 [](const T &m) { return expressionTerms(m.getEnablementDependency()); });
  addProperty<T>(info, "preferences", preferenceNames);
  addProperty<T>(info, "is_enabled", &T::getIsEnabled);
}
