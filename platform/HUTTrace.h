// Trace events for profiling, written as a JSON trace that the Chrome and
// Perfetto trace viewers open. Tracing is on when the environment variable
// BOARDLIB_TRACE names a file (read at first use) or after setOutput. While
// it is off a scope costs one relaxed atomic load.
#ifndef BOARDLIB_PLATFORM_HUTTRACE_H
#define BOARDLIB_PLATFORM_HUTTRACE_H

#include <cstdint>
#include <string>

/// Records one complete event, from construction to destruction, with one
/// argument, when tracing is on.
class HUTTraceScope {
public:
  /// \p name and \p argName must outlive the scope (string literals do).
  HUTTraceScope(const char *name, const char *argName, const std::string &argValue);
  ~HUTTraceScope();
  HUTTraceScope(const HUTTraceScope &) = delete;
  HUTTraceScope &operator=(const HUTTraceScope &) = delete;

private:
  const char *m_name = nullptr;
  const char *m_argName = nullptr;
  std::string m_argValue;
  std::int64_t m_start = 0; ///< microseconds since the trace clock's start
  bool m_on = false;
};

namespace HUTTrace {
/// Whether events are being recorded.
bool enabled();
/// Sends later events to \p path; "" switches tracing off. Events recorded
/// for the previous output are written there first and then forgotten, so
/// each file holds the events of its own period.
void setOutput(const std::string &path);
/// (Re)writes the output file with every event recorded for it so far. Also
/// done at process exit.
void flush();
} // namespace HUTTrace

#endif
