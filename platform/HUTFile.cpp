#include "HUTFile.h"

#include <boost/filesystem.hpp>

namespace fs = boost::filesystem;

HUTFile::Status HUTFile::status(const std::string &path) {
  if (path.empty())
    return Status::NotFound;
  boost::system::error_code ec;
  fs::file_status st = fs::status(path, ec);
  // status() reports a missing path as file_not_found with an error code set;
  // only other errors mean that the path could not be looked at.
  switch (st.type()) {
  case fs::file_not_found:
    return Status::NotFound;
  case fs::regular_file:
    return Status::Regular;
  case fs::directory_file:
    return Status::Directory;
  case fs::status_error:
    return Status::Error;
  default:
    return ec ? Status::Error : Status::Other;
  }
}

bool HUTFile::exists(const std::string &path) {
  Status st = status(path);
  return st != Status::Error && st != Status::NotFound;
}

bool HUTFile::isRegularFile(const std::string &path) { return status(path) == Status::Regular; }

bool HUTFile::isDirectory(const std::string &path) { return status(path) == Status::Directory; }

std::string HUTFile::parentPath(const std::string &path) {
  return fs::path(path).parent_path().string();
}

std::string HUTFile::fileName(const std::string &path) {
  return fs::path(path).filename().string();
}

bool HUTFile::staysInside(const std::string &name) {
  if (!name.empty() && name[0] == '/')
    return false;
  long depth = 0;
  std::size_t start = 0;
  while (start <= name.size()) {
    std::size_t end = name.find('/', start);
    if (end == std::string::npos)
      end = name.size();
    const std::string part = name.substr(start, end - start);
    if (part == "..") {
      if (--depth < 0)
        return false;
    } else if (!part.empty() && part != ".") {
      ++depth;
    }
    start = end + 1;
  }
  return true;
}

bool HUTFile::isWithin(const std::string &path, const std::string &root) {
  if (root.empty() || path.compare(0, root.size(), root) != 0)
    return false;
  return path.size() == root.size() || root.back() == '/' || path[root.size()] == '/';
}

std::string HUTFile::join(const std::string &dir, const std::string &name) {
  if (dir.empty())
    return name;
  return dir + "/" + name;
}
