// The composition of an integrated board: a copy of the base board, each
// daughter board copied in under the name of the base connector it sits on,
// a connection per mated pair of connectors, and on the FPGA every daughter
// interface whose pins all reach it.
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOCopyNames.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HEXError.h"
#include "HSTStringUtils.h"

#include <memory>
#include <set>

namespace {

const char kScope[] = "board.BoardCreation";

// The connector must exist on the board and be a connector; the message
// says which of the two failed.
void findValidConnectorOrFail(const std::string &connector, const HBOBoard &board) {
  const HBOBoardComponent *component = board.findBoardComponent(connector);
  if (!component)
    HEXError::raise("board", ComMsg::Error, "@49-165@%s%s", board.getName(), connector);
  if (!component->isConnector())
    HEXError::raise("board", ComMsg::Error, "@49-127@%s%s", connector, board.getName());
}

} // namespace

HBOBoard *HBOBoard::createBoard(const HBOBoard *base,
                                const std::vector<IntegratedConnection> &connections,
                                const std::string &boardName) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, kScope,
                           "Creating Integrated Board %s : Base Board=%s, Connections Size=%d\n",
                           boardName.c_str(), base ? base->getName().c_str() : "",
                           static_cast<int>(connections.size()));
  int counter = 0;
  for (const IntegratedConnection &connection : connections) {
    const HBOBoard *daughter = std::get<1>(connection);
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, kScope,
                             "  Connection(%d): Base Board Connector=%s, Daughter Board=%s "
                             "Daughter Board Connector=%s\n",
                             counter++, std::get<0>(connection).c_str(),
                             daughter ? daughter->getName().c_str() : "",
                             std::get<2>(connection).c_str());
  }
  if (!base)
    HEXError::raise("board", ComMsg::Error, "@49-85@");
  if (base->isIntegratedBoard())
    HEXError::raise("board", ComMsg::Error, "@49-84@%s", base->getName());

  const HBOBoardComponent *basePart = base->getActivePart();
  const std::string activePartName = basePart ? basePart->getComponentName() : std::string();

  // Every check before anything is made, so that a failure leaves nothing.
  std::set<std::string> baseConnectors;
  for (const IntegratedConnection &connection : connections) {
    const HBOBoard *daughter = std::get<1>(connection);
    if (!daughter)
      continue;
    findValidConnectorOrFail(std::get<0>(connection), *base);
    findValidConnectorOrFail(std::get<2>(connection), *daughter);
    // Two daughters on one connector would be copied in under one prefix.
    if (!baseConnectors.insert(std::get<0>(connection)).second)
      HEXError::raise("board", ComMsg::Error, "@49-171@%s%s", std::get<0>(connection),
                      base->getName());
  }

  std::unique_ptr<HBOBoard> board(new HBOBoard(*base, boardName));
  board->setIntegratedBoard(true);
  board->setBaseBoard(base);
  for (const IntegratedConnection &connection : connections)
    if (const HBOBoard *daughter = std::get<1>(connection))
      board->copyBoardInformation(*daughter, std::get<0>(connection));
  for (const IntegratedConnection &connection : connections)
    board->createConnection(std::get<0>(connection),
                            std::get<0>(connection) + "_" + std::get<2>(connection));

  HBOBoardComponent *fpga = activePartName.empty() ? board->findFpgaComponent()
                                                   : board->findFpgaComponent(activePartName);
  board->setActivePart(fpga);
  if (fpga) {
    for (const IntegratedConnection &connection : connections) {
      const std::string &baseConnector = std::get<0>(connection);
      const HBOBoardComponent *baseComponent =
          board->findBoardComponent(HBOCommon::toLowerCopy(baseConnector));
      const HBOBoardComponent *daughterComponent = board->findBoardComponent(
          HBOCommon::toLowerCopy(baseConnector + "_" + std::get<2>(connection)));
      fpga->copyInterfacesFromComponent(baseComponent, daughterComponent);
    }
    // A reference board has an FPGA; the guard only keeps a malformed base
    // from taking the process down.
    fpga->createModelPortsForInterfaces();
  }

  board->setBaseBoard(base);
  for (const IntegratedConnection &connection : connections)
    board->addIntegratedBoardConnection(std::get<0>(connection), std::get<1>(connection),
                                        std::get<2>(connection));
  board->updateEnablement();
  return board.release();
}

