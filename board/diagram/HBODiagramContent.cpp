#include "HBODiagramContent.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOJumper.h"
#include "HBOPinProps.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>

namespace {

// The boolean a jumper of the setting is given; false when the text is none.
bool jumperValue(const std::string &text, bool &value) {
  if (HBOCommon::iEquals(text, "true")) {
    value = true;
    return true;
  }
  if (HBOCommon::iEquals(text, "false")) {
    value = false;
    return true;
  }
  return false;
}

const HBOJumper *findJumper(const HBOBoard &board, const std::string &name) {
  for (const HBOJumper *jumper : board.getJumpers())
    if (jumper && HBOCommon::iEquals(jumper->getName(), name))
      return jumper;
  return nullptr;
}

// Bank ids sort as numbers where they are numbers, so that bank 9 comes
// before bank 10.
bool bankLess(const std::string &a, const std::string &b) {
  char *endA = nullptr;
  char *endB = nullptr;
  const long numberA = std::strtol(a.c_str(), &endA, 10);
  const long numberB = std::strtol(b.c_str(), &endB, 10);
  const bool isNumberA = !a.empty() && *endA == '\0';
  const bool isNumberB = !b.empty() && *endB == '\0';
  if (isNumberA && isNumberB && numberA != numberB)
    return numberA < numberB;
  if (isNumberA != isNumberB)
    return isNumberA;
  return a < b;
}

// The bank of an FPGA pin: pin files give it as "iobank.bank" or
// "iobank.id".
std::string bankOf(const HBOPinProps &pin) {
  std::string bank = pin.getIOBankPropertyValue("bank");
  if (bank.empty())
    bank = pin.getIOBankPropertyValue("id");
  return bank;
}

} // namespace

HBODiagramContent::HBODiagramContent(const HBOBoard &board, const HBODiagramOptions &options) {
  m_name = board.getName();
  m_title = board.getDisplayName().empty() ? board.getBoardName() : board.getDisplayName();
  if (board.isIntegratedBoard())
    m_subtitle = "integrated board on " + (board.getBaseBoard() ? board.getBaseBoard()->getName()
                                                                : board.getBaseBoardName());
  else if (board.hasFPGAPart())
    m_subtitle = "reference board";
  else
    m_subtitle = "daughter board";

  for (const HBOJumper *jumper : board.getJumpers())
    if (jumper)
      m_jumperStates.emplace_back(jumper->getName(), jumper->getDefaultValue());
  for (const auto &setting : options.jumpers) {
    bool value = false;
    if (!jumperValue(setting.second, value))
      continue;
    for (auto &state : m_jumperStates)
      if (HBOCommon::iEquals(state.first, setting.first)) {
        m_settingGiven = m_settingGiven || state.second != value;
        state.second = value;
        break;
      }
  }

  gatherBoxes(board, options);
  gatherLinks(board);
  gatherRails(board);
}

bool HBODiagramContent::checkJumpers(const HBOBoard &board, const HBODiagramOptions &options) {
  bool ok = true;
  for (const auto &setting : options.jumpers) {
    if (!findJumper(board, setting.first)) {
      std::vector<std::string> names;
      for (const HBOJumper *jumper : board.getJumpers())
        if (jumper)
          names.push_back(jumper->getName());
      ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-200@%s%s%s", board.getName(), setting.first,
                         names.empty() ? std::string("none") : HBOBoardUtils::join(names, ", "));
      ok = false;
      continue;
    }
    bool value = false;
    if (!jumperValue(setting.second, value)) {
      ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-201@%s%s", setting.first, setting.second);
      ok = false;
    }
  }
  return ok;
}

