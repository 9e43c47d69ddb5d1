// Copies of the small records of a board: parameters, images, jumpers,
// drivers, preferred IPs, presets and connections with their nets. Each
// copy owns what it holds and shares nothing with its source but pooled
// texts.
#include "HBOBoard.h"
#include "HBOBoardBus.h"
#include "HBOBoardBusNet.h"
#include "HBOBoardComponentDriver.h"
#include "HBOBusIfPreference.h"
#include "HBOCopyNames.h"
#include "HBOImage.h"
#include "HBOIpPreset.h"
#include "HBOJumper.h"
#include "HBOParameter.h"

HBOParameter::HBOParameter(const HBOParameter &src, const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)), m_value(src.m_value),
      m_valueType(src.m_valueType), m_valueMin(src.m_valueMin), m_valueMax(src.m_valueMax),
      m_readOnly(src.m_readOnly) {}

HBOImage::HBOImage(const HBOImage &src, const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)), m_displayName(src.m_displayName),
      m_description(src.m_description), m_resolution(src.m_resolution), m_subType(src.m_subType) {}

HBOJumper::HBOJumper(const HBOJumper &src, HBOBoard *owner, const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)), m_defaultValue(src.m_defaultValue),
      m_owner(owner), m_description(src.m_description) {}

HBOBoardComponentDriver::HBOBoardComponentDriver(const HBOBoardComponentDriver &src,
                                                 HBOBoardComponent *component)
    : m_name(src.m_name), m_version(src.m_version), m_vendor(src.m_vendor),
      m_preCompiled(src.m_preCompiled), m_os(src.m_os), m_platform(src.m_platform),
      m_processorArch(src.m_processorArch), m_description(src.m_description), m_files(src.m_files),
      m_driverPath(src.m_driverPath), m_boardComponent(component) {}

HBOBusIfPreference::HBOBusIfPreference(const HBOBusIfPreference &src, HBOBoard *owner)
    : m_majorGroup(src.m_majorGroup), m_minorGroup(src.m_minorGroup),
      m_defaultIpVlnv(src.m_defaultIpVlnv), m_name(src.m_name), m_prefName(src.m_prefName),
      m_vendor(src.m_vendor), m_library(src.m_library), m_version(src.m_version),
      m_presetProc(src.m_presetProc), m_presetFile(src.m_presetFile), m_order(src.m_order),
      m_owner(owner) {}

HBOIpPreset::HBOIpPreset(const HBOIpPreset &src, HBOBoard *owner, const std::string &prefix)
    : m_vendor(src.m_vendor), m_library(src.m_library), m_name(src.m_name),
      m_version(src.m_version), m_ipInterface(src.m_ipInterface), m_valueType(src.m_valueType),
      m_presetProcName(src.m_presetProcName), m_owner(src.m_owner ? owner : nullptr),
      m_kind(src.m_kind) {
  // A record read from a file has no owner, and neither has its copy.
  setPresetProcName(HBOCopyNames::name(prefix, src.getPresetProcName()));
  // The name is made of the identity, which now holds the new procedure.
  setPresetNameFromIdentity();
  HBOIpPresetParams::Builder params;
  if (isAssocIntf() && !prefix.empty()) {
    // Here the keys are board interface names, which the copy renamed.
    for (const auto &entry : src.getParamList())
      params.addLocalName(HBOCopyNames::name(prefix, entry.first), entry.second);
  } else {
    src.getParamList().appendTo(params);
  }
  setParams(params);
}

HBOBoardBus::HBOBoardBus(const HBOBoardBus &src, HBOBoard *owner, const std::string &prefix)
    : m_name(HBOCopyNames::name(prefix, src.m_name)),
      m_comp1(HBOCopyNames::name(prefix, src.m_comp1)),
      m_comp2(HBOCopyNames::name(prefix, src.m_comp2)), m_owner(owner),
      m_connectionName(HBOCopyNames::name(prefix, src.m_connectionName)), m_delay(src.m_delay),
      m_minDelay(src.m_minDelay), m_maxDelay(src.m_maxDelay), m_isEnabled(src.m_isEnabled),
      m_enablementDependency(src.m_enablementDependency), m_startIndexComp1(src.m_startIndexComp1),
      m_stopIndexComp1(src.m_stopIndexComp1), m_startIndexComp2(src.m_startIndexComp2),
      m_stopIndexComp2(src.m_stopIndexComp2) {
  m_nets.reserve(src.m_nets.size());
  for (const HBOBoardBusNet *net : src.m_nets)
    if (net)
      addBoardBusNet(new HBOBoardBusNet(*net, this));
}
