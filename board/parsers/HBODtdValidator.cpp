// DTD validation of the checking path: a file is held to the DTD of its kind
// even when it names none, and the parse reads nothing but that DTD.
#include "HBODtdValidator.h"
#include "ComMsgMgr.h"
#include "HBOParseContext.h"
#include "HBOSAX2Handler.h"
#include "HBOXercesSupport.h"
#include "HEXError.h"
#include "HSTStringUtils.h"
#include "HUTEnv.h"
#include "HUTFile.h"
#include "HUTFileUtils.h"
#include "KqStream.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLString.hpp>
#include <xercesc/util/XMLUni.hpp>
#include <xercesc/validators/common/Grammar.hpp>

#include <boost/filesystem.hpp>

#include <cctype>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

// The name of the copy of the file that is parsed.
const char kBufferId[] = "board.xml";

// Where the DTD of a kind of file lies: its root element, its file name, and
// the folder of the schema under boards/board_schemas. The legacy kinds are
// held to the DTDs of schema 1, whose preset DTD shares its name with ours.
struct DtdKind {
  const char *type;
  const char *root;
  const char *file;
  const char *folder;
};

const DtdKind kDtdKinds[] = {
    {"board", "board", "board.dtd", "current"},
    {"part0_pins", "part_info", "part0_pins.dtd", "current"},
    {"preset", "ip_presets", "preset.dtd", "current"},
    {"board_part", "board", "board_part.dtd", "1.0"},
    {"legacy_preset", "ip_presets", "preset.dtd", "1.0"},
};

const DtdKind *kindOf(const std::string &type) {
  for (const DtdKind &kind : kDtdKinds)
    if (type == kind.type)
      return &kind;
  return nullptr;
}

// What \s matches in the regular expressions below.
bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

// What . matches: anything but a line end.
bool isLineChar(char c) { return c != '\n' && c != '\r'; }

// The whole line matches <!DOCTYPE\s.*> . Written out by hand because
// std::regex recurses per character and overflows the stack on the long
// single line of a minified file.
bool isDoctypeLine(std::string_view line) {
  static const std::string head = "<!DOCTYPE";
  if (line.size() < head.size() + 2 || line.compare(0, head.size(), head) != 0)
    return false;
  if (!isSpace(line[head.size()]) || line.back() != '>')
    return false;
  for (std::size_t i = head.size() + 1; i + 1 < line.size(); ++i)
    if (!isLineChar(line[i]))
      return false;
  return true;
}

// The whole line matches \s*<\s*(board|part_info|ip_presets)\s+.*>\s* .
bool isRootLine(std::string_view line) {
  std::size_t i = 0;
  const std::size_t n = line.size();
  while (i < n && isSpace(line[i]))
    ++i;
  if (i == n || line[i] != '<')
    return false;
  ++i;
  while (i < n && isSpace(line[i]))
    ++i;
  std::size_t nameEnd = 0;
  for (const char *name : {"board", "part_info", "ip_presets"}) {
    std::string_view tag(name);
    if (line.compare(i, tag.size(), tag) == 0) {
      nameEnd = i + tag.size();
      break;
    }
  }
  if (nameEnd == 0 || nameEnd == n || !isSpace(line[nameEnd]))
    return false;
  // A greedy \s+ loses nothing: what it gives back, .* would have to take.
  i = nameEnd;
  while (i < n && isSpace(line[i]))
    ++i;
  // The rest is .*>\s* : a '>' with only blanks behind it, and no line end
  // before it.
  std::size_t end = n;
  while (end > i && isSpace(line[end - 1]))
    --end;
  if (end == i || line[end - 1] != '>')
    return false;
  for (std::size_t k = i; k + 1 < end; ++k)
    if (!isLineChar(line[k]))
      return false;
  return true;
}

