// The bridge from a getter's value to a Tcl interpreter's result. The Tcl
// package installs the conversion when it loads; without it (no Tcl in the
// process) setting a result does nothing.
#ifndef BOARDLIB_PLATFORM_HTCTCLUTILS_H
#define BOARDLIB_PLATFORM_HTCTCLUTILS_H

#include <functional>

class HATAttrAny;
struct Tcl_Interp;

namespace HTCTclUtils {
using ResultHook = std::function<void(Tcl_Interp *, const HATAttrAny &)>;
void setResultHook(ResultHook hook);
void setResult(Tcl_Interp *interp, const HATAttrAny &value);
} // namespace HTCTclUtils

#endif
