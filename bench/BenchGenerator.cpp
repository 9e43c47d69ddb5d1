#include "BenchGenerator.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
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
  std::string delay(int loMilli, int hiMilli) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "%.3f", range(loMilli, hiMilli) / 1000.0);
    return buf;
  }

private:
  std::mt19937 m_engine;
};

struct Port {
  std::string logical;
  std::string dir;
  int width = 1;
  int firstPin = 0; // index into the part's pin file
};

struct Interface {
  std::string name;
  std::string kind;
  std::string vlnv;
  std::string mode;
  std::string component;
  std::string ipName;
  std::string ipVersion;
  std::string ipInterface;
  std::vector<Port> ports;
  bool gatedByJumper = false;
  int firstPin = 0;
  int pinCount = 0;
};

struct Pin {
  std::string name;
  std::string iostandard;
  int bank = 0;
  std::string vcco;
};

struct Component {
  const char *name;
  const char *displayName;
  const char *subType;
  const char *type;
  const char *majorGroup;
  const char *connectedTo;
};

// Nine companions of the FPGA: every board has ten components.
const Component kComponents[] = {
    {"ddr_mem", "DDR SDRAM", "ddr", "chip", "External Memory", "pl"},
    {"sys_clock", "System Clock", "system_clock", "chip", "Clock Sources", "pl"},
    {"reset_ctl", "CPU Reset", "system_reset", "chip", "Reset", "pl"},
    {"leds", "User LEDs", "led", "chip", "General Purpose Input or Output", "pl"},
    {"uart_bridge", "USB UART", "uart", "chip", "Miscellaneous", "ps_and_pl"},
    {"iic_mux", "IIC Multiplexer", "mux", "chip", "Miscellaneous", "pl"},
    {"qspi_flash", "QSPI Flash", "memory_flash_qspi", "chip", "External Memory", "ps"},
    {"pmod_ja", "PMOD JA", "pmod", "connector", "Pmod", "pl"},
    {"fmc_lpc", "FMC LPC", "fmc_lpc", "connector", "FMC", "pl"},
};

const char *const kVendors[] = {"fennel-labs", "marrow-devices", "tallis-boards", "oriel-systems",
                                "quill-electronics", "brackwater-eval"};
const char *const kParts[] = {"kv30-cs256-1", "kv50-hq324-1", "kv70-ff676-2", "kv90-fb900-2L"};
const char *const kLocLetters = "ABCDEFGHJKLMNPRTUVWY";
const char *const kWords[] = {"WIDTH", "DEPTH", "MODE", "ENABLE", "PERIOD", "PHASE", "DELAY",
                              "POLARITY", "RATE", "LATENCY", "BURST", "FIFO", "FILTER", "DRIVE",
                              "TERM", "SKEW", "RANK", "ORDER", "TIMEOUT", "PRESCALE"};

// Every board has one memory, two clocks and a reset; the rest rotates
// through the small interfaces that fill a real board.
const char *const kPlan[] = {"ddr",  "clk",  "clk",  "rst",  "gpio", "uart", "iic",  "spi",
                             "gpio", "gpio", "uart", "spi",  "gpio", "iic",  "gpio", "uart",
                             "spi",  "gpio", "gpio", "iic",  "uart", "gpio", "spi",  "gpio",
                             "iic",  "gpio", "uart", "spi",  "gpio", "gpio"};

