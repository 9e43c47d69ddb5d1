// The reader of legacy board files. The load runs a validating parse first,
// as for every board file of the installation, with the DTD of schema 1
// loaded once per process and shared by every later parse.
#include "HBOPartParser.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardComponent.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOIpPreset.h"
#include "HBOModelPort.h"
#include "HBOParseContext.h"
#include "HBOPinProps.h"
#include "HBOPortMap.h"
#include "HBOSAX2Handler.h"
#include "HBOXMLFile.h"
#include "HBOXercesSupport.h"
#include "HEXError.h"
#include "HUTEnv.h"
#include "HUTFile.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLGrammarPoolImpl.hpp>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLEntityResolver.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <mutex>
#include <vector>

namespace {

const char kSchemaFolder[] = "1.0";
const long long kMaxPortWidth = 16384;

bool isTag(const HXMLWElement &element, const char *tag) { return element.isTag(tag); }

std::vector<std::string> splitAtColons(const std::string &text) {
  std::vector<std::string> fields(1);
  for (char c : text) {
    if (c == ':')
      fields.emplace_back();
    else
      fields.back() += c;
  }
  return fields;
}

// The schema 1 DTDs of the installation, each parsed once and then shared:
// a pool that is locked is read-only, which is what lets the loading tasks
// use it at the same time.
class DtdCache {
public:
  struct Entry {
    std::unique_ptr<xercesc::XMLGrammarPool> pool;
    std::vector<std::string> paths;
  };

  /// The pool holding every copy of \p dtdName found in the data
  /// directories; its paths are those copies, first found first.
  static const Entry &get(const std::string &dtdName) {
    static std::mutex mutex;
    static std::map<std::string, Entry> entries;
    std::lock_guard<std::mutex> lock(mutex);
    auto found = entries.find(dtdName);
    if (found != entries.end())
      return found->second;
    Entry &entry = entries[dtdName];
    load_(dtdName, entry);
    return entry;
  }

private:
  static void load_(const std::string &dtdName, Entry &entry) {
    entry.pool.reset(new xercesc::XMLGrammarPoolImpl(xercesc::XMLPlatformUtils::fgMemoryManager));
    std::unique_ptr<xercesc::SAX2XMLReader> loader(xercesc::XMLReaderFactory::createXMLReader(
        xercesc::XMLPlatformUtils::fgMemoryManager, entry.pool.get()));
    loader->setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
    const std::string sep = HBOBoardUtils::getDirSeparator();
    for (const std::string &dir : HUTEnv::getZRTDataDirList()) {
      try {
        std::string path =
            dir + sep + "boards" + sep + "board_schemas" + sep + kSchemaFolder + sep + dtdName;
        if (!HUTFile::exists(path))
          continue;
        std::unique_ptr<xercesc::InputSource> source(HBOXercesSupport::openFile(path));
        if (!source)
          continue;
        [[maybe_unused]] HBOXercesSupport::LeakScope unchecked;
        if (loader->loadGrammar(*source, xercesc::Grammar::DTDGrammarType, true))
          entry.paths.push_back(path);
      } catch (const std::string &text) {
        ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-44@%s", text);
      } catch (...) {
        // A DTD of ours that does not parse only costs the validation.
      }
    }
    entry.pool->lockPool();
  }
};

// Reads nothing but the DTD the parse was given: a DOCTYPE of the file that
// names another, and every external entity, come out empty, so that a board
// file never makes the load read a file or reach the network.
class OnlyOurDtd : public xercesc::XMLEntityResolver {
public:
  OnlyOurDtd(const std::vector<std::string> &dtds, const std::string &dtdName)
      : m_dtds(dtds), m_dtdName(dtdName) {}

