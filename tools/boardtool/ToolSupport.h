// What every boardtool command shares: its record, message output as text
// or JSON, JSON writing and usage errors.
#ifndef BOARDLIB_TOOLS_TOOLSUPPORT_H
#define BOARDLIB_TOOLS_TOOLSUPPORT_H

#include "ComMsgMgr.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace boardtool {

/// Exit codes of every command.
enum ExitCode { Success = 0, Failure = 1, Usage = 2 };

class Arguments;

/// Where a command's options may stand among its operands.
enum class OptionPlace {
  Anywhere,
  /// Only before the first operand: the words after it belong to it (a
  /// script's arguments).
  BeforeOperands,
};

/// A command of the table: its name, its bit in the option table
/// (Options.h), a one-line summary, the operands that end its usage line,
/// the text that --help shows above its options and the one below them, and
/// the function that runs it with its parsed arguments (--help is handled
/// before it).
struct Command {
  const char *name;
  unsigned bit;
  const char *summary;
  const char *operands;
  const char *about;
  const char *notes;
  OptionPlace optionPlace;
  int (*run)(const Arguments &args);
};

/// Takes every message while a command runs: prints it to standard error
/// at once, or, with JSON output, writes all of them as one array when it is
/// destroyed. Counts what it took, by severity.
///
/// For a linter (\p places): a finding from a place in a file is printed
/// after its place, "FILE:LINE: " as compilers print it, and every JSON
/// object has "file" and "line" (null when unknown). Findings are counted
/// by what they do to the file, errors those that make it unusable and
/// warnings the advisory ones, whatever severity the message has; a
/// message that only sums up others (\p uncounted ids) is not counted.
/// The findings are held back until flush, which prints them in the order
/// of their places.
class MessageOutput {
public:
  explicit MessageOutput(bool json, bool places = false, std::vector<std::string> uncounted = {});
  ~MessageOutput();
  MessageOutput(const MessageOutput &) = delete;
  MessageOutput &operator=(const MessageOutput &) = delete;

  /// Errors and critical warnings since the last resetCounts.
  unsigned errors() const;
  /// Warnings since the last resetCounts.
  unsigned warnings() const;
  void resetCounts();
  /// For a linter: prints the findings held back so far, sorted by their
  /// place (the file, then the line).
  void flush();

private:
  class Sink;
  std::unique_ptr<Sink> m_sink;
};

/// The text as a JSON string literal, quotes included.
std::string jsonString(const std::string &text);

/// Makes a path absolute against the working directory, so that files
/// beside it are found whatever directory the library resolves them from.
std::string absolutePath(const std::string &path);

/// Draws "LABEL [=====     ] 120/1000" over the line on standard error; for
/// a terminal only, which the caller checks.
void drawProgress(const char *label, std::size_t done, std::size_t total);

/// Prints "boardtool <command>: <text>" and the usage hint to stderr;
/// returns Usage.
int usageError(const Command &command, const std::string &text);

} // namespace boardtool

#endif
