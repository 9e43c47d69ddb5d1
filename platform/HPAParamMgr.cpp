#include "HPAParamMgr.h"
#include "HSTStringUtils.h"
#include "HUTConvert.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <thread>

namespace {

bool normaliseValue(HPAParam::Kind kind, const std::string &in, std::string &out) {
  switch (kind) {
  case HPAParam::Bool: {
    bool b = false;
    if (!HUTConvert::stringToBoolean(in, b, false))
      return false;
    out = b ? "true" : "false";
    return true;
  }
  case HPAParam::Int: {
    std::string trimmed = in;
    trimmed.erase(0, trimmed.find_first_not_of(" \t"));
    trimmed.erase(trimmed.find_last_not_of(" \t") + 1);
    if (trimmed.empty())
      return false;
    errno = 0;
    char *end = nullptr;
    long long v = std::strtoll(trimmed.c_str(), &end, 10);
    if (errno != 0 || *end != '\0')
      return false;
    out = std::to_string(v);
    return true;
  }
  case HPAParam::String:
    out = in;
    return true;
  }
  return false;
}

// Values change while other threads read them through the pointers that
// findParam hands out; they have a lock of their own, always taken after the
// manager's.
std::mutex &valueMutex() {
  static std::mutex m;
  return m;
}

} // namespace

HPAParam::HPAParam(std::string name, Kind kind, std::string description, std::string defaultValue)
    : m_name(std::move(name)), m_kind(kind), m_description(std::move(description)),
      m_default(defaultValue), m_value(std::move(defaultValue)) {}

const char *HPAParam::getKindName() const {
  switch (m_kind) {
  case Bool:
    return "bool";
  case Int:
    return "int";
  case String:
    return "string";
  }
  return "string";
}

std::string HPAParam::getValueAsString() const {
  std::lock_guard<std::mutex> lock(valueMutex());
  return m_value;
}

bool HPAParam::getValueAsBool() const {
  bool b = false;
  return HUTConvert::stringToBoolean(getValueAsString(), b, false) && b;
}

long long HPAParam::getValueAsInt() const {
  return std::strtoll(getValueAsString().c_str(), nullptr, 10);
}

void HPAParam::setValue_(const std::string &value) {
  std::lock_guard<std::mutex> lock(valueMutex());
  m_value = value;
}

HPAParamMgr &HPAParamMgr::getParamMgr() {
  static HPAParamMgr *mgr = new HPAParamMgr(); // lives as long as the process
  return *mgr;
}

HPAParamMgr::HPAParamMgr() {
  // Parameters that the platform itself provides.
  unsigned cores = std::thread::hardware_concurrency();
  register_(HPAParam::Int, "general.maxThreads",
            "Maximum number of threads that parallel steps may use.",
            std::to_string(cores ? cores : 1));
  register_(HPAParam::Bool, "project.enableBITabFlow",
            "Show integrated boards in the board selection of a project.", "false");
  // The platform reads the data files, so it bounds them. The largest real
  // board file is a few MB; the limit only stops files made to exhaust
  // memory (a packed bomb, a link to /dev/zero).
  register_(HPAParam::Int, "board.maxFileSize",
            "Largest size in bytes of one board, pin, preset or other data file, on disk and "
            "again after unpacking; a larger file is refused.",
            std::to_string(256LL << 20));
}

HPAParam *HPAParamMgr::find_(const std::string &name) const {
  auto it = m_params.find(name);
  return it == m_params.end() ? nullptr : it->second;
}

void HPAParamMgr::register_(HPAParam::Kind kind, const std::string &name,
                            const std::string &description, const std::string &def) {
  std::string value;
  if (!normaliseValue(kind, def, value))
    value = def;
  if (HPAParam *existing = find_(name)) {
    // A second registration renews the description and default; a value set
    // meanwhile is kept.
    bool changed = existing->getValueAsString() != existing->m_default;
    existing->m_kind = kind;
    existing->m_description = description;
    existing->m_default = value;
    if (!changed)
      existing->setValue_(value);
    return;
  }
  m_params.emplace(name, new HPAParam(name, kind, description, value));
}

