// Modes, preferences, presets, connections, leaf records, power rails and
// data properties.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardCompMuxPosition.h"
#include "HBOBoardComponent.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBoardDataProps.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HBOPowerRail.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

#include <sstream>

TEST(ModelMode, InterfacesByOrderAndRequiredOnes) {
  HBOComponentMode mode;
  EXPECT_EQ(mode.getIsEnabled(), "true");
  EXPECT_EQ(mode.getEnablementDependency(), "");
  mode.addInterface(2, {"ddr", true});
  mode.addInterface(1, {"clk", true});
  mode.addInterface(1, {"clk2", false});
  HBOComponentMode::InterfaceMap all{{9, {"stale", false}}};
  mode.getInterfaces(all);
  ASSERT_EQ(all.size(), 2u);
  EXPECT_EQ(all.at(1).first, "clk2");

  HBOComponentMode::InterfaceMap required{{9, {"stale", false}}};
  mode.getRequiredInterfaces(required);
  EXPECT_EQ(required.size(), 1u);
  mode.addInterface(1, {"clk2", true});
  mode.getRequiredInterfaces(required);
  EXPECT_TRUE(required.empty());

  auto *preference = new HBOBusIfPreference();
  preference->setDefaultIpVlnv("v:l:ip:1.0");
  mode.addPreferredIp(preference);
  mode.setName("m");
  testing::internal::CaptureStdout();
  mode.display(0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "ComponentMode - Name: m, Description: \n--Interfaces:\n"
            "----Interface - Name: clk2 Index: 1, Optional: true\n"
            "----Interface - Name: ddr Index: 2, Optional: true\n--Preferred IPs:\n"
            "----Preferred IP - VLNV: v:l:ip:1.0, preset_proc: , preset_file: \n"
            "--Enablement Dependencies: \n");
}

TEST(ModelPreference, GroupsAndTheStub) {
  HBOBoard board;
  board.setIpPreset("proc", {});
  HBOBusIfPreference preference;
  preference.setOwner(&board);
  EXPECT_TRUE(preference.setMajorGroup("Memory"));
  EXPECT_FALSE(preference.setMajorGroup(""));
  EXPECT_EQ(preference.getMajorGroup(), "Memory");
  EXPECT_TRUE(preference.setMinorGroup("DDR"));
  EXPECT_TRUE(preference.setMinorGroup(""));
  EXPECT_EQ(preference.getMinorGroup(), "");
  std::string value = "untouched";
  EXPECT_FALSE(preference.getParamValue("proc", "ip", value));
  EXPECT_EQ(value, "untouched");
  HBOBusIfPreference orphan;
  EXPECT_FALSE(orphan.getParamValue("", "", value));
}

TEST(ModelPreset, KindsCompareIgnoringCase) {
  HBOIpPreset preset;
  EXPECT_TRUE(preset.isPreset());
  EXPECT_FALSE(preset.isAssocIntf());
  preset.setPresetorAssocIntf("ASSOC_Intf");
  EXPECT_TRUE(preset.isAssocIntf());
  EXPECT_FALSE(preset.isPreset());
  preset.setPresetorAssocIntf("other");
  EXPECT_FALSE(preset.isAssocIntf());
  EXPECT_FALSE(preset.isPreset());
}

TEST(ModelPreset, CsvValuesResolveBesideTheBoardFileWhenPresent) {
  modeltest::ScratchDir dir;
  dir.write("table.csv", "a,b\n");
  HBOBoard board;
  board.setBoardFile(dir.path() + "/board.xml");
  HBOIpPreset preset;
  preset.setOwner(&board);

  EXPECT_FALSE(preset.setParam("", "x"));
  EXPECT_TRUE(preset.setParam("table", "table.csv"));
  std::string value;
  EXPECT_TRUE(preset.getParamValue("table", value));
  EXPECT_EQ(value, dir.path() + "/table.csv");

  preset.setParam("missing", "missing.csv");
  preset.getParamValue("missing", value);
  EXPECT_EQ(value, "missing.csv");
  preset.setParam("upper", "table.CSV");
  preset.getParamValue("upper", value);
  EXPECT_EQ(value, "table.CSV");
  preset.setParam("dir", "sub/table.csv");
  preset.getParamValue("dir", value);
  EXPECT_EQ(value, "sub/table.csv");
  preset.setParam("short", "csv");
  preset.getParamValue("short", value);
  EXPECT_EQ(value, "csv");
  preset.setParam("table", "plain");
  preset.getParamValue("table", value);
  EXPECT_EQ(value, "plain");
  value = "untouched";
  EXPECT_FALSE(preset.getParamValue("nothing", value));
  EXPECT_EQ(value, "untouched");
}

