// The filter expressions of the get_board* commands: parsed, and matched
// against an object whose properties are made up from their names.
#include "FuzzSupport.h"

#include "HBOScriptFilter.h"
#include "HCPProperty.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size == 0)
    return 0;
  // The first byte chooses case-blind matching.
  bool nocase = data[0] & 1;
  std::string expression = fuzz::text(data + 1, size - 1);
  try {
    HBOScriptFilter filter(expression, nocase);
    filter.matches([](const std::string &name) -> std::string {
      if (name.size() % 3 == 0)
        return "";
      if (name.size() % 3 == 1)
        return std::to_string(name.size() * 7);
      return name + "_value";
    });
  } catch (const HCPProperty::Error &) {
  }
  return 0;
}
