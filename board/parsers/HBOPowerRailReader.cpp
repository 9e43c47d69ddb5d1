// The reader of power_rails: the board's power network, in which each rail is
// fed by supplies (named power pins of the FPGA) and by rails defined before
// it, and a phased rail is shared out among the rails that draw on it.
#include "HBOPowerRailReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOParseContext.h"
#include "HBOPowerRail.h"
#include "HPAParamMgr.h"
#include "HSTStringUtils.h"
#include "HXMLWElement.h"

#include <map>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace {

// A rail of supplies first, then rails, with no phases; what the stub set is
// made of.
HBOPowerRail makePowerRail_(const std::string &name, const std::vector<std::string> &supplies,
                            const std::vector<std::string> &rails, bool isDirect) {
  std::vector<std::string> members = supplies;
  members.insert(members.end(), rails.begin(), rails.end());
  return HBOPowerRail(name, members, supplies, std::map<std::string, int>(), isDirect, 0);
}

// A network to try the power flow on a board that has none. Every member
// rail stands before the rail that draws on it, as in a file.
std::vector<HBOPowerRail> makeStubRails() {
  return {
      makePowerRail_("BOARD_VCC_IO_RAM", {"CORE_IO", "CORE_RAM"}, {}, true),
      makePowerRail_("BOARD_TOP", {"CORE"}, {}, false),
      makePowerRail_("BOARD_12V_PEX", {"XCVR_VTT"}, {}, false),
      makePowerRail_("BOARD_CHILD_RAIL", {"AUX_MEM"}, {}, false),
      makePowerRail_("BOARD_PARENT_RAIL", {"IO_18V"}, {"BOARD_CHILD_RAIL"}, false),
  };
}

// The rails in the shape of the power_rails element, for debug output.
std::string powerRailsAsXmlStr_(const std::vector<HBOPowerRail> &rails) {
  std::string text = "<power_rails>\n";
  for (const HBOPowerRail &rail : rails) {
    text += "  <power_rail name=\"" + rail.getName() + "\"";
    if (rail.isDirect())
      text += " is_direct=\"true\"";
    if (rail.getNumPhases() != 0)
      text += " num_phases=\"" + std::to_string(rail.getNumPhases()) + "\"";
    text += ">\n";
    const std::vector<std::string> &supplies = rail.getSupplyNames();
    for (const std::string &member : rail.getMemberNames()) {
      bool isSupply = false;
      for (const std::string &supply : supplies)
        isSupply = isSupply || supply == member;
      if (isSupply) {
        text += "    <supply name=\"" + member + "\"/>\n";
        continue;
      }
      text += "    <rail name=\"" + member + "\"";
      if (int phases = rail.getMemberPhases(member))
        text += " phased_power_source=\"" + std::to_string(phases) + "\"";
      text += "/>\n";
    }
    text += "  </power_rail>\n";
  }
  text += "</power_rails>\n";
  return text;
}

} // namespace

// What the rails read so far define, against which each next rail is held.
struct HBOPowerRailReader::Network {
  std::vector<HBOPowerRail> rails;
  std::unordered_set<std::string> railNames;   // names in rails, for the look-ups
  std::unordered_set<std::string> supplies;    // every name used as a supply so far
  std::unordered_set<std::string> memberRails; // every name drawn on as a rail so far
  std::map<std::string, long long> phasesLeft; // phased rail -> phases nobody draws yet (wide:
                                               // drawn from any ints the file holds)
  std::unordered_map<std::string, HXMLWElement> elementOf; // the first rail of each name
};

bool HBOPowerRailReader::readPowerRails(HXMLWElement &root, std::string &error) {
  if (!m_ctx.board) {
    error = "HBOBoardParser::readPowerRails: no board to read into";
    return false;
  }
  // Every finding is an error that fails the file, but only after all rails
  // were read, so that one read tells everything wrong with the network.
  Network net;
  for (HXMLWElement section : root.children("power_rails")) {
    for (HXMLWElement element : section.children("power_rail")) {
      HBOParseContext::SubjectScope at(m_ctx, element);
      net.elementOf.emplace(element.getAttribute("name"), element);
      readPowerRail_(element, net);
    }
  }
  std::vector<HBOPowerRail> &rails = net.rails;
  checkPhaseSharing_(net);

  if (HPAParamMgr::getParamMgr().getValueAsBool("board.dataProps.stubData"))
    rails = makeStubRails();

  m_ctx.board->setPowerRails(rails);
  if (ComMsgMgr::hasScope("board.dataProps"))
    ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.dataProps",
                             "HBOBoardParser just read the following rails for board %s:\n%s\n",
                             m_ctx.board->getName().c_str(), powerRailsAsXmlStr_(rails).c_str());
  return true;
}

