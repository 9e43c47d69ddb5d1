// boardtool shell: an interactive Tcl shell with the board commands loaded.
#include "Commands.h"
#include "TclCommands.h"
#include "TclInterp.h"

#include <iostream>
#include <string>
#include <unistd.h>

namespace boardtool {
namespace {

const char kAbout[] =
    "Starts an interactive Tcl shell (as tclsh) with the boardlib package loaded:\n"
    "get_boards, get_board_components and the other get_board_* commands,\n"
    "get_property, set_property, list_property, report_property, undo, redo,\n"
    "set_param, get_param, report_param, current_board and refresh_boards. 'help'\n"
    "lists them, and each command answers -help. With Debian's tcl-tclreadline\n"
    "installed, a terminal gets line editing and history. ~/.boardtoolrc is read\n"
    "first. Leave with 'exit' or end of input.\n";

const char kNotes[] = "Exit status: as 'exit' gives it, 0 at the end of input.\n";

// help: the board commands, one line each.
int helpCmd(ClientData, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc != 1) {
    Tcl_WrongNumArgs(interp, 1, objv, "");
    return TCL_ERROR;
  }
  std::string text = "The board commands (each answers -help):\n";
  for (const auto &command : TclCommands::summaries()) {
    text += "  " + command.first;
    text += std::string(command.first.size() < 32 ? 32 - command.first.size() : 1, ' ');
    text += command.second + "\n";
  }
  text += "Tcl's own commands are there too; 'exit' leaves.";
  Tcl_SetObjResult(interp, Tcl_NewStringObj(text.c_str(), -1));
  return TCL_OK;
}

// On a terminal, tclreadline (when installed) takes over the read loop for
// line editing and history; its loop never returns, so the start-up file is
// read first, as Tcl_Main would have read it.
const char kReadlineLoop[] = R"tcl(
if {![catch {package require tclreadline}]} {
  if {[file exists $tcl_rcFileName]} { uplevel #0 [list source $tcl_rcFileName] }
  set ::tclreadline::historyLength 1000
  proc ::tclreadline::prompt1 {} { return "boardtool% " }
  ::tclreadline::Loop [file join ~ .boardtool_history]
}
)tcl";

int appInit(Tcl_Interp *interp) {
  if (initBoardInterp(interp) != TCL_OK)
    return TCL_ERROR;
  Tcl_CreateObjCommand(interp, "help", &helpCmd, nullptr, nullptr);
  Tcl_SetVar(interp, "tcl_rcFileName", "~/.boardtoolrc", TCL_GLOBAL_ONLY);
  if (isatty(0) && isatty(1))
    Tcl_Eval(interp, kReadlineLoop);
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
