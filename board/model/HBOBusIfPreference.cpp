#include "HBOBusIfPreference.h"

#include "HBOBoard.h"
#include "NativeCache.h"

#include <iostream>

HBOBusIfPreference::~HBOBusIfPreference() { zeb::forgetScriptHandles(this); }

bool HBOBusIfPreference::setMajorGroup(const std::string &group) {
  if (group.empty())
    return false;
  m_majorGroup = group;
  return true;
}

bool HBOBusIfPreference::setMinorGroup(const std::string &group) {
  m_minorGroup = group;
  return true;
}

bool HBOBusIfPreference::setDefaultIpVlnv(const std::string &vlnv) {
  m_defaultIpVlnv = vlnv;
  return true;
}

bool HBOBusIfPreference::setPresetProc(const std::string &proc) {
  m_presetProc = proc;
  return true;
}

bool HBOBusIfPreference::setPresetFile(const std::string &file) {
  m_presetFile = file;
  return true;
}

bool HBOBusIfPreference::setName(const std::string &name) {
  m_name = name;
  return true;
}

bool HBOBusIfPreference::setPrefName(const std::string &name) {
  m_prefName = name;
  return true;
}

bool HBOBusIfPreference::setVendor(const std::string &vendor) {
  m_vendor = vendor;
  return true;
}

bool HBOBusIfPreference::setLibrary(const std::string &library) {
  m_library = library;
  return true;
}

bool HBOBusIfPreference::setVersion(const std::string &version) {
  m_version = version;
  return true;
}

bool HBOBusIfPreference::setOrder(std::int32_t order) {
  m_order = order;
  return true;
}

bool HBOBusIfPreference::getParamValue(const std::string &, const std::string &,
                                       std::string &) const {
  // Kept as a stub on purpose: callers that want a preset value ask the
  // preset records of the owner board, which this only looks at.
  if (m_owner)
    (void)m_owner->getIpPresets();
  return false;
}

void HBOBusIfPreference::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-')
            << "Preferred IP - VLNV: " << m_defaultIpVlnv << ", preset_proc: " << m_presetProc
            << ", preset_file: " << m_presetFile << "\n";
}
