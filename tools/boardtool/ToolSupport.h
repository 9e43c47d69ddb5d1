// What every boardtool command shares: the options common to all commands,
// message output as text or JSON, and JSON writing.
#ifndef BOARDLIB_TOOLS_TOOLSUPPORT_H
#define BOARDLIB_TOOLS_TOOLSUPPORT_H

#include "ComMsgMgr.h"

#include <memory>
#include <string>
#include <vector>

namespace boardtool {

/// Exit codes of every command.
enum ExitCode { Success = 0, Failure = 1, Usage = 2 };

/// A command of the table: its name, a one-line summary, its usage line,
/// the text that --help shows under it, and the function that runs it with
/// the arguments after the command's name (--help is handled before it).
struct Command {
  const char *name;
  const char *summary;
  const char *usage;
  const char *help;
  int (*run)(const std::vector<std::string> &args);
};

/// Options that every command takes. parse() consumes them from \p args and
/// leaves the rest in order.
struct CommonOptions {
  bool jsonMessages = false;
  std::vector<std::string> positional;

  /// False, with \p error set, for a malformed or unknown option.
  bool parse(const std::vector<std::string> &args, std::string &error,
             const std::vector<std::string> &extraFlags = {});
  /// Flags of \p extraFlags that were given.
  std::vector<std::string> flags;
  bool hasFlag(const std::string &flag) const;
};

/// Takes every message while a command runs: prints it to standard error
/// at once, or, with JSON output, writes all of them as one array when it is
/// destroyed. Counts what it took, by severity.
class MessageOutput {
public:
  explicit MessageOutput(bool json);
  ~MessageOutput();
  MessageOutput(const MessageOutput &) = delete;
  MessageOutput &operator=(const MessageOutput &) = delete;

  /// Errors and critical warnings since the last resetCounts.
  unsigned errors() const;
  /// Warnings since the last resetCounts.
  unsigned warnings() const;
  void resetCounts();

private:
  class Sink;
  std::unique_ptr<Sink> m_sink;
};

/// The text as a JSON string literal, quotes included.
std::string jsonString(const std::string &text);

/// Makes a path absolute against the working directory, so that files
/// beside it are found whatever directory the library resolves them from.
std::string absolutePath(const std::string &path);

/// Prints "boardtool <command>: <text>" and the usage hint to stderr;
/// returns Usage.
int usageError(const Command &command, const std::string &text);

} // namespace boardtool

#endif
