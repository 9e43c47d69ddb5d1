// The property tables of connections, nets, modes, parameters, jumpers, IP
// presets and IP preferences, read from the sample board.
#include "HBOBoardBusNet.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOIpPreset.h"
#include "HBOParameter.h"
#include "SampleBoard.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using test::prop;
using test::tclany;

namespace {

/// One row of a property table: its name, type code and value as printed.
/// The dynamic "_default_" row has no value of its own.
struct Row {
  std::string name;
  int type;
  std::string value;
};

/// The class's properties are exactly \p rows, registered in this order,
/// read-only but for \p writable, with these values on \p object.
void expectTable(const tclany &object, const std::vector<Row> &rows,
                 const std::string &writable = std::string()) {
  std::vector<std::string> expected, registered;
  for (const Row &row : rows)
    expected.push_back(row.name);
  const HCPProperty::ObjectInfo &info = HCPProperty::infoOf(object);
  for (const HCPProperty::Spec *spec : info.getSpecs())
    registered.push_back(spec->getName());
  EXPECT_EQ(expected, registered);
  for (const Row &row : rows) {
    SCOPED_TRACE(row.name);
    if (row.name == "_default_") {
      EXPECT_FALSE(info.getDefaultSpec()->getAttrSpec().isVisible());
      continue;
    }
    const HCPProperty::Spec *spec = info.findSpec(row.name);
    ASSERT_NE(nullptr, spec);
    EXPECT_EQ(row.type, spec->getAttrSpec().getAttrType());
    EXPECT_EQ(row.name != writable, spec->getAttrSpec().isReadOnly());
    EXPECT_TRUE(spec->getAttrSpec().isVisible());
    EXPECT_EQ(row.value, prop(object, row.name));
  }
}

std::vector<std::string> listedNames(const tclany &object) {
  std::vector<std::string> names;
  for (const auto &row : HCPProperty::listProperties(nullptr, object, true))
    names.push_back(row.name);
  return names;
}

class ObjectTables : public test::SampleBoard {
protected:
  HBOIpPreset *record(const HBOBoard::PresetMap &map, const std::string &key, std::size_t i) const {
    return map.at(key).at(i);
  }
};

} // namespace

TEST_F(ObjectTables, Connection) {
  expectTable(tclany::of(bus("part0_usb_uart_1")),
              {{"class", 3, "board_bus"},
               {"name", 3, "part0_usb_uart_1"},
               {"component_1", 3, "part0"},
               {"component_2", 3, "usb_uart"},
               {"delay", 3, "0.3"},
               {"enablement_dependency", 6, "{J14 false}"},
               {"is_enabled", 3, "true"},
               {"min_delay", 3, "0.25"},
               {"max_delay", 3, "0.35"},
               {"Component_1.START", 3, "53"},
               {"Component_1.STOP", 3, "56"},
               {"Component_2.START", 3, "0"},
               {"Component_2.STOP", 3, "3"}});

  // Each term of the expression is one element of the list.
  HBOBoardBus *fmc = bus("part0_fmc_lpc_1");
  fmc->setEnablementDependency("{J12 true} {J15 false}");
  HATAttrAny terms;
  HCPProperty::getProperty(nullptr, tclany::of(fmc), "enablement_dependency", terms);
  EXPECT_EQ((std::vector<std::string>{"J12 true", "J15 false"}), terms.getList().strings());
  fmc->setEnablementDependency("");
  HCPProperty::getProperty(nullptr, tclany::of(fmc), "enablement_dependency", terms);
  EXPECT_EQ(HATAttrAny::Kind::List, terms.getKind());
  EXPECT_TRUE(terms.getList().empty());
}

