#include "TclCommands.h"

#include "HBOScriptCommands.h"
#include "HCPProperty.h"
#include "HEXError.h"
#include "TclHandles.h"

#include <cstring>
#include <exception>
#include <string>
#include <vector>

namespace {

using tclany = zeb::tcltasks::tclany;

void setResult(Tcl_Interp *interp, const std::string &text) {
  Tcl_SetObjResult(interp, Tcl_NewStringObj(text.c_str(), static_cast<int>(text.size())));
}

// Every failure of the library reaches the script as a Tcl error with the
// library's text; nothing escapes into the interpreter.
template <typename F> int guarded(Tcl_Interp *interp, F body) {
  try {
    return body();
  } catch (const HEXError &e) {
    // The message's id goes into errorCode too, for scripts that catch it.
    setResult(interp, e.what());
    Tcl_SetErrorCode(interp, "BOARDLIB", e.getMessage().getId().c_str(), nullptr);
    return TCL_ERROR;
  } catch (const std::exception &e) { // HCPProperty::Error among them
    setResult(interp, e.what());
  } catch (const std::string &text) {
    setResult(interp, text);
  } catch (...) {
    setResult(interp, "Unexpected internal error in the board commands.");
  }
  Tcl_SetErrorCode(interp, "BOARDLIB", "ERROR", nullptr);
  return TCL_ERROR;
}

// Output goes through the script's own puts, so that a console or a test
// harness that redirects puts sees it too.
int printOut(Tcl_Interp *interp, std::string text) {
  if (!text.empty() && text.back() == '\n')
    text.pop_back(); // puts adds it
  Tcl_Obj *cmd[2] = {Tcl_NewStringObj("puts", -1),
                     Tcl_NewStringObj(text.c_str(), static_cast<int>(text.size()))};
  for (Tcl_Obj *o : cmd)
    Tcl_IncrRefCount(o);
  int rc = Tcl_EvalObjv(interp, 2, cmd, TCL_EVAL_GLOBAL);
  for (Tcl_Obj *o : cmd)
    Tcl_DecrRefCount(o);
  if (rc == TCL_OK)
    Tcl_ResetResult(interp);
  return rc;
}

HBOScriptCommands &commandsOf(ClientData data) { return *static_cast<HBOScriptCommands *>(data); }

std::string argText(Tcl_Obj *obj) {
  int length = 0;
  const char *text = Tcl_GetStringFromObj(obj, &length);
  return std::string(text, static_cast<std::size_t>(length));
}

// A pattern argument may be a list of patterns. Split from the text, so
// that a handle passed here keeps its internal representation.
void appendPatterns(Tcl_Obj *obj, std::vector<std::string> &out) {
  std::string text = argText(obj);
  int count = 0;
  const char **items = nullptr;
  if (TclHandles::isHandle(obj) || Tcl_SplitList(nullptr, text.c_str(), &count, &items) != TCL_OK) {
    out.push_back(text);
    return;
  }
  for (int i = 0; i < count; ++i)
    out.emplace_back(items[i]);
  Tcl_Free(reinterpret_cast<char *>(items));
}

// The one object of get_property and its kin: a handle, or a list holding
// exactly one.
bool oneObject(Tcl_Interp *interp, const char *command, Tcl_Obj *obj, tclany &out) {
  std::vector<tclany> objects;
  if (!TclHandles::getHandles(interp, obj, objects))
    return false;
  if (objects.size() != 1) {
    setResult(interp, std::string(command) + " takes exactly one object, but " +
                          (objects.empty() ? std::string("none was")
                                           : std::to_string(objects.size()) + " were") +
                          " given.");
    return false;
  }
  out = objects.front();
  return true;
}

Tcl_Obj *handleList(const std::vector<tclany> &objects) {
  Tcl_Obj *list = Tcl_NewListObj(0, nullptr);
  for (const tclany &object : objects)
    Tcl_ListObjAppendElement(nullptr, list, TclHandles::newHandleObj(object));
  return list;
}

// ---- get_* ----

struct QueryClientData {
  HBOScriptCommands *commands;
  const HBOScriptCommands::QueryCommand *query;
};

std::string queryUsage(const HBOScriptCommands::QueryCommand &query) {
  return std::string(query.name) +
         " ?-quiet? ?-filter expression? ?-of_objects objects? ?-nocase? ?-regexp? ?--? ?patterns?";
}

int queryCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  const QueryClientData &cd = *static_cast<QueryClientData *>(data);
  const HBOScriptCommands::QueryCommand &query = *cd.query;
  HBOScriptCommands::QueryOptions options;
  bool optionsDone = false;
  for (int i = 1; i < objc; ++i) {
    std::string arg = argText(objv[i]);
    if (optionsDone || arg.empty() || arg[0] != '-' || TclHandles::isHandle(objv[i])) {
      appendPatterns(objv[i], options.patterns);
      continue;
    }
    if (arg == "--") {
      optionsDone = true;
    } else if (arg == "-quiet") {
      options.quiet = true;
    } else if (arg == "-nocase") {
      options.nocase = true;
    } else if (arg == "-regexp") {
      options.regexp = true;
    } else if (arg == "-help") {
      std::string text =
          std::string(query.name) + "\n  " + query.help + "\nUsage: " + queryUsage(query) +
          "\n  -quiet: no warning when nothing matches\n  -filter: keep the objects whose "
          "properties match the expression\n  -of_objects: the objects related to these\n"
          "  -nocase: patterns ignore case\n  -regexp: patterns are regular expressions\n";
      return printOut(interp, text);
    } else if (arg == "-filter" || arg == "-of_objects") {
      if (i + 1 >= objc) {
        setResult(interp, "Option " + arg + " of " + query.name +
                              " needs a value. Usage: " + queryUsage(query));
        return TCL_ERROR;
      }
      ++i;
      if (arg == "-filter") {
        options.filter = argText(objv[i]);
      } else {
        std::vector<tclany> objects;
        if (!TclHandles::getHandles(interp, objv[i], objects))
          return TCL_ERROR;
        options.ofObjects.insert(options.ofObjects.end(), objects.begin(), objects.end());
        options.hasOfObjects = true;
      }
    } else {
      setResult(interp, "Unknown option '" + arg + "' of " + query.name + ". Usage: " +
                            queryUsage(query) + " (use -- before a pattern that begins with '-').");
      return TCL_ERROR;
    }
  }
  return guarded(interp, [&] {
    std::vector<tclany> objects = cd.commands->getObjects(query.name, options);
    Tcl_SetObjResult(interp, handleList(objects));
    return TCL_OK;
  });
}

