// Readers of the preset file (such as preset.xml) and of the IP associated
// rules of board.xml. Both make HBOIpPreset records, which go straight to
// the board under their procedure or rule name; a hierarchical user
// parameter becomes one Tcl list.
#include "HBOPresetReader.h"
#include "ComMsgMgr.h"
#include "HBOBoard.h"
#include "HBOBoardUtils.h"
#include "HBOBusIf.h"
#include "HBOCommon.h"
#include "HBODtdValidator.h"
#include "HBOIpPreset.h"
#include "HBOParseContext.h"
#include "HBOXMLFile.h"
#include "HEXError.h"
#include "HSTIntern.h"
#include "HSTStringUtils.h"
#include "HUTFile.h"
#include "HXMLWElement.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Records read but not yet handed to the board: a reader that raises midway
// must not leak the ones it had.
class PendingPresets {
public:
  PendingPresets() = default;
  PendingPresets(const PendingPresets &) = delete;
  PendingPresets &operator=(const PendingPresets &) = delete;
  ~PendingPresets() {
    for (HBOIpPreset *preset : m_presets)
      delete preset;
  }
  void reserve(std::size_t count) { m_presets.reserve(count); }
  void add(std::unique_ptr<HBOIpPreset> preset) { m_presets.push_back(preset.release()); }
  std::vector<HBOIpPreset *> release() {
    std::vector<HBOIpPreset *> out;
    out.swap(m_presets);
    return out;
  }

private:
  std::vector<HBOIpPreset *> m_presets;
};

// The board's maps replace an entry without freeing what it held, and ignore
// an empty name. The records that drop out that way were seen by nobody but
// this read, so they are freed here.
template <typename Setter>
void handOver(const HBOBoard::PresetMap &map, const std::string &name, PendingPresets &pending,
              Setter set) {
  std::vector<HBOIpPreset *> records = pending.release();
  if (name.empty()) {
    HBOCommon::deleteDistinct(records);
    return;
  }
  std::vector<HBOIpPreset *> replaced;
  // The key in upper case, in a buffer that every procedure reuses.
  thread_local std::string key;
  key.assign(name);
  key = HSTStringUtils::toUpper(std::move(key));
  auto it = map.find(key);
  if (it != map.end())
    replaced = it->second;
  set(name, std::move(records));
  HBOCommon::deleteDistinct(replaced);
}

// Reads the five identifying attributes of an ip element into the record.
void readIpIdentity(const HXMLWElement &ip, HBOIpPreset &preset, HBOBoard *owner,
                    HBOParsedVLNVs *parsed) {
  static const char *const kNames[] = {"vendor", "library", "name", "version", "ip_interface"};
  const char *values[5];
  ip.findAttributes(kNames, values);
  std::string_view vendor = HXMLWElement::viewOf(values[0]);
  std::string_view library = HXMLWElement::viewOf(values[1]);
  std::string_view name = HXMLWElement::viewOf(values[2]);
  std::string_view version = HXMLWElement::viewOf(values[3]);
  // The collector sees the file's own text, before any default applies.
  if (parsed) {
    std::string vlnv;
    vlnv.reserve(vendor.size() + library.size() + name.size() + version.size() + 3);
    vlnv.append(vendor).append(1, ':').append(library).append(1, ':');
    vlnv.append(name).append(1, ':').append(version);
    parsed->preferredIpVlnvs.insert(std::move(vlnv));
  }
  std::string_view ipInterface = HXMLWElement::viewOf(values[4]);
  if (version.empty())
    version = "*";
  if (ipInterface.empty())
    ipInterface = "*";
  preset.setVendor(vendor);
  preset.setLibrary(library);
  preset.setName(name);
  preset.setVersion(version);
  preset.setIpInterface(ipInterface);
  preset.setOwner(owner);
  preset.setPresetNameFromIdentity();
}