bool isUrl(const std::string &id) {
  std::size_t colon = id.find(':');
  // One letter before the colon would be a drive, not a scheme.
  if (colon == std::string::npos || colon < 2 || !std::isalpha(static_cast<unsigned char>(id[0])))
    return false;
  for (std::size_t i = 1; i < colon; ++i) {
    char c = id[i];
    if (!std::isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.')
      return false;
  }
  return true;
}

// Whether \p path lies inside \p dir; both are canonical.
bool isInside(const boost::filesystem::path &path, const boost::filesystem::path &dir) {
  auto d = dir.begin();
  auto p = path.begin();
  for (; d != dir.end(); ++d, ++p)
    if (p == path.end() || *p != *d)
      return false;
  return p != path.end();
}

// Thrown by the guard to end a parse that must go no further.
struct ParseRefused {};

// Keeps a validating parse to the one DTD it is meant to use. A board file
// comes from anywhere; its DOCTYPE and entities must not make the parser read
// a file that the file did not name as its DTD, nor reach the network. Every
// request that is refused becomes a finding with the line it came from.
class EntityGuard : public xercesc::DefaultHandler, public xercesc::XMLEntityResolver {
public:
  /// \p ourDtd is the DTD of the DOCTYPE put in front of the file, empty when
  /// the file has its own; \p fileDir resolves a relative DTD of the file's
  /// own DOCTYPE, which is handed out only from inside \p schemaDirs.
  EntityGuard(HBOSAX2Handler &findings, const std::string &ourDtd, const std::string &fileDir,
              const std::vector<std::string> &schemaDirs)
      : m_findings(findings), m_ourDtd(ourDtd), m_fileDir(fileDir) {
    for (const std::string &dir : schemaDirs) {
      if (!m_schemaDirText.empty())
        m_schemaDirText += "' or '";
      m_schemaDirText += dir;
      boost::system::error_code ec;
      boost::filesystem::path canonical = boost::filesystem::canonical(dir, ec);
      if (!ec)
        m_schemaDirs.push_back(canonical);
    }
  }

  void startDTD(const XMLCh *const, const XMLCh *const, const XMLCh *const systemId) override {
    m_hasDoctype = true;
    m_doctypeId = HBOSAX2Handler::transcode(systemId);
  }

  // A board file has no use for entities of its own, and our readers never
  // expand them; expanding them here is how a small file makes a parse run
  // for seconds and fill memory. So the first one that the file declares
  // ends the parse, before any of them is used. Those of our DTDs are ours.
  void internalEntityDecl(const XMLCh *const name, const XMLCh *const) override {
    const xercesc::Locator *where = m_findings.getLocator();
    if (!where || HBOSAX2Handler::transcode(where->getSystemId()) != kBufferId)
      return;
    std::string entity = HBOSAX2Handler::transcode(name);
    std::string kind = "entity '" + entity + "'";
    if (!entity.empty() && entity[0] == '%')
      kind = "parameter entity '" + entity.substr(1) + "'";
    m_findings.addFinding(static_cast<unsigned long>(where->getLineNumber()),
                          "the file declares the " + kind +
                              "; a board file declares no entities, and the validation ends here");
    throw ParseRefused();
  }

  void externalEntityDecl(const XMLCh *const name, const XMLCh *const,
                          const XMLCh *const systemId) override {
    m_entityNames.emplace(HBOSAX2Handler::transcode(systemId), HBOSAX2Handler::transcode(name));
  }

  xercesc::InputSource *resolveEntity(xercesc::XMLResourceIdentifier *request) override {
    if (!request)
      return nullptr;
    const xercesc::Locator *where = request->getLocator();
    bool entity =
        request->getResourceIdentifierType() == xercesc::XMLResourceIdentifier::ExternalEntity;
    return resolve_(HBOSAX2Handler::transcode(request->getSystemId()), entity,
                    where ? static_cast<unsigned long>(where->getLineNumber()) : 0);
  }

  // For a reader that offers only the plain interface, which tells no line.
  xercesc::InputSource *resolveEntity(const XMLCh *const, const XMLCh *const systemId) override {
    return resolve_(HBOSAX2Handler::transcode(systemId), true, 0);
  }

private:
  xercesc::InputSource *resolve_(const std::string &id, bool entity, unsigned long line) {
    bool isDtd = entity && m_hasDoctype && id == m_doctypeId;
    if (!isDtd) {
      refuseEntity_(id, line);
      return nullptr;
    }
    if (!m_ourDtd.empty() && id == m_ourDtd)
      return open_(m_ourDtd, line);
    std::string path = allowedDtd_(id, line);
    return path.empty() ? nullptr : open_(path, line);
  }

  // The DTD as the platform reads data files: a pipe or a device named as
  // the schema directory's DTD is refused, not waited on.
  xercesc::InputSource *open_(const std::string &path, unsigned long line) {
    std::string error;
    if (xercesc::InputSource *source = HBOXercesSupport::openFile(path, &error))
      return source;
    m_findings.addFinding(line, "the DTD '" + path + "' cannot be read: " + error);
    return nullptr;
  }

  void refuseEntity_(const std::string &id, unsigned long line) {
    auto it = m_entityNames.find(id);
    std::string text;
    if (it == m_entityNames.end())
      text = "the entity '" + id + "' is not read: a validation reads only the DTD";
    else if (!it->second.empty() && it->second[0] == '%')
      text = "the parameter entity '" + it->second.substr(1) + "' names '" + id +
             "', which is not read: a validation reads only the DTD";
    else
      text = "the external entity '" + it->second + "' names '" + id +
             "', which is not read: a validation reads only the DTD";
    m_findings.addFinding(line, text);
  }

  // The canonical path of the file's own DTD if it may be read, else empty
  // with a finding.
  std::string allowedDtd_(const std::string &id, unsigned long line) {
    if (id.empty() || isUrl(id)) {
      m_findings.addFinding(line, "the DTD '" + id +
                                      "' is no local file and is not fetched: only a DTD in '" +
                                      m_schemaDirText + "' is read");
      return std::string();
    }
    boost::filesystem::path path(id);
    if (path.is_relative())
      path = boost::filesystem::path(m_fileDir.empty() ? "." : m_fileDir) / path;
    // Where the path really leads, links and ".." followed, decides; whether
    // something exists there is told only inside the schema directory.
    boost::system::error_code ec;
    boost::filesystem::path real = boost::filesystem::weakly_canonical(path, ec);
    bool inside = false;
    for (const boost::filesystem::path &dir : m_schemaDirs)
      inside = inside || (!ec && isInside(real, dir));
    if (!inside) {
      m_findings.addFinding(line, "the DTD '" + id + "' lies outside '" + m_schemaDirText +
                                      "' and is not read");
      return std::string();
    }
    if (!boost::filesystem::is_regular_file(real, ec)) {
      m_findings.addFinding(line, "the DTD '" + id + "' cannot be found");
      return std::string();
    }
    return real.string();
  }

  HBOSAX2Handler &m_findings;
  std::string m_ourDtd;
  std::string m_fileDir;
  std::vector<boost::filesystem::path> m_schemaDirs;
  std::string m_schemaDirText;
  bool m_hasDoctype = false;
  std::string m_doctypeId;
  std::map<std::string, std::string> m_entityNames;
};

// What an XML name is made of, as far as the scan below needs to know; bytes
// above ASCII are taken as parts of UTF-8 letters.
bool isNameChar(char c) {
  unsigned char u = static_cast<unsigned char>(c);
  return std::isalnum(u) || c == '.' || c == '-' || c == '_' || c == ':' || u >= 0x80;
}

// The attribute names of the pin elements of \p text that begin with
// "iobank.". The readers take any such attribute as an I/O bank property, so
// the validation must know each one that the file uses. A rough scan, which
// may take a name too many from a malformed file (the parse reports that file
// anyway), but takes only whole names: nothing but an attribute name can reach
// the declarations made from them.
std::set<std::string> ioBankAttributes(const std::string &text) {
  static const std::string prefix = "iobank.";
  std::set<std::string> names;
  const std::size_t n = text.size();
  std::size_t i = 0;
  auto skipTo = [&](const char *end, std::size_t from) {
    std::size_t at = text.find(end, from);
    return at == std::string::npos ? n : at + std::string_view(end).size();
  };
  auto skipSpace = [&]() {
    while (i < n && isSpace(text[i]))
      ++i;
  };
  auto readName = [&]() {
    std::size_t from = i;
    while (i < n && isNameChar(text[i]))
      ++i;
    return text.substr(from, i - from);
  };
  while ((i = text.find('<', i)) != std::string::npos) {
    if (text.compare(i, 4, "<!--") == 0) {
      i = skipTo("-->", i + 4);
      continue;
    }
    if (text.compare(i, 9, "<![CDATA[") == 0) {
      i = skipTo("]]>", i + 9);
      continue;
    }
    if (text.compare(i, 2, "<?") == 0) {
      i = skipTo("?>", i + 2);
      continue;
    }
    ++i;
    if (i < n && (text[i] == '!' || text[i] == '/'))
      continue;
    bool isPin = readName() == "pin";
    for (;;) {
      skipSpace();
      std::string attribute = readName();
      skipSpace();
      if (attribute.empty() || i == n || text[i] != '=')
        break;
      ++i;
      skipSpace();
      if (i == n || (text[i] != '"' && text[i] != '\''))
        break;
      std::size_t close = text.find(text[i], i + 1);
      if (close == std::string::npos)
        return names;
      i = close + 1;
      if (isPin && attribute.size() >= prefix.size() &&
          attribute.compare(0, prefix.size(), prefix) == 0)
        names.insert(attribute);
    }
  }
  return names;
}

// The declarations of the I/O bank attributes that \p text gives its pins,
// empty when there are none. Kinds without pins keep their DTD as it is.
std::string openDeclarations(const std::string &type, const std::string &text) {
  if (type != "part0_pins" && type != "board_part")
    return std::string();
  std::set<std::string> names = ioBankAttributes(text);
  if (names.empty())
    return std::string();
  std::string declarations = "<!ATTLIST pin";
  for (const std::string &name : names)
    declarations += " " + name + " CDATA #IMPLIED";
  return declarations + ">";
}

// Puts \p declarations into the one-line DOCTYPE that starts at \p at of
// \p buffer: at the start of its internal subset, or in one of their own
// before the '>' that ends it. Declarations of the internal subset come
// first, and an attribute declared twice keeps its first type; ours are all
// CDATA, which is what the readers take. A DOCTYPE whose quotes do not close
// is left as it is, for the parse to report.
void insertDeclarations(std::string &buffer, std::size_t at, const std::string &declarations) {
  char quote = 0;
  for (std::size_t i = at; i < buffer.size() && buffer[i] != '\n'; ++i) {
    char c = buffer[i];
    if (quote) {
      quote = c == quote ? 0 : quote;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '[') {
      buffer.insert(i + 1, declarations);
      return;
    } else if (c == '>') {
      buffer.insert(i, " [" + declarations + "]");
      return;
    }
  }
}

// A file's text as the readers see it: a packed file decoded, a file in
// UTF-16 turned into UTF-8, each under the bound of a read. When it gives
// false, \p key is the message for a file that cannot be read and \p why
// says why. \p converted tells that the text was converted, so that the
// parse must not go by the encoding that the file declares.
bool loadText(const std::string &path, std::string &text, bool &converted, std::string &key,
              std::string &why) {
  converted = false;
  if (isl::iostreams::kq::is_kq_format(path)) {
    // Decoded as the read decodes it, within the same bound.
    key = "@49-180@%s%s";
    if (!isl::iostreams::kq::read_all(path, text, why))
      return false;
  } else if (!HUTFileUtils::readFile(path, text, &why)) {
    key = "@50-2@%s%s";
    return false;
  }
  // UTF-16, told by its byte order mark or by the "<?" of the declaration.
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0x100u;
  };
  bool le = (byte(0) == 0xFF && byte(1) == 0xFE) ||
            (byte(0) == '<' && byte(1) == 0 && byte(2) == '?' && byte(3) == 0);
  bool be = (byte(0) == 0xFE && byte(1) == 0xFF) ||
            (byte(0) == 0 && byte(1) == '<' && byte(2) == 0 && byte(3) == '?');
  if (!le && !be)
    return true;
  std::string utf8 = HSTStringUtils::utf16ToUtf8(text, le);
  text.swap(utf8);
  converted = true;
  return true;
}

