// Where the installation lives: the data directories that hold the shipped
// boards and schemas, and the application root that holds the scripts.
#ifndef BOARDLIB_PLATFORM_HUTENV_H
#define BOARDLIB_PLATFORM_HUTENV_H

#include <string>
#include <vector>

namespace HUTEnv {
/// The data directories in search order: BOARDLIB_DATA_DIRS (colon-separated,
/// empty entries dropped) when it is set and not empty, else the installed
/// one (PREFIX/share/boardlib/data beside the library's PREFIX/lib), else,
/// in a build tree, the source tree's data directory.
std::vector<std::string> getZRTDataDirList();
/// BOARDLIB_APP_ROOT when it is set, else the installed PREFIX/share/boardlib,
/// else, in a build tree, the source tree.
std::string getZRTAppRoot();
} // namespace HUTEnv

#endif
