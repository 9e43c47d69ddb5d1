// The options of boardtool's commands, in one table: each option with its
// argument, its help and the commands that take it. Every command's usage
// line and the options part of its help are made from the table, and every
// command's arguments are parsed through it, so that an option is spelt,
// explained and read alike by all the commands that take it.
#ifndef BOARDLIB_TOOLS_OPTIONS_H
#define BOARDLIB_TOOLS_OPTIONS_H

#include "ToolSupport.h"

#include <string>
#include <utility>
#include <vector>

namespace boardtool {

/// The commands as bits, so that a row of the table names those that take
/// its option.
namespace cmd {
constexpr unsigned read = 1u << 0;
constexpr unsigned check = 1u << 1;
constexpr unsigned params = 1u << 2;
constexpr unsigned catalog = 1u << 3;
constexpr unsigned show = 1u << 4;
constexpr unsigned dump = 1u << 5;
constexpr unsigned shell = 1u << 6;
constexpr unsigned tcl = 1u << 7;
constexpr unsigned compose = 1u << 8;
constexpr unsigned fit = 1u << 9;
constexpr unsigned migrate = 1u << 10;
constexpr unsigned site = 1u << 11;
constexpr unsigned diagram = 1u << 12;
} // namespace cmd

struct Option;

/// What a command was given: its options in the order given, and its
/// operands. Options are asked for by name; a name that no row of the table
/// has is a slip of the code and throws std::logic_error.
class Arguments {
public:
  /// Whether the option was given.
  bool has(const std::string &name) const;
  /// The value of each time the option was given, in order.
  std::vector<std::string> values(const std::string &name) const;
  /// The value it was given last; empty when it was not given.
  std::string value(const std::string &name) const;
  /// Whether messages are to be written as JSON (--messages=json given after
  /// any --messages=text).
  bool jsonMessages() const;
  /// The one operand of a command that takes exactly one, \p what it is
  /// ("base board"); false, with \p error set, when there is none or more.
  bool oneOperand(const std::string &what, std::string &operand, std::string &error) const;

  /// The words that are no options, in order; for a command whose options
  /// end at its first operand, or after an option that ends them (tcl -e),
  /// also every word after that.
  std::vector<std::string> operands;

private:
  friend bool parseArguments(const Command &, const std::vector<std::string> &, Arguments &,
                             std::string &);
  std::vector<std::pair<const Option *, std::string>> m_given;
};

/// Parses \p args, the words after the command's name, into \p out, and
/// applies the settings that must come before anything else: --param sets
/// its parameter, --debug switches on its scope. False, with \p error set,
/// for an option the command does not take, a missing value or a setting
/// that does not apply.
bool parseArguments(const Command &command, const std::vector<std::string> &args, Arguments &out,
                    std::string &error);

/// "boardtool NAME [OPTION]... OPERANDS": the options the command takes, in
/// the order of the table, then its operands.
std::string usageLine(const Command &command);

/// What --help shows: the usage line, the command's description, its
/// options with their help, and its notes.
std::string helpText(const Command &command);

} // namespace boardtool

#endif