// How deep a board file's elements may nest before the validation stops:
// far beyond any real board, and shallow enough that no part of the parse
// can grow with the depth of a hostile file.
constexpr unsigned kMaxDepth = 1000;

// The name quoted after \p lead in \p text, as the parser's messages quote
// names; empty when \p text has no such part.
std::string quotedAfter(const std::string &text, const std::string &lead) {
  std::size_t from = text.find(lead);
  if (from == std::string::npos)
    return std::string();
  from += lead.size();
  std::size_t end = text.find('\'', from);
  return end == std::string::npos ? std::string() : text.substr(from, end - from);
}

// The collector of findings for a check. It ends a parse that nests too
// deep, and keeps to itself what only follows from an element that the DTD
// does not know: that its parent may not hold it, and that its attributes
// are not declared. A misspelt element is one finding, not one for each of
// its attributes.
class CheckHandler : public HBOSAX2Handler {
public:
  using HBOSAX2Handler::HBOSAX2Handler;
  void startElement(const XMLCh *const, const XMLCh *const, const XMLCh *const,
                    const xercesc::Attributes &) override {
    if (++m_depth <= kMaxDepth)
      return;
    const xercesc::Locator *where = getLocator();
    addFinding(where ? static_cast<unsigned long>(where->getLineNumber()) : 0,
               "the elements nest more than " + std::to_string(kMaxDepth) +
                   " levels deep; a board file needs far fewer, and the validation ends here");
    throw ParseRefused();
  }
  void endElement(const XMLCh *const, const XMLCh *const, const XMLCh *const) override {
    --m_depth;
  }
  void error(const xercesc::SAXParseException &e) override {
    const std::string text = transcode(e.getMessage());
    std::string name = quotedAfter(text, "no declaration found for element '");
    if (!name.empty()) {
      m_undeclared.insert(name);
    } else if (!m_undeclared.empty()) {
      name = quotedAfter(text, "element '");
      if (text.find("is not allowed for content model") != std::string::npos &&
          m_undeclared.count(name))
        return;
      name = quotedAfter(text, "is not declared for element '");
      if (!name.empty() && m_undeclared.count(name))
        return;
    }
    HBOSAX2Handler::error(e);
  }

private:
  unsigned m_depth = 0;
  std::set<std::string> m_undeclared;
};

