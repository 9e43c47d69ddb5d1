// boardtool params: lists the parameters that --param can set.
#include "Commands.h"
#include "HPAParamMgr.h"

#include <iomanip>
#include <iostream>

namespace boardtool {
namespace {

const char kAbout[] =
    "Lists the parameters with their kind, value and description. Parameters are set\n"
    "with --param NAME=VALUE on the other commands, or in the environment variable\n"
    "BOARDLIB_PARAMS as NAME=VALUE pairs separated by ';'.\n";

const char kNotes[] = "Exit status: 0 listed, 2 bad usage.\n";

int run(const Arguments &args) {
  if (!args.operands.empty())
    return usageError(paramsCommand, "unknown argument '" + args.operands.front() + "'");
  const bool all = args.has("--all");
  for (const HPAParam *p : HPAParamMgr::getParamMgr().listParams()) {
    if (p->isHidden() && !all)
      continue;
    std::cout << std::left << std::setw(36) << p->getName() << std::setw(8)
              << p->getKindName()
              // A blank after the value even when it is wider than its column.
              << std::setw(7) << p->getValueAsString() << ' ' << p->getDescription()
              << (p->isHidden() ? " (hidden)" : "") << "\n";
  }
  return Success;
}

} // namespace

const Command paramsCommand = {
    "params",
    cmd::params,
    "list the parameters that --param can set",
    "",
    kAbout,
    kNotes,
    OptionPlace::Anywhere,
    run,
};

} // namespace boardtool
