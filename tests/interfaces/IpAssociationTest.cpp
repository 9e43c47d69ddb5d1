// Which presets go with a procedure, which board interfaces an IP's
// interface may be wired to, and which FPGA interfaces lead to a component.
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOIpPreset.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace {

/// The debug scope of the queries, on or off while it lives.
class DebugScope {
public:
  explicit DebugScope(bool on) { ComMsgMgr::enableScope("board_intf", on); }
  ~DebugScope() { ComMsgMgr::enableScope("board_intf", false); }
};

std::vector<std::string> debugLines(const test::MessageRecorder &recorder) {
  std::vector<std::string> lines;
  for (const ComMsgRecord &record : recorder.records)
    if (record.severityName == "DEBUG")
      lines.push_back(record.text);
  return lines;
}

HBOIpPreset *record(HBOBoard &board, const std::string &vendor, const std::string &library,
                    const std::string &name, const std::string &version,
                    const std::string &ipInterface, std::initializer_list<const char *> keys) {
  HBOIpPreset *preset = new HBOIpPreset();
  preset->setOwner(&board);
  preset->setPresetorAssocIntf("assoc_intf");
  preset->setVendor(vendor);
  preset->setLibrary(library);
  preset->setName(name);
  preset->setVersion(version);
  preset->setIpInterface(ipInterface);
  for (const char *key : keys)
    preset->setParam(key, "");
  return preset;
}

} // namespace

TEST(PresetProcedures, FoundIgnoringCaseAndOnlyAmongPresets) {
  HBOBoard board;
  HBOIpPreset *a = new HBOIpPreset();
  HBOIpPreset *b = new HBOIpPreset();
  board.setIpPreset("Led_Preset", {a, b});
  board.setIpAssociatedInterface("assoc_proc", {record(board, "v", "l", "n", "1", "i", {})});
  EXPECT_EQ((std::vector<HBOIpPreset *>{a, b}), board.findPresetProc("LED_preset"));
  EXPECT_TRUE(board.findPresetProc("").empty());
  EXPECT_TRUE(board.findPresetProc("other").empty());
  EXPECT_TRUE(board.findPresetProc("assoc_proc").empty());
}

TEST(AssociatedInterfaces, EveryMatchingRecordGivesItsBoardInterfaces) {
  HBOBoard board;
  board.setIpAssociatedInterface(
      "b_proc",
      {record(board, "quarnel-ip", "ip", "gpio_ctl", "2.0", "GPIO", {"led_4bits", "buttons"}),
       record(board, "quarnel-ip", "ip", "gpio_ctl", "2.0", "GPIO2", {"dip"}),
       record(board, "quarnel-ip", "ip", "uart_lite", "2.0", "GPIO", {"uart"})});
  board.setIpAssociatedInterface(
      "a_proc", {record(board, "Quarnel-IP", "IP", "GPIO_CTL", "1.0", "gpio", {"led_4bits"})});

  DebugScope off(false);
  test::MessageRecorder debug;
  std::vector<std::string> out{"kept"};
  // The version is not compared; keys are taken in order, repeats and all.
  EXPECT_TRUE(board.getIpAssocInterfaces("gpio", "quarnel-ip:ip:gpio_ctl:9.9", out));
  EXPECT_EQ((std::vector<std::string>{"kept", "led_4bits", "buttons", "led_4bits"}), out);
  EXPECT_TRUE(debugLines(debug).empty());

  out.clear();
  EXPECT_TRUE(board.getIpAssocInterfaces("GPIO2", "quarnel-ip::ip:gpio_ctl", out));
  EXPECT_EQ(std::vector<std::string>{"dip"}, out);
  EXPECT_FALSE(board.getIpAssocInterfaces("gpio3", "quarnel-ip:ip:gpio_ctl:2.0", out));
  EXPECT_FALSE(board.getIpAssocInterfaces("gpio", "quarnel-ip:ip", out));
  EXPECT_FALSE(board.getIpAssocInterfaces("gpio", "", out));
  EXPECT_EQ(std::vector<std::string>{"dip"}, out);
}

TEST(AssociatedInterfaces, TheDebugScopeTellsTheWalk) {
  HBOBoard board;
  board.setIpAssociatedInterface(
      "proc", {record(board, "quarnel-ip", "ip", "uart_lite", "2.0", "UART", {"usb_uart"})});
  DebugScope on(true);
  test::MessageRecorder debug;
  std::vector<std::string> out;
  EXPECT_TRUE(board.getIpAssocInterfaces("uart", "quarnel-ip:ip:uart_lite:2.0", out));
  EXPECT_EQ((std::vector<std::string>{
                "[DBG] board: In HBOBoard::getIpAssocInterfaces for IP interface uart vlnv "
                "quarnel-ip:ip:uart_lite:2.0",
                "[DBG]   + associated board interface: usb_uart"}),
            debugLines(debug));
}

TEST(OfComponentInterfaces, TheFpgaInterfacesThatLeadToAComponent) {
  HBOBoard board;
  auto component = [&](const std::string &name, const std::string &type) {
    HBOBoardComponent *c = new HBOBoardComponent();
    c->setComponentName(name);
    c->setType(type);
    c->setBoard(&board);
    board.addBoardComponent(c);
    return c;
  };
  HBOBoardComponent *fpga = component("part0", "fpga");
  HBOBoardComponent *leds = component("leds", "chip");
  HBOBoardComponent *fmc = component("fmc", "connector");
  auto intf = [](HBOBoardComponent *owner, const std::string &name, const std::string &of) {
    HBOBusIf *i = new HBOBusIf();
    i->setName(name);
    i->setOfComponent(of);
    owner->setBusIf(name, i);
    return i;
  };
  HBOBusIf *second = intf(fpga, "z_leds", "leds");
  HBOBusIf *first = intf(fpga, "a_leds", "LEDS");
  intf(fpga, "uart", "usb_uart");
  HBOBusIf *onFmc = intf(fmc, "fmc_leds", "leds");

  std::vector<HBOBusIf *> out{nullptr};
  leds->getOfCompInterfaces(out, true, fmc);
  EXPECT_EQ((std::vector<HBOBusIf *>{first, second}), out);
  leds->getOfCompInterfaces(out, false, fmc);
  EXPECT_EQ(std::vector<HBOBusIf *>{onFmc}, out);
  leds->getOfCompInterfaces(out, false, nullptr);
  EXPECT_TRUE(out.empty());
  // A component off any board has no active part to ask.
  HBOBoardComponent loose;
  loose.setComponentName("leds");
  out.push_back(first);
  loose.getOfCompInterfaces(out, true, nullptr);
  EXPECT_TRUE(out.empty());
}