TEST_F(ObjectTables, Net) {
  const std::vector<HBOBoardBusNet *> &nets = bus("part0_ddr3_sdram_1")->getBoardBusNets();
  ASSERT_GT(nets.size(), 25u);
  expectTable(tclany::of(nets[25]), {{"class", 3, "board_bus_net"},
                                     {"name", 3, "part0_ddr3_sdram_1_25"},
                                     {"delay", 3, "0.142"},
                                     {"enablement_dependency", 6, ""},
                                     {"is_enabled", 3, "true"},
                                     {"min_delay", 3, "0.14"},
                                     {"max_delay", 3, "0.144"},
                                     {"bus", 3, "part0_ddr3_sdram_1"}});
  EXPECT_EQ("{J14 false}", prop(tclany::of(bus("part0_usb_uart_1")->getBoardBusNets().at(0)),
                                "enablement_dependency"));
}

TEST_F(ObjectTables, ComponentMode) {
  expectTable(tclany::of(mode("ddr3_sdram")),
              {{"class", 3, "board_component_mode"},
               {"name", 3, "ddr3_sdram"},
               {"description", 3,
                "Memory controller on the DDR3 SDRAM, clocked and reset from the board"},
               {"interfaces", 6, "ddr3_sdram sys_diff_clock reset"},
               {"enablement_dependency", 6, ""},
               {"preferences", 6, "quarnel-ip:ip:memctl_gen:4.2"},
               {"is_enabled", 3, "true"}});
  EXPECT_EQ("{J14 false}", prop(tclany::of(mode("usb_uart")), "enablement_dependency"));
}

TEST_F(ObjectTables, Parameter) {
  const std::vector<HBOParameter *> &params = board->getParameters();
  ASSERT_EQ(4u, params.size());
  expectTable(tclany::of(params[1]), {{"class", 3, "board_parameter"},
                                      {"name", 3, "heat_sink_temperature"},
                                      {"value", 3, "35.0"},
                                      {"value_type", 3, "float"},
                                      {"supported_values", 6, "-40.0 100.0"},
                                      {"read_only", 3, ""}});
  EXPECT_EQ("true", prop(tclany::of(params[3]), "read_only"));

  HBOParameter untyped("depth", "4", "", "", "", "");
  EXPECT_EQ("string", prop(tclany::of(&untyped), "value_type"));
  EXPECT_EQ("{} {}", prop(tclany::of(&untyped), "supported_values")) << "always both bounds";
}

TEST_F(ObjectTables, Jumper) {
  expectTable(tclany::of(jumper("J14")),
              {{"class", 3, "board_jumper"},
               {"name", 3, "J14"},
               {"current_value", 0, "0"},
               {"description", 3, "Routes the UART to the PMOD header instead of the USB bridge"}},
              "current_value");
  EXPECT_EQ("1", prop(tclany::of(jumper("J12")), "current_value"));
}

TEST_F(ObjectTables, IpPresetAndItsParameters) {
  const tclany uart = tclany::of(record(board->getIpPresets(), "USB_UART_PRESET", 0));
  expectTable(uart, {{"class", 3, "ip_configuration_info"},
                     {"name", 3, "usb_uart_preset:quarnel-ip:ip:uart_lite:*:UART"},
                     {"ip_name", 3, "uart_lite"},
                     {"ip_vendor", 3, "quarnel-ip"},
                     {"ip_library", 3, "ip"},
                     {"ip_version", 3, "*"},
                     {"ip_interface", 3, "UART"},
                     {"_default_", 3, ""}});
  // Unsorted: the fixed properties as registered, then the parameters.
  EXPECT_EQ((std::vector<std::string>{"class", "name", "ip_name", "ip_vendor", "ip_library",
                                      "ip_version", "ip_interface", "PARAM.CONFIG.BAUD_RATE",
                                      "PARAM.CONFIG.PARITY"}),
            listedNames(uart));
  EXPECT_EQ("115200", prop(uart, "PARAM.CONFIG.BAUD_RATE"));
  HATAttrAny none;
  EXPECT_FALSE(HCPProperty::getProperty(nullptr, uart, "PARAM.CONFIG.NO_SUCH", none));
  EXPECT_TRUE(none.isEmpty());
  EXPECT_THROW(prop(uart, "BOARD_INTERFACES"), HCPProperty::Error)
      << "a preset has no associated interfaces";
}

