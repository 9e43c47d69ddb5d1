// The interpreter behind boardtool shell and boardtool tcl: a stock Tcl
// interpreter with the boardlib package already loaded.
#ifndef BOARDLIB_TOOLS_TCLINTERP_H
#define BOARDLIB_TOOLS_TCLINTERP_H

#include <string>
#include <vector>

#include <tcl.h>

namespace boardtool {
/// Tcl's own start-up plus the package; on failure the text is in the
/// interpreter's result and TCL_ERROR comes back.
int initBoardInterp(Tcl_Interp *interp);
/// Sets argv0, argv and argc as tclsh does.
void setScriptArgs(Tcl_Interp *interp, const std::string &argv0,
                   const std::vector<std::string> &args);
} // namespace boardtool

#endif
