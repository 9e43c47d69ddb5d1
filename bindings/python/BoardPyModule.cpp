// The Python module boardlib: the board commands as functions over the one
// command set of the process, with keyword arguments in place of the
// console's options.
#include "BoardPyTypes.h"

#include "HBOScriptCommands.h"
#include "HCPProperty.h"
#include "HUTVersion.h"

#include <deque>
#include <string>
#include <vector>

using BoardPy::tclany;

namespace {

HBOScriptCommands *g_commands = nullptr;

/// The last value a getter delivered on this thread. A plain pointer: a
/// thread-local with a destructor would release it after finalization.
thread_local PyObject *t_lastResult = nullptr;

// ---- arguments ----

bool toText(PyObject *value, std::string &out, const char *what) {
  if (PyBool_Check(value)) {
    out = value == Py_True ? "true" : "false";
    return true;
  }
  if (PyLong_Check(value)) {
    PyObject *text = PyObject_Str(value);
    if (!text)
      return false;
    const char *utf8 = PyUnicode_AsUTF8(text);
    if (utf8)
      out = utf8;
    Py_DECREF(text);
    return utf8 != nullptr;
  }
  if (PyUnicode_Check(value)) {
    Py_ssize_t size = 0;
    const char *utf8 = PyUnicode_AsUTF8AndSize(value, &size);
    if (!utf8)
      return false;
    out.assign(utf8, static_cast<std::size_t>(size));
    return true;
  }
  PyErr_Format(PyExc_TypeError, "%s must be a str, bool or int, not %.200s", what,
               Py_TYPE(value)->tp_name);
  return false;
}

bool toStringArg(PyObject *value, std::string &out, const char *what) {
  if (!PyUnicode_Check(value)) {
    PyErr_Format(PyExc_TypeError, "%s must be a str, not %.200s", what, Py_TYPE(value)->tp_name);
    return false;
  }
  return toText(value, out, what);
}

/// A str, or a list or tuple of str.
bool toPatterns(PyObject *value, std::vector<std::string> &out) {
  if (!value || value == Py_None)
    return true;
  if (PyUnicode_Check(value)) {
    out.emplace_back();
    return toText(value, out.back(), "pattern");
  }
  if (PyList_Check(value) || PyTuple_Check(value)) {
    PyObject *seq = PySequence_Fast(value, "pattern");
    if (!seq)
      return false;
    bool ok = true;
    for (Py_ssize_t i = 0; ok && i < PySequence_Fast_GET_SIZE(seq); ++i) {
      out.emplace_back();
      ok = toStringArg(PySequence_Fast_GET_ITEM(seq, i), out.back(), "each pattern");
    }
    Py_DECREF(seq);
    return ok;
  }
  PyErr_Format(PyExc_TypeError, "pattern must be a str or a list of str, not %.200s",
               Py_TYPE(value)->tp_name);
  return false;
}

/// A board object, or a list or tuple of them.
bool toObjects(PyObject *value, std::vector<tclany> &out, const char *what) {
  if (BoardPy::isBoardObject(value)) {
    out.emplace_back();
    return BoardPy::toHandle(value, out.back());
  }
  if (PyList_Check(value) || PyTuple_Check(value)) {
    PyObject *seq = PySequence_Fast(value, what);
    if (!seq)
      return false;
    bool ok = true;
    for (Py_ssize_t i = 0; ok && i < PySequence_Fast_GET_SIZE(seq); ++i) {
      out.emplace_back();
      ok = BoardPy::toHandle(PySequence_Fast_GET_ITEM(seq, i), out.back());
    }
    Py_DECREF(seq);
    return ok;
  }
  PyErr_Format(PyExc_TypeError, "%s must be a board object or a list of them, not %.200s", what,
               Py_TYPE(value)->tp_name);
  return false;
}

/// Exactly one object: a board object or a list holding one.
bool toOneObject(PyObject *value, tclany &out, const char *command) {
  std::vector<tclany> objects;
  if (!toObjects(value, objects, "the object"))
    return false;
  if (objects.size() != 1) {
    PyErr_Format(BoardPy::g_boardError, "%s takes one object, but %zu were given.", command,
                 objects.size());
    return false;
  }
  out = objects.front();
  return true;
}

/// A Python list of \p items, each converted by \p convert (which returns a
/// new reference, or null with the Python error set).
template <typename T, typename F> PyObject *toPyList(const std::vector<T> &items, F convert) {
  PyObject *list = PyList_New(static_cast<Py_ssize_t>(items.size()));
  if (!list)
    return nullptr;
  for (std::size_t i = 0; i < items.size(); ++i) {
    PyObject *item = convert(items[i]);
    if (!item) {
      Py_DECREF(list);
      return nullptr;
    }
    PyList_SET_ITEM(list, static_cast<Py_ssize_t>(i), item);
  }
  return list;
}

PyObject *toList(const std::vector<tclany> &objects) {
  return toPyList(objects, [](const tclany &object) { return BoardPy::wrap(object); });
}

PyObject *toStrList(const std::vector<std::string> &texts) {
  return toPyList(texts, [](const std::string &text) { return BoardPy::toStr(text); });
}

// ---- the get_* commands ----

/// \p self is the command's name as a str.
PyObject *queryCommand(PyObject *self, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"pattern", "filter", "of_objects", "quiet",
                                 "nocase",  "regexp", nullptr};
  PyObject *pattern = nullptr;
  PyObject *filter = nullptr;
  PyObject *ofObjects = nullptr;
  int quiet = 0, nocase = 0, regexp = 0;
  const char *command = PyUnicode_AsUTF8(self);
  if (!command)
    return nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|OOOppp", const_cast<char **>(kwlist), &pattern,
                                   &filter, &ofObjects, &quiet, &nocase, &regexp))
    return nullptr;
  HBOScriptCommands::QueryOptions options;
  if (!toPatterns(pattern, options.patterns))
    return nullptr;
  if (filter && filter != Py_None && !toStringArg(filter, options.filter, "filter"))
    return nullptr;
  if (ofObjects && ofObjects != Py_None) {
    options.hasOfObjects = true;
    if (!toObjects(ofObjects, options.ofObjects, "of_objects"))
      return nullptr;
  }
  options.quiet = quiet != 0;
  options.nocase = nocase != 0;
  options.regexp = regexp != 0;
  std::vector<tclany> found;
  if (!BoardPy::call([&] { found = g_commands->getObjects(command, options); }))
    return nullptr;
  return toList(found);
}

