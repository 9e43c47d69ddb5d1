// Modes, preferences, presets, connections, leaf records, power rails and
// data properties.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardCompMuxPosition.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBoardDataProps.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"
#include "HBOPowerRail.h"
#include "ModelTestUtil.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace modeltest;

TEST(ModelMode, InterfacesByOrderAndRequiredOnes) {
  HBOComponentMode mode;
  mode.addInterface(2, {"ddr", true});
  mode.addInterface(1, {"clk", true});
  mode.addInterface(1, {"clk2", false});
  // The out-maps are replaced, and a later entry of one order replaces the
  // earlier one.
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
}

TEST(ModelPreference, OnlyTheMajorGroupRefusesEmptyAndTheParamStubFindsNothing) {
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
  ScratchDir dir;
  dir.write("table.csv", "a,b\n");
  HBOBoard board;
  board.setBoardFile(dir.path() + "/board.xml");
  HBOIpPreset preset;
  preset.setOwner(&board);
  EXPECT_FALSE(preset.setParam("", "x"));
  // Only a bare, existing name with the lower-case suffix is resolved.
  const std::pair<std::string, std::string> cases[] = {{"table.csv", dir.path() + "/table.csv"},
                                                       {"missing.csv", "missing.csv"},
                                                       {"table.CSV", "table.CSV"},
                                                       {"sub/table.csv", "sub/table.csv"},
                                                       {"csv", "csv"},
                                                       {"plain", "plain"}};
  for (const auto &c : cases) {
    std::string value;
    EXPECT_TRUE(preset.setParam("table", c.first));
    EXPECT_TRUE(preset.getParamValue("table", value));
    EXPECT_EQ(value, c.second) << c.first;
  }
  std::string value = "untouched";
  EXPECT_FALSE(preset.getParamValue("nothing", value));
  EXPECT_EQ(value, "untouched");
}

TEST(ModelConnection, BusComponentsAndNetPins) {
  HBOBoardBus bus;
  bus.setComp1("fpga");
  bus.setComp2("gone");
  std::vector<HBOBoardComponent *> components{nullptr};
  bus.getBusComponentsVec(components);
  EXPECT_TRUE(components.empty());

  HBOBoard board;
  HBOBoardComponent *fpga = makeComponent("fpga", "");
  HBOPinProps *pin = makePin(*fpga, "A1", 3);
  fpga->addPin(pin);
  board.addBoardComponent(fpga);
  board.addBoardComponent(makeComponent("chip", ""));
  bus.setOwner(&board);
  bus.getBusComponentsVec(components);
  EXPECT_EQ(components, std::vector<HBOBoardComponent *>{fpga});

  HBOBoardBusNet net;
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

TEST(ModelLeaf, ParameterSupportedValuesAreTheBoundsAppended) {
  HBOParameter parameter;
  std::vector<std::string> values;
  parameter.getSupportedValues(values);
  parameter.getSupportedValues(values);
  EXPECT_EQ(values, (Strings(4, "")));
  HBOParameter bounded("p", "5", "int", "1", "9", "true");
  values.clear();
  bounded.getSupportedValues(values);
  EXPECT_EQ(values, (Strings{"1", "9"}));
}

TEST(ModelLeaf, RepeatedEntriesOfSmallRecords) {
  // Mux addresses are all kept, driver files by name with the last winning.
  HBOBoardCompMuxPosition position;
  position.addAddress("0x10", "0x1f");
  position.addAddress("0x10", "0x1f");
  EXPECT_EQ(position.getAddresses().size(), 2u);
  HBOBoardComponentDriver driver;
  driver.addFile("a", "x");
  driver.addFile("a", "y");
  EXPECT_EQ(driver.getFiles(), (std::map<std::string, std::string>{{"a", "y"}}));

  // The component replaces a mux position of the same number.
  HBOBoardComponent component;
  for (int i = 0; i < 2; ++i) {
    auto *mux = new HBOBoardCompMuxPosition();
    mux->setPosition(4);
    mux->setComponent("c" + std::to_string(i));
    component.addIICPosition(mux);
  }
  std::map<int, HBOBoardCompMuxPosition *> positions;
  component.getIICPositions(positions);
  ASSERT_EQ(positions.size(), 1u);
  EXPECT_EQ(positions.at(4)->getComponent(), "c1");
}

TEST(ModelPowerRail, RailsAreTheMembersThatAreNoSupplies) {
  HBOPowerRail rail("VCC", {"s1", "r1", "s2", "r2"}, {"s1", "s2"}, {{"r2", 2}}, true, 0);
  EXPECT_EQ(rail.getRailNames(), (Strings{"r1", "r2"}));
  EXPECT_EQ(rail.getMemberPhases("r2"), 2);
  EXPECT_EQ(rail.getMemberPhases("r1"), 0);
  std::ostringstream text;
  text << rail;
  EXPECT_EQ(text.str(), "HBOPowerRail VCC\n  memberNames: s1 r1 s2 r2\n  supplyNames: s1 s2\n"
                        "  railNames: r1 r2\n");
}

TEST(ModelDataProps, PathsFlatteningAndXmlText) {
  HBOBoardDataProps::DataMap budget{{"VCCAUX", std::string("1.5")}, {"VCCINT", std::string("8")}};
  HBOBoardDataProps::DataMap conditions{{"SUPPLY_CURRENT_BUDGET", budget},
                                        {"THETAJA", std::string("2.1")}};
  HBOBoardDataProps props;
  props.setData({{"OPERATING_CONDITIONS", conditions}, {"PLAIN", std::string("p")}});
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

  HBOBoardDataProps nested;
  nested.setData({{"G", HBOBoardDataProps::DataMap{{"K", std::string("v")}}}});
  EXPECT_EQ(nested.asXmlStr(0), "<data_property_group name=\"G\">\n"
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
