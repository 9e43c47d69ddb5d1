// An XML document, read from a file or a buffer. Entities declared in a
// DOCTYPE are never expanded and no other file is ever read: what is not
// plain XML stays literal text. Syntax errors are reported with file, line
// and column, and leave the document without a root.
//
// The text is parsed where it lies, in a buffer that the document borrows
// from a cache of its thread and gives back when it is destroyed or reads
// again, so that loading thousands of files neither copies each one twice
// nor touches fresh memory for each. Documents are independent: any number
// may be alive at once, on any threads.
#ifndef BOARDLIB_PLATFORM_HXMLWINTERFACE_H
#define BOARDLIB_PLATFORM_HXMLWINTERFACE_H

#include "HXMLWElement.h"

#include <memory>
#include <string>
#include <vector>

class HXMLWInterface {
public:
  HXMLWInterface();
  ~HXMLWInterface();
  HXMLWInterface(const HXMLWInterface &) = delete;
  HXMLWInterface &operator=(const HXMLWInterface &) = delete;

  /// Reads and parses \p path. A file that cannot be read or parsed is
  /// reported as an error message (unless \p report is false) and gives false.
  bool readFromFile(const std::string &path, bool report = true);
  /// Parses \p buffer; \p name stands for the file in messages.
  bool readFromBuffer(const std::string &buffer, const std::string &name = std::string(),
                      bool report = true);

  /// The root element, or null when nothing was read.
  HXMLWElement *getRootElement();
  /// The file or name given to the last read.
  const std::string &getFileName() const { return m_fileName; }
  /// The last read's failure as "line L, column C: description", or, when
  /// the file could not be read, the reason; empty after a successful read.
  const std::string &getErrorText() const { return m_error; }
  /// Whether the last read failed before the parse: the file could not be
  /// read at all (missing, no regular file, too large). getErrorText says why.
  bool isReadFailure() const { return m_readFailed; }
  /// Line (1-based) of a byte offset of the source text.
  int lineOfOffset(std::ptrdiff_t offset) const;

private:
  bool parseLoaded_(bool report);
  void clear_();
  const std::string &source_() const;

  struct Impl;
  std::unique_ptr<Impl> m_impl;
  std::string m_fileName;
  // The text as read, for line numbers. The parse overwrites its own copy,
  // so a file's text is read again only when a line is asked for, which
  // happens for messages only.
  mutable std::string m_source;
  mutable bool m_haveSource = false;
  // Where each line of m_source starts, made with the first line asked for.
  mutable std::vector<std::size_t> m_lineStarts;
  std::string m_error;
  bool m_readFailed = false;
  HXMLWElement m_root;
  bool m_hasRoot = false;
};

#endif
