// boardtool show: finds one board of the catalog by any of its names and
// prints it, with the latest version of its family.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOCommon.h"
#include "HBOPartCReposMgr.h"
#include "HBOScriptFilter.h"
#include "HSTStringUtils.h"

#include <algorithm>
#include <iostream>
#include <memory>

namespace boardtool {
namespace {

const char kAbout[] =
    "Finds one board and prints it. NAME may be the board name vendor:board:version,\n"
    "the board part name vendor:board:part0:version, a legacy name, or vendor:board:*\n"
    "for the latest version of a board; case does not matter. Any other NAME is a part\n"
    "of a board name (sample_kit) or a glob over board names ('*sample*'), which must\n"
    "match one board: several are listed, and for none the closest names are offered.\n"
    "After the board come the latest version of its family and whether it is a user\n"
    "board that hides an installed one.\n";

const char kNotes[] = "Exit status: 0 shown, 1 no board or several match NAME or the load failed,\n"
                      "2 bad usage.\n";

// The board a user would mean by \p name: the project's view first (board,
// board part and wildcard names), then the catalog's legacy names.
HBOBoard *resolve(HBOBoardCDataManager &manager, HBOBoardCReposMgr &global,
                  const std::string &name) {
  bool usedLegacyMap = false;
  if (HBOBoard *board = manager.getBoard(name, usedLegacyMap, true))
    return board;
  return global.getInfoForBoard(name);
}

// The boards whose names hold \p name, or match it as a glob, ignoring case,
// in name order.
std::vector<HBOBoard *> matching(HBOBoardCReposMgr &global, const std::string &name) {
  const bool glob = name.find_first_of("*?[") != std::string::npos;
  const std::string lower = HSTStringUtils::toLower(name);
  std::vector<HBOBoard *> found;
  for (const auto &entry : global.getBoardPartMap()) {
    HBOBoard *board = entry.second;
    if (!board)
      continue;
    const std::string &full = board->getName();
    if (glob ? HBOScriptFilter::globMatch(name, full, true)
             : HSTStringUtils::toLower(full).find(lower) != std::string::npos)
      found.push_back(board);
  }
  return found;
}

// The boards whose own names (the board part of vendor:board:version) are
// closest to that of a misspelt \p name. Vendors and versions are alike
// across boards, so they are left out of the comparison.
std::vector<std::string> suggestions(HBOBoardCReposMgr &global, const std::string &name) {
  std::vector<std::string> fullNames, boardNames;
  for (const auto &entry : global.getBoardPartMap()) {
    if (!entry.second)
      continue;
    fullNames.push_back(entry.second->getName());
    boardNames.push_back(entry.second->getBoardName());
  }
  std::vector<std::string> fields = HSTStringUtils::split(name, ":", true);
  const std::string boardName = fields.size() >= 2 ? fields[1] : name;
  std::vector<std::string> out;
  for (const std::string &close : HSTStringUtils::closestMatches(boardName, boardNames, 10))
    for (std::size_t i = 0; i < boardNames.size() && out.size() < 5; ++i)
      if (boardNames[i] == close && std::find(out.begin(), out.end(), fullNames[i]) == out.end())
        out.push_back(fullNames[i]);
  return out;
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

  HBOBoard *board = findOneBoard(showCommand, catalog, name);
  if (board) {
    board->display(0);
    std::cout << "Display name: " << board->getDisplayName() << "\n";
    printFamily(*manager->getBoardPartReposMgr(), *board);
    printHidden(*global, *board);
    std::cout.flush();
  } else {
    status = Failure;
  }
  return status;
}

} // namespace

HBOBoard *findOneBoard(const Command &command, LoadedCatalog &catalog, const std::string &name) {
  HBOBoard *board = name.empty() ? nullptr : resolve(catalog.manager(), catalog.global(), name);
  std::vector<HBOBoard *> found;
  if (!board && !name.empty()) {
    found = matching(catalog.global(), name);
    if (found.size() == 1)
      board = found.front();
  }
  if (board)
    return board;
  if (found.size() > 1) {
    std::cerr << "boardtool " << command.name << ": " << found.size() << " boards match '" << name
              << "'; name one of them:\n";
    for (const HBOBoard *candidate : found)
      std::cerr << "  " << candidate->getName() << "\n";
    return nullptr;
  }
  std::cerr << "boardtool " << command.name << ": no board matches '" << name << "'";
  std::vector<std::string> close = suggestions(catalog.global(), name);
  if (!close.empty()) {
    std::cerr << "; the closest names are:\n";
    for (const std::string &candidate : close)
      std::cerr << "  " << candidate << "\n";
  } else {
    std::cerr << "; 'boardtool catalog' lists the boards\n";
  }
  return nullptr;
}

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
