// The reader of pin files (such as part0_pins.xml), and the making of the
// pins that a connection uses but no file defines.
#include "HBOPinFileReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBODtdValidator.h"
#include "HBOParseContext.h"
#include "HBOPinProps.h"
#include "HBOViewTable.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"
#include "HUTFile.h"
#include "HXMLWElement.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <vector>

namespace {

const char kIOBankPrefix[] = "iobank.";
const std::size_t kIOBankPrefixLen = sizeof(kIOBankPrefix) - 1;

// What an attribute of a pin element is: its name, index or location, or
// a port property (its position in the list of their names, 0 and up).
enum PinAttr : int { kOther = -1, kName = -2, kIndex = -3, kLoc = -4 };

// The attribute names of a pin element, grouped by their first letter: a
// pin has ten or so attributes, and each is compared whole only with the
// two or three names that begin like it.
class PinAttrTable {
public:
  PinAttrTable() {
    const std::vector<std::string> &props = HBOPinProps::getPortPropNames();
    std::vector<std::pair<const char *, int>> all = {
        {"name", kName}, {"index", kIndex}, {"loc", kLoc}};
    for (std::size_t i = 0; i < props.size(); ++i)
      all.emplace_back(props[i].c_str(), static_cast<int>(i));
    std::stable_sort(all.begin(), all.end(), [](const auto &a, const auto &b) {
      return static_cast<unsigned char>(a.first[0]) < static_cast<unsigned char>(b.first[0]);
    });
    m_entries = std::move(all);
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
      const auto first = static_cast<unsigned char>(m_entries[i].first[0]);
      if (m_end[first] == 0)
        m_begin[first] = static_cast<std::uint8_t>(i);
      m_end[first] = static_cast<std::uint8_t>(i + 1);
    }
  }

  int find(const char *attr) const {
    const auto first = static_cast<unsigned char>(attr[0]);
    // The first letters are equal; most names that begin alike differ in
    // the second.
    for (std::size_t i = m_begin[first]; i < m_end[first]; ++i) {
      const char *name = m_entries[i].first;
      if (name[1] == attr[1] && !std::strcmp(attr + 1, name + 1))
        return m_entries[i].second;
    }
    return kOther;
  }

private:
  std::vector<std::pair<const char *, int>> m_entries;
  std::uint8_t m_begin[256] = {};
  std::uint8_t m_end[256] = {};
};

bool sameText(const char *a, const char *b) { return a == b || (a && b && !std::strcmp(a, b)); }

// Whether two pins' attribute texts are the same, slot by slot.
bool sameTexts(const std::vector<const char *> &a, const std::vector<const char *> &b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameText);
}

bool sameTexts(const std::vector<std::pair<const char *, const char *>> &a,
               const std::vector<std::pair<const char *, const char *>> &b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto &x, const auto &y) {
    return sameText(x.first, y.first) && sameText(x.second, y.second);
  });
}

} // namespace

bool HBOPinFileReader::parsePinFile(const std::string &fileName, HBOBoardComponent &component,
                                    std::vector<HBOPinProps *> &pins,
                                    std::vector<HBODesignConstr> &constrs,
                                    const HXMLWElement &namedAt) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse",
                           "HBOBoardParser parsing pin file'%s'\n", fileName.c_str());
  if (!m_ctx.isInsideBoardDir_("pin_map_file", fileName)) {
    m_ctx.markPinsUnread(&component, namedAt);
    return false;
  }
  std::string path = m_ctx.resolveBesideBoard_(fileName);
  if (!HUTFile::exists(path)) {
    ComMsgMgrInstance msg("board", ComMsg::Warning, "@49-55@%s");
    msg.arg(path);
    // A board without the pins of one file is still a board, as the read
    // says; what its interfaces cannot find is told with a count.
    m_ctx.place(msg, namedAt, true);
    ComMsgMgr::sendMessage(msg);
    m_ctx.markPinsUnread(&component, namedAt);
    return false;
  }
  // A file that breaks its DTD is still read, so that a check tells what
  // the readers find too; one that is no XML at all is not.
  bool readable = true;
  if (m_ctx.validate && !m_dtd.isValidXML(path, "part0_pins", &readable)) {
    m_ctx.dtdFailed = true;
    if (!readable) {
      m_ctx.markPinsUnread(&component, namedAt);
      return false;
    }
  }
  if (!parsePins(path, component, pins, constrs))
    HEXError::raise("board", ComMsg::CriticalWarning, "@49-57@%s%s", path, std::string());
  return true;
}

