// The block diagram of one board, as a self-contained SVG document: no
// scripts, no external fonts or images, so that it shows the same in any
// browser, offline, and inside an HTML page.
#ifndef BOARDLIB_HBOBOARDDIAGRAM_H
#define BOARDLIB_HBOBOARDDIAGRAM_H

#include "HBODiagramOptions.h"

#include <string>

class HBOBoard;

namespace HBOBoardDiagram {
/// Whether \p options suit \p board: every jumper it sets is one of the
/// board's, set to true or false. Each that is not is told as a message
/// that lists what would do. toSvg leaves such settings out; writeSvg
/// refuses them.
bool checkOptions(const HBOBoard &board, const HBODiagramOptions &options);
/// The diagram of \p board as an SVG document.
std::string toSvg(const HBOBoard &board, const HBODiagramOptions &options = HBODiagramOptions());
/// Writes the diagram of \p board to \p path, replacing it once it is
/// whole. False, with a message that names the path, when it cannot.
bool writeSvg(const HBOBoard &board, const std::string &path,
              const HBODiagramOptions &options = HBODiagramOptions());
} // namespace HBOBoardDiagram

#endif
