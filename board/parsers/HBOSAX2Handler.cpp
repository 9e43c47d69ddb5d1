#include "HBOSAX2Handler.h"
#include "ComMsgMgr.h"

#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

std::string HBOSAX2Handler::transcode(const XMLCh *text) {
  if (!text)
    return std::string();
  char *native = xercesc::XMLString::transcode(text);
  if (!native)
    return std::string();
  std::string out(native);
  xercesc::XMLString::release(&native);
  return out;
}

HBOSAX2Handler::HBOSAX2Handler(const std::string &fileName, bool adjustLine)
    : m_fileName(fileName), m_adjustLine(adjustLine) {}

void HBOSAX2Handler::error(const xercesc::SAXParseException &e) {
  add_("@49-105@%s%d%s", static_cast<unsigned long>(e.getLineNumber()), transcode(e.getMessage()));
}

void HBOSAX2Handler::fatalError(const xercesc::SAXParseException &e) {
  m_fatal = true;
  add_("@49-106@%s%d%s", static_cast<unsigned long>(e.getLineNumber()), transcode(e.getMessage()));
}

void HBOSAX2Handler::addFinding(unsigned long line, const std::string &text) {
  add_("@49-105@%s%d%s", line, text);
}

void HBOSAX2Handler::add_(const char *key, unsigned long line, const std::string &text) {
  ++m_count;
  if (m_messages.size() >= kMaxTold)
    return;
  ComMsgMgrInstance msg("board", ComMsg::Warning, key);
  msg.arg(m_fileName).arg(static_cast<long long>(getAdjustedLineNo(line))).arg(text);
  // A file that breaks its DTD fails the check.
  msg.setPlace(m_fileName, getAdjustedLineNo(line));
  msg.setImpact(ComMsg::Blocking);
  m_messages.push_back(std::move(msg));
}

unsigned long HBOSAX2Handler::getAdjustedLineNo(unsigned long line) const {
  if (!m_adjustLine || line == 0)
    return line;
  return line - 1;
}

unsigned long HBOSAX2Handler::sendMessages() {
  // Only the first kMaxTold were kept.
  unsigned long sent = 0;
  for (const ComMsgMgrInstance &msg : m_messages) {
    ComMsgMgr::sendMessage(msg);
    ++sent;
  }
  if (m_count > kMaxTold)
    ComMsgMgr::sendMsg("board", ComMsg::Info, "@49-169@%d%d", static_cast<int>(kMaxTold),
                       static_cast<long long>(m_count));
  return sent;
}
