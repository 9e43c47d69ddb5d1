// One board of the catalog site, as both kinds of page see it: its page and
// how it stands to the boards it hides or is hidden by.
#ifndef BOARDLIB_TOOLS_SITEENTRY_H
#define BOARDLIB_TOOLS_SITEENTRY_H

#include <string>

class HBOBoard;

namespace boardtool {

struct SiteEntry {
  const HBOBoard *board = nullptr;
  /// The file name of its page in the boards folder.
  std::string page;
  /// The installed board that this user board hides, if any.
  const HBOBoard *hides = nullptr;
  /// The user board that hides this installed one, if any: such a board is
  /// not in the catalog that a project sees, but its page is kept so that
  /// the user board can link to it.
  const HBOBoard *hiddenBy = nullptr;
};

} // namespace boardtool

#endif
