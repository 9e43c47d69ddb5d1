// boardtool tcl: runs a Tcl script with the board commands loaded.
#include "Commands.h"
#include "TclInterp.h"

#include <iostream>

namespace boardtool {
namespace {

const char kAbout[] =
    "Runs a Tcl script in an interpreter with the boardlib package loaded (the\n"
    "commands 'boardtool shell' lists). The options come before SCRIPT: the arguments\n"
    "after SCRIPT reach the script in argv, as with tclsh. With -e the script is the\n"
    "text TEXT instead of a file, and the arguments after TEXT reach it. An error\n"
    "that the script does not catch is printed with its stack on standard error.\n";

const char kNotes[] =
    "Exit status: 0 the script ran, 1 it failed (or called 'exit 1'), 2 bad usage.\n";

int run(const Arguments &args) {
  LoadOptions load;
  std::string error;
  if (!load.take(args, error))
    return usageError(tclCommand, error);
  // Options end at -e TEXT or at the script: what follows belongs to it.
  const bool haveInline = args.has("-e");
  if (!haveInline && args.operands.empty())
    return usageError(tclCommand, "no script given");
  const std::string inlineScript = args.value("-e");
  const std::vector<std::string> scriptArgs(args.operands.begin() + (haveInline ? 0 : 1),
                                            args.operands.end());
  load.apply();

  const std::string script = haveInline ? std::string() : args.operands.front();
  Tcl_FindExecutable(nullptr);
  Tcl_Interp *interp = Tcl_CreateInterp();
  setScriptArgs(interp, haveInline ? "boardtool" : script, scriptArgs);
  int status = initBoardInterp(interp);
  if (status == TCL_OK)
    status = haveInline ? Tcl_EvalEx(interp, inlineScript.c_str(), -1, TCL_EVAL_GLOBAL)
                        : Tcl_EvalFile(interp, script.c_str());
  int exitCode = Success;
  if (status != TCL_OK) {
    const char *info = Tcl_GetVar(interp, "errorInfo", TCL_GLOBAL_ONLY);
    std::cerr << (info ? info : Tcl_GetStringResult(interp)) << "\n";
    exitCode = Failure;
  }
  std::cout.flush();
  Tcl_DeleteInterp(interp);
  return exitCode;
}

} // namespace

const Command tclCommand = {
    "tcl",
    cmd::tcl,
    "run a Tcl script with the board commands",
    "(-e TEXT | SCRIPT) [ARG]...",
    kAbout,
    kNotes,
    OptionPlace::BeforeOperands,
    run,
};

} // namespace boardtool
