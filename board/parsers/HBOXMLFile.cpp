#include "HBOXMLFile.h"
#include "ComMsgMgr.h"
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
    // A file that cannot be read at all has had its reason told by the
    // read; it is no document without a root.
    if (!doc->readFromFile(path) && doc->isReadFailure())
      HEXError::raise("board", ComMsg::Error, "@49-110@%s", path);
  } else {
    std::string buffer;
    std::string reason;
    // Damaged, cut short or too large: what was decoded is not the document.
    if (!isl::iostreams::kq::read_all(path, buffer, reason)) {
      std::string().swap(buffer);
      // Told here, as the read of a plain file tells its reason: callers
      // that only see the error must still learn why.
      ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-180@%s%s", path, reason);
      HEXError::raise("board", ComMsg::Error, "@49-110@%s", path);
    }
    // Every line ends in a new line, as in a file read line by line.
    if (!buffer.empty() && buffer.back() != '\n')
      buffer += '\n';
    doc->readFromBuffer(buffer, path);
  }
  if (!doc->getRootElement())
    HEXError::raise("board", ComMsg::Error, "@49-111@%s", path);
  return doc;
}
