#include "HUTTrace.h"
#include "HSTStringUtils.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <vector>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

enum TraceState : int { Unknown = 0, Off = 1, On = 2 };

struct Event {
  const char *name;
  const char *argName;
  std::string argValue;
  std::int64_t ts;
  std::int64_t dur;
  long tid;
};

// Beyond this many events a forgotten trace would only eat memory.
constexpr std::size_t kMaxEvents = 2000000;

struct TraceData {
  std::mutex mutex;
  std::string path;
  std::vector<Event> events;
  std::size_t dropped = 0;
  bool exitHookInstalled = false;
};

std::atomic<int> g_state{Unknown};

// Never freed: the exit hook runs after static destructors may have begun.
TraceData &data() {
  static TraceData *d = new TraceData;
  return *d;
}

std::int64_t nowMicros() {
  using namespace std::chrono;
  static const steady_clock::time_point start = steady_clock::now();
  return duration_cast<microseconds>(steady_clock::now() - start).count();
}

long currentTid() {
  thread_local long tid = static_cast<long>(::syscall(SYS_gettid));
  return tid;
}

std::string renderLocked(const TraceData &d) {
  std::string out = "{\"traceEvents\":[";
  const std::string pid = std::to_string(static_cast<long>(::getpid()));
  bool first = true;
  for (const Event &e : d.events) {
    if (!first)
      out += ",";
    first = false;
    out += "\n{\"ph\":\"X\",\"name\":";
    HSTStringUtils::appendJsonQuoted(out, e.name ? e.name : "");
    out += ",\"ts\":" + std::to_string(e.ts);
    out += ",\"dur\":" + std::to_string(e.dur);
    out += ",\"pid\":" + pid;
    out += ",\"tid\":" + std::to_string(e.tid);
    out += ",\"args\":{";
    HSTStringUtils::appendJsonQuoted(out, e.argName ? e.argName : "");
    out += ":";
    HSTStringUtils::appendJsonQuoted(out, e.argValue);
    out += "}}";
  }
  out += "\n],\"displayTimeUnit\":\"ms\"";
  if (d.dropped)
    out += ",\"otherData\":{\"droppedEvents\":" + std::to_string(d.dropped) + "}";
  out += "}\n";
  return out;
}

// Written beside the target and renamed over it, so that a reader never
// sees half a file.
void writeLocked(const TraceData &d) {
  if (d.path.empty())
    return;
  std::string text = renderLocked(d);
  std::string temp = d.path + ".tmp";
  std::FILE *file = std::fopen(temp.c_str(), "wb");
  if (!file)
    return;
  bool ok = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  ok = (std::fclose(file) == 0) && ok;
  if (!ok || std::rename(temp.c_str(), d.path.c_str()) != 0)
    std::remove(temp.c_str());
}

void flushAtExit() { HUTTrace::flush(); }

void installExitHookLocked(TraceData &d) {
  if (d.exitHookInstalled)
    return;
  d.exitHookInstalled = true;
  std::atexit(flushAtExit);
}

int initState() {
  TraceData &d = data();
  std::lock_guard<std::mutex> lock(d.mutex);
  int state = g_state.load(std::memory_order_relaxed);
  if (state != Unknown)
    return state; // setOutput came first, or another thread did this
  const char *env = std::getenv("BOARDLIB_TRACE");
  if (env && *env) {
    d.path = env;
    installExitHookLocked(d);
    nowMicros(); // start the clock with the trace
    state = On;
  } else {
    state = Off;
  }
  g_state.store(state, std::memory_order_relaxed);
  return state;
}

} // namespace

bool HUTTrace::enabled() {
  int state = g_state.load(std::memory_order_relaxed);
  if (state == Unknown)
    state = initState();
  return state == On;
}

void HUTTrace::setOutput(const std::string &path) {
  TraceData &d = data();
  std::lock_guard<std::mutex> lock(d.mutex);
  if (!d.path.empty() && !d.events.empty())
    writeLocked(d);
  d.events.clear();
  d.dropped = 0;
  d.path = path;
  if (!path.empty()) {
    installExitHookLocked(d);
    nowMicros();
  }
  g_state.store(path.empty() ? Off : On, std::memory_order_relaxed);
}

void HUTTrace::flush() {
  TraceData &d = data();
  std::lock_guard<std::mutex> lock(d.mutex);
  writeLocked(d);
}

HUTTraceScope::HUTTraceScope(const char *name, const char *argName, const std::string &argValue) {
  if (!HUTTrace::enabled())
    return;
  m_on = true;
  m_name = name;
  m_argName = argName;
  m_argValue = argValue;
  m_start = nowMicros();
}

HUTTraceScope::~HUTTraceScope() {
  if (!m_on)
    return;
  std::int64_t end = nowMicros();
  long tid = currentTid();
  TraceData &d = data();
  std::lock_guard<std::mutex> lock(d.mutex);
  // Tracing was switched off while the scope was open: the event belongs to
  // no file.
  if (g_state.load(std::memory_order_relaxed) != On)
    return;
  if (d.events.size() >= kMaxEvents) {
    ++d.dropped;
    return;
  }
  d.events.push_back(Event{m_name, m_argName, std::move(m_argValue), m_start, end - m_start, tid});
}
