// The rules that decide whether what was read may stand. A rule queues its
// finding and the next rule still runs, so that a file's faults are told
// together.
#include "HBOBoardValidator.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOModelPort.h"
#include "HBOParseContext.h"
#include "HSTStringUtils.h"

#include <boost/format.hpp>

#include <set>

namespace {

bool isOneOf(const std::string &value, std::initializer_list<const char *> words) {
  for (const char *w : words)
    if (HSTStringUtils::iequals(value, w))
      return true;
  return false;
}

// The findings of one validator: each rule's text is queued at once as
// "@49-69@", and the validator passes when no rule made one.
class Findings {
public:
  explicit Findings(HBOParseContext &ctx) : m_ctx(ctx) {}
  void operator()(const std::string &text) {
    m_last = text;
    m_ctx.queueFinding(text);
  }
  bool none() const { return m_last.empty(); }

private:
  HBOParseContext &m_ctx;
  std::string m_last;
};

} // namespace

bool HBOBoardValidator::validateComponent(HBOBoardComponent *component) {
  if (!component)
    return false;
  const std::string &name = component->getName();
  const std::string &type = component->getType();
  const std::string &subType = component->getSubType();
  Findings rule(m_ctx);

  if (name.empty())
    rule("Component name cannot be empty.\n");
  if (type.empty())
    rule("Component Type cannot be empty for '" + name + "'.");
  if (!isOneOf(type, {"fpga", "chip", "connector"}))
    rule("Component Type should be fpga/chip/connector for '" + name + "'.");
  if (isOneOf(type, {"chip", "connector"})) {
    if (subType.empty())
      rule("Component SubType cannot be empty for '" + name + "'.");
    if (!isOneOf(subType, {"ddr",          "switch",
                           "mux",          "lcd",
                           "led",          "ethernet",
                           "sfp",          "sma",
                           "reset",        "push_button",
                           "system_reset", "uart",
                           "mgt_clock",    "memory_flash_qspi",
                           "system_clock", "memory_flash_bpi",
                           "dimm",         "pmod",
                           "som",          "fmc_lpc",
                           "fmc_hpc",      "fmc_plus",
                           "memory",       "pcie",
                           "dockline160",  "fixed_io",
                           "chip"}))
      rule("Component Sub Type should be ddr/switch/push_button/lcd/led/ethernet/sfp/sma/mux/"
           "reset/system_reset/uart/mgt_clock/system_clock/memory_flash_qspi/memory_flash_bpi/"
           "memory/dimm/pmod/som/fmc_hpc/fmc_lpc/fmc_plus/dockline160/pcie/fixed_io/chip for '" +
           name + "'.");
  }
  const std::string &connectedTo = component->getConnectedToLogicStr();
  if (!isOneOf(connectedTo, {"pl", "ps", "ps_and_pl"}))
    rule(boost::str(boost::format("Component %1% attribute 'connected_to' has invalid value "
                                  "'%2%', valid values are 'pl', 'ps', or 'ps_and_pl'") %
                    name % connectedTo));
  return rule.none();
}

bool HBOBoardValidator::validateInterface(HBOBusIf *interface) {
  if (!interface)
    return false;
  const std::string &name = interface->getName();
  const std::string mode = interface->getInterfaceMode();
  Findings rule(m_ctx);
  if (name.empty())
    rule("Component name cannot be empty.");
  if (mode.empty())
    rule("Component Mode cannot be empty for interface '" + name + "'.");
  if (interface->getOfComponent().empty())
    rule("Component OfComponent cannot be empty for interface '" + name + "'.");
  if (!HSTStringUtils::iequals(mode, "master") && !HSTStringUtils::iequals(mode, "slave"))
    rule("Component Mode should be master or slave for interface '" + name + "'.");
  return rule.none();
}

