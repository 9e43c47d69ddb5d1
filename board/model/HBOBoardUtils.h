// Free functions that every board layer calls: version comparison, the
// conversions between the names of a board, a small Tcl-list reader and
// writer, and the schema switches. Stateless and safe from any thread.
#ifndef BOARDLIB_HBOBOARDUTILS_H
#define BOARDLIB_HBOBOARDUTILS_H

#include <string>
#include <vector>

class HBOBoard;
class HBOBoardComponent;
class HBOBusIf;
class HBOModelPort;

namespace HBOBoardUtils {

/// The directory separator, "/".
std::string getDirSeparator();
/// The argument, or an empty text when it is null.
const char *valueOrEmpty(const char *text);
/// Changes the working directory; the system call's status as it is.
int changeDir(const std::string &dir);
/// 0 with the working directory in \p out; 1 when it cannot be read.
int getCurrDir(std::string &out);

/// The parameter "board.enableSchemaV2"; false when it does not exist.
bool isV2SchemaEnabled();
/// The parameter "board.enableBoardIntegratorSupport"; false when absent.
bool isBoardIntegraterSupportEnabled();

/// The version comparison behind every latest-version decision: negative, 0
/// or positive. Only the first two dot-separated fields count, each as the
/// sum of its digits; non-numbered strings sort as text, below numbered ones.
int version_compare(std::string a, std::string b);
/// Comparison of schema versions by positional numbers, field by field.
bool isEqualOrGreater(std::string a, std::string b);

/// The elements with \p separator between them.
std::string join(std::vector<std::string> items, std::string separator);
/// The user repository paths from the parameters; false when none apply.
bool getUserRepoPathFromParam(std::string &out);
/// Elements joined by blanks; one holding white space is wrapped in braces.
std::string asTclSpaceSeparatedStr(std::vector<std::string> items);
/// A small reader of brace-grouped lists, without nesting or escapes.
std::vector<std::string> parseTclList(std::string text);
/// Each line of \p text behind \p count blanks.
std::string indent(const std::string &text, unsigned count);
/// Debug trace of what happens to particular boards.
void DumpDebugStr(const std::string &param, const std::string &label, const HBOBoard *board);
/// The fixed list of parameters that board files may carry, as
/// "name:element path:description".
void getBoardFileParamList(std::vector<std::string> &out);

/// "vendor:board:component:version" to "component".
std::string getBoardPartNameFromVLNV(std::string name);
/// The board name field of a board or board part name.
std::string getBoardNameFromBoardPart(std::string name);
/// "vendor:board:component:version" to "vendor:board:version".
std::string getBoardVNVFromBoardPart(std::string name);

/// Whether a board's schema version is "2.0" or above.
bool isSchema20OrGreater(const HBOBoard *board);
/// Whether the object belongs to a board of schema 2; false for null at any step.
bool isV2SchemaBoard(const HBOBoard *board);
bool isV2SchemaBoard(const HBOBoardComponent *component);
bool isV2SchemaBoard(const HBOBusIf *busIf);
bool isV2SchemaBoard(const HBOModelPort *port);

} // namespace HBOBoardUtils

#endif
