// What a design project works with: its view of the board repositories and
// its current board, the board strategy. One per project.
#ifndef BOARDLIB_HBOBOARDCDATAMANAGER_H
#define BOARDLIB_HBOBOARDCDATAMANAGER_H

#include "HSTVector.h"

#include <string>
#include <vector>

class HBOBoard;
class HBOBusIf;
class HBOModelPort;
class HBOPartCReposMgr;

class HBOBoardCDataManager {
public:
  HBOBoardCDataManager();
  ~HBOBoardCDataManager();
  HBOBoardCDataManager(const HBOBoardCDataManager &) = delete;
  HBOBoardCDataManager &operator=(const HBOBoardCDataManager &) = delete;

  HBOPartCReposMgr *getBoardPartReposMgr() const { return m_partRepo; }
  void getBoardPartRepoPaths(HSTVector<std::string> &out) const;
  /// Takes new project repository paths and reloads; false when they equal
  /// the current ones. \p changed is set when the current board object was
  /// replaced, and left alone otherwise.
  bool setBoardPartRepoPaths(const HSTVector<std::string> &paths, bool &changed);

  /// A board by any of its names; with \p tryLegacyMap also through the
  /// legacy board names, which sets \p usedLegacyMap.
  HBOBoard *getBoard(const std::string &name, bool &usedLegacyMap, bool tryLegacyMap);
  bool registerUserBoard(HBOBoard *board);
  bool unregisterUserBoard(const std::string &name);

  /// Makes \p board current, or unsets the current board for null.
  int setBoard(HBOBoard *board);
  /// Selects the board named \p name and applies \p part to it. False when
  /// nothing changed; an unknown name throws HEXError unless \p warnOnly.
  bool setBoard(const std::string &name, const std::string &part, bool warnOnly, bool tryLegacyMap);
  /// As setBoardStrategyForced, but a board of the current name is kept.
  bool setBoardStrategy(HBOBoard *board);
  bool setBoardStrategyForced(HBOBoard *board);
  bool unsetBoardStrategy();
  HBOBoard *getBoardStrategy() const { return m_board; }
  bool isBoardStrategySet() const { return m_board != nullptr; }

  bool getBusIfByName(HBOBusIf *&out, const std::string &name) const;
  bool getModelPortByName(HBOModelPort *&out, const std::string &name) const;
  bool getModelPortSeq(std::vector<HBOModelPort *> &out) const;

  /// Warns when \p board comes from a user repository and hides an
  /// installed board of the same name.
  void WarnIfNotLatestBoard(HBOBoard *board);
  /// Sources the board commands' script extension, once.
  bool loadBoardTcl();

private:
  HBOBoard *m_board = nullptr;
  bool m_tclLoaded = false;
  HBOPartCReposMgr *m_partRepo = nullptr;
};

#endif
