// The pieces of HTML that every page of the catalog site shares: escaping
// of every text that comes from a board file, and the frame of a page.
#ifndef BOARDLIB_TOOLS_SITEHTML_H
#define BOARDLIB_TOOLS_SITEHTML_H

#include <string>

namespace boardtool {

class SiteHtml {
public:
  /// \p text as HTML text or as the value of a quoted attribute: board
  /// files are user input, so a name such as "<script>" must stay text.
  static std::string escape(const std::string &text);
  /// A link to \p href with \p text; both escaped.
  static std::string link(const std::string &href, const std::string &text);
  /// A link only for a web address (http or https); anything else, such as a
  /// "javascript:" address from a board file, is shown as plain text.
  static std::string externalLink(const std::string &url);
  /// The page up to and including the opening of <main>: \p title in the
  /// tab, \p root the way back to the site's top folder ("" or "../").
  static std::string begin(const std::string &title, const std::string &root);
  /// The rest of the page after the content of <main>.
  static std::string end(const std::string &root);
};

} // namespace boardtool

#endif
