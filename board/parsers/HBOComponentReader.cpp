// The reader of the components element: each component with its
// parameters, images, drivers, mux positions, pins and design constraints.
#include "HBOComponentReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardCompMuxPosition.h"
#include "HBOBoardComponent.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBoardUtils.h"
#include "HBOBoardValidator.h"
#include "HBOBusIf.h"
#include "HBOComponentMode.h"
#include "HBOImage.h"
#include "HBOInterfaceReader.h"
#include "HBOParameter.h"
#include "HBOParseContext.h"
#include "HBOPinFileReader.h"
#include "HBOPinProps.h"
#include "HPAParamMgr.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"
#include "HUTFile.h"
#include "HXMLWElement.h"

#include <cctype>
#include <memory>
#include <set>
#include <stdexcept>
#include <unordered_map>

namespace {

// Splits at every comma, keeping empty fields: "" gives one empty entry.
std::vector<std::string> splitCommas(const std::string &text) {
  std::vector<std::string> out;
  std::string::size_type pos = 0;
  for (;;) {
    std::string::size_type comma = text.find(',', pos);
    if (comma == std::string::npos) {
      out.push_back(text.substr(pos));
      return out;
    }
    out.push_back(text.substr(pos, comma - pos));
    pos = comma + 1;
  }
}

// The set of pin properties that a board does not carry.
std::unordered_set<std::string> getPortPropNamesToSkip_(std::string const &boardName) {
  static const std::unordered_map<std::string, std::unordered_set<std::string>>
      propNamesToSkipByVlnv = {
          {"quarnel-ip:rb55:1.0", {"odt"}}, {"quarnel-ip:rb55:1.1", {"odt"}},
          {"quarnel-ip:rb55:1.2", {"odt"}}, {"quarnel-ip:rb55:1.3", {"odt"}},
          {"quarnel-ip:rb55:1.4", {"odt"}}, {"quarnel-ip:rb55:1.5", {"odt"}},
      };
  static const std::unordered_set<std::string> oldModePropNames = {"iostandard", "diff_term",
                                                                   "drive", "slew", "dqs_bias"};

  if (HPAParamMgr::getParamMgr().getValueAsBool("board.usePre2019Dot2Mode")) {
    // The old mode knows only five properties of a pin.
    std::unordered_set<std::string> skip;
    for (const std::string &name : HBOPinProps::getPortPropNames())
      if (!oldModePropNames.count(name))
        skip.insert(name);
    return skip;
  }
  auto it = propNamesToSkipByVlnv.find(boardName);
  return it == propNamesToSkipByVlnv.end() ? std::unordered_set<std::string>() : it->second;
}

} // namespace

bool HBOComponentReader::readComponents(HXMLWElement *root, std::string &errorText) {
  m_ctx.portPropsToSkip = getPortPropNamesToSkip_(m_ctx.board->getName());
  if (!root) {
    errorText = "Root XML element is NULL";
    return false;
  }
  for (HXMLWElement section : root->children("components")) {
    for (HXMLWElement element : section.children()) {
      // The first bad component ends the board; what it queued stays queued.
      // An FPGA component becomes the board's part while it is read; when
      // it fails, by result or by exception, the board must not keep
      // pointing at it once it is gone.
      struct Pending {
        HBOBoard *board;
        std::unique_ptr<HBOBoardComponent> component{new HBOBoardComponent()};
        ~Pending() {
          if (component && board->getActivePart() == component.get())
            board->setActivePart(nullptr);
        }
      } pending{m_ctx.board};
      HBOBoardComponent *component = pending.component.get();
      HBOParseContext::SubjectScope subject(m_ctx, element);
      if (!readComponentDetails(&element, component) || !m_validator.validateComponent(component))
        return false;
      // The later of two components of one name wins, as it always has; the
      // earlier is lost to every query, so a check must say so.
      if (m_ctx.sendMessages && m_ctx.board->findBoardComponent(component->getComponentName()))
        m_ctx.queueMsg(!m_ctx.strictChecks, ComMsg::Warning, "@49-175@%s%s",
                       component->getComponentName(), m_ctx.board->getBoardFile());
      m_ctx.board->addBoardComponent(pending.component.release());
    }
  }
  return true;
}