bool HBOPinFileReader::parsePins(const std::string &path, HBOBoardComponent &component,
                                 std::vector<HBOPinProps *> &pins,
                                 std::vector<HBODesignConstr> &constrs) {
  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(path);
  HXMLWElement *root = doc->getRootElement();

  std::string filePart = HSTStringUtils::toLower(root->getAttribute("part_name"));
  std::string boardPart = HSTStringUtils::toLower(m_ctx.board->getPartString());
  if (!filePart.empty() && !boardPart.empty() && filePart != boardPart && m_ctx.strictChecks &&
      m_ctx.sendMessages)
    m_ctx.queueMsgAt(*root, false, ComMsg::Warning, "@49-147@%s%s%s", filePart, path,
                     m_ctx.board->getPartString());

  const std::vector<std::string> &propNames = HBOPinProps::getPortPropNames();
  static const PinAttrTable attrTable;
  std::vector<bool> readProp(propNames.size());
  for (std::size_t i = 0; i < propNames.size(); ++i)
    readProp[i] = !m_ctx.portPropsToSkip.count(propNames[i]);

  for (HXMLWElement child : root->children()) {
    if (child.isTag("design_constrs")) {
      parseDesignConstrs_(child, path, constrs);
      continue;
    }
    if (!child.isTag("pins"))
      continue;
    HBOViewTable nameOfIndex; // index text -> pin name
    HBOViewTable indexOfLoc;  // location -> index text
    std::vector<const char *> propValues(propNames.size());
    std::vector<std::pair<const char *, const char *>> bankProps;
    // The texts of the pin before: a run of pins of one bank and standard
    // shares the properties the first of them was given.
    std::vector<const char *> lastValues(propNames.size());
    std::vector<std::pair<const char *, const char *>> lastBankProps;
    const HBOPinProps *lastPin = nullptr;
    // The pins of the file go into one block of the component's.
    std::size_t count = 0;
    for (HXMLWElement element : child.children()) {
      (void)element;
      ++count;
    }
    component.reservePins(count);
    pins.reserve(pins.size() + count);
    // Sized for all the pins at once rather than grown as they come.
    nameOfIndex.reset(count);
    indexOfLoc.reset(count);
    for (HXMLWElement element : child.children()) {
      // A bad number of the pin is told at the pin.
      HBOParseContext::SubjectScope subject(m_ctx, element);
      // One pass over the attributes; the steps below then run in their order.
      const char *name = "";
      const char *loc = "";
      const char *index = nullptr;
      std::fill(propValues.begin(), propValues.end(), nullptr);
      bankProps.clear();
      element.forEachAttribute([&](const char *attr, const char *text) {
        const int what = attrTable.find(attr);
        if (what == kName)
          name = text;
        else if (what == kIndex)
          index = text;
        else if (what == kLoc)
          loc = text;
        else if (what >= 0)
          propValues[what] = text;
        else if (!std::strncmp(attr, kIOBankPrefix, kIOBankPrefixLen))
          bankProps.emplace_back(attr + kIOBankPrefixLen, text);
      });

      checkIndexAndLoc_(element, path, name, index, loc, nameOfIndex, indexOfLoc);

      HBOPinProps *pin = component.createPin();
      pins.push_back(pin);
      pin->setName(name);
      pin->setPinIndex(m_ctx.convert2NonNegativeInteger(index, "pin index"));
      pin->setPinLoc(loc);
      if (lastPin && sameTexts(propValues, lastValues) && sameTexts(bankProps, lastBankProps)) {
        pin->setFilePropertiesOf(*lastPin);
      } else {
        pin->setFileProperties(readProp, propValues, bankProps);
        propValues.swap(lastValues);
        bankProps.swap(lastBankProps);
      }
      lastPin = pin;
    }
  }
  return true;
}

void HBOPinFileReader::checkIndexAndLoc_(const HXMLWElement &at, const std::string &path,
                                         std::string_view name, const char *index,
                                         std::string_view loc, HBOViewTable &nameOfIndex,
                                         HBOViewTable &indexOfLoc) {
  if (!index) {
    m_ctx.queueMsgAt(at, false, ComMsg::Warning, "@49-98@%s%s", path, std::string(name));
  } else {
    const std::string_view *known = nameOfIndex.insert(index, name);
    if (known && m_ctx.strictChecks)
      m_ctx.queueFinding(at, path,
                         std::string("The pin index '") + index + "' is used for both '" +
                             std::string(*known) + "' and for '" + std::string(name) +
                             "'. Pin index must be unique.",
                         false);
  }
  if (loc.empty()) {
    m_ctx.queueFinding(
        at, path, "Location constraints are not provided for '" + std::string(name) + "'.", false);
  } else {
    std::string_view indexText = index ? index : "";
    const std::string_view *known = indexOfLoc.insert(loc, indexText);
    if (known && m_ctx.strictChecks)
      m_ctx.queueFinding(at, path,
                         "The pin index '" + std::string(indexText) + "' and '" +
                             std::string(*known) + "' both have the same  loc value '" +
                             std::string(loc) + "'. Pin locations must be unique.",
                         false);
  }
}

