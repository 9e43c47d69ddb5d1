// The catalog site's index: every board in one table that the search box
// filters and the column headings sort.
#ifndef BOARDLIB_TOOLS_SITEINDEXPAGE_H
#define BOARDLIB_TOOLS_SITEINDEXPAGE_H

#include "SiteEntry.h"

#include <string>
#include <vector>

namespace boardtool {

class SiteIndexPage {
public:
  /// The page, linking each board to "boards/PAGE".
  static std::string render(const std::vector<SiteEntry> &entries);
  /// "reference", "daughter" or "integrated": what a board is for.
  static std::string kindOf(const HBOBoard &board);
};

} // namespace boardtool

#endif
