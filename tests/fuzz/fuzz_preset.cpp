// The preset reader: the input is the preset file of a board, read leniently
// and held to its DTD.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::readPresetFileAlone(data, size);
  return 0;
}
