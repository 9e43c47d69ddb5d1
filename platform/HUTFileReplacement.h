// A file put in place whole or not at all. The new content goes to a file of
// its own beside the target, written by whatever means suits the caller;
// commit() makes it reach the disk and renames it over the target, and a
// replacement that is not committed leaves no trace. A reader never sees half
// a file, and a failed write leaves the file that stood there.
#ifndef BOARDLIB_PLATFORM_HUTFILEREPLACEMENT_H
#define BOARDLIB_PLATFORM_HUTFILEREPLACEMENT_H

#include <string>
#include <string_view>

class HUTFileReplacement {
public:
  /// Makes the new file beside \p path. Where \p path is a link, the file it
  /// leads to is the one replaced and the link stays. A file in place that
  /// may not be written is refused, as opening it for output would be.
  explicit HUTFileReplacement(const std::string &path);
  /// Removes the new file unless it was committed.
  ~HUTFileReplacement();
  HUTFileReplacement(const HUTFileReplacement &) = delete;
  HUTFileReplacement &operator=(const HUTFileReplacement &) = delete;

  bool isOpen() const { return m_fd >= 0; }
  /// The new file, for a caller that writes it itself (and closes what it
  /// opened on it before commit).
  const std::string &getTemporaryPath() const { return m_temporary; }
  /// Appends \p bytes to the new file.
  bool write(std::string_view bytes);
  /// Gives the new file the permissions of the one it replaces, makes it
  /// reach the disk, and renames it over the target.
  bool commit();
  /// Why the last step failed, in words.
  const std::string &getError() const { return m_error; }

private:
  bool fail_(int code);

  std::string m_target;
  std::string m_temporary;
  int m_fd = -1;
  bool m_exists = false;
  unsigned m_mode = 0;
  bool m_committed = false;
  std::string m_error;
};

#endif
