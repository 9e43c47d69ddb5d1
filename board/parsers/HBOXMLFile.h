// Opening of every XML file of a board definition: plain or packed.
#ifndef BOARDLIB_HBOXMLFILE_H
#define BOARDLIB_HBOXMLFILE_H

#include "HXMLWInterface.h"

#include <memory>
#include <string>

namespace HBOXMLFile {
/// Reads \p path, decoding a packed file. A file that cannot be read
/// (missing, no regular file, over the size limit, a packed body that is
/// cut short or damaged) raises "@49-110@%s" once a message has told why
/// ("@50-2@" for a plain file, "@49-180@%s%s" for a packed one); a document
/// without a root raises "@49-111@%s" (both HEXError, with the path). Never
/// returns null.
std::unique_ptr<HXMLWInterface> open(const std::string &path);

/// While alive, the next open of \p path on this thread takes \p doc instead
/// of reading the file again. The file entry reads a board file to learn its
/// schema and hands the document on this way to the reader it chooses, so
/// that the bytes are parsed once. What is not taken is dropped at the end
/// of the scope.
class ReuseScope {
public:
  ReuseScope(const std::string &path, std::unique_ptr<HXMLWInterface> doc);
  ~ReuseScope();
  ReuseScope(const ReuseScope &) = delete;
  ReuseScope &operator=(const ReuseScope &) = delete;
};
} // namespace HBOXMLFile

#endif
