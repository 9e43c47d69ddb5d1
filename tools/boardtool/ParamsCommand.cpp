// boardtool params: lists the parameters that --param can set.
#include "Commands.h"
#include "HPAParamMgr.h"

#include <iomanip>
#include <iostream>

namespace boardtool {
namespace {

const char kHelp[] =
    "Lists the parameters with their kind, value and description.\n"
    "Hidden parameters are listed only with --all. Parameters are set with\n"
    "--param NAME=VALUE on any command, or in the environment variable\n"
    "BOARDLIB_PARAMS as NAME=VALUE pairs separated by ';'.\n";

int run(const std::vector<std::string> &args) {
  bool all = false;
  for (const std::string &a : args) {
    if (a == "--all")
      all = true;
    else
      return usageError(paramsCommand, "unknown argument '" + a + "'");
  }
  for (const HPAParam *p : HPAParamMgr::getParamMgr().listParams()) {
    if (p->isHidden() && !all)
      continue;
    std::cout << std::left << std::setw(36) << p->getName() << std::setw(8) << p->getKindName()
              << std::setw(8) << p->getValueAsString() << p->getDescription()
              << (p->isHidden() ? " (hidden)" : "") << "\n";
  }
  return Success;
}

} // namespace

const Command paramsCommand = {"params", "list the parameters that --param can set",
                               "boardtool params [--all]", kHelp, run};

} // namespace boardtool