// A finding about a whole file, which makes it fail its check.
template <typename... Args>
void sendFinding(const std::string &file, unsigned severity, const char *key, const Args &...args) {
  ComMsgMgrInstance msg("board", severity, key);
  (msg.arg(args), ...);
  msg.setPlace(file, 0);
  msg.setImpact(ComMsg::Blocking);
  ComMsgMgr::sendMessage(msg);
}

// Our DTDs, each parsed once and then shared by the validations of every file
// that names no DTD of its own and needs no declarations of its own, which is
// nearly every file: parsing the board DTD and building its content models
// costs more than validating a small board. A pool that is locked is
// read-only, which is what lets the workers of a check share it. A DTD is
// known by its path, its size and its time, so that one edited while a
// session runs is read again; one that does not load cleanly is not cached,
// and each validation reads it and tells what is wrong with it.
class OurGrammars {
public:
  static xercesc::XMLGrammarPool *get(const std::string &path) {
    // The standard library's clock of the file, which keeps the file
    // system's fractions of a second.
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (ec)
      return nullptr;
    const auto time = std::filesystem::last_write_time(path, ec);
    if (ec)
      return nullptr;
    static std::mutex mutex;
    static std::map<std::string, Entry> entries;
    std::lock_guard<std::mutex> lock(mutex);
    Entry &entry = entries[path];
    if (!entry.pool || entry.size != size || entry.time != time) {
      // A pool still in use by another worker's parse must outlive it: the
      // ones replaced are kept until the process ends.
      if (entry.pool)
        retired().push_back(std::move(entry.pool));
      entry.size = size;
      entry.time = time;
      entry.pool = load_(path);
    }
    return entry.pool.get();
  }

private:
  struct Entry {
    std::unique_ptr<xercesc::XMLGrammarPool> pool;
    std::uintmax_t size = 0;
    std::filesystem::file_time_type time;
  };

