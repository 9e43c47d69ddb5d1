// Copies of a board interface and of what it is made of: port maps, model
// ports, parameters and preferred IPs; and of a component mode, which names
// interfaces. Their names follow the copied component's prefix.
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOBusIfPreference.h"
#include "HBOComponentMode.h"
#include "HBOCopyNames.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"

HBOPortMap::HBOPortMap(const HBOPortMap &src, const std::string &prefix)
    : m_logicalPort(src.m_logicalPort),
      m_physicalPort(HBOCopyNames::name(prefix, src.m_physicalPort)) {}

HBOModelPort::HBOModelPort(const HBOModelPort &src, HBOBusIf *owner, const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)), m_direction(src.m_direction),
      m_logicalPortName(src.m_logicalPortName),
      m_ownerBusIfName(HBOCopyNames::name(prefix, src.m_ownerBusIfName)), m_range(src.m_range),
      m_isVector(src.m_isVector), m_pinData(src.m_pinData), m_pinCount(src.m_pinCount),
      m_pinTextSize(src.m_pinTextSize), m_owner(owner) {
  // The pin map is offsets into its own text, so it copies as it stands.
  // An older board's port holds pin records of its own.
  HBOCopyNames::copyEach(src.m_pinRecords, m_pinRecords, [&](const HBOPinProps &pin) {
    return new HBOPinProps(pin, nullptr, this);
  });
}

HBOBusIf::HBOBusIf(const HBOBusIf &src, HBOBoardComponent *owner, const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)), m_presetFile(src.m_presetFile),
      m_displayName(HBOCopyNames::displayName(prefix, src.m_displayName)),
      m_abstractTypeName(src.m_abstractTypeName), m_abstractTypeVersion(src.m_abstractTypeVersion),
      m_abstractTypeVendor(src.m_abstractTypeVendor),
      m_abstractTypeLibrary(src.m_abstractTypeLibrary), m_interfaceMode(src.m_interfaceMode),
      m_presetProcName(src.m_presetProcName.empty()
                           ? src.m_presetProcName
                           : HBOCopyNames::name(prefix, src.m_presetProcName)),
      m_paramTexts(src.m_paramTexts), m_parentBoard(owner ? owner->getBoard() : nullptr),
      m_ofComponent(HBOCopyNames::name(prefix, src.m_ofComponent)),
      m_description(src.m_description), m_ownerComponent(owner), m_isEnabled(src.m_isEnabled) {
  for (const auto &entry : src.m_jumpers)
    m_jumpers[HBOCopyNames::name(prefix, entry.first)] = entry.second;
  for (const auto &entry : src.m_params)
    m_params[HBOCopyNames::name(prefix, entry.first)] = entry.second;
  // The texts of the parameters stay under their own names, so that the
  // values that designs look up by fixed names are still found.
  for (const HBOParameter *parameter : src.m_parameters)
    if (parameter)
      m_parameters.push_back(new HBOParameter(*parameter, prefix));
  for (const HBOBusIfPreference *preference : src.m_preferences) {
    if (!preference)
      continue;
    auto *copy = new HBOBusIfPreference(*preference, m_parentBoard);
    m_preferences.push_back(copy);
    if (preference == src.m_preference)
      m_preference = copy;
  }
  reservePorts(src.m_portMaps.size());
  for (const HBOPortMap *portMap : src.m_portMaps) {
    if (!portMap)
      continue;
    HBOPortMap *copy = new HBOPortMap(*portMap, prefix);
    populatePortMap(copy);
  }
  // Model ports belong to the component, which frees them; with nobody to
  // hold them the copy has none.
  if (!owner)
    return;
  for (const auto &entry : src.m_ports) {
    if (!entry.second)
      continue;
    auto *port = new HBOModelPort(*entry.second, this, prefix);
    addPort(port);
    owner->setModelPort(port->getName(), port);
  }
}

HBOComponentMode::HBOComponentMode(const HBOComponentMode &src, HBOBoardComponent *owner,
                                   const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)),
      m_displayName(HBOCopyNames::displayName(prefix, src.m_displayName)),
      m_description(src.m_description), m_enablementDependency(src.m_enablementDependency),
      m_presetProcName(src.m_presetProcName), m_isEnabled(src.m_isEnabled),
      m_ownerComponent(owner) {
  for (const auto &entry : src.m_interfaces)
    m_interfaces[entry.first] = {HBOCopyNames::name(prefix, entry.second.first),
                                 entry.second.second};
  HBOBoard *board = owner ? owner->getBoard() : nullptr;
  for (const HBOBusIfPreference *preference : src.m_preferredIps)
    if (preference)
      m_preferredIps.push_back(new HBOBusIfPreference(*preference, board));
}
