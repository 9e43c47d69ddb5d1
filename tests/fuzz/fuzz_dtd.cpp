// The DTD validation, alone: the input held to the DTD of each kind of
// file (board, pin file, preset file, and their legacy forms).
#include "FuzzSupport.h"

#include "HBODtdValidator.h"
#include "HBOParseContext.h"
#include "HEXError.h"

namespace {
const char *const kTypes[] = {"board", "part0_pins", "preset", "board_part", "legacy_preset"};
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::silenceMessages();
  if (size == 0)
    return 0;
  // The first byte picks the kind, so that one corpus reaches all of them.
  const char *type = kTypes[data[0] % (sizeof kTypes / sizeof kTypes[0])];
  std::string path = fuzz::writeInput("validated.xml", data + 1, size - 1);
  try {
    HBOParseContext ctx;
    ctx.validate = true;
    HBODtdValidator(ctx).isValidXML(path, type);
  } catch (const HEXError &) {
  }
  return 0;
}
