// Readers of what a component offers to a design: its interfaces with their
// port maps and preferred IPs, and its component modes.
#include "HBOInterfaceReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardValidator.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOParseContext.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "HSTStringUtils.h"
#include "HXMLWElement.h"

#include <cassert>
#include <map>
#include <memory>
#include <string_view>

namespace {

bool isTrueText(const std::string &text) { return HSTStringUtils::iequals(text, "true"); }

// What a preferred_ip element says, before it becomes a record: views into
// the document.
struct PreferredIpAttributes {
  std::string_view vendor, library, name, version, presetFile;
  bool hasOrder = false;

  const char *order = nullptr;

  explicit PreferredIpAttributes(const HXMLWElement &element) {
    static const char *const kNames[] = {"vendor",  "library",     "name",
                                         "version", "preset_file", "order"};
    const char *values[6];
    element.findAttributes(kNames, values);
    vendor = HXMLWElement::viewOf(values[0]);
    library = HXMLWElement::viewOf(values[1]);
    name = HXMLWElement::viewOf(values[2]);
    version = HXMLWElement::viewOf(values[3]);
    presetFile = HXMLWElement::viewOf(values[4]);
    order = values[5];
    hasOrder = order != nullptr;
  }
  // A file that gives no version means any version.
  std::string_view versionText() const { return version.empty() ? std::string_view("*") : version; }
  /// "vendor:library:name:version" into \p out, with \p version as given.
  void vlnvText(std::string &out, std::string_view versionPart) const {
    out.clear();
    out.append(vendor).append(1, ':').append(library).append(1, ':').append(name);
    out.append(1, ':').append(versionPart);
  }
};

std::unique_ptr<HBOBusIfPreference> makePreference(const PreferredIpAttributes &ip,
                                                   const std::string &presetProc,
                                                   std::string &scratch) {
  std::unique_ptr<HBOBusIfPreference> record(new HBOBusIfPreference());
  ip.vlnvText(scratch, ip.versionText());
  record->setDefaultIpVlnv(scratch);
  record->setPresetProc(presetProc);
  record->setPresetFile(ip.presetFile);
  record->setName(ip.name);
  record->setPrefName(scratch);
  record->setVendor(ip.vendor);
  record->setLibrary(ip.library);
  record->setVersion(ip.versionText());
  return record;
}

// Jumpers first, then parameters, whatever their order in the file.
void readEnablementDependencies(HXMLWElement &deps, HBOBusIf *interface) {
  for (HXMLWElement group : deps.children())
    if (group.isTag("jumpers"))
      for (HXMLWElement j : group.children())
        interface->addJumper(j.getAttribute("name"), isTrueText(j.getText()));
  for (HXMLWElement group : deps.children())
    if (group.isTag("parameters"))
      for (HXMLWElement p : group.children())
        interface->addParam(p.getAttribute("name"), isTrueText(p.getText()));
}

} // namespace

