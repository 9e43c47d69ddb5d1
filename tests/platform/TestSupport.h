// Helpers shared by the platform tests: scratch directories, files, and a
// sink that collects messages.
#ifndef BOARDLIB_TESTS_PLATFORM_TESTSUPPORT_H
#define BOARDLIB_TESTS_PLATFORM_TESTSUPPORT_H

#include "ComMsgMgr.h"

#include <boost/filesystem.hpp>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace testsupport {

/// A fresh directory, removed with everything in it at the end of the test.
class TempDir {
public:
  TempDir() {
    const char *base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/boardlib-test-XXXXXX";
    std::vector<char> buf(pattern.begin(), pattern.end());
    buf.push_back('\0');
    if (::mkdtemp(buf.data()))
      m_path = buf.data();
  }
  ~TempDir() {
    boost::system::error_code ec;
    if (!m_path.empty())
      boost::filesystem::remove_all(m_path, ec);
  }
  TempDir(const TempDir &) = delete;
  TempDir &operator=(const TempDir &) = delete;

  const std::string &path() const { return m_path; }
  std::string file(const std::string &name) const { return m_path + "/" + name; }

private:
  std::string m_path;
};

inline void writeFile(const std::string &path, const std::string &content) {
  boost::system::error_code ec;
  boost::filesystem::create_directories(boost::filesystem::path(path).parent_path(), ec);
  std::ofstream out(path, std::ios::binary);
  out << content;
}

/// Runs \p command and gives its output split at new lines; \p ok tells
/// whether it exited with status 0.
inline std::vector<std::string> runLines(const std::string &command, bool &ok) {
  std::vector<std::string> out;
  ok = false;
  FILE *pipe = ::popen(command.c_str(), "r");
  if (!pipe)
    return out;
  std::string line;
  for (int c; (c = std::fgetc(pipe)) != EOF;) {
    if (c != '\n') {
      line += static_cast<char>(c);
    } else {
      out.push_back(line);
      line.clear();
    }
  }
  ok = ::pclose(pipe) == 0;
  return out;
}

/// Installs itself as the message sink for its lifetime and keeps every
/// record it receives.
class CollectingSink : public ComMsgSink {
public:
  CollectingSink() {
    ComMsgMgr::resetCounts();
    ComMsgMgr::setSink(this);
  }
  ~CollectingSink() override { ComMsgMgr::setSink(nullptr); }
  CollectingSink(const CollectingSink &) = delete;
  CollectingSink &operator=(const CollectingSink &) = delete;

  void receive(const ComMsgRecord &record) override { records.push_back(record); }

  std::vector<ComMsgRecord> records;
};

} // namespace testsupport

#endif
