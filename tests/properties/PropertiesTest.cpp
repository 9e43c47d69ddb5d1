// What the listing of the sample board's properties does not show: values
// of names that no listing holds, objects of no board or of an old one,
// switches that change the tables, and handles of the wrong class. The
// listings themselves are compared whole in PropertyListingTest.
#include "HBOBoardBusNet.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "SampleBoard.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using test::ParamScope;
using test::prop;
using test::tclany;
using Names = std::vector<std::string>;

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

} // namespace

TEST_F(Props, NamesThatNoListingHolds) {
  const tclany b = boardHandle(), part0 = component("part0"), clock = busIf("sys_diff_clock");
  const tclany clkPin = tclany::of(pin("sys_clk_p"));
  struct Case {
    tclany object;
    const char *name;
    std::string value; // "<none>": no value, and no error either
  } cases[] = {
      {b, "PARAM.no_such", "<none>"},
      {b, "OPERATING_CONDITIONS.THETAJA", "11.5"},
      {b, "OPERATING_CONDITIONS.VOLTAGE",
       "BOARD_12V 12.00 DDR_VTT_RAIL 0.75 VCC1V5_RAIL 1.50 VCC1V8_RAIL 1.80 VCC3V3_RAIL 3.30 "
       "VCCINT_RAIL 1.00"},
      {b, "OPERATING_CONDITIONS.NO_SUCH", "<none>"},
      {part0, "PARAM.no_such", "<none>"},
      {component("ddr3_sdram"), "JTAG_POSITION.chain1", "<none>"},
      {part0, "schema_version", "2.1"},
      {clock, "PORT.NOT_MAPPED", "<none>"},
      {port("led_4bits_tri_o"), "PIN.4", "<none>"},
      {clkPin, "IOBANK.no_such", "<none>"},
      {clkPin, "PORT.reset", "<none>"},
      // The pin lists one of its two IO standard names; both read.
      {clkPin, "IOSTANDARD", "LVDS"},
  };
  for (const Case &c : cases)
    EXPECT_EQ(c.value, prop(c.object, c.name)) << c.name;

  // Tags of dynamic names are case-sensitive; other property names are not.
  EXPECT_NE("<none>", prop(b, "PARAM.board_grade"));
  EXPECT_EQ("<none>", prop(b, "param.board_grade"));
  EXPECT_NE("<none>", prop(clock, "PORT.CLK_P"));
  EXPECT_EQ("<none>", prop(clock, "port.CLK_P"));
  EXPECT_EQ("2.1", prop(part0, "Schema_Version"));

  HATAttrSpec spec;
  std::string canonical;
  bool dynamic = false;
  ASSERT_TRUE(HCPProperty::findPropertySpec(clock, "PORT.CLK_P", spec, canonical, dynamic));
  EXPECT_TRUE(dynamic && spec.isReadOnly() && spec.getAttrType() == HATAttrSpec::String);
  HATAttrAny value; // the getter compares the tag exactly
  EXPECT_FALSE(
      info(typeid(HBOBusIf *)).getDefaultSpec()->getGetFcn()(nullptr, clock, "port.CLK_P", value));

  // Each term of an enablement expression is one element of the list.
  HBOBoardBus *fmc = bus("part0_fmc_lpc_1");
  fmc->setEnablementDependency("{J12 true} {J15 false}");
  EXPECT_EQ((Names{"J12 true", "J15 false"}), listProp(tclany::of(fmc), "enablement_dependency"));
  fmc->setEnablementDependency("");
  HCPProperty::getProperty(nullptr, tclany::of(fmc), "enablement_dependency", value);
  EXPECT_EQ(HATAttrAny::Kind::List, value.getKind());
  EXPECT_TRUE(value.getList().empty());

  const tclany uart = tclany::of(board->getIpPresets().at("USB_UART_PRESET").at(0));
  EXPECT_EQ("<none>", prop(uart, "PARAM.CONFIG.NO_SUCH"));
  EXPECT_THROW(prop(uart, "BOARD_INTERFACES"), HCPProperty::Error)
      << "a preset has no associated interfaces";
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

TEST_F(Props, AssociatedInterfacesAreInterfaceObjects) {
  const auto &rules = board->getIpAssociatedInterfaces();
  const tclany sysClk = tclany::of(rules.at("MEMCTL_BOARD_RULE").at(0));
  const tclany sysRst = tclany::of(rules.at("MEMCTL_BOARD_RULE").at(1));
  EXPECT_EQ("memctl_board_rule:quarnel-ip:ip:memctl_gen:*:SYS_CLK", prop(sysClk, "name"));

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
  for (const std::type_info *type :
       {&typeid(HBOBoard *), &typeid(HBOBoardComponent *), &typeid(HBOBusIf *),
        &typeid(HBOModelPort *), &typeid(HBOPinProps *)}) {
    const tclany other = *type == typeid(HBOBoard *) ? component("part0") : boardHandle();
    for (const HCPProperty::Spec *spec : info(*type).getSpecs()) {
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

// Objects that stand outside any board list every property, with empty
// values where the model has none.
TEST_F(Props, ObjectsWithoutOwnersListEmptyValues) {
  HBOBoardBus bus;
  HBOBoardBusNet net;
  HBOComponentMode mode;
  HBOParameter parameter;
  HBOJumper jumper;
  HBOIpPreset preset;
  HBOBusIfPreference preference;
  for (const tclany &object :
       {tclany::of(&bus), tclany::of(&net), tclany::of(&mode), tclany::of(&parameter),
        tclany::of(&jumper), tclany::of(&preset), tclany::of(&preference)}) {
    SCOPED_TRACE(HCPProperty::getClassName(object));
    EXPECT_NO_THROW(EXPECT_FALSE(HCPProperty::listProperties(nullptr, object, true).empty()));
  }
  EXPECT_EQ("", prop(tclany::of(&net), "bus"));
  HBOParameter untyped("depth", "4", "", "", "", "");
  EXPECT_EQ("string", prop(tclany::of(&untyped), "value_type"));
  EXPECT_EQ("{} {}", prop(tclany::of(&untyped), "supported_values")) << "always both bounds";
  EXPECT_EQ("", prop(tclany::of(&bus), "enablement_dependency"));
}