  static std::vector<std::unique_ptr<xercesc::XMLGrammarPool>> &retired() {
    static std::vector<std::unique_ptr<xercesc::XMLGrammarPool>> pools;
    return pools;
  }

  // Counts what the load of a DTD finds wrong with it.
  class LoadErrors : public xercesc::DefaultHandler {
  public:
    void warning(const xercesc::SAXParseException &) override {}
    void error(const xercesc::SAXParseException &) override { ++m_count; }
    void fatalError(const xercesc::SAXParseException &) override { ++m_count; }
    unsigned count() const { return m_count; }

  private:
    unsigned m_count = 0;
  };

  static std::unique_ptr<xercesc::XMLGrammarPool> load_(const std::string &path) {
    std::unique_ptr<xercesc::XMLGrammarPool> pool(
        new xercesc::XMLGrammarPoolImpl(xercesc::XMLPlatformUtils::fgMemoryManager));
    try {
      xercesc::SecurityManager security;
      LoadErrors errors;
      std::unique_ptr<xercesc::SAX2XMLReader> loader(xercesc::XMLReaderFactory::createXMLReader(
          xercesc::XMLPlatformUtils::fgMemoryManager, pool.get()));
      HBOXercesSupport::secure(*loader, security, errors);
      std::unique_ptr<xercesc::InputSource> source(HBOXercesSupport::openFile(path));
      if (!source)
        return nullptr;
      [[maybe_unused]] HBOXercesSupport::LeakScope unchecked;
      if (!loader->loadGrammar(*source, xercesc::Grammar::DTDGrammarType, true) ||
          errors.count() != 0)
        return nullptr;
    } catch (...) {
      return nullptr;
    }
    pool->lockPool();
    return pool;
  }
};

