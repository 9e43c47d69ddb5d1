// File helpers of the platform: whole-file reads, searches and canonical
// names. None of them throws.
#ifndef BOARDLIB_PLATFORM_HUTFILEUTILS_H
#define BOARDLIB_PLATFORM_HUTFILEUTILS_H

#include <string>
#include <vector>

namespace HUTFileUtils {
/// Reads the whole file, bytes as they are, into \p out. On failure returns
/// false, leaves \p out empty and, when \p error is given, says why.
bool readFile(const std::string &path, std::string &out, std::string *error);
/// Every regular file named exactly \p fileName below \p dir, at any depth,
/// sorted. Subdirectories that cannot be read are skipped; symbolic links to
/// directories are not followed, so a link loop cannot trap the walk.
std::vector<std::string> findFiles(const std::string &dir, const std::string &fileName);
/// The absolute path with links, "." and ".." resolved; the path as given
/// when it cannot be resolved (for instance when it does not exist).
std::string canonical(const std::string &path);
} // namespace HUTFileUtils

#endif
