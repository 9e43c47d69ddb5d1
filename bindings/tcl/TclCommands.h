// The Tcl commands of the package: argument parsing and result conversion
// around HBOScriptCommands, which does the work.
#ifndef BOARDLIB_BINDINGS_TCL_TCLCOMMANDS_H
#define BOARDLIB_BINDINGS_TCL_TCLCOMMANDS_H

#include <tcl.h>

class HBOScriptCommands;

namespace TclCommands {

/// Creates every board command in \p interp, working on \p commands.
void createAll(Tcl_Interp *interp, HBOScriptCommands &commands);

} // namespace TclCommands

#endif
