// The Tcl package boardlib: the board commands of the scripting console.
// Loaded by `package require boardlib`, or linked into a program that makes
// its own interpreter and calls Boardlib_Init on it.
#ifndef BOARDLIB_BINDINGS_TCL_BOARDLIBTCL_H
#define BOARDLIB_BINDINGS_TCL_BOARDLIBTCL_H

#include <tcl.h>

class HBOScriptCommands;

/// Provides the package "boardlib" (of the library's version) and creates its commands in
/// \p interp. Any number of interpreters may call it; they share the one
/// project view of the process.
extern "C" int Boardlib_Init(Tcl_Interp *interp);

/// The board commands behind every interpreter of the process, created by
/// the first call.
HBOScriptCommands &boardlibTclCommands();

#endif
