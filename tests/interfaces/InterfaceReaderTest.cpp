// Interfaces, port maps and component modes as whole board files give them,
// with the findings each kind of fault leaves in the queue.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardParser.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

using test::dataPath;

namespace {

using Strings = std::vector<std::string>;
using Finding = std::pair<std::string, Strings>; // id, arguments
using PinMap = std::map<std::string, std::string>;

std::vector<Finding> queued(const HBOBoardParser &parser) {
  std::vector<Finding> out;
  for (const auto &entry : parser.getMessages())
    out.emplace_back(entry.first.getId(), entry.first.getArgs());
  return out;
}

std::vector<HBOComponentMode *> modesOf(const HBOBoardComponent *component) {
  std::vector<HBOComponentMode *> modes;
  component->getComponentModes(modes);
  return modes;
}

/// Left end, right end and width of a port.
std::vector<int> shape(HBOModelPort *port) {
  int left = -1, right = -1, width = 0;
  port->getPortVecLeft(left);
  port->getPortVecRight(right);
  port->getPortWidth(width);
  return {left, right, width};
}

class BasicBoard : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(parser.parseFile(dataPath("interfaces_basic/board.xml"), &board, false, "",
                                 &parsed));
    EXPECT_TRUE(parser.getMessages().empty());
    EXPECT_TRUE(msgs.records.empty());
    part0 = board.findBoardComponent("part0");
    ASSERT_NE(nullptr, part0);
  }
  HBOBusIf *intf(const std::string &name) {
    HBOBusIf *found = part0->getBusIfByName(name);
    EXPECT_NE(nullptr, found) << name;
    return found;
  }
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  HBOParsedVLNVs parsed;
  HBOBoardComponent *part0 = nullptr;
};

} // namespace

TEST_F(BasicBoard, InterfaceAttributesTypeSplitAndDependencies) {
  HBOBusIf *clock = intf("SYS_CLOCK");
  ASSERT_NE(nullptr, clock);
  std::string display;
  clock->getDisplayName(display);
  EXPECT_EQ((Strings{"sys_clock", "sys_clock", "slave", "sys_clock"}),
            (Strings{clock->getName(), display, clock->getInterfaceMode(),
                     clock->getOfComponent()}));
  EXPECT_EQ(&board, clock->getParentBoard());
  EXPECT_EQ(part0, clock->getOwnerComponent());
  // The blanks around the type are trimmed before the split.
  std::string vendor, library, name, version;
  clock->getAbstractType(vendor, library, name, version);
  EXPECT_EQ((Strings{"quarnel-ip", "interface", "diff_clock_rtl", "1.0"}),
            (Strings{vendor, library, name, version}));
  std::vector<HBOParameter *> params;
  clock->getParameters(params);
  ASSERT_EQ(1u, params.size());
  EXPECT_EQ("200000000", params[0]->getValueMax());
  EXPECT_TRUE(clock->getParamValue("FREQUENCY", display));
  EXPECT_EQ("100000000", display);

  // The mode keeps the case it is written in.
  HBOBusIf *leds = intf("led_4bits");
  ASSERT_NE(nullptr, leds);
  EXPECT_EQ((Strings{"Master", "LEDs", "Four user LEDs", "led_4bits_preset", "led_4bits.xml"}),
            (Strings{leds->getInterfaceMode(), leds->getOfComponent(), leds->getDescription(),
                     leds->getPresetProcName(), leds->getPresetFile()}));
  // Its enablement dependencies, which the clock has none of.
  EXPECT_EQ((std::map<std::string, bool>{{"J1", true}, {"J2", false}}), leds->getJumpers());
  EXPECT_EQ((std::map<std::string, bool>{{"led_bank", true}, {"low_power", false}}),
            leds->getParams());
  EXPECT_TRUE(clock->getJumpers().empty());
}

TEST_F(BasicBoard, PreferredIpsKeepFileOrderAndTheLastOfOrderZeroIsPreferred) {
  HBOBusIf *leds = intf("led_4bits");
  ASSERT_NE(nullptr, leds);
  std::vector<HBOBusIfPreference *> prefs;
  leds->getPreferences(prefs);
  ASSERT_EQ(3u, prefs.size());
  EXPECT_EQ((Strings{"quarnel-ip:ip:gpio_ctl:2.0", "gpio_ctl.xml", "led_4bits_preset"}),
            (Strings{prefs[0]->getDefaultIpVlnv(), prefs[0]->getPresetFile(),
                     prefs[0]->getPresetProc()}));
  EXPECT_EQ(&board, prefs[0]->getOwner());

  // No version means any version, in the VLNV texts and the field.
  HBOBusIfPreference *lite = prefs[1];
  EXPECT_EQ("quarnel-ip:ip:gpio_lite:*", lite->getDefaultIpVlnv());
  EXPECT_EQ(lite->getDefaultIpVlnv(), lite->getPrefName());
  EXPECT_EQ("*", lite->getVersion());
  EXPECT_EQ(5, lite->getOrder());

  EXPECT_EQ(prefs[2], leds->getPreference());
  EXPECT_EQ(nullptr, intf("buttons")->getPreference());
}