void HBODiagramContent::gatherBoxes(const HBOBoard &board, const HBODiagramOptions &options) {
  // The components each daughter board of an integrated board brought in:
  // the composition names them after the base connector they sit on.
  std::map<std::string, int> daughterOf;
  for (const HBOBoard::IntegratedConnection &connection : board.getIntegratedBoardConnections()) {
    const HBOBoard *daughter = std::get<1>(connection);
    Daughter entry;
    entry.baseConnector = std::get<0>(connection);
    entry.connector = HBOCommon::toLowerCopy(entry.baseConnector + "_" + std::get<2>(connection));
    if (daughter) {
      entry.board = daughter->getName();
      entry.title = daughter->getDisplayName().empty() ? daughter->getBoardName()
                                                       : daughter->getDisplayName();
      for (const auto &component : daughter->getBoardComponents())
        daughterOf.emplace(HBOCommon::toLowerCopy(entry.baseConnector + "_" + component.first),
                           static_cast<int>(m_daughters.size()));
    }
    m_daughters.push_back(entry);
  }

  // Fitting daughter boards come from the compatibility lists of the
  // catalog, which only a reference board keeps; an integrated board asks
  // its base board about the connectors left free.
  const HBOBoard *lists = &board;
  if (board.isIntegratedBoard() && board.getBaseBoard())
    lists = board.getBaseBoard();

  HBOBoardComponent *fpga = board.hasFPGAPart() ? board.getActivePart() : nullptr;
  for (const auto &entry : board.getBoardComponents()) {
    const HBOBoardComponent *component = entry.second;
    if (!component)
      continue;
    Box box;
    box.name = component->getComponentName();
    box.title = component->getDisplayName().empty() ? box.name : component->getDisplayName();
    box.detail = component->getPartName();
    if (box.detail.empty())
      box.detail = component->getSubType();
    box.group = component->getMajorGroup();
    if (box.group.empty())
      box.group = component->getSubType().empty() ? "Other" : component->getSubType();
    auto daughter = daughterOf.find(box.name);
    if (daughter != daughterOf.end()) {
      // In the frame of its daughter board the connector that a copy's
      // names carry goes without saying.
      box.daughter = daughter->second;
      const std::string &base = m_daughters[static_cast<std::size_t>(box.daughter)].baseConnector;
      const std::string suffix = " (" + base + ")";
      if (box.title.size() > suffix.size() &&
          box.title.compare(box.title.size() - suffix.size(), suffix.size(), suffix) == 0)
        box.title.resize(box.title.size() - suffix.size());
      box.shortName = box.name.substr(std::min(box.name.size(), base.size() + 1));
    }

    if (component == fpga || (!fpga && HBOCommon::iEquals(component->getType(), "fpga"))) {
      box.kind = Kind::Fpga;
      std::map<std::string, Bank> banks;
      for (const auto &pin : component->getPins()) {
        if (!pin.second)
          continue;
        const std::string id = bankOf(*pin.second);
        if (id.empty())
          continue;
        Bank &bank = banks[id];
        bank.id = id;
        ++bank.pins;
        if (bank.vcco.empty())
          bank.vcco = pin.second->getIOBankPropertyValue("vcco");
      }
      for (auto &bank : banks)
        box.banks.push_back(bank.second);
      std::sort(box.banks.begin(), box.banks.end(),
                [](const Bank &a, const Bank &b) { return bankLess(a.id, b.id); });
    } else if (HBOCommon::iEquals(component->getType(), "connector")) {
      box.kind = Kind::Connector;
      const bool occupied =
          std::any_of(m_daughters.begin(), m_daughters.end(), [&](const Daughter &d) {
            return HBOCommon::iEquals(d.baseConnector, box.name);
          });
      const HBOBoardComponent *listed = lists->findBoardComponent(box.name);
      if (options.showFittingBoards && !occupied && listed) {
        const std::string &key = listed->getName();
        const bool declared = lists->getExplicitlyCompatibleConnectors().count(key) != 0;
        HSTVector<HBOBoardComponent *> latest;
        lists->getLatestCompatibleConnectorsList(*listed, latest);
        for (const HBOBoardComponent *daughterConnector : latest) {
          if (!daughterConnector)
            continue;
          Fitting fit;
          fit.connector = daughterConnector->getName();
          const HBOBoard *owner = daughterConnector->getBoard();
          fit.board =
              owner ? (owner->getDisplayName().empty() ? owner->getName() : owner->getDisplayName())
                    : fit.connector;
          fit.match = declared ? "explicit"
                      : lists->isConnectorFullCompatibleWithConnector(*listed, *daughterConnector)
                          ? "full"
                          : "partial";
          box.fitting.push_back(fit);
        }
        // The lists hold pointers; the diagram must not depend on where the
        // boards happen to lie in memory.
        std::sort(box.fitting.begin(), box.fitting.end(),
                  [](const Fitting &a, const Fitting &b) { return a.connector < b.connector; });
        box.fitting.erase(std::unique(box.fitting.begin(), box.fitting.end(),
                                      [](const Fitting &a, const Fitting &b) {
                                        return a.connector == b.connector;
                                      }),
                          box.fitting.end());
        box.fittingTotal = box.fitting.size();
        if (box.fitting.size() > s_maxFitting)
          box.fitting.resize(s_maxFitting);
      }
    } else {
      box.kind = Kind::Chip;
    }
    m_boxes.push_back(box);
  }

  for (std::size_t i = 0; i < m_boxes.size(); ++i)
    m_boxIndex.emplace(m_boxes[i].name, i);

  m_hub = m_boxes.size();
  for (std::size_t i = 0; i < m_boxes.size() && m_hub == m_boxes.size(); ++i)
    if (m_boxes[i].kind == Kind::Fpga)
      m_hub = i;
  for (std::size_t i = 0; i < m_boxes.size() && m_hub == m_boxes.size(); ++i)
    if (m_boxes[i].kind == Kind::Connector && m_boxes[i].daughter < 0)
      m_hub = i;
  if (m_hub == m_boxes.size() && !m_boxes.empty())
    m_hub = 0;
}

