// The reader of the connections element: each connection_map becomes a bus
// with one net per wired pin pair. Chips and connectors have no pin file, so
// their pins come into being here, from the index ranges.
#include "HBOConnectionReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOParseContext.h"
#include "HBOPinFileReader.h"
#include "HBOPinProps.h"
#include "HEXError.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"
#include "HXMLWElement.h"

#include <cassert>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Wider than any package or connector has pins. A typo such as an end index
// of 2000000000 would otherwise make that many pins and nets.
const long long kMaxBusWidth = 16384;

// Text that is no number fails the read with a finding that names the
// attribute and its value.
[[noreturn]] void raiseNotANumber(const HBOParseContext &ctx, const char *what,
                                  std::string_view value, const char *kind) {
  HEXError::raise("board", ComMsg::Warning, "@49-69@%s%s", ctx.board->getBoardFile(),
                  std::string(what) + " value \"" + HUTConvert::quoteValue(value) +
                      "\" is not valid, must be " + kind + ".");
}

// An absent or empty delay is 0.
float readDelay(const HBOParseContext &ctx, const char *what, const char *attribute) {
  const std::string_view text = HXMLWElement::viewOf(attribute);
  if (text.empty())
    return 0.0f;
  float value = 0.0f;
  if (!HBOParseContext::parseFloat(text, value))
    raiseNotANumber(ctx, what, text, "a floating point number");
  return value;
}

// The FPGA pin takes the I/O standard of the chip or connector pin it is
// wired to; between two chips nothing moves. \p standard is a buffer that
// the nets of a bus share.
void carryIOStandard(bool fpga1, HBOPinProps *pin1, bool fpga2, HBOPinProps *pin2,
                     std::string &standard) {
  if (!pin1 || !pin2)
    return;
  if (fpga1) {
    standard.clear();
    pin2->getPinIOStandard(standard);
    if (!standard.empty()) {
      pin1->setPinIOStandard(standard);
      return;
    }
  }
  if (fpga2) {
    standard.clear();
    pin1->getPinIOStandard(standard);
    if (!standard.empty())
      pin2->setPinIOStandard(standard);
  }
}

// "{j1 0} {j2 1}" from the children of a jumpers element; "{}" without any.
std::string enablementText(const HXMLWElement &jumpers) {
  std::string text = "{";
  for (HXMLWElement jumper : jumpers.children()) {
    if (text.size() > 1)
      text += "} {";
    text += jumper.getAttributeView("name");
    text += ' ';
    text += jumper.getText();
  }
  text += '}';
  return text;
}

} // namespace

bool HBOConnectionReader::readConnections(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = "Root XML element is NULL";
    return false;
  }
  for (HXMLWElement section : root->children("connections")) {
    // The first connection that fails ends the reading: what follows it is
    // not looked at.
    for (HXMLWElement connection : section.children())
      if (!readConnectionDetails(&connection))
        return false;
  }
  return true;
}

bool HBOConnectionReader::readConnectionDetails(HXMLWElement *connection) {
  if (!connection || !m_ctx.board)
    return false;
  static const char *const kNames[] = {"name", "component1", "component2"};
  const char *values[3];
  connection->findAttributes(kNames, values);
  const std::string connectionName(HXMLWElement::viewOf(values[0]));
  const std::string comp1 = HSTStringUtils::toLower(std::string(HXMLWElement::viewOf(values[1])));
  const std::string comp2 = HSTStringUtils::toLower(std::string(HXMLWElement::viewOf(values[2])));

  for (HXMLWElement child : connection->children()) {
    if (child.isTag("pin")) {
      // Accepted for older files; nothing on the board comes of it.
      continue;
    }
    if (!child.isTag("connection_map"))
      continue;

    HBOParseContext::SubjectScope subject(m_ctx, child);
    std::unique_ptr<HBOBoardBus> bus = readConnectionMap_(child, connectionName, comp1, comp2);
    if (!wireNets_(*bus))
      return false;
    readNetDetails_(child, *bus);
    if (!validateConnection(bus.get()))
      return false;
    HBOBoardBus *added = bus.release();
    m_ctx.board->addBus(added);
    added->setOwner(m_ctx.board);
  }
  return true;
}

