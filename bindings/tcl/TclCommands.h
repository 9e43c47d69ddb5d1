// The Tcl commands of the package: argument parsing and result conversion
// around HBOScriptCommands, which does the work.
#ifndef BOARDLIB_BINDINGS_TCL_TCLCOMMANDS_H
#define BOARDLIB_BINDINGS_TCL_TCLCOMMANDS_H

#include <tcl.h>

#include <string>
#include <utility>
#include <vector>

class HBOScriptCommands;

namespace TclCommands {

/// Creates every board command in \p interp, working on \p commands.
void createAll(Tcl_Interp *interp, HBOScriptCommands &commands);

/// Every board command with what it does in one line, in the order a
/// listing shows them: the get_board* queries first.
std::vector<std::pair<std::string, std::string>> summaries();

} // namespace TclCommands

#endif
