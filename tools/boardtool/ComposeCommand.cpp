// boardtool compose: an integrated board made of a reference board and the
// daughter boards plugged into its connectors, and what became of each
// daughter interface.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOIntegratedBoardReport.h"
#include "HEXError.h"

#include <iostream>
#include <memory>
#include <string>

namespace boardtool {
namespace {

const char kAbout[] =
    "Composes an integrated board: the base board BASE (any name 'boardtool show'\n"
    "takes) with a daughter board plugged into each connector that --connect names.\n"
    "Everything of a daughter board comes in under the name of its base connector,\n"
    "and each daughter interface whose pins all trace through the mated connectors\n"
    "to the FPGA becomes an interface of the FPGA. Prints the new board, then, per\n"
    "connection, the daughter interfaces that reached the FPGA and those that did\n"
    "not, with the first pin of each that does not trace.\n";

const char kNotes[] = "Exit status: 0 composed, 1 the board could not be composed (the message\n"
                      "says why) or the load failed, 2 bad usage.\n";

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  std::string base;
  if (!load.take(args, error) || !args.oneOperand("base board", base, error))
    return usageError(composeCommand, error);

  HBOBoardCDataManager::ConnectionPairs connections;
  for (const std::string &text : args.values("--connect")) {
    const std::string::size_type eq = text.find('=');
    if (eq == std::string::npos || eq == 0 || eq + 1 == text.size())
      return usageError(composeCommand,
                        "--connect takes BASECONN=VENDOR:BOARD:CONNECTOR:VERSION, not '" + text +
                            "'");
    connections.emplace_back(text.substr(0, eq), text.substr(eq + 1));
  }
  const bool json = args.has("--json");
  load.apply();

  MessageOutput output(args.jsonMessages());
  LoadedCatalog catalog(composeCommand, false);
  if (!catalog.ok())
    return Failure;
  HBOBoardCDataManager &manager = catalog.manager();
  std::string name = args.value("--name");
  if (name.empty()) {
    bool usedLegacyMap = false;
    const HBOBoard *baseBoard = manager.getBoard(base, usedLegacyMap, true);
    name = HBOBoardCDataManager::createUniqBoardNameForIntegratedBoard(
        baseBoard ? baseBoard->getBoardName() : base, connections);
  }
  std::unique_ptr<HBOBoard> board;
  try {
    board.reset(manager.createIntegratdBoard(base, connections, name));
  } catch (const HEXError &e) {
    ComMsgMgr::sendMessage(e.getMessage());
    return Failure;
  }

  const std::string report =
      HBOIntegratedBoardReport::format(HBOIntegratedBoardReport::make(*board));
  if (json) {
    // Standard output stays one JSON document.
    const int written = writeDump(*board, false, "compose");
    std::cerr << report;
    return written;
  }
  board->display(0);
  std::cout << report;
  std::cout.flush();
  return Success;
}

} // namespace

const Command composeCommand = {
    "compose",
    cmd::compose,
    "compose an integrated board of a base board and daughter boards",
    "BASE",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
