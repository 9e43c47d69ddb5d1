// Reads one board file with the installed library and names the board and
// the data directory the library uses.
#include "HBOBoard.h"
#include "HBOParser.h"
#include "HUTEnv.h"

#include <iostream>
#include <memory>

int main(int argc, char **argv) {
  if (argc != 2) {
    std::cerr << "usage: consumer BOARD_FILE\n";
    return 2;
  }
  std::unique_ptr<HBOBoard> board(new HBOBoard());
  if (!HBOParser().parseFile(argv[1], board.get()))
    return 1;
  std::cout << board->getName() << "\n" << HUTEnv::getZRTDataDirList().front() << "\n";
  return 0;
}
