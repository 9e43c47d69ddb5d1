// The pin file reader: the input is part0_pins.xml of the sample board,
// read with the board that names it, leniently and held to the DTDs.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::readBoardWith("part0_pins.xml", data, size);
  return 0;
}