void deleteQueryClientData(ClientData data) { delete static_cast<QueryClientData *>(data); }

// What each command takes, for its errors and its -help.
namespace arguments {
constexpr char getProperty[] = "?-quiet? name object";
constexpr char setProperty[] = "name value objects";
constexpr char allAndObject[] = "?-all? object";
constexpr char setParam[] = "name value";
constexpr char getParam[] = "name";
constexpr char reportParam[] = "?pattern?";
constexpr char currentBoard[] = "?name|object?";
constexpr char compatibleConnectors[] = "?-latest? connector";
constexpr char none[] = "";
constexpr char createIntegratedBoard[] =
    "-base name ?-name name? {{base_connector vendor:board:connector:version} ...}";
constexpr char writeBoardDiagram[] = "?-jumper {name value}?... board file";
} // namespace arguments

// ---- properties ----

int getPropertyCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  bool quiet = objc >= 2 && std::strcmp(Tcl_GetString(objv[1]), "-quiet") == 0;
  if (objc != (quiet ? 4 : 3)) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::getProperty);
    return TCL_ERROR;
  }
  std::string name = argText(objv[quiet ? 2 : 1]);
  tclany object;
  if (!oneObject(interp, "get_property", objv[quiet ? 3 : 2], object))
    return TCL_ERROR;
  return guarded(interp, [&] {
    HATAttrAny value;
    commandsOf(data).getProperty(name, object, value, quiet, interp);
    Tcl_SetObjResult(interp, TclHandles::toTclObj(value));
    return TCL_OK;
  });
}

int setPropertyCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc != 4) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::setProperty);
    return TCL_ERROR;
  }
  std::string name = argText(objv[1]);
  std::string value = argText(objv[2]);
  std::vector<tclany> objects;
  if (!TclHandles::getHandles(interp, objv[3], objects))
    return TCL_ERROR;
  return guarded(interp, [&] {
    commandsOf(data).setProperty(name, value, objects, interp);
    Tcl_ResetResult(interp);
    return TCL_OK;
  });
}

