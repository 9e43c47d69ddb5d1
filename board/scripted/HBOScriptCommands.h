// The board commands of the scripting consoles, independent of any
// interpreter: the Tcl package and the Python module turn their arguments
// into these calls and the results back into interpreter values, and
// boardtool dump walks the graph through them. Every failure is an
// HCPProperty::Error whose text the script sees.
#ifndef BOARDLIB_HBOSCRIPTCOMMANDS_H
#define BOARDLIB_HBOSCRIPTCOMMANDS_H

#include "HCPProperty.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class HBOBoard;
class HBOBoardCDataManager;

class HBOScriptCommands {
public:
  using tclany = zeb::tcltasks::tclany;

  /// The options every get_* command takes.
  struct QueryOptions {
    /// Glob patterns matched against the objects' names; none matches all.
    std::vector<std::string> patterns;
    /// A filter expression over properties, empty for none.
    std::string filter;
    /// With hasOfObjects, the objects whose related objects are wanted.
    std::vector<tclany> ofObjects;
    bool hasOfObjects = false;
    /// Makes an empty result silent instead of a warning.
    bool quiet = false;
    /// Patterns and == / != in filters ignore case.
    bool nocase = false;
    /// Patterns are regular expressions, not globs.
    bool regexp = false;
  };

  /// One get_* command: its name, what it returns and its help line.
  struct QueryCommand {
    const char *name;
    const std::type_info *type;
    const char *help;
  };

  /// Registers the scripted classes (once per process) and opens a project
  /// view of the board catalog.
  HBOScriptCommands();
  ~HBOScriptCommands();
  HBOScriptCommands(const HBOScriptCommands &) = delete;
  HBOScriptCommands &operator=(const HBOScriptCommands &) = delete;

  /// The get_* commands, in the order a help listing shows them.
  static const std::vector<QueryCommand> &queryCommands();
  static const QueryCommand *findQueryCommand(const std::string &name);

  /// Runs get_boards, get_board_components, ... Without -of_objects the
  /// objects come from the catalog (get_boards) or from the current board.
  std::vector<tclany> getObjects(const std::string &command, const QueryOptions &options);

  /// get_property: false (and an empty \p out) when the object has no
  /// value; with \p quiet an unknown property is no error either. A use of a
  /// deprecated property warns with its hint.
  /// With \p interp the getter also sets the interpreter's result.
  bool getProperty(const std::string &name, const tclany &object, HATAttrAny &out,
                   bool quiet = false, Tcl_Interp *interp = nullptr);
  /// set_property on every object; nothing changes when any is refused.
  void setProperty(const std::string &name, const std::string &value,
                   const std::vector<tclany> &objects, Tcl_Interp *interp = nullptr);
  /// list_property: the names in upper case, hidden ones only with \p all.
  std::vector<std::string> listProperty(const tclany &object, bool all = false);
  /// report_property: a table of name, type, read-only and value.
  std::string reportProperty(const tclany &object, bool all = false);

  /// undo and redo: the description of what was undone; throws when there
  /// is nothing to undo or redo.
  std::string undo();
  std::string redo();

  void setParam(const std::string &name, const std::string &value);
  std::string getParam(const std::string &name);
  /// report_param: one line per parameter whose name matches the glob.
  std::string reportParam(const std::string &pattern);

  /// current_board: the current board, or an empty handle when none.
  tclany currentBoard() const;
  /// current_board NAME: makes the board of that name (any name the data
  /// manager's setBoard takes) current and returns the current board. An
  /// unknown name throws HEXError [Board 49-71] and the current board stays
  /// as it was.
  tclany setCurrentBoard(const std::string &name);
  tclany setCurrentBoard(const tclany &board);

  /// refresh_boards: reloads the user repositories (board.repoPaths) and
  /// the project's view of the catalog. Handles to user boards and their
  /// objects go stale; the current board is chosen again by its name, and
  /// an integrated current board is composed again under its name.
  void refreshBoards();

  /// get_compatible_connectors: the daughter connectors that fit the base
  /// connector \p connector, as its board's caches hold them; with
  /// \p latest only the newest version of each, in name order.
  std::vector<tclany> getCompatibleConnectors(const tclany &connector, bool latest);

  /// create_integrated_board: composes a board on the base board \p base
  /// (any name current_board takes) with each (base connector, daughter
  /// part text "vendor:board:connector:version") of \p connections, named
  /// \p name or, when it is empty, after its base and connections, and
  /// registers it as a user board of the project. A creation error is an
  /// HEXError holding its message; nothing is registered then.
  tclany createIntegratedBoard(const std::string &base, const std::string &name,
                               const std::vector<std::pair<std::string, std::string>> &connections);

  /// write_board_diagram: writes the block diagram of \p board (a board
  /// object, or a one-object list of one) to \p file as SVG, drawn with each
  /// (jumper, "true" or "false") of \p jumpers; the other jumpers keep
  /// their states. A composed board works as any other. An unknown jumper
  /// or value, or a file that cannot be written, is told as a message and
  /// then thrown.
  void writeBoardDiagram(const tclany &board, const std::string &file,
                         const std::vector<std::pair<std::string, std::string>> &jumpers);
  /// The same for the board of that name (any name current_board takes).
  void writeBoardDiagram(const std::string &board, const std::string &file,
                         const std::vector<std::pair<std::string, std::string>> &jumpers);

  /// The live objects named exactly \p name, for a console whose value lost
  /// the object it showed: a board of the catalog, else a component of a
  /// board of the catalog (both names are unique there), else any object of
  /// the current board. More than one means the name is ambiguous.
  std::vector<tclany> findObjectsByName(const std::string &name) const;

  /// The boards of the project's view of the catalog, in name order.
  std::vector<HBOBoard *> getCatalogBoards() const;

  HBOBoardCDataManager &getDataManager() { return *m_manager; }

private:
  std::unique_ptr<HBOBoardCDataManager> m_manager;
};

#endif
