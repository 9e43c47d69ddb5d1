// boardtool catalog: loads the installation and the user repositories as a
// project does, and lists every board of the merged catalog.
#include "Commands.h"
#include "HBOBoard.h"
#include "HBOBoardCDataManager.h"
#include "HBOBoardCReposMgr.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOCommon.h"
#include "HBOPartCReposMgr.h"
#include "HPAParamMgr.h"
#include "HUTFile.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace boardtool {

bool LoadOptions::take(const Arguments &args, std::string &error) {
  for (const std::string &dir : args.values("--data-dir"))
    dataDirs.push_back(absolutePath(dir));
  for (const std::string &repo : args.values("--repo"))
    repos.push_back(absolutePath(repo));
  if (args.has("--jobs")) {
    const std::string value = args.value("--jobs");
    char *end = nullptr;
    long n = std::strtol(value.c_str(), &end, 10);
    if (*end != '\0' || n < 1 || n > 1024) {
      error = "--jobs takes a number of workers from 1 to 1024, not '" + value + "'";
      return false;
    }
    jobs = static_cast<int>(n);
  }
  return true;
}

namespace {
void drawLoadProgress(std::size_t done, std::size_t total) {
  drawProgress("Loading boards", done, total);
}
} // namespace

LoadedCatalog::LoadedCatalog(const Command &command, bool progress) {
  // On a terminal a bar shows the files done of the files found, and goes
  // away when the load is done; never when standard error is a file.
  const bool bar = progress && isatty(2);
  if (bar) {
    std::cerr << "Loading boards..." << std::flush;
    HBOBoardCReposMgr::setLoadProgress(drawLoadProgress);
  }
  try {
    m_manager.reset(new HBOBoardCDataManager());
    m_global = HBOBoardCReposMgr::getGlobal();
  } catch (const std::exception &e) {
    m_global = nullptr;
    if (bar)
      std::cerr << "\r\033[K" << std::flush;
    std::cerr << "boardtool " << command.name << ": the load failed: " << e.what() << "\n";
  }
  if (bar) {
    HBOBoardCReposMgr::setLoadProgress(nullptr);
    if (m_global)
      std::cerr << "\r\033[K" << std::flush;
  }
}

LoadedCatalog::~LoadedCatalog() {
#ifdef BOARDTOOL_FREE_AT_EXIT
  m_manager.reset();
  if (m_global)
    HBOBoardCReposMgr::release();
#else
  // The command ends the process. Freeing a large catalog object by object
  // takes longer than its load's XML parse, while the kernel takes the whole
  // address space back at once; the builds that check for leaks free it.
  (void)m_manager.release();
#endif
}

namespace {
// A data directory that cannot be one is most likely a typing mistake or the
// wrong level of a tree: say so, with the layout the load looks for.
void warnAboutDataDir(const std::string &dir) {
  if (!HUTFile::isDirectory(dir)) {
    std::cerr << "boardtool: warning: data directory '" << dir << "' does not exist\n";
  } else if (!HUTFile::isDirectory(dir + "/boards/board_files") &&
             !HUTFile::isDirectory(dir + "/boards/board_parts")) {
    std::cerr
        << "boardtool: warning: data directory '" << dir
        << "' holds no board files: a data directory keeps them as"
           " boards/board_files/VENDOR/BOARD/VERSION/board.xml (or under boards/board_parts)\n";
  }
}
} // namespace

void LoadOptions::apply() const {
  for (const std::string &dir : dataDirs)
    warnAboutDataDir(dir);
  if (!dataDirs.empty()) {
    std::string list;
    for (const std::string &dir : dataDirs)
      list += (list.empty() ? "" : ":") + dir;
    // The repository reads the data directories from the environment when it
    // is first built, so this must come before anything asks for it.
    setenv("BOARDLIB_DATA_DIRS", list.c_str(), 1);
  }
  HPAParamMgr &params = HPAParamMgr::getParamMgr();
  if (!repos.empty())
    params.setValue("board.repoPaths", HBOBoardUtils::asTclSpaceSeparatedStr(repos));
  if (jobs > 0)
    params.setValue("general.maxThreads", std::to_string(jobs));
}