template <typename... Args>
void HBOPowerRailReader::fail_(const std::string &key, const Args &...args) {
  m_ctx.queueMsg(false, ComMsg::Error, key, args...);
}

void HBOPowerRailReader::readPowerRail_(HXMLWElement &element, Network &net) {
  const std::string name = element.getAttribute("name");
  if (net.railNames.count(name))
    fail_("@49-119@%s", name);
  if (net.supplies.count(name))
    fail_("@49-122@%s", name);
  const bool isDirect = HSTStringUtils::toLower(element.getAttribute("is_direct")) == "true";
  int numPhases = 0;
  const std::string numPhasesText = element.getAttribute("num_phases");
  if (!numPhasesText.empty()) {
    // Text that is no number fails the read.
    numPhases = m_ctx.convertInteger(numPhasesText, "power rail num_phases");
    net.phasesLeft[name] = numPhases;
  }

  std::vector<std::string> members;
  std::vector<std::string> supplyList;
  std::unordered_set<std::string> ownMembers;
  std::map<std::string, int> memberPhases;
  for (HXMLWElement child : element.children()) {
    const bool isSupply = child.isTag("supply");
    if (!isSupply && !child.isTag("rail"))
      continue;
    const std::string member = child.getAttribute("name");
    const std::string phasedSource = child.getAttribute("phased_power_source");

    if (!isSupply && !phasedSource.empty()) {
      const int phases = m_ctx.convertInteger(phasedSource, "rail phased_power_source");
      auto left = net.phasesLeft.find(member);
      if (left == net.phasesLeft.end())
        fail_("@49-136@%s%s", member, name);
      else if (phases < 1 || phases > left->second)
        fail_("@49-134@%s%s", member, name);
      // Drawn even when wrong, so that later users are measured against
      // what the file really hands out.
      net.phasesLeft[member] -= phases;
      memberPhases[member] = phases;
    } else if (net.phasesLeft.count(member)) {
      fail_("@49-135@%s%s", member, name);
    }

    if (member == name)
      fail_("@49-121@%s", name);
    const bool isRail = net.railNames.count(member) != 0;
    if (isRail && isSupply)
      fail_("@49-125@%s%s", member, name);
    if (!isRail && !isSupply)
      fail_("@49-123@%s%s", member, name);
    if (!ownMembers.insert(member).second)
      fail_("@49-118@%s%s", member, name);
    if (isSupply && net.supplies.count(member))
      fail_("@49-124@%s%s", member, name);
    if (!isSupply && isDirect && net.memberRails.count(member))
      fail_("@49-120@%s%s", member, name);

    members.push_back(member);
    if (isSupply) {
      net.supplies.insert(member);
      supplyList.push_back(member);
    } else {
      net.memberRails.insert(member);
    }
  }
  net.rails.emplace_back(name, members, supplyList, memberPhases, isDirect, numPhases);
  net.railNames.insert(name);
}

void HBOPowerRailReader::checkPhaseSharing_(const Network &net) {
  const std::vector<HBOPowerRail> &rails = net.rails;
  // Each phased rail must be shared out exactly: collect who draws how much.
  std::map<std::string, std::vector<std::pair<std::string, int>>> usersOf;
  for (const HBOPowerRail &user : rails)
    for (const auto &drawn : user.getMemberPhasesMap())
      if (drawn.second != 0)
        usersOf[drawn.first].emplace_back(user.getName(), drawn.second);
  for (const HBOPowerRail &rail : rails) {
    if (rail.getNumPhases() <= 0)
      continue;
    auto element = net.elementOf.find(rail.getName());
    HBOParseContext::SubjectScope at(m_ctx, element == net.elementOf.end() ? HXMLWElement()
                                                                           : element->second);
    auto users = usersOf.find(rail.getName());
    if (users == usersOf.end()) {
      fail_("@49-141@%s%d%d", rail.getName(), rail.getNumPhases(), 0);
      continue;
    }
    // Wide: the users' numbers are any ints the file holds.
    long long sum = 0;
    std::string list;
    for (const auto &user : users->second) {
      sum += user.second;
      if (!list.empty())
        list += ", ";
      list += user.first + ":" + std::to_string(user.second);
    }
    if (sum != rail.getNumPhases())
      fail_("@49-142@%d%s%s", rail.getNumPhases(), rail.getName(), list);
  }
}