// The path inside a DOCTYPE built by createDoctypeString.
std::string dtdPathOf(const std::string &doctype) {
  static const std::string system = " SYSTEM \"";
  std::size_t from = doctype.find(system);
  if (from == std::string::npos || doctype.size() < from + system.size() + 2)
    return std::string();
  from += system.size();
  return doctype.substr(from, doctype.size() - 2 - from);
}

} // namespace

std::string HBODtdValidator::createDoctypeString(const std::string &type) {
  const DtdKind *kind = kindOf(type);
  if (!kind) {
    ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-158@%s", type);
    return std::string();
  }
  std::string path;
  if (!m_ctx.schemaDir.empty()) {
    path = m_ctx.schemaDir + "/" + kind->file;
    if (!HUTFile::exists(path)) {
      ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-156@%s%s", type, m_ctx.schemaDir);
      return std::string();
    }
  } else {
    for (const std::string &dir : HUTEnv::getZRTDataDirList()) {
      std::string candidate = dir + "/boards/board_schemas/" + kind->folder + "/" + kind->file;
      if (HUTFile::exists(candidate)) {
        path = candidate;
        break;
      }
    }
    if (path.empty()) {
      ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-157@%s", type);
      return std::string();
    }
  }
  return std::string("<!DOCTYPE ") + kind->root + " SYSTEM \"" + path + "\">";
}