// Hierarchical parameters nest as deep as a file says; a hostile file must
// not exhaust the stack.
const int kMaxHierDepth = 256;

void appendHierName(std::string &out, std::string_view name, int depth) {
  if (depth == 0)
    out += ' ';
  out += name;
  out += ' ';
}

// Children of a hierarchical parameter as a Tcl list: each braced, and the
// whole braced again when there is more than one.
template <typename Recurse>
void appendHierChildren(std::string &out, const HXMLWElement &element, Recurse recurse) {
  HXMLWElement::ChildRange children = element.children();
  auto it = children.begin();
  if (it == children.end())
    return;
  HXMLWElement first = *it;
  const bool several = ++it != children.end();
  if (several)
    out += '{';
  out += '{';
  recurse(first);
  out += '}';
  for (; it != children.end(); ++it) {
    HXMLWElement child = *it;
    out += " {";
    recurse(child);
    out += '}';
  }
  if (several)
    out += '}';
}

} // namespace

bool HBOPresetReader::parsePresetFile(const std::string &fileName,
                                      std::map<std::string, HBOIpPreset *> &presets) {
  ComMsgMgr::sendScopedMsg(ComMsgMgr::Debug1, "board.parse",
                           "HBOBoardParser parsing preset file'%s'\n", fileName.c_str());
  if (!m_ctx.board)
    return false;
  if (!m_ctx.isInsideBoardDir_("preset_file", fileName))
    return false;
  std::string path = m_ctx.resolveBesideBoard_(fileName);
  if (!HUTFile::exists(path)) {
    // Only told: a board without its presets is still a usable board.
    ComMsgMgr::sendMsg("board", ComMsg::Warning, "@49-62@%s", path);
    return false;
  }
  if (!parsePresets(path, presets))
    HEXError::raise("board", ComMsg::CriticalWarning, "@49-63@%s%s", path, std::string());
  return true;
}

bool HBOPresetReader::parsePresets(const std::string &path,
                                   std::map<std::string, HBOIpPreset *> &presets) {
  // As for pin files: a file that breaks its DTD is still read, so that a
  // check tells what the readers find too; one that is no XML at all is not.
  bool readable = true;
  if (m_ctx.validate && !m_dtd.isValidXML(path, "preset", &readable)) {
    m_ctx.dtdFailed = true;
    if (!readable)
      return true;
  }
  std::unique_ptr<HXMLWInterface> doc = HBOXMLFile::open(path);
  std::string error;
  return readIpPresets(doc->getRootElement(), presets, error);
}

bool HBOPresetReader::readIpPresets(HXMLWElement *root, std::map<std::string, HBOIpPreset *> &,
                                    std::string &error) {
  if (!root) {
    error = "Root XML element is NULL";
    return false;
  }
  if (!m_ctx.board)
    return false;
  // The records go to the board itself; the caller's map stays as it was.
  for (HXMLWElement element : root->children("ip_preset")) {
    const std::string &procName = HSTIntern::get(element.getAttributeView("preset_proc_name"));
    PendingPresets records;
    // Sized once: the list goes to the board as it is.
    records.reserve(std::distance(element.children().begin(), element.children().end()));
    for (HXMLWElement ip : element.children()) {
      std::unique_ptr<HBOIpPreset> preset(new HBOIpPreset());
      preset->setPresetProcName(procName);
      if (readPresetDetails(&ip, preset.get()))
        records.add(std::move(preset));
    }
    // A later ip_preset of the same name, in any case, replaces this one.
    handOver(m_ctx.board->getIpPresets(), procName, records,
             [this](const std::string &name, std::vector<HBOIpPreset *> v) {
               m_ctx.board->setIpPreset(name, std::move(v));
             });
  }
  return true;
}

