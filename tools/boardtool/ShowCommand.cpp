// boardtool show: finds one board of the catalog by any of its names and
// prints it, with the latest version of its family.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOCommon.h"
#include "HBOPartCReposMgr.h"

#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kAbout[] =
    "Finds one board and prints it. NAME may be the board name vendor:board:version,\n"
    "the board part name vendor:board:part0:version, a legacy name, or vendor:board:*\n"
    "for the latest version of a board; case does not matter. After the board come the\n"
    "latest version of its family and whether it is a user board that hides an\n"
    "installed one.\n";

const char kNotes[] =
    "Exit status: 0 shown, 1 no board matches NAME or the load failed, 2 bad usage.\n";

// The board a user would mean by \p name: the project's view first (board,
// board part and wildcard names), then the catalog's legacy names.
HBOBoard *resolve(HBOBoardCDataManager &manager, HBOBoardCReposMgr &global,
                  const std::string &name) {
  bool usedLegacyMap = false;
  if (HBOBoard *board = manager.getBoard(name, usedLegacyMap, true))
    return board;
  return global.getInfoForBoard(name);
}

void printFamily(HBOPartCReposMgr &repo, const HBOBoard &board) {
  std::vector<HBOBoard *> latest;
  repo.getAllLatestBoardParts(latest);
  const HBOBoard *newest = nullptr;
  for (const HBOBoard *candidate : latest) {
    if (candidate && candidate->getVendor() == board.getVendor() &&
        candidate->getLibrary() == board.getLibrary() &&
        candidate->getBoardName() == board.getBoardName()) {
      newest = candidate;
      break;
    }
  }
  std::cout << "Latest version: ";
  if (!newest)
    std::cout << "unknown\n";
  else
    std::cout << newest->getVersion() << " (" << newest->getName() << ")"
              << (newest == &board ? ", this board" : "") << "\n";
}

void printHidden(HBOBoardCReposMgr &global, const HBOBoard &board) {
  const HBOBoardCReposMgr::BoardMap &installed = global.getStaticBoardPartMap();
  auto it = installed.find(HBOCommon::toLowerCopy(board.getName()));
  if (board.isUserDefined() && it != installed.end() && it->second && it->second != &board)
    std::cout << "Hidden by a user board: yes, the user board from " << board.getRepository()
              << " hides the installed " << it->second->getBoardFile() << "\n";
  else
    std::cout << "Hidden by a user board: no\n";
}

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  std::string name;
  if (!load.take(args, error) || !args.oneOperand("board name", name, error))
    return usageError(showCommand, error);

  load.apply();

  int status = Success;
  MessageOutput output(args.jsonMessages());
  LoadedCatalog catalog(showCommand, false);
  if (!catalog.ok())
    return Failure;
  HBOBoardCDataManager *manager = &catalog.manager();
  HBOBoardCReposMgr *global = &catalog.global();

  if (HBOBoard *board = name.empty() ? nullptr : resolve(*manager, *global, name)) {
    board->display(0);
    std::cout << "Display name: " << board->getDisplayName() << "\n";
    printFamily(*manager->getBoardPartReposMgr(), *board);
    printHidden(*global, *board);
    std::cout.flush();
  } else {
    std::cerr << "boardtool show: no board matches '" << name
              << "'; 'boardtool catalog' lists the boards\n";
    status = Failure;
  }
  return status;
}

} // namespace

const Command showCommand = {
    "show",
    cmd::show,
    "find one board by any of its names and print it",
    "NAME",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
