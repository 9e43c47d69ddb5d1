#include "HBOLibInit.h"

#include "ComMsgMgr.h"
#include "HBOBoardUtils.h"
#include "HPAParamMgr.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Expected {
  const char *name;
  HPAParam::Kind kind;
  const char *def;
  bool hidden;
};

const Expected kParams[] = {
    {"board.enableSchemaV2", HPAParam::Bool, "true", false},
    {"board.enableBoardIntegratorSupport", HPAParam::Bool, "false", false},
    {"board.enableFMCDaughterBoardSupport", HPAParam::Bool, "true", false},
    {"board.repoPaths", HPAParam::String, "", false},
    {"board.enableDiffCommand", HPAParam::Bool, "false", false},
    {"project.boardPartRepoPaths", HPAParam::String, "", false},
    {"board.enable2020Checks", HPAParam::Bool, "false", true},
    {"board.usePre2019Dot2Mode", HPAParam::Bool, "false", true},
    {"board.dataProps.stubData", HPAParam::Bool, "false", true},
    {"board.dataProps.enableTclProps", HPAParam::Bool, "true", true},
    {"board.debugMemory", HPAParam::Bool, "false", true},
    {"board.debugBoardRepo", HPAParam::Bool, "false", true},
};

// Each test starts and ends with every board parameter at its default.
class BoardParams : public ::testing::Test {
protected:
  void SetUp() override { resetAll(); }
  void TearDown() override { resetAll(); }
  static void resetAll() {
    for (const Expected &p : kParams)
      HPAParamMgr::getParamMgr().resetValue(p.name);
  }
  static void set(const char *name, const char *value) {
    std::string error;
    ASSERT_TRUE(HPAParamMgr::getParamMgr().setValue(name, value, &error)) << error;
  }
};

} // namespace

// No explicit call: the library's load must have registered them.
TEST_F(BoardParams, RegisteredAtLoadWithKindsDefaultsAndHiddenFlags) {
  for (const Expected &p : kParams) {
    const HPAParam *param = HPAParamMgr::getParamMgr().findParam(p.name);
    ASSERT_NE(param, nullptr) << p.name;
    EXPECT_EQ(param->getKind(), p.kind) << p.name;
    EXPECT_EQ(param->getDefault(), p.def) << p.name;
    EXPECT_EQ(param->isHidden(), p.hidden) << p.name;
    EXPECT_FALSE(param->getDescription().empty()) << p.name;
  }
  const HPAParam *integrator =
      HPAParamMgr::getParamMgr().findParam("board.enableBoardIntegratorSupport");
  EXPECT_EQ(integrator->getDescription(),
            "Allows board data model to work on board integrator functionality & tcl commands, "
            "board 2.0 must be enabled as well.");
  EXPECT_EQ(HPAParamMgr::getParamMgr().findParam("board.usePre2019Dot2Mode")->getDescription(),
            "Revert to legacy behavior of ignoring several I/O port constraint types that can "
            "appear a board file.");
}

TEST_F(BoardParams, SwitchesAndRepoPaths) {
  EXPECT_TRUE(HBOBoardUtils::isV2SchemaEnabled());
  set("board.enableSchemaV2", "false");
  set("board.enableBoardIntegratorSupport", "true");
  EXPECT_FALSE(HBOBoardUtils::isV2SchemaEnabled());
  // Nothing ties the integrator switch to the schema switch.
  EXPECT_TRUE(HBOBoardUtils::isBoardIntegraterSupportEnabled());

  std::string out = "old";
  EXPECT_TRUE(HBOBoardUtils::getUserRepoPathFromParam(out));
  EXPECT_EQ(out, "");

  set("board.repoPaths", "/a {/b c}");
  EXPECT_TRUE(HBOBoardUtils::getUserRepoPathFromParam(out));
  EXPECT_EQ(out, "/a {/b c}");

  // The project-level setting is refused with an error, and wins over the other.
  test::MessageRecorder recorder;
  set("project.boardPartRepoPaths", "/p");
  out = "kept";
  EXPECT_FALSE(HBOBoardUtils::getUserRepoPathFromParam(out));
  EXPECT_EQ(out, "kept");
  ASSERT_EQ(recorder.records.size(), 1u);
  EXPECT_EQ(recorder.records[0].key, "@49-73@");
  EXPECT_EQ(recorder.records[0].severity, ComMsg::Error);
}

TEST_F(BoardParams, EnvironmentSettingsAreApplied) {
  set("board.repoPaths", "/set/by/script");
  std::string err;
  {
    test::EnvScope settings("BOARDLIB_PARAMS", "board.debugMemory=true; no.such.param=1");
    testing::internal::CaptureStderr();
    init_lib();
    err = testing::internal::GetCapturedStderr();
  }

  EXPECT_TRUE(HPAParamMgr::getParamMgr().getValueAsBool("board.debugMemory"));
  EXPECT_NE(err.find("WARNING: BOARDLIB_PARAMS: "), std::string::npos) << err;
  EXPECT_NE(err.find("no.such.param"), std::string::npos) << err;
  // Registering again keeps a value set in the meantime, and the flags.
  EXPECT_EQ(HPAParamMgr::getParamMgr().getValueAsString("board.repoPaths"), "/set/by/script");
  EXPECT_TRUE(HPAParamMgr::getParamMgr().findParam("board.debugBoardRepo")->isHidden());
}
