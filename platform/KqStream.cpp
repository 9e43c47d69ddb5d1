#include "KqStream.h"
#include "HUTFileUtils.h"

#include <zlib.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <stdexcept>
#include <streambuf>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace isl {
namespace iostreams {

bool kq::is_kq_format(const std::string &path) {
  // Not blocking, and only a regular file is looked into: a pipe would hold
  // the open (or the read) until a writer comes, which may be never. What
  // is refused here is refused with its reason by the read that follows.
  const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (fd < 0)
    return false;
  struct stat st;
  unsigned char magic[2] = {0, 0};
  ssize_t got = 0;
  if (::fstat(fd, &st) == 0 && S_ISREG(st.st_mode)) {
    do
      got = ::read(fd, magic, sizeof magic);
    while (got < 0 && errno == EINTR);
  }
  ::close(fd);
  return got == static_cast<ssize_t>(sizeof magic) && magic[0] == 0x1f && magic[1] == 0x8b;
}

// Decodes with zlib straight from the descriptor, so that the reason of a
// failure is known (a truncated stream, a bad CRC, no gzip at all) and the
// unpacked size is counted as it grows: a small file that unpacks to
// gigabytes is stopped at the limit, not after it has filled the memory.
class filtering_stream::Buffer : public std::streambuf {
public:
  explicit Buffer(const std::string &path) : m_limit(HUTFileUtils::maxFileSize()) {
    std::size_t size = 0;
    m_fd = HUTFileUtils::openRegularFile(path, size, &m_error);
    if (m_fd < 0)
      return;
    // Only gzip, with its header and CRC; a raw or zlib stream is refused.
    if (inflateInit2(&m_zs, 15 + 16) != Z_OK) {
      m_error = "out of memory";
      ::close(m_fd);
      m_fd = -1;
      return;
    }
    m_zsReady = true;
  }

  ~Buffer() override {
    if (m_zsReady)
      inflateEnd(&m_zs);
    if (m_fd >= 0)
      ::close(m_fd);
  }

  bool isOpen() const { return m_fd >= 0; }
  const std::string &getError() const { return m_error; }

protected:
  int_type underflow() override {
    if (gptr() < egptr())
      return traits_type::to_int_type(*gptr());
    if (m_fd < 0 || m_done)
      return traits_type::eof();
    const std::size_t got = decode_();
    if (got == 0) {
      m_done = true;
      return traits_type::eof();
    }
    setg(m_data, m_data, m_data + got);
    return traits_type::to_int_type(*gptr());
  }

private:
  [[noreturn]] void fail_(const std::string &reason) {
    m_done = true;
    m_error = reason;
    throw std::runtime_error(reason); // the istream sets badbit
  }

  // Fills m_data; 0 at the regular end of the stream.
  std::size_t decode_() {
    m_zs.next_out = reinterpret_cast<Bytef *>(m_data);
    m_zs.avail_out = sizeof m_data;
    while (m_zs.avail_out == sizeof m_data) {
      if (m_zs.avail_in == 0 && !m_inputEnded) {
        ssize_t n = 0;
        do
          n = ::read(m_fd, m_input, sizeof m_input);
        while (n < 0 && errno == EINTR);
        if (n < 0)
          fail_(std::string("read error: ") + std::strerror(errno));
        m_rawBytes += static_cast<std::size_t>(n);
        if (m_rawBytes > m_limit)
          fail_(HUTFileUtils::tooLargeText(m_limit));
        m_inputEnded = n == 0;
        m_zs.next_in = m_input;
        m_zs.avail_in = static_cast<uInt>(n);
      }
      if (m_zs.avail_in == 0 && m_inputEnded) {
        if (!m_memberEnded)
          fail_("the packed stream is truncated");
        break;
      }
      if (m_memberEnded) {
        // More bytes after a complete member: another member follows, as
        // in files that were packed in pieces.
        inflateReset(&m_zs);
        m_memberEnded = false;
      }
      const int status = inflate(&m_zs, Z_NO_FLUSH);
      if (status == Z_STREAM_END) {
        m_memberEnded = true;
        ++m_members;
      } else if (status == Z_MEM_ERROR) {
        fail_("out of memory");
      } else if (status == Z_DATA_ERROR || status == Z_NEED_DICT || status == Z_STREAM_ERROR) {
        fail_(dataErrorText_());
      }
    }
    const std::size_t got = sizeof m_data - m_zs.avail_out;
    m_unpacked += got;
    if (m_unpacked > m_limit)
      fail_("unpacked, " + HUTFileUtils::tooLargeText(m_limit));
    return got;
  }

  std::string dataErrorText_() const {
    const std::string detail = m_zs.msg ? m_zs.msg : "invalid data";
    if (detail == "incorrect data check")
      return "bad CRC: the unpacked data is damaged";
    if (detail == "incorrect length check")
      return "bad length: the unpacked size does not match the stream's own";
    if (detail == "incorrect header check" || detail == "unknown compression method")
      return m_members == 0 && m_unpacked == 0 ? "it is not gzip data"
                                               : "data after the packed stream is not gzip";
    return "the packed stream is damaged (" + detail + ")";
  }

  z_stream m_zs{};
  bool m_zsReady = false;
  int m_fd = -1;
  const std::size_t m_limit;
  std::size_t m_rawBytes = 0;
  std::size_t m_unpacked = 0;
  unsigned m_members = 0;
  bool m_inputEnded = false;
  bool m_memberEnded = false;
  bool m_done = false;
  std::string m_error;
  Bytef m_input[64 * 1024];
  char m_data[64 * 1024];
};

filtering_stream::filtering_stream(const std::string &path)
    : std::istream(nullptr), m_buffer(new Buffer(path)) {
  rdbuf(m_buffer.get());
  if (!m_buffer->isOpen())
    setstate(std::ios::failbit);
}

filtering_stream::~filtering_stream() = default;

bool filtering_stream::isOpen() const { return m_buffer->isOpen(); }

const std::string &filtering_stream::getError() const { return m_buffer->getError(); }

bool kq::read_all(const std::string &path, std::string &out, std::string &error) {
  try {
    filtering_stream in(path);
    // Taken whole, not line by line: the same text without a second copy of
    // a long line on the way.
    char chunk[64 * 1024];
    while (in.read(chunk, sizeof chunk) || in.gcount() > 0)
      out.append(chunk, static_cast<std::size_t>(in.gcount()));
    if (!in.isOpen() || in.bad()) {
      error = in.getError().empty() ? std::string("unknown error") : in.getError();
      return false;
    }
    return true;
  } catch (const std::bad_alloc &) {
    error = "out of memory";
    return false;
  }
}

} // namespace iostreams
} // namespace isl
