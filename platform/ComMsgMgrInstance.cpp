#include "ComMsgMgrInstance.h"
#include "ComMsgCatalog.h"
#include "ComMsgMgr.h"

ComMsgMgrInstance::ComMsgMgrInstance(std::string category, unsigned severity, std::string key)
    : m_category(std::move(category)), m_severity(severity), m_key(std::move(key)) {}

ComMsgMgrInstance &ComMsgMgrInstance::arg(const std::string &value) {
  m_args.push_back(value);
  return *this;
}

ComMsgMgrInstance &ComMsgMgrInstance::arg(const char *value) {
  m_args.emplace_back(value ? value : "");
  return *this;
}

ComMsgMgrInstance &ComMsgMgrInstance::arg(long long value) {
  m_args.push_back(std::to_string(value));
  return *this;
}

std::string ComMsgMgrInstance::getId() const {
  if (m_key.size() < 2 || m_key[0] != '@')
    return std::string();
  std::string::size_type end = m_key.find('@', 1);
  if (end == std::string::npos)
    return std::string();
  return m_key.substr(1, end - 1);
}

std::string ComMsgMgrInstance::getText() const {
  if (const char *tmpl = ComMsgCatalog::findTemplate(m_key))
    return ComMsgCatalog::fill(tmpl, m_args);
  // A key outside the catalog still shows everything it carries.
  std::string::size_type end = m_key.find('@', 1);
  std::string body = (m_key.size() > 1 && m_key[0] == '@' && end != std::string::npos)
                         ? m_key.substr(end + 1)
                         : m_key;
  return ComMsgCatalog::fill(body, m_args);
}

std::string ComMsgMgrInstance::format() const {
  std::string line = ComMsgMgr::severityName(m_severity);
  line += ": ";
  std::string id = getId();
  if (!id.empty()) {
    line += "[";
    line += ComMsgCatalog::categoryLabel(m_category);
    line += " ";
    line += id;
    line += "] ";
  }
  line += getText();
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r'))
    line.pop_back();
  return line;
}
