#include "HBOXMLFile.h"
#include "HEXError.h"
#include "KqStream.h"

std::unique_ptr<HXMLWInterface> HBOXMLFile::open(const std::string &path) {
  std::unique_ptr<HXMLWInterface> doc(new HXMLWInterface);
  if (!isl::iostreams::kq::is_kq_format(path)) {
    doc->readFromFile(path);
  } else {
    isl::iostreams::filtering_stream in(path);
    if (!in.isOpen() || in.bad())
      HEXError::raise("board", ComMsg::Error, "@49-110@%s", path);
    std::string buffer, line;
    while (std::getline(in, line)) {
      buffer += line;
      buffer += '\n';
    }
    if (in.bad())
      // The packed body is damaged: what was decoded is not the document.
      HEXError::raise("board", ComMsg::Error, "@49-110@%s", path);
    doc->readFromBuffer(buffer, path);
  }
  if (!doc->getRootElement())
    HEXError::raise("board", ComMsg::Error, "@49-111@%s", path);
  return doc;
}
