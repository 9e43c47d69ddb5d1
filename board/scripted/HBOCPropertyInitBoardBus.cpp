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
  const int text = HATAttrSpec::String;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardBus);
  addProperty<T>(info, "name", text, [](const T &b) { return b.getName(); });
  addProperty<T>(info, "component_1", text, [](const T &b) { return b.getComp1(); });
  addProperty<T>(info, "component_2", text, [](const T &b) { return b.getComp2(); });
  addProperty<T>(info, "delay", text, [](const T &b) { return delayText(b.getDelay()); });
  addProperty<T>(info, "enablement_dependency", HATAttrSpec::StringList,
                 [](const T &b) { return expressionTerms(b.getEnablementDependency()); });
  addProperty<T>(info, "is_enabled", text, [](const T &b) { return b.getIsEnabled(); });
  addProperty<T>(info, "min_delay", text, [](const T &b) { return delayText(b.getMinDelay()); });
  addProperty<T>(info, "max_delay", text, [](const T &b) { return delayText(b.getMaxDelay()); });
  addProperty<T>(info, "Component_1.START", text,
                 [](const T &b) { return std::to_string(b.getStartIndexComp1()); });
  addProperty<T>(info, "Component_1.STOP", text,
                 [](const T &b) { return std::to_string(b.getStopIndexComp1()); });
  addProperty<T>(info, "Component_2.START", text,
                 [](const T &b) { return std::to_string(b.getStartIndexComp2()); });
  addProperty<T>(info, "Component_2.STOP", text,
                 [](const T &b) { return std::to_string(b.getStopIndexComp2()); });
}
