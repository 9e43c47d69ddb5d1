// boardtool site: writes the loaded catalog as a static HTML site, an index
// of every board and a page per board, that a browser shows offline from the
// files alone.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardComponent.h"
#include "HBOBoardDiagram.h"
#include "HBOCommon.h"
#include "HBOPartCReposMgr.h"
#include "SiteAssets.h"
#include "SiteBoardPage.h"
#include "SiteIndexPage.h"
#include "SiteOutput.h"
#include "SitePageNames.h"

#include <iostream>
#include <map>
#include <unistd.h>

namespace boardtool {
namespace {

const char kAbout[] =
    "Writes the catalog that 'boardtool catalog' lists as a static HTML site into\n"
    "OUTDIR (made if missing): index.html, a list of every board that a search box\n"
    "filters (over name, vendor, display name, FPGA part and description) and whose\n"
    "column headings sort it, and a page per board under boards/ with its block\n"
    "diagram, components, interfaces with their ports and pins, connectors with the\n"
    "daughter boards that fit them, jumpers, power rails, operating conditions and\n"
    "presets. A user board's page links to the installed board it hides, which gets\n"
    "a page too. The site needs no network: its style sheet and script are written\n"
    "beside the pages, and a browser opens index.html from the files. Each file is\n"
    "written whole and then put in place. On a terminal a progress line on standard\n"
    "error shows the load and the writing.\n";

const char kNotes[] = "Exit status: 0 written, 1 the load failed or a file could not be\n"
                      "written, 2 bad usage.\n";

// The catalog's boards in its order, each user board that hides an
// installed one followed by that board.
std::vector<SiteEntry> entriesOf(LoadedCatalog &catalog) {
  std::vector<HBOBoard *> boards;
  catalog.manager().getBoardPartReposMgr()->getAllBoardParts(boards);
  const HBOBoardCReposMgr::BoardMap &installed = catalog.global().getStaticBoardPartMap();
  std::vector<SiteEntry> entries;
  for (const HBOBoard *board : boards) {
    if (!board)
      continue;
    SiteEntry entry;
    entry.board = board;
    const HBOBoard *hidden = nullptr;
    if (board->isUserDefined()) {
      auto it = installed.find(HBOCommon::toLowerCopy(board->getName()));
      if (it != installed.end() && it->second && it->second != board)
        hidden = it->second;
    }
    entry.hides = hidden;
    entries.push_back(entry);
    if (hidden) {
      SiteEntry shadow;
      shadow.board = hidden;
      shadow.hiddenBy = board;
      entries.push_back(shadow);
    }
  }
  return entries;
}

// The catalog keeps, for each reference board, the daughter connectors
// that fit its own; the daughter boards' pages list the same the other way.
void addFits(std::vector<SiteEntry> &entries) {
  std::map<const HBOBoard *, SiteEntry *> byBoard;
  for (SiteEntry &entry : entries)
    byBoard.emplace(entry.board, &entry);
  for (const SiteEntry &entry : entries) {
    const HBOBoard &base = *entry.board;
    if (entry.hiddenBy || !base.isReferenceBoard())
      continue;
    HSTVector<HBOBoardComponent *> connectors;
    base.getConnectorsList(connectors);
    const std::pair<const char *, const HBOBoard::ConnectorCache *> groups[] = {
        {"declared", &base.getExplicitlyCompatibleConnectors()},
        {"fits fully", &base.getFullyCompatibleConnectors()},
        {"fits in part", &base.getPartiallyCompatibleConnectors()}};
    for (const HBOBoardComponent *connector : connectors) {
      if (!connector)
        continue;
      for (const auto &group : groups) {
        auto it = group.second->find(connector->getName());
        if (it == group.second->end())
          continue;
        for (const HBOBoardComponent *daughter : it->second) {
          auto owner = byBoard.find(daughter ? daughter->getBoard() : nullptr);
          if (owner == byBoard.end() || owner->second == &entry)
            continue;
          owner->second->fits.push_back(
              {&base, connector->getComponentName(), daughter->getComponentName(), group.first});
        }
      }
    }
  }
}

std::string diagramOf(const HBOBoard &board) {
  try {
    return HBOBoardDiagram::toSvg(board, HBODiagramOptions());
  } catch (const std::exception &e) {
    std::cerr << "boardtool site: no diagram of " << board.getName() << ": " << e.what() << "\n";
    return "";
  }
}

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  std::string outdir;
  if (!load.take(args, error) || !args.oneOperand("output folder", outdir, error))
    return usageError(siteCommand, error);
  outdir = absolutePath(outdir);
  load.apply();

  MessageOutput output(args.jsonMessages());
  LoadedCatalog catalog(siteCommand, !args.jsonMessages());
  if (!catalog.ok())
    return Failure;

  std::vector<SiteEntry> entries = entriesOf(catalog);
  addFits(entries);
  SitePageNames pages;
  for (SiteEntry &entry : entries)
    entry.page = pages.assign(entry.board, entry.board->getName());

  const SiteOutput site(outdir);
  if (!site.makeFolder("") || !site.makeFolder("boards") || !site.write("site.css", kSiteCss) ||
      !site.write("site.js", kSiteJs))
    return Failure;

  const bool bar = !args.jsonMessages() && isatty(2);
  bool ok = true;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const SiteEntry &entry = entries[i];
    if (bar)
      drawProgress("Writing pages", i, entries.size());
    ok = site.write("boards/" + entry.page,
                    SiteBoardPage::render(entry, pages, diagramOf(*entry.board))) &&
         ok;
  }
  // The index last, so that its links lead to pages that are there.
  ok = site.write("index.html", SiteIndexPage::render(entries)) && ok;
  if (bar)
    std::cerr << "\r\033[K" << std::flush;
  if (!ok)
    return Failure;
  std::cout << "Wrote " << entries.size() << (entries.size() == 1 ? " board page" : " board pages")
            << " and the index: " << site.path("index.html") << "\n";
  return Success;
}

} // namespace

const Command siteCommand = {
    "site",
    cmd::site,
    "write the catalog as a static HTML site that works offline",
    "OUTDIR",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
