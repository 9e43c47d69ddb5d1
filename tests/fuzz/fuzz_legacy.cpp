// The legacy reader (board parts of schema 1.0 and 1.1): the input is the
// board part file, beside the sample board's preset.xml, which a legacy
// file may name as its preset file.
#include "FuzzSupport.h"

#include "HBOBoard.h"
#include "HBOPartParser.h"
#include "HEXError.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::silenceMessages();
  std::string path = fuzz::writeInput("legacy_part.xml", data, size);
  try {
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    if (HBOPartParser().parseFile(path, board.get()))
      board->display(0);
  } catch (const HEXError &) {
  }
  return 0;
}