bool HBOInterfaceReader::readInterfacesDetails(HXMLWElement *element, HBOBusIf *interface) {
  if (!element || element->isNull() || !interface || !m_ctx.board)
    return false;
  // The component keeps the model ports; without it they would have no owner.
  HBOBoardComponent *component = interface->getOwnerComponent();
  if (!component)
    return false;
  static const char *const kNames[] = {"name", "type", "mode", "of_component", "preset_proc"};
  const char *values[5];
  element->findAttributes(kNames, values);
  const std::string name(HXMLWElement::viewOf(values[0]));
  const std::string type = HSTStringUtils::trim(std::string(HXMLWElement::viewOf(values[1])));
  const std::string mode(HXMLWElement::viewOf(values[2]));
  const std::string ofComponent(HXMLWElement::viewOf(values[3]));
  const std::string presetProc(HXMLWElement::viewOf(values[4]));

  interface->setName(name);
  interface->setDisplayName(name);
  interface->setInterfaceMode(mode);
  interface->setParentBoard(m_ctx.board);
  interface->setOfComponent(ofComponent);
  interface->setPresetProcName(presetProc);

  if (!presetProc.empty())
    readPresetProc_(*element, interface, name, presetProc);

  // Exactly four fields, empty ones counted: "a:b:c:d".
  std::string_view fields[4];
  std::size_t fieldCount = 0;
  for (std::size_t from = 0;; ++fieldCount) {
    const std::size_t colon = type.find(':', from);
    if (fieldCount < 4)
      fields[fieldCount] = std::string_view(type).substr(from, colon - from);
    if (colon == std::string::npos)
      break;
    from = colon + 1;
  }
  if (++fieldCount == 4) {
    interface->setAbstractTypeVendor(std::string(fields[0]));
    interface->setAbstractTypeLibrary(std::string(fields[1]));
    interface->setAbstractTypeName(std::string(fields[2]));
    interface->setAbstractTypeVersion(std::string(fields[3]));
  } else {
    m_ctx.queueMsgAt(*element, false, ComMsg::Warning, "@49-37@%s", name);
  }

  HBOParsedInterface parsed;
  for (HXMLWElement child : element->children()) {
    if (child.isTag("parameters")) {
      for (HXMLWElement p : child.children()) {
        static const char *const kParamNames[] = {"name",      "value",     "value_type",
                                                  "value_min", "value_max", "readonly"};
        const char *v[6];
        p.findAttributes(kParamNames, v);
        auto text = [&](int i) { return std::string(HXMLWElement::viewOf(v[i])); };
        interface->addParameter(
            new HBOParameter(text(0), text(1), text(2), text(3), text(4), text(5)));
      }
    } else if (child.isTag("description")) {
      interface->setDescription(child.getText());
    } else if (child.isTag("preset_file")) {
      // Stands in place of the preset's file: later elements are read later.
      interface->setPresetFile(child.getAttribute("name"));
    } else if (child.isTag("preferred_ips")) {
      if (!readPreferredIps_(child, interface, type, presetProc))
        return false;
    } else if (child.isTag("port_maps")) {
      if (!readPortMaps_(child, interface, name, ofComponent, parsed))
        return false;
    } else if (child.isTag("enablement_dependencies")) {
      readEnablementDependencies(child, interface);
    }
  }

  if (m_ctx.parsed) {
    parsed.type = type;
    m_ctx.parsed->interfaces.push_back(std::move(parsed));
  }
  return true;
}

void HBOInterfaceReader::readPresetProc_(const HXMLWElement &at, HBOBusIf *interface,
                                         const std::string &name, const std::string &presetProc) {
  // The preset file is read before the components, so every procedure of
  // the board is known by now.
  const HBOBoard::PresetMap &presets = m_ctx.board->getIpPresets();
  // The key in upper case, in a buffer that every interface reuses.
  thread_local std::string key;
  key.assign(presetProc);
  key = HSTStringUtils::toUpper(std::move(key));
  auto found = presets.find(key);
  if (found != presets.end() && !found->second.empty() && found->second.front()) {
    const HBOIpPreset::ParamMap &params = found->second.front()->getParamList();
    auto file = params.find("CONFIG.XML_INPUT_FILE");
    if (file != params.end() && !file->second.empty())
      interface->setPresetFile(file->second);
  } else if (m_ctx.strictChecks && m_ctx.sendMessages) {
    m_ctx.queueMsgAt(at, false, ComMsg::Warning, "@49-133@%s%s", name, presetProc);
  }
}

bool HBOInterfaceReader::readPreferredIps_(HXMLWElement &list, HBOBusIf *interface,
                                           const std::string &type, const std::string &presetProc) {
  for (HXMLWElement entry : list.children()) {
    HBOParseContext::SubjectScope subject(m_ctx, entry);
    PreferredIpAttributes ip(entry);
    if (m_ctx.parsed) {
      ip.vlnvText(m_scratch, ip.version);
      m_ctx.parsed->preferredIpVlnvs.insert(m_scratch);
    }
    std::unique_ptr<HBOBusIfPreference> record = makePreference(ip, presetProc, m_scratch);
    int order = m_ctx.convert2NonNegativeInteger(ip.order, "preferred_ip order");
    if (ip.hasOrder)
      record->setOrder(order);
    else
      m_ctx.queueMsgAt(entry, false, ComMsg::Warning, "@49-100@%s%s%s", m_ctx.board->getBoardFile(),
                       std::string(ip.name), type);
    record->setOwner(m_ctx.board);
    if (!m_validator.validatePreferredIP(record.get()))
      return false;
    // With several of order 0 the last one is the preference.
    if (record->getOrder() == 0)
      interface->setPreference(record.get());
    interface->setPreferences(record.release());
  }
  return true;
}

