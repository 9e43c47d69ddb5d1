#include "HUTVersion.h"

#ifndef BOARDLIB_VERSION
#error "BOARDLIB_VERSION must be defined by the build"
#endif

const char *HUTVersion::getVersion() { return BOARDLIB_VERSION; }
