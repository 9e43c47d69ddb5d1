// The version of the library, as the project's build sets it: the one that
// boardtool --version, the Tcl package, the Python module and pkg-config
// give.
#ifndef BOARDLIB_PLATFORM_HUTVERSION_H
#define BOARDLIB_PLATFORM_HUTVERSION_H

namespace HUTVersion {
/// "MAJOR.MINOR", as in `package require boardlib MAJOR.MINOR`.
const char *getVersion();
} // namespace HUTVersion

#endif