bool HBOInterfaceReader::readPortMaps_(HXMLWElement &list, HBOBusIf *interface,
                                       const std::string &name, const std::string &ofComponent,
                                       HBOParsedInterface &parsed) {
  HBOBoardComponent *component = interface->getOwnerComponent();
  std::size_t count = 0;
  for (HXMLWElement entry : list.children()) {
    (void)entry;
    ++count;
  }
  interface->reservePorts(count);
  // The component holds the ports and their maps in one block, freed with
  // itself; a record that a failed read leaves unused goes with the block.
  HBOModelPortRecord *records = component->makeModelPorts(count);
  std::size_t next = 0;
  for (HXMLWElement entry : list.children()) {
    assert(next < count && "the port maps are counted before they are read");
    HBOParseContext::SubjectScope subject(m_ctx, entry);
    HBOModelPortRecord &record = records[next++];
    HBOModelPort *port = &record.port;
    HBOPortMap *map = &record.map;
    port->setOwner(interface);
    if (!readPortMapDetails(&entry, port, map))
      return false;
    if (!m_validator.validatePort(port, ofComponent, name))
      return false;
    interface->addPort(port);
    if (m_ctx.parsed)
      parsed.logicalPorts.insert(map->getLogicalPort());
    interface->addLentPortMap(map);
  }
  return true;
}

bool HBOInterfaceReader::readPortMapDetails(HXMLWElement *element, HBOModelPort *port,
                                            HBOPortMap *map) {
  if (!element || element->isNull() || !port || !map)
    return false;
  // Views into the document, copied once into the port and the map.
  static const char *const kNames[] = {"logical_port", "left", "right", "physical_port", "dir"};
  const char *values[5];
  element->findAttributes(kNames, values);
  const std::string_view logicalPort = HXMLWElement::viewOf(values[0]);
  const char *leftText = values[1];
  const char *rightText = values[2];
  const bool hasLeft = leftText != nullptr;
  const bool hasRight = rightText != nullptr;

  port->setName(HXMLWElement::viewOf(values[3]));
  port->setDirection(HXMLWElement::viewOf(values[4]));
  const std::string &physicalPort = port->getName();
  map->setLogicalPort(logicalPort);
  map->setPhysicalPort(physicalPort);

  // One end given alone makes a vector down to, or up from, 0.
  int left = 0, right = 0;
  if (hasLeft || hasRight) {
    if (hasLeft)
      left = m_ctx.convert2NonNegativeInteger(leftText, "port map left");
    if (hasRight)
      right = m_ctx.convert2NonNegativeInteger(rightText, "port map right");
    port->setIsVector(true);
    port->setRange(left, right);
  } else {
    port->setIsVector(false);
  }

  HBOBusIf *interface = port->getOwner();
  HBOBoardComponent *component = interface ? interface->getOwnerComponent() : nullptr;
  const std::string noName;
  const std::string &interfaceName = interface ? interface->getName() : noName;
  const std::string &componentName = component ? component->getComponentName() : noName;

  // The pin's name for the look-up, in a buffer kept from port to port.
  std::string &pinName = m_scratch;
  for (HXMLWElement child : element->children("pin_maps")) {
    // Each pin map's two attributes, found in one walk and kept for the
    // second pass.
    static const char *const kPinMapNames[] = {"port_index", "component_pin"};
    m_pinMapTexts.clear();
    std::size_t textBytes = 0;
    for (HXMLWElement pinMap : child.children()) {
      const char *texts[2];
      pinMap.findAttributes(kPinMapNames, texts);
      m_pinMapTexts.emplace_back(HXMLWElement::viewOf(texts[0]), HXMLWElement::viewOf(texts[1]));
      textBytes += m_pinMapTexts.back().first.size() + m_pinMapTexts.back().second.size();
    }
    const auto count = static_cast<long long>(m_pinMapTexts.size());
    int width = 0;
    port->getPortWidth(width);
    if (count != width)
      m_ctx.queueFinding(*element,
                         "Necessary component pins not provided for '" + port->getName() + "'.");
    port->reservePinPortMap(static_cast<std::size_t>(count), textBytes);

    m_pinOfIndex.reset(static_cast<std::size_t>(count));
    // The pin map of a finding, looked for only when there is one.
    std::size_t at = 0;
    auto pinMapAt = [&child](std::size_t n) {
      for (HXMLWElement pinMap : child.children())
        if (n-- == 0)
          return pinMap;
      return HXMLWElement();
    };
    for (const auto &texts : m_pinMapTexts) {
      const std::size_t position = at++;
      const std::string_view indexText = texts.first;
      const std::string_view pinText = texts.second;
      const std::string_view *known = m_pinOfIndex.insert(indexText, pinText);
      if (known && m_ctx.strictChecks)
        m_ctx.queueFinding(pinMapAt(position),
                           "In the pin_maps for the logical_port '" + std::string(logicalPort) +
                               "' and physical port '" + physicalPort + "' the port index '" +
                               std::string(indexText) + "' is used for both '" +
                               std::string(*known) + "' and for '" + std::string(pinText) +
                               "'. Port index must be unique.");

      pinName.assign(pinText);
      HBOPinProps *pin = component ? component->findPin(pinName) : nullptr;
      if (pin)
        pin->addIntfPortMap(interfaceName, physicalPort);
      else if (component && m_ctx.pinsUnread.count(component))
        // Follows from the pin file that was not read, and told with it.
        m_ctx.countUncheckedPin(component);
      else
        m_ctx.queueFinding(pinMapAt(position),
                           "The interface '" + interfaceName + "' uses pin '" + pinName +
                               "', but no such pin is defined on the owning component '" +
                               componentName + "'");
      // A repeated index overwrites the earlier pin, whatever the checks say.
      port->addPinPortMap(indexText, pinText);
    }
  }

  if (component)
    component->setModelPort(physicalPort, port);
  return true;
}

