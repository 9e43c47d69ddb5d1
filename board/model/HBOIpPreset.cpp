#include "HBOIpPreset.h"

#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <boost/filesystem.hpp>

#include <iostream>

namespace {

bool endsWithCsv(const std::string &value) {
  static const std::string suffix = ".csv";
  return value.size() >= suffix.size() &&
         value.compare(value.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// A bare file name is taken relative to the board's directory, but only when
// that file is really there; anything else stays as the file wrote it.
std::string resolveCsv(const std::string &value, const HBOBoard *owner) {
  namespace fs = boost::filesystem;
  const std::string parent = fs::path(value).parent_path().string();
  if (!parent.empty() && parent != ".")
    return value;
  if (!owner)
    return value;
  const std::string candidate = fs::path(owner->getBoardFile()).parent_path().string() +
                                HBOBoardUtils::getDirSeparator() + value;
  boost::system::error_code ec;
  const fs::file_status status = fs::status(candidate, ec);
  if (status.type() == fs::status_error || status.type() == fs::file_not_found)
    return value;
  return candidate;
}

} // namespace

HBOIpPreset::~HBOIpPreset() {
  zeb::tcltasks::native_cache<HBOIpPreset *>::remove(this);
  zeb::pyinfra::py_native_cache<HBOIpPreset *>::remove(this);
}

bool HBOIpPreset::isPreset() const { return HBOCommon::iEquals(m_kind, "preset"); }

bool HBOIpPreset::isAssocIntf() const { return HBOCommon::iEquals(m_kind, "assoc_intf"); }

bool HBOIpPreset::getParamValue(const std::string &name, std::string &value) const {
  auto it = m_params.find(name);
  if (it == m_params.end())
    return false;
  value = it->second;
  return true;
}

bool HBOIpPreset::setParam(const std::string &name, const std::string &value) {
  if (name.empty())
    return false;
  m_params[name] = endsWithCsv(value) ? resolveCsv(value, m_owner) : value;
  return true;
}

void HBOIpPreset::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Preset - Name: " << m_name
            << " Preset Name: " << m_presetName << " Preset Proc Name: " << m_presetProcName
            << " IP Interface Name: " << m_ipInterface << "\n";
}
