#include "ComMsgCatalog.h"

#include <cctype>
#include <cstring>
#include <unordered_map>

namespace {

struct Entry {
  const char *key;
  const char *text;
};

// One text per key, sorted by message group and number. A template holds
// exactly the placeholders of its key, in order: ComMsgCatalog::fill relies
// on it, and a test checks it.
const Entry kEntries[] = {
    {"@1-1@%s",
     "'%s' is not a boolean value; use true or false (1/0, yes/no and on/off are accepted too)."},
    {"@1-2@%s%s", "No %s matched '%s'."},
    {"@1-3@%s%s%s", "Property '%s' of %s is deprecated. %s."},
    {"@49-4@%s%s", "Could not read board file '%s'%s. The board is skipped."},
    {"@49-35@%s%s", "Board '%s' was selected through its legacy short name '%s'. Legacy names are "
                    "deprecated: use the board's full name vendor:name:version instead."},
    {"@49-36@%s", "Board file '%s' does not exist."},
    {"@49-37@%s",
     "The 'type' of interface '%s' is not a VLNV of four fields (vendor:library:name:version)."},
    {"@49-38@%s%s", "Unexpected element <%s> in the 'parameters' of interface '%s': only "
                    "<parameter> elements are allowed there."},
    {"@49-39@%s%s", "Unexpected element <%s> in the 'port_maps' of interface '%s': only <port_map> "
                    "elements are allowed there."},
    {"@49-43@%s", "Unexpected element <%s> in the constraints file: only <PIN> elements are read, "
                  "so it is ignored."},
    {"@49-44@%s",
     "An error occurred while loading board data, and the load goes on without it: %s"},
    {"@49-46@%s%s", "The board script '%s' failed: %s"},
    {"@49-54@%s", "Board file '%s' does not exist, so the board cannot be read."},
    {"@49-55@%s", "Pin file '%s' does not exist. Check the pin file named in board.xml; its name "
                  "is taken in the folder of board.xml."},
    {"@49-56@%s%s", "Failed to read board file '%s'%s. The board is skipped."},
    {"@49-57@%s%s", "Failed to read pin file '%s'%s. See the messages above for the reasons."},
    {"@49-59@%s", "Board file '%s' could not be read. The board is skipped."},
    {"@49-62@%s", "Preset file '%s' does not exist. Check the preset file named in board.xml; "
                  "its name is taken in the folder of board.xml."},
    {"@49-63@%s%s", "Failed to read preset file '%s'%s. See the messages above for the reasons."},
    {"@49-69@%s%s", "Board file '%s': %s"},
    {"@49-70@", "The board was found through its legacy name. Its legacy name is deprecated: "
                "select the board by its current name."},
    {"@49-71@%s%s",
     "Board '%s' with part '%s' was not found among the installed boards or in the board "
     "repositories. Check the board name and the repository paths (parameter board.repoPaths)."},
    {"@49-73@", "The parameter project.boardPartRepoPaths is no longer supported and its value is "
                "ignored: set the board repositories with board.repoPaths instead."},
    {"@49-77@%s",
     "The element 'ip_associated_rules' needs board schema version 2.1 or later, but the file "
     "declares schema version '%s'. Raise the file's schema_version or remove the element."},
    {"@49-78@%s", "Cannot create an integrated board on '%s': the base board is itself an "
                  "integrated board. Choose a board with an FPGA as the base."},
    {"@49-79@%s", "Cannot connect '%s' as a daughter board: it is itself an integrated board."},
    {"@49-81@%s%s", "Daughter board '%s' is not known, so integrated board '%s' cannot be created. "
                    "Check that the daughter board is installed or in a board repository."},
    {"@49-82@%s", "Base board '%s' is not known, so the integrated board cannot be created. Check "
                  "the base board's part name."},
    {"@49-84@%s",
     "Cannot build an integrated board from '%s': the base board is itself an integrated board."},
    {"@49-85@", "Cannot build an integrated board: no base board was given."},
    {"@49-86@", "Cannot create an integrated board: the base board is missing."},
    {"@49-91@%s", "Board repository path '%s' does not exist and is skipped."},
    {"@49-97@%s", "Board file '%s': the element 'compatible_board_revisions' lists no revision. "
                  "Add at least one revision or remove the element."},
    {"@49-98@%s%s", "Pin file '%s': pin '%s' has no 'index' attribute."},
    {"@49-99@%s%s", "Board file '%s': connection_map '%s' lacks one of its index attributes "
                    "c1_st_index, c1_end_index, c2_st_index and c2_end_index."},
    {"@49-100@%s%s%s",
     "Board file '%s': preferred IP '%s' of interface type '%s' has no 'order' attribute."},
    {"@49-105@%s%d%s", "Validation of '%s' against its DTD, line %d: %s"},
    {"@49-106@%s%d%s", "Validation of '%s' against its DTD stopped at line %d: %s"},
    {"@49-108@%s", "Board file '%s': the vendor, the board name or the version is empty. All three "
                   "must be given."},
    {"@49-109@%s%s", "No usable part_info for part '%s' in board file '%s': the element is missing "
                     "or has no part_name."},
    {"@49-110@%s", "Cannot open file '%s' for reading."},
    {"@49-111@%s", "File '%s' holds no XML root element."},
    {"@49-112@%s", "An unexpected error occurred while validating '%s' against its DTD."},
    {"@49-115@%s%s", "XML error '%s' while validating '%s' against its DTD."},
    {"@49-118@%s%s", "'%s' is listed more than once among the members of power rail '%s'."},
    {"@49-119@%s", "Power rail '%s' is defined more than once."},
    {"@49-120@%s%s", "Rail '%s' is already a member of another rail, so it cannot be a member of "
                     "direct power rail '%s' too."},
    {"@49-121@%s", "Power rail '%s' lists itself as a member."},
    {"@49-122@%s", "The name of power rail '%s' is already used by a supply."},
    {"@49-123@%s%s", "Rail '%s', a member of power rail '%s', is not defined before it. Define "
                     "member rails earlier in the file."},
    {"@49-124@%s%s", "Supply '%s' of power rail '%s' is already used by another rail; a supply can "
                     "feed only one rail."},
    {"@49-125@%s%s", "Supply '%s' of power rail '%s' carries the name of a power rail. Use a "
                     "<rail> element to draw on a rail."},
    {"@49-127@%s%s", "Component '%s' of board '%s' is not a connector."},
    {"@49-133@%s%s", "Interface '%s' names the preset procedure '%s', which the board's preset "
                     "file does not define."},
    {"@49-134@%s%s", "Rail '%s', a member of power rail '%s', has a phased_power_source below 1 or "
                     "above the phases it has left."},
    {"@49-135@%s%s", "Phased rail '%s' is used by power rail '%s' without a phased_power_source. "
                     "Say how many phases are drawn."},
    {"@49-136@%s%s", "Rail '%s', a member of power rail '%s', is given a phased_power_source, but "
                     "it declares no num_phases."},
    {"@49-141@%s%d%d", "Power rail '%s' has %d phases, but %d of them are drawn: no rail draws on "
                       "it with phased_power_source."},
    {"@49-142@%d%s%s",
     "The %d phases of power rail '%s' do not match the phases its users draw (%s)."},
    {"@49-145@%s", "Interface '%s' names a gt_flow_interface_master_name that is not an interface "
                   "defined before it in the same component."},
    {"@49-146@%s", "Interface '%s' is defined more than once in the same component."},
    {"@49-147@%s%s%s", "Part '%s' of pin file '%s' differs from the board's part '%s'."},
    {"@49-148@%s%s%s",
     "A component mode of '%s' uses interface '%s', which is not defined in board file '%s'."},
    {"@49-149@%s%s%s%s", "Component '%s' of board file '%s' defines no component mode; mode '%s' "
                         "was created for its interface '%s'."},
    {"@49-150@%s%s%s%s", "Port '%s' of interface '%s' in board file '%s' has the name of an "
                         "interface of component '%s'."},
    {"@49-151@%s", "Board '%s' is taken from a user repository, although the installation holds "
                   "the same board. Make sure the user repository's copy is the one you want."},
    {"@49-152@%s%s", "Part '%s' is not supported by board '%s'; the board keeps its current part."},
    {"@49-153@%s%s", "Clock interface '%s' in board file '%s' has no 'frequency' parameter."},
    {"@49-155@%s%s",
     "File '%s' declares its own DOCTYPE, so the schema directory '%s' is ignored."},
    {"@49-156@%s%s", "There is no DTD for '%s' in the schema directory '%s'."},
    {"@49-157@%s",
     "There is no DTD for '%s' under boards/board_schemas/current in any data directory."},
    {"@49-158@%s", "'%s' is not a board file type that can be validated against a DTD."},
    {"@49-159@%s", "Cannot validate '%s': no DOCTYPE could be built for it."},
    {"@49-162@%s%s", "Neither a DOCTYPE nor a <%s> root element on a line of its own was found in "
                     "'%s', so the file cannot be validated."},
    {"@49-165@%s%s", "Board '%s' has no component '%s'. Use a connector name of the board."},
    {"@49-166@%s%s",
     "Board repository '%s': the scan of directory '%s' failed and the directory is skipped."},
    {"@49-169@%d%d", "Only the first %d of %d findings of the DTD validation are reported."},
    {"@49-170@%d%s%s%s", "Pin index %d is already used by pin '%s', so pin '%s' of component '%s' "
                         "is skipped. Pin indexes must be unique."},
    {"@49-171@%s%s", "Connector '%s' of base board '%s' is given more than once; a connector "
                     "takes one daughter board."},
    {"@49-175@%s%s", "Component '%s' is defined more than once in '%s': the later definition "
                     "replaces the earlier one. Component names must be unique."},
    {"@49-180@%s%s", "Cannot read packed file '%s': %s."},
    {"@49-181@%s%s%s", "The %s '%s' of board file '%s' leads out of the board's folder, so the "
                       "file is not read. Name a file inside the folder of board.xml."},
    {"@49-182@%s%s", "Data directory '%s': folder '%s' cannot be read and is skipped; the "
                     "boards elsewhere in the directory are still loaded."},
    {"@49-183@%s%s%s", "Board repository '%s': the link '%s' leads out of the repository, to "
                       "'%s', and is not followed."},
    {"@49-190@%d%s%s", "%d pins that the interfaces of component '%s' use are not checked: its "
                       "pin file '%s' could not be read."},
    {"@49-192@%s%s", "Board file '%s': schema_version '%s' is no version number such as 2.1, so "
                     "no reader can take the board."},
    {"@49-200@%s%s%s", "Board '%s' has no jumper '%s'. Its jumpers are: %s."},
    {"@49-201@%s%s", "Jumper '%s' cannot be set to '%s'. Its values are true and false."},
    {"@49-202@%s%s", "Cannot write the diagram to '%s': %s."},
    {"@49-220@%s%s", "Cannot write the file '%s' of the catalog site: %s."},
    {"@49-221@%s%s", "Cannot make the folder '%s' of the catalog site: %s."},
    {"@50-1@%s%d%s", "XML syntax error in '%s' at line %d: %s."},
    {"@50-2@%s%s", "Cannot read XML file '%s': %s."},
};

const std::unordered_map<std::string, const char *> &table() {
  static const std::unordered_map<std::string, const char *> t = [] {
    std::unordered_map<std::string, const char *> m;
    for (const Entry &e : kEntries)
      m.emplace(e.key, e.text);
    return m;
  }();
  return t;
}

} // namespace

