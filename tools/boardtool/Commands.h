// The commands of boardtool, one per source file.
#ifndef BOARDLIB_TOOLS_COMMANDS_H
#define BOARDLIB_TOOLS_COMMANDS_H

#include "Options.h"

#include <memory>

class HBOBoard;
class HBOBoardCDataManager;
class HBOBoardCReposMgr;

namespace boardtool {
extern const Command readCommand;
extern const Command checkCommand;
extern const Command paramsCommand;
extern const Command catalogCommand;
extern const Command showCommand;
extern const Command dumpCommand;
extern const Command shellCommand;
extern const Command tclCommand;
extern const Command fitCommand;
extern const Command composeCommand;
extern const Command siteCommand;

/// Writes \p board as 'boardtool dump --json' does (\p all: with the hidden
/// properties); a failure is told as "boardtool COMMAND: ...".
int writeDump(const HBOBoard &board, bool all, const char *command);
extern const Command migrateCommand;
extern const Command diagramCommand;

/// Whether a board operand names a file rather than a board of the catalog:
/// it has a "/", ends in ".xml" or is a file in the working directory.
bool looksLikeBoardFile(const std::string &operand);

/// Where the commands that load the catalog load boards from: --data-dir
/// and --repo, and --jobs where the command takes it.
struct LoadOptions {
  std::vector<std::string> dataDirs;
  std::vector<std::string> repos;
  int jobs = 0;

  /// Reads the options above from \p args. False, with \p error set, for a
  /// malformed value.
  bool take(const Arguments &args, std::string &error);
  /// Applies them to the environment and the parameters; must run before
  /// the repository is first built.
  void apply() const;
};

/// The project's view of the catalog, loaded for one command. The command
/// ends the process, so the catalog is left to the process's end instead of
/// being freed, except in the builds that check for leaks.
class LoadedCatalog {
public:
  /// Loads the installation and the user repositories. With \p progress a
  /// bar on a terminal shows the load. A failed load is told as
  /// "boardtool COMMAND: the load failed: ..." and leaves ok() false.
  LoadedCatalog(const Command &command, bool progress);
  ~LoadedCatalog();
  LoadedCatalog(const LoadedCatalog &) = delete;
  LoadedCatalog &operator=(const LoadedCatalog &) = delete;

  bool ok() const { return m_global != nullptr; }
  HBOBoardCDataManager &manager() { return *m_manager; }
  HBOBoardCReposMgr &global() { return *m_global; }

private:
  std::unique_ptr<HBOBoardCDataManager> m_manager;
  HBOBoardCReposMgr *m_global = nullptr;
};
/// The one board of \p catalog that \p name means, as 'boardtool show' finds
/// it: any of its names, else the one board whose name holds \p name or
/// matches it as a glob. Null when there is none or more than one, told as
/// "boardtool COMMAND: ..." with the boards that match or the closest names.
HBOBoard *findOneBoard(const Command &command, LoadedCatalog &catalog, const std::string &name);
} // namespace boardtool

#endif
