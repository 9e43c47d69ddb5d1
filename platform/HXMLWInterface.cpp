#include "HXMLWInterface.h"
#include "ComMsgMgr.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include <sys/stat.h>

namespace {

void appendUtf8(std::string &out, unsigned long cp) {
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
    cp = 0xFFFD;
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

// The text of a document in another encoding, as UTF-8. The parser
// converts such documents into a buffer of its own, and the offsets it
// reports refer to that buffer; lines are counted in our copy of the
// source, so the copy must be the same UTF-8 text. Returns false when
// \p encoding needs no conversion.
bool transcodeToUtf8(const std::string &in, pugi::xml_encoding encoding, std::string &out) {
  const unsigned char *b = reinterpret_cast<const unsigned char *>(in.data());
  const std::size_t n = in.size();
  out.clear();
  out.reserve(n * 2);
  switch (encoding) {
  case pugi::encoding_latin1:
    for (std::size_t i = 0; i < n; ++i)
      appendUtf8(out, b[i]);
    return true;
  case pugi::encoding_utf16_le:
  case pugi::encoding_utf16_be: {
    bool le = encoding == pugi::encoding_utf16_le;
    auto unit = [&](std::size_t i) -> unsigned long {
      return le ? (b[i] | (b[i + 1] << 8)) : ((b[i] << 8) | b[i + 1]);
    };
    for (std::size_t i = 0; i + 1 < n; i += 2) {
      unsigned long u = unit(i);
      if (u >= 0xD800 && u <= 0xDBFF && i + 3 < n) {
        unsigned long low = unit(i + 2);
        if (low >= 0xDC00 && low <= 0xDFFF) {
          u = 0x10000 + ((u - 0xD800) << 10) + (low - 0xDC00);
          i += 2;
        }
      }
      if (!(i == 0 && u == 0xFEFF))
        appendUtf8(out, u);
    }
    return true;
  }
  case pugi::encoding_utf32_le:
  case pugi::encoding_utf32_be: {
    bool le = encoding == pugi::encoding_utf32_le;
    for (std::size_t i = 0; i + 3 < n; i += 4) {
      unsigned long u = le ? (b[i] | (b[i + 1] << 8) | (b[i + 2] << 16) |
                              (static_cast<unsigned long>(b[i + 3]) << 24))
                           : ((static_cast<unsigned long>(b[i]) << 24) | (b[i + 1] << 16) |
                              (b[i + 2] << 8) | b[i + 3]);
      if (!(i == 0 && u == 0xFEFF))
        appendUtf8(out, u);
    }
    return true;
  }
  default:
    return false;
  }
}

} // namespace

struct HXMLWInterface::Impl {
  pugi::xml_document doc;
};

HXMLWInterface::HXMLWInterface() : m_impl(new Impl) {}

HXMLWInterface::~HXMLWInterface() = default;

bool HXMLWInterface::readFromFile(const std::string &path, bool report) {
  m_fileName = path;
  m_source.clear();
  std::ifstream in(path, std::ios::binary);
  struct stat st;
  // A directory opens like a file here, and would read as an empty document.
  if (in && ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode)) {
    in.close();
    errno = EISDIR;
  }
  if (!in.is_open()) {
    m_error = std::string("cannot open file: ") + std::strerror(errno);
    m_impl->doc.reset();
    m_hasRoot = false;
    if (report)
      ComMsgMgr::sendMsg("xml", ComMsg::Error, "@50-2@%s%s", path, m_error);
    return false;
  }
  std::ostringstream content;
  content << in.rdbuf();
  m_source = content.str();
  return parse_(report);
}

bool HXMLWInterface::readFromBuffer(const std::string &buffer, const std::string &name,
                                    bool report) {
  m_fileName = name;
  m_source = buffer;
  return parse_(report);
}

bool HXMLWInterface::parse_(bool report) {
  m_hasRoot = false;
  m_error.clear();
  m_impl->doc.reset();
  const unsigned options = pugi::parse_default | pugi::parse_doctype;
  pugi::xml_parse_result result =
      m_impl->doc.load_buffer(m_source.data(), m_source.size(), options, pugi::encoding_auto);
  std::string utf8;
  if (transcodeToUtf8(m_source, result.encoding, utf8)) {
    // Parse the UTF-8 copy instead, so that offsets and our source agree.
    m_source.swap(utf8);
    result = m_impl->doc.load_buffer(m_source.data(), m_source.size(), options,
                                     pugi::encoding_utf8);
  }
  if (!result) {
    int line = lineOfOffset(result.offset);
    std::ptrdiff_t lineStart = result.offset;
    while (lineStart > 0 && m_source[lineStart - 1] != '\n')
      --lineStart;
    std::ostringstream text;
    text << "line " << line << ", column " << (result.offset - lineStart + 1) << ": "
         << result.description();
    m_error = text.str();
    m_impl->doc.reset();
    if (report)
      ComMsgMgr::sendMsg("xml", ComMsg::Error, "@50-1@%s%d%s",
                         m_fileName.empty() ? std::string("<buffer>") : m_fileName, line,
                         result.description());
    return false;
  }
  pugi::xml_node root = m_impl->doc.document_element();
  if (root) {
    m_root = HXMLWElement(root.internal_object(), this);
    m_hasRoot = true;
  }
  return true;
}

HXMLWElement *HXMLWInterface::getRootElement() { return m_hasRoot ? &m_root : nullptr; }

int HXMLWInterface::lineOfOffset(std::ptrdiff_t offset) const {
  if (offset < 0)
    return 0;
  std::size_t end = std::min<std::size_t>(static_cast<std::size_t>(offset), m_source.size());
  return 1 + static_cast<int>(std::count(m_source.begin(), m_source.begin() + end, '\n'));
}
