#include "HBOLibInit.h"

#include "HPAParamMgr.h"

#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

void registerHiddenBool(HPAParamMgr &mgr, const char *name, const char *description, bool def) {
  mgr.registerBoolParam(name, description, def);
  mgr.setHidden(name, true);
}

// The visible parameters first; the hidden ones are switches for developers
// and support, not meant for users.
void registerBoardParam() {
  HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  mgr.registerBoolParam("board.enableSchemaV2",
                        "Allows board data model to work on board schema 2.0", true);
  // Needs board.enableSchemaV2 as well; the description says so and nothing
  // enforces it.
  mgr.registerBoolParam("board.enableBoardIntegratorSupport",
                        "Allows board data model to work on board integrator functionality & tcl "
                        "commands, board 2.0 must be enabled as well.",
                        false);
  mgr.registerBoolParam("board.enableFMCDaughterBoardSupport", "Enable FMC Daughterboard Support.",
                        true);
  mgr.registerStringParam(
      "board.repoPaths",
      "Used to provide access to board part repositories during project creation.", "");
  mgr.registerBoolParam("board.enableDiffCommand", "Enable beta command board::diff_board.", false);
  mgr.registerStringParam(
      "project.boardPartRepoPaths",
      "Used to provide access to board part repositories during project creation.", "");

  registerHiddenBool(mgr, "board.enable2020Checks",
                     "Applies the strict checks of schema 2.2 to boards of older schemas too, "
                     "when board.validateXML is true",
                     false);
  registerHiddenBool(mgr, "board.usePre2019Dot2Mode",
                     "Revert to legacy behavior of ignoring several I/O port constraint types "
                     "that can appear a board file.",
                     false);
  registerHiddenBool(mgr, "board.dataProps.stubData",
                     "Use stub data rather than the values in the XML file for BOARD_DATA_PROPS.",
                     false);
  registerHiddenBool(mgr, "board.dataProps.enableTclProps",
                     "Make board_data_props available as Tcl properties on the board object.",
                     true);
  registerHiddenBool(mgr, "board.debugMemory", "Turn on debug output", false);
  registerHiddenBool(mgr, "board.debugBoardRepo", "Turn on debug output for board repo", false);
}

// Runs init_lib while the library is being loaded, so that the parameters
// exist before any caller can reach the library's code.
struct LibInitialiser {
  LibInitialiser() { init_lib(); }
};
LibInitialiser s_libInitialiser;

} // namespace

void init_lib() {
  registerBoardParam();

  const char *settings = std::getenv("BOARDLIB_PARAMS");
  if (!settings)
    return;
  std::vector<std::string> errors;
  HPAParamMgr::getParamMgr().applySettings(settings, &errors);
  for (const std::string &error : errors)
    std::cerr << "WARNING: BOARDLIB_PARAMS: " << error << std::endl;
}
