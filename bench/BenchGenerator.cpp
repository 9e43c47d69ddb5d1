#include "BenchGenerator.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace {

// The raw output of mt19937 is fixed by the standard; the distributions are
// not, so ranges are cut by hand to keep the bytes the same everywhere.
class Dice {
public:
  explicit Dice(std::uint32_t seed) : m_engine(seed) {}
  int pick(int n) { return n <= 1 ? 0 : static_cast<int>(m_engine() % static_cast<unsigned>(n)); }
  int range(int lo, int hi) { return lo + pick(hi - lo + 1); }
  bool percent(int p) { return pick(100) < p; }
  template <typename T, std::size_t N> const T &of(const T (&items)[N]) {
    return items[pick(static_cast<int>(N))];
  }
  /// A decimal with three places between lo/1000 and hi/1000.
  std::string milli(int lo, int hi) {
    char buf[24];
    std::snprintf(buf, sizeof buf, "%.3f", range(lo, hi) / 1000.0);
    return buf;
  }

private:
  std::mt19937 m_engine;
};

// What a pin's bank is powered for. The class decides the I/O standards a
// pin may have, the bank's VCCO and the supply that feeds it.
enum class Io { Ddr4, Ddr3, V33, V18, Gt };

const char *vccoOf(Io io) {
  switch (io) {
  case Io::Ddr4:
    return "1.2";
  case Io::Ddr3:
    return "1.5";
  case Io::V33:
    return "3.3";
  case Io::V18:
    return "1.8";
  case Io::Gt:
    break;
  }
  return "";
}

struct Port {
  std::string logical;
  std::string dir;
  int width = 1;
  Io io = Io::V33;
  bool differential = false;
  int firstPin = 0; // index into the part's pin file
};

struct Interface {
  std::string name;
  std::string kind; // which preset vocabulary applies
  std::string vlnv;
  std::string mode = "master";
  std::string component;
  std::string ipName;
  std::string ipVersion;
  std::string ipInterface;
  std::string description;
  std::vector<Port> ports;
  std::vector<std::pair<std::string, std::string>> params;
  std::string gate; // the jumper that must be set for it, if any
  bool gateValue = false;
  int firstPin = 0;
  int pinCount = 0;
  int presetParams = 0; // plain user parameters per IP of its preset
};

struct Pin {
  std::string name;
  const Port *port = nullptr; // null for a spare pin
  int bank = 0;
  Io io = Io::V18;
  std::string loc;
};

struct Bank {
  int id = 0;
  Io io = Io::V18;
  int used = 0;
};

struct Mode {
  std::string name;
  std::vector<std::pair<std::size_t, bool>> interfaces; // interface, optional
};

struct Companion {
  std::string name;
  std::string displayName;
  std::string type;
  std::string subType;
  std::string majorGroup;
  std::string connectedTo = "pl";
  std::vector<std::size_t> interfaces;
  std::vector<Mode> modes;
  std::vector<std::pair<std::string, std::string>> params;
  int listedPins = 0; // pins that board.xml lists for it, from index 0
  bool hasDriver = false;
};

struct Rail {
  std::string name;
  std::string voltage;
  std::vector<std::string> supplies;
  std::vector<std::pair<std::string, int>> rails; // member rail, phases drawn (0: none)
  bool direct = false;
  int phases = 0;
};

// One board: its companions decide the interfaces, the interfaces the pins,
// the pins the banks, and the banks the power rails.
struct BoardModel {
  std::string vendor;
  std::string name;
  std::string version;
  std::string schema;
  std::string part;
  std::vector<Companion> companions;
  std::vector<Interface> interfaces;
  std::vector<Pin> pins;
  std::vector<Bank> banks;
  std::vector<std::string> jumpers;
  std::vector<Rail> rails;
  std::vector<std::pair<std::string, std::string>> supplyCurrents;
  int pinTarget = 0;
  std::size_t clock = static_cast<std::size_t>(-1); // the system clock interface
  std::size_t reset = static_cast<std::size_t>(-1); // the system reset interface
};

const char *const kVendors[] = {"fennel-labs",        "marrow-devices",    "tallis-boards",
                                "oriel-systems",      "quill-electronics", "brackwater-eval",
                                "sorrel-instruments", "cadence-point"};
const char *const kParts[] = {"kv30-cs324-1",  "kv50-fb484-1",    "kv70-ff676-2",
                              "kv90-fb900-2L", "ku40-ffva1156-2", "ku60-sfvb784-1"};
const char *const kWords[] = {"WIDTH",   "DEPTH",    "MODE",   "ENABLE",  "PERIOD", "PHASE",
                              "DELAY",   "POLARITY", "RATE",   "LATENCY", "BURST",  "FIFO",
                              "FILTER",  "DRIVE",    "TERM",   "SKEW",    "RANK",   "ORDER",
                              "TIMEOUT", "PRESCALE", "CLKOUT", "DIVIDE",  "MULT",   "JITTER",
                              "ECC",     "REFRESH",  "CAL",    "TRAIN",   "LANES",  "SPEED"};
const char *const kStrings[] = {"true", "false", "AUTO",  "NONE", "Custom", "Enabled", "Disabled",
                                "High", "Low",   "Board", "x8",   "x16",    "Normal"};