  xercesc::InputSource *resolveEntity(xercesc::XMLResourceIdentifier *request) override {
    bool dtd =
        request &&
        request->getResourceIdentifierType() == xercesc::XMLResourceIdentifier::ExternalEntity &&
        !m_dtds.empty() &&
        HUTFile::fileName(HBOSAX2Handler::transcode(request->getSystemId())) == m_dtdName;
    if (dtd)
      if (xercesc::InputSource *source = HBOXercesSupport::openFile(m_dtds.front()))
        return source;
    static const XMLByte nothing[] = {0};
    return new xercesc::MemBufInputSource(nothing, 0, "empty", false);
  }

private:
  const std::vector<std::string> &m_dtds;
  std::string m_dtdName;
};

// Replaces the records of a preset procedure. A legacy board shares no
// records between procedures, so the ones replaced go.
void replaceIpPreset(HBOBoard &board, const std::string &name, std::vector<HBOIpPreset *> records) {
  if (name.empty()) {
    for (HBOIpPreset *record : records)
      delete record;
    return;
  }
  std::vector<HBOIpPreset *> old = board.findPresetProc(name);
  board.setIpPreset(name, std::move(records));
  for (HBOIpPreset *record : old)
    delete record;
}

// Sends a finding about the element \p at with its file and line, which a
// check shows and a load leaves aside; the line is looked up only now, for
// a file that has a finding.
template <typename... Args>
void sendAt(const HXMLWElement &at, unsigned severity, const char *key, const Args &...args) {
  ComMsgMgrInstance msg("board", severity, key);
  (msg.arg(args), ...);
  if (at && at.getDocument())
    msg.setPlace(at.getDocument()->getFileName(), static_cast<unsigned long>(at.getLine()));
  ComMsgMgr::sendMessage(msg);
}

} // namespace

void HBOPartParser::validate_(const std::string &fileName, const char *dtdName) {
  try {
    HBOXercesSupport::initialise();
    const DtdCache::Entry &dtd = DtdCache::get(dtdName);
    // Declared before the reader, which must not outlive what it points to.
    xercesc::SecurityManager security;
    OnlyOurDtd resolver(dtd.paths, dtdName);
    // Findings of the validation are not this path's business: the load
    // drops them, and the check of a file reports them itself.
    xercesc::DefaultHandler handler;

    std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader(
        xercesc::XMLPlatformUtils::fgMemoryManager, dtd.pool.get()));
    reader->setFeature(xercesc::XMLUni::fgXercesUseCachedGrammarInParse, true);
    HBOXercesSupport::secure(*reader, security, handler);
    if (auto *impl = dynamic_cast<xercesc::SAX2XMLReaderImpl *>(reader.get()))
      impl->setXMLEntityResolver(&resolver);
    // A file that cannot be read is left to the read that follows, which
    // tells why.
    std::unique_ptr<xercesc::InputSource> source(HBOXercesSupport::openFile(fileName));
    if (!source)
      return;
    [[maybe_unused]] HBOXercesSupport::LeakScope unchecked;
    reader->parse(*source);
  } catch (...) {
    HBOXercesSupport::raiseParseFailure(fileName);
  }
}

bool HBOPartParser::parseFile(const std::string &fileName, HBOBoard *board) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse", "HBOPartParser parsing '%s'\n",
                           fileName.c_str());
  HUTFile::Status status = HUTFile::status(fileName);
  if (status == HUTFile::Status::NotFound || status == HUTFile::Status::Error) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-36@%s", fileName);
    return false;
  }
  m_board = board;
  m_component = new HBOBoardComponent();
  // The board owns the component from here on, whatever the read does: it
  // is entered before the read can raise.
  if (m_board) {
    m_board->addBoardComponent(m_component);
    m_board->setActivePart(m_component);
    m_component->setBoard(m_board);
  }
  std::unique_ptr<HBOBoardComponent> orphan(m_board ? nullptr : m_component);
  bool result = false;
  try {
    result = parse(fileName);
  } catch (const HEXError &e) {
    // The file's fault is told here, where it is known; the caller skips
    // the board as for any other exception.
    ComMsgMgr::sendMessage(e.getMessage());
    m_board = nullptr;
    m_component = nullptr;
    throw;
  } catch (...) {
    m_board = nullptr;
    m_component = nullptr;
    throw;
  }
  if (!result)
    ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-4@%s%s", fileName, std::string());
  m_board = nullptr;
  m_component = nullptr;
  return result;
}

