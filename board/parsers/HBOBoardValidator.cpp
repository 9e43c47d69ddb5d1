// The rules that decide whether what was read may stand. A rule queues its
// finding and the next rule still runs, so that a file's faults are told
// together.
#include "HBOBoardParser.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOComponentMode.h"
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

} // namespace

bool HBOBoardParser::validateComponent(HBOBoardComponent *component) {
  if (!component)
    return false;
  const std::string &name = component->getName();
  const std::string &type = component->getType();
  const std::string &subType = component->getSubType();
  Findings rule(*this);

  if (name.empty())
    rule("Component name cannot be empty.\n");
  if (type.empty())
    rule("Component Type cannot be empty for '" + name + "'.");
  if (!isOneOf(type, {"fpga", "chip", "connector"}))
    rule("Component Type should be fpga/chip/connector for '" + name + "'.");
  if (isOneOf(type, {"chip", "connector"})) {
    if (subType.empty())
      rule("Component SubType cannot be empty for '" + name + "'.");
    if (!isOneOf(subType, {"ddr", "switch", "mux", "lcd", "led", "ethernet", "sfp", "sma",
                           "reset", "push_button", "system_reset", "uart", "mgt_clock",
                           "memory_flash_qspi", "system_clock", "memory_flash_bpi", "dimm",
                           "pmod", "som", "fmc_lpc", "fmc_hpc", "fmc_plus", "memory", "pcie",
                           "dockline160", "fixed_io", "chip"}))
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

bool HBOBoardParser::validateNecessaryParameters() {
  HBOBoardComponent *active = m_board->getActivePart();
  if (!active)
    return true;
  std::vector<HBOBusIf *> interfaces;
  active->getBusIfSeq(interfaces, true);
  // These stick across interfaces: the first clock with a frequency
  // silences the message for every clock after it.
  bool frequencyFound = false, polarityFound = false, resetSlaveSeen = false;
  for (HBOBusIf *intf : interfaces) {
    std::string vlnv, value;
    intf->getAbstractTypeVLNV(vlnv, ":");
    if (isOneOf(vlnv, {"quarnel-ip:interface:diff_clock_rtl:1.0", "quarnel-ip:signal:clock_rtl:1.0",
                       "quarnel-ip:interface:clock_rtl:1.0"})) {
      if (intf->getParamValue("frequency", value))
        frequencyFound = true;
      if (!frequencyFound)
        ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-153@%s%s", intf->getName(),
                           m_board->getBoardFile());
    } else if (HSTStringUtils::iequals(vlnv, "quarnel-ip:signal:reset_rtl:1.0") &&
               HSTStringUtils::iequals(intf->getInterfaceMode(), "slave")) {
      resetSlaveSeen = true;
      if (intf->getParamValue("rst_polarity", value))
        polarityFound = true;
      if (!polarityFound)
        queueFinding("Polarity Parameter not provided for '" + intf->getName() + "'.");
    }
  }
  return !resetSlaveSeen || polarityFound;
}

bool HBOBoardParser::validateOfComponent() {
  HBOBoardComponent *active = m_board->getActivePart();
  if (!active)
    return true;
  std::vector<HBOBusIf *> interfaces;
  active->getBusIfSeq(interfaces, true);
  std::string text;
  for (HBOBusIf *intf : interfaces) {
    if (m_board->getCompByName(intf->getOfComponent()))
      continue;
    text = "Component " + intf->getOfComponent() + " provided for interface " + intf->getName() +
           " is not found in list of components on the board.";
    queueFinding(text);
  }
  return text.empty();
}

bool HBOBoardParser::validatePostParse() const {
  if (!m_strictChecks)
    return true;
  HBOBoardParser *self = const_cast<HBOBoardParser *>(this);
  std::vector<std::string> revisions;
  m_board->getCompatibleBoardRevisionsAsVec(revisions);
  if (revisions.empty())
    self->queueFinding("No compatible boards were defined in a compatible_board_revisions element.");

  HBOBoardComponent *active = m_board->getActivePart();
  std::set<std::string> usedByModes;
  std::vector<HBOBoardComponent *> components;
  m_board->getBoardComponentsVec(components);
  for (HBOBoardComponent *component : components) {
    std::vector<HBOComponentMode *> modes;
    component->getComponentModes(modes);
    for (HBOComponentMode *mode : modes) {
      std::map<int, std::pair<std::string, bool>> entries;
      mode->getInterfaces(entries);
      for (const auto &entry : entries) {
        const std::string &intfName = entry.second.first;
        usedByModes.insert(intfName);
        if (!m_interfaceNames.count(intfName) && m_sendMessages)
          self->queueMsg(true, ComMsg::Warning, "@49-148@%s%s%s", component->getName(), intfName,
                         m_board->getBoardFile());
      }
    }
    if (!modes.empty() || component->getSubType().empty() ||
        HSTStringUtils::iequals(component->getSubType(), "system_clock") || !active)
      continue;
    // A component without modes gets one per FPGA interface that leads to it.
    std::vector<HBOBusIf *> interfaces;
    active->getBusIfSeq(interfaces, true);
    for (HBOBusIf *intf : interfaces) {
      if (m_board->getCompByName(intf->getOfComponent()) != component)
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
      if (m_sendMessages)
        ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-149@%s%s%s%s", component->getName(),
                           m_board->getBoardFile(), intfName, intfName);
    }
  }
  return true;
}
