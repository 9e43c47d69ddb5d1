#include "HUTFileUtils.h"

#include <boost/filesystem.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace fs = boost::filesystem;

bool HUTFileUtils::readFile(const std::string &path, std::string &out, std::string *error) {
  out.clear();
  boost::system::error_code ec;
  if (fs::is_directory(path, ec)) {
    if (error)
      *error = "is a directory";
    return false;
  }
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    if (error)
      *error = std::strerror(errno);
    return false;
  }
  std::ostringstream content;
  content << in.rdbuf();
  if (in.bad()) {
    if (error)
      *error = "read error";
    return false;
  }
  out = content.str();
  return true;
}

std::vector<std::string> HUTFileUtils::findFiles(const std::string &dir,
                                                 const std::string &fileName) {
  std::vector<std::string> found;
  if (dir.empty())
    return found;
  // An explicit stack instead of recursion: the depth of a tree on disk is
  // not ours to bound.
  std::vector<fs::path> pending{fs::path(dir)};
  while (!pending.empty()) {
    fs::path current = std::move(pending.back());
    pending.pop_back();
    boost::system::error_code ec;
    fs::directory_iterator it(current, ec);
    if (ec)
      continue;
    for (fs::directory_iterator end; it != end; it.increment(ec)) {
      if (ec)
        break;
      const fs::path &entry = it->path();
      boost::system::error_code linkEc;
      fs::file_status own = fs::symlink_status(entry, linkEc);
      if (linkEc)
        continue;
      if (fs::is_directory(own)) {
        pending.push_back(entry);
        continue;
      }
      if (entry.filename().string() != fileName)
        continue;
      boost::system::error_code targetEc;
      if (fs::is_regular_file(fs::status(entry, targetEc)) && !targetEc)
        found.push_back(entry.string());
    }
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