namespace {

const char kAbout[] =
    "Loads the installed boards (the embedded data directory, or each --data-dir in\n"
    "order) and the boards of the user repositories, and lists the merged catalog: name,\n"
    "display name, FPGA part, schema version, number of components and interfaces,\n"
    "whether the board comes from a user repository or the installation, and which\n"
    "installed board a user board hides. A legacy board part (schema 1.0 or 1.1) is\n"
    "listed as the load lifts it, with schema 2.0; --json also tells the schema it came\n"
    "from (migrated_from_schema, null for the others). Messages of the load go to\n"
    "standard error.\n";

const char kNotes[] = "Exit status: 0 listed, 1 the load failed, 2 bad usage.\n";

struct Row {
  const HBOBoard *board = nullptr;
  std::string part;
  std::size_t components = 0;
  std::size_t interfaces = 0;
  std::string hides; // the board file of the installed board hidden, if any
};

Row describe(const HBOBoard *board, const HBOBoardCReposMgr::BoardMap &installed) {
  Row row;
  row.board = board;
  if (const HBOBoardComponent *fpga = board->getActivePart())
    row.part = fpga->getPartName();
  for (const auto &entry : board->getBoardComponents()) {
    if (!entry.second)
      continue;
    ++row.components;
    std::vector<HBOBusIf *> interfaces;
    entry.second->getInterfacesVec(interfaces);
    row.interfaces += interfaces.size();
  }
  if (board->isUserDefined()) {
    auto it = installed.find(HBOCommon::toLowerCopy(board->getName()));
    if (it != installed.end() && it->second && it->second != board)
      row.hides = it->second->getBoardFile();
  }
  return row;
}

void printTable(const std::vector<Row> &rows) {
  std::vector<std::vector<std::string>> cells;
  cells.push_back(
      {"NAME", "DISPLAY NAME", "FPGA PART", "SCHEMA", "COMPS", "INTFS", "SOURCE", "HIDES"});
  for (const Row &row : rows) {
    const HBOBoard *b = row.board;
    cells.push_back({b->getName(), b->getDisplayName(), row.part.empty() ? "-" : row.part,
                     b->getBoardSchemaVersion(), std::to_string(row.components),
                     std::to_string(row.interfaces), b->isUserDefined() ? "user" : "installed",
                     row.hides});
  }
  std::vector<std::size_t> widths(cells.front().size(), 0);
  for (const auto &line : cells)
    for (std::size_t c = 0; c < line.size(); ++c)
      widths[c] = std::max(widths[c], line[c].size());
  for (const auto &line : cells) {
    std::string text;
    for (std::size_t c = 0; c < line.size(); ++c) {
      text += line[c];
      if (c + 1 < line.size())
        text += std::string(widths[c] - line[c].size() + 2, ' ');
    }
    // The last column is often empty; no trailing blanks.
    text.erase(text.find_last_not_of(' ') + 1);
    std::cout << text << "\n";
  }
  std::cout << rows.size() << (rows.size() == 1 ? " board" : " boards") << "\n";
}

void printJson(const std::vector<Row> &rows) {
  std::cout << "[";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Row &row = rows[i];
    const HBOBoard *b = row.board;
    std::cout << (i ? ",\n " : "\n ") << "{\"name\": " << jsonString(b->getName())
              << ", \"board_name\": " << jsonString(b->getBoardName())
              << ", \"display_name\": " << jsonString(b->getDisplayName())
              << ", \"file_version\": " << jsonString(b->getVersion())
              << ", \"vendor_name\": " << jsonString(b->getVendor())
              << ", \"file_name\": " << jsonString(b->getBoardFile())
              << ", \"repository\": " << jsonString(b->getRepository())
              << ", \"schema_version\": " << jsonString(b->getBoardSchemaVersion())
              << ", \"migrated_from_schema\": "
              << (b->getMigratedFromSchema().empty() ? std::string("null")
                                                     : jsonString(b->getMigratedFromSchema()))
              << ", \"user_defined\": " << (b->isUserDefined() ? "true" : "false")
              << ", \"part_name\": " << jsonString(row.part)
              << ", \"components\": " << row.components << ", \"interfaces\": " << row.interfaces
              << ", \"hides\": "
              << (row.hides.empty() ? std::string("null") : jsonString(row.hides)) << "}";
  }
  std::cout << (rows.empty() ? "]\n" : "\n]\n");
}

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  if (!load.take(args, error))
    return usageError(catalogCommand, error);
  if (!args.operands.empty())
    return usageError(catalogCommand, "unexpected argument '" + args.operands.front() + "'");
  load.apply();

  std::vector<Row> rows;
  {
    MessageOutput output(args.jsonMessages());
    LoadedCatalog catalog(catalogCommand, !args.jsonMessages());
    if (!catalog.ok())
      return Failure;
    HBOBoardCReposMgr *global = &catalog.global();

    std::vector<HBOBoard *> boards;
    catalog.manager().getBoardPartReposMgr()->getAllBoardParts(boards);
    for (const HBOBoard *board : boards)
      if (board)
        rows.push_back(describe(board, global->getStaticBoardPartMap()));
    if (args.has("--json"))
      printJson(rows);
    else
      printTable(rows);
    std::cout.flush();
  }
  return Success;
}

} // namespace

const Command catalogCommand = {
    "catalog",
    cmd::catalog,
    "load the installation and the user repositories, and list every board",
    "",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