bool HBOInterfaceReader::readComponentModeDetails(HXMLWElement *element, HBOComponentMode *mode) {
  if (!element || element->isNull() || !mode)
    return false;
  // Modes are added after reading, so the first one of a component is 0.
  std::size_t number = 0;
  if (HBOBoardComponent *owner = mode->getOwnerComponent())
    number = owner->getComponentModeCount();
  // A generated name lets a mode be looked up and shown all the same.
  std::string name = element->getAttribute("name");
  if (name.empty())
    name = "auto_generated_component_mode_" + std::to_string(number);
  std::string displayName = element->getAttribute("display_name");
  if (displayName.empty())
    displayName = "Component Mode " + std::to_string(number);
  const std::string presetProc = element->getAttribute("preset_proc");
  mode->setName(name);
  mode->setDisplayName(displayName);
  mode->setPresetProcName(presetProc);

  for (HXMLWElement child : element->children()) {
    if (child.isTag("description")) {
      mode->setDescription(child.getText());
    } else if (child.isTagExactly("interfaces")) {
      int position = 0;
      for (HXMLWElement entry : child.children()) {
        const char *order = entry.findAttribute("order");
        // Names are checked against the board's interfaces after the read.
        int number = !order || !*order ? position
                                       : m_ctx.convert2NonNegativeInteger(order, "interface order");
        mode->addInterface(number, std::make_pair(entry.getAttribute("name"),
                                                  isTrueText(entry.getAttribute("optional"))));
        ++position;
      }
    } else if (child.isTag("preferred_ips")) {
      for (HXMLWElement entry : child.children()) {
        HBOParseContext::SubjectScope subject(m_ctx, entry);
        PreferredIpAttributes ip(entry);
        if (m_ctx.parsed) {
          ip.vlnvText(m_scratch, ip.versionText());
          m_ctx.parsed->preferredIpVlnvs.insert(m_scratch);
        }
        std::unique_ptr<HBOBusIfPreference> record = makePreference(ip, presetProc, m_scratch);
        int order = m_ctx.convert2NonNegativeInteger(ip.order, "preferred_ip order");
        if (ip.hasOrder)
          record->setOrder(order);
        record->setOwner(m_ctx.board);
        if (!m_validator.validatePreferredIP(record.get()))
          return false;
        mode->addPreferredIp(record.release());
      }
    } else if (child.isTag("enablement_dependencies")) {
      // Composes the form the enablement engine reads: {j1 v1} {j2 v2}.
      std::string text = "{";
      for (HXMLWElement group : child.children("jumpers")) {
        for (HXMLWElement j : group.children()) {
          if (text != "{")
            text += "} {";
          text += j.getAttribute("name") + " " + j.getText();
        }
        text += "}";
        mode->setEnablementDependency(text);
      }
    }
  }
  return true;
}
