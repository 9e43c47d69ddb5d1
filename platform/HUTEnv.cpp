#include "HUTEnv.h"

#include <cstdlib>

#ifndef BOARDLIB_DATA_DIR
#error "BOARDLIB_DATA_DIR must be defined by the build"
#endif
#ifndef BOARDLIB_APP_ROOT
#error "BOARDLIB_APP_ROOT must be defined by the build"
#endif

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
  dirs.emplace_back(BOARDLIB_DATA_DIR);
  return dirs;
}

std::string HUTEnv::getZRTAppRoot() {
  if (const char *env = std::getenv("BOARDLIB_APP_ROOT"))
    return env;
  return BOARDLIB_APP_ROOT;
}