// ---- property commands ----

PyObject *getProperty(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"name", "obj", "quiet", nullptr};
  const char *name = nullptr;
  PyObject *object = nullptr;
  int quiet = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "sO|p:get_property", const_cast<char **>(kwlist),
                                   &name, &object, &quiet))
    return nullptr;
  tclany handle;
  if (!toOneObject(object, handle, "get_property"))
    return nullptr;
  HATAttrAny value;
  bool found = false;
  if (!BoardPy::call([&] { found = g_commands->getProperty(name, handle, value, quiet != 0); }))
    return nullptr;
  if (!found)
    return BoardPy::toStr(std::string());
  return BoardPy::toPython(value);
}

PyObject *setProperty(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"name", "value", "objs", nullptr};
  const char *name = nullptr;
  PyObject *value = nullptr;
  PyObject *objects = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "sOO:set_property", const_cast<char **>(kwlist),
                                   &name, &value, &objects))
    return nullptr;
  std::string text;
  if (!toText(value, text, "value"))
    return nullptr;
  std::vector<tclany> handles;
  if (!toObjects(objects, handles, "objs"))
    return nullptr;
  if (!BoardPy::call([&] { g_commands->setProperty(name, text, handles); }))
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *listProperty(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"obj", "all", nullptr};
  PyObject *object = nullptr;
  int all = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "O|p:list_property", const_cast<char **>(kwlist),
                                   &object, &all))
    return nullptr;
  tclany handle;
  if (!toOneObject(object, handle, "list_property"))
    return nullptr;
  std::vector<std::string> names;
  if (!BoardPy::call([&] { names = g_commands->listProperty(handle, all != 0); }))
    return nullptr;
  return toStrList(names);
}

