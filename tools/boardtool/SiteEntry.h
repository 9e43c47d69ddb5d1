// One board of the catalog site, as both kinds of page see it: its page and
// how it stands to the boards it hides or is hidden by.
#ifndef BOARDLIB_TOOLS_SITEENTRY_H
#define BOARDLIB_TOOLS_SITEENTRY_H

#include <string>
#include <vector>

class HBOBoard;

namespace boardtool {

/// A connector of a reference board that a connector of this board fits.
struct SiteFit {
  const HBOBoard *base = nullptr;
  std::string baseConnector;
  /// This board's connector.
  std::string connector;
  /// "declared", "fits fully" or "fits in part".
  const char *how = "";
};

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
  /// For a daughter board: the reference boards' connectors it fits, so
  /// that its page links back to them.
  std::vector<SiteFit> fits;
};

} // namespace boardtool

#endif
