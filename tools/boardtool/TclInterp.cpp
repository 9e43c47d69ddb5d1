#include "TclInterp.h"

#include "BoardlibTcl.h"

namespace boardtool {

int initBoardInterp(Tcl_Interp *interp) {
  if (Tcl_Init(interp) != TCL_OK)
    return TCL_ERROR;
  if (Boardlib_Init(interp) != TCL_OK)
    return TCL_ERROR;
  // `package require boardlib` in a script finds the package already here.
  Tcl_StaticPackage(interp, "Boardlib", Boardlib_Init, nullptr);
  return TCL_OK;
}

void setScriptArgs(Tcl_Interp *interp, const std::string &argv0,
                   const std::vector<std::string> &args) {
  Tcl_Obj *list = Tcl_NewListObj(0, nullptr);
  for (const std::string &arg : args)
    Tcl_ListObjAppendElement(interp, list,
                             Tcl_NewStringObj(arg.c_str(), static_cast<int>(arg.size())));
  Tcl_SetVar2Ex(interp, "argv", nullptr, list, TCL_GLOBAL_ONLY);
  Tcl_SetVar2Ex(interp, "argc", nullptr, Tcl_NewIntObj(static_cast<int>(args.size())),
                TCL_GLOBAL_ONLY);
  Tcl_SetVar2Ex(interp, "argv0", nullptr, Tcl_NewStringObj(argv0.c_str(), -1), TCL_GLOBAL_ONLY);
}

} // namespace boardtool
