// The pin file reader: the input is the pin file of a board's FPGA, read
// leniently and held to its DTD.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::readPinFileAlone(data, size);
  return 0;
}
