// The file names of the catalog site's board pages, made from the board
// names. A board name comes from a board file, so it may hold anything: the
// file name keeps letters, digits, '-', '_' and single dots, replaces the
// rest, and is unique among the pages even where two names differ only in
// what was replaced or in case (file systems that ignore case).
#ifndef BOARDLIB_TOOLS_SITEPAGENAMES_H
#define BOARDLIB_TOOLS_SITEPAGENAMES_H

#include <map>
#include <set>
#include <string>

class HBOBoard;

namespace boardtool {

class SitePageNames {
public:
  /// Gives \p board a page named after \p name ("NAME.html", no folder) and
  /// returns it; a board already named keeps its page.
  const std::string &assign(const HBOBoard *board, const std::string &name);
  /// The page of \p board, or an empty text when it has none.
  std::string pageOf(const HBOBoard *board) const;
  std::size_t size() const { return m_pages.size(); }

  /// The safe stem of \p name before it is made unique.
  static std::string stem(const std::string &name);

private:
  std::map<const HBOBoard *, std::string> m_pages;
  std::set<std::string> m_taken; // in lower case
};

} // namespace boardtool

#endif
