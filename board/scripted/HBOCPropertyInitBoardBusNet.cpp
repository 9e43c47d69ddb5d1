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
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardBusNet);
  addProperty<T>(info, "name", &T::getName);
  addProperty<T>(info, "delay", [](const T &n) { return delayText(n.getTypicalDelay()); });
  addProperty<T>(info, "enablement_dependency",
                 [](const T &n) { return expressionTerms(n.getEnablementDependency()); });
  addProperty<T>(info, "is_enabled", &T::getIsEnabled);
  addProperty<T>(info, "min_delay", [](const T &n) { return delayText(n.getMinDelay()); });
  addProperty<T>(info, "max_delay", [](const T &n) { return delayText(n.getMaxDelay()); });
  addProperty<T>(info, "bus",
                 [](const T &n) { return n.getOwner() ? n.getOwner()->getName() : std::string(); });
}