TEST_F(ObjectTables, AssociatedInterfacesAreInterfaceObjects) {
  const auto &rules = board->getIpAssociatedInterfaces();
  const tclany sysClk = tclany::of(record(rules, "MEMCTL_BOARD_RULE", 0));
  const tclany sysRst = tclany::of(record(rules, "MEMCTL_BOARD_RULE", 1));
  EXPECT_EQ("memctl_board_rule:quarnel-ip:ip:memctl_gen:*:SYS_CLK", prop(sysClk, "name"));
  EXPECT_EQ("BOARD_INTERFACES", listedNames(sysClk).back())
      << "the orders of the interfaces are no parameters";

  for (const auto &rule :
       {std::make_pair(sysClk, "sys_diff_clock"), std::make_pair(sysRst, "reset")}) {
    HATAttrAny value;
    ASSERT_TRUE(HCPProperty::getProperty(nullptr, rule.first, "BOARD_INTERFACES", value));
    EXPECT_EQ(std::vector<tclany>{tclany::of(board->getBusIfByName(rule.second))},
              value.getList().objects());
    EXPECT_TRUE(value.getList().strings().empty());
  }
  HATAttrAny order;
  EXPECT_FALSE(HCPProperty::getProperty(nullptr, sysClk, "PARAM.sys_diff_clock", order));

  // A record away from its board has no interfaces to show.
  HBOIpPreset loose;
  loose.setPresetorAssocIntf("assoc_intf");
  loose.setParam("sys_diff_clock", "0");
  HATAttrAny value;
  ASSERT_TRUE(HCPProperty::getProperty(nullptr, tclany::of(&loose), "BOARD_INTERFACES", value));
  EXPECT_TRUE(value.getList().empty());
}

TEST_F(ObjectTables, IpPreference) {
  std::vector<HBOBusIfPreference *> preferred;
  mode("usb_uart")->getPreferredIps(preferred);
  ASSERT_EQ(1u, preferred.size());
  const tclany preference = tclany::of(preferred[0]);
  expectTable(preference, {{"class", 3, "ip_preference"},
                           {"ip_name", 3, "uart_lite"},
                           {"ip_vendor", 3, "quarnel-ip"},
                           {"ip_library", 3, "ip"},
                           {"ip_version", 3, "2.0"},
                           {"order", 1, "0"}});
  EXPECT_EQ((std::vector<std::string>{"class", "ip_name", "ip_vendor", "ip_library", "ip_version",
                                      "order"}),
            listedNames(preference));
  preferred[0]->setOrder(-3);
  HATAttrAny order;
  HCPProperty::getProperty(nullptr, preference, "order", order);
  EXPECT_EQ(HATAttrAny::Kind::Int, order.getKind());
  EXPECT_EQ(-3, order.getInt());
}

// Objects that stand outside any board list every property, with empty
// values where the model has none.
TEST_F(ObjectTables, ObjectsWithoutOwnersListEmptyValues) {
  HBOBoardBus bus;
  HBOBoardBusNet net;
  HBOComponentMode mode;
  HBOParameter parameter;
  HBOJumper jumper;
  HBOIpPreset preset;
  HBOBusIfPreference preference;
  for (const tclany &object : {tclany::of(&bus), tclany::of(&net), tclany::of(&mode),
                               tclany::of(&parameter), tclany::of(&jumper), tclany::of(&preset),
                               tclany::of(&preference)}) {
    SCOPED_TRACE(HCPProperty::getClassName(object));
    EXPECT_NO_THROW(EXPECT_FALSE(HCPProperty::listProperties(nullptr, object, true).empty()));
  }
  EXPECT_EQ("", prop(tclany::of(&net), "bus"));
  EXPECT_EQ("", prop(tclany::of(&bus), "enablement_dependency"));
}
