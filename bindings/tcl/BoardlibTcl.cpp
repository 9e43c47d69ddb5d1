#include "BoardlibTcl.h"

#include "HBOScriptCommands.h"
#include "HTCTclUtils.h"
#include "TclCommands.h"
#include "TclHandles.h"

#include <exception>
#include <mutex>
#include <string>

HBOScriptCommands &boardlibTclCommands() {
  // One project view for the whole process, never deleted: handles of its
  // boards may live in any interpreter until the process ends.
  static HBOScriptCommands *commands = new HBOScriptCommands();
  return *commands;
}

extern "C" int Boardlib_Init(Tcl_Interp *interp) {
  if (!Tcl_PkgRequire(interp, "Tcl", "8.6", 0))
    return TCL_ERROR;
  HBOScriptCommands *commands = nullptr;
  try {
    // Invalidators first, so that no handle can outlive its object unseen.
    TclHandles::install();
    commands = &boardlibTclCommands();
  } catch (const std::exception &e) {
    std::string text = std::string("The board package could not start: ") + e.what();
    Tcl_SetObjResult(interp, Tcl_NewStringObj(text.c_str(), -1));
    return TCL_ERROR;
  }
  static std::once_flag hookOnce;
  std::call_once(hookOnce, [] {
    HTCTclUtils::setResultHook([](Tcl_Interp *target, const HATAttrAny &value) {
      Tcl_SetObjResult(target, TclHandles::toTclObj(value));
    });
  });
  TclCommands::createAll(interp, *commands);
  return Tcl_PkgProvide(interp, "boardlib", "0.1");
}
