// The schema 2 board reader: the input is board.xml beside the sample
// board's pin and preset files, read as `boardtool read` reads it (the
// reader chosen by the schema, the board printed), then as `boardtool check`
// does (held to the DTDs, every rule told).
#include "FuzzSupport.h"

#include "HBOBoard.h"
#include "HBOBoardParser.h"
#include "HBOParser.h"
#include "HEXError.h"

#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  fuzz::silenceMessages();
  std::string path = fuzz::writeInput("board.xml", data, size);
  try {
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    if (HBOParser().parseFile(path, board.get()))
      board->display(0);
  } catch (const HEXError &) {
  }
  try {
    std::unique_ptr<HBOBoard> board(new HBOBoard());
    HBOBoardParser().parseFile(path, board.get(), true, "", nullptr);
  } catch (const HEXError &) {
  }
  return 0;
}
