// File-system queries of the platform. None of them throws: a path that
// cannot be looked at is reported through the result.
#ifndef BOARDLIB_PLATFORM_HUTFILE_H
#define BOARDLIB_PLATFORM_HUTFILE_H

#include <string>

namespace HUTFile {
/// What a path is, following symbolic links.
enum class Status {
  Error,     ///< the status could not be read (permission, loop, too long)
  NotFound,  ///< nothing exists under the path
  Regular,   ///< a regular file
  Directory, ///< a directory
  Other,     ///< anything else: device, socket, pipe
};

Status status(const std::string &path);
/// True when the path exists and could be looked at: neither Error nor NotFound.
bool exists(const std::string &path);
bool isRegularFile(const std::string &path);
bool isDirectory(const std::string &path);
/// The path without its last element, as Boost.Filesystem gives it: "" for
/// "x", "." for "./x", "/" for "/x".
std::string parentPath(const std::string &path);
/// The last element of the path.
std::string fileName(const std::string &path);
/// Whether \p name, taken relative to some folder, names something inside
/// that folder: not absolute, and no ".." that climbs above where it
/// starts. Only the text is looked at; links are not followed.
bool staysInside(const std::string &name);
/// Whether the absolute path \p path is \p root or lies below it, both
/// written alike (canonical, say): "/a/bc" is not below "/a/b".
bool isWithin(const std::string &path, const std::string &root);
/// \p dir, "/", \p name; \p name alone when \p dir is empty.
std::string join(const std::string &dir, const std::string &name);
} // namespace HUTFile

#endif