TEST(ModelConnection, BusComponentsAndNetPins) {
  HBOBoardBus bus;
  EXPECT_EQ(bus.getIsEnabled(), "true");
  bus.setComp1("fpga");
  bus.setComp2("gone");
  std::vector<HBOBoardComponent *> components{nullptr};
  bus.getBusComponentsVec(components);
  EXPECT_TRUE(components.empty());

  HBOBoard board;
  auto *fpga = new HBOBoardComponent();
  fpga->setComponentName("fpga");
  auto *pin = new HBOPinProps();
  pin->setName("A1");
  pin->setPinIndex(3);
  fpga->addPin(pin);
  board.addBoardComponent(fpga);
  auto *chip = new HBOBoardComponent();
  chip->setComponentName("chip");
  board.addBoardComponent(chip);
  bus.setOwner(&board);
  bus.getBusComponentsVec(components);
  EXPECT_EQ(components, std::vector<HBOBoardComponent *>{fpga});

  HBOBoardBusNet net;
  EXPECT_EQ(net.getIsEnabled(), "true");
  std::vector<HBOPinProps *> pins;
  net.getPinsVec(pins);
  EXPECT_TRUE(pins.empty());
  net.setOwner(&bus);
  net.setC1PinIndex(3);
  net.setC2PinIndex(3);
  bus.setComp2("chip");
  net.getPinsVec(pins);
  EXPECT_EQ(pins, (std::vector<HBOPinProps *>{pin, nullptr}));

  HBOBoardBusNet copy(net, nullptr);
  EXPECT_EQ(copy.getC1PinIndex(), 3);
  EXPECT_EQ(copy.getOwner(), nullptr);
}

TEST(ModelConnection, DisplayLine) {
  HBOBoardBus bus;
  bus.setConnectionName("c");
  bus.setComp1("a");
  bus.setComp2("b");
  bus.setDelay(1.5f);
  bus.setStopIndexComp1(7);
  testing::internal::CaptureStdout();
  bus.display(1);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "-Connection - Name: c, Component 1: a, Component 2: b, Delay: 1.5, C1StIndex: 0, "
            "C1EndIndex: 7, C2StIndex: 0, C2EndIndex: 0\n");
}

TEST(ModelLeaf, ParameterSupportedValuesAreTheBounds) {
  HBOParameter parameter;
  std::vector<std::string> values;
  parameter.getSupportedValues(values);
  parameter.getSupportedValues(values);
  EXPECT_EQ(values, (std::vector<std::string>(4, "")));
  HBOParameter bounded("p", "5", "int", "1", "9", "true");
  values.clear();
  bounded.getSupportedValues(values);
  EXPECT_EQ(values, (std::vector<std::string>{"1", "9"}));
  testing::internal::CaptureStdout();
  bounded.display(0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "Parameter - Name: p, Value: 5, Type: int, Min: 1, Max: 9, Read Only: true\n");
}

TEST(ModelLeaf, JumperAndSmallRecords) {
  HBOJumper jumper;
  EXPECT_TRUE(jumper.getDefaultValue());
  EXPECT_EQ(jumper.getOwner(), nullptr);
  jumper.setName("j1");
  jumper.setValue(false, false);
  testing::internal::CaptureStdout();
  jumper.display(2);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "--Jumper - Name: j1, Default Value: false, Description: \n");

  HBOBoardCompMuxPosition position;
  position.addAddress("0x10", "0x1f");
  position.addAddress("0x10", "0x1f");
  EXPECT_EQ(position.getAddresses().size(), 2u);

  HBOBoardComponentDriver driver;
  driver.addFile("a", "x");
  driver.addFile("a", "y");
  EXPECT_EQ(driver.getFiles(), (std::map<std::string, std::string>{{"a", "y"}}));
}

TEST(ModelLeaf, ComponentReplacesAMuxPositionOfTheSameNumber) {
  HBOBoardComponent component;
  for (int i = 0; i < 2; ++i) {
    auto *position = new HBOBoardCompMuxPosition();
    position->setPosition(4);
    position->setComponent("c" + std::to_string(i));
    component.addIICPosition(position);
  }
  std::map<int, HBOBoardCompMuxPosition *> positions;
  component.getIICPositions(positions);
  ASSERT_EQ(positions.size(), 1u);
  EXPECT_EQ(positions.at(4)->getComponent(), "c1");
}

