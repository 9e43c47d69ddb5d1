#include "HXMLWInterface.h"
#include "ComMsgMgr.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

struct HXMLWInterface::Impl {
  pugi::xml_document doc;
};

HXMLWInterface::HXMLWInterface() : m_impl(new Impl) {}

HXMLWInterface::~HXMLWInterface() = default;

bool HXMLWInterface::readFromFile(const std::string &path, bool report) {
  m_fileName = path;
  m_source.clear();
  std::ifstream in(path, std::ios::binary);
  if (!in) {
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
  pugi::xml_parse_result result = m_impl->doc.load_buffer(
      m_source.data(), m_source.size(), pugi::parse_default | pugi::parse_doctype,
      pugi::encoding_auto);
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
