// Shared pieces of the reader tests: message collection and test data paths.
#ifndef BOARDLIB_TESTS_READERTESTSUPPORT_H
#define BOARDLIB_TESTS_READERTESTSUPPORT_H

#include "ComMsgMgr.h"
#include "HPAParamMgr.h"

#include <algorithm>
#include <string>
#include <vector>

namespace test {

inline std::string dataPath(const std::string &relative) {
  return std::string(BOARDLIB_TEST_DATA) + "/" + relative;
}

/// Collects every message sent while it lives.
class Messages : public ComMsgSink {
public:
  Messages() { ComMsgMgr::setSink(this); }
  ~Messages() override { ComMsgMgr::setSink(nullptr); }
  void receive(const ComMsgRecord &record) override {
    if (record.severityName != "DEBUG")
      records.push_back(record);
  }

  std::vector<std::string> ids() const {
    std::vector<std::string> out;
    for (const auto &r : records)
      out.push_back(r.id);
    return out;
  }
  std::size_t count(const std::string &id) const {
    return std::count_if(records.begin(), records.end(),
                         [&](const ComMsgRecord &r) { return r.id == id; });
  }
  /// The first record of \p id, or null.
  const ComMsgRecord *find(const std::string &id) const {
    for (const auto &r : records)
      if (r.id == id)
        return &r;
    return nullptr;
  }
  /// Whether some message's text contains \p part.
  bool mentions(const std::string &part) const {
    for (const auto &r : records)
      if (r.text.find(part) != std::string::npos)
        return true;
    return false;
  }

  std::vector<ComMsgRecord> records;
};

/// The ids of what a parser queued, in queue order.
template <typename Parser> std::vector<std::string> queuedIds(const Parser &parser) {
  std::vector<std::string> out;
  for (const auto &entry : parser.getMessages())
    out.push_back(entry.first.getId());
  return out;
}

/// Whether some queued message's text contains \p part.
template <typename Parser> bool queuedMentions(const Parser &parser, const std::string &part) {
  for (const auto &entry : parser.getMessages())
    if (entry.first.getText().find(part) != std::string::npos)
      return true;
  return false;
}

/// Sets a parameter for the life of the object.
class ParamScope {
public:
  ParamScope(const std::string &name, const std::string &value) : m_name(name) {
    m_old = HPAParamMgr::getParamMgr().getValueAsString(name);
    HPAParamMgr::getParamMgr().setValue(name, value);
  }
  ~ParamScope() { HPAParamMgr::getParamMgr().setValue(m_name, m_old); }

private:
  std::string m_name, m_old;
};

} // namespace test

#endif
