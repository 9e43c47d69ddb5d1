#include "HBOIpPreset.h"

#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOCommon.h"
#include "NativeCache.h"

#include <boost/filesystem.hpp>

#include <iostream>
#include <iterator>
#include <mutex>

namespace {

bool endsWithCsv(std::string_view value) {
  constexpr std::string_view suffix = ".csv";
  return value.size() >= suffix.size() && value.substr(value.size() - suffix.size()) == suffix;
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

const std::string &HBOIpPreset::getPresetName() const {
  if (!m_presetNamePending.load(std::memory_order_acquire))
    return m_presetName;
  // Loaded boards may be read from several threads.
  static std::mutex mutex;
  std::lock_guard<std::mutex> lock(mutex);
  if (m_presetNamePending.load(std::memory_order_relaxed)) {
    const std::string *parts[] = {m_presetProcName, m_vendor,  m_library,
                                  m_name,           m_version, m_ipInterface};
    std::size_t size = 0;
    for (const std::string *part : parts)
      size += part->size() + 1;
    m_presetName.clear();
    m_presetName.reserve(size);
    for (std::size_t i = 0; i < std::size(parts); ++i) {
      if (i > 0)
        m_presetName += ':';
      m_presetName += *parts[i];
    }
    m_presetNamePending.store(false, std::memory_order_release);
  }
  return m_presetName;
}

void HBOIpPreset::setPresetName(std::string presetName) {
  m_presetName = std::move(presetName);
  m_presetNamePending.store(false, std::memory_order_release);
}

void HBOIpPreset::setPresetNameFromIdentity() {
  m_presetName.clear();
  m_presetNamePending.store(true, std::memory_order_release);
}

void HBOIpPreset::setPresetorAssocIntf(std::string_view kind) {
  const std::string text(kind);
  m_kind = HBOCommon::iEquals(text, "preset")       ? Kind::Preset
           : HBOCommon::iEquals(text, "assoc_intf") ? Kind::AssocIntf
                                                    : Kind::Other;
}

bool HBOIpPreset::isPreset() const { return m_kind == Kind::Preset; }

bool HBOIpPreset::isAssocIntf() const { return m_kind == Kind::AssocIntf; }

void HBOIpPreset::settleParams_() const {
  if (m_paramsSettled.load(std::memory_order_acquire))
    return;
  // Loaded boards may be read from several threads; the merge happens once
  // per batch of setParam calls, so one lock for all presets is enough.
  static std::mutex mutex;
  std::lock_guard<std::mutex> lock(mutex);
  if (m_paramsSettled.load(std::memory_order_relaxed))
    return;
  ParamMap::Builder merged;
  m_params.appendTo(merged);
  merged.append(*m_pending);
  m_params.assign(merged);
  m_pending.reset();
  m_paramsSettled.store(true, std::memory_order_release);
}

const HBOIpPreset::ParamMap &HBOIpPreset::getParamList() const {
  settleParams_();
  return m_params;
}

bool HBOIpPreset::getParamValue(std::string_view name, std::string &value) const {
  settleParams_();
  auto it = m_params.find(name);
  if (it == m_params.end())
    return false;
  value = it->second;
  return true;
}

std::string_view HBOIpPreset::resolveValue(std::string_view value, std::string &scratch) const {
  if (!endsWithCsv(value))
    return value;
  scratch = resolveCsv(std::string(value), m_owner);
  return scratch;
}

bool HBOIpPreset::setParam(const std::string &name, const std::string &value) {
  if (name.empty())
    return false;
  std::string scratch;
  // Names given one at a time may be anything, so they stay with the preset.
  if (!m_pending)
    m_pending = std::make_unique<ParamMap::Builder>();
  m_pending->addLocalName(name, resolveValue(value, scratch));
  m_paramsSettled.store(false, std::memory_order_release);
  return true;
}

void HBOIpPreset::setParams(ParamMap::Builder &params) {
  if (params.empty())
    return;
  if (m_params.empty() && !m_pending) {
    m_params.assign(params);
    return;
  }
  if (!m_pending)
    m_pending = std::make_unique<ParamMap::Builder>();
  m_pending->append(params);
  m_paramsSettled.store(false, std::memory_order_release);
}

void HBOIpPreset::display(int indent) const {
  std::cout << std::string(indent > 0 ? indent : 0, '-') << "Preset - Name: " << *m_name
            << " Preset Name: " << getPresetName() << " Preset Proc Name: " << *m_presetProcName
            << " IP Interface Name: " << *m_ipInterface << "\n";
}