TEST_F(BasicBoard, PortMapsBecomeModelPortsWithTheirRanges) {
  HBOBusIf *leds = intf("led_4bits");
  ASSERT_NE(nullptr, leds);
  std::vector<HBOPortMap *> maps;
  leds->getPortMapSeq(maps);
  ASSERT_EQ(1u, maps.size());
  EXPECT_EQ("TRI_O", maps[0]->getLogicalPort());
  EXPECT_EQ("led_4bits_tri_o", maps[0]->getPhysicalPort());

  ASSERT_EQ(1u, leds->getPortMaps().count("led_4bits_tri_o"));
  HBOModelPort *port = leds->getPortMaps().at("led_4bits_tri_o");
  HBOModelPort *registered = nullptr;
  ASSERT_TRUE(part0->getModelPortByName(registered, "LED_4BITS_TRI_O"));
  EXPECT_EQ(port, registered);
  EXPECT_EQ(leds, port->getOwner());
  std::string owner, logical;
  port->getOwnerBusIf(owner);
  port->getBusIfLogicalPortName(logical);
  EXPECT_EQ((Strings{"led_4bits", "TRI_O"}), (Strings{owner, logical}));
  EXPECT_EQ((std::vector<int>{3, 0, 4}), shape(port));
  EXPECT_EQ((PinMap{{"0", "led0"}, {"1", "led1"}, {"2", "led2"}, {"3", "led3"}}),
            port->getPinPortMap());
  // Each pin learns which port of which interface it serves.
  EXPECT_EQ("led_4bits_tri_o", part0->findPin("led2")->getPortForInterface("led_4bits"));

  // One end alone makes a vector; a port without ends stays a scalar.
  bool isVector = false;
  HBOModelPort *in = intf("buttons")->getPortMaps().at("btn_tri_i");
  in->isPortOfTypeVec(isVector);
  EXPECT_TRUE(isVector);
  EXPECT_EQ((std::vector<int>{1, 0, 2}), shape(in));
  EXPECT_EQ((std::vector<int>{0, 1, 2}), shape(intf("buttons")->getPortMaps().at("btn_tri_t")));
  intf("sys_clock")->getPortMaps().at("sys_clk_p")->isPortOfTypeVec(isVector);
  EXPECT_FALSE(isVector);
}

TEST_F(BasicBoard, ComponentModes) {
  HBOBoardComponent *leds = board.findBoardComponent("leds");
  ASSERT_NE(nullptr, leds);
  std::vector<HBOComponentMode *> modes = modesOf(leds);
  ASSERT_EQ(4u, modes.size());

  // A mode without a name is numbered by the modes before it.
  EXPECT_EQ((Strings{"auto_generated_component_mode_0", "Component Mode 0",
                     "auto_generated_component_mode_3", "Fourth"}),
            (Strings{modes[0]->getName(), modes[0]->getDisplayName(), modes[3]->getName(),
                     modes[3]->getDisplayName()}));

  HBOComponentMode *both = modes[1];
  EXPECT_EQ((Strings{"leds_and_buttons", "LEDs and buttons", "LEDs with the buttons",
                     "leds_preset"}),
            (Strings{both->getName(), both->getDisplayName(), both->getDescription(),
                     both->getPresetProcName()}));
  // Position 1 stands in for the missing order, and the later order 1 replaces it.
  HBOComponentMode::InterfaceMap interfaces;
  both->getInterfaces(interfaces);
  EXPECT_EQ((HBOComponentMode::InterfaceMap{{1, {"led_4bits_alt", false}},
                                            {3, {"buttons", true}}}),
            interfaces);
  both->getRequiredInterfaces(interfaces);
  EXPECT_EQ(1u, interfaces.size());

  std::vector<HBOBusIfPreference *> prefs;
  both->getPreferredIps(prefs);
  ASSERT_EQ(2u, prefs.size());
  EXPECT_EQ("quarnel-ip:ip:gpio_ctl:*", prefs[0]->getDefaultIpVlnv());
  EXPECT_EQ(0, prefs[0]->getOrder());
  EXPECT_EQ("leds_preset", prefs[0]->getPresetProc());
  EXPECT_EQ(2, prefs[1]->getOrder());
  EXPECT_EQ("dual.xml", prefs[1]->getPresetFile());

  EXPECT_EQ("{J1 true} {J2 false}", both->getEnablementDependency());
  // Two jumpers elements double the brace between them; the engine does not mind.
  EXPECT_EQ("{J1 true}} {J2 false}", modes[2]->getEnablementDependency());
  EXPECT_EQ("{}", modes[3]->getEnablementDependency());
  // Only a child tagged exactly "interfaces" lists the mode's interfaces.
  modes[2]->getInterfaces(interfaces);
  EXPECT_TRUE(interfaces.empty());
}