bool HBOPartParser::parse(const std::string &fileName) {
  if (!m_board || !m_component)
    return false;
  if (fileName.empty())
    return true;
  validate_(fileName, "board_part.dtd");
  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(fileName);
  HXMLWElement *root = doc->getRootElement();

  m_board->setBoardFile(fileName);
  m_component->setBoardFile(fileName);
  std::string changeLog =
      HUTFile::parentPath(fileName) + HBOBoardUtils::getDirSeparator() + "changelog.txt";
  if (HUTFile::exists(changeLog)) {
    m_board->setChangeLogFilename(changeLog);
    m_component->setBoardChangeLogFilename(changeLog);
  }

  const std::string vendor = root->getAttribute("vendor");
  const std::string boardName = root->getAttribute("board_name");
  const std::string boardPart = root->getAttribute("board_part");
  const std::string revision = root->getAttribute("board_revision");
  // A legacy file knows one revision only, so its id is 0.
  m_board->setCompatibleBoardRevisions({{0, revision}});

  const std::string version = root->getAttribute("version");
  const std::string presetFile = root->getAttribute("preset_file");
  m_board->setPresetFile(presetFile);
  if (!presetFile.empty()) {
    // A board without its presets is still a usable board.
    std::map<std::string, HBOIpPreset *> scratch;
    parsePresetFile(presetFile, scratch);
  }

  if (vendor.empty() || boardName.empty() || revision.empty())
    HEXError::raise("board", ComMsg::Error, "@49-108@%s", fileName);
  m_component->setName(vendor, boardName, boardPart, version);
  m_board->setName(vendor, boardName, version);

  if (!readPartInfo(root))
    HEXError::raise("board", ComMsg::Error, "@49-109@%s%s", m_component->getPartString(),
                    m_component->getBoardFile());
  // The interfaces name the ports, so the ports come first.
  if (!readPorts(root))
    return false;
  if (!readInstances(root))
    return false;
  m_component->setVLNV(vendor, m_component->getFamily(), boardName, version);
  return true;
}

bool HBOPartParser::readPartInfo(HXMLWElement *root) {
  if (!root)
    return false;
  bool found = false;
  for (HXMLWElement child : root->children()) {
    if (isTag(child, "part_info")) {
      std::string part = child.getAttribute("part_name");
      if (part.empty())
        continue;
      m_component->setPartString(part);
      m_component->setJtagPosition(child.getAttribute("jtag_position"));
      found = true;
    } else if (isTag(child, "board_info")) {
      const std::string displayName = child.getAttribute("display_name");
      const std::string url = child.getAttribute("url");
      const std::string description = child.getAttribute("description");
      m_component->setDisplayName(displayName);
      m_component->setSpecUrl(url);
      m_component->setLongDesc(description);
      m_component->setImageFile(child.getAttribute("image_file"));
      m_board->setDescription(description);
      m_board->setDisplayName(displayName);
      m_board->setSpecUrl(url);
      m_board->setLongDesc(description);
    }
  }
  return found;
}

