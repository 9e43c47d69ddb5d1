#include "HBOXMLFile.h"
#include "ComMsgMgr.h"
#include "HEXError.h"
#include "KqStream.h"

#include <new>

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
    try {
      isl::iostreams::filtering_stream in(path);
      // Taken whole, not line by line: the same text, every line ending in a
      // new line, without a second copy of a long line on the way.
      char chunk[64 * 1024];
      while (in.read(chunk, sizeof chunk) || in.gcount() > 0)
        buffer.append(chunk, static_cast<std::size_t>(in.gcount()));
      if (!buffer.empty() && buffer.back() != '\n')
        buffer += '\n';
      // Damaged, cut short or too large: what was decoded is not the
      // document.
      if (!in.isOpen() || in.bad())
        reason = in.getError().empty() ? std::string("unknown error") : in.getError();
    } catch (const std::bad_alloc &) {
      reason = "out of memory";
    }
    if (!reason.empty()) {
      std::string().swap(buffer);
      // Told here, as the read of a plain file tells its reason: callers
      // that only see the error must still learn why.
      ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-180@%s%s", path, reason);
      HEXError::raise("board", ComMsg::Error, "@49-110@%s", path);
    }
    doc->readFromBuffer(buffer, path);
  }
  if (!doc->getRootElement())
    HEXError::raise("board", ComMsg::Error, "@49-111@%s", path);
  return doc;
}
