#include "HBMBoard.h"

#include "ComMsgMgr.h"
#include "HXMLWInterface.h"
#include "KqStream.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::string joinPath(const std::string &dir, const std::string &name) {
  if (!dir.empty() && dir.back() == '/')
    return dir + name;
  return dir + "/" + name;
}

// Reads \p path into \p doc, decoding a packed file; false when there is no
// document with a root to be had.
bool readDocument(const std::string &path, HXMLWInterface &doc) {
  if (!isl::iostreams::kq::is_kq_format(path))
    return doc.readFromFile(path) && doc.getRootElement();
  // A damaged body yields part of a document, which is not the file.
  std::string buffer, why;
  if (!isl::iostreams::kq::read_all(path, buffer, why))
    return false;
  if (!buffer.empty() && buffer.back() != '\n')
    buffer += '\n';
  return doc.readFromBuffer(buffer, path) && doc.getRootElement();
}

template <typename Record> bool parseWith(const std::string &path, Record &record) {
  HXMLWInterface doc;
  if (!readDocument(path, doc)) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-110@%s", path);
    return false;
  }
  return record.parse(doc.getRootElement());
}

// Creates a file of a name no one uses yet beside \p path, readable as the
// target would be, and gives its name; empty when the directory takes no new
// file.
std::string reserveTemporary(const std::string &path) {
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::string name = path + "." + std::to_string(::getpid()) + "-" +
                             std::to_string(counter.fetch_add(1)) + ".tmp";
    const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd >= 0) {
      ::close(fd);
      return name;
    }
    if (errno != EEXIST)
      break;
  }
  return std::string();
}

// The file that writing to \p path would change: the target of a link,
// so that the rename replaces that file and leaves the link alone.
std::string fileToReplace(const std::string &path) {
  struct stat link;
  if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
    return path;
  char resolved[PATH_MAX];
  return ::realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

// Whether the bytes of \p path reached the disk, so that the rename cannot
// put a file in place whose content a crash would lose.
bool syncToDisk(const std::string &path) {
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd < 0)
    return false;
  const bool synced = ::fsync(fd) == 0;
  ::close(fd);
  return synced;
}

} // namespace

bool HBMBoard::XmlFilePath(const std::string &dir, const std::string &name,
                           std::string &out) const {
  const std::string path = joinPath(dir, name);
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (error || !std::filesystem::exists(status)) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", name);
    return false;
  }
  out = path;
  return true;
}

bool HBMBoard::parseBoardFile(std::string path) { return parseWith(path, m_boardFile); }

bool HBMBoard::parsePins(std::string path) { return parseWith(path, m_pinsFile); }

bool HBMBoard::parsePresets(std::string path) { return parseWith(path, m_presetFile); }

bool HBMBoard::writeBoardFile(std::string dir) {
  return writeFile_(dir, "board.xml", [this](std::ofstream &out) { m_boardFile.write(out); });
}

bool HBMBoard::writePinsFile(std::string dir) {
  return writeFile_(dir, "part0_pins.xml", [this](std::ofstream &out) { m_pinsFile.write(out); });
}

bool HBMBoard::writePresetsFile(std::string dir) {
  return writeFile_(dir, "preset.xml", [this](std::ofstream &out) { m_presetFile.write(out); });
}

bool HBMBoard::writeFile_(const std::string &dir, const char *name,
                          const std::function<void(std::ofstream &)> &body) const {
  const std::string path = joinPath(dir, name);
  const std::string target = fileToReplace(path);
  // A file in place that may not be written stays, as it would if it were
  // opened for output; one that may keeps its permissions.
  struct stat existing;
  const bool exists = ::stat(target.c_str(), &existing) == 0;
  std::string temporary;
  if (!exists || ::access(target.c_str(), W_OK) == 0)
    temporary = reserveTemporary(target);
  bool written = false;
  if (!temporary.empty()) {
    std::ofstream out(temporary, std::ios::out | std::ios::trunc | std::ios::binary);
    if (out) {
      body(out);
      out.close();
      written = !out.fail() &&
                (!exists || ::chmod(temporary.c_str(), existing.st_mode & 07777) == 0) &&
                syncToDisk(temporary) && std::rename(temporary.c_str(), target.c_str()) == 0;
    }
    if (!written)
      std::remove(temporary.c_str());
  }
  if (!written)
    std::cout << "Cannot open" << path << "for output.\n";
  return written;
}
