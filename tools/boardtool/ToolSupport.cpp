#include "ToolSupport.h"
#include "HSTStringUtils.h"
#include "Options.h"

#include <boost/filesystem.hpp>

#include <iostream>

namespace boardtool {

std::string jsonString(const std::string &text) { return HSTStringUtils::jsonQuoted(text); }

std::string absolutePath(const std::string &path) {
  boost::system::error_code ec;
  boost::filesystem::path p = boost::filesystem::absolute(path);
  (void)ec;
  return p.lexically_normal().string();
}

class MessageOutput::Sink : public ComMsgSink {
public:
  explicit Sink(bool json) : m_json(json) {}

  void receive(const ComMsgRecord &record) override {
    if (record.severity == ComMsg::Error || record.severity == ComMsg::CriticalWarning)
      ++errors;
    else if (record.severity == ComMsg::Warning)
      ++warnings;
    if (m_json)
      m_records.push_back(record);
    else
      std::cerr << record.line << std::endl;
  }

  void write(std::ostream &out) const {
    out << "[";
    for (std::size_t i = 0; i < m_records.size(); ++i) {
      const ComMsgRecord &r = m_records[i];
      out << (i ? ",\n " : "\n ") << "{\"severity\": " << jsonString(r.severityName)
          << ", \"id\": " << jsonString(r.id) << ", \"key\": " << jsonString(r.key)
          << ", \"args\": [";
      for (std::size_t a = 0; a < r.args.size(); ++a)
        out << (a ? ", " : "") << jsonString(r.args[a]);
      out << "], \"text\": " << jsonString(r.text) << "}";
    }
    out << (m_records.empty() ? "]\n" : "\n]\n");
  }

  bool json() const { return m_json; }
  unsigned errors = 0, warnings = 0;

private:
  bool m_json;
  std::vector<ComMsgRecord> m_records;
};

MessageOutput::MessageOutput(bool json) : m_sink(new Sink(json)) {
  ComMsgMgr::setSink(m_sink.get());
}

MessageOutput::~MessageOutput() {
  ComMsgMgr::setSink(nullptr);
  if (m_sink->json())
    m_sink->write(std::cerr);
}

unsigned MessageOutput::errors() const { return m_sink->errors; }

unsigned MessageOutput::warnings() const { return m_sink->warnings; }

void MessageOutput::resetCounts() { m_sink->errors = m_sink->warnings = 0; }

int usageError(const Command &command, const std::string &text) {
  std::cerr << "boardtool " << command.name << ": " << text << "\n"
            << "usage: " << usageLine(command) << "\n"
            << "Run 'boardtool " << command.name << " --help' for details.\n";
  return Usage;
}

} // namespace boardtool