PyObject *reportProperty(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"obj", "all", nullptr};
  PyObject *object = nullptr;
  int all = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "O|p:report_property", const_cast<char **>(kwlist),
                                   &object, &all))
    return nullptr;
  tclany handle;
  if (!toOneObject(object, handle, "report_property"))
    return nullptr;
  std::string report;
  if (!BoardPy::call([&] { report = g_commands->reportProperty(handle, all != 0); }))
    return nullptr;
  return BoardPy::toStr(report);
}

PyObject *undo(PyObject *, PyObject *) {
  std::string what;
  if (!BoardPy::call([&] { what = g_commands->undo(); }))
    return nullptr;
  return BoardPy::toStr(what);
}

PyObject *redo(PyObject *, PyObject *) {
  std::string what;
  if (!BoardPy::call([&] { what = g_commands->redo(); }))
    return nullptr;
  return BoardPy::toStr(what);
}

// ---- parameters and the current board ----

PyObject *setParam(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"name", "value", nullptr};
  const char *name = nullptr;
  PyObject *value = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "sO:set_param", const_cast<char **>(kwlist), &name,
                                   &value))
    return nullptr;
  std::string text;
  if (!toText(value, text, "value"))
    return nullptr;
  if (!BoardPy::call([&] { g_commands->setParam(name, text); }))
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *getParam(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"name", nullptr};
  const char *name = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "s:get_param", const_cast<char **>(kwlist), &name))
    return nullptr;
  std::string value;
  if (!BoardPy::call([&] { value = g_commands->getParam(name); }))
    return nullptr;
  return BoardPy::toStr(value);
}

PyObject *reportParam(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"pattern", nullptr};
  const char *pattern = "*";
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|z:report_param", const_cast<char **>(kwlist),
                                   &pattern))
    return nullptr;
  if (!pattern)
    pattern = "*";
  std::string report;
  if (!BoardPy::call([&] { report = g_commands->reportParam(pattern); }))
    return nullptr;
  return BoardPy::toStr(report);
}

PyObject *currentBoard(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"name", nullptr};
  PyObject *name = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "|O:current_board", const_cast<char **>(kwlist),
                                   &name))
    return nullptr;
  tclany board;
  if (!name || name == Py_None) {
    if (!BoardPy::call([&] { board = g_commands->currentBoard(); }))
      return nullptr;
  } else if (PyUnicode_Check(name)) {
    std::string text;
    if (!toText(name, text, "name") ||
        !BoardPy::call([&] { board = g_commands->setCurrentBoard(text); }))
      return nullptr;
  } else {
    tclany handle;
    if (!toOneObject(name, handle, "current_board") ||
        !BoardPy::call([&] { board = g_commands->setCurrentBoard(handle); }))
      return nullptr;
  }
  return BoardPy::wrap(board);
}

