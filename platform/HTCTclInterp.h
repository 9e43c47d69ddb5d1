// The Tcl interpreter that the board commands live in, for the library's
// own scripts. The Tcl package registers its interpreter when it loads; the
// library links no Tcl itself, so without the package there is none.
#ifndef BOARDLIB_PLATFORM_HTCTCLINTERP_H
#define BOARDLIB_PLATFORM_HTCTCLINTERP_H

#include <functional>
#include <string>

struct Tcl_Interp;

namespace HTCTclInterp {
/// Evaluates a script file in the interpreter: TCL_OK (0) or TCL_ERROR (1),
/// with the interpreter's errorInfo in \p errorInfo on an error.
using EvalFile = std::function<int(Tcl_Interp *, const std::string &file, std::string &errorInfo)>;

/// The interpreter last registered, or null.
Tcl_Interp *getDefaultInterp();
/// Registers \p interp with the way to evaluate files in it; a null
/// \p interp forgets the one registered.
void setDefaultInterp(Tcl_Interp *interp, EvalFile evalFile);
/// Evaluates \p file in the default interpreter; TCL_ERROR with a word on
/// it when there is none.
int evalFile(const std::string &file, std::string &errorInfo);
} // namespace HTCTclInterp

#endif
