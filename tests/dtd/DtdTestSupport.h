// Pieces shared by the DTD tests: scratch directories and the small board
// files written into them.
#ifndef BOARDLIB_TESTS_DTDTESTSUPPORT_H
#define BOARDLIB_TESTS_DTDTESTSUPPORT_H

#include "ComMsgMgr.h"
#include "ReaderTestSupport.h"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace test {

inline const std::string kSchemaDir = BOARDLIB_SCHEMA_DIR;

/// A directory of its own for the life of the object.
class ScratchDir {
public:
  ScratchDir() {
    static std::atomic<int> next{0};
    m_path = std::filesystem::temp_directory_path() /
             ("dtd_tests_" + std::to_string(::getpid()) + "_" + std::to_string(next++));
    std::filesystem::create_directories(m_path);
  }
  ~ScratchDir() {
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
  }
  ScratchDir(const ScratchDir &) = delete;
  ScratchDir &operator=(const ScratchDir &) = delete;

  std::string path() const { return m_path.string(); }
  /// Writes \p text to \p name inside the directory and returns its path.
  std::string write(const std::string &name, const std::string &text) const {
    std::filesystem::path file = m_path / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file.string();
  }

private:
  std::filesystem::path m_path;
};

/// The findings of a validation, as the message sink saw them.
inline std::size_t findingCount(const Messages &msgs) {
  return msgs.count("49-105") + msgs.count("49-106");
}

/// A board that the DTD accepts, with \p body inside its root element. The
/// root element stands on line 2, \p body begins on line 4.
inline std::string boardText(const std::string &body) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<board schema_version=\"2.1\" vendor=\"kestrel-boards\" name=\"probe\">\n"
         "  <file_version>1.0</file_version>\n" +
         body + "</board>\n";
}

} // namespace test

#endif