/// create_integrated_board(base, connections, name=None): connections is a
/// sequence of (base connector, daughter part text) pairs.
PyObject *createIntegratedBoard(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"base", "connections", "name", nullptr};
  PyObject *base = nullptr, *connections = nullptr;
  const char *name = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "OO|z:create_integrated_board",
                                   const_cast<char **>(kwlist), &base, &connections, &name))
    return nullptr;
  std::string baseName;
  if (BoardPy::isBoardObject(base)) {
    tclany handle;
    if (!toOneObject(base, handle, "create_integrated_board") || !BoardPy::call([&] {
          HATAttrAny value;
          g_commands->getProperty("name", handle, value);
          baseName = value.toString();
        }))
      return nullptr;
  } else if (!toStringArg(base, baseName, "base")) {
    return nullptr;
  }
  PyObject *seq = PySequence_Fast(connections, "connections must be a sequence of pairs");
  if (!seq)
    return nullptr;
  std::vector<std::pair<std::string, std::string>> pairs;
  bool ok = true;
  for (Py_ssize_t i = 0; ok && i < PySequence_Fast_GET_SIZE(seq); ++i) {
    PyObject *pair = PySequence_Fast(PySequence_Fast_GET_ITEM(seq, i),
                                     "each connection must be a pair (base_connector, daughter)");
    ok = pair != nullptr;
    if (ok && PySequence_Fast_GET_SIZE(pair) != 2) {
      PyErr_SetString(PyExc_TypeError,
                      "each connection must be a pair (base_connector, daughter_part)");
      ok = false;
    }
    if (ok) {
      pairs.emplace_back();
      ok = toStringArg(PySequence_Fast_GET_ITEM(pair, 0), pairs.back().first, "base_connector") &&
           toStringArg(PySequence_Fast_GET_ITEM(pair, 1), pairs.back().second, "daughter_part");
    }
    Py_XDECREF(pair);
  }
  Py_DECREF(seq);
  if (!ok)
    return nullptr;
  tclany board;
  if (!BoardPy::call(
          [&] { board = g_commands->createIntegratedBoard(baseName, name ? name : "", pairs); }))
    return nullptr;
  return BoardPy::wrap(board);
}

PyObject *refreshBoards(PyObject *, PyObject *) {
  if (!BoardPy::call([] { g_commands->refreshBoards(); }))
    return nullptr;
  Py_RETURN_NONE;
}

PyObject *getCompatibleConnectors(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"connector", "latest", nullptr};
  PyObject *object = nullptr;
  int latest = 0;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "O|p:get_compatible_connectors",
                                   const_cast<char **>(kwlist), &object, &latest))
    return nullptr;
  tclany connector;
  if (!toOneObject(object, connector, "get_compatible_connectors"))
    return nullptr;
  std::vector<tclany> found;
  if (!BoardPy::call([&] { found = g_commands->getCompatibleConnectors(connector, latest != 0); }))
    return nullptr;
  return toList(found);
}

/// write_board_diagram(board, file, jumpers=None): board is a board object
/// or a name, file a str or a path, jumpers a mapping of jumper names to
/// True, False or their texts.
PyObject *writeBoardDiagram(PyObject *, PyObject *args, PyObject *kwargs) {
  static const char *kwlist[] = {"board", "file", "jumpers", nullptr};
  PyObject *board = nullptr, *file = nullptr, *jumpers = nullptr;
  if (!PyArg_ParseTupleAndKeywords(args, kwargs, "OO|O:write_board_diagram",
                                   const_cast<char **>(kwlist), &board, &file, &jumpers))
    return nullptr;
  std::string path;
  PyObject *fsPath = PyOS_FSPath(file);
  if (!fsPath)
    return nullptr;
  const bool pathOk = toStringArg(fsPath, path, "file");
  Py_DECREF(fsPath);
  if (!pathOk)
    return nullptr;
  std::vector<std::pair<std::string, std::string>> setting;
  if (jumpers && jumpers != Py_None) {
    if (!PyDict_Check(jumpers) && !PyObject_HasAttrString(jumpers, "items")) {
      PyErr_Format(PyExc_TypeError, "jumpers must be a mapping of names to values, not %.200s",
                   Py_TYPE(jumpers)->tp_name);
      return nullptr;
    }
    PyObject *items = PyMapping_Items(jumpers);
    if (!items)
      return nullptr;
    bool ok = true;
    for (Py_ssize_t i = 0; ok && i < PyList_GET_SIZE(items); ++i) {
      PyObject *item = PyList_GET_ITEM(items, i);
      if (!PyTuple_Check(item) || PyTuple_GET_SIZE(item) != 2) {
        PyErr_SetString(PyExc_TypeError, "jumpers must map names to values");
        ok = false;
        break;
      }
      setting.emplace_back();
      ok = toStringArg(PyTuple_GET_ITEM(item, 0), setting.back().first, "a jumper name") &&
           toText(PyTuple_GET_ITEM(item, 1), setting.back().second, "a jumper value");
    }
    Py_DECREF(items);
    if (!ok)
      return nullptr;
  }
  if (PyUnicode_Check(board)) {
    std::string name;
    if (!toText(board, name, "board") ||
        !BoardPy::call([&] { g_commands->writeBoardDiagram(name, path, setting); }))
      return nullptr;
    Py_RETURN_NONE;
  }
  tclany handle;
  if (!toOneObject(board, handle, "write_board_diagram") ||
      !BoardPy::call([&] { g_commands->writeBoardDiagram(handle, path, setting); }))
    return nullptr;
  Py_RETURN_NONE;
}

