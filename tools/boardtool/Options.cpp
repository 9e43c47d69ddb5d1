#include "Options.h"

#include "ComMsgMgr.h"
#include "HPAParamMgr.h"
#include "HSTStringUtils.h"

#include <algorithm>
#include <stdexcept>

namespace boardtool {

namespace {

/// May be given more than once; the usage line marks it with "...".
constexpr unsigned Repeatable = 1u << 0;
/// The options end here: the words after its value are operands (tcl -e).
constexpr unsigned EndsOptions = 1u << 1;
/// Spelt by the command's operands, so the usage line leaves it out.
constexpr unsigned InOperands = 1u << 2;
/// An empty value is a value (an empty script), not a missing one.
constexpr unsigned MayBeEmpty = 1u << 3;

constexpr unsigned loading = cmd::catalog | cmd::show | cmd::dump | cmd::shell | cmd::tcl |
                             cmd::fit | cmd::compose | cmd::site | cmd::diagram;
constexpr unsigned reporting = cmd::read | cmd::check | cmd::catalog | cmd::show | cmd::dump |
                               cmd::fit | cmd::compose | cmd::migrate | cmd::site | cmd::diagram;
constexpr unsigned allButParams = reporting | cmd::shell | cmd::tcl;

} // namespace

/// One row of the table. Its help is wrapped to the width of a terminal, and
/// broken besides wherever it has a "\n"; an option without help is accepted
/// but neither in the usage line nor in the help.
struct Option {
  const char *name;
  const char *argument; // null for a flag
  unsigned commands;
  unsigned traits;
  const char *help;
};

namespace {

// The order of the rows is the order of usage lines and help: a command's
// own options, then where boards load from, then what every command takes.
const Option kOptions[] = {
    {"-e", "TEXT", cmd::tcl, EndsOptions | InOperands | MayBeEmpty,
     "run TEXT instead of a script file"},
    {"--connect", "BASECONN=VENDOR:BOARD:CONNECTOR:VERSION", cmd::compose, Repeatable,
     "plug the connector CONNECTOR of the daughter board VENDOR:BOARD:VERSION into the base "
     "board's connector BASECONN; repeatable"},
    {"--name", "NAME", cmd::compose, 0,
     "the board name of the new board; by default the base board's name followed by each "
     "connection"},
    {"-o", "FILE.svg", cmd::diagram, 0,
     "write the diagram to FILE.svg, replacing it once it is whole, instead of to standard "
     "output"},
    {"--jumper", "NAME=VALUE", cmd::diagram, Repeatable,
     "draw the board with its jumper NAME set to VALUE (true or false); repeatable"},
    {"--schema-dir", "DIR", cmd::check, 0,
     "take the DTDs from DIR instead of the data directories' boards/board_schemas/current"},
    {"--data-dir", "DIR", loading, Repeatable,
     "a data directory to load instead of the embedded one; repeatable, earlier ones win "
     "(sets BOARDLIB_DATA_DIRS)"},
    {"--repo", "PATH", loading, Repeatable,
     "a user board repository; repeatable, earlier ones win\n" // "(sets" would end the line
     "(sets board.repoPaths)"},
    {"--jobs", "N", cmd::catalog, 0, "workers for the installed boards (sets general.maxThreads)"},
    {"--json", nullptr, cmd::catalog, 0, "print a JSON array of one object per board"},
    {"--json", nullptr, cmd::dump, 0, "the output format (the only one; may be left out)"},
    {"--json", nullptr, cmd::compose, 0,
     "print the new board as 'boardtool dump --json' does, and the report on standard error"},
    {"--all", nullptr, cmd::params, 0, "also the hidden parameters"},
    {"--all", nullptr, cmd::dump, 0, "also the hidden properties"},
    {"--latest", nullptr, cmd::fit, 0, "only the latest version of each daughter connector"},
    {"--param", "NAME=VALUE", allButParams, Repeatable,
     "set a parameter first (see 'boardtool params'); repeatable"},
    // shell and tcl write messages as text lines among the script's output.
    {"--messages=json", nullptr, reporting, 0,
     "write the messages to standard error as one JSON array of objects with \"severity\", \"id\", "
     "\"key\", \"args\" and \"text\""},
    // The default, accepted so that a script may say so.
    {"--messages=text", nullptr, reporting, 0, nullptr},
    {"--debug", "SCOPE", allButParams, Repeatable,
     "switch on debug output of a scope, such as board.parse or board.findBoards ('all' "
     "for every scope); repeatable"},
};

bool takes(const Command &command, const Option &option) {
  return (option.commands & command.bit) != 0;
}

// The row of \p command for \p word: the option itself, or "--name=value"
// for an option with a value. Null when the command takes no such option.
const Option *findOption(const Command &command, const std::string &word, std::string &value,
                         bool &valueGiven) {
  for (const Option &option : kOptions) {
    if (!takes(command, option))
      continue;
    const std::string name = option.name;
    if (word == name) {
      valueGiven = false;
      return &option;
    }
    if (option.argument && name.compare(0, 2, "--") == 0 &&
        word.compare(0, name.size() + 1, name + "=") == 0) {
      value = word.substr(name.size() + 1);
      valueGiven = true;
      return &option;
    }
  }
  return nullptr;
}

std::string optionText(const Option &option) {
  return option.argument ? std::string(option.name) + " " + option.argument : option.name;
}

// --param NAME=VALUE and --debug SCOPE act while the command starts, before
// any board is read.
bool applySetting(const Option &option, const std::string &value, std::string &error) {
  const std::string name = option.name;
  if (name == "--debug") {
    ComMsgMgr::enableScope(value);
  } else if (name == "--param") {
    const std::string::size_type eq = value.find('=');
    if (eq == std::string::npos || eq == 0) {
      error = "--param takes NAME=VALUE, not '" + value + "'";
      return false;
    }
    if (!HPAParamMgr::getParamMgr().setValue(value.substr(0, eq), value.substr(eq + 1), &error))
      return false;
  }
  return true;
}

// Appends \p text to \p out in lines of at most \p width columns, each
// after \p indent blanks but the first, which follows what \p out has.
// A "\n" in the text breaks the line there.
void wrap(std::string &out, const std::string &text, std::size_t column, std::size_t indent,
          std::size_t width) {
  std::size_t start = 0;
  bool lineEmpty = true;
  while (start <= text.size()) {
    std::size_t end = text.find_first_of(" \n", start);
    if (end == std::string::npos)
      end = text.size();
    const std::string word = text.substr(start, end - start);
    if (!word.empty()) {
      if (!lineEmpty && column + 1 + word.size() > width) {
        out += "\n" + std::string(indent, ' ');
        column = indent;
        lineEmpty = true;
      }
      if (!lineEmpty) {
        out += ' ';
        ++column;
      }
      out += word;
      column += word.size();
      lineEmpty = false;
    }
    if (end < text.size() && text[end] == '\n') {
      out += "\n" + std::string(indent, ' ');
      column = indent;
      lineEmpty = true;
    }
    start = end + 1;
  }
  out += "\n";
}

} // namespace

// ---- Arguments ----

namespace {

const Option &known(const std::string &name) {
  for (const Option &option : kOptions)
    if (name == option.name)
      return option;
  throw std::logic_error("boardtool has no option '" + name + "'");
}

} // namespace

bool Arguments::has(const std::string &name) const {
  known(name);
  return std::any_of(m_given.begin(), m_given.end(),
                     [&name](const auto &given) { return name == given.first->name; });
}

std::vector<std::string> Arguments::values(const std::string &name) const {
  known(name);
  std::vector<std::string> out;
  for (const auto &given : m_given)
    if (name == given.first->name)
      out.push_back(given.second);
  return out;
}

std::string Arguments::value(const std::string &name) const {
  std::vector<std::string> all = values(name);
  return all.empty() ? std::string() : all.back();
}

bool Arguments::jsonMessages() const {
  bool json = false;
  for (const auto &given : m_given) {
    const std::string name = given.first->name;
    if (name == "--messages=json" || name == "--messages=text")
      json = name == "--messages=json";
  }
  return json;
}

bool Arguments::oneOperand(const std::string &what, std::string &operand,
                           std::string &error) const {
  if (operands.empty()) {
    error = "no " + what + " given";
    return false;
  }
  if (operands.size() > 1) {
    error = "one " + what + " only, not also '" + operands[1] + "'";
    return false;
  }
  operand = operands.front();
  return true;
}

// ---- parsing ----

bool parseArguments(const Command &command, const std::vector<std::string> &args, Arguments &out,
                    std::string &error) {
  bool optionsEnded = false;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string &word = args[i];
    const bool looksLikeOption = word.size() > 1 && word[0] == '-';
    if (optionsEnded || !looksLikeOption) {
      out.operands.push_back(word);
      if (command.optionPlace == OptionPlace::BeforeOperands) {
        out.operands.insert(out.operands.end(), args.begin() + static_cast<long>(i) + 1,
                            args.end());
        break;
      }
      continue;
    }
    if (word == "--") {
      optionsEnded = true;
      continue;
    }
    std::string value;
    bool valueGiven = false;
    const Option *option = findOption(command, word, value, valueGiven);
    if (!option) {
      std::vector<std::string> names;
      for (const Option &known : kOptions)
        if (takes(command, known))
          names.push_back(known.name);
      error = "unknown option '" + word + "'" +
              HSTStringUtils::didYouMean(word.substr(0, word.find('=')), names);
      return false;
    }
    if (option->argument && !valueGiven && i + 1 < args.size()) {
      value = args[++i];
      valueGiven = true;
    }
    if (option->argument && (!valueGiven || (value.empty() && !(option->traits & MayBeEmpty)))) {
      error = std::string(option->name) + " needs " + option->argument;
      return false;
    }
    if (!applySetting(*option, value, error))
      return false;
    out.m_given.emplace_back(option, value);
    if (option->traits & EndsOptions) {
      out.operands.insert(out.operands.end(), args.begin() + static_cast<long>(i) + 1, args.end());
      break;
    }
  }
  return true;
}

