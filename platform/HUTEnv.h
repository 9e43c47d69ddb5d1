// Where the installation lives: the data directories that hold the shipped
// boards and schemas, and the application root that holds the scripts.
#ifndef BOARDLIB_PLATFORM_HUTENV_H
#define BOARDLIB_PLATFORM_HUTENV_H

#include <string>
#include <vector>

namespace HUTEnv {
/// The data directories in search order: BOARDLIB_DATA_DIRS (colon-separated,
/// empty entries dropped) when it is set and not empty, else the one data
/// directory built into the library.
std::vector<std::string> getZRTDataDirList();
/// BOARDLIB_APP_ROOT when it is set, else the root built into the library.
std::string getZRTAppRoot();
} // namespace HUTEnv

#endif
