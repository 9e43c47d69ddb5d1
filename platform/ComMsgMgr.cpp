#include "ComMsgMgr.h"
#include "ComMsgCatalog.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>
#include <mutex>
#include <set>

namespace {

struct MsgState {
  std::mutex mutex;
  ComMsgSink *sink = nullptr;
  std::map<std::string, int> limits;
  std::map<std::string, unsigned> delivered;
  std::map<std::string, unsigned> suppressed;
  std::map<unsigned, unsigned> counts;
  std::set<std::string> scopes;
  bool allScopes = false;

  MsgState() {
    if (const char *env = std::getenv("BOARDLIB_DEBUG")) {
      std::string list(env);
      std::string::size_type pos = 0;
      while (pos <= list.size()) {
        std::string::size_type comma = list.find(',', pos);
        if (comma == std::string::npos)
          comma = list.size();
        std::string scope = list.substr(pos, comma - pos);
        if (scope == "all")
          allScopes = true;
        else if (!scope.empty())
          scopes.insert(scope);
        pos = comma + 1;
      }
    }
  }
};

MsgState &state() {
  static MsgState s;
  return s;
}

thread_local ComMsgCapture *t_capture = nullptr;

void deliverLocked(MsgState &s, ComMsgRecord &record) {
  ++s.counts[record.severity];
  if (s.sink) {
    s.sink->receive(record);
    return;
  }
  std::cerr << record.line << '\n';
}

bool isDebug(unsigned severity) { return (severity & 0xFF000000u) == 0x01000000u; }

} // namespace

const char *ComMsgMgr::severityName(unsigned severity) {
  switch (severity) {
  case ComMsg::Info:
    return "INFO";
  case ComMsg::Warning:
    return "WARNING";
  case ComMsg::CriticalWarning:
    return "CRITICAL WARNING";
  case ComMsg::Error:
    return "ERROR";
  default:
    return isDebug(severity) ? "DEBUG" : "INFO";
  }
}

void ComMsgMgr::sendMessage(const ComMsgMgrInstance &msg) {
  if (t_capture) {
    t_capture->m_messages.push_back(msg);
    return;
  }
  ComMsgRecord record;
  record.severity = msg.getSeverity();
  record.severityName = severityName(msg.getSeverity());
  record.category = msg.getCategory();
  record.id = msg.getId();
  record.key = msg.getKey();
  record.args = msg.getArgs();
  record.text = msg.getText();
  record.line = msg.format();
  record.placeFile = msg.getPlaceFile();
  record.placeLine = msg.getPlaceLine();
  record.impact = msg.getImpact();

  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (!record.id.empty()) {
    auto limit = s.limits.find(record.id);
    unsigned &count = s.delivered[record.id];
    if (limit != s.limits.end() && limit->second >= 0 &&
        count >= static_cast<unsigned>(limit->second)) {
      ++s.suppressed[record.id];
      return;
    }
    ++count;
  }
  deliverLocked(s, record);
}

void ComMsgMgr::sendScopedMsg(unsigned mask, const std::string &scope, const char *format, ...) {
  if (!hasScope(scope))
    return;
  va_list args;
  va_start(args, format);
  va_list copy;
  va_copy(copy, args);
  int size = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  std::string text(size > 0 ? static_cast<size_t>(size) : 0, '\0');
  if (size > 0)
    std::vsnprintf(&text[0], text.size() + 1, format, args);
  va_end(args);
  while (!text.empty() && text.back() == '\n')
    text.pop_back();

  ComMsgRecord record;
  record.severity = mask;
  record.severityName = "DEBUG";
  record.category = scope;
  record.text = text;
  record.line = "DEBUG: [" + scope + "] " + text;
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  deliverLocked(s, record);
}

bool ComMsgMgr::hasScope(const std::string &scope) {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.allScopes || s.scopes.count(scope) != 0;
}

void ComMsgMgr::enableScope(const std::string &scope, bool on) {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (scope == "all") {
    s.allScopes = on;
    if (!on)
      s.scopes.clear();
    return;
  }
  if (on)
    s.scopes.insert(scope);
  else
    s.scopes.erase(scope);
}

void ComMsgMgr::setMsgLimit(const std::string &id, int limit) {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (limit < 0)
    s.limits.erase(id);
  else
    s.limits[id] = limit;
}

unsigned ComMsgMgr::getSuppressedCount(const std::string &id) {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  auto it = s.suppressed.find(id);
  return it == s.suppressed.end() ? 0 : it->second;
}

void ComMsgMgr::setSink(ComMsgSink *sink) {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.sink = sink;
}

unsigned ComMsgMgr::getCount(unsigned severity) {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  auto it = s.counts.find(severity);
  return it == s.counts.end() ? 0 : it->second;
}

void ComMsgMgr::resetCounts() {
  MsgState &s = state();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.counts.clear();
  s.delivered.clear();
  s.suppressed.clear();
}

ComMsgCapture::ComMsgCapture() : m_previous(t_capture) { t_capture = this; }

ComMsgCapture::~ComMsgCapture() { t_capture = m_previous; }

std::vector<ComMsgMgrInstance> ComMsgCapture::take() {
  std::vector<ComMsgMgrInstance> out;
  out.swap(m_messages);
  return out;
}

void ComMsgCapture::replay() {
  std::vector<ComMsgMgrInstance> pending = take();
  // Deliver past this capture, to whatever was in force before it.
  ComMsgCapture *self = t_capture;
  t_capture = m_previous;
  for (const ComMsgMgrInstance &msg : pending)
    ComMsgMgr::sendMessage(msg);
  t_capture = self;
}
