// What a block diagram of a board shows beyond the board itself: the jumper
// setting it is drawn for, and whether the daughter boards of the catalog
// that fit its connectors are drawn beside them.
#ifndef BOARDLIB_HBODIAGRAMOPTIONS_H
#define BOARDLIB_HBODIAGRAMOPTIONS_H

#include <string>
#include <utility>
#include <vector>

struct HBODiagramOptions {
  /// (jumper name, value) pairs; a jumper not named keeps its default.
  std::vector<std::pair<std::string, std::string>> jumpers;
  /// Draw, beside each connector, the catalog's daughter boards that fit it.
  bool showFittingBoards = true;
};

#endif
