// Collects what a validating parse complains about, with the line of the file
// on disk, so that a checking tool can tell every finding of a file at once.
#ifndef BOARDLIB_HBOSAX2HANDLER_H
#define BOARDLIB_HBOSAX2HANDLER_H

#include "ComMsgMgrInstance.h"

#include <xercesc/sax2/DefaultHandler.hpp>

#include <cstddef>
#include <string>
#include <vector>

class HBOSAX2Handler : public xercesc::DefaultHandler {
public:
  /// How many findings sendMessages tells at most.
  static constexpr std::size_t kMaxTold = 100;

  /// \p fileName is the name used in messages; with \p adjustLine the lines
  /// reported by the parser are one below those of the file.
  HBOSAX2Handler(const std::string &fileName, bool adjustLine);

  /// A text of the XML parser in the native encoding; null gives "".
  static std::string transcode(const XMLCh *text);

  /// A recoverable parse error: "@49-105@%s%d%s".
  void error(const xercesc::SAXParseException &e) override;
  /// A fatal parse error: "@49-106@%s%d%s".
  void fatalError(const xercesc::SAXParseException &e) override;

  /// A finding of our own, told in line with the parser's under "@49-105@".
  /// \p line is as the parser reports it.
  void addFinding(unsigned long line, const std::string &text);

  /// Kept so that findings of our own can tell where the parse stands.
  void setDocumentLocator(const xercesc::Locator *const locator) override { m_locator = locator; }
  /// Where the parse stands; valid only while the parse runs.
  const xercesc::Locator *getLocator() const { return m_locator; }

  unsigned long getAdjustedLineNo(unsigned long line) const;
  /// Sends the findings in parse order, at most kMaxTold of them, then the
  /// count line "@49-169@%d%d" when there were more. Returns how many
  /// findings it sent.
  unsigned long sendMessages();

  const std::string &getFileName() const { return m_fileName; }
  /// The findings kept for telling: the first kMaxTold.
  const std::vector<ComMsgMgrInstance> &getMessages() const { return m_messages; }
  /// All findings, also those beyond what is kept.
  unsigned long getFindingCount() const { return m_count; }
  /// Whether the parse met an error that ends it: the file is no
  /// well-formed XML, and the readers cannot read it either.
  bool hadFatalError() const { return m_fatal; }

private:
  void add_(const char *key, unsigned long line, const std::string &text);

  std::string m_fileName;
  bool m_adjustLine;
  // Only what can be told is kept: a broken file of a million elements
  // must not hold a million messages.
  std::vector<ComMsgMgrInstance> m_messages;
  unsigned long m_count = 0;
  bool m_fatal = false;
  const xercesc::Locator *m_locator = nullptr;
};

#endif