std::unique_ptr<HBOBoardBus>
HBOConnectionReader::readConnectionMap_(HXMLWElement &map, const std::string &connectionName,
                                        const std::string &comp1, const std::string &comp2) {
  std::unique_ptr<HBOBoardBus> bus(new HBOBoardBus());
  static const char *const kNames[] = {"name",        "c1_st_index",  "c1_end_index",
                                       "c2_st_index", "c2_end_index", "typical_delay",
                                       "min_delay",   "max_delay"};
  const char *values[8];
  map.findAttributes(kNames, values);
  bus->setName(std::string(HXMLWElement::viewOf(values[0])));
  const std::string &mapName = bus->getName();
  const char *c1Start = values[1];
  const char *c1End = values[2];
  const char *c2Start = values[3];
  const char *c2End = values[4];
  // Told, and the map is still read with 0 in place of what is missing.
  if (!c1Start || !c1End || !c2Start || !c2End)
    m_ctx.queueMsgAt(map, false, ComMsg::Warning, "@49-99@%s%s", m_ctx.board->getBoardFile(),
                     mapName);

  const float typicalDelay = readDelay(m_ctx, "connection_map typical_delay", values[5]);
  const float minDelay = readDelay(m_ctx, "connection_map min_delay", values[6]);
  const float maxDelay = readDelay(m_ctx, "connection_map max_delay", values[7]);

  bus->setConnectionName(connectionName);
  bus->setComp1(comp1);
  bus->setComp2(comp2);
  const int c1From = m_ctx.convert2NonNegativeInteger(c1Start, "connection_map c1_st_index");
  const int c1To = m_ctx.convert2NonNegativeInteger(c1End, "connection_map c1_end_index");
  const int c2From = m_ctx.convert2NonNegativeInteger(c2Start, "connection_map c2_st_index");
  const int c2To = m_ctx.convert2NonNegativeInteger(c2End, "connection_map c2_end_index");
  bus->setDelay(typicalDelay);
  bus->setMinDelay(minDelay);
  bus->setMaxDelay(maxDelay);
  bus->setStartIndexComp1(c1From);
  bus->setStopIndexComp1(c1To);
  bus->setStartIndexComp2(c2From);
  bus->setStopIndexComp2(c2To);
  return bus;
}

bool HBOConnectionReader::wireNets_(HBOBoardBus &bus) {
  const std::string &mapName = bus.getName();
  const std::string &connectionName = bus.getConnectionName();
  const std::string &comp1 = bus.getComp1();
  const std::string &comp2 = bus.getComp2();
  const int c1From = bus.getStartIndexComp1(), c1To = bus.getStopIndexComp1();
  const int c2From = bus.getStartIndexComp2(), c2To = bus.getStopIndexComp2();
  // Lenient files may hold any int, so the differences are taken wide.
  const long long width = static_cast<long long>(c1To) - c1From;
  // Differing widths make neither pins nor nets; validateConnection tells.
  if (width != static_cast<long long>(c2To) - c2From)
    return true;
  if (width >= kMaxBusWidth) {
    m_ctx.queueFinding("Connection map '" + mapName + "' of connection '" + connectionName +
                       "' spans " + std::to_string(width + 1) + " pins; at most " +
                       std::to_string(kMaxBusWidth) + " are supported.");
    return false;
  }
  m_pinFiles.createPinsForComponent(comp1, c1From, c1To, connectionName);
  m_pinFiles.createPinsForComponent(comp2, c2From, c2To, connectionName);
  // A reversed range has a negative width and no nets.
  HBOBoardComponent *component1 = m_ctx.board->findBoardComponent(comp1);
  HBOBoardComponent *component2 = m_ctx.board->findBoardComponent(comp2);
  if (width < 0)
    return true;
  HBOBoardBusNet *nets = bus.makeBoardBusNets(static_cast<std::size_t>(width + 1));
  // The types decide for every net of the bus whether a standard moves.
  const bool fpga1 = component1 && component1->getType() == "fpga";
  const bool fpga2 = component2 && component2->getType() == "fpga";
  const bool carry = component1 && component2 && (fpga1 || fpga2);
  std::string standard;
  for (long long i = 0; i <= width; ++i) {
    const int c1Index = static_cast<int>(c1From + i);
    const int c2Index = static_cast<int>(c2From + i);
    HBOBoardBusNet &net = nets[i];
    // Named "<map>_<position>" from the bus, when asked for.
    net.setGeneratedName(static_cast<int>(i));
    net.setC1PinIndex(c1Index);
    net.setC2PinIndex(c2Index);
    net.setTypicalDelay(bus.getDelay());
    net.setMaxDelay(bus.getMaxDelay());
    net.setMinDelay(bus.getMinDelay());
    if (carry)
      carryIOStandard(fpga1, component1->getPinByIndex(c1Index), fpga2,
                      component2->getPinByIndex(c2Index), standard);
  }
  return true;
}

