// The deep copy of a board, and the operations that pull a whole source
// board into another one under a name prefix: the building blocks of an
// integrated board.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardComponent.h"
#include "HBOCommon.h"
#include "HBOCopyNames.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"

#include <algorithm>

namespace {

using PresetMap = HBOBoard::PresetMap;

std::vector<HBOIpPreset *> copyPresetList(const std::vector<HBOIpPreset *> &src, HBOBoard *owner,
                                          const std::string &prefix) {
  std::vector<HBOIpPreset *> out;
  out.reserve(src.size());
  for (const HBOIpPreset *preset : src)
    if (preset)
      out.push_back(new HBOIpPreset(*preset, owner, prefix));
  return out;
}

bool listedIn(const PresetMap &map, const HBOIpPreset *preset) {
  for (const auto &entry : map)
    if (std::find(entry.second.begin(), entry.second.end(), preset) != entry.second.end())
      return true;
  return false;
}

} // namespace

void HBOBoard::storePresets_(bool associated, const std::string &key,
                             std::vector<HBOIpPreset *> presets) {
  const PresetMap &map = associated ? m_ipAssocInterfaces : m_ipPresets;
  std::vector<HBOIpPreset *> replaced;
  auto old = map.find(HBOCommon::toUpperCopy(key));
  if (old != map.end())
    replaced = old->second;
  if (associated)
    setIpAssociatedInterface(key, std::move(presets));
  else
    setIpPreset(key, std::move(presets));
  // The records the key held are the board's: freed unless listed elsewhere.
  replaced.erase(std::remove_if(replaced.begin(), replaced.end(),
                                [&](const HBOIpPreset *preset) {
                                  return listedIn(m_ipPresets, preset) ||
                                         listedIn(m_ipAssocInterfaces, preset);
                                }),
                 replaced.end());
  HBOCommon::deleteDistinct(replaced);
}

HBOBoard::HBOBoard(const HBOBoard &src, std::string newBoardName)
    : m_userDefined(src.m_userDefined), m_changeLogFile(src.m_changeLogFile),
      m_boardRevision(src.m_boardRevision), m_specUrl(src.m_specUrl),
      m_displayName(src.m_displayName), m_longDesc(src.m_longDesc), m_repository(src.m_repository),
      m_migratedFromSchema(src.m_migratedFromSchema),
      m_boardSchemaVersion(src.m_boardSchemaVersion), m_fileRevision(src.m_fileRevision),
      m_description(src.m_description), m_revisions(src.m_revisions),
      m_jtagChains(src.m_jtagChains), m_presetFile(src.m_presetFile),
      m_boardImage(src.m_boardImage), m_integrated(src.m_integrated),
      m_supportsCED(src.m_supportsCED), m_baseBoard(src.m_baseBoard),
      m_integratedConnections(src.m_integratedConnections), m_fallbackText(src.m_fallbackText),
      m_fallbackFlag(src.m_fallbackFlag) {
  // No board file: that is how a board made in memory shows itself.
  setName(src.m_vendor, newBoardName, src.m_version);

  HBOCopyNames::copyEach(src.m_jumpers, m_jumpers, [&](const HBOJumper &jumper) {
    return new HBOJumper(jumper, this, std::string());
  });
  HBOCopyNames::copyEach(src.m_parameters, m_parameters, [](const HBOParameter &parameter) {
    return new HBOParameter(parameter, std::string());
  });
  HBOCopyNames::copyEach(src.m_images, m_images,
                         [](const HBOImage &image) { return new HBOImage(image, std::string()); });
  for (const auto &entry : src.m_components)
    if (entry.second)
      addBoardComponent(new HBOBoardComponent(*entry.second, this, std::string()));
  HBOCopyNames::copyEach(src.m_buses, m_buses, [&](const HBOBoardBus &bus) {
    return new HBOBoardBus(bus, this, std::string());
  });
  for (const auto &entry : src.m_ipPresets)
    m_ipPresets[entry.first] = copyPresetList(entry.second, this, std::string());
  for (const auto &entry : src.m_ipAssocInterfaces)
    m_ipAssocInterfaces[entry.first] = copyPresetList(entry.second, this, std::string());
  m_activePart = findFpgaComponent();
}

