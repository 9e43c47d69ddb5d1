#include "HBOBusIf.h"

#include "HBOBusIfPreference.h"
#include "HBOCommon.h"
#include "HBOModelPort.h"
#include "HBOParameter.h"
#include "HBOPortMap.h"
#include "NativeCache.h"

#include <iostream>

HBOBusIf::~HBOBusIf() {
  zeb::forgetScriptHandles(this);
  HBOCommon::deleteDistinct(m_parameters);
  HBOCommon::deleteDistinct(m_ownedPortMaps);
  // The single preference pointer is one of these, or not ours.
  HBOCommon::deleteDistinct(m_preferences);
}

bool HBOBusIf::getDisplayName(std::string &out) const {
  out = m_displayName;
  return true;
}

bool HBOBusIf::getAbstractTypeName(std::string &out) const {
  out = m_abstractTypeName;
  return true;
}

bool HBOBusIf::getAbstractTypeVersion(std::string &out) const {
  out = m_abstractTypeVersion;
  return true;
}

bool HBOBusIf::getAbstractTypeVendorName(std::string &out) const {
  out = m_abstractTypeVendor;
  return true;
}

bool HBOBusIf::getAbstractTypeLibraryName(std::string &out) const {
  out = m_abstractTypeLibrary;
  return true;
}

bool HBOBusIf::getAbstractType(std::string &vendor, std::string &library, std::string &name,
                               std::string &version) const {
  vendor = m_abstractTypeVendor;
  library = m_abstractTypeLibrary;
  name = m_abstractTypeName;
  version = m_abstractTypeVersion;
  return true;
}

bool HBOBusIf::getAbstractTypeVLNV(std::string &out, const std::string &separator) const {
  out = m_abstractTypeVendor + separator + m_abstractTypeLibrary + separator + m_abstractTypeName +
        separator + m_abstractTypeVersion;
  return true;
}

bool HBOBusIf::getInterfaceMode(std::string &out) const {
  out = m_interfaceMode;
  return true;
}

bool HBOBusIf::getPortMapSeq(std::vector<HBOPortMap *> &out) const {
  out = m_portMaps;
  return true;
}

void HBOBusIf::populatePortMap(HBOPortMap *&portMap) {
  m_portMaps.push_back(portMap);
  m_ownedPortMaps.push_back(portMap);
}

void HBOBusIf::addLentPortMap(HBOPortMap *portMap) { m_portMaps.push_back(portMap); }

bool HBOBusIf::getPhysicalPortSeq(std::vector<std::string> &out) const {
  for (const HBOPortMap *portMap : m_portMaps) {
    if (portMap)
      out.push_back(portMap->getPhysicalPort());
  }
  return true;
}

bool HBOBusIf::getPPortByLPort(const std::string &logical, std::string &physical) const {
  if (logical.empty())
    return false;
  for (const HBOPortMap *portMap : m_portMaps) {
    if (portMap && HBOCommon::iEquals(portMap->getLogicalPort(), logical)) {
      physical = portMap->getPhysicalPort();
      return true;
    }
  }
  return false;
}

bool HBOBusIf::getParamList(std::map<std::string, std::string> &out) const {
  out = m_paramTexts;
  return true;
}

bool HBOBusIf::getParamValue(const std::string &name, std::string &out) const {
  if (m_paramTexts.empty() || name.empty())
    return false;
  for (const auto &entry : m_paramTexts) {
    if (HBOCommon::iEquals(entry.first, name)) {
      out = entry.second;
      return true;
    }
  }
  return false;
}

bool HBOBusIf::setParam(std::string name, std::string value) {
  if (name.empty())
    return false;
  m_paramTexts[std::move(name)] = std::move(value);
  return true;
}

void HBOBusIf::addParameter(HBOParameter *parameter) {
  if (!parameter)
    return;
  m_parameters.push_back(parameter);
  m_paramTexts[parameter->getName()] = parameter->getValue();
}

bool HBOBusIf::getParameters(std::vector<HBOParameter *> &out) const {
  out = m_parameters;
  return true;
}

bool HBOBusIf::getPreferences(std::vector<HBOBusIfPreference *> &out) const {
  out = m_preferences;
  return true;
}

bool HBOBusIf::setPreferences(HBOBusIfPreference *preference) {
  m_preferences.push_back(preference);
  return true;
}

void HBOBusIf::reservePorts(std::size_t count) {
  m_ports.reserve(m_ports.size() + count);
  m_portMaps.reserve(m_portMaps.size() + count);
}

void HBOBusIf::addPort(HBOModelPort *port) {
  if (!port)
    return;
  m_ports[port->getName()] = port;
}

void HBOBusIf::getPortMapPinPropsSeq(std::vector<HBOPinProps *> &out) const {
  for (const auto &entry : m_ports) {
    if (entry.second)
      entry.second->getPortPropsSeq(out);
  }
}

void HBOBusIf::updatePortPinMap(const std::map<std::string, std::string> &pinRenames) {
  for (const auto &entry : m_ports) {
    if (entry.second)
      entry.second->updatePortPinMap(pinRenames);
  }
}

void HBOBusIf::display(int indent) const {
  std::string vlnv;
  getAbstractTypeVLNV(vlnv, ":");
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Interface - Name:" << m_name
            << ", Mode:" << m_interfaceMode << ", VLNV:" << vlnv << ", Preferred IP:"
            << "TBD"
            << ", Of Component:" << m_ofComponent << " Preset Proc:" << m_presetProcName << "\n";
  std::cout << std::string(indent + 2 > 0 ? indent + 2 : 0, '-') << "Ports:\n";
  for (const auto &entry : m_ports) {
    if (entry.second)
      entry.second->display(indent + 4);
  }
}