bool HBOPresetReader::readPresetDetails(HXMLWElement *ip, HBOIpPreset *preset) {
  if (!ip || !preset)
    return false;
  // Anything but an ip is entered as an empty record.
  if (!ip->isTag("ip"))
    return true;
  readIpIdentity(*ip, *preset, m_ctx.board, m_ctx.parsed);

  m_params.clear();
  // Parameter names come from the IPs' vocabulary and are pooled; values as
  // setParam would store them.
  auto add = [&](std::string_view name, std::string_view value) {
    if (!name.empty())
      m_params.addPooledName(name, preset->resolveValue(value, m_resolved));
  };
  for (HXMLWElement group : ip->children()) {
    // Model parameters have no hierarchical form: there "hier" is a plain value.
    bool userParams = group.isTag("user_parameters");
    if (!userParams && !group.isTag("model_parameters"))
      continue;
    for (HXMLWElement param : group.children()) {
      static const char *const kNames[] = {"name", "value_type", "value"};
      const char *values[3];
      param.findAttributes(kNames, values);
      std::string_view name = HXMLWElement::viewOf(values[0]);
      m_hier.clear();
      if (userParams && param.isTag("user_hier_parameter")) {
        if (readHierParam(&param, m_hier))
          add(name, m_hier);
        continue;
      }
      std::string_view valueType = HXMLWElement::viewOf(values[1]);
      if (HBOParseContext::sameIgnoringCase(valueType, "file")) {
        // A file that is not there sets nothing; the type is kept all the same.
        std::string path = m_ctx.board ? HUTFile::parentPath(m_ctx.board->getBoardFile()) +
                                             HBOBoardUtils::getDirSeparator()
                                       : std::string();
        path += HXMLWElement::viewOf(values[2]);
        if (HUTFile::exists(path))
          add(name, path);
        preset->setValueType(std::string(valueType));
      } else if (userParams && HBOParseContext::sameIgnoringCase(valueType, "hier")) {
        if (readHierParam(&param, m_hier))
          add(name, m_hier);
      } else {
        add(name, HXMLWElement::viewOf(values[2]));
      }
    }
  }
  preset->setParams(m_params);
  return true;
}

bool HBOPresetReader::readIpAssociatedInterfaces(HXMLWElement *root, std::string &error) {
  if (!root) {
    error = "Root XML element is NULL";
    return false;
  }
  if (!m_ctx.board)
    return false;
  for (HXMLWElement section : root->children("ip_associated_rules")) {
    const std::string schema = m_ctx.board->getBoardSchemaVersion();
    if (!HBOBoardUtils::isEqualOrGreater(schema, "2.1"))
      HEXError::raise("board", ComMsg::Warning, "@49-77@%s", schema);
    for (HXMLWElement rule : section.children("ip_associated_rule")) {
      std::string name = rule.getAttribute("name");
      PendingPresets records;
      for (HXMLWElement ip : rule.children()) {
        std::unique_ptr<HBOIpPreset> preset(new HBOIpPreset());
        preset->setPresetProcName(name);
        HBOParseContext::SubjectScope at(m_ctx, ip);
        if (readAssociatedInterfacesDetails(&ip, preset.get()) && validateAssocIntf(preset.get()))
          records.add(std::move(preset));
      }
      handOver(m_ctx.board->getIpAssociatedInterfaces(), name, records,
               [this](const std::string &key, std::vector<HBOIpPreset *> v) {
                 m_ctx.board->setIpAssociatedInterface(key, std::move(v));
               });
    }
  }
  return true;
}

bool HBOPresetReader::readAssociatedInterfacesDetails(HXMLWElement *ip, HBOIpPreset *preset) {
  if (!ip || !preset)
    return false;
  if (!ip->isTag("ip"))
    return true;
  preset->setPresetorAssocIntf("assoc_intf");
  readIpIdentity(*ip, *preset, m_ctx.board, nullptr);
  m_params.clear();
  for (HXMLWElement group : ip->children("associated_board_interfaces")) {
    std::size_t position = 0;
    for (HXMLWElement entry : group.children()) {
      // Without an order an interface ranks by its position.
      std::string order = entry.getAttribute("order");
      if (order.empty())
        order = std::to_string(position);
      // The keys are this board's interface names: they stay with the record.
      std::string_view name = entry.getAttributeView("name");
      if (!name.empty())
        m_params.addLocalName(name, preset->resolveValue(order, m_resolved));
      ++position;
    }
  }
  preset->setParams(m_params);
  return true;
}

