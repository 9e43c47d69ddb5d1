#include "HUTFileUtils.h"
#include "HPAParamMgr.h"
#include "HUTFileReplacement.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = boost::filesystem;

const char *const HUTFileUtils::kMaxFileSizeParam = "board.maxFileSize";

namespace {

// What a path is when it is not a regular file, for the reason of a refusal.
const char *kindOf(mode_t mode) {
  if (S_ISDIR(mode))
    return "a directory";
  if (S_ISFIFO(mode))
    return "a named pipe";
  if (S_ISCHR(mode))
    return "a character device";
  if (S_ISBLK(mode))
    return "a block device";
  if (S_ISSOCK(mode))
    return "a socket";
  return "no regular file";
}

void setError(std::string *error, const std::string &text) {
  if (error)
    *error = text;
}

} // namespace

std::size_t HUTFileUtils::maxFileSize() {
  long long limit = HPAParamMgr::getParamMgr().getValueAsInt(kMaxFileSizeParam);
  // Zero or less would refuse every file; the parameter cannot switch the
  // bound off, only move it.
  return limit > 0 ? static_cast<std::size_t>(limit) : std::size_t(1);
}

std::string HUTFileUtils::tooLargeText(std::size_t limit) {
  return "it is larger than the limit of " + std::to_string(limit) + " bytes (parameter " +
         kMaxFileSizeParam + ")";
}

int HUTFileUtils::openRegularFile(const std::string &path, std::size_t &size, std::string *error) {
  size = 0;
  // Looked at before the open, so that a device is not even opened; and
  // again on the descriptor, in case the path changed in between. The open
  // does not wait for a writer should a pipe have come in meanwhile.
  struct stat st;
  if (::stat(path.c_str(), &st) != 0) {
    setError(error, std::strerror(errno));
    return -1;
  }
  if (!S_ISREG(st.st_mode)) {
    setError(error, std::string("it is ") + kindOf(st.st_mode) + ", not a regular file");
    return -1;
  }
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0) {
    setError(error, std::strerror(errno));
    return -1;
  }
  if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
    setError(error, std::string("it is ") + kindOf(st.st_mode) + ", not a regular file");
    ::close(fd);
    return -1;
  }
  const std::size_t limit = maxFileSize();
  if (static_cast<unsigned long long>(st.st_size) > limit) {
    setError(error, tooLargeText(limit));
    ::close(fd);
    return -1;
  }
  size = static_cast<std::size_t>(st.st_size);
  return fd;
}

bool HUTFileUtils::readFile(const std::string &path, std::string &out, std::string *error) {
  out.clear();
  std::size_t size = 0;
  const int fd = openRegularFile(path, size, error);
  if (fd < 0)
    return false;
  // The size is the one at the open; a file that grows meanwhile is read no
  // further than the limit.
  const std::size_t limit = maxFileSize();
  bool ok = true;
  try {
    out.resize(size);
    std::size_t got = 0;
    for (;;) {
      if (got == out.size()) {
        if (out.size() > limit)
          break;
        out.resize(std::min(limit + 1, std::max<std::size_t>(out.size() * 2, 4096)));
      }
      const ssize_t n = ::read(fd, &out[got], out.size() - got);
      if (n < 0 && errno == EINTR)
        continue;
      if (n < 0) {
        setError(error, std::strerror(errno));
        ok = false;
        break;
      }
      if (n == 0)
        break;
      got += static_cast<std::size_t>(n);
    }
    out.resize(got);
    if (ok && got > limit) {
      setError(error, tooLargeText(limit));
      ok = false;
    }
  } catch (const std::bad_alloc &) {
    setError(error, "out of memory");
    ok = false;
  }
  ::close(fd);
  if (!ok)
    std::string().swap(out);
  return ok;
}

std::vector<std::string> HUTFileUtils::findFiles(const std::string &dir,
                                                 const std::string &fileName,
                                                 std::vector<std::string> *unreadable,
                                                 std::vector<std::string> *notRegular,
                                                 std::size_t maxDepth) {
  std::vector<std::string> found;
  if (dir.empty())
    return found;
  // An explicit stack instead of recursion: the depth of a tree on disk is
  // not ours to bound.
  // Each folder with the level of its entries.
  std::vector<std::pair<fs::path, std::size_t>> pending{{fs::path(dir), 0}};
  while (!pending.empty()) {
    fs::path current = std::move(pending.back().first);
    const std::size_t depth = pending.back().second;
    pending.pop_back();
    boost::system::error_code ec;
    fs::directory_iterator it(current, ec);
    if (ec) {
      if (unreadable)
        unreadable->push_back(current.string());
      continue;
    }
    for (fs::directory_iterator end; !ec && it != end; it.increment(ec)) {
      const fs::path &entry = it->path();
      boost::system::error_code linkEc;
      fs::file_status own = fs::symlink_status(entry, linkEc);
      if (linkEc) {
        // Not even looked at (a name too long, say): it may be a folder.
        if (unreadable)
          unreadable->push_back(entry.string());
        continue;
      }
      if (fs::is_directory(own)) {
        if (depth < maxDepth)
          pending.emplace_back(entry, depth + 1);
        continue;
      }
      if (entry.filename().string() != fileName)
        continue;
      boost::system::error_code targetEc;
      if (fs::is_regular_file(fs::status(entry, targetEc)) && !targetEc)
        found.push_back(entry.string());
      else if (notRegular)
        notRegular->push_back(entry.string());
    }
    // A listing that broke off counts as unreadable too: what it did give
    // is kept.
    if (ec && unreadable)
      unreadable->push_back(current.string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

std::string HUTFileUtils::canonical(const std::string &path) {
  if (path.empty())
    return path;
  boost::system::error_code ec;
  fs::path resolved = fs::canonical(path, ec);
  if (ec)
    return path;
  return resolved.string();
}

bool HUTFileUtils::replaceFile(const std::string &path, std::string_view bytes,
                               std::string *error) {
  // Each step refuses to run after one that failed, and the error is that
  // step's.
  HUTFileReplacement replacement(path);
  if (replacement.write(bytes) && replacement.commit())
    return true;
  if (error)
    *error = replacement.getError();
  return false;
}