std::string xmlHeader() { return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"; }

// Appends  name="value" ; the values written here never need escaping.
void attr(std::string &out, const char *name, const std::string &value) {
  out += ' ';
  out += name;
  out += "=\"";
  out += value;
  out += '"';
}

std::string lower(std::string text) {
  for (char &c : text)
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  return text;
}

std::string upper(std::string text) {
  for (char &c : text)
    if (c >= 'a' && c <= 'z')
      c = static_cast<char>(c - 'a' + 'A');
  return text;
}

std::string num(long value) { return std::to_string(value); }

// ---------------------------------------------------------------------------
// Interfaces

void addPort(Interface &intf, const std::string &logical, const std::string &dir, int width, Io io,
             bool differential = false) {
  Port port;
  port.logical = logical;
  port.dir = dir;
  port.width = width;
  port.io = io;
  port.differential = differential;
  intf.ports.push_back(port);
}

void setIp(Interface &intf, const char *vlnv, const char *ip, const char *version,
           const char *ipInterface) {
  intf.vlnv = vlnv;
  intf.ipName = ip;
  intf.ipVersion = version;
  intf.ipInterface = ipInterface;
}

void ddr4(Interface &intf, int dataWidth, Dice &dice) {
  intf.kind = "ddr4";
  setIp(intf, "quarnel-ip:interface:ddr4_rtl:1.0", "memctl_gen", "4.2", "C0_DDR4");
  addPort(intf, "ADR", "out", 17, Io::Ddr4);
  addPort(intf, "BA", "out", 2, Io::Ddr4);
  addPort(intf, "BG", "out", dataWidth > 32 ? 2 : 1, Io::Ddr4);
  for (const char *single : {"ACT_N", "CKE", "CS_N", "ODT", "RESET_N", "PAR"})
    addPort(intf, single, "out", 1, Io::Ddr4);
  addPort(intf, "CK_T", "out", 1, Io::Ddr4, true);
  addPort(intf, "CK_C", "out", 1, Io::Ddr4, true);
  addPort(intf, "DQ", "inout", dataWidth, Io::Ddr4);
  addPort(intf, "DM_N", "inout", dataWidth / 8, Io::Ddr4);
  addPort(intf, "DQS_T", "inout", dataWidth / 8, Io::Ddr4, true);
  addPort(intf, "DQS_C", "inout", dataWidth / 8, Io::Ddr4, true);
  intf.params.push_back({"memory_type", "components"});
  intf.params.push_back({"data_width", num(dataWidth)});
  intf.presetParams = dice.range(100, 200);
  intf.description = "DDR4 SDRAM, " + num(dataWidth) + " bits wide";
}

void ddr3(Interface &intf, int dataWidth, Dice &dice) {
  intf.kind = "ddr3";
  setIp(intf, "quarnel-ip:interface:ddrx_rtl:1.0", "memctl_gen", "4.2", "DDR3");
  addPort(intf, "ADDR", "out", dice.range(14, 16), Io::Ddr3);
  addPort(intf, "BA", "out", 3, Io::Ddr3);
  for (const char *single : {"RAS_N", "CAS_N", "WE_N", "CKE", "ODT", "CS_N", "RESET_N"})
    addPort(intf, single, "out", 1, Io::Ddr3);
  addPort(intf, "CK_P", "out", 1, Io::Ddr3, true);
  addPort(intf, "CK_N", "out", 1, Io::Ddr3, true);
  addPort(intf, "DQ", "inout", dataWidth, Io::Ddr3);
  addPort(intf, "DM", "out", dataWidth / 8, Io::Ddr3);
  addPort(intf, "DQS_P", "inout", dataWidth / 8, Io::Ddr3, true);
  addPort(intf, "DQS_N", "inout", dataWidth / 8, Io::Ddr3, true);
  intf.params.push_back({"data_width", num(dataWidth)});
  intf.presetParams = dice.range(100, 200);
  intf.description = "DDR3 SDRAM, " + num(dataWidth) + " bits wide";
}

void diffClock(Interface &intf, Io io, Dice &dice) {
  intf.kind = "clock";
  intf.mode = "slave";
  setIp(intf, "quarnel-ip:interface:diff_clock_rtl:1.0", "clk_gen", "6.0", "CLK_IN1_D");
  addPort(intf, "CLK_P", "in", 1, io, true);
  addPort(intf, "CLK_N", "in", 1, io, true);
  static const int kMHz[] = {100, 125, 150, 156, 200, 250, 300, 312, 333, 400};
  intf.params.push_back({"frequency", num(dice.of(kMHz) * 1000000L)});
  intf.presetParams = dice.range(10, 24);
  intf.description = "Differential clock input";
}

void resetIn(Interface &intf, Io io, Dice &dice) {
  intf.kind = "reset";
  intf.mode = "slave";
  setIp(intf, "quarnel-ip:signal:reset_rtl:1.0", "proc_reset", "5.0", "ext_reset");
  addPort(intf, "RST", "in", 1, io);
  intf.params.push_back({"rst_polarity", dice.pick(2) ? "1" : "0"});
  intf.presetParams = dice.range(4, 10);
  intf.description = "Reset input";
}

void gpio(Interface &intf, const char *logical, const char *dir, int width, Io io, Dice &dice) {
  intf.kind = "gpio";
  setIp(intf, "quarnel-ip:interface:gpio_rtl:1.0", "gpio_ctl", "2.0", "GPIO");
  addPort(intf, logical, dir, width, io);
  intf.presetParams = dice.range(8, 20);
  intf.description = num(width) + " general purpose I/O";
}

void uart(Interface &intf, Dice &dice) {
  intf.kind = "uart";
  setIp(intf, "quarnel-ip:interface:uart_rtl:1.0", "uart_lite", "2.0", "UART");
  addPort(intf, "TxD", "out", 1, Io::V33);
  addPort(intf, "RxD", "in", 1, Io::V33);
  if (dice.pick(2)) {
    addPort(intf, "RTSn", "out", 1, Io::V33);
    addPort(intf, "CTSn", "in", 1, Io::V33);
  }
  intf.presetParams = dice.range(8, 16);
  intf.description = "Serial port";
}

void iic(Interface &intf, Io io, Dice &dice) {
  intf.kind = "iic";
  setIp(intf, "quarnel-ip:interface:iic_rtl:1.0", "iic_ctl", "2.1", "IIC");
  addPort(intf, "SCL_IO", "inout", 1, io);
  addPort(intf, "SDA_IO", "inout", 1, io);
  intf.presetParams = dice.range(8, 18);
  intf.description = "IIC bus";
}

void qspi(Interface &intf, Dice &dice) {
  intf.kind = "spi";
  setIp(intf, "quarnel-ip:interface:spi_rtl:1.0", "qspi_ctl", "3.2", "SPI_0");
  addPort(intf, "SCK_O", "out", 1, Io::V33);
  addPort(intf, "IO", "inout", 4, Io::V33);
  addPort(intf, "SS_O", "out", 1, Io::V33);
  intf.presetParams = dice.range(12, 30);
  intf.description = "Quad SPI flash";
}

void emc(Interface &intf, int addressWidth, Dice &dice) {
  intf.kind = "emc";
  setIp(intf, "quarnel-ip:interface:emc_rtl:1.0", "emc_ctl", "3.0", "EMC_INTF");
  addPort(intf, "ADDR", "out", addressWidth, Io::V18);
  addPort(intf, "DQ", "inout", 16, Io::V18);
  for (const char *single : {"CE_N", "OEN", "WEN", "ADV_LDN", "WAIT"})
    addPort(intf, single, std::strcmp(single, "WAIT") == 0 ? "in" : "out", 1, Io::V18);
  intf.presetParams = dice.range(30, 60);
  intf.description = "Parallel memory bus";
}

void mdio(Interface &intf, Dice &dice) {
  intf.kind = "mdio";
  setIp(intf, "quarnel-ip:interface:mdio_rtl:1.0", "eth_mac", "9.0", "MDIO");
  addPort(intf, "MDC", "out", 1, Io::V18);
  addPort(intf, "MDIO_I", "inout", 1, Io::V18);
  intf.presetParams = dice.range(6, 12);
  intf.description = "PHY management";
}

void rgmii(Interface &intf, Dice &dice) {
  intf.kind = "rgmii";
  setIp(intf, "quarnel-ip:interface:rgmii_rtl:1.0", "eth_mac", "9.0", "RGMII");
  addPort(intf, "TD", "out", 4, Io::V18);
  addPort(intf, "TX_CTL", "out", 1, Io::V18);
  addPort(intf, "TXC", "out", 1, Io::V18);
  addPort(intf, "RD", "in", 4, Io::V18);
  addPort(intf, "RX_CTL", "in", 1, Io::V18);
  addPort(intf, "RXC", "in", 1, Io::V18);
  intf.presetParams = dice.range(30, 60);
  intf.description = "Gigabit Ethernet, RGMII";
}

void serialLanes(Interface &intf, int lanes, const char *kind, Dice &dice) {
  intf.kind = kind;
  if (std::strcmp(kind, "pcie") == 0)
    setIp(intf, "quarnel-ip:interface:pcie_7x_mgt_rtl:1.0", "pcie_gen", "3.3", "pci_exp");
  else
    setIp(intf, "quarnel-ip:interface:sfp_rtl:1.0", "eth_pcs", "16.1", "sfp");
  for (const char *name : {"TXP", "TXN", "RXP", "RXN"})
    addPort(intf, name, name[0] == 'T' ? "out" : "in", lanes, Io::Gt);
  intf.presetParams = std::strcmp(kind, "pcie") == 0 ? dice.range(80, 160) : dice.range(20, 40);
  intf.description = num(lanes) + "-lane serial link";
}

void lvdsPairs(Interface &intf, const char *prefix, int pairs, Dice &dice) {
  intf.kind = "gpio";
  setIp(intf, "quarnel-ip:interface:gpio_rtl:1.0", "gpio_ctl", "2.0", "GPIO2");
  addPort(intf, std::string(prefix) + "_P", "inout", pairs, Io::V18, true);
  addPort(intf, std::string(prefix) + "_N", "inout", pairs, Io::V18, true);
  intf.presetParams = dice.range(10, 24);
  intf.description = num(pairs) + " differential pairs of the connector";
}

// ---------------------------------------------------------------------------
// Companions

enum class Kind {
  Ddr4,
  Ddr3,
  Dimm,
  SysClock,
  UserClock,
  MgtClock,
  Reset,
  Led,
  Button,
  Switch,
  Uart,
  IicMux,
  Qspi,
  Bpi,
  Sram,
  Ethernet,
  Sfp,
  Sma,
  Pmod,
  FmcLpc,
  FmcHpc,
  Pcie,
  Lcd
};

struct KindInfo {
  Kind kind;
  const char *base;
  const char *displayName;
  const char *type;
  const char *subType;
  const char *majorGroup;
  int pins; // about how many FPGA pins it takes, to keep within the target
  int weight;
};

const KindInfo kKinds[] = {
    {Kind::Ddr4, "ddr4_sdram", "DDR4 SDRAM", "chip", "ddr", "External Memory", 80, 3},
    {Kind::Ddr3, "ddr3_sdram", "DDR3 SDRAM", "chip", "ddr", "External Memory", 70, 2},
    {Kind::Dimm, "ddr4_dimm", "DDR4 SODIMM", "chip", "dimm", "External Memory", 130, 1},
    {Kind::SysClock, "sys_clock", "System Clock", "chip", "system_clock", "Clock Sources", 2, 1},
    {Kind::UserClock, "user_clock", "User Clock", "chip", "system_clock", "Clock Sources", 2, 3},
    {Kind::MgtClock, "mgt_clock", "Transceiver Clock", "chip", "mgt_clock", "Clock Sources", 2, 2},
    {Kind::Reset, "cpu_reset", "CPU Reset", "chip", "system_reset", "Reset", 1, 1},
    {Kind::Led, "led", "User LEDs", "chip", "led", "General Purpose Input or Output", 8, 5},
    {Kind::Button, "push_buttons", "Push Buttons", "chip", "push_button",
     "General Purpose Input or Output", 4, 4},
    {Kind::Switch, "dip_switches", "DIP Switches", "chip", "switch",
     "General Purpose Input or Output", 6, 4},
    {Kind::Uart, "usb_uart", "USB UART", "chip", "uart", "Miscellaneous", 3, 3},
    {Kind::IicMux, "iic_mux", "IIC Multiplexer", "chip", "mux", "Miscellaneous", 2, 2},
    {Kind::Qspi, "qspi_flash", "QSPI Flash", "chip", "memory_flash_qspi", "External Memory", 6, 1},
    {Kind::Bpi, "bpi_flash", "BPI Flash", "chip", "memory_flash_bpi", "External Memory", 45, 1},
    {Kind::Sram, "sram", "Static RAM", "chip", "memory", "External Memory", 41, 1},
    {Kind::Ethernet, "eth_phy", "Ethernet PHY", "chip", "ethernet", "Ethernet Configurations", 15,
     3},
    {Kind::Sfp, "sfp", "SFP+ Cage", "connector", "sfp", "Ethernet Configurations", 5, 2},
    {Kind::Sma, "user_sma", "User SMA", "connector", "sma", "Clock Sources", 2, 2},
    {Kind::Pmod, "pmod", "PMOD Header", "connector", "pmod", "Pmod", 8, 5},
    {Kind::FmcLpc, "fmc_lpc", "FMC LPC", "connector", "fmc_lpc", "FMC", 70, 2},
    {Kind::FmcHpc, "fmc_hpc", "FMC HPC", "connector", "fmc_hpc", "FMC", 120, 1},
    {Kind::Pcie, "pcie", "PCI Express Edge", "connector", "pcie", "PCIe", 20, 1},
    {Kind::Lcd, "lcd", "Character LCD", "chip", "lcd", "Miscellaneous", 9, 1},
};

const KindInfo &infoOf(Kind kind) {
  for (const KindInfo &info : kKinds)
    if (info.kind == kind)
      return info;
  return kKinds[0];
}

class BoardBuilder {
public:
  BoardBuilder(BoardModel &board, Dice &dice) : m_board(board), m_dice(dice) {}

  int pinsUsed() const { return m_pinsUsed; }

  void addCompanion(Kind kind) {
    const KindInfo &info = infoOf(kind);
    int &count = m_kindCount[static_cast<int>(kind)];
    Companion comp;
    comp.name = count == 0 ? info.base : std::string(info.base) + "_" + num(count);
    comp.displayName =
        count == 0 ? info.displayName : std::string(info.displayName) + " " + num(count + 1);
    ++count;
    comp.type = info.type;
    comp.subType = info.subType;
    comp.majorGroup = info.majorGroup;
    m_board.companions.push_back(comp);
    Companion &c = m_board.companions.back();
    Dice &d = m_dice;
    switch (kind) {
    case Kind::Ddr4: {
      static const int kWidths[] = {16, 32, 64, 64, 72};
      ddr4(newInterface(c, ""), d.of(kWidths), d);
      c.params.push_back({"density", d.pick(2) ? "8Gb" : "16Gb"});
      break;
    }
    case Kind::Ddr3: {
      static const int kWidths[] = {16, 32, 64};
      ddr3(newInterface(c, ""), d.of(kWidths), d);
      break;
    }
    case Kind::Dimm:
      ddr4(newInterface(c, ""), 72, d);
      c.params.push_back({"slots", "1"});
      break;
    case Kind::SysClock:
      diffClock(newInterface(c, ""), Io::V18, d);
      break;
    case Kind::UserClock:
      diffClock(newInterface(c, ""), Io::V18, d);
      break;
    case Kind::MgtClock:
      diffClock(newInterface(c, ""), Io::Gt, d);
      if (d.pick(2))
        diffClock(newInterface(c, "clk1"), Io::Gt, d);
      break;
    case Kind::Reset:
      resetIn(newInterface(c, ""), Io::V33, d);
      break;
    case Kind::Led:
      gpio(newInterface(c, ""), "TRI_O", "out", d.range(4, 16), Io::V33, d);
      break;
    case Kind::Button:
      gpio(newInterface(c, ""), "TRI_I", "in", d.range(2, 5), Io::V33, d);
      break;
    case Kind::Switch:
      gpio(newInterface(c, ""), "TRI_I", "in", d.range(4, 8), Io::V33, d);
      break;
    case Kind::Uart:
      c.connectedTo = "ps_and_pl";
      uart(newInterface(c, ""), d);
      break;
    case Kind::IicMux:
      iic(newInterface(c, ""), Io::V33, d);
      break;
    case Kind::Qspi:
      c.connectedTo = d.pick(2) ? "ps" : "pl";
      qspi(newInterface(c, ""), d);
      break;
    case Kind::Bpi:
      emc(newInterface(c, ""), d.range(24, 27), d);
      break;
    case Kind::Sram:
      emc(newInterface(c, ""), d.range(18, 21), d);
      break;
    case Kind::Ethernet: {
      const std::size_t data = m_board.interfaces.size();
      rgmii(newInterface(c, ""), d);
      const std::size_t mgmt = m_board.interfaces.size();
      mdio(newInterface(c, "mdio"), d);
      const std::size_t rst = m_board.interfaces.size();
      gpio(newInterface(c, "reset"), "TRI_O", "out", 1, Io::V18, d);
      c.hasDriver = true;
      // A mode that brings the whole PHY up, beside one per interface.
      c.modes.push_back({c.name + "_full", {{data, false}, {mgmt, false}, {rst, true}}});
      break;
    }
    case Kind::Sfp:
      serialLanes(newInterface(c, ""), 1, "sfp", d);
      gpio(newInterface(c, "tx_disable"), "TRI_O", "out", 1, Io::V33, d);
      break;
    case Kind::Sma:
      diffClock(newInterface(c, ""), Io::V18, d);
      break;
    case Kind::Pmod:
      gpio(newInterface(c, ""), "TRI_T", "inout", 8, Io::V33, d);
      c.listedPins = 8;
      break;
    case Kind::FmcLpc:
      lvdsPairs(newInterface(c, "la"), "LA", d.range(17, 34), d);
      diffClock(newInterface(c, "clk0"), Io::V18, d);
      iic(newInterface(c, "iic"), Io::V33, d);
      c.params.push_back({"vadj", d.pick(2) ? "1.8" : "1.2"});
      break;
    case Kind::FmcHpc:
      lvdsPairs(newInterface(c, "la"), "LA", 34, d);
      lvdsPairs(newInterface(c, "ha"), "HA", d.range(12, 24), d);
      diffClock(newInterface(c, "clk0"), Io::V18, d);
      diffClock(newInterface(c, "gbtclk0"), Io::Gt, d);
      serialLanes(newInterface(c, "dp"), d.pick(2) ? 4 : 8, "sfp", d);
      iic(newInterface(c, "iic"), Io::V33, d);
      c.params.push_back({"vadj", "1.8"});
      break;
    case Kind::Pcie: {
      static const int kLanes[] = {1, 2, 4, 8};
      const std::size_t lanes = m_board.interfaces.size();
      serialLanes(newInterface(c, ""), d.of(kLanes), "pcie", d);
      const std::size_t perst = m_board.interfaces.size();
      resetIn(newInterface(c, "perst"), Io::V33, d);
      const std::size_t refclk = m_board.interfaces.size();
      diffClock(newInterface(c, "refclk"), Io::Gt, d);
      c.modes.push_back({c.name + "_endpoint", {{lanes, false}, {perst, false}, {refclk, false}}});
      break;
    }
    case Kind::Lcd:
      gpio(newInterface(c, ""), "TRI_O", "out", d.range(7, 11), Io::V33, d);
      break;
    }
    // One mode per interface, named after it, ahead of the combined ones.
    std::vector<Mode> modes;
    for (std::size_t i : c.interfaces) {
      Mode mode{m_board.interfaces[i].name, {{i, false}}};
      const std::string &kind = m_board.interfaces[i].kind;
      if ((kind == "ddr4" || kind == "ddr3") && m_board.clock != static_cast<std::size_t>(-1) &&
          m_board.reset != static_cast<std::size_t>(-1)) {
        mode.interfaces.push_back({m_board.clock, true});
        mode.interfaces.push_back({m_board.reset, true});
      }
      modes.push_back(mode);
    }
    modes.insert(modes.end(), c.modes.begin(), c.modes.end());
    c.modes = modes;
    for (std::size_t i : c.interfaces)
      for (const Port &port : m_board.interfaces[i].ports)
        m_pinsUsed += port.width;
  }

private:
  Interface &newInterface(Companion &comp, const std::string &suffix) {
    Interface intf;
    intf.name = suffix.empty() ? comp.name : comp.name + "_" + suffix;
    intf.component = comp.name;
    comp.interfaces.push_back(m_board.interfaces.size());
    m_board.interfaces.push_back(intf);
    return m_board.interfaces.back();
  }

  BoardModel &m_board;
  Dice &m_dice;
  int m_pinsUsed = 0;
  int m_kindCount[32] = {};
};

// Picks the companions: the ones every board has, then a weighted draw
// that leaves out what would take the FPGA far beyond its pin target.
void chooseCompanions(BoardModel &board, int companionCount, Dice &dice) {
  BoardBuilder builder(board, dice);
  builder.addCompanion(Kind::SysClock);
  board.clock = board.interfaces.size() - 1;
  builder.addCompanion(Kind::Reset);
  board.reset = board.interfaces.size() - 1;
  builder.addCompanion(dice.percent(70) ? Kind::Ddr4 : Kind::Ddr3);
  for (Kind kind : {Kind::Led, Kind::Button, Kind::Uart, Kind::Qspi, Kind::IicMux})
    builder.addCompanion(kind);
  int totalWeight = 0;
  for (const KindInfo &info : kKinds)
    totalWeight += info.weight;
  while (static_cast<int>(board.companions.size()) < companionCount) {
    const int left = board.pinTarget - builder.pinsUsed();
    int roll = dice.pick(totalWeight);
    const KindInfo *chosen = &kKinds[0];
    for (const KindInfo &info : kKinds) {
      if (roll < info.weight) {
        chosen = &info;
        break;
      }
      roll -= info.weight;
    }
    // Past the target only clocks, serial ports and the like still come, as
    // on a real board whose last components take a pin or two each.
    if (chosen->pins > 3 && chosen->pins > left)
      continue;
    if (chosen->kind == Kind::SysClock || chosen->kind == Kind::Reset)
      continue;
    builder.addCompanion(chosen->kind);
  }
}

// ---------------------------------------------------------------------------
// Pins, banks, power

void placePins(BoardModel &board, Dice &dice) {
  // Each group of banks of one voltage fills its current bank and then opens
  // the next; a memory interface starts a bank of its own.
  int nextIoBank = 12, nextGtBank = 224;
  auto bankFor = [&](Io io, bool fresh) -> Bank & {
    const int capacity = io == Io::Gt ? 16 : 52;
    for (auto it = board.banks.rbegin(); it != board.banks.rend(); ++it)
      if (it->io == io) {
        if (!fresh && it->used < capacity)
          return *it;
        break;
      }
    Bank bank;
    bank.io = io;
    bank.id = io == Io::Gt ? nextGtBank++ : nextIoBank++;
    board.banks.push_back(bank);
    return board.banks.back();
  };
  for (Interface &intf : board.interfaces) {
    intf.firstPin = static_cast<int>(board.pins.size());
    bool first = true;
    for (Port &port : intf.ports) {
      port.firstPin = static_cast<int>(board.pins.size());
      const std::string physical = intf.name + "_" + lower(port.logical);
      for (int bit = 0; bit < port.width; ++bit) {
        Pin pin;
        pin.name = port.width > 1 ? physical + num(bit) : physical;
        pin.port = &port;
        pin.io = port.io;
        const bool memory = port.io == Io::Ddr4 || port.io == Io::Ddr3;
        Bank &bank = bankFor(port.io, memory && first);
        first = false;
        ++bank.used;
        pin.bank = bank.id;
        board.pins.push_back(pin);
      }
    }
    intf.pinCount = static_cast<int>(board.pins.size()) - intf.firstPin;
  }
  // The rest of the target: user I/O that no interface names.
  for (int spare = 0; static_cast<int>(board.pins.size()) < board.pinTarget; ++spare) {
    Pin pin;
    pin.name = "spare_io_" + num(spare);
    pin.io = spare % 3 == 0 ? Io::V33 : Io::V18;
    Bank &bank = bankFor(pin.io, false);
    ++bank.used;
    pin.bank = bank.id;
    board.pins.push_back(pin);
  }

  // Balls of a square package, handed out in a shuffled order.
  int side = 1;
  while (side * side < static_cast<int>(board.pins.size()) * 5 / 4)
    ++side;
  std::vector<int> balls(static_cast<std::size_t>(side * side));
  for (std::size_t i = 0; i < balls.size(); ++i)
    balls[i] = static_cast<int>(i);
  for (std::size_t i = balls.size() - 1; i > 0; --i)
    std::swap(balls[i], balls[static_cast<std::size_t>(dice.pick(static_cast<int>(i) + 1))]);
  static const char kRows[] = "ABCDEFGHJKLMNPRTUVWY";
  for (std::size_t i = 0; i < board.pins.size(); ++i) {
    const int row = balls[i] / side, column = balls[i] % side;
    std::string rowName;
    if (row >= 20)
      rowName += kRows[row / 20 - 1];
    rowName += kRows[row % 20];
    board.pins[i].loc = rowName + num(column + 1);
  }
}

void planPower(BoardModel &board, Dice &dice) {
  std::vector<std::string> v12, v15, v18, v33 = {"VCCO_0"};
  bool gt = false;
  for (const Bank &bank : board.banks) {
    const std::string supply = "VCCO_" + num(bank.id);
    switch (bank.io) {
    case Io::Ddr4:
      v12.push_back(supply);
      break;
    case Io::Ddr3:
      v15.push_back(supply);
      break;
    case Io::V18:
      v18.push_back(supply);
      break;
    case Io::V33:
      v33.push_back(supply);
      break;
    case Io::Gt:
      gt = true;
      break;
    }
  }
  std::vector<Rail> &rails = board.rails;
  Rail core{"VCCINT_RAIL", "0.85", {"VCCINT", "VCCBRAM"}, {}, false, 0};
  if (dice.percent(60))
    core.phases = dice.range(2, 3);
  rails.push_back(core);
  Rail aux{"VCC1V8_RAIL", "1.80", {"VCCAUX", "VCCAUX_IO", "VCCADC"}, {}, false, 0};
  aux.supplies.insert(aux.supplies.end(), v18.begin(), v18.end());
  rails.push_back(aux);
  std::vector<std::string> memoryRails;
  if (!v12.empty()) {
    rails.push_back({"VCC1V2_RAIL", "1.20", v12, {}, false, 0});
    memoryRails.push_back("VCC1V2_RAIL");
  }
  if (!v15.empty()) {
    rails.push_back({"VCC1V5_RAIL", "1.50", v15, {}, false, 0});
    memoryRails.push_back("VCC1V5_RAIL");
  }
  rails.push_back({"VCC3V3_RAIL", "3.30", v33, {}, false, 0});
  if (gt) {
    rails.push_back({"MGTAVCC_RAIL", "0.90", {"MGTAVCC"}, {}, false, 0});
    rails.push_back({"MGTAVTT_RAIL", "1.20", {"MGTAVTT", "MGTVCCAUX"}, {}, false, 0});
  }
  // The phases of the core rail are drawn by rails of their own.
  std::vector<std::pair<std::string, int>> top;
  if (core.phases > 0) {
    int left = core.phases;
    for (char letter = 'A'; left > 0; ++letter) {
      const int take = left > 1 && dice.pick(2) ? 2 : 1;
      left -= take;
      rails.push_back(
          {std::string("VCCINT_PHASE_") + letter, "0.85", {}, {{"VCCINT_RAIL", take}}, false, 0});
      top.push_back({rails.back().name, 0});
    }
  } else {
    top.push_back({"VCCINT_RAIL", 0});
  }
  // The memory termination comes straight off the memory rails.
  for (const std::string &memory : memoryRails) {
    Rail vtt{memory == "VCC1V2_RAIL" ? "DDR4_VTT_RAIL" : "DDR3_VTT_RAIL",
             memory == "VCC1V2_RAIL" ? "0.60" : "0.75",
             {},
             {{memory, 0}},
             true,
             0};
    rails.push_back(vtt);
    top.push_back({vtt.name, 0});
  }
  top.push_back({"VCC1V8_RAIL", 0});
  top.push_back({"VCC3V3_RAIL", 0});
  if (gt) {
    top.push_back({"MGTAVCC_RAIL", 0});
    top.push_back({"MGTAVTT_RAIL", 0});
  }
  rails.push_back({"BOARD_12V", "12.00", {}, top, false, 0});

  for (const Rail &rail : rails)
    for (const std::string &supply : rail.supplies)
      board.supplyCurrents.push_back(
          {supply, dice.milli(50, rail.name == "VCCINT_RAIL" ? 9000 : 1500)});
}

// ---------------------------------------------------------------------------
// The model as a whole

BoardModel makeBoard(int index, Dice &dice) {
  BoardModel board;
  board.vendor = kVendors[index % (sizeof kVendors / sizeof *kVendors)];
  char name[32];
  std::snprintf(name, sizeof name, "bench_board_%04d", index);
  board.name = name;
  board.version = dice.pick(4) == 0 ? "1.1" : "1.0";
  // A quarter of the boards are of the newer schema, with its stricter rules.
  board.schema = index % 4 == 3 ? "2.2" : "2.1";
  board.part = dice.of(kParts);
  board.pinTarget = dice.range(300, 1000);
  // Bigger parts carry more around them.
  const int companions = std::min(59, 19 + dice.range(0, 20) + (board.pinTarget - 300) * 20 / 700);
  chooseCompanions(board, companions, dice);
  placePins(board, dice);

  const int jumpers = dice.range(2, 8);
  for (int j = 0; j < jumpers; ++j)
    board.jumpers.push_back("J" + num(10 + j * 3 + dice.pick(3)));
  // Some interfaces are there only with a jumper set one way.
  for (Interface &intf : board.interfaces)
    if (intf.kind != "clock" && intf.kind != "reset" && dice.percent(12)) {
      intf.gate = board.jumpers[static_cast<std::size_t>(dice.pick(jumpers))];
      intf.gateValue = dice.pick(2) == 0;
    }
  planPower(board, dice);
  return board;
}

void writeGate(std::string &out, const Interface &intf, const std::string &indent) {
  if (intf.gate.empty())
    return;
  out += indent + "<enablement_dependencies>\n" + indent + "  <jumpers>\n" + indent +
         "    <jumper name=\"" + intf.gate + "\">" + (intf.gateValue ? "true" : "false") +
         "</jumper>\n" + indent + "  </jumpers>\n" + indent + "</enablement_dependencies>\n";
}

void writePreferredIp(std::string &out, const Interface &intf, const std::string &indent) {
  out += indent + "<preferred_ips>\n" + indent +
         "  <preferred_ip vendor=\"quarnel-ip\" library=\"ip\"";
  attr(out, "name", intf.ipName);
  attr(out, "version", intf.ipVersion);
  out += " order=\"0\"/>\n";
  if (intf.kind == "gpio" || intf.kind == "uart" || intf.kind == "iic") {
    out += indent + "  <preferred_ip vendor=\"quarnel-ip\" library=\"ip\"";
    attr(out, "name", intf.ipName + "_axi");
    out += " version=\"*\" order=\"1\"/>\n";
  }
  out += indent + "</preferred_ips>\n";
}

std::string pinFile(const BoardModel &board, Dice &dice) {
  std::string out = xmlHeader();
  out.reserve(board.pins.size() * 240);
  out += "<part_info part_name=\"" + board.part + "\">\n  <pins>\n";
  for (std::size_t i = 0; i < board.pins.size(); ++i) {
    const Pin &pin = board.pins[i];
    out += "    <pin";
    attr(out, "index", num(static_cast<long>(i)));
    attr(out, "name", pin.name);
    attr(out, "loc", pin.loc);
    const Port *port = pin.port;
    const bool diff = port && port->differential;
    const bool input = port && port->dir == "in";
    switch (pin.io) {
    case Io::Ddr4: {
      const bool data = port && (port->logical.compare(0, 2, "DQ") == 0 || port->logical == "DM_N");
      attr(out, "iostandard",
           diff ? (data ? "DIFF_POD12_DCI" : "DIFF_SSTL12_DCI")
                : (data ? "POD12_DCI" : "SSTL12_DCI"));
      attr(out, "slew", "FAST");
      if (data) {
        attr(out, "odt", "RTT_40");
        attr(out, "output_impedance", "RDRV_40_40");
        attr(out, "equalization", "EQ_LEVEL2");
        attr(out, "pre_emphasis", "RDRV_240");
      } else {
        attr(out, "output_impedance", "RDRV_40_40");
      }
      break;
    }
    case Io::Ddr3:
      attr(out, "iostandard", diff ? "DIFF_SSTL15" : "SSTL15");
      attr(out, "slew", "FAST");
      if (port && port->logical.compare(0, 2, "DQ") == 0)
        attr(out, "odt", "RTT_40");
      break;
    case Io::V33:
      attr(out, "iostandard", "LVCMOS33");
      if (!input) {
        attr(out, "slew", "SLOW");
        attr(out, "drive", dice.pick(2) ? "8" : "12");
      }
      if (port && (port->logical == "SCL_IO" || port->logical == "SDA_IO" || input))
        attr(out, "pull_type", "PULLUP");
      break;
    case Io::V18:
      if (diff) {
        attr(out, "iostandard", "LVDS");
        attr(out, "diff_term", "TRUE");
        attr(out, "diff_term_adv", "TERM_100");
      } else {
        attr(out, "iostandard", "LVCMOS18");
        if (!input) {
          attr(out, "slew", dice.pick(3) ? "SLOW" : "FAST");
          attr(out, "drive", dice.pick(2) ? "4" : "8");
        }
        if (port && dice.percent(30))
          attr(out, "pcb_min_delay", dice.milli(50, 120));
        if (port && dice.percent(30))
          attr(out, "pcb_max_delay", dice.milli(120, 400));
      }
      break;
    case Io::Gt:
      break;
    }
    attr(out, "iobank.bank", num(pin.bank));
    if (pin.io != Io::Gt)
      attr(out, "iobank.vcco", vccoOf(pin.io));
    if (pin.io == Io::Ddr4)
      attr(out, "iobank.vref", "0.84");
    else if (pin.io == Io::Ddr3)
      attr(out, "iobank.vref", "0.75");
    out += "/>\n";
  }
  out += "  </pins>\n  <design_constrs part_name=\"" + board.part + "\">\n";
  // The memory banks of one kind share one DCI master; each sets its VREF.
  for (Io io : {Io::Ddr4, Io::Ddr3}) {
    std::vector<int> banks;
    for (const Bank &bank : board.banks)
      if (bank.io == io)
        banks.push_back(bank.id);
    if (banks.size() > 1) {
      std::string slaves;
      for (std::size_t i = 1; i < banks.size(); ++i)
        slaves += (i > 1 ? "," : "") + num(banks[i]);
      out += "    <dci_cascade master_bank_id=\"" + num(banks[0]) + "\" slave_bank_ids=\"" +
             slaves + "\"/>\n";
    }
    for (int bank : banks)
      out += "    <internal_vref bank_id=\"" + num(bank) + "\" voltage=\"" +
             (io == Io::Ddr4 ? "0.84" : "0.75") + "\"/>\n";
  }
  out += "  </design_constrs>\n</part_info>\n";
  return out;
}

// One plain user parameter of a preset: names unique within the IP, values
// of the types the tools write.
void writeParam(std::string &out, const char *tag, const std::string &name, Dice &dice,
                const std::string &indent) {
  out += indent + "<" + tag;
  attr(out, "name", name);
  switch (dice.pick(5)) {
  case 0:
    attr(out, "value", num(dice.range(0, 100000)));
    attr(out, "value_type", "long");
    break;
  case 1:
    attr(out, "value", dice.of(kStrings));
    attr(out, "value_type", "string");
    break;
  case 2:
    attr(out, "value", dice.milli(0, 500000));
    attr(out, "value_type", "float");
    break;
  case 3:
    attr(out, "value", dice.pick(2) ? "true" : "false");
    attr(out, "value_type", "bool");
    break;
  default:
    attr(out, "value", num(dice.range(0, 4096)));
    break;
  }
  out += "/>\n";
}

std::size_t presetFile(const BoardModel &board, Dice &dice, std::string &out) {
  out = xmlHeader();
  std::size_t parameters = 0;
  out += "<ip_presets schema=\"1.0\">\n";
  for (const Interface &intf : board.interfaces) {
    out += "  <ip_preset preset_proc_name=\"" + intf.name + "_preset\">\n";
    // The preferred IP, and for most a second and third choice.
    const int variants = intf.kind == "ddr4" || intf.kind == "ddr3" ? 1 : dice.range(1, 3);
    for (int variant = 0; variant < variants; ++variant) {
      static const char *const kSuffixes[] = {"", "_lite", "_axi"};
      out += "    <ip vendor=\"quarnel-ip\" library=\"ip\"";
      attr(out, "name", intf.ipName + kSuffixes[variant]);
      attr(out, "version", variant == 0 ? std::string("*") : intf.ipVersion);
      attr(out, "ip_interface", intf.ipInterface);
      out += ">\n      <user_parameters>\n";
      const std::string prefix = "CONFIG." + upper(intf.kind) + "_";
      const int count = variant == 0 ? intf.presetParams : intf.presetParams / 3 + 1;
      for (int p = 0; p < count; ++p)
        writeParam(out, "user_parameter", prefix + dice.of(kWords) + "_" + num(p), dice,
                   "        ");
      parameters += static_cast<std::size_t>(count);
      // Timing as a tree, in the newer form; an old-form tree now and then.
      out += "        <user_hier_parameter name=\"CONFIG.TIMING\">\n";
      const int timings = dice.range(3, 8);
      for (int p = 0; p < timings; ++p)
        out += "          <user_parameter name=\"t" + std::string(dice.of(kWords)) + "_" + num(p) +
               "\" value=\"" + dice.milli(1000, 20000) + "\"/>\n";
      out += "          <user_hier_parameter name=\"refresh\">\n";
      out += "            <user_parameter name=\"tREFI\" value=\"" + num(dice.range(3900, 7800)) +
             "\"/>\n";
      out += "            <user_parameter name=\"tRFC\" value=\"" + num(dice.range(110, 350)) +
             "\"/>\n";
      out += "          </user_hier_parameter>\n        </user_hier_parameter>\n";
      parameters += static_cast<std::size_t>(timings) + 2;
      if (dice.percent(20)) {
        out += "        <user_parameter name=\"CONFIG.PIN_GROUPS\" value_type=\"hier\">\n";
        for (int p = 0; p < 4; ++p)
          out += "          <user_parameter name=\"group" + num(p) + "\" value=\"" +
                 num(dice.range(0, 15)) + "\"/>\n";
        out += "        </user_parameter>\n";
        parameters += 4;
      }
      out += "      </user_parameters>\n      <model_parameters>\n";
      const int models = dice.range(3, 12);
      for (int p = 0; p < models; ++p)
        writeParam(out, "model_parameter", std::string("C_") + dice.of(kWords) + "_" + num(p), dice,
                   "        ");
      parameters += static_cast<std::size_t>(models);
      out += "      </model_parameters>\n    </ip>\n";
    }
    out += "  </ip_preset>\n";
  }
  out += "</ip_presets>\n";
  return parameters;
}

void boardHeader(const BoardModel &board, Dice &dice, std::string &out) {
  out += "<board";
  attr(out, "schema_version", board.schema);
  attr(out, "vendor", board.vendor);
  attr(out, "name", board.name);
  attr(out, "display_name", "Bench Board " + board.name.substr(12));
  attr(out, "url", "https://www.example.com/" + board.vendor + "/" + board.name);
  attr(out, "preset_file", "preset.xml");
  out += ">\n";
  out += "  <images>\n"
         "    <image name=\"" +
         board.name +
         "_board.png\" display_name=\"Board\" "
         "sub_type=\"board\" resolution=\"high\">\n"
         "      <description>Top view of the board</description>\n    </image>\n"
         "    <image name=\"" +
         board.name +
         "_block.png\" display_name=\"Block diagram\" "
         "sub_type=\"block_diagram\" resolution=\"low\">\n"
         "      <description>Block diagram</description>\n    </image>\n  </images>\n";
  out += "  <compatible_board_revisions>\n";
  const int revisions = dice.range(1, 4);
  for (int r = 0; r < revisions; ++r)
    out += "    <revision id=\"" + num(r) + "\">Rev " + std::string(1, static_cast<char>('A' + r)) +
           "</revision>\n";
  out += "  </compatible_board_revisions>\n";
  out += "  <file_version>" + board.version + "</file_version>\n";
  out += "  <description>Synthetic evaluation board for the load benchmark, with a " + board.part +
         " FPGA and " + num(static_cast<long>(board.companions.size())) +
         " components around it.</description>\n";
  out += "  <parameters>\n"
         "    <parameter name=\"heat_sink_type\" value=\"medium\" value_type=\"string\"/>\n"
         "    <parameter name=\"heat_sink_temperature\" value=\"35.0\" value_type=\"float\" "
         "value_min=\"-40.0\" value_max=\"100.0\"/>\n"
         "    <parameter name=\"ambient_temperature\" value=\"25.0\" value_type=\"float\" "
         "value_min=\"0.0\" value_max=\"70.0\"/>\n"
         "    <parameter name=\"board_grade\" value=\"commercial\" value_type=\"string\" "
         "readonly=\"true\"/>\n  </parameters>\n";
  out += "  <jumpers>\n";
  for (const std::string &jumper : board.jumpers)
    out += "    <jumper name=\"" + jumper + "\" default_value=\"" +
           (dice.pick(2) ? "true" : "false") + "\">\n      <description>Selects the source of " +
           jumper + "</description>\n    </jumper>\n";
  out += "  </jumpers>\n";
  out += "  <jtag_chains>\n    <jtag_chain name=\"chain0\">\n"
         "      <position name=\"0\" component=\"part0\"/>\n    </jtag_chain>\n  </jtag_chains>\n";

  out += "  <power_rails>\n";
  for (const Rail &rail : board.rails) {
    out += "    <power_rail";
    attr(out, "name", rail.name);
    if (rail.direct)
      attr(out, "is_direct", "true");
    if (rail.phases > 0)
      attr(out, "num_phases", num(rail.phases));
    out += ">\n";
    for (const std::string &supply : rail.supplies)
      out += "      <supply name=\"" + supply + "\"/>\n";
    for (const auto &member : rail.rails) {
      out += "      <rail name=\"" + member.first + "\"";
      if (member.second > 0)
        attr(out, "phased_power_source", num(member.second));
      out += "/>\n";
    }
    out += "    </power_rail>\n";
  }
  out += "  </power_rails>\n";

  out += "  <data_properties>\n    <data_property_group name=\"OPERATING_CONDITIONS\">\n"
         "      <data_property name=\"AMBIENT_TEMP\" value=\"25.0\"/>\n"
         "      <data_property name=\"THETAJA\" value=\"" +
         dice.milli(8000, 14000) +
         "\"/>\n"
         "      <data_property name=\"DESIGN_POWER_BUDGET\" value=\"" +
         dice.milli(5000, 40000) +
         "\"/>\n      <data_property_group name=\"SUPPLY_CURRENT_BUDGET\">\n";
  for (const auto &supply : board.supplyCurrents)
    out +=
        "        <data_property name=\"" + supply.first + "\" value=\"" + supply.second + "\"/>\n";
  out += "      </data_property_group>\n      <data_property_group name=\"VOLTAGE\">\n";
  for (const Rail &rail : board.rails)
    out += "        <data_property name=\"" + rail.name + "\" value=\"" + rail.voltage + "\"/>\n";
  out += "      </data_property_group>\n    </data_property_group>\n  </data_properties>\n";
}

void fpgaComponent(const BoardModel &board, Dice &dice, std::string &out) {
  out += "    <component name=\"part0\" display_name=\"FPGA\" type=\"fpga\"";
  attr(out, "part_name", board.part);
  out += " pin_map_file=\"part0_pins.xml\" vendor=\"quarnel\" major_group=\"Programmable Logic\">\n"
         "      <description>FPGA part on the board</description>\n"
         "      <parameters>\n"
         "        <parameter name=\"core_voltage\" value=\"0.85\" value_type=\"float\" "
         "value_min=\"0.82\" value_max=\"0.88\" readonly=\"true\"/>\n"
         "        <parameter name=\"temperature_grade\" value=\"E\" value_type=\"string\" "
         "readonly=\"true\"/>\n      </parameters>\n";
  out += "      <additional_supported_parts>\n";
  const int extra = dice.range(1, 3);
  for (int p = 0; p < extra; ++p)
    out += "        <supported_part part_name=\"" + board.part.substr(0, board.part.rfind('-')) +
           "-" + num(p + 2) + "\"/>\n";
  out += "      </additional_supported_parts>\n";
  out += "      <images>\n        <image name=\"" + board.name +
         "_part0.png\" display_name=\"FPGA\" "
         "sub_type=\"chip\" resolution=\"low\">\n"
         "          <description>The FPGA</description>\n        </image>\n      </images>\n";
  out += "      <interfaces>\n";
  for (const Interface &intf : board.interfaces) {
    out += "        <interface";
    attr(out, "name", intf.name);
    attr(out, "type", intf.vlnv);
    attr(out, "mode", intf.mode);
    attr(out, "of_component", intf.component);
    attr(out, "preset_proc", intf.name + "_preset");
    out += ">\n          <description>" + intf.description + "</description>\n";
    if (!intf.params.empty()) {
      out += "          <parameters>\n";
      for (const auto &param : intf.params)
        out += "            <parameter name=\"" + param.first + "\" value=\"" + param.second +
               "\"/>\n";
      out += "          </parameters>\n";
    }
    writePreferredIp(out, intf, "          ");
    out += "          <port_maps>\n";
    for (const Port &port : intf.ports) {
      out += "            <port_map";
      attr(out, "logical_port", port.logical);
      attr(out, "physical_port", intf.name + "_" + lower(port.logical));
      attr(out, "dir", port.dir);
      if (port.width > 1) {
        attr(out, "left", num(port.width - 1));
        attr(out, "right", "0");
      }
      out += ">\n              <pin_maps>\n";
      for (int bit = 0; bit < port.width; ++bit)
        out += "                <pin_map port_index=\"" + num(bit) + "\" component_pin=\"" +
               board.pins[static_cast<std::size_t>(port.firstPin + bit)].name + "\"/>\n";
      out += "              </pin_maps>\n            </port_map>\n";
    }
    out += "          </port_maps>\n";
    writeGate(out, intf, "          ");
    out += "        </interface>\n";
  }
  out += "      </interfaces>\n    </component>\n";
}

void companionComponent(const BoardModel &board, const Companion &comp, Dice &dice,
                        std::string &out) {
  out += "    <component";
  attr(out, "name", comp.name);
  attr(out, "display_name", comp.displayName);
  attr(out, "type", comp.type);
  attr(out, "sub_type", comp.subType);
  attr(out, "major_group", comp.majorGroup);
  attr(out, "part_name", upper(comp.subType) + "-" + num(dice.range(1000, 9999)));
  attr(out, "vendor", "various");
  attr(out, "connected_to", comp.connectedTo);
  out += ">\n      <description>" + comp.displayName + " of " + board.name + "</description>\n";
  if (!comp.params.empty()) {
    out += "      <parameters>\n";
    for (const auto &param : comp.params)
      out += "        <parameter name=\"" + param.first + "\" value=\"" + param.second + "\"/>\n";
    out += "      </parameters>\n";
  }
  if (comp.hasDriver)
    out += "      <drivers>\n        <driver name=\"" + comp.name +
           "_drv\" version=\"1.0\" vendor=\"various\" pre_compiled=\"false\" "
           "os=\"linux,standalone\" platform=\"any\" processor_architecture=\"arm,riscv\">\n"
           "          <description>Driver of the PHY</description>\n"
           "          <driver_files>\n            <file type=\"c\">phy.c</file>\n"
           "            <file type=\"h\">phy.h</file>\n          </driver_files>\n"
           "        </driver>\n      </drivers>\n";
  if (comp.subType == "mux") {
    // The IIC devices behind the multiplexer, one channel each.
    out += "      <positions>\n";
    int channel = 0;
    for (const Companion &other : board.companions) {
      if (channel == 8)
        break;
      if (other.subType != "ddr" && other.subType != "sfp" && other.subType != "system_clock")
        continue;
      out += "        <position component=\"" + other.name + "\" id=\"" + num(channel) + "\">\n" +
             "          <address low=\"0x" + num(50 + channel) + "\" high=\"0x" +
             num(50 + channel) + "\"/>\n        </position>\n";
      ++channel;
    }
    out += "      </positions>\n";
  }
  if (comp.listedPins > 0) {
    out += "      <pins>\n";
    for (int p = 0; p < comp.listedPins; ++p)
      out += "        <pin index=\"" + num(p) + "\" name=\"" + comp.name + "_pin" + num(p + 1) +
             "\" loc=\"" + num(p + 1) + "\"/>\n";
    out += "      </pins>\n";
  }
  out += "      <component_modes>\n";
  for (const Mode &mode : comp.modes) {
    const Interface &lead = board.interfaces[mode.interfaces.front().first];
    out += "        <component_mode";
    attr(out, "name", mode.name);
    attr(out, "display_name", mode.name);
    attr(out, "preset_proc", lead.name + "_preset");
    out += ">\n          <description>" + lead.description + "</description>\n";
    out += "          <interfaces>\n";
    for (std::size_t i = 0; i < mode.interfaces.size(); ++i) {
      out += "            <interface";
      attr(out, "name", board.interfaces[mode.interfaces[i].first].name);
      attr(out, "order", num(static_cast<long>(i)));
      if (mode.interfaces[i].second)
        attr(out, "optional", "true");
      out += "/>\n";
    }
    out += "          </interfaces>\n";
    writePreferredIp(out, lead, "          ");
    writeGate(out, lead, "          ");
    out += "        </component_mode>\n";
  }
  out += "      </component_modes>\n    </component>\n";
}

void connections(const BoardModel &board, Dice &dice, std::string &out) {
  // One connection per companion, one map per interface that leads to it;
  // the companion's pins count on from 0 in the order of its interfaces.
  out += "  <connections>\n";
  for (const Companion &comp : board.companions) {
    out += "    <connection name=\"part0_" + comp.name + "\" component1=\"part0\" component2=\"" +
           comp.name + "\">\n";
    int next = 0;
    for (std::size_t i : comp.interfaces) {
      const Interface &intf = board.interfaces[i];
      out += "      <connection_map";
      attr(out, "name", intf.name + "_map");
      attr(out, "c1_st_index", num(intf.firstPin));
      attr(out, "c1_end_index", num(intf.firstPin + intf.pinCount - 1));
      attr(out, "c2_st_index", num(next));
      attr(out, "c2_end_index", num(next + intf.pinCount - 1));
      attr(out, "typical_delay", dice.milli(80, 400));
      attr(out, "min_delay", dice.milli(60, 80));
      attr(out, "max_delay", dice.milli(400, 500));
      next += intf.pinCount;
      // Memories and fast links have their nets' delays given one by one.
      const bool withNets = intf.kind == "ddr4" || intf.kind == "ddr3" || intf.kind == "rgmii" ||
                            intf.kind == "pcie" || (intf.kind == "gpio" && intf.pinCount > 20);
      if (!withNets && intf.gate.empty()) {
        out += "/>\n";
        continue;
      }
      out += ">\n";
      if (withNets) {
        out += "        <nets>\n";
        const int step = intf.pinCount > 40 ? 2 : 1;
        for (int net = 0; net < intf.pinCount; net += step)
          out += "          <net index=\"" + num(net) + "\" typical_delay=\"" +
                 dice.milli(100, 150) + "\" min_delay=\"" + dice.milli(90, 100) +
                 "\" max_delay=\"" + dice.milli(150, 160) + "\"/>\n";
        out += "        </nets>\n";
      }
      writeGate(out, intf, "        ");
      out += "      </connection_map>\n";
    }
    out += "    </connection>\n";
  }
  out += "  </connections>\n";
}

std::string boardFile(const BoardModel &board, Dice &dice) {
  std::string out = xmlHeader();
  out.reserve(board.pins.size() * 320);
  boardHeader(board, dice, out);
  out += "  <components>\n";
  fpgaComponent(board, dice, out);
  for (const Companion &comp : board.companions)
    companionComponent(board, comp, dice, out);
  out += "  </components>\n";

  // The memory controllers and the PCIe core take their clock and reset
  // from named board interfaces.
  out += "  <ip_associated_rules>\n";
  for (const Interface &intf : board.interfaces) {
    if (intf.kind != "ddr4" && intf.kind != "ddr3")
      continue;
    out += "    <ip_associated_rule name=\"" + intf.name + "_rule\">\n";
    const std::pair<const char *, std::size_t> ties[] = {{"SYS_CLK", board.clock},
                                                         {"SYS_RST", board.reset}};
    for (const auto &tie : ties)
      out += std::string("      <ip vendor=\"quarnel-ip\" library=\"ip\" name=\"memctl_gen\" "
                         "version=\"*\" ip_interface=\"") +
             tie.first +
             "\">\n        <associated_board_interfaces>\n"
             "          <associated_board_interface name=\"" +
             board.interfaces[tie.second].name +
             "\" order=\"0\"/>\n        </associated_board_interfaces>\n      </ip>\n";
    out += "    </ip_associated_rule>\n";
  }
  out += "  </ip_associated_rules>\n";
  connections(board, dice, out);
  out += "</board>\n";
  return out;
}

// The generator's own promises, which the readers would otherwise report
// board by board: pin and interface names are unique, and no port carries
// the name of an interface.
bool selfCheck(const BoardModel &board, std::string &error) {
  std::set<std::string> pins, interfaces;
  for (const Pin &pin : board.pins)
    if (!pins.insert(pin.name).second) {
      error = board.name + ": pin name " + pin.name + " twice";
      return false;
    }
  for (const Interface &intf : board.interfaces)
    if (!interfaces.insert(intf.name).second) {
      error = board.name + ": interface name " + intf.name + " twice";
      return false;
    }
  for (const Interface &intf : board.interfaces)
    for (const Port &port : intf.ports)
      if (interfaces.count(intf.name + "_" + lower(port.logical))) {
        error = board.name + ": port " + port.logical + " of " + intf.name +
                " carries an interface's name";
        return false;
      }
  return true;
}

bool makeDir(const std::string &path, std::string &error) {
  if (::mkdir(path.c_str(), 0755) == 0 || errno == EEXIST)
    return true;
  error = "cannot create '" + path + "': " + std::strerror(errno);
  return false;
}

bool makeDirs(const std::string &path, std::string &error) {
  for (std::size_t pos = 1; pos <= path.size(); ++pos) {
    if (pos != path.size() && path[pos] != '/')
      continue;
    if (!makeDir(path.substr(0, pos), error))
      return false;
  }
  return true;
}

bool writeFile(const std::string &path, const std::string &text, std::string &error) {
  std::FILE *file = std::fopen(path.c_str(), "wb");
  if (!file) {
    error = "cannot write '" + path + "': " + std::strerror(errno);
    return false;
  }
  const bool ok = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  if (std::fclose(file) != 0 || !ok) {
    error = "cannot write '" + path + "'";
    return false;
  }
  return true;
}

template <typename T> void widen(T value, T &lo, T &hi, bool first) {
  if (first || value < lo)
    lo = value;
  if (first || value > hi)
    hi = value;
}

} // namespace

