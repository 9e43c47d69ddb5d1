// The Python face of the scripted board classes: one Python type per class,
// one Python object per living native object, and the conversion of
// property values into Python values.
//
// A Python object holds a native pointer it does not own. The native object
// may die first (its board unloaded, the user repository refreshed); its
// destructor removes it from the Python cache, whose invalidator marks the
// Python object dead, and every later use of it raises BoardError instead of
// following the pointer.
#ifndef BOARDLIB_BINDINGS_PYTHON_BOARDPYTYPES_H
#define BOARDLIB_BINDINGS_PYTHON_BOARDPYTYPES_H

#define PY_SSIZE_T_CLEAN
#include <Python.h>

#include "HATAttrAny.h"
#include "HEXError.h"
#include "TclAny.h"

#include <exception>
#include <string>
#include <typeinfo>

class HBOScriptCommands;
struct HBOScriptedClass;

namespace BoardPy {

using tclany = zeb::tcltasks::tclany;

/// The instance layout shared by every board type.
struct Object {
  PyObject_HEAD const std::type_info *type;
  void *native;
  /// Cleared by the cache's invalidator when the native object dies.
  int alive;
};

/// The name of the capsule and of the constructor keyword that carry a
/// native pointer into a board type.
extern const char *const kCapsuleName;

/// boardlib.BoardError, the exception of a failed board command.
extern PyObject *g_boardError;

/// The one command set of the process, made at module init.
HBOScriptCommands &commands();

/// Runs \p fn, turning a C++ failure into BoardError; false when it failed.
/// Sets a BoardError whose attribute id is the message's id ("49-81").
void setBoardError(const HEXError &error);

template <typename F> bool call(F fn) {
  try {
    fn();
    return true;
  } catch (const HEXError &e) {
    setBoardError(e);
  } catch (const std::exception &e) {
    PyErr_SetString(g_boardError, e.what());
  } catch (...) {
    PyErr_SetString(g_boardError, "unknown failure in the board layer");
  }
  return false;
}

/// Set once Python has finalized: from then on the invalidators must not
/// touch Python objects, which may be gone with their memory.
void setFinalized();

/// Creates the types of every scripted class and adds them to \p module.
/// Also installs the cache invalidators. False with a Python error set.
bool createTypes(PyObject *module);

/// The Python object of a native handle: the cached one, or a new one made
/// through its type as a script would. None for an empty handle. New
/// reference, or null with a Python error set.
PyObject *wrap(const tclany &handle);

/// Whether \p object is an instance of one of the board types.
bool isBoardObject(PyObject *object);

/// The handle behind a board object. False with TypeError (not a board
/// object) or BoardError (a dead one) set.
bool toHandle(PyObject *object, tclany &out);

/// A property value as a Python value: None for nothing, bool, int, str, a
/// list of str or a list of board objects. New reference or null.
PyObject *toPython(const HATAttrAny &value);

/// A str from UTF-8 text; undecodable bytes are replaced, never refused.
PyObject *toStr(const std::string &text);

} // namespace BoardPy

#endif
