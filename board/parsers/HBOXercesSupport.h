// What every validating parse with Xerces-C shares: the start of the
// library, the limit on entity expansions, the scope in which a
// leak-checking build looks away from the library's own leak, and the
// errors a failed parse raises.
#ifndef BOARDLIB_HBOXERCESSUPPORT_H
#define BOARDLIB_HBOXERCESSUPPORT_H

#include "HBOSAX2Handler.h"
#include "HEXError.h"
#include "HUTFileUtils.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#define BOARDLIB_LEAK_CHECKED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define BOARDLIB_LEAK_CHECKED 1
#endif
#endif

namespace HBOXercesSupport {

// Far more expansions than a board file can honestly need: our DTDs declare
// no entities, and a file may not declare its own. Each expansion costs a
// fresh reader of some hundred kilobytes, so the parser's default of 50,000
// would still let an entity bomb in a DTD run for the better part of a
// second here; this ends it in a few dozen milliseconds.
constexpr std::size_t kEntityExpansionLimit = 10000;

inline void initialise() {
  // Initialize counts its callers but is not safe to enter twice at once.
  static std::mutex mutex;
  std::lock_guard<std::mutex> lock(mutex);
  xercesc::XMLPlatformUtils::Initialize();
}

/// The settings every validating reader of ours gets: no namespaces,
/// nothing resolved behind our back (the caller's resolver alone decides what is read), no
/// schemas or their hints, the limit on entity expansions through
/// \p security, and \p handler for the content and the errors. \p security
/// must outlive the reader.
inline void secure(xercesc::SAX2XMLReader &reader, xercesc::SecurityManager &security,
                   xercesc::DefaultHandler &handler) {
  security.setEntityExpansionLimit(kEntityExpansionLimit);
  reader.setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
  reader.setFeature(xercesc::XMLUni::fgXercesSchema, false);
  // Board files use no namespaces, and keeping their scopes costs time that
  // grows with the square of the nesting depth.
  reader.setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false);
  reader.setFeature(xercesc::XMLUni::fgXercesLoadSchema, false);
  reader.setProperty(xercesc::XMLUni::fgXercesSecurityManager, &security);
  reader.setContentHandler(&handler);
  reader.setErrorHandler(&handler);
}

// The Xerces of the system leaks one small record for every external DTD it
// reads, the price of its fix for a use-after-free there. A leak-checking
// build must not lay that at our door, so the parse runs unchecked.
class LeakScope {
public:
#ifdef BOARDLIB_LEAK_CHECKED
  LeakScope() { __lsan_disable(); }
  ~LeakScope() { __lsan_enable(); }
#endif
};

// The bytes handed to the parser, held by the source itself: a member base
// so that they exist before the buffer source is built over them.
struct OwnedBytes {
  std::string bytes;
};

class FileBytesSource : private OwnedBytes, public xercesc::MemBufInputSource {
public:
  FileBytesSource(std::string content, const std::string &systemId)
      : OwnedBytes{std::move(content)}, xercesc::MemBufInputSource(
                                            reinterpret_cast<const XMLByte *>(bytes.data()),
                                            bytes.size(), systemId.c_str(), false) {}
};

/// A source over the whole of \p path, read as the platform reads data
/// files (a regular file only, never waited on, within the size limit), and
/// known to the parser by that path. Null, with the reason in \p error,
/// when the file cannot be read. The caller owns the source.
inline xercesc::InputSource *openFile(const std::string &path, std::string *error = nullptr) {
  std::string content;
  if (!HUTFileUtils::readFile(path, content, error))
    return nullptr;
  return new FileBytesSource(std::move(content), path);
}

/// For a catch handler around a validating parse of \p fileName: raises
/// the reader's error for what the parse threw, "@49-115@" with the text of
/// an exception of Xerces, "@49-112@" for anything else.
[[noreturn]] inline void raiseParseFailure(const std::string &fileName) {
  std::string text;
  try {
    throw;
  } catch (const xercesc::XMLException &e) {
    text = HBOSAX2Handler::transcode(e.getMessage());
  } catch (const xercesc::SAXParseException &e) {
    text = HBOSAX2Handler::transcode(e.getMessage());
  } catch (...) {
    HEXError::raise("board", ComMsg::Error, "@49-112@%s", fileName);
  }
  HEXError::raise("board", ComMsg::Error, "@49-115@%s%s", text, fileName);
}

} // namespace HBOXercesSupport

#endif
