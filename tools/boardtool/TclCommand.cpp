// boardtool tcl: runs a Tcl script with the board commands loaded.
#include "Commands.h"
#include "TclInterp.h"

#include <iostream>

namespace boardtool {
namespace {

const char kHelp[] =
    "Runs a Tcl script in an interpreter with the boardlib package loaded (the\n"
    "commands 'boardtool shell' lists). Arguments after SCRIPT reach the script in\n"
    "argv, as with tclsh. With -e the script is the text TEXT instead of a file.\n"
    "An error that the script does not catch is printed with its stack on standard\n"
    "error.\n"
    "\n"
    "Options (before SCRIPT):\n"
    "  -e TEXT             run TEXT instead of a script file\n"
    "  --data-dir DIR      a data directory to load instead of the embedded one;\n"
    "                      repeatable (sets BOARDLIB_DATA_DIRS)\n"
    "  --repo PATH         a user board repository; repeatable (sets board.repoPaths)\n"
    "  --param NAME=VALUE  set a parameter first (see 'boardtool params'); repeatable\n"
    "\n"
    "Exit status: 0 the script ran, 1 it failed (or called 'exit 1'), 2 bad usage.\n";

int run(const std::vector<std::string> &args) {
  // Options stop at the script: what follows belongs to it.
  std::vector<std::string> ours, scriptArgs;
  std::string inlineScript;
  bool haveInline = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string &arg = args[i];
    if (arg == "-e" && !haveInline) {
      if (i + 1 >= args.size())
        return usageError(tclCommand, "-e needs a script text");
      inlineScript = args[++i];
      haveInline = true;
      scriptArgs.assign(args.begin() + static_cast<long>(i) + 1, args.end());
      break;
    }
    if (arg.empty() || arg[0] != '-') {
      ours.push_back(arg);
      scriptArgs.assign(args.begin() + static_cast<long>(i) + 1, args.end());
      break;
    }
    ours.push_back(arg);
    if ((arg == "--data-dir" || arg == "--repo" || arg == "--param" || arg == "--debug") && i + 1 < args.size())
      ours.push_back(args[++i]);
  }
  LoadOptions load;
  std::vector<std::string> rest;
  std::string error;
  if (!load.take(ours, rest, error, false))
    return usageError(tclCommand, error);
  CommonOptions options;
  if (!options.parse(rest, error))
    return usageError(tclCommand, error);
  if (!haveInline && options.positional.empty())
    return usageError(tclCommand, "no script given");
  if (haveInline && !options.positional.empty())
    return usageError(tclCommand, "either -e TEXT or a script file, not both");
  load.apply();

  const std::string script = haveInline ? std::string() : options.positional.front();
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

const Command tclCommand = {"tcl", "run a Tcl script with the board commands",
                            "boardtool tcl [--param NAME=VALUE]... [--data-dir DIR]... [--repo PATH]... "
                            "(-e TEXT | SCRIPT) [ARG]...",
                            kHelp, run};

} // namespace boardtool
