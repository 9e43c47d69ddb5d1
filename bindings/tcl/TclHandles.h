// Board objects as Tcl values. A handle is a Tcl_Obj of one object type per
// scripted class; its string form is the object's name, and its internal
// representation points to a shared record of the native object. One native
// object has one record while it lives, however many Tcl values show it;
// when the object dies the record is marked dead, so a value kept in a
// script variable fails cleanly instead of reaching freed memory.
#ifndef BOARDLIB_BINDINGS_TCL_TCLHANDLES_H
#define BOARDLIB_BINDINGS_TCL_TCLHANDLES_H

#include "HATAttrAny.h"
#include "TclAny.h"

#include <string>
#include <vector>

#include <tcl.h>

namespace TclHandles {

using tclany = zeb::tcltasks::tclany;

/// Installs the cache invalidators of every scripted class; once per
/// process, later calls do nothing. Throws std::logic_error when a scripted
/// class has no object type here.
void install();

/// Finds the live objects of a name. A handle that a string operation turned
/// into text (string length, string range, ...) arrives as its name alone;
/// getHandle then looks the name up again through this.
using NameLookup = std::vector<tclany> (*)(const std::string &name);
void setNameLookup(NameLookup lookup);

/// A new Tcl value for \p object (reference count 0). An object of a class
/// that has no handle type becomes its plain name.
Tcl_Obj *newHandleObj(const tclany &object);

/// A property value as a Tcl value: a boolean, a wide integer, a string, or
/// a list of strings or of handles.
Tcl_Obj *toTclObj(const HATAttrAny &value);

/// The object behind \p obj: a handle, or text naming exactly one live
/// object. False with the interpreter's result set to the reason otherwise
/// (no such object, or an ambiguous name).
bool getHandle(Tcl_Interp *interp, Tcl_Obj *obj, tclany &out);

/// The objects of \p obj: one handle, or a Tcl list of handles. False with
/// the interpreter's result set when any element is not a live handle.
bool getHandles(Tcl_Interp *interp, Tcl_Obj *obj, std::vector<tclany> &out);

/// Whether \p obj carries a handle's internal representation (live or not).
bool isHandle(Tcl_Obj *obj);

} // namespace TclHandles

#endif
