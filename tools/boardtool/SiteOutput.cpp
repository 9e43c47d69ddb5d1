#include "SiteOutput.h"

#include "ComMsgMgr.h"

#include <boost/filesystem.hpp>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace boardtool {

std::string SiteOutput::path(const std::string &relative) const {
  return relative.empty() ? m_dir : (boost::filesystem::path(m_dir) / relative).string();
}

bool SiteOutput::makeFolder(const std::string &relative) const {
  const std::string folder = path(relative);
  boost::system::error_code ec;
  boost::filesystem::create_directories(folder, ec);
  if (!ec && !boost::filesystem::is_directory(folder, ec))
    ec = boost::system::errc::make_error_code(boost::system::errc::not_a_directory);
  if (ec) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-221@%s%s", folder, ec.message());
    return false;
  }
  return true;
}

bool SiteOutput::write(const std::string &relative, const std::string &content) const {
  const std::string target = path(relative);
  const boost::filesystem::path place(target);
  std::string temporary =
      (place.parent_path() / ("." + place.filename().string() + ".XXXXXX")).string();
  int fd = mkstemp(&temporary[0]);
  int error = fd < 0 ? errno : 0;
  if (fd >= 0) {
    const char *data = content.data();
    std::size_t left = content.size();
    while (left > 0 && !error) {
      const ssize_t n = ::write(fd, data, left);
      if (n < 0 && errno == EINTR)
        continue;
      if (n <= 0)
        error = n < 0 ? errno : EIO;
      else {
        data += n;
        left -= static_cast<std::size_t>(n);
      }
    }
    // mkstemp makes the file for its owner alone; a page is for whoever
    // the user's file mask lets read it, as any file the user writes.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (!error && ::fchmod(fd, 0666 & ~mask) != 0)
      error = errno;
    if (::close(fd) != 0 && !error)
      error = errno;
    if (!error && std::rename(temporary.c_str(), target.c_str()) != 0)
      error = errno;
    if (error)
      std::remove(temporary.c_str());
  }
  if (error) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-220@%s%s", target,
                       std::string(std::strerror(error)));
    return false;
  }
  return true;
}

} // namespace boardtool
