// One board's page of the catalog site: what it is, its diagram, and its
// components, interfaces with their ports and pins, connectors with the
// daughter boards that fit them, jumpers, power rails, operating conditions
// and presets, with links to the pages of the boards it names.
#ifndef BOARDLIB_TOOLS_SITEBOARDPAGE_H
#define BOARDLIB_TOOLS_SITEBOARDPAGE_H

#include "SiteEntry.h"

#include <string>

namespace boardtool {

class SitePageNames;

class SiteBoardPage {
public:
  /// The page of \p entry, for the folder of board pages. \p pages gives
  /// the pages of the boards it links to (a board without a page is named,
  /// not linked); \p svg is the board's diagram as an SVG document.
  static std::string render(const SiteEntry &entry, const SitePageNames &pages,
                            const std::string &svg);
};

} // namespace boardtool

#endif
