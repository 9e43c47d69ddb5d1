// A project's view of the boards: the process-wide catalog merged with the
// project's own repositories and with boards registered while it runs. The
// project's boards win over the global ones of the same key.
#ifndef BOARDLIB_HBOPARTCREPOSMGR_H
#define BOARDLIB_HBOPARTCREPOSMGR_H

#include <map>
#include <set>
#include <string>
#include <vector>

class HBOBoard;
class HBOBoardCReposMgr;

class HBOPartCReposMgr {
public:
  /// Takes a reference on the global repository and builds the maps.
  HBOPartCReposMgr();
  /// Deletes the project's own boards and gives the global reference back.
  ~HBOPartCReposMgr();
  HBOPartCReposMgr(const HBOPartCReposMgr &) = delete;
  HBOPartCReposMgr &operator=(const HBOPartCReposMgr &) = delete;

  /// A board by board name or board part name, in any case; "v:b:*" gives
  /// the latest version of a board without a library. Null when unknown.
  HBOBoard *getInfoForBoardPart(const std::string &name);
  /// For "vendor:board:*", the latest version of that board; false otherwise.
  bool getLatestVersionForBoard(const std::string &name, std::string &version);
  /// The board part name for a legacy board name, or an empty string.
  std::string getBoardPartNameForBoard(const std::string &name);

  /// Appends every board visible to the project, in key order.
  void getAllBoardParts(std::vector<HBOBoard *> &out) const;
  /// Appends the latest version of each family, in family order.
  void getAllLatestBoardParts(std::vector<HBOBoard *> &out) const;

  void getUserRepositoryPaths(std::vector<std::string> &out) const;
  /// Replaces the project's paths, dropping empty ones, and reloads.
  bool setUserRepositoryPaths(const std::vector<std::string> &paths);
  /// Takes the project's paths from the repository parameters.
  void addUserRepoFromParam();
  /// Reloads the project's own boards and rebuilds every map.
  void refreshBoardParts();

  /// Enters a board made at run time; the map owns it from then on. A name
  /// already present keeps its first board. Always true.
  bool registerUserBoard(HBOBoard *board);
  /// Deletes the registered board of that exact name, if any. Always true.
  bool unregisterUserBoard(const std::string &name);
  /// Whether vendor:library:board:version names an installed board that a
  /// user board hides.
  bool hasCorrBoardInInstall(const std::string &name) const;

  /// Forgets a board about to be deleted elsewhere, in the most recently
  /// built instance, so that its maps keep no dangling pointer.
  static void clearBoard(HBOBoard *board);
  /// Removes the first entry holding \p board from the maps; no delete.
  void clearBoardFromMaps(HBOBoard *board);
  /// Rebuilds the connector compatibility caches when they are stale.
  void rebuildConnectorsCompatibilityCache();

private:
  void resetBoards_();
  void parseUserBoardPartRepos();
  void findBoardPartFiles(const std::string &dir);
  HBOBoard *addBoardPart(const std::string &file);
  void populateBoardPartList();
  void populateFamilyBoardPartMap();
  void populateLatestVerBoardPartMap();
  /// Rebuilds the caches of the installation's boards against its own list.
  void rebuildCachesOfInstallation_();

  std::map<std::string, HBOBoard *> m_part_map;
  std::map<std::string, HBOBoard *> m_user_part_map;
  std::map<std::string, HBOBoard *> m_latest_part_map;
  std::map<std::string, std::vector<HBOBoard *>> m_family_part_map;
  std::set<std::string> m_static_replaced_set;
  std::vector<std::string> m_userRepoPaths;
  HBOBoardCReposMgr *m_globalRepo = nullptr;
  std::string m_currentRepository;
  bool m_connectorsCacheDirty = true;

  static HBOPartCReposMgr *mp_partmgr;
};

#endif
