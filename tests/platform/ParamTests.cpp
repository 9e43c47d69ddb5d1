#include "HPAParamMgr.h"

#include <gtest/gtest.h>

// Parameters live for the whole process, so every test registers names of
// its own.

TEST(Params, KindsAndDefaults) {
  HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  mgr.registerBoolParam("test.kinds.flag", "a flag", true);
  mgr.registerIntParam("test.kinds.count", "a count", -3);
  mgr.registerStringParam("test.kinds.text", "a text", "a b");

  const HPAParam *flag = mgr.findParam("test.kinds.flag");
  ASSERT_NE(flag, nullptr);
  EXPECT_EQ(flag->getKind(), HPAParam::Bool);
  EXPECT_STREQ(flag->getKindName(), "bool");
  EXPECT_EQ(flag->getDefault(), "true");
  EXPECT_TRUE(mgr.getValueAsBool("test.kinds.flag"));
  EXPECT_EQ(mgr.getValueAsInt("test.kinds.count"), -3);
  EXPECT_EQ(mgr.getValueAsString("test.kinds.text"), "a b");
  EXPECT_STREQ(mgr.findParam("test.kinds.count")->getKindName(), "int");

  EXPECT_EQ(mgr.findParam("test.kinds.none"), nullptr);
  EXPECT_FALSE(mgr.paramExists("test.kinds.none"));
  EXPECT_FALSE(mgr.getValueAsBool("test.kinds.none"));
  EXPECT_EQ(mgr.getValueAsInt("test.kinds.none"), 0);
  EXPECT_EQ(mgr.getValueAsString("test.kinds.none"), "");
}

TEST(Params, BooleanSpellings) {
  HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  mgr.registerBoolParam("test.bool.value", "", false);
  for (const char *yes : {"true", "TRUE", " yes ", "On", "1"}) {
    ASSERT_TRUE(mgr.setValue("test.bool.value", "false"));
    EXPECT_TRUE(mgr.setValue("test.bool.value", yes)) << yes;
    EXPECT_EQ(mgr.getValueAsString("test.bool.value"), "true") << yes;
  }
  for (const char *no : {"false", "No", "OFF", "0", "\tfalse\n"}) {
    ASSERT_TRUE(mgr.setValue("test.bool.value", "true"));
    EXPECT_TRUE(mgr.setValue("test.bool.value", no)) << no;
    EXPECT_FALSE(mgr.getValueAsBool("test.bool.value")) << no;
  }
}

TEST(Params, BadValuesAreRefusedAndLeaveTheValue) {
  HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  mgr.registerBoolParam("test.bad.flag", "", true);
  mgr.registerIntParam("test.bad.count", "", 4);
  for (const char *bad : {"", "2", "truth", "y"}) {
    std::string error;
    EXPECT_FALSE(mgr.setValue("test.bad.flag", bad, &error)) << bad;
    EXPECT_NE(error.find("test.bad.flag"), std::string::npos) << error;
  }
  EXPECT_TRUE(mgr.getValueAsBool("test.bad.flag"));
  for (const char *bad : {"", "  ", "12abc", "1.5", "0x10", "99999999999999999999"}) {
    EXPECT_FALSE(mgr.setValue("test.bad.count", bad)) << bad;
  }
  EXPECT_EQ(mgr.getValueAsInt("test.bad.count"), 4);
  EXPECT_TRUE(mgr.setValue("test.bad.count", " -7 "));
  EXPECT_EQ(mgr.getValueAsString("test.bad.count"), "-7");

  std::string error;
  EXPECT_FALSE(mgr.setValue("test.bad.unknown", "1", &error));
  EXPECT_NE(error.find("unknown"), std::string::npos);
  EXPECT_FALSE(mgr.setValue("test.bad.unknown", "1")); // no error text wanted
}

TEST(Params, ApplySettingsKeepsGoodEntriesAndReportsBadOnes) {
  HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  mgr.registerBoolParam("test.apply.flag", "", false);
  mgr.registerIntParam("test.apply.count", "", 1);
  mgr.registerStringParam("test.apply.text", "", "x");
  std::vector<std::string> errors;
  mgr.applySettings(" test.apply.flag = yes ;\n"
                    "noequals;"
                    "=value;"
                    "test.apply.count=many;"
                    "test.apply.missing=1\n"
                    "test.apply.text=a=b c;;",
                    &errors);
  EXPECT_TRUE(mgr.getValueAsBool("test.apply.flag"));
  EXPECT_EQ(mgr.getValueAsInt("test.apply.count"), 1);
  EXPECT_EQ(mgr.getValueAsString("test.apply.text"), "a=b c");
  ASSERT_EQ(errors.size(), 4u);
  EXPECT_NE(errors[0].find("noequals"), std::string::npos);
  EXPECT_NE(errors[2].find("many"), std::string::npos);
  EXPECT_NE(errors[3].find("test.apply.missing"), std::string::npos);

  mgr.applySettings("test.apply.count=5;oops", nullptr); // no error list: no crash
  EXPECT_EQ(mgr.getValueAsInt("test.apply.count"), 5);
}

TEST(Params, HiddenFlagResetAndReregistration) {
  HPAParamMgr &mgr = HPAParamMgr::getParamMgr();
  mgr.registerIntParam("test.rereg.count", "old", 2);
  mgr.setHidden("test.rereg.count", true);
  EXPECT_TRUE(mgr.findParam("test.rereg.count")->isHidden());
  mgr.setHidden("test.rereg.nothing", true); // unknown: ignored

  // A value set by the user survives a second registration; the default
  // and description are renewed.
  ASSERT_TRUE(mgr.setValue("test.rereg.count", "9"));
  mgr.registerIntParam("test.rereg.count", "new", 3);
  const HPAParam *p = mgr.findParam("test.rereg.count");
  EXPECT_EQ(p->getValueAsInt(), 9);
  EXPECT_EQ(p->getDefault(), "3");
  EXPECT_EQ(p->getDescription(), "new");
  EXPECT_TRUE(mgr.resetValue("test.rereg.count"));
  EXPECT_EQ(p->getValueAsInt(), 3);
  EXPECT_FALSE(mgr.resetValue("test.rereg.nothing"));

  // An untouched value follows the new default.
  mgr.registerIntParam("test.rereg.count", "newer", 4);
  EXPECT_EQ(p->getValueAsInt(), 4);
}
