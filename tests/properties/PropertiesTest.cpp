// The property tables of boards, components, interfaces, ports and pins:
// order, types, hints and class names under both settings of the schema 2
// switch, values and dynamic properties on the sample board, objects
// without owners, and handles of the wrong class.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "HBOScriptedClasses.h"
#include "HCPProperty.h"
#include "HSTStringUtils.h"
#include "SampleBoard.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using test::ParamScope;
using zeb::tcltasks::tclany;
using Names = std::vector<std::string>;

namespace {

using test::prop;

Names listProp(const tclany &object, const std::string &name) {
  HATAttrAny value;
  HCPProperty::getProperty(nullptr, object, name, value);
  return value.getList().strings();
}

Names listed(const tclany &object, bool includeHidden, bool dynamicOnly = false) {
  Names out;
  for (const auto &row : HCPProperty::listProperties(nullptr, object, includeHidden))
    if (!dynamicOnly || row.dynamic)
      out.push_back(row.name);
  return out;
}

const HCPProperty::ObjectInfo &info(const std::type_info &type) {
  return *HCPProperty::getObjectInfo(type);
}

Names specNames(const std::type_info &type) {
  Names out;
  for (const HCPProperty::Spec *spec : info(type).getSpecs())
    out.push_back(spec->getName());
  return out;
}

bool contains(const Names &names, const std::string &name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Handles of the sample board's objects.
class Props : public test::SampleBoard {
protected:
  tclany boardHandle() const { return tclany::of(board.get()); }
  tclany component(const char *name) const { return tclany::of(comp(name)); }
  tclany busIf(const char *name) const { return tclany::of(comp("part0")->getBusIfByName(name)); }
  tclany port(const char *name) const {
    HBOModelPort *p = nullptr;
    comp("part0")->getModelPortByName(p, name);
    return tclany::of(p);
  }
  HBOPinProps *pin(const char *name) const { return comp("part0")->getPins().at(name); }
};

struct Table {
  const std::type_info *type;
  Names names;          // registration order with schema 2: init's, then initV2Props'
  std::size_t initOnly; // how many of them init registers, "class" among them
  Names lists, hidden, hinted;
};

std::vector<Table> tables() {
  Names pin{"name", "loc"};
  const Names &io = HBOPinProps::getPortPropNames();
  pin.insert(pin.end(), io.begin(), io.end());
  Names upper;
  for (const std::string &n : io)
    upper.push_back(HSTStringUtils::toUpper(n));
  pin.insert(pin.end(), upper.begin(), upper.end());
  Names bus{"bus_direction", "bus_name", "interface", "logical_name",
            "bus_start",     "bus_stop", "bus_width"};
  Names pinHinted = upper;
  pinHinted.insert(pinHinted.end(), bus.begin(), bus.end());
  for (const char *n : {"internal_vref", "pin_index", "_default_"})
    pin.push_back(n);
  pin.insert(pin.end(), bus.begin(), bus.end());
  const std::size_t pinInit = pin.size() + 1;
  pin.push_back("class");
  pin.push_back("interfaces");
  return {
      {&typeid(HBOBoard *),
       {"class", "name", "board_name", "display_name", "file_version", "Compatible_board_revisions",
        "vendor_name", "spec_url", "FILE_NAME", "REPOSITORY", "jtag_chains", "description",
        "supports_ced", "_default_"},
       14,
       {"Compatible_board_revisions", "jtag_chains"},
       {},
       {}},
      {&typeid(HBOBoardComponent *),
       {"name",
        "part_name",
        "SPEC_URL",
        "jtag_position",
        "_default_",
        "BOARD_NAME",
        "vendor_name",
        "BOARD_PART_FILE_VERSION",
        "BOARD_REVISION",
        "DISPLAY_NAME",
        "FILE_NAME",
        "REPOSITORY",
        "additionally_supported_part_names",
        "class",
        "component_name",
        "component_vendor",
        "type",
        "sub_type",
        "description",
        "configuration_modes",
        "is_enabled",
        "supports_ced"},
       14,
       {"additionally_supported_part_names", "configuration_modes"},
       {"is_enabled"},
       {"jtag_position", "BOARD_NAME", "vendor_name", "BOARD_PART_FILE_VERSION", "BOARD_REVISION",
        "REPOSITORY", "component_vendor"}},
      {&typeid(HBOBusIf *),
       {"name", "VLNV", "PRESET_FILE", "MODE", "vendor", "library", "busdef_name", "version",
        "presets", "_default_", "class", "of_component", "description", "preferences",
        "is_enabled"},
       11,
       {"presets", "preferences"},
       {"is_enabled"},
       {}},
      {&typeid(HBOModelPort *),
       {"class", "name", "direction", "width", "left", "right", "interface", "logical_name",
        "_default_"},
       9,
       {},
       {},
       {}},
      {&typeid(HBOPinProps *), pin, pinInit, {"interfaces"}, upper, pinHinted},
  };
}

} // namespace

TEST_F(Props, TablesKeepOrderTypesVisibilityAndHints) {
  for (const Table &t : tables()) {
    SCOPED_TRACE(t.type->name());
    EXPECT_EQ(t.names, specNames(*t.type));
    for (const HCPProperty::Spec *spec : info(*t.type).getSpecs()) {
      const std::string &n = spec->getName();
      const HATAttrSpec &attr = spec->getAttrSpec();
      EXPECT_TRUE(attr.isReadOnly()) << n;
      EXPECT_EQ(contains(t.lists, n) ? HATAttrSpec::StringList : HATAttrSpec::String,
                attr.getAttrType())
          << n;
      bool visible = !contains(t.hidden, n) && (n != "_default_" || *t.type == typeid(HBOBusIf *));
      EXPECT_EQ(visible, attr.isVisible()) << n;
      EXPECT_EQ(contains(t.hinted, n), !attr.m_hint.empty()) << n;
    }
  }
  // By exact name: look-up ignores case and prefers the visible spelling.
  auto hint = [](const std::type_info &type, const std::string &name) {
    for (const HCPProperty::Spec *spec : info(type).getSpecs())
      if (spec->getName() == name)
        return spec->getAttrSpec().m_hint;
    return std::string("(no such property)");
  };
  EXPECT_EQ("Use 'JTAG_POSITION.chain1'", hint(typeid(HBOBoardComponent *), "jtag_position"));
  EXPECT_EQ("Use 'get_property VENDOR_NAME [get_boards -of_objects <board_part object>]'",
            hint(typeid(HBOBoardComponent *), "component_vendor"));
  EXPECT_EQ("Use 'iostandard'", hint(typeid(HBOPinProps *), "IOSTANDARD"));
  EXPECT_EQ("Use 'get_property WIDTH [get_board_interface_ports <port_name>]'",
            hint(typeid(HBOPinProps *), "bus_width"));

  // Sorting is off on the interface: table order, then its visible dynamic
  // properties.
  EXPECT_EQ((Names{"name", "VLNV", "PRESET_FILE", "MODE", "vendor", "library", "busdef_name",
                   "version", "presets", "class", "of_component", "description", "preferences",
                   "PARAM.frequency", "PARAM.type", "PORT.CLK_P", "PORT.CLK_N"}),
            listed(busIf("sys_diff_clock"), false));
}

TEST_F(Props, WithoutSchemaTwoOnlyInitRegistersWithoutHints) {
  ParamScope off("board.enableSchemaV2", "false");
  HBOScriptedClasses::reregisterAll();
  for (const Table &t : tables()) {
    SCOPED_TRACE(t.type->name());
    Names expected(t.names.begin(), t.names.begin() + t.initOnly);
    if (expected.front() != "class") { // initV2Props moved it last
      expected.pop_back();
      expected.insert(expected.begin(), "class");
    }
    EXPECT_EQ(expected, specNames(*t.type));
    for (const HCPProperty::Spec *spec : info(*t.type).getSpecs())
      EXPECT_EQ("", spec->getAttrSpec().m_hint) << spec->getName();
  }
  EXPECT_EQ("board_part", HCPProperty::getClassName(component("part0")));
  EXPECT_EQ("board_part_interface", prop(busIf("reset"), "class"));
  EXPECT_EQ("board_part_pin", HCPProperty::getClassName(tclany::of(pin("led0"))));
  EXPECT_EQ("board_interface_port", HCPProperty::getClassName(port("ddr3_dq")));
}

TEST_F(Props, SchemaTwoClassNamesHoldForOldBoardsToo) {
  HBOBoard old;
  old.setBoardSchemaVersion("1.0");
  HBOBoardComponent part;
  part.setBoard(&old);
  for (const tclany &c : {component("part0"), tclany::of(&part)}) {
    EXPECT_EQ("board_component", HCPProperty::getClassName(c));
    EXPECT_EQ("board_component", prop(c, "class"));
  }
  EXPECT_EQ("board_component_interface", HCPProperty::getClassName(busIf("reset")));
  EXPECT_EQ("board_component_pin", prop(tclany::of(pin("led0")), "class"));
  EXPECT_EQ("board", prop(boardHandle(), "class"));
}

TEST_F(Props, ValuesAndDynamicPropertiesOfTheSampleBoard) {
  const tclany b = boardHandle(), part0 = component("part0"), clock = busIf("sys_diff_clock");
  const tclany leds = port("led_4bits_tri_o"), clkPin = tclany::of(pin("sys_clk_p"));
  struct Case {
    tclany object;
    const char *name;
    std::string value; // "<none>": no value, and no error either
  } cases[] = {
      {b, "supports_ced", "true"},
      {part0, "BOARD_REVISION", "Rev B"},
      {part0, "vendor_name", "kestrel-boards"},
      {part0, "component_vendor", "quarnel"},
      {part0, "FILE_NAME", BOARDLIB_SAMPLE_BOARD},
      {part0, "additionally_supported_part_names", "kv50-hq324-2 kv50-hq324-1L"},
      {component("ddr3_sdram"), "configuration_modes", "ddr3_sdram"},
      {clock, "VLNV", "quarnel-ip:interface:diff_clock_rtl:1.0"},
      {clock, "busdef_name", "diff_clock_rtl"},
      {clock, "presets", "sys_diff_clock_preset:quarnel-ip:ip:clk_gen:*:CLK_IN1_D"},
      {leds, "width", "4"},
      {leds, "left", "3"},
      {leds, "interface", "led_4bits"},
      {port("sys_clk_p"), "left", ""},
      {clkPin, "pin_index", "68"},
      {clkPin, "interfaces", "sys_diff_clock"},
      // dynamic
      {b, "PARAM.heat_sink_type", "medium"},
      {b, "PARAM.no_such", "<none>"},
      {b, "OPERATING_CONDITIONS.THETAJA", "11.5"},
      {b, "OPERATING_CONDITIONS.VOLTAGE",
       "BOARD_12V 12.00 DDR_VTT_RAIL 0.75 VCC1V5_RAIL 1.50 VCC1V8_RAIL 1.80 VCC3V3_RAIL 3.30 "
       "VCCINT_RAIL 1.00"},
      {b, "OPERATING_CONDITIONS.NO_SUCH", "<none>"},
      {part0, "PARAM.core_voltage", "1.0"},
      {part0, "PARAM.no_such", "<none>"},
      {part0, "JTAG_POSITION.chain1", "0"},
      {component("sys_ctrl"), "JTAG_POSITION.chain1", "1"},
      {component("ddr3_sdram"), "JTAG_POSITION.chain1", "<none>"},
      {part0, "schema_version", "2.1"},
      {clock, "PARAM.frequency", "200000000"},
      {clock, "PORT.CLK_N", "sys_clk_n"},
      {clock, "PORT.NOT_MAPPED", "<none>"},
      {leds, "PIN.3", "led3"},
      {leds, "PIN.4", "<none>"},
      {clkPin, "IOBANK.bank", "16"},
      {clkPin, "IOBANK.no_such", "<none>"},
      {clkPin, "PORT.sys_diff_clock", "sys_clk_p"},
      {clkPin, "PORT.reset", "<none>"},
      {clkPin, "IOSTANDARD", "LVDS"},
  };
  for (const Case &c : cases)
    EXPECT_EQ(c.value, prop(c.object, c.name)) << c.name;
  EXPECT_EQ((Names{"{0 Rev A}", "{1 Rev B}"}), listProp(b, "Compatible_board_revisions"));
  EXPECT_EQ((Names{"reset_preset:quarnel-ip:ip:proc_reset:*:ext_reset",
                   "reset_preset:quarnel-ip:ip:clk_gen:*:reset"}),
            listProp(busIf("reset"), "presets"));

  // Listings (board and component sort by name); the pin lists one of its
  // two IO standard names.
  EXPECT_EQ((Names{"OPERATING_CONDITIONS", "PARAM.ambient_temperature", "PARAM.board_grade",
                   "PARAM.heat_sink_temperature", "PARAM.heat_sink_type"}),
            listed(b, true, true));
  EXPECT_FALSE(contains(listed(b, false), "PARAM.board_grade"));
  EXPECT_EQ((Names{"JTAG_POSITION.chain1", "PARAM.core_voltage", "PARAM.temperature_grade"}),
            listed(part0, true, true));
  EXPECT_EQ((Names{"PIN.0", "PIN.1", "PIN.2", "PIN.3"}), listed(leds, true, true));
  EXPECT_EQ((Names{"IOBANK.bank", "IOBANK.vcco", "PORT.sys_diff_clock"}),
            listed(clkPin, true, true));
  Names pinNames = listed(clkPin, true);
  EXPECT_TRUE(contains(pinNames, "iostandard"));
  EXPECT_FALSE(contains(pinNames, "IOSTANDARD"));

  HATAttrSpec spec;
  std::string canonical;
  bool dynamic = false;
  ASSERT_TRUE(HCPProperty::findPropertySpec(clock, "PORT.CLK_P", spec, canonical, dynamic));
  EXPECT_TRUE(dynamic && spec.isReadOnly() && spec.getAttrType() == HATAttrSpec::String);
  HATAttrAny value; // the getter compares the tag exactly
  EXPECT_FALSE(
      info(typeid(HBOBusIf *)).getDefaultSpec()->getGetFcn()(nullptr, clock, "port.CLK_P", value));
}

TEST_F(Props, SwitchesHideDataPropertiesAndComponentScopes) {
  const tclany b = boardHandle(), part0 = component("part0");
  {
    ParamScope off("board.dataProps.enableTclProps", "false");
    EXPECT_EQ("<none>", prop(b, "OPERATING_CONDITIONS.THETAJA"));
    EXPECT_EQ((Names{"PARAM.ambient_temperature", "PARAM.board_grade",
                     "PARAM.heat_sink_temperature", "PARAM.heat_sink_type"}),
              listed(b, true, true));
  }
  ParamScope off("board.enableSchemaV2", "false");
  HBOScriptedClasses::reregisterAll();
  EXPECT_EQ("<none>", prop(part0, "PARAM.core_voltage"));
  EXPECT_EQ("<none>", prop(part0, "JTAG_POSITION.chain1"));
  EXPECT_EQ("2.1", prop(part0, "SCHEMA_VERSION"));
  EXPECT_TRUE(listed(part0, true, true).empty());
}

TEST_F(Props, PinsTellTheirPortAndOrphansReadEmpty) {
  HBOModelPort vector, scalar;
  vector.setName("leds");
  vector.setIsVector(true);
  vector.setRange(3, 0);
  vector.setOwnerBusIf("led_4bits", "TRI_O");
  scalar.setName("rst");
  std::vector<HBOPinProps *> bits, single;
  ASSERT_TRUE(vector.populatePinProps() && vector.getPortPropsSeq(bits) && bits.size() == 4);
  ASSERT_TRUE(scalar.populatePinProps() && scalar.getPortPropsSeq(single) && single.size() == 1);
  auto bus = [](HBOPinProps *p) {
    Names out;
    for (const char *n :
         {"bus_name", "interface", "logical_name", "bus_start", "bus_stop", "bus_width"})
      out.push_back(prop(tclany::of(p), n));
    return out;
  };
  EXPECT_EQ((Names{"leds", "led_4bits", "TRI_O", "3", "0", "4"}), bus(bits[2]));
  EXPECT_EQ((Names{"rst", "", "", "", "", "1"}), bus(single[0]));

  HBOBoardComponent component;
  HBOBusIf busIf;
  HBOModelPort port;
  HBOPinProps pin;
  const tclany c = tclany::of(&component);
  for (const char *name : {"BOARD_NAME", "vendor_name", "FILE_NAME", "supports_ced",
                           "additionally_supported_part_names"})
    EXPECT_EQ("", prop(c, name)) << name;
  HATAttrAny value;
  EXPECT_FALSE(info(typeid(HBOBoardComponent *))
                   .getDefaultSpec()
                   ->getGetFcn()(nullptr, c, "SCHEMA_VERSION", value));
  EXPECT_EQ("", prop(tclany::of(&busIf), "presets"));
  EXPECT_EQ("", prop(tclany::of(&port), "interface"));
  EXPECT_EQ("", prop(tclany::of(&pin), "bus_width"));
  // Reading a port property that the pin lacks does not add it to the pin.
  EXPECT_EQ("", prop(tclany::of(&pin), "SLEW"));
  EXPECT_TRUE(pin.getPortProps().empty());
  for (const tclany &object : {c, tclany::of(&busIf), tclany::of(&port), tclany::of(&pin)})
    EXPECT_FALSE(listed(object, true).empty());
}

TEST(InterfacePresets, EachVersionOfARecordIsOneEntry) {
  HBOScriptedClasses::registerAll();
  HBOBoard board;
  HBOBoardComponent component;
  component.setBoard(&board);
  auto record = [](const char *name, const char *versions, const char *intf) {
    auto *p = new HBOIpPreset();
    p->setPresetProcName("Uart_Preset");
    p->setVendor("quarnel-ip");
    p->setLibrary("ip");
    p->setName(name);
    p->setVersion(versions);
    p->setIpInterface(intf);
    return p;
  };
  // The third record is a note of the file, with no IP.
  board.setIpPreset("Uart_Preset", {record("uart_lite", "2.0,3.1", "UART"),
                                    record("uart_16550", "2.0", ""), new HBOIpPreset()});
  HBOBusIf busIf;
  busIf.setOwnerComponent(&component);
  busIf.setPresetProcName("uart_preset");
  EXPECT_EQ((Names{"Uart_Preset:quarnel-ip:ip:uart_lite:2.0:UART",
                   "Uart_Preset:quarnel-ip:ip:uart_lite:3.1:UART",
                   "Uart_Preset:quarnel-ip:ip:uart_16550:2.0"}),
            listProp(tclany::of(&busIf), "presets"));
}

namespace {
struct Stranger {};
} // namespace

TEST_F(Props, AHandleOfAnotherClassIsRefused) {
  // A record that lends the component's getter to another class: the
  // getter refuses the foreign object instead of reading it as a component.
  HCPProperty::registerType(typeid(Stranger *))
      .createSpec("part_name")
      .setGetFcn(info(typeid(HBOBoardComponent *)).findSpec("part_name")->getGetFcn());
  Stranger stranger;
  HATAttrAny value;
  try {
    HCPProperty::getProperty(nullptr, tclany::of(&stranger), "part_name", value);
    ADD_FAILURE() << "no error";
  } catch (const HCPProperty::Error &e) {
    EXPECT_NE(std::string::npos, std::string(e.what()).find("board_component")) << e.what();
  }
  HCPProperty::getObjectInfo(typeid(Stranger *))->deleteSpec("part_name");

  // Every getter and listing of the five tables, handed an object of
  // another table.
  std::string error;
  for (const Table &t : tables()) {
    const tclany other = *t.type == typeid(HBOBoard *) ? component("part0") : boardHandle();
    for (const HCPProperty::Spec *spec : info(*t.type).getSpecs()) {
      if (spec->getName() == "class")
        continue;
      EXPECT_FALSE(spec->getGetFcn()(nullptr, other, "PARAM.x", value)) << spec->getName();
      HCPProperty::DynamicList entries;
      if (spec->getGetDefaultFcn()) {
        EXPECT_FALSE(spec->getGetDefaultFcn()(nullptr, other, entries));
      }
      EXPECT_TRUE(entries.empty());
      EXPECT_TRUE(HCPProperty::Types::detail::takeCastError(error)) << spec->getName();
    }
  }
}
