// The commands of boardtool, one per source file.
#ifndef BOARDLIB_TOOLS_COMMANDS_H
#define BOARDLIB_TOOLS_COMMANDS_H

#include "ToolSupport.h"

namespace boardtool {
extern const Command readCommand;
extern const Command checkCommand;
extern const Command paramsCommand;
} // namespace boardtool

#endif