void HBOBoard::createConnection(std::string baseConnector, std::string daughterConnector) {
  HBOCommon::toLowerInPlace(baseConnector);
  HBOCommon::toLowerInPlace(daughterConnector);
  HBOBoardComponent *base = findBoardComponent(baseConnector);
  HBOBoardComponent *daughter = findBoardComponent(daughterConnector);
  if (!base || !daughter)
    return;
  const std::string name = baseConnector + "_" + daughterConnector;
  const int pins = HBOBoardComponent::getConnectorPinCount(base->getSubType());

  auto *bus = new HBOBoardBus();
  bus->setConnectionName(name);
  bus->setComp1(baseConnector);
  bus->setComp2(daughterConnector);
  bus->setName(name);
  bus->setStartIndexComp1(1);
  bus->setStopIndexComp1(pins);
  bus->setStartIndexComp2(1);
  bus->setStopIndexComp2(pins);
  createPinsForComponent(baseConnector, 1, pins);
  createPinsForComponent(daughterConnector, 1, pins);
  // The mated connectors wire the same index on both sides; the nets are
  // named "<connection>_<i>", which is what a generated name reads.
  if (pins > 0) {
    HBOBoardBusNet *nets = bus->makeBoardBusNets(static_cast<std::size_t>(pins));
    for (int i = 0; i < pins; ++i) {
      nets[i].setGeneratedName(i);
      nets[i].setC1PinIndex(i + 1);
      nets[i].setC2PinIndex(i + 1);
    }
  }
  addBus(bus);
  bus->setOwner(this);
}

bool HBOBoard::createPinsForComponent(std::string componentName, int from, int to) {
  HBOBoardComponent *component = findBoardComponent(componentName);
  if (!component || from > to)
    return true;
  std::size_t missing = 0;
  // Counted wide: a range that ends at the largest int must still end.
  for (long long index = from; index <= to; ++index)
    missing += component->getPinByIndex(static_cast<int>(index)) ? 0 : 1;
  component->reservePins(missing, missing * (componentName.size() + 1 + std::to_string(to).size()));
  for (long long wide = from; wide <= to; ++wide) {
    const int index = static_cast<int>(wide);
    if (component->getPinByIndex(index))
      continue;
    HBOPinProps *pin = component->createPin();
    pin->setName(HSTStringUtils::numberedName(componentName, index));
    pin->setPinIndex(index);
    pin->setOwner(component);
    component->addPin(pin);
  }
  return true;
}

void HBOBoard::appendBoard(const HBOBoard &src, std::string prefix) {
  m_fallbackText = src.m_fallbackText;
  m_fallbackFlag = src.m_fallbackFlag;
  for (const std::string &chain : src.m_jtagChains)
    addJtagChain(chain);
  for (const HBOJumper *jumper : src.m_jumpers)
    if (jumper)
      addJumper(new HBOJumper(*jumper, this, std::string()));
  for (const HBOImage *image : src.m_images)
    if (image)
      addImage(new HBOImage(*image, std::string()));

  // Only the component and interface names take the prefix here.
  for (const auto &entry : src.m_components) {
    if (!entry.second)
      continue;
    auto *copy = new HBOBoardComponent(*entry.second, this, std::string());
    const std::string newName = HBOCommon::toLowerCopy(prefix + "_" + copy->getComponentName());
    copy->setComponentName(newName);
    copy->setName(m_vendor + ":" + m_boardName + ":" + newName + ":" + m_version);
    copy->prefixInterfaceNames(prefix);
    HBOBoardComponent *&slot = m_components[newName];
    if (slot && slot != copy) {
      if (m_activePart == slot)
        m_activePart = nullptr;
      delete slot;
    }
    slot = copy;
  }
  for (const HBOBoardBus *bus : src.m_buses) {
    if (!bus)
      continue;
    auto *copy = new HBOBoardBus(*bus, this, std::string());
    copy->setName(prefix + "_" + copy->getName());
    copy->setComp1(prefix + "_" + copy->getComp1());
    copy->setComp2(prefix + "_" + copy->getComp2());
    copy->setConnectionName(prefix + "_" + copy->getConnectionName());
    addBus(copy);
  }
  for (const auto &entry : src.m_ipPresets) {
    std::vector<HBOIpPreset *> presets;
    for (const HBOIpPreset *preset : entry.second)
      if (preset)
        presets.push_back(new HBOIpPreset(*preset, this, std::string()));
    storePresets_(false, entry.first, std::move(presets));
  }
  for (const auto &entry : src.m_ipAssocInterfaces) {
    std::vector<HBOIpPreset *> presets;
    for (const HBOIpPreset *preset : entry.second)
      if (preset)
        presets.push_back(new HBOIpPreset(*preset, this, std::string()));
    storePresets_(true, entry.first, std::move(presets));
  }
  m_activePart = findFpgaComponent();
}
