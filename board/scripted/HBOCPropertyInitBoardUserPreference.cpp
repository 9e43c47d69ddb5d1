#include "HBOBusIfPreference.h"
#include "HBOCPropertyInit.h"
#include "HBOScriptedSupport.h"
#include "HUTConvert.h"

#include <cctype>
#include <string>
#include <string_view>

namespace {

const char *const classNameIpPreference = "ip_preference";
// Reserved for the parameters of a preferred IP; nothing reads them yet.
[[maybe_unused]] const char *const IP_PARAM_TAG = "IP_PARAM.";

// The order reaches scripts as an integer. The conversion is strict: a text
// that is no whole number fails the property instead of reading as 0.
long long orderValue(const std::string &text) {
  std::string_view digits = text;
  while (!digits.empty() && std::isspace(static_cast<unsigned char>(digits.front())))
    digits.remove_prefix(1);
  long long value = 0;
  if (HUTConvert::parseInteger(digits, value) != HUTConvert::IntegerResult::Ok)
    throw HCPProperty::Error("Conversion failed");
  return value;
}

} // namespace

void HBOCPropertyInit::board_user_preference::init() {
  using HBOScripted::addProperty;
  using T = HBOBusIfPreference;
  HCPProperty::ObjectInfo &info = HBOScripted::registerClass<T>();
  info.setSortProperties(false);
  // The class has no name property; scripts show a preference by the name
  // the model gives it.
  info.setNameFcn(
      [](Tcl_Interp *, const HBOScripted::tclany &handle, const std::string &, HATAttrAny &out) {
        const T *preference = HCPProperty::Types::any2native<T *>::get(handle);
        if (!preference)
          return false;
        out.setString(preference->getPrefName());
        return true;
      });
  HBOScripted::addClassProperty<T>(info, classNameIpPreference);
  addProperty<T>(info, "ip_name", &T::getName);
  addProperty<T>(info, "ip_vendor", &T::getVendor);
  addProperty<T>(info, "ip_library", &T::getLibrary);
  addProperty<T>(info, "ip_version", &T::getVersion);
  addProperty<T>(info, "order",
                 [](const T &p) { return orderValue(std::to_string(p.getOrder())); });
}
