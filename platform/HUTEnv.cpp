#include "HUTEnv.h"
#include "HUTFile.h"

#include <cstdlib>
#include <dlfcn.h>

#ifndef BOARDLIB_DATA_DIR
#error "BOARDLIB_DATA_DIR must be defined by the build"
#endif
#ifndef BOARDLIB_APP_ROOT
#error "BOARDLIB_APP_ROOT must be defined by the build"
#endif
#ifndef BOARDLIB_SHARE_FROM_LIB
#error "BOARDLIB_SHARE_FROM_LIB must be defined by the build"
#endif

namespace {

// The installed share folder (PREFIX/share/boardlib), found from where this
// library was loaded, so that an installed tree works wherever it was
// copied; empty when the library runs from its build tree.
const std::string &installedShareDir() {
  static const std::string dir = [] {
    Dl_info info;
    if (!::dladdr(reinterpret_cast<void *>(&installedShareDir), &info) || !info.dli_fname)
      return std::string();
    std::string library(info.dli_fname);
    std::string::size_type slash = library.rfind('/');
    if (slash == std::string::npos)
      return std::string();
    std::string share = library.substr(0, slash + 1) + BOARDLIB_SHARE_FROM_LIB;
    return HUTFile::isDirectory(share + "/data/boards") ? share : std::string();
  }();
  return dir;
}

} // namespace

std::vector<std::string> HUTEnv::getZRTDataDirList() {
  std::vector<std::string> dirs;
  const char *env = std::getenv("BOARDLIB_DATA_DIRS");
  if (env && *env) {
    std::string list(env);
    std::string::size_type pos = 0;
    while (pos <= list.size()) {
      std::string::size_type colon = list.find(':', pos);
      if (colon == std::string::npos)
        colon = list.size();
      if (colon > pos)
        dirs.push_back(list.substr(pos, colon - pos));
      pos = colon + 1;
    }
    // A value of nothing but colons names no directory; the built-in one
    // is better than none.
    if (!dirs.empty())
      return dirs;
  }
  const std::string &share = installedShareDir();
  dirs.push_back(share.empty() ? std::string(BOARDLIB_DATA_DIR) : share + "/data");
  return dirs;
}

std::string HUTEnv::getZRTAppRoot() {
  if (const char *env = std::getenv("BOARDLIB_APP_ROOT"))
    return env;
  const std::string &share = installedShareDir();
  return share.empty() ? std::string(BOARDLIB_APP_ROOT) : share;
}
