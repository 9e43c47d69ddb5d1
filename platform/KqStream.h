// The packed-file stream: a board file stored gzip-compressed, read back as
// text. kq::is_kq_format tells a packed file from a plain one by its first
// bytes; filtering_stream decodes it so that std::getline yields its lines.
#ifndef BOARDLIB_PLATFORM_KQSTREAM_H
#define BOARDLIB_PLATFORM_KQSTREAM_H

#include <istream>
#include <memory>
#include <string>

namespace isl {
namespace iostreams {

namespace kq {
/// True when the file starts with the gzip magic bytes 0x1f 0x8b. A file
/// that cannot be read, that is no regular file (it is never waited on), or
/// is shorter than two bytes, is no packed file.
bool is_kq_format(const std::string &path);
} // namespace kq

/// An input stream over the decoded content of a packed file. A file that
/// cannot be opened, is no regular file or is larger than
/// HUTFileUtils::maxFileSize() leaves the stream failed at once. A damaged
/// or truncated body, or one that unpacks to more than that limit, ends the
/// stream with badbit set as soon as it is found; reading never throws
/// unless the caller asked for exceptions().
class filtering_stream : public std::istream {
public:
  explicit filtering_stream(const std::string &path);
  ~filtering_stream() override;
  filtering_stream(const filtering_stream &) = delete;
  filtering_stream &operator=(const filtering_stream &) = delete;

  /// Whether the file could be opened.
  bool isOpen() const;
  /// Why the file could not be opened, or why its body could not be
  /// decoded ("the packed stream is truncated", "bad CRC: ...", "it is not
  /// gzip data", a size over the limit, "out of memory"); empty while all
  /// is well.
  const std::string &getError() const;

private:
  class Buffer;
  std::unique_ptr<Buffer> m_buffer;
};

namespace kq {
/// Decodes the whole packed file \p path and appends it to \p out, under
/// the rules of filtering_stream. False when the file cannot be opened, its
/// body is damaged, cut short or too large, or memory runs out, with the
/// reason in \p error; \p out then holds no more than was decoded.
bool read_all(const std::string &path, std::string &out, std::string &error);
} // namespace kq

} // namespace iostreams
} // namespace isl

#endif