std::size_t HBODiagramContent::findBox(const std::string &name) const {
  const auto found = m_boxIndex.find(name);
  return found == m_boxIndex.end() ? m_boxes.size() : found->second;
}

void HBODiagramContent::gatherLinks(const HBOBoard &board) {
  const HBOBoardComponent *fpga = board.hasFPGAPart() ? board.getActivePart() : nullptr;
  std::set<std::pair<std::size_t, std::size_t>> joined;
  std::vector<int> liveCount(m_boxes.size(), 0);
  std::vector<int> linkCount(m_boxes.size(), 0);

  for (const HBOBoardBus *bus : board.getBuses()) {
    if (!bus)
      continue;
    Link link;
    link.name = bus->getName();
    link.from = findBox(bus->getComp1());
    link.to = findBox(bus->getComp2());
    const long width1 = std::labs(static_cast<long>(bus->getStopIndexComp1()) -
                                  static_cast<long>(bus->getStartIndexComp1())) +
                        1;
    link.width = bus->getBoardBusNets().empty() ? static_cast<int>(std::min(width1, 1L << 20))
                                                : static_cast<int>(bus->getBoardBusNets().size());

    bool hasTerms = false;
    const bool enabled = HBOBoard::evaluateEnablementDependency(bus->getEnablementDependency(),
                                                                m_jumperStates, hasTerms);
    // Without terms the connection keeps the text it has, as the board's
    // own enablement leaves it.
    link.enabled = hasTerms ? enabled : HBOCommon::iEquals(bus->getIsEnabled(), "true");

    // The banks of the FPGA end, read from its pins; the range is bounded
    // by the connection reader, and only the first thousand are looked at.
    const bool firstIsFpga = fpga && bus->getComp1() == fpga->getComponentName();
    const bool secondIsFpga = fpga && bus->getComp2() == fpga->getComponentName();
    if (firstIsFpga || secondIsFpga) {
      const int start = firstIsFpga ? bus->getStartIndexComp1() : bus->getStartIndexComp2();
      const int stop = firstIsFpga ? bus->getStopIndexComp1() : bus->getStopIndexComp2();
      std::vector<std::string> banks;
      const int step = start <= stop ? 1 : -1;
      int looked = 0;
      for (int index = start; looked < 1000; index += step, ++looked) {
        if (const HBOPinProps *pin = fpga->getPinByIndex(index)) {
          const std::string bank = bankOf(*pin);
          if (!bank.empty() && std::find(banks.begin(), banks.end(), bank) == banks.end())
            banks.push_back(bank);
        }
        if (index == stop)
          break;
      }
      std::sort(banks.begin(), banks.end(), bankLess);
      link.banks = HBOBoardUtils::join(banks, "+");
    }

    if (link.from < m_boxes.size() && link.to < m_boxes.size()) {
      joined.insert(std::minmax(link.from, link.to));
      for (std::size_t end : {link.from, link.to}) {
        ++linkCount[end];
        liveCount[end] += link.enabled ? 1 : 0;
      }
    }
    m_links.push_back(link);
  }

  // A component whose connections are all off under the setting is off too.
  for (std::size_t i = 0; i < m_boxes.size(); ++i)
    if (linkCount[i] > 0 && liveCount[i] == 0)
      m_boxes[i].enabled = false;

  // Where no connection is described, as on most daughter boards, the
  // interfaces still tell which component leads to which.
  for (const auto &entry : board.getBoardComponents()) {
    const HBOBoardComponent *component = entry.second;
    if (!component)
      continue;
    // On an integrated board the FPGA's interfaces lead through a connector
    // that is drawn already. Elsewhere they tell what its connections would,
    // on a board that describes none, such as a lifted legacy board part;
    // a pair that a connection joins is drawn once.
    if (component == fpga && board.isIntegratedBoard())
      continue;
    const std::size_t from = findBox(component->getComponentName());
    std::vector<HBOBusIf *> interfaces;
    component->getBusIfSeq(interfaces, true);
    for (const HBOBusIf *intf : interfaces) {
      const std::size_t to = findBox(HBOCommon::toLowerCopy(intf->getOfComponent()));
      if (from >= m_boxes.size() || to >= m_boxes.size() || from == to ||
          !joined.insert(std::minmax(from, to)).second)
        continue;
      Link link;
      link.name = intf->getName();
      link.from = from;
      link.to = to;
      link.connection = false;
      m_links.push_back(link);
    }
  }
}

void HBODiagramContent::gatherRails(const HBOBoard &board) {
  for (const HBOPowerRail &rail : board.getPowerRails()) {
    Rail entry;
    entry.name = rail.getName();
    entry.supplies = rail.getSupplyNames();
    entry.rails = rail.getRailNames();
    entry.direct = rail.isDirect();
    entry.phases = rail.getNumPhases();
    m_rails.push_back(entry);
  }
}