const char *ComMsgCatalog::findTemplate(const std::string &key) {
  auto it = table().find(key);
  return it == table().end() ? nullptr : it->second;
}

std::string ComMsgCatalog::fill(const std::string &tmpl, const std::vector<std::string> &args) {
  std::string out;
  std::size_t next = 0;
  for (std::size_t i = 0; i < tmpl.size(); ++i) {
    if (tmpl[i] == '%' && i + 1 < tmpl.size()) {
      char c = tmpl[i + 1];
      if (c == 's' || c == 'd') {
        if (next < args.size())
          out += args[next];
        ++next;
        ++i;
        continue;
      }
      if (c == '%') {
        out += '%';
        ++i;
        continue;
      }
    }
    out += tmpl[i];
  }
  for (; next < args.size(); ++next) {
    out += " : ";
    out += args[next];
  }
  return out;
}

std::string ComMsgCatalog::categoryLabel(const std::string &category) {
  if (category == "board")
    return "Board";
  if (category == "xml")
    return "XML";
  if (category == "common")
    return "Common";
  if (category.empty())
    return "Board";
  std::string label = category;
  label[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(label[0])));
  return label;
}

std::vector<std::string> ComMsgCatalog::allKeys() {
  std::vector<std::string> keys;
  for (const Entry &e : kEntries)
    keys.emplace_back(e.key);
  return keys;
}