TEST_F(BasicBoard, WhatTheFileUsesIsGatheredAndNoModeGenerated) {
  ASSERT_EQ(3u, parsed.interfaces.size());
  EXPECT_EQ("quarnel-ip:interface:diff_clock_rtl:1.0", parsed.interfaces[0].type);
  EXPECT_EQ((std::unordered_set<std::string>{"CLK_P", "CLK_N"}), parsed.interfaces[0].logicalPorts);
  // Interfaces give a version as written, modes put "*" for a missing one.
  EXPECT_EQ((std::unordered_set<std::string>{"quarnel-ip:ip:gpio_ctl:2.0",
                                             "quarnel-ip:ip:gpio_lite:",
                                             "quarnel-ip:ip:gpio_dual:1.1",
                                             "quarnel-ip:ip:gpio_ctl:*"}),
            parsed.preferredIpVlnvs);
  // Without strict checks a component without modes gets none.
  EXPECT_TRUE(modesOf(board.findBoardComponent("buttons")).empty());
}

TEST(StrictChecks, AComponentWithoutModesGetsOneFromTheBoardFile) {
  test::ParamScope strict("board.enable2020Checks", "true");
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  ASSERT_TRUE(parser.parseFile(dataPath("interfaces_basic/board.xml"), &board, false, "", nullptr));
  std::vector<HBOComponentMode *> modes = modesOf(board.findBoardComponent("buttons"));
  ASSERT_EQ(1u, modes.size());
  EXPECT_EQ("buttons", modes[0]->getName());
  EXPECT_EQ("buttons", modes[0]->getDisplayName());
  HBOComponentMode::InterfaceMap interfaces;
  modes[0]->getRequiredInterfaces(interfaces);
  EXPECT_EQ((HBOComponentMode::InterfaceMap{{0, {"buttons", false}}}), interfaces);
  // A system clock gets none, and without the send flag nothing is told.
  EXPECT_TRUE(modesOf(board.findBoardComponent("sys_clock")).empty());
  EXPECT_EQ(0u, msgs.count("49-149"));
}

TEST(Findings, EachFaultIsQueuedAndTheReadGoesOn) {
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  const std::string file = dataPath("interfaces_findings/board.xml");
  EXPECT_FALSE(parser.parseFile(file, &board, false, "", nullptr));
  const std::string gpio = "quarnel-ip:interface:gpio_rtl:1.0";
  EXPECT_EQ((std::vector<Finding>{
                {"49-37", {"three_fields"}},
                {"49-100", {file, "gpio_ctl", gpio}},
                {"49-69", {file, "Necessary component pins not provided for 'two_pins'."}},
                {"49-69", {file, "Necessary component pins not provided for 'short_bus'."}},
                {"49-69",
                 {file, "The interface 'pins' uses pin 'no_such_pin', but no such pin is defined "
                        "on the owning component 'part0'"}},
                {"49-145", {"gt_follower"}},
                {"49-69", {file, "Vendor cannot be empty in preferred_ip 'gpio_ctl'."}},
            }),
            queued(parser));

  HBOBoardComponent *part0 = board.findBoardComponent("part0");
  ASSERT_NE(nullptr, part0);
  std::string field = "unset";
  part0->getBusIfByName("three_fields")->getAbstractTypeName(field);
  EXPECT_EQ("", field);
  // An IP without order counts as order 0.
  HBOBusIf *noOrder = part0->getBusIfByName("no_order");
  ASSERT_NE(nullptr, noOrder->getPreference());
  EXPECT_EQ(0, noOrder->getPreference()->getOrder());

  const auto &ports = part0->getBusIfByName("pins")->getPortMaps();
  ASSERT_EQ(5u, ports.size());
  // Too few pins are still entered, a pin that does not exist too, and a
  // repeated index is silently overwritten without strict checks.
  EXPECT_EQ(7u, ports.at("short_bus")->getPinPortMap().size());
  EXPECT_EQ((PinMap{{"0", "no_such_pin"}}), ports.at("ghost")->getPinPortMap());
  std::vector<HBOPinProps *> pins;
  ports.at("ghost")->getPins(pins);
  EXPECT_TRUE(pins.empty());
  EXPECT_EQ((PinMap{{"0", "d7"}}), ports.at("twice")->getPinPortMap());
  EXPECT_TRUE(ports.at("unmapped")->getPinPortMap().empty());

  // A bad preferred IP ends its mode there; the next mode is read all the same.
  std::vector<HBOComponentMode *> modes = modesOf(board.findBoardComponent("gpio"));
  ASSERT_EQ(2u, modes.size());
  HBOComponentMode::InterfaceMap interfaces;
  modes[0]->getInterfaces(interfaces);
  EXPECT_EQ(1u, interfaces.size());
  std::vector<HBOBusIfPreference *> prefs;
  modes[0]->getPreferredIps(prefs);
  EXPECT_TRUE(prefs.empty());
  EXPECT_EQ("", modes[0]->getEnablementDependency());
  EXPECT_EQ("after", modes[1]->getName());
}

