#include "HBOBusIfPreference.h"

#include "HBOBoard.h"
#include "HSTIntern.h"
#include "NativeCache.h"

#include <iostream>

HBOBusIfPreference::HBOBusIfPreference()
    : m_majorGroup(&HSTIntern::empty()), m_minorGroup(&HSTIntern::empty()),
      m_defaultIpVlnv(&HSTIntern::empty()), m_name(&HSTIntern::empty()),
      m_prefName(&HSTIntern::empty()), m_vendor(&HSTIntern::empty()),
      m_library(&HSTIntern::empty()), m_version(&HSTIntern::empty()) {}

HBOBusIfPreference::~HBOBusIfPreference() { zeb::forgetScriptHandles(this); }

bool HBOBusIfPreference::setMajorGroup(std::string_view group) {
  if (group.empty())
    return false;
  m_majorGroup = &HSTIntern::get(group);
  return true;
}

bool HBOBusIfPreference::setMinorGroup(std::string_view group) {
  m_minorGroup = &HSTIntern::get(group);
  return true;
}

bool HBOBusIfPreference::setDefaultIpVlnv(std::string_view vlnv) {
  m_defaultIpVlnv = &HSTIntern::get(vlnv);
  return true;
}

bool HBOBusIfPreference::setPresetProc(std::string_view proc) {
  m_presetProc.assign(proc);
  return true;
}

bool HBOBusIfPreference::setPresetFile(std::string_view file) {
  m_presetFile.assign(file);
  return true;
}

bool HBOBusIfPreference::setName(std::string_view name) {
  m_name = &HSTIntern::get(name);
  return true;
}

bool HBOBusIfPreference::setPrefName(std::string_view name) {
  m_prefName = &HSTIntern::get(name);
  return true;
}

bool HBOBusIfPreference::setVendor(std::string_view vendor) {
  m_vendor = &HSTIntern::get(vendor);
  return true;
}

bool HBOBusIfPreference::setLibrary(std::string_view library) {
  m_library = &HSTIntern::get(library);
  return true;
}

bool HBOBusIfPreference::setVersion(std::string_view version) {
  m_version = &HSTIntern::get(version);
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
            << "Preferred IP - VLNV: " << *m_defaultIpVlnv << ", preset_proc: " << m_presetProc
            << ", preset_file: " << m_presetFile << "\n";
}