bool HBOPinFileReader::createPinsForComponent(std::string componentName, int from, int to,
                                              const std::string &connectionName) {
  HBOBoardComponent *component = m_ctx.board->findBoardComponent(componentName);
  if (!component || from > to)
    return true;
  // The missing pins go into one block of the component's.
  std::size_t missing = 0;
  // Counted wide: a range that ends at the largest int must still end.
  for (long long index = from; index <= to; ++index)
    missing += component->getPinByIndex(static_cast<int>(index)) ? 0 : 1;
  // Names are the component's name, "_" and the index.
  component->reservePins(missing, missing * (componentName.size() + 1 + std::to_string(to).size()));
  // A component without pins yet, a chip or connector that no file
  // describes, takes them all at once; into a filled map they go one by one,
  // where each replaces a pin of its name.
  const bool intoEmpty = component->getPins().empty();
  m_newPins.clear();
  for (long long wide = from; wide <= to; ++wide) {
    const int index = static_cast<int>(wide);
    if (component->getPinByIndex(index))
      continue;
    if (m_ctx.validate && m_ctx.strictChecks && componentName == "part0")
      m_ctx.queueFinding("For connection '" + connectionName +
                             "' the connection_map references a FPGA pin index '" +
                             std::to_string(index) + "' that is not defined in part0_pins.xml.",
                         true);
    HBOPinProps *pin = component->createPin();
    pin->setName(HSTStringUtils::numberedName(componentName, index));
    pin->setPinIndex(index);
    pin->setOwner(component);
    if (intoEmpty)
      m_newPins.push_back(pin);
    else
      component->addPin(pin);
  }
  if (!m_newPins.empty())
    component->addPins(m_newPins);
  return true;
}

bool HBOPinFileReader::parseDesignConstrs_(HXMLWElement &element, const std::string &path,
                                           std::vector<HBODesignConstr> &constrs) {
  if (element.isNull())
    return false;
  std::string partName = element.getAttribute("part_name");
  (void)partName;
  HXMLWElement at = element;
  auto finding = [&](const std::string &text) { m_ctx.queueFinding(at, path, text, false); };
  // Bank numbers are held to the strict form whatever the schema.
  for (HXMLWElement child : element.children()) {
    at = child;
    if (child.isTag("dci_cascade")) {
      HBOBoardComponent::DciCascadeConstr constr;
      constr.masterBank = m_ctx.convert2NonNegativeInteger(child.getAttribute("master_bank_id"),
                                                           "dci_cascade master attribute");
      std::string slaves = child.getAttribute("slave_bank_ids");
      if (slaves.empty())
        finding("No \"slaves_ids\" attribute specified for dci_cascade.");
      bool bad = false;
      for (const std::string &token : HSTStringUtils::split(slaves, ", \t\r\n\f\v", false)) {
        int bank = 0;
        const HUTConvert::IntegerResult read =
            HUTConvert::parseInteger(token, bank, HUTConvert::IntegerForm::Prefix);
        if (read == HUTConvert::IntegerResult::OutOfRange) {
          finding(HBOParseContext::outOfRangeText("dci_cascade slave_bank_ids", token, INT_MIN,
                                                  INT_MAX));
          bad = true;
          break;
        }
        if (read != HUTConvert::IntegerResult::Ok) {
          finding("Incorrect format for \"slave_ids\" attribute (\"" + slaves +
                  "\") in dci_cascade. The \"slave_ids\" attribute must be a comma-separated "
                  "list of integer bank IDs.");
          bad = true;
          break;
        }
        constr.slaveBanks.push_back(bank);
      }
      if (!bad)
        constrs.push_back(constr);
    } else if (child.isTag("internal_vref")) {
      HBOBoardComponent::InternalVrefConstr constr;
      constr.bank = m_ctx.convert2NonNegativeInteger(child.getAttribute("bank_id"),
                                                     "internal_vref bank attribute");
      std::string voltage = child.getAttribute("voltage");
      float value = 0;
      // The stream conversion's reading: leading blanks, then a number,
      // and whatever follows it is ignored.
      const char *start = voltage.c_str();
      char *stop = nullptr;
      errno = 0;
      value = std::strtof(start, &stop);
      if (stop != start && errno == ERANGE && std::isinf(value)) {
        finding("internal_vref voltage value \"" + HUTConvert::quoteValue(voltage) +
                "\" is out of range of a floating point number.");
        continue;
      }
      const bool ok = stop != start;
      if (!ok || value < 0) {
        finding("Incorrect format for \"voltage\" attribute (\"" + voltage +
                "\") in internal_vref. Must be a floating point number.");
        continue;
      }
      constr.voltage = value;
      constrs.push_back(constr);
    }
  }
  return true;
}