// list_property and report_property: ?-all? object.
bool allAndObject(Tcl_Interp *interp, const char *command, int objc, Tcl_Obj *const objv[],
                  bool &all, tclany &object) {
  all = objc >= 2 && std::strcmp(Tcl_GetString(objv[1]), "-all") == 0;
  if (objc != (all ? 3 : 2)) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::allAndObject);
    return false;
  }
  return oneObject(interp, command, objv[all ? 2 : 1], object);
}

int listPropertyCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  bool all = false;
  tclany object;
  if (!allAndObject(interp, "list_property", objc, objv, all, object))
    return TCL_ERROR;
  return guarded(interp, [&] {
    std::vector<std::string> names = commandsOf(data).listProperty(object, all);
    Tcl_Obj *list = Tcl_NewListObj(0, nullptr);
    for (const std::string &name : names)
      Tcl_ListObjAppendElement(nullptr, list,
                               Tcl_NewStringObj(name.c_str(), static_cast<int>(name.size())));
    Tcl_SetObjResult(interp, list);
    return TCL_OK;
  });
}

int reportPropertyCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  bool all = false;
  tclany object;
  if (!allAndObject(interp, "report_property", objc, objv, all, object))
    return TCL_ERROR;
  std::string table;
  int rc = guarded(interp, [&] {
    table = commandsOf(data).reportProperty(object, all);
    return TCL_OK;
  });
  return rc == TCL_OK ? printOut(interp, table) : rc;
}

// The board object \p arg holds: itself, or the one element of a one-object
// list, as get_boards gives; null when it is anything else, such as a name.
Tcl_Obj *boardObjectOf(Tcl_Obj *arg) {
  if (TclHandles::isHandle(arg))
    return arg;
  int count = 0;
  Tcl_Obj **items = nullptr;
  if (arg->typePtr && std::strcmp(arg->typePtr->name, "list") == 0 &&
      Tcl_ListObjGetElements(nullptr, arg, &count, &items) == TCL_OK && count == 1 &&
      TclHandles::isHandle(items[0]))
    return items[0];
  return nullptr;
}

// ---- undo, parameters, current board ----

int undoRedo(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[], bool undo) {
  if (objc != 1) {
    Tcl_WrongNumArgs(interp, 1, objv, nullptr);
    return TCL_ERROR;
  }
  return guarded(interp, [&] {
    setResult(interp, undo ? commandsOf(data).undo() : commandsOf(data).redo());
    return TCL_OK;
  });
}

int undoCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  return undoRedo(data, interp, objc, objv, true);
}

int redoCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  return undoRedo(data, interp, objc, objv, false);
}

int setParamCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc != 3) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::setParam);
    return TCL_ERROR;
  }
  return guarded(interp, [&] {
    commandsOf(data).setParam(argText(objv[1]), argText(objv[2]));
    Tcl_ResetResult(interp);
    return TCL_OK;
  });
}

int getParamCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc != 2) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::getParam);
    return TCL_ERROR;
  }
  return guarded(interp, [&] {
    setResult(interp, commandsOf(data).getParam(argText(objv[1])));
    return TCL_OK;
  });
}

int reportParamCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc > 2) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::reportParam);
    return TCL_ERROR;
  }
  std::string report;
  int rc = guarded(interp, [&] {
    report = commandsOf(data).reportParam(objc == 2 ? argText(objv[1]) : std::string("*"));
    return TCL_OK;
  });
  return rc == TCL_OK ? printOut(interp, report) : rc;
}

int refreshBoardsCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc != 1) {
    Tcl_WrongNumArgs(interp, 1, objv, nullptr);
    return TCL_ERROR;
  }
  return guarded(interp, [&] {
    commandsOf(data).refreshBoards();
    Tcl_ResetResult(interp);
    return TCL_OK;
  });
}

int currentBoardCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  if (objc > 2) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::currentBoard);
    return TCL_ERROR;
  }
  HBOScriptCommands &commands = commandsOf(data);
  if (objc == 1) {
    return guarded(interp, [&] {
      tclany board = commands.currentBoard();
      Tcl_SetObjResult(interp, board.empty() ? Tcl_NewObj() : TclHandles::newHandleObj(board));
      return TCL_OK;
    });
  }
  // An object (or a one-object list, as get_boards gives) is taken as
  // itself; anything else is a name.
  Tcl_Obj *arg = objv[1];
  Tcl_Obj *single = boardObjectOf(arg);
  tclany board;
  if (single && !TclHandles::getHandle(interp, single, board))
    return TCL_ERROR;
  std::string name = argText(arg);
  return guarded(interp, [&] {
    tclany current = single ? commands.setCurrentBoard(board) : commands.setCurrentBoard(name);
    Tcl_SetObjResult(interp, current.empty() ? Tcl_NewObj() : TclHandles::newHandleObj(current));
    return TCL_OK;
  });
}