bool HBOPartParser::readPorts(HXMLWElement *root) {
  if (!root)
    return false;
  static const char *const kPinProps[] = {
      "loc",          "iostandard", "diff_term",    "drive",        "slew",    "output_impedance",
      "ibuf_low_pwr", "odt",        "equalization", "pre_emphasis", "dqs_bias"};
  static const std::string kBankPrefix = "iobank.";
  // Legacy numbers are read leniently (text after the digits is ignored),
  // but text without a number, or a number that an int cannot hold, is
  // refused: it would stand for 0 or for a cut value unseen.
  auto readNumber = [this](const HXMLWElement &at, std::string_view text, const std::string &what,
                           int &out) {
    const std::string problem = HBOParseContext::readInteger(text, what, out);
    if (problem.empty())
      return true;
    sendAt(at, ComMsg::Warning, "@49-69@%s%s", m_board->getBoardFile(), problem);
    return false;
  };
  for (HXMLWElement ports : root->children()) {
    if (!isTag(ports, "ports"))
      continue;
    for (HXMLWElement element : ports.children()) {
      if (!isTag(element, "port"))
        continue;
      const std::string name = element.getAttribute("name");
      if (name.empty())
        continue; // a port without a name cannot be entered, nor named by a map
      auto *port = new HBOModelPort();
      port->setName(name);
      port->setDirection(element.getAttributeView("dir"));
      const char *leftText = element.findAttribute("left");
      const char *rightText = element.findAttribute("right");
      const bool isVector = leftText || rightText;
      int left = 0, right = 0;
      if ((leftText && !readNumber(element, leftText, "port '" + name + "' left", left)) ||
          (rightText && !readNumber(element, rightText, "port '" + name + "' right", right))) {
        delete port;
        return false;
      }
      // Every record of a port is made at once, so a range that no board
      // has would only exhaust the memory.
      const long long width = (left > right ? 1LL * left - right : 1LL * right - left) + 1;
      if (isVector && left >= 0 && right >= 0 && width > kMaxPortWidth) {
        delete port;
        sendAt(element, ComMsg::Warning, "@49-69@%s%s", m_board->getBoardFile(),
               "Port '" + name + "' spans " + std::to_string(width) + " pins; at most " +
                   std::to_string(kMaxPortWidth) + " are supported.");
        return false;
      }
      port->setIsVector(isVector);
      if (isVector)
        port->setRange(static_cast<int>(left), static_cast<int>(right));
      port->populatePinProps();
      m_component->setModelPort(name, port);

      std::vector<HBOPinProps *> records;
      port->getPortPropsSeq(records);
      if (records.empty())
        continue;
      for (HXMLWElement pins : element.children()) {
        if (!isTag(pins, "pins"))
          continue;
        for (HXMLWElement pinElement : pins.children()) {
          if (!isTag(pinElement, "pin"))
            continue;
          std::string values[11];
          for (std::size_t i = 0; i < 11; ++i)
            values[i] = pinElement.getAttribute(kPinProps[i]);
          std::string pinName = name;
          long index = 0;
          long position = 0;
          if (isVector) {
            std::string indexText = pinElement.getAttribute("index");
            pinName = name + "[" + indexText + "]";
            int number = 0;
            if (!readNumber(pinElement, indexText, "pin '" + pinName + "' index", number))
              return false;
            index = number;
            position = left > right ? index - right : index - left;
          }
          if (position < 0 || position >= static_cast<long>(records.size()))
            continue;
          HBOPinProps *record = records[static_cast<std::size_t>(position)];
          record->setProp(static_cast<int>(index), port, pinName, values[0], values[2], values[3],
                          values[1], values[4], values[5], values[6], values[7], values[8],
                          values[9], values[10]);
          pinElement.forEachAttribute([&](const char *attr, const char *value) {
            std::string attrName(attr);
            if (attrName.compare(0, kBankPrefix.size(), kBankPrefix) == 0)
              record->setIOBankProperty(attrName.substr(kBankPrefix.size()), value);
          });
        }
      }
    }
  }
  return true;
}

bool HBOPartParser::readInstances(HXMLWElement *root) {
  if (!root)
    return false;
  for (HXMLWElement interfaces : root->children()) {
    if (!isTag(interfaces, "interfaces"))
      continue;
    for (HXMLWElement element : interfaces.children()) {
      if (!isTag(element, "interface"))
        continue;
      const std::string name = element.getAttribute("name");
      std::unique_ptr<HBOBusIf> busIf(new HBOBusIf());
      busIf->setName(name);
      busIf->setDisplayName(name);
      busIf->setInterfaceMode(element.getAttribute("mode"));
      busIf->setPresetProcName(element.getAttribute("preset_proc_name"));
      busIf->setOwnerComponent(m_component);
      busIf->setParentBoard(m_board);

      std::vector<std::string> type = splitAtColons(element.getAttribute("type"));
      if (type.size() != 4) {
        sendAt(element, ComMsg::Warning, "@49-37@%s", name);
        return false;
      }
      busIf->setAbstractTypeVendor(type[0]);
      busIf->setAbstractTypeLibrary(type[1]);
      busIf->setAbstractTypeName(type[2]);
      busIf->setAbstractTypeVersion(type[3]);

      for (HXMLWElement child : element.children()) {
        if (isTag(child, "port_maps")) {
          for (HXMLWElement mapElement : child.children()) {
            if (!isTag(mapElement, "port_map")) {
              sendAt(mapElement, ComMsg::Warning, "@49-39@%s%s", mapElement.getTag(), name);
              return false;
            }
            auto *map = new HBOPortMap();
            map->setPhysicalPort(mapElement.getAttributeView("physical_port"));
            map->setLogicalPort(mapElement.getAttributeView("logical_port"));
            busIf->populatePortMap(map);
          }
        } else if (isTag(child, "parameters")) {
          for (HXMLWElement param : child.children()) {
            if (!isTag(param, "parameter")) {
              sendAt(param, ComMsg::Warning, "@49-38@%s%s", param.getTag(), name);
              return false;
            }
            busIf->setParam(param.getAttribute("name"), param.getAttribute("value"));
          }
        } else if (isTag(child, "preset_file")) {
          std::string path = HUTFile::parentPath(m_component->getBoardFile()) +
                             HBOBoardUtils::getDirSeparator() + child.getAttribute("name");
          if (HUTFile::exists(path))
            busIf->setPresetFile(path);
        }
      }
      // An interface without a name cannot be entered: it is dropped here.
      if (name.empty())
        continue;
      m_component->setBusIf(name, busIf.release());
    }
  }
  return true;
}

