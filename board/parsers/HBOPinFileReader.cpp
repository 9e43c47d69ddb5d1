// The reader of pin files (such as part0_pins.xml), and the making of the
// pins that a connection uses but no file defines.
#include "HBOBoardParser.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOPinProps.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HSTStringUtils.h"
#include "HUTFile.h"
#include "HXMLWElement.h"

#include <cstring>
#include <memory>
#include <string_view>
#include <unordered_map>

namespace {

const char kIOBankPrefix[] = "iobank.";
const std::size_t kIOBankPrefixLen = sizeof(kIOBankPrefix) - 1;

// Position of a name in the list of port property names, or -1.
int portPropSlot(std::string_view name) {
  static const std::unordered_map<std::string_view, int> slots = [] {
    std::unordered_map<std::string_view, int> m;
    const std::vector<std::string> &names = HBOPinProps::getPortPropNames();
    for (std::size_t i = 0; i < names.size(); ++i)
      m.emplace(names[i], static_cast<int>(i));
    return m;
  }();
  auto it = slots.find(name);
  return it == slots.end() ? -1 : it->second;
}

} // namespace

std::string HBOBoardParser::resolveBesideBoard_(const std::string &fileName) const {
  std::string parent = HUTFile::parentPath(fileName);
  if (!parent.empty() && parent != ".")
    return fileName;
  return HUTFile::parentPath(m_board->getBoardFile()) + HBOBoardUtils::getDirSeparator() + fileName;
}

bool HBOBoardParser::parsePinFile(const std::string &fileName,
                                  std::map<std::string, HBOPinProps *> &pins,
                                  std::vector<HBODesignConstr> &constrs) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "HBOBoardParser parsing pin file'%s'\n",
                           fileName.c_str());
  std::string path = resolveBesideBoard_(fileName);
  if (!HUTFile::exists(path)) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-55@%s", path);
    return false;
  }
  if (!parsePins(path, pins, constrs))
    HEXError::raise("board", ComMsg::CriticalWarning, "@49-57@%s%s", path, std::string());
  return true;
}

bool HBOBoardParser::parsePins(const std::string &path, std::map<std::string, HBOPinProps *> &pins,
                               std::vector<HBODesignConstr> &constrs) {
  if (m_validate && !isValidXML(path, "part0_pins"))
    return false;
  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(path);
  HXMLWElement *root = doc->getRootElement();

  std::string filePart = HSTStringUtils::toLower(root->getAttribute("part_name"));
  std::string boardPart = HSTStringUtils::toLower(m_board->getPartString());
  if (!filePart.empty() && !boardPart.empty() && filePart != boardPart && m_strictChecks &&
      m_sendMessages)
    queueMsg(false, ComMsg::Warning, "@49-147@%s%s%s", filePart, path, m_board->getPartString());

  const std::vector<std::string> &propNames = HBOPinProps::getPortPropNames();
  std::vector<bool> readProp(propNames.size());
  for (std::size_t i = 0; i < propNames.size(); ++i)
    readProp[i] = !m_portPropsToSkip.count(propNames[i]);

  for (HXMLWElement &child : root->getChildren()) {
    if (child.isTag("design_constrs")) {
      parseDesignConstrs_(child, path, *this, constrs, m_messages);
      continue;
    }
    if (!child.isTag("pins"))
      continue;
    std::unordered_map<std::string, std::string> nameOfIndex; // index text -> pin name
    std::unordered_map<std::string, std::string> indexOfLoc;  // location -> index text
    std::vector<const char *> propValues(propNames.size());
    std::vector<std::pair<const char *, const char *>> bankProps;
    for (HXMLWElement &element : child.getChildren()) {
      // One pass over the attributes; the steps below then run in their order.
      std::string name, loc;
      const char *index = nullptr;
      std::fill(propValues.begin(), propValues.end(), nullptr);
      bankProps.clear();
      element.forEachAttribute([&](const char *attr, const char *value) {
        if (!std::strcmp(attr, "name"))
          name = value;
        else if (!std::strcmp(attr, "index"))
          index = value;
        else if (!std::strcmp(attr, "loc"))
          loc = value;
        else if (!std::strncmp(attr, kIOBankPrefix, kIOBankPrefixLen))
          bankProps.emplace_back(attr + kIOBankPrefixLen, value);
        int slot = portPropSlot(attr);
        if (slot >= 0)
          propValues[slot] = value;
      });

      if (!index) {
        queueMsg(false, ComMsg::Warning, "@49-98@%s%s", path, name);
      } else {
        auto known = nameOfIndex.find(index);
        if (known == nameOfIndex.end())
          nameOfIndex.emplace(index, name);
        else if (m_strictChecks)
          queueFinding(path,
                       std::string("The pin index '") + index + "' is used for both '" +
                           known->second + "' and for '" + name + "'. Pin index must be unique.",
                       false);
      }
      if (loc.empty()) {
        queueFinding(path, "Location constraints are not provided for '" + name + "'.", false);
      } else {
        std::string indexText = index ? index : "";
        auto known = indexOfLoc.find(loc);
        if (known == indexOfLoc.end())
          indexOfLoc.emplace(loc, indexText);
        else if (m_strictChecks)
          queueFinding(path, "The pin index '" + indexText + "' and '" + known->second +
                                 "' both have the same  loc value '" + loc +
                                 "'. Pin locations must be unique.",
                       false);
      }

      std::unique_ptr<HBOPinProps> pin(new HBOPinProps());
      pin->setName(name);
      pin->setPinIndex(convert2NonNegativeInteger(index, "pin index"));
      pin->setPinLoc(loc);
      for (std::size_t i = 0; i < propNames.size(); ++i)
        if (readProp[i])
          pin->setPortProp(propNames[i], propValues[i] ? propValues[i] : "");
      for (const auto &bank : bankProps)
        pin->setIOBankProperty(bank.first, bank.second);

      // A repeated name keeps the last pin.
      HBOPinProps *&slot = pins[name];
      delete slot;
      slot = pin.release();
    }
  }
  return true;
}

bool HBOBoardParser::createPinsForComponent(std::string componentName, int from, int to,
                                            const std::string &connectionName) {
  HBOBoardComponent *component = m_board->findBoardComponent(componentName);
  if (!component || from > to)
    return true;
  for (int index = from; index <= to; ++index) {
    if (component->getPinByIndex(index))
      continue;
    if (m_validate && m_strictChecks && componentName == "part0")
      queueFinding("For connection '" + connectionName +
                       "' the connection_map references a FPGA pin index '" +
                       std::to_string(index) + "' that is not defined in part0_pins.xml.",
                   true);
    HBOPinProps *pin = new HBOPinProps();
    pin->setName(componentName + "_" + std::to_string(index));
    pin->setPinIndex(index);
    pin->setOwner(component);
    component->addPin(pin);
  }
  return true;
}
