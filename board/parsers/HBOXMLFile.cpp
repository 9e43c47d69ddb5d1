#include "HBOXMLFile.h"
#include "HEXError.h"
#include "KqStream.h"

namespace {

struct Reusable {
  std::string path;
  std::unique_ptr<HXMLWInterface> doc;
};

thread_local Reusable t_reusable;

} // namespace

HBOXMLFile::ReuseScope::ReuseScope(const std::string &path, std::unique_ptr<HXMLWInterface> doc) {
  t_reusable.path = path;
  t_reusable.doc = std::move(doc);
}

HBOXMLFile::ReuseScope::~ReuseScope() {
  t_reusable.doc.reset();
  t_reusable.path.clear();
}

std::unique_ptr<HXMLWInterface> HBOXMLFile::open(const std::string &path) {
  if (t_reusable.doc && t_reusable.path == path)
    return std::move(t_reusable.doc);
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