bool HBOPresetReader::validateAssocIntf(HBOIpPreset *preset) {
  if (!preset || !m_ctx.board)
    return false;
  const std::string &ipName = preset->getName();
  if (preset->getVendor().empty())
    m_ctx.queueFinding("Vendor cannot be empty in ip '" + ipName + "'.");
  if (preset->getLibrary().empty())
    m_ctx.queueFinding("Library cannot be empty in ip '" + ipName + "'.");
  if (ipName.empty())
    m_ctx.queueFinding("IP Name cannot be empty.");

  // A daughter board offers its interfaces on its connectors; a board with
  // an FPGA offers only the FPGA's.
  const bool withFpga = m_ctx.board->hasFPGAPart();
  for (const auto &entry : preset->getParamList()) {
    const std::string &interfaceName = entry.first;
    HBOBusIf *busIf = nullptr;
    bool found = withFpga ? m_ctx.board->getBusIfByName(busIf, interfaceName)
                          : m_ctx.board->getBusIfByNameUsingConnectors(busIf, interfaceName);
    // The look-up ignores case; the rule must still spell the name exactly.
    if (!found || !busIf || busIf->getName() != interfaceName)
      HEXError::raise("board", ComMsg::Warning, "@49-69@%s%s", m_ctx.board->getBoardFile(),
                      "Provided Bus interface does not exist on the board '" + interfaceName +
                          "'.");
    if (m_ctx.convertInteger(entry.second, "associated interface '" + interfaceName + "' order") <
        0)
      m_ctx.queueFinding("In ip '" + ipName + "' order cannot be less than zero for interface '" +
                         interfaceName + "'.");
  }
  return true;
}

bool HBOPresetReader::readHierParam(HXMLWElement *element, std::string &out) {
  if (!element)
    return false;
  bool newForm = element->isTag("user_hier_parameter");
  for (HXMLWElement child : element->children()) {
    if (newForm)
      readHierParamRec_(&child, out, 0);
    else
      readHierParamRecOld_(&child, out, 0);
  }
  if (!out.empty() && out[0] == ' ')
    out.erase(0, 1);
  return true;
}

bool HBOPresetReader::readHierParamRec_(HXMLWElement *element, std::string &out, int depth) {
  if (!element || depth > kMaxHierDepth)
    return false;
  static const char *const kNames[] = {"name", "value"};
  const char *values[2];
  element->findAttributes(kNames, values);
  appendHierName(out, HXMLWElement::viewOf(values[0]), depth);
  if (element->isTagExactly("user_parameter"))
    out += HXMLWElement::viewOf(values[1]);
  else if (element->isTagExactly("user_hier_parameter"))
    appendHierChildren(out, *element,
                       [&](HXMLWElement &child) { readHierParamRec_(&child, out, depth + 1); });
  return true;
}

bool HBOPresetReader::readHierParamRecOld_(HXMLWElement *element, std::string &out, int depth) {
  if (!element || depth > kMaxHierDepth)
    return false;
  static const char *const kNames[] = {"name", "value_type", "value"};
  const char *values[3];
  element->findAttributes(kNames, values);
  appendHierName(out, HXMLWElement::viewOf(values[0]), depth);
  if (HXMLWElement::viewOf(values[1]) == "hier")
    appendHierChildren(out, *element,
                       [&](HXMLWElement &child) { readHierParamRecOld_(&child, out, depth + 1); });
  else
    out += HXMLWElement::viewOf(values[2]);
  return true;
}