int getCompatibleConnectorsCmd(ClientData data, Tcl_Interp *interp, int objc,
                               Tcl_Obj *const objv[]) {
  bool latest = false;
  int at = 1;
  if (objc > 1 && !TclHandles::isHandle(objv[1]) && argText(objv[1]) == "-latest") {
    latest = true;
    at = 2;
  }
  if (objc != at + 1) {
    Tcl_WrongNumArgs(interp, 1, objv, arguments::compatibleConnectors);
    return TCL_ERROR;
  }
  tclany connector;
  if (!oneObject(interp, "get_compatible_connectors", objv[at], connector))
    return TCL_ERROR;
  return guarded(interp, [&] {
    Tcl_SetObjResult(interp,
                     handleList(commandsOf(data).getCompatibleConnectors(connector, latest)));
    return TCL_OK;
  });
}

// create_integrated_board -base NAME ?-name NAME? CONNECTIONS, CONNECTIONS a
// list of {BASECONN DAUGHTER_PART_TEXT} pairs.
int createIntegratedBoardCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  static const std::string usage =
      std::string("create_integrated_board ") + arguments::createIntegratedBoard;
  std::string base, name;
  bool hasBase = false;
  Tcl_Obj *connectionList = nullptr;
  for (int i = 1; i < objc; ++i) {
    const std::string arg = argText(objv[i]);
    if ((arg == "-base" || arg == "-name") && i + 1 < objc) {
      (arg == "-base" ? base : name) = argText(objv[++i]);
      hasBase = hasBase || arg == "-base";
    } else if (!connectionList && (arg.empty() || arg[0] != '-')) {
      connectionList = objv[i];
    } else {
      setResult(interp, "Wrong arguments '" + arg + "'. Usage: " + usage);
      return TCL_ERROR;
    }
  }
  if (!hasBase || !connectionList) {
    setResult(interp,
              std::string("Missing ") + (hasBase ? "connections" : "-base") + ". Usage: " + usage);
    return TCL_ERROR;
  }
  std::vector<std::pair<std::string, std::string>> connections;
  int count = 0;
  Tcl_Obj **items = nullptr;
  if (Tcl_ListObjGetElements(interp, connectionList, &count, &items) != TCL_OK)
    return TCL_ERROR;
  for (int i = 0; i < count; ++i) {
    int size = 0;
    Tcl_Obj **pair = nullptr;
    if (Tcl_ListObjGetElements(interp, items[i], &size, &pair) != TCL_OK)
      return TCL_ERROR;
    if (size != 2) {
      setResult(interp, "Each connection is a pair {base_connector daughter_part}, not '" +
                            argText(items[i]) + "'. Usage: " + usage);
      return TCL_ERROR;
    }
    connections.emplace_back(argText(pair[0]), argText(pair[1]));
  }
  return guarded(interp, [&] {
    tclany board = commandsOf(data).createIntegratedBoard(base, name, connections);
    Tcl_SetObjResult(interp, TclHandles::newHandleObj(board));
    return TCL_OK;
  });
}

// write_board_diagram ?-jumper {NAME VALUE}?... board file: the board is an
// object, a one-object list, or a name.
int writeBoardDiagramCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  static const std::string usage =
      std::string("write_board_diagram ") + arguments::writeBoardDiagram;
  std::vector<std::pair<std::string, std::string>> jumpers;
  int at = 1;
  while (at < objc && !TclHandles::isHandle(objv[at]) && argText(objv[at]) == "-jumper") {
    if (at + 1 >= objc) {
      setResult(interp, "Missing {name value} after -jumper. Usage: " + usage);
      return TCL_ERROR;
    }
    int size = 0;
    Tcl_Obj **pair = nullptr;
    if (Tcl_ListObjGetElements(interp, objv[at + 1], &size, &pair) != TCL_OK)
      return TCL_ERROR;
    if (size != 2) {
      setResult(interp, "-jumper takes a pair {name value}, not '" + argText(objv[at + 1]) +
                            "'. Usage: " + usage);
      return TCL_ERROR;
    }
    jumpers.emplace_back(argText(pair[0]), argText(pair[1]));
    at += 2;
  }
  if (objc - at != 2) {
    setResult(interp, "Wrong arguments. Usage: " + usage);
    return TCL_ERROR;
  }
  Tcl_Obj *arg = objv[at];
  Tcl_Obj *single = boardObjectOf(arg);
  tclany board;
  if (single && !TclHandles::getHandle(interp, single, board))
    return TCL_ERROR;
  const std::string file = argText(objv[at + 1]);
  return guarded(interp, [&] {
    if (single)
      commandsOf(data).writeBoardDiagram(board, file, jumpers);
    else
      commandsOf(data).writeBoardDiagram(argText(arg), file, jumpers);
    Tcl_ResetResult(interp);
    return TCL_OK;
  });
}

