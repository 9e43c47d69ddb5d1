#include "ToolSupport.h"
#include "HSTStringUtils.h"
#include "Options.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <iostream>
#include <limits>
#include <mutex>

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
  Sink(bool json, bool places, std::vector<std::string> uncounted)
      : m_json(json), m_places(places), m_uncounted(std::move(uncounted)) {}

  void receive(const ComMsgRecord &record) override {
    count_(record);
    if (m_places)
      m_pending.push_back(record);
    else if (m_json)
      m_records.push_back(record);
    else
      std::cerr << record.line << std::endl;
  }

  // The findings held back, in the order of the files they lie in (as each
  // first came up) and of their lines there; what lies in no file follows.
  void flush() {
    std::vector<std::string> files;
    auto rank = [&files](const ComMsgRecord &r) {
      if (r.placeFile.empty())
        return std::numeric_limits<std::size_t>::max();
      auto at = std::find(files.begin(), files.end(), r.placeFile);
      if (at == files.end())
        at = files.insert(files.end(), r.placeFile);
      return static_cast<std::size_t>(at - files.begin());
    };
    std::vector<std::pair<std::size_t, std::size_t>> order; // rank, index
    for (std::size_t i = 0; i < m_pending.size(); ++i)
      order.emplace_back(rank(m_pending[i]), i);
    std::stable_sort(order.begin(), order.end(), [this](const auto &a, const auto &b) {
      if (a.first != b.first)
        return a.first < b.first;
      return m_pending[a.second].placeLine < m_pending[b.second].placeLine;
    });
    for (const auto &entry : order) {
      const ComMsgRecord &record = m_pending[entry.second];
      if (m_json)
        m_records.push_back(record);
      else if (!record.placeFile.empty())
        std::cerr << placeOf_(record) << ": " << record.line << std::endl;
      else
        std::cerr << record.line << std::endl;
    }
    m_pending.clear();
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
      out << "], \"text\": " << jsonString(r.text);
      if (m_places) {
        out << ", \"file\": " << (r.placeFile.empty() ? "null" : jsonString(r.placeFile))
            << ", \"line\": ";
        if (r.placeLine)
          out << r.placeLine;
        else
          out << "null";
      }
      out << "}";
    }
    out << (m_records.empty() ? "]\n" : "\n]\n");
  }

  bool json() const { return m_json; }
  unsigned errors = 0, warnings = 0;

private:
  void count_(const ComMsgRecord &record) {
    if (m_places) {
      if (record.impact == ComMsg::Blocking) {
        ++errors;
        return;
      }
      if (record.impact == ComMsg::Advisory) {
        ++warnings;
        return;
      }
      for (const std::string &id : m_uncounted)
        if (record.id == id)
          return;
    }
    if (record.severity == ComMsg::Error || record.severity == ComMsg::CriticalWarning)
      ++errors;
    else if (record.severity == ComMsg::Warning)
      ++warnings;
  }

  static std::string placeOf_(const ComMsgRecord &record) {
    if (!record.placeLine)
      return record.placeFile;
    return record.placeFile + ":" + std::to_string(record.placeLine);
  }

  bool m_json;
  bool m_places;
  std::vector<std::string> m_uncounted;
  std::vector<ComMsgRecord> m_pending;
  std::vector<ComMsgRecord> m_records;
};

MessageOutput::MessageOutput(bool json, bool places, std::vector<std::string> uncounted)
    : m_sink(new Sink(json, places, std::move(uncounted))) {
  ComMsgMgr::setSink(m_sink.get());
}

MessageOutput::~MessageOutput() {
  ComMsgMgr::setSink(nullptr);
  m_sink->flush();
  if (m_sink->json())
    m_sink->write(std::cerr);
}

unsigned MessageOutput::errors() const { return m_sink->errors; }

unsigned MessageOutput::warnings() const { return m_sink->warnings; }

void MessageOutput::flush() { m_sink->flush(); }

void MessageOutput::resetCounts() { m_sink->errors = m_sink->warnings = 0; }

int usageError(const Command &command, const std::string &text) {
  std::cerr << "boardtool " << command.name << ": " << text << "\n"
            << "usage: " << usageLine(command) << "\n"
            << "Run 'boardtool " << command.name << " --help' for details.\n";
  return Usage;
}

// Redraws only when the bar moves, so that a large installation is not
// slowed by its own display; the load calls it from its workers, hence the
// lock.
void drawProgress(const char *label, std::size_t done, std::size_t total) {
  static std::mutex mutex;
  static std::size_t lastCells = static_cast<std::size_t>(-1), lastTotal = 0;
  static const char *lastLabel = nullptr;
  const std::size_t width = 30;
  std::size_t cells = total ? done * width / total : width;
  std::lock_guard<std::mutex> lock(mutex);
  if (cells == lastCells && total == lastTotal && label == lastLabel && done != total)
    return;
  lastCells = cells;
  lastTotal = total;
  lastLabel = label;
  std::cerr << "\r" << label << " [" << std::string(cells, '=') << std::string(width - cells, ' ')
            << "] " << done << "/" << total << std::flush;
}

} // namespace boardtool