std::string xmlHeader() { return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n"; }

void addPort(Interface &intf, const std::string &logical, const std::string &dir, int width) {
  Port port;
  port.logical = logical;
  port.dir = dir;
  port.width = width;
  intf.ports.push_back(port);
}

Interface makeInterface(const std::string &kind, int ordinal, int gpioTurn, Dice &dice) {
  Interface intf;
  intf.kind = kind;
  intf.name = kind + "_" + std::to_string(ordinal);
  intf.mode = "master";
  if (kind == "ddr") {
    intf.vlnv = "quarnel-ip:interface:ddrx_rtl:1.0";
    intf.component = "ddr_mem";
    intf.ipName = "memctl_gen";
    intf.ipVersion = "4.2";
    intf.ipInterface = "DDR";
    addPort(intf, "ADDR", "out", dice.range(13, 16));
    addPort(intf, "BA", "out", 3);
    for (const char *single : {"RAS_N", "CAS_N", "WE_N", "CKE", "ODT", "CS_N", "RESET_N", "CK_P",
                               "CK_N"})
      addPort(intf, single, "out", 1);
    addPort(intf, "DQ", "inout", 16);
    addPort(intf, "DM", "out", 2);
    addPort(intf, "DQS_P", "inout", 2);
    addPort(intf, "DQS_N", "inout", 2);
  } else if (kind == "clk") {
    intf.vlnv = "quarnel-ip:interface:diff_clock_rtl:1.0";
    intf.mode = "slave";
    intf.component = "sys_clock";
    intf.ipName = "clk_gen";
    intf.ipVersion = "6.0";
    intf.ipInterface = "CLK_IN1_D";
    addPort(intf, "CLK_P", "in", 1);
    addPort(intf, "CLK_N", "in", 1);
  } else if (kind == "rst") {
    intf.vlnv = "quarnel-ip:signal:reset_rtl:1.0";
    intf.mode = "slave";
    intf.component = "reset_ctl";
    intf.ipName = "proc_reset";
    intf.ipVersion = "5.0";
    intf.ipInterface = "ext_reset";
    addPort(intf, "RST", "in", 1);
  } else if (kind == "gpio") {
    static const char *const owners[] = {"leds", "pmod_ja", "fmc_lpc"};
    intf.vlnv = "quarnel-ip:interface:gpio_rtl:1.0";
    intf.component = owners[gpioTurn % 3];
    intf.ipName = "gpio_ctl";
    intf.ipVersion = "2.0";
    intf.ipInterface = "GPIO";
    addPort(intf, "TRI_O", "out", dice.range(4, 12));
  } else if (kind == "uart") {
    intf.vlnv = "quarnel-ip:interface:uart_rtl:1.0";
    intf.component = "uart_bridge";
    intf.ipName = "uart_lite";
    intf.ipVersion = "2.0";
    intf.ipInterface = "UART";
    addPort(intf, "TxD", "out", 1);
    addPort(intf, "RxD", "in", 1);
    if (dice.pick(2)) {
      addPort(intf, "RTSn", "out", 1);
      addPort(intf, "CTSn", "in", 1);
    }
  } else if (kind == "iic") {
    intf.vlnv = "quarnel-ip:interface:iic_rtl:1.0";
    intf.component = "iic_mux";
    intf.ipName = "iic_ctl";
    intf.ipVersion = "2.1";
    intf.ipInterface = "IIC";
    addPort(intf, "SCL_IO", "inout", 1);
    addPort(intf, "SDA_IO", "inout", 1);
  } else {
    intf.vlnv = "quarnel-ip:interface:spi_rtl:1.0";
    intf.component = "qspi_flash";
    intf.ipName = "qspi_ctl";
    intf.ipVersion = "3.2";
    intf.ipInterface = "SPI_0";
    addPort(intf, "SCK_O", "out", 1);
    addPort(intf, "IO", "inout", 4);
    addPort(intf, "SS_O", "out", 1);
  }
  return intf;
}

std::string lower(std::string text) {
  for (char &c : text)
    if (c >= 'A' && c <= 'Z')
      c = static_cast<char>(c - 'A' + 'a');
  return text;
}

// One board: its interfaces decide the pins, the pins the connections.
struct BoardModel {
  std::string vendor;
  std::string name;
  std::string version;
  std::string schema;
  std::string part;
  std::vector<Interface> interfaces;
  std::vector<Pin> pins;
};

BoardModel makeBoard(int index, Dice &dice) {
  BoardModel board;
  board.vendor = kVendors[index % (sizeof kVendors / sizeof *kVendors)];
  char name[32];
  std::snprintf(name, sizeof name, "bench_board_%04d", index);
  board.name = name;
  board.version = dice.pick(4) == 0 ? "1.1" : "1.0";
  // A quarter of the boards are of the newer schema, with its stricter rules.
  board.schema = index % 4 == 3 ? "2.2" : "2.1";
  board.part = kParts[dice.pick(sizeof kParts / sizeof *kParts)];

  int gpioTurn = 0;
  int ordinal = 0;
  for (const char *kind : kPlan) {
    Interface intf = makeInterface(kind, ordinal++, gpioTurn, dice);
    if (intf.kind == "gpio")
      ++gpioTurn;
    intf.gatedByJumper = intf.kind == "uart" && dice.pick(2) == 0;
    intf.firstPin = static_cast<int>(board.pins.size());
    for (Port &port : intf.ports) {
      port.firstPin = static_cast<int>(board.pins.size());
      for (int bit = 0; bit < port.width; ++bit) {
        Pin pin;
        pin.name = intf.name + "_" + lower(port.logical) + (port.width > 1 ? std::to_string(bit) : "");
        const bool memory = intf.kind == "ddr";
        const bool differential =
            port.logical.compare(0, 3, "CK_") == 0 || port.logical.compare(0, 4, "DQS_") == 0;
        pin.iostandard = memory ? (differential ? "DIFF_SSTL15" : "SSTL15")
                                : (intf.kind == "clk" ? "LVDS" : "LVCMOS33");
        pin.bank = memory ? 33 + static_cast<int>(board.pins.size()) / 50 : 13 + dice.pick(3);
        pin.vcco = memory ? "1.5" : (intf.kind == "clk" ? "1.8" : "3.3");
        board.pins.push_back(pin);
      }
    }
    intf.pinCount = static_cast<int>(board.pins.size()) - intf.firstPin;
    board.interfaces.push_back(intf);
  }
  return board;
}

std::string pinFile(const BoardModel &board, Dice &dice) {
  std::string out = xmlHeader();
  out += "<part_info part_name=\"" + board.part + "\">\n  <pins>\n";
  for (std::size_t i = 0; i < board.pins.size(); ++i) {
    const Pin &pin = board.pins[i];
    std::string loc = std::string(1, kLocLetters[i % 20]) + std::to_string(1 + i / 20);
    out += "    <pin index=\"" + std::to_string(i) + "\" name=\"" + pin.name + "\" loc=\"" + loc +
           "\" iostandard=\"" + pin.iostandard + "\"";
    if (pin.iostandard == "LVCMOS33")
      out += std::string(" slew=\"SLOW\" drive=\"") + (dice.pick(2) ? "8" : "12") + "\"";
    else if (pin.iostandard != "LVDS")
      out += " slew=\"FAST\"";
    if (pin.iostandard == "LVDS")
      out += " diff_term=\"TRUE\"";
    out += " iobank.bank=\"" + std::to_string(pin.bank) + "\" iobank.vcco=\"" + pin.vcco + "\"/>\n";
  }
  out += "  </pins>\n  <design_constrs part_name=\"" + board.part + "\">\n";
  out += "    <dci_cascade master_bank_id=\"34\" slave_bank_ids=\"33,35\"/>\n";
  out += "    <internal_vref bank_id=\"33\" voltage=\"0.75\"/>\n";
  out += "  </design_constrs>\n</part_info>\n";
  return out;
}

std::string presetFile(const BoardModel &board, Dice &dice) {
  std::string out = xmlHeader();
  out += "<ip_presets schema=\"1.0\">\n";
  for (const Interface &intf : board.interfaces) {
    out += "  <ip_preset preset_proc_name=\"" + intf.name + "_preset\">\n";
    // Two IPs per procedure: the preferred one and a second choice.
    for (int variant = 0; variant < 2; ++variant) {
      const std::string ipName = variant == 0 ? intf.ipName : intf.ipName + "_lite";
      out += "    <ip vendor=\"quarnel-ip\" library=\"ip\" name=\"" + ipName + "\" version=\"" +
             (variant == 0 ? std::string("*") : intf.ipVersion) + "\" ip_interface=\"" +
             intf.ipInterface + "\">\n      <user_parameters>\n";
      const std::string prefix = "CONFIG.C_" + lower(intf.kind) + "_";
      for (int p = 0; p < 11; ++p) {
        const char *word = kWords[(p + dice.pick(20)) % 20];
        out += "        <user_parameter name=\"" + prefix + word + "_" + std::to_string(p) +
               "\" value=\"" + std::to_string(dice.range(0, 100000)) + "\"";
        if (p % 4 == 0)
          out += " value_type=\"int\"";
        out += "/>\n";
      }
      out += "        <user_hier_parameter name=\"CONFIG.TIMING\">\n";
      for (int p = 0; p < 3; ++p)
        out += "          <user_parameter name=\"t" + std::string(kWords[dice.pick(20)]) + "_" +
               std::to_string(p) + "\" value=\"" + dice.delay(1000, 20000) + "\"/>\n";
      out += "          <user_hier_parameter name=\"refresh\">\n";
      out += "            <user_parameter name=\"tREFI\" value=\"" +
             std::to_string(dice.range(3900, 7800)) + "\"/>\n";
      out += "            <user_parameter name=\"tRFC\" value=\"" +
             std::to_string(dice.range(110, 350)) + "\"/>\n";
      out += "          </user_hier_parameter>\n        </user_hier_parameter>\n";
      out += "      </user_parameters>\n      <model_parameters>\n";
      for (int p = 0; p < 5; ++p)
        out += "        <model_parameter name=\"C_" + std::string(kWords[(p * 7) % 20]) + "_" +
               std::to_string(p) + "\" value=\"" + std::to_string(dice.range(0, 64)) + "\"/>\n";
      out += "      </model_parameters>\n    </ip>\n";
    }
    out += "  </ip_preset>\n";
  }
  out += "</ip_presets>\n";
  return out;
}

std::string boardFile(const BoardModel &board, Dice &dice) {
  std::string out = xmlHeader();
  out += "<board schema_version=\"" + board.schema + "\" vendor=\"" + board.vendor + "\" name=\"" +
         board.name + "\" display_name=\"Bench Board " + board.name.substr(12) +
         "\" url=\"https://www.example.com/" + board.vendor + "/" + board.name +
         "\" preset_file=\"preset.xml\">\n";
  out += "  <compatible_board_revisions>\n    <revision id=\"0\">Rev A</revision>\n"
         "    <revision id=\"1\">Rev B</revision>\n  </compatible_board_revisions>\n";
  out += "  <file_version>" + board.version + "</file_version>\n";
  out += "  <description>Synthetic evaluation board for the load benchmark, with a " + board.part +
         " FPGA, DDR memory, flash, a UART bridge, a PMOD header and an FMC connector.</description>\n";
  out += "  <parameters>\n"
         "    <parameter name=\"heat_sink_type\" value=\"medium\" value_type=\"string\"/>\n"
         "    <parameter name=\"ambient_temperature\" value=\"25.0\" value_type=\"float\" "
         "value_min=\"0.0\" value_max=\"70.0\"/>\n  </parameters>\n";
  out += "  <jumpers>\n"
         "    <jumper name=\"J1\" default_value=\"true\">\n"
         "      <description>Sets VADJ of the FMC connector to 1.8 V</description>\n    </jumper>\n"
         "    <jumper name=\"J2\" default_value=\"false\">\n"
         "      <description>Routes the UARTs to the PMOD header</description>\n    </jumper>\n"
         "  </jumpers>\n";
  out += "  <power_rails>\n"
         "    <power_rail name=\"VCCINT_RAIL\">\n      <supply name=\"VCCINT\"/>\n"
         "      <supply name=\"VCCBRAM\"/>\n    </power_rail>\n"
         "    <power_rail name=\"VCC3V3_RAIL\">\n      <supply name=\"VCCO_13\"/>\n"
         "      <supply name=\"VCCO_14\"/>\n    </power_rail>\n"
         "    <power_rail name=\"BOARD_12V\">\n      <rail name=\"VCCINT_RAIL\"/>\n"
         "      <rail name=\"VCC3V3_RAIL\"/>\n    </power_rail>\n  </power_rails>\n";
  out += "  <data_properties>\n    <data_property_group name=\"OPERATING_CONDITIONS\">\n"
         "      <data_property name=\"AMBIENT_TEMP\" value=\"25.0\"/>\n"
         "      <data_property name=\"THETAJA\" value=\"" + dice.delay(8000, 14000) + "\"/>\n"
         "    </data_property_group>\n  </data_properties>\n";

  out += "  <components>\n";
  out += "    <component name=\"part0\" display_name=\"FPGA\" type=\"fpga\" part_name=\"" +
         board.part + "\" pin_map_file=\"part0_pins.xml\" vendor=\"quarnel\" "
         "major_group=\"Programmable Logic\">\n"
         "      <description>FPGA part on the board</description>\n      <interfaces>\n";
  for (const Interface &intf : board.interfaces) {
    out += "        <interface name=\"" + intf.name + "\" type=\"" + intf.vlnv + "\" mode=\"" +
           intf.mode + "\" of_component=\"" + intf.component + "\" preset_proc=\"" + intf.name +
           "_preset\">\n";
    out += "          <description>" + intf.kind + " interface " + intf.name + "</description>\n";
    if (intf.kind == "clk")
      out += "          <parameters>\n            <parameter name=\"frequency\" value=\"" +
             std::to_string(dice.range(50, 400) * 1000000) + "\"/>\n          </parameters>\n";
    else if (intf.kind == "rst")
      out += "          <parameters>\n            <parameter name=\"rst_polarity\" value=\"1\"/>\n"
             "          </parameters>\n";
    out += "          <preferred_ips>\n            <preferred_ip vendor=\"quarnel-ip\" "
           "library=\"ip\" name=\"" + intf.ipName + "\" version=\"" + intf.ipVersion +
           "\" order=\"0\"/>\n          </preferred_ips>\n";
    out += "          <port_maps>\n";
    for (const Port &port : intf.ports) {
      out += "            <port_map logical_port=\"" + port.logical + "\" physical_port=\"" +
             intf.name + "_" + lower(port.logical) + "\" dir=\"" + port.dir + "\"";
      if (port.width > 1)
        out += " left=\"" + std::to_string(port.width - 1) + "\" right=\"0\"";
      out += ">\n              <pin_maps>\n";
      for (int bit = 0; bit < port.width; ++bit)
        out += "                <pin_map port_index=\"" + std::to_string(bit) +
               "\" component_pin=\"" + board.pins[port.firstPin + bit].name + "\"/>\n";
      out += "              </pin_maps>\n            </port_map>\n";
    }
    out += "          </port_maps>\n";
    if (intf.gatedByJumper)
      out += "          <enablement_dependencies>\n            <jumpers>\n"
             "              <jumper name=\"J2\">false</jumper>\n            </jumpers>\n"
             "          </enablement_dependencies>\n";
    out += "        </interface>\n";
  }
  out += "      </interfaces>\n    </component>\n";

  const Interface *firstClock = nullptr;
  const Interface *firstReset = nullptr;
  for (const Interface &intf : board.interfaces) {
    if (!firstClock && intf.kind == "clk")
      firstClock = &intf;
    if (!firstReset && intf.kind == "rst")
      firstReset = &intf;
  }
  for (const Component &comp : kComponents) {
    out += std::string("    <component name=\"") + comp.name + "\" display_name=\"" +
           comp.displayName + "\" type=\"" + comp.type + "\" sub_type=\"" + comp.subType +
           "\" major_group=\"" + comp.majorGroup + "\" connected_to=\"" + comp.connectedTo +
           "\">\n";
    out += std::string("      <description>") + comp.displayName + " of " + board.name +
           "</description>\n      <component_modes>\n";
    for (const Interface &intf : board.interfaces) {
      if (intf.component != comp.name)
        continue;
      out += "        <component_mode name=\"" + intf.name + "\" display_name=\"" + intf.name +
             "\" preset_proc=\"" + intf.name + "_preset\">\n          <interfaces>\n";
      out += "            <interface name=\"" + intf.name + "\" order=\"0\"/>\n";
      if (intf.kind == "ddr" && firstClock && firstReset) {
        out += "            <interface name=\"" + firstClock->name +
               "\" order=\"1\" optional=\"true\"/>\n";
        out += "            <interface name=\"" + firstReset->name +
               "\" order=\"2\" optional=\"true\"/>\n";
      }
      out += "          </interfaces>\n          <preferred_ips>\n"
             "            <preferred_ip vendor=\"quarnel-ip\" library=\"ip\" name=\"" +
             intf.ipName + "\" version=\"" + intf.ipVersion + "\" order=\"0\"/>\n"
             "          </preferred_ips>\n";
      if (intf.gatedByJumper)
        out += "          <enablement_dependencies>\n            <jumpers>\n"
               "              <jumper name=\"J2\">false</jumper>\n            </jumpers>\n"
               "          </enablement_dependencies>\n";
      out += "        </component_mode>\n";
    }
    out += "      </component_modes>\n    </component>\n";
  }
  out += "  </components>\n";

  if (firstClock && firstReset)
    out += "  <ip_associated_rules>\n    <ip_associated_rule name=\"memctl_board_rule\">\n"
           "      <ip vendor=\"quarnel-ip\" library=\"ip\" name=\"memctl_gen\" version=\"*\" "
           "ip_interface=\"SYS_CLK\">\n        <associated_board_interfaces>\n"
           "          <associated_board_interface name=\"" + firstClock->name +
           "\" order=\"0\"/>\n        </associated_board_interfaces>\n      </ip>\n"
           "      <ip vendor=\"quarnel-ip\" library=\"ip\" name=\"memctl_gen\" version=\"*\" "
           "ip_interface=\"SYS_RST\">\n        <associated_board_interfaces>\n"
           "          <associated_board_interface name=\"" + firstReset->name +
           "\" order=\"0\"/>\n        </associated_board_interfaces>\n      </ip>\n"
           "    </ip_associated_rule>\n  </ip_associated_rules>\n";

  // One connection per companion, one map per interface that leads to it;
  // the companion's pins count on from 0 in the order of its interfaces.
  out += "  <connections>\n";
  for (const Component &comp : kComponents) {
    out += std::string("    <connection name=\"part0_") + comp.name +
           "\" component1=\"part0\" component2=\"" + comp.name + "\">\n";
    int next = 0;
    for (const Interface &intf : board.interfaces) {
      if (intf.component != comp.name)
        continue;
      const int last = intf.firstPin + intf.pinCount - 1;
      out += "      <connection_map name=\"" + intf.name + "_map\" c1_st_index=\"" +
             std::to_string(intf.firstPin) + "\" c1_end_index=\"" + std::to_string(last) +
             "\" c2_st_index=\"" + std::to_string(next) + "\" c2_end_index=\"" +
             std::to_string(next + intf.pinCount - 1) + "\" typical_delay=\"" +
             dice.delay(80, 400) + "\" min_delay=\"" + dice.delay(60, 80) + "\" max_delay=\"" +
             dice.delay(400, 500) + "\"";
      next += intf.pinCount;
      const bool withNets = intf.kind == "ddr";
      if (!withNets && !intf.gatedByJumper) {
        out += "/>\n";
        continue;
      }
      out += ">\n";
      if (withNets) {
        out += "        <nets>\n";
        for (int net = 0; net < intf.pinCount; net += 3)
          out += "          <net index=\"" + std::to_string(net) + "\" typical_delay=\"" +
                 dice.delay(100, 150) + "\" min_delay=\"" + dice.delay(90, 100) +
                 "\" max_delay=\"" + dice.delay(150, 160) + "\"/>\n";
        out += "        </nets>\n";
      }
      if (intf.gatedByJumper)
        out += "        <enablement_dependencies>\n          <jumpers>\n"
               "            <jumper name=\"J2\">false</jumper>\n          </jumpers>\n"
               "        </enablement_dependencies>\n";
      out += "      </connection_map>\n";
    }
    out += "    </connection>\n";
  }
  out += "  </connections>\n</board>\n";
  return out;
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

} // namespace

bool BenchGenerator::generate(const std::string &dataDir, std::string &error) {
  m_boardFiles.clear();
  m_bytesWritten = 0;
  for (int index = 0; index < m_boardCount; ++index) {
    // Each board has its own stream, so a board's bytes do not depend on N.
    Dice dice(m_seed * 2654435761u + static_cast<std::uint32_t>(index));
    BoardModel board = makeBoard(index, dice);
    const std::string dir = dataDir + "/boards/board_files/" + board.vendor + "/" + board.name +
                            "/" + board.version;
    if (!makeDirs(dir, error))
      return false;
    const std::string pins = pinFile(board, dice);
    const std::string presets = presetFile(board, dice);
    const std::string xml = boardFile(board, dice);
    if (!writeFile(dir + "/part0_pins.xml", pins, error) ||
        !writeFile(dir + "/preset.xml", presets, error) ||
        !writeFile(dir + "/board.xml", xml, error))
      return false;
    m_bytesWritten += pins.size() + presets.size() + xml.size();
    m_boardFiles.push_back(dir + "/board.xml");
  }
  return true;
}