bool HBODtdValidator::readWithDoctype_(const std::string &fileName, const std::string &type,
                                       std::string &buffer, std::string &ourDoctype,
                                       bool &hasDoctype, bool &hasRoot, bool &converted,
                                       bool &declared) {
  // A file that cannot be read at all (no regular file, too large, a packed
  // body that is damaged) is told here, with the reason that a read gives;
  // the readers would only tell it again. One that does not exist reads as
  // empty, and has no root line.
  std::string text, key, why;
  if (!loadText(fileName, text, converted, key, why) && HUTFile::exists(fileName)) {
    ComMsgMgrInstance msg(key == "@50-2@%s%s" ? "xml" : "board", ComMsg::Error, key);
    msg.arg(fileName).arg(why);
    msg.setPlace(fileName, 0);
    msg.setImpact(ComMsg::Blocking);
    ComMsgMgr::sendMessage(msg);
    return false;
  }
  // Only the lines up to the root element are looked at one by one; after
  // it, only a DOCTYPE could still matter, and the search for one runs at
  // the speed of memchr.
  std::size_t doctypeAt = 0;
  std::size_t from = 0;
  while (from < text.size()) {
    std::size_t end = text.find('\n', from);
    if (end == std::string::npos)
      end = text.size();
    std::string_view line(text.data() + from, end - from);
    const std::size_t lineAt = from;
    from = end + 1;
    // A line end of CR LF leaves a CR behind, which the patterns must not see.
    if (!line.empty() && line.back() == '\r')
      line.remove_suffix(1);
    if (!hasDoctype && isDoctypeLine(line)) {
      hasDoctype = true;
      doctypeAt = lineAt;
    }
    if (!hasDoctype && !hasRoot && isRootLine(line)) {
      ourDoctype = createDoctypeString(type);
      if (ourDoctype.empty()) {
        sendFinding(fileName, ComMsg::Error, "@49-159@%s", fileName);
        return false;
      }
      // Put in once the whole file is read, as it declares what the file
      // uses; no line end, so that every line keeps its number.
      doctypeAt = lineAt;
      hasRoot = true;
    }
    if (hasDoctype)
      break;
    if (hasRoot) {
      // A DOCTYPE that stands after the root is still the file's own.
      std::size_t next = from;
      while ((next = text.find("<!DOCTYPE", next)) != std::string::npos) {
        if (next == 0 || text[next - 1] == '\n') {
          std::size_t lineEnd = text.find('\n', next);
          if (lineEnd == std::string::npos)
            lineEnd = text.size();
          std::string_view candidate(text.data() + next, lineEnd - next);
          if (!candidate.empty() && candidate.back() == '\r')
            candidate.remove_suffix(1);
          if (isDoctypeLine(candidate)) {
            hasDoctype = true;
            doctypeAt = next;
            break;
          }
        }
        next += 9;
      }
      break;
    }
  }
  // The text as read, with a line end after its last line as the parse has
  // always seen it.
  buffer = std::move(text);
  if (!buffer.empty() && buffer.back() != '\n')
    buffer += '\n';
  std::string declarations = openDeclarations(type, buffer);
  declared = (hasRoot || hasDoctype) && !declarations.empty();
  if (hasRoot)
    buffer.insert(doctypeAt, ourDoctype);
  if (declared)
    insertDeclarations(buffer, doctypeAt, declarations);
  return true;
}