TEST(Findings, ABadPortEndsItsComponentAndTheBoard) {
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  const std::string file = dataPath("interfaces_bad_port/board.xml");
  EXPECT_FALSE(parser.parseFile(file, &board, false, "", nullptr));
  EXPECT_EQ((std::vector<Finding>{
                {"49-69", {file, "Port direction should be in/out/inout for 'led1_o'."}}}),
            queued(parser));
  EXPECT_NE(nullptr, board.findBoardComponent("leds"));
  EXPECT_EQ(nullptr, board.findBoardComponent("part0"));
  EXPECT_EQ(nullptr, board.findBoardComponent("switches"));
}

TEST(StrictFindings, ToldOnlyMessagesAndGeneratedModes) {
  test::MessageRecorder msgs;
  HBOBoard board;
  HBOBoardParser parser;
  const std::string file = dataPath("interfaces_strict/board.xml");
  ASSERT_TRUE(parser.parseFile(file, &board, true, "", nullptr));
  EXPECT_EQ((Strings{"49-149", "49-149", "49-150", "49-150", "49-148"}), msgs.ids());
  // A port is held against the interface names of other components: the
  // port "uart" meets both records of the interface "uart".
  const std::pair<const char *, Strings> told[] = {
      {"49-150", {"uart", "led_2bits", file, "part0"}},
      {"49-148", {"kestrel-boards:interfaces_strict:leds:1.0", "led_8bits", file}},
      {"49-149", {"kestrel-boards:interfaces_strict:lcd:1.0", file, "lcd_own", "lcd_own"}}};
  for (const auto &t : told) {
    const ComMsgRecord *record = msgs.find(t.first);
    ASSERT_NE(nullptr, record) << t.first;
    EXPECT_EQ(t.second, record->args) << t.first;
  }

  // lcd_shared is taken by the backlight's mode, which comes first by name.
  std::vector<HBOComponentMode *> lcd = modesOf(board.findBoardComponent("lcd"));
  ASSERT_EQ(1u, lcd.size());
  EXPECT_EQ("lcd_own", lcd[0]->getName());
  std::vector<HBOComponentMode *> uart = modesOf(board.findBoardComponent("uart"));
  ASSERT_EQ(1u, uart.size());
  EXPECT_EQ("uart", uart[0]->getName());
  EXPECT_TRUE(modesOf(board.findBoardComponent("sys_clock")).empty());
  EXPECT_TRUE(modesOf(board.findBoardComponent("part0")).empty());
  EXPECT_EQ(1u, modesOf(board.findBoardComponent("leds")).size());
}

TEST(StrictFindings, WhatFailsAStrictRead) {
  const std::string file = dataPath("interfaces_strict_bad/board.xml");
  const Finding portIndex{
      "49-69",
      {file, "In the pin_maps for the logical_port 'TRI_O' and physical port 'leds_o' the port "
             "index '1' is used for both 'led0' and for 'led1'. Port index must be unique."}};
  const Finding noRevisions{
      "49-69", {file, "No compatible boards were defined in a compatible_board_revisions element."}};
  // Without the send flag the two told findings are not even queued.
  for (bool send : {true, false}) {
    SCOPED_TRACE(send);
    test::MessageRecorder msgs;
    HBOBoard board;
    HBOBoardParser parser;
    EXPECT_FALSE(parser.parseFile(file, &board, send, "", nullptr));
    if (send) {
      EXPECT_EQ((std::vector<Finding>{{"49-133", {"leds", "Missing_Preset"}},
                                      portIndex,
                                      {"49-146", {"leds"}},
                                      noRevisions}),
                queued(parser));
      EXPECT_EQ("49-56", msgs.ids().back());
    } else {
      EXPECT_EQ((std::vector<Finding>{portIndex, noRevisions}), queued(parser));
    }
  }
}
