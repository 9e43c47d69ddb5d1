#include "ToolSupport.h"
#include "HPAParamMgr.h"
#include "HSTStringUtils.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <iostream>

namespace boardtool {

std::string jsonString(const std::string &text) { return HSTStringUtils::jsonQuoted(text); }

std::string absolutePath(const std::string &path) {
  boost::system::error_code ec;
  boost::filesystem::path p = boost::filesystem::absolute(path);
  (void)ec;
  return p.lexically_normal().string();
}

bool CommonOptions::parse(const std::vector<std::string> &args, std::string &error,
                          const std::vector<std::string> &extraFlags) {
  HPAParamMgr &params = HPAParamMgr::getParamMgr();
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string &arg = args[i];
    std::string setting;
    if (arg == "--param") {
      if (i + 1 >= args.size()) {
        error = "--param needs NAME=VALUE";
        return false;
      }
      setting = args[++i];
    } else if (arg.compare(0, 8, "--param=") == 0) {
      setting = arg.substr(8);
    } else if (arg == "--messages=json") {
      jsonMessages = true;
      continue;
    } else if (arg == "--messages=text") {
      jsonMessages = false;
      continue;
    } else if (arg == "--debug") {
      if (i + 1 >= args.size()) {
        error = "--debug needs a scope, such as board.parse";
        return false;
      }
      ComMsgMgr::enableScope(args[++i]);
      continue;
    } else if (std::find(extraFlags.begin(), extraFlags.end(), arg) != extraFlags.end()) {
      flags.push_back(arg);
      continue;
    } else if (arg == "--") {
      positional.insert(positional.end(), args.begin() + i + 1, args.end());
      return true;
    } else if (arg.size() > 1 && arg[0] == '-') {
      error = "unknown option '" + arg + "'";
      return false;
    } else {
      positional.push_back(arg);
      continue;
    }
    std::string::size_type eq = setting.find('=');
    if (eq == std::string::npos || eq == 0) {
      error = "--param takes NAME=VALUE, not '" + setting + "'";
      return false;
    }
    if (!params.setValue(setting.substr(0, eq), setting.substr(eq + 1), &error))
      return false;
  }
  return true;
}

bool CommonOptions::hasFlag(const std::string &flag) const {
  return std::find(flags.begin(), flags.end(), flag) != flags.end();
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

MessageOutput::MessageOutput(bool json) : m_sink(new Sink(json)) { ComMsgMgr::setSink(m_sink.get()); }

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
            << "usage: " << command.usage << "\n"
            << "Run 'boardtool " << command.name << " --help' for details.\n";
  return Usage;
}

} // namespace boardtool
