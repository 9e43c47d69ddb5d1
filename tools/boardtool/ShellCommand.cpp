// boardtool shell: an interactive Tcl shell with the board commands loaded.
#include "Commands.h"
#include "TclInterp.h"

#include <iostream>

namespace boardtool {
namespace {

const char kAbout[] =
    "Starts an interactive Tcl shell (as tclsh) with the boardlib package loaded:\n"
    "get_boards, get_board_components and the other get_board_* commands,\n"
    "get_property, set_property, list_property, report_property, undo, redo,\n"
    "set_param, get_param, report_param, current_board and refresh_boards. Each\n"
    "command answers -help. Leave with 'exit' or end of input.\n";

const char kNotes[] = "Exit status: as 'exit' gives it, 0 at the end of input.\n";

int appInit(Tcl_Interp *interp) {
  if (initBoardInterp(interp) != TCL_OK)
    return TCL_ERROR;
  Tcl_SetVar(interp, "tcl_rcFileName", "~/.boardtoolrc", TCL_GLOBAL_ONLY);
  return TCL_OK;
}

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  if (!load.take(args, error))
    return usageError(shellCommand, error);
  if (!args.operands.empty())
    return usageError(shellCommand, "no arguments expected; to run a script use 'boardtool tcl'");
  load.apply();
  // Tcl_Main reads standard input and exits the process itself.
  static char name[] = "boardtool";
  char *argv[] = {name, nullptr};
  Tcl_Main(1, argv, appInit);
  return Success;
}

} // namespace

const Command shellCommand = {
    "shell",
    cmd::shell,
    "an interactive Tcl shell with the board commands",
    "",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
