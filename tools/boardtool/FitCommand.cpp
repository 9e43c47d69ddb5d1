// boardtool fit: for each connector of a reference board, the daughter
// connectors of the catalog that fit it, as the board's caches hold them.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardComponent.h"

#include <algorithm>
#include <iostream>
#include <string>

namespace boardtool {
namespace {

const char kAbout[] =
    "Lists, for each connector of a reference board (a board with an FPGA), the\n"
    "daughter connectors of the catalog that fit it: 'explicit' ones whose board\n"
    "declares that it fits, 'full' ones all of whose interfaces reach the FPGA through\n"
    "the connector, and 'partial' ones of the same connector family of which some\n"
    "interface does not. A connector that has an explicit list offers only that one\n"
    "to the consoles. BASE is any name 'boardtool show' takes.\n";

const char kNotes[] = "Exit status: 0 listed, 1 BASE is unknown or no reference board, or the\n"
                      "load failed, 2 bad usage.\n";

void printGroup(const char *title, const HBOBoard::ConnectorCache &cache, const std::string &key,
                bool latest) {
  HSTVector<HBOBoardComponent *> list;
  auto it = cache.find(key);
  if (it != cache.end())
    list = it->second;
  if (latest) {
    // The latest list comes in pointer order; keep the catalog's order.
    HSTVector<HBOBoardComponent *> kept;
    HBOBoard::filterLatestConnectors(list, kept);
    HSTVector<HBOBoardComponent *> ordered;
    for (HBOBoardComponent *c : list) {
      if (std::find(kept.begin(), kept.end(), c) != kept.end() &&
          std::find(ordered.begin(), ordered.end(), c) == ordered.end())
        ordered.push_back(c);
    }
    list.swap(ordered);
  }
  std::cout << "  " << title << ":";
  if (list.empty()) {
    std::cout << " none\n";
    return;
  }
  std::cout << "\n";
  for (const HBOBoardComponent *c : list) {
    const HBOBoard *board = c->getBoard();
    std::cout << "    " << c->getName() << " (" << c->getSubType();
    if (board && !board->getDisplayName().empty())
      std::cout << ", " << board->getDisplayName();
    std::cout << ")\n";
  }
}

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  std::string name;
  if (!load.take(args, error) || !args.oneOperand("base board", name, error))
    return usageError(fitCommand, error);

  const bool latest = args.has("--latest");
  load.apply();

  MessageOutput output(args.jsonMessages());
  LoadedCatalog catalog(fitCommand, false);
  if (!catalog.ok())
    return Failure;
  bool usedLegacyMap = false;
  HBOBoard *board = name.empty() ? nullptr : catalog.manager().getBoard(name, usedLegacyMap, true);
  if (!board)
    board = name.empty() ? nullptr : catalog.global().getInfoForBoard(name);
  if (!board) {
    std::cerr << "boardtool fit: no board matches '" << name
              << "'; 'boardtool catalog' lists the boards\n";
    return Failure;
  }
  if (!board->isReferenceBoard()) {
    std::cerr << "boardtool fit: " << board->getName()
              << (board->isIntegratedBoard()
                      ? " is an integrated board; fit takes the reference board it was built on"
                      : " is a daughter board (it has no FPGA); fit takes a reference board")
              << "\n";
    return Failure;
  }

  std::cout << "Board: " << board->getName() << (latest ? " (latest versions only)" : "") << "\n";
  HSTVector<HBOBoardComponent *> connectors;
  board->getConnectorsList(connectors);
  if (connectors.empty())
    std::cout << "No connectors.\n";
  for (const HBOBoardComponent *connector : connectors) {
    const std::string &key = connector->getName();
    std::cout << "Connector " << connector->getComponentName() << " (" << connector->getSubType()
              << ")\n";
    printGroup("explicit", board->getExplicitlyCompatibleConnectors(), key, latest);
    printGroup("full", board->getFullyCompatibleConnectors(), key, latest);
    printGroup("partial", board->getPartiallyCompatibleConnectors(), key, latest);
  }
  std::cout.flush();
  return Success;
}

} // namespace

const Command fitCommand = {
    "fit",
    cmd::fit,
    "list the daughter connectors that fit each connector of a reference board",
    "BASE",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
