// boardtool shell: an interactive Tcl shell with the board commands loaded.
#include "Commands.h"
#include "TclInterp.h"

#include <iostream>

namespace boardtool {
namespace {

const char kHelp[] =
    "Starts an interactive Tcl shell (as tclsh) with the boardlib package loaded:\n"
    "get_boards, get_board_components and the other get_board_* commands,\n"
    "get_property, set_property, list_property, report_property, undo, redo,\n"
    "set_param, get_param, report_param, current_board and refresh_boards. Each\n"
    "command answers -help. Leave with 'exit' or end of input.\n"
    "\n"
    "Options:\n"
    "  --data-dir DIR      a data directory to load instead of the embedded one;\n"
    "                      repeatable (sets BOARDLIB_DATA_DIRS)\n"
    "  --repo PATH         a user board repository; repeatable (sets board.repoPaths)\n"
    "  --param NAME=VALUE  set a parameter first (see 'boardtool params'); repeatable\n"
    "\n"
    "Exit status: as 'exit' gives it, 0 at the end of input.\n";

int appInit(Tcl_Interp *interp) {
  if (initBoardInterp(interp) != TCL_OK)
    return TCL_ERROR;
  Tcl_SetVar(interp, "tcl_rcFileName", "~/.boardtoolrc", TCL_GLOBAL_ONLY);
  return TCL_OK;
}

int run(const std::vector<std::string> &args) {
  LoadOptions load;
  CommonOptions options;
  int status = Success;
  if (!parseLoadArgs(shellCommand, args, false, {}, load, options, status))
    return status;
  if (!options.positional.empty())
    return usageError(shellCommand, "no arguments expected; to run a script use 'boardtool tcl'");
  load.apply();
  // Tcl_Main reads standard input and exits the process itself.
  static char name[] = "boardtool";
  char *argv[] = {name, nullptr};
  Tcl_Main(1, argv, appInit);
  return Success;
}

} // namespace

const Command shellCommand = {"shell", "an interactive Tcl shell with the board commands",
                              "boardtool shell [--param NAME=VALUE]... [--data-dir DIR]... [--repo PATH]...",
                              kHelp, run};

} // namespace boardtool
