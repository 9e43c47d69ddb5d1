#include "HBOBoardDiagram.h"

#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBODiagramContent.h"
#include "HBODiagramLayout.h"
#include "HBODiagramSvgWriter.h"

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

// Writes \p bytes to a new file beside \p target, then renames it over
// \p target, so that a reader never sees half a diagram and a failed write
// leaves the file that stood there. \p error says why it failed.
bool replaceFile(const std::string &target, const std::string &bytes, std::string &error) {
  static std::atomic<unsigned> counter{0};
  std::string temporary;
  int fd = -1;
  for (int attempt = 0; attempt < 100 && fd < 0; ++attempt) {
    temporary = target + "." + std::to_string(::getpid()) + "." +
                std::to_string(counter.fetch_add(1)) + ".tmp";
    fd = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0 && errno != EEXIST)
      break;
  }
  if (fd < 0) {
    error = std::strerror(errno);
    return false;
  }
  std::size_t done = 0;
  bool ok = true;
  while (ok && done < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR)
      continue;
    ok = n > 0;
    if (ok)
      done += static_cast<std::size_t>(n);
  }
  ok = ok && ::fsync(fd) == 0;
  if (!ok)
    error = std::strerror(errno);
  if (::close(fd) != 0 && ok) {
    ok = false;
    error = std::strerror(errno);
  }
  if (ok && std::rename(temporary.c_str(), target.c_str()) != 0) {
    ok = false;
    error = std::strerror(errno);
  }
  if (!ok)
    std::remove(temporary.c_str());
  return ok;
}

} // namespace

namespace HBOBoardDiagram {

bool checkOptions(const HBOBoard &board, const HBODiagramOptions &options) {
  return HBODiagramContent::checkJumpers(board, options);
}

std::string toSvg(const HBOBoard &board, const HBODiagramOptions &options) {
  const HBODiagramContent content(board, options);
  const HBODiagramLayout layout(content);
  return HBODiagramSvgWriter::write(content, layout);
}

bool writeSvg(const HBOBoard &board, const std::string &path, const HBODiagramOptions &options) {
  if (!checkOptions(board, options))
    return false;
  std::string error;
  if (path.empty()) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-202@%s%s", path, std::string("no file named"));
    return false;
  }
  if (!replaceFile(fileToReplace(path), toSvg(board, options), error)) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-202@%s%s", path, error);
    return false;
  }
  return true;
}

} // namespace HBOBoardDiagram