/// The value the last getter delivered to Python on this thread, or None.
PyObject *lastResult(PyObject *, PyObject *) {
  PyObject *value = t_lastResult ? t_lastResult : Py_None;
  Py_INCREF(value);
  return value;
}

template <typename F> PyCFunction keywords(F fn) {
  return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(fn));
}

PyMethodDef g_functions[] = {
    {"get_property", keywords(getProperty), METH_VARARGS | METH_KEYWORDS,
     "get_property(name, obj, quiet=False): one property of one object (an object or a one-element "
     "list)."},
    {"set_property", keywords(setProperty), METH_VARARGS | METH_KEYWORDS,
     "set_property(name, value, objs): sets a writable property on objects; undo() takes it back."},
    {"list_property", keywords(listProperty), METH_VARARGS | METH_KEYWORDS,
     "list_property(obj, all=False): the property names in upper case."},
    {"report_property", keywords(reportProperty), METH_VARARGS | METH_KEYWORDS,
     "report_property(obj, all=False): a table of the properties with type, read-only and value."},
    {"undo", undo, METH_NOARGS,
     "undo(): takes back the last property change; returns what it was."},
    {"redo", redo, METH_NOARGS, "redo(): makes the last undone change again; returns what it was."},
    {"set_param", keywords(setParam), METH_VARARGS | METH_KEYWORDS,
     "set_param(name, value): sets a parameter; a bool or an int is taken as its text."},
    {"get_param", keywords(getParam), METH_VARARGS | METH_KEYWORDS,
     "get_param(name): the value of a parameter, as text."},
    {"report_param", keywords(reportParam), METH_VARARGS | METH_KEYWORDS,
     "report_param(pattern=None): a table of the parameters whose names match the glob pattern "
     "(all without one), with value, type and default."},
    {"current_board", keywords(currentBoard), METH_VARARGS | METH_KEYWORDS,
     "current_board(name=None): the current board (None when none); with a name or board, sets "
     "it."},
    {"create_integrated_board", keywords(createIntegratedBoard), METH_VARARGS | METH_KEYWORDS,
     "create_integrated_board(base, connections, name=None): composes a board on base with each "
     "(base_connector, 'vendor:board:connector:version') pair of connections, registers it as a "
     "user board of the project and returns it."},
    {"refresh_boards", refreshBoards, METH_NOARGS,
     "refresh_boards(): reads the user repositories again; objects of user boards go stale."},
    {"get_compatible_connectors", keywords(getCompatibleConnectors), METH_VARARGS | METH_KEYWORDS,
     "get_compatible_connectors(connector, latest=False): the daughter connectors that fit a base "
     "connector; with latest, only the newest version of each."},
    {"write_board_diagram", keywords(writeBoardDiagram), METH_VARARGS | METH_KEYWORDS,
     "write_board_diagram(board, file, jumpers=None): writes the block diagram of a board (an "
     "object or a name) to file as SVG, with each jumper of the mapping jumpers set to its value "
     "(True or False)."},
    {"_last_result", lastResult, METH_NOARGS,
     "The value the last property getter delivered to Python."},
    {nullptr, nullptr, 0, nullptr}};