void HBOConnectionReader::readNetDetails_(HXMLWElement &map, HBOBoardBus &bus) {
  for (HXMLWElement part : map.children()) {
    if (part.isTag("enablement_dependencies")) {
      for (HXMLWElement jumpers : part.children("jumpers")) {
        auto text = std::make_shared<const std::string>(enablementText(jumpers));
        bus.setEnablementDependency(*text);
        for (HBOBoardBusNet *net : bus.getBoardBusNets())
          net->setEnablementDependency(text);
      }
    } else if (part.isTag("nets")) {
      const std::vector<HBOBoardBusNet *> &nets = bus.getBoardBusNets();
      for (HXMLWElement netElement : part.children()) {
        // The index counts from the start of the range on component 1.
        static const char *const kNames[] = {"index", "typical_delay", "max_delay", "min_delay"};
        const char *values[4];
        netElement.findAttributes(kNames, values);
        int index = 0;
        const std::string_view indexText = HXMLWElement::viewOf(values[0]);
        if (!HBOParseContext::parseInt(indexText, index))
          raiseNotANumber(m_ctx, "net index", indexText, "an integer");
        const float typical = readDelay(m_ctx, "net typical_delay", values[1]);
        const float max = readDelay(m_ctx, "net max_delay", values[2]);
        const float min = readDelay(m_ctx, "net min_delay", values[3]);
        // Nets stand in index order, one per position of the range, so the
        // net at that position is the only one it can mean.
        if (index < 0 || static_cast<std::size_t>(index) >= nets.size())
          continue;
        HBOBoardBusNet *net = nets[index];
        assert(net->getC1PinIndex() - static_cast<long long>(bus.getStartIndexComp1()) == index &&
               "nets are made one per position of the range");
        net->setTypicalDelay(typical);
        net->setMaxDelay(max);
        net->setMinDelay(min);
      }
    }
  }
}

bool HBOConnectionReader::validateConnection(HBOBoardBus *bus) {
  if (!bus)
    return false;
  bool valid = true;
  auto fail = [&](const std::string &text) {
    m_ctx.queueFinding(text);
    valid = false;
  };
  if (bus->getConnectionName().empty())
    fail("Connection name cannot be empty in '" + bus->getName() + "'.\n");
  if (bus->getComp1().empty())
    fail("Component1 cannot be empty in '" + bus->getName() + "'.\n");
  if (bus->getComp2().empty())
    fail("Component2 cannot be empty in '" + bus->getName() + "'.\n");
  const long long width1 =
      std::llabs(static_cast<long long>(bus->getStopIndexComp1()) - bus->getStartIndexComp1());
  const long long width2 =
      std::llabs(static_cast<long long>(bus->getStopIndexComp2()) - bus->getStartIndexComp2());
  if (width1 != width2)
    fail("Bus width of Component1 and Component2 does not match for " + bus->getConnectionName() +
         "\n");
  return valid;
}