void HBOBoard::copyBoardInformation(const HBOBoard &src, const std::string &prefix) {
  // Each later source overwrites what an earlier one gave.
  m_fallbackText = src.m_fallbackText;
  m_fallbackFlag = src.m_fallbackFlag;
  copyParameters(src, prefix);
  copyJtagChains(src, prefix);
  copyJumpers(src, prefix);
  copyImages(src, prefix);
  copyComponents(src, prefix);
  copyBoardBuses(src, prefix);
  copyPresets(src, prefix);
  copyAssociatedInterfaces(src, prefix);
}

void HBOBoard::copyParameters(const HBOBoard &src, const std::string &prefix) {
  for (const HBOParameter *parameter : src.m_parameters)
    if (parameter)
      addParameter(new HBOParameter(*parameter, prefix));
}

void HBOBoard::copyJtagChains(const HBOBoard &src, const std::string &prefix) {
  for (const std::string &chain : src.m_jtagChains)
    addJtagChain(HBOCommon::toLowerCopy(HBOCopyNames::joined(prefix, chain)));
}

void HBOBoard::copyJumpers(const HBOBoard &src, const std::string &prefix) {
  for (const HBOJumper *jumper : src.m_jumpers)
    if (jumper)
      addJumper(new HBOJumper(*jumper, this, prefix));
}

void HBOBoard::copyImages(const HBOBoard &src, const std::string &prefix) {
  for (const HBOImage *image : src.m_images)
    if (image)
      addImage(new HBOImage(*image, prefix));
}

void HBOBoard::copyComponents(const HBOBoard &src, const std::string &prefix) {
  for (const auto &entry : src.m_components) {
    const HBOBoardComponent *component = entry.second;
    // A daughter board's FPGA never comes along.
    if (!component || component->getType() == "fpga")
      continue;
    // A component that names its connector comes only with that connector.
    std::string connectsWith;
    if (component->getParamValue("connects_with", connectsWith) && connectsWith != prefix)
      continue;
    auto *copy = new HBOBoardComponent(*component, this, prefix);
    for (const HBOJumper *jumper : src.m_jumpers)
      if (jumper)
        copy->updateEnablementDependencyJumperName(jumper->getName(),
                                                   HBOCopyNames::joined(prefix, jumper->getName()));
    HBOBoardComponent *&slot = m_components[copy->getComponentName()];
    if (slot && slot != copy) {
      if (m_activePart == slot)
        m_activePart = nullptr;
      delete slot;
    }
    slot = copy;
  }
}

void HBOBoard::copyBoardBuses(const HBOBoard &src, const std::string &prefix) {
  for (const HBOBoardBus *bus : src.m_buses) {
    if (!bus)
      continue;
    auto *copy = new HBOBoardBus(*bus, this, prefix);
    for (const HBOJumper *jumper : src.m_jumpers)
      if (jumper)
        copy->updateEnablementDependencyJumperName(jumper->getName(),
                                                   HBOCopyNames::joined(prefix, jumper->getName()));
    addBus(copy);
  }
}

void HBOBoard::copyPresets(const HBOBoard &src, const std::string &prefix) {
  for (const auto &entry : src.m_ipPresets)
    storePresets_(false, HBOCopyNames::joined(prefix, entry.first),
                  copyPresetList(entry.second, this, prefix));
}

void HBOBoard::copyAssociatedInterfaces(const HBOBoard &src, const std::string &prefix) {
  for (const auto &entry : src.m_ipAssocInterfaces)
    storePresets_(true, HBOCopyNames::joined(prefix, entry.first),
                  copyPresetList(entry.second, this, prefix));
}
