#include "HUTFileReplacement.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The file that writing to \p path changes: the target of a link, so that
// the rename replaces that file and leaves the link in place.
std::string fileToReplace(const std::string &path) {
  struct stat link;
  if (::lstat(path.c_str(), &link) != 0 || !S_ISLNK(link.st_mode))
    return path;
  char resolved[PATH_MAX];
  return ::realpath(path.c_str(), resolved) ? std::string(resolved) : path;
}

} // namespace

HUTFileReplacement::HUTFileReplacement(const std::string &path) {
  if (path.empty()) {
    fail_(ENOENT);
    return;
  }
  m_target = fileToReplace(path);
  struct stat existing;
  m_exists = ::stat(m_target.c_str(), &existing) == 0;
  if (m_exists && ::access(m_target.c_str(), W_OK) != 0) {
    fail_(errno);
    return;
  }
  m_mode = m_exists ? static_cast<unsigned>(existing.st_mode & 07777) : 0;
  static std::atomic<unsigned> counter{0};
  for (int attempt = 0; attempt < 100 && m_fd < 0; ++attempt) {
    m_temporary = m_target + "." + std::to_string(::getpid()) + "-" +
                  std::to_string(counter.fetch_add(1)) + ".tmp";
    m_fd = ::open(m_temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (m_fd < 0 && errno != EEXIST)
      break;
  }
  if (m_fd < 0) {
    fail_(errno);
    m_temporary.clear();
  }
}

HUTFileReplacement::~HUTFileReplacement() {
  if (m_fd >= 0)
    ::close(m_fd);
  if (!m_committed && !m_temporary.empty())
    std::remove(m_temporary.c_str());
}

bool HUTFileReplacement::fail_(int code) {
  m_error = std::strerror(code);
  return false;
}

bool HUTFileReplacement::write(std::string_view bytes) {
  if (m_fd < 0)
    return false;
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t n = ::write(m_fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR)
      continue;
    if (n <= 0)
      return fail_(n < 0 ? errno : EIO);
    done += static_cast<std::size_t>(n);
  }
  return true;
}

bool HUTFileReplacement::commit() {
  if (m_fd < 0 || m_committed)
    return false;
  if (m_exists && ::fchmod(m_fd, static_cast<mode_t>(m_mode)) != 0)
    return fail_(errno);
  // What the caller wrote through a stream of its own is on the file by
  // now, the same file as this descriptor's.
  if (::fsync(m_fd) != 0)
    return fail_(errno);
  const int fd = m_fd;
  m_fd = -1;
  if (::close(fd) != 0)
    return fail_(errno);
  if (std::rename(m_temporary.c_str(), m_target.c_str()) != 0)
    return fail_(errno);
  m_committed = true;
  return true;
}
