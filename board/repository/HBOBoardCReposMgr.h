// The process-wide repository of board definitions. It finds every board.xml
// of the installation and of the user's repositories, has each one read into
// an HBOBoard, owns the results, and keeps them in a catalog by name with the
// indexes that the queries need.
//
// Installed ("static") boards are read once, in parallel, and live as long as
// the repository. User boards come from the project and user repository
// paths, are read one after the other, and are thrown away and read again at
// each refresh, so a pointer to a user board is good only until the next
// refresh. A user board hides an installed board of the same key.
//
// All calls but getGlobal are expected on the one thread that serves scripts
// and the user interface, and take no lock.
#ifndef BOARDLIB_HBOBOARDCREPOSMGR_H
#define BOARDLIB_HBOBOARDCREPOSMGR_H

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

class HBOBoard;
class HBOBoardComponent;
class HBOBusIfPreference;
class HBOBoardCReposMgrBazaarEventHandler;

class HBOBoardCReposMgr {
public:
  using BoardMap = std::map<std::string, HBOBoard *>;

  /// The instance, built on first use, plus one reference. A failure of the
  /// build leaves through here and leaves no instance behind.
  static HBOBoardCReposMgr *getGlobal();
  /// Gives one reference back; at zero the instance is deleted.
  static void release();
  /// getGlobal, then getAllBoards. The reference is kept on purpose: whoever
  /// lists the catalog this way expects it to stay.
  static void appendAllBoards(std::vector<HBOBoard *> &out);

  void incrementRefCount();
  /// Stops at zero.
  void decrementRefCount();
  uint32_t getReferenceCount() const;

  // ---- loading ----

  /// Re-reads the user repository parameter and refreshes when it changed.
  void sync();
  /// Throws away and re-reads every user board, between the catalog's pre
  /// and post events. Returns what the post event's listeners added up to.
  int refreshBoards();
  /// Stores the project's repository list (a Tcl list) and refreshes, even
  /// when the list is the same.
  void setProjectRepo(const std::string &paths);
  const std::string &getProjectRepo() const { return m_project_repo; }
  const std::string &getUserRepoPaths() const { return m_user_repo_paths; }

  /// Scans one directory tree, one file after the other, and loads every
  /// file named board.xml in any case.
  void findBoardFiles(const std::string &dir, bool isStatic);
  /// Loads one file into the static or the user map. The board, or null
  /// when it could not be read or its key was taken.
  HBOBoard *addBoardPart(const std::string &file, bool isStatic);
  /// Scans the project and user paths and rebuilds the merged catalog.
  bool populateBoardPartList();
  /// Loads the installation, each directory's files in parallel.
  bool populateStaticBoardPartList();
  /// Deletes the user boards and empties the catalog and its indexes.
  void resetBoards_();
  /// Deletes the installed boards and the interface preferences.
  void resetStaticBoardParts();
  /// The installation's directories to load, in load order.
  static std::vector<std::string> getStaticBoardDirs();
  /// The worker count of a parallel step such as the load: the parameter
  /// general.maxThreads, at least one, and no more than the machine runs
  /// at once.
  static int getWorkerCount();

  /// Called as the files of an installation directory load: files done and
  /// files found in that directory. It runs on the load's worker threads, so
  /// it must be thread-safe. Set it before the first getGlobal; null for none.
  using LoadProgress = std::function<void(std::size_t done, std::size_t total)>;
  static void setLoadProgress(LoadProgress progress);

  /// Rebuilds the boards' connector compatibility caches when stale.
  void rebuildConnectorsCompatibilityCache();
  bool isConnectorsCacheDirty() const { return m_connectors_cache_dirty; }

  // ---- indexes ----

  /// Reads the installation's board_interface_preferences.xml; false when
  /// there is none.
  bool parseInterfacePreferenceFile();
  /// Gives each interface of \p board that has no preference of its own the
  /// installation's preference for its type and mode. False for null.
  bool populatePreferenceData(HBOBoard *board);
  bool populateFamousNameMap();
  bool populateBoardToBoardPartMap();
  /// The latest version of each family vendor:library:name.
  bool populateLatestVerBoardMap();
  /// Keeps one board per family, the latest version, and replaces \p parts
  /// by the active part of each, in family order.
  static bool filterLatestVersionBoardParts(std::vector<HBOBoardComponent *> &parts);
  /// Keeps every board of the latest revision per family, and replaces
  /// \p parts by their active parts.
  static bool filterLatestRevisionBoardParts(std::vector<HBOBoardComponent *> &parts);

  // ---- queries ----

  /// sync, then appends every visible board in key order.
  void getAllBoards(std::vector<HBOBoard *> &out);
  /// sync, then appends the latest board of each family in family order.
  void getAllLatestBoards(std::vector<HBOBoard *> &out);
  /// A board by board name or board part name in any case, or by a legacy
  /// name; null when unknown.
  HBOBoard *getInfoForBoard(const std::string &name);
  HBOBoard *getInfoForBoardByFamousName(const std::string &name);
  /// The board part name for a legacy board name, or an empty string.
  std::string getBoardPartNameForBoard(const std::string &name);
  /// Replaces \p out by the installed boards that user boards hide, each as
  /// vendor:library:name:version.
  void getStaticBoardsReplacedByUser(std::set<std::string> &out) const;

  const BoardMap &getStaticBoardPartMap() const { return m_static_boardpart_map; }
  const BoardMap &getUserBoardPartMap() const { return m_user_boardpart_map; }
  const BoardMap &getBoardPartMap() const { return m_boardpart_map; }
  const BoardMap &getLatestBoardMap() const { return m_latest_board_map; }
  const std::map<std::string, HBOBusIfPreference *> &getInterfacePreferenceMap() const {
    return m_interface_preference_map;
  }

  HBOBoardCReposMgr(const HBOBoardCReposMgr &) = delete;
  HBOBoardCReposMgr &operator=(const HBOBoardCReposMgr &) = delete;

private:
  HBOBoardCReposMgr();
  ~HBOBoardCReposMgr();
  void loadStaticDir_(const std::string &dir);
  void destroy_();

  uint32_t m_refCount = 0;
  BoardMap m_static_boardpart_map; // owns
  BoardMap m_user_boardpart_map;   // owns
  BoardMap m_boardpart_map;        // the merged catalog; owns nothing
  std::set<std::string> m_static_replaced_by_user;
  BoardMap m_latest_board_map; // owns nothing
  std::string m_user_repo_paths;
  std::string m_project_repo;
  std::map<std::string, std::string> m_famous_name_map;
  std::map<std::string, std::string> m_board_to_boardpart_map;
  std::map<std::string, HBOBusIfPreference *> m_interface_preference_map; // owns
  std::string m_current_repository;
  bool m_connectors_cache_dirty = true;
  HBOBoardCReposMgrBazaarEventHandler *m_eventHandler = nullptr; // owns

  static HBOBoardCReposMgr *mp_boardmgr;
  static LoadProgress s_loadProgress;
  static std::mutex s_mutex;
};

#endif