TEST(ModelPowerRail, RailsAreTheMembersThatAreNoSupplies) {
  HBOPowerRail rail("VCC", {"s1", "r1", "s2", "r2"}, {"s1", "s2"}, {{"r2", 2}}, true, 0);
  EXPECT_EQ(rail.getRailNames(), (std::vector<std::string>{"r1", "r2"}));
  EXPECT_EQ(rail.getMemberPhases("r2"), 2);
  EXPECT_EQ(rail.getMemberPhases("r1"), 0);
  std::ostringstream text;
  text << rail;
  EXPECT_EQ(text.str(), "HBOPowerRail VCC\n  memberNames: s1 r1 s2 r2\n  supplyNames: s1 s2\n"
                        "  railNames: r1 r2\n");
}

namespace {
HBOBoardDataProps makeDataProps() {
  HBOBoardDataProps::DataMap budget{{"VCCAUX", std::string("1.5")},
                                    {"VCCINT", std::string("8")}};
  HBOBoardDataProps::DataMap conditions{{"SUPPLY_CURRENT_BUDGET", budget},
                                        {"THETAJA", std::string("2.1")}};
  HBOBoardDataProps props;
  props.setData({{"OPERATING_CONDITIONS", conditions}, {"PLAIN", std::string("p")}});
  return props;
}
} // namespace

TEST(ModelDataProps, PathsAndFlattening) {
  const HBOBoardDataProps props = makeDataProps();
  EXPECT_TRUE(props.hasOperatingConditions());
  EXPECT_EQ(props.getStrOperatingCondition("SUPPLY_CURRENT_BUDGET.VCCAUX"), "1.5");
  EXPECT_EQ(props.getStrDataProp("PLAIN"), "p");
  EXPECT_EQ(props.getData_("OPERATING_CONDITIONS.NOPE.X"), nullptr);
  EXPECT_EQ(props.getData_("PLAIN.X"), nullptr);
  EXPECT_EQ(props.getStrDataProp("OPERATING_CONDITIONS"), "");
  EXPECT_EQ(props.getMapOperatingCondition("SUPPLY_CURRENT_BUDGET"),
            (HBOBoardDataProps::StringMap{{"VCCAUX", "1.5"}, {"VCCINT", "8"}}));
  HBOBoardDataProps::StringMap all;
  EXPECT_TRUE(props.getOperatingConditions(all));
  EXPECT_EQ(all, (HBOBoardDataProps::StringMap{{"SUPPLY_CURRENT_BUDGET.VCCAUX", "1.5"},
                                               {"SUPPLY_CURRENT_BUDGET.VCCINT", "8"},
                                               {"THETAJA", "2.1"}}));

  HBOBoardDataProps flat;
  flat.setData({{"OPERATING_CONDITIONS", std::string("not a group")}});
  EXPECT_FALSE(flat.hasOperatingConditions());
  flat.setData(flat.getAllData());
  EXPECT_EQ(flat.getAllData().size(), 1u);
}

TEST(ModelDataProps, XmlTextNestsGroups) {
  HBOBoardDataProps props;
  props.setData({{"G", HBOBoardDataProps::DataMap{{"K", std::string("v")}}}});
  EXPECT_EQ(props.asXmlStr(0), "<data_property_group name=\"G\">\n"
                               "  <data_property name=\"K\" value=\"v\"/>\n"
                               "</data_property_group>\n");
}

TEST(ModelDataProps, DeepTreesNeedNoRecursion) {
  // Built and queried iteratively; only the tree's own destruction recurses,
  // so the depth stays moderate here.
  HBOBoardDataProps::DataMap tree{{"leaf", std::string("x")}};
  std::string path = "leaf";
  for (int i = 0; i < 200; ++i) {
    tree = HBOBoardDataProps::DataMap{{"g", tree}};
    path = "g." + path;
  }
  HBOBoardDataProps props;
  props.setData(tree);
  EXPECT_EQ(props.getStrDataProp(path), "x");
  EXPECT_EQ(props.getMapDataProp("g").size(), 1u);
  EXPECT_NE(props.asXmlStr(0).find("value=\"x\""), std::string::npos);
}
