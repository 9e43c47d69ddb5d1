// Helpers shared by the object model tests: a scratch directory, a message
// recorder and a few builders.
#ifndef BOARDLIB_MODELTESTUTIL_H
#define BOARDLIB_MODELTESTUTIL_H

#include "ComMsgMgr.h"

#include <boost/filesystem.hpp>

#include <fstream>
#include <string>
#include <vector>

namespace modeltest {

/// A fresh directory, removed with its contents at the end of the scope.
class ScratchDir {
public:
  ScratchDir() {
    m_path = boost::filesystem::temp_directory_path() /
             boost::filesystem::unique_path("model-test-%%%%-%%%%-%%%%");
    boost::filesystem::create_directories(m_path);
  }
  ~ScratchDir() {
    boost::system::error_code ec;
    boost::filesystem::remove_all(m_path, ec);
  }
  std::string path() const { return m_path.string(); }
  /// Writes \p text to \p name inside the directory; gives the full path.
  std::string write(const std::string &name, const std::string &text) const {
    const std::string full = (m_path / name).string();
    std::ofstream(full) << text;
    return full;
  }

private:
  boost::filesystem::path m_path;
};

/// Records every message delivered while it is alive.
class MessageRecorder : public ComMsgSink {
public:
  MessageRecorder() { ComMsgMgr::setSink(this); }
  ~MessageRecorder() override { ComMsgMgr::setSink(nullptr); }
  void receive(const ComMsgRecord &record) override { records.push_back(record); }
  std::vector<std::string> keys() const {
    std::vector<std::string> result;
    for (const ComMsgRecord &record : records)
      result.push_back(record.key);
    return result;
  }
  std::vector<ComMsgRecord> records;
};

} // namespace modeltest

#endif