PyModuleDef g_moduleDef = {PyModuleDef_HEAD_INIT,
                           "boardlib",
                           "Board objects and the board commands of the board-data library.",
                           -1,
                           g_functions,
                           nullptr,
                           nullptr,
                           nullptr,
                           nullptr};

/// The value of each getter, kept as the Python result of the call.
void keepPyResult(const HATAttrAny &value) {
  if (!Py_IsInitialized() || !PyGILState_Check() || PyErr_Occurred())
    return;
  PyObject *converted = BoardPy::toPython(value);
  if (!converted) {
    PyErr_Clear();
    return;
  }
  PyObject *old = t_lastResult;
  t_lastResult = converted;
  Py_XDECREF(old);
}

/// After finalization: the boards go, and with them the caches' entries,
/// whose Python objects must no longer be touched.
void atExit() {
  BoardPy::setFinalized();
  HCPProperty::Utils::setPyResultHook(nullptr);
  t_lastResult = nullptr;
  try {
    delete g_commands;
  } catch (...) {
  }
  g_commands = nullptr;
}

/// One function per get_* command; the PyMethodDefs must outlive the module.
bool addQueryCommands(PyObject *module) {
  static std::deque<PyMethodDef> defs;
  static std::deque<std::string> docs;
  PyObject *moduleName = PyModule_GetNameObject(module);
  if (!moduleName)
    return false;
  for (const HBOScriptCommands::QueryCommand &cmd : HBOScriptCommands::queryCommands()) {
    // The first lines give help() the signature of the function.
    docs.push_back(std::string(cmd.name) +
                   "(pattern=None, filter=None, of_objects=None, quiet=False, nocase=False, "
                   "regexp=False)\n--\n\n" +
                   "A list of " + cmd.help +
                   "; pattern is a str or a list of str, of_objects a board object "
                   "or a list of them.");
    defs.push_back(PyMethodDef{cmd.name, keywords(queryCommand), METH_VARARGS | METH_KEYWORDS,
                               docs.back().c_str()});
    PyObject *name = PyUnicode_FromString(cmd.name);
    PyObject *fn = name ? PyCFunction_NewEx(&defs.back(), name, moduleName) : nullptr;
    Py_XDECREF(name);
    int rc = fn ? PyModule_AddObjectRef(module, cmd.name, fn) : -1;
    Py_XDECREF(fn);
    if (rc < 0) {
      Py_DECREF(moduleName);
      return false;
    }
  }
  Py_DECREF(moduleName);
  return true;
}

} // namespace

HBOScriptCommands &BoardPy::commands() { return *g_commands; }

PyMODINIT_FUNC PyInit_boardlib(void) {
  HCPProperty::LaunchMode::m_isPyMode = true;
  if (!g_commands) {
    try {
      g_commands = new HBOScriptCommands();
    } catch (const std::exception &e) {
      PyErr_Format(PyExc_ImportError, "boardlib could not open the board catalog: %s", e.what());
      return nullptr;
    }
    Py_AtExit(atExit);
  }
  HCPProperty::Utils::setPyResultHook(keepPyResult);

  PyObject *module = PyModule_Create(&g_moduleDef);
  if (!module)
    return nullptr;
  BoardPy::g_boardError =
      PyErr_NewExceptionWithDoc("boardlib.BoardError", "A board command failed; the text says why.",
                                PyExc_RuntimeError, nullptr);
  if (!BoardPy::g_boardError ||
      PyModule_AddObjectRef(module, "BoardError", BoardPy::g_boardError) < 0 ||
      PyModule_AddStringConstant(module, "__version__", HUTVersion::getVersion()) < 0 ||
      !BoardPy::createTypes(module) || !addQueryCommands(module)) {
    Py_DECREF(module);
    return nullptr;
  }
  return module;
}
