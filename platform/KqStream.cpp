#include "KqStream.h"

#include <boost/iostreams/device/file.hpp>
#include <boost/iostreams/filter/gzip.hpp>
#include <boost/iostreams/filtering_streambuf.hpp>

#include <cstdio>
#include <streambuf>

namespace bio = boost::iostreams;

namespace isl {
namespace iostreams {

bool kq::is_kq_format(const std::string &path) {
  std::FILE *file = std::fopen(path.c_str(), "rb");
  if (!file)
    return false;
  unsigned char magic[2] = {0, 0};
  std::size_t got = std::fread(magic, 1, sizeof magic, file);
  std::fclose(file);
  return got == sizeof magic && magic[0] == 0x1f && magic[1] == 0x8b;
}

// Our own buffer in front of Boost's chain, so that a decoding error is
// recorded here and then handed to the istream, which turns it into badbit.
class filtering_stream::Buffer : public std::streambuf {
public:
  explicit Buffer(const std::string &path) {
    bio::file_source source(path, std::ios::in | std::ios::binary);
    if (!source.is_open())
      return;
    m_chain.push(bio::gzip_decompressor());
    m_chain.push(source);
    m_open = true;
  }

  bool isOpen() const { return m_open; }
  const std::string &getError() const { return m_error; }

protected:
  int_type underflow() override {
    if (gptr() < egptr())
      return traits_type::to_int_type(*gptr());
    if (!m_open || m_done)
      return traits_type::eof();
    std::streamsize got = 0;
    try {
      got = m_chain.sgetn(m_data, sizeof m_data);
    } catch (const std::exception &e) {
      m_done = true;
      m_error = e.what();
      throw; // the istream sets badbit
    }
    if (got <= 0) {
      m_done = true;
      return traits_type::eof();
    }
    setg(m_data, m_data, m_data + got);
    return traits_type::to_int_type(*gptr());
  }

private:
  bio::filtering_streambuf<bio::input> m_chain;
  char m_data[64 * 1024];
  bool m_open = false;
  bool m_done = false;
  std::string m_error;
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

} // namespace iostreams
} // namespace isl
