#include "HBOIpPreset.h"

#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <boost/filesystem.hpp>

#include <iostream>
#include <mutex>

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

HBOIpPreset::~HBOIpPreset() { zeb::forgetScriptHandles(this); }

bool HBOIpPreset::isPreset() const { return HBOCommon::iEquals(m_kind, "preset"); }

bool HBOIpPreset::isAssocIntf() const { return HBOCommon::iEquals(m_kind, "assoc_intf"); }

void HBOIpPreset::settleParams_() const {
  if (m_paramsSettled.load(std::memory_order_acquire))
    return;
  // Loaded boards may be read from several threads; the sort happens once
  // per preset, so one lock for all of them is enough.
  static std::mutex mutex;
  std::lock_guard<std::mutex> lock(mutex);
  if (m_paramsSettled.load(std::memory_order_relaxed))
    return;
  m_params.sortKeepLast();
  m_params.shrink_to_fit();
  m_paramsSettled.store(true, std::memory_order_release);
}

const HBOIpPreset::ParamMap &HBOIpPreset::getParamList() const {
  settleParams_();
  return m_params;
}

bool HBOIpPreset::getParamValue(const std::string &name, std::string &value) const {
  settleParams_();
  auto it = m_params.find(name);
  if (it == m_params.end())
    return false;
  value = it->second;
  return true;
}

bool HBOIpPreset::setParam(const std::string &name, const std::string &value) {
  if (name.empty())
    return false;
  std::string stored = endsWithCsv(value) ? resolveCsv(value, m_owner) : value;
  const bool inOrder = m_params.empty() || m_params.rbegin()->first < name;
  m_params.appendUnsorted(name, std::move(stored));
  if (!inOrder)
    m_paramsSettled.store(false, std::memory_order_release);
  return true;
}

void HBOIpPreset::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Preset - Name: " << m_name
            << " Preset Name: " << m_presetName << " Preset Proc Name: " << m_presetProcName
            << " IP Interface Name: " << m_ipInterface << "\n";
}
