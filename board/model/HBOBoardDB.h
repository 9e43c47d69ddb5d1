// The hook through which a board is saved. The library holds no
// implementation: the embedding application attaches one to a board.
#ifndef BOARDLIB_HBOBOARDDB_H
#define BOARDLIB_HBOBOARDDB_H

class HBOBoard;

class HBOBoardDB {
public:
  virtual ~HBOBoardDB() = default;

  /// Saves \p board through the implementation.
  void saveBoard(HBOBoard *board) { save(board); }

protected:
  virtual void save(HBOBoard *board) = 0;
};

#endif
