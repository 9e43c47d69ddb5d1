// What a design project works with: its view of the board repositories and
// its current board, the board strategy. One per project.
#ifndef BOARDLIB_HBOBOARDCDATAMANAGER_H
#define BOARDLIB_HBOBOARDCDATAMANAGER_H

#include "HSTVector.h"

#include <string>
#include <utility>
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

  // ---- integrated boards (board/integrated/HBOBoardCDataManagerComposition.cpp) ----

  /// (base connector, daughter part text "vendor:board:connector:version").
  using ConnectionPairs = std::vector<std::pair<std::string, std::string>>;
  /// Composes an integrated board on the base board named \p basePartName
  /// (any name getBoard takes). The caller owns the result. Every error is
  /// an HEXError raised before anything is built.
  HBOBoard *createIntegratdBoard(const std::string &basePartName,
                                 const ConnectionPairs &connections, const std::string &boardName);
  HBOBoard *createIntegratdBoard(const HBOBoard *base, const ConnectionPairs &connections,
                                 const std::string &boardName);
  /// The base board name followed by "_connector_daughterboard_daughterconnector"
  /// per connection: the same base and connections give the same name.
  static std::string createUniqBoardNameForIntegratedBoard(const std::string &baseBoardName,
                                                           const ConnectionPairs &connections);
  /// The pairs an integrated board was composed of, in the form
  /// createIntegratdBoard takes, so that it can be composed again after its
  /// daughter boards went away.
  static ConnectionPairs getIntegratedBoardConnectionPairs(const HBOBoard &board);
  /// Enters \p board, an integrated board made by createIntegratdBoard, as a
  /// user board of the project. An integrated board registered before under
  /// the same name is replaced (and if it was current, \p board becomes
  /// current). Null, with \p board deleted, when another kind of user board
  /// holds the name.
  HBOBoard *registerIntegratedBoard(HBOBoard *board);

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