bool HBOComponentReader::readComponentDetails(HXMLWElement *element, HBOBoardComponent *component) {
  if (!element)
    return false;
  const std::string pinMapFile = readAttributes_(*element, component);
  if (!pinMapFile.empty())
    readPinMapFile_(pinMapFile, *element, component);

  const std::string boardDir =
      HUTFile::parentPath(m_ctx.board->getBoardFile()) + HBOBoardUtils::getDirSeparator();
  for (HXMLWElement child : element->children()) {
    if (child.isTag("description")) {
      component->setDescription(child.getText());
    } else if (child.isTag("additional_supported_parts")) {
      for (HXMLWElement part : child.children()) {
        if (!part.isTagExactly("supported_part"))
          continue;
        std::string supported = HSTStringUtils::trim(part.getAttribute("part_name"));
        if (!supported.empty() && component->getType() == "fpga")
          component->addAdditionalSupportedPart(supported);
      }
    } else if (child.isTag("drivers")) {
      readDrivers_(child, component);
    } else if (child.isTag("parameters")) {
      for (HXMLWElement p : child.children())
        component->addParameter(new HBOParameter(
            p.getAttribute("name"), p.getAttribute("value"), p.getAttribute("value_type"),
            p.getAttribute("value_min"), p.getAttribute("value_max"), p.getAttribute("readonly")));
    } else if (child.isTag("images")) {
      readImages_(child, boardDir, component);
    } else if (child.isTag("positions")) {
      readMuxPositions_(child, component);
    } else if (child.isTag("param_table")) {
      // Accepted as it stands: it has no effect on the component.
    } else if (child.isTag("pins")) {
      readPins_(child, component);
    } else if (child.isTag("compatible_connectors")) {
      for (HXMLWElement row : child.children())
        component->addCompatibleConnector(
            row.getAttribute("board_vendor"), row.getAttribute("board_name"),
            row.getAttribute("board_version"), row.getAttribute("connector_name"));
    } else if (child.isTag("component_modes")) {
      readComponentModes_(child, component);
    } else if (child.isTag("interfaces")) {
      if (!readInterfaces_(child, component))
        return false;
    }
  }
  return true;
}

std::string HBOComponentReader::readAttributes_(HXMLWElement &element,
                                                HBOBoardComponent *component) {
  HBOBoard *board = m_ctx.board;
  std::string name = element.getAttribute("name");
  std::string displayName = element.getAttribute("display_name");
  std::string type = element.getAttribute("type");
  std::string subType = element.getAttribute("sub_type");
  std::string majorGroup = element.getAttribute("major_group");
  std::string partName = element.getAttribute("part_name");
  std::string pinMapFile = element.getAttribute("pin_map_file");
  std::string vendor = element.getAttribute("vendor");
  std::string specUrl = element.getAttribute("spec_url");
  std::string connectedTo = element.getAttribute("connected_to");
  component->setBoard(board);

  name = HSTStringUtils::toLower(name);
  std::string fullName =
      board->getVendor() + ":" + board->getBoardName() + ":" + name + ":" + board->getVersion();
  component->setName(fullName);
  component->setDisplayName(displayName);
  component->setConnectedToLogicStr(connectedTo.empty() ? std::string("PL") : connectedTo);
  component->setComponentName(name);
  component->setType(type);
  component->setSubType(subType);
  component->setMajorGroup(majorGroup);
  component->setPartName(partName);
  component->setPinMapFile(pinMapFile);
  component->setVendorName(vendor);
  component->setSpecUrl(specUrl);
  component->setDescription(board->getDescription());
  component->setRtlFileParseStatus(true);
  component->setLongDesc(board->getDescription());

  // Exactly "fpga": a component typed "FPGA" passes validation but carries
  // no part for the board.
  if (type == "fpga") {
    board->setActivePart(component);
    board->setPartString(partName);
  }
  return pinMapFile;
}

void HBOComponentReader::readPinMapFile_(const std::string &pinMapFile, const HXMLWElement &namedAt,
                                         HBOBoardComponent *component) {
  // Pins of a file that fails half-way are never entered; the component
  // frees them with itself.
  std::vector<HBOPinProps *> pins;
  std::vector<HBODesignConstr> constrs;
  m_pinFiles.parsePinFile(pinMapFile, *component, pins, constrs, namedAt);
  component->setDesignConstrs(constrs);
  component->addPins(pins);
  for (HBOPinProps *pin : pins)
    pin->setOwner(component);
}

void HBOComponentReader::readDrivers_(HXMLWElement &drivers, HBOBoardComponent *component) {
  for (HXMLWElement d : drivers.children()) {
    std::unique_ptr<HBOBoardComponentDriver> driver(new HBOBoardComponentDriver());
    driver->setDriverPath(HUTFile::parentPath(m_ctx.board->getBoardFile()));
    driver->setName(d.getAttribute("name"));
    driver->setVersion(d.getAttribute("version"));
    driver->setVendor(d.getAttribute("vendor"));
    driver->setPreCompiled(d.getAttribute("pre_compiled"));
    driver->setOs(splitCommas(d.getAttribute("os")));
    driver->setPlatform(splitCommas(d.getAttribute("platform")));
    driver->setProcessorArchitecture(splitCommas(d.getAttribute("processor_architecture")));
    for (HXMLWElement dc : d.children()) {
      if (dc.isTag("description")) {
        driver->setDescription(dc.getText());
      } else if (dc.isTag("driver_files")) {
        for (HXMLWElement f : dc.children())
          if (f.isTag("file"))
            driver->addFile(f.getText(), f.getAttribute("type"));
      }
    }
    driver->setBoardComponent(component);
    component->addDriver(driver.release());
  }
}

