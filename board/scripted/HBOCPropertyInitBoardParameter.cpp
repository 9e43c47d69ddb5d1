#include "HBOCPropertyInit.h"
#include "HBOParameter.h"
#include "HBOScriptedSupport.h"

#include <string>
#include <vector>

namespace {

const char *const classNameBoardParameter = "board_parameter";

} // namespace

void HBOCPropertyInit::board_parameter::init() {
  using HBOScripted::addProperty;
  using T = HBOParameter;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardParameter);
  addProperty<T>(info, "name", &T::getName);
  addProperty<T>(info, "value", &T::getValue);
  // A parameter that declares no type is read as text.
  addProperty<T>(info, "value_type", [](const T &p) {
    return p.getValueType().empty() ? std::string("string") : p.getValueType();
  });
  addProperty<T>(info, "supported_values", [](const T &p) {
    std::vector<std::string> values;
    p.getSupportedValues(values);
    return values;
  });
  addProperty<T>(info, "read_only", &T::getReadOnly);
}
