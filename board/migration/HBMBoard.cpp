#include "HBMBoard.h"

#include "ComMsgMgr.h"
#include "HUTFileReplacement.h"
#include "HXMLWInterface.h"
#include "KqStream.h"

#include <filesystem>
#include <iostream>

namespace {

std::string joinPath(const std::string &dir, const std::string &name) {
  if (!dir.empty() && dir.back() == '/')
    return dir + name;
  return dir + "/" + name;
}

// Reads \p path into \p doc, decoding a packed file; false when there is no
// document with a root to be had.
bool readDocument(const std::string &path, HXMLWInterface &doc) {
  if (!isl::iostreams::kq::is_kq_format(path))
    return doc.readFromFile(path) && doc.getRootElement();
  // A damaged body yields part of a document, which is not the file.
  std::string buffer, why;
  if (!isl::iostreams::kq::read_all(path, buffer, why))
    return false;
  if (!buffer.empty() && buffer.back() != '\n')
    buffer += '\n';
  return doc.readFromBuffer(buffer, path) && doc.getRootElement();
}

template <typename Record> bool parseWith(const std::string &path, Record &record) {
  HXMLWInterface doc;
  if (!readDocument(path, doc)) {
    ComMsgMgr::sendMsg("board", ComMsg::Error, "@49-110@%s", path);
    return false;
  }
  return record.parse(doc.getRootElement());
}

} // namespace

bool HBMBoard::XmlFilePath(const std::string &dir, const std::string &name,
                           std::string &out) const {
  const std::string path = joinPath(dir, name);
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(path, error);
  if (error || !std::filesystem::exists(status)) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", name);
    return false;
  }
  out = path;
  return true;
}

bool HBMBoard::parseBoardFile(std::string path) { return parseWith(path, m_boardFile); }

bool HBMBoard::parsePins(std::string path) { return parseWith(path, m_pinsFile); }

bool HBMBoard::parsePresets(std::string path) { return parseWith(path, m_presetFile); }

bool HBMBoard::writeBoardFile(std::string dir) {
  return writeFile_(dir, "board.xml", [this](std::ofstream &out) { m_boardFile.write(out); });
}

bool HBMBoard::writePinsFile(std::string dir) {
  return writeFile_(dir, "part0_pins.xml", [this](std::ofstream &out) { m_pinsFile.write(out); });
}

bool HBMBoard::writePresetsFile(std::string dir) {
  return writeFile_(dir, "preset.xml", [this](std::ofstream &out) { m_presetFile.write(out); });
}

bool HBMBoard::writeFile_(const std::string &dir, const char *name,
                          const std::function<void(std::ofstream &)> &body) const {
  const std::string path = joinPath(dir, name);
  // A file in place that may not be written stays, as it would if it were
  // opened for output; one that may keeps its permissions.
  HUTFileReplacement replacement(path);
  bool written = false;
  if (replacement.isOpen()) {
    std::ofstream out(replacement.getTemporaryPath(),
                      std::ios::out | std::ios::trunc | std::ios::binary);
    if (out) {
      body(out);
      out.close();
      written = !out.fail() && replacement.commit();
    }
  }
  if (!written)
    std::cout << "Cannot open" << path << "for output.\n";
  return written;
}