bool HBOPartParser::parsePresetFile(const std::string &fileName,
                                    std::map<std::string, HBOIpPreset *> &presets) {
  if (!m_board)
    return false;
  // Taken in the board's folder, as a schema 2 board takes its files, and
  // refused when it leads out of it: the load must not read the system's
  // files for a board.
  if (!HUTFile::staysInside(fileName)) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-181@%s%s%s", std::string("preset_file"),
                       fileName, m_board->getBoardFile());
    return false;
  }
  std::string path =
      HUTFile::parentPath(m_board->getBoardFile()) + HBOBoardUtils::getDirSeparator() + fileName;
  if (!HUTFile::exists(path)) {
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-62@%s", path);
    return false;
  }
  bool ok = false;
  std::string text;
  try {
    ok = parsePresets(path, presets);
  } catch (const HEXError &e) {
    // The preset file's own trouble is told; the board goes on without it.
    ComMsgMgr::sendMessage(e.getMessage());
  }
  if (!ok)
    ComMsgMgr::sendMsg("board", ComMsg::CriticalWarning, "@49-63@%s%s", path, text);
  return ok;
}

bool HBOPartParser::parsePresets(const std::string &path,
                                 std::map<std::string, HBOIpPreset *> &presets) {
  validate_(path, "preset.dtd");
  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(path);
  std::string error;
  return readIpPresets(doc->getRootElement(), presets, error);
}

bool HBOPartParser::readIpPresets(HXMLWElement *root, std::map<std::string, HBOIpPreset *> &,
                                  std::string &error) {
  if (!root) {
    error = "Root XML element is NULL";
    return false;
  }
  if (!m_board)
    return false;
  for (HXMLWElement procedure : root->children()) {
    if (!isTag(procedure, "ip_preset"))
      continue;
    const std::string procName = procedure.getAttribute("preset_proc_name");
    std::vector<HBOIpPreset *> records;
    for (HXMLWElement ip : procedure.children()) {
      auto *record = new HBOIpPreset();
      record->setPresetProcName(procName);
      if (readPresetDetails(&ip, record))
        records.push_back(record);
      else
        delete record;
    }
    replaceIpPreset(*m_board, procName, std::move(records));
  }
  return true;
}

bool HBOPartParser::readPresetDetails(HXMLWElement *ip, HBOIpPreset *preset) {
  if (!ip || ip->isNull() || !preset)
    return false;
  const std::string vendor = ip->getAttribute("vendor");
  const std::string library = ip->getAttribute("library");
  const std::string name = ip->getAttribute("name");
  const std::string version = ip->getAttribute("version");
  preset->setVendor(vendor);
  preset->setLibrary(library);
  preset->setName(name);
  preset->setVersion(version);
  preset->setOwner(m_board);
  preset->setPresetName(preset->getPresetProcName() + ":" + vendor + ":" + library + ":" + name +
                        ":" + version);
  for (const char *group : {"user_parameters", "model_parameters"}) {
    for (HXMLWElement params : ip->children()) {
      if (!isTag(params, group))
        continue;
      for (HXMLWElement param : params.children())
        preset->setParam(param.getAttribute("name"), param.getAttribute("value"));
    }
  }
  return true;
}
