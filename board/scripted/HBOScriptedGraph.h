// How the scripted objects hang together, for -of_objects: each object's
// children of every class (board to components, component to interfaces,
// ...) and its owners back up to the board.
#ifndef BOARDLIB_HBOSCRIPTEDGRAPH_H
#define BOARDLIB_HBOSCRIPTEDGRAPH_H

#include "TclAny.h"

#include <typeinfo>
#include <vector>

class HBOBoard;

class HBOScriptedGraph {
public:
  using tclany = zeb::tcltasks::tclany;

  /// Appends to \p out the objects of pointer type \p want that belong to
  /// \p from (down the graph) or that \p from belongs to (up the graph), in
  /// the graph's order. \p boards are the boards an object without an owner
  /// link (a parameter) is looked for in. False when no object of class
  /// \p want can ever be related to one of the class of \p from.
  static bool related(const tclany &from, const std::type_info &want,
                      const std::vector<HBOBoard *> &boards, std::vector<tclany> &out);
  /// The direct children of \p object, of every class.
  static void children(const tclany &object, std::vector<tclany> &out);
  /// The direct owners of \p object (a pin has its component and its port).
  static void owners(const tclany &object, const std::vector<HBOBoard *> &boards,
                     std::vector<tclany> &out);
};

#endif