struct PlainCommand {
  const char *name;
  Tcl_ObjCmdProc *proc;
  const char *summary;
  const char *arguments;
};

const PlainCommand kPlainCommands[] = {
    {"get_property", &getPropertyCmd, "the value of a property of an object",
     arguments::getProperty},
    {"set_property", &setPropertyCmd, "set a property of objects (undo takes it back)",
     arguments::setProperty},
    {"list_property", &listPropertyCmd, "the names of an object's properties",
     arguments::allAndObject},
    {"report_property", &reportPropertyCmd, "print an object's properties with types and values",
     arguments::allAndObject},
    {"undo", &undoCmd, "take back the last set_property", arguments::none},
    {"redo", &redoCmd, "do again what undo took back", arguments::none},
    {"set_param", &setParamCmd, "set a parameter", arguments::setParam},
    {"get_param", &getParamCmd, "the value of a parameter", arguments::getParam},
    {"report_param", &reportParamCmd, "print parameters with their values and descriptions",
     arguments::reportParam},
    {"current_board", &currentBoardCmd, "the current board, or make a board current",
     arguments::currentBoard},
    {"refresh_boards", &refreshBoardsCmd, "load the catalog again", arguments::none},
    {"get_compatible_connectors", &getCompatibleConnectorsCmd,
     "the daughter connectors that fit a connector", arguments::compatibleConnectors},
    {"create_integrated_board", &createIntegratedBoardCmd,
     "compose a base board and daughter boards into one", arguments::createIntegratedBoard},
    {"write_board_diagram", &writeBoardDiagramCmd,
     "write the block diagram of a board as an SVG file", arguments::writeBoardDiagram},
};

struct PlainClientData {
  HBOScriptCommands *commands;
  const PlainCommand *command;
};

// Every command answers -help alone with what it does and takes, before
// its own reading of the arguments sees it.
int plainCmd(ClientData data, Tcl_Interp *interp, int objc, Tcl_Obj *const objv[]) {
  const PlainClientData &cd = *static_cast<PlainClientData *>(data);
  if (objc == 2 && !TclHandles::isHandle(objv[1]) && argText(objv[1]) == "-help") {
    std::string usage = cd.command->name;
    if (*cd.command->arguments)
      usage += std::string(" ") + cd.command->arguments;
    return printOut(interp, std::string(cd.command->name) + "\n  " + cd.command->summary +
                                "\nUsage: " + usage + "\n");
  }
  return cd.command->proc(cd.commands, interp, objc, objv);
}

void deletePlainClientData(ClientData data) { delete static_cast<PlainClientData *>(data); }

} // namespace

std::vector<std::pair<std::string, std::string>> TclCommands::summaries() {
  std::vector<std::pair<std::string, std::string>> out;
  for (const HBOScriptCommands::QueryCommand &query : HBOScriptCommands::queryCommands())
    out.emplace_back(query.name, query.help);
  for (const PlainCommand &command : kPlainCommands)
    out.emplace_back(command.name, command.summary);
  return out;
}

void TclCommands::createAll(Tcl_Interp *interp, HBOScriptCommands &commands) {
  for (const HBOScriptCommands::QueryCommand &query : HBOScriptCommands::queryCommands())
    Tcl_CreateObjCommand(interp, query.name, &queryCmd, new QueryClientData{&commands, &query},
                         &deleteQueryClientData);
  for (const PlainCommand &command : kPlainCommands)
    Tcl_CreateObjCommand(interp, command.name, &plainCmd, new PlainClientData{&commands, &command},
                         &deletePlainClientData);
}