// ---- usage and help ----

std::string usageLine(const Command &command) {
  std::string line = std::string("boardtool ") + command.name;
  for (const Option &option : kOptions) {
    if (!takes(command, option) || !option.help || (option.traits & InOperands))
      continue;
    line += " [" + optionText(option) + "]";
    if (option.traits & Repeatable)
      line += "...";
  }
  if (command.operands && *command.operands)
    line += std::string(" ") + command.operands;
  return line;
}

std::string helpText(const Command &command) {
  // Option names in a column of this width, their help beside them, in
  // lines that fit a terminal of 80 columns.
  const std::size_t nameWidth = 18, helpColumn = 2 + nameWidth + 2, width = 80;
  std::string out = "usage: " + usageLine(command) + "\n\n" + command.about;
  std::string options;
  for (const Option &option : kOptions) {
    if (!takes(command, option) || !option.help)
      continue;
    std::string left = "  " + optionText(option);
    if (left.size() > helpColumn - 2)
      left += "\n" + std::string(helpColumn, ' ');
    else
      left.resize(helpColumn, ' ');
    options += left;
    wrap(options, option.help, helpColumn, helpColumn, width);
  }
  if (!options.empty())
    out += "\nOptions:\n" + options;
  if (command.notes && *command.notes)
    out += std::string("\n") + command.notes;
  return out;
}

} // namespace boardtool
