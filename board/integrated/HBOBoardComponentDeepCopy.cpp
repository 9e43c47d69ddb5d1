// The deep copy of a component, for the composition of integrated boards.
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBOComponentMode.h"
#include "HBOCopyNames.h"
#include "HBOImage.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"

HBOBoardComponent::HBOBoardComponent(const HBOBoardComponent &src, HBOBoard *owner,
                                     const std::string &prefix)
    : m_componentName(prefix.empty() ? src.m_componentName
                                     : HBOCommon::toLowerCopy(prefix + "_" + src.m_componentName)),
      m_type(src.m_type), m_subType(src.m_subType), m_majorGroup(src.m_majorGroup),
      m_pinMapFile(src.m_pinMapFile), m_partName(src.m_partName), m_vendorName(src.m_vendorName),
      m_connectedTo(src.m_connectedTo), m_repository(src.m_repository),
      m_isEnabled(src.m_isEnabled),
      m_rare(src.m_rare ? std::make_unique<Rare>(*src.m_rare) : nullptr),
      m_userDefined(src.m_userDefined), m_fileParseStatus(src.m_fileParseStatus),
      m_constraintsPopulated(src.m_constraintsPopulated), m_boardFile(src.m_boardFile),
      m_specUrl(src.m_specUrl), m_displayName(HBOCopyNames::displayName(prefix, src.m_displayName)),
      m_description(src.m_description), m_longDesc(src.m_longDesc),
      m_jtagPositions(src.m_jtagPositions), m_additionalParts(src.m_additionalParts),
      m_partUpdated(src.m_partUpdated), m_board(owner) {
  // Rows of declared compatibility describe the source's own board and
  // stay with it; mux positions, drivers and design constraints do too.
  m_name = owner ? HBOCommon::toLowerCopy(owner->getVendor() + ":" + owner->getBoardName() + ":" +
                                          m_componentName + ":" + owner->getVersion())
                 : src.m_name;

  // Parameter names stay: "connects_with" and its kin are looked up by
  // those names.
  HBOCopyNames::copyEach(src.m_parameters, m_parameters, [](const HBOParameter &parameter) {
    return new HBOParameter(parameter, std::string());
  });
  HBOCopyNames::copyEach(src.m_images, m_images,
                         [](const HBOImage &image) { return new HBOImage(image, std::string()); });
  HBOCopyNames::copyEach(src.m_modes, m_modes, [&](const HBOComponentMode &mode) {
    return new HBOComponentMode(mode, this, prefix);
  });
  for (const auto &entry : src.m_interfaces)
    if (entry.second)
      addBoardInterface_(new HBOBusIf(*entry.second, this, prefix));

  // Pin names stay: port maps name the pins, and the connections their
  // indexes. The copies have no port; a schema 2 port finds its pins by name.
  std::size_t nameBytes = 0;
  for (const auto &entry : src.m_pins)
    nameBytes += entry.first.size() + 1;
  reservePins(src.m_pins.size(), nameBytes);
  for (const auto &entry : src.m_pins)
    if (entry.second)
      addPin(createPin(*entry.second, nullptr));
}

HBOPinProps *HBOBoardComponent::createPin(const HBOPinProps &src, HBOModelPort *port) {
  // Pins listed in a pin file have no owner, and their copies have none.
  return m_pinStore.create(src, src.getOwner() ? this : nullptr, port);
}

void HBOBoardComponent::prefixInterfaceNames(const std::string &prefix) {
  std::map<std::string, HBOBusIf *> interfaces;
  interfaces.swap(m_interfaces);
  for (const auto &entry : interfaces) {
    if (!entry.second)
      continue;
    entry.second->setName(prefix + "_" + entry.second->getName());
    addBoardInterface_(entry.second);
  }
}