void HPAParamMgr::registerBoolParam(const std::string &name, const std::string &description,
                                    bool def) {
  std::lock_guard<std::mutex> lock(m_mutex);
  register_(HPAParam::Bool, name, description, def ? "true" : "false");
}

void HPAParamMgr::registerIntParam(const std::string &name, const std::string &description,
                                   long long def) {
  std::lock_guard<std::mutex> lock(m_mutex);
  register_(HPAParam::Int, name, description, std::to_string(def));
}

void HPAParamMgr::registerStringParam(const std::string &name, const std::string &description,
                                      const std::string &def) {
  std::lock_guard<std::mutex> lock(m_mutex);
  register_(HPAParam::String, name, description, def);
}

void HPAParamMgr::setHidden(const std::string &name, bool hidden) {
  std::lock_guard<std::mutex> lock(m_mutex);
  if (HPAParam *p = find_(name))
    p->m_hidden = hidden;
}

const HPAParam *HPAParamMgr::findParam(const std::string &name) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  return find_(name);
}

bool HPAParamMgr::paramExists(const std::string &name) const { return findParam(name) != nullptr; }

bool HPAParamMgr::getValueAsBool(const std::string &name) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  HPAParam *p = find_(name);
  return p && p->getValueAsBool();
}

long long HPAParamMgr::getValueAsInt(const std::string &name) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  HPAParam *p = find_(name);
  return p ? p->getValueAsInt() : 0;
}

std::string HPAParamMgr::getValueAsString(const std::string &name) const {
  std::lock_guard<std::mutex> lock(m_mutex);
  HPAParam *p = find_(name);
  return p ? p->getValueAsString() : std::string();
}

bool HPAParamMgr::setValue(const std::string &name, const std::string &value, std::string *error) {
  std::lock_guard<std::mutex> lock(m_mutex);
  HPAParam *p = find_(name);
  if (!p) {
    if (error) {
      std::vector<std::string> names;
      for (const auto &entry : m_params)
        names.push_back(entry.second->getName());
      std::sort(names.begin(), names.end());
      *error = "unknown parameter '" + name + "'" + HSTStringUtils::didYouMean(name, names);
    }
    return false;
  }
  std::string normalised;
  if (!normaliseValue(p->m_kind, value, normalised)) {
    if (error)
      *error =
          "parameter '" + name + "' takes a " + p->getKindName() + " value, not '" + value + "'";
    return false;
  }
  p->setValue_(normalised);
  return true;
}

bool HPAParamMgr::resetValue(const std::string &name) {
  std::lock_guard<std::mutex> lock(m_mutex);
  HPAParam *p = find_(name);
  if (!p)
    return false;
  p->setValue_(p->m_default);
  return true;
}

void HPAParamMgr::applySettings(const std::string &settings, std::vector<std::string> *errors) {
  std::string::size_type pos = 0;
  while (pos < settings.size()) {
    std::string::size_type end = settings.find_first_of(";\n", pos);
    if (end == std::string::npos)
      end = settings.size();
    std::string item = settings.substr(pos, end - pos);
    pos = end + 1;
    item.erase(0, item.find_first_not_of(" \t\r"));
    item.erase(item.find_last_not_of(" \t\r") + 1);
    if (item.empty())
      continue;
    std::string::size_type eq = item.find('=');
    std::string error;
    if (eq == std::string::npos || eq == 0) {
      error = "'" + item + "' is not of the form name=value";
    } else {
      std::string name = item.substr(0, eq);
      name.erase(name.find_last_not_of(" \t") + 1);
      std::string value = item.substr(eq + 1);
      value.erase(0, value.find_first_not_of(" \t"));
      setValue(name, value, &error);
    }
    if (!error.empty() && errors)
      errors->push_back(error);
  }
}

std::vector<const HPAParam *> HPAParamMgr::listParams() const {
  std::lock_guard<std::mutex> lock(m_mutex);
  std::vector<const HPAParam *> out;
  out.reserve(m_params.size());
  for (const auto &entry : m_params)
    out.push_back(entry.second);
  std::sort(out.begin(), out.end(),
            [](const HPAParam *a, const HPAParam *b) { return a->getName() < b->getName(); });
  return out;
}
