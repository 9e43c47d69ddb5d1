// Opening of every XML file of a board definition: plain or packed.
#ifndef BOARDLIB_HBOXMLFILE_H
#define BOARDLIB_HBOXMLFILE_H

#include "HXMLWInterface.h"

#include <memory>
#include <string>

namespace HBOXMLFile {
/// Reads \p path, decoding a packed file. A packed file that cannot be
/// opened raises "@49-110@%s"; a document without a root raises "@49-111@%s"
/// (both HEXError, with the path). Never returns null.
std::unique_ptr<HXMLWInterface> open(const std::string &path);
} // namespace HBOXMLFile

#endif
