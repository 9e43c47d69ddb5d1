// The pin file reader: the input is part0_pins.xml of the sample board,
// read with the board that names it, leniently and held to the DTDs.
#include "FuzzSupport.h"

#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HEXError.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::silenceMessages();
  fuzz::writeInput("part0_pins.xml", data, size);
  std::string board = fuzz::scratchDir() + "/board.xml";
  for (bool validate : {false, true}) {
    try {
      std::unique_ptr<HBOBoard> read(new HBOBoard());
      if (HBOBoardParser().parseFile(board, read.get(), validate, "", nullptr) && !validate)
        read->display(0);
    } catch (const HEXError &) {
    }
  }
  return 0;
}