void HBOComponentReader::readImages_(HXMLWElement &images, const std::string &boardDir,
                                     HBOBoardComponent *component) {
  for (HXMLWElement img : images.children()) {
    std::string resolution = img.getAttribute("resolution");
    if (resolution.empty())
      resolution = "high";
    std::string description;
    for (HXMLWElement d : img.children())
      if (d.isTag("description"))
        description = d.getText();
    HBOImage *image = new HBOImage();
    image->setName(boardDir + img.getAttribute("name"));
    image->setDisplayName(img.getAttribute("display_name"));
    image->setDescription(description);
    image->setResolution(resolution);
    image->setSubType(img.getAttribute("sub_type"));
    component->addImage(image);
  }
}

void HBOComponentReader::readMuxPositions_(HXMLWElement &positionsElement,
                                           HBOBoardComponent *component) {
  int position = 0;
  for (HXMLWElement pos : positionsElement.children()) {
    std::string target = pos.getAttribute("component");
    std::string id = pos.getAttribute("id");
    int number = id.empty() ? position : m_ctx.convert2NonNegativeInteger(id, "position id");
    ++position;
    HBOBoardCompMuxPosition *record = new HBOBoardCompMuxPosition();
    record->setPosition(number);
    record->setComponent(target);
    for (HXMLWElement a : pos.children("address")) {
      std::string low = a.getAttribute("low"), high = a.getAttribute("high");
      record->addAddress(low, high);
    }
    component->addIICPosition(record);
  }
}

void HBOComponentReader::readPins_(HXMLWElement &pins, HBOBoardComponent *component) {
  // A pin's name, index and location and its port properties, found in one
  // walk of its attributes; the properties are then set in one step, as
  // setting them one by one in the order of their names would.
  const std::vector<std::string> &propNames = HBOPinProps::getPortPropNames();
  const std::size_t kFirstProp = 3;
  static const std::vector<const char *> names = [&propNames] {
    std::vector<const char *> all{"name", "index", "loc"};
    for (const std::string &prop : propNames)
      all.push_back(prop.c_str());
    return all;
  }();
  // Kept per thread: a board lists pins for a few of its components only,
  // and these need not be allocated for each.
  thread_local std::vector<bool> read;
  thread_local std::vector<const char *> found;
  thread_local std::vector<const char *> propValues;
  read.resize(propNames.size());
  for (std::size_t i = 0; i < propNames.size(); ++i)
    read[i] = !m_ctx.portPropsToSkip.count(propNames[i]);
  found.resize(names.size());
  propValues.resize(propNames.size());
  const std::vector<std::pair<const char *, const char *>> noBankProps;
  for (HXMLWElement p : pins.children()) {
    p.findAttributes(names.data(), names.size(), found.data());
    std::string pinName(HXMLWElement::viewOf(found[0]));
    int index =
        m_ctx.convert2NonNegativeInteger(std::string(HXMLWElement::viewOf(found[1])), "pin index");
    if (HBOPinProps *existing = component->getPinByIndex(index)) {
      m_ctx.queueMsgAt(p, false, ComMsg::Warning, "@49-170@%d%s%s%s", index, existing->getName(),
                       pinName, component->getComponentName());
      continue;
    }
    HBOPinProps *pin = component->createPin();
    pin->setName(pinName);
    pin->setPinIndex(index);
    pin->setPinLoc(HXMLWElement::viewOf(found[2]));
    std::copy(found.begin() + kFirstProp, found.end(), propValues.begin());
    pin->setFileProperties(read, propValues, noBankProps);
    component->addPin(pin);
  }
}

void HBOComponentReader::readComponentModes_(HXMLWElement &modes, HBOBoardComponent *component) {
  for (HXMLWElement m : modes.children()) {
    HBOComponentMode *mode = new HBOComponentMode();
    mode->setOwnerComponent(component);
    // A mode whose reading stopped early is kept as far as it got.
    try {
      m_interfaces.readComponentModeDetails(&m, mode);
    } catch (...) {
      delete mode;
      throw;
    }
    component->addComponentMode(mode);
  }
}

bool HBOComponentReader::readInterfaces_(HXMLWElement &element, HBOBoardComponent *component) {
  std::set<std::string> namesSeen, mastersSeen;
  for (HXMLWElement child : element.children()) {
    HBOParseContext::SubjectScope subject(m_ctx, child);
    std::unique_ptr<HBOBusIf> intf(new HBOBusIf());
    intf->setOwnerComponent(component);
    bool read = m_interfaces.readInterfacesDetails(&child, intf.get());
    std::string name = intf->getName();
    if (!namesSeen.insert(name).second && m_ctx.strictChecks && m_ctx.sendMessages)
      m_ctx.queueMsgAt(child, false, ComMsg::Warning, "@49-146@%s", name);
    std::string value;
    if (intf->getParamValue("is_gt_flow_interface_master", value) &&
        HSTStringUtils::toLower(value) == "true")
      mastersSeen.insert(name);
    // A master must stand before the interfaces that name it.
    if (intf->getParamValue("gt_flow_interface_master_name", value) && !mastersSeen.count(value))
      m_ctx.queueMsgAt(child, false, ComMsg::Warning, "@49-145@%s", name);
    if (!read)
      return false;
    if (!m_validator.validateInterface(intf.get()))
      return false;
    HBOBusIf *raw = intf.release();
    component->setBusIf(name, raw);
    m_ctx.interfaceNames.insert(name);
  }
  return true;
}
