// An XML document, read from a file or a buffer. Entities declared in a
// DOCTYPE are never expanded and no other file is ever read: what is not
// plain XML stays literal text. Syntax errors are reported with file, line
// and column, and leave the document without a root.
#ifndef BOARDLIB_PLATFORM_HXMLWINTERFACE_H
#define BOARDLIB_PLATFORM_HXMLWINTERFACE_H

#include "HXMLWElement.h"

#include <memory>
#include <string>

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
  /// The last read's failure as "line L, column C: description"; empty after
  /// a successful read.
  const std::string &getErrorText() const { return m_error; }
  /// Line (1-based) of a byte offset of the source text.
  int lineOfOffset(std::ptrdiff_t offset) const;

private:
  bool parse_(bool report);

  struct Impl;
  std::unique_ptr<Impl> m_impl;
  std::string m_fileName;
  std::string m_source;
  std::string m_error;
  HXMLWElement m_root;
  bool m_hasRoot = false;
};

#endif