bool BenchGenerator::generate(const std::string &dataDir, std::string &error) {
  m_boardFiles.clear();
  m_bytesWritten = 0;
  m_stats = Stats();
  for (int index = 0; index < m_boardCount; ++index) {
    // Each board has its own stream, so a board's bytes do not depend on N.
    Dice dice(m_seed * 2654435761u + static_cast<std::uint32_t>(index));
    BoardModel board = makeBoard(index, dice);
    if (!selfCheck(board, error))
      return false;
    const std::string dir =
        dataDir + "/boards/board_files/" + board.vendor + "/" + board.name + "/" + board.version;
    if (!makeDirs(dir, error))
      return false;
    const std::string pins = pinFile(board, dice);
    std::string presets;
    const std::size_t parameters = presetFile(board, dice, presets);
    const std::string xml = boardFile(board, dice);
    if (!writeFile(dir + "/part0_pins.xml", pins, error) ||
        !writeFile(dir + "/preset.xml", presets, error) ||
        !writeFile(dir + "/board.xml", xml, error))
      return false;
    const std::uint64_t bytes = pins.size() + presets.size() + xml.size();
    m_bytesWritten += bytes;
    m_boardFiles.push_back(dir + "/board.xml");

    Stats &s = m_stats;
    const bool first = index == 0;
    s.boardXmlBytes += xml.size();
    s.pinFileBytes += pins.size();
    s.presetBytes += presets.size();
    s.pins += board.pins.size();
    s.components += board.companions.size() + 1;
    s.interfaces += board.interfaces.size();
    s.presetParameters += parameters;
    widen(static_cast<int>(board.pins.size()), s.minPins, s.maxPins, first);
    widen(static_cast<int>(board.companions.size()) + 1, s.minComponents, s.maxComponents, first);
    widen(static_cast<int>(board.interfaces.size()), s.minInterfaces, s.maxInterfaces, first);
    widen(bytes, s.minBoardBytes, s.maxBoardBytes, first);
  }
  return true;
}
