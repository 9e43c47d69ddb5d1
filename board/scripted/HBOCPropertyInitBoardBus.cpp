#include "HBOBoardBus.h"
#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include <sstream>
#include <string>
#include <vector>

namespace {

const char *const classNameBoardBus = "board_bus";

} // namespace

void HBOCPropertyInit::board_bus::init() {
  using HBOScripted::addProperty;
  using HBOScripted::delayText;
  using HBOScripted::expressionTerms;
  using T = HBOBoardBus;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardBus);
  addProperty<T>(info, "name", &T::getName);
  addProperty<T>(info, "component_1", &T::getComp1);
  addProperty<T>(info, "component_2", &T::getComp2);
  addProperty<T>(info, "delay", [](const T &b) { return delayText(b.getDelay()); });
  addProperty<T>(info, "enablement_dependency",
                 [](const T &b) { return expressionTerms(b.getEnablementDependency()); });
  addProperty<T>(info, "is_enabled", &T::getIsEnabled);
  addProperty<T>(info, "min_delay", [](const T &b) { return delayText(b.getMinDelay()); });
  addProperty<T>(info, "max_delay", [](const T &b) { return delayText(b.getMaxDelay()); });
  addProperty<T>(info, "Component_1.START",
                 [](const T &b) { return std::to_string(b.getStartIndexComp1()); });
  addProperty<T>(info, "Component_1.STOP",
                 [](const T &b) { return std::to_string(b.getStopIndexComp1()); });
  addProperty<T>(info, "Component_2.START",
                 [](const T &b) { return std::to_string(b.getStartIndexComp2()); });
  addProperty<T>(info, "Component_2.STOP",
                 [](const T &b) { return std::to_string(b.getStopIndexComp2()); });
}
