// The folder that the catalog site is written into. Each file is written
// whole under a temporary name beside its place and then renamed into it, so
// that a browser or a web server never sees half a page, and a failed write
// leaves the file that stood there.
#ifndef BOARDLIB_TOOLS_SITEOUTPUT_H
#define BOARDLIB_TOOLS_SITEOUTPUT_H

#include <string>

namespace boardtool {

class SiteOutput {
public:
  explicit SiteOutput(std::string dir) : m_dir(std::move(dir)) {}

  /// Makes the folder \p relative below the site's folder ("" for the
  /// folder itself), with its parents. False, with a message that names
  /// it, when it cannot.
  bool makeFolder(const std::string &relative) const;
  /// Writes \p content to the file \p relative. False, with a message that
  /// names the file, when it cannot.
  bool write(const std::string &relative, const std::string &content) const;
  /// The path of \p relative below the site's folder.
  std::string path(const std::string &relative) const;

private:
  std::string m_dir;
};

} // namespace boardtool

#endif
