#include "BoardlibTcl.h"

#include "HBOBoardCDataManager.h"
#include "HBOScriptCommands.h"
#include "HTCTclInterp.h"
#include "HTCTclUtils.h"
#include "HUTVersion.h"
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

namespace {

int evalScriptFile(Tcl_Interp *interp, const std::string &file, std::string &errorInfo) {
  const int code = Tcl_EvalFile(interp, file.c_str());
  if (code == TCL_ERROR) {
    const char *info = Tcl_GetVar2(interp, "errorInfo", nullptr, TCL_GLOBAL_ONLY);
    errorInfo = info ? info : Tcl_GetStringResult(interp);
  }
  return code == TCL_ERROR ? TCL_ERROR : TCL_OK;
}

void forgetInterp(ClientData, Tcl_Interp *interp) {
  if (HTCTclInterp::getDefaultInterp() == interp)
    HTCTclInterp::setDefaultInterp(nullptr, nullptr);
}

} // namespace

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
    TclHandles::setNameLookup(
        [](const std::string &name) { return boardlibTclCommands().findObjectsByName(name); });
  });
  TclCommands::createAll(interp, *commands);
  // The library's own scripts run in the interpreter of the board commands.
  HTCTclInterp::setDefaultInterp(interp, &evalScriptFile);
  Tcl_CallWhenDeleted(interp, &forgetInterp, nullptr);
  commands->getDataManager().loadBoardTcl();
  return Tcl_PkgProvide(interp, "boardlib", HUTVersion::getVersion());
}