bool HBOBoardValidator::validatePort(HBOModelPort *port, const std::string &ofComponentText,
                                     const std::string &interfaceText) {
  if (!port)
    return false;
  const std::string &name = port->getName();
  const std::string &dir = port->getDirection();
  Findings rule(m_ctx);
  if (name.empty())
    rule("Port name cannot be empty.");
  if (dir.empty())
    rule("Port direction cannot be empty for '" + name + "'.");
  if (!HSTStringUtils::iequals(dir, "in") && !HSTStringUtils::iequals(dir, "out") &&
      !HSTStringUtils::iequals(dir, "inout"))
    rule("Port direction should be in/out/inout for '" + name + "'.");
  bool isVector = false;
  port->isPortOfTypeVec(isVector);
  if (isVector) {
    int left = -1, right = -1;
    port->getPortVecLeft(left);
    port->getPortVecRight(right);
    if (left == right)
      rule("Port left and right cannot be same for '" + name + "'.");
  }

  // The records are only ever read by the check below, which runs on every
  // port of a read or on none; a read that tells nothing keeps none.
  if (!m_ctx.strictChecks || !m_ctx.sendMessages)
    return rule.none();

  const std::string ofComponent = HSTStringUtils::trim(ofComponentText);
  const std::string interfaceName = HSTStringUtils::trim(interfaceText);
  const std::string portName = HSTStringUtils::trim(name);
  // A record's second field is an interface name: a port is held against the
  // interfaces of the other components, never against their ports. The
  // finding is only ever told, so a read that tells nothing skips the walk,
  // which grows with the square of the ports.
  for (const auto &entry : m_ctx.portRecords) {
    if (entry.first == ofComponent)
      continue;
    for (const std::string &record : entry.second) {
      std::vector<std::string> fields = HSTStringUtils::split(record, ":", true);
      if (fields.size() < 2 || fields[1] != portName)
        continue;
      m_ctx.queueMsg(true, ComMsg::Warning, "@49-150@%s%s%s%s", portName, interfaceName,
                     m_ctx.board ? m_ctx.board->getBoardFile() : std::string(), fields[0]);
    }
  }

  if (!rule.none())
    return false;
  HBOBusIf *owner = port->getOwner();
  HBOBoardComponent *component = owner ? owner->getOwnerComponent() : nullptr;
  const std::string componentName = component ? component->getComponentName() : std::string();
  m_ctx.portRecords[ofComponent].insert(componentName + ":" + interfaceName + ":" + portName);
  return true;
}

bool HBOBoardValidator::validatePreferredIP(HBOBusIfPreference *preference) {
  if (!preference)
    return false;
  const std::string &name = preference->getName();
  Findings rule(m_ctx);
  if (preference->getVendor().empty())
    rule("Vendor cannot be empty in preferred_ip '" + name + "'.");
  if (preference->getLibrary().empty())
    rule("Library cannot be empty in preferred_ip '" + name + "'.");
  if (name.empty())
    rule("IP Name cannot be empty  in preferred_ip '" + name + "'.");
  if (preference->getOrder() < 0)
    rule("Order cannot be less than zero  in preferred_ip '" + name + "'.");
  return rule.none();
}

