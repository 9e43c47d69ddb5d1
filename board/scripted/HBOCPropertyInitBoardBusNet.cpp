#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"

#include <sstream>
#include <string>
#include <vector>

namespace {

const char *const classNameBoardBusNet = "board_bus_net";

} // namespace

void HBOCPropertyInit::board_bus_net::init() {
  using HBOScripted::addProperty;
  using HBOScripted::delayText;
  using HBOScripted::expressionTerms;
  using T = HBOBoardBusNet;
  const int text = HATAttrSpec::String;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardBusNet);
  addProperty<T>(info, "name", text, [](const T &n) { return n.getName(); });
  addProperty<T>(info, "delay", text, [](const T &n) { return delayText(n.getTypicalDelay()); });
  addProperty<T>(info, "enablement_dependency", HATAttrSpec::StringList,
                 [](const T &n) { return expressionTerms(n.getEnablementDependency()); });
  addProperty<T>(info, "is_enabled", text, [](const T &n) { return n.getIsEnabled(); });
  addProperty<T>(info, "min_delay", text, [](const T &n) { return delayText(n.getMinDelay()); });
  addProperty<T>(info, "max_delay", text, [](const T &n) { return delayText(n.getMaxDelay()); });
  addProperty<T>(info, "bus", text, [](const T &n) {
    return n.getOwner() ? n.getOwner()->getName() : std::string();
  });
}
