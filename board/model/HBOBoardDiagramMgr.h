// The registry of opened board diagrams: which boards the user has a diagram
// open for, and which of them is current. One per process, reference-counted;
// used on the one thread that serves scripts and the user interface, so it
// takes no lock.
#ifndef BOARDLIB_HBOBOARDDIAGRAMMGR_H
#define BOARDLIB_HBOBOARDDIAGRAMMGR_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class HBOBoard;

class HBOBoardDiagramMgr {
public:
  /// The instance, created on first use; adds a reference.
  static HBOBoardDiagramMgr *getGlobal();
  /// Gives a reference back; at zero the instance is deleted.
  static void release();

  void incrementRefCount();
  /// Stops at zero.
  void decrementRefCount();
  uint32_t getReferenceCount() const;

  /// Enters \p board under HBOBoard::getName(); null or a name already
  /// present is ignored.
  void addToOpenedBoardDiagrams(HBOBoard *board);
  /// Erases \p name; clears the current diagram when it has that name.
  void removeFromOpenedBoardDiagrams(std::string name);
  /// Appends the opened boards in name order.
  void getOpenedBoardDiagrams(std::vector<HBOBoard *> &out) const;

  /// Makes \p board current; null leaves the current diagram as it is.
  void setCurrentBoardDiagram(HBOBoard *board);
  /// Makes the opened board named \p name current; an unknown name is ignored.
  void setCurrentBoardDiagram(std::string name);
  /// The current diagram, or null.
  HBOBoard *getCurrentBoardDiagram() const;

  HBOBoardDiagramMgr(const HBOBoardDiagramMgr &) = delete;
  HBOBoardDiagramMgr &operator=(const HBOBoardDiagramMgr &) = delete;

private:
  HBOBoardDiagramMgr() = default;
  ~HBOBoardDiagramMgr() = default;

  uint32_t m_refCount = 0;
  std::map<std::string, HBOBoard *> m_openedDiagrams; // boards not owned
  HBOBoard *m_currentDiagram = nullptr;               // not owned

  static HBOBoardDiagramMgr *mp_boardDiagramMgr;
};

#endif
