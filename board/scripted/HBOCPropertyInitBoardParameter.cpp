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
  const int text = HATAttrSpec::String;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  HBOScripted::addClassProperty<T>(info, classNameBoardParameter);
  addProperty<T>(info, "name", text, [](const T &p) { return p.getName(); });
  addProperty<T>(info, "value", text, [](const T &p) { return p.getValue(); });
  // A parameter that declares no type is read as text.
  addProperty<T>(info, "value_type", text, [](const T &p) {
    return p.getValueType().empty() ? std::string("string") : p.getValueType();
  });
  addProperty<T>(info, "supported_values", HATAttrSpec::StringList, [](const T &p) {
    std::vector<std::string> values;
    p.getSupportedValues(values);
    return values;
  });
  addProperty<T>(info, "read_only", text, [](const T &p) { return p.getReadOnly(); });
}
