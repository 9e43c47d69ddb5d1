// File helpers of the platform: whole-file reads and writes, searches and
// canonical names. None of them throws.
#ifndef BOARDLIB_PLATFORM_HUTFILEUTILS_H
#define BOARDLIB_PLATFORM_HUTFILEUTILS_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace HUTFileUtils {
/// The name of the parameter that bounds the size of one data file.
extern const char *const kMaxFileSizeParam;
/// The largest data file, in bytes, that is read: on disk, and once more
/// after unpacking. Anything larger is a file made to exhaust memory, not a
/// board.
std::size_t maxFileSize();
/// "it is larger than the limit of N bytes (parameter ...)", the reason
/// given for a file over \p limit.
std::string tooLargeText(std::size_t limit);

/// Opens \p path for reading when it is a regular file (links followed) of
/// at most maxFileSize() bytes, and gives the descriptor and its size. A
/// pipe, a device or a socket is refused without ever waiting on it. On
/// failure returns -1 and, when \p error is given, says why in words that
/// can follow "cannot read FILE: ".
int openRegularFile(const std::string &path, std::size_t &size, std::string *error);
/// Reads the whole file, bytes as they are, into \p out, under the rules of
/// openRegularFile. On failure returns false, leaves \p out empty and, when
/// \p error is given, says why.
bool readFile(const std::string &path, std::string &out, std::string *error);
/// Every regular file named exactly \p fileName below \p dir, at any depth,
/// sorted. Subdirectories that cannot be read are skipped, and put into
/// \p unreadable when it is given; symbolic links to directories are not
/// followed, so a link loop cannot trap the walk. Entries of the name that
/// are no regular file (a pipe, a device, a dangling link) are left out, and
/// put into \p notRegular when it is given. Folders more than \p maxDepth
/// levels below \p dir are not searched (its own entries are at level 0).
std::vector<std::string> findFiles(const std::string &dir, const std::string &fileName,
                                   std::vector<std::string> *unreadable = nullptr,
                                   std::vector<std::string> *notRegular = nullptr,
                                   std::size_t maxDepth = static_cast<std::size_t>(-1));
/// Puts \p bytes in place of the file \p path, whole or not at all: they
/// go to a new file beside it, which reaches the disk and is then renamed
/// over it, so that a reader never sees half a file and a failed write
/// leaves the file that stood there. Where \p path is a link, the file it
/// leads to is replaced and the link stays. A file in place keeps its
/// permissions, and one that may not be written stays as it is. On failure
/// returns false and, when \p error is given, says why.
bool replaceFile(const std::string &path, std::string_view bytes, std::string *error);
/// The absolute path with links, "." and ".." resolved; the path as given
/// when it cannot be resolved (for instance when it does not exist).
std::string canonical(const std::string &path);
} // namespace HUTFileUtils

#endif