bool HBODtdValidator::isValidXML(const std::string &fileName, const std::string &type,
                                 bool *readable) {
  std::string buffer;
  std::string ourDoctype;
  bool hasDoctype = false;
  bool hasRoot = false;
  bool converted = false;
  bool declared = false;
  if (readable)
    *readable = false;
  if (!readWithDoctype_(fileName, type, buffer, ourDoctype, hasDoctype, hasRoot, converted,
                        declared))
    return false;

  if (hasDoctype && !m_ctx.schemaDir.empty()) {
    ComMsgMgrInstance msg("board", ComMsg::Warning, "@49-155@%s%s");
    msg.arg(fileName).arg(m_ctx.schemaDir);
    msg.setPlace(fileName, 0);
    msg.setImpact(ComMsg::Advisory);
    ComMsgMgr::sendMessage(msg);
  }
  if (!hasDoctype && !hasRoot) {
    sendFinding(fileName, ComMsg::Warning, "@49-162@%s%s", type, fileName);
    return false;
  }

  // A file's own DOCTYPE may name a DTD only from where ours come from: the
  // directory given, or that of an installation, which the file's own
  // DOCTYPE may prefer to the one given.
  std::vector<std::string> schemaDirs;
  if (!m_ctx.schemaDir.empty())
    schemaDirs.push_back(m_ctx.schemaDir);
  const DtdKind *kind = kindOf(type);
  for (const std::string &dir : HUTEnv::getZRTDataDirList())
    schemaDirs.push_back(dir + "/boards/board_schemas/" + (kind ? kind->folder : "current"));

  CheckHandler handler(fileName, false);
  try {
    HBOXercesSupport::initialise();
    // Declared before the reader, which must not outlive what it points to.
    xercesc::SecurityManager security;
    EntityGuard guard(handler, dtdPathOf(ourDoctype), HUTFile::parentPath(fileName), schemaDirs);

    // Only the DOCTYPE that we put in front, with no declarations beside it,
    // can take the shared DTD: a file's own may name another or add to it.
    xercesc::XMLGrammarPool *pool = nullptr;
    if (hasRoot && !hasDoctype && !declared)
      pool = OurGrammars::get(dtdPathOf(ourDoctype));
    std::unique_ptr<xercesc::SAX2XMLReader> reader(
        pool ? xercesc::XMLReaderFactory::createXMLReader(
                   xercesc::XMLPlatformUtils::fgMemoryManager, pool)
             : xercesc::XMLReaderFactory::createXMLReader());
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, true);
    if (pool)
      reader->setFeature(xercesc::XMLUni::fgXercesUseCachedGrammarInParse, true);
    // What the guard refuses stays unread; board files have no namespaces
    // and no schema hints to follow.
    HBOXercesSupport::secure(*reader, security, handler);
    reader->setLexicalHandler(&guard);
    reader->setDeclarationHandler(&guard);
    // The fuller interface tells the line that asked for an entity.
    if (auto *impl = dynamic_cast<xercesc::SAX2XMLReaderImpl *>(reader.get()))
      impl->setXMLEntityResolver(&guard);
    else
      reader->setEntityResolver(&guard);

    xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte *>(buffer.data()),
                                      buffer.size(), kBufferId, false);
    // Text that was turned into UTF-8 still declares the encoding it had.
    if (converted)
      source.setEncoding(xercesc::XMLUni::fgUTF8EncodingString);
    [[maybe_unused]] HBOXercesSupport::LeakScope unchecked;
    reader->parse(source);
  } catch (const ParseRefused &) {
    // Told among the findings.
  } catch (...) {
    HBOXercesSupport::raiseParseFailure(fileName);
  }

  // The platform's own limit must not cut the findings short: ours applies.
  ComMsgMgr::setMsgLimit("49-105", -1);
  ComMsgMgr::setMsgLimit("49-106", -1);
  if (readable)
    *readable = !handler.hadFatalError();
  return handler.sendMessages() == 0;
}
