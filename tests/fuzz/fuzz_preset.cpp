// The preset reader: the input is preset.xml of the sample board, read with
// the board that names it, leniently and held to the DTDs.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::readBoardWith("preset.xml", data, size);
  return 0;
}
