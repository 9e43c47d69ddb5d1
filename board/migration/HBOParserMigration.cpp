// The in-memory lift of a legacy board to the shape of the current schema:
// the single part becomes the FPGA, and each interface becomes a component
// of its own, since a legacy file says nothing of the devices behind its
// interfaces. What it does not say is made up by rule of thumb, from the
// interfaces' names and from two well-known interface types.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOCommon.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParser.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"

#include <string>
#include <vector>

namespace {

const char kChain[] = "chain1";
const char kMemoryType[] = "quarnel-ip:interface:ddrx_rtl:1.0";
const char kFixedIoType[] = "quarnel-ip:display_cpu_block:fixedio_rtl:1.0";
// The one board whose fixed-IO preset is not named after the board.
const char kSpecialBoard[] = "jaro";
const char kSpecialPreset[] = "Jaroboard";

// The kind of device behind an interface, told by its name; empty when the
// name says nothing. The first match wins, so "button_led" is a LED.
std::string subTypeByName(const std::string &interfaceName) {
  static const struct {
    const char *part;
    const char *subType;
  } kRules[] = {{"led", "led"},         {"lcd", "lcd"},    {"switch", "switch"},
                {"gpio_sw", "switch"},  {"sws", "switch"}, {"button", "push_button"},
                {"btns", "push_button"}};
  const std::string name = HBOCommon::toLowerCopy(interfaceName);
  for (const auto &rule : kRules)
    if (name.find(rule.part) != std::string::npos)
      return rule.subType;
  return std::string();
}

// The preset that a legacy interface's own preset file stands for. The
// records that the procedure had (from the board's preset file) go: a
// legacy board shares none between procedures.
void addInterfacePreset(HBOBoard &board, HBOBusIf &busIf) {
  auto *preset = new HBOIpPreset();
  const std::string procName = busIf.getName() + "_preset";
  preset->setPresetProcName(procName);
  busIf.setPresetProcName(procName);

  std::string type;
  busIf.getAbstractTypeVLNV(type, ":");
  if (HBOCommon::iEquals(type, kMemoryType)) {
    preset->setVendor("quarnel-ip");
    preset->setLibrary("ip");
    preset->setName("memctl_gen");
    preset->setVersion("*");
    preset->setOwner(&board);
    preset->setPresetName(procName + ":quarnel-ip:ip:memctl_gen:*");
    preset->setParam("CONFIG.XML_INPUT_FILE", busIf.getPresetFile());
    preset->setValueType("file");
  } else if (HBOCommon::iEquals(type, kFixedIoType)) {
    preset->setVendor("quarnel-ip");
    preset->setLibrary("ip");
    preset->setName("cpu_block");
    preset->setVersion("*");
    preset->setOwner(&board);
    preset->setPresetName(procName + ":quarnel-ip:ip:cpu_block:*");
    preset->setParam("CONFIG.preset", HBOCommon::iEquals(board.getBoardName(), kSpecialBoard)
                                          ? std::string(kSpecialPreset)
                                          : board.getBoardName());
  }
  std::vector<HBOIpPreset *> old = board.findPresetProc(procName);
  board.setIpPreset(procName, {preset});
  for (HBOIpPreset *record : old)
    if (record != preset)
      delete record;
}

// A copy of \p pin held by \p owner, with no port: every field but those.
HBOPinProps *copyPin(const HBOPinProps &pin, HBOBoardComponent &owner) {
  HBOPinProps *copy = owner.createPin();
  copy->setName(pin.getName());
  copy->setPinIndex(pin.getPinIndex());
  copy->copyIOPropertiesFrom(pin);
  for (const auto &entry : pin.getIntfPortMap())
    copy->addIntfPortMap(entry.first, entry.second);
  for (const auto &group : pin.getPartOf())
    copy->addPartOf(group);
  copy->setOwner(&owner);
  return copy;
}

} // namespace

bool HBOParser::migrateV1ToV2(HBOBoard *board) {
  if (!board || !HBOBoardUtils::isV2SchemaEnabled())
    return false;
  const std::string oldSchema = board->getBoardSchemaVersion();
  if (oldSchema != "1.1" && oldSchema != "1.0")
    return false;

  board->addJtagChain(kChain);
  HBOBoardComponent *fpga = board->getActivePart();
  if (!fpga)
    return false;

  // Entered once more under its name of the moment, the empty one of the
  // legacy reader; the board's map keeps it under that key.
  board->addBoardComponent(fpga);
  fpga->setComponentName("part0");
  fpga->setType("fpga");
  fpga->setVendorName("quarnel");
  const std::string position = fpga->getJtagPosition();
  fpga->setJtagPosition(position);
  fpga->addJtagPosition(kChain, position);

  std::vector<HBOBusIf *> interfaces;
  fpga->getBusIfSeq(interfaces, false);
  for (HBOBusIf *busIf : interfaces) {
    if (!busIf)
      continue;
    auto *device = new HBOBoardComponent();
    device->setBoard(board);
    device->setBoardFile(board->getBoardFile());
    device->setRepository(board->getRepository());
    device->setComponentName(busIf->getName());
    busIf->setOfComponent(busIf->getName());
    device->setType("chip");

    // Only a preference with an empty minor group lets the name decide.
    std::string subType;
    if (HBOBusIfPreference *preference = busIf->getPreference()) {
      device->setMajorGroup(preference->getMajorGroup());
      subType = preference->getMinorGroup();
      if (subType.empty())
        subType = subTypeByName(busIf->getName());
    }
    device->setSubType(subType.empty() ? std::string("chip") : subType);
    device->setName(board->getVendor() + ":" + board->getBoardName() + ":" +
                    device->getComponentName() + ":" + board->getVersion());

    // Schema 2 expects the interface to hold its model ports.
    std::vector<HBOPortMap *> portMaps;
    busIf->getPortMapSeq(portMaps);
    for (const HBOPortMap *portMap : portMaps) {
      HBOModelPort *port = nullptr;
      if (portMap && fpga->getModelPortByName(port, portMap->getPhysicalPort()) && port)
        busIf->addPort(port);
    }
    if (!busIf->getPresetFile().empty())
      addInterfacePreset(*board, *busIf);
    board->addBoardComponent(device);
  }

  // The FPGA's pins, numbered afresh in port order; each port keeps the
  // pin's index of the legacy file as the key of its pin map.
  int nextIndex = 0;
  std::vector<HBOModelPort *> ports;
  fpga->getModelPortSeq(ports);
  for (HBOModelPort *port : ports) {
    if (!port)
      continue;
    std::vector<HBOPinProps *> records;
    port->getPortPropsSeq(records);
    for (const HBOPinProps *pin : records) {
      if (!pin)
        continue;
      HBOPinProps *copy = copyPin(*pin, *fpga);
      copy->setPinIndex(nextIndex++);
      fpga->addPin(copy);
      port->addPinPortMap(std::to_string(pin->getPinIndex()), pin->getName());
    }
  }

  board->setMigratedFromSchema(oldSchema);
  board->setBoardSchemaVersion("2.0");
  return false;
}