bool HBOBoardValidator::validateNecessaryParameters() {
  HBOBoardComponent *active = m_ctx.board->getActivePart();
  if (!active)
    return true;
  std::vector<HBOBusIf *> interfaces;
  active->getBusIfSeq(interfaces, true);
  // These stick across interfaces: the first clock with a frequency
  // silences the message for every clock after it.
  bool frequencyFound = false, polarityFound = false, resetSlaveSeen = false;
  // Where an interface of the active part stands in the file, for a check.
  const HXMLWElement component = m_ctx.findNamed("component", active->getComponentName());
  auto placeOf = [&](const HBOBusIf *intf) {
    return component ? m_ctx.findNamed("interface", intf->getName(), component) : HXMLWElement();
  };
  for (HBOBusIf *intf : interfaces) {
    std::string vlnv, value;
    intf->getAbstractTypeVLNV(vlnv, ":");
    if (isOneOf(vlnv, {"quarnel-ip:interface:diff_clock_rtl:1.0", "quarnel-ip:signal:clock_rtl:1.0",
                       "quarnel-ip:interface:clock_rtl:1.0"})) {
      if (intf->getParamValue("frequency", value))
        frequencyFound = true;
      if (!frequencyFound) {
        // Told at once, as a reader's findings are not: it does not fail the read.
        ComMsgMgrInstance msg("board", ComMsg::Warning, "@49-153@%s%s");
        msg.arg(intf->getName());
        msg.arg(m_ctx.board->getBoardFile());
        m_ctx.place(msg, placeOf(intf), true);
        ComMsgMgr::sendMessage(msg);
      }
    } else if (HSTStringUtils::iequals(vlnv, "quarnel-ip:signal:reset_rtl:1.0") &&
               HSTStringUtils::iequals(intf->getInterfaceMode(), "slave")) {
      resetSlaveSeen = true;
      if (intf->getParamValue("rst_polarity", value))
        polarityFound = true;
      if (!polarityFound)
        m_ctx.queueFinding(placeOf(intf),
                           "Polarity Parameter not provided for '" + intf->getName() + "'.");
    }
  }
  return !resetSlaveSeen || polarityFound;
}

bool HBOBoardValidator::validateOfComponent() {
  HBOBoardComponent *active = m_ctx.board->getActivePart();
  if (!active)
    return true;
  std::vector<HBOBusIf *> interfaces;
  active->getBusIfSeq(interfaces, true);
  std::string text;
  for (HBOBusIf *intf : interfaces) {
    if (m_ctx.board->getCompByName(intf->getOfComponent()))
      continue;
    text = "Component " + intf->getOfComponent() + " provided for interface " + intf->getName() +
           " is not found in list of components on the board.";
    m_ctx.queueFinding(text);
  }
  return text.empty();
}

bool HBOBoardValidator::validatePostParse() const {
  if (!m_ctx.strictChecks)
    return true;
  std::vector<std::string> revisions;
  m_ctx.board->getCompatibleBoardRevisionsAsVec(revisions);
  if (revisions.empty())
    m_ctx.queueFinding(
        "No compatible boards were defined in a compatible_board_revisions element.");

  HBOBoardComponent *active = m_ctx.board->getActivePart();
  std::set<std::string> usedByModes;
  std::vector<HBOBoardComponent *> components;
  m_ctx.board->getBoardComponentsVec(components);
  for (HBOBoardComponent *component : components) {
    std::vector<HBOComponentMode *> modes;
    component->getComponentModes(modes);
    for (HBOComponentMode *mode : modes) {
      std::map<int, std::pair<std::string, bool>> entries;
      mode->getInterfaces(entries);
      for (const auto &entry : entries) {
        const std::string &intfName = entry.second.first;
        usedByModes.insert(intfName);
        if (!m_ctx.interfaceNames.count(intfName) && m_ctx.sendMessages)
          m_ctx.queueMsg(true, ComMsg::Warning, "@49-148@%s%s%s", component->getName(), intfName,
                         m_ctx.board->getBoardFile());
      }
    }
    if (!modes.empty() || component->getSubType().empty() ||
        HSTStringUtils::iequals(component->getSubType(), "system_clock") || !active)
      continue;
    // A component without modes gets one per FPGA interface that leads to it.
    std::vector<HBOBusIf *> interfaces;
    active->getBusIfSeq(interfaces, true);
    for (HBOBusIf *intf : interfaces) {
      if (m_ctx.board->getCompByName(intf->getOfComponent()) != component)
        continue;
      const std::string &intfName = intf->getName();
      if (usedByModes.count(intfName))
        continue;
      HBOComponentMode *mode = new HBOComponentMode();
      mode->setName(intfName);
      mode->setDisplayName(intfName);
      mode->setOwnerComponent(component);
      mode->addInterface(0, std::make_pair(intfName, false));
      component->addComponentMode(mode);
      if (m_ctx.sendMessages)
        ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-149@%s%s%s%s", component->getName(),
                           m_ctx.board->getBoardFile(), intfName, intfName);
    }
  }
  return true;
}
